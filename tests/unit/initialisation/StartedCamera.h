// A camera whose factory files a test writes before it starts the controller on them.
#pragma once

#include "platform/Clock.h"
#include "platform/ModuleConfigure.h"
#include "sensor/Keys.h"
#include "tests/support/Messages.h"
#include "tests/support/RecordingCamera.h"
#include "tests/support/SensorControllerProbe.h"
#include "tests/support/TestRoot.h"

#include <gtest/gtest.h>

#include <cstring>
#include <optional>
#include <string>
#include <utility>
#include <vector>

class StartedCamera : public testing::Test {
protected:
    static bool isIn(const std::string& p_strPart, const std::string& p_strWhole) {
        return std::string::npos != p_strWhole.find(p_strPart);
    }

    using Records = std::vector<std::pair<u32, u32>>;

    // A factory set: the mode, the window, then image parameters. Its mode is one that asks for switching.
    static Records factory() {
        return {{KEY_SCHEME_MODE, 2},     {KEY_SCHEME_START_HOUR, 0},   {KEY_SCHEME_START_MIN, 0},
                {KEY_SCHEME_END_HOUR, 0}, {KEY_SCHEME_END_MIN, 0},      {KEY_BRIGHTNESS, 50},
                {KEY_DN_MODE, 1},         {KEY_MAX_SHUTTER, 7},         {KEY_METER_AREA, 0},
                {KEY_IR_MODE, 0},         {KEY_IR_MANUAL_STRG_NEAR, 20}};
    }

    // What applying that set to a driver that knows nothing of it sends.
    static std::string applied(const std::string& p_strChannel = "ch0") {
        std::string strText;
        for (const char* szCall : {"34 = 50", "144 = 1", "49 = 7", "96 = 0", "161 = 0", "163 = 20"}) {
            strText += "ia " + p_strChannel + " set " + szCall + "\n";
        }
        return strText;
    }

    static Records with(Records p_vecRecords, u32 p_nKey, u32 p_nValue) {
        for (auto& [nKey, nValue] : p_vecRecords) {
            nValue = nKey == p_nKey ? p_nValue : nValue;
        }
        return p_vecRecords;
    }

    // The content of a parameter file with these records.
    static std::string fileOf(const Records& p_vecRecords) {
        std::string strFile;
        for (const auto& [nKey, nValue] : p_vecRecords) {
            const KeyVal stRecord = {nKey, nValue};
            strFile.append(reinterpret_cast<const char*>(&stRecord), sizeof(stRecord));
        }
        return strFile;
    }

    static Records recordsIn(const std::string& p_strFile) {
        Records vecRecords;
        KeyVal stRecord;
        for (std::size_t nFrom = 0; nFrom + sizeof(stRecord) <= p_strFile.size(); nFrom += sizeof(stRecord)) {
            std::memcpy(&stRecord, p_strFile.data() + nFrom, sizeof(stRecord));
            vecRecords.emplace_back(stRecord.key, stRecord.value);
        }
        return vecRecords;
    }

    static std::string parameterFile(u32 p_nScheme, const std::string& p_strKind = "sensor") {
        return "/mnt/mtd/code/config_file/" + p_strKind + std::to_string(p_nScheme) + ".cfg";
    }

    static constexpr char kVersionFile[] = "/mnt/mtd/code/config_file/snsversion.cfg";
    static constexpr char kMachineInfoFile[] = "/mnt/mtd/code/factory_setting/machineinfo.ini";

    StartedCamera() {
        device(1);
        style(factory());
    }
    ~StartedCamera() override {
        if (m_controller) {
            m_controller->uinit();
        }
    }

    void device(u32 p_nType, const std::string& p_strModel = "", const std::string& p_strCode = "") {
        root.write(kMachineInfoFile, "[machine]\ndevicetype=" + std::to_string(p_nType) +
                                         "\nhardwaremodel=" + p_strModel + "\nhardwarecode=" + p_strCode + "\n");
    }

    // The base style with these parameters, and a diversity document that changes nothing.
    void style(const Records& p_vecRecords, const std::string& p_strEnding = ".xml") {
        std::string strText = "<style><tab key=\"all\">";
        for (const auto& [nKey, nValue] : p_vecRecords) {
            strText += "<p id=\"" + std::to_string(nKey) + "\" value=\"" + std::to_string(nValue) + "\"/>";
        }
        styleText(strText + "</tab></style>", p_strEnding);
    }
    void styleText(const std::string& p_strText, const std::string& p_strEnding = ".xml") {
        root.write("/hd1/moduleConfig/sensorConfig/style/Style" + p_strEnding, p_strText);
        root.write("/hd1/moduleConfig/sensorConfig/styleDiversity/StyleDiversity" + p_strEnding, "<none/>");
    }

    void storedVersion(u32 p_nVersion) {
        root.write(kVersionFile, std::string(reinterpret_cast<const char*>(&p_nVersion), sizeof(p_nVersion)));
    }

    // Parameter files of the library's own version, one for each set.
    void stored(const std::vector<Records>& p_vecSets) {
        storedVersion(8);
        for (u32 i = 0; i < p_vecSets.size(); ++i) {
            root.write(parameterFile(i), fileOf(p_vecSets[i]));
        }
    }

    // The controller reads the machine information when it is made: at the first use.
    ISensorController& controller() {
        if (!m_controller) {
            m_controller.emplace();
        }
        return *m_controller;
    }
    SensorControllerProbe probe() { return SensorControllerProbe(controller()); }

    static ModuleConfigure module(const std::string& p_strDetail) {
        ModuleConfigure objModule;
        objModule.setModuleId(77);
        objModule.setDetail(p_strDetail);
        objModule.setParameters("flip=1");
        return objModule;
    }

    // Starts the controller; the transcript then holds what that took, and the output what it said.
    void init(const std::string& p_strDetail = "(max_scheme=2)") {
        camera.clear();
        output = outputOf([&] { EXPECT_TRUE(controller().init(module(p_strDetail))); });
    }

    Records setOf(u32 p_nScheme) {
        Records vecRecords;
        for (u32 i = 0; i < probe().keyValSum(); ++i) {
            vecRecords.emplace_back(probe().set(p_nScheme)[i].key, probe().set(p_nScheme)[i].value);
        }
        return vecRecords;
    }

    int scheme() {
        int nScheme = -99;
        EXPECT_TRUE(controller().getParamScheme(nScheme));
        return nScheme;
    }

    // One second of the background thread.
    static void letTheThreadRun() { EXPECT_TRUE(platform::Clock::advance(1000000)); }

    TestRoot root;
    RecordingCamera camera;
    std::string output;

private:
    std::optional<ISensorController> m_controller;
};
