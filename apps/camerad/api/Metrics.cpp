// Whether the camera is well, and figures for those who watch over many.
#include "apps/camerad/api/Call.h"
#include "apps/camerad/api/MetricsText.h"
#include "apps/camerad/http/Status.h"

#include <sys/resource.h>
#include <unistd.h>

#include <fstream>
#include <limits>

namespace camerad {

namespace {

using nlohmann::json;

HttpResponse health(Api& p_stApi, const HttpRequest&) {
    json channels = json::object();
    bool good = true;
    for (const int number : p_stApi.objHost.channels()) {
        const ChannelView view = p_stApi.objHost.channel(number).view();
        const char* const state = !view.strBusyWith.empty() ? "busy" : (view.bReady ? "ready" : "down");
        good = good && (view.bReady || !view.strBusyWith.empty());
        channels[std::to_string(number)] = state;
    }
    return jsonAnswer({{"status", good ? "ok" : "failing"}, {"channels", std::move(channels)}},
                      good ? 200 : kUnavailable);
}

double residentBytes() {
    std::ifstream stream("/proc/self/statm");
    double total = 0;
    double resident = 0;
    stream >> total >> resident;
    return stream ? resident * static_cast<double>(sysconf(_SC_PAGESIZE)) : 0;
}

double seconds(const timeval& p_stTime) {
    constexpr double kMicroseconds = 1e6;
    return static_cast<double>(p_stTime.tv_sec) + static_cast<double>(p_stTime.tv_usec) / kMicroseconds;
}

double processorSeconds() {
    rusage usage{};
    return 0 == getrusage(RUSAGE_SELF, &usage) ? seconds(usage.ru_utime) + seconds(usage.ru_stime) : 0;
}

double number(std::uint64_t p_nCount) {
    return static_cast<double>(p_nCount);
}

void addHost(MetricsText& p_objText, const HostCounters& p_stCounters) {
    p_objText.begin("camerad_driver_calls_total", "counter", "Calls of the image-adjust driver.");
    for (const auto& [call, counts] : p_stCounters.mapDriver) {
        p_objText.sample(number(counts.nCalls), {{"command", std::to_string(call.first)}, {"option", call.second}});
    }
    p_objText.begin("camerad_driver_failures_total", "counter", "Calls of the image-adjust driver that failed.");
    for (const auto& [call, counts] : p_stCounters.mapDriver) {
        p_objText.sample(number(counts.nFailures), {{"command", std::to_string(call.first)}, {"option", call.second}});
    }
    p_objText.begin("camerad_notifications_total", "counter", "Notifications of the video module.");
    for (const auto& [key, counts] : p_stCounters.mapNotifications) {
        p_objText.sample(number(counts.nCalls), {{"key", std::to_string(key)}});
    }
    p_objText.begin("camerad_scheme_switches_total", "counter", "Switches from one scheme to another, and why.");
    for (const auto& [why, count] : p_stCounters.mapSwitches) {
        p_objText.sample(number(count), {{"why", why}});
    }
    p_objText.single("camerad_library_messages_total", "counter", "Messages of the library.",
                     number(p_stCounters.nMessages));
}

// "GET /api/v1/..." and the status stand in one label each; so does the route of the histogram.
void addServer(MetricsText& p_objText, const ServerCounters& p_stCounters) {
    p_objText.begin("camerad_http_requests_total", "counter", "Requests answered, by route and status.");
    std::map<std::string, ServerCounters::Requests> mapRoutes;
    for (const auto& [request, counts] : p_stCounters.mapRequests) {
        p_objText.sample(number(counts.nCount), {{"route", request.first}, {"status", std::to_string(request.second)}});
        ServerCounters::Requests& route = mapRoutes[request.first];
        route.nCount += counts.nCount;
        route.dSeconds += counts.dSeconds;
        for (const auto& [bound, count] : counts.mapBuckets) {
            route.mapBuckets[bound] += count;
        }
    }
    p_objText.begin("camerad_http_request_seconds", "histogram", "Time until a request was answered, by route.");
    for (const auto& [route, counts] : mapRoutes) {
        std::uint64_t sum = 0;
        for (const auto& [bound, count] : counts.mapBuckets) {
            sum += count;
            if (std::numeric_limits<double>::infinity() != bound) {
                p_objText.sample(number(sum), {{"route", route}, {"le", metricNumber(bound)}}, "_bucket");
            }
        }
        p_objText.sample(number(counts.nCount), {{"route", route}, {"le", "+Inf"}}, "_bucket");
        p_objText.sample(counts.dSeconds, {{"route", route}}, "_sum");
        p_objText.sample(number(counts.nCount), {{"route", route}}, "_count");
    }
    p_objText.single("camerad_http_connections", "gauge", "Connections now.", number(p_stCounters.nConnections));
    p_objText.single("camerad_http_streams", "gauge", "Streams now: events and moving pictures.",
                     number(p_stCounters.nStreams));
    p_objText.single("camerad_http_refused_connections_total", "counter", "Connections beyond a limit.",
                     number(p_stCounters.nRefusedConnections));
    p_objText.single("camerad_http_timeouts_total", "counter", "Connections that were too slow.",
                     number(p_stCounters.nTimeouts));
}

void addPictures(MetricsText& p_objText, Api& p_stApi) {
    std::uint64_t bytes = 0;
    std::size_t viewers = 0;
    double drawing = 0;
    p_objText.begin("camerad_picture_frames_total", "counter", "Pictures drawn.");
    for (const auto& [channel, feed] : p_stApi.mapFeeds) {
        const PictureFeed::Counters counters = feed->counters();
        p_objText.sample(number(counters.nFrames), {{"channel", std::to_string(channel)}});
        bytes += counters.nBytes;
        viewers += counters.nViewers;
        drawing += counters.dSeconds;
    }
    p_objText.single("camerad_picture_bytes_total", "counter", "Bytes of the pictures drawn.", number(bytes));
    p_objText.single("camerad_picture_cpu_seconds_total", "counter", "Processor time of drawing.", drawing);
    p_objText.single("camerad_picture_viewers", "gauge", "Viewers of the moving picture now.", number(viewers));
}

HttpResponse metrics(Api& p_stApi, double p_dStarted) {
    MetricsText text;
    addHost(text, p_stApi.objHost.counters());
    addServer(text, p_stApi.fnCounters ? p_stApi.fnCounters() : ServerCounters{});
    text.single("camerad_event_listeners", "gauge", "Listeners to events now.", number(p_stApi.objEvents.listeners()));
    text.single("camerad_event_overflows_total", "counter", "How often a listener was too slow and lost its queue.",
                number(p_stApi.objEvents.overflows()));
    addPictures(text, p_stApi);
    const AccessControl::Counters access = p_stApi.objAccess.counters();
    text.begin("camerad_logins_total", "counter", "Logins by their result.");
    text.sample(number(access.nLogins), {{"result", "ok"}});
    text.sample(number(access.nFailedLogins), {{"result", "failed"}});
    text.sample(number(access.nSlowedLogins), {{"result", "slowed"}});
    text.single("camerad_flash_writes_total", "counter",
                "Files written to flash: stored schemes and their version, settings, message level, accounts.",
                number(p_stApi.objHost.counters().nFlashWrites + access.nFlashWrites));
    text.single("camerad_sessions", "gauge", "Sessions now.", number(access.nSessions));
    text.single("process_resident_memory_bytes", "gauge", "Memory of the process that is in use.", residentBytes());
    text.single("process_cpu_seconds_total", "counter", "Processor time of the process.", processorSeconds());
    text.single("process_start_time_seconds", "gauge", "When the process began to serve, in seconds since 1970.",
                p_dStarted);

    HttpResponse response;
    response.strType = "text/plain; version=0.0.4; charset=utf-8";
    response.strBody = text.text();
    return response;
}

}  // namespace

void addMetricsRoutes(Router& p_objRouter, Api& p_stApi) {
    const double started = std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
    addRoute(p_objRouter, "GET", "/healthz", Access::Everybody, kNoBody,
             [&p_stApi](const HttpRequest& p_stRequest) { return health(p_stApi, p_stRequest); });
    addRoute(p_objRouter, "GET", "/metrics", Access::Viewer, kNoBody,
             [&p_stApi, started](const HttpRequest&) { return metrics(p_stApi, started); });
}

}  // namespace camerad
