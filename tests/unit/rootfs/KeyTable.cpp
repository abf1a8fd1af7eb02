#include "tests/unit/rootfs/KeyTable.h"

namespace {

constexpr Route kWord = Route::kWord;
constexpr Route kRecord = Route::kRecord;
constexpr Route kNothing = Route::kNothing;
constexpr Use kStored = Use::kStored;
constexpr Use kMomentary = Use::kMomentary;
constexpr Use kNotice = Use::kNotice;
constexpr Use kInternal = Use::kInternal;

// clang-format off
const std::vector<KeyRow> kKeys = {
    {10,   0,    kNothing, kNotice,    "KEY_EMPTY1"},
    {11,   0,    kNothing, kNotice,    "KEY_EMPTY2"},
    {16,   16,   kWord,    kStored,    "KEY_EXPOSE_MODE"},
    {17,   83,   kWord,    kMomentary, "KEY_IRIS_UP"},
    {18,   84,   kWord,    kMomentary, "KEY_IRIS_DOWN"},
    {34,   34,   kWord,    kStored,    "KEY_BRIGHTNESS"},
    {49,   49,   kWord,    kStored,    "KEY_MAX_SHUTTER"},
    {50,   50,   kWord,    kStored,    "KEY_FIX_SHUTTER"},
    {65,   65,   kWord,    kStored,    "KEY_MAX_GAIN"},
    {66,   66,   kWord,    kStored,    "KEY_FIX_GAIN"},
    {80,   80,   kWord,    kStored,    "KEY_IRIS_SWITCH"},
    {81,   81,   kWord,    kStored,    "KEY_IRIS_SPEED"},
    {82,   82,   kWord,    kStored,    "KEY_IRIS_POSITION"},
    {83,   85,   kWord,    kStored,    "KEY_IRIS_SIZE"},
    {96,   96,   kWord,    kStored,    "KEY_METER_AREA"},
    {112,  112,  kWord,    kStored,    "KEY_HLC_SWITCH"},
    {113,  113,  kWord,    kStored,    "KEY_HLC_STRG"},
    {128,  128,  kWord,    kStored,    "KEY_BLC_SWITCH"},
    {129,  129,  kWord,    kStored,    "KEY_BLC_MODE"},
    {130,  130,  kWord,    kStored,    "KEY_BLC_STRG"},
    {144,  144,  kWord,    kStored,    "KEY_DN_MODE"},
    {145,  145,  kRecord,  kStored,    "KEY_DTN_THR"},
    {146,  146,  kRecord,  kStored,    "KEY_NTD_THR"},
    {147,  147,  kWord,    kStored,    "KEY_DELAY"},
    {149,  149,  kRecord,  kStored,    "KEY_DTN_H"},
    {150,  150,  kRecord,  kStored,    "KEY_DTN_M"},
    {151,  151,  kRecord,  kStored,    "KEY_NTD_H"},
    {152,  152,  kRecord,  kStored,    "KEY_NTD_M"},
    {154,  154,  kRecord,  kStored,    "KEY_DN_SENSITIVITY"},
    {155,  155,  kWord,    kStored,    "KEY_IR_ANTI_OVEREXP"},
    {160,  160,  kWord,    kStored,    "KEY_IR_SWITCH"},
    {161,  161,  kWord,    kStored,    "KEY_IR_MODE"},
    {162,  162,  kWord,    kStored,    "KEY_IR_AUTO_STRG_NEAR"},
    {163,  163,  kWord,    kStored,    "KEY_IR_MANUAL_STRG_NEAR"},
    {164,  164,  kWord,    kStored,    "KEY_IR_AUTO_STRG_MEDIUM"},
    {165,  165,  kWord,    kStored,    "KEY_IR_MANUAL_STRG_MEDIUM"},
    {166,  166,  kWord,    kStored,    "KEY_IR_AUTO_STRG_FAR"},
    {167,  167,  kWord,    kStored,    "KEY_IR_MANUAL_STRG_FAR"},
    {168,  0,    kNothing, kStored,    "KEY_IR_MODE_INTELL"},
    {170,  168,  kWord,    kStored,    "KEY_WHITE_SWITCH"},
    {171,  169,  kWord,    kStored,    "KEY_WHITE_MODE"},
    {172,  170,  kWord,    kStored,    "KEY_WHITE_MANUAL_STRG"},
    {173,  171,  kWord,    kStored,    "KEY_WHITE_MANUAL_STRG_MEDIUM"},
    {174,  172,  kWord,    kStored,    "KEY_WHITE_MANUAL_STRG_FAR"},
    {175,  0,    kNothing, kStored,    "KEY_WHITE_MODE_INTELL"},
    {176,  176,  kWord,    kStored,    "KEY_IN_OUT_SIDE"},
    {190,  0,    kNothing, kInternal,  "KEY_TEST_PARAM1"},
    {191,  0,    kNothing, kInternal,  "KEY_TEST_PARAM2"},
    {192,  0,    kNothing, kInternal,  "KEY_TEST_PARAM3"},
    {193,  0,    kNothing, kInternal,  "KEY_TEST_PARAM4"},
    {200,  0,    kNothing, kStored,    "KEY_IR_MANUAL_STRG_NEAR_INTELL"},
    {201,  0,    kNothing, kStored,    "KEY_IR_MANUAL_STRG_MEDIUM_INTELL"},
    {202,  0,    kNothing, kStored,    "KEY_IR_MANUAL_STRG_FAR_INTELL"},
    {203,  0,    kNothing, kStored,    "KEY_WHITE_MANUAL_STRG_INTELL"},
    {204,  0,    kNothing, kStored,    "KEY_WHITE_MANUAL_STRG_MEDIUM_INTELL"},
    {205,  0,    kNothing, kStored,    "KEY_WHITE_MANUAL_STRG_FAR_INTELL"},
    {224,  224,  kWord,    kStored,    "KEY_LIGHT_TYPE"},
    {768,  768,  kWord,    kStored,    "KEY_WB_MODE"},
    {770,  770,  kWord,    kStored,    "KEY_R_GAIN"},
    {771,  771,  kWord,    kStored,    "KEY_B_GAIN"},
    {1536, 1536, kWord,    kStored,    "KEY_AUTO_FOCUS_MODE"},
    {1537, 1537, kWord,    kStored,    "KEY_AUTO_FOCUS_NEAR_LIMIT"},
    {1538, 1538, kWord,    kStored,    "KEY_AUTO_FOCUS_SENSITIVITY"},
    {1539, 1539, kWord,    kMomentary, "KEY_AUTO_FOCUS_ONCE"},
    {1552, 1552, kWord,    kMomentary, "KEY_MF_POSITION"},
    {1553, 1553, kWord,    kMomentary, "KEY_FOCUS_NEAR"},
    {1554, 1554, kWord,    kMomentary, "KEY_FOCUS_FAR"},
    {1568, 1568, kWord,    kMomentary, "KEY_MZ_POSITION"},
    {1569, 1569, kWord,    kMomentary, "KEY_ZOOM_IN"},
    {1570, 1570, kWord,    kMomentary, "KEY_ZOOM_OUT"},
    {1571, 1571, kWord,    kStored,    "KEY_MZOOM_SPEED"},
    {1584, 1584, kWord,    kStored,    "KEY_DIGITAL_ZOOM"},
    {1616, 1616, kWord,    kMomentary, "KEY_LENS_RESET"},
    {2304, 2304, kWord,    kStored,    "KEY_2D_NR_SWITCH"},
    {2305, 2305, kWord,    kStored,    "KEY_2D_NR_MODE"},
    {2306, 2306, kWord,    kStored,    "KEY_2D_NR_STRG_A"},
    {2307, 2307, kWord,    kStored,    "KEY_2D_NR_STRG_M"},
    {2308, 2308, kWord,    kStored,    "KEY_3D_NR_SWITCH"},
    {2309, 2309, kWord,    kStored,    "KEY_3D_NR_MODE"},
    {2312, 2312, kWord,    kStored,    "KEY_3D_NR_STRG_A"},
    {2313, 2313, kWord,    kStored,    "KEY_3D_NR_STRG_M"},
    {2321, 2321, kWord,    kStored,    "KEY_SHARPNESS"},
    {2337, 2337, kWord,    kStored,    "KEY_SATURATION"},
    {2353, 2353, kWord,    kStored,    "KEY_CONTRAST"},
    {2368, 2368, kWord,    kStored,    "KEY_WDR_MODE"},
    {2369, 2369, kWord,    kStored,    "KEY_WDR_STRG"},
    {2384, 2384, kWord,    kStored,    "KEY_MIRROR"},
    {2385, 2385, kWord,    kStored,    "KEY_BEAWAY"},
    {2400, 2400, kWord,    kStored,    "KEY_DEFLG_SWITCH"},
    {2401, 2401, kWord,    kStored,    "KEY_DEFLG_STRG"},
    {2416, 2416, kWord,    kStored,    "KEY_ANTI_SHAKE_SWITCH"},
    {2417, 2417, kWord,    kStored,    "KEY_ANTI_SHAKE_STRG"},
    {2432, 2432, kWord,    kMomentary, "KEY_CAP_OFF_ADJ_DIRECTION"},
    {2433, 2433, kWord,    kStored,    "KEY_CAP_OFF_ADJ_STEP"},
    {2434, 2434, kWord,    kInternal,  "KEY_CAP_OFF_ADJ_H_MIN"},
    {2435, 2435, kWord,    kInternal,  "KEY_CAP_OFF_ADJ_H_MAX"},
    {2436, 2436, kWord,    kStored,    "KEY_CAP_OFF_ADJ_H_CUR"},
    {2437, 2437, kWord,    kInternal,  "KEY_CAP_OFF_ADJ_V_MIN"},
    {2438, 2438, kWord,    kInternal,  "KEY_CAP_OFF_ADJ_V_MAX"},
    {2439, 2439, kWord,    kStored,    "KEY_CAP_OFF_ADJ_V_CUR"},
    {2497, 2464, kWord,    kMomentary, "KEY_SENSOR_FPS"},
    {2512, 2512, kWord,    kStored,    "KEY_FREEZE"},
    {2528, 2528, kWord,    kStored,    "KEY_GAMMA"},
    {2560, 2560, kWord,    kStored,    "KEY_DN_AF_MODE"},
    {2570, 2048, kWord,    kStored,    "KEY_LDC_SWITCH"},
    {2571, 2064, kWord,    kStored,    "KEY_LDC_STRG"},
    {8000, 0,    kNothing, kStored,    "KEY_SCHEME_MODE"},
    {8001, 0,    kNothing, kStored,    "KEY_SCHEME_START_HOUR"},
    {8002, 0,    kNothing, kStored,    "KEY_SCHEME_START_MIN"},
    {8003, 0,    kNothing, kStored,    "KEY_SCHEME_END_HOUR"},
    {8004, 0,    kNothing, kStored,    "KEY_SCHEME_END_MIN"},
    {8100, 0,    kNothing, kStored,    "KEY_MIXSTREAM_DISTANCE"},
    {8101, 0,    kNothing, kStored,    "KEY_MIXSTREAM_DISTANCE_Y_OFFSET"},
    {8102, 0,    kNothing, kStored,    "KEY_MIXSTREAM_DISTANCE_WIDTH_OFFSET"},
    {8103, 0,    kNothing, kStored,    "KEY_MIXSTREAM_DISTANCE_HEIGHT_OFFSET"},
    {8201, 8201, kWord,    kStored,    "KEY_NONE_COLOR_MODE"},
    {8202, 8202, kWord,    kStored,    "KEY_DVE_MODE"},
    {8203, 8203, kWord,    kStored,    "KEY_AUTO_TIME"},
    {8204, 8204, kWord,    kStored,    "KEY_CONTROL_FFC_MODE"},
    {8205, 8205, kWord,    kStored,    "KEY_IMAGES_ADJUST"},
    {8206, 8206, kWord,    kStored,    "KEY_IMAGES_REGULATE"},
    {8207, 8207, kWord,    kStored,    "KEY_FOCUS_SPEED_LEVEL"},
    {8208, 8208, kWord,    kStored,    "KEY_DVE_TYPE"},
    {8209, 8209, kWord,    kStored,    "KEY_AUTO_TEMPR"},
    {8211, 8211, kWord,    kStored,    "KEY_SHUTTER_ADJUST"},
    {8212, 8212, kWord,    kMomentary, "KEY_BACKGROUND_ADJUST"},
    {8217, 8217, kWord,    kStored,    "KEY_TEMPERATURE_STRIP_SWITCH"},
    {8231, 8231, kWord,    kMomentary, "IA_CMD_UI_SHUTTER_RESET"},
    {9000, 0,    kNothing, kStored,    "KEY_PANO_STITCH_DIST"},
    {9001, 0,    kNothing, kMomentary, "KEY_PANO_SAVE"},
    {9002, 0,    kNothing, kMomentary, "KEY_PANO_RESET"},
    {9003, 0,    kNothing, kMomentary, "KEY_PANO_PREVIEW"},
    {9004, 0,    kNothing, kStored,    "KEY_PANO_ADJUST_EN"},
    {9005, 0,    kNothing, kStored,    "KEY_PANO_ID"},
    {9101, 0,    kNothing, kStored,    "KEY_PANO_ADJUST_EN_1"},
    {9102, 0,    kNothing, kStored,    "KEY_PANO_YAW_1"},
    {9103, 0,    kNothing, kStored,    "KEY_PANO_PITCH_1"},
    {9104, 0,    kNothing, kStored,    "KEY_PANO_ROLL_1"},
    {9105, 0,    kNothing, kStored,    "KEY_PANO_OFFSETX_1"},
    {9106, 0,    kNothing, kStored,    "KEY_PANO_OFFSETY_1"},
    {9201, 0,    kNothing, kStored,    "KEY_PANO_ADJUST_EN_2"},
    {9202, 0,    kNothing, kStored,    "KEY_PANO_YAW_2"},
    {9203, 0,    kNothing, kStored,    "KEY_PANO_PITCH_2"},
    {9204, 0,    kNothing, kStored,    "KEY_PANO_ROLL_2"},
    {9205, 0,    kNothing, kStored,    "KEY_PANO_OFFSETX_2"},
    {9206, 0,    kNothing, kStored,    "KEY_PANO_OFFSETY_2"},
    {9301, 0,    kNothing, kStored,    "KEY_PANO_ADJUST_EN_3"},
    {9302, 0,    kNothing, kStored,    "KEY_PANO_YAW_3"},
    {9303, 0,    kNothing, kStored,    "KEY_PANO_PITCH_3"},
    {9304, 0,    kNothing, kStored,    "KEY_PANO_ROLL_3"},
    {9305, 0,    kNothing, kStored,    "KEY_PANO_OFFSETX_3"},
    {9306, 0,    kNothing, kStored,    "KEY_PANO_OFFSETY_3"},
    {9401, 0,    kNothing, kStored,    "KEY_PANO_ADJUST_EN_4"},
    {9402, 0,    kNothing, kStored,    "KEY_PANO_YAW_4"},
    {9403, 0,    kNothing, kStored,    "KEY_PANO_PITCH_4"},
    {9404, 0,    kNothing, kStored,    "KEY_PANO_ROLL_4"},
    {9405, 0,    kNothing, kStored,    "KEY_PANO_OFFSETX_4"},
    {9406, 0,    kNothing, kStored,    "KEY_PANO_OFFSETY_4"},
};
// clang-format on

const std::vector<LightPair> kPairs = {{161, 168}, {171, 175}, {163, 200}, {165, 201},
                                       {167, 202}, {172, 203}, {173, 204}, {174, 205}};

const std::vector<int> kDynamic = {49, 50, 82, 1537};

}  // namespace

const std::vector<KeyRow>& allKeys() {
    return kKeys;
}

const KeyRow* findKey(int p_nKey) {
    for (const KeyRow& row : kKeys) {
        if (row.key == p_nKey) {
            return &row;
        }
    }
    return nullptr;
}

const std::vector<LightPair>& lightPairs() {
    return kPairs;
}

const std::vector<int>& dynamicKeys() {
    return kDynamic;
}
