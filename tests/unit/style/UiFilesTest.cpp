// The documents that the user interface loads, asked of a controller.
#include "platform/Clock.h"
#include "platform/ModuleConfigure.h"
#include "sensor/style/ShowFlags.h"
#include "technic/QVMutex.h"
#include "tests/support/Messages.h"
#include "tests/support/RecordingCamera.h"
#include "tests/support/SensorControllerProbe.h"
#include "tests/support/TestRoot.h"
#include "tests/unit/style/Documents.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>
#include <thread>

namespace {

using documents::compact;
using messages::anyLine;

// A video module whose pipeline does what a test says at each question.
class Pipeline : public VideoStreamModule {
public:
    std::function<int()> run = [] { return 0; };
    int notifyChange(int, int, int) override { return 0; }
    int get2ARunRet() override { return run(); }
    bool getAVStreamParam(int, std::vector<AVStreamParam>&) override { return true; }
    bool getLimitedFramesWDRModeParam(int, LimitedFramesWDRModeParam&) override { return true; }
};

class UiFiles : public testing::Test {
protected:
    UiFiles() {
        root.write("/mnt/mtd/code/factory_setting/machineinfo.ini", "[machine]\ndevicetype=1\n");
        root.write("/hd1/moduleConfig/sensorConfig/style/Style.xml",
                   "<style><p id='8000' value='0'/><p id='34' value='5'><c index='5'/><c index='6'/></p>"
                   "<p id='10' value='0'/></style>");
        root.write("/hd1/moduleConfig/sensorConfig/styleDiversity/StyleDiversity.xml", "<v/>");
    }
    ~UiFiles() override { controller.uinit(); }

    void init() {
        outputOf([this] { controller.init(ModuleConfigure()); });
        camera.clear();
    }

    // The language table of a host; the controller releases its texts.
    void speak(std::initializer_list<int> p_vecIds) {
        SysConfig& stSysConf = probe.sysConf();
        stSysConf.pLanguageFiles = entries;
        stSysConf.nLanguageSum = 0;
        for (const int nId : p_vecIds) {
            LanguageFileEntry& stEntry = entries[stSysConf.nLanguageSum++];
            const std::string strId = std::to_string(stSysConf.nLanguageSum) + " of " + std::to_string(nId);
            stEntry.nLanguageId = nId;
            stEntry.szCommonFile = strdup(("common " + strId).c_str());
            stEntry.szLanguageFile = strdup(("language " + strId).c_str());
        }
    }

    TestRoot root;
    RecordingCamera camera;
    ISensorController controller;
    SensorControllerProbe probe{controller};
    LanguageFileEntry entries[4] = {};
};

}  // namespace

// --- Style ---

TEST_F(UiFiles, StyleIsTheDynamicStyleOfTheChannel) {
    init();
    camera.dynamicCommands({34});
    camera.range(34, RecordingCamera::rangeOf(6, {6}));
    EXPECT_EQ("<style><p id=\"8000\" value=\"0\" /><p id=\"34\" value=\"6\"><c index=\"6\" /></p></style>",
              compact(controller.getUIStyleFile()));
    EXPECT_EQ("ia ch0 commands\nia ch0 range 34\n", camera.text());
}

TEST_F(UiFiles, StyleFollowsTheDriverAtEachCall) {
    init();
    camera.dynamicCommands({34});
    camera.range(34, RecordingCamera::rangeOf(6, {6}));
    const std::string strFirst = controller.getUIStyleFile();
    camera.range(34, RecordingCamera::rangeOf(5, {5}));
    const std::string strSecond = controller.getUIStyleFile();
    EXPECT_NE(strFirst, strSecond);
    EXPECT_NE(std::string::npos, strSecond.find("<p id=\"34\" value=\"5\">"));
    EXPECT_EQ(2u, camera.linesLike("ia ch0 commands").size());
}

TEST_F(UiFiles, StyleFollowsTheShowFlagOfTheChannel) {
    init();
    controller.setShowWDRFalg(true);
    EXPECT_EQ(std::string::npos, controller.getUIStyleFile().find("id=\"10\""));
    controller.setShowWDRFalg(false);
    EXPECT_NE(std::string::npos, controller.getUIStyleFile().find("id=\"10\""));
}

TEST_F(UiFiles, StyleIsShownAboveDebugLevel) {
    init();
    root.debugLevel(7);
    std::string strStyle;
    const std::string strOut = anyLine(outputOf([&] { strStyle = controller.getUIStyleFile(); }));
    EXPECT_NE(std::string::npos,
              strOut.find(messages::info({"ISensorController.cpp", "getUIStyleFile"}, strStyle + "\n")))
        << strOut;
    root.debugLevel(6);
    EXPECT_EQ(std::string::npos, outputOf([&] { controller.getUIStyleFile(); }).find("<style>"));
}

TEST_F(UiFiles, StyleIsEmptyWhenItCannotBeBuilt) {
    root.write("/hd1/moduleConfig/sensorConfig/style/Style.xml", "no document");
    init();
    EXPECT_EQ("", quietly([this] { return controller.getUIStyleFile(); }));
}

TEST_F(UiFiles, StyleWithoutAVideoModuleComesAtOnce) {
    init();
    const INT64 nBefore = platform::Clock::monotonicMicroseconds();
    const std::string strOut = outputOf([this] { EXPECT_NE("", controller.getUIStyleFile()); });
    EXPECT_EQ("", strOut);
    EXPECT_EQ(nBefore, platform::Clock::monotonicMicroseconds());
}

TEST_F(UiFiles, StyleComesAtOnceWhenThePipelineRuns) {
    init();
    controller.setVideoStreamModule(&camera);
    root.debugLevel(-1);
    const INT64 nBefore = platform::Clock::monotonicMicroseconds();
    const std::string strOut = outputOf([this] { EXPECT_NE("", controller.getUIStyleFile()); });
    EXPECT_EQ("### m_pVideoStreamModule->get2ARunRet() is ok! count = 1\n", strOut);
    EXPECT_EQ(nBefore, platform::Clock::monotonicMicroseconds());
    EXPECT_EQ(1, camera.runRetCalls);
}

TEST_F(UiFiles, StyleWaitsForThePipelineInStepsOfFiftyMilliseconds) {
    init();
    Pipeline pipeline;
    int nCalls = 0;
    pipeline.run = [&nCalls] { return ++nCalls < 4 ? -1 : 0; };
    controller.setVideoStreamModule(&pipeline);
    const INT64 nBefore = platform::Clock::monotonicMicroseconds();
    const std::string strOut = outputOf([this] { EXPECT_NE("", controller.getUIStyleFile()); });
    EXPECT_EQ("### m_pVideoStreamModule->get2ARunRet() is ok! count = 4\n", strOut);
    EXPECT_EQ(3 * 50000, platform::Clock::monotonicMicroseconds() - nBefore);
    EXPECT_EQ(4, nCalls);
    controller.setVideoStreamModule(nullptr);
}

TEST_F(UiFiles, StyleComesAfterASecondAndAHalfWhenThePipelineNeverRuns) {
    init();
    controller.setVideoStreamModule(&camera);
    camera.runRet = 1;
    const INT64 nBefore = platform::Clock::monotonicMicroseconds();
    const std::string strOut = outputOf([this] { EXPECT_NE("", controller.getUIStyleFile()); });
    EXPECT_EQ("", strOut);
    EXPECT_EQ(30 * 50000, platform::Clock::monotonicMicroseconds() - nBefore);
    EXPECT_EQ(30, camera.runRetCalls);
}

TEST_F(UiFiles, StyleComesWithTheThirtiethAttempt) {
    init();
    Pipeline pipeline;
    int nCalls = 0;
    pipeline.run = [&nCalls] { return ++nCalls < 30 ? -1 : 0; };
    controller.setVideoStreamModule(&pipeline);
    EXPECT_EQ("### m_pVideoStreamModule->get2ARunRet() is ok! count = 30\n",
              outputOf([this] { controller.getUIStyleFile(); }));
    controller.setVideoStreamModule(nullptr);
}

TEST_F(UiFiles, StyleBlocksNobodyWhileItWaits) {
    init();
    Pipeline pipeline;
    int nScheme = -7;
    pipeline.run = [&] {
        std::thread([&] { controller.getParamScheme(nScheme); }).join();
        return 0;
    };
    controller.setVideoStreamModule(&pipeline);
    EXPECT_NE("", controller.getUIStyleFile());
    EXPECT_EQ(0, nScheme);
    controller.setVideoStreamModule(nullptr);
}

TEST_F(UiFiles, StyleIsBuiltUnderTheLock) {
    init();
    bool bHeld = false;
    camera.onDriver(IA_CMD_DYNAMIC_PARAMS_CMDS_GET, IA_CMD_OPT_GET, [&](int, void*) {
        bHeld = probe.mutex().unlock(__FILE__, __LINE__);
        return bHeld && probe.mutex().lock(__FILE__, __LINE__) ? 0 : -1;
    });
    controller.getUIStyleFile();
    EXPECT_TRUE(bHeld);
}

// --- Language files ---

TEST_F(UiFiles, LanguageFilesAreThoseOfTheLanguage) {
    init();
    speak({7, 9, 11});
    EXPECT_EQ("common 2 of 9", controller.getUICommonFile(9));
    EXPECT_EQ("language 2 of 9", controller.getUILanguageFile(9));
    EXPECT_EQ("common 3 of 11", controller.getUICommonFile(11));
    EXPECT_EQ("language 3 of 11", controller.getUILanguageFile(11));
}

TEST_F(UiFiles, LanguageFilesOfAnUnknownLanguageAreThoseOfTheFirst) {
    init();
    speak({7, 9});
    EXPECT_EQ("common 1 of 7", controller.getUICommonFile(8));
    EXPECT_EQ("language 1 of 7", controller.getUILanguageFile(-1));
}

TEST_F(UiFiles, LanguageFilesOfALanguageThatStandsTwiceAreThoseOfItsFirstEntry) {
    init();
    speak({7, 9, 9});
    EXPECT_EQ("common 2 of 9", controller.getUICommonFile(9));
    EXPECT_EQ("language 2 of 9", controller.getUILanguageFile(9));
}

TEST_F(UiFiles, LanguageFilesWithoutATableAreEmpty) {
    init();
    EXPECT_EQ("", controller.getUICommonFile(7));
    EXPECT_EQ("", controller.getUILanguageFile(7));
    speak({});
    EXPECT_EQ("", controller.getUICommonFile(7));
    EXPECT_EQ("", controller.getUILanguageFile(7));
}

TEST_F(UiFiles, LanguageFilesWithoutATextAreEmpty) {
    init();
    speak({7});
    std::free(entries[0].szCommonFile);
    entries[0].szCommonFile = nullptr;
    EXPECT_EQ("", controller.getUICommonFile(7));
    EXPECT_EQ("language 1 of 7", controller.getUILanguageFile(7));
}

TEST_F(UiFiles, LanguageFilesTraceTheirLanguageAtDebugLevel) {
    init();
    speak({7});
    root.debugLevel(6);
    EXPECT_EQ(messages::debug({"ISensorController.cpp", "getUICommonFile"}, "LanguageId(9)\n"),
              anyLine(outputOf([this] { controller.getUICommonFile(9); })));
    EXPECT_EQ(messages::debug({"ISensorController.cpp", "getUILanguageFile"}, "LanguageId(9)\n"),
              anyLine(outputOf([this] { controller.getUILanguageFile(9); })));
    root.debugLevel(5);
    EXPECT_EQ("", outputOf([this] { controller.getUILanguageFile(9); }));
}

TEST_F(UiFiles, LanguageFilesWaitForTheLock) {
    init();
    speak({7});
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    for (const bool bCommon : {true, false}) {
        EXPECT_DEATH(
            {
                const QVMutexManager guard(&probe.mutex(), "the test", 7);
                bCommon ? controller.getUICommonFile(7) : controller.getUILanguageFile(7);
            },
            "QVMutex: locked a second time at ISensorController.cpp:[0-9]+ by the thread that locked it at the test:7");
    }
}
