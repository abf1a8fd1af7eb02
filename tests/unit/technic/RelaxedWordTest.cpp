#include "technic/RelaxedWord.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <thread>
#include <type_traits>
#include <vector>

namespace {

TEST(RelaxedWord, IsAsLargeAsAPlainWord) {
    static_assert(sizeof(RelaxedWord<std::uint32_t>) == 4 && alignof(RelaxedWord<std::uint32_t>) == 4);
    static_assert(sizeof(RelaxedWord<int>) == sizeof(int));
    static_assert(sizeof(RelaxedWord<bool>) == sizeof(bool));
    static_assert(!std::is_copy_constructible_v<RelaxedWord<int>>);
}

TEST(RelaxedWord, StandsForAPlainValue) {
    RelaxedWord<int> word{-7};
    EXPECT_EQ(-7, word);
    word = 12;
    EXPECT_EQ(13, word + 1);
    EXPECT_EQ(0, RelaxedWord<int>());
    EXPECT_FALSE(RelaxedWord<bool>());
}

TEST(RelaxedWord, ChangesOnlyTheNamedBits) {
    RelaxedWord<std::uint32_t> word{0x80000001u};
    word.setBits(0x30u);
    EXPECT_EQ(0x80000031u, word);
    word.setBits(0x10u);
    EXPECT_EQ(0x80000031u, word);
    word.clearBits(0x80000010u);
    EXPECT_EQ(0x21u, word);
    word.clearBits(0x4u);
    EXPECT_EQ(0x21u, word);
    EXPECT_TRUE(word.anyBit(0x60u));
    EXPECT_FALSE(word.anyBit(0x40u));
    EXPECT_FALSE(word.anyBit(0));
}

TEST(RelaxedWord, LosesNoBitBetweenThreads) {
    RelaxedWord<std::uint32_t> word{0};
    std::vector<std::thread> threads;
    for (std::uint32_t i = 0; i < 4; ++i) {
        threads.emplace_back([&word, i] {
            const std::uint32_t nOwn = 1u << i;
            for (int n = 0; n < 20000; ++n) {
                word.setBits(nOwn);
                ASSERT_TRUE(word.anyBit(nOwn));
                word.clearBits(nOwn);
                ASSERT_FALSE(word.anyBit(nOwn));
            }
            word.setBits(nOwn << 8);
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(0xF00u, word);
}

TEST(RelaxedWord, ReadsAndWritesAWordOfAPlainRecord) {
    struct Record {
        std::uint32_t key;
        std::uint32_t value;
    } stRecord{1, 0};
    std::thread writer([&] {
        for (int n = 0; n < 5000; ++n) {
            storeRelaxed(stRecord.value, 0 == n % 2 ? 0xFFFFFFFFu : 0u);
        }
    });
    for (int n = 0; n < 5000; ++n) {
        const std::uint32_t nValue = loadRelaxed(stRecord.value);
        ASSERT_TRUE(0 == nValue || 0xFFFFFFFFu == nValue) << nValue;
    }
    writer.join();
    storeRelaxed(stRecord.value, 7u);
    EXPECT_EQ(7u, stRecord.value);
    EXPECT_EQ(1u, stRecord.key);
}

}  // namespace
