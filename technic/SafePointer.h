// A reference-counted pointer that checks, on each use of its count, that the count still belongs to its object.
//
// The counts live in the platform's RefCountManager. Copies may be made and destroyed by any thread; one SafePointer
// object belongs to one thread at a time. Failures are QVRuntimeError; one that meets a destructor ends the process.
#pragma once

#include "platform/RefCount.h"
#include "technic/QVRuntimeError.h"

#include <unistd.h>

#include <string>
#include <typeinfo>

class BaseSafePointer {
public:
    virtual ~BaseSafePointer() = default;
};

template <typename T>
class SafePointer : public BaseSafePointer {
public:
    // Takes the object over.
    explicit SafePointer(T* p_pObject) : m_pObject(p_pObject) {
        if (nullptr == m_pObject) {
            ThrowNullPointerException("Construct from NULL original pointer");
        }
        m_pCount = RefCountManager::getInstance()->retrieveRefCount(m_pObject, typeid(T).name());
    }

    SafePointer(const SafePointer& p_objOther)
        : BaseSafePointer(p_objOther), m_pObject(p_objOther.m_pObject), m_pCount(p_objOther.m_pCount) {
        if (nullptr == m_pObject) {
            ThrowNullPointerException("Construct from NULL <T>pointer");
        }
        inc_reference();
    }

    SafePointer& operator=(const SafePointer&) = delete;

    // Meant: a report in here ends the process.
    ~SafePointer() override { dec_reference(); }  // NOLINT(bugprone-exception-escape)

    T& operator*() const { return *m_pObject; }
    T* operator->() const { return m_pObject; }

private:
    friend class SafePointerProbe;  // the one way for tests to look inside

    // Gives the count free at the end of a scope, also when an exception ends it.
    class Unlocker {
    public:
        explicit Unlocker(ref_count* p_pCount) : m_pLocked(p_pCount) {}
        ~Unlocker() { m_pLocked->unLock(); }
        Unlocker(const Unlocker&) = delete;
        Unlocker& operator=(const Unlocker&) = delete;

    private:
        ref_count* m_pLocked;
    };

    void inc_reference() {
        if (nullptr == m_pCount) {
            ThrowNullPointerException("Already destructed 1");
        }
        if (0 != m_pCount->lock()) {
            ThrowNullPointerException("Already destructed 2");
        }
        const Unlocker unlocker(m_pCount);
        if (m_pCount->getPointer() != m_pObject) {
            throw QVRuntimeError("not valid pointer in inc_reference ");
        }
        if (0 == m_pCount->inc_reference()) {
            ThrowNullPointerException("Already destructed 3");
        }
    }

    void dec_reference() {
        if (nullptr == m_pObject || nullptr == m_pCount) {
            return;
        }
        m_pCount->lock();
        const Unlocker unlocker(m_pCount);
        if (m_pCount->getPointer() != m_pObject) {
            throw QVRuntimeError("not valid pointer in dec_reference");
        }
        if (0 == m_pCount->dec_reference()) {
            delete m_pObject;
            m_pObject = nullptr;
            RefCountManager::getInstance()->returnbackRefCount(m_pCount, typeid(T).name());
        }
    }

    [[noreturn]] static void ThrowNullPointerException(const char* p_szMessage) {
        const std::string strText = std::string("SafePointer Report:") + typeid(T).name() + " " + p_szMessage;
        const std::string strLine = strText + "\n";
        // One write, so that the line stays whole; a report that nobody can read is no further failure.
        if (::write(STDOUT_FILENO, strLine.data(), strLine.size()) < 0) {
        }
        throw QVRuntimeError(strText);
    }

    T* m_pObject;
    ref_count* m_pCount = nullptr;
};
