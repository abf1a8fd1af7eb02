#include "apps/camerad/picture/PictureFeed.h"

#include "apps/camerad/picture/FrameBoard.h"
#include "simcam/Picture.h"

#include <algorithm>
#include <ctime>
#include <stdexcept>
#include <thread>
#include <vector>

namespace camerad {

namespace {

double threadSeconds() {
    constexpr double kNanosecond = 1e-9;
    timespec stTime{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &stTime);
    return static_cast<double>(stTime.tv_sec) + static_cast<double>(stTime.tv_nsec) * kNanosecond;
}

class BoardViewer : public PictureFeed::Viewer {
public:
    BoardViewer(std::shared_ptr<FrameBoard> p_pBoard, double p_dFrames) : m_pBoard(std::move(p_pBoard)) {
        m_pBoard->enter(m_stLooker, p_dFrames);
    }
    ~BoardViewer() override { m_pBoard->leave(m_stLooker); }
    BoardViewer(const BoardViewer&) = delete;
    BoardViewer& operator=(const BoardViewer&) = delete;

    Frame next(std::chrono::milliseconds p_nTime) override { return m_pBoard->next(m_stLooker, p_nTime); }
    bool isClosed() const override { return m_pBoard->isClosed(); }

private:
    const std::shared_ptr<FrameBoard> m_pBoard;
    FrameBoard::Looker m_stLooker;
};

class DrawnFeed : public PictureFeed {
public:
    DrawnFeed(simcam::Camera& p_objCamera, int p_nChannel, bool p_bThermal, const Settings& p_stSettings)
        : m_objCamera(p_objCamera),
          m_nChannel(p_nChannel),
          m_bThermal(p_bThermal),
          m_stSettings(p_stSettings),
          m_pBoard(std::make_shared<FrameBoard>(p_stSettings.dMostFrames)),
          m_thread([this] { work(); }) {}
    ~DrawnFeed() override {
        m_pBoard->close();
        m_thread.join();
    }
    DrawnFeed(const DrawnFeed&) = delete;
    DrawnFeed& operator=(const DrawnFeed&) = delete;

    std::unique_ptr<Viewer> watch(double p_dFrames) override {
        return std::make_unique<BoardViewer>(m_pBoard, p_dFrames);
    }
    Frame snapshot(std::chrono::milliseconds p_nTime) override { return m_pBoard->snapshot(p_nTime); }
    Counters counters() const override { return m_pBoard->counters(); }
    void close() override { m_pBoard->close(); }

private:
    void work() {
        while (m_pBoard->awaitTurn()) {
            const double dBegin = threadSeconds();
            Frame pFrame;
            std::string strWhy;
            try {
                pFrame = draw();
            } catch (const std::exception& error) {
                strWhy = error.what();
            }
            m_pBoard->post(std::move(pFrame), threadSeconds() - dBegin, strWhy);
        }
    }

    Frame draw() {
        simcam::PictureParameters stParameters;
        if (!simcam::takePictureParameters(m_objCamera.driver(), m_objCamera.scene(), m_nChannel - 1, m_bThermal,
                                           m_stSettings.nSeed, stParameters)) {
            throw std::runtime_error("the driver has no channel " + std::to_string(m_nChannel));
        }
        if (nullptr == m_pRenderer) {
            m_pRenderer = std::make_unique<simcam::PictureRenderer>(m_stSettings.nWidth, m_stSettings.nHeight);
        }
        m_pRenderer->render(stParameters, m_stPicture);
        std::string strWhy;
        if (!simcam::encodeJpeg(m_stPicture, std::clamp(m_stSettings.nQuality, 1, 100), m_vecJpeg, &strWhy)) {
            throw std::runtime_error(strWhy);
        }
        return std::make_shared<const std::string>(m_vecJpeg.begin(), m_vecJpeg.end());
    }

    simcam::Camera& m_objCamera;
    const int m_nChannel;
    const bool m_bThermal;
    const Settings m_stSettings;
    const std::shared_ptr<FrameBoard> m_pBoard;

    // The drawing thread's own, made when somebody looks for the first time.
    std::unique_ptr<simcam::PictureRenderer> m_pRenderer;
    simcam::Picture m_stPicture;
    std::vector<unsigned char> m_vecJpeg;

    std::thread m_thread;  // last: it works with everything above
};

}  // namespace

std::unique_ptr<PictureFeed> PictureFeed::create(simcam::Camera& p_objCamera, int p_nChannel, bool p_bThermal,
                                                 const Settings& p_stSettings) {
    return std::make_unique<DrawnFeed>(p_objCamera, p_nChannel, p_bThermal, p_stSettings);
}

}  // namespace camerad
