// The text form of parameter lists.
//
// 1. The input is a text. Read it into an array of exactly the room that the text asks for.
// 2. The number of records never exceeds that room.
// 3. Write the records as text and read that: the same records. Write those: the same text.
#include "fuzz/support/Fuzz.h"
#include "sensor/config/SensorKeyVal.h"

#include <vector>

namespace {

std::vector<KeyVal> read(const std::string& p_strText) {
    const u32 nRoom = keyval_room(p_strText);
    std::vector<KeyVal> vecRecords(nRoom);
    u32 nCount = 0;
    keyval_str2st(p_strText, vecRecords.data(), &nCount);
    FUZZ_CHECK(nCount <= nRoom);
    vecRecords.resize(nCount);
    return vecRecords;
}

std::string write(std::vector<KeyVal>& p_vecRecords) {
    std::string strText;
    keyval_st2str(strText, p_vecRecords.data(), static_cast<u32>(p_vecRecords.size()));
    return strText;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* p_pData, std::size_t p_nSize) {
    fuzz::root();
    std::vector<KeyVal> vecFirst = read(fuzz::Input(p_pData, p_nSize).rest());
    const std::string strText = write(vecFirst);
    std::vector<KeyVal> vecSecond = read(strText);
    FUZZ_CHECK(vecFirst.size() == vecSecond.size());
    for (std::size_t i = 0; i < vecFirst.size(); ++i) {
        FUZZ_CHECK(vecFirst[i].key == vecSecond[i].key && vecFirst[i].value == vecSecond[i].value);
    }
    FUZZ_CHECK(write(vecSecond) == strText);
    return 0;
}
