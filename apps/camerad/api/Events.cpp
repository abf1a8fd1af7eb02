// GET /api/v1/events: what happens in the camera, as it happens.
#include "apps/camerad/api/Call.h"
#include "apps/camerad/api/StreamGuard.h"
#include "apps/camerad/api/StrictJson.h"
#include "apps/shared/NearestMatch.h"
#include "apps/shared/Text.h"

#include <algorithm>

namespace camerad {

namespace {

using nlohmann::json;
using std::chrono::milliseconds;

const std::vector<std::string>& eventTypes() {
    static const std::vector<std::string> vecTypes = {"parameter", "scheme", "schemes",   "ranges", "driver",
                                                      "message",   "lens",   "day-night", "clock",  "scene",
                                                      "faults",    "level",  "busy",      "resync"};
    return vecTypes;
}

std::vector<std::string> typesOf(const std::string& p_strList) {
    const std::vector<std::string>& known = eventTypes();
    std::vector<std::string> vecTypes;
    for (std::size_t start = 0; start <= p_strList.size();) {
        const std::size_t end = std::min(p_strList.find(',', start), p_strList.size());
        const std::string type = p_strList.substr(start, end - start);
        start = end + 1;
        if (known.end() == std::find(known.begin(), known.end(), type)) {
            const std::string nearest = apps::didYouMean(apps::nearestMatch(type, known));
            throw Refusal(Refusal::Kind::BadValue, "bad-value",
                          "There is no type of event " + quotedText(type) +
                              (nearest.empty() ? "; there are " + apps::join(known, ", ") + "." : nearest));
        }
        if (vecTypes.end() == std::find(vecTypes.begin(), vecTypes.end(), type)) {
            vecTypes.push_back(type);
        }
    }
    return vecTypes;
}

// The number that a listener has seen last; a text that is none is a number that was never given, so that he is told to
// ask for everything anew.
std::uint64_t lastSeen(const std::string& p_strText) {
    constexpr std::size_t kMostDigits = 18;
    if (p_strText.empty()) {
        return 0;
    }
    const bool digits = p_strText.size() <= kMostDigits &&
                        std::all_of(p_strText.begin(), p_strText.end(),
                                    [](char p_cLetter) { return '0' <= p_cLetter && p_cLetter <= '9'; });
    return digits ? std::stoull(p_strText) : UINT64_MAX;
}

std::string textOf(const Event& p_stEvent) {
    return "id: " + std::to_string(p_stEvent.nNumber) + "\nevent: " + p_stEvent.strType +
           "\ndata: " + p_stEvent.strData + "\n\n";
}

HttpResponse events(Api& p_stApi, const HttpRequest& p_stRequest) {
    knownQuery(p_stRequest, {"channel", "types"});
    EventFilter filter;
    if (0 != p_stRequest.mapQuery.count("channel")) {
        const std::vector<int> vecChannels = p_stApi.objHost.channels();
        filter.nChannel = static_cast<int>(numberOf(p_stRequest.query("channel"), "\"channel\"", vecChannels.front(),
                                                    vecChannels.back(), Refusal::Kind::BadValue));
        p_stApi.objHost.channel(filter.nChannel);
    }
    if (0 != p_stRequest.mapQuery.count("types")) {
        filter.vecTypes = typesOf(p_stRequest.query("types"));
    }
    // He listens before he is answered: what he changes once he has the answer reaches him.
    const std::shared_ptr<EventHub::Subscription> subscription =
        p_stApi.objEvents.subscribe(filter, lastSeen(p_stRequest.header("last-event-id")));
    const json hello = {{"last", p_stApi.objEvents.lastNumber()}, {"version", p_stApi.strVersion}};
    auto guard = std::make_shared<StreamGuard>(p_stApi.objAccess, p_stRequest, p_stApi.nHeartbeat);

    HttpResponse response;
    response.strType = "text/event-stream";
    response.fnStream = [subscription, guard, first = "event: hello\ndata: " + hello.dump() + "\n\n",
                         heartbeat = p_stApi.nHeartbeat](HttpSink& p_objSink) {
        using Clock = std::chrono::steady_clock;
        if (!p_objSink.write(first)) {
            return;
        }
        Clock::time_point written = Clock::now();
        while (p_objSink.isOpen() && !subscription->isClosed() && guard->mayGoOn()) {
            std::string text;
            for (const EventPtr& event : subscription->wait(std::min(kLookAtClient, heartbeat))) {
                text += textOf(*event);
            }
            if (text.empty() && Clock::now() - written < heartbeat) {
                continue;
            }
            if (!p_objSink.write(text.empty() ? ":\n\n" : text)) {
                return;
            }
            written = Clock::now();
        }
    };
    return response;
}

}  // namespace

void addEventRoutes(Router& p_objRouter, Api& p_stApi) {
    addRoute(p_objRouter, "GET", "/api/v1/events", Access::Viewer, kNoBody,
             [&p_stApi](const HttpRequest& p_stRequest) { return events(p_stApi, p_stRequest); });
}

}  // namespace camerad
