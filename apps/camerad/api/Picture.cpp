// What a channel sees: one picture, or the moving one.
#include "apps/camerad/api/Call.h"
#include "apps/camerad/api/StreamGuard.h"

namespace camerad {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kSnapshotTime{5000};
constexpr int kMostFrames = 25;  // a second
constexpr int kUsualFrames = 15;

PictureFeed& feedOf(Api& p_stApi, const HttpRequest& p_stRequest) {
    const int channel = channelOf(p_stApi, p_stRequest).number();
    const auto at = p_stApi.mapFeeds.find(channel);
    if (p_stApi.mapFeeds.end() == at) {
        throw Refusal(Refusal::Kind::NotFound, "no-picture", "Channel " + std::to_string(channel) + " has no picture.");
    }
    return *at->second;
}

HttpResponse snapshot(Api& p_stApi, const HttpRequest& p_stRequest) {
    HttpResponse response;
    response.strType = "image/jpeg";
    response.strBody = *feedOf(p_stApi, p_stRequest).snapshot(kSnapshotTime);
    return response;
}

HttpResponse preview(Api& p_stApi, const HttpRequest& p_stRequest) {
    PictureFeed& feed = feedOf(p_stApi, p_stRequest);
    const auto frames = static_cast<double>(numberOf(p_stRequest.query("fps", std::to_string(kUsualFrames)), "\"fps\"",
                                                     1, kMostFrames, Refusal::Kind::BadValue));
    auto guard = std::make_shared<StreamGuard>(p_stApi.objAccess, p_stRequest, p_stApi.nHeartbeat);

    HttpResponse response;
    response.strType = "multipart/x-mixed-replace; boundary=frame";
    response.fnStream = [&feed, guard, frames](HttpSink& p_objSink) {
        const std::unique_ptr<PictureFeed::Viewer> viewer = feed.watch(frames);
        while (p_objSink.isOpen() && !viewer->isClosed() && guard->mayGoOn()) {
            const Frame frame = viewer->next(kLookAtClient);
            if (nullptr == frame) {
                continue;
            }
            const std::string head =
                "--frame\r\nContent-Type: image/jpeg\r\nContent-Length: " + std::to_string(frame->size()) + "\r\n\r\n";
            if (!p_objSink.write(head) || !p_objSink.write(*frame) || !p_objSink.write("\r\n")) {
                return;
            }
        }
    };
    return response;
}

}  // namespace

void addPictureRoutes(Router& p_objRouter, Api& p_stApi) {
    const std::string base = "/api/v1/channels/{channel}/";
    addRoute(p_objRouter, "GET", base + "snapshot.jpg", Access::Viewer, kNoBody,
             [&p_stApi](const HttpRequest& p_stRequest) { return snapshot(p_stApi, p_stRequest); });
    addRoute(p_objRouter, "GET", base + "preview.mjpg", Access::Viewer, kNoBody,
             [&p_stApi](const HttpRequest& p_stRequest) { return preview(p_stApi, p_stRequest); });
}

}  // namespace camerad
