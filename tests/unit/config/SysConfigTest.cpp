#include "sensor/config/SysConfig.h"

#include "sensor/config/sensor.h"
#include "tests/support/TestRoot.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <type_traits>
#include <vector>

namespace {

TEST(SysConfig, HasItsFieldsInTheOrderOfTheBorder) {
    static_assert(std::is_standard_layout_v<SysConfig>);
    static_assert(0 == offsetof(SysConfig, moduleConfig));
    static_assert(sizeof(ModuleConfig) == offsetof(SysConfig, nSchemeSum));
    static_assert(offsetof(SysConfig, nSchemeSum) + 4 == offsetof(SysConfig, nLanguageSum));
    static_assert(offsetof(SysConfig, nLanguageSum) < offsetof(SysConfig, pLanguageFiles));
    static_assert(offsetof(SysConfig, pLanguageFiles) + sizeof(void*) == offsetof(SysConfig, szUIStyle));
    static_assert(offsetof(SysConfig, szUIStyle) + sizeof(void*) == offsetof(SysConfig, nDeviceType));
    static_assert(4 == sizeof(SysConfig::nSchemeSum) && std::is_unsigned_v<decltype(SysConfig::nSchemeSum)>);
    static_assert(4 == sizeof(SysConfig::nDeviceType) && std::is_unsigned_v<decltype(SysConfig::nDeviceType)>);
    static_assert(std::is_same_v<char*, decltype(SysConfig::szUIStyle)>);
    static_assert(std::is_same_v<LanguageFileEntry*, decltype(SysConfig::pLanguageFiles)>);
}

TEST(SysConfig, HasAModuleConfigurationWithTextsOfFixedSize) {
    static_assert(std::is_standard_layout_v<ModuleConfig>);
    static_assert(0 == offsetof(ModuleConfig, nModuleId));
    static_assert(4 == offsetof(ModuleConfig, szLabel));
    static_assert(4 + 32 == offsetof(ModuleConfig, szShortLabel));
    static_assert(4 + 32 + 10 == offsetof(ModuleConfig, szParameters));
    static_assert(4 + 32 + 10 + 256 == offsetof(ModuleConfig, szDetail));
    static_assert(512 == sizeof(ModuleConfig::szDetail));
    static_assert(816 == sizeof(ModuleConfig));
}

TEST(SysConfig, HasLanguagesWithTwoTextsBehindABlockOfTheirOwn) {
    static_assert(std::is_standard_layout_v<LanguageFileEntry>);
    static_assert(0 == offsetof(LanguageFileEntry, nLanguageId) &&
                  std::is_signed_v<decltype(LanguageFileEntry::nLanguageId)>);
    static_assert(36 <= offsetof(LanguageFileEntry, szLanguageFile));
    static_assert(offsetof(LanguageFileEntry, szLanguageFile) < 36 + sizeof(void*));
    static_assert(offsetof(LanguageFileEntry, szLanguageFile) + sizeof(char*) ==
                  offsetof(LanguageFileEntry, szCommonFile));
}

TEST(SysConfig, IsEmptyWhenItIsMade) {
    const SysConfig stSysConf;
    EXPECT_EQ(0u, stSysConf.moduleConfig.nModuleId);
    EXPECT_STREQ("", stSysConf.moduleConfig.szLabel);
    EXPECT_STREQ("", stSysConf.moduleConfig.szDetail);
    EXPECT_EQ(0u, stSysConf.nSchemeSum);
    EXPECT_EQ(0u, stSysConf.nLanguageSum);
    EXPECT_EQ(nullptr, stSysConf.pLanguageFiles);
    EXPECT_EQ(nullptr, stSysConf.szUIStyle);
    EXPECT_EQ(0u, stSysConf.nDeviceType);
}

// --- Release: a memory checker sees what is released twice or not at all ---

TEST(SysConfig, ReleasesTheStyleAndKeepsItsPointers) {
    SysConfig stSysConf;
    stSysConf.szUIStyle = strdup("<style/>");
    stSysConf.nSchemeSum = 4;
    const char* const pBefore = stSysConf.szUIStyle;
    uinitSysConf(&stSysConf);
    EXPECT_EQ(pBefore, stSysConf.szUIStyle);
    EXPECT_EQ(4u, stSysConf.nSchemeSum);
}

TEST(SysConfig, ReleasesTheTextsOfItsLanguagesButNotTheTable) {
    auto* const pLanguages = static_cast<LanguageFileEntry*>(std::calloc(3, sizeof(LanguageFileEntry)));
    pLanguages[0] = {7, {}, strdup("language"), strdup("common")};
    pLanguages[1] = {8, {}, nullptr, strdup("common")};
    pLanguages[2] = {9, {}, strdup("language"), nullptr};
    SysConfig stSysConf;
    stSysConf.pLanguageFiles = pLanguages;
    stSysConf.nLanguageSum = 3;
    const char* const pText = pLanguages[0].szLanguageFile;
    uinitSysConf(&stSysConf);
    EXPECT_EQ(pLanguages, stSysConf.pLanguageFiles);
    EXPECT_EQ(3u, stSysConf.nLanguageSum);
    EXPECT_EQ(7, pLanguages[0].nLanguageId);
    EXPECT_EQ(pText, pLanguages[0].szLanguageFile);
    EXPECT_EQ(nullptr, pLanguages[1].szLanguageFile);
    std::free(pLanguages);
}

TEST(SysConfig, ReleasesOnlyAsManyLanguagesAsItCounts) {
    std::vector<LanguageFileEntry> vecLanguages(2);
    vecLanguages[0] = {7, {}, strdup("language"), nullptr};
    vecLanguages[1] = {8, {}, strdup("not counted"), nullptr};
    SysConfig stSysConf;
    stSysConf.pLanguageFiles = vecLanguages.data();
    stSysConf.nLanguageSum = 1;
    uinitSysConf(&stSysConf);
    EXPECT_STREQ("not counted", vecLanguages[1].szLanguageFile);
    std::free(vecLanguages[1].szLanguageFile);
}

TEST(SysConfig, ReleasesNothingOfATableThatIsNotThere) {
    SysConfig stSysConf;
    stSysConf.nLanguageSum = 4000000000u;
    uinitSysConf(&stSysConf);
    EXPECT_EQ(4000000000u, stSysConf.nLanguageSum);
}

}  // namespace
