#include "simcam/picture/Canvas.h"

#include "simcam/picture/FixedPoint.h"

#include <algorithm>
#include <cstdint>

namespace simcam::picture {
namespace {

constexpr int kPlaneWidth = 640 * kPlaneUnit;
constexpr int kPlaneHeight = 360 * kPlaneUnit;
constexpr int kPixel = 256;
constexpr int kSamples = 4;  // along each side of a pixel
constexpr int kFull = 256;   // coverage

struct Glyph {
    char letter;
    std::uint8_t rows[7];  // 5 bits each, the left dot highest
};
constexpr Glyph kGlyphs[] = {
    {'A', {0x0E, 0x11, 0x11, 0x1F, 0x11, 0x11, 0x11}}, {'C', {0x0E, 0x11, 0x10, 0x10, 0x10, 0x11, 0x0E}},
    {'M', {0x11, 0x1B, 0x15, 0x15, 0x11, 0x11, 0x11}}, {'0', {0x0E, 0x11, 0x13, 0x15, 0x19, 0x11, 0x0E}},
    {'1', {0x04, 0x0C, 0x04, 0x04, 0x04, 0x04, 0x0E}}, {'2', {0x0E, 0x11, 0x01, 0x06, 0x08, 0x10, 0x1F}},
    {'3', {0x1E, 0x01, 0x01, 0x0E, 0x01, 0x01, 0x1E}}, {'4', {0x02, 0x06, 0x0A, 0x12, 0x1F, 0x02, 0x02}},
    {'5', {0x1F, 0x10, 0x1E, 0x01, 0x01, 0x11, 0x0E}}, {'6', {0x06, 0x08, 0x10, 0x1E, 0x11, 0x11, 0x0E}},
    {'7', {0x1F, 0x01, 0x02, 0x04, 0x08, 0x08, 0x08}}, {'8', {0x0E, 0x11, 0x11, 0x0E, 0x11, 0x11, 0x0E}},
    {'9', {0x0E, 0x11, 0x11, 0x0F, 0x01, 0x02, 0x0C}},
};
constexpr int kGlyphWide = 5;
constexpr int kGlyphHigh = 7;

// A rounded shift would prefer one direction; this brings both ends exactly to old and to new.
template <typename Number>
Number mixed(Number p_nOld, int p_nNew, int p_nCoverage) {
    const int nOld = p_nOld;
    return static_cast<Number>(nOld + (p_nNew - nOld) * p_nCoverage / kFull);
}

Surface surfaceOf(const Material& p_stMaterial, std::uint8_t p_nDistance) {
    constexpr int kShade = 16;  // 255 is white, but for 16/4096
    Surface stSurface;
    stSurface.red = static_cast<std::uint16_t>(p_stMaterial.red * kShade);
    stSurface.green = static_cast<std::uint16_t>(p_stMaterial.green * kShade);
    stSurface.blue = static_cast<std::uint16_t>(p_stMaterial.blue * kShade);
    stSurface.infrared = static_cast<std::uint16_t>(p_stMaterial.infrared * kShade);
    stSurface.emission = static_cast<std::uint16_t>(p_stMaterial.emission);
    stSurface.tint = p_stMaterial.tint;
    stSurface.distance = p_nDistance;
    stSurface.heat = static_cast<std::uint8_t>(std::clamp(kHeatOfAir + 2 * p_stMaterial.degrees, 0, 255));
    return stSurface;
}

void lay(Surface& p_stOnto, const Surface& p_stNew, int p_nCoverage) {
    const std::uint8_t nLamp = p_stOnto.lamp;
    if (p_nCoverage >= kFull) {
        p_stOnto = p_stNew;
        p_stOnto.lamp = nLamp;
        return;
    }
    p_stOnto.red = mixed(p_stOnto.red, p_stNew.red, p_nCoverage);
    p_stOnto.green = mixed(p_stOnto.green, p_stNew.green, p_nCoverage);
    p_stOnto.blue = mixed(p_stOnto.blue, p_stNew.blue, p_nCoverage);
    p_stOnto.infrared = mixed(p_stOnto.infrared, p_stNew.infrared, p_nCoverage);
    p_stOnto.emission = mixed(p_stOnto.emission, p_stNew.emission, p_nCoverage);
    p_stOnto.heat = mixed(p_stOnto.heat, p_stNew.heat, p_nCoverage);
    if (2 * p_nCoverage >= kFull) {
        p_stOnto.distance = p_stNew.distance;
        p_stOnto.tint = p_stNew.tint;
    }
}

// The part of a pixel that an interval covers; all in 1/256 pixels.
int covered(int p_nPixel, int p_nFrom, int p_nTo) {
    const int nLow = std::max(p_nFrom, p_nPixel * kPixel);
    const int nHigh = std::min(p_nTo, (p_nPixel + 1) * kPixel);
    return std::max(0, nHigh - nLow);
}

int floorPixel(int p_nValue) {
    return p_nValue >> 8;
}

}  // namespace

std::uint8_t distanceIndex(int p_nMillimetres) {
    constexpr int kNearest = 250;  // millimetres
    const int nValue = std::max(p_nMillimetres, kNearest);
    const int nLog = log2Of(static_cast<std::uint64_t>(nValue)) - log2Of(kNearest);
    return static_cast<std::uint8_t>(std::min<int>(nLog / (kLogOne / kStepsPerDoubling), kSkyDistance - 1));
}

int View::forward(int p_nOffset) const {
    const std::int64_t nScale = std::int64_t{magnification} * width * kPixel;
    const std::int64_t nPosition = p_nOffset * nScale / (std::int64_t{1000} * kPlaneWidth);
    // Far outside at great magnification; nothing needs to know how far.
    return static_cast<int>(std::clamp<std::int64_t>(nPosition, -(1 << 28), 1 << 28));
}

int View::back(int p_nOffset) const {
    const std::int64_t nScale = std::int64_t{magnification} * width * kPixel;
    return static_cast<int>(p_nOffset * (std::int64_t{1000} * kPlaneWidth) / nScale);
}

int View::x(int p_nPlane) const {
    return forward(p_nPlane - kPlaneWidth / 2) + (width / 2 - left) * kPixel;
}

int View::y(int p_nPlane) const {
    return forward(p_nPlane - kPlaneHeight / 2) + (height / 2 - top) * kPixel;
}

int View::planeX(int p_nPixel) const {
    return back((p_nPixel + left - width / 2) * kPixel + kPixel / 2) + kPlaneWidth / 2;
}

int View::planeY(int p_nPixel) const {
    return back((p_nPixel + top - height / 2) * kPixel + kPixel / 2) + kPlaneHeight / 2;
}

void Canvas::resize(int p_nWidth, int p_nHeight) {
    m_nWidth = p_nWidth;
    m_nHeight = p_nHeight;
    m_vecSurfaces.assign(index(0, p_nHeight), Surface());
}

Canvas::Box Canvas::box(int p_nLeft, int p_nTop, int p_nRight, int p_nBottom) const {
    return {std::clamp(floorPixel(m_stView.x(p_nLeft)), 0, m_nWidth),
            std::clamp(floorPixel(m_stView.y(p_nTop)), 0, m_nHeight),
            std::clamp(floorPixel(m_stView.x(p_nRight)) + 1, 0, m_nWidth),
            std::clamp(floorPixel(m_stView.y(p_nBottom)) + 1, 0, m_nHeight)};
}

void Canvas::rectangle(int p_nLeft, int p_nTop, int p_nRight, int p_nBottom, const Material& p_stMaterial,
                       std::uint8_t p_nDistance) {
    const Surface stNew = surfaceOf(p_stMaterial, p_nDistance);
    const Box stBox = box(p_nLeft, p_nTop, p_nRight, p_nBottom);
    const int nLeft = m_stView.x(p_nLeft);
    const int nRight = m_stView.x(p_nRight);
    for (int y = stBox.top; y < stBox.bottom; ++y) {
        const int nHigh = covered(y, m_stView.y(p_nTop), m_stView.y(p_nBottom));
        Surface* const pRow = row(y);
        for (int x = stBox.left; x < stBox.right; ++x) {
            lay(pRow[x], stNew, nHigh * covered(x, nLeft, nRight) / kPixel);
        }
    }
}

template <typename Inside>
void Canvas::sampled(const Box& p_stBox, const Material& p_stMaterial, std::uint8_t p_nDistance, Inside&& p_fnInside) {
    constexpr int kStep = kPixel / kSamples;
    const Surface stNew = surfaceOf(p_stMaterial, p_nDistance);
    for (int y = p_stBox.top; y < p_stBox.bottom; ++y) {
        Surface* const pRow = row(y);
        for (int x = p_stBox.left; x < p_stBox.right; ++x) {
            int nInside = 0;
            for (int i = 0; i < kSamples * kSamples; ++i) {
                const int nX = x * kPixel + (i % kSamples) * kStep + kStep / 2;
                const int nY = y * kPixel + (i / kSamples) * kStep + kStep / 2;
                nInside += p_fnInside(nX, nY) ? 1 : 0;
            }
            if (0 != nInside) {
                lay(pRow[x], stNew, nInside * kFull / (kSamples * kSamples));
            }
        }
    }
}

void Canvas::ellipse(Point p_stCentre, int p_nRadiusX, int p_nRadiusY, const Material& p_stMaterial,
                     std::uint8_t p_nDistance) {
    const int nX = m_stView.x(p_stCentre.x);
    const int nY = m_stView.y(p_stCentre.y);
    const std::int64_t nWide = std::max(1, m_stView.x(p_stCentre.x + p_nRadiusX) - nX);
    const std::int64_t nHigh = std::max(1, m_stView.y(p_stCentre.y + p_nRadiusY) - nY);
    const Box stBox =
        box(p_stCentre.x - p_nRadiusX, p_stCentre.y - p_nRadiusY, p_stCentre.x + p_nRadiusX, p_stCentre.y + p_nRadiusY);
    int nShift = 0;  // so that fourth powers fit into 64 bits
    while ((std::max(nWide, nHigh) >> nShift) >= 1 << 14) {
        ++nShift;
    }
    const std::int64_t nA = std::max<std::int64_t>(1, nWide >> nShift);
    const std::int64_t nB = std::max<std::int64_t>(1, nHigh >> nShift);
    sampled(stBox, p_stMaterial, p_nDistance, [=](int p_nX, int p_nY) {
        const std::int64_t nAcross = ((p_nX - nX) >> nShift) * nB;
        const std::int64_t nDown = ((p_nY - nY) >> nShift) * nA;
        return nAcross * nAcross + nDown * nDown <= nA * nA * nB * nB;
    });
}

void Canvas::polygon(const std::vector<Point>& p_vecCorners, const Material& p_stMaterial, std::uint8_t p_nDistance) {
    std::vector<Point> vecCorners;
    Point stLow = p_vecCorners.front();
    Point stHigh = stLow;
    for (const Point& stCorner : p_vecCorners) {
        vecCorners.push_back({m_stView.x(stCorner.x), m_stView.y(stCorner.y)});
        stLow = {std::min(stLow.x, stCorner.x), std::min(stLow.y, stCorner.y)};
        stHigh = {std::max(stHigh.x, stCorner.x), std::max(stHigh.y, stCorner.y)};
    }
    sampled(box(stLow.x, stLow.y, stHigh.x, stHigh.y), p_stMaterial, p_nDistance, [&](int p_nX, int p_nY) {
        for (std::size_t i = 0; i < vecCorners.size(); ++i) {
            const Point& stFrom = vecCorners[i];
            const Point& stTo = vecCorners[(i + 1) % vecCorners.size()];
            const std::int64_t nSide = std::int64_t{stTo.x - stFrom.x} * (p_nY - stFrom.y) -
                                       std::int64_t{stTo.y - stFrom.y} * (p_nX - stFrom.x);
            if (nSide < 0) {
                return false;
            }
        }
        return true;
    });
}

void Canvas::star(Point p_stCentre, int p_nRadius, std::uint8_t p_nDistance) {
    // tan of 5, 10, ... 40 degrees in 1/4096: the sides of the spokes in one eighth of the circle.
    constexpr std::int64_t kTangents[] = {358, 722, 1098, 1491, 1910, 2365, 2868, 3437};
    const Material stWhite = {230, 230, 230, 220};
    const Material stBlack = {10, 10, 10, 12};
    ellipse(p_stCentre, p_nRadius, p_nRadius, stWhite, p_nDistance);
    const int nX = m_stView.x(p_stCentre.x);
    const int nY = m_stView.y(p_stCentre.y);
    const std::int64_t nRadius = m_stView.x(p_stCentre.x + p_nRadius) - nX;
    sampled(box(p_stCentre.x - p_nRadius, p_stCentre.y - p_nRadius, p_stCentre.x + p_nRadius, p_stCentre.y + p_nRadius),
            stBlack, p_nDistance, [&](int p_nX, int p_nY) {
                const std::int64_t nAcross = p_nX > nX ? p_nX - nX : nX - p_nX;
                const std::int64_t nDown = p_nY > nY ? p_nY - nY : nY - p_nY;
                if (nAcross * nAcross + nDown * nDown > nRadius * nRadius) {
                    return false;
                }
                const std::int64_t nLong = std::max(nAcross, nDown);
                const std::int64_t nShort = std::min(nAcross, nDown);
                int nSector = 0;
                for (const std::int64_t nTangent : kTangents) {
                    nSector += nShort * kOne >= nTangent * nLong ? 1 : 0;
                }
                // The order of the sectors turns around at 45 degrees and in each quarter.
                const bool bTurned = (nDown > nAcross) != ((p_nX > nX) != (p_nY > nY));
                return (0 == nSector % 2) != bTurned;
            });
}

void Canvas::text(Point p_stTopLeft, int p_nCell, const char* p_szText, const Material& p_stMaterial,
                  std::uint8_t p_nDistance) {
    int nLeft = p_stTopLeft.x;
    for (const char* pLetter = p_szText; '\0' != *pLetter; ++pLetter) {
        const Glyph* const pGlyph = std::find_if(std::begin(kGlyphs), std::end(kGlyphs),
                                                 [&](const Glyph& p_stGlyph) { return p_stGlyph.letter == *pLetter; });
        for (int i = 0; pGlyph != std::end(kGlyphs) && i < kGlyphWide * kGlyphHigh; ++i) {
            const int nColumn = i % kGlyphWide;
            const int nRow = i / kGlyphWide;
            if (0 != (pGlyph->rows[nRow] >> (kGlyphWide - 1 - nColumn) & 1)) {
                const int nX = nLeft + nColumn * p_nCell;
                const int nY = p_stTopLeft.y + nRow * p_nCell;
                rectangle(nX, nY, nX + p_nCell, nY + p_nCell, p_stMaterial, p_nDistance);
            }
        }
        nLeft += (kGlyphWide + 1) * p_nCell;
    }
}

}  // namespace simcam::picture
