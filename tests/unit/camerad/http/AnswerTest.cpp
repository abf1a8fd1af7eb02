// What stands in every answer, who is let in, and what is counted.
#include "tests/unit/camerad/http/HttpSupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <httplib.h>

namespace {

using camerad::Access;
using camerad::HttpRequest;
using camerad::HttpResponse;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

TEST(HttpAnswer, SaysWhatABrowserMayDoWithIt) {
    const TestServer server;
    for (const char* const path : {"/hello", "/nowhere", "/viewer", "/broken", "/%00"}) {
        const RawAnswer answer = server.get(path);
        EXPECT_EQ(answer.header("x-content-type-options"), "nosniff") << path;
        EXPECT_EQ(answer.header("referrer-policy"), "no-referrer") << path;
        EXPECT_EQ(answer.header("cross-origin-opener-policy"), "same-origin") << path;
        EXPECT_EQ(answer.header("cross-origin-resource-policy"), "same-origin") << path;
        EXPECT_EQ(answer.header("content-security-policy"), "default-src 'none'; frame-ancestors 'none'") << path;
        EXPECT_EQ(answer.header("cache-control"), "no-store") << path;
        EXPECT_EQ(answer.header("strict-transport-security"), "") << path;
        EXPECT_EQ(answer.header("date").size(), sizeof("Sun, 06 Nov 1994 08:49:37 GMT") - 1) << path;
    }
}

TEST(HttpAnswer, TheRoutesOwnHeadersWin) {
    const TestServer server({}, [](camerad::Router& p_objRouter) {
        p_objRouter.add({"GET", "/page", Access::Everybody, 0, [](const HttpRequest&) {
                             HttpResponse response;
                             response.strType = "text/html; charset=utf-8";
                             response.strBody = "<p>";
                             response.vecHeaders = {{"cache-control", "no-cache"},
                                                    {"Content-Security-Policy", "default-src 'self'"},
                                                    {"Set-Cookie", "a=1"},
                                                    {"Set-Cookie", "b=2"}};
                             return response;
                         }});
    });
    const RawAnswer answer = server.get("/page");
    EXPECT_EQ(answer.mapHeaders.count("cache-control"), 1U);
    EXPECT_EQ(answer.header("cache-control"), "no-cache");
    EXPECT_EQ(answer.mapHeaders.count("content-security-policy"), 1U);
    EXPECT_EQ(answer.header("content-security-policy"), "default-src 'self'");
    EXPECT_EQ(answer.mapHeaders.count("set-cookie"), 2U);
    EXPECT_EQ(answer.header("content-type"), "text/html; charset=utf-8");
}

TEST(HttpAnswer, AHeaderWithALineEndIsNotSent) {
    const TestServer server({}, [](camerad::Router& p_objRouter) {
        p_objRouter.add({"GET", "/split", Access::Everybody, 0, [](const HttpRequest&) {
                             HttpResponse response;
                             response.strBody = "{}";
                             response.vecHeaders = {{"X-Split", "a\r\nSet-Cookie: evil=1"}};
                             return response;
                         }});
    });
    EXPECT_EQ(server.get("/split").mapHeaders.count("set-cookie"), 0U);
}

TEST(HttpAnswer, ARefusalBecomesAProblem) {
    const RawAnswer answer = TestServer().get("/busy");
    EXPECT_EQ(answer.nStatus, 409);
    EXPECT_EQ(answer.problem(), "busy");
    EXPECT_EQ(answer.header("retry-after"), "7");
    EXPECT_THAT(answer.strBody, HasSubstr("the camera resets"));
}

TEST(HttpAnswer, AFailureTellsItsInsideToTheLogOnly) {
    const TestServer server;
    const RawAnswer answer = server.get("/broken");
    EXPECT_EQ(answer.nStatus, 500);
    EXPECT_EQ(answer.problem(), "failed");
    EXPECT_THAT(answer.strBody, Not(HasSubstr("inside")));
    EXPECT_THAT(server.log(), ElementsAre("GET /broken failed: the inside of the camera"));
}

TEST(HttpAnswer, AConnectionOutlivesARefusal) {
    const TestServer server;
    RawClient client(server.port());
    client.send(getRequest("/busy") + getRequest("/nowhere") + getRequest("/broken") + getRequest("/hello"));
    EXPECT_EQ(client.answer().nStatus, 409);
    EXPECT_EQ(client.answer().nStatus, 404);
    EXPECT_EQ(client.answer().nStatus, 500);
    EXPECT_EQ(client.answer().strBody, "hello");
}

TEST(HttpAnswer, NobodyIsAskedWhoTheyAre) {
    const TestServer server;
    const RawAnswer answer = server.get("/viewer");
    EXPECT_EQ(answer.nStatus, 401);
    const auto ways = answer.mapHeaders.equal_range("www-authenticate");
    EXPECT_EQ(std::distance(ways.first, ways.second), 2);
    EXPECT_EQ(server.get("/viewer", "Authorization: Bearer wrong\r\n").nStatus, 401);
}

TEST(HttpAnswer, APageIsNotMadeToAskItsUser) {
    const TestServer server;
    for (const char* const field : {"Sec-Fetch-Site: same-origin\r\n", "X-Client-Id: 1\r\n", "Cookie: a=b\r\n"}) {
        const RawAnswer answer = server.get("/viewer", field);
        EXPECT_EQ(answer.nStatus, 401) << field;
        EXPECT_EQ(answer.header("www-authenticate"), "") << field;
    }
}

TEST(HttpAnswer, EachGetsWhatTheyMay) {
    const TestServer server;
    EXPECT_EQ(server.get("/viewer", "Authorization: Bearer viewer\r\n").strBody, "viewer");
    const std::string put = "PUT /admin HTTP/1.1\r\nHost: localhost\r\nAuthorization: Bearer ";
    EXPECT_EQ(server.ask(put + "viewer\r\n\r\n").nStatus, 403);
    EXPECT_EQ(server.ask(put + "admin\r\n\r\n").strBody, "done");
}

TEST(HttpAnswer, ABadCredentialDoesNotEndWhatEverybodyMay) {
    const TestServer server;
    EXPECT_EQ(server.get("/whoami", "Authorization: Bearer wrong\r\n").strBody, "@127.0.0.1");
    EXPECT_EQ(server.get("/whoami", "Authorization: Bearer viewer\r\n").strBody, "viewer@127.0.0.1");
}

TEST(HttpAnswer, APageFromElsewhereMayNotEvenLogIn) {
    const TestServer server;
    EXPECT_EQ(server.ask(postRequest("/echo", "x", "Origin: https://evil.example\r\n")).nStatus, 403);
}

TEST(HttpAnswer, CountsByRouteAndStatus) {
    const TestServer server;
    server.get("/names/a");
    server.get("/names/b");
    server.get("/viewer");
    server.get("/secret-path-of-a-client");
    server.get("/%00");
    // A request is counted when its answer has been sent, which the client can see first.
    EXPECT_TRUE(eventually([&server] {
        std::uint64_t counted = 0;
        for (const auto& [request, counts] : server.counters().mapRequests) {
            counted += counts.nCount;
        }
        return 5U == counted;
    }));
    const camerad::ServerCounters counters = server.counters();
    EXPECT_EQ(counters.mapRequests.size(), 4U);
    ASSERT_EQ(counters.mapRequests.count({"GET /names/{name}", 200}), 1U);
    const camerad::ServerCounters::Requests names = counters.mapRequests.at({"GET /names/{name}", 200});
    EXPECT_EQ(names.nCount, 2U);
    EXPECT_GT(names.dSeconds, 0);
    EXPECT_EQ(names.mapBuckets.size(), 8U);
    std::uint64_t inBuckets = 0;
    for (const auto& [bound, count] : names.mapBuckets) {
        inBuckets += count;
    }
    EXPECT_EQ(inBuckets, 2U);
    EXPECT_EQ(counters.mapRequests.count({"GET /viewer", 401}), 1U);
    EXPECT_EQ(counters.mapRequests.count({"unmatched", 404}), 1U);
    EXPECT_EQ(counters.mapRequests.count({"unreadable", 400}), 1U);
}

TEST(HttpAnswer, ABigAnswerArrivesWhole) {
    const TestServer server;
    RawClient client(server.port());
    client.send(getRequest("/big", "Connection: close\r\n"));
    EXPECT_EQ(parseAnswer(client.readToEnd()).strBody, std::string(4 * 1024 * 1024, 'b'));
}

TEST(HttpAnswer, AnOrdinaryClientUnderstandsIt) {
    const TestServer server;
    httplib::Client client("127.0.0.1", server.port());
    client.set_keep_alive(true);
    for (int i = 0; i < 3; ++i) {
        const auto hello = client.Get("/hello");
        ASSERT_TRUE(hello);
        EXPECT_EQ(hello->status, 200);
        EXPECT_EQ(hello->body, "hello");
        const auto echo = client.Post("/echo", "some text", "text/plain");
        ASSERT_TRUE(echo);
        EXPECT_EQ(echo->body, "some text");
        const auto nothing = client.Delete("/thing");
        ASSERT_TRUE(nothing);
        EXPECT_EQ(nothing->status, 204);
    }
    EXPECT_EQ(server.counters().nConnections, 1U);
}

}  // namespace
