/// @file
/// Reference counts kept outside the objects that they count.
///
/// Life of a count: RefCountManager::retrieveRefCount hands out the count of an object with one reference added (a new
/// count starts at one). inc_reference and dec_reference change it; both are called with the count locked. When
/// dec_reference returns 0, the caller deletes the object, gives the count back and only then unlocks it: a count that
/// was given back stays valid memory for ever (it is pooled, never freed), and is not handed out again before it is
/// unlocked. After that it may serve another object, which getPointer tells.
///
/// Threads: any.
#pragma once

#include "platform/Types.h"

#include <memory>

/// The reference count of one object. Only RefCountManager makes them.
class PLATFORM_API ref_count {
public:
    ref_count(const ref_count&) = delete;
    ref_count& operator=(const ref_count&) = delete;

    /// Locks the count. Blocks while another thread holds it.
    /// @return 0 on success; a non-zero code for a second lock by the holder
    int lock();
    /// Unlocks the count.
    /// @return 0 on success, a non-zero code when the calling thread does not hold it
    int unLock();

    /// The object that is counted.
    /// @return null when the count serves none
    const void* getPointer() const;

    /// Adds a reference. With the count locked.
    /// @return the number of references afterwards; 0 when the count had none left (it then stays at 0)
    int inc_reference();
    /// Takes a reference away. With the count locked.
    /// @return the number of references afterwards, never below 0
    int dec_reference();

private:
    friend class RefCountManager;
    ref_count();
    ~ref_count();
    struct State;
    std::unique_ptr<State> m_pState;
};

/// Hands out the reference counts of the process and takes them back.
class PLATFORM_API RefCountManager {
public:
    RefCountManager(const RefCountManager&) = delete;
    RefCountManager& operator=(const RefCountManager&) = delete;

    /// The one manager of the process.
    /// @return usable until the process ends
    static RefCountManager* getInstance();

    /// The count of this object, with one reference added. Blocks while the count that it is about to hand out is
    /// locked.
    /// @param p_pObject     the object
    /// @param p_szTypeName  keeps apart objects of different types at one address
    /// @return the count; null for a null pointer
    ref_count* retrieveRefCount(const void* p_pObject, const char* p_szTypeName);

    /// Takes back a count whose references are gone; see RefCount.h. Null, a count that still has references and one
    /// that does not serve an object of this type are ignored.
    /// @param p_pCount      the count, locked by the caller
    /// @param p_szTypeName  as it was retrieved
    void returnbackRefCount(ref_count* p_pCount, const char* p_szTypeName);

private:
    RefCountManager();
    ~RefCountManager();
    struct State;
    std::unique_ptr<State> m_pState;
};
