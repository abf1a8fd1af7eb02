#include "apps/camerad/access/PasswordGate.h"

#include "tests/unit/camerad/access/AccessTest.h"

#include <atomic>
#include <future>
#include <thread>
#include <vector>

namespace camerad {
namespace {

constexpr std::chrono::milliseconds kLong{60000};
constexpr std::chrono::milliseconds kShort{1};

std::string enter(PasswordGate& p_objGate) {
    return refusedAs([&] { const PasswordGate::Turn turn(p_objGate); });
}

TEST(PasswordGates, LetSoManyInAndTheNextOneWaitOnlySoLong) {
    PasswordGate gate(2, 16, kShort);
    {
        const PasswordGate::Turn one(gate);
        EXPECT_EQ(enter(gate), "");
        const PasswordGate::Turn two(gate);
        const Refusal refusal = refusalOf([&] { const PasswordGate::Turn three(gate); });
        EXPECT_EQ(refusal.type(), "too-many-logins");
        EXPECT_EQ(refusal.kind(), Refusal::Kind::TooMany);
        EXPECT_GE(refusal.retryAfter().value_or(0), 1);
    }
    EXPECT_EQ(enter(gate), "");
}

TEST(PasswordGates, SendAwayWhoWouldWaitBehindTooMany) {
    PasswordGate gate(1, 0, kLong);
    const PasswordGate::Turn one(gate);
    EXPECT_EQ(enter(gate), "too-many-logins");
}

TEST(PasswordGates, WakeWhoWaits) {
    PasswordGate gate(1, 1, kLong);
    std::future<std::string> waiting;
    {
        const PasswordGate::Turn one(gate);
        waiting = std::async(std::launch::async, [&] { return enter(gate); });
    }
    ASSERT_EQ(waiting.wait_for(kLong), std::future_status::ready);
    EXPECT_EQ(waiting.get(), "");
}

TEST(PasswordGates, NeverLetMoreInThanTheyMay) {
    PasswordGate gate(2, 64, kLong);
    std::atomic<int> inside{0};
    std::atomic<int> most{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&] {
            for (int k = 0; k < 50; ++k) {
                const PasswordGate::Turn turn(gate);
                const int now = ++inside;
                for (int seen = most; now > seen && !most.compare_exchange_weak(seen, now);) {
                }
                std::this_thread::yield();
                --inside;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_LE(most, 2);
    EXPECT_GE(most, 1);
}

}  // namespace
}  // namespace camerad
