// What a caller's data pointer points to, read and written the way the contract has it: 32-bit values as relaxed atomic
// words, because they may stand in a parameter set that other threads use; records, texts and the heater's byte plainly,
// because they are the caller's own.
#pragma once

#include "platform/Types.h"

#include <cstring>
#include <string>
#include <vector>

namespace simcam {

inline int loadWord(const void* p_pData) {
    return __atomic_load_n(static_cast<const int*>(p_pData), __ATOMIC_RELAXED);
}

inline void storeWord(void* p_pData, int p_nValue) {
    __atomic_store_n(static_cast<int*>(p_pData), p_nValue, __ATOMIC_RELAXED);
}

template <typename Record>
Record loadRecord(const void* p_pData) {
    Record stRecord;
    std::memcpy(&stRecord, p_pData, sizeof(stRecord));
    return stRecord;
}

template <typename Record>
void storeRecord(void* p_pData, const Record& p_stRecord) {
    std::memcpy(p_pData, &p_stRecord, sizeof(p_stRecord));
}

// For the transcript. The words that a call hands in: none for a question. Null data gives none.
std::vector<int> wordsBefore(u32 p_nCommand, u32 p_nOption, const void* p_pData);
// The words, or the text, that the caller finds after a call that was carried out.
std::vector<int> wordsAfter(u32 p_nCommand, u32 p_nOption, const void* p_pData);
std::string textAfter(u32 p_nCommand, u32 p_nOption, const void* p_pData);

}  // namespace simcam
