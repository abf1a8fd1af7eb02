#include "apps/shared/KeyNames.h"

#include "apps/shared/CommandError.h"

#include <gmock/gmock.h>

#include <set>

namespace apps {
namespace {

using testing::HasSubstr;

// The library's own table, row by row.
struct LibraryRow {
    std::string strName;
    u32 nKey;
};

std::vector<LibraryRow> libraryRows() {
    return {
#define ROW(name, key, command, handler) {#name, key},
#define STORED_ROW(name, key) {#name, key},
#define DRIVER_NAMED_ROW(name, key, command, handler) {#name, key},
#include "sensor/KeyCmdTable.def"
#undef ROW
#undef STORED_ROW
#undef DRIVER_NAMED_ROW
    };
}

TEST(KeyNames, EveryRowAgreesWithTheLibrarysTable) {
    const std::vector<LibraryRow> library = libraryRows();
    const std::vector<KeyName>& own = keyNames();
    ASSERT_EQ(own.size(), library.size());
    ASSERT_EQ(own.size(), 154u);
    for (std::size_t i = 0; i < own.size(); ++i) {
        EXPECT_EQ(own[i].szName, library[i].strName) << "row " << i;
        EXPECT_EQ(own[i].nKey, library[i].nKey) << "row " << i;
    }
}

TEST(KeyNames, NoTwoRowsShareAKeyOrAShortName) {
    std::set<u32> keys;
    for (const KeyName& row : keyNames()) {
        EXPECT_TRUE(keys.insert(row.nKey).second) << row.szName;
        EXPECT_EQ(keyOfName(row.szName), row.nKey);
    }
}

TEST(KeyNames, AKeyHasAWholeNameAShortNameAndANumber) {
    for (const char* word : {"KEY_BRIGHTNESS", "key_brightness", "brightness", "Brightness", "34", "0x22"}) {
        EXPECT_EQ(parseKey(word), 34u) << word;
    }
    EXPECT_EQ(parseKey("2d_nr_switch"), 2304u);
    EXPECT_EQ(parseKey("IA_CMD_UI_SHUTTER_RESET"), 8231u);
    EXPECT_EQ(parseKey("shutter_reset"), 8231u);
}

TEST(KeyNames, ANumberWithoutANameIsAKeyToo) {
    EXPECT_EQ(parseKey("201"), 201u);
    EXPECT_EQ(nameOfKey(201), "");
    EXPECT_EQ(describeKey(201), "key 201");
    EXPECT_EQ(describeKey(34), "KEY_BRIGHTNESS (34)");
    EXPECT_EQ(shortNameOfKey(34), "brightness");
    EXPECT_EQ(shortNameOfKey(8231), "shutter_reset");
    EXPECT_EQ(shortNameOfKey(201), "");
}

std::string refusalOf(const std::string& p_strWord) {
    try {
        parseKey(p_strWord);
        return "taken";
    } catch (const CommandError& error) {
        return error.what();
    }
}

TEST(KeyNames, AnUnknownNameIsRefusedWithTheNearestOne) {
    EXPECT_EQ(refusalOf("brigthness"), "unknown key \"brigthness\"; did you mean \"brightness\"?");
    EXPECT_EQ(refusalOf("KEY_SATURATON"), "unknown key \"KEY_SATURATON\"; did you mean \"saturation\"?");
    EXPECT_EQ(refusalOf("xyzzyxyzzy"), "unknown key \"xyzzyxyzzy\"");
    EXPECT_EQ(refusalOf(""), "unknown key \"\"");
}

TEST(KeyNames, ABadNumberIsRefusedAsANumber) {
    EXPECT_THAT(refusalOf("34x"), HasSubstr("whole number"));
    EXPECT_THAT(refusalOf("-1"), HasSubstr("from 0"));
    EXPECT_THAT(refusalOf("4294967296"), HasSubstr("from 0"));
}

}  // namespace
}  // namespace apps
