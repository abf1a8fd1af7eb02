/// @file
/// Everything that a picture of the simulated camera depends on, as a plain value.
#pragma once

#include "platform/Types.h"
#include "simcam/Export.h"

#include <cstddef>

namespace simcam {

class Driver;
class Scene;

/// Everything that a picture depends on at one moment: the scene, and what the driver holds for one channel. A plain
/// value, so that drawing holds no lock. Integers only, so that equal values give equal pictures everywhere.
///
/// The fields of the driver have the ranges and the meaning of the commands that are named (simcam/README.md); the
/// renderer takes a value outside the range to the nearer end.
struct PictureParameters {
    /// @name The scene
    /// @{
    int milliLux = 1000000;         ///< 1/1000 lux, 0 to 200000000
    int subjectMillimetres = 5000;  ///< millimetres, 10 to 100000000
    int fogPercent = 0;             ///< percent, 0 clear to 100
    int windPercent = 0;            ///< percent, 0 to 100: how much the camera's mast trembles
    int car = 1;                    ///< 1 when a car drives along the street
    /// @}

    /// @name The moment
    /// @{
    INT64 milliseconds = 0;  ///< any; moves the car, the wind and the noise
    u32 seed = 1;            ///< of the noise and the wind
    /// @}

    int thermal = 0;  ///< 1: the channel's sensor sees warmth instead of light

    /// @name The driver's values
    /// @{
    int exposureMode = 0;               ///< command 16
    int brightness = 50;                ///< command 34
    int longestShutter = 7;             ///< command 49
    int fixedShutter = 9;               ///< command 50
    int largestGain = 60;               ///< command 65
    int fixedGain = 20;                 ///< command 66
    int automaticIris = 1;              ///< command 80
    int irisPosition = 25600;           ///< command 82
    int largestIris = 50;               ///< command 85
    int meteringArea = 0;               ///< command 96
    int highlight = 0;                  ///< command 112
    int highlightStrength = 50;         ///< command 113
    int backlight = 0;                  ///< command 128
    int backlightArea = 0;              ///< command 129
    int backlightStrength = 50;         ///< command 130
    int night = 0;                      ///< command 153
    int infraredAntiOverexposure = 1;   ///< command 155
    int infrared = 1;                   ///< command 160
    int infraredMode = 1;               ///< command 161
    int infraredNearMost = 100;         ///< command 162
    int infraredNear = 50;              ///< command 163
    int infraredMediumMost = 100;       ///< command 164
    int infraredMedium = 50;            ///< command 165
    int infraredFarMost = 100;          ///< command 166
    int infraredFar = 50;               ///< command 167
    int whiteLight = 0;                 ///< command 168
    int whiteLightMode = 1;             ///< command 169
    int whiteLightNear = 50;            ///< command 170
    int whiteLightMedium = 50;          ///< command 171
    int whiteLightFar = 50;             ///< command 172
    int lightType = 0;                  ///< command 224
    int exposureStrategy = 0;           ///< command 225
    int whiteBalanceMode = 0;           ///< command 768
    int redGain = 128;                  ///< command 770
    int blueGain = 128;                 ///< command 771
    int focusPosition = 1080;           ///< command 1552
    int zoomPosition = 16384;           ///< command 1568
    int digitalZoom = 0;                ///< command 1584
    int noise2d = 1;                    ///< command 2304
    int noise2dMode = 0;                ///< command 2305
    int noise2dMost = 50;               ///< command 2306
    int noise2dStrength = 50;           ///< command 2307
    int noise3d = 1;                    ///< command 2308
    int noise3dMode = 0;                ///< command 2309
    int noise3dMost = 50;               ///< command 2312
    int noise3dStrength = 50;           ///< command 2313
    int sharpness = 50;                 ///< command 2321
    int saturation = 50;                ///< command 2337
    int contrast = 50;                  ///< command 2353
    int wideDynamicRange = 0;           ///< command 2368
    int wideDynamicRangeStrength = 50;  ///< command 2369
    int mirror = 0;                     ///< command 2384
    int beaway = 0;                     ///< command 2385
    int defog = 0;                      ///< command 2400
    int defogStrength = 50;             ///< command 2401
    int antiShake = 0;                  ///< command 2416
    int antiShakeStrength = 50;         ///< command 2417
    int shiftDirection = 0;             ///< command 2432
    int shiftStep = 1;                  ///< command 2433
    int shiftLeast = -64;               ///< command 2434
    int shiftMost = 64;                 ///< command 2435
    int shift = 0;                      ///< command 2436
    int verticalShiftLeast = -64;       ///< command 2437
    int verticalShiftMost = 64;         ///< command 2438
    int verticalShift = 0;              ///< command 2439
    int freeze = 0;                     ///< command 2512
    int gamma = 0;                      ///< command 2528
    int palette = 0;                    ///< command 8201
    int thermalDetail = 0;              ///< command 8202
    int thermalContrast = 50;           ///< command 8205
    int thermalBrightness = 50;         ///< command 8206
    int thermalDetailType = 0;          ///< command 8208
    int temperatureStrip = 0;           ///< command 8217
    /// @}
};

/// A field of PictureParameters that holds a value of the driver.
struct PictureField {
    u32 command;                     ///< of the driver
    int PictureParameters::*member;  ///< where it is kept
};
/// The fields that hold values of the driver, in ascending order of their commands.
/// @param[out] p_nCount  how many
/// @return the first one
SIMCAM_API const PictureField* pictureFields(std::size_t& p_nCount);

/// What the picture of a channel depends on now. The time is that of the platform's clock. Of a command that is not
/// supported, the power-up value counts. Leaves no trace in transcript or faults.
///
/// Threads: any. Blocks for as long as the driver's and the scene's lock are held by others, one after the other.
/// @param p_objDriver          whose values
/// @param p_objScene           what it looks at
/// @param p_nChannel           from 0
/// @param p_bThermal           whether the channel's sensor sees warmth
/// @param p_nSeed              of the noise and the wind
/// @param[out] p_stParameters  the value
/// @return false, and nothing is written, when the channel does not exist
SIMCAM_API bool takePictureParameters(const Driver& p_objDriver, const Scene& p_objScene, int p_nChannel,
                                      bool p_bThermal, u32 p_nSeed, PictureParameters& p_stParameters);

}  // namespace simcam
