#include "apps/camerad/http/RequestHead.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using camerad::HttpRefusal;
using camerad::readRequestHead;
using camerad::RequestHead;
using testing::ElementsAre;
using testing::Pair;
using testing::UnorderedElementsAre;

constexpr std::size_t kPathBytes = 64;

std::string withHost(const std::string& p_strFirst, const std::string& p_strFields = "") {
    return p_strFirst + "\r\nHost: camera\r\n" + p_strFields + "\r\n";
}

RequestHead get(const std::string& p_strTarget, const std::string& p_strFields = "") {
    return readRequestHead(withHost("GET " + p_strTarget + " HTTP/1.1", p_strFields), kPathBytes);
}

// Status and type of the refusal; "taken" when there is none.
std::string verdict(const std::string& p_strBytes) {
    try {
        readRequestHead(p_strBytes, kPathBytes);
        return "taken";
    } catch (const HttpRefusal& refusal) {
        EXPECT_STRNE(refusal.what(), "");
        return std::to_string(refusal.status()) + " " + refusal.type();
    }
}

TEST(RequestHead, ReadsAPlainRequest) {
    const RequestHead head = readRequestHead(
        "PATCH /api/v1/things?a=1&b=two HTTP/1.1\r\nHost: Camera.LAN:8080\r\nX-Test:  a b \r\nContent-Length: "
        "12\r\n\r\n",
        kPathBytes);
    EXPECT_EQ(head.strMethod, "PATCH");
    EXPECT_EQ(head.strPath, "/api/v1/things");
    EXPECT_EQ(head.strHost, "camera.lan");
    EXPECT_EQ(head.nLength, 12U);
    EXPECT_TRUE(head.hasBody());
    EXPECT_FALSE(head.bClose);
    EXPECT_FALSE(head.bChunked);
    EXPECT_THAT(head.mapQuery, UnorderedElementsAre(Pair("a", "1"), Pair("b", "two")));
    EXPECT_THAT(head.mapHeaders, UnorderedElementsAre(Pair("host", "Camera.LAN:8080"), Pair("x-test", "a b"),
                                                      Pair("content-length", "12")));
}

TEST(RequestHead, DecodesPathAndQueryOnce) {
    const RequestHead head = get("/n%C3%BCr%20so/%2541?q=a+b%26c&empty=&alone&&q=2");
    EXPECT_EQ(head.strPath, "/n\xC3\xBCr so/%41");
    EXPECT_THAT(head.mapQuery,
                UnorderedElementsAre(Pair("q", "a b&c"), Pair("empty", ""), Pair("alone", ""), Pair("q", "2")));
}

TEST(RequestHead, KeepsHeaderValuesAsTheyAre) {
    EXPECT_THAT(get("/", "X-Test: 100%41\r\nCookie: a=1\r\nCookie: b=2\r\n").mapHeaders,
                UnorderedElementsAre(Pair("host", "camera"), Pair("x-test", "100%41"), Pair("cookie", "a=1"),
                                     Pair("cookie", "b=2")));
}

TEST(RequestHead, ATargetWithAHostGoesBeforeTheHostHeader) {
    const RequestHead head = get("http://Other:80/path?x=1");
    EXPECT_EQ(head.strHost, "other");
    EXPECT_EQ(head.strPath, "/path");
    EXPECT_EQ(get("https://other").strPath, "/");
    EXPECT_EQ(get("http://other?x=1").strPath, "/");
    EXPECT_THAT(get("http://other?x=1").mapQuery, ElementsAre(Pair("x", "1")));
}

TEST(RequestHead, ReadsHostsOfEverySpelling) {
    const auto hostOf = [](const std::string& p_strHost) {
        return readRequestHead("GET / HTTP/1.1\r\nHost: " + p_strHost + "\r\n\r\n", kPathBytes).strHost;
    };
    EXPECT_EQ(hostOf("[::1]:8080"), "::1");
    EXPECT_EQ(hostOf("[FE80::1]"), "fe80::1");
    EXPECT_EQ(hostOf("localhost."), "localhost");
    EXPECT_EQ(hostOf("10.0.0.1:1"), "10.0.0.1");
}

TEST(RequestHead, KnowsWhoGoesOn) {
    const auto closes = [](const std::string& p_strVersion, const std::string& p_strFields) {
        return readRequestHead(withHost("GET / " + p_strVersion, p_strFields), kPathBytes).bClose;
    };
    EXPECT_FALSE(closes("HTTP/1.1", ""));
    EXPECT_TRUE(closes("HTTP/1.1", "Connection: CLOSE\r\n"));
    EXPECT_TRUE(closes("HTTP/1.1", "Connection: upgrade, close\r\n"));
    EXPECT_TRUE(closes("HTTP/1.0", ""));
    EXPECT_FALSE(closes("HTTP/1.0", "Connection: keep-alive\r\n"));
}

TEST(RequestHead, ReadsPiecesAndExpectations) {
    EXPECT_TRUE(get("/", "Transfer-Encoding: Chunked\r\n").bChunked);
    EXPECT_TRUE(get("/", "Expect: 100-Continue\r\nContent-Length: 1\r\n").bExpectsContinue);
    EXPECT_FALSE(readRequestHead(withHost("GET / HTTP/1.0", "Expect: 100-continue\r\n"), kPathBytes).bExpectsContinue);
}

TEST(RequestHead, AStarIsForOptions) {
    EXPECT_EQ(readRequestHead(withHost("OPTIONS * HTTP/1.1"), kPathBytes).strPath, "*");
    EXPECT_EQ(verdict(withHost("GET * HTTP/1.1")), "400 bad-target");
}

struct BadRow {
    std::string strBytes;
    std::string strVerdict;
};

TEST(RequestHead, RefusesWhatCanBeUnderstoodDifferently) {
    const std::string nothing(1, '\0');
    const std::vector<BadRow> rows = {
        {"", "400 bad-request"},
        {"\r\n", "400 bad-request"},
        {"GET\r\n\r\n", "400 bad-request"},
        {"GET /\r\n\r\n", "400 bad-request"},
        {" GET / HTTP/1.1\r\n\r\n", "400 bad-request"},
        {withHost("GET  / HTTP/1.1"), "400 bad-request"},
        {withHost("GET / / HTTP/1.1"), "400 bad-request"},
        {withHost("GET / HTTP/1.1 "), "505 no-such-version"},
        {withHost("GET / HTTP/2.0"), "505 no-such-version"},
        {withHost("GET / http/1.1"), "400 bad-request"},
        {withHost("G(T / HTTP/1.1"), "400 bad-request"},
        {withHost(std::string(33, 'G') + " / HTTP/1.1"), "400 bad-request"},
        {"GET / HTTP/1.1\nHost: camera\n\n", "400 bad-request"},
        {"GET / HTTP/1.1\r\nHost: camera\nX: y\r\n\r\n", "400 bad-request"},
        {"GET / HTTP/1.1\r\nHost: camera\rX: y\r\n\r\n", "400 bad-request"},
        {"GET / HTTP/1.1\r\nHost: camera" + nothing + "\r\n\r\n", "400 bad-request"},
        {"GET / HTTP/1.1\r\nHost: camera\r\n", "400 bad-request"},
        {withHost("GET / HTTP/1.1", "X-Test: a\r\n b\r\n"), "400 bad-header"},
        {withHost("GET / HTTP/1.1", "X-Test : a\r\n"), "400 bad-header"},
        {withHost("GET / HTTP/1.1", ": a\r\n"), "400 bad-header"},
        {withHost("GET / HTTP/1.1", "no colon\r\n"), "400 bad-header"},
        {withHost("GET / HTTP/1.1", "X-Test: \x01\r\n"), "400 bad-header"},
        {withHost("GET / HTTP/1.1", "X-T\xC3\xA4st: a\r\n"), "400 bad-header"},
        {withHost("GET / HTTP/1.1", "Authorization: a\r\nAuthorization: b\r\n"), "400 bad-header"},
        {withHost("GET / HTTP/1.1", "Host: other\r\n"), "400 bad-header"},
        {"GET / HTTP/1.1\r\n\r\n", "400 bad-host"},
        {"GET / HTTP/1.1\r\nHost:\r\n\r\n", "400 bad-host"},
        {"GET / HTTP/1.1\r\nHost: a b\r\n\r\n", "400 bad-host"},
        {"GET / HTTP/1.1\r\nHost: a/b\r\n\r\n", "400 bad-host"},
        {"GET / HTTP/1.1\r\nHost: a@b\r\n\r\n", "400 bad-host"},
        {"GET / HTTP/1.1\r\nHost: a:8x\r\n\r\n", "400 bad-host"},
        {"GET / HTTP/1.1\r\nHost: a:123456\r\n\r\n", "400 bad-host"},
        {"GET / HTTP/1.1\r\nHost: [::1\r\n\r\n", "400 bad-host"},
        {"GET / HTTP/1.1\r\nHost: []\r\n\r\n", "400 bad-host"},
        {"GET / HTTP/1.1\r\nHost: [::1]x\r\n\r\n", "400 bad-host"},
        {withHost("GET http://user@camera/ HTTP/1.1"), "400 bad-host"},
        {withHost("GET http:/// HTTP/1.1"), "400 bad-host"},
        {withHost("GET camera HTTP/1.1"), "400 bad-target"},
        {withHost("CONNECT camera:80 HTTP/1.1"), "400 bad-target"},
        {withHost("GET ftp://camera/ HTTP/1.1"), "400 bad-target"},
        {withHost("GET /a/../b HTTP/1.1"), "400 bad-target"},
        {withHost("GET /a/%2e%2E/b HTTP/1.1"), "400 bad-target"},
        {withHost("GET /.. HTTP/1.1"), "400 bad-target"},
        {withHost("GET /./a HTTP/1.1"), "400 bad-target"},
        {withHost("GET /a%00b HTTP/1.1"), "400 bad-target"},
        {withHost("GET /a%0d%0ab HTTP/1.1"), "400 bad-target"},
        {withHost("GET /a%2Fb HTTP/1.1"), "400 bad-target"},
        {withHost("GET /a%ff HTTP/1.1"), "400 bad-target"},
        {withHost("GET /a%c0%af HTTP/1.1"), "400 bad-target"},
        {withHost("GET /a% HTTP/1.1"), "400 bad-target"},
        {withHost("GET /a%4 HTTP/1.1"), "400 bad-target"},
        {withHost("GET /a%u0041 HTTP/1.1"), "400 bad-target"},
        {withHost("GET /n\xC3\xBC HTTP/1.1"), "400 bad-target"},
        {withHost("GET /a#b HTTP/1.1"), "400 bad-target"},
        {withHost("GET /a\tb HTTP/1.1"), "400 bad-target"},
        {withHost("GET /?q=%00 HTTP/1.1"), "400 bad-target"},
        {withHost("GET /?q=%zz HTTP/1.1"), "400 bad-target"},
        {withHost("GET /" + std::string(kPathBytes, 'a') + " HTTP/1.1"), "414 path-too-long"},
        {withHost("POST / HTTP/1.1", "Content-Length: 5\r\nContent-Length: 5\r\n"), "400 bad-header"},
        {withHost("POST / HTTP/1.1", "Content-Length: 5\r\nTransfer-Encoding: chunked\r\n"), "400 bad-length"},
        {withHost("POST / HTTP/1.1", "Content-Length: 5, 5\r\n"), "400 bad-length"},
        {withHost("POST / HTTP/1.1", "Content-Length: -1\r\n"), "400 bad-length"},
        {withHost("POST / HTTP/1.1", "Content-Length: +1\r\n"), "400 bad-length"},
        {withHost("POST / HTTP/1.1", "Content-Length: 0x10\r\n"), "400 bad-length"},
        {withHost("POST / HTTP/1.1", "Content-Length:\r\n"), "400 bad-length"},
        {withHost("POST / HTTP/1.1", "Content-Length: 18446744073709551617\r\n"), "400 bad-length"},
        {withHost("POST / HTTP/1.0", "Transfer-Encoding: chunked\r\n"), "400 bad-length"},
        {withHost("POST / HTTP/1.1", "Transfer-Encoding: gzip, chunked\r\n"), "501 no-such-encoding"},
        {withHost("POST / HTTP/1.1", "Transfer-Encoding: chunked\r\nTransfer-Encoding: chunked\r\n"), "400 bad-header"},
        {withHost("POST / HTTP/1.1",
                  "Transfer-Encoding: \x0b"
                  "chunked\r\n"),
         "400 bad-header"},
        {withHost("POST / HTTP/1.1", "Expect: a miracle\r\n"), "417 bad-expectation"},
    };
    for (const BadRow& row : rows) {
        EXPECT_EQ(verdict(row.strBytes), row.strVerdict) << row.strBytes;
    }
}

TEST(RequestHead, TakesAHundredFieldsAndNoMore) {
    std::string fields;
    for (int i = 0; i < 99; ++i) {
        fields += "X-" + std::to_string(i) + ": y\r\n";
    }
    EXPECT_EQ(verdict(withHost("GET / HTTP/1.1", fields)), "taken");
    EXPECT_EQ(verdict(withHost("GET / HTTP/1.1", fields + "X-More: y\r\n")), "431 header-too-large");
}

TEST(RequestHead, TakesSixtyFourQueryParametersAndNoMore) {
    std::string query = "?a";
    for (int i = 1; i < 64; ++i) {
        query += "&a";
    }
    EXPECT_EQ(verdict(withHost("GET /" + query + " HTTP/1.1")), "taken");
    EXPECT_EQ(verdict(withHost("GET /" + query + "&a HTTP/1.1")), "400 bad-target");
}

TEST(RequestHead, TakesAPathOfExactlyTheLimit) {
    EXPECT_EQ(verdict(withHost("GET /" + std::string(kPathBytes - 1, 'a') + " HTTP/1.1")), "taken");
}

TEST(RequestHead, EveryCutIsRefusedOrIncomplete) {
    const std::string whole = withHost("GET /a%20b?c=d HTTP/1.1", "X-Test: a\r\nContent-Length: 3\r\n");
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const std::string cut = whole.substr(0, size);
        EXPECT_EQ(camerad::endOfHead(cut), std::string::npos) << cut;
        EXPECT_NE(verdict(cut), "taken") << cut;
    }
    EXPECT_EQ(camerad::endOfHead(whole + "abc"), whole.size());
}

TEST(RequestHead, KnowsUtf8) {
    for (const char* const good :
         {"", "a", "\xC3\xBC", "\xE2\x82\xAC", "\xF0\x9F\x93\xB7", "\xED\x9F\xBF", "\xF4\x8F\xBF\xBF"}) {
        EXPECT_TRUE(camerad::isUtf8(good)) << good;
    }
    for (const char* const bad :
         {"\x80", "\xC3", "\xC3(", "\xC0\x80", "\xC1\xBF", "\xE0\x80\x80", "\xE2\x82", "\xED\xA0\x80",
          "\xF0\x80\x80\x80", "\xF4\x90\x80\x80", "\xF8\x88\x80\x80\x80", "\xFF"}) {
        EXPECT_FALSE(camerad::isUtf8(bad)) << bad;
    }
}

}  // namespace
