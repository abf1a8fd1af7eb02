// The live picture of one channel for any number of viewers.
//
// One thread a channel draws and encodes, only while somebody looks, and at the rate of the fastest viewer. Viewers share
// the newest frame; one that is slow misses frames and holds up nobody.
//
// Threads: every function may be called from any thread.
#pragma once

#include "simcam/Camera.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

namespace camerad {

using Frame = std::shared_ptr<const std::string>;  // a JPEG file

class PictureFeed {
public:
    struct Settings {
        int nWidth = 640, nHeight = 360;
        int nQuality = 80;
        double dMostFrames = 25;  // a second
        unsigned nSeed = 1;
    };

    // The camera must outlive the feed. p_nChannel from 1.
    static std::unique_ptr<PictureFeed> create(simcam::Camera& p_objCamera, int p_nChannel, bool p_bThermal,
                                               const Settings& p_stSettings);
    virtual ~PictureFeed() = default;  // ends every viewer

    class Viewer {
    public:
        virtual ~Viewer() = default;
        // Blocks until there is a frame newer than the last one that this viewer got, and its rate allows it. Null: the
        // time is over; see isClosed.
        virtual Frame next(std::chrono::milliseconds p_nTime) = 0;
        virtual bool isClosed() const = 0;
    };
    virtual std::unique_ptr<Viewer> watch(double p_dFrames) = 0;

    // A frame drawn after the call began. Throws Refusal (Busy) when that takes longer.
    virtual Frame snapshot(std::chrono::milliseconds p_nTime) = 0;

    struct Counters {
        std::uint64_t nFrames = 0, nBytes = 0;  // drawn and encoded since the start
        double dSeconds = 0;                    // CPU time of it
        std::size_t nViewers = 0;               // now
    };
    virtual Counters counters() const = 0;
    virtual void close() = 0;  // wakes and ends every viewer
};

}  // namespace camerad
