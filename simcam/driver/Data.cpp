#include "simcam/driver/Data.h"

#include "platform/ImageAdjust.h"
#include "simcam/Commands.h"
#include "simcam/driver/CommandNumbers.h"

#include <algorithm>

namespace simcam {
namespace {

std::vector<int> words(const void* p_pData, std::size_t p_nCount) {
    std::vector<int> vecWords(p_nCount);
    if (vecWords.empty()) {
        return vecWords;
    }
    std::memcpy(vecWords.data(), p_pData, p_nCount * sizeof(int));
    return vecWords;
}

std::vector<int> wordsOfRange(const void* p_pData) {
    const auto stRange = loadRecord<ia_dynamic_params_attr_st>(p_pData);
    std::vector<int> vecWords = {stRange.range_kind, stRange.default_val, stRange.min_val, stRange.max_val};
    const int nItems = std::clamp(stRange.items_cnt, 0, IA_DYNAMIC_ITEMS_MAX);
    vecWords.insert(vecWords.end(), stRange.item, stRange.item + nItems);
    return vecWords;
}

std::vector<int> wordsOfCommands(const void* p_pData) {
    const auto stCommands = loadRecord<ia_dynamic_params_cmds_st>(p_pData);
    const int nCount = std::clamp(stCommands.cmd_cnt, 0, IA_DYNAMIC_CMDS_MAX);
    return std::vector<int>(stCommands.cmd_list, stCommands.cmd_list + nCount);
}

std::size_t wordsOfSet(u32 p_nCommand) {
    switch (p_nCommand) {
        case kDayToNightThreshold:
        case kNightToDayThreshold:
        case kDayNightSensitivity:
            return sizeof(dn_thr_st) / sizeof(int);
        case kDayToNightHour:
        case kDayToNightMinute:
        case kNightToDayHour:
        case kNightToDayMinute:
            return sizeof(dn_time_st) / sizeof(int);
        case kSensorCheck:
            return 3;  // the fourth is the driver's
        case kHeater:
        case kModuleVersion:
        case kDynamicCommands:
            return 0;  // nothing that can be set
        default:
            return 1;
    }
}

}  // namespace

std::vector<int> wordsBefore(u32 p_nCommand, u32 p_nOption, const void* p_pData) {
    if (nullptr == p_pData) {
        return {};
    }
    if (IA_CMD_OPT_GET == p_nOption && kSensorCheck == p_nCommand) {
        return words(p_pData, 3);
    }
    if (IA_CMD_OPT_CORRECT_PARAM == p_nOption) {
        const CommandRow* const pRow = findCommand(p_nCommand);
        const bool bWord = nullptr == pRow || CommandKind::Record != pRow->kind;
        return bWord ? std::vector<int>{loadWord(p_pData)} : std::vector<int>{};
    }
    if (IA_CMD_OPT_SET != p_nOption) {
        return {};
    }
    const std::size_t nWords = wordsOfSet(p_nCommand);
    return 1 == nWords ? std::vector<int>{loadWord(p_pData)} : words(p_pData, nWords);
}

std::vector<int> wordsAfter(u32 p_nCommand, u32 p_nOption, const void* p_pData) {
    switch (p_nOption) {
        case IA_CMD_OPT_SET:
            return {};
        case IA_CMD_OPT_GET_PARAM_RNAGE:
            return wordsOfRange(p_pData);
        case IA_CMD_OPT_GET:
            break;
        default:
            return {loadWord(p_pData)};
    }
    switch (p_nCommand) {
        case kDynamicCommands:
            return wordsOfCommands(p_pData);
        case kSensorCheck:
            return words(p_pData, 4);
        case kHeater:
            return {*static_cast<const unsigned char*>(p_pData)};
        case kModuleVersion:
            return {};
        default:
            return {loadWord(p_pData)};
    }
}

std::string textAfter(u32 p_nCommand, u32 p_nOption, const void* p_pData) {
    const bool bText = kModuleVersion == p_nCommand && IA_CMD_OPT_GET == p_nOption;
    return bText ? static_cast<const char*>(p_pData) : "";
}

}  // namespace simcam
