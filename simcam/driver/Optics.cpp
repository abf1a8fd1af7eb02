#include "simcam/driver/Optics.h"

#include "simcam/Commands.h"

#include <algorithm>
#include <cmath>

namespace simcam {
namespace {

// Positions of the zoom motor at 1x, 2x, ... 16x.
constexpr int kPositions[] = {16384, 24576, 27264, 28672, 29056, 29440, 29728, 30016,
                              30208, 30400, 30560, 30720, 30912, 31104, 31232, 31424};
constexpr int kPositionCount = sizeof(kPositions) / sizeof(kPositions[0]);
static_assert(kZoomWide == kPositions[0] && kZoomTele == kPositions[kPositionCount - 1], "the ends");

constexpr double kNearestPerMagnification = 0.1;  // metres
constexpr double kInfinityAtWide = 1000.0;        // focus position
constexpr double kInfinityPerMagnification = 200.0;
constexpr double kNearTravel = 4000.0;  // focus positions between infinity and the nearest distance

}  // namespace

double magnification(int p_nZoomPosition) {
    const int nPosition = std::clamp(p_nZoomPosition, kZoomWide, kZoomTele);
    int i = 0;
    while (i < kPositionCount - 2 && nPosition > kPositions[i + 1]) {
        ++i;
    }
    return 1.0 + i + static_cast<double>(nPosition - kPositions[i]) / (kPositions[i + 1] - kPositions[i]);
}

double nearestFocus(double p_dMagnification) {
    return kNearestPerMagnification * p_dMagnification;
}

int sharpFocusPosition(double p_dMagnification, double p_dMetres) {
    const double dNearness = std::min(1.0, nearestFocus(p_dMagnification) / p_dMetres);
    return static_cast<int>(
        std::lround(kInfinityAtWide + kInfinityPerMagnification * (p_dMagnification - 1.0) + kNearTravel * dNearness));
}

int focusStatistic(int p_nFocus, double p_dMagnification, double p_dSubjectMetres, double p_dLux) {
    constexpr double kFloor = 100.0;   // noise
    constexpr double kPeak = 10000.0;  // a sharp picture in good light
    constexpr double kGoodLight = 40.0;
    constexpr double kDarkest = 0.05;
    const double dDepth = 400.0 - 15.0 * (p_dMagnification - 1.0);  // of focus, in motor positions
    const double dOff = (p_nFocus - sharpFocusPosition(p_dMagnification, p_dSubjectMetres)) / dDepth;
    const double dContrast = std::clamp(lightLevel(p_dLux) / kGoodLight, kDarkest, 1.0);
    const double dReach = std::min(1.0, p_dSubjectMetres / nearestFocus(p_dMagnification));
    return static_cast<int>(std::lround(kFloor + kPeak * dContrast * dReach / (1.0 + dOff * dOff)));
}

}  // namespace simcam
