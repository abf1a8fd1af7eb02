#include "apps/sensorctl/CommandTable.h"

#include "apps/sensorctl/Shared.h"

#include <gmock/gmock.h>

namespace sensorctl {
namespace {

using testing::HasSubstr;

CommandTable smallTable() {
    const auto nothing = [](Session&, const Words&) { return Result{}; };
    CommandTable table;
    table.add({"set", "KEY VALUE", "set one", "group", 2, 3, nothing});
    table.add({"getDNState", "", "state", "group", 0, 0, nothing});
    return table;
}

std::string refusalOfCommand(const Words& p_vecWords) {
    try {
        smallTable().match(p_vecWords);
        return "taken";
    } catch (const CommandError& error) {
        return error.what();
    }
}

TEST(CommandTable, ACommandIsFoundInAnyCase) {
    const CommandTable table = smallTable();
    EXPECT_EQ(table.find("getdnstate").strName, "getDNState");
    EXPECT_EQ(table.find("SET").strName, "set");
}

TEST(CommandTable, AnUnknownCommandIsRefusedWithTheNearestName) {
    EXPECT_EQ(refusalOfCommand({"sett"}), "unknown command \"sett\"; did you mean \"set\"?");
    EXPECT_EQ(refusalOfCommand({"getDNStat"}), "unknown command \"getDNStat\"; did you mean \"getDNState\"?");
    EXPECT_EQ(refusalOfCommand({"frobnicate"}), "unknown command \"frobnicate\"; help lists the commands");
}

TEST(CommandTable, TheNumberOfArgumentsIsChecked) {
    EXPECT_EQ(refusalOfCommand({"set", "a", "b"}), "taken");
    EXPECT_EQ(refusalOfCommand({"set", "a", "b", "c"}), "taken");
    EXPECT_EQ(refusalOfCommand({"set", "a"}), "set needs more arguments; usage: set KEY VALUE");
    EXPECT_EQ(refusalOfCommand({"set", "a", "b", "c", "d"}),
              "one argument too many for set: \"d\"; usage: set KEY VALUE");
    EXPECT_THAT(refusalOfCommand({"getDNState", "x"}), HasSubstr("one argument too many for getDNState: \"x\""));
}

TEST(CommandTable, TwoCommandsOfOneNameAreAMistakeOfTheProgram) {
    CommandTable table = smallTable();
    EXPECT_THROW(table.add({"SET", "", "", "", 0, 0, nullptr}), std::logic_error);
}

}  // namespace
}  // namespace sensorctl
