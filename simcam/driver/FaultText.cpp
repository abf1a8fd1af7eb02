// Faults as lines of text.
#include "platform/ImageAdjust.h"
#include "simcam/Faults.h"
#include "simcam/Transcript.h"

#include <cerrno>
#include <cstdlib>
#include <limits>
#include <set>
#include <sstream>

namespace simcam {
namespace {

constexpr INT64 kLongestDelay = INT64{3600} * 1000000;  // microseconds: one hour
constexpr INT64 kHighestInt = std::numeric_limits<int>::max();
constexpr INT64 kLowestInt = std::numeric_limits<int>::min();
constexpr INT64 kHighestCommand = std::numeric_limits<u32>::max();

bool readNumber(const std::string& p_strText, INT64 p_nLow, INT64 p_nHigh, INT64& p_nNumber) {
    const bool bSigned = !p_strText.empty() && '-' == p_strText[0];
    const std::string strDigits = p_strText.substr(bSigned ? 1 : 0);
    const bool bHex = 0 == strDigits.compare(0, 2, "0x") || 0 == strDigits.compare(0, 2, "0X");
    if (strDigits.empty() || strDigits[0] < '0' || strDigits[0] > '9') {
        return false;
    }
    errno = 0;
    char* pEnd = nullptr;
    const long long nNumber = std::strtoll(p_strText.c_str(), &pEnd, bHex ? 16 : 10);
    if (0 != errno || pEnd != p_strText.c_str() + p_strText.size() || nNumber < p_nLow || nNumber > p_nHigh) {
        return false;
    }
    p_nNumber = nNumber;
    return true;
}

bool readOption(const std::string& p_strText, int& p_nOption) {
    if ("any" == p_strText) {
        p_nOption = kAny;
        return true;
    }
    for (u32 nOption = IA_CMD_OPT_SET; nOption <= IA_CMD_OPT_GET_EXEC_STATUS; ++nOption) {
        if (optionName(nOption) == p_strText) {
            p_nOption = static_cast<int>(nOption);
            return true;
        }
    }
    return false;
}

std::string numberWanted(const std::string& p_strField, INT64 p_nLow, INT64 p_nHigh, const std::string& p_strValue) {
    return p_strField + " must be a number from " + std::to_string(p_nLow) + " to " + std::to_string(p_nHigh) +
           ", not \"" + p_strValue + "\"";
}

// Reads one field into the fault; says what is wrong with it otherwise.
bool readField(const std::string& p_strField, const std::string& p_strValue, Fault& p_stFault,
               std::string& p_strError) {
    INT64 nNumber = 0;
    const auto number = [&](INT64 p_nLow, INT64 p_nHigh) {
        if (readNumber(p_strValue, p_nLow, p_nHigh, nNumber)) {
            return true;
        }
        p_strError = numberWanted(p_strField, p_nLow, p_nHigh, p_strValue);
        return false;
    };
    const bool bAny = "any" == p_strValue;
    if ("cmd" == p_strField || "key" == p_strField) {
        p_stFault.target = "cmd" == p_strField ? Fault::Target::Driver : Fault::Target::Notification;
        p_stFault.anyCommand = bAny;
        if (!bAny && !number(0, kHighestCommand)) {
            p_strError += ", or any";
            return false;
        }
        p_stFault.command = static_cast<u32>(nNumber);
        return true;
    }
    if ("ch" == p_strField) {
        if (!bAny && !number(0, kHighestInt)) {
            p_strError += ", or any";
            return false;
        }
        p_stFault.channel = bAny ? kAny : static_cast<int>(nNumber);
        return true;
    }
    if ("opt" == p_strField) {
        if (!readOption(p_strValue, p_stFault.option)) {
            p_strError = "opt must be set, get, range, correct, status or any, not \"" + p_strValue + "\"";
            return false;
        }
        return true;
    }
    if ("nth" == p_strField) {
        const bool bGood = number(1, kHighestInt);
        p_stFault.nth = static_cast<int>(nNumber);
        return bGood;
    }
    if ("times" == p_strField) {
        const bool bGood = number(-1, kHighestInt);
        p_stFault.times = static_cast<int>(nNumber);
        if (bGood && 0 == nNumber) {
            p_strError = "times must be -1 (always) or at least 1";
            return false;
        }
        return bGood;
    }
    if ("result" == p_strField) {
        const bool bGood = number(kLowestInt, kHighestInt);
        p_stFault.result = static_cast<int>(nNumber);
        return bGood;
    }
    if ("delay" == p_strField) {
        const bool bGood = number(0, kLongestDelay);
        p_stFault.delayMicroseconds = nNumber;
        return bGood;
    }
    if ("silent" == p_strField) {
        const bool bGood = number(0, 1);
        p_stFault.silent = 1 == nNumber;
        return bGood;
    }
    p_strError =
        "unknown field \"" + p_strField + "\"; fields are cmd, key, ch, opt, nth, times, result, delay, silent";
    return false;
}

bool isWhole(const Fault& p_stFault, const std::set<std::string>& p_setFields, std::string& p_strError) {
    const bool bDriver = 0 != p_setFields.count("cmd");
    const bool bNotification = 0 != p_setFields.count("key");
    if (bDriver == bNotification) {
        p_strError = "exactly one of cmd (a driver command) and key (a notification) must be given";
    } else if (bNotification && 0 != p_setFields.count("opt")) {
        p_strError = "opt does not go with key: a notification has no option";
    } else if (bNotification && 0 == p_stFault.channel) {
        p_strError = "ch of a notification counts from 1";
    } else if (0 == p_stFault.result && 0 == p_stFault.delayMicroseconds && !p_stFault.silent) {
        p_strError = "the fault does nothing: give result, delay or silent=1";
    } else if (0 != p_stFault.result && p_stFault.silent) {
        p_strError = "result and silent=1 exclude each other: a silent fault returns 0";
    } else {
        return true;
    }
    return false;
}

}  // namespace

bool parseFault(const std::string& p_strText, Fault& p_stFault, std::string& p_strError) {
    Fault stFault;
    std::set<std::string> setFields;
    std::istringstream stream(p_strText);
    std::string strToken;
    while (stream >> strToken) {
        const std::size_t nEquals = strToken.find('=');
        if (std::string::npos == nEquals) {
            p_strError = "\"" + strToken + "\" is not of the form name=value";
            return false;
        }
        const std::string strField = strToken.substr(0, nEquals);
        if (!readField(strField, strToken.substr(nEquals + 1), stFault, p_strError)) {
            return false;
        }
        if (!setFields.insert(strField).second) {
            p_strError = strField + " is given twice";
            return false;
        }
    }
    if (!isWhole(stFault, setFields, p_strError)) {
        return false;
    }
    p_stFault = stFault;
    return true;
}

std::string toText(const Fault& p_stFault) {
    const bool bDriver = Fault::Target::Driver == p_stFault.target;
    std::string strText = bDriver ? "cmd=" : "key=";
    strText += p_stFault.anyCommand ? "any" : std::to_string(p_stFault.command);
    strText += " ch=" + (kAny == p_stFault.channel ? std::string("any") : std::to_string(p_stFault.channel));
    if (bDriver) {
        strText += " opt=" + (kAny == p_stFault.option ? "any" : optionName(static_cast<u32>(p_stFault.option)));
    }
    strText += " nth=" + std::to_string(p_stFault.nth) + " result=" + std::to_string(p_stFault.result) +
               " times=" + std::to_string(p_stFault.times) + " delay=" + std::to_string(p_stFault.delayMicroseconds) +
               " silent=" + (p_stFault.silent ? "1" : "0");
    return strText;
}

}  // namespace simcam
