#include "apps/camerad/picture/PictureFeed.h"

#include "apps/camerad/host/Refusal.h"
#include "platform/ImageAdjust.h"
#include "tests/support/TestRoot.h"

#include <gtest/gtest.h>
#include <turbojpeg.h>

#include <cmath>
#include <future>
#include <numeric>
#include <vector>

namespace camerad {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using Clock = std::chrono::steady_clock;

constexpr seconds kPatience{60};  // for what takes milliseconds, on a machine with much else to do
constexpr u32 kBrightness = 34;

struct Decoded {
    int width = 0;
    int height = 0;
    double mean = 0;    // of the levels
    double colour = 0;  // how far red and blue are apart
};

Decoded decoded(const Frame& p_pFrame) {
    Decoded st;
    if (nullptr == p_pFrame) {
        ADD_FAILURE() << "there is no frame";
        return st;
    }
    const auto* const bytes = reinterpret_cast<const unsigned char*>(p_pFrame->data());
    const auto size = static_cast<unsigned long>(p_pFrame->size());
    const std::unique_ptr<void, int (*)(tjhandle)> pDecoder(tjInitDecompress(), tjDestroy);
    int sampling = 0;
    int colours = 0;
    EXPECT_EQ(tjDecompressHeader3(pDecoder.get(), bytes, size, &st.width, &st.height, &sampling, &colours), 0);
    std::vector<unsigned char> pixels(static_cast<std::size_t>(st.width) * static_cast<std::size_t>(st.height) * 3);
    EXPECT_EQ(tjDecompress2(pDecoder.get(), bytes, size, pixels.data(), st.width, 0, st.height, TJPF_RGB, 0), 0);
    st.mean = std::accumulate(pixels.begin(), pixels.end(), 0.0) / static_cast<double>(pixels.size());
    for (std::size_t i = 0; i < pixels.size(); i += 3) {
        st.colour += 3.0 * std::abs(pixels[i] - pixels[i + 2]) / static_cast<double>(pixels.size());
    }
    return st;
}

class PictureFeedTest : public testing::Test {
protected:
    std::unique_ptr<PictureFeed> feed(double p_dMostFrames = 25, int p_nChannel = 1, bool p_bThermal = false) {
        PictureFeed::Settings settings;
        settings.nWidth = 64;
        settings.nHeight = 36;
        settings.dMostFrames = p_dMostFrames;
        return PictureFeed::create(m_objCamera, p_nChannel, p_bThermal, settings);
    }
    void set(u32 p_nCommand, int p_nValue) { EXPECT_EQ(ia_ioctrl_v2(0, p_nCommand, IA_CMD_OPT_SET, &p_nValue), IA_OK); }
    // Looks until so many frames have come; how long that took.
    static double secondsFor(PictureFeed::Viewer& p_objViewer, int p_nFrames) {
        const Clock::time_point begin = Clock::now();
        for (int i = 0; i < p_nFrames; ++i) {
            EXPECT_NE(p_objViewer.next(kPatience), nullptr) << i;
        }
        return std::chrono::duration<double>(Clock::now() - begin).count();
    }

    const TestRoot m_objRoot;
    simcam::Camera m_objCamera;
};

TEST_F(PictureFeedTest, AFrameIsAJpegFileOfTheFeedsSize) {
    const auto pFeed = feed();
    const auto pViewer = pFeed->watch(25);
    for (int i = 0; i < 3; ++i) {
        const Decoded st = decoded(pViewer->next(kPatience));
        EXPECT_EQ(st.width, 64);
        EXPECT_EQ(st.height, 36);
        EXPECT_GT(st.mean, 20);
        EXPECT_LT(st.mean, 235);
    }
}

TEST_F(PictureFeedTest, AValueOfTheDriverIsSeenByTheNextFrames) {
    const auto pFeed = feed();
    const auto pViewer = pFeed->watch(25);
    const double before = decoded(pViewer->next(kPatience)).mean;
    set(kBrightness, 90);
    double after = before;
    for (int i = 0; i < 3 && after < before + 20; ++i) {  // one may have been drawn before the change
        after = decoded(pViewer->next(kPatience)).mean;
    }
    EXPECT_GT(after, before + 20);
}

TEST_F(PictureFeedTest, ASnapshotIsDrawnAfterTheCallBegan) {
    const auto pFeed = feed();
    const double middle = decoded(pFeed->snapshot(kPatience)).mean;
    set(kBrightness, 90);
    EXPECT_GT(decoded(pFeed->snapshot(kPatience)).mean, middle + 20);
    set(kBrightness, 10);
    EXPECT_LT(decoded(pFeed->snapshot(kPatience)).mean, middle - 20);
}

TEST_F(PictureFeedTest, TheSceneAndTheChannelArePartOfThePicture) {
    const auto pLight = feed(25, 1, false);
    const auto pWarmth = feed(25, 2, true);
    EXPECT_GT(decoded(pLight->snapshot(kPatience)).colour, 4);
    EXPECT_LT(decoded(pWarmth->snapshot(kPatience)).colour, 1);
    m_objCamera.scene().setFog(100);
    EXPECT_LT(decoded(pLight->snapshot(kPatience)).colour, 4);
}

TEST_F(PictureFeedTest, NothingIsDrawnWhileNobodyLooks) {
    const auto pFeed = feed(120);
    EXPECT_EQ(pFeed->counters().nFrames, 0U);
    EXPECT_EQ(pFeed->counters().nBytes, 0U);
    {
        const auto pViewer = pFeed->watch(120);
        secondsFor(*pViewer, 2);
        EXPECT_EQ(pFeed->counters().nViewers, 1U);
    }
    EXPECT_EQ(pFeed->counters().nViewers, 0U);
    pFeed->snapshot(kPatience);  // behind what was still being drawn
    const std::uint64_t drawn = pFeed->counters().nFrames;
    secondsFor(*feed()->watch(20), 4);  // many periods
    EXPECT_EQ(pFeed->counters().nFrames, drawn);
    pFeed->snapshot(kPatience);
    EXPECT_EQ(pFeed->counters().nFrames, drawn + 1);
}

TEST_F(PictureFeedTest, NothingIsDrawnForViewersThatTakeNothing) {
    const auto pFeed = feed(120);
    const auto pStuck = pFeed->watch(120);
    ASSERT_NE(pStuck->next(kPatience), nullptr);
    pFeed->snapshot(kPatience);  // behind the one frame that may be drawn in advance
    const std::uint64_t drawn = pFeed->counters().nFrames;
    secondsFor(*feed()->watch(20), 4);
    EXPECT_EQ(pFeed->counters().nFrames, drawn);
}

TEST_F(PictureFeedTest, AViewerThatComesBackGetsAFreshFrame) {
    const auto pFeed = feed(100);
    const auto pViewer = pFeed->watch(100);
    const double before = decoded(pViewer->next(kPatience)).mean;
    pFeed->snapshot(kPatience);
    set(kBrightness, 90);
    secondsFor(*feed()->watch(20), 3);  // several periods of frames that nobody takes
    EXPECT_GT(decoded(pViewer->next(kPatience)).mean, before + 20);
}

TEST_F(PictureFeedTest, ANewViewerGetsAFrameAtOnce) {
    const auto pFeed = feed(100);
    const auto pSlow = pFeed->watch(0.1);
    const double before = decoded(pSlow->next(kPatience)).mean;
    set(kBrightness, 90);
    secondsFor(*feed()->watch(20), 3);
    const auto pNew = pFeed->watch(0.1);
    EXPECT_GT(decoded(pNew->next(seconds(9))).mean, before + 20);  // the row's next frame is due after ten seconds
}

TEST_F(PictureFeedTest, EveryViewerGetsFramesAndTheyAreShared) {
    const auto pFeed = feed(100);
    constexpr int kViewers = 8;
    constexpr int kFrames = 10;
    std::vector<std::future<int>> vecSeen;
    for (int i = 0; i < kViewers; ++i) {
        vecSeen.push_back(std::async(std::launch::async, [&pFeed] {
            const auto pViewer = pFeed->watch(100);
            Frame pLast;
            int nNew = 0;
            for (int j = 0; j < kFrames; ++j) {
                const Frame pFrame = pViewer->next(kPatience);
                nNew += nullptr != pFrame && pFrame != pLast ? 1 : 0;
                pLast = pFrame;
            }
            return nNew;
        }));
    }
    for (std::future<int>& objSeen : vecSeen) {
        EXPECT_EQ(objSeen.get(), kFrames);
    }
    const PictureFeed::Counters counters = pFeed->counters();
    EXPECT_GE(counters.nFrames, static_cast<std::uint64_t>(kFrames));
    EXPECT_LT(counters.nFrames, static_cast<std::uint64_t>(kViewers * kFrames));
    EXPECT_GT(counters.nBytes, counters.nFrames * 300);
    EXPECT_GT(counters.dSeconds, 0);
    EXPECT_EQ(counters.nViewers, 0U);
}

TEST_F(PictureFeedTest, TwoViewersOfOneMomentHoldTheSameBytes) {
    const auto pFeed = feed(0.1);
    const auto pFirst = pFeed->watch(25);
    const auto pSecond = pFeed->watch(25);
    const Frame pFrame = pFirst->next(kPatience);
    ASSERT_NE(pFrame, nullptr);
    EXPECT_EQ(pSecond->next(kPatience), pFrame);
}

TEST_F(PictureFeedTest, AViewersOwnRateIsKept) {
    const auto pFeed = feed(100);
    const auto pFast = pFeed->watch(100);
    const auto pSlow = pFeed->watch(10);
    std::promise<void> objEnough;
    std::future<void> objFast = std::async(std::launch::async, [&, objDone = objEnough.get_future()] {
        do {
            pFast->next(kPatience);
        } while (std::future_status::ready != objDone.wait_for(seconds(0)));
    });
    // From before the first frame on: who is late to look at the clock would find the next one waiting.
    EXPECT_GT(secondsFor(*pSlow, 6), 0.4);  // five tenths of a second, a quarter of one forgiven
    objEnough.set_value();
    objFast.get();
}

TEST_F(PictureFeedTest, ASlowViewerHoldsUpNobody) {
    const auto pFeed = feed(50);
    const auto pSlow = pFeed->watch(0.1);
    const auto pFast = pFeed->watch(50);
    ASSERT_NE(pSlow->next(kPatience), nullptr);
    EXPECT_LT(secondsFor(*pFast, 5), 9);               // the slow one's next frame is due after ten seconds
    EXPECT_EQ(pSlow->next(milliseconds(0)), nullptr);  // there are newer frames, but it is not due
    EXPECT_FALSE(pSlow->isClosed());
}

TEST_F(PictureFeedTest, NoViewerGetsMoreThanTheFeedGives) {
    const auto pFeed = feed(10);
    const auto pViewer = pFeed->watch(1000);
    EXPECT_GT(secondsFor(*pViewer, 6), 0.4);
    EXPECT_LE(pFeed->counters().nFrames, 7U);  // six were taken, one more may be there
}

TEST_F(PictureFeedTest, TheFastestViewerSetsThePace) {
    const auto pFeed = feed(100);
    const auto pSlow = pFeed->watch(1);
    {
        const auto pFast = pFeed->watch(100);
        secondsFor(*pFast, 20);
        EXPECT_GE(pFeed->counters().nFrames, 20U);
    }
    pFeed->snapshot(kPatience);  // behind what was still being drawn
    const std::uint64_t drawn = pFeed->counters().nFrames;
    secondsFor(*pSlow, 3);
    EXPECT_LE(pFeed->counters().nFrames, drawn + 4);
}

TEST_F(PictureFeedTest, ARateThatIsNoneCountsAsTheLeast) {
    const auto pFeed = feed(50);
    for (const double rate : {0.0, -5.0, std::nan("")}) {
        const auto pViewer = pFeed->watch(rate);
        EXPECT_NE(pViewer->next(kPatience), nullptr);
        EXPECT_EQ(pViewer->next(milliseconds(100)), nullptr);
    }
}

TEST_F(PictureFeedTest, ASnapshotThatTakesTooLongIsRefused) {
    PictureFeed::Settings settings;
    settings.nWidth = 1920;
    settings.nHeight = 1080;
    const auto pFeed = PictureFeed::create(m_objCamera, 1, false, settings);
    try {
        pFeed->snapshot(milliseconds(0));
        FAIL() << "it was drawn in no time";
    } catch (const Refusal& refusal) {
        EXPECT_EQ(refusal.kind(), Refusal::Kind::Busy);
        EXPECT_EQ(refusal.type(), "busy");
        EXPECT_EQ(refusal.retryAfter(), 1);
        EXPECT_STREQ(refusal.what(), "The picture was not drawn in time; try again in a second.");
    }
}

TEST_F(PictureFeedTest, AChannelWithoutDriverIsRefusedWithTheReason) {
    const auto pFeed = feed(25, 7);
    const auto pViewer = pFeed->watch(25);
    try {
        pFeed->snapshot(kPatience);
        FAIL() << "there is no such channel";
    } catch (const Refusal& refusal) {
        EXPECT_EQ(refusal.kind(), Refusal::Kind::Failed);
        EXPECT_STREQ(refusal.what(), "The camera cannot draw its picture: the driver has no channel 7.");
    }
    EXPECT_EQ(pViewer->next(milliseconds(0)), nullptr);
    EXPECT_EQ(pFeed->counters().nFrames, 0U);
}

TEST_F(PictureFeedTest, ClosingEndsEveryViewerThatWaits) {
    const auto pFeed = feed(25);
    std::vector<std::unique_ptr<PictureFeed::Viewer>> vecViewers;
    std::vector<std::future<Frame>> vecNext;
    for (int i = 0; i < 4; ++i) {
        vecViewers.push_back(pFeed->watch(0.1));
        ASSERT_NE(vecViewers.back()->next(kPatience), nullptr);
        vecNext.push_back(std::async(
            std::launch::async, [pViewer = vecViewers.back().get()] { return pViewer->next(std::chrono::hours(1)); }));
    }
    pFeed->close();
    for (std::future<Frame>& objNext : vecNext) {
        ASSERT_EQ(objNext.wait_for(seconds(9)), std::future_status::ready);  // a frame would take ten
        EXPECT_EQ(objNext.get(), nullptr);
    }
    EXPECT_TRUE(vecViewers.front()->isClosed());
    EXPECT_EQ(pFeed->watch(25)->next(std::chrono::hours(1)), nullptr);
    EXPECT_THROW(pFeed->snapshot(std::chrono::hours(1)), Refusal);
}

TEST_F(PictureFeedTest, ViewersMayOutliveTheFeed) {
    auto pFeed = feed(25);
    const auto pViewer = pFeed->watch(0.1);
    ASSERT_NE(pViewer->next(kPatience), nullptr);
    std::future<Frame> objNext =
        std::async(std::launch::async, [&] { return pViewer->next(milliseconds(INT64_MAX / 1000000)); });
    pFeed.reset();
    ASSERT_EQ(objNext.wait_for(seconds(9)), std::future_status::ready);
    EXPECT_EQ(objNext.get(), nullptr);
    EXPECT_TRUE(pViewer->isClosed());
}

TEST_F(PictureFeedTest, AFeedEndsWhileItDraws) {
    for (int i = 0; i < 20; ++i) {
        const auto pFeed = feed(120);
        const auto pViewer = pFeed->watch(120);
        for (int j = 0; j < i % 3; ++j) {
            pViewer->next(kPatience);
        }
    }
}

}  // namespace
}  // namespace camerad
