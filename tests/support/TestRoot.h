// A device root that belongs to one test, and a held clock.
//
// The folder is made below the test program's working folder and removed at the end. The clock is held at 2024-05-01
// 12:00:00, so that no wait takes time. Roots of processes that the test starts go with it. One at a time in a process, or
// nested.
#pragma once

#include <string>

class TestRoot {
public:
    TestRoot();
    ~TestRoot();
    TestRoot(const TestRoot&) = delete;
    TestRoot& operator=(const TestRoot&) = delete;

    const std::string& path() const { return m_strPath; }

    // All names are camera paths, for instance "/mnt/mtd/sign/Debug.sign". Folders on the way are made.
    void write(const std::string& p_strName, const std::string& p_strContent) const;
    std::string read(const std::string& p_strName) const;  // empty when missing
    bool exists(const std::string& p_strName) const;
    void remove(const std::string& p_strName) const;
    void makeFolder(const std::string& p_strName) const;

    // Writes the sign file.
    void debugLevel(int p_nLevel, bool p_bAssert = false) const;

    // All of the error log, without the date that leads each entry.
    std::string errorLog() const;

private:
    std::string m_strPath;
    std::string m_strChildren;  // where processes that the test starts make their roots
    std::string m_strOuter;     // where this root was made; empty for the working folder
};

// Runs a piece of code and returns what it wrote to standard output.
template <typename Code>
std::string outputOf(Code&& p_fnCode);

namespace detail {
void beginCapture();
std::string endCapture();
}  // namespace detail

template <typename Code>
std::string outputOf(Code&& p_fnCode) {
    detail::beginCapture();
    p_fnCode();
    return detail::endCapture();
}

// Runs a piece of code without what it writes to standard output and returns its result.
template <typename Code>
auto quietly(Code&& p_fnCode) {
    detail::beginCapture();
    auto result = p_fnCode();
    detail::endCapture();
    return result;
}
