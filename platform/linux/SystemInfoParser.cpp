#include "platform/MachineInfo.h"
#include "platform/QVFile.h"
#include "platform/linux/Decimal.h"

#include <ini.h>

#include <cstring>
#include <optional>

namespace {

struct Reading {
    QVFile file;
    bool malformed = false;  // a line that the parser of ini files cannot be given
    std::optional<std::string> deviceType;
    std::optional<std::string> hardwareModel;
    std::optional<std::string> hardwareCode;
};

// Hands over one line as fgets does. A line that does not fit would be cut, and its rest taken for a line of its own;
// one with a zero byte would lose its end. Both end the reading instead.
char* nextLine(char* p_szLine, int p_nSize, void* p_pReading) {
    Reading& reading = *static_cast<Reading*>(p_pReading);
    std::string strLine;
    if (reading.malformed || !reading.file.readLine(strLine)) {
        return nullptr;
    }
    strLine += '\n';
    if (strLine.size() >= static_cast<std::size_t>(p_nSize) || std::string::npos != strLine.find('\0')) {
        reading.malformed = true;
        return nullptr;
    }
    std::memcpy(p_szLine, strLine.c_str(), strLine.size() + 1);
    return p_szLine;
}

// 0 marks the line as an error: which of two values counts must not depend on their order.
int takeValue(void* p_pReading, const char* p_szSection, const char* p_szName, const char* p_szValue) {
    Reading& reading = *static_cast<Reading*>(p_pReading);
    const std::string strName = p_szName;
    std::optional<std::string>* const pField = "devicetype" == strName      ? &reading.deviceType
                                               : "hardwaremodel" == strName ? &reading.hardwareModel
                                               : "hardwarecode" == strName  ? &reading.hardwareCode
                                                                            : nullptr;
    if (nullptr == pField || std::string("machine") != p_szSection) {
        return 1;
    }
    if (pField->has_value()) {
        return 0;
    }
    *pField = p_szValue;
    return 1;
}

}  // namespace

bool SystemInfoParser::parseMachineInfo(const char* p_szPath, MachineInfo& p_objInfo) {
    Reading reading;
    u32 nDeviceType = 0;
    if (!reading.file.open(p_szPath) || 0 != ini_parse_stream(nextLine, &reading, takeValue, &reading) ||
        reading.malformed || !platform::decimalOf(reading.deviceType.value_or(""), nDeviceType)) {
        return false;
    }
    p_objInfo.setDeviceType(nDeviceType);
    p_objInfo.setHardwareModel(reading.hardwareModel.value_or(""));
    p_objInfo.setHardwareCode(reading.hardwareCode.value_or(""));
    return true;
}
