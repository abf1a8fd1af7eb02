// Events and moving pictures, as a client reads them.
#include "tests/unit/camerad/api/Fakes.h"
#include "tests/unit/camerad/api/Schema.h"

#include <gmock/gmock.h>

#include <atomic>
#include <thread>

namespace camerad {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

bool has(const std::string& p_strText, const std::string& p_strPart) {
    return std::string::npos != p_strText.find(p_strPart);
}

std::size_t countOf(const std::string& p_strText, const std::string& p_strPart) {
    std::size_t count = 0;
    for (std::size_t at = p_strText.find(p_strPart); std::string::npos != at; at = p_strText.find(p_strPart, at + 1)) {
        ++count;
    }
    return count;
}

// What the stream wrote until the client had enough.
std::string readUntil(const HttpResponse& p_stResponse, const std::function<bool(const std::string&)>& p_fnEnough) {
    FakeSink objSink(p_fnEnough);
    p_stResponse.fnStream(objSink);
    return objSink.text();
}

TEST(Events, BeginWithHello) {
    FakeCamera camera;
    camera.objEvents.publish("scene", 0, {{"fog", 1}});
    const HttpResponse response = camera.call("GET", "/api/v1/events");
    EXPECT_EQ(response.strType, "text/event-stream");
    const std::string text = readUntil(response, [](const std::string&) { return true; });
    ASSERT_THAT(text, StartsWith("event: hello\ndata: "));
    const json hello = json::parse(text.substr(text.find('{')));
    EXPECT_EQ(hello, json({{"last", 1}, {"version", "1.1.0"}}));
    EXPECT_THAT(eventErrors("hello", hello), IsEmpty());
}

TEST(Events, WhatHappensAfterTheAnswerIsHeard) {
    FakeCamera camera;
    const HttpResponse response = camera.call("GET", "/api/v1/events");
    camera.objEvents.publish("day-night", 1, {{"channel", 1}, {"state", "night"}});
    camera.objEvents.publish("scene", 0, {{"text", "a\nb"}});
    const std::string text = readUntil(response, [](const std::string& p_strText) { return has(p_strText, "id: 2"); });
    EXPECT_THAT(text, HasSubstr("id: 1\nevent: day-night\ndata: {\"channel\":1,\"state\":\"night\"}\n\n"));
    EXPECT_THAT(text, HasSubstr("id: 2\nevent: scene\ndata: {\"text\":\"a\\nb\"}\n\n"));
}

TEST(Events, AreFilteredByChannelAndType) {
    FakeCamera camera;
    const HttpResponse response = camera.call("GET", "/api/v1/events?channel=2&types=scene,parameter");
    camera.objEvents.publish("parameter", 1, {{"n", 1}});
    camera.objEvents.publish("parameter", 2, {{"n", 2}});
    camera.objEvents.publish("clock", 0, {{"n", 3}});
    camera.objEvents.publish("scene", 0, {{"n", 4}});
    const std::string text = readUntil(response, [](const std::string& p_strText) { return has(p_strText, "id: 4"); });
    EXPECT_THAT(text, HasSubstr("id: 2\n"));
    EXPECT_THAT(text, Not(HasSubstr("id: 1\n")));
    EXPECT_THAT(text, Not(HasSubstr("id: 3\n")));
}

TEST(Events, AWrongFilterIsRefused) {
    FakeCamera camera;
    for (const char* query : {"channel=3", "channel=0", "channel=x", "channel=", "types=", "types=scene,",
                              "types=hallo", "type=scene", "channel=1&channel=2"}) {
        EXPECT_EQ(camera.call("GET", std::string("/api/v1/events?") + query).nStatus, 422) << query;
    }
    EXPECT_THAT(camera.call("GET", "/api/v1/events?types=paramter").strBody,
                HasSubstr("did you mean \\\"parameter\\\"?"));
    EXPECT_EQ(camera.objEvents.listeners(), 0U);
}

TEST(Events, WhoComesBackGetsWhatWasMissed) {
    FakeCamera camera;
    for (int i = 1; i <= 5; ++i) {
        camera.objEvents.publish("scene", 0, {{"n", i}});
    }
    const HttpResponse response = camera.call("GET", "/api/v1/events", "", {{"last-event-id", "3"}});
    const std::string text = readUntil(response, [](const std::string& p_strText) { return has(p_strText, "id: 5"); });
    EXPECT_THAT(text, HasSubstr("id: 4\n"));
    EXPECT_THAT(text, Not(HasSubstr("id: 3\n")));
    EXPECT_THAT(text, Not(HasSubstr("resync")));
}

TEST(Events, WhoHasANumberThatWasNeverGivenIsToldToAskAnew) {
    FakeCamera camera;
    camera.objEvents.publish("scene", 0, {{"n", 1}});
    for (const char* number : {"77", "18446744073709551615", "99999999999999999999999999", "abc", "-1", "1.5"}) {
        const HttpResponse response = camera.call("GET", "/api/v1/events?types=clock", "", {{"last-event-id", number}});
        EXPECT_THAT(readUntil(response, [](const std::string& p_strText) { return has(p_strText, "event: resync\n"); }),
                    HasSubstr("event: resync\n"))
            << number;
    }
}

TEST(Events, ACommentComesWhileNothingHappens) {
    FakeCamera camera;
    const HttpResponse response = camera.call("GET", "/api/v1/events");
    const std::string text =
        readUntil(response, [](const std::string& p_strText) { return countOf(p_strText, "\n:\n\n") >= 2; });
    EXPECT_EQ(countOf(text, "data:"), 1U);
}

TEST(Events, EndWhenTheCameraEnds) {
    FakeCamera camera;
    const HttpResponse response = camera.call("GET", "/api/v1/events");
    camera.objEvents.close();
    readUntil(response, [](const std::string&) { return false; });  // returns
}

TEST(Events, EndWhenTheSessionEnds) {
    FakeCamera camera;
    const HttpResponse response = camera.call("GET", "/api/v1/events");
    camera.objAccess.bGone = true;
    const std::string text = readUntil(response, [](const std::string&) { return false; });  // returns
    EXPECT_THAT(text, Not(HasSubstr("event: scene")));
}

TEST(Events, GoOnWhileLoginsAreSlowed) {
    FakeCamera camera;
    const HttpResponse response = camera.call("GET", "/api/v1/events");
    camera.objAccess.refusal = Refusal(Refusal::Kind::TooMany, "login-slowed", "Later.");
    EXPECT_EQ(
        countOf(readUntil(response, [](const std::string& p_strText) { return countOf(p_strText, "\n:\n\n") >= 3; }),
                "\n:\n\n"),
        3U);
}

TEST(Events, AListenerIsForgottenWhenItsStreamEnds) {
    FakeCamera camera;
    {
        const HttpResponse response = camera.call("GET", "/api/v1/events");
        EXPECT_EQ(camera.objEvents.listeners(), 1U);
        readUntil(response, [](const std::string&) { return true; });
    }
    EXPECT_EQ(camera.objEvents.listeners(), 0U);
}

TEST(Events, ManyListenersHearEverythingWhileItHappens) {
    constexpr int kListeners = 16;
    constexpr int kEvents = 300;
    FakeCamera camera;
    std::vector<HttpResponse> vecResponses;
    for (int i = 0; i < kListeners; ++i) {
        vecResponses.push_back(camera.call("GET", "/api/v1/events?types=parameter"));
    }
    std::vector<std::size_t> vecHeard(kListeners);
    std::vector<std::thread> vecThreads;
    for (int i = 0; i < kListeners; ++i) {
        vecThreads.emplace_back([&, i] {
            const auto index = static_cast<std::size_t>(i);
            const std::string text = readUntil(vecResponses[index], [](const std::string& p_strText) {
                return has(p_strText, "\"n\":" + std::to_string(kEvents) + "}");
            });
            vecHeard[index] = countOf(text, "event: parameter\n");
        });
    }
    for (int i = 1; i <= kEvents; ++i) {
        camera.objEvents.publish("parameter", 1, {{"n", i}});
    }
    for (std::thread& thread : vecThreads) {
        thread.join();
    }
    EXPECT_THAT(vecHeard, testing::Each(static_cast<std::size_t>(kEvents)));
}

TEST(Pictures, ASnapshotIsOnePicture) {
    FakeCamera camera;
    const HttpResponse response = camera.call("GET", "/api/v1/channels/1/snapshot.jpg?again=7");
    EXPECT_EQ(response.strType, "image/jpeg");
    EXPECT_EQ(response.strBody, "one picture");
    EXPECT_EQ(camera.call("GET", "/api/v1/channels/2/snapshot.jpg").nStatus, 404);
}

TEST(Pictures, TheMovingPictureIsOnePartAfterTheOther) {
    FakeCamera camera;
    const HttpResponse response = camera.call("GET", "/api/v1/channels/1/preview.mjpg?fps=5");
    EXPECT_EQ(response.strType, "multipart/x-mixed-replace; boundary=frame");
    const std::string text =
        readUntil(response, [](const std::string& p_strText) { return has(p_strText, "picture 3\r\n"); });
    EXPECT_EQ(text,
              "--frame\r\nContent-Type: image/jpeg\r\nContent-Length: 9\r\n\r\npicture 1\r\n"
              "--frame\r\nContent-Type: image/jpeg\r\nContent-Length: 9\r\n\r\npicture 2\r\n"
              "--frame\r\nContent-Type: image/jpeg\r\nContent-Length: 9\r\n\r\npicture 3\r\n");
    EXPECT_EQ(camera.feed().dFrames, 5.0);
}

TEST(Pictures, ARateBeyondTheLimitsIsRefused) {
    FakeCamera camera;
    for (const char* rate : {"0", "26", "-1", "x", "1.5", ""}) {
        EXPECT_EQ(camera.call("GET", std::string("/api/v1/channels/1/preview.mjpg?fps=") + rate).nStatus, 422) << rate;
    }
}

TEST(Pictures, TheMovingPictureEndsWithTheFeedAndWithTheSession) {
    FakeCamera camera;
    const HttpResponse first = camera.call("GET", "/api/v1/channels/1/preview.mjpg");
    camera.objAccess.bGone = true;
    EXPECT_THAT(readUntil(first, [](const std::string&) { return false; }), Not(IsEmpty()));  // returns
    camera.objAccess.bGone = false;
    const HttpResponse second = camera.call("GET", "/api/v1/channels/1/preview.mjpg");
    camera.feed().close();
    EXPECT_THAT(readUntil(second, [](const std::string&) { return false; }), IsEmpty());  // returns
}

}  // namespace
}  // namespace camerad
