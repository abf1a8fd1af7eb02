#include "platform/RefCount.h"

#include "platform/linux/OwnedLock.h"

#include <algorithm>
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

    // The count that serves this object, with a reference more; null when none does, or none any more: then the object
    // at this address is a new one.
    ref_count* addReference(const Key& p_objKey) {
        ref_count* const pCount = find(p_objKey);
        if (nullptr == pCount) {
            return nullptr;
        }
        const bool bLockedHere = 0 == pCount->lock();  // otherwise the caller holds it already
        const bool bStillServes = pCount == find(p_objKey);
        if (bStillServes) {
            ++pCount->m_pState->references;
        }
        if (bLockedHere) {
            pCount->unLock();
        }
        return bStillServes ? pCount : nullptr;
    }

    // A count that serves this object from now on; null when another thread was quicker.
    ref_count* serve(const Key& p_objKey) {
        const std::lock_guard<std::mutex> guard(mutex);
        if (0 != counts.count(p_objKey)) {
            return nullptr;
        }
        const auto free = std::find_if(returnedOnes.begin(), returnedOnes.end(), [](const ref_count* p_pCount) {
            return !p_pCount->m_pState->lock.heldByCaller() && p_pCount->m_pState->lock.tryLock();
        });
        const bool bNew = returnedOnes.end() == free;
        ref_count* const pCount = bNew ? new ref_count : *free;
        pCount->m_pState->pointer = p_objKey.first;
        pCount->m_pState->references = 1;
        counts[p_objKey] = pCount;
        if (!bNew) {
            returnedOnes.erase(free);
            pCount->unLock();
        }
        return pCount;
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
    ref_count* pCount = nullptr;
    while (nullptr == pCount) {
        pCount = m_pState->addReference(key);
        pCount = nullptr == pCount ? m_pState->serve(key) : pCount;
    }
    return pCount;
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
