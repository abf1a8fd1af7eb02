#include "simcam/picture/Tone.h"

#include "simcam/picture/FixedPoint.h"

#include <algorithm>

namespace simcam::picture {
namespace {

constexpr int kGammas[] = {1862, 2275, 2700, 1638, 1463};  // 1/4096: 1/2.2, 1/1.8, 1/1.5, 1/2.5, 1/2.8
constexpr int kRangeDoublings = 3;                         // that wide dynamic range adds at full strength

// Presses what is bright together, and masks what is brighter than white the more, the brighter it is.
int withoutHighlights(int p_nLight, int p_nPercent) {
    constexpr int kBegin = kOne * 6 / 10;
    constexpr int kMask = kOne * 3 / 10;
    constexpr int kMaskedAt = 3 * kLogOne;
    if (p_nLight <= kBegin || 0 == p_nPercent) {
        return p_nLight;
    }
    const int nPressed =
        kBegin + static_cast<int>(std::int64_t{std::min(p_nLight, kOne) - kBegin} * (125 - p_nPercent) / 125);
    if (p_nLight <= kOne) {
        return nPressed;
    }
    const int nOver = std::min(kMaskedAt, log2Of(static_cast<std::uint64_t>(p_nLight)) - kOneBits * kLogOne);
    const std::int64_t nMasked = std::int64_t{nPressed - kMask} * nOver / kMaskedAt * p_nPercent / 100;
    return nPressed - static_cast<int>(nMasked);
}

// A power of the light that makes so many doublings more fit, and leaves the middle as it is.
int withWideRange(int p_nLight, int p_nPercent) {
    if (0 == p_nPercent) {
        return std::min(p_nLight, kOne);
    }
    constexpr std::int64_t kMiddle = 104800;  // -log2 of the light of the middle, 0.33
    const int nDoublings = kRangeDoublings * kLogOne * p_nPercent / 100;
    const int nMost = static_cast<int>(exp2Of(nDoublings));
    const auto nPower = static_cast<int>(kOne * kMiddle / (kMiddle + nDoublings));
    const std::int64_t nShare = std::int64_t{std::min(p_nLight, nMost)} * 16 * kOne / nMost;  // 1/65536
    return powerOf(static_cast<int>(nShare), nPower) * kOne / powerOf(16 * kOne, nPower);
}

}  // namespace

int Tone::toned(int p_nLight, const Setting& p_stSetting) {
    const int nCalm = withoutHighlights(p_nLight, p_stSetting.highlight);
    const int nFitting = withWideRange(nCalm, p_stSetting.range);
    return std::min(kWhite, powerOf(nFitting, kGammas[p_stSetting.gamma]) * kWhite / kOne);
}

void Tone::prepare(const PictureParameters& p_st) {
    Setting stSetting = {};
    stSetting.highlight = 0 != p_st.highlight ? p_st.highlightStrength : 0;
    stSetting.range = 0 != p_st.wideDynamicRange ? p_st.wideDynamicRangeStrength : 0;
    stSetting.gamma = p_st.gamma;
    if (stSetting.highlight == m_stSetting.highlight && stSetting.range == m_stSetting.range &&
        stSetting.gamma == m_stSetting.gamma) {
        return;
    }
    m_stSetting = stSetting;
    m_vecTable.resize(kSize);
    for (int i = 0; i < kSize; ++i) {
        const int nLight = i < kFine ? i : kFine + ((i - kFine) << kCoarseShift);
        m_vecTable[static_cast<std::size_t>(i)] = static_cast<std::int16_t>(toned(nLight, stSetting));
    }
}

}  // namespace simcam::picture
