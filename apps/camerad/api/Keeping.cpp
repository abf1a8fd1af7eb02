// Keeping what was set, and going back.
#include "apps/camerad/api/Call.h"
#include "apps/camerad/api/StrictJson.h"
#include "apps/camerad/host/Views.h"

namespace camerad {

namespace {

nlohmann::json failuresOf(const SaveResult& p_stResult) {
    nlohmann::json failures = nlohmann::json::array();
    for (const SaveResult::Failure& failure : p_stResult.vecFailures) {
        failures.push_back({{"scheme", failure.nScheme}, {"code", failure.nCode}, {"detail", failure.strDetail}});
    }
    return failures;
}

HttpResponse save(Api& p_stApi, const HttpRequest& p_stRequest) {
    const SaveResult result = channelOf(p_stApi, p_stRequest).save(actorOf(p_stRequest));
    return jsonAnswer({{"saved", result.vecSchemes}, {"failed", failuresOf(result)}});
}

HttpResponse discard(Api& p_stApi, const HttpRequest& p_stRequest) {
    const SaveResult result = channelOf(p_stApi, p_stRequest).discard(actorOf(p_stRequest));
    return jsonAnswer({{"discarded", result.vecSchemes}, {"failed", failuresOf(result)}});
}

HttpResponse reset(Api& p_stApi, const HttpRequest& p_stRequest) {
    ChannelHost& channel = channelOf(p_stApi, p_stRequest);
    BodyReader objBody(p_stRequest);
    objBody.fields().need("confirm");
    objBody.fields().word("confirm", {"factory"});
    objBody.finish();
    channel.reset(actorOf(p_stRequest));
    return jsonAnswer(toJson(channel.view()));
}

}  // namespace

void addKeepingRoutes(Router& p_objRouter, Api& p_stApi) {
    const auto add = [&](const char* p_szWord, std::size_t p_nBody,
                         HttpResponse (*p_pHandler)(Api&, const HttpRequest&)) {
        addRoute(p_objRouter, "POST", std::string("/api/v1/channels/{channel}/") + p_szWord, Access::Admin, p_nBody,
                 [&p_stApi, p_pHandler](const HttpRequest& p_stRequest) { return p_pHandler(p_stApi, p_stRequest); });
    };
    add("save", kNoBody, save);
    add("discard", kNoBody, discard);
    add("reset", kSmallBody, reset);
    add("restore-focus-and-exposure", kNoBody, [](Api& p_stOwn, const HttpRequest& p_stRequest) {
        channelOf(p_stOwn, p_stRequest).restoreFocusAndExposure(actorOf(p_stRequest));
        return noContent();
    });
}

}  // namespace camerad
