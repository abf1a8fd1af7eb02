#include "apps/sensorctl/DebugSign.h"

#include "apps/sensorctl/Shared.h"
#include "tests/support/TestRoot.h"

#include <gtest/gtest.h>

namespace sensorctl {
namespace {

const char kSignFile[] = "/mnt/mtd/sign/Debug.sign";

TEST(DebugSign, AFileThatWasNotThereIsRemovedAtTheEnd) {
    const TestRoot root;
    {
        DebugSign sign;
        sign.set(6, false);
        EXPECT_EQ(root.read(kSignFile), "6\n0\n");
    }
    EXPECT_FALSE(root.exists(kSignFile));
}

TEST(DebugSign, AFileThatWasThereComesBackAtTheEnd) {
    const TestRoot root;
    root.write(kSignFile, "4\n1\n# kept");
    {
        DebugSign sign;
        sign.set(7, true);
        EXPECT_EQ(root.read(kSignFile), "7\n1\n");
        sign.set(-1, false);
        EXPECT_EQ(root.read(kSignFile), "-1\n0\n");
    }
    EXPECT_EQ(root.read(kSignFile), "4\n1\n# kept");
}

TEST(DebugSign, WithoutAChangeNothingIsTouched) {
    const TestRoot root;
    root.write(kSignFile, "4\n");
    { const DebugSign sign; }
    EXPECT_EQ(root.read(kSignFile), "4\n");
}

TEST(DebugSign, TheFolderIsMadeWhenItIsMissing) {
    const TestRoot root;
    root.remove("/mnt/mtd/sign");
    DebugSign sign;
    sign.set(6, false);
    EXPECT_EQ(root.read(kSignFile), "6\n0\n");
}

TEST(DebugSign, AFileThatCannotBeWrittenIsReported) {
    const TestRoot root;
    root.makeFolder(kSignFile);
    {
        DebugSign sign;
        EXPECT_THROW(sign.set(6, false), CommandError);
    }
    EXPECT_TRUE(root.exists(kSignFile));
}

}  // namespace
}  // namespace sensorctl
