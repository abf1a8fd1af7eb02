#include "apps/camerad/host/SchemeRules.h"

#include "platform/Types.h"

namespace camerad {

namespace {

constexpr u32 kLatest = 2400;  // 24:00 as hour * 100 + minute

// As the camera compares times: 1305 for 13:05, without looking at the minutes; unsigned, so that what is below 0 is late.
u32 numberOf(int p_nHour, int p_nMinute) {
    return static_cast<u32>(p_nHour) * 100 + static_cast<u32>(p_nMinute);
}

}  // namespace

int Window::check() const {
    const u32 nStart = numberOf(nStartHour, nStartMinute);
    const u32 nEnd = numberOf(nEndHour, nEndMinute);
    if (nStart > kLatest) {
        return 505;
    }
    if (nEnd > kLatest) {
        return 506;
    }
    return nStart >= nEnd ? 507 : 0;
}

std::string Window::objection(bool p_bGaps) const {
    switch (check()) {
        case 505:
            return "the window starts later than 24:00";
        case 506:
            return "the window ends later than 24:00";
        case 507:
            return std::string(
                       "the window must start before it ends, on the same day; for a window across midnight use two "
                       "schemes, or leave the night to ") +
                   (p_bGaps ? "day and night, which decide where no window holds"
                            : "scheme 0, which holds where no window does");
        default:
            return "";
    }
}

std::vector<std::vector<std::pair<int, int>>> minutesInForce(const std::vector<Window>& p_vecWindows, bool p_bGaps) {
    std::vector<std::vector<std::pair<int, int>>> vecInForce(p_vecWindows.size());
    for (int nMinute = 0; nMinute < kMinutesOfDay; ++nMinute) {
        const u32 nNow = numberOf(nMinute / 60, nMinute % 60);
        std::size_t nScheme = 0;
        while (nScheme < p_vecWindows.size()) {
            const Window& window = p_vecWindows[nScheme];
            if (numberOf(window.nStartHour, window.nStartMinute) <= nNow &&
                nNow < numberOf(window.nEndHour, window.nEndMinute)) {
                break;
            }
            ++nScheme;
        }
        if (nScheme == p_vecWindows.size()) {
            if (p_bGaps || p_vecWindows.empty()) {
                continue;
            }
            nScheme = 0;
        }
        std::vector<std::pair<int, int>>& vecOfScheme = vecInForce[nScheme];
        if (!vecOfScheme.empty() && vecOfScheme.back().second == nMinute) {
            vecOfScheme.back().second = nMinute + 1;
        } else {
            vecOfScheme.emplace_back(nMinute, nMinute + 1);
        }
    }
    return vecInForce;
}

}  // namespace camerad
