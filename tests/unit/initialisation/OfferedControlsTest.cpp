// Which optional controls the user interface may show, as the streams of the channel allow.
#include "sensor/style/ShowFlags.h"
#include "tests/unit/initialisation/StartedCamera.h"

namespace {

struct Offer {
    const char* text;
    std::vector<AVStreamParam> streams;
    LimitedFramesWDRModeParam limits;
    const char* model;
    bool showsWDR;
    bool showsBeaway;
};

std::ostream& operator<<(std::ostream& p_stream, const Offer& p_stRow) {
    return p_stream << p_stRow.text;
}

AVStreamParam stream(int p_nFrameRate, int p_nEncoder = 0, int p_nHeight = 1080) {
    return {0, p_nFrameRate, p_nEncoder, 1920, p_nHeight};
}

constexpr LimitedFramesWDRModeParam kNoLimits = {-1, 0};

class OfferedControls : public StartedCamera {
protected:
    bool showsWDR() {
        bool bShow = false;
        EXPECT_TRUE(controller().getShowWDRFalg(bShow));
        return bShow;
    }
    static bool showsBeaway() { return getshowBeawayFalg(); }
};

class OfferedControlsOf : public OfferedControls, public testing::WithParamInterface<Offer> {};

// Writes down the channels that it is asked about.
class AskedModule : public VideoStreamModule {
public:
    std::vector<int> streams;
    std::vector<int> limits;
    int notifyChange(int, int, int) override { return 0; }
    int get2ARunRet() override { return 0; }
    bool getAVStreamParam(int p_nChannel, std::vector<AVStreamParam>&) override {
        streams.push_back(p_nChannel);
        return false;
    }
    bool getLimitedFramesWDRModeParam(int p_nChannel, LimitedFramesWDRModeParam&) override {
        limits.push_back(p_nChannel);
        return false;
    }
};

}  // namespace

TEST_P(OfferedControlsOf, FollowStreamsAndLimits) {
    device(1, GetParam().model);
    camera.streams = GetParam().streams;
    camera.limits = GetParam().limits;
    controller().setVideoStreamModule(&camera);
    controller().setShowWDRFalg(!GetParam().showsWDR);
    setshowBeawayFalg(!GetParam().showsBeaway);
    init();
    EXPECT_EQ(GetParam().showsWDR, showsWDR());
    EXPECT_EQ(GetParam().showsBeaway, showsBeaway());
    setshowBeawayFalg(true);
}

INSTANTIATE_TEST_SUITE_P(
    FrameRates, OfferedControlsOf,
    testing::Values(Offer{"no stream", {}, kNoLimits, "", true, true},
                    Offer{"25 frames", {stream(25)}, kNoLimits, "", true, true},
                    Offer{"30 frames", {stream(30)}, kNoLimits, "", true, true},
                    Offer{"49 frames", {stream(49)}, kNoLimits, "", true, true},
                    Offer{"50 frames", {stream(50)}, kNoLimits, "", false, true},
                    Offer{"51 frames", {stream(51)}, kNoLimits, "", true, true},
                    Offer{"59 frames", {stream(59)}, kNoLimits, "", true, true},
                    Offer{"60 frames", {stream(60)}, kNoLimits, "", false, true},
                    Offer{"120 frames", {stream(120)}, kNoLimits, "", true, true},
                    Offer{"60 frames first", {stream(60), stream(25)}, kNoLimits, "", false, true},
                    Offer{"50 frames last", {stream(25), stream(30), stream(50)}, kNoLimits, "", false, true}));

INSTANTIATE_TEST_SUITE_P(
    SmallPictures, OfferedControlsOf,
    testing::Values(
        Offer{"small picture", {stream(25, 1, 255)}, kNoLimits, "Hi3516AV200", true, false},
        Offer{"small picture, thermal model", {stream(25, 1, 240)}, kNoLimits, "Hi3516AV200Thermal", true, false},
        Offer{"not quite small", {stream(25, 1, 256)}, kNoLimits, "Hi3516AV200", true, true},
        Offer{"small, but by the other encoder", {stream(25, 0, 240)}, kNoLimits, "Hi3516AV200", true, true},
        Offer{"small, but by a third encoder", {stream(25, 2, 240)}, kNoLimits, "Hi3516AV200", true, true},
        Offer{"small on another model", {stream(25, 1, 240)}, kNoLimits, "Hi3516AV300", true, true},
        Offer{"small on a longer model name", {stream(25, 1, 240)}, kNoLimits, "Hi3516AV200X", true, true},
        Offer{"small last", {stream(25), stream(25, 1, 240)}, kNoLimits, "Hi3516AV200", true, false},
        Offer{"small first", {stream(25, 1, 240), stream(25)}, kNoLimits, "Hi3516AV200", true, false},
        Offer{"small and fast", {stream(60, 1, 240)}, kNoLimits, "Hi3516AV200", false, false},
        Offer{"one small, another fast", {stream(25, 1, 240), stream(50)}, kNoLimits, "Hi3516AV200", false, false}));

INSTANTIATE_TEST_SUITE_P(Limits, OfferedControlsOf,
                         testing::Values(Offer{"full rate without wide dynamic range", {}, {0, 1}, "", false, true},
                                         Offer{"full rate with it", {}, {0, 0}, "", true, true},
                                         Offer{"another limit", {}, {0, 2}, "", true, true},
                                         Offer{"another mode", {}, {1, 1}, "", true, true},
                                         Offer{"no mode", {}, {-1, 1}, "", true, true}));

TEST_F(OfferedControls, AreAskedForItsOwnChannel) {
    AskedModule video;
    controller().setChannelID(3);
    controller().setVideoStreamModule(&video);
    init();
    EXPECT_EQ(std::vector<int>{3}, video.streams);
    EXPECT_EQ(std::vector<int>{3}, video.limits);
    EXPECT_TRUE(showsWDR()) << "a module that does not know limits nothing";
    controller().uinit();
    controller().setVideoStreamModule(nullptr);
}

TEST_F(OfferedControls, AreDecidedAfterTheFirstSchemeWasApplied) {
    camera.streams = {stream(60)};
    controller().setVideoStreamModule(&camera);
    style({{KEY_WDR_MODE, 1}});
    init();
    EXPECT_EQ("ia ch0 commands\nvideo ch1 2370 = 0\nvideo ch1 2368 = 1\nia ch0 set 2368 = 1\nvideo ch1 2370 = 1\n",
              camera.text());
    EXPECT_FALSE(showsWDR());
}

// The decision of one start is what the factory set of the next one is made with.
TEST_F(OfferedControls, OfTheStartBeforeDecideWhatTheFactorySetHolds) {
    style({{KEY_EMPTY1, 0}, {KEY_EMPTY2, 0}, {KEY_BRIGHTNESS, 50}});
    camera.streams = {stream(60)};
    controller().setVideoStreamModule(&camera);
    init("(max_scheme=0)");
    EXPECT_EQ((Records{{KEY_BRIGHTNESS, 50}}), setOf(0));
    controller().uinit();
    camera.streams = {stream(25)};
    init("(max_scheme=0)");
    EXPECT_EQ((Records{{KEY_EMPTY1, 0}, {KEY_BRIGHTNESS, 50}}), setOf(0));
    EXPECT_TRUE(showsWDR());
}

TEST_F(OfferedControls, MeantTheLastStartedChannelDecidesAboutBeawayForAll) {
    device(1, "Hi3516AV200");
    camera.streams = {stream(25, 1, 240)};
    controller().setVideoStreamModule(&camera);
    init("(max_scheme=0)");
    EXPECT_FALSE(showsBeaway());
    ISensorController second;
    second.setChannelID(2);
    outputOf([&] { second.init(module("(max_scheme=0)")); });
    EXPECT_TRUE(showsBeaway());
    second.uinit();
}
