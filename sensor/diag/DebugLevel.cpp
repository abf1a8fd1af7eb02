#include "sensor/diag/DebugLevel.h"

#include "platform/QVFile.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <string>

std::atomic<int> g_nDebugLevel{1};
std::atomic<bool> g_bEnAssert{false};

namespace {

constexpr char kSignFile[] = "/mnt/mtd/sign/Debug.sign";
constexpr int kDefaultLevel = 1;

void store(int p_nLevel, bool p_bAssert) {
    g_nDebugLevel.store(p_nLevel, std::memory_order_relaxed);
    g_bEnAssert.store(p_bAssert, std::memory_order_relaxed);
}

// The leading decimal number, 0 without one; numbers that no int holds stop at its ends.
int leadingNumber(const std::string& p_strLine) {
    const long long nNumber = std::strtoll(p_strLine.c_str(), nullptr, 10);
    return static_cast<int>(
        std::clamp<long long>(nNumber, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

}  // namespace

void updateDebugLevel() {
    if (!QVFile::exists(kSignFile)) {
        store(kDefaultLevel, false);
        return;
    }
    QVFile file;
    if (!file.open(kSignFile)) {
        return;
    }
    std::string strLine;
    file.readLine(strLine);
    const int nLevel = strLine.empty() ? kDefaultLevel : leadingNumber(strLine);
    file.readLine(strLine);
    store(nLevel, 0 != leadingNumber(strLine));
    file.close();
}
