// The camera's debug switch file for the length of a session.
//
// The library reads "/mnt/mtd/sign/Debug.sign" before each of its messages: line 1 is the level, line 2 the assertion
// switch (1: a failed assertion aborts the process). set replaces the file below the device root; the destructor puts
// back what was there before, or removes the file when there was none. A process that aborts leaves it as it was set.
#pragma once

#include <optional>
#include <string>

namespace sensorctl {

class DebugSign {
public:
    DebugSign() = default;
    ~DebugSign();
    DebugSign(const DebugSign&) = delete;
    DebugSign& operator=(const DebugSign&) = delete;

    // Throws CommandError when the file cannot be written.
    void set(int p_nLevel, bool p_bAssert);

private:
    bool m_bChanged = false;
    std::optional<std::string> m_strBefore;  // content before the first change; nothing when there was no file
};

}  // namespace sensorctl
