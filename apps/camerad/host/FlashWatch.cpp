#include "apps/camerad/host/FlashWatch.h"

#include "platform/DeviceRoot.h"

#include <sys/stat.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace camerad {

FlashWatch::FlashWatch(std::vector<std::string> p_vecFiles) : m_vecFiles(std::move(p_vecFiles)) {
    std::transform(m_vecFiles.begin(), m_vecFiles.end(), std::back_inserter(m_vecBefore), identityOf);
}

std::uint64_t FlashWatch::written() const {
    std::uint64_t nWritten = 0;
    for (std::size_t i = 0; i < m_vecFiles.size(); ++i) {
        const Identity now = identityOf(m_vecFiles[i]);
        nWritten += now && now != m_vecBefore[i] ? 1u : 0u;
    }
    return nWritten;
}

// The number of a file alone is not enough: a deleted one leaves its number to the next. It may have more than 32 bits, also
// for a 32-bit camera, where stat() fails then.
FlashWatch::Identity FlashWatch::identityOf(const std::string& p_strFile) {
    struct stat64 stFile {};
    if (0 != stat64(platform::devicePath(p_strFile).c_str(), &stFile) || !S_ISREG(stFile.st_mode)) {
        return std::nullopt;
    }
    return std::make_tuple(static_cast<std::uint64_t>(stFile.st_ino), static_cast<std::int64_t>(stFile.st_mtim.tv_sec),
                           static_cast<std::int64_t>(stFile.st_mtim.tv_nsec));
}

}  // namespace camerad
