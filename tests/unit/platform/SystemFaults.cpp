#include "tests/unit/platform/SystemFaults.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <mutex>
#include <optional>

namespace {

struct Fault {
    std::string call;
    int error;
    int skipped;
};

struct Plan {
    std::mutex mutex;  // guards all
    std::vector<Fault> faults;
    std::optional<std::size_t> cut;
    std::vector<std::string> calls;

    static Plan& instance() {
        static Plan* const pPlan = new Plan;
        return *pPlan;
    }
};

// The error number of a planned fault, 0 for none.
int begin(const std::string& p_strCall, const std::string& p_strShown) {
    Plan& plan = Plan::instance();
    const std::lock_guard<std::mutex> guard(plan.mutex);
    plan.calls.push_back(p_strShown);
    const auto fault = std::find_if(plan.faults.begin(), plan.faults.end(),
                                    [&](const Fault& p_stFault) { return p_strCall == p_stFault.call; });
    if (plan.faults.end() == fault || fault->skipped-- > 0) {
        return 0;
    }
    const int nError = fault->error;
    plan.faults.erase(fault);
    plan.calls.back() += " failed";
    return nError;
}

std::size_t cutTo(std::size_t p_nCount) {
    Plan& plan = Plan::instance();
    const std::lock_guard<std::mutex> guard(plan.mutex);
    const std::size_t nCount = std::min(p_nCount, plan.cut.value_or(p_nCount));
    plan.cut.reset();
    return nCount;
}

mode_t kindOf(int p_nHandle) {
    struct stat stFile = {};
    return 0 == fstat(p_nHandle, &stFile) ? stFile.st_mode & S_IFMT : 0;
}

}  // namespace

void systemFaults::fail(const std::string& p_strCall, int p_nError, int p_nSkipped) {
    Plan& plan = Plan::instance();
    const std::lock_guard<std::mutex> guard(plan.mutex);
    plan.faults.push_back({p_strCall, p_nError, p_nSkipped});
}

void systemFaults::cutWrite(std::size_t p_nBytes) {
    Plan& plan = Plan::instance();
    const std::lock_guard<std::mutex> guard(plan.mutex);
    plan.cut = p_nBytes;
}

std::vector<std::string> systemFaults::calls() {
    Plan& plan = Plan::instance();
    const std::lock_guard<std::mutex> guard(plan.mutex);
    return plan.calls;
}

void systemFaults::clear() {
    Plan& plan = Plan::instance();
    const std::lock_guard<std::mutex> guard(plan.mutex);
    plan.faults.clear();
    plan.cut.reset();
    plan.calls.clear();
}

#define INSTEAD_OF_THE_SYSTEM extern "C" __attribute__((visibility("default")))

INSTEAD_OF_THE_SYSTEM ssize_t write(int p_nHandle, const void* p_pBuffer, size_t p_nCount) {
    std::size_t nCount = p_nCount;
    if (S_IFREG == kindOf(p_nHandle) && p_nHandle > STDERR_FILENO) {
        if (const int nError = begin("write", "write")) {
            errno = nError;
            return -1;
        }
        nCount = cutTo(p_nCount);
    }
    return static_cast<ssize_t>(syscall(SYS_write, p_nHandle, p_pBuffer, nCount));
}

INSTEAD_OF_THE_SYSTEM int fsync(int p_nHandle) {
    if (const int nError = begin("fsync", S_IFDIR == kindOf(p_nHandle) ? "fsync directory" : "fsync file")) {
        errno = nError;
        return -1;
    }
    return static_cast<int>(syscall(SYS_fsync, p_nHandle));
}

INSTEAD_OF_THE_SYSTEM int rename(const char* p_szOld, const char* p_szNew) noexcept {
    if (const int nError = begin("rename", "rename")) {
        errno = nError;
        return -1;
    }
    return renameat(AT_FDCWD, p_szOld, AT_FDCWD, p_szNew);
}

INSTEAD_OF_THE_SYSTEM int flock(int p_nHandle, int p_nOperation) noexcept {
    if (const int nError = begin("flock", "flock")) {
        errno = nError;
        return -1;
    }
    return static_cast<int>(syscall(SYS_flock, p_nHandle, p_nOperation));
}

#undef INSTEAD_OF_THE_SYSTEM
