// A whole camera on the desk: a device root from the sample tree, a simulated camera, and the library on the Linux platform.
#pragma once

#include "platform/Clock.h"
#include "platform/MachineInfo.h"
#include "platform/ModuleConfigure.h"
#include "sensor/ISensorController.h"
#include "sensor/Keys.h"
#include "simcam/Camera.h"
#include "tests/support/SensorControllerProbe.h"
#include "tests/support/TestRoot.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

// One channel of the camera: what a host does with it.
class Channel {
public:
    Channel(const ModuleConfigure& p_objModule, simcam::Camera& p_objCamera, int p_nChannel)
        : m_objModule(p_objModule) {
        controller.setChannelID(p_nChannel);
        controller.setVideoStreamModule(&p_objCamera.video());
    }
    ~Channel() { controller.uinit(); }

    bool init() { return controller.init(m_objModule); }

    ISensorController controller;
    SensorControllerProbe probe{controller};

private:
    ModuleConfigure m_objModule;
};

class WholeCamera : public testing::Test {
protected:
    // Lays the sample tree out, with the variant's files over it ("" for none).
    void layOut(const std::string& p_strVariant) {
        namespace fs = std::filesystem;
        constexpr auto kOver = fs::copy_options::recursive | fs::copy_options::overwrite_existing;
        const fs::path source(ROOTFS);
        for (const char* szFolder : {"mnt", "hd1"}) {
            fs::copy(source / szFolder, fs::path(root.path()) / szFolder, kOver);
        }
        if (!p_strVariant.empty()) {
            fs::copy(source / "variants" / p_strVariant, root.path(), kOver);
        }
        ASSERT_TRUE(SystemInfoParser::parseMachineInfo("/mnt/mtd/code/factory_setting/machineinfo.ini", machine));
        ASSERT_TRUE(ModuleConfigureParser::parse("/hd1/moduleConfig/moduleConfig.xml", machine.getHardwareModel(),
                                                 machine.getHardwareCode(), modules));
        ASSERT_FALSE(modules.empty());
    }

    // The channel that the n-th module of the camera serves.
    std::unique_ptr<Channel> channel(std::size_t p_nModule) {
        return std::make_unique<Channel>(modules.at(p_nModule), camera, static_cast<int>(p_nModule) + 1);
    }

    // What the driver and the video module were told since the last call, without times: sets and notifications only.
    std::vector<std::string> told() {
        std::vector<std::string> vecLines;
        simcam::TranscriptFilter filter;
        filter.setsOnly = true;
        for (const simcam::TranscriptEntry& stEntry : camera.transcript().entries(filter)) {
            vecLines.push_back(simcam::toText(stEntry, false));
        }
        camera.transcript().clear();
        return vecLines;
    }

    std::vector<std::string> failures() {
        std::vector<std::string> vecLines;
        simcam::TranscriptFilter filter;
        filter.failedOnly = true;
        for (const simcam::TranscriptEntry& stEntry : camera.transcript().entries(filter)) {
            vecLines.push_back(simcam::toText(stEntry, false));
        }
        return vecLines;
    }

    // The records of a stored parameter file.
    std::vector<KeyVal> stored(const std::string& p_strName) const {
        const std::string strBytes = root.read(p_strName);
        std::vector<KeyVal> vecRecords(strBytes.size() / sizeof(KeyVal));
        std::memcpy(vecRecords.data(), strBytes.data(), vecRecords.size() * sizeof(KeyVal));
        return vecRecords;
    }

    void store(const std::string& p_strName, const std::vector<KeyVal>& p_vecRecords) const {
        root.write(p_strName,
                   {reinterpret_cast<const char*>(p_vecRecords.data()), p_vecRecords.size() * sizeof(KeyVal)});
    }

    static u32 valueOf(const std::vector<KeyVal>& p_vecRecords, u32 p_nKey) {
        for (const KeyVal& stRecord : p_vecRecords) {
            if (stRecord.key == p_nKey) {
                return stRecord.value;
            }
        }
        return 0xDEADBEEFu;
    }

    static void change(std::vector<KeyVal>& p_vecRecords, u32 p_nKey, u32 p_nValue) {
        for (KeyVal& stRecord : p_vecRecords) {
            stRecord.value = stRecord.key == p_nKey ? p_nValue : stRecord.value;
        }
    }

    static void seconds(int p_nSeconds) { platform::Clock::advance(INT64{p_nSeconds} * 1000000); }

    TestRoot root;
    MachineInfo machine;
    std::vector<ModuleConfigure> modules;
    simcam::Camera camera;
};
