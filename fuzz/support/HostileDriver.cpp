#include "fuzz/support/HostileDriver.h"

#include "platform/ImageAdjust.h"

#include <mutex>

namespace {

// Commands that read a record of their own.
constexpr u32 kVersionText = 2496;
constexpr u32 kHeater = 1606;
constexpr u32 kSensorCheck = 2816;
constexpr std::size_t kVersionTextSize = 50;  // bytes, the terminator included

std::mutex g_objMutex;  // guards g_pInput and the input: a controller's own thread calls too
fuzz::Input* g_pInput = nullptr;

// Fills as many bytes of the record as the input has; the rest stays what the caller put there.
void answer(void* p_pData, std::size_t p_nSize) {
    auto* const pBytes = static_cast<std::uint8_t*>(p_pData);
    for (std::size_t i = 0; i < p_nSize && !g_pInput->atEnd(); ++i) {
        pBytes[i] = g_pInput->byte();
    }
}

// The text's end is the driver's promise: at most 50 bytes with the terminator.
void answerText(void* p_pData) {
    answer(p_pData, kVersionTextSize);
    static_cast<char*>(p_pData)[kVersionTextSize - 1] = '\0';
}

}  // namespace

void fuzz::driverAnswersFrom(Input* p_pInput) {
    const std::lock_guard<std::mutex> guard(g_objMutex);
    g_pInput = p_pInput;
}

// The first byte of an answer is its result: 0 to 5 are the driver's own codes, of the others every second one fails.
int ia_ioctrl_v2(int, u32 cmd, u32 opt, void* data) {
    const std::lock_guard<std::mutex> guard(g_objMutex);
    if (nullptr == g_pInput) {
        return IA_OK;
    }
    const int nByte = g_pInput->byte();
    const int nResult = nByte <= 5 ? -nByte : nByte % 2;
    if (nullptr == data || IA_CMD_OPT_SET == opt) {
        return nResult;
    }
    if (IA_CMD_OPT_GET_PARAM_RNAGE == opt) {
        answer(data, sizeof(ia_dynamic_params_attr_st));
    } else if (IA_CMD_DYNAMIC_PARAMS_CMDS_GET == cmd) {
        answer(data, sizeof(ia_dynamic_params_cmds_st));
    } else if (kVersionText == cmd) {
        answerText(data);
    } else if (kHeater == cmd) {
        answer(data, 1);
    } else if (kSensorCheck == cmd) {
        answer(data, sizeof(ia_sensor_check_st));
    } else {
        answer(data, sizeof(u32));
    }
    return nResult;
}
