#include "SimulatedCamera.h"

namespace {

class VideoModule : public SimulatedCamera {};

}  // namespace

TEST_F(VideoModule, EachChannelStartsWithAMainAndASubStream) {
    for (int nChannel = 1; nChannel <= simcam::kMaxChannels; ++nChannel) {
        std::vector<AVStreamParam> vecStreams;
        ASSERT_TRUE(camera.video().getAVStreamParam(nChannel, vecStreams));
        ASSERT_EQ(2u, vecStreams.size());
        EXPECT_EQ(0, vecStreams[0].nStreamId);
        EXPECT_EQ(25, vecStreams[0].nFrameRate);
        EXPECT_EQ(0, vecStreams[0].nEncoderType);
        EXPECT_EQ(1080, vecStreams[0].nVideoHeight);
        EXPECT_EQ(1, vecStreams[1].nEncoderType);
        EXPECT_EQ(704, vecStreams[1].nVideoWidth);
        LimitedFramesWDRModeParam stLimits;
        stLimits.nWDRLimit = 9;
        ASSERT_TRUE(camera.video().getLimitedFramesWDRModeParam(nChannel, stLimits));
        EXPECT_EQ(0, stLimits.nWDRLimit);
        EXPECT_EQ(-1, stLimits.nLimitFramesModeId);
    }
}

TEST_F(VideoModule, StreamsAndLimitsBelongToTheirChannel) {
    AVStreamParam stStream;
    stStream.nFrameRate = 60;
    ASSERT_TRUE(camera.video().setStreams(2, {stStream}));
    LimitedFramesWDRModeParam stLimits;
    stLimits.nLimitFramesModeId = 0;
    stLimits.nWDRLimit = 1;
    ASSERT_TRUE(camera.video().setLimits(2, stLimits));
    std::vector<AVStreamParam> vecStreams;
    ASSERT_TRUE(camera.video().getAVStreamParam(2, vecStreams));
    ASSERT_EQ(1u, vecStreams.size());
    EXPECT_EQ(60, vecStreams[0].nFrameRate);
    EXPECT_EQ(60, camera.video().fastestStream(2));
    EXPECT_EQ(25, camera.video().fastestStream(1));
    LimitedFramesWDRModeParam stRead;
    ASSERT_TRUE(camera.video().getLimitedFramesWDRModeParam(2, stRead));
    EXPECT_EQ(1, stRead.nWDRLimit);
    ASSERT_TRUE(camera.video().getLimitedFramesWDRModeParam(1, stRead));
    EXPECT_EQ(0, stRead.nWDRLimit);
}

TEST_F(VideoModule, HasNoOtherChannels) {
    for (const int nChannel : {0, -1, 5}) {
        std::vector<AVStreamParam> vecStreams(3);
        LimitedFramesWDRModeParam stLimits;
        EXPECT_FALSE(camera.video().getAVStreamParam(nChannel, vecStreams));
        EXPECT_EQ(3u, vecStreams.size());
        EXPECT_FALSE(camera.video().getLimitedFramesWDRModeParam(nChannel, stLimits));
        EXPECT_FALSE(camera.video().setStreams(nChannel, {}));
        EXPECT_FALSE(camera.video().setLimits(nChannel, {}));
        EXPECT_EQ(-1, camera.video().notifyChange(nChannel, 34, 1));
        EXPECT_EQ(0, camera.video().fastestStream(nChannel));
    }
}

TEST_F(VideoModule, PipelineIsUpAfterItsPolls) {
    EXPECT_EQ(0, camera.video().get2ARunRet()) << "at once, unless told otherwise";
    camera.video().setStartupPolls(2, 5);
    EXPECT_EQ(5, camera.video().get2ARunRet());
    EXPECT_EQ(1, camera.video().startupPollsLeft());
    EXPECT_EQ(5, camera.video().get2ARunRet());
    EXPECT_EQ(0, camera.video().get2ARunRet());
    EXPECT_EQ(0, camera.video().get2ARunRet());
    camera.powerCycle();
    EXPECT_EQ(5, camera.video().get2ARunRet());
    camera.video().setStartupPolls(1, 0);
    EXPECT_NE(0, camera.video().get2ARunRet()) << "a pipeline that is not up never answers 0";
    camera.video().setStartupPolls(-3);
    EXPECT_EQ(0, camera.video().get2ARunRet());
}

TEST_F(VideoModule, AnswersEachKeyAsItWasTold) {
    camera.video().setResult(2368, 7);
    EXPECT_EQ(7, camera.video().notifyChange(1, 2368, 1));
    EXPECT_EQ(0, camera.video().notifyChange(1, 2370, 1));
    camera.video().setResult(2368, 0);
    EXPECT_EQ(0, camera.video().notifyChange(1, 2368, 1));
    camera.video().setResult(2368, 7);
    camera.video().clearResults();
    EXPECT_EQ(0, camera.video().notifyChange(1, 2368, 1));
}

TEST_F(VideoModule, RemembersTheLastValueThatItTook) {
    int nValue = 0;
    EXPECT_FALSE(camera.video().lastValue(1, 2384, nValue));
    camera.video().notifyChange(1, 2384, 2);
    camera.video().setResult(2384, 7);
    camera.video().notifyChange(1, 2384, 3);
    ASSERT_TRUE(camera.video().lastValue(1, 2384, nValue));
    EXPECT_EQ(2, nValue);
    EXPECT_FALSE(camera.video().lastValue(2, 2384, nValue));
    camera.powerCycle();
    EXPECT_FALSE(camera.video().lastValue(1, 2384, nValue));
}
