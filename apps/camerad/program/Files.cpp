#include "apps/camerad/program/Files.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <system_error>

namespace camerad {

namespace {

std::string reason() {
    return std::generic_category().message(errno);
}

}  // namespace

RootLock::RootLock(const std::string& p_strFolder) : m_nDescriptor(-1) {
    constexpr mode_t kForOwner = 0700;
    constexpr mode_t kFileForOwner = 0600;
    std::error_code ignored;
    std::filesystem::create_directories(std::filesystem::path(p_strFolder).parent_path(), ignored);
    mkdir(p_strFolder.c_str(), kForOwner);  // or it is there
    const std::string name = p_strFolder + "/lock";
    m_nDescriptor = open(name.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, kFileForOwner);
    if (-1 == m_nDescriptor) {
        throw std::runtime_error("cannot open " + name + ": " + reason());
    }
    if (0 != flock(m_nDescriptor, LOCK_EX | LOCK_NB)) {
        const std::string why = EWOULDBLOCK == errno ? "another camerad works on this device root; end it first"
                                                     : "cannot lock " + name + ": " + reason();
        close(m_nDescriptor);
        throw std::runtime_error(why);
    }
}

RootLock::~RootLock() {
    close(m_nDescriptor);
}

PortFile::PortFile(std::string p_strName, int p_nPort) : m_strName(std::move(p_strName)) {
    if (m_strName.empty()) {
        return;
    }
    const std::string fresh = m_strName + "." + std::to_string(getpid());
    std::ofstream file(fresh, std::ios::trunc);
    file << p_nPort << "\n";
    file.close();
    if (!file || 0 != std::rename(fresh.c_str(), m_strName.c_str())) {
        const std::string why = "cannot write " + m_strName + ": " + reason();
        std::remove(fresh.c_str());
        throw std::runtime_error(why);
    }
}

PortFile::~PortFile() {
    if (!m_strName.empty()) {
        std::remove(m_strName.c_str());
    }
}

}  // namespace camerad
