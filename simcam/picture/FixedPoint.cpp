#include "simcam/picture/FixedPoint.h"

namespace simcam::picture {
namespace {

constexpr int kFractionBits = 16;

// 2^(1/2), 2^(1/4), ... 2^(1/65536) with 30 fractional bits.
constexpr std::uint64_t kRoots[kFractionBits] = {1518500250, 1276901417, 1170923762, 1121280436, 1097253708, 1085434106,
                                                 1079572136, 1076653033, 1075196443, 1074468888, 1074105294, 1073923544,
                                                 1073832680, 1073787251, 1073764537, 1073753181};
constexpr int kRootBits = 30;

}  // namespace

int log2Of(std::uint64_t p_nValue) {
    int nWhole = 0;
    for (std::uint64_t nRest = p_nValue; nRest > 1; nRest >>= 1) {
        ++nWhole;
    }
    // The value between 1 and 2 with 31 fractional bits; each squaring gives one more bit of the logarithm.
    std::uint64_t nMantissa = nWhole <= 31 ? p_nValue << (31 - nWhole) : p_nValue >> (nWhole - 31);
    int nResult = nWhole;
    for (int i = 0; i < kFractionBits; ++i) {
        nMantissa = nMantissa * nMantissa >> 31;
        nResult <<= 1;
        if (0 != nMantissa >> 32) {
            nMantissa >>= 1;
            nResult |= 1;
        }
    }
    return nResult;
}

std::int64_t exp2Of(int p_nExponent) {
    constexpr int kLargest = 50;
    const int nWhole = (p_nExponent >> kFractionBits) + kOneBits;
    if (nWhole < 0) {
        return 0;
    }
    if (nWhole >= kLargest) {
        return std::int64_t{1} << kLargest;
    }
    std::uint64_t nValue = std::uint64_t{1} << kRootBits;
    for (int i = 0; i < kFractionBits; ++i) {
        if (0 != (p_nExponent >> (kFractionBits - 1 - i) & 1)) {
            nValue = nValue * kRoots[i] >> kRootBits;
        }
    }
    return static_cast<std::int64_t>(nWhole <= kRootBits ? nValue >> (kRootBits - nWhole)
                                                         : nValue << (nWhole - kRootBits));
}

int powerOf(int p_nValue, int p_nPower) {
    if (p_nValue <= 0) {
        return 0;
    }
    const std::int64_t nLog = log2Of(static_cast<std::uint64_t>(p_nValue)) - kOneBits * kLogOne;
    const std::int64_t nExponent = std::clamp<std::int64_t>(nLog * p_nPower / kOne, -40 * kLogOne, 18 * kLogOne);
    return static_cast<int>(exp2Of(static_cast<int>(nExponent)));
}

}  // namespace simcam::picture
