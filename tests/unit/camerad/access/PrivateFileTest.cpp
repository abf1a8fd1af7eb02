#include "apps/camerad/access/PrivateFile.h"

#include "tests/unit/camerad/access/AccessTest.h"

#include <sys/stat.h>
#include <unistd.h>

namespace camerad {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

const PrivateFile kFile{"/mnt/mtd/private/file", "The file", 100, kForOwner};

class PrivateFiles : public AccessTest {
protected:
    std::string readError() {
        return errorOf([] { readPrivateFile(kFile); });
    }
    std::string writeError() {
        return errorOf([] { writePrivateFile(kFile, "new"); });
    }
    std::string place() const { return onThisMachine(kFile.strPath); }
    std::string folder() const { return onThisMachine("/mnt/mtd/private"); }
};

TEST_F(PrivateFiles, AreReadAsTheyWereWritten) {
    EXPECT_EQ(readPrivateFile(kFile), std::nullopt);
    writePrivateFile(kFile, std::string("one\0two", 7));
    EXPECT_EQ(readPrivateFile(kFile), std::string("one\0two", 7));
    writePrivateFile(kFile, "");
    EXPECT_EQ(readPrivateFile(kFile), "");
}

TEST_F(PrivateFiles, AreForTheirOwnerWhateverTheUmaskSays) {
    const mode_t before = umask(0);
    writePrivateFile(kFile, "x");
    umask(0777);
    writePrivateFile(kFile, "y");
    umask(before);
    EXPECT_EQ(modeOf(kFile.strPath), 0600u);
    EXPECT_EQ(modeOf("/mnt/mtd/private"), 0700u);
    EXPECT_EQ(readPrivateFile(kFile), "y");
}

TEST_F(PrivateFiles, AreReplacedAsAWhole) {
    writePrivateFile(kFile, "old");
    struct stat stOld {};
    ASSERT_EQ(stat(place().c_str(), &stOld), 0);
    ASSERT_EQ(link(place().c_str(), (place() + ".kept").c_str()), 0);
    writePrivateFile(kFile, "new");
    EXPECT_EQ(m_objRoot.read(kFile.strPath + ".kept"), "old");
    EXPECT_EQ(m_objRoot.read(kFile.strPath), "new");
}

TEST_F(PrivateFiles, GoOnAfterAPowerCutThatLeftASibling) {
    writePrivateFile(kFile, "old");
    m_objRoot.write(kFile.strPath + ".new", "half of somethi");
    EXPECT_EQ(readPrivateFile(kFile), "old");
    writePrivateFile(kFile, "new");
    EXPECT_EQ(readPrivateFile(kFile), "new");
    EXPECT_FALSE(m_objRoot.exists(kFile.strPath + ".new"));
}

TEST_F(PrivateFiles, DoNotWriteThroughALinkPlantedAsTheSibling) {
    writePrivateFile(kFile, "old");
    m_objRoot.write("/mnt/mtd/victim", "untouched");
    ASSERT_EQ(symlink(onThisMachine("/mnt/mtd/victim").c_str(), (place() + ".new").c_str()), 0);
    writePrivateFile(kFile, "new");
    EXPECT_EQ(m_objRoot.read("/mnt/mtd/victim"), "untouched");
    EXPECT_EQ(readPrivateFile(kFile), "new");
}

TEST_F(PrivateFiles, RefuseASymbolicLink) {
    writePrivateFile(kFile, "x");
    ASSERT_EQ(rename(place().c_str(), (place() + ".elsewhere").c_str()), 0);
    ASSERT_EQ(symlink((place() + ".elsewhere").c_str(), place().c_str()), 0);
    EXPECT_THAT(readError(), AllOf(HasSubstr(place()), HasSubstr("symbolic link"), HasSubstr("put the file itself")));
}

TEST_F(PrivateFiles, RefuseAFolderThatIsALink) {
    m_objRoot.makeFolder("/mnt/mtd/elsewhere");
    ASSERT_EQ(symlink(onThisMachine("/mnt/mtd/elsewhere").c_str(), folder().c_str()), 0);
    EXPECT_THAT(readError(), AllOf(HasSubstr(folder()), HasSubstr("symbolic link")));
    EXPECT_THAT(writeError(), HasSubstr("symbolic link"));
    EXPECT_FALSE(m_objRoot.exists("/mnt/mtd/elsewhere/file"));
}

TEST_F(PrivateFiles, RefuseWhatOthersMayRead) {
    for (const mode_t mode : {0604u, 0640u, 0620u, 0660u, 0601u, 0777u}) {
        writePrivateFile(kFile, "x");
        ASSERT_EQ(chmod(place().c_str(), mode), 0);
        EXPECT_THAT(readError(), AllOf(HasSubstr("open to other users"), HasSubstr("chmod 600 " + place())))
            << std::oct << mode;
    }
}

TEST_F(PrivateFiles, LetACertificateBeRead) {
    PrivateFile stCertificate = kFile;
    stCertificate.nMode = kForReaders;
    writePrivateFile(stCertificate, "x");
    EXPECT_EQ(modeOf(kFile.strPath), 0644u);
    EXPECT_EQ(readPrivateFile(stCertificate), "x");
    ASSERT_EQ(chmod(place().c_str(), 0664), 0);
    EXPECT_THAT(errorOf([&] { readPrivateFile(stCertificate); }), HasSubstr("chmod 644 " + place()));
}

TEST_F(PrivateFiles, CloseAFolderThatOthersMayRead) {
    writePrivateFile(kFile, "x");
    ASSERT_EQ(chmod(folder().c_str(), 0755), 0);
    EXPECT_EQ(readPrivateFile(kFile), "x");
    EXPECT_EQ(modeOf("/mnt/mtd/private"), 0700u);
}

TEST_F(PrivateFiles, RefuseAFolderThatOthersMayWriteTo) {
    writePrivateFile(kFile, "x");
    for (const mode_t mode : {0720u, 0702u, 01777u}) {
        ASSERT_EQ(chmod(folder().c_str(), mode), 0);
        EXPECT_THAT(readError(),
                    AllOf(HasSubstr("may be written to by other users"), HasSubstr("chmod 700 " + folder())))
            << std::oct << mode;
        EXPECT_THAT(writeError(), HasSubstr("may be written to by other users")) << std::oct << mode;
    }
    EXPECT_EQ(m_objRoot.read(kFile.strPath), "x");
}

TEST_F(PrivateFiles, CloseAnOpenFolderThatHasNothingOfThemYet) {
    m_objRoot.makeFolder("/mnt/mtd/private");
    ASSERT_EQ(chmod(folder().c_str(), 0775), 0);
    writePrivateFile(kFile, "x");
    EXPECT_EQ(modeOf("/mnt/mtd/private"), 0700u);
}

TEST_F(PrivateFiles, RefuseWhatIsNoFile) {
    m_objRoot.makeFolder(kFile.strPath);
    ASSERT_EQ(chmod(folder().c_str(), 0700), 0);
    EXPECT_THAT(readError(), HasSubstr("not a regular file"));
    EXPECT_THAT(writeError(), HasSubstr("cannot be written"));
}

TEST_F(PrivateFiles, DoNotWaitForThePipeInTheirPlace) {
    m_objRoot.makeFolder("/mnt/mtd/private");
    ASSERT_EQ(chmod(folder().c_str(), 0700), 0);
    ASSERT_EQ(mkfifo(place().c_str(), 0600), 0);
    EXPECT_THAT(readError(), HasSubstr("not a regular file"));
}

TEST_F(PrivateFiles, RefuseMoreBytesThanTheyMayHave) {
    writePrivateFile(kFile, std::string(100, 'x'));
    EXPECT_EQ(readPrivateFile(kFile), std::string(100, 'x'));
    m_objRoot.write(kFile.strPath, std::string(101, 'x'));
    EXPECT_THAT(readError(), AllOf(HasSubstr("101 bytes"), HasSubstr("100")));
    EXPECT_THAT(errorOf([] { writePrivateFile(kFile, std::string(101, 'x')); }), HasSubstr("101 bytes"));
}

TEST_F(PrivateFiles, RefuseAFileThatBelongsToSomebodyElse) {
    // Only root can give a file away, and only without a mapping of users is it root that tests run as.
    writePrivateFile(kFile, "x");
    if (0 != chown(place().c_str(), 12345, static_cast<gid_t>(-1))) {
        EXPECT_EQ(readPrivateFile(kFile), "x");
        return;
    }
    EXPECT_THAT(readError(), AllOf(HasSubstr("another user (12345)"), HasSubstr("chown")));
    ASSERT_EQ(chown(place().c_str(), geteuid(), static_cast<gid_t>(-1)), 0);
    ASSERT_EQ(chown(folder().c_str(), 12345, static_cast<gid_t>(-1)), 0);
    EXPECT_THAT(readError(), AllOf(HasSubstr(folder()), HasSubstr("another user (12345)")));
    ASSERT_EQ(chown(folder().c_str(), geteuid(), static_cast<gid_t>(-1)), 0);
}

TEST_F(PrivateFiles, KeepTheOldContentWhenTheMediumIsFull) {
    writePrivateFile(kFile, "old");
    // A folder in the sibling's place cannot be removed by unlink.
    m_objRoot.makeFolder(kFile.strPath + ".new");
    EXPECT_THAT(writeError(), AllOf(HasSubstr("cannot be written"), HasSubstr("is still there")));
    EXPECT_EQ(readPrivateFile(kFile), "old");
}

TEST_F(PrivateFiles, SayWhenTheFolderCannotBeMade) {
    m_objRoot.write("/mnt/mtd/blocked", "a file");
    const PrivateFile stFile{"/mnt/mtd/blocked/private/file", "The file", 100, kForOwner};
    EXPECT_THAT(errorOf([&] { writePrivateFile(stFile, "x"); }),
                AllOf(HasSubstr("/mnt/mtd/blocked/private"), HasSubstr("cannot be made")));
}

}  // namespace
}  // namespace camerad
