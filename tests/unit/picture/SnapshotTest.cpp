// From the driver and the scene to what a picture depends on.
#include "tests/unit/simcam/SimulatedCamera.h"

#include "simcam/Picture.h"

namespace {

using simcam::PictureField;
using simcam::PictureParameters;

class PictureSnapshot : public SimulatedCamera {
protected:
    PictureParameters take(int p_nChannel = 0) {
        PictureParameters st;
        EXPECT_TRUE(simcam::takePictureParameters(camera.driver(), camera.scene(), p_nChannel, false, 1, st));
        return st;
    }

    static std::vector<PictureField> fields() {
        std::size_t nCount = 0;
        const PictureField* const pFields = simcam::pictureFields(nCount);
        return {pFields, pFields + nCount};
    }
};

TEST_F(PictureSnapshot, EachFieldIsOfOneCommandInOrder) {
    u32 nBefore = 0;
    for (const PictureField& stField : fields()) {
        EXPECT_GT(stField.command, nBefore);
        EXPECT_NE(nullptr, simcam::findCommand(stField.command)) << stField.command;
        nBefore = stField.command;
    }
    EXPECT_EQ(73U, fields().size());
}

TEST_F(PictureSnapshot, AFreshCameraGivesThePowerUpValues) {
    const PictureParameters st = take();
    for (const PictureField& stField : fields()) {
        EXPECT_EQ(get(stField.command), st.*stField.member) << stField.command;
        const bool bMoved = 1552 == stField.command;  // auto focus
        if (!bMoved) {
            EXPECT_EQ(PictureParameters().*stField.member, st.*stField.member) << stField.command;
        }
    }
}

TEST_F(PictureSnapshot, EachFieldFollowsItsCommand) {
    ASSERT_EQ(IA_OK, set(1536, 1));
    for (const PictureField& stField : fields()) {
        const simcam::CommandRow* const pRow = simcam::findCommand(stField.command);
        const int nBefore = take().*stField.member;
        const int nOther = nBefore == pRow->max ? pRow->min : pRow->max;
        ASSERT_EQ(IA_OK, set(stField.command, nOther)) << stField.command;
        passSeconds(60);
        EXPECT_EQ(get(stField.command), take().*stField.member) << stField.command;
        EXPECT_NE(nBefore, take().*stField.member) << stField.command;
        ASSERT_EQ(IA_OK, set(stField.command, nBefore)) << stField.command;
        passSeconds(60);
    }
}

TEST_F(PictureSnapshot, ChannelsHaveTheirOwn) {
    ASSERT_EQ(IA_OK, set(34, 70, 1));
    EXPECT_EQ(50, take(0).brightness);
    EXPECT_EQ(70, take(1).brightness);
}

TEST_F(PictureSnapshot, TheSceneIsInIt) {
    ASSERT_TRUE(camera.scene().setLight(12.5));
    ASSERT_TRUE(camera.scene().setSubjectDistance(2.25));
    ASSERT_TRUE(camera.scene().setFog(30));
    ASSERT_TRUE(camera.scene().setWind(70));
    camera.scene().setCar(false);
    PictureParameters st = take();
    EXPECT_EQ(12500, st.milliLux);
    EXPECT_EQ(2250, st.subjectMillimetres);
    EXPECT_EQ(30, st.fogPercent);
    EXPECT_EQ(70, st.windPercent);
    EXPECT_EQ(0, st.car);
    camera.scene().setCar(true);
    EXPECT_EQ(1, take().car);
}

TEST_F(PictureSnapshot, TheTimeIsThatOfThePlatform) {
    const PictureParameters stBefore = take();
    passSeconds(1.5);
    EXPECT_EQ(stBefore.milliseconds + 1500, take().milliseconds);
}

TEST_F(PictureSnapshot, KindAndSeedAreTheCallers) {
    PictureParameters st;
    ASSERT_TRUE(simcam::takePictureParameters(camera.driver(), camera.scene(), 1, true, 77, st));
    EXPECT_EQ(1, st.thermal);
    EXPECT_EQ(77U, st.seed);
}

TEST_F(PictureSnapshot, ALensThatMovesIsCaughtOnItsWay) {
    holdTheLens();
    ASSERT_EQ(IA_OK, set(1568, simcam::kZoomTele));
    passSeconds(1);
    const int nZoom = take().zoomPosition;
    EXPECT_GT(nZoom, simcam::kZoomWide);
    EXPECT_LT(nZoom, simcam::kZoomTele);
}

TEST_F(PictureSnapshot, AChannelThatDoesNotExistGivesNothing) {
    PictureParameters st;
    st.brightness = 99;
    for (const int nChannel : {-1, 4, 1000}) {
        EXPECT_FALSE(simcam::takePictureParameters(camera.driver(), camera.scene(), nChannel, false, 1, st));
    }
    EXPECT_EQ(99, st.brightness);
}

TEST_F(PictureSnapshot, ACommandWithoutSupportCountsAsAfterPowerUp) {
    ASSERT_EQ(IA_OK, set(34, 70));
    ASSERT_TRUE(camera.driver().setSupported(0, 34, false));
    EXPECT_EQ(50, take().brightness);
}

TEST_F(PictureSnapshot, LeavesNoTraceAndObeysNoFault) {
    simcam::Fault stFault;
    stFault.result = -3;
    camera.faults().add(stFault);
    const std::uint64_t nBefore = camera.transcript().total();
    take();
    EXPECT_EQ(nBefore, camera.transcript().total());
}

TEST_F(PictureSnapshot, SeveralValuesAreReadAtOnceOrNotAtAll) {
    std::vector<int> vecValues = {7};
    EXPECT_FALSE(camera.driver().values(0, {34, 35}, vecValues));
    EXPECT_FALSE(camera.driver().values(0, {34, 2496}, vecValues));
    EXPECT_FALSE(camera.driver().values(9, {34}, vecValues));
    EXPECT_EQ(std::vector<int>{7}, vecValues);
    ASSERT_EQ(IA_OK, set(34, 61));
    EXPECT_TRUE(camera.driver().values(0, {2353, 34}, vecValues));
    EXPECT_EQ((std::vector<int>{50, 61}), vecValues);
}

TEST_F(PictureSnapshot, FogAndWindHaveRanges) {
    EXPECT_FALSE(camera.scene().setFog(-1));
    EXPECT_FALSE(camera.scene().setFog(101));
    EXPECT_FALSE(camera.scene().setWind(-1));
    EXPECT_FALSE(camera.scene().setWind(101));
    EXPECT_EQ(0, camera.scene().state().fogPercent);
    EXPECT_EQ(20, camera.scene().state().windPercent);
    EXPECT_TRUE(camera.scene().setFog(100));
    EXPECT_TRUE(camera.scene().setWind(0));
}

TEST_F(PictureSnapshot, ACallOfTheDriverChangesThePicture) {
    simcam::PictureRenderer objRenderer(160, 90);
    simcam::Picture stBefore;
    simcam::Picture stAfter;
    objRenderer.render(take(), stBefore);
    ASSERT_EQ(IA_OK, set(2384, 1));
    objRenderer.render(take(), stAfter);
    EXPECT_NE(stBefore.rgb, stAfter.rgb);
}

}  // namespace
