// How the files of the page are served: plain or packed, and not at all to who has them.
#include "apps/camerad/page/Page.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace camerad;

namespace {

constexpr unsigned char kPlainBytes[] = {'p', 'l', 'a', 'i', 'n'};
constexpr unsigned char kPackedBytes[] = {'p', 'a', 'c', 'k'};
const PageFile kFile = {
    "app.js", "text/javascript; charset=utf-8", "0123456789abcdef", {kPlainBytes, 5}, {kPackedBytes, 4}};

std::string header(const HttpResponse& p_stResponse, const std::string& p_strName) {
    for (const auto& [name, value] : p_stResponse.vecHeaders) {
        if (name == p_strName) {
            return value;
        }
    }
    return "(none)";
}

HttpResponse serve(const std::multimap<std::string, std::string>& p_mapHeaders) {
    HttpRequest request;
    request.strMethod = "GET";
    request.mapHeaders = p_mapHeaders;
    return servePageFile(kFile, request);
}

struct EncodingRow {
    const char* szHeader;
    Encoding eEncoding;
};
void PrintTo(const EncodingRow& p_stRow, std::ostream* p_pStream) {
    *p_pStream << '"' << p_stRow.szHeader << '"';
}

class AcceptEncoding : public testing::TestWithParam<EncodingRow> {};

TEST_P(AcceptEncoding, SaysWhatAFileIsSentAs) {
    EXPECT_EQ(GetParam().eEncoding, encodingFor(GetParam().szHeader));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, AcceptEncoding,
    testing::Values(EncodingRow{"", Encoding::Plain}, EncodingRow{"gzip", Encoding::Packed},
                    EncodingRow{"gzip, deflate, br", Encoding::Packed}, EncodingRow{"GZIP", Encoding::Packed},
                    EncodingRow{"x-gzip", Encoding::Packed}, EncodingRow{"br;q=1.0, gzip;q=0.8", Encoding::Packed},
                    EncodingRow{"gzip;q=0", Encoding::Plain}, EncodingRow{"gzip;q=0.000", Encoding::Plain},
                    EncodingRow{"gzip ; Q=0.001", Encoding::Packed}, EncodingRow{"deflate", Encoding::Plain},
                    EncodingRow{"*", Encoding::Packed}, EncodingRow{"*;q=0", Encoding::Neither},
                    EncodingRow{"identity", Encoding::Plain}, EncodingRow{"identity;q=0", Encoding::Neither},
                    EncodingRow{"identity;q=0, gzip", Encoding::Packed},
                    EncodingRow{"identity;q=1, gzip;q=0.5", Encoding::Plain},
                    EncodingRow{"identity;q=0.5, gzip;q=0.5", Encoding::Packed},
                    EncodingRow{"identity;q=0.5, *;q=0", Encoding::Plain},
                    EncodingRow{"gzip;q=nonsense", Encoding::Plain}, EncodingRow{"gzip;q=", Encoding::Plain},
                    EncodingRow{"gzip;q=0.12345678901234567890", Encoding::Plain},
                    EncodingRow{"gzip;q=-1", Encoding::Plain}, EncodingRow{",,;;=,gzip,;", Encoding::Packed},
                    EncodingRow{"gzipped", Encoding::Plain}));

struct TagRow {
    const char* szHeader;
    bool bFound;
};
void PrintTo(const TagRow& p_stRow, std::ostream* p_pStream) {
    *p_pStream << p_stRow.szHeader;
}

class IfNoneMatch : public testing::TestWithParam<TagRow> {};

TEST_P(IfNoneMatch, NamesTheTagOrNot) {
    EXPECT_EQ(GetParam().bFound, isTagAmong(GetParam().szHeader, "abc"));
}

INSTANTIATE_TEST_SUITE_P(Rows, IfNoneMatch,
                         testing::Values(TagRow{"", false}, TagRow{"\"abc\"", true}, TagRow{"W/\"abc\"", true},
                                         TagRow{"abc", false}, TagRow{"\"abcd\"", false}, TagRow{"*", true},
                                         TagRow{"\"x\" ,\t\"abc\"", true}, TagRow{"\"x,\"abc\"", true},
                                         TagRow{"\"ABC\"", false}, TagRow{"w/\"abc\"", false}, TagRow{"\"abc", false}));

TEST(PageServing, SendsAFilePlainToWhoDoesNotSayThatItUnpacks) {
    const HttpResponse response = serve({});
    EXPECT_EQ(200, response.nStatus);
    EXPECT_EQ("plain", response.strBody);
    EXPECT_EQ("text/javascript; charset=utf-8", response.strType);
    EXPECT_EQ("(none)", header(response, "Content-Encoding"));
    EXPECT_EQ("\"0123456789abcdef\"", header(response, "ETag"));
}

TEST(PageServing, SendsAFilePackedToWhoUnpacks) {
    const HttpResponse response = serve({{"accept-encoding", "br"}, {"accept-encoding", "gzip"}});
    EXPECT_EQ(200, response.nStatus);
    EXPECT_EQ("pack", response.strBody);
    EXPECT_EQ("gzip", header(response, "Content-Encoding"));
    EXPECT_EQ("\"0123456789abcdef-gzip\"", header(response, "ETag"));
    EXPECT_EQ("Accept-Encoding", header(response, "Vary"));
}

TEST(PageServing, SendsNothingToWhoHasTheSameForm) {
    const HttpResponse response = serve({{"accept-encoding", "gzip"}, {"if-none-match", "\"0123456789abcdef-gzip\""}});
    EXPECT_EQ(304, response.nStatus);
    EXPECT_EQ("", response.strBody);
    EXPECT_EQ("\"0123456789abcdef-gzip\"", header(response, "ETag"));
    EXPECT_EQ("(none)", header(response, "Content-Encoding"));
}

TEST(PageServing, SendsTheOtherFormToWhoHasOne) {
    EXPECT_EQ(200, serve({{"if-none-match", "\"0123456789abcdef-gzip\""}}).nStatus);
    EXPECT_EQ(200, serve({{"accept-encoding", "gzip"}, {"if-none-match", "\"0123456789abcdef\""}}).nStatus);
}

TEST(PageServing, ExplainsToWhoTakesNeitherForm) {
    const HttpResponse response = serve({{"accept-encoding", "br, *;q=0"}});
    EXPECT_EQ(406, response.nStatus);
    EXPECT_EQ("application/problem+json", response.strType);
    EXPECT_THAT(response.strBody, testing::HasSubstr("plain or packed by gzip"));
}

TEST(PageServing, ABrowserAsksAnewEachTimeAndLoadsOnlyFromTheCamera) {
    const HttpResponse response = serve({});
    EXPECT_EQ("no-cache", header(response, "Cache-Control"));
    EXPECT_THAT(header(response, "Content-Security-Policy"),
                testing::StartsWith("default-src 'none'; script-src 'self'"));
    EXPECT_THAT(header(response, "Content-Security-Policy"), testing::HasSubstr("frame-ancestors 'none'"));
    EXPECT_THAT(header(response, "Content-Security-Policy"), testing::Not(testing::HasSubstr("unsafe")));
}

TEST(PageServing, TheStartAndEveryFileHaveARouteForEverybody) {
    Router router;
    addPage(router);
    EXPECT_EQ(pageFiles().size() + 1, router.routes().size());
    const Route* start = router.find("GET", "/").pRoute;
    ASSERT_NE(nullptr, start);
    EXPECT_EQ(Access::Everybody, start->eAccess);
    EXPECT_THAT(start->fnHandler({}).strBody, testing::HasSubstr("<!doctype html>"));
    for (const PageFile& file : pageFiles()) {
        const Route* route = router.find("GET", std::string("/") + file.szName).pRoute;
        ASSERT_NE(nullptr, route) << file.szName;
        EXPECT_EQ(Access::Everybody, route->eAccess);
        EXPECT_EQ(file.stPlain.text(), route->fnHandler({}).strBody) << file.szName;
        EXPECT_EQ(file.szType, route->fnHandler({}).strType);
    }
}

TEST(PageServing, NothingElseHasARoute) {
    Router router;
    addPage(router);
    for (const char* path : {"/app", "/index.htm", "/src/main.tsx", "/settings", "/PageFiles.cpp", "//"}) {
        EXPECT_EQ(nullptr, router.find("GET", path).pRoute) << path;
    }
    EXPECT_EQ(nullptr, router.find("POST", "/").pRoute);
}

}  // namespace
