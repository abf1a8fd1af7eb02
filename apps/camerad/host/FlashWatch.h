// What is written to flash by somebody who does not tell: the library stores its files without a word.
//
// A file is always replaced as a whole, so that another one stands under its name afterwards.
//
// Threads: one object belongs to one thread. Functions block as the medium does.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

namespace camerad {

class FlashWatch {
public:
    // Looks at the files of these camera paths as they are now.
    explicit FlashWatch(std::vector<std::string> p_vecFiles);

    // How many of them were written since.
    std::uint64_t written() const;

private:
    using Identity = std::optional<std::tuple<std::uint64_t, std::int64_t, std::int64_t>>;  // nothing: no such file

    static Identity identityOf(const std::string& p_strFile);

    const std::vector<std::string> m_vecFiles;
    std::vector<Identity> m_vecBefore;
};

}  // namespace camerad
