#include "platform/RefCount.h"

#include "platform/linux/OwnedLock.h"

#include <atomic>
#include <cerrno>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

struct ref_count::State {
    platform::OwnedLock lock;
    // Changed with the lock held; atomic so that an unlocked look is harmless.
    std::atomic<const void*> pointer{nullptr};
    std::atomic<int> references{0};
};

ref_count::ref_count() : m_pState(std::make_unique<State>()) {}
ref_count::~ref_count() = default;

int ref_count::lock() {
    if (m_pState->lock.heldByCaller()) {
        return EDEADLK;
    }
    m_pState->lock.lock();
    return 0;
}

int ref_count::unLock() {
    if (!m_pState->lock.heldByCaller()) {
        return EPERM;
    }
    m_pState->lock.unlock();
    return 0;
}

const void* ref_count::getPointer() const {
    return m_pState->pointer;
}

int ref_count::inc_reference() {
    return 0 == m_pState->references ? 0 : ++m_pState->references;
}

int ref_count::dec_reference() {
    return 0 == m_pState->references ? 0 : --m_pState->references;
}

// Lock order: a count, then the manager. Whoever has to wait for a count therefore lets go of the manager first and
// looks again afterwards.
struct RefCountManager::State {
    using Key = std::pair<const void*, std::string>;

    std::mutex mutex;                      // guards both
    std::map<Key, ref_count*> counts;      // those that serve an object
    std::vector<ref_count*> returnedOnes;  // perhaps still locked by who gave them back

    ref_count* find(const Key& p_objKey) {
        const std::lock_guard<std::mutex> guard(mutex);
        const auto found = counts.find(p_objKey);
        return counts.end() == found ? nullptr : found->second;
    }
};

RefCountManager::RefCountManager() : m_pState(std::make_unique<State>()) {}
RefCountManager::~RefCountManager() = default;

RefCountManager* RefCountManager::getInstance() {
    static RefCountManager* const pManager = new RefCountManager;  // never destroyed
    return pManager;
}

ref_count* RefCountManager::retrieveRefCount(const void* p_pObject, const char* p_szTypeName) {
    if (nullptr == p_pObject) {
        return nullptr;
    }
    const State::Key key(p_pObject, nullptr == p_szTypeName ? "" : p_szTypeName);
    while (true) {
        if (ref_count* const pKnown = m_pState->find(key)) {
            const bool bLockedHere = 0 == pKnown->lock();  // otherwise the caller holds it already
            const bool bStillServes = pKnown == m_pState->find(key);
            if (bStillServes) {
                ++pKnown->m_pState->references;
            }
            if (bLockedHere) {
                pKnown->unLock();
            }
            if (bStillServes) {
                return pKnown;
            }
            continue;  // given back in between; the object at this address is a new one
        }

        const std::lock_guard<std::mutex> guard(m_pState->mutex);
        if (0 != m_pState->counts.count(key)) {
            continue;  // another thread was quicker
        }
        std::vector<ref_count*>& vecReturned = m_pState->returnedOnes;
        auto chosen = vecReturned.begin();
        while (vecReturned.end() != chosen &&
               ((*chosen)->m_pState->lock.heldByCaller() || !(*chosen)->m_pState->lock.tryLock())) {
            ++chosen;
        }
        ref_count* pCount = nullptr;
        if (vecReturned.end() == chosen) {
            pCount = new ref_count;
            pCount->lock();
        } else {
            pCount = *chosen;
            vecReturned.erase(chosen);
        }
        pCount->m_pState->pointer = p_pObject;
        pCount->m_pState->references = 1;
        m_pState->counts[key] = pCount;
        pCount->unLock();
        return pCount;
    }
}

void RefCountManager::returnbackRefCount(ref_count* p_pCount, const char* p_szTypeName) {
    if (nullptr == p_pCount) {
        return;
    }
    const std::lock_guard<std::mutex> guard(m_pState->mutex);
    const auto found = m_pState->counts.find({p_pCount->getPointer(), nullptr == p_szTypeName ? "" : p_szTypeName});
    if (m_pState->counts.end() != found && p_pCount == found->second && 0 == p_pCount->m_pState->references) {
        m_pState->counts.erase(found);
        p_pCount->m_pState->pointer = nullptr;
        m_pState->returnedOnes.push_back(p_pCount);
    }
}
