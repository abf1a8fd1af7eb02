#include "apps/shared/ParameterFile.h"

#include "apps/shared/CommandError.h"
#include "platform/QVFile.h"

namespace apps {

namespace {

constexpr std::size_t kNumberSize = 4;
constexpr std::size_t kRecordSize = 2 * kNumberSize;
constexpr INT64 kLargestFile = 1024 * 1024;  // bytes; real files hold a few hundred records
constexpr int kThermalChannel = 2;

u32 numberAt(const std::vector<unsigned char>& p_vecBytes, std::size_t p_nAt) {
    u32 number = 0;
    for (std::size_t i = 0; i < kNumberSize; ++i) {
        number |= static_cast<u32>(p_vecBytes[p_nAt + i]) << (8 * i);
    }
    return number;
}

void append(std::vector<unsigned char>& p_vecBytes, u32 p_nNumber) {
    for (std::size_t i = 0; i < kNumberSize; ++i) {
        p_vecBytes.push_back(static_cast<unsigned char>(p_nNumber >> (8 * i)));
    }
}

}  // namespace

StoredValue* ParameterFile::find(u32 p_nKey) {
    for (StoredValue& stored : vecValues) {
        if (stored.nKey == p_nKey) {
            return &stored;
        }
    }
    return nullptr;
}

std::string parameterFileName(int p_nChannel, int p_nScheme) {
    const char* const name = kThermalChannel == p_nChannel ? "sensor-thermal" : "sensor";
    return std::string("/mnt/mtd/code/config_file/") + name + std::to_string(p_nScheme) + ".cfg";
}

ParameterFile readParameterFile(const std::string& p_strName) {
    QVFile file;
    if (!file.open(p_strName.c_str(), QVFile::modeRead)) {
        throw CommandError("there is no " + p_strName + " below the device root");
    }
    const INT64 length = file.getLength();
    if (length < 0 || length > kLargestFile) {
        throw CommandError(p_strName + " is too large for a parameter file");
    }
    std::vector<unsigned char> bytes(static_cast<std::size_t>(length));
    if (file.read(bytes.data(), static_cast<int>(length)) != length) {
        throw CommandError(p_strName + " cannot be read");
    }
    ParameterFile stored;
    for (std::size_t at = 0; at + kRecordSize <= bytes.size(); at += kRecordSize) {
        stored.vecValues.push_back({numberAt(bytes, at), static_cast<int>(numberAt(bytes, at + kNumberSize))});
    }
    stored.nExtraBytes = bytes.size() % kRecordSize;
    return stored;
}

void writeParameterFile(const std::string& p_strName, const ParameterFile& p_stFile) {
    std::vector<unsigned char> bytes;
    for (const StoredValue& stored : p_stFile.vecValues) {
        append(bytes, stored.nKey);
        append(bytes, static_cast<u32>(stored.nValue));
    }
    QVFile file;
    const int length = static_cast<int>(bytes.size());
    if (!file.open(p_strName.c_str(), QVFile::modeWrite | QVFile::modeTruncate) ||
        file.write(bytes.data(), length) != length || !file.close()) {
        throw CommandError(p_strName + " cannot be written");
    }
}

}  // namespace apps
