// Schemes: which one is in force, who decides it, when, and how they are called.
#include "apps/camerad/api/Call.h"
#include "apps/camerad/api/StrictJson.h"
#include "apps/camerad/host/SchemeRules.h"
#include "apps/camerad/host/Views.h"

namespace camerad {

namespace {

constexpr int kMinutesOfHour = 60;
constexpr std::size_t kMostSchemeNameBytes = 4 * kLongestSchemeName;  // of UTF-8

HttpResponse schemes(Api& p_stApi, const HttpRequest& p_stRequest) {
    ChannelHost& channel = channelOf(p_stApi, p_stRequest);
    return jsonAnswer(toJson(channel.schemes(), channel.number()));
}

HttpResponse patchSchemes(Api& p_stApi, const HttpRequest& p_stRequest) {
    ChannelHost& channel = channelOf(p_stApi, p_stRequest);
    BodyReader objBody(p_stRequest);
    FieldReader& fields = objBody.fields();
    const std::optional<int> current = fields.integer("current", 0, channel.schemes().nFactory);
    const std::optional<bool> automatic = fields.flag("automatic");
    const std::optional<std::string> follow = fields.word("follow", {"nothing", "schedule", "day-night"});
    fields.needAny();
    objBody.finish();

    // What follows by itself ends before a scheme is chosen, and begins after it.
    const Actor actor = actorOf(p_stRequest);
    if (automatic && !*automatic) {
        channel.setAutomatic(false, actor);
    }
    if (follow) {
        channel.setFollow(*follow, actor);
    }
    if (current) {
        channel.setScheme(*current, actor);
    }
    if (automatic && *automatic) {
        channel.setAutomatic(true, actor);
    }
    return jsonAnswer(toJson(channel.schemes(), channel.number()));
}

HttpResponse patchScheme(Api& p_stApi, const HttpRequest& p_stRequest) {
    ChannelHost& channel = channelOf(p_stApi, p_stRequest);
    const SchemesView view = channel.schemes();
    const int scheme =
        static_cast<int>(numberOf(p_stRequest.mapPath.at("scheme"), "The scheme", 0,
                                  static_cast<std::int64_t>(view.vecSchemes.size()) - 1, Refusal::Kind::NotFound));
    BodyReader objBody(p_stRequest);
    FieldReader& fields = objBody.fields();
    const std::optional<std::string> name = fields.text("name", kMostSchemeNameBytes);
    std::optional<Window> window;
    if (std::optional<FieldReader> times = fields.object("window")) {
        times->need("start");
        times->need("end");
        const int start = times->minute("start").value_or(0);
        const int end = times->minute("end").value_or(0);
        times->refuseUnknown();
        window = Window{start / kMinutesOfHour, start % kMinutesOfHour, end / kMinutesOfHour, end % kMinutesOfHour};
    }
    fields.needAny();
    objBody.finish();

    const Actor actor = actorOf(p_stRequest);
    if (window) {
        channel.setWindow(scheme, *window, actor);
    }
    if (name) {
        channel.setSchemeName(scheme, *name, actor);
    }
    return jsonAnswer(toJson(channel.schemes(), channel.number()));
}

}  // namespace

void addSchemeRoutes(Router& p_objRouter, Api& p_stApi) {
    const std::string base = "/api/v1/channels/{channel}/schemes";
    addRoute(p_objRouter, "GET", base, Access::Viewer, kNoBody,
             [&p_stApi](const HttpRequest& p_stRequest) { return schemes(p_stApi, p_stRequest); });
    addRoute(p_objRouter, "PATCH", base, Access::Admin, kSmallBody,
             [&p_stApi](const HttpRequest& p_stRequest) { return patchSchemes(p_stApi, p_stRequest); });
    addRoute(p_objRouter, "PATCH", base + "/{scheme}", Access::Admin, kSmallBody,
             [&p_stApi](const HttpRequest& p_stRequest) { return patchScheme(p_stApi, p_stRequest); });
}

}  // namespace camerad
