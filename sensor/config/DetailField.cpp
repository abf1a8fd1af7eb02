#include "sensor/config/DetailField.h"

#include "sensor/diag/Message.h"

#include <cstdlib>
#include <cstring>

namespace {
constexpr char kSourceFile[] = "sensor.cpp";
}  // namespace

int getDetailFieldToStr(const char* p_szDetail, const char* p_szField, char* p_pBuffer) {
    const char* const pName = std::strstr(p_szDetail, p_szField);
    const char* const pEqual = nullptr == pName ? nullptr : std::strchr(pName, '=');
    const char* const pClose = nullptr == pEqual ? nullptr : std::strchr(pEqual, ')');
    if (nullptr == pClose) {
        return -1;
    }
    std::size_t nLength = static_cast<std::size_t>(pClose - pEqual - 1);
    if (nLength >= kDetailFieldSize) {
        SENSOR_ERR("value of detail field %s is longer than %d characters\n", p_szField, kDetailFieldSize - 1);
        nLength = kDetailFieldSize - 1;
    }
    std::memcpy(p_pBuffer, pEqual + 1, nLength);
    return 0;
}

int getDetailFieldTou32(const char* p_szDetail, const char* p_szField, u32* p_pValue) {
    char szValue[kDetailFieldSize] = {};
    if (0 != getDetailFieldToStr(p_szDetail, p_szField, szValue)) {
        return -1;
    }
    *p_pValue = static_cast<u32>(std::atoi(szValue));  // NOLINT(cert-err34-c): 0 is the value of a text without number
    return 0;
}
