/// @file
/// The simulated video module: streams, pipeline start-up, notifications.
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

/// The simulated video module: streams, pipeline start-up, notifications.
///
/// Threads: every function may be called from any thread; one lock guards all. Delays of faults and the transcript's
/// observer run without it.
class SIMCAM_API SimVideoModule : public VideoStreamModule {
public:
    /// A module whose pipeline is running. Each channel starts with a main stream (1920 x 1080, encoder 0) and a sub
    /// stream (704 x 576, encoder 1) of 25 frames per second, without limits on wide dynamic range. The parts must
    /// outlive it.
    /// @param p_nChannels      the channels are 1 to p_nChannels
    /// @param p_objFaults      what goes wrong
    /// @param p_objTranscript  where notifications are written down
    SimVideoModule(int p_nChannels, FaultList& p_objFaults, Transcript& p_objTranscript);
    /// No controller may know it any more.
    ~SimVideoModule() override;

    // --- As the sensor library sees it ---

    /// Records the notification.
    /// @param p_nChannel  from 1
    /// @param p_nKey      the parameter
    /// @param p_nValue    its value
    /// @return 0, what setResult or a fault says, or -1 on a channel that does not exist
    int notifyChange(int p_nChannel, int p_nKey, int p_nValue) override;
    int get2ARunRet() override;
    bool getAVStreamParam(int p_nChannel, std::vector<AVStreamParam>& p_vecStreams) override;
    bool getLimitedFramesWDRModeParam(int p_nChannel, LimitedFramesWDRModeParam& p_stParam) override;

    // --- Settings ---

    /// Replaces the streams of a channel.
    /// @param p_nChannel    from 1
    /// @param p_vecStreams  the streams
    /// @return false on a channel that does not exist
    bool setStreams(int p_nChannel, const std::vector<AVStreamParam>& p_vecStreams);
    /// Replaces the limits of a channel.
    /// @param p_nChannel  from 1
    /// @param p_stParam   the limits
    /// @return false on a channel that does not exist
    bool setLimits(int p_nChannel, const LimitedFramesWDRModeParam& p_stParam);
    /// What notifyChange returns for a key.
    /// @param p_nKey     the parameter
    /// @param p_nResult  0 is the ordinary success
    void setResult(int p_nKey, int p_nResult);
    /// Every key succeeds again.
    void clearResults();
    /// Lets the pipeline take its time to start.
    /// @param p_nPolls   so many calls of get2ARunRet return p_nResult, then 0; 0: running at once
    /// @param p_nResult  not 0
    void setStartupPolls(int p_nPolls, int p_nResult = 1);

    // --- Looking ---

    /// How many calls of get2ARunRet are still to fail.
    /// @return 0 when the pipeline is running
    int startupPollsLeft() const;
    /// The value of the latest notification of a key that was taken (result 0).
    /// @param p_nChannel     from 1
    /// @param p_nKey         the parameter
    /// @param[out] p_nValue  the value
    /// @return false when there was none
    bool lastValue(int p_nChannel, int p_nKey, int& p_nValue) const;
    /// The frame rate of the channel's fastest stream.
    /// @param p_nChannel  from 1
    /// @return frames per second, 0 without streams
    int fastestStream(int p_nChannel) const;

    /// Forgets the values taken, and starts the pipeline again as setStartupPolls last said. Settings stay.
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
