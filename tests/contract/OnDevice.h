// A test on a device root of its own with the clock held at 2024-05-01 12:00:00.
#pragma once

#include "platform/Clock.h"
#include "platform/Types.h"
#include "tests/support/TestRoot.h"

#include <gtest/gtest.h>

constexpr INT64 kSecond = 1000000;  // microseconds

class OnDevice : public ::testing::Test {
protected:
    void TearDown() override { platform::Clock::release(); }

    TestRoot m_objRoot;
};
