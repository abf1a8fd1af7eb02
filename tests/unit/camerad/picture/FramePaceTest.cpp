#include "apps/camerad/picture/FramePace.h"

#include <gtest/gtest.h>

namespace camerad {
namespace {

using std::chrono::milliseconds;

const FramePace::Clock::time_point kStart{std::chrono::hours(1)};

TEST(FramePace, TheFirstFrameIsDueAtOnce) {
    EXPECT_LT(FramePace().due(milliseconds(40)), kStart);
}

TEST(FramePace, FramesAreDueEvenly) {
    FramePace pace;
    pace.took(kStart, milliseconds(40));
    EXPECT_EQ(pace.due(milliseconds(40)), kStart + milliseconds(40));
    pace.took(kStart + milliseconds(40), milliseconds(40));
    EXPECT_EQ(pace.due(milliseconds(40)), kStart + milliseconds(80));
}

TEST(FramePace, ASmallDelayDoesNotShiftTheRow) {
    FramePace pace;
    pace.took(kStart, milliseconds(40));
    pace.took(kStart + milliseconds(49), milliseconds(40));
    EXPECT_EQ(pace.due(milliseconds(40)), kStart + milliseconds(80));
}

TEST(FramePace, ALongDelayIsNotMadeGood) {
    FramePace pace;
    pace.took(kStart, milliseconds(40));
    pace.took(kStart + milliseconds(400), milliseconds(40));
    EXPECT_EQ(pace.due(milliseconds(40)), kStart + milliseconds(430));
}

TEST(FramePace, AnotherRateCountsFromTheLastFrame) {
    FramePace pace;
    pace.took(kStart, milliseconds(40));
    EXPECT_EQ(pace.due(milliseconds(1000)), kStart + milliseconds(1000));
}

TEST(FramePace, ThePeriodBelongsToTheRate) {
    EXPECT_EQ(FramePace::periodOf(25), milliseconds(40));
    EXPECT_EQ(FramePace::periodOf(0.5), milliseconds(2000));
}

}  // namespace
}  // namespace camerad
