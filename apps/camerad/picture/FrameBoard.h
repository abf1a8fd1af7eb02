// Where the drawing thread of a feed puts its frames and the viewers take them.
//
// It decides when a frame is drawn: only for viewers that take frames, at the rate of the fastest, and at once for a
// snapshot, but never more often than the feed allows. Viewers share it with their feed and may outlive that.
//
// Threads: every function may be called from any thread; awaitTurn and post from the drawing one alone.
#pragma once

#include "apps/camerad/picture/FramePace.h"
#include "apps/camerad/picture/PictureFeed.h"

#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace camerad {

class FrameBoard {
public:
    using Clock = FramePace::Clock;

    explicit FrameBoard(double p_dMostFrames);
    FrameBoard(const FrameBoard&) = delete;
    FrameBoard& operator=(const FrameBoard&) = delete;

    // --- For viewers ---
    // What the board knows of a viewer; only the board works with it between enter and leave.
    struct Looker {
        double dFrames = 0;  // a second
        FramePace objPace;
        std::uint64_t nSeen = 0;    // number of the last frame that it got
        std::uint64_t nWanted = 0;  // least number that it waits for; 0 while it does not wait
    };
    // p_dFrames is taken to the nearest rate that the feed has.
    void enter(Looker& p_stLooker, double p_dFrames);
    void leave(Looker& p_stLooker);
    Frame next(Looker& p_stLooker, std::chrono::milliseconds p_nTime);

    Frame snapshot(std::chrono::milliseconds p_nTime);
    bool isClosed() const;
    void close();
    PictureFeed::Counters counters() const;

    // --- For the drawing thread ---
    // Waits until a frame is to be drawn. False: the feed is closed.
    bool awaitTurn();
    // What became of it: a frame, or none and the reason; the seconds are CPU time.
    void post(Frame p_pFrame, double p_dSeconds, const std::string& p_strWhy);

private:
    // These need the lock.
    Clock::duration period() const;                 // of the fastest viewer
    bool isLookedAt() const;                        // whether a viewer wants another frame
    std::optional<Clock::time_point> turn() const;  // when the next frame is to be drawn; absent when nobody wants one

    const double m_dMostFrames;

    mutable std::mutex m_mutex;            // guards everything below
    std::condition_variable m_condDrawer;  // something is wanted
    std::condition_variable m_condDrawn;   // a frame has come, or the end
    std::vector<Looker*> m_vecLookers;
    FramePace m_objPace;   // of the frames for viewers
    FramePace m_objLimit;  // of all frames
    Frame m_pFrame;
    std::uint64_t m_nBegun = 0;  // numbers of frames, from 1: drawing began
    std::uint64_t m_nEnded = 0;  // drawing ended, well or not
    std::uint64_t m_nDrawn = 0;  // the newest one that is there
    std::uint64_t m_nAsked = 0;  // a snapshot wants this one
    Clock::time_point m_tDrawn;  // the newest one
    bool m_bTaken = true;        // a viewer got the newest one
    bool m_bClosed = false;
    std::string m_strWhy;  // the last one could not be drawn
    PictureFeed::Counters m_stCounters;
};

}  // namespace camerad
