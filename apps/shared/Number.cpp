#include "apps/shared/Number.h"

#include "apps/shared/CommandError.h"
#include "apps/shared/Text.h"

#include <locale>
#include <sstream>

namespace apps {

namespace {

bool isDigit(char p_cLetter) {
    return '0' <= p_cLetter && p_cLetter <= '9';
}

int digitValue(char p_cLetter, int p_nBase) {
    const char letter = 'A' <= p_cLetter && p_cLetter <= 'F' ? static_cast<char>(p_cLetter - 'A' + 'a') : p_cLetter;
    const int value = isDigit(letter) ? letter - '0' : ('a' <= letter && letter <= 'f' ? letter - 'a' + 10 : p_nBase);
    return value < p_nBase ? value : -1;
}

[[noreturn]] void refuse(const std::string& p_strWord, const char* p_szWhat, const std::string& p_strWhy) {
    throw CommandError(std::string(p_szWhat) + " " + p_strWhy + ", not " + quoted(p_strWord));
}

std::string plain(double p_dNumber) {
    std::ostringstream stream;
    stream << p_dNumber;
    return stream.str();
}

}  // namespace

bool looksLikeNumber(const std::string& p_strWord) {
    const std::size_t first = !p_strWord.empty() && ('-' == p_strWord[0] || '+' == p_strWord[0]) ? 1 : 0;
    return p_strWord.size() > first && isDigit(p_strWord[first]);
}

std::int64_t parseNumber(const std::string& p_strWord, const char* p_szWhat, std::int64_t p_nMin, std::int64_t p_nMax) {
    constexpr std::int64_t kTooLarge = std::int64_t{1} << 40;  // beyond every legal number, far from overflow
    std::size_t at = 0;
    const bool negative = !p_strWord.empty() && '-' == p_strWord[0];
    if (negative || (!p_strWord.empty() && '+' == p_strWord[0])) {
        ++at;
    }
    int base = 10;
    if (p_strWord.size() > at + 2 && '0' == p_strWord[at] && 'x' == lowerCase(p_strWord)[at + 1]) {
        base = 16;
        at += 2;
    }
    if (at >= p_strWord.size()) {
        refuse(p_strWord, p_szWhat, "must be a whole number");
    }
    std::int64_t number = 0;
    for (; at < p_strWord.size(); ++at) {
        const int digit = digitValue(p_strWord[at], base);
        if (-1 == digit) {
            refuse(p_strWord, p_szWhat, "must be a whole number");
        }
        number = number < kTooLarge ? number * base + digit : kTooLarge;
    }
    number = negative ? -number : number;
    if (number < p_nMin || number > p_nMax) {
        refuse(p_strWord, p_szWhat, "must be from " + std::to_string(p_nMin) + " to " + std::to_string(p_nMax));
    }
    return number;
}

int parseInt(const std::string& p_strWord, const char* p_szWhat) {
    return static_cast<int>(parseNumber(p_strWord, p_szWhat, kIntMin, kIntMax));
}

double parseDecimal(const std::string& p_strWord, const char* p_szWhat, double p_dMin, double p_dMax) {
    const bool shaped =
        looksLikeNumber(p_strWord) && std::string::npos == p_strWord.find_first_not_of("0123456789.", 1);
    std::istringstream stream(p_strWord);
    stream.imbue(std::locale::classic());
    double number = 0;
    stream >> number;
    if (!shaped || stream.fail() || stream.peek() != std::istringstream::traits_type::eof()) {
        refuse(p_strWord, p_szWhat, "must be a number such as 2.5");
    }
    if (number < p_dMin || number > p_dMax) {
        refuse(p_strWord, p_szWhat, "must be from " + plain(p_dMin) + " to " + plain(p_dMax));
    }
    return number;
}

bool parseSwitch(const std::string& p_strWord, const char* p_szWhat) {
    const std::string strWord = lowerCase(p_strWord);
    if ("1" == strWord || "on" == strWord || "true" == strWord || "yes" == strWord) {
        return true;
    }
    if ("0" == strWord || "off" == strWord || "false" == strWord || "no" == strWord) {
        return false;
    }
    refuse(p_strWord, p_szWhat, "must be 1 or 0 (on or off)");
}

}  // namespace apps
