// The simulated video module: streams, pipeline start-up, notifications.
//
// Threads: every function may be called from any thread; one lock guards all. Delays of faults and the transcript's
// observer run without it.
#pragma once

#include "platform/VideoStreamModule.h"
#include "simcam/Export.h"
#include "simcam/Faults.h"
#include "simcam/Transcript.h"

#include <map>
#include <mutex>
#include <utility>
#include <vector>

namespace simcam {

class SIMCAM_API SimVideoModule : public VideoStreamModule {
public:
    // Channels from 1 to p_nChannels. Each starts with a main stream (1920 x 1080, encoder 0) and a sub stream (704 x 576,
    // encoder 1) of 25 frames per second, without limits on wide dynamic range. The parts must outlive the module.
    SimVideoModule(int p_nChannels, FaultList& p_objFaults, Transcript& p_objTranscript);
    ~SimVideoModule() override;

    // --- As the sensor library sees it ---
    // Each notification is recorded. -1 on a channel that does not exist.
    int notifyChange(int p_nChannel, int p_nKey, int p_nValue) override;
    int get2ARunRet() override;
    bool getAVStreamParam(int p_nChannel, std::vector<AVStreamParam>& p_vecStreams) override;
    bool getLimitedFramesWDRModeParam(int p_nChannel, LimitedFramesWDRModeParam& p_stParam) override;

    // --- Settings; channels from 1, false on one that does not exist ---
    bool setStreams(int p_nChannel, const std::vector<AVStreamParam>& p_vecStreams);
    bool setLimits(int p_nChannel, const LimitedFramesWDRModeParam& p_stParam);
    // What notifyChange returns for a key; 0 is the ordinary success.
    void setResult(int p_nKey, int p_nResult);
    void clearResults();
    // The next p_nPolls calls of get2ARunRet return p_nResult (not 0), then 0. 0 polls: running at once.
    void setStartupPolls(int p_nPolls, int p_nResult = 1);

    // --- Looking ---
    int startupPollsLeft() const;
    // The value of the latest notification of a key that was taken (result 0). False when there was none.
    bool lastValue(int p_nChannel, int p_nKey, int& p_nValue) const;
    // Frames per second of the channel's fastest stream, 0 without streams.
    int fastestStream(int p_nChannel) const;

    // Forgets the values taken, and starts the pipeline again as setStartupPolls last said. Settings stay.
    void powerCycle();

private:
    struct Channel {
        std::vector<AVStreamParam> streams;
        LimitedFramesWDRModeParam limits;
    };
    bool exists(int p_nChannel) const;

    const int m_nChannels;
    FaultList& m_objFaults;
    Transcript& m_objTranscript;

    mutable std::mutex m_mutex;  // guards everything below
    std::vector<Channel> m_vecChannels;
    std::map<int, int> m_mapResults;
    std::map<std::pair<int, int>, int> m_mapLast;  // (channel, key) to value
    int m_nStartupPolls = 0;
    int m_nStartupResult = 1;
    int m_nPollsLeft = 0;
};

}  // namespace simcam
