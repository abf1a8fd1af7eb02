// A whole controller, a host that calls it with any numbers in any order, and a driver that answers anything.
//
// 1. The first bytes of the input choose the device type, the channel and the detail string; the next one says how many
//    bytes are the host's calls; what follows those is what the driver answers, and, once that has run out, zeros.
// 2. Build a controller on a small style document and make the calls, with its background thread on a held clock.
// 3. The current scheme is always one of the table, the factory scheme or none; after the release there is none, and nothing
//    can be set.
#include "fuzz/support/HostileDriver.h"
#include "platform/Clock.h"
#include "platform/ModuleConfigure.h"
#include "sensor/ISensorController.h"
#include "sensor/Keys.h"
#include "sensor/config/sensor.h"

#include <iterator>

namespace {

constexpr int kMostCalls = 24;  // of one input; bounds its time
constexpr int kLongestShutterList = 30;
constexpr INT64 kSecond = 1000000;  // microseconds
constexpr int kSilent = -1;  // debug level: most of the time would go into the error log; others fuzz the messages
constexpr u32 kDeviceTypes[] = {1, 4, 8, 13, 14, 17, 19, 104, 2};
constexpr const char* kDetails[] = {"", "(max_scheme=2)(isInfrared=17)", "(max_scheme=0)",
                                    "(max_scheme=1)(isInfrared=2)", "(max_scheme=-5)"};

// The parameters of the style document: the windows of a scheme, and those whose handling differs.
constexpr u32 kKeys[] = {
    KEY_SCHEME_MODE,
    KEY_SCHEME_START_HOUR,
    KEY_SCHEME_START_MIN,
    KEY_SCHEME_END_HOUR,
    KEY_SCHEME_END_MIN,
    KEY_BRIGHTNESS,
    KEY_MAX_SHUTTER,
    KEY_DN_MODE,
    KEY_DTN_THR,
    KEY_NTD_THR,
    KEY_DN_SENSITIVITY,
    KEY_DTN_H,
    KEY_NTD_M,
    KEY_IR_SWITCH,
    KEY_IR_MODE,
    KEY_IR_MANUAL_STRG_NEAR,
    KEY_IR_MODE_INTELL,
    KEY_WHITE_SWITCH,
    KEY_WHITE_MODE,
    KEY_WHITE_MODE_INTELL,
    KEY_LIGHT_TYPE,
    KEY_WDR_MODE,
    KEY_MIRROR,
    KEY_BEAWAY,
    KEY_ANTI_SHAKE_SWITCH,
    KEY_TEST_PARAM1,
    KEY_SENSOR_FPS,
    KEY_IMAGES_ADJUST,
    KEY_PANO_ID,
    KEY_PANO_YAW_1,
    KEY_PANO_SAVE,
};

std::string style() {
    std::string strStyle = "<style><tab key=\"all\">";
    for (const u32 nKey : kKeys) {
        strStyle += "<p id=\"" + std::to_string(nKey) + "\" value=\"1\"><c index=\"0\"/><c index=\"1\"/></p>";
    }
    return strStyle + "</tab></style>";
}

void layOut(TestRoot& p_objRoot, u32 p_nDeviceType) {
    static const std::string strStyle = style();
    p_objRoot.debugLevel(kSilent);
    p_objRoot.remove("/mnt/mtd/code/config_file");
    p_objRoot.write("/mnt/mtd/code/config_file/snsversion.cfg", {"\x08\0\0\0", 4});  // the library's own version
    p_objRoot.write("/mnt/mtd/code/factory_setting/machineinfo.ini",
                    "[machine]\ndevicetype=" + std::to_string(p_nDeviceType) + "\nhardwaremodel=M\nhardwarecode=C\n");
    const std::string strFolder = "/hd1/moduleConfig/sensorConfig/style";
    for (const char* szKind : {"", "_dome", "_Thermal"}) {
        p_objRoot.write(strFolder + "/Style" + szKind + ".xml", strStyle);
        p_objRoot.write(strFolder + "Diversity/StyleDiversity" + szKind + ".xml", "<none/>");
    }
}

// A key of the document, or any number.
int key(fuzz::Input& p_objInput) {
    const unsigned int nByte = p_objInput.byte();
    return nByte < std::size(kKeys) ? static_cast<int>(kKeys[nByte]) : static_cast<int>(nByte << 4);
}

// A small number, or one at an end of what an int holds.
int value(fuzz::Input& p_objInput) {
    const unsigned int nByte = p_objInput.byte();
    return nByte < 0xF0 ? static_cast<int>(nByte) : static_cast<int>(nByte << 28);
}

// Any bytes up to a full stop.
std::string text(fuzz::Input& p_objInput) {
    std::string strText;
    for (int nByte = 0; !p_objInput.atEnd() && '.' != (nByte = p_objInput.byte());) {
        strText += static_cast<char>(nByte);
    }
    return strText;
}

void call(ISensorController& p_objController, fuzz::Input& p_objInput, const ModuleConfigure& p_objModule) {
    int nNumber = 0;
    int nOther = 0;
    bool bAnswer = false;
    std::string strText;
    switch (p_objInput.byte() % 26) {
        case 0:
            nNumber = key(p_objInput);
            p_objController.setParameter(nNumber, value(p_objInput), true);
            break;
        case 1:
            nNumber = key(p_objInput);
            p_objController.setParameter(nNumber, value(p_objInput), false);
            break;
        case 2:
            p_objController.setParameters(text(p_objInput), true);
            break;
        case 3:
            p_objController.setParamScheme(value(p_objInput));
            break;
        case 4:
            p_objController.setParamMode(value(p_objInput));
            break;
        case 5:
            platform::Clock::advance(p_objInput.byte() % 4 * kSecond);
            break;
        case 6:
            platform::Clock::hold({2024, 5, 1, p_objInput.byte() % 24, p_objInput.byte() % 60, 0});
            break;
        case 7:
            p_objController.uinit();
            break;
        case 8:
            p_objController.init(p_objModule);
            break;
        case 9:
            p_objController.getUIStyleFile();
            break;
        case 10:
            p_objController.setIRSwitch(value(p_objInput));
            break;
        case 11:
            p_objController.setWhiteSwitch(value(p_objInput));
            break;
        case 12:
            p_objController.getZoomValue(nNumber, nOther);
            break;
        case 13:
            p_objController.getHeatStatus(bAnswer);
            p_objController.getCameraVerInf(strText);
            break;
        case 14:
            p_objController.setIrisValue(value(p_objInput));
            break;
        case 15:
            p_objController.getUILanguageFile(value(p_objInput));
            break;
        case 16:
            p_objController.getParameter(key(p_objInput), nNumber);
            break;
        case 17:
            p_objController.getParameters(text(p_objInput), strText);
            break;
        case 18:
            FUZZ_CHECK(p_objController.getAllParameters(strText) || strText.empty());
            break;
        case 19:
            strText = text(p_objInput);
            p_objController.SensorCheck(strText);
            break;
        case 20:
            p_objController.flush();
            break;
        case 21:
            p_objController.restore(key(p_objInput));
            p_objController.restoreAeMode();
            break;
        case 22:
            p_objController.resetToLastParameters();
            break;
        case 23:
            p_objController.getSensorParamRange(key(p_objInput), nNumber, strText);
            break;
        case 24:
            if (p_objController.getShutterValue(nNumber)) {
                FUZZ_CHECK(0 <= nNumber && nNumber < kLongestShutterList);
            }
            p_objController.setShutterValue(value(p_objInput));
            p_objController.shutterUp();
            p_objController.shutterDown();
            break;
        default:
            p_objController.setLanguageDocuments({{value(p_objInput), text(p_objInput), text(p_objInput)},
                                                  {value(p_objInput), text(p_objInput), text(p_objInput)}});
            break;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* p_pData, std::size_t p_nSize) {
    TestRoot& root = fuzz::root();
    fuzz::Input input(p_pData, p_nSize);
    layOut(root, kDeviceTypes[input.byte() % std::size(kDeviceTypes)]);
    const int nChannel = 1 + input.byte() % 2;
    ModuleConfigure objModule;
    objModule.setDetail(kDetails[input.byte() % std::size(kDetails)]);
    const std::string strCalls = input.bytes(input.byte());
    fuzz::Input calls(reinterpret_cast<const std::uint8_t*>(strCalls.data()), strCalls.size());
    platform::Clock::hold({2024, 5, 1, 12, 0, 0});
    fuzz::driverAnswersFrom(&input);
    {
        ISensorController objController;
        objController.setChannelID(nChannel);
        objController.init(objModule);
        for (int i = 0; i < kMostCalls && !calls.atEnd(); ++i) {
            call(objController, calls, objModule);
            platform::Clock::settle();
            int nScheme = 0;
            FUZZ_CHECK(objController.getParamScheme(nScheme));
            FUZZ_CHECK(-1 <= nScheme && nScheme <= kMaxSchemeSum);
        }
        objController.uinit();
        int nScheme = 0;
        FUZZ_CHECK(objController.getParamScheme(nScheme) && -1 == nScheme);
        FUZZ_CHECK(0 != objController.setParameter(KEY_BRIGHTNESS, 1, true));
    }
    fuzz::driverAnswersFrom(nullptr);
    return 0;
}
