// From the driver and the scene to what a picture depends on.
#include "simcam/picture/Parameters.h"

#include "platform/Clock.h"
#include "simcam/Driver.h"
#include "simcam/Scene.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace simcam {
namespace {

constexpr PictureField kFields[] = {
    {16, &PictureParameters::exposureMode},
    {34, &PictureParameters::brightness},
    {49, &PictureParameters::longestShutter},
    {50, &PictureParameters::fixedShutter},
    {65, &PictureParameters::largestGain},
    {66, &PictureParameters::fixedGain},
    {80, &PictureParameters::automaticIris},
    {82, &PictureParameters::irisPosition},
    {85, &PictureParameters::largestIris},
    {96, &PictureParameters::meteringArea},
    {112, &PictureParameters::highlight},
    {113, &PictureParameters::highlightStrength},
    {128, &PictureParameters::backlight},
    {129, &PictureParameters::backlightArea},
    {130, &PictureParameters::backlightStrength},
    {153, &PictureParameters::night},
    {155, &PictureParameters::infraredAntiOverexposure},
    {160, &PictureParameters::infrared},
    {161, &PictureParameters::infraredMode},
    {162, &PictureParameters::infraredNearMost},
    {163, &PictureParameters::infraredNear},
    {164, &PictureParameters::infraredMediumMost},
    {165, &PictureParameters::infraredMedium},
    {166, &PictureParameters::infraredFarMost},
    {167, &PictureParameters::infraredFar},
    {168, &PictureParameters::whiteLight},
    {169, &PictureParameters::whiteLightMode},
    {170, &PictureParameters::whiteLightNear},
    {171, &PictureParameters::whiteLightMedium},
    {172, &PictureParameters::whiteLightFar},
    {224, &PictureParameters::lightType},
    {225, &PictureParameters::exposureStrategy},
    {768, &PictureParameters::whiteBalanceMode},
    {770, &PictureParameters::redGain},
    {771, &PictureParameters::blueGain},
    {1552, &PictureParameters::focusPosition},
    {1568, &PictureParameters::zoomPosition},
    {1584, &PictureParameters::digitalZoom},
    {2304, &PictureParameters::noise2d},
    {2305, &PictureParameters::noise2dMode},
    {2306, &PictureParameters::noise2dMost},
    {2307, &PictureParameters::noise2dStrength},
    {2308, &PictureParameters::noise3d},
    {2309, &PictureParameters::noise3dMode},
    {2312, &PictureParameters::noise3dMost},
    {2313, &PictureParameters::noise3dStrength},
    {2321, &PictureParameters::sharpness},
    {2337, &PictureParameters::saturation},
    {2353, &PictureParameters::contrast},
    {2368, &PictureParameters::wideDynamicRange},
    {2369, &PictureParameters::wideDynamicRangeStrength},
    {2384, &PictureParameters::mirror},
    {2385, &PictureParameters::beaway},
    {2400, &PictureParameters::defog},
    {2401, &PictureParameters::defogStrength},
    {2416, &PictureParameters::antiShake},
    {2417, &PictureParameters::antiShakeStrength},
    {2432, &PictureParameters::shiftDirection},
    {2433, &PictureParameters::shiftStep},
    {2434, &PictureParameters::shiftLeast},
    {2435, &PictureParameters::shiftMost},
    {2436, &PictureParameters::shift},
    {2437, &PictureParameters::verticalShiftLeast},
    {2438, &PictureParameters::verticalShiftMost},
    {2439, &PictureParameters::verticalShift},
    {2512, &PictureParameters::freeze},
    {2528, &PictureParameters::gamma},
    {8201, &PictureParameters::palette},
    {8202, &PictureParameters::thermalDetail},
    {8205, &PictureParameters::thermalContrast},
    {8206, &PictureParameters::thermalBrightness},
    {8208, &PictureParameters::thermalDetailType},
    {8217, &PictureParameters::temperatureStrip},
};
constexpr std::size_t kCount = sizeof(kFields) / sizeof(kFields[0]);

constexpr int kMostMilliLux = 200000000;
constexpr int kMostMillimetres = 100000000;

int thousandths(double p_dValue, int p_nMost) {
    return static_cast<int>(std::lround(std::clamp(p_dValue * 1000.0, 0.0, static_cast<double>(p_nMost))));
}

}  // namespace

const PictureField* pictureFields(std::size_t& p_nCount) {
    p_nCount = kCount;
    return kFields;
}

bool takePictureParameters(const Driver& p_objDriver, const Scene& p_objScene, int p_nChannel, bool p_bThermal,
                           u32 p_nSeed, PictureParameters& p_stParameters) {
    std::vector<u32> vecCommands;
    for (const PictureField& stField : kFields) {
        vecCommands.push_back(stField.command);
    }
    std::vector<int> vecValues;
    if (!p_objDriver.values(p_nChannel, vecCommands, vecValues)) {
        return false;
    }
    PictureParameters stParameters;
    for (std::size_t i = 0; i < kCount; ++i) {
        stParameters.*kFields[i].member = vecValues[i];
    }
    const platform::CivilTime stTime = platform::Clock::civilTime();
    const SceneState stScene = p_objScene.state();
    const double dLux = stScene.luxAt((stTime.hour * 60 + stTime.minute) * 60 + stTime.second);
    stParameters.milliLux = thousandths(dLux, kMostMilliLux);
    stParameters.subjectMillimetres = thousandths(stScene.subjectMetres, kMostMillimetres);
    stParameters.fogPercent = stScene.fogPercent;
    stParameters.windPercent = stScene.windPercent;
    stParameters.car = stScene.car ? 1 : 0;
    stParameters.milliseconds = platform::Clock::monotonicMicroseconds() / 1000;
    stParameters.seed = p_nSeed;
    stParameters.thermal = p_bThermal ? 1 : 0;
    p_stParameters = stParameters;
    return true;
}

namespace picture {

PictureParameters withinRanges(const PictureParameters& p_stParameters) {
    PictureParameters stWithin = p_stParameters;
    for (const PictureField& stField : kFields) {
        const CommandRow* const pRow = findCommand(stField.command);
        int& nValue = stWithin.*stField.member;
        nValue = std::clamp(nValue, pRow->min, pRow->max);
    }
    constexpr int kNearestMillimetres = 10;
    stWithin.milliLux = std::clamp(stWithin.milliLux, 0, kMostMilliLux);
    stWithin.subjectMillimetres = std::clamp(stWithin.subjectMillimetres, kNearestMillimetres, kMostMillimetres);
    stWithin.fogPercent = std::clamp(stWithin.fogPercent, 0, 100);
    stWithin.windPercent = std::clamp(stWithin.windPercent, 0, 100);
    return stWithin;
}

}  // namespace picture
}  // namespace simcam
