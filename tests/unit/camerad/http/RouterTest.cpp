#include "apps/camerad/http/Router.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using camerad::Access;
using camerad::HttpRequest;
using camerad::HttpResponse;
using camerad::Route;
using camerad::Router;
using testing::ElementsAre;
using testing::IsEmpty;

Route route(const std::string& p_strMethod, const std::string& p_strPattern) {
    return {p_strMethod, p_strPattern, Access::Everybody, 0, [](const HttpRequest&) { return HttpResponse(); }};
}

Router someRoutes() {
    Router router;
    for (const char* const pattern : {"/", "/a", "/a/", "/a/{x}", "/a/{x}/c", "/a/b/{y}", "/{x}/b/c"}) {
        router.add(route("GET", pattern));
    }
    router.add(route("PUT", "/a/{z}"));
    router.add(route("PUT", "/a/fixed"));
    return router;
}

std::string patternOf(const Router& p_objRouter, const std::string& p_strMethod, const std::string& p_strPath) {
    const Router::Found found = p_objRouter.find(p_strMethod, p_strPath);
    return nullptr == found.pRoute ? "" : found.pRoute->strPattern;
}

TEST(Router, AFixedSegmentWinsOverAName) {
    const Router router = someRoutes();
    EXPECT_EQ(patternOf(router, "GET", "/a/b/c"), "/a/b/{y}");
    EXPECT_EQ(patternOf(router, "GET", "/a/x/c"), "/a/{x}/c");
    EXPECT_EQ(patternOf(router, "GET", "/q/b/c"), "/{x}/b/c");
    EXPECT_EQ(patternOf(router, "PUT", "/a/fixed"), "/a/fixed");
    EXPECT_EQ(patternOf(router, "PUT", "/a/other"), "/a/{z}");
}

TEST(Router, AMethodThatTheFixedPathLacksFallsToTheName) {
    EXPECT_EQ(patternOf(someRoutes(), "GET", "/a/fixed"), "/a/{x}");
}

TEST(Router, GivesWhatStandsForTheNames) {
    const Router router = someRoutes();
    const Router::Found found = router.find("GET", "/a/b/seven eight");
    EXPECT_THAT(found.mapPath, ElementsAre(std::make_pair("y", "seven eight")));
}

TEST(Router, SlashesCount) {
    const Router router = someRoutes();
    EXPECT_EQ(patternOf(router, "GET", "/"), "/");
    EXPECT_EQ(patternOf(router, "GET", "/a"), "/a");
    EXPECT_EQ(patternOf(router, "GET", "/a/"), "/a/");
    EXPECT_EQ(patternOf(router, "GET", "//"), "");
    EXPECT_EQ(patternOf(router, "GET", "//a"), "");
    EXPECT_EQ(patternOf(router, "GET", "/a//c"), "");
    EXPECT_EQ(patternOf(router, "GET", ""), "");
    EXPECT_EQ(patternOf(router, "GET", "a"), "");
}

TEST(Router, HeadFindsTheRouteOfGet) {
    const Router router = someRoutes();
    EXPECT_EQ(patternOf(router, "HEAD", "/a/b/c"), "/a/b/{y}");
    EXPECT_EQ(router.find("HEAD", "/nowhere").pRoute, nullptr);
}

TEST(Router, NamesTheMethodsOfAPath) {
    const Router router = someRoutes();
    EXPECT_THAT(router.find("POST", "/a/fixed").vecAllowed, ElementsAre("GET", "HEAD", "PUT"));
    EXPECT_THAT(router.find("POST", "/nowhere/at/all").vecAllowed, IsEmpty());
}

TEST(Router, RefusesTwoRoutesForTheSame) {
    Router router = someRoutes();
    EXPECT_THROW(router.add(route("GET", "/a/{other}")), std::logic_error);
    EXPECT_THROW(router.add(route("GET", "no-slash")), std::logic_error);
    EXPECT_THROW(router.add({"GET", "/new", Access::Everybody, 0, nullptr}), std::logic_error);
    EXPECT_NO_THROW(router.add(route("POST", "/a/{other}")));
}

TEST(Router, APathOfAMillionSegmentsIsNotFound) {
    std::string path;
    for (int i = 0; i < 1000000; ++i) {
        path += "/x";
    }
    EXPECT_EQ(someRoutes().find("GET", path).pRoute, nullptr);
}

}  // namespace
