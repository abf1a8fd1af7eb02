// What happened, what the library says, and which version this is.
#include "apps/camerad/api/Call.h"
#include "apps/camerad/api/StrictJson.h"
#include "apps/camerad/host/Views.h"

namespace camerad {

namespace {

using nlohmann::json;

constexpr int kUsualLimit = 500;
constexpr int kMostEntries = 5000;  // as many as are kept
constexpr int kHighestLevel = 8;    // of the library's messages

HttpResponse log(Api& p_stApi, const HttpRequest& p_stRequest) {
    knownQuery(p_stRequest, {"after", "limit"});
    const auto after = static_cast<std::uint64_t>(
        numberOf(p_stRequest.query("after", "0"), "\"after\"", 0, std::int64_t{1} << 39, Refusal::Kind::BadValue));
    const auto limit = static_cast<std::size_t>(numberOf(p_stRequest.query("limit", std::to_string(kUsualLimit)),
                                                         "\"limit\"", 1, kMostEntries, Refusal::Kind::BadValue));
    json entries = json::array();
    std::uint64_t last = after;
    for (const LogEntry& entry : p_stApi.objHost.log(after, limit)) {
        entries.push_back(toJson(entry));
        last = entry.nNumber;
    }
    return jsonAnswer({{"entries", std::move(entries)}, {"last", last}});
}

HttpResponse putLevel(Api& p_stApi, const HttpRequest& p_stRequest) {
    BodyReader objBody(p_stRequest);
    objBody.fields().need("level");
    const std::optional<int> level = objBody.fields().integer("level", 0, kHighestLevel);
    objBody.finish();
    p_stApi.objHost.setMessageLevel(*level, actorOf(p_stRequest));
    return jsonAnswer(toJson(p_stApi.objHost.messageLevel()));
}

}  // namespace

void addLogRoutes(Router& p_objRouter, Api& p_stApi) {
    addRoute(p_objRouter, "GET", "/api/v1/log", Access::Viewer, kNoBody,
             [&p_stApi](const HttpRequest& p_stRequest) { return log(p_stApi, p_stRequest); });
    addRoute(p_objRouter, "GET", "/api/v1/messages/level", Access::Viewer, kNoBody,
             [&p_stApi](const HttpRequest&) { return jsonAnswer(toJson(p_stApi.objHost.messageLevel())); });
    addRoute(p_objRouter, "PUT", "/api/v1/messages/level", Access::Admin, kSmallBody,
             [&p_stApi](const HttpRequest& p_stRequest) { return putLevel(p_stApi, p_stRequest); });
    addRoute(p_objRouter, "GET", "/api/v1/version", Access::Viewer, kNoBody, [&p_stApi](const HttpRequest&) {
        return jsonAnswer({{"name", "camerad"}, {"version", p_stApi.strVersion}, {"api", "v1"}});
    });
}

}  // namespace camerad
