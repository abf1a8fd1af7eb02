#include "apps/camerad/access/Credentials.h"

#include "apps/camerad/host/Refusal.h"
#include "tests/unit/camerad/access/AccessTest.h"

namespace camerad {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

HttpRequest withCookies(const std::vector<std::string>& p_vecHeaders) {
    HttpRequest request;
    for (const std::string& header : p_vecHeaders) {
        request.mapHeaders.emplace("cookie", header);
    }
    return request;
}

TEST(Cookies, AreFoundAmongOthers) {
    struct Row {
        std::vector<std::string> vecHeaders;
        std::optional<std::string> value;
    };
    const std::string bytes("\0\xFF=\x01;", 5);
    for (const Row& row : {
             Row{{}, std::nullopt},
             Row{{""}, std::nullopt},
             Row{{";;; ; =; a=b"}, std::nullopt},
             Row{{"camera_session=abc"}, "abc"},
             Row{{"a=1; camera_session=abc; b=2"}, "abc"},
             Row{{"a=1;camera_session=abc;b=2"}, "abc"},
             Row{{"a=1", "camera_session=abc", "b=2"}, "abc"},
             Row{{" \t camera_session \t = \t abc \t "}, "abc"},
             Row{{"camera_session=\"abc\""}, "abc"},
             Row{{"camera_session=\"abc"}, "\"abc"},
             Row{{"camera_session=\""}, "\""},
             Row{{"camera_session=\"\""}, ""},
             Row{{"camera_session="}, ""},
             Row{{"camera_session=a=b=c"}, "a=b=c"},
             Row{{"camera_session"}, std::nullopt},
             Row{{"Camera_session=abc"}, std::nullopt},
             Row{{"xcamera_session=abc; camera_sessionx=abc; a=camera_session=abc"}, std::nullopt},
             Row{{bytes + "camera_session=abc"}, "abc"},
             Row{{std::string(100000, ';') + "camera_session=abc"}, "abc"},
         }) {
        EXPECT_EQ(sessionCookie(withCookies(row.vecHeaders)), row.value)
            << ::testing::PrintToString(row.vecHeaders).substr(0, 200);
    }
}

TEST(Cookies, OfOurNameAreRefusedWhenThereAreTwo) {
    for (const std::vector<std::string>& headers :
         {std::vector<std::string>{"camera_session=abc; camera_session=def"},
          std::vector<std::string>{"camera_session=abc; camera_session=abc"},
          std::vector<std::string>{"camera_session=abc", "camera_session=def"},
          std::vector<std::string>{"camera_session=; camera_session=\"abc\""}}) {
        const Refusal refusal = refusalOf([&] { sessionCookie(withCookies(headers)); });
        EXPECT_EQ(refusal.kind(), Refusal::Kind::Unauthorised);
        EXPECT_EQ(refusal.type(), "ambiguous-session");
        EXPECT_THAT(refusal.what(), HasSubstr("delete the cookies"));
        EXPECT_THAT(refusal.what(), Not(HasSubstr("abc")));
    }
}

HttpRequest withAuthorization(const std::string& p_strValue) {
    HttpRequest request;
    request.mapHeaders.emplace("authorization", p_strValue);
    return request;
}

TEST(AuthorizationHeaders, AreReadByTheirKind) {
    EXPECT_FALSE(authorization(HttpRequest()));
    for (const char* const szBasic :
         {"Basic YWRtaW46YTpi", "basic YWRtaW46YTpi", "BASIC   YWRtaW46YTpi ", " Basic\tYWRtaW46YTpi"}) {
        const std::optional<Authorization> given = authorization(withAuthorization(szBasic));
        ASSERT_TRUE(given) << szBasic;
        EXPECT_EQ(given->eKind, Authorization::Kind::Basic) << szBasic;
        EXPECT_EQ(given->strName, "admin") << szBasic;
        EXPECT_EQ(given->strPassword, "a:b") << szBasic;
    }
    const std::optional<Authorization> bearer = authorization(withAuthorization("bearer camerad_abc"));
    ASSERT_TRUE(bearer);
    EXPECT_EQ(bearer->eKind, Authorization::Kind::Bearer);
    EXPECT_EQ(bearer->strToken, "camerad_abc");
}

TEST(AuthorizationHeaders, ThatCannotBeReadAreRefused) {
    for (const std::string& text :
         {std::string(), std::string(" "), std::string("Basic"), std::string("Basic "), std::string("Basic YWRtaW4="),
          std::string("Basic YWRtaW46YTpi YWRtaW46YTpi"), std::string("Basic !!!!"), std::string("Basic YWRtaW46YTp"),
          std::string("Basic YWRtaW46YTpi\0", 19), "Basic " + std::string(100000, 'A'), std::string("Bearer"),
          std::string("Bearer a b"), "Bearer " + std::string(129, 'a'), std::string("Digest username=\"admin\""),
          std::string("Basicx YWRtaW46YTpi"), std::string("YWRtaW46YTpi")}) {
        const Refusal refusal = refusalOf([&] { authorization(withAuthorization(text)); });
        EXPECT_EQ(refusal.kind(), Refusal::Kind::Unauthorised) << text.substr(0, 100);
        EXPECT_EQ(refusal.type(), "bad-authorization") << text.substr(0, 100);
        EXPECT_THAT(refusal.what(), Not(HasSubstr("YWRtaW4"))) << text.substr(0, 100);
    }
    HttpRequest twice = withAuthorization("Basic YWRtaW46YTpi");
    twice.mapHeaders.emplace("authorization", "Basic YWRtaW46YTpi");
    EXPECT_EQ(refusedAs([&] { authorization(twice); }), "bad-authorization");
}

TEST(AuthorizationHeaders, HoldTheLongestNameAndPassword) {
    // 32 letters, a colon, 256 letters: 386 base64 letters and two of padding.
    std::string letters;
    for (int i = 0; i < 96; ++i) {
        letters += "YWFh";
    }
    const std::optional<Authorization> given = authorization(withAuthorization("Basic " + letters + "Og=="));
    ASSERT_TRUE(given);
    EXPECT_EQ(given->strName, std::string(288, 'a'));
    EXPECT_EQ(refusedAs([&] { authorization(withAuthorization("Basic " + letters + "YWFhOg==")); }),
              "bad-authorization");
}

struct OriginRow {
    bool bSecure;
    const char* szHost;
    std::vector<std::pair<const char*, const char*>> vecHeaders;
};

std::string origin(const OriginRow& p_stRow) {
    HttpRequest request;
    request.bSecure = p_stRow.bSecure;
    if (nullptr != p_stRow.szHost) {
        request.mapHeaders.emplace("host", p_stRow.szHost);
    }
    for (const auto& header : p_stRow.vecHeaders) {
        request.mapHeaders.emplace(header.first, header.second);
    }
    return refusedAs([&] { requireSameOrigin(request); });
}

TEST(Origins, OfTheCamerasOwnPageAreGood) {
    for (const OriginRow& row : {
             OriginRow{false, "camera.example", {}},
             OriginRow{false, nullptr, {}},
             OriginRow{false, "camera.example", {{"origin", "http://camera.example"}}},
             OriginRow{false, "camera.example:80", {{"origin", "http://camera.example"}}},
             OriginRow{false, "camera.example", {{"origin", "http://camera.example:80"}}},
             OriginRow{true, "camera.example:443", {{"origin", "https://camera.example"}}},
             OriginRow{true, "Camera.Example:8443", {{"origin", "HTTPS://camera.example:8443"}}},
             OriginRow{false, "[::1]:8080", {{"origin", "http://[::1]:8080"}}},
             OriginRow{false, "camera.example", {{"sec-fetch-site", "same-origin"}}},
             OriginRow{false, "camera.example", {{"sec-fetch-site", "none"}}},
             OriginRow{
                 false, "camera.example", {{"sec-fetch-site", "same-origin"}, {"origin", "http://camera.example"}}},
         }) {
        EXPECT_EQ(origin(row), "") << (nullptr == row.szHost ? "" : row.szHost) << " "
                                   << ::testing::PrintToString(row.vecHeaders);
    }
}

TEST(Origins, OfOthersAreForeign) {
    for (const OriginRow& row : {
             OriginRow{false, "camera.example", {{"origin", "http://evil.example"}}},
             OriginRow{false, "camera.example", {{"origin", "https://camera.example"}}},
             OriginRow{true, "camera.example", {{"origin", "http://camera.example"}}},
             OriginRow{false, "camera.example", {{"origin", "http://camera.example:8080"}}},
             OriginRow{false, "camera.example:8080", {{"origin", "http://camera.example"}}},
             OriginRow{true, "camera.example:80", {{"origin", "https://camera.example"}}},
             OriginRow{false, "camera.example", {{"origin", "http://camera.example.evil.example"}}},
             OriginRow{false, "camera.example", {{"origin", "http://evil-camera.example"}}},
             OriginRow{false, "camera.example", {{"origin", "null"}}},
             OriginRow{false, "camera.example", {{"origin", ""}}},
             OriginRow{false, "camera.example", {{"origin", "camera.example"}}},
             OriginRow{false, "camera.example", {{"origin", "http://camera.example/"}}},
             OriginRow{false, "", {{"origin", "http://"}}},
             OriginRow{false, nullptr, {{"origin", "http://"}}},
             OriginRow{
                 false, "camera.example", {{"origin", "http://camera.example"}, {"origin", "http://evil.example"}}},
             OriginRow{false, "evil.example", {{"host", "camera.example"}, {"origin", "http://evil.example"}}},
             OriginRow{false, "camera.example", {{"sec-fetch-site", "cross-site"}}},
             OriginRow{false, "camera.example", {{"sec-fetch-site", "same-site"}}},
             OriginRow{false, "camera.example", {{"sec-fetch-site", ""}}},
             OriginRow{false, "camera.example", {{"sec-fetch-site", "none"}, {"sec-fetch-site", "cross-site"}}},
             OriginRow{
                 false, "camera.example", {{"sec-fetch-site", "cross-site"}, {"origin", "http://camera.example"}}},
         }) {
        EXPECT_EQ(origin(row), "foreign-origin")
            << (nullptr == row.szHost ? "" : row.szHost) << " " << ::testing::PrintToString(row.vecHeaders);
    }
}

}  // namespace
}  // namespace camerad
