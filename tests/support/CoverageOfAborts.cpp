// Only in coverage builds: a process that aborts, as the child of a death test does, writes down what it has run.
#include <csignal>

extern "C" void __gcov_dump();

namespace {

// The C library's abort goes on to end the process when the handler returns.
void dump(int) {
    __gcov_dump();
}

const auto g_fnBefore = std::signal(SIGABRT, dump);

}  // namespace
