// Answers without an end.
#include "tests/unit/camerad/http/HttpSupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <stdexcept>
#include <thread>

namespace {

using camerad::Access;
using camerad::HttpRequest;
using camerad::HttpResponse;
using camerad::HttpSink;
using camerad::Router;
using camerad::ServerSettings;
using testing::HasSubstr;

HttpResponse streamOf(const std::function<void(HttpSink&)>& p_fnStream) {
    HttpResponse response;
    response.strType = "text/event-stream";
    response.fnStream = p_fnStream;
    return response;
}

std::function<void(Router&)> withStream(const std::function<void(HttpSink&)>& p_fnStream) {
    return [p_fnStream](Router& p_objRouter) {
        p_objRouter.add({"GET", "/stream", Access::Everybody, 0,
                         [p_fnStream](const HttpRequest&) { return streamOf(p_fnStream); }});
    };
}

TEST(HttpStream, ComesInPieces) {
    const TestServer server({}, withStream([](HttpSink& p_objSink) {
                                EXPECT_TRUE(p_objSink.write("one"));
                                EXPECT_TRUE(p_objSink.write(""));
                                EXPECT_TRUE(p_objSink.isOpen());
                                EXPECT_TRUE(p_objSink.write("twelve bytes"));
                            }));
    RawClient client(server.port());
    client.send(getRequest("/stream"));
    const RawAnswer answer = parseAnswer(client.readToEnd());
    EXPECT_EQ(answer.header("transfer-encoding"), "chunked");
    EXPECT_EQ(answer.header("content-type"), "text/event-stream");
    EXPECT_EQ(answer.strBody, "3\r\none\r\nc\r\ntwelve bytes\r\n0\r\n\r\n");
}

TEST(HttpStream, TheOldProtocolGetsBytesUntilTheEnd) {
    const TestServer server({}, withStream([](HttpSink& p_objSink) { p_objSink.write("one"); }));
    RawClient client(server.port());
    client.send("GET /stream HTTP/1.0\r\nHost: localhost\r\n\r\n");
    const RawAnswer answer = parseAnswer(client.readToEnd());
    EXPECT_EQ(answer.mapHeaders.count("transfer-encoding"), 0U);
    EXPECT_EQ(answer.strBody, "one");
}

TEST(HttpStream, HeadDoesNotBeginIt) {
    std::atomic<bool> began{false};
    const TestServer server({}, withStream([&began](HttpSink&) { began = true; }));
    RawClient client(server.port());
    client.send("HEAD /stream HTTP/1.1\r\nHost: localhost\r\n\r\n");
    EXPECT_EQ(parseAnswer(client.readToEnd()).nStatus, 200);
    EXPECT_FALSE(began);
    EXPECT_EQ(server.counters().nStreams, 0U);
}

TEST(HttpStream, AClientThatGoesIsNoticedWithoutWriting) {
    Gate ended;
    const TestServer server({}, withStream([&ended](HttpSink& p_objSink) {
                                p_objSink.write("here");
                                if (eventually([&p_objSink] { return !p_objSink.isOpen(); })) {
                                    ended.open();
                                }
                            }));
    RawClient client(server.port());
    client.send(getRequest("/stream"));
    EXPECT_THAT(client.readSome(), HasSubstr("200"));
    EXPECT_TRUE(eventually([&server] { return 1U == server.counters().nStreams; }));
    client.close();
    EXPECT_TRUE(ended.wait());
    EXPECT_TRUE(eventually([&server] { return 0U == server.counters().nStreams; }));
}

TEST(HttpStream, AClientThatIsCutOffIsNoticedByWriting) {
    Gate ended;
    const TestServer server({}, withStream([&ended](HttpSink& p_objSink) {
                                while (p_objSink.write("more and more")) {
                                }
                                EXPECT_FALSE(p_objSink.isOpen());
                                EXPECT_FALSE(p_objSink.write("even more"));
                                ended.open();
                            }));
    RawClient client(server.port());
    client.send(getRequest("/stream"));
    EXPECT_THAT(client.readSome(), HasSubstr("200"));
    client.reset();
    EXPECT_TRUE(ended.wait());
}

TEST(HttpStream, OneTooManyIsRefused) {
    ServerSettings settings;
    settings.nStreams = 2;
    const TestServer server(settings, withStream([](HttpSink& p_objSink) {
                                p_objSink.write("here");
                                eventually([&p_objSink] { return !p_objSink.isOpen(); });
                            }));
    std::vector<std::unique_ptr<RawClient>> clients;
    for (int i = 0; i < 2; ++i) {
        clients.push_back(std::make_unique<RawClient>(server.port()));
        clients.back()->send(getRequest("/stream"));
        EXPECT_THAT(clients.back()->readSome(), HasSubstr("200"));
    }
    const RawAnswer answer = server.get("/stream");
    EXPECT_EQ(answer.nStatus, 503);
    EXPECT_EQ(answer.problem(), "too-many-streams");
    EXPECT_NE(answer.header("retry-after"), "");
    EXPECT_EQ(server.get("/hello").nStatus, 200);
}

TEST(HttpStream, OneThatFailsEndsWithoutItsEnd) {
    const TestServer server({}, withStream([](HttpSink& p_objSink) {
                                p_objSink.write("one");
                                throw std::runtime_error("the camera is gone");
                            }));
    RawClient client(server.port());
    client.send(getRequest("/stream"));
    EXPECT_EQ(parseAnswer(client.readToEnd()).strBody, "3\r\none\r\n");
    EXPECT_TRUE(eventually([&server] { return !server.log().empty(); }));
    EXPECT_THAT(server.log().front(), HasSubstr("the camera is gone"));
    EXPECT_TRUE(eventually([&server] { return 0U == server.counters().nStreams; }));
}

// As when there is no memory left for as much as a line.
TEST(HttpStream, OneWhoseFailureCannotBeLoggedEndsAlone) {
    FakeAccess access;
    camerad::Router router;
    withStream([](HttpSink& p_objSink) {
        p_objSink.write("one");
        throw std::bad_alloc();
    })(router);
    ServerSettings settings;
    settings.fnLog = [](const std::string&) { throw std::bad_alloc(); };
    const std::unique_ptr<camerad::Server> server = camerad::Server::create(settings, router, access);
    server->start();
    for (int i = 0; i < 2; ++i) {
        RawClient client(server->port());
        client.send(getRequest("/stream"));
        EXPECT_THAT(client.readToEnd(), HasSubstr("one"));
    }
    EXPECT_TRUE(eventually([&server] { return 0U == server->counters().nConnections; }));
}

TEST(HttpStream, IsCountedWhereItBegins) {
    const TestServer server({}, withStream([](HttpSink& p_objSink) {
                                p_objSink.write("here");
                                eventually([&p_objSink] { return !p_objSink.isOpen(); });
                            }));
    RawClient client(server.port());
    client.send(getRequest("/stream"));
    EXPECT_THAT(client.readSome(), HasSubstr("200"));
    EXPECT_EQ(server.counters().mapRequests.count({"GET /stream", 200}), 1U);
}

}  // namespace
