// The routes of the HTTP interface: /api/v1, /healthz, /metrics and the page.
//
// apps/camerad/api/openapi.json describes them; a test holds that both have the same routes.
#pragma once

#include "apps/camerad/access/AccessControl.h"
#include "apps/camerad/host/CameraHost.h"
#include "apps/camerad/http/Router.h"
#include "apps/camerad/http/Server.h"
#include "apps/camerad/picture/PictureFeed.h"

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <string>

namespace camerad {

// What the routes work on. Everything outlives the router.
struct Api {
    CameraHost& objHost;
    EventHub& objEvents;
    AccessControl& objAccess;
    std::map<int, std::unique_ptr<PictureFeed>>& mapFeeds;  // by channel
    std::function<ServerCounters()> fnCounters;             // of the server that serves the routes
    std::string strVersion;
    std::chrono::milliseconds nHeartbeat{
        5000};  // of a stream without events; also how often its client is looked at anew
};

// Adds every route.
void addRoutes(Router& p_objRouter, Api& p_stApi);
// Adds GET / and the files of the page, which are built into the program.
void addPage(Router& p_objRouter);

}  // namespace camerad
