#include "simcam/driver/Choices.h"

#include "simcam/Commands.h"

#include <algorithm>

namespace simcam {
namespace {

// Exposure times as 1/n second.
constexpr int kShutters[] = {1,   2,   3,   6,    12,   15,   20,   25,   30,   50,   60,    75,    100,   120,   150,
                             200, 250, 500, 1000, 1500, 2000, 3000, 4000, 5000, 8000, 10000, 20000, 50000, 100000};
static_assert(kShutterChoices == sizeof(kShutters) / sizeof(kShutters[0]), "one entry a choice");

constexpr int kNearLimits[] = {10, 30, 50, 100, 150, 200, 300, 500, 600, 1000, 2000};  // centimetres
static_assert(kNearLimitChoices == sizeof(kNearLimits) / sizeof(kNearLimits[0]), "one entry a choice");

// Half an exposure step from one to the next.
constexpr int kStops[] = {256, 400, 566, 800, 1131, 1600, 2262, 3200, 4525, 6400, 9050, 12800, 18100, 25600};
static_assert(kIrisStops == sizeof(kStops) / sizeof(kStops[0]), "one entry a stop");
static_assert(kIrisClosed == kStops[0] && kIrisOpen == kStops[kIrisStops - 1], "the ends");

// With wide dynamic range a second, 16 times shorter exposure is taken in each frame: the long one has half of the frame,
// and is long enough that the sensor can still take the short one.
constexpr int kWideDynamicRangeShortest = 2000;  // 1/n second
constexpr int kFastestFrames = 240;              // frames a second

double centimetres(double p_dMetres) {
    return p_dMetres * 100.0;
}

}  // namespace

int shutterDenominator(int p_nChoice) {
    return p_nChoice >= 0 && p_nChoice < kShutterChoices ? kShutters[p_nChoice] : 0;
}

int nearLimitCentimetres(int p_nChoice) {
    return p_nChoice >= 0 && p_nChoice < kNearLimitChoices ? kNearLimits[p_nChoice] : 0;
}

int irisStop(int p_nStop) {
    return p_nStop >= 0 && p_nStop < kIrisStops ? kStops[p_nStop] : 0;
}

std::vector<int> legalShutters(int p_nFrameRate, bool p_bWideDynamicRange) {
    const int nFrameRate = std::clamp(p_nFrameRate, 1, kFastestFrames);
    const int nLongest = p_bWideDynamicRange ? 2 * nFrameRate : nFrameRate;
    std::vector<int> vecLegal;
    for (int i = 0; i < kShutterChoices; ++i) {
        if (kShutters[i] >= nLongest && (!p_bWideDynamicRange || kShutters[i] <= kWideDynamicRangeShortest)) {
            vecLegal.push_back(i);
        }
    }
    return vecLegal;
}

std::vector<int> legalIrisPositions(double p_dMagnification) {
    const int nWidest = p_dMagnification <= 2.0   ? 25600
                        : p_dMagnification <= 4.0 ? 18100
                        : p_dMagnification <= 8.0 ? 12800
                                                  : 6400;
    std::vector<int> vecLegal;
    std::copy_if(std::begin(kStops), std::end(kStops), std::back_inserter(vecLegal),
                 [nWidest](int p_nStop) { return p_nStop <= nWidest; });
    return vecLegal;
}

std::vector<int> legalNearLimits(double p_dMagnification) {
    const double dNearest = centimetres(nearestFocus(p_dMagnification));
    std::vector<int> vecLegal;
    for (int i = 0; i < kNearLimitChoices; ++i) {
        if (kNearLimits[i] >= dNearest - 0.5) {  // half a centimetre: the positions of the zoom motor are whole numbers
            vecLegal.push_back(i);
        }
    }
    return vecLegal;
}

int nearestOf(const std::vector<int>& p_vecLegal, int p_nWanted) {
    const auto above = std::lower_bound(p_vecLegal.begin(), p_vecLegal.end(), p_nWanted);
    if (p_vecLegal.begin() == above) {
        return *above;
    }
    const int nBelow = *(above - 1);
    // Both differences are not negative; as wide numbers they cannot overflow.
    if (p_vecLegal.end() == above ||
        static_cast<long long>(p_nWanted) - nBelow <= static_cast<long long>(*above) - p_nWanted) {
        return nBelow;
    }
    return *above;
}

}  // namespace simcam
