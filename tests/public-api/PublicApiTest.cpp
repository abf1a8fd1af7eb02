// A host that has the public headers and the shared libraries, and nothing else.
#include "platform/Clock.h"
#include "platform/DeviceRoot.h"
#include "platform/ImageAdjust.h"
#include "platform/MachineInfo.h"
#include "platform/ModuleConfigure.h"
#include "sensor/ISensorController.h"
#include "simcam/Camera.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr u32 kBrightness = 34;
constexpr u32 kSaturation = 2337;

// A camera on a copy of the sample tree, on a held clock.
class PublicApiTest : public testing::Test {
protected:
    PublicApiTest() {
        std::string strName = (fs::current_path() / "root-XXXXXX").string();
        EXPECT_NE(nullptr, mkdtemp(strName.data()));
        m_objRoot = strName;
        fs::copy(SAMPLE_TREE, m_objRoot, fs::copy_options::recursive);
        platform::setDeviceRoot(m_objRoot.string());
        platform::Clock::hold({2024, 5, 1, 12, 0, 0});
    }

    ~PublicApiTest() override {
        std::error_code ignored;
        fs::remove_all(m_objRoot, ignored);
    }

    // The first module of the device, as a host finds it.
    ModuleConfigure moduleConfigure() {
        MachineInfo objMachine;
        std::vector<ModuleConfigure> vecModules;
        EXPECT_TRUE(SystemInfoParser::parseMachineInfo("/mnt/mtd/code/factory_setting/machineinfo.ini", objMachine));
        EXPECT_TRUE(ModuleConfigureParser::parse("/hd1/moduleConfig/moduleConfig.xml", objMachine.getHardwareModel(),
                                                 objMachine.getHardwareCode(), vecModules));
        EXPECT_FALSE(vecModules.empty());
        return vecModules.empty() ? ModuleConfigure() : vecModules.front();
    }

    int driverValue(u32 p_nCommand) {
        int nValue = -1;
        EXPECT_TRUE(m_objCamera.driver().value(0, p_nCommand, nValue));
        return nValue;
    }

    fs::path m_objRoot;
    simcam::Camera m_objCamera;
};

TEST_F(PublicApiTest, AHostBuildsUsesAndReleasesAController) {
    ISensorController objController;
    objController.setChannelID(1);
    objController.setVideoStreamModule(&m_objCamera.video());
    ASSERT_TRUE(objController.init(moduleConfigure()));
    EXPECT_TRUE(objController.getSensorStatus());

    EXPECT_EQ(0, objController.setParameter(kBrightness, 61, true));
    EXPECT_EQ(61, driverValue(kBrightness));
    EXPECT_EQ(0, objController.setParameters("(34,62)(2337,90)", true));
    EXPECT_EQ(62, driverValue(kBrightness));
    EXPECT_EQ(90, driverValue(kSaturation));

    int nScheme = -1;
    EXPECT_TRUE(objController.setParamMode(0));
    EXPECT_TRUE(objController.setParamScheme(1));
    EXPECT_TRUE(objController.getParamScheme(nScheme));
    EXPECT_EQ(1, nScheme);
    EXPECT_NE(std::string::npos, objController.getUIStyleFile().find("id=\"34\""));

    objController.uinit();
    EXPECT_NE(0, objController.setParameter(kBrightness, 63, true));
    EXPECT_NE(63, driverValue(kBrightness));
}

TEST_F(PublicApiTest, AControllerComesBackAfterItWasReleased) {
    ISensorController objController;
    objController.setVideoStreamModule(&m_objCamera.video());
    ASSERT_TRUE(objController.init(moduleConfigure()));
    objController.uinit();
    ASSERT_TRUE(objController.init(moduleConfigure()));
    EXPECT_EQ(0, objController.setParameter(kBrightness, 64, false));
    EXPECT_EQ(64, driverValue(kBrightness));
    objController.uinit();
}

TEST_F(PublicApiTest, AControllerThatWasNeverInitialisedIsReleasedQuietly) {
    ISensorController objController;
    EXPECT_FALSE(objController.getSensorStatus());
    objController.uinit();
    EXPECT_NE(0, objController.setParameter(kBrightness, 65, true));
}

TEST_F(PublicApiTest, DirectOperationsReachTheDriverWithoutInit) {
    ISensorController objController;
    objController.setChannelID(1);
    std::string strVersion;
    EXPECT_TRUE(objController.getCameraVerInf(strVersion));
    EXPECT_FALSE(strVersion.empty());
}

}  // namespace
