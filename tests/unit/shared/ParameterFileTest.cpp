#include "apps/shared/ParameterFile.h"

#include "apps/shared/CommandError.h"
#include "tests/support/TestRoot.h"

#include <gtest/gtest.h>

namespace apps {
namespace {

const char kName[] = "/mnt/mtd/code/config_file/sensor0.cfg";

TEST(ParameterFile, TheSecondChannelHasFilesOfItsOwn) {
    EXPECT_EQ(parameterFileName(1, 0), kName);
    EXPECT_EQ(parameterFileName(2, 3), "/mnt/mtd/code/config_file/sensor-thermal3.cfg");
    EXPECT_EQ(parameterFileName(3, 1), "/mnt/mtd/code/config_file/sensor1.cfg");
}

TEST(ParameterFile, RecordsAreKeyAndValueLittleEndian) {
    const TestRoot root;
    root.write(kName, std::string("\x22\x00\x00\x00\x3C\x00\x00\x00\x8E\x23\x00\x00\xFE\xFF\xFF\xFF", 16));
    ParameterFile file = readParameterFile(kName);
    ASSERT_EQ(file.vecValues.size(), 2u);
    EXPECT_EQ(file.vecValues[0].nKey, 34u);
    EXPECT_EQ(file.vecValues[0].nValue, 60);
    EXPECT_EQ(file.vecValues[1].nKey, 9102u);
    EXPECT_EQ(file.vecValues[1].nValue, -2);
    EXPECT_EQ(file.nExtraBytes, 0u);
}

TEST(ParameterFile, BytesBehindTheLastRecordAreCounted) {
    const TestRoot root;
    root.write(kName, std::string(8 + 5, '\x01'));
    const ParameterFile file = readParameterFile(kName);
    EXPECT_EQ(file.vecValues.size(), 1u);
    EXPECT_EQ(file.nExtraBytes, 5u);
}

TEST(ParameterFile, AnEmptyFileHoldsNothing) {
    const TestRoot root;
    root.write(kName, "");
    EXPECT_TRUE(readParameterFile(kName).vecValues.empty());
}

TEST(ParameterFile, WhatIsWrittenIsReadAgain) {
    const TestRoot root;
    const std::string bytes("\x22\x00\x00\x00\x3C\x00\x00\x00\x31\x00\x00\x00\xFF\xFF\xFF\x7F", 16);
    root.write(kName, bytes);
    const ParameterFile file = readParameterFile(kName);
    root.remove(kName);
    writeParameterFile(kName, file);
    EXPECT_EQ(root.read(kName), bytes);
}

TEST(ParameterFile, TheFirstRecordOfAKeyIsFound) {
    ParameterFile file;
    file.vecValues = {{34, 1}, {49, 2}, {34, 3}};
    ASSERT_NE(file.find(34), nullptr);
    EXPECT_EQ(file.find(34)->nValue, 1);
    EXPECT_EQ(file.find(35), nullptr);
}

TEST(ParameterFile, MissingAndHostileFilesAreRefused) {
    const TestRoot root;
    EXPECT_THROW(readParameterFile(kName), CommandError);
    root.write(kName, std::string(1024 * 1024 + 8, 'x'));
    EXPECT_THROW(readParameterFile(kName), CommandError);
    root.remove(kName);
    root.makeFolder(kName);
    EXPECT_THROW(readParameterFile(kName), CommandError);
    EXPECT_THROW(writeParameterFile(kName, {}), CommandError);
}

}  // namespace
}  // namespace apps
