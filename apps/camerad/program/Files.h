// Files of this machine that the program needs besides the camera's own.
#pragma once

#include <string>

namespace camerad {

// Holds a device root for one process at a time. The lock ends with the object, and with the process.
class RootLock {
public:
    // p_strFolder: made with its parents when it is not there. Throws std::runtime_error when another process holds it, or
    // when the folder cannot be used.
    explicit RootLock(const std::string& p_strFolder);
    ~RootLock();
    RootLock(const RootLock&) = delete;
    RootLock& operator=(const RootLock&) = delete;

private:
    int m_nDescriptor;
};

// The port, for tests and scripts that wait for the file; whole as soon as it is there, and gone at the end.
class PortFile {
public:
    // Throws std::runtime_error. An empty name: no file.
    PortFile(std::string p_strName, int p_nPort);
    ~PortFile();
    PortFile(const PortFile&) = delete;
    PortFile& operator=(const PortFile&) = delete;

private:
    const std::string m_strName;
};

}  // namespace camerad
