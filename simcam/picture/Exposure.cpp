#include "simcam/picture/Exposure.h"

#include "simcam/Commands.h"
#include "simcam/picture/FixedPoint.h"

#include <algorithm>
#include <vector>

namespace simcam::picture {
namespace {

constexpr int kAcross = 40;  // places that are metered
constexpr int kDown = 24;

// The sensor: 400 lux are white at 1/50 second, with an open iris and without gain. All gain together doubles 8 times.
constexpr int kWhiteMilliLux = 400000;
constexpr int kReferenceDenominator = 50;
constexpr int kGainDoublings = 8;
constexpr int kShortestDenominator = 100000;
constexpr int kShortBeforeIris = 1000;  // the automatic shortens the shutter as far as that before it closes the iris

constexpr int kShutterPriority = 1;
constexpr int kIrisPriority = 2;
constexpr int kManual = 3;

int logOf(std::int64_t p_nValue) {
    return log2Of(static_cast<std::uint64_t>(std::max<std::int64_t>(1, p_nValue)));
}

bool within(int p_nValue, int p_nLow, int p_nHigh) {
    return p_nValue >= p_nLow && p_nValue < p_nHigh;
}

// Places in percent of the picture.
int meteringWeight(int p_nArea, int p_nX, int p_nY) {
    constexpr int kInside = 12;
    switch (p_nArea) {
        case 1:
            return within(p_nX, 25, 75) && within(p_nY, 25, 75) ? kInside : 1;
        case 2:
            return p_nY < 50 ? kInside : 1;
        case 3:
            return p_nY >= 50 ? kInside : 1;
        case 4:
            return within(p_nX, 42, 58) && within(p_nY, 42, 58) ? kInside : 0;
        default:
            return 1;
    }
}

bool isBacklit(int p_nArea, int p_nX, int p_nY) {
    switch (p_nArea) {
        case 1:
            return p_nY < 33;
        case 2:
            return p_nY >= 67;
        case 3:
            return p_nX < 33;
        case 4:
            return p_nX >= 67;
        default:
            return within(p_nX, 30, 70) && within(p_nY, 30, 70);
    }
}

int weightOf(const PictureParameters& p_st, int p_nX, int p_nY) {
    int nWeight = 100 * meteringWeight(p_st.meteringArea, p_nX, p_nY);
    if (0 != p_st.backlight) {
        // At full strength, the area alone.
        nWeight = isBacklit(p_st.backlightArea, p_nX, p_nY) ? nWeight : nWeight * (100 - p_st.backlightStrength) / 100;
    }
    return nWeight;
}

struct Sample {
    Pixel colour;
    int light;
    int weight;
};

std::vector<Sample> samplesOf(const Window& p_stWindow, const ExposedLight& p_objLight,
                              const PictureParameters& p_stParameters) {
    std::vector<Sample> vecSamples;
    vecSamples.reserve(kAcross * kDown);
    for (int i = 0; i < kAcross * kDown; ++i) {
        const int nX = (2 * (i % kAcross) + 1) * p_stWindow.width / (2 * kAcross);
        const int nY = (2 * (i / kAcross) + 1) * p_stWindow.height / (2 * kDown);
        const Surface& stSurface = p_stWindow.canvas->row(p_stWindow.top + nY)[p_stWindow.left + nX];
        Sample stSample;
        stSample.colour = p_objLight.expose(stSurface, (nX - p_stWindow.width / 2) * 640 / p_stWindow.width,
                                            (nY - p_stWindow.height / 2) * 640 / p_stWindow.width);
        stSample.light = (stSample.colour[0] + 2 * stSample.colour[1] + stSample.colour[2]) / 4;
        stSample.weight = weightOf(p_stParameters, nX * 100 / p_stWindow.width, nY * 100 / p_stWindow.height);
        vecSamples.push_back(stSample);
    }
    return vecSamples;
}

// The mean of the light, of which no place counts for more than the limit.
int meanOf(const std::vector<Sample>& p_vecSamples, int p_nLimit) {
    std::int64_t nSum = 0;
    std::int64_t nWeights = 1;
    for (const Sample& stSample : p_vecSamples) {
        nSum += std::int64_t{std::min(stSample.light, p_nLimit)} * stSample.weight;
        nWeights += stSample.weight;
    }
    return static_cast<int>(nSum / nWeights);
}

// The mean colour of what may be grey in an unknown light: what is not too bright and not too colourful. When there is too
// little of that, of everything.
std::array<int, kColours> greyOf(const std::vector<Sample>& p_vecSamples, int p_nLimit) {
    constexpr int kMostColour = 2;  // the brightest colour, in multiples of the darkest
    constexpr std::size_t kEnough = 40;
    struct Sum {
        std::array<std::int64_t, kColours> colour{};
        std::size_t count = 0;
        void add(const Pixel& p_arrPixel) {
            ++count;
            for (std::size_t i = 0; i < kColours; ++i) {
                colour[i] += p_arrPixel[i];
            }
        }
    };
    Sum stGreyish;
    Sum stAll;
    for (const Sample& stSample : p_vecSamples) {
        const auto ends = std::minmax_element(stSample.colour.begin(), stSample.colour.end());
        if (stSample.light <= p_nLimit) {
            stAll.add(stSample.colour);
        }
        if (stSample.light <= p_nLimit && *ends.second <= kMostColour * *ends.first) {
            stGreyish.add(stSample.colour);
        }
    }
    const Sum& stSum = stGreyish.count >= kEnough ? stGreyish : stAll;
    std::array<int, kColours> arrMean{};
    for (std::size_t i = 0; i < kColours; ++i) {
        arrMean[i] =
            static_cast<int>(stSum.colour[i] / static_cast<std::int64_t>(std::max<std::size_t>(1, stSum.count)));
    }
    return arrMean;
}

void measureDarkest(const std::vector<Sample>& p_vecSamples, Metering& p_stMetering) {
    for (auto& arrRow : p_stMetering.darkest) {
        arrRow.fill(kBrightest);
    }
    for (std::size_t i = 0; i < p_vecSamples.size(); ++i) {
        const std::size_t nX = i % kAcross * kRegionsAcross / kAcross;
        const std::size_t nY = i / kAcross * kRegionsDown / kDown;
        int& nDarkest = p_stMetering.darkest[nY][nX];
        nDarkest = std::min(nDarkest, p_vecSamples[i].light);
    }
}

int irisLog(int p_nPosition) {
    return logOf(p_nPosition) - logOf(kIrisOpen);
}

int shutterLog(int p_nDenominator) {
    return logOf(kReferenceDenominator) - logOf(p_nDenominator);
}

struct Range {
    int low;
    int high;
};

}  // namespace

Metering meter(const Window& p_stWindow, const Light& p_stLight, const PictureParameters& p_stParameters) {
    constexpr int kHighlight = 3;  // places brighter than so many means count as much as that
    Metering stMetering;
    stMetering.sensitivity = kOneBits * kLogOne + 2 * kLogOne - logOf(brightestOf(p_stLight));
    const ExposedLight objLight(p_stLight, stMetering.sensitivity);
    const std::vector<Sample> vecSamples = samplesOf(p_stWindow, objLight, p_stParameters);
    const int nRough = meanOf(vecSamples, kBrightest / 8);
    // With highlight compensation, lights do not make the rest of the picture dark.
    stMetering.mean = std::max(1, meanOf(vecSamples, 0 != p_stParameters.highlight ? nRough : kHighlight * nRough));
    stMetering.colour = greyOf(vecSamples, kHighlight * nRough);
    measureDarkest(vecSamples, stMetering);
    return stMetering;
}

Exposure exposureFor(const Metering& p_stMetering, const PictureParameters& p_st) {
    constexpr int kTargets[] = {1350, 900, 2000};  // by exposure strategy: the mean that is aimed at
    const int nBase = kOneBits * kLogOne - logOf(kWhiteMilliLux);
    const int nWanted = p_stMetering.sensitivity + logOf(kTargets[p_st.exposureStrategy]) - logOf(p_stMetering.mean);

    const bool bShutterFixed = kShutterPriority == p_st.exposureMode || kManual == p_st.exposureMode;
    const bool bIrisFixed =
        kIrisPriority == p_st.exposureMode || kManual == p_st.exposureMode || 0 == p_st.automaticIris;
    const int nFixedShutter = shutterLog(shutterDenominator(p_st.fixedShutter));
    const Range stShutter =
        bShutterFixed ? Range{nFixedShutter, nFixedShutter}
                      : Range{shutterLog(kShortestDenominator), shutterLog(shutterDenominator(p_st.longestShutter))};
    const int nMostIris = std::max(kIrisClosed, kIrisOpen / 100 * p_st.largestIris);
    const Range stIris = bIrisFixed ? Range{irisLog(p_st.irisPosition), irisLog(p_st.irisPosition)}
                                    : Range{irisLog(kIrisClosed), irisLog(nMostIris)};
    const int nFixedGain = kGainDoublings * kLogOne / 100 * p_st.fixedGain;
    const Range stGain = kManual == p_st.exposureMode ? Range{nFixedGain, nFixedGain}
                                                      : Range{0, kGainDoublings * kLogOne / 100 * p_st.largestGain};

    // From the brightest scene to the darkest: the shutter gets longer up to a point, the iris opens, the shutter gets
    // longer to its end, and then there is gain.
    const int nNeed = nWanted - nBase;
    const int nShort = std::clamp(shutterLog(kShortBeforeIris), stShutter.low, stShutter.high);
    int nShutter = std::clamp(nNeed - stIris.low - stGain.low, stShutter.low, nShort);
    const int nIris = std::clamp(nNeed - nShutter - stGain.low, stIris.low, stIris.high);
    nShutter = std::clamp(nNeed - nIris - stGain.low, nShutter, stShutter.high);

    Exposure stExposure;
    stExposure.gain = std::clamp(nNeed - nIris - nShutter, stGain.low, stGain.high);
    stExposure.sensitivity = nBase + nShutter + nIris + stExposure.gain;
    stExposure.shutterMicroseconds = static_cast<int>(exp2Of(nShutter) * (1000000 / kReferenceDenominator) / kOne);
    stExposure.iris = static_cast<int>(exp2Of(nIris) * kIrisOpen / kOne);
    return stExposure;
}

}  // namespace simcam::picture
