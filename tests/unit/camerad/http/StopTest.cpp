// The server ends with everything it has begun.
#include "tests/unit/camerad/http/HttpSupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

namespace {

using camerad::Access;
using camerad::HttpRequest;
using camerad::HttpResponse;
using camerad::HttpSink;
using camerad::Router;
using camerad::Server;
using camerad::ServerSettings;
using testing::HasSubstr;

TEST(HttpStop, EndsConnectionsInEveryPhase) {
    TestServer server({}, [](Router& p_objRouter) {
        p_objRouter.add({"GET", "/stream", Access::Everybody, 0, [](const HttpRequest&) {
                             HttpResponse response;
                             response.fnStream = [](HttpSink& p_objSink) {
                                 while (p_objSink.write(std::string(50000, 's'))) {
                                 }
                                 EXPECT_FALSE(p_objSink.isOpen());
                             };
                             return response;
                         }});
    });
    const RawClient idle(server.port());
    const RawClient inHeader(server.port());
    inHeader.send("GET /hello HTTP/1.1\r\n");
    const RawClient inBody(server.port());
    inBody.send("POST /echo HTTP/1.1\r\nHost: localhost\r\nContent-Length: 5\r\n\r\nhe");
    RawClient between(server.port());
    between.send(getRequest("/hello"));
    EXPECT_EQ(between.answer().strBody, "hello");
    const RawClient stream(server.port());
    stream.send(getRequest("/stream"));
    EXPECT_THAT(stream.readSome(), HasSubstr("200"));
    const RawClient stuckStream(server.port());
    stuckStream.narrow();
    stuckStream.send(getRequest("/stream"));
    EXPECT_TRUE(eventually([&server] { return 6U == server.counters().nConnections; }));

    const auto begin = std::chrono::steady_clock::now();
    server.server().stop();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(4));  // no deadline was waited for
    EXPECT_EQ(server.counters().nConnections, 0U);
    EXPECT_EQ(server.counters().nStreams, 0U);
    EXPECT_TRUE(idle.isClosedByServer());
    EXPECT_TRUE(inHeader.isClosedByServer());
    EXPECT_TRUE(inBody.isClosedByServer());
    EXPECT_TRUE(between.isClosedByServer());
    EXPECT_TRUE(stream.isClosedByServer());
}

TEST(HttpStop, WaitsForAHandler) {
    Gate inside;
    Gate goOn;
    std::atomic<bool> done{false};
    TestServer server({}, [&](Router& p_objRouter) {
        p_objRouter.add({"GET", "/slow", Access::Everybody, 0, [&](const HttpRequest&) {
                             inside.open();
                             goOn.wait();
                             done = true;
                             return HttpResponse();
                         }});
    });
    const RawClient client(server.port());
    client.send(getRequest("/slow"));
    ASSERT_TRUE(inside.wait());
    std::thread stopper([&server, &done] {
        server.server().stop();
        EXPECT_TRUE(done);
    });
    goOn.open();
    stopper.join();
}

TEST(HttpStop, LeavesNeitherDescriptorsNorThreads) {
    const std::size_t descriptors = openDescriptors();
    const std::size_t threads = runningThreads();
    for (int round = 0; round < 3; ++round) {
        const TestServer server;
        std::vector<std::unique_ptr<RawClient>> clients;
        for (int i = 0; i < 20; ++i) {
            clients.push_back(std::make_unique<RawClient>(server.port()));
            clients.back()->send(getRequest("/hello"));
            EXPECT_EQ(clients.back()->answer().strBody, "hello");
        }
    }
    EXPECT_EQ(openDescriptors(), descriptors);
    // The system lists a thread for a moment after it has ended: these, and when they were counted those of before.
    EXPECT_TRUE(eventually([threads] { return runningThreads() <= threads; }));
}

TEST(HttpStop, ThreadsOfEndedConnectionsGoWhileItServes) {
    const TestServer server;
    const std::size_t threads = runningThreads();
    const std::size_t descriptors = openDescriptors();
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(server.get("/hello").nStatus, 200);
    }
    EXPECT_TRUE(eventually([threads] { return runningThreads() <= threads; }));
    EXPECT_EQ(openDescriptors(), descriptors);
}

TEST(HttpStop, StoppingTwiceIsStoppingOnce) {
    TestServer server;
    server.server().stop();
    server.server().stop();
}

TEST(HttpStop, NobodyListensAfterwards) {
    auto server = std::make_unique<TestServer>();
    const int port = server->port();
    server.reset();
    EXPECT_THROW(RawClient{port}, std::runtime_error);
}

TEST(HttpStart, AnAddressThatIsTakenIsSaid) {
    const TestServer first;
    ServerSettings settings;
    settings.nPort = first.port();
    const Router router;
    FakeAccess access;
    const std::unique_ptr<Server> second = Server::create(settings, router, access);
    try {
        second->start();
        FAIL() << "two servers at one port";
    } catch (const std::runtime_error& error) {
        EXPECT_THAT(error.what(), HasSubstr("port " + std::to_string(first.port())));
    }
}

TEST(HttpStart, AnAddressThatIsNoneIsSaid) {
    ServerSettings settings;
    settings.strAddress = "300.1.2.3";
    const Router router;
    FakeAccess access;
    const std::unique_ptr<Server> server = Server::create(settings, router, access);
    EXPECT_THROW(server->start(), std::runtime_error);
}

TEST(HttpStart, TellsItsAddress) {
    TestServer server;
    EXPECT_EQ(server.server().url(), "http://127.0.0.1:" + std::to_string(server.port()) + "/");
}

}  // namespace
