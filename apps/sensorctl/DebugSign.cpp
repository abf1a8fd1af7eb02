#include "apps/sensorctl/DebugSign.h"

#include "apps/sensorctl/Shared.h"
#include "platform/DeviceRoot.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace sensorctl {

namespace {

const char kSignFile[] = "/mnt/mtd/sign/Debug.sign";

bool replaceFile(const std::string& p_strPath, const std::string& p_strContent) {
    std::error_code ignored;
    std::filesystem::create_directories(std::filesystem::path(p_strPath).parent_path(), ignored);
    std::ofstream file(p_strPath, std::ios::binary | std::ios::trunc);
    file << p_strContent;
    file.close();
    return !file.fail();
}

std::optional<std::string> signOf(const std::string& p_strPath) {
    std::ifstream file(p_strPath, std::ios::binary);
    if (!file) {
        return std::nullopt;
    }
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

}  // namespace

void DebugSign::set(int p_nLevel, bool p_bAssert) {
    const std::string path = platform::devicePath(kSignFile);
    if (std::filesystem::is_directory(path)) {
        throw CommandError(std::string(kSignFile) + " below the device root is a directory");
    }
    if (!m_bChanged) {
        m_strBefore = signOf(path);
    }
    m_bChanged = true;
    if (!replaceFile(path, std::to_string(p_nLevel) + "\n" + (p_bAssert ? "1" : "0") + "\n")) {
        throw CommandError(std::string("cannot write ") + kSignFile + " below the device root");
    }
}

DebugSign::~DebugSign() {
    if (!m_bChanged) {
        return;
    }
    const std::string path = platform::devicePath(kSignFile);
    if (m_strBefore) {
        replaceFile(path, *m_strBefore);
    } else {
        std::remove(path.c_str());
    }
}

}  // namespace sensorctl
