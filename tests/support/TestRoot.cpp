#include "tests/support/TestRoot.h"

#include "platform/Clock.h"
#include "platform/DeviceRoot.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace fs = std::filesystem;

namespace {
// Names the folder in which processes that a test starts make their device roots. They may end without tidying up, as
// death tests do, so that the root of the test that started them does.
constexpr char kRootsOfChildren[] = "SENSORDLL_TEST_ROOTS";
}  // namespace

TestRoot::TestRoot() {
    const char* const szFolder = std::getenv(kRootsOfChildren);
    m_strOuter = nullptr == szFolder ? "" : szFolder;
    const fs::path folder = m_strOuter.empty() ? fs::current_path() : fs::path(m_strOuter);
    fs::create_directories(folder);
    std::string strName = (folder / "root-XXXXXX").string();
    if (nullptr == mkdtemp(strName.data())) {
        throw std::runtime_error("cannot make a device root in " + folder.string());
    }
    m_strPath = strName;
    m_strChildren = m_strPath + ".children";
    setenv(kRootsOfChildren, m_strChildren.c_str(), 1);
    for (const char* szName :
         {"/mnt/mtd/code/config_file", "/mnt/mtd/code/factory_setting", "/mnt/mtd/sign", "/mnt/mtd/log",
          "/hd1/moduleConfig/sensorConfig/style", "/hd1/moduleConfig/sensorConfig/styleDiversity", "/tmp"}) {
        makeFolder(szName);
    }
    platform::setDeviceRoot(m_strPath);
    platform::Clock::hold({2024, 5, 1, 12, 0, 0});
}

TestRoot::~TestRoot() {
    std::error_code ignored;
    fs::remove_all(m_strPath, ignored);
    fs::remove_all(m_strChildren, ignored);
    if (m_strOuter.empty()) {
        unsetenv(kRootsOfChildren);
    } else {
        setenv(kRootsOfChildren, m_strOuter.c_str(), 1);
    }
}

void TestRoot::write(const std::string& p_strName, const std::string& p_strContent) const {
    const fs::path path = m_strPath + p_strName;
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary | std::ios::trunc) << p_strContent;
}

std::string TestRoot::read(const std::string& p_strName) const {
    std::ifstream file(m_strPath + p_strName, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

bool TestRoot::exists(const std::string& p_strName) const {
    return fs::exists(m_strPath + p_strName);
}

void TestRoot::remove(const std::string& p_strName) const {
    fs::remove_all(m_strPath + p_strName);
}

void TestRoot::makeFolder(const std::string& p_strName) const {
    fs::create_directories(m_strPath + p_strName);
}

void TestRoot::debugLevel(int p_nLevel, bool p_bAssert) const {
    write("/mnt/mtd/sign/Debug.sign", std::to_string(p_nLevel) + "\n" + (p_bAssert ? "1" : "0") + "\n");
}

std::string TestRoot::errorLog() const {
    constexpr std::size_t kDateLength = sizeof("2024-05-01 12:00:00 ") - 1;
    std::string strText;
    std::ifstream file(m_strPath + "/mnt/mtd/log/SensorError.log");
    for (std::string strLine; std::getline(file, strLine);) {
        const bool bDated = strLine.size() >= kDateLength && '-' == strLine[4] && ':' == strLine[13];
        strText += (bDated ? strLine.substr(kDateLength) : strLine) + "\n";
    }
    return strText;
}

namespace {
int g_nSavedOutput = -1;
int g_nCapture = -1;
}  // namespace

void detail::beginCapture() {
    std::fflush(stdout);
    char szName[] = "capture-XXXXXX";
    g_nCapture = mkostemp(szName, O_CLOEXEC);
    unlink(szName);
    g_nSavedOutput = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3);
    if (-1 == g_nCapture || -1 == g_nSavedOutput || -1 == dup2(g_nCapture, STDOUT_FILENO)) {
        throw std::runtime_error("cannot capture standard output");
    }
}

std::string detail::endCapture() {
    std::fflush(stdout);
    dup2(g_nSavedOutput, STDOUT_FILENO);
    close(g_nSavedOutput);
    std::string strText;
    char buffer[4096];
    lseek(g_nCapture, 0, SEEK_SET);
    for (ssize_t nRead = 0; (nRead = ::read(g_nCapture, buffer, sizeof(buffer))) > 0;) {
        strText.append(buffer, static_cast<std::size_t>(nRead));
    }
    close(g_nCapture);
    return strText;
}
