#include "simcam/VideoModule.h"

#include "platform/VelmorTime.h"
#include "simcam/Driver.h"

#include <algorithm>

namespace simcam {
namespace {

constexpr int kNoSuchChannel = -1;

AVStreamParam stream(int p_nId, int p_nEncoder, int p_nWidth, int p_nHeight) {
    AVStreamParam stStream;
    stStream.nStreamId = p_nId;
    stStream.nFrameRate = 25;
    stStream.nEncoderType = p_nEncoder;
    stStream.nVideoWidth = p_nWidth;
    stStream.nVideoHeight = p_nHeight;
    return stStream;
}

}  // namespace

SimVideoModule::SimVideoModule(int p_nChannels, FaultList& p_objFaults, Transcript& p_objTranscript)
    : m_nChannels(std::clamp(p_nChannels, 1, kMaxChannels)),
      m_objFaults(p_objFaults),
      m_objTranscript(p_objTranscript) {
    Channel stChannel;
    stChannel.streams = {stream(0, 0, 1920, 1080), stream(1, 1, 704, 576)};
    m_vecChannels.assign(static_cast<std::size_t>(m_nChannels), stChannel);
}

SimVideoModule::~SimVideoModule() = default;

int SimVideoModule::notifyChange(int p_nChannel, int p_nKey, int p_nValue) {
    Fault stFault;
    const int nFault =
        m_objFaults.onCall(Fault::Target::Notification, p_nChannel, static_cast<u32>(p_nKey), kAny, stFault);
    if (stFault.delayMicroseconds > 0) {
        constexpr INT64 kSecond = 1000000;  // microseconds
        VelmorTime(static_cast<int>(stFault.delayMicroseconds / kSecond),
                   static_cast<int>(stFault.delayMicroseconds % kSecond))
            .wait();
    }
    TranscriptEntry stEntry;
    stEntry.kind = TranscriptEntry::Kind::Notification;
    stEntry.channel = p_nChannel;
    stEntry.command = static_cast<u32>(p_nKey);
    stEntry.before = {p_nValue};
    stEntry.fault = nFault;
    stEntry.result = stFault.result;
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        if (0 == stFault.result && !stFault.silent) {
            const auto result = m_mapResults.find(p_nKey);
            stEntry.result = !exists(p_nChannel) ? kNoSuchChannel : m_mapResults.end() == result ? 0 : result->second;
            if (0 == stEntry.result) {
                m_mapLast[{p_nChannel, p_nKey}] = p_nValue;
            }
        }
        m_objTranscript.append(stEntry);
    }
    m_objTranscript.deliver();
    return stEntry.result;
}

int SimVideoModule::get2ARunRet() {
    const std::lock_guard<std::mutex> guard(m_mutex);
    if (m_nPollsLeft > 0) {
        --m_nPollsLeft;
        return m_nStartupResult;
    }
    return 0;
}

bool SimVideoModule::getAVStreamParam(int p_nChannel, std::vector<AVStreamParam>& p_vecStreams) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    if (!exists(p_nChannel)) {
        return false;
    }
    p_vecStreams = m_vecChannels[static_cast<std::size_t>(p_nChannel - 1)].streams;
    return true;
}

bool SimVideoModule::getLimitedFramesWDRModeParam(int p_nChannel, LimitedFramesWDRModeParam& p_stParam) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    if (!exists(p_nChannel)) {
        return false;
    }
    p_stParam = m_vecChannels[static_cast<std::size_t>(p_nChannel - 1)].limits;
    return true;
}

bool SimVideoModule::setStreams(int p_nChannel, const std::vector<AVStreamParam>& p_vecStreams) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    if (!exists(p_nChannel)) {
        return false;
    }
    m_vecChannels[static_cast<std::size_t>(p_nChannel - 1)].streams = p_vecStreams;
    return true;
}

bool SimVideoModule::setLimits(int p_nChannel, const LimitedFramesWDRModeParam& p_stParam) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    if (!exists(p_nChannel)) {
        return false;
    }
    m_vecChannels[static_cast<std::size_t>(p_nChannel - 1)].limits = p_stParam;
    return true;
}

void SimVideoModule::setResult(int p_nKey, int p_nResult) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_mapResults[p_nKey] = p_nResult;
}

void SimVideoModule::clearResults() {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_mapResults.clear();
}

void SimVideoModule::setStartupPolls(int p_nPolls, int p_nResult) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_nStartupPolls = std::max(0, p_nPolls);
    m_nStartupResult = 0 != p_nResult ? p_nResult : 1;
    m_nPollsLeft = m_nStartupPolls;
}

int SimVideoModule::startupPollsLeft() const {
    const std::lock_guard<std::mutex> guard(m_mutex);
    return m_nPollsLeft;
}

bool SimVideoModule::lastValue(int p_nChannel, int p_nKey, int& p_nValue) const {
    const std::lock_guard<std::mutex> guard(m_mutex);
    const auto last = m_mapLast.find({p_nChannel, p_nKey});
    if (m_mapLast.end() == last) {
        return false;
    }
    p_nValue = last->second;
    return true;
}

int SimVideoModule::fastestStream(int p_nChannel) const {
    const std::lock_guard<std::mutex> guard(m_mutex);
    int nFastest = 0;
    if (exists(p_nChannel)) {
        for (const AVStreamParam& stStream : m_vecChannels[static_cast<std::size_t>(p_nChannel - 1)].streams) {
            nFastest = std::max(nFastest, stStream.nFrameRate);
        }
    }
    return nFastest;
}

void SimVideoModule::powerCycle() {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_mapLast.clear();
    m_nPollsLeft = m_nStartupPolls;
}

bool SimVideoModule::exists(int p_nChannel) const {
    return p_nChannel >= 1 && p_nChannel <= m_nChannels;
}

}  // namespace simcam
