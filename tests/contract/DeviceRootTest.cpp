#include "platform/DeviceRoot.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

using platform::devicePath;
using platform::deviceRoot;
using platform::setDeviceRoot;

namespace {

class DeviceRootTest : public ::testing::Test {
protected:
    void TearDown() override { setDeviceRoot("/"); }
};

TEST_F(DeviceRootTest, IsWhatWasSetLast) {
    setDeviceRoot("/srv/one");
    EXPECT_EQ(deviceRoot(), "/srv/one");
    setDeviceRoot("/srv/two");
    EXPECT_EQ(deviceRoot(), "/srv/two");
}

TEST_F(DeviceRootTest, HasNoTrailingSlash) {
    setDeviceRoot("/srv/one/");
    EXPECT_EQ(deviceRoot(), "/srv/one");
    setDeviceRoot("/srv/one//");
    EXPECT_EQ(deviceRoot(), "/srv/one");
}

TEST_F(DeviceRootTest, AnEmptyTextAndASlashStandForTheTop) {
    for (const char* const szRoot : {"", "/"}) {
        setDeviceRoot("/srv/one");
        setDeviceRoot(szRoot);
        EXPECT_EQ(deviceRoot(), "");
        EXPECT_EQ(devicePath("/mnt/mtd"), "/mnt/mtd");
    }
}

TEST_F(DeviceRootTest, AbsolutePathsLieBelowIt) {
    setDeviceRoot("/srv/a root");
    EXPECT_EQ(devicePath("/mnt/mtd/sign/Debug.sign"), "/srv/a root/mnt/mtd/sign/Debug.sign");
    EXPECT_EQ(devicePath("/"), "/srv/a root/");
}

TEST_F(DeviceRootTest, RelativeAndEmptyPathsComeBackUnchanged) {
    setDeviceRoot("/srv/one");
    EXPECT_EQ(devicePath("mnt/mtd"), "mnt/mtd");
    EXPECT_EQ(devicePath("./x"), "./x");
    EXPECT_EQ(devicePath(""), "");
}

TEST_F(DeviceRootTest, TheDirectoryNeedNotExist) {
    setDeviceRoot("/no/such/folder/anywhere");
    EXPECT_EQ(devicePath("/tmp/x"), "/no/such/folder/anywhere/tmp/x");
}

TEST_F(DeviceRootTest, ManyThreadsMayAskWhileOneSets) {
    setDeviceRoot("/srv/one");
    std::vector<std::thread> vecReaders;
    for (int i = 0; i < 3; ++i) {
        vecReaders.emplace_back([] {
            for (int n = 0; n < 1000; ++n) {
                const std::string strPath = devicePath("/x");
                EXPECT_TRUE("/srv/one/x" == strPath || "/srv/two/x" == strPath) << strPath;
            }
        });
    }
    for (int n = 0; n < 1000; ++n) {
        setDeviceRoot(0 == n % 2 ? "/srv/two" : "/srv/one");
    }
    for (std::thread& reader : vecReaders) {
        reader.join();
    }
}

// The environment counts once in a process, so each of these asks in a process of its own.
class DeviceRootAtStartTest : public ::testing::Test {
protected:
    void SetUp() override { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

    [[noreturn]] static void leaveWith(bool p_bRight) { std::_Exit(p_bRight ? 0 : 1); }
};

TEST_F(DeviceRootAtStartTest, ComesFromTheEnvironment) {
    const auto ask = [] {
        setenv("CAMERA_ROOT", "/srv/camera/", 1);
        leaveWith("/srv/camera" == deviceRoot() && "/srv/camera/tmp" == devicePath("/tmp"));
    };
    EXPECT_EXIT(ask(), ::testing::ExitedWithCode(0), "");
}

TEST_F(DeviceRootAtStartTest, IsTheTopWithoutEnvironment) {
    const auto ask = [] {
        unsetenv("CAMERA_ROOT");
        leaveWith(deviceRoot().empty() && "/tmp" == devicePath("/tmp"));
    };
    EXPECT_EXIT(ask(), ::testing::ExitedWithCode(0), "");
}

TEST_F(DeviceRootAtStartTest, LooksAtTheEnvironmentOnlyOnce) {
    const auto ask = [] {
        setenv("CAMERA_ROOT", "/srv/first", 1);
        const std::string strFirst = deviceRoot();
        setenv("CAMERA_ROOT", "/srv/second", 1);
        leaveWith("/srv/first" == strFirst && "/srv/first" == deviceRoot());
    };
    EXPECT_EXIT(ask(), ::testing::ExitedWithCode(0), "");
}

TEST_F(DeviceRootAtStartTest, WhatWasSetBeatsTheEnvironment) {
    const auto ask = [] {
        setenv("CAMERA_ROOT", "/srv/camera", 1);
        setDeviceRoot("/srv/chosen");
        leaveWith("/srv/chosen" == deviceRoot());
    };
    EXPECT_EXIT(ask(), ::testing::ExitedWithCode(0), "");
}

}  // namespace
