#include "tests/support/RecordingCamera.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

RecordingCamera* g_pCamera = nullptr;

constexpr u32 kModuleVersion = 2496;
constexpr u32 kHeater = 1606;
constexpr u32 kSensorCheck = 2816;

// How many 32-bit words a set of this command carries.
std::size_t wordsOfSet(u32 p_nCmd) {
    switch (p_nCmd) {
        case 145:
        case 146:
        case 154:
            return 3;
        case 149:
        case 150:
        case 151:
        case 152:
            return 4;
        case kSensorCheck:
            return 4;
        default:
            return 1;
    }
}

// The data may be a value of a parameter set that another thread writes as a relaxed word.
int wordAt(const void* p_pData, std::size_t p_nIndex) {
    return __atomic_load_n(static_cast<const int*>(p_pData) + p_nIndex, __ATOMIC_RELAXED);
}

void storeWord(void* p_pData, int p_nValue) {
    __atomic_store_n(static_cast<int*>(p_pData), p_nValue, __ATOMIC_RELAXED);
}

}  // namespace

extern "C" int ia_ioctrl_v2(int channel, u32 cmd, u32 opt, void* data) {
    if (nullptr == g_pCamera) {
        std::fprintf(stderr, "ia_ioctrl_v2 called without a RecordingCamera\n");
        std::abort();
    }
    return g_pCamera->ioctrl(channel, cmd, opt, data);
}

RecordingCamera::RecordingCamera() {
    g_pCamera = this;
}

RecordingCamera::~RecordingCamera() {
    g_pCamera = nullptr;
}

void RecordingCamera::driverHolds(int p_nChannel, u32 p_nCmd, int p_nValue) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_mapValues[{p_nChannel, p_nCmd}] = p_nValue;
}

int RecordingCamera::driverValue(int p_nChannel, u32 p_nCmd) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    return m_mapValues[{p_nChannel, p_nCmd}];
}

void RecordingCamera::driverFails(u32 p_nCmd, u32 p_nOpt, int p_nResult, int p_nTimes) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_mapFaults[{p_nCmd, p_nOpt}] = {p_nResult, p_nTimes};
}

void RecordingCamera::dynamicCommands(const std::vector<u32>& p_vecCmds) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_vecDynamic = p_vecCmds;
}

void RecordingCamera::range(u32 p_nCmd, const ia_dynamic_params_attr_st& p_stRange) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_mapRanges[p_nCmd] = p_stRange;
}

ia_dynamic_params_attr_st RecordingCamera::rangeOf(int p_nDefault, const std::vector<int>& p_vecItems) {
    ia_dynamic_params_attr_st stRange{};
    stRange.default_val = p_nDefault;
    for (const int nItem : p_vecItems) {
        stRange.item[stRange.items_cnt++] = nItem;
    }
    if (!p_vecItems.empty()) {
        stRange.min_val = p_vecItems.front();
        stRange.max_val = p_vecItems.back();
    }
    return stRange;
}

void RecordingCamera::onDriver(u32 p_nCmd, u32 p_nOpt, Answer p_fnAnswer) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_mapAnswers[{p_nCmd, p_nOpt}] = std::move(p_fnAnswer);
}

void RecordingCamera::videoFails(int p_nKey, int p_nResult) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_mapVideoFaults[p_nKey] = p_nResult;
}

std::vector<std::string> RecordingCamera::transcript() {
    const std::lock_guard<std::mutex> guard(m_mutex);
    return m_vecLines;
}

std::string RecordingCamera::text() {
    std::string strText;
    for (const std::string& strLine : transcript()) {
        strText += strLine + "\n";
    }
    return strText;
}

void RecordingCamera::clear() {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_vecLines.clear();
}

std::vector<std::string> RecordingCamera::linesLike(const std::string& p_strStart) {
    std::vector<std::string> vecLines;
    for (const std::string& strLine : transcript()) {
        if (0 == strLine.compare(0, p_strStart.size(), p_strStart)) {
            vecLines.push_back(strLine);
        }
    }
    return vecLines;
}

void RecordingCamera::record(const std::string& p_strLine) {
    m_vecLines.push_back(p_strLine);
}

int RecordingCamera::ioctrl(int p_nChannel, u32 p_nCmd, u32 p_nOpt, void* p_pData) {
    std::unique_lock<std::mutex> guard(m_mutex);
    static const char* const kOptions[] = {"set", "get", "range", "correct", "status"};
    const std::string strOption = p_nOpt < 5 ? kOptions[p_nOpt] : "option " + std::to_string(p_nOpt);
    std::string strLine = "ia ch" + std::to_string(p_nChannel) + " ";
    strLine += IA_CMD_DYNAMIC_PARAMS_CMDS_GET == p_nCmd ? "commands" : strOption + " " + std::to_string(p_nCmd);

    const bool bSet = IA_CMD_OPT_SET == p_nOpt;
    const int nBefore = IA_CMD_OPT_CORRECT_PARAM == p_nOpt ? wordAt(p_pData, 0) : 0;
    if (bSet) {
        strLine += " =";
        for (std::size_t i = 0; i < wordsOfSet(p_nCmd); ++i) {
            strLine += " " + std::to_string(wordAt(p_pData, i));
        }
    }

    int nResult = IA_OK;
    const auto fault = m_mapFaults.find({p_nCmd, p_nOpt});
    const auto answer = m_mapAnswers.find({p_nCmd, p_nOpt});
    if (m_mapFaults.end() != fault && 0 != fault->second.times) {
        nResult = fault->second.result;
        fault->second.times -= fault->second.times > 0 ? 1 : 0;
    } else if (m_mapAnswers.end() != answer) {
        const Answer fnAnswer = answer->second;
        guard.unlock();
        nResult = fnAnswer(p_nChannel, p_pData);
        guard.lock();
    } else if (bSet) {
        m_mapValues[{p_nChannel, p_nCmd}] = wordAt(p_pData, 0);
    } else if (IA_CMD_DYNAMIC_PARAMS_CMDS_GET == p_nCmd) {
        auto* const pList = static_cast<ia_dynamic_params_cmds_st*>(p_pData);
        pList->cmd_cnt = static_cast<int>(m_vecDynamic.size());
        for (std::size_t i = 0; i < m_vecDynamic.size() && i < IA_DYNAMIC_CMDS_MAX; ++i) {
            pList->cmd_list[i] = m_vecDynamic[i];
        }
    } else if (IA_CMD_OPT_GET_PARAM_RNAGE == p_nOpt) {
        const auto found = m_mapRanges.find(p_nCmd);
        if (m_mapRanges.end() == found) {
            nResult = IA_ERR_UNSUPPORTED;
        } else {
            *static_cast<ia_dynamic_params_attr_st*>(p_pData) = found->second;
        }
    } else if (IA_CMD_OPT_GET == p_nOpt && kModuleVersion == p_nCmd) {
        std::strcpy(static_cast<char*>(p_pData), "recording camera");
    } else if (IA_CMD_OPT_GET == p_nOpt && kHeater == p_nCmd) {
        *static_cast<unsigned char*>(p_pData) = 0 != m_mapValues[{p_nChannel, p_nCmd}];
    } else if (IA_CMD_OPT_GET == p_nOpt || IA_CMD_OPT_GET_EXEC_STATUS == p_nOpt) {
        storeWord(p_pData, m_mapValues[{p_nChannel, p_nCmd}]);
    }

    if (IA_OK != nResult) {
        strLine += " failed " + std::to_string(nResult);
    } else if (IA_CMD_OPT_CORRECT_PARAM == p_nOpt) {
        strLine += ": " + std::to_string(nBefore) + " -> " + std::to_string(wordAt(p_pData, 0));
    } else if (IA_CMD_DYNAMIC_PARAMS_CMDS_GET != p_nCmd && kModuleVersion != p_nCmd &&
               (IA_CMD_OPT_GET == p_nOpt || IA_CMD_OPT_GET_EXEC_STATUS == p_nOpt)) {
        const int nAnswer = kHeater == p_nCmd ? *static_cast<unsigned char*>(p_pData) : wordAt(p_pData, 0);
        strLine += " -> " + std::to_string(nAnswer);
    }
    record(strLine);
    return nResult;
}

int RecordingCamera::notifyChange(int p_nChannel, int p_nKey, int p_nValue) {
    std::unique_lock<std::mutex> guard(m_mutex);
    std::string strLine =
        "video ch" + std::to_string(p_nChannel) + " " + std::to_string(p_nKey) + " = " + std::to_string(p_nValue);
    const auto fault = m_mapVideoFaults.find(p_nKey);
    const int nResult = m_mapVideoFaults.end() == fault ? 0 : fault->second;
    record(0 == nResult ? strLine : strLine + " failed " + std::to_string(nResult));
    guard.unlock();
    if (onNotify) {
        onNotify(p_nChannel, p_nKey, p_nValue);
    }
    return nResult;
}

int RecordingCamera::get2ARunRet() {
    ++runRetCalls;
    return runRet;
}

bool RecordingCamera::getAVStreamParam(int, std::vector<AVStreamParam>& p_vecStreams) {
    p_vecStreams = streams;
    return true;
}

bool RecordingCamera::getLimitedFramesWDRModeParam(int, LimitedFramesWDRModeParam& p_stParam) {
    p_stParam = limits;
    return true;
}
