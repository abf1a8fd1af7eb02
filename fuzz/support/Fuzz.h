// What every fuzz target is made of: the input as a stream, a check that ends the process, a device root of its own.
//
// One thread. Nothing here outlives the process but what the root's destructor removes at its end.
#pragma once

#include "platform/Types.h"
#include "tests/support/TestRoot.h"

#include <cstddef>
#include <cstdint>
#include <string>

// Ends the process, with the place, when an invariant does not hold.
#define FUZZ_CHECK(holds) fuzz::check(holds, #holds, __FILE__, __LINE__)

namespace fuzz {

void check(bool p_bHolds, const char* p_szCondition, const char* p_szFile, int p_nLine);

// The device root of the process, made at the first call. The library is told to speak at its highest level, so that every
// message is formatted; standard output goes nowhere.
TestRoot& root();

// The bytes of one input, taken from the front. Whatever is asked for at the end is zero or empty.
class Input {
public:
    Input(const std::uint8_t* p_pData, std::size_t p_nSize) : m_pData(p_pData), m_nLeft(p_nSize) {}

    std::uint8_t byte();
    u32 word();                               // four bytes, the lowest first, on every machine
    std::string text();                       // up to a zero byte, which is taken too
    std::string bytes(std::size_t p_nCount);  // so many, or what is left
    std::string rest();                       // everything that is left, zero bytes included
    bool atEnd() const { return 0 == m_nLeft; }

private:
    const std::uint8_t* m_pData;
    std::size_t m_nLeft;
};

// A block of exactly the text and its terminator, from malloc, so that a sanitizer sees the first byte read past it. The
// caller frees it.
char* exactCopy(const std::string& p_strText);

}  // namespace fuzz
