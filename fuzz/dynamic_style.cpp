// A style document and a driver that answers anything: the dynamic style, the factory set and the correction.
//
// 1. The input is a style document, ended by a zero byte, and the bytes that the driver answers with. The first of these
//    says what is shown.
// 2. Derive the factory set into an array of exactly the room that the document asks for: the number of records never
//    exceeds it.
// 3. Have the driver correct the set. Keys stay. One record in front of the array is there to be corrected, none behind.
#include "fuzz/support/HostileDriver.h"
#include "sensor/config/SensorKeyVal.h"
#include "sensor/style/FactoryData.h"
#include "sensor/style/ShowFlags.h"

#include <cstdlib>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* p_pData, std::size_t p_nSize) {
    constexpr int kChannel = 1;
    fuzz::root();
    fuzz::Input input(p_pData, p_nSize);
    char* const szStyle = fuzz::exactCopy(input.text());
    const int nShown = input.byte();
    setshowBeawayFalg(0 != (nShown & 1));
    fuzz::driverAnswersFrom(&input);

    const u32 nRoom = factoryRoom(szStyle);
    std::vector<KeyVal> vecBlock(nRoom + 1);  // one record in front
    KeyVal* const pSet = vecBlock.data() + 1;
    u32 nCount = 0;
    FUZZ_CHECK(QVS_SUCCESS == getFctData(kChannel, szStyle, pSet, &nCount, 0 != (nShown & 2)));
    FUZZ_CHECK(nCount <= nRoom);

    const std::vector<KeyVal> vecBefore(pSet, pSet + nCount);
    FUZZ_CHECK(QVS_SUCCESS == keyval_correct(kChannel - 1, pSet, nCount));
    for (u32 i = 0; i < nCount; ++i) {
        FUZZ_CHECK(vecBefore[i].key == pSet[i].key);
    }
    FUZZ_CHECK(0 == vecBlock.front().key);

    fuzz::driverAnswersFrom(nullptr);
    std::free(szStyle);
    return 0;
}
