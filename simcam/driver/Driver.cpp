#include "simcam/Driver.h"

#include "platform/Clock.h"
#include "platform/VelmorTime.h"
#include "simcam/VideoModule.h"
#include "simcam/driver/Channel.h"
#include "simcam/driver/Data.h"

#include <algorithm>
#include <mutex>
#include <vector>

namespace simcam {
namespace {

constexpr std::size_t kVersionCharacters = 49;
constexpr INT64 kSecond = 1000000;  // microseconds

void delay(INT64 p_nMicroseconds) {
    if (p_nMicroseconds > 0) {
        // A wait that the end of its thread cuts short only makes the delay shorter.
        VelmorTime(static_cast<int>(p_nMicroseconds / kSecond), static_cast<int>(p_nMicroseconds % kSecond)).wait();
    }
}

}  // namespace

struct Driver::State {
    State(int p_nChannels, const Scene& p_objScene, const SimVideoModule& p_objVideo, FaultList& p_objFaults,
          Transcript& p_objTranscript)
        : scene(p_objScene), video(p_objVideo), faults(p_objFaults), transcript(p_objTranscript) {
        for (int i = 0; i < p_nChannels; ++i) {
            channels.emplace_back(i);
        }
        advanceAll();
    }

    // With the lock. Null for a channel that does not exist.
    Channel* find(int p_nChannel) {
        const bool bExists = p_nChannel >= 0 && p_nChannel < static_cast<int>(channels.size());
        return bExists ? &channels[static_cast<std::size_t>(p_nChannel)] : nullptr;
    }

    // With the lock (scene and video take their own, inside of this one).
    Moment momentOf(int p_nChannel) const {
        const platform::CivilTime stTime = platform::Clock::civilTime();
        Moment stMoment;
        stMoment.now = platform::Clock::monotonicMicroseconds();
        stMoment.secondOfDay = (stTime.hour * 60 + stTime.minute) * 60 + stTime.second;
        stMoment.fastestStream = video.fastestStream(p_nChannel + 1);
        stMoment.scene = scene.state();
        stMoment.strictRanges = strictRanges;
        return stMoment;
    }

    // With the lock. A channel brought up to this moment; null when it does not exist.
    Channel* bringUp(int p_nChannel, Moment& p_stMoment) {
        Channel* const pChannel = find(p_nChannel);
        if (nullptr != pChannel) {
            p_stMoment = momentOf(p_nChannel);
            pChannel->advance(p_stMoment);
        }
        return pChannel;
    }

    void advanceAll() {
        Moment stMoment;
        for (int i = 0; i < static_cast<int>(channels.size()); ++i) {
            bringUp(i, stMoment);
        }
    }

    const Scene& scene;
    const SimVideoModule& video;
    FaultList& faults;
    Transcript& transcript;

    std::mutex mutex;  // guards everything below
    std::vector<Channel> channels;
    bool strictRanges = false;
};

Driver::Driver(int p_nChannels, const Scene& p_objScene, const SimVideoModule& p_objVideo, FaultList& p_objFaults,
               Transcript& p_objTranscript)
    : m_pState(std::make_unique<State>(std::clamp(p_nChannels, 1, kMaxChannels), p_objScene, p_objVideo, p_objFaults,
                                       p_objTranscript)) {}

Driver::~Driver() = default;

int Driver::call(int p_nChannel, u32 p_nCommand, u32 p_nOption, void* p_pData) {
    Fault stFault;
    const int nFault =
        m_pState->faults.onCall(Fault::Target::Driver, p_nChannel, p_nCommand, static_cast<int>(p_nOption), stFault);
    delay(stFault.delayMicroseconds);
    const bool bCarriedOut = 0 == stFault.result && !stFault.silent;

    TranscriptEntry stEntry;
    stEntry.channel = p_nChannel;
    stEntry.command = p_nCommand;
    stEntry.option = p_nOption;
    stEntry.fault = nFault;
    stEntry.result = stFault.result;
    {
        const std::lock_guard<std::mutex> guard(m_pState->mutex);
        stEntry.before = wordsBefore(p_nCommand, p_nOption, p_pData);
        if (bCarriedOut) {
            Moment stMoment;
            Channel* const pChannel = m_pState->bringUp(p_nChannel, stMoment);
            stEntry.result =
                nullptr == pChannel ? IA_ERR_UNSUPPORTED : pChannel->call(stMoment, p_nCommand, p_nOption, p_pData);
            if (IA_OK == stEntry.result) {
                stEntry.after = wordsAfter(p_nCommand, p_nOption, p_pData);
                stEntry.text = textAfter(p_nCommand, p_nOption, p_pData);
            }
        }
        m_pState->transcript.append(stEntry);
    }
    m_pState->transcript.deliver();
    return stEntry.result;
}

void Driver::powerCycle() {
    const std::lock_guard<std::mutex> guard(m_pState->mutex);
    for (Channel& objChannel : m_pState->channels) {
        objChannel.powerCycle();
    }
    m_pState->advanceAll();
}

int Driver::channels() const {
    const std::lock_guard<std::mutex> guard(m_pState->mutex);
    return static_cast<int>(m_pState->channels.size());
}

bool Driver::setSupported(int p_nChannel, u32 p_nCommand, bool p_bSupported) {
    const std::lock_guard<std::mutex> guard(m_pState->mutex);
    Channel* const pChannel = m_pState->find(p_nChannel);
    return nullptr != pChannel && pChannel->setSupported(p_nCommand, p_bSupported);
}

bool Driver::isSupported(int p_nChannel, u32 p_nCommand) const {
    const std::lock_guard<std::mutex> guard(m_pState->mutex);
    const Channel* const pChannel = m_pState->find(p_nChannel);
    return nullptr != pChannel && pChannel->isSupported(p_nCommand);
}

void Driver::setStrictRanges(bool p_bStrict) {
    const std::lock_guard<std::mutex> guard(m_pState->mutex);
    m_pState->strictRanges = p_bStrict;
}

bool Driver::setVersionText(int p_nChannel, const std::string& p_strText) {
    const std::lock_guard<std::mutex> guard(m_pState->mutex);
    Channel* const pChannel = m_pState->find(p_nChannel);
    if (nullptr == pChannel) {
        return false;
    }
    pChannel->setVersionText(p_strText.substr(0, std::min(p_strText.find('\0'), kVersionCharacters)));
    return true;
}

bool Driver::value(int p_nChannel, u32 p_nCommand, int& p_nValue) const {
    const CommandRow* const pRow = findCommand(p_nCommand);
    if (nullptr == pRow || CommandKind::Record == pRow->kind) {
        return false;
    }
    const std::lock_guard<std::mutex> guard(m_pState->mutex);
    Moment stMoment;
    Channel* const pChannel = m_pState->bringUp(p_nChannel, stMoment);
    return nullptr != pChannel && IA_OK == pChannel->call(stMoment, p_nCommand, IA_CMD_OPT_GET, &p_nValue);
}

bool Driver::values(int p_nChannel, const std::vector<u32>& p_vecCommands, std::vector<int>& p_vecValues) const {
    const std::lock_guard<std::mutex> guard(m_pState->mutex);
    Moment stMoment;
    Channel* const pChannel = m_pState->bringUp(p_nChannel, stMoment);
    if (nullptr == pChannel) {
        return false;
    }
    std::vector<int> vecValues;
    for (const u32 nCommand : p_vecCommands) {
        const CommandRow* const pRow = findCommand(nCommand);
        if (nullptr == pRow || CommandKind::Record == pRow->kind) {
            return false;
        }
        int nValue = pRow->powerUp;
        pChannel->call(stMoment, nCommand, IA_CMD_OPT_GET, &nValue);
        vecValues.push_back(nValue);
    }
    p_vecValues = vecValues;
    return true;
}

bool Driver::range(int p_nChannel, u32 p_nCommand, ia_dynamic_params_attr_st& p_stRange) const {
    const std::lock_guard<std::mutex> guard(m_pState->mutex);
    Moment stMoment;
    Channel* const pChannel = m_pState->bringUp(p_nChannel, stMoment);
    return nullptr != pChannel && IA_OK == pChannel->call(stMoment, p_nCommand, IA_CMD_OPT_GET_PARAM_RNAGE, &p_stRange);
}

bool Driver::lens(int p_nChannel, LensState& p_stLens) const {
    const std::lock_guard<std::mutex> guard(m_pState->mutex);
    Moment stMoment;
    const Channel* const pChannel = m_pState->bringUp(p_nChannel, stMoment);
    if (nullptr == pChannel) {
        return false;
    }
    p_stLens = pChannel->lens(stMoment.now);
    return true;
}

bool Driver::temperature(int p_nChannel, double& p_dCelsius) const {
    const std::lock_guard<std::mutex> guard(m_pState->mutex);
    Moment stMoment;
    const Channel* const pChannel = m_pState->bringUp(p_nChannel, stMoment);
    if (nullptr == pChannel) {
        return false;
    }
    p_dCelsius = pChannel->celsius();
    return true;
}

void Driver::sceneChanged() {
    const std::lock_guard<std::mutex> guard(m_pState->mutex);
    m_pState->advanceAll();
}

}  // namespace simcam
