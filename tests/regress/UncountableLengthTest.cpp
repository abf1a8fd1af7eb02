// A length that the file class cannot count was cut to 32 bits, and the file's content was replaced by that part; a
// negative count emptied the file.
#include "platform/QVFile.h"
#include "sensor/config/SensorFile.h"
#include "tests/support/TestRoot.h"

#include <gtest/gtest.h>

TEST(UncountableLength, KeepsTheOldContent) {
    const TestRoot root;
    char szName[] = "/mnt/mtd/code/config_file/snsversion.cfg";
    char aData[] = "new content";
    root.write(szName, "old");
    for (const INT64 nLength : {(INT64{1} << 32) + 4, INT64{1} << 31, INT64{-1}}) {
        outputOf([&] { saveToFile(szName, aData, nLength); });
        EXPECT_EQ("old", root.read(szName)) << nLength;
    }
}

TEST(UncountableLength, ARefusedWriteKeepsTheOldContent) {
    const TestRoot root;
    root.write("/mnt/mtd/file", "old");
    QVFile file;
    ASSERT_TRUE(file.open("/mnt/mtd/file", QVFile::modeWrite | QVFile::modeTruncate));
    EXPECT_EQ(-1, file.write("new", -1));
    EXPECT_FALSE(file.close());
    EXPECT_EQ("old", root.read("/mnt/mtd/file"));
}
