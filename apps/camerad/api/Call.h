// What the routes have in common: who asks, which channel, which parameter, and how an answer looks.
//
// Functions without state; they throw Refusal or ProblemAnswer.
#pragma once

#include "apps/camerad/api/Api.h"

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace camerad {

// Bytes that a body may have, by what it holds.
constexpr std::size_t kNoBody = 0;
constexpr std::size_t kSmallBody = 4096;
constexpr std::size_t kListBody = 65536;  // 256 parameters by their longest names

HttpResponse jsonAnswer(const nlohmann::json& p_objValue, int p_nStatus = 200);
HttpResponse noContent();

// Who asks, for the events. 400 when the client's mark is none.
Actor actorOf(const HttpRequest& p_stRequest);

ChannelHost& channelOf(Api& p_stApi, const HttpRequest& p_stRequest);  // of {channel}
u32 keyOf(const HttpRequest& p_stRequest);                             // of {key}
u32 keyOfText(const std::string& p_strText);
// A number in a path or a query. 404 or 422, as p_eKind says, when it is none in that range.
std::int64_t numberOf(const std::string& p_strText, const std::string& p_strWhat, std::int64_t p_nMin,
                      std::int64_t p_nMax, Refusal::Kind p_eKind);
// 422 when the query has other names than these.
void knownQuery(const HttpRequest& p_stRequest, const std::vector<std::string>& p_vecNames);

// Adds one route; its handler may also throw ProblemAnswer. A POST with kNoBody takes no body or an empty object.
void addRoute(Router& p_objRouter, const std::string& p_strMethod, const std::string& p_strPattern, Access p_eAccess,
              std::size_t p_nBodyLimit, HttpHandler p_fnHandler);

// The routes by concern. Each adds its own.
void addSessionRoutes(Router& p_objRouter, Api& p_stApi);
void addParameterRoutes(Router& p_objRouter, Api& p_stApi);
void addSchemeRoutes(Router& p_objRouter, Api& p_stApi);
void addKeepingRoutes(Router& p_objRouter, Api& p_stApi);
void addLensRoutes(Router& p_objRouter, Api& p_stApi);
void addSceneRoutes(Router& p_objRouter, Api& p_stApi);
void addLogRoutes(Router& p_objRouter, Api& p_stApi);
void addEventRoutes(Router& p_objRouter, Api& p_stApi);
void addPictureRoutes(Router& p_objRouter, Api& p_stApi);
void addMetricsRoutes(Router& p_objRouter, Api& p_stApi);
void addDescriptionRoutes(Router& p_objRouter, Api& p_stApi);

}  // namespace camerad
