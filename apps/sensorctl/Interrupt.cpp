#include "apps/sensorctl/Interrupt.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <system_error>

namespace sensorctl {

namespace {

volatile std::sig_atomic_t g_nSignal = 0;

// A byte in this pipe wakes a wait for input, however close to its beginning the signal comes. -1 before catchInterrupts.
int g_nWakeRead = -1;
int g_nWakeWrite = -1;

void interrupted(int p_nSignal) {
    const int error = errno;
    g_nSignal = p_nSignal;
    const char wake = 0;
    [[maybe_unused]] const ssize_t ignored = write(g_nWakeWrite, &wake, 1);
    errno = error;
}

}  // namespace

void catchInterrupts() {
    int ends[2];
    if (-1 == pipe2(ends, O_CLOEXEC | O_NONBLOCK)) {
        throw std::system_error(errno, std::generic_category(), "pipe");
    }
    g_nWakeRead = ends[0];
    g_nWakeWrite = ends[1];
    struct sigaction action = {};
    action.sa_handler = interrupted;
    action.sa_flags = SA_RESTART;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
}

int interruptSignal() {
    return g_nSignal;
}

void forgetKeyboardInterrupt() {
    sigset_t both;
    sigset_t before;
    sigemptyset(&both);
    sigaddset(&both, SIGINT);
    sigaddset(&both, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &both, &before);
    if (SIGINT == g_nSignal) {
        g_nSignal = 0;
        for (char wake = 0; 1 == read(g_nWakeRead, &wake, 1);) {
        }
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

bool waitForInput(int p_nDescriptor) {
    pollfd waited[2] = {{p_nDescriptor, POLLIN, 0}, {g_nWakeRead, POLLIN, 0}};  // a negative descriptor is ignored
    int ready = 0;
    do {
        ready = poll(waited, 2, -1);
    } while (-1 == ready && EINTR == errno);
    return 0 == interruptSignal();
}

}  // namespace sensorctl
