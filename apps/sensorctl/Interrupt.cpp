#include "apps/sensorctl/Interrupt.h"

#include <csignal>

namespace sensorctl {

namespace {

volatile std::sig_atomic_t g_bInterrupted = 0;

void interrupted(int) {
    g_bInterrupted = 1;
}

}  // namespace

void catchInterrupts() {
    struct sigaction action = {};
    action.sa_handler = interrupted;  // without SA_RESTART: a read of the next line ends
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
}

bool isInterrupted() {
    return 0 != g_bInterrupted;
}

}  // namespace sensorctl
