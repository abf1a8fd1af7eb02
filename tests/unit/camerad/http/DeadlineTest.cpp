// Every phase of a connection has its time. The times here are short, and each test waits for the server to close.
#include "tests/unit/camerad/http/HttpSupport.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

using camerad::ServerSettings;
using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

constexpr milliseconds kShort{150};
constexpr milliseconds kNever{60000};

// All times but the one of a test are so long that it would give up first.
ServerSettings patient() {
    ServerSettings settings;
    settings.nHandshakeTime = kNever;
    settings.nHeaderTime = kNever;
    settings.nBodyTime = kNever;
    settings.nIdleTime = kNever;
    settings.nWriteTime = kNever;
    return settings;
}

TEST(HttpDeadline, AHeaderThatDoesNotEnd) {
    ServerSettings settings = patient();
    settings.nHeaderTime = kShort;
    const TestServer server(settings);
    RawClient client(server.port());
    client.send("GET /hello HTTP/1.1\r\nHost: loc");
    const RawAnswer answer = parseAnswer(client.readToEnd());
    EXPECT_EQ(answer.nStatus, 408);
    EXPECT_EQ(answer.problem(), "too-slow");
    EXPECT_TRUE(client.isClosedByServer());
    EXPECT_EQ(server.counters().nTimeouts, 1U);
}

TEST(HttpDeadline, AHeaderByteByByteGainsNoTime) {
    ServerSettings settings = patient();
    settings.nHeaderTime = kShort;
    const TestServer server(settings);
    RawClient client(server.port());
    std::thread drip([&client] {
        client.send("GET /");
        while (client.send("a")) {
            std::this_thread::yield();
        }
    });
    EXPECT_EQ(parseAnswer(client.readToEnd()).nStatus / 100, 4);  // too slow, or too long where bytes drip fast
    drip.join();
}

TEST(HttpDeadline, ABodyThatDoesNotCome) {
    ServerSettings settings = patient();
    settings.nBodyTime = kShort;
    const TestServer server(settings);
    for (const char* const rest : {"Content-Length: 5\r\n\r\nhel", "Transfer-Encoding: chunked\r\n\r\n5\r\nhel"}) {
        RawClient client(server.port());
        client.send(std::string("POST /echo HTTP/1.1\r\nHost: localhost\r\n") + rest);
        const RawAnswer answer = parseAnswer(client.readToEnd());
        EXPECT_EQ(answer.nStatus, 408) << rest;
        EXPECT_EQ(answer.problem(), "too-slow") << rest;
    }
    EXPECT_EQ(server.counters().nTimeouts, 2U);
}

TEST(HttpDeadline, AClientThatNeverSpeaks) {
    ServerSettings settings = patient();
    settings.nIdleTime = kShort;
    const TestServer server(settings);
    RawClient client(server.port());
    EXPECT_EQ(client.readToEnd(), "");
    EXPECT_TRUE(client.isClosedByServer());
    EXPECT_EQ(server.counters().nTimeouts, 0U);
}

TEST(HttpDeadline, AClientThatSpeaksNoMore) {
    ServerSettings settings = patient();
    settings.nIdleTime = kShort;
    const TestServer server(settings);
    std::unique_ptr<RawClient> client;
    // The time runs before the first request, too, and a machine may be too busy to send that within it.
    EXPECT_TRUE(eventually([&] {
        client = std::make_unique<RawClient>(server.port());
        client->send(getRequest("/hello"));
        return "hello" == client->answer().strBody;
    }));
    EXPECT_TRUE(client->isClosedByServer());
}

TEST(HttpDeadline, AClientThatTakesNoAnswer) {
    ServerSettings settings = patient();
    settings.nWriteTime = kShort;
    const TestServer server(settings);
    RawClient client(server.port());
    client.narrow();
    client.send(getRequest("/big"));
    EXPECT_TRUE(eventually([&server] { return 1U == server.counters().nTimeouts; }));
    EXPECT_TRUE(eventually([&server] { return 0U == server.counters().nConnections; }));
}

TEST(HttpDeadline, AClientThatTakesNoStream) {
    ServerSettings settings = patient();
    settings.nWriteTime = kShort;
    std::atomic<bool> ended{false};
    const TestServer server(settings, [&ended](camerad::Router& p_objRouter) {
        p_objRouter.add({"GET", "/stream", camerad::Access::Everybody, 0, [&ended](const camerad::HttpRequest&) {
                             camerad::HttpResponse response;
                             response.fnStream = [&ended](camerad::HttpSink& p_objSink) {
                                 while (p_objSink.write(std::string(100000, 's'))) {
                                 }
                                 ended = true;
                             };
                             return response;
                         }});
    });
    RawClient client(server.port());
    client.narrow();
    client.send(getRequest("/stream"));
    EXPECT_TRUE(eventually([&ended] { return ended.load(); }));
    EXPECT_TRUE(eventually([&server] { return 0U == server.counters().nStreams; }));
    EXPECT_EQ(server.counters().nTimeouts, 1U);
}

TEST(HttpDeadline, ManySlowClientsHoldUpNobody) {
    ServerSettings settings = patient();
    const TestServer server(settings);
    std::vector<std::unique_ptr<RawClient>> slow;
    for (int i = 0; i < 64; ++i) {
        slow.push_back(std::make_unique<RawClient>(server.port()));
        slow.back()->send("GET /hello HTTP/1.1\r\nHo");
    }
    EXPECT_TRUE(eventually([&server] { return 64U == server.counters().nConnections; }));
    EXPECT_EQ(server.get("/hello").strBody, "hello");
    for (const auto& client : slow) {
        client->send("st: localhost\r\n\r\n");
        EXPECT_EQ(client->answer().strBody, "hello");
    }
}

}  // namespace
