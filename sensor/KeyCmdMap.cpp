// The key-command table of a controller: its rows, its making and its search.
#include "sensor/ISensorController.h"
#include "sensor/diag/Message.h"

#include <cstdlib>
#include <cstring>

namespace {

constexpr u32 kRowSum = 154;

// Copies a text with its terminator and leaves the bytes behind it; a longer text is cut to the field.
template <std::size_t N>
void copyName(char (&p_szField)[N], const char* p_szText) {
    const std::size_t nLength = strnlen(p_szText, N - 1);
    std::memcpy(p_szField, p_szText, nLength);
    p_szField[nLength] = '\0';
}

}  // namespace

void ISensorController::buildKeyCmdMap() {
    struct Row {
        u32 key;
        u32 ia_cmd;
        KeyCmdHandler pfnHandler;
        const char* szKeyName;
        const char* szHandlerName;
    };
#define ROW(name, number, command, handler) \
    {number, command, &ISensorController::handler, #name, "&ISensorController::" #handler},
#define DRIVER_NAMED_ROW(name, number, command, handler) ROW(name, number, command, handler)
#define STORED_ROW(name, number) {number, 0, nullptr, #name, "NULL"},
    static constexpr Row kRows[] = {
#include "sensor/KeyCmdTable.def"
    };
#undef ROW
#undef DRIVER_NAMED_ROW
#undef STORED_ROW
    static_assert(sizeof(kRows) / sizeof(kRows[0]) == kRowSum, "frozen: the number of rows");

    m_pKeyCmdMap = static_cast<keycmd*>(std::calloc(m_nKeyCmdNum, sizeof(keycmd)));
    keycmd* pRow = m_pKeyCmdMap;
    for (const Row& stRow : kRows) {
        pRow->key = stRow.key;
        pRow->ia_cmd = stRow.ia_cmd;
        pRow->pfnHandler = stRow.pfnHandler;
        copyName(pRow->szKeyName, stRow.szKeyName);
        copyName(pRow->szHandlerName, stRow.szHandlerName);
        ++pRow;
    }
    m_nKeyCmdNum = kRowSum;
}

int ISensorController::findFromKeyCmdMap(const keycmd* p_pMap, unsigned int p_nKey, keycmd& p_stRow) const {
    for (u32 i = 0; i < m_nKeyCmdNum; ++i) {
        if (p_pMap[i].key == p_nKey) {
            p_stRow.key = p_nKey;
            p_stRow.ia_cmd = p_pMap[i].ia_cmd;
            p_stRow.pfnHandler = p_pMap[i].pfnHandler;
            copyName(p_stRow.szKeyName, p_pMap[i].szKeyName);
            copyName(p_stRow.szHandlerName, p_pMap[i].szHandlerName);
            return static_cast<int>(i);
        }
    }
    SENSOR_TRACE("cand not find key-cmd while key=%d\n", static_cast<int>(p_nKey));
    return -1;
}
