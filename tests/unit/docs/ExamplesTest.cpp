// The examples of the reference: each piece between two marks is shown there. They run on a simulated camera, so an example
// that no longer works is a failed test.
#include "platform/MachineInfo.h"
#include "platform/ModuleConfigure.h"
#include "sensor/ISensorController.h"
#include "simcam/Camera.h"
#include "tests/support/TestRoot.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

using testing::AllOf;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

namespace {

class Examples : public testing::Test {
protected:
    Examples() {
        std::filesystem::copy(SAMPLE_TREE, root.path(),
                              std::filesystem::copy_options::recursive | std::filesystem::copy_options::skip_existing);
    }
    ~Examples() override { controller.uinit(); }

    // The state in which every example but that of init begins.
    void build() {
        std::vector<ModuleConfigure> vecModules;
        ModuleConfigureParser::parse("/hd1/moduleConfig/moduleConfig.xml", "Hi3516AV200", "1001", vecModules);
        ASSERT_FALSE(vecModules.empty());
        controller.setVideoStreamModule(&video);
        ASSERT_TRUE(controller.init(vecModules.front()));
    }

    int driverValue(u32 p_nCommand) {
        int nValue = -1;
        camera.driver().value(0, p_nCommand, nValue);
        return nValue;
    }

    TestRoot root;
    simcam::Camera camera;
    VideoStreamModule& video = camera.video();
    ISensorController controller;
};

TEST_F(Examples, Init) {
    //! [init]
    MachineInfo machine;
    std::vector<ModuleConfigure> modules;
    SystemInfoParser::parseMachineInfo("/mnt/mtd/code/factory_setting/machineinfo.ini", machine);
    ModuleConfigureParser::parse("/hd1/moduleConfig/moduleConfig.xml", machine.getHardwareModel(),
                                 machine.getHardwareCode(), modules);

    controller.setChannelID(1);
    controller.setVideoStreamModule(&video);
    const bool bBuilt = !modules.empty() && controller.init(modules[0]);  // false: no such module, or built already
    //! [init]
    EXPECT_TRUE(bBuilt);
    EXPECT_TRUE(controller.getSensorStatus());
}

TEST_F(Examples, SetParameter) {
    build();
    //! [setParameter]
    const int nBrightness = 34;
    const int nResult = controller.setParameter(nBrightness, 60, true);     // 0: in force, and recorded in the scheme
    const int nRefused = controller.setParameter(nBrightness, 1000, true);  // -34: the driver refuses the value
    //! [setParameter]
    EXPECT_EQ(0, nResult);
    EXPECT_EQ(-34, nRefused);
    EXPECT_EQ(60, driverValue(34));
}

TEST_F(Examples, SetParameters) {
    build();
    //! [setParameters]
    const int nResult = controller.setParameters("(34,60)(2337,90)(2353,1000)", true);
    if (nResult < 0) {
        const int nKey = -nResult;  // 2353; 34 and 2337 have been applied
        //! [setParameters]
        EXPECT_EQ(2353, nKey);
    }
    EXPECT_EQ(60, driverValue(34));
    EXPECT_EQ(90, driverValue(2337));
}

TEST_F(Examples, GetParameter) {
    build();
    //! [getParameter]
    int nBrightness = 0;
    if (controller.getParameter(34, nBrightness)) {
        // 50 on a new camera
    }
    //! [getParameter]
    EXPECT_EQ(50, nBrightness);
}

TEST_F(Examples, GetParameters) {
    build();
    //! [getParameters]
    std::string strPairs;
    controller.getParameters("(34,2337)", strPairs);  // "(34,50)(2337,50)", which setParameters takes
    //! [getParameters]
    EXPECT_EQ("(34,50)(2337,50)", strPairs);
    EXPECT_EQ(0, controller.setParameters(strPairs, true));
}

TEST_F(Examples, Flush) {
    build();
    //! [flush]
    controller.setParameters("(8001,8)(8002,30)(8003,18)(8004,0)", true);  // the scheme's window: 8:30 to 18:00
    const int nResult = controller.flush();  // 0: stored; 505 to 507: the window cannot be, and nothing is stored
    //! [flush]
    EXPECT_EQ(0, nResult);
    EXPECT_EQ(std::string("\x41\x1f\0\0\x08\0\0\0\x42\x1f\0\0\x1e\0\0\0", 16),
              root.read("/mnt/mtd/code/config_file/sensor0.cfg").substr(8, 16));
}

TEST_F(Examples, SetParamScheme) {
    build();
    //! [setParamScheme]
    controller.setParamMode(0);    // the background thread leaves the choice to the host
    controller.setParamScheme(1);  // what differs is sent to the driver
    controller.setParameter(34, 70, true);
    controller.flush();  // stores scheme 1
    //! [setParamScheme]
    controller.setParamScheme(0);
    EXPECT_EQ(50, driverValue(34));
    controller.setParamScheme(1);
    EXPECT_EQ(70, driverValue(34));
    EXPECT_TRUE(root.exists("/mnt/mtd/code/config_file/sensor1.cfg"));
}

TEST_F(Examples, GetSensorParamRange) {
    build();
    //! [getSensorParamRange]
    int nDefault = 0;
    std::string strRange;
    if (controller.getSensorParamRange(49, nDefault, strRange)) {
        // nDefault 7, strRange "7 8 9 ...": the choices of the maximum shutter at this frame rate
    }
    //! [getSensorParamRange]
    EXPECT_EQ(7, nDefault);
    EXPECT_EQ(0u, strRange.find("7 8 9 "));
}

TEST_F(Examples, ShutterUp) {
    build();
    //! [shutterUp]
    int nPlace = 0;
    while (controller.getShutterValue(nPlace) && nPlace < 3 && controller.shutterUp()) {
        // one place further in the driver's list
    }
    //! [shutterUp]
    EXPECT_EQ(3, nPlace);
}

TEST_F(Examples, GetUIStyleFile) {
    build();
    //! [getUIStyleFile]
    const std::string strStyle = controller.getUIStyleFile();
    if (strStyle.empty()) {
        // not initialised, or the documents on flash are damaged: the log says which
    }
    //! [getUIStyleFile]
    EXPECT_THAT(strStyle, HasSubstr("id=\"34\""));
}

TEST_F(Examples, SetLanguageDocuments) {
    build();
    //! [setLanguageDocuments]
    controller.setLanguageDocuments(
        {{1, "<language>English</language>", "<common/>"}, {2, "<language>Deutsch</language>", "<common/>"}});
    const std::string strGerman = controller.getUILanguageFile(2);
    const std::string strFirst = controller.getUILanguageFile(99);  // unknown: that of the first language
    //! [setLanguageDocuments]
    EXPECT_EQ("<language>Deutsch</language>", strGerman);
    EXPECT_EQ("<language>English</language>", strFirst);
}

// The bytes as od -A d -t x1 prints them, indented as on a page.
std::string dumped(const std::string& p_strBytes) {
    std::string strDump;
    char szPart[40];
    for (std::size_t i = 0; i < p_strBytes.size(); ++i) {
        if (0 == i % 16) {
            std::snprintf(szPart, sizeof(szPart), "%s    %07zu", 0 == i ? "" : "\n", i);
            strDump += szPart;
        }
        std::snprintf(szPart, sizeof(szPart), " %02x",
                      static_cast<unsigned>(static_cast<unsigned char>(p_strBytes[i])));
        strDump += szPart;
    }
    std::snprintf(szPart, sizeof(szPart), "\n    %07zu\n", p_strBytes.size());
    return strDump + szPart;
}

TEST_F(Examples, TheFilesOnThePageAreThoseThatTheLibraryWrites) {
    build();
    EXPECT_EQ(0, controller.setParameters("(8001,8)(8002,30)(8003,18)", true));
    EXPECT_EQ(0, controller.setParameter(34, 60, true));
    EXPECT_EQ(0, controller.flush());
    std::ifstream page(FILE_FORMATS_PAGE);
    const std::string strPage{std::istreambuf_iterator<char>(page), {}};
    const std::string strFile = root.read("/mnt/mtd/code/config_file/sensor0.cfg");
    EXPECT_THAT(strPage, HasSubstr(dumped(strFile.substr(0, 56))));
    EXPECT_THAT(strPage, HasSubstr("The file has " + std::to_string(strFile.size()) +
                                   " bytes: " + std::to_string(strFile.size() / 8) + " parameters."));
    EXPECT_THAT(strPage, HasSubstr(dumped(root.read("/mnt/mtd/code/config_file/snsversion.cfg"))));
}

// The block of a page that begins with this comment, without the indentation of the page.
std::string blockOf(const std::string& p_strPage, const std::string& p_strFirstLine) {
    std::ifstream page(p_strPage);
    std::string strBlock;
    bool bInside = false;
    for (std::string strLine; std::getline(page, strLine);) {
        bInside = (bInside && !strLine.empty()) || strLine == "    " + p_strFirstLine;
        strBlock += bInside ? strLine.substr(4) + "\n" : "";
    }
    return strBlock;
}

std::string idsIn(const std::string& p_strBytes) {
    std::string strIds;
    for (std::size_t i = 0; i + 8 <= p_strBytes.size(); i += 8) {
        u32 nKey = 0;
        std::memcpy(&nKey, p_strBytes.data() + i, sizeof(nKey));
        strIds += (strIds.empty() ? "" : ", ") + std::to_string(nKey);
    }
    return strIds;
}

TEST_F(Examples, TheSmallDeviceOfTheStylePageIsWhatThePageSays) {
    const std::string strFolder = "/hd1/moduleConfig/";
    root.write(strFolder + "moduleConfig.xml", blockOf(STYLE_PAGE, "<!-- moduleConfig.xml -->"));
    root.write(strFolder + "sensorConfig/style/Style.xml", blockOf(STYLE_PAGE, "<!-- Style.xml -->"));
    root.write(strFolder + "sensorConfig/styleDiversity/StyleDiversity.xml",
               blockOf(STYLE_PAGE, "<!-- StyleDiversity.xml -->"));
    std::vector<ModuleConfigure> vecModules;
    ASSERT_TRUE(ModuleConfigureParser::parse("/hd1/moduleConfig/moduleConfig.xml", "Small", "", vecModules));
    ASSERT_EQ(1u, vecModules.size());
    controller.setVideoStreamModule(&video);
    ASSERT_TRUE(controller.init(vecModules.front()));
    EXPECT_EQ("", root.errorLog());

    const std::string strStyle = controller.getUIStyleFile();
    EXPECT_THAT(strStyle, AllOf(HasSubstr("key=\"lens\""), HasSubstr("key=\"picture\"")));
    EXPECT_THAT(strStyle, AllOf(Not(HasSubstr("index=\"5\"")), HasSubstr("index=\"7\""),
                                ContainsRegex("id=\"49\"[^>]*value=\"7\"")));
    EXPECT_THAT(strStyle, Not(HasSubstr("id=\"10\"")));
    EXPECT_EQ("8000, 8001, 8002, 8003, 8004, 34, 49, 1571", idsIn(root.read("/mnt/mtd/code/config_file/sensor1.cfg")));
    EXPECT_FALSE(root.exists("/mnt/mtd/code/config_file/sensor2.cfg"));
}

}  // namespace
