#include "apps/sensorctl/Recorder.h"

#include "apps/sensorctl/Shared.h"
#include "tests/support/FullMedium.h"
#include "tests/support/TestRoot.h"

#include <gmock/gmock.h>

namespace sensorctl {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

constexpr INT64 kSecond = 1000000;
const Recorder::Start kStart{{2024, 5, 1, 12, 0, 0}, 1, 100 * kSecond};

// What stands behind the heading.
std::string commandsIn(const TestRoot& p_objFolder) {
    const std::string text = p_objFolder.read("/script");
    EXPECT_THAT(text, StartsWith("# Recorded by sensorctl "));
    return text.substr(text.find('\n') + 1);
}

TEST(Recorder, TheScriptBeginsWithTheTimeAndTheChannel) {
    const TestRoot folder;
    Recorder first;
    first.begin(folder.path() + "/script", kStart);
    EXPECT_EQ(commandsIn(folder), "scene clock \"2024-05-01 12:00:00\"\n");
    first.end();
    folder.remove("/script");
    Recorder second;
    second.begin(folder.path() + "/script", {{2024, 5, 1, 12, 0, 7}, 3, 0});
    EXPECT_EQ(commandsIn(folder), "scene clock \"2024-05-01 12:00:07\"\nchannel 3\n");
}

TEST(Recorder, CommandsAreThereAtOnce) {
    const TestRoot folder;
    Recorder recorder;
    recorder.begin(folder.path() + "/script", kStart);
    recorder.took("init", true, 100 * kSecond, 101 * kSecond);
    recorder.took("set nothing 1", false, 101 * kSecond, 101 * kSecond);
    EXPECT_THAT(commandsIn(folder), HasSubstr("\ninit\nexpect fail set nothing 1\n"));
    EXPECT_EQ(recorder.lines(), 2u);
}

TEST(Recorder, TimeBetweenCommandsBecomesWaits) {
    const TestRoot folder;
    Recorder recorder;
    recorder.begin(folder.path() + "/script", kStart);
    recorder.took("a", true, 102 * kSecond + 500000, 110 * kSecond);  // time within a command is its own
    recorder.took("b", true, 110 * kSecond + 6000, 110 * kSecond + 6000);
    recorder.took("c", true, 110 * kSecond + 12000, 110 * kSecond + 12000);  // two short ones are one that counts
    EXPECT_THAT(commandsIn(folder), HasSubstr("\nwait 2.500000\na\nb\nwait 0.012000\nc\n"));
}

TEST(Recorder, AFileThatIsThereIsLeftAlone) {
    const TestRoot folder;
    folder.write("/script", "mine");
    Recorder recorder;
    EXPECT_THROW(recorder.begin(folder.path() + "/script", kStart), CommandError);
    EXPECT_FALSE(recorder.isRecording());
    EXPECT_EQ(folder.read("/script"), "mine");
    EXPECT_THROW(recorder.begin(folder.path() + "/no/such/folder", kStart), CommandError);
}

TEST(Recorder, OneRecordingGoesOnAtATime) {
    const TestRoot folder;
    Recorder recorder;
    EXPECT_THROW(recorder.end(), CommandError);
    recorder.begin(folder.path() + "/script", kStart);
    EXPECT_THROW(recorder.begin(folder.path() + "/other", kStart), CommandError);
    EXPECT_FALSE(folder.exists("/other"));
    recorder.end();
    EXPECT_FALSE(recorder.isRecording());
    recorder.took("late", true, 0, 0);
    EXPECT_EQ(commandsIn(folder), "scene clock \"2024-05-01 12:00:00\"\n");
}

TEST(Recorder, ARecordThatIsNotWholeIsReported) {
    const TestRoot folder;
    Recorder recorder;
    recorder.begin(folder.path() + "/script", kStart);
    {
        const FullMedium full(folder.read("/script").size() + 6);
        recorder.took("init", true, 0, 0);
        recorder.took("set brightness 60", true, 0, 0);
    }
    recorder.took("quit", true, 0, 0);  // nothing follows what was lost
    EXPECT_THROW(recorder.end(), CommandError);
    EXPECT_FALSE(recorder.isRecording());
    EXPECT_THAT(folder.read("/script"), testing::EndsWith("\ninit\ns"));
}

}  // namespace
}  // namespace sensorctl
