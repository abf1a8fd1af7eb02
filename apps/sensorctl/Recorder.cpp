#include "apps/sensorctl/Recorder.h"

#include "apps/sensorctl/Arguments.h"
#include "apps/sensorctl/ClockText.h"
#include "apps/sensorctl/Shared.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace sensorctl {

namespace {
constexpr INT64 kShortestWait = 10000;  // microseconds; less between two commands waits for more
}  // namespace

Recorder::~Recorder() {
    if (isRecording()) {
        close(m_nDescriptor);
    }
}

void Recorder::begin(const std::string& p_strPath, const Start& p_stStart) {
    if (isRecording()) {
        throw CommandError("the session is being recorded already, in " + sensorctl::quoted(m_strPath));
    }
    const int descriptor = open(p_strPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (-1 == descriptor) {
        throw CommandError(EEXIST == errno ? sensorctl::quoted(p_strPath) + " is there already; record into a new file"
                                           : sensorctl::quoted(p_strPath) + " cannot be made: " + std::strerror(errno));
    }
    m_nDescriptor = descriptor;
    m_strPath = p_strPath;
    m_nLines = 0;
    m_nRecorded = p_stStart.nMicroseconds;
    m_bWhole = true;
    write("# Recorded by sensorctl " SENSORCTL_VERSION);
    write("scene clock \"" + clockText(p_stStart.stClock) + "\"");
    if (1 != p_stStart.nChannel) {
        write("channel " + std::to_string(p_stStart.nChannel));
    }
}

void Recorder::end() {
    if (!isRecording()) {
        throw CommandError("the session is not being recorded");
    }
    const bool closed = 0 == close(m_nDescriptor);
    m_nDescriptor = -1;
    if (!closed || !m_bWhole) {
        throw CommandError(sensorctl::quoted(m_strPath) + " could not be written completely");
    }
}

void Recorder::took(const std::string& p_strCommand, bool p_bOk, INT64 p_nBegin, INT64 p_nEnd) {
    if (!isRecording()) {
        return;
    }
    INT64 recorded = m_nRecorded;
    if (p_nBegin - m_nRecorded >= kShortestWait) {
        const INT64 passed = p_nBegin - m_nRecorded;
        char buffer[64];
        std::snprintf(buffer, sizeof(buffer), "wait %lld.%06lld",
                      static_cast<long long>(passed / kMicrosecondsOfSecond),
                      static_cast<long long>(passed % kMicrosecondsOfSecond));
        write(buffer);
        recorded = p_nBegin;
    }
    write((p_bOk ? "" : "expect fail ") + p_strCommand);
    m_nRecorded = recorded + (p_nEnd - p_nBegin);
    ++m_nLines;
}

void Recorder::write(const std::string& p_strLine) {
    const std::string line = p_strLine + "\n";
    std::size_t done = 0;
    while (m_bWhole && done < line.size()) {
        const ssize_t count = ::write(m_nDescriptor, line.data() + done, line.size() - done);
        m_bWhole = count >= 0 || EINTR == errno;
        done += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
}

}  // namespace sensorctl
