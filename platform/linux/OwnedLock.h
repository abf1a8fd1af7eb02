// A lock that can tell whether the calling thread holds it. Not recursive.
#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>

namespace platform {

class OwnedLock {
public:
    bool heldByCaller() const { return thisThread() == m_nOwner.load(std::memory_order_relaxed); }

    // The caller must not hold it.
    void lock() {
        m_mutex.lock();
        m_nOwner.store(thisThread(), std::memory_order_relaxed);
    }
    bool tryLock() {
        const bool bLocked = m_mutex.try_lock();
        if (bLocked) {
            m_nOwner.store(thisThread(), std::memory_order_relaxed);
        }
        return bLocked;
    }

    // The caller must hold it.
    void unlock() {
        m_nOwner.store(kNobody, std::memory_order_relaxed);
        m_mutex.unlock();
    }

private:
    static constexpr std::uint64_t kNobody = 0;

    // A number that no other thread of the process ever has; the system's own numbers come again.
    static std::uint64_t thisThread() {
        static std::atomic<std::uint64_t> nLast{kNobody};
        thread_local const std::uint64_t nThis = 1 + nLast.fetch_add(1, std::memory_order_relaxed);
        return nThis;
    }

    std::mutex m_mutex;
    // Written by the holder alone. A thread reads its own number only if it wrote that itself, so no order is needed.
    std::atomic<std::uint64_t> m_nOwner{kNobody};
};

}  // namespace platform
