// Holds a QVMutex for the length of a scope.
#pragma once

#include "platform/QVMutex.h"

class QVMutexManager {
public:
    // Blocks until the mutex is free. The file name must outlive the lock (a literal).
    QVMutexManager(QVMutex* p_pMutex, const char* p_szFile, int p_nLine) : m_pMutex(p_pMutex) {
        m_pMutex->lock(p_szFile, p_nLine);
    }
    // The place that an unlock names is this class, under the name that people know it by; frozen.
    ~QVMutexManager() { m_pMutex->unlock("technic/QVMutex", 74); }

    QVMutexManager(const QVMutexManager&) = delete;
    QVMutexManager& operator=(const QVMutexManager&) = delete;

private:
    QVMutex* m_pMutex;
};
