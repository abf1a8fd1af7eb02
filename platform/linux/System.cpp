#include "platform/System.h"

#include "platform/DeviceRoot.h"
#include "platform/linux/ShellPaths.h"
#include "platform/linux/SteadyCondition.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace {

constexpr const char* kRootVariable = "CAMERA_ROOT";
constexpr std::size_t kLongestCommand = 128 * 1024 - 1;  // bytes; what the kernel takes as one argument
constexpr int kSignalBase = 128;                         // the shell's own way to report a signal
constexpr INT64 kMicrosecondsPerSecond = 1000000;
constexpr int kNotRun = -1;

// The environment of this process with the device root of now, absolute so that no command takes it for an option.
std::vector<std::string> environmentWith(const std::string& p_strRoot) {
    const std::string strStart = std::string(kRootVariable) + "=";
    std::vector<std::string> vecResult;
    for (char** ppEntry = environ; nullptr != ppEntry && nullptr != *ppEntry; ++ppEntry) {
        if (0 != std::strncmp(*ppEntry, strStart.c_str(), strStart.size())) {
            vecResult.emplace_back(*ppEntry);
        }
    }
    if (!p_strRoot.empty()) {
        std::error_code error;  // without a working folder the root stays as it is
        const std::filesystem::path absolute = std::filesystem::absolute(p_strRoot, error);
        vecResult.push_back(strStart + (error ? p_strRoot : absolute.string()));
    }
    return vecResult;
}

std::vector<char*> pointersOf(std::vector<std::string>& p_vecTexts) {
    std::vector<char*> vecPointers;
    for (std::string& strText : p_vecTexts) {
        vecPointers.push_back(strText.data());
    }
    vecPointers.push_back(nullptr);
    return vecPointers;
}

// What the child is started with: a process group of its own, nothing on standard input, signals as after a login.
class SpawnOptions {
public:
    SpawnOptions() {
        posix_spawn_file_actions_init(&m_stFiles);
        posix_spawnattr_init(&m_stAttributes);
        sigset_t stSignals;
        sigfillset(&stSignals);
        posix_spawnattr_setsigdefault(&m_stAttributes, &stSignals);
        sigemptyset(&stSignals);
        posix_spawnattr_setsigmask(&m_stAttributes, &stSignals);
        posix_spawnattr_setpgroup(&m_stAttributes, 0);
        constexpr short kFlags = POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK;
        posix_spawnattr_setflags(&m_stAttributes, kFlags);
        posix_spawn_file_actions_addopen(&m_stFiles, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    }
    ~SpawnOptions() {
        posix_spawn_file_actions_destroy(&m_stFiles);
        posix_spawnattr_destroy(&m_stAttributes);
    }
    SpawnOptions(const SpawnOptions&) = delete;
    SpawnOptions& operator=(const SpawnOptions&) = delete;

    const posix_spawn_file_actions_t* files() const { return &m_stFiles; }
    const posix_spawnattr_t* attributes() const { return &m_stAttributes; }

private:
    posix_spawn_file_actions_t m_stFiles;
    posix_spawnattr_t m_stAttributes;
};

// The process id of the shell, or kNotRun.
pid_t startShell(const std::string& p_strCommand) {
    const std::string strRoot = platform::deviceRoot();
    std::vector<std::string> vecEnvironment = environmentWith(strRoot);
    std::vector<std::string> vecArguments = {
        "sh", "-c", "--", strRoot.empty() ? p_strCommand : platform::withRootInFront(p_strCommand, kRootVariable)};
    if (vecArguments.back().size() > kLongestCommand) {
        return kNotRun;
    }
    const SpawnOptions options;
    pid_t nShell = kNotRun;
    const int nResult = posix_spawn(&nShell, "/bin/sh", options.files(), options.attributes(),
                                    pointersOf(vecArguments).data(), pointersOf(vecEnvironment).data());
    return 0 == nResult ? nShell : kNotRun;
}

// Blocks until the shell has ended but leaves it unreaped, so that its number cannot mean another process yet.
void waitForEnd(pid_t p_nShell) {
    siginfo_t stInfo = {};
    while (-1 == waitid(P_PID, static_cast<id_t>(p_nShell), &stInfo, WEXITED | WNOWAIT) && EINTR == errno) {
    }
}

int reap(pid_t p_nShell) {
    int nStatus = 0;
    pid_t nReaped = 0;
    do {
        nReaped = waitpid(p_nShell, &nStatus, 0);
    } while (-1 == nReaped && EINTR == errno);
    if (p_nShell != nReaped) {
        return kNotRun;
    }
    return WIFEXITED(nStatus) ? WEXITSTATUS(nStatus) : kSignalBase + WTERMSIG(nStatus);
}

// The shell itself too: on an emulator it may not have got its group yet.
void killGroup(pid_t p_nShell) {
    kill(-p_nShell, SIGKILL);
    kill(p_nShell, SIGKILL);
}

// True when the shell ended in time; otherwise its group has been killed. A thread waits for it, because every other
// way to wait for a process with a time-out needs a signal handler of the process or a recent kernel.
bool endsWithin(pid_t p_nShell, INT64 p_nMicroseconds) {
    std::mutex mutex;
    platform::SteadyCondition changed;
    bool bEnded = false;  // guarded by mutex
    std::thread watcher([&] {
        waitForEnd(p_nShell);
        const std::lock_guard<std::mutex> guard(mutex);
        bEnded = true;
        changed.notifyAll();
    });
    bool bInTime = true;
    {
        std::unique_lock<std::mutex> lock(mutex);
        const INT64 nEnd = platform::steadyMicroseconds() + p_nMicroseconds;
        for (INT64 nLeft = p_nMicroseconds; !bEnded && nLeft > 0; nLeft = nEnd - platform::steadyMicroseconds()) {
            changed.waitFor(lock, nLeft);
        }
        bInTime = bEnded;
        if (!bInTime) {
            killGroup(p_nShell);
        }
    }
    watcher.join();
    return bInTime;
}

}  // namespace

int sy_system(const char* p_szCommand, int p_nSeconds) {
    const pid_t nShell = nullptr == p_szCommand ? kNotRun : startShell(p_szCommand);
    if (kNotRun == nShell) {
        return kNotRun;
    }
    bool bInTime = true;
    if (p_nSeconds > 0) {
        try {
            bInTime = endsWithin(nShell, p_nSeconds * kMicrosecondsPerSecond);
        } catch (const std::system_error&) {
            killGroup(nShell);  // nobody can watch the time
            bInTime = false;
        }
    }
    const int nStatus = reap(nShell);
    return bInTime ? nStatus : kNotRun;
}
