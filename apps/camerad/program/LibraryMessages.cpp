#include "apps/camerad/program/LibraryMessages.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <system_error>

namespace camerad {

namespace {

constexpr int kFirstPrivate = 10;           // above the descriptors that shells hand to programs
constexpr std::size_t kLongestLine = 8192;  // a longer one is cut into several
constexpr std::size_t kMostKept = 1000;     // lines that nobody takes yet

[[noreturn]] void fail(const char* p_szWhat) {
    throw std::system_error(errno, std::generic_category(), p_szWhat);
}

}  // namespace

LibraryMessages::LibraryMessages()
    : m_nOutput(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, kFirstPrivate)), m_nRead(-1), m_nStop(-1) {
    if (-1 == m_nOutput) {
        fail("standard output");
    }
    int ends[2] = {-1, -1};
    m_nStop = eventfd(0, EFD_CLOEXEC);
    if (-1 == m_nStop || -1 == pipe2(ends, O_CLOEXEC)) {
        const int error = errno;
        close(m_nOutput);
        if (-1 != m_nStop) {
            close(m_nStop);
        }
        errno = error;
        fail("a pipe for the library's messages");
    }
    m_nRead = ends[0];
    std::fflush(stdout);
    // With a buffer of its own: without one, a stream that was written to before goes on to keep whole lines back.
    static std::array<char, BUFSIZ> buffer;
    std::setvbuf(stdout, buffer.data(), _IOLBF, buffer.size());
    dup2(ends[1], STDOUT_FILENO);
    close(ends[1]);
    m_thread = std::thread([this] { run(); });
}

LibraryMessages::~LibraryMessages() {
    std::fflush(stdout);
    dup2(m_nOutput, STDOUT_FILENO);
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = write(m_nStop, &one, sizeof(one));
    m_thread.join();
    close(m_nOutput);
    close(m_nRead);
    close(m_nStop);
}

void LibraryMessages::setTaker(Taker p_fnTaker) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_fnTaker = std::move(p_fnTaker);
    if (m_fnTaker) {
        for (const std::string& line : m_listKept) {
            m_fnTaker(line);
        }
        m_listKept.clear();
    }
}

bool LibraryMessages::say(const std::string& p_strText) const {
    std::size_t done = 0;
    while (done < p_strText.size()) {
        const ssize_t put = write(m_nOutput, p_strText.data() + done, p_strText.size() - done);
        if (put < 0 && EINTR == errno) {
            continue;
        }
        if (put <= 0) {
            return false;
        }
        done += static_cast<std::size_t>(put);
    }
    return true;
}

void LibraryMessages::run() {
    for (;;) {
        pollfd wanted[] = {{m_nRead, POLLIN, 0}, {m_nStop, POLLIN, 0}};
        poll(wanted, 2, -1);
        char bytes[4096];
        if (0 != (wanted[0].revents & (POLLIN | POLLHUP))) {
            const ssize_t got = read(m_nRead, bytes, sizeof(bytes));
            if (got > 0) {
                takeBytes(bytes, static_cast<std::size_t>(got));
                continue;
            }
            if (0 == got) {
                break;  // nobody is left who could print
            }
        }
        if (0 != (wanted[1].revents & POLLIN)) {
            break;
        }
    }
    if (!m_strLine.empty()) {
        takeLine();
    }
}

void LibraryMessages::takeBytes(const char* p_pBytes, std::size_t p_nCount) {
    for (std::size_t i = 0; i < p_nCount; ++i) {
        if ('\n' != p_pBytes[i]) {
            m_strLine += p_pBytes[i];
        }
        if ('\n' == p_pBytes[i] || m_strLine.size() >= kLongestLine) {
            takeLine();
        }
    }
}

void LibraryMessages::takeLine() {
    const std::string line = std::move(m_strLine);
    m_strLine.clear();
    const std::lock_guard<std::mutex> guard(m_mutex);
    if (m_fnTaker) {
        m_fnTaker(line);
        return;
    }
    m_listKept.push_back(line);
    if (m_listKept.size() > kMostKept) {
        m_listKept.pop_front();
    }
}

}  // namespace camerad
