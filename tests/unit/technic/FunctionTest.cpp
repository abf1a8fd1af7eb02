#include "technic/Function.h"

#include "platform/GThread.h"

#include <gtest/gtest.h>

#include <condition_variable>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <type_traits>

namespace {

int g_nCalls = 0;

int countCall() {
    return ++g_nCalls;
}

struct Motor {
    explicit Motor(int p_nPosition = 0) : nPosition(p_nPosition) {}
    virtual ~Motor() = default;
    int step() { return ++nPosition; }
    virtual int speed() { return 1; }
    int fail() { throw std::runtime_error("motor lost"); }
    int nPosition;
};

struct FastMotor : Motor {
    int speed() override { return 100; }
};

// A callable that counts its copies that live.
struct Counted {
    static inline int nAlive = 0;
    Counted() { ++nAlive; }
    Counted(const Counted&) { ++nAlive; }
    Counted& operator=(const Counted&) = default;
    ~Counted() { --nAlive; }
    int operator()() { return ++nCalls; }
    int nCalls = 0;
};

bind_funcobj0<int, Motor> bound(int (Motor::*p_pfnMember)(), Motor& p_objMotor) {
    return {p_pfnMember, &p_objMotor};
}

TEST(Function, HasVirtualDestructorsAndHoldsOneSafePointer) {
    static_assert(std::has_virtual_destructor_v<function<int>>);
    static_assert(std::has_virtual_destructor_v<function_obj_base<int>>);
    static_assert(std::is_abstract_v<function_obj_base<int>>);
    static_assert(std::is_base_of_v<function_obj_base<int>, function_obj<int, int (*)()>>);
    static_assert(std::is_base_of_v<function_obj_base<int>, function_obj<int, bind_funcobj0<int, Motor>>>);
    static_assert(sizeof(function<int>) == sizeof(void*) + sizeof(SafePointer<function_obj_base<int>>));
    static_assert(sizeof(function_obj<int, int (*)()>) == 2 * sizeof(void*));
}

// The slots behind the two of the destructor: the border's layout.
TEST(Function, HasItsCallOperatorInTheThirdSlot) {
    g_nCalls = 10;
    function_obj<int, int (*)()> object(countCall);
    function_obj_base<int>* const pBase = &object;
    using Call = int (*)(function_obj_base<int>*);
    const Call* const pSlots = *reinterpret_cast<Call* const*>(pBase);
    EXPECT_EQ(11, pSlots[2](pBase));
}

TEST(Function, CallsAPlainFunction) {
    g_nCalls = 0;
    const function<int> call(countCall);
    EXPECT_EQ(1, call());
    EXPECT_EQ(2, call());
    EXPECT_EQ(2, g_nCalls);
}

TEST(Function, CallsAMemberOnItsObject) {
    Motor motor(40);
    const function<int> call(bound(&Motor::step, motor));
    EXPECT_EQ(41, call());
    motor.nPosition = 7;
    EXPECT_EQ(8, call());
    EXPECT_EQ(8, motor.nPosition);
}

TEST(Function, CallsTheObjectsOwnVersionOfAVirtualMember) {
    Motor slow;
    FastMotor fast;
    EXPECT_EQ(1, function<int>(bound(&Motor::speed, slow))());
    EXPECT_EQ(100, function<int>(bound(&Motor::speed, fast))());
}

TEST(Function, CallsTheBindingAndTheFunctionObjectDirectly) {
    Motor motor(3);
    auto binding = bound(&Motor::step, motor);
    EXPECT_EQ(4, binding());
    function_obj<int, bind_funcobj0<int, Motor>> object(binding);
    EXPECT_EQ(5, object());
    EXPECT_EQ(5, motor.nPosition);
}

TEST(Function, SharesItsCallableWithItsCopies) {
    auto pFirst = std::make_unique<function<int>>(Counted());
    EXPECT_EQ(1, Counted::nAlive);
    auto pSecond = std::make_unique<function<int>>(*pFirst);
    EXPECT_EQ(1, Counted::nAlive);
    EXPECT_EQ(1, (*pFirst)());
    EXPECT_EQ(2, (*pSecond)());
    pFirst.reset();
    EXPECT_EQ(3, (*pSecond)());
    EXPECT_EQ(1, Counted::nAlive);
    pSecond.reset();
    EXPECT_EQ(0, Counted::nAlive);
}

TEST(Function, CopiesFromAChangeableSourceToo) {
    function<int> first{Counted()};
    function<int> second(first);
    EXPECT_EQ(1, first());
    EXPECT_EQ(2, second());
}

TEST(Function, LetsAnExceptionOfItsCallableThrough) {
    Motor motor;
    const function<int> call(bound(&Motor::fail, motor));
    EXPECT_THROW(call(), std::runtime_error);
}

// A body that a test can wait for.
struct Body {
    int run() {
        const std::lock_guard<std::mutex> guard(mutex);
        ++nRuns;
        changed.notify_all();
        return 0;
    }
    void waitFor(int p_nRuns) {
        std::unique_lock<std::mutex> guard(mutex);
        changed.wait(guard, [&] { return nRuns >= p_nRuns; });
    }
    std::mutex mutex;
    std::condition_variable changed;
    int nRuns = 0;
};

TEST(Function, IsTheBodyOfAThread) {
    Body body;
    std::unique_ptr<GThread> pThread;
    {
        const function<int> call(bind_funcobj0<int, Body>(&Body::run, &body));
        pThread = std::make_unique<GThread>(call, "lens", GThread::emptyFunction, GThread::emptyFunction);
    }
    ASSERT_TRUE(pThread->start());
    body.waitFor(3);
    EXPECT_TRUE(pThread->stop());
}

}  // namespace
