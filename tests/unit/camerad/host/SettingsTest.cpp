#include "apps/camerad/host/Settings.h"

#include "tests/support/TestRoot.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using camerad::ChannelSettings;
using camerad::Settings;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

const char kBroken[] = "/mnt/mtd/camerad/settings.json.broken";

std::string fileWith(const std::string& p_strScheme, const std::string& p_strNames) {
    return R"({"version": 1, "channels": {"1": {"automatic": true, "scheme": )" + p_strScheme + R"(, "names": )" +
           p_strNames + "}}}";
}

TEST(SettingsTest, AreAsTheyWereKept) {
    const TestRoot root;
    std::string problem;
    ChannelSettings kept;
    kept.bAutomatic = true;
    kept.nScheme = 32;
    kept.mapNames = {{0, "Day"}, {31, "N\xC3\xA4" + std::string(38, 't')}};
    Settings(problem).keep(4, kept);
    const ChannelSettings read = Settings(problem).of(4);
    EXPECT_THAT(problem, IsEmpty());
    EXPECT_EQ(kept.bAutomatic, read.bAutomatic);
    EXPECT_EQ(kept.nScheme, read.nScheme);
    EXPECT_EQ(kept.mapNames, read.mapNames);
}

// The file may have been changed by hand, or by a medium that forgets.
TEST(SettingsTest, ThatCannotBeAreKeptAsideAsAWhole) {
    const std::string longName(41, 'a');
    for (const std::string& bad :
         {std::string(),
          std::string("[]"),
          std::string("null"),
          std::string(1000, '['),
          fileWith("1e300", "{}"),
          fileWith("-1", "{}"),
          fileWith("33", "{}"),
          fileWith("18446744073709551615", "{}"),
          fileWith("true", "{}"),
          fileWith("0", "[\"a\"]"),
          fileWith("0", "7"),
          fileWith("0", R"({"1": 7})"),
          fileWith("0", R"({"1": ""})"),
          fileWith("0", R"({"1": "a\u0000b"})"),
          fileWith("0", R"({"1": ")" + longName + "\"}"),
          fileWith("0", R"({"33": "a"})"),
          fileWith("0", R"({"-1": "a"})"),
          fileWith("0", R"({"1a": "a"})"),
          fileWith("0", R"({"99999999999": "a"})"),
          std::string(R"({"version": 1.5, "channels": {}})"),
          std::string(R"({"version": 2, "channels": {}})"),
          std::string(R"({"version": 1, "channels": []})"),
          std::string(R"({"version": 1, "channels": {"5": {"automatic": true, "scheme": 0, "names": {}}}})"),
          std::string(R"({"version": 1, "channels": {"1": []}})")}) {
        const TestRoot root;
        root.write(Settings::kFile, bad);
        std::string problem;
        const Settings settings(problem);
        EXPECT_THAT(problem, HasSubstr("settings.json.broken")) << bad;
        EXPECT_TRUE(root.exists(kBroken)) << bad;
        EXPECT_FALSE(settings.of(1).bAutomatic) << bad;
        EXPECT_THAT(settings.of(1).mapNames, IsEmpty()) << bad;
    }
}

}  // namespace
