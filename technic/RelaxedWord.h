/// @file
/// A word that several threads share without a lock.
#pragma once

#include <atomic>

/// A word that several threads share without a lock.
///
/// Same size and layout as the plain type. Reading and writing is a relaxed atomic access: no order towards other words
/// is promised, but no value is ever torn and no bit set by one thread is lost to another. Not copyable.
/// @tparam T  an integer type or bool
template <typename T>
class RelaxedWord {
public:
    /// A word of 0.
    RelaxedWord() = default;
    /// A word with a value.
    /// @param p_tValue  the value
    RelaxedWord(T p_tValue) : m_tValue(p_tValue) {}  // NOLINT(google-explicit-constructor): stands for a plain T
    RelaxedWord(const RelaxedWord&) = delete;
    RelaxedWord& operator=(const RelaxedWord&) = delete;

    /// Reads the word.
    /// @return its value
    operator T() const { return m_tValue.load(std::memory_order_relaxed); }  // NOLINT(google-explicit-constructor)
    /// Writes the word.
    /// @param p_tValue  the value
    /// @return this word
    RelaxedWord& operator=(T p_tValue) {
        m_tValue.store(p_tValue, std::memory_order_relaxed);
        return *this;
    }

    /// Sets bits in one atomic step: bits of other threads are kept.
    /// @param p_tBits  the bits to set
    void setBits(T p_tBits) { m_tValue.fetch_or(p_tBits, std::memory_order_relaxed); }
    /// Clears bits in one atomic step: bits of other threads are kept.
    /// @param p_tBits  the bits to clear
    void clearBits(T p_tBits) { m_tValue.fetch_and(static_cast<T>(~p_tBits), std::memory_order_relaxed); }
    /// Whether one of several bits is set.
    /// @param p_tBits  the bits to look at
    /// @return true when at least one is
    bool anyBit(T p_tBits) const { return 0 != (static_cast<T>(*this) & p_tBits); }

private:
    std::atomic<T> m_tValue{};
    static_assert(sizeof(std::atomic<T>) == sizeof(T), "a shared word is as large as a plain one");
};

/// Reads a word of a plain record, for instance the value of a KeyVal in a parameter set, as RelaxedWord does.
/// @tparam T       an integer type
/// @param p_tWord  the word
/// @return its value
template <typename T>
T loadRelaxed(const T& p_tWord) {
    return __atomic_load_n(&p_tWord, __ATOMIC_RELAXED);
}

/// Writes a word of a plain record as RelaxedWord does.
/// @tparam T            an integer type
/// @param[out] p_tWord  the word
/// @param p_tValue      the value
template <typename T>
void storeRelaxed(T& p_tWord, T p_tValue) {
    __atomic_store_n(&p_tWord, p_tValue, __ATOMIC_RELAXED);
}
