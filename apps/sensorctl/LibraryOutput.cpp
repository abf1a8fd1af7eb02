#include "apps/sensorctl/LibraryOutput.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <system_error>

namespace sensorctl {

namespace {

constexpr int kFirstPrivate = 10;  // above the descriptors that shells hand to programs

[[noreturn]] void fail(const char* p_szWhat) {
    throw std::system_error(errno, std::generic_category(), p_szWhat);
}

}  // namespace

LibraryOutput::LibraryOutput(Target p_eTarget) : m_nResults(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, kFirstPrivate)) {
    if (-1 == m_nResults) {
        fail("standard output");
    }
    std::fflush(stdout);
    if (Target::standardError == p_eTarget && -1 == dup2(STDERR_FILENO, STDOUT_FILENO)) {
        close(m_nResults);
        fail("standard error");
    }
    if (Target::nowhere == p_eTarget) {
        const int nothing = open("/dev/null", O_WRONLY | O_CLOEXEC);
        if (-1 == nothing || -1 == dup2(nothing, STDOUT_FILENO)) {
            close(m_nResults);
            fail("/dev/null");
        }
        close(nothing);
    }
}

LibraryOutput::~LibraryOutput() {
    std::fflush(stdout);
    dup2(m_nResults, STDOUT_FILENO);
    close(m_nResults);
}

}  // namespace sensorctl
