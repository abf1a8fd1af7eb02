/// @file
/// A mutual exclusion lock that knows who holds it.
#pragma once

#include "platform/Types.h"

#include <memory>

/// A mutual exclusion lock that knows who holds it.
///
/// The lock is not recursive. A second lock by the thread that already holds it would hang that thread for ever; it is
/// detected, both places are written to standard error in one line, and the process is aborted. An unlock by a thread
/// that does not hold the lock is written to standard error and changes nothing.
///
/// Threads: any. lock blocks until the lock is free. A QVMutex must not be destroyed while somebody holds it. Not
/// copyable.
class PLATFORM_API QVMutex {
public:
    /// A free lock.
    QVMutex();
    /// Nobody may hold the lock any more.
    ~QVMutex();
    QVMutex(const QVMutex&) = delete;
    QVMutex& operator=(const QVMutex&) = delete;

    /// Takes the lock. Blocks until it is free.
    /// @param p_szFile  where the lock is taken; the text must live as long as the lock is held (a literal)
    /// @param p_nLine   the line there
    /// @return true
    bool lock(const char* p_szFile, int p_nLine);

    /// Releases the lock.
    /// @param p_szFile  where it is released
    /// @param p_nLine   the line there
    /// @return false when the calling thread does not hold it
    bool unlock(const char* p_szFile, int p_nLine);

private:
    struct State;
    std::unique_ptr<State> m_pState;
};
