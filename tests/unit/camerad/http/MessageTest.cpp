// What a client may send, and the answer to each.
#include "tests/unit/camerad/http/HttpSupport.h"

#include <gtest/gtest.h>

namespace {

TEST(HttpMessage, AnswersOnOneConnectionUntilTheClientCloses) {
    const TestServer server;
    RawClient client(server.port());
    for (int i = 0; i < 20; ++i) {
        client.send(getRequest("/names/" + std::to_string(i)));
        const RawAnswer answer = client.answer();
        EXPECT_EQ(answer.nStatus, 200);
        EXPECT_EQ(answer.strBody, std::to_string(i));
    }
    EXPECT_EQ(server.counters().nConnections, 1U);
}

TEST(HttpMessage, AnswersRequestsThatComeAllAtOnceInTheirOrder) {
    const TestServer server;
    RawClient client(server.port());
    std::string all;
    for (int i = 0; i < 10; ++i) {
        all += getRequest("/names/" + std::to_string(i));
        all += postRequest("/echo", "body " + std::to_string(i));
    }
    client.send(all);
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(client.answer().strBody, std::to_string(i));
        EXPECT_EQ(client.answer().strBody, "body " + std::to_string(i));
    }
}

TEST(HttpMessage, ClosesWhenTheClientWantsThat) {
    const TestServer server;
    RawClient client(server.port());
    client.send(getRequest("/hello", "Connection: close\r\n"));
    const RawAnswer answer = parseAnswer(client.readToEnd());
    EXPECT_EQ(answer.strBody, "hello");
    EXPECT_EQ(answer.header("connection"), "close");
}

TEST(HttpMessage, TheOldProtocolGetsOneAnswer) {
    const TestServer server;
    RawClient client(server.port());
    client.send("GET /hello HTTP/1.0\r\nHost: localhost\r\n\r\n");
    EXPECT_EQ(parseAnswer(client.readToEnd()).strBody, "hello");
}

TEST(HttpMessage, HeadIsGetWithoutABody) {
    const TestServer server;
    RawClient client(server.port());
    client.send("HEAD /hello HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n\r\n");
    const RawAnswer answer = parseAnswer(client.readToEnd());
    EXPECT_EQ(answer.nStatus, 200);
    EXPECT_EQ(answer.header("content-length"), "5");
    EXPECT_EQ(answer.strBody, "");
}

TEST(HttpMessage, AnAnswerWithoutContentHasNoLength) {
    const TestServer server;
    const RawAnswer answer = server.ask("DELETE /thing HTTP/1.1\r\nHost: localhost\r\n\r\n");
    EXPECT_EQ(answer.nStatus, 204);
    EXPECT_EQ(answer.mapHeaders.count("content-length"), 0U);
    EXPECT_EQ(answer.mapHeaders.count("content-type"), 0U);
}

TEST(HttpMessage, AWrongMethodIsToldTheRightOnes) {
    const TestServer server;
    for (const char* const method : {"OPTIONS", "TRACE", "POST", "BREW", "PRI", "hello"}) {
        const RawAnswer answer = server.ask(std::string(method) + " /hello HTTP/1.1\r\nHost: localhost\r\n\r\n");
        EXPECT_EQ(answer.nStatus, 405) << method;
        EXPECT_EQ(answer.problem(), "no-such-method") << method;
        EXPECT_EQ(answer.header("allow"), "GET, HEAD") << method;
    }
    EXPECT_EQ(server.ask("OPTIONS * HTTP/1.1\r\nHost: localhost\r\n\r\n").nStatus, 405);
}

TEST(HttpMessage, APathThatIsNotThereIsAProblem) {
    const TestServer server;
    for (const char* const path : {"/nowhere", "//", "//hello", "/hello/", "/names/", "/Hello"}) {
        const RawAnswer answer = server.get(path);
        EXPECT_EQ(answer.nStatus, 404) << path;
        EXPECT_EQ(answer.problem(), "no-such-path") << path;
    }
}

TEST(HttpMessage, ABadRequestIsAProblemAndEndsTheConnection) {
    const TestServer server;
    for (const char* const request :
         {"GET /a/%2e%2e/b HTTP/1.1\r\nHost: localhost\r\n\r\n", "GET /%00 HTTP/1.1\r\nHost: localhost\r\n\r\n",
          "GET /%ff HTTP/1.1\r\nHost: localhost\r\n\r\n", "GET / HTTP/1.1\r\nHost: localhost\r\nA: b\r\n c\r\n\r\n",
          "POST /echo HTTP/1.1\r\nHost: localhost\r\nContent-Length: 1\r\nTransfer-Encoding: chunked\r\n\r\n",
          "POST /echo HTTP/1.1\r\nHost: localhost\r\nContent-Length: 1\r\nContent-Length: 2\r\n\r\n",
          "GET /hello HTTP/1.1\nHost: localhost\n\n", "nonsense\r\n\r\n", "\x16\x03\x01 hello",
          "GET / HTTP/1.1\r\n\r\n"}) {
        RawClient client(server.port());
        client.send(request);
        const RawAnswer answer = parseAnswer(client.readToEnd());
        EXPECT_EQ(answer.nStatus, 400) << request;
        EXPECT_NE(answer.problem(), "") << request << answer.strBody;
        EXPECT_EQ(answer.header("connection"), "close") << request;
    }
}

TEST(HttpMessage, ATargetWithOurHostIsAnswered) {
    const TestServer server;
    EXPECT_EQ(server.ask("GET http://localhost/hello HTTP/1.1\r\nHost: localhost\r\n\r\n").strBody, "hello");
    EXPECT_EQ(server.ask("GET http://evil.example/hello HTTP/1.1\r\nHost: localhost\r\n\r\n").nStatus, 421);
}

TEST(HttpMessage, ANameThatIsNotOursIsRefused) {
    camerad::ServerSettings settings;
    settings.vecHosts = {"camera.lan"};
    const TestServer server(settings);
    const auto ask = [&server](const std::string& p_strHost) {
        return server.ask("GET /hello HTTP/1.1\r\nHost: " + p_strHost + "\r\n\r\n");
    };
    EXPECT_EQ(ask("camera.lan:1").nStatus, 200);
    EXPECT_EQ(ask("127.0.0.1:8080").nStatus, 200);
    EXPECT_EQ(ask("LOCALHOST").nStatus, 200);
    EXPECT_EQ(ask("evil.example").nStatus, 421);
    EXPECT_EQ(ask("evil.example").problem(), "not-this-host");
}

TEST(HttpMessage, ARangeIsReadOver) {
    const TestServer server;
    for (const char* const range : {"bytes=0-1", "bytes=9-1", "bytes=0-0,1-1,2-2", "nonsense", ""}) {
        const RawAnswer answer = server.get("/hello", std::string("Range: ") + range + "\r\n");
        EXPECT_EQ(answer.nStatus, 200) << range;
        EXPECT_EQ(answer.strBody, "hello") << range;
    }
    EXPECT_EQ(server.get("/hello", "Range: bytes=" + std::string(8000, '1') + "\r\n").strBody, "hello");
}

TEST(HttpMessage, NothingIsPressedUnasked) {
    const TestServer server;
    const RawAnswer answer = server.get("/hello", "Accept-Encoding: gzip, br\r\n");
    EXPECT_EQ(answer.strBody, "hello");
    EXPECT_EQ(answer.header("content-encoding"), "");
}

TEST(HttpMessage, HeadersArriveAsTheyWereSent) {
    const TestServer server;
    EXPECT_EQ(server.get("/header", "X-Test: 100%41%0d%0a\r\n").strBody, "100%41%0d%0a");
    EXPECT_EQ(server.get("/query?q=a%26b+c").strBody, "a&b c");
    EXPECT_EQ(server.get("/names/n%C3%BC%25").strBody, "n\xC3\xBC%");
}

TEST(HttpMessage, BodiesOfBothKindsArrive) {
    const TestServer server;
    EXPECT_EQ(server.ask(postRequest("/echo", "hello there")).strBody, "hello there");
    EXPECT_EQ(server.ask(postRequest("/echo", "")).nStatus, 200);
    EXPECT_EQ(server.ask("POST /echo HTTP/1.1\r\nHost: localhost\r\n\r\n").nStatus, 200);
    EXPECT_EQ(server
                  .ask("POST /echo HTTP/1.1\r\nHost: localhost\r\nTransfer-Encoding: chunked\r\n\r\n"
                       "5\r\nhello\r\n6\r\n there\r\n0\r\n\r\n")
                  .strBody,
              "hello there");
}

TEST(HttpMessage, FormsAndPartsAreBytesLikeOthers) {
    const TestServer server;
    const std::string parts = "--b\r\nContent-Disposition: form-data; name=\"a\"\r\n\r\nx\r\n--b--\r\n";
    EXPECT_EQ(server.ask(postRequest("/echo", parts, "Content-Type: multipart/form-data; boundary=b\r\n")).strBody,
              parts);
    EXPECT_EQ(
        server.ask(postRequest("/echo", "a=1&b=2", "Content-Type: application/x-www-form-urlencoded\r\n")).strBody,
        "a=1&b=2");
}

TEST(HttpMessage, APressedBodyIsRefused) {
    const TestServer server;
    const RawAnswer answer = server.ask(postRequest("/echo", "\x1F\x8B", "Content-Encoding: gzip\r\n"));
    EXPECT_EQ(answer.nStatus, 415);
    EXPECT_EQ(answer.problem(), "bad-encoding");
}

TEST(HttpMessage, ABodyThatIsTooLongIsRefusedBeforeItComes) {
    const TestServer server;
    RawClient client(server.port());
    client.send("POST /echo HTTP/1.1\r\nHost: localhost\r\nContent-Length: 1001\r\n\r\n");
    EXPECT_EQ(client.answer().problem(), "too-large");
    EXPECT_EQ(server.ask(postRequest("/echo", std::string(1000, 'x'))).strBody.size(), 1000U);
    EXPECT_EQ(server.ask("GET /hello HTTP/1.1\r\nHost: localhost\r\nContent-Length: 1\r\n\r\nx").nStatus, 413);
}

TEST(HttpMessage, PiecesThatBecomeTooManyAreRefused) {
    const TestServer server;
    RawClient client(server.port());
    client.send("POST /echo HTTP/1.1\r\nHost: localhost\r\nTransfer-Encoding: chunked\r\n\r\n");
    for (int i = 0; i < 11; ++i) {
        client.send("64\r\n" + std::string(100, 'x') + "\r\n");
    }
    const RawAnswer answer = client.answer();
    EXPECT_EQ(answer.nStatus, 413);
    EXPECT_EQ(answer.problem(), "too-large");
}

TEST(HttpMessage, AClientThatAsksMayGoOn) {
    const TestServer server;
    RawClient client(server.port());
    client.send("POST /echo HTTP/1.1\r\nHost: localhost\r\nContent-Length: 3\r\nExpect: 100-continue\r\n\r\n");
    EXPECT_EQ(client.answer().nStatus, 100);
    client.send("abc");
    EXPECT_EQ(client.answer().strBody, "abc");
}

TEST(HttpMessage, AClientThatAsksForTooMuchIsStopped) {
    const TestServer server;
    RawClient client(server.port());
    client.send("POST /echo HTTP/1.1\r\nHost: localhost\r\nContent-Length: 3000\r\nExpect: 100-continue\r\n\r\n");
    EXPECT_EQ(client.answer().nStatus, 413);
}

TEST(HttpMessage, WhoMayNotIsStoppedBeforeTheBody) {
    const TestServer server;
    RawClient client(server.port());
    client.send("PUT /admin HTTP/1.1\r\nHost: localhost\r\nContent-Length: 50\r\nExpect: 100-continue\r\n\r\n");
    EXPECT_EQ(client.answer().nStatus, 401);
}

TEST(HttpMessage, EveryCutOfARequestEndsQuietly) {
    const TestServer server;
    const std::string request =
        "POST /echo HTTP/1.1\r\nHost: localhost\r\nTransfer-Encoding: chunked\r\n\r\n5\r\nhello\r\n0\r\n\r\n";
    for (std::size_t size = 0; size < request.size(); ++size) {
        RawClient client(server.port());
        client.send(request.substr(0, size));
        client.endSending();
        const RawAnswer answer = parseAnswer(client.readToEnd());
        if (0 == size) {
            EXPECT_EQ(answer.nStatus, 0);
        } else {
            EXPECT_EQ(answer.nStatus, 400) << size;
            EXPECT_NE(answer.problem(), "") << size;
        }
    }
    EXPECT_EQ(server.ask(request).strBody, "hello");
    EXPECT_TRUE(eventually([&server] { return 0 == server.counters().nConnections; }));
}

TEST(HttpMessage, EveryCutOfARequestMayBeAReset) {
    const TestServer server;
    const std::string request = postRequest("/echo", "hello");
    for (std::size_t size = 0; size <= request.size(); ++size) {
        RawClient client(server.port());
        client.send(request.substr(0, size));
        client.reset();
    }
    EXPECT_EQ(server.ask(request).strBody, "hello");
    EXPECT_TRUE(eventually([&server] { return 0 == server.counters().nConnections; }));
}

}  // namespace
