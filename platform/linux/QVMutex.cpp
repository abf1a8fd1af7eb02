#include "platform/QVMutex.h"

#include "platform/linux/OwnedLock.h"
#include "platform/linux/StderrLine.h"

#include <cstdlib>
#include <string>

struct QVMutex::State {
    platform::OwnedLock lock;
    // Where the lock was taken; belongs to the holder.
    const char* file = nullptr;
    int line = 0;
};

namespace {

std::string placeOf(const char* p_szFile, int p_nLine) {
    return std::string(nullptr == p_szFile ? "(unknown)" : p_szFile) + ":" + std::to_string(p_nLine);
}

}  // namespace

QVMutex::QVMutex() : m_pState(std::make_unique<State>()) {}

QVMutex::~QVMutex() = default;

bool QVMutex::lock(const char* p_szFile, int p_nLine) {
    if (m_pState->lock.heldByCaller()) {
        platform::stderrLine("QVMutex: locked a second time at " + placeOf(p_szFile, p_nLine) +
                             " by the thread that locked it at " + placeOf(m_pState->file, m_pState->line));
        std::abort();
    }
    m_pState->lock.lock();
    m_pState->file = p_szFile;
    m_pState->line = p_nLine;
    return true;
}

bool QVMutex::unlock(const char* p_szFile, int p_nLine) {
    if (!m_pState->lock.heldByCaller()) {
        platform::stderrLine("QVMutex: unlocked at " + placeOf(p_szFile, p_nLine) +
                             " by a thread that does not hold it");
        return false;
    }
    m_pState->lock.unlock();
    return true;
}
