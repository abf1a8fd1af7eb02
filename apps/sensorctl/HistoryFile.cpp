#include "apps/sensorctl/HistoryFile.h"

#include "apps/sensorctl/Shared.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace sensorctl {

namespace {

constexpr mode_t kForUser = 0600;
constexpr mode_t kFolderForUser = 0700;
constexpr std::size_t kMostBytes = HistoryFile::kMostLines * (HistoryFile::kLongestLine + 1);

bool isKept(const std::string& p_strLine) {
    return !p_strLine.empty() && p_strLine.size() <= HistoryFile::kLongestLine &&
           std::string::npos == p_strLine.find_first_of(std::string("\n\r\0", 3));
}

void keepNewest(std::vector<std::string>& p_vecLines) {
    if (p_vecLines.size() > HistoryFile::kMostLines) {
        p_vecLines.erase(p_vecLines.begin(), p_vecLines.end() - static_cast<std::ptrdiff_t>(HistoryFile::kMostLines));
    }
}

void makeFolders(const fs::path& p_objFolder) {
    fs::path made;
    for (const fs::path& piece : p_objFolder) {
        made /= piece;
        mkdir(made.c_str(), kFolderForUser);  // one that is there already stays as it is
    }
}

bool writeWhole(const std::string& p_strPath, const std::string& p_strText) {
    const int descriptor = open(p_strPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, kForUser);
    if (-1 == descriptor) {
        return false;
    }
    std::size_t done = 0;
    for (ssize_t count = 1; done < p_strText.size() && count > 0; done += static_cast<std::size_t>(count)) {
        count = std::max<ssize_t>(write(descriptor, p_strText.data() + done, p_strText.size() - done), 0);
    }
    return 0 == close(descriptor) && done == p_strText.size();
}

}  // namespace

std::vector<std::string> HistoryFile::load() const {
    std::error_code error;
    std::vector<std::string> lines;
    if (m_strPath.empty() || !fs::is_regular_file(m_strPath, error)) {
        return lines;
    }
    std::ifstream file(m_strPath, std::ios::binary);
    const std::uintmax_t size = fs::file_size(m_strPath, error);
    if (!error && size > kMostBytes) {
        file.seekg(static_cast<std::streamoff>(size - kMostBytes));
    }
    std::string text(kMostBytes, '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(std::max<std::streamsize>(file.gcount(), 0)));
    for (std::size_t start = 0, end = 0; (end = text.find('\n', start)) != std::string::npos; start = end + 1) {
        const std::string line = text.substr(start, end - start);
        if (isKept(line)) {
            lines.push_back(line);
        }
    }
    keepNewest(lines);
    return lines;
}

bool HistoryFile::append(const std::vector<std::string>& p_vecLines) const {
    if (m_strPath.empty() || p_vecLines.empty()) {
        return true;
    }
    std::error_code error;
    const fs::file_status status = fs::status(m_strPath, error);
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        return false;  // a device such as /dev/null would be replaced
    }
    std::vector<std::string> lines = load();
    std::copy_if(p_vecLines.begin(), p_vecLines.end(), std::back_inserter(lines), isKept);
    keepNewest(lines);
    makeFolders(fs::path(m_strPath).parent_path());
    const std::string beside = m_strPath + "." + std::to_string(getpid());
    if (!writeWhole(beside, join(lines, "\n") + "\n") || 0 != std::rename(beside.c_str(), m_strPath.c_str())) {
        unlink(beside.c_str());
        return false;
    }
    return true;
}

std::string historyPath(const char* p_szHistory, const char* p_szState, const char* p_szHome,
                        const std::string& p_strDeviceRoot) {
    fs::path path;
    if (nullptr != p_szHistory) {
        path = p_szHistory;
    } else if (nullptr != p_szState && '/' == *p_szState) {
        path = fs::path(p_szState) / "sensorctl/history";
    } else if (nullptr != p_szHome && '/' == *p_szHome) {
        path = fs::path(p_szHome) / ".local/state/sensorctl/history";
    }
    if (path.empty()) {
        return {};
    }
    std::error_code error;
    const fs::path place = fs::weakly_canonical(fs::absolute(path, error), error);
    const fs::path root = fs::weakly_canonical(p_strDeviceRoot, error);
    const bool inside = root.end() == std::mismatch(root.begin(), root.end(), place.begin(), place.end()).first;
    return error || inside ? "" : place.string();
}

}  // namespace sensorctl
