#include "apps/camerad/access/PrivateFile.h"

#include "apps/camerad/access/Secrets.h"
#include "platform/DeviceRoot.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <system_error>

namespace fs = std::filesystem;

namespace camerad {

namespace {

constexpr mode_t kOthers = 077;  // what somebody else may do
constexpr mode_t kOthersWrite = 022;
constexpr mode_t kFolderForOwner = 0700;

class Descriptor {
public:
    explicit Descriptor(int p_nNumber) : m_nNumber(p_nNumber) {}
    ~Descriptor() {
        if (m_nNumber >= 0) {
            close(m_nNumber);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int number() const { return m_nNumber; }
    bool isOpen() const { return m_nNumber >= 0; }
    // False when the medium reports at last what it did not before.
    bool closeNow() {
        const int number = m_nNumber;
        m_nNumber = -1;
        return 0 == close(number);
    }

private:
    int m_nNumber;
};

std::string reasonOf(int p_nError) {
    return std::generic_category().message(p_nError);
}

std::string octal(mode_t p_nMode) {
    char szText[16];
    std::snprintf(szText, sizeof(szText), "%04o", static_cast<unsigned>(p_nMode & 07777u));
    return szText;
}

class Place {
public:
    explicit Place(const PrivateFile& p_stFile)
        : m_stFile(p_stFile), m_objPath(platform::devicePath(p_stFile.strPath)) {}

    std::string folder() const { return m_objPath.parent_path().string(); }
    std::string name() const { return m_objPath.filename().string(); }

    [[noreturn]] void refuse(const std::string& p_strPath, const std::string& p_strWhy) const {
        throw std::runtime_error(m_stFile.strWhat + " cannot be used: " + p_strPath + " " + p_strWhy);
    }
    [[noreturn]] void refuseFile(const std::string& p_strWhy) const { refuse(m_objPath.string(), p_strWhy); }
    [[noreturn]] void refuseFolder(const std::string& p_strWhy) const { refuse(folder(), p_strWhy); }

private:
    const PrivateFile& m_stFile;
    const fs::path m_objPath;
};

// The folder, open. -1 when there is none. One that others may read is closed to them; one that others may write to is
// refused once there is something in it to be trusted.
int openFolder(const Place& p_objPlace) {
    const int number = open(p_objPlace.folder().c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (number < 0) {
        if (ENOENT == errno) {
            return -1;
        }
        if (ELOOP == errno || ENOTDIR == errno) {
            p_objPlace.refuseFolder("is not a folder, or only a symbolic link to one; put a real folder in its place");
        }
        p_objPlace.refuseFolder("cannot be opened: " + reasonOf(errno));
    }
    return number;
}

void requireSafeFolder(const Place& p_objPlace, int p_nFolder) {
    struct stat stFolder {};
    if (0 != fstat(p_nFolder, &stFolder)) {
        p_objPlace.refuseFolder("cannot be looked at: " + reasonOf(errno));
    }
    if (geteuid() != stFolder.st_uid) {
        p_objPlace.refuseFolder("belongs to another user (" + std::to_string(stFolder.st_uid) +
                                "); give it to the user that camerad runs as (" + std::to_string(geteuid()) +
                                ") with chown");
    }
    struct stat stFile {};
    const bool hasFile = 0 == fstatat(p_nFolder, p_objPlace.name().c_str(), &stFile, AT_SYMLINK_NOFOLLOW);
    if (hasFile && 0 != (stFolder.st_mode & kOthersWrite)) {
        p_objPlace.refuseFolder("may be written to by other users (mode " + octal(stFolder.st_mode) +
                                "); look at what is in it, then type: chmod 700 " + p_objPlace.folder());
    }
    if (0 != (stFolder.st_mode & kOthers) && 0 != fchmod(p_nFolder, kFolderForOwner)) {
        p_objPlace.refuseFolder("cannot be closed to other users: " + reasonOf(errno));
    }
}

void requireSafeFile(const Place& p_objPlace, const PrivateFile& p_stFile, int p_nFile) {
    struct stat stFile {};
    if (0 != fstat(p_nFile, &stFile)) {
        p_objPlace.refuseFile("cannot be looked at: " + reasonOf(errno));
    }
    if (!S_ISREG(stFile.st_mode)) {
        p_objPlace.refuseFile("is not a regular file; move it away");
    }
    if (geteuid() != stFile.st_uid) {
        p_objPlace.refuseFile(
            "belongs to another user (" + std::to_string(stFile.st_uid) +
            "); make sure that its content is yours, then give it to the user that camerad runs as (" +
            std::to_string(geteuid()) + ") with chown");
    }
    if (0 != (stFile.st_mode & ~p_stFile.nMode & kOthers)) {
        p_objPlace.refuseFile("is open to other users (mode " + octal(stFile.st_mode) +
                              "); make sure that its content is yours, then type: chmod " +
                              octal(p_stFile.nMode).substr(1) + " " + p_objPlace.folder() + "/" + p_objPlace.name());
    }
    if (stFile.st_size > static_cast<off_t>(p_stFile.nMostBytes)) {
        p_objPlace.refuseFile("has " + std::to_string(stFile.st_size) + " bytes, more than the " +
                              std::to_string(p_stFile.nMostBytes) +
                              " that are read; move it away or put a backup back");
    }
}

bool writeAll(int p_nFile, const std::string& p_strContent) {
    for (std::size_t done = 0; done < p_strContent.size();) {
        const ssize_t count = write(p_nFile, p_strContent.data() + done, p_strContent.size() - done);
        if (count < 0 && EINTR == errno) {
            continue;
        }
        if (count <= 0) {
            return false;
        }
        done += static_cast<std::size_t>(count);
    }
    return true;
}

void makeFolder(const Place& p_objPlace) {
    std::error_code error;
    fs::create_directories(fs::path(p_objPlace.folder()).parent_path(), error);
    if (error) {
        p_objPlace.refuseFolder("cannot be made: " + error.message());
    }
    if (0 != mkdir(p_objPlace.folder().c_str(), kFolderForOwner) && EEXIST != errno) {
        p_objPlace.refuseFolder("cannot be made: " + reasonOf(errno));
    }
}

}  // namespace

std::optional<std::string> readPrivateFile(const PrivateFile& p_stFile) {
    const Place place(p_stFile);
    const Descriptor folder(openFolder(place));
    if (!folder.isOpen()) {
        return std::nullopt;
    }
    // A pipe in its place must not hold up the start.
    const Descriptor file(
        openat(folder.number(), place.name().c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!file.isOpen() && ENOENT == errno) {
        return std::nullopt;
    }
    if (!file.isOpen() && ELOOP == errno) {
        place.refuseFile("is a symbolic link; put the file itself there, so that nobody can lead it elsewhere");
    }
    if (!file.isOpen()) {
        place.refuseFile("cannot be opened: " + reasonOf(errno));
    }
    requireSafeFolder(place, folder.number());
    requireSafeFile(place, p_stFile, file.number());
    std::string content;
    char buffer[4096];
    for (ssize_t count = 1; 0 != count;) {
        count = read(file.number(), buffer, sizeof(buffer));
        if (count < 0 && EINTR == errno) {
            continue;
        }
        if (count < 0) {
            forget(content);
            place.refuseFile("cannot be read: " + reasonOf(errno));
        }
        content.append(buffer, static_cast<std::size_t>(count));
        if (content.size() > p_stFile.nMostBytes) {
            forget(content);
            place.refuseFile("grows while it is read; find out who writes to it");
        }
    }
    return content;
}

void writePrivateFile(const PrivateFile& p_stFile, const std::string& p_strContent) {
    const Place place(p_stFile);
    if (p_strContent.size() > p_stFile.nMostBytes) {
        place.refuseFile("would have " + std::to_string(p_strContent.size()) + " bytes, more than the " +
                         std::to_string(p_stFile.nMostBytes) + " that are read back; remove what is no longer needed");
    }
    makeFolder(place);
    const Descriptor folder(openFolder(place));
    if (!folder.isOpen()) {
        place.refuseFolder("went away while it was used");
    }
    requireSafeFolder(place, folder.number());
    const std::string sibling = place.name() + ".new";
    unlinkat(folder.number(), sibling.c_str(), 0);  // what a power cut left
    Descriptor file(openat(folder.number(), sibling.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                           static_cast<mode_t>(p_stFile.nMode)));
    const bool good = file.isOpen() && 0 == fchmod(file.number(), static_cast<mode_t>(p_stFile.nMode)) &&
                      writeAll(file.number(), p_strContent) && 0 == fsync(file.number()) && file.closeNow() &&
                      0 == renameat(folder.number(), sibling.c_str(), folder.number(), place.name().c_str());
    if (!good) {
        const int error = errno;
        unlinkat(folder.number(), sibling.c_str(), 0);
        place.refuseFile("cannot be written: " + reasonOf(error) + "; what was stored before is still there");
    }
    if (0 != fsync(folder.number())) {
        place.refuseFolder("cannot be flushed: " + reasonOf(errno) +
                           "; after a power cut the file may be as it was before");
    }
}

}  // namespace camerad
