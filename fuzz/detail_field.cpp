// The fields of a module's detail string.
//
// 1. The input is a field name, a zero byte and a detail string; both go into blocks of exactly their size.
// 2. Read the field as text into a buffer of exactly the promised size, and as a number.
// 3. Either both find it or neither; what is not found leaves its output alone; the number is the text's leading number.
#include "fuzz/support/Fuzz.h"
#include "sensor/config/DetailField.h"

#include <cstdlib>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* p_pData, std::size_t p_nSize) {
    constexpr u32 kUntouched = 0xA5A5A5A5u;
    fuzz::root();
    fuzz::Input input(p_pData, p_nSize);
    char* const szField = fuzz::exactCopy(input.text());
    char* const szDetail = fuzz::exactCopy(input.text());
    std::vector<char> vecText(kDetailFieldSize);
    u32 nValue = kUntouched;
    const int nTextFound = getDetailFieldToStr(szDetail, szField, vecText.data());
    const int nNumberFound = getDetailFieldTou32(szDetail, szField, &nValue);
    FUZZ_CHECK(nTextFound == nNumberFound);
    if (0 == nTextFound) {
        FUZZ_CHECK('\0' == vecText.back());
        FUZZ_CHECK(static_cast<u32>(std::atoi(vecText.data())) == nValue);
    } else {
        FUZZ_CHECK(-1 == nTextFound);
        FUZZ_CHECK(kUntouched == nValue);
        FUZZ_CHECK(std::vector<char>(kDetailFieldSize) == vecText);
    }
    std::free(szDetail);
    std::free(szField);
    return 0;
}
