#include "simcam/picture/Geometry.h"

#include "simcam/Commands.h"
#include "simcam/picture/FixedPoint.h"

#include <algorithm>
#include <cstdlib>

namespace simcam::picture {
namespace {

constexpr int kPart = 256;  // of a pixel
constexpr int kMostTrembling = 20;
constexpr int kMostShift = 80;

// The colour between four pixels; the place in 1/256 pixels.
void sample(const Picture& p_st, int p_nX, int p_nY, unsigned char* p_pPixel) {
    const int nX = std::clamp(p_nX, 0, (p_st.width - 1) * kPart);
    const int nY = std::clamp(p_nY, 0, (p_st.height - 1) * kPart);
    const int nLeft = nX / kPart;
    const int nTop = nY / kPart;
    const int nRight = std::min(nLeft + 1, p_st.width - 1);
    const int nBottom = std::min(nTop + 1, p_st.height - 1);
    const auto at = [&](int p_nColumn, int p_nRow) {
        return &p_st.rgb[3 * (static_cast<std::size_t>(p_nRow) * static_cast<std::size_t>(p_st.width) +
                              static_cast<std::size_t>(p_nColumn))];
    };
    const unsigned char* const arrCorners[] = {at(nLeft, nTop), at(nRight, nTop), at(nLeft, nBottom),
                                               at(nRight, nBottom)};
    const int nAcross = nX % kPart;
    const int nDown = nY % kPart;
    for (int i = 0; i < 3; ++i) {
        const int nUpper = arrCorners[0][i] * (kPart - nAcross) + arrCorners[1][i] * nAcross;
        const int nLower = arrCorners[2][i] * (kPart - nAcross) + arrCorners[3][i] * nAcross;
        p_pPixel[i] = static_cast<unsigned char>((nUpper * (kPart - nDown) + nLower * nDown + kPart * kPart / 2) /
                                                 (kPart * kPart));
    }
}

// Where a pixel of the arranged picture comes from, in 1/256 pixels from the middle of the other one.
class Way {
public:
    Way(const PictureParameters& p_st, int p_nWidth, int p_nHeight)
        : m_bTurned(0 != p_st.beaway),
          m_nZoom(1 << p_st.digitalZoom),
          m_nFlipX(0 != (p_st.mirror & 1) ? -1 : 1),
          m_nFlipY(0 != (p_st.mirror & 2) ? -1 : 1),
          m_nWidth(p_nWidth),
          m_nHeight(p_nHeight) {}

    bool isPlain() const { return !m_bTurned && 1 == m_nZoom; }
    int flipX() const { return m_nFlipX; }
    int flipY() const { return m_nFlipY; }

    // False for what lies beside the turned picture. Places are middles of pixels.
    bool from(int p_nX, int p_nY, int& p_nFromX, int& p_nFromY) const {
        int nX = (2 * p_nX + 1 - m_nWidth) * kPart / 2;
        int nY = (2 * p_nY + 1 - m_nHeight) * kPart / 2;
        if (m_bTurned) {
            const int nAcross = nX;
            nX = static_cast<int>(std::int64_t{nY} * m_nWidth / m_nHeight);
            nY = static_cast<int>(-std::int64_t{nAcross} * m_nWidth / m_nHeight);
            if (std::abs(nY) > m_nHeight * kPart / 2) {
                return false;
            }
        }
        p_nFromX = m_nFlipX * nX / m_nZoom + (m_nWidth - 1) * kPart / 2;
        p_nFromY = m_nFlipY * nY / m_nZoom + (m_nHeight - 1) * kPart / 2;
        return true;
    }

private:
    bool m_bTurned;
    int m_nZoom;
    int m_nFlipX;
    int m_nFlipY;
    int m_nWidth;
    int m_nHeight;
};

// -256 to 256, smooth, a new direction after each period.
int tremble(INT64 p_nMilliseconds, int p_nPeriod, u32 p_nSeed) {
    const INT64 nPhase = (p_nMilliseconds % p_nPeriod + p_nPeriod) % p_nPeriod;
    const INT64 nPeriod = (p_nMilliseconds - nPhase) / p_nPeriod;
    const auto swing = [&](INT64 p_n) {
        return static_cast<int>(scramble(static_cast<std::uint32_t>(p_n) ^ scramble(p_nSeed)) >> 23) - 256;
    };
    return static_cast<int>((swing(nPeriod) * (p_nPeriod - nPhase) + swing(nPeriod + 1) * nPhase) / p_nPeriod);
}

int shiftOf(int p_nShift, int p_nLeast, int p_nMost, int p_nStep) {
    return std::clamp(std::clamp(p_nShift, p_nLeast, p_nMost) + p_nStep, -kMostShift, kMostShift);
}

}  // namespace

void arrange(const Picture& p_stFrom, const PictureParameters& p_stParameters, Picture& p_stTo) {
    p_stTo.width = p_stFrom.width;
    p_stTo.height = p_stFrom.height;
    p_stTo.rgb.assign(p_stFrom.rgb.size(), 0);
    const Way objWay(p_stParameters, p_stFrom.width, p_stFrom.height);
    unsigned char* pPixel = p_stTo.rgb.data();
    for (int y = 0; y < p_stTo.height; ++y) {
        for (int x = 0; x < p_stTo.width; ++x, pPixel += 3) {
            if (objWay.isPlain()) {
                const int nX = objWay.flipX() > 0 ? x : p_stTo.width - 1 - x;
                const int nY = objWay.flipY() > 0 ? y : p_stTo.height - 1 - y;
                const auto nFrom = 3 * (static_cast<std::size_t>(nY) * static_cast<std::size_t>(p_stTo.width) +
                                        static_cast<std::size_t>(nX));
                std::copy_n(&p_stFrom.rgb[nFrom], 3, pPixel);
                continue;
            }
            int nX = 0;
            int nY = 0;
            if (objWay.from(x, y, nX, nY)) {
                sample(p_stFrom, nX, nY, pPixel);
            }
        }
    }
}

Offset offsetOf(const PictureParameters& p_st, int p_nWidth) {
    constexpr int kLeft = 3;
    constexpr int kRight = 4;
    constexpr int kUp = 1;
    constexpr int kDown = 2;
    const int nStepX =
        (kRight == p_st.shiftDirection ? p_st.shiftStep : 0) - (kLeft == p_st.shiftDirection ? p_st.shiftStep : 0);
    const int nStepY =
        (kDown == p_st.shiftDirection ? p_st.shiftStep : 0) - (kUp == p_st.shiftDirection ? p_st.shiftStep : 0);
    // What is shifted to the right shows more of the left.
    const int nShiftX = -shiftOf(p_st.shift, p_st.shiftLeast, p_st.shiftMost, nStepX);
    const int nShiftY = -shiftOf(p_st.verticalShift, p_st.verticalShiftLeast, p_st.verticalShiftMost, nStepY);

    // 4 pixels at full wind at wide angle, and more with the magnification, in 1/256.
    const auto nMagnification = static_cast<std::int64_t>(1000 * magnification(p_st.zoomPosition));
    const std::int64_t nRest = 0 != p_st.antiShake ? 100 - p_st.antiShakeStrength : 100;
    const std::int64_t nSwing =
        std::min<std::int64_t>(nMagnification * p_st.windPercent * 4 * kPart / (100 * 1000), kMostTrembling * kPart) *
        nRest / 100;
    const auto swing = [&](u32 p_nSeed) {
        const int nFast = tremble(p_st.milliseconds, 90, p_st.seed + p_nSeed);
        const int nSlow = tremble(p_st.milliseconds, 410, p_st.seed + p_nSeed + 1);
        return static_cast<int>((nFast + 2 * nSlow) * nSwing * p_nWidth / (3 * 640 * kPart));
    };
    Offset stOffset;
    stOffset.x = (nShiftX * p_nWidth * kPart / 640 + swing(11)) / kPart;
    stOffset.y = (nShiftY * p_nWidth * kPart / 640 + swing(23)) / kPart;
    return stOffset;
}

int mostOffset(int p_nWidth) {
    return (kMostShift + kMostTrembling) * p_nWidth / 640 + 1;
}

}  // namespace simcam::picture
