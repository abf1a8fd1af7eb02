// Writes what a session does as a script that does the same again.
//
// The script begins with the device time, and the channel unless it is the first. In a session whose clock runs, the time
// between commands becomes waits, so that the script on a held clock lets as much pass. A command that failed is written
// as one that is expected to. Each line is written at once. One thread.
#pragma once

#include "apps/sensorctl/CommandTable.h"
#include "platform/Clock.h"

#include <string>

namespace sensorctl {

class Recorder {
public:
    // What the session looks like when the recording begins.
    struct Start {
        platform::CivilTime stClock;
        int nChannel = 1;
        INT64 nMicroseconds = 0;  // of the monotonic clock
    };

    Recorder() = default;
    ~Recorder();
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    // Throws CommandError when a recording is going on, when the file is there already, and when it cannot be made.
    void begin(const std::string& p_strPath, const Start& p_stStart);
    // Throws CommandError when none is going on, and when something could not be written.
    void end();

    bool isRecording() const { return -1 != m_nDescriptor; }
    const std::string& path() const { return m_strPath; }
    std::size_t lines() const { return m_nLines; }

    // A command that has run, from one moment of the monotonic clock to another.
    void took(const std::string& p_strCommand, bool p_bOk, INT64 p_nBegin, INT64 p_nEnd);

private:
    void write(const std::string& p_strLine);

    int m_nDescriptor = -1;
    std::string m_strPath;
    std::size_t m_nLines = 0;
    INT64 m_nRecorded = 0;  // up to where time has been written
    bool m_bWhole = true;
};

}  // namespace sensorctl
