// Entries of the transcript as lines of text, and their choice.
#include "platform/ImageAdjust.h"
#include "simcam/Transcript.h"

#include <algorithm>
#include <cstdio>

namespace simcam {
namespace {

std::string timeOfDay(const TranscriptEntry& p_stEntry) {
    constexpr INT64 kSecond = 1000000;  // microseconds
    char szTime[80];
    std::snprintf(szTime, sizeof(szTime), "%02d:%02d:%02d +%lld.%06lld ", p_stEntry.time.hour, p_stEntry.time.minute,
                  p_stEntry.time.second, static_cast<long long>(p_stEntry.microseconds / kSecond),
                  static_cast<long long>(p_stEntry.microseconds % kSecond));
    return szTime;
}

void appendWords(std::string& p_strText, const std::vector<int>& p_vecWords, std::size_t p_nFrom = 0) {
    for (std::size_t i = p_nFrom; i < p_vecWords.size(); ++i) {
        p_strText += " " + std::to_string(p_vecWords[i]);
    }
}

void appendRange(std::string& p_strText, const std::vector<int>& p_vecWords) {
    static const char* const kNames[] = {" kind ", " default ", " min ", " max "};
    for (std::size_t i = 0; i < 4; ++i) {
        p_strText += kNames[i] + std::to_string(p_vecWords[i]);
    }
    if (p_vecWords.size() > 4) {
        p_strText += " items";
        appendWords(p_strText, p_vecWords, 4);
    }
}

std::string printable(const std::string& p_strText) {
    std::string strPrintable = p_strText;
    std::replace_if(
        strPrintable.begin(), strPrintable.end(), [](char p_cByte) { return p_cByte < ' ' || p_cByte > '~'; }, '?');
    return strPrintable;
}

std::string driverCall(const TranscriptEntry& p_stEntry) {
    std::string strText = "ia ch" + std::to_string(p_stEntry.channel) + " ";
    if (IA_CMD_DYNAMIC_PARAMS_CMDS_GET == p_stEntry.command && IA_CMD_OPT_GET == p_stEntry.option) {
        strText += "commands";
    } else {
        strText += optionName(p_stEntry.option) + " " + std::to_string(p_stEntry.command);
    }
    appendWords(strText, p_stEntry.before);
    if (!p_stEntry.text.empty()) {
        return strText + " -> \"" + printable(p_stEntry.text) + "\"";
    }
    if (!p_stEntry.after.empty()) {
        strText += " ->";
        if (IA_CMD_OPT_GET_PARAM_RNAGE == p_stEntry.option && p_stEntry.after.size() >= 4) {
            appendRange(strText, p_stEntry.after);
        } else {
            appendWords(strText, p_stEntry.after);
        }
    }
    return strText;
}

}  // namespace

std::string optionName(u32 p_nOption) {
    switch (p_nOption) {
        case IA_CMD_OPT_SET:
            return "set";
        case IA_CMD_OPT_GET:
            return "get";
        case IA_CMD_OPT_GET_PARAM_RNAGE:
            return "range";
        case IA_CMD_OPT_CORRECT_PARAM:
            return "correct";
        case IA_CMD_OPT_GET_EXEC_STATUS:
            return "status";
        default:
            return std::to_string(p_nOption);
    }
}

std::string toText(const TranscriptEntry& p_stEntry, bool p_bTime) {
    std::string strText = p_bTime ? timeOfDay(p_stEntry) : "";
    if (TranscriptEntry::Kind::Driver == p_stEntry.kind) {
        strText += driverCall(p_stEntry);
    } else {
        strText +=
            "video ch" + std::to_string(p_stEntry.channel) + " " + std::to_string(static_cast<int>(p_stEntry.command));
        appendWords(strText, p_stEntry.before);
    }
    strText += " = " + std::to_string(p_stEntry.result);
    if (0 != p_stEntry.fault) {
        strText += " fault " + std::to_string(p_stEntry.fault);
    }
    return strText;
}

bool TranscriptFilter::matches(const TranscriptEntry& p_stEntry) const {
    const bool bDriver = TranscriptEntry::Kind::Driver == p_stEntry.kind;
    if (Kind::Both != kind && (Kind::Driver == kind) != bDriver) {
        return false;
    }
    if (-1 != channel && p_stEntry.channel != channel) {
        return false;
    }
    if (!commands.empty() && std::find(commands.begin(), commands.end(), p_stEntry.command) == commands.end()) {
        return false;
    }
    if (-1 != option && (!bDriver || static_cast<int>(p_stEntry.option) != option)) {
        return false;
    }
    if (setsOnly && bDriver && IA_CMD_OPT_SET != p_stEntry.option) {
        return false;
    }
    return (!failedOnly || 0 != p_stEntry.result) && p_stEntry.number > after;
}

}  // namespace simcam
