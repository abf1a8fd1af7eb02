// Arithmetic of the picture: integers only, so that every machine draws the same bytes.
#pragma once

#include <algorithm>
#include <cstdint>

namespace simcam::picture {

// Reflectances, gains and exposed light have 12 fractional bits: 4096 is 1, and the white of the picture.
constexpr int kOneBits = 12;
constexpr int kOne = 1 << kOneBits;

// Logarithms to the base 2 have 16 fractional bits.
constexpr int kLogOne = 1 << 16;

// 65536 * log2(value), rounded down; the value is at least 1.
int log2Of(std::uint64_t p_nValue);

// 4096 * 2^(exponent / 65536), rounded down, at most 2^50; 0 when it is below 1/4096.
std::int64_t exp2Of(int p_nExponent);

// 4096 * (value / 4096)^(power / 4096) for value and power from 0; 0 stays 0.
int powerOf(int p_nValue, int p_nPower);

// A number that looks like chance and is the same for the same input.
inline std::uint32_t scramble(std::uint32_t p_nValue) {
    p_nValue ^= p_nValue >> 16;
    p_nValue *= 0x7feb352dU;
    p_nValue ^= p_nValue >> 15;
    p_nValue *= 0x846ca68bU;
    p_nValue ^= p_nValue >> 16;
    return p_nValue;
}

inline int scaled(int p_nValue, int p_nGain) {
    return static_cast<int>(static_cast<std::int64_t>(p_nValue) * p_nGain >> kOneBits);
}

}  // namespace simcam::picture
