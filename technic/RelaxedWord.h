// A word that several threads share without a lock.
//
// Same size and layout as the plain type. Reading and writing is a relaxed atomic access: no order towards other words is
// promised, but no value is ever torn and no bit set by one thread is lost to another.
#pragma once

#include <atomic>

template <typename T>
class RelaxedWord {
public:
    RelaxedWord() = default;
    RelaxedWord(T p_tValue) : m_tValue(p_tValue) {}  // NOLINT(google-explicit-constructor): stands for a plain T
    RelaxedWord(const RelaxedWord&) = delete;
    RelaxedWord& operator=(const RelaxedWord&) = delete;

    operator T() const { return m_tValue.load(std::memory_order_relaxed); }  // NOLINT(google-explicit-constructor)
    RelaxedWord& operator=(T p_tValue) {
        m_tValue.store(p_tValue, std::memory_order_relaxed);
        return *this;
    }

    // One atomic step each: bits of other threads are kept.
    void setBits(T p_tBits) { m_tValue.fetch_or(p_tBits, std::memory_order_relaxed); }
    void clearBits(T p_tBits) { m_tValue.fetch_and(static_cast<T>(~p_tBits), std::memory_order_relaxed); }
    bool anyBit(T p_tBits) const { return 0 != (static_cast<T>(*this) & p_tBits); }

private:
    std::atomic<T> m_tValue{};
    static_assert(sizeof(std::atomic<T>) == sizeof(T), "a shared word is as large as a plain one");
};

// The same for a word of a plain record, for instance the value of a KeyVal in a parameter set.
template <typename T>
T loadRelaxed(const T& p_tWord) {
    return __atomic_load_n(&p_tWord, __ATOMIC_RELAXED);
}

template <typename T>
void storeRelaxed(T& p_tWord, T p_tValue) {
    __atomic_store_n(&p_tWord, p_tValue, __ATOMIC_RELAXED);
}
