// The parameter files and the version file, whatever lies on the flash.
//
// 1. The first byte of the input is a number of records, the rest is what a parameter file and the version file hold.
// 2. Read both. Whole records of the file arrive; records that it does not reach keep what they held. The version is read
//    when there are four bytes.
// 3. Write the records and read them again: the same records, and a file of exactly their size.
#include "fuzz/support/Fuzz.h"
#include "sensor/config/SensorFile.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace {

char g_szParameterFile[] = "/mnt/mtd/code/config_file/sensor0.cfg";
constexpr char kVersionFile[] = "/mnt/mtd/code/config_file/snsversion.cfg";
constexpr KeyVal kBefore = {0x12345678u, 0x9ABCDEF0u};

bool same(const KeyVal& p_stLeft, const KeyVal& p_stRight) {
    return p_stLeft.key == p_stRight.key && p_stLeft.value == p_stRight.value;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* p_pData, std::size_t p_nSize) {
    TestRoot& root = fuzz::root();
    fuzz::Input input(p_pData, p_nSize);
    const u32 nRecords = input.byte();
    const std::string strFile = input.rest();
    root.write(g_szParameterFile, strFile);
    root.write(kVersionFile, strFile);

    FUZZ_CHECK(getFileLen(g_szParameterFile) == static_cast<INT64>(strFile.size()));
    std::vector<KeyVal> vecRead(nRecords, kBefore);
    FUZZ_CHECK(QVS_SUCCESS == keyValFromFile(g_szParameterFile, vecRead.data(), nRecords));
    for (std::size_t i = 0; i < vecRead.size(); ++i) {
        KeyVal stWanted = kBefore;
        const std::size_t nStart = std::min(i * sizeof(KeyVal), strFile.size());
        std::memcpy(&stWanted, strFile.data() + nStart, std::min(sizeof(KeyVal), strFile.size() - nStart));
        FUZZ_CHECK(same(stWanted, vecRead[i]));
    }

    u32 nVersion = 0;
    u32 nWanted = 0;
    FUZZ_CHECK((strFile.size() >= sizeof(nVersion) ? 0 : -1) == getVersion(&nVersion));
    if (strFile.size() >= sizeof(nVersion)) {
        std::memcpy(&nWanted, strFile.data(), sizeof(nWanted));
        FUZZ_CHECK(nWanted == nVersion);
        FUZZ_CHECK(0 == setVersion(nVersion));
        FUZZ_CHECK(strFile.substr(0, sizeof(nVersion)) == root.read(kVersionFile));
    }

    FUZZ_CHECK(QVS_SUCCESS == keyValToFile(g_szParameterFile, vecRead.data(), nRecords));
    FUZZ_CHECK(getFileLen(g_szParameterFile) == static_cast<INT64>(nRecords * sizeof(KeyVal)));
    std::vector<KeyVal> vecAgain(nRecords);
    FUZZ_CHECK(QVS_SUCCESS == keyValFromFile(g_szParameterFile, vecAgain.data(), nRecords));
    FUZZ_CHECK(std::equal(vecRead.begin(), vecRead.end(), vecAgain.begin(), vecAgain.end(), same));
    return 0;
}
