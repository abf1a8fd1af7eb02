// A controller with parameter sets of every kind that the write path treats in its own way.
#pragma once

#include "tests/unit/sensor/ControllerTest.h"

#include <string>
#include <vector>

class WriteTest : public ControllerTest {
protected:
    static std::vector<KeyVal> records() {
        return {{KEY_SCHEME_MODE, 0},
                {KEY_SCHEME_START_HOUR, 0},
                {KEY_SCHEME_START_MIN, 0},
                {KEY_SCHEME_END_HOUR, 23},
                {KEY_SCHEME_END_MIN, 59},
                {KEY_EMPTY1, 0},
                {KEY_EMPTY2, 0},
                {KEY_BRIGHTNESS, 50},
                {KEY_SATURATION, 128},
                {KEY_CONTRAST, 128},
                {KEY_EXPOSE_MODE, 0},
                {KEY_IRIS_UP, 0},
                {KEY_DN_MODE, 0},
                {KEY_DTN_THR, 30},
                {KEY_NTD_THR, 60},
                {KEY_DN_SENSITIVITY, 5},
                {KEY_DELAY, 4},
                {KEY_DTN_H, 18},
                {KEY_DTN_M, 0},
                {KEY_NTD_H, 6},
                {KEY_NTD_M, 0},
                {KEY_WDR_MODE, 0},
                {KEY_MIRROR, 0},
                {KEY_BEAWAY, 0},
                {KEY_ANTI_SHAKE_SWITCH, 0},
                {KEY_NONE_COLOR_MODE, 0},
                {KEY_TEMPERATURE_STRIP_SWITCH, 0},
                {KEY_IR_SWITCH, 0},
                {KEY_IR_MODE, 0},
                {KEY_IR_MANUAL_STRG_NEAR, 20},
                {KEY_IR_MANUAL_STRG_MEDIUM, 21},
                {KEY_IR_MANUAL_STRG_FAR, 60},
                {KEY_WHITE_SWITCH, 0},
                {KEY_WHITE_MODE, 0},
                {KEY_WHITE_MANUAL_STRG, 22},
                {KEY_WHITE_MANUAL_STRG_MEDIUM, 23},
                {KEY_WHITE_MANUAL_STRG_FAR, 24},
                {KEY_IR_MODE_INTELL, 0},
                {KEY_WHITE_MODE_INTELL, 0},
                {KEY_IR_MANUAL_STRG_NEAR_INTELL, 25},
                {KEY_IR_MANUAL_STRG_MEDIUM_INTELL, 26},
                {KEY_IR_MANUAL_STRG_FAR_INTELL, 27},
                {KEY_WHITE_MANUAL_STRG_INTELL, 28},
                {KEY_WHITE_MANUAL_STRG_MEDIUM_INTELL, 29},
                {KEY_WHITE_MANUAL_STRG_FAR_INTELL, 30},
                {KEY_LIGHT_TYPE, 0}};
    }

    WriteTest() { build(3, records()); }

    // The list form. Its records are those of the test afterwards, as the walk left them.
    int write(std::vector<KeyVal>& p_vecList, bool p_bCache = true) {
        return probe.setParameters(p_vecList.data(), static_cast<u32>(p_vecList.size()), p_bCache);
    }
    int write(std::vector<KeyVal>&& p_vecList, bool p_bCache = true) { return write(p_vecList, p_bCache); }

    void cached(u32 p_nScheme, u32 p_nKey, u32 p_nValue) {
        ASSERT_NE(-1, probe.setKeyValToCache(p_nScheme, p_nKey, p_nValue, true));
    }

    // A key's values in scheme 0, 1, 2 and in the factory set.
    std::vector<u32> inAllSchemes(u32 p_nKey) {
        return {probe.valueIn(0, p_nKey), probe.valueIn(1, p_nKey), probe.valueIn(2, p_nKey), probe.valueIn(3, p_nKey)};
    }

    static constexpr u32 kNotThere = 0xDEADBEEFu;  // what inAllSchemes shows for a key that a set lacks
};
