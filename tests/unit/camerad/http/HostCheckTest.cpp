#include "apps/camerad/http/HostCheck.h"

#include <gtest/gtest.h>

namespace {

using camerad::isOurHost;

TEST(HostCheck, KnowsItsNamesAndAddresses) {
    EXPECT_TRUE(isOurHost("localhost", {}, "127.0.0.1", "127.0.0.1"));
    EXPECT_TRUE(isOurHost("127.0.0.1", {}, "127.0.0.1", "127.0.0.1"));
    EXPECT_TRUE(isOurHost("192.168.0.7", {}, "0.0.0.0", "192.168.0.7"));
    EXPECT_TRUE(isOurHost("fe80:0:0::1", {}, "::", "fe80::1"));
    EXPECT_TRUE(isOurHost("camera.lan", {"Camera.LAN"}, "0.0.0.0", "10.0.0.1"));
    EXPECT_TRUE(isOurHost("whatever.example", {"*"}, "0.0.0.0", "10.0.0.1"));
}

TEST(HostCheck, ANameFromElsewhereIsNotOurs) {
    EXPECT_FALSE(isOurHost("evil.example", {}, "127.0.0.1", "127.0.0.1"));
    EXPECT_FALSE(isOurHost("localhost.evil.example", {}, "127.0.0.1", "127.0.0.1"));
    EXPECT_FALSE(isOurHost("camera.lan.evil.example", {"camera.lan"}, "127.0.0.1", "127.0.0.1"));
    EXPECT_FALSE(isOurHost("10.0.0.2", {}, "10.0.0.1", "10.0.0.1"));
    EXPECT_FALSE(isOurHost("", {}, "10.0.0.1", "10.0.0.1"));
}

TEST(HostCheck, KnowsTheLoopback) {
    EXPECT_TRUE(camerad::isLoopback("127.0.0.1"));
    EXPECT_TRUE(camerad::isLoopback("::1"));
    EXPECT_TRUE(camerad::isLoopback("localhost"));
    EXPECT_FALSE(camerad::isLoopback("0.0.0.0"));
    EXPECT_FALSE(camerad::isLoopback("12.7.0.1"));
    EXPECT_FALSE(camerad::isLoopback("127.evil.example"));
}

}  // namespace
