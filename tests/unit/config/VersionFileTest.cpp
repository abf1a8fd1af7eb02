#include "sensor/config/SensorFile.h"

#include "tests/support/Messages.h"
#include "tests/support/TestRoot.h"

#include <gtest/gtest.h>

#include <string>

namespace {

const std::string kVersionFile = "/mnt/mtd/code/config_file/snsversion.cfg";

class VersionFile : public testing::Test {
protected:
    TestRoot m_objRoot;
};

TEST_F(VersionFile, HoldsTheFourBytesOfTheVersion) {
    EXPECT_EQ("", outputOf([] { EXPECT_EQ(0, setVersion(7)); }));
    EXPECT_EQ(std::string("\x07\0\0\0", 4), m_objRoot.read(kVersionFile));
    EXPECT_EQ(0, setVersion(0x89ABCDEFu));
    EXPECT_EQ("\xEF\xCD\xAB\x89", m_objRoot.read(kVersionFile));
    EXPECT_EQ(0, setVersion(0));
    EXPECT_EQ(std::string(4, '\0'), m_objRoot.read(kVersionFile));
}

TEST_F(VersionFile, IsReadBackAsItWasWritten) {
    for (const u32 nVersion : {0u, 7u, 8u, 0x89ABCDEFu, 0xFFFFFFFFu}) {
        ASSERT_EQ(0, setVersion(nVersion));
        u32 nRead = ~nVersion;
        EXPECT_EQ("", outputOf([&] { EXPECT_EQ(0, getVersion(&nRead)); }));
        EXPECT_EQ(nVersion, nRead);
    }
}

TEST_F(VersionFile, LongerThanAVersionIsAccepted) {
    m_objRoot.write(kVersionFile, std::string("\x08\0\0\0 and more", 13));
    u32 nVersion = 0;
    EXPECT_EQ(0, getVersion(&nVersion));
    EXPECT_EQ(8u, nVersion);
}

TEST_F(VersionFile, ThatIsShortFailsAndLeavesWhatWasRead) {
    m_objRoot.write(kVersionFile, "\x01\x02\x03");
    u32 nVersion = 0xAABBCCDDu;
    EXPECT_EQ("", outputOf([&] { EXPECT_EQ(-1, getVersion(&nVersion)); }));
    EXPECT_EQ(0xAA030201u, nVersion);
}

TEST_F(VersionFile, ThatIsMissingOrEmptyFailsAndLeavesTheVariable) {
    u32 nVersion = 0xAABBCCDDu;
    EXPECT_EQ("", outputOf([&] { EXPECT_EQ(-1, getVersion(&nVersion)); }));
    EXPECT_EQ(0xAABBCCDDu, nVersion);

    m_objRoot.write(kVersionFile, "");
    EXPECT_EQ("", outputOf([&] { EXPECT_EQ(-1, getVersion(&nVersion)); }));
    EXPECT_EQ(0xAABBCCDDu, nVersion);
    EXPECT_EQ("", m_objRoot.errorLog());
}

TEST_F(VersionFile, ThatCannotBeWrittenFailsAndIsReported) {
    m_objRoot.remove("/mnt/mtd/code/config_file");
    const messages::Place stPlace{"SensorFile.cpp", "saveToFile"};
    const std::string strShown = outputOf([] { EXPECT_EQ(-1, setVersion(7)); });
    EXPECT_EQ(messages::assertion(stPlace, "file.open(file_name, QVFile::modeWrite | QVFile::modeTruncate)") +
                  messages::detail("file_name(" + kVersionFile + ")\n") +
                  messages::assertion(stPlace, "file_len == (nSize=file.write(data, file_len))") +
                  messages::detail("file_len(4)\n"),
              messages::anyLine(strShown));
}

}  // namespace
