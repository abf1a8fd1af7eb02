#include "apps/camerad/http/Problem.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using camerad::HttpResponse;
using camerad::problemDocument;
using camerad::problemResponse;
using camerad::Refusal;
using camerad::statusOf;
using Kind = Refusal::Kind;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(Problem, EveryKindHasItsStatus) {
    EXPECT_EQ(statusOf(Kind::NotFound), 404);
    EXPECT_EQ(statusOf(Kind::BadValue), 422);
    EXPECT_EQ(statusOf(Kind::Refused), 422);
    EXPECT_EQ(statusOf(Kind::Conflict), 409);
    EXPECT_EQ(statusOf(Kind::Busy), 409);
    EXPECT_EQ(statusOf(Kind::Unauthorised), 401);
    EXPECT_EQ(statusOf(Kind::Forbidden), 403);
    EXPECT_EQ(statusOf(Kind::TooMany), 429);
    EXPECT_EQ(statusOf(Kind::TooLarge), 413);
    EXPECT_EQ(statusOf(Kind::Failed), 500);
}

TEST(Problem, TheTitleIsTheTypeInWords) {
    const nlohmann::json document =
        problemDocument(Refusal(Kind::Conflict, "window-not-storable", "It ends too late."));
    EXPECT_EQ(document, nlohmann::json({{"type", "/problems/window-not-storable"},
                                        {"title", "Window not storable"},
                                        {"status", 409},
                                        {"detail", "It ends too late."}}));
}

TEST(Problem, SaysWhenToTryAgain) {
    const HttpResponse response = problemResponse(Refusal(Kind::Busy, "busy", "later").retryAfter(3));
    EXPECT_EQ(response.nStatus, 409);
    EXPECT_EQ(response.strType, "application/problem+json");
    EXPECT_THAT(response.vecHeaders, ElementsAre(std::make_pair("Retry-After", "3")));
    EXPECT_THAT(problemResponse(Refusal(Kind::Busy, "busy", "later")).vecHeaders, IsEmpty());
}

TEST(Problem, BytesThatAreNoTextDoNotEndIt) {
    const HttpResponse response = problemResponse(422, "bad-value", "not \xFF\xFE text");
    EXPECT_TRUE(nlohmann::json::accept(response.strBody)) << response.strBody;
}

}  // namespace
