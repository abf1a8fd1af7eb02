#include "apps/camerad/host/SensorKeys.h"

#include <algorithm>
#include <iterator>

namespace camerad {

bool isOfSchedule(u32 p_nKey) {
    return p_nKey >= kSchemeMode && p_nKey <= kEndMinute;
}

bool isDayNightKey(u32 p_nKey) {
    constexpr u32 kDayNightKeys[] = {144, 145, 146, 149, 150, 151, 152};
    return std::end(kDayNightKeys) != std::find(std::begin(kDayNightKeys), std::end(kDayNightKeys), p_nKey);
}

int zoomRatio(int p_nPosition) {
    // Of 1x to 16x.
    constexpr int kPositions[] = {16384, 24576, 27264, 28672, 29056, 29440, 29728, 30016,
                                  30208, 30400, 30560, 30720, 30912, 31104, 31232, 31424};
    constexpr int kThousand = 1000;
    if (p_nPosition <= kPositions[0]) {
        return kThousand;
    }
    const int* const pUpper = std::lower_bound(std::begin(kPositions), std::end(kPositions), p_nPosition);
    if (std::end(kPositions) == pUpper) {
        return kThousand * static_cast<int>(std::size(kPositions));
    }
    const int nMagnification = static_cast<int>(pUpper - kPositions) + 1;
    return kThousand * nMagnification - kThousand * (*pUpper - p_nPosition) / (*pUpper - *(pUpper - 1));
}

std::string driverResultText(int p_nResult) {
    switch (p_nResult) {
        case IA_ERR_UNSUPPORTED:
            return "the driver does not support it on this channel";
        case IA_ERR_NO_DATA:
            return "the driver got no data";
        case IA_ERR_HARDWARE:
            return "the device did not answer";
        case IA_ERR_BUSY:
            return "the lens is still moving";
        case IA_ERR_INVALID_VALUE:
            return "the value is not legal now";
        default:
            return "the driver answered " + std::to_string(p_nResult);
    }
}

}  // namespace camerad
