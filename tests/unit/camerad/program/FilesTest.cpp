#include "apps/camerad/program/Files.h"

#include "tests/support/TestRoot.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>

namespace {

using camerad::PortFile;
using camerad::RootLock;

TEST(CameradFiles, ADeviceRootIsForOneAtATime) {
    const TestRoot root;
    const std::string folder = root.path() + "/mnt/new/camerad";
    {
        const RootLock lock(folder);
        EXPECT_THROW(RootLock{folder}, std::runtime_error);
    }
    EXPECT_NO_THROW(RootLock{folder});
}

TEST(CameradFiles, AFolderThatCannotBeIsSaid) {
    const TestRoot root;
    root.write("/file", "no folder");
    EXPECT_THROW(RootLock{root.path() + "/file"}, std::runtime_error);
}

TEST(CameradFiles, ALinkIsNotFollowedToTheLock) {
    const TestRoot root;
    root.makeFolder("/folder");
    root.write("/elsewhere", "");
    std::filesystem::create_symlink(root.path() + "/elsewhere", root.path() + "/folder/lock");
    EXPECT_THROW(RootLock{root.path() + "/folder"}, std::runtime_error);
}

TEST(CameradFiles, ThePortIsThereAsLongAsTheServer) {
    const TestRoot root;
    {
        const PortFile file(root.path() + "/port", 8123);
        EXPECT_EQ(root.read("/port"), "8123\n");
    }
    EXPECT_FALSE(root.exists("/port"));
    const PortFile none("", 1);
}

TEST(CameradFiles, APortFileThatCannotBeWrittenIsSaid) {
    const TestRoot root;
    EXPECT_THROW(PortFile(root.path() + "/missing/port", 1), std::runtime_error);
}

}  // namespace
