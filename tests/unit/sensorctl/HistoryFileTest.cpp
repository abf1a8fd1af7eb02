#include "apps/sensorctl/HistoryFile.h"

#include "tests/support/TestRoot.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>

namespace sensorctl {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

using List = std::vector<std::string>;

unsigned modeOf(const std::string& p_strPath) {
    struct stat status {};
    EXPECT_EQ(stat(p_strPath.c_str(), &status), 0) << p_strPath;
    return status.st_mode & 0777u;
}

TEST(HistoryFile, LinesComeBackOldestFirst) {
    const TestRoot folder;
    const HistoryFile file(folder.path() + "/a/b/history");
    EXPECT_THAT(file.load(), IsEmpty());
    EXPECT_TRUE(file.append({"init", "set brightness 60"}));
    EXPECT_TRUE(HistoryFile(file.path()).append({"quit"}));
    EXPECT_THAT(file.load(), ElementsAre("init", "set brightness 60", "quit"));
}

TEST(HistoryFile, FileAndFoldersAreTheUsersAlone) {
    const TestRoot folder;
    const HistoryFile file(folder.path() + "/state/sensorctl/history");
    file.append({"init"});
    EXPECT_EQ(modeOf(file.path()), 0600u);
    EXPECT_EQ(modeOf(folder.path() + "/state/sensorctl"), 0700u);
    EXPECT_EQ(modeOf(folder.path() + "/state"), 0700u);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path() + "/state/sensorctl"), fs::directory_iterator()), 1);
}

TEST(HistoryFile, OnlyTheNewestLinesAreKept) {
    const TestRoot folder;
    const HistoryFile file(folder.path() + "/history");
    List many;
    for (std::size_t i = 0; i < HistoryFile::kMostLines + 7; ++i) {
        many.push_back("line " + std::to_string(i));
    }
    EXPECT_TRUE(file.append(many));
    EXPECT_EQ(file.load().size(), HistoryFile::kMostLines);
    EXPECT_EQ(file.load().front(), "line 7");
    EXPECT_TRUE(file.append({"one more"}));
    EXPECT_EQ(file.load().front(), "line 8");
    EXPECT_EQ(file.load().back(), "one more");
    const std::string content = folder.read("/history");
    EXPECT_EQ(static_cast<std::size_t>(std::count(content.begin(), content.end(), '\n')), HistoryFile::kMostLines);
}

TEST(HistoryFile, LinesThatCouldNotComeBackAreLeftOut) {
    const TestRoot folder;
    const HistoryFile file(folder.path() + "/history");
    const std::string longest(HistoryFile::kLongestLine, 'a');
    EXPECT_TRUE(file.append({"", "two\nlines", std::string("zero\0byte", 9), longest, longest + "a", "good"}));
    EXPECT_THAT(file.load(), ElementsAre(longest, "good"));
}

TEST(HistoryFile, AForeignFileIsReadUpToABound) {
    const TestRoot folder;
    folder.write("/history", std::string(8 * 1024 * 1024, 'x') + "\nlast\n" + "half a line");
    EXPECT_THAT(HistoryFile(folder.path() + "/history").load(), ElementsAre("last"));
}

TEST(HistoryFile, WithoutAPathNothingIsKept) {
    const HistoryFile file("");
    EXPECT_TRUE(file.append({"init"}));
    EXPECT_THAT(file.load(), IsEmpty());
}

TEST(HistoryFile, APlaceThatCannotBeWrittenLosesNothing) {
    const TestRoot folder;
    folder.write("/file", "content");
    const HistoryFile below(folder.path() + "/file/history");
    EXPECT_FALSE(below.append({"init"}));
    EXPECT_EQ(folder.read("/file"), "content");
    folder.makeFolder("/folder");
    const HistoryFile instead(folder.path() + "/folder");
    EXPECT_THAT(instead.load(), IsEmpty());
    EXPECT_FALSE(instead.append({"init"}));
}

TEST(HistoryFile, WhatIsNoRegularFileIsNotReplaced) {
    const TestRoot folder;
    const std::string pipe = folder.path() + "/pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_FALSE(HistoryFile(pipe).append({"init"}));
    EXPECT_TRUE(fs::is_fifo(pipe));
}

TEST(HistoryPath, ItLiesInTheUsersStateUnlessAVariableNamesAnotherPlace) {
    EXPECT_EQ(historyPath(nullptr, nullptr, "/home/u", "/tree"), "/home/u/.local/state/sensorctl/history");
    EXPECT_EQ(historyPath(nullptr, "/state", "/home/u", "/tree"), "/state/sensorctl/history");
    EXPECT_EQ(historyPath(nullptr, "relative", "/home/u", "/tree"), "/home/u/.local/state/sensorctl/history");
    EXPECT_EQ(historyPath("/else/where", "/state", "/home/u", "/tree"), "/else/where");
    EXPECT_EQ(historyPath("", "/state", "/home/u", "/tree"), "");
    EXPECT_EQ(historyPath(nullptr, nullptr, nullptr, "/tree"), "");
}

TEST(HistoryPath, ItNeverLiesInsideTheDeviceRoot) {
    const TestRoot root;
    root.makeFolder("/home");
    EXPECT_EQ(historyPath(nullptr, nullptr, (root.path() + "/home").c_str(), root.path()), "");
    EXPECT_EQ(historyPath((root.path() + "/mnt/../h").c_str(), nullptr, nullptr, root.path()), "");
    EXPECT_EQ(historyPath((root.path() + "-beside/h").c_str(), nullptr, nullptr, root.path()),
              root.path() + "-beside/h");
    fs::create_directory_symlink(root.path() + "/home", root.path() + "-link");
    EXPECT_EQ(historyPath((root.path() + "-link/h").c_str(), nullptr, nullptr, root.path()), "");
    fs::remove(root.path() + "-link");
}

}  // namespace
}  // namespace sensorctl
