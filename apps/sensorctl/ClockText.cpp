#include "apps/sensorctl/ClockText.h"

#include "apps/sensorctl/Shared.h"

#include <cstdio>

namespace sensorctl {

namespace {

// Reads digits and separators by a pattern such as "9999-99-99": true when the text has exactly this shape. The numbers
// between the separators go into p_pNumbers in order.
bool readShape(const std::string& p_strText, const std::string& p_strPattern, int* p_pNumbers) {
    if (p_strText.size() != p_strPattern.size()) {
        return false;
    }
    int number = 0;
    for (std::size_t i = 0; i < p_strText.size(); ++i) {
        const bool wantsDigit = '9' == p_strPattern[i];
        const bool isDigit = '0' <= p_strText[i] && p_strText[i] <= '9';
        if (wantsDigit ? !isDigit : p_strText[i] != p_strPattern[i]) {
            return false;
        }
        if (wantsDigit) {
            number = number * 10 + (p_strText[i] - '0');
        }
        if (!wantsDigit || i + 1 == p_strText.size()) {
            *p_pNumbers++ = number;
            number = 0;
        }
    }
    return true;
}

int daysOf(int p_nYear, int p_nMonth) {
    static const int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leap = (0 == p_nYear % 4 && 0 != p_nYear % 100) || 0 == p_nYear % 400;
    return 2 == p_nMonth && leap ? 29 : kDays[p_nMonth - 1];
}

bool isLegal(const platform::CivilTime& p_stTime) {
    const bool date = p_stTime.year >= 1970 && p_stTime.month >= 1 && p_stTime.month <= 12 && p_stTime.day >= 1 &&
                      p_stTime.day <= daysOf(p_stTime.year, p_stTime.month);
    return date && p_stTime.hour <= 23 && p_stTime.minute <= 59 && p_stTime.second <= 59;
}

}  // namespace

platform::CivilTime parseClock(const std::string& p_strText, const platform::CivilTime& p_stToday) {
    int date[3] = {p_stToday.year, p_stToday.month, p_stToday.day};
    int time[3] = {0, 0, 0};
    const std::size_t blank = p_strText.find(' ');
    const bool dated = std::string::npos != blank;
    const std::string timeText = dated ? p_strText.substr(blank + 1) : p_strText;
    const bool shaped = (!dated || readShape(p_strText.substr(0, blank), "9999-99-99", date)) &&
                        (readShape(timeText, "99:99", time) || readShape(timeText, "99:99:99", time));
    const platform::CivilTime clock{date[0], date[1], date[2], time[0], time[1], time[2]};
    if (!shaped || !isLegal(clock)) {
        throw CommandError("a time is HH:MM, HH:MM:SS or \"YYYY-MM-DD HH:MM:SS\", not " + quoted(p_strText));
    }
    return clock;
}

std::string clockText(const platform::CivilTime& p_stTime) {
    char buffer[96];
    std::snprintf(buffer, sizeof(buffer), "%04d-%02d-%02d %02d:%02d:%02d", p_stTime.year, p_stTime.month, p_stTime.day,
                  p_stTime.hour, p_stTime.minute, p_stTime.second);
    return buffer;
}

}  // namespace sensorctl
