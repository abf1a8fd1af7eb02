// What the driver is asked and told directly: ranges, shutter, lens, day and night, commands.
#include "apps/camerad/api/Call.h"
#include "apps/camerad/api/StrictJson.h"
#include "apps/camerad/host/Views.h"

#include "apps/shared/NearestMatch.h"
#include "apps/shared/Text.h"

#include <algorithm>

namespace camerad {

namespace {

using nlohmann::json;

constexpr std::size_t kMostCheckBytes = 1024;

const std::vector<std::string>& lensActions() {
    static const std::vector<std::string> vecActions = {"zoom-in",    "zoom-out",  "focus-near", "focus-far",
                                                        "auto-focus", "iris-open", "iris-close", "lens-reset"};
    return vecActions;
}

HttpResponse ranges(Api& p_stApi, const HttpRequest& p_stRequest) {
    return jsonAnswer(toJson(channelOf(p_stApi, p_stRequest).ranges()));
}

HttpResponse putShutter(Api& p_stApi, const HttpRequest& p_stRequest) {
    ChannelHost& channel = channelOf(p_stApi, p_stRequest);
    BodyReader objBody(p_stRequest);
    objBody.fields().need("place");
    const std::optional<int> place = objBody.fields().integer("place", 0);
    objBody.finish();
    channel.setShutter(*place, actorOf(p_stRequest));
    return jsonAnswer(toJson(channel.shutter()));
}

template <int nStep>
HttpResponse stepShutter(Api& p_stApi, const HttpRequest& p_stRequest) {
    ChannelHost& channel = channelOf(p_stApi, p_stRequest);
    channel.stepShutter(nStep, actorOf(p_stRequest));
    return jsonAnswer(toJson(channel.shutter()));
}

HttpResponse putLens(Api& p_stApi, const HttpRequest& p_stRequest) {
    ChannelHost& channel = channelOf(p_stApi, p_stRequest);
    BodyReader objBody(p_stRequest);
    FieldReader& fields = objBody.fields();
    ChannelHost::LensTarget target;
    target.zoom = fields.integer("zoom");
    target.focus = fields.integer("focus");
    target.iris = fields.integer("iris");
    target.focusMode = fields.integer("focusMode");
    fields.needAny();
    objBody.finish();
    channel.moveLens(target, actorOf(p_stRequest));
    return jsonAnswer(toJson(channel.lens()));
}

HttpResponse lensAction(Api& p_stApi, const HttpRequest& p_stRequest) {
    ChannelHost& channel = channelOf(p_stApi, p_stRequest);
    const std::string& action = p_stRequest.mapPath.at("action");
    const std::vector<std::string>& actions = lensActions();
    if (actions.end() == std::find(actions.begin(), actions.end(), action)) {
        const std::string nearest = apps::didYouMean(apps::nearestMatch(action, actions));
        throw Refusal(Refusal::Kind::NotFound, "unknown-action",
                      "The lens knows no " + quotedText(action) +
                          (nearest.empty() ? "; it knows " + apps::join(actions, ", ") + "." : nearest));
    }
    channel.lensAction(action, actorOf(p_stRequest));
    return jsonAnswer(toJson(channel.lens()));
}

json stateOf(ChannelHost& p_objChannel) {
    return {{"state", p_objChannel.isNight() ? "night" : "day"}};
}

HttpResponse putDayNight(Api& p_stApi, const HttpRequest& p_stRequest) {
    ChannelHost& channel = channelOf(p_stApi, p_stRequest);
    BodyReader objBody(p_stRequest);
    objBody.fields().need("state");
    const std::optional<std::string> state = objBody.fields().word("state", {"day", "night"});
    objBody.finish();
    channel.setNight("night" == *state, actorOf(p_stRequest));
    return jsonAnswer(stateOf(channel));
}

HttpResponse commandStatus(Api& p_stApi, const HttpRequest& p_stRequest) {
    ChannelHost& channel = channelOf(p_stApi, p_stRequest);
    const auto command = static_cast<u32>(
        numberOf(p_stRequest.mapPath.at("number"), "The command", 0, INT32_MAX, Refusal::Kind::NotFound));
    return jsonAnswer({{"command", command}, {"running", channel.isRunning(command)}});
}

HttpResponse sensorCheck(Api& p_stApi, const HttpRequest& p_stRequest) {
    ChannelHost& channel = channelOf(p_stApi, p_stRequest);
    BodyReader objBody(p_stRequest);
    objBody.fields().need("text");
    std::optional<std::string> text = objBody.fields().text("text", kMostCheckBytes);
    objBody.finish();
    const int result = channel.sensorCheck(*text, actorOf(p_stRequest));
    return jsonAnswer({{"result", result}, {"text", *text}});
}

}  // namespace

void addLensRoutes(Router& p_objRouter, Api& p_stApi) {
    const auto add = [&](const char* p_szMethod, const char* p_szWord, std::size_t p_nBody,
                         HttpResponse (*p_pHandler)(Api&, const HttpRequest&)) {
        addRoute(p_objRouter, p_szMethod, std::string("/api/v1/channels/{channel}/") + p_szWord,
                 std::string("GET") == p_szMethod ? Access::Viewer : Access::Admin, p_nBody,
                 [&p_stApi, p_pHandler](const HttpRequest& p_stRequest) { return p_pHandler(p_stApi, p_stRequest); });
    };
    add("GET", "ranges", kNoBody, ranges);
    add("GET", "shutter", kNoBody, [](Api& p_stOwn, const HttpRequest& p_stRequest) {
        return jsonAnswer(toJson(channelOf(p_stOwn, p_stRequest).shutter()));
    });
    add("PUT", "shutter", kSmallBody, putShutter);
    add("POST", "shutter/up", kNoBody, stepShutter<1>);
    add("POST", "shutter/down", kNoBody, stepShutter<-1>);
    add("GET", "lens", kNoBody, [](Api& p_stOwn, const HttpRequest& p_stRequest) {
        return jsonAnswer(toJson(channelOf(p_stOwn, p_stRequest).lens()));
    });
    add("PUT", "lens", kSmallBody, putLens);
    add("POST", "lens/{action}", kNoBody, lensAction);
    add("GET", "day-night", kNoBody, [](Api& p_stOwn, const HttpRequest& p_stRequest) {
        return jsonAnswer(stateOf(channelOf(p_stOwn, p_stRequest)));
    });
    add("PUT", "day-night", kSmallBody, putDayNight);
    add("GET", "commands/{number}/status", kNoBody, commandStatus);
    add("POST", "sensor-check", kSmallBody, sensorCheck);
}

}  // namespace camerad
