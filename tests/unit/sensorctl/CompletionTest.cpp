#include "apps/sensorctl/Completion.h"

#include "tests/support/TestRoot.h"
#include "tests/unit/sensorctl/AllCommands.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace sensorctl {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;

using List = std::vector<std::string>;

class CompletionOf : public testing::Test {
protected:
    List of(const Words& p_vecBefore, const std::string& p_strBegun) const {
        return m_objCompletion.candidates(p_vecBefore, p_strBegun);
    }
    List ofArguments(const Words& p_vecBefore, const std::string& p_strBegun) const {
        return m_objCompletion.argumentCandidates(p_vecBefore, p_strBegun);
    }

private:
    AllCommands m_objCommands;
    Completion m_objCompletion{m_objCommands.table(),
                               {[](u32 p_nKey) {
                                    return 2384 == p_nKey ? List{"0", "1", "2", "3"} : List{};
                                },
                                []() {
                                    return List{"image", "exposure"};
                                }}};
};

TEST_F(CompletionOf, TheFirstWordIsACommand) {
    EXPECT_THAT(of({}, "sensorC"), ElementsAre("sensorCheck"));
    EXPECT_THAT(of({}, "SENSORc"), ElementsAre("sensorCheck"));
    EXPECT_THAT(of({}, ""), IsSupersetOf({"set", "get", "watch", "expect"}));
    EXPECT_THAT(of({}, "frob"), IsEmpty());
}

TEST_F(CompletionOf, AKeyIsOfferedAsItIsBeingWritten) {
    EXPECT_THAT(of({"set"}, "brig"), ElementsAre("brightness"));
    EXPECT_THAT(of({"set"}, "KEY_BRIG"), ElementsAre("KEY_BRIGHTNESS"));
    EXPECT_THAT(of({"get", "contrast"}, "brig"), ElementsAre("brightness"));  // again and again
    EXPECT_THAT(of({"restore"}, "brig"), ElementsAre("brightness"));
    EXPECT_THAT(of({"restore", "contrast"}, "brig"), IsEmpty());  // one only
}

TEST_F(CompletionOf, BehindAKeyItsValuesAreOffered) {
    EXPECT_THAT(of({"set", "mirror"}, ""), ElementsAre("0", "1", "2", "3"));
    EXPECT_THAT(of({"set", "brightness"}, ""), IsEmpty());
    EXPECT_THAT(of({"set", "mirror", "2"}, ""), ElementsAre("nocache"));
}

TEST_F(CompletionOf, SubCommandsAndTheirWordsAreOffered) {
    EXPECT_THAT(of({"scene"}, "a"), ElementsAre("advance", "ambient"));
    EXPECT_THAT(of({"Scene"}, "LI"), ElementsAre("light"));
    EXPECT_THAT(of({"scene", "light"}, ""), IsEmpty());
    EXPECT_THAT(of({"scene"}, "f"), ElementsAre("fog"));
    EXPECT_THAT(of({"scene", "car"}, ""), ElementsAre("0", "1"));
    EXPECT_THAT(of({"show"}, ""), ElementsAre("beaway", "wdr"));
    EXPECT_THAT(of({"show", "wdr"}, ""), ElementsAre("0", "1"));
    EXPECT_THAT(of({"diff", "memory"}, "f"), ElementsAre("factory", "flash"));
    EXPECT_THAT(of({"record"}, "sto"), ElementsAre("stop"));
    EXPECT_THAT(of({"list", "tab"}, ""), ElementsAre("exposure", "image"));
    EXPECT_THAT(of({"list", "tab", "image"}, ""), ElementsAre("changed", "keys"));
    EXPECT_THAT(of({"watch", "10", "count", "2"}, "st"), ElementsAre("state"));
}

TEST_F(CompletionOf, AWordThatMayBeLeftOutIsOfferedAndPassed) {
    EXPECT_THAT(of({"dump"}, ""), ElementsAre("scheme"));
    EXPECT_THAT(of({"dump", "1"}, "bright"), ElementsAre("brightness"));
    EXPECT_THAT(of({"dump", "scheme", "1"}, "bright"), ElementsAre("brightness"));
}

TEST_F(CompletionOf, CommandsInsideCommandsAreCompleted) {
    EXPECT_THAT(of({"help"}, "sensorC"), ElementsAre("sensorCheck"));
    EXPECT_THAT(of({"expect", "fail"}, "sensorC"), ElementsAre("sensorCheck"));
    EXPECT_THAT(of({"expect", "fail", "set"}, "brig"), ElementsAre("brightness"));
    EXPECT_THAT(of({"setter"}, "setWDR"), ElementsAre("setWDRStrength", "setWDRSwitch"));
    EXPECT_THAT(of({"getter"}, "getWDRS"), ElementsAre("getWDRStrength", "getWDRSwitch"));
    EXPECT_THAT(of({"fault", "add", "cmd=34"}, "re"), ElementsAre("result="));
}

TEST_F(CompletionOf, CommandsInsideVeryManyCommandsAreCompletedToo) {
    Words deep;
    for (int i = 0; i < 100000; ++i) {
        deep.insert(deep.end(), {"expect", "fail"});
    }
    EXPECT_THAT(of(deep, "restor"), IsSupersetOf({"restore", "restoreAe"}));
}

TEST_F(CompletionOf, AnUnknownCommandHasNothingToOffer) {
    EXPECT_THAT(of({"frobnicate"}, ""), IsEmpty());
    EXPECT_THAT(of({"uinit"}, ""), IsEmpty());
}

TEST_F(CompletionOf, FilesAreCompletedWithASlashBehindFolders) {
    const TestRoot folder;
    folder.write("/one.txt", "");
    folder.write("/only/two.txt", "");
    folder.write("/.hidden", "");
    const std::string path = folder.path();
    EXPECT_THAT(of({"record"}, path + "/o"), ElementsAre(path + "/one.txt", path + "/only/"));
    EXPECT_THAT(pathsLike(path + "/"), Not(Contains(path + "/.hidden")));
    EXPECT_THAT(pathsLike(path + "/.h"), ElementsAre(path + "/.hidden"));
    EXPECT_THAT(pathsLike(path + "/no such folder/"), IsEmpty());
    EXPECT_THAT(of({"languages", "1", path + "/one.txt"}, path + "/on"),
                ElementsAre(path + "/one.txt", path + "/only/"));
}

TEST_F(CompletionOf, ArgumentsAreOptionsThenCommands) {
    EXPECT_THAT(ofArguments({}, "--re"), ElementsAre("--realtime", "--record"));
    EXPECT_THAT(ofArguments({"--json"}, "--ro"), ElementsAre("--root"));
    EXPECT_THAT(ofArguments({"--library-output"}, ""), ElementsAre("none", "stderr", "stdout"));
    EXPECT_THAT(ofArguments({"--channel", "2"}, "sensorC"), ElementsAre("sensorCheck"));
    EXPECT_THAT(ofArguments({"init", "--", "set"}, "brig"), ElementsAre("brightness"));
    EXPECT_THAT(ofArguments({"init", "--", "set", "mirror", "1", "--"}, "sensorC"), ElementsAre("sensorCheck"));
    EXPECT_THAT(ofArguments({"init", "--"}, "--ro"), IsEmpty());  // an option stands before the first command
}

TEST_F(CompletionOf, ARootIsAPath) {
    const TestRoot folder;
    folder.write("/tree/x", "");
    EXPECT_THAT(ofArguments({"--root"}, folder.path() + "/tr"), ElementsAre(folder.path() + "/tree/"));
}

TEST(Completion, TheCommonStartIsWhatAllWordsShare) {
    EXPECT_EQ(commonStart({"ir_mode", "ir_mode_intell", "ir_MODest"}), "ir_mode");
    EXPECT_EQ(commonStart({"abc"}), "abc");
    EXPECT_EQ(commonStart({"abc", "xyz"}), "");
    EXPECT_EQ(commonStart({}), "");
}

}  // namespace
}  // namespace sensorctl
