#include "sensor/config/SensorFile.h"

#include "platform/QVFile.h"
#include "sensor/diag/Message.h"

#include <limits>

namespace {

constexpr char kSourceFile[] = "SensorFile.cpp";
constexpr u32 kReplace = QVFile::modeWrite | QVFile::modeTruncate;

// A name of the version file that the functions below can take.
char g_szVersionFile[] = "/mnt/mtd/code/config_file/snsversion.cfg";

// The count that the file class takes for this many records; -1, which it refuses, for more than it can count.
int byteCount(u32 p_nKeyValNum) {
    constexpr u32 kMost = std::numeric_limits<int>::max() / sizeof(KeyVal);
    return p_nKeyValNum > kMost ? -1 : static_cast<int>(p_nKeyValNum * sizeof(KeyVal));
}

// The count that the file class takes for a length; -1, which it refuses, for one that it cannot count.
int fileCount(INT64 p_nLength) {
    return p_nLength < 0 || p_nLength > std::numeric_limits<int>::max() ? -1 : static_cast<int>(p_nLength);
}

// A replaced file only counts once its new content has taken the old one's place.
void closeReplaced(QVFile& p_objFile, const char* p_szName) {
    if (p_objFile.isOpen() && !p_objFile.close()) {
        SENSOR_ERR("file_name(%s) keeps its old content\n", p_szName);
    }
}

}  // namespace

INT64 getFileLen(const char* p_szName) {
    QVFile file;
    SENSOR_ASSERT_DETAIL(file.open(p_szName), "file.open(file_name)", "file_name(%s)", p_szName);
    return file.getLength();
}

int loadFromFile(const char* p_szName, char* p_pBuffer, INT64 p_nLength) {
    SENSOR_DBG("open file:%s\n", p_szName);
    QVFile file;
    if (!file.open(p_szName)) {
        return -1;
    }
    const int nSize = file.read(p_pBuffer, static_cast<int>(p_nLength));
    if (static_cast<INT64>(nSize) != p_nLength) {
        return -1;
    }
    file.close();
    return nSize;
}

int saveToFile(char* p_szName, char* p_pData, INT64 p_nLength) {
    QVFile file;
    SENSOR_ASSERT_DETAIL(file.open(p_szName, kReplace),
                         "file.open(file_name, QVFile::modeWrite | QVFile::modeTruncate)", "file_name(%s)\n", p_szName);
    const int nSize = file.write(p_pData, fileCount(p_nLength));
    SENSOR_ASSERT_DETAIL(static_cast<INT64>(nSize) == p_nLength, "file_len == (nSize=file.write(data, file_len))",
                         "file_len(%d)\n", static_cast<int>(p_nLength));
    closeReplaced(file, p_szName);
    return nSize;
}

int keyValFromFile(char* p_szName, KeyVal* p_pKeyVal, u32 p_nKeyValNum) {
    QVFile file;
    SENSOR_ASSERT_DETAIL(file.open(p_szName), "file.open(file_name)", "file_name(%s)\n", p_szName);
    const int nWanted = byteCount(p_nKeyValNum);
    const int nSize = file.read(p_pKeyVal, nWanted);
    SENSOR_ASSERT_DETAIL(nSize >= 0 && nSize == nWanted, "nSize == sizeof(KeyVal)*p_nKeyValNum",
                         "file_name(%s) nSize(%d) sizeof(KeyVal) = %d, p_nKeyValNum(%d)\n", p_szName, nSize,
                         static_cast<int>(sizeof(KeyVal)), static_cast<int>(p_nKeyValNum));
    file.close();
    return QVS_SUCCESS;
}

int keyValToFile(char* p_szName, KeyVal* p_pKeyVal, u32 p_nKeyValSum) {
    QVFile file;
    SENSOR_ASSERT_DETAIL(file.open(p_szName, kReplace),
                         "file.open(file_name, QVFile::modeWrite | QVFile::modeTruncate)", "file_name(%s)\n", p_szName);
    const int nWanted = byteCount(p_nKeyValSum);
    const int nSize = file.write(p_pKeyVal, nWanted);
    SENSOR_ASSERT_DETAIL(nSize >= 0 && nSize == nWanted, "nSize == sizeof(KeyVal)*p_nKeyValSum",
                         "nSize(%d) sizeof(KeyVal) = %d, p_nKeyValNum(%d)\n", nSize, static_cast<int>(sizeof(KeyVal)),
                         static_cast<int>(p_nKeyValSum));
    closeReplaced(file, p_szName);
    return QVS_SUCCESS;
}

int getVersion(u32* p_pVersion) {
    constexpr INT64 kLength = sizeof(u32);
    return loadFromFile(g_szVersionFile, reinterpret_cast<char*>(p_pVersion), kLength) > 0 ? 0 : -1;
}

int setVersion(u32 p_nVersion) {
    constexpr INT64 kLength = sizeof(u32);
    u32 nVersion = p_nVersion;
    return saveToFile(g_szVersionFile, reinterpret_cast<char*>(&nVersion), kLength) > 0 ? 0 : -1;
}
