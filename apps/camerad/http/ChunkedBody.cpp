#include "apps/camerad/http/ChunkedBody.h"

#include "apps/camerad/http/RequestHead.h"
#include "apps/camerad/http/Status.h"

#include <algorithm>

namespace camerad {

namespace {

constexpr std::size_t kLongestLine = 256;
constexpr std::size_t kMostDigits = 8;
constexpr std::size_t kFramingPerByte = 8;  // a piece of one byte needs five
constexpr std::size_t kFramingAlways = 4096;

[[noreturn]] void refuse(const std::string& p_strDetail) {
    throw HttpRefusal(kBadRequest, "bad-body", p_strDetail);
}

unsigned valueOf(char p_cByte) {
    constexpr unsigned kTen = 10;
    constexpr unsigned kNone = 16;
    if (p_cByte >= '0' && p_cByte <= '9') {
        return static_cast<unsigned>(p_cByte - '0');
    }
    if (p_cByte >= 'a' && p_cByte <= 'f') {
        return static_cast<unsigned>(p_cByte - 'a') + kTen;
    }
    return p_cByte >= 'A' && p_cByte <= 'F' ? static_cast<unsigned>(p_cByte - 'A') + kTen : kNone;
}

std::uint64_t sizeIn(const std::string& p_strLine) {
    constexpr unsigned kBase = 16;
    const std::string digits = p_strLine.substr(0, p_strLine.find(';'));
    if (digits.empty() || digits.size() > kMostDigits) {
        refuse("a piece of the body has no length");
    }
    std::uint64_t size = 0;
    for (const char digit : digits) {
        if (valueOf(digit) >= kBase) {
            refuse("the length of a piece of the body is not a hexadecimal number");
        }
        size = size * kBase + valueOf(digit);
    }
    return size;
}

}  // namespace

void ChunkedBody::take(std::string& p_strBytes) {
    std::size_t taken = 0;
    while (taken < p_strBytes.size() && State::End != m_eState) {
        if (State::Data == m_eState) {
            const auto count = static_cast<std::size_t>(std::min<std::uint64_t>(m_nLeft, p_strBytes.size() - taken));
            m_strBody.append(p_strBytes, taken, count);
            taken += count;
            m_nLeft -= count;
            if (0 == m_nLeft) {
                m_eState = State::DataEnd;
            }
        } else {
            takeByte(p_strBytes[taken++]);
        }
    }
    p_strBytes.erase(0, taken);
}

void ChunkedBody::takeByte(char p_cByte) {
    if (++m_nFraming > kFramingAlways + kFramingPerByte * m_nLimit) {
        refuse("the body consists of little but the lengths of its pieces");
    }
    m_strLine += p_cByte;
    if ('\n' != p_cByte) {
        if (m_strLine.size() > kLongestLine) {
            refuse("a line between the pieces of the body is too long");
        }
        return;
    }
    if (m_strLine.size() < 2 || '\r' != m_strLine[m_strLine.size() - 2] ||
        m_strLine.find('\r') != m_strLine.size() - 2) {
        refuse("a line between the pieces of the body does not end with carriage return and line feed");
    }
    m_strLine.resize(m_strLine.size() - 2);
    takeLine();
    m_strLine.clear();
}

void ChunkedBody::takeLine() {
    switch (m_eState) {
        case State::Size:
            m_nLeft = sizeIn(m_strLine);
            if (m_nLeft > m_nLimit - m_strBody.size()) {
                throw HttpRefusal(kTooLarge, "too-large",
                                  "the body is longer than the " + std::to_string(m_nLimit) + " bytes taken here");
            }
            m_eState = 0 == m_nLeft ? State::Trailer : State::Data;
            break;
        case State::DataEnd:
            if (!m_strLine.empty()) {
                refuse("a piece of the body is longer than it says");
            }
            m_eState = State::Size;
            break;
        case State::Trailer:  // fields behind the body are read over
            m_eState = m_strLine.empty() ? State::End : State::Trailer;
            break;
        case State::Data:
        case State::End:
            break;
    }
}

}  // namespace camerad
