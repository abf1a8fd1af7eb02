#include "simcam/picture/Light.h"

#include "simcam/Commands.h"
#include "simcam/picture/FixedPoint.h"

#include <algorithm>
#include <cstdlib>

namespace simcam::picture {
namespace {

constexpr int kLux = 1000;  // 1/1000 lux
constexpr int kTintOne = 256;

struct AmbientTint {
    int milliLux;
    std::array<int, kColours> tint;
};
// Moonlight is blue, the sun low above the street red, the sky of the day white.
constexpr AmbientTint kAmbientTints[] = {
    {1 * kLux, {220, 250, 310}}, {30 * kLux, {310, 248, 190}}, {2000 * kLux, {256, 256, 256}}};

constexpr std::array<int, kColours> kTints[] = {{256, 205, 130}, {256, 256, 256}, {256, 40, 30}};  // by Tint
constexpr std::array<int, kColours> kLampTint = {256, 180, 90};
constexpr int kLampLight = 4 * kLux;  // below the street lamp

std::array<int, kColours> ambientTint(int p_nMilliLux) {
    const AmbientTint* pUpper = std::find_if(std::begin(kAmbientTints), std::end(kAmbientTints),
                                             [&](const AmbientTint& p_st) { return p_nMilliLux < p_st.milliLux; });
    if (pUpper == std::begin(kAmbientTints)) {
        return pUpper->tint;
    }
    if (pUpper == std::end(kAmbientTints)) {
        return (pUpper - 1)->tint;
    }
    const AmbientTint* const pLower = pUpper - 1;
    const auto logOf = [](int p_nValue) { return log2Of(static_cast<std::uint64_t>(p_nValue)) >> 6; };
    const int nWhole = logOf(pUpper->milliLux) - logOf(pLower->milliLux);
    const int nPart = logOf(p_nMilliLux) - logOf(pLower->milliLux);
    std::array<int, kColours> arrTint{};
    for (std::size_t i = 0; i < kColours; ++i) {
        arrTint[i] = pLower->tint[i] + (pUpper->tint[i] - pLower->tint[i]) * nPart / nWhole;
    }
    return arrTint;
}

// Extinction at full fog: a third of a doubling for each metre would be a wall; this leaves the near pavement.
std::array<int, kDistances> clearOf(int p_nFogPercent, const std::array<int, kDistances>& p_arrMillimetres) {
    constexpr std::int64_t kHalvingsPerMetre = 14000;  // 1/65536
    std::array<int, kDistances> arrClear{};
    for (std::size_t i = 0; i < kDistances; ++i) {
        const std::int64_t nHalvings =
            kHalvingsPerMetre * p_nFogPercent * p_nFogPercent * p_arrMillimetres[i] / (std::int64_t{1000} * 100 * 100);
        arrClear[i] = static_cast<int>(exp2Of(static_cast<int>(-std::min<std::int64_t>(nHalvings, 20 * kLogOne))));
    }
    return arrClear;
}

struct BeamKind {
    std::int64_t lux;     // at one metre in the middle of the beam, if it went there
    std::int64_t begins;  // millimetres: nearer than that, it passes over things
};
constexpr BeamKind kBeamKinds[kBeams] = {{120, 0}, {1500, 15000}, {6000, 40000}};

// What a beam of full strength gives in 1/1000 lux.
std::int64_t beamLight(const BeamKind& p_stKind, std::int64_t p_nMillimetres) {
    const std::int64_t nSquare = std::max<std::int64_t>(1, p_nMillimetres * p_nMillimetres / 1000);  // 1/1000 m2
    const std::int64_t nBegins = p_stKind.begins * p_stKind.begins / 1000;
    return p_stKind.lux * kLux * 1000 / (nSquare + nBegins);
}

void addBeam(std::array<int, kDistances>& p_arrBeam, const BeamKind& p_stKind, int p_nPercent, std::int64_t p_nLimit,
             const std::array<int, kDistances>& p_arrMillimetres) {
    for (std::size_t i = 0; i < kDistances; ++i) {
        std::int64_t nLight = beamLight(p_stKind, p_arrMillimetres[i]) * p_nPercent / 100;
        if (0 != p_nLimit) {
            nLight = nLight * p_nLimit / (p_nLimit + nLight);
        }
        p_arrBeam[i] = static_cast<int>(std::min<std::int64_t>(nLight, 1 << 28));
    }
}

// By how much of their strength automatic lamps burn, percent: full in the dark, off from 50 lux on.
int needed(int p_nMilliLux) {
    return std::clamp(100 - p_nMilliLux / (kLux / 2), 0, 100);
}

constexpr int kModeAutomatic = 1;
constexpr int kModeManual = 2;
constexpr int kTypeWhite = 1;

void turnOnInfrared(const PictureParameters& p_st, const std::array<int, kDistances>& p_arrMillimetres,
                    Light& p_stLight) {
    constexpr std::int64_t kLimit = 12 * kLux;  // against overexposure
    const bool bOn = 0 != p_st.night && 0 != p_st.infrared && 0 != p_st.infraredMode && kTypeWhite != p_st.lightType;
    if (!bOn) {
        return;
    }
    const bool bManual = kModeManual == p_st.infraredMode;
    const int nNeed = bManual ? 100 : needed(p_st.milliLux);
    const int arrPercent[kBeams] = {bManual ? p_st.infraredNear : p_st.infraredNearMost,
                                    bManual ? p_st.infraredMedium : p_st.infraredMediumMost,
                                    bManual ? p_st.infraredFar : p_st.infraredFarMost};
    for (std::size_t i = 0; i < kBeams; ++i) {
        addBeam(p_stLight.infrared[i], kBeamKinds[i], arrPercent[i] * nNeed / 100,
                0 != p_st.infraredAntiOverexposure ? kLimit : 0, p_arrMillimetres);
        p_stLight.anyInfrared = p_stLight.anyInfrared || 0 != arrPercent[i] * nNeed;
    }
}

void turnOnWhite(const PictureParameters& p_st, const std::array<int, kDistances>& p_arrMillimetres, Light& p_stLight) {
    const bool bManual = kModeManual == p_st.whiteLightMode;
    const bool bOn = 0 != p_st.whiteLight && (bManual || (kModeAutomatic == p_st.whiteLightMode && 0 != p_st.night));
    if (!bOn) {
        return;
    }
    const int nNeed = bManual ? 100 : needed(p_st.milliLux);
    const int arrPercent[kBeams] = {bManual ? p_st.whiteLightNear : 100, bManual ? p_st.whiteLightMedium : 100,
                                    bManual ? p_st.whiteLightFar : 100};
    for (std::size_t i = 0; i < kBeams; ++i) {
        addBeam(p_stLight.white[i], kBeamKinds[i], arrPercent[i] * nNeed / 100, 0, p_arrMillimetres);
        p_stLight.anyWhite = p_stLight.anyWhite || 0 != arrPercent[i] * nNeed;
    }
}

}  // namespace

std::array<int, kDistances> distances(int p_nSubjectMillimetres) {
    constexpr int kNearest = 250;  // millimetres
    std::array<int, kDistances> arrMillimetres{};
    for (std::size_t i = 0; i < kDistances; ++i) {
        const int nDoublings = static_cast<int>(i) * (kLogOne / kStepsPerDoubling);
        arrMillimetres[i] = static_cast<int>(kNearest * exp2Of(nDoublings) / kOne);
    }
    arrMillimetres[kSubjectDistance] = p_nSubjectMillimetres;
    return arrMillimetres;
}

const std::array<Beam, kBeams>& beams() {
    static const std::array<Beam, kBeams> arrBeams = [] {
        constexpr std::int64_t kWidth[kBeams] = {340, 230, 130};  // plane pixels to half of the light
        std::array<Beam, kBeams> arr{};
        for (std::size_t i = 0; i < kBeams; ++i) {
            for (std::size_t j = 0; j < kDirections; ++j) {
                const std::int64_t nHalf = kWidth[i] * kWidth[i];
                const std::int64_t nOff = static_cast<std::int64_t>(j) << kDirectionShift;
                arr[i][j] = static_cast<int>(256 * nHalf * nHalf / (nHalf * nHalf + nOff * nOff));
            }
        }
        return arr;
    }();
    return arrBeams;
}

Light lightOf(const PictureParameters& p_stParameters) {
    Light stLight;
    stLight.magnification = static_cast<int>(1000 * magnification(p_stParameters.zoomPosition));
    stLight.night = 0 != p_stParameters.night;
    stLight.colour = !stLight.night || kTypeWhite == p_stParameters.lightType;
    const std::array<int, kDistances> arrMillimetres = distances(p_stParameters.subjectMillimetres);
    stLight.clear = clearOf(p_stParameters.fogPercent, arrMillimetres);
    const std::array<int, kColours> arrTint = ambientTint(p_stParameters.milliLux);
    for (std::size_t i = 0; i < kColours; ++i) {
        stLight.ambient[i] = static_cast<int>(arrTint[i] * std::int64_t{p_stParameters.milliLux} / kTintOne);
    }
    turnOnInfrared(p_stParameters, arrMillimetres, stLight);
    turnOnWhite(p_stParameters, arrMillimetres, stLight);
    return stLight;
}

int brightestOf(const Light& p_stLight) {
    constexpr int kNearSurface = 64;  // the distance index of 4 m
    int nLight = kLampLight / 4 + 1 + *std::max_element(p_stLight.ambient.begin(), p_stLight.ambient.end());
    for (std::size_t i = 0; i < kBeams; ++i) {
        nLight += std::max(p_stLight.infrared[i][kNearSurface], p_stLight.white[i][kNearSurface]);
    }
    return nLight;
}

ExposedLight::ExposedLight(const Light& p_stLight, Sensitivity p_nSensitivity)
    : m_nMultiplier(static_cast<int>(exp2Of(p_nSensitivity & (kLogOne - 1)))),
      m_nShift(kOneBits - (p_nSensitivity >> 16)),
      m_stLight(p_stLight) {
    constexpr int kBrightestSurface = (1 << 17) - 1;  // times a reflectance below 2^13 and the sum of three
    const auto surfaceLight = [&](std::int64_t p_nMilliLux, int p_nClear) {
        return scaled(std::min(of(p_nMilliLux), kBrightestSurface), p_nClear);
    };
    for (std::size_t d = 0; d < kDistances; ++d) {
        const int nClear = p_stLight.clear[d];
        for (std::size_t i = 0; i < kColours; ++i) {
            m_arrAmbient[i][d] = surfaceLight(p_stLight.ambient[i], nClear);
            m_arrFog[i][d] = scaled(surfaceLight(p_stLight.ambient[i] * std::int64_t{9} / 10, kOne), kOne - nClear);
            m_arrLamp[i][d] = surfaceLight(kLampTint[i] * std::int64_t{kLampLight} / kTintOne, nClear);
        }
        for (std::size_t i = 0; i < kBeams; ++i) {
            m_arrInfrared[i][d] = surfaceLight(p_stLight.infrared[i][d], nClear) / kBeams;
            m_arrWhite[i][d] = surfaceLight(p_stLight.white[i][d], nClear) / kBeams;
        }
    }
}

int ExposedLight::of(std::int64_t p_nMilliLux) const {
    // The multiplier has 13 bits and the light 31.
    const std::int64_t nProduct = p_nMilliLux * m_nMultiplier;
    if (m_nShift >= 0) {
        return static_cast<int>(std::min<std::int64_t>(m_nShift < 62 ? nProduct >> m_nShift : 0, kBrightest));
    }
    return nProduct > (kBrightest >> std::min(-m_nShift, 30)) ? kBrightest : static_cast<int>(nProduct << -m_nShift);
}

int ExposedLight::direction(int p_nX, int p_nY) const {
    // At tele everything is in the middle of the beams.
    const std::int64_t nX = std::int64_t{p_nX} * 1000 / m_stLight.magnification;
    const std::int64_t nY = std::int64_t{p_nY} * 1000 / m_stLight.magnification;
    return static_cast<int>(std::min<std::int64_t>((nX * nX + nY * nY) >> kDirectionShift, kDirections - 1));
}

int ExposedLight::beamed(const std::array<Table, kBeams>& p_arrBeams, int p_nDistance, int p_nDirection) const {
    const auto nDistance = static_cast<std::size_t>(p_nDistance);
    const auto nDirection = static_cast<std::size_t>(p_nDirection);
    const std::array<Beam, kBeams>& arrBeams = beams();
    int nLight = 0;
    for (std::size_t i = 0; i < kBeams; ++i) {
        nLight += p_arrBeams[i][nDistance] * arrBeams[i][nDirection] / 256 * kBeams;
    }
    return nLight;
}

int ExposedLight::emitted(const Surface& p_stSurface, int p_nColour) const {
    constexpr int kUnit = kLux / 16 + 1;  // 1/16 lux
    const int nLight = scaled(of(std::int64_t{p_stSurface.emission} * kUnit), m_stLight.clear[p_stSurface.distance]);
    return nLight / kTintOne * kTints[p_stSurface.tint][static_cast<std::size_t>(p_nColour)];
}

Pixel ExposedLight::expose(const Surface& p_stSurface, int p_nFromMiddleX, int p_nFromMiddleY) const {
    constexpr int kBrightestSum = (1 << 18) - 1;
    const std::size_t d = p_stSurface.distance;
    const int nLamp = p_stSurface.lamp;
    int nWhite = 0;
    int nInfrared = 0;
    if (m_stLight.anyWhite || m_stLight.anyInfrared) {
        const int nDirection = direction(p_nFromMiddleX, p_nFromMiddleY);
        nWhite = m_stLight.anyWhite ? beamed(m_arrWhite, p_stSurface.distance, nDirection) : 0;
        nInfrared = m_stLight.anyInfrared ? beamed(m_arrInfrared, p_stSurface.distance, nDirection) : 0;
    }
    const int arrReflectance[kColours] = {p_stSurface.red, p_stSurface.green, p_stSurface.blue};
    Pixel arrPixel{};
    for (std::size_t i = 0; i < kColours; ++i) {
        const int nLight = std::min(m_arrAmbient[i][d] + m_arrLamp[i][d] / 256 * nLamp + nWhite, kBrightestSum);
        arrPixel[i] = (arrReflectance[i] * nLight >> kOneBits) + m_arrFog[i][d];
    }
    if (0 != p_stSurface.emission) {
        for (int i = 0; i < kColours; ++i) {
            arrPixel[static_cast<std::size_t>(i)] += emitted(p_stSurface, i);
        }
    }
    if (m_stLight.night) {
        // Half of the daylight is infrared, of the lamps' light as much as is seen.
        const int nLight = std::min(m_arrAmbient[1][d] / 2 + m_arrLamp[1][d] / 256 * nLamp + nInfrared, kBrightestSum);
        const int nExtra = p_stSurface.infrared * nLight >> kOneBits;
        if (m_stLight.colour) {
            return arrPixel;
        }
        const int nGrey = (arrPixel[0] + 2 * arrPixel[1] + arrPixel[2]) / 4 + nExtra;
        arrPixel = {nGrey, nGrey, nGrey};
    }
    for (int& nPixel : arrPixel) {
        nPixel = std::min(nPixel, kBrightest);
    }
    return arrPixel;
}

}  // namespace simcam::picture
