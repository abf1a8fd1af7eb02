// A callable without arguments that can be copied and handed to a thread: function<R> wraps a plain function or a member
// function bound to its object. Copies share the wrapped callable through a SafePointer.
#pragma once

#include "technic/SafePointer.h"

#include <type_traits>

template <typename R>
class function_obj_base {
public:
    virtual ~function_obj_base() = default;
    virtual R operator()() = 0;
};

template <typename R, typename F>
class function_obj : public function_obj_base<R> {
public:
    explicit function_obj(F p_fnCallable) : m_fnCallable(p_fnCallable) {}
    R operator()() override { return m_fnCallable(); }

private:
    F m_fnCallable;
};

// A member function without arguments, and the object to call it on. The object must outlive the binding.
template <typename R, typename T>
class bind_funcobj0 {
public:
    bind_funcobj0(R (T::*p_pfnMember)(), T* p_pObject) : m_pfnMember(p_pfnMember), m_pObject(p_pObject) {}
    R operator()() { return (m_pObject->*m_pfnMember)(); }

private:
    R (T::*m_pfnMember)();
    T* m_pObject;
};

template <typename R>
class function {
public:
    template <typename F, typename = std::enable_if_t<!std::is_same_v<std::decay_t<F>, function>>>
    explicit function(F p_fnCallable) : m_objCallable(new function_obj<R, F>(p_fnCallable)) {}
    function(const function&) = default;
    function& operator=(const function&) = delete;
    virtual ~function() = default;

    R operator()() const { return (*m_objCallable)(); }

private:
    SafePointer<function_obj_base<R>> m_objCallable;
};
