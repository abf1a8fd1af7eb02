// The picture as a whole: the same everywhere, whatever it is asked for.
#include "tests/unit/picture/Measured.h"

#include "simcam/Commands.h"

#include <algorithm>
#include <climits>
#include <fstream>
#include <random>
#include <set>
#include <thread>
#include <utility>

namespace {

using simcam::Picture;
using simcam::PictureField;
using simcam::PictureParameters;
using simcam::PictureRenderer;

std::vector<PictureField> fields() {
    std::size_t nCount = 0;
    const PictureField* const pFields = simcam::pictureFields(nCount);
    return {pFields, pFields + nCount};
}

PictureParameters street() {
    PictureParameters st;
    st.milliseconds = 5000;
    st.windPercent = 20;
    return st;
}

unsigned checksumOf(const PictureParameters& p_st) {
    return checksum(Measured(p_st).picture());
}

// Commands whose value no picture shows; docs/picture.md says why, in the same order.
bool isNotDrawn(u32 p_nCommand) {
    constexpr std::pair<u32, u32> kNotDrawn[] = {
        {81, 81},     {1571, 1571}, {8207, 8207},                // how quickly iris, zoom and focus move
        {144, 144},   {147, 147},   {176, 176},   {2560, 2560},  // what is chosen by them has commands of its own
        {1536, 1538}, {1632, 1632},                              // how focus is found; its position is drawn
        {2048, 2048}, {2064, 2064},                              // a lens that distorts nothing
        {8203, 8204}, {8209, 8209}, {8211, 8211},                // a thermal sensor that does not drift
        {2464, 2464}, {8100, 8103}, {9000, 9406},                // more than one picture
        {190, 193},                                              // of the driver's own tests
    };
    return std::any_of(std::begin(kNotDrawn), std::end(kNotDrawn), [&](const std::pair<u32, u32>& p_st) {
        return p_st.first <= p_nCommand && p_nCommand <= p_st.second;
    });
}

// No value that the driver learns to hold is forgotten here.
TEST(Picture, EveryValueOfTheDriverIsDrawnOrIsNotForAReason) {
    std::set<u32> setDrawn;
    for (const PictureField& stField : fields()) {
        setDrawn.insert(stField.command);
    }
    std::size_t nCount = 0;
    const simcam::CommandRow* const pRows = simcam::commandTable(nCount);
    for (std::size_t i = 0; i < nCount; ++i) {
        if (simcam::CommandKind::Value == pRows[i].kind || simcam::CommandKind::Dynamic == pRows[i].kind) {
            EXPECT_NE(isNotDrawn(pRows[i].command), 0 != setDrawn.count(pRows[i].command)) << pRows[i].name;
        }
    }
}

TEST(Picture, IsOfTheSizeThatWasAskedFor) {
    Picture st;
    PictureRenderer().render({}, st);
    EXPECT_EQ(640, st.width);
    EXPECT_EQ(360, st.height);
    EXPECT_EQ(640U * 360U * 3U, st.rgb.size());
    PictureRenderer(33, 19).render({}, st);
    EXPECT_EQ(33U * 19U * 3U, st.rgb.size());
    PictureRenderer(-5, INT_MIN).render({}, st);
    EXPECT_EQ(32, st.width);
    EXPECT_EQ(18, st.height);
}

TEST(Picture, TheSameParametersGiveTheSameBytes) {
    EXPECT_TRUE(Measured(street()) == Measured(street()));
    PictureParameters st = street();
    st.milliseconds += 40;
    EXPECT_FALSE(Measured(street()) == Measured(st));
    st = street();
    st.seed = 2;
    EXPECT_FALSE(Measured(street()) == Measured(st));
}

TEST(Picture, WhatWasDrawnBeforeDoesNotShow) {
    PictureRenderer objRenderer(Measured::kWidth, Measured::kHeight);
    Picture st;
    PictureParameters stOther = street();
    stOther.zoomPosition = simcam::kZoomTele;
    stOther.night = 1;
    stOther.gamma = 3;
    stOther.wideDynamicRange = 1;
    stOther.focusPosition = 9000;
    objRenderer.render(stOther, st);
    stOther.thermal = 1;
    objRenderer.render(stOther, st);
    objRenderer.render(street(), st);
    EXPECT_EQ(checksumOf(street()), checksum(st));
}

// Computed once and written down: every machine must find the same.
TEST(Picture, EveryMachineDrawsTheSameBytes) {
    PictureParameters stNight = street();
    stNight.milliLux = 50;
    stNight.night = 1;
    PictureParameters stFog = street();
    stFog.fogPercent = 60;
    stFog.defog = 1;
    stFog.wideDynamicRange = 1;
    stFog.highlight = 1;
    PictureParameters stTele = street();
    stTele.zoomPosition = 30016;
    stTele.focusPosition = 2500;
    stTele.milliLux = 8000;
    stTele.digitalZoom = 1;
    stTele.mirror = 1;
    PictureParameters stThermal = street();
    stThermal.thermal = 1;
    stThermal.palette = 2;
    EXPECT_EQ(3310339718U, checksumOf(street()));
    EXPECT_EQ(549243049U, checksumOf(stNight));
    EXPECT_EQ(3820594245U, checksumOf(stFog));
    EXPECT_EQ(1341040717U, checksumOf(stTele));
    EXPECT_EQ(1284597511U, checksumOf(stThermal));
}

TEST(Picture, AValueOutsideItsRangeCountsAsTheNearerEnd) {
    const auto draw = [](const PictureParameters& p_st) { return checksum(Measured(p_st, 32, 18).picture()); };
    for (const PictureField& stField : fields()) {
        const simcam::CommandRow* const pRow = simcam::findCommand(stField.command);
        ASSERT_NE(nullptr, pRow) << stField.command;
        PictureParameters st = street();
        st.*stField.member = INT_MAX;
        PictureParameters stEnd = street();
        stEnd.*stField.member = pRow->max;
        EXPECT_EQ(draw(stEnd), draw(st)) << stField.command;
        st.*stField.member = INT_MIN;
        stEnd.*stField.member = pRow->min;
        EXPECT_EQ(draw(stEnd), draw(st)) << stField.command;
    }
    PictureParameters st = street();
    st.milliLux = INT_MAX;
    st.fogPercent = INT_MIN;
    st.windPercent = INT_MAX;
    st.subjectMillimetres = INT_MIN;
    PictureParameters stEnd = street();
    stEnd.milliLux = 200000000;
    stEnd.windPercent = 100;
    stEnd.subjectMillimetres = 10;
    EXPECT_EQ(checksumOf(stEnd), checksumOf(st));
}

TEST(Picture, AnyParametersGiveAPicture) {
    std::mt19937 objChance(7);  // the same numbers on every machine
    PictureRenderer objRenderer(48, 27);
    Picture stPicture;
    for (int i = 0; i < 150; ++i) {
        PictureParameters st;
        for (const PictureField& stField : fields()) {
            st.*stField.member = static_cast<int>(objChance());
            const simcam::CommandRow* const pRow = simcam::findCommand(stField.command);
            if (0 != i % 3) {
                st.*stField.member =
                    pRow->min + static_cast<int>(objChance() % static_cast<unsigned>(pRow->max - pRow->min + 1));
            }
        }
        st.freeze = 0;
        st.milliLux = static_cast<int>(objChance() >> (objChance() % 31));
        st.subjectMillimetres = static_cast<int>(objChance() >> (objChance() % 31));
        st.fogPercent = static_cast<int>(objChance() % 101);
        st.windPercent = static_cast<int>(objChance() % 101);
        st.milliseconds = static_cast<INT64>(objChance()) * (0 == i % 2 ? 1 : -2000000000LL);
        st.seed = static_cast<u32>(objChance());
        st.thermal = 0 == i % 5 ? 1 : 0;
        stPicture.rgb.clear();
        objRenderer.render(st, stPicture);
        EXPECT_EQ(48U * 27U * 3U, stPicture.rgb.size());
    }
}

TEST(Picture, FreezeHoldsTheLastPicture) {
    PictureRenderer objRenderer(Measured::kWidth, Measured::kHeight);
    Picture stFirst;
    Picture stSecond;
    PictureParameters st = street();
    objRenderer.render(st, stFirst);
    st.freeze = 1;
    st.milliseconds += 1000;
    st.brightness = 90;
    objRenderer.render(st, stSecond);
    EXPECT_EQ(checksum(stFirst), checksum(stSecond));
    st.freeze = 0;
    objRenderer.render(st, stSecond);
    EXPECT_NE(checksum(stFirst), checksum(stSecond));
    // Nothing to hold yet.
    st.freeze = 1;
    PictureParameters stMoving = st;
    stMoving.freeze = 0;
    EXPECT_TRUE(Measured(st) == Measured(stMoving));
}

TEST(Picture, RenderersOnTwoThreadsDoNotDisturbEachOther) {
    const unsigned nDay = checksumOf(street());
    PictureParameters stNight = street();
    stNight.night = 1;
    const unsigned nNight = checksumOf(stNight);
    const auto draw = [](const PictureParameters& p_st, unsigned p_nExpected) {
        for (int i = 0; i < 4; ++i) {
            EXPECT_EQ(p_nExpected, checksumOf(p_st));
        }
    };
    std::thread objDay(draw, street(), nDay);
    std::thread objNight(draw, stNight, nNight);
    objDay.join();
    objNight.join();
}

TEST(Picture, TheCarDrivesAlongTheStreet) {
    PictureParameters st = quiet();
    const Measured objEmpty(st);
    st.car = 1;
    st.milliseconds = 5000;
    const Place stHere = {160, 226, 310, 288};
    const Place stThere = {440, 226, 590, 288};
    EXPECT_GT(Measured(st).differenceFrom(objEmpty, stHere), 8);
    EXPECT_LT(Measured(st).differenceFrom(objEmpty, stThere), 5);
    st.milliseconds = 8000;
    EXPECT_LT(Measured(st).differenceFrom(objEmpty, stHere), 5);
    EXPECT_GT(Measured(st).differenceFrom(objEmpty, stThere), 8);
}

// The road behind its windows is more than twenty metres away, the car twelve: what is just sharp enough for one is not
// for the other.
TEST(Picture, TheCarIsAsSharpAsItsOwnDistance) {
    constexpr std::size_t kWidth = 960;
    constexpr int kHeight = 540;
    PictureParameters st = raw(quiet());
    st.zoomPosition = 27264;  // threefold
    st.automaticIris = 0;
    st.irisPosition = 25600;
    st.car = 1;
    st.milliseconds = 5950;  // in the middle of the picture
    // The steepest step of red between neighbours, from one window over the pillar to the other.
    const auto steepest = [&](int p_nFocus) {
        st.focusPosition = p_nFocus;
        const Measured obj(st, static_cast<int>(kWidth), kHeight);
        int nMost = 0;
        for (std::size_t x = kWidth * 44 / 100; x < kWidth * 55 / 100; ++x) {
            const unsigned char* const pPixel = &obj.picture().rgb[3 * (520 * kWidth + x)];
            nMost = std::max(nMost, std::abs(pPixel[3] - pPixel[0]));
        }
        return nMost;
    };
    const int nSharp = steepest(1500);
    const int nRoadIsUnsharp = steepest(1685);
    const int nCarIsUnsharp = steepest(1270);
    EXPECT_EQ(nSharp, nRoadIsUnsharp);
    EXPECT_LT(nCarIsUnsharp, nSharp * 8 / 10);
}

// For a person to look at: the files stay in the folder that the test runs in.
TEST(Picture, SnapshotsForAPersonAreWritten) {
    PictureParameters stFog = street();
    stFog.fogPercent = 75;
    stFog.defog = 1;
    stFog.defogStrength = 90;
    PictureParameters stNight = street();
    stNight.milliLux = 20;
    stNight.night = 1;
    PictureParameters stThermal = street();
    stThermal.thermal = 1;
    stThermal.palette = 2;
    const std::pair<const char*, PictureParameters> arrSnapshots[] = {
        {"day.jpg", street()}, {"fog.jpg", stFog}, {"night.jpg", stNight}, {"thermal.jpg", stThermal}};
    PictureRenderer objRenderer;
    Picture stPicture;
    std::vector<unsigned char> vecJpeg;
    for (const auto& [szName, st] : arrSnapshots) {
        objRenderer.render(st, stPicture);
        ASSERT_TRUE(simcam::encodeJpeg(stPicture, 88, vecJpeg));
        std::ofstream objFile(szName, std::ios::binary);
        objFile.write(reinterpret_cast<const char*>(vecJpeg.data()), static_cast<std::streamsize>(vecJpeg.size()));
        EXPECT_TRUE(objFile.good()) << szName;
    }
}

}  // namespace
