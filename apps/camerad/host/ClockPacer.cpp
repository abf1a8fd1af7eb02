#include "apps/camerad/host/ClockPacer.h"

#include "apps/camerad/host/HostLog.h"
#include "apps/camerad/host/PlainText.h"
#include "apps/camerad/host/Refusal.h"

#include <algorithm>
#include <cstdio>

namespace camerad {

namespace {

constexpr std::chrono::milliseconds kStep{20};
constexpr std::chrono::milliseconds kLongestStep{100};  // of real time; what is beyond is lost
constexpr std::chrono::seconds kTellEvery{1};
constexpr std::chrono::seconds kLongestWait{5};
constexpr int kFastest = 7200;

bool isLeap(int p_nYear) {
    return (0 == p_nYear % 4 && 0 != p_nYear % 100) || 0 == p_nYear % 400;
}

int daysOf(int p_nYear, int p_nMonth) {
    constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return 2 == p_nMonth && isLeap(p_nYear) ? 29 : kDays[p_nMonth - 1];
}

// Two or four digits at a place of the text, which has them there.
int digitsAt(const std::string& p_strText, std::size_t p_nAt, std::size_t p_nCount) {
    int nNumber = 0;
    for (std::size_t i = p_nAt; i < p_nAt + p_nCount; ++i) {
        nNumber = nNumber * 10 + (p_strText[i] - '0');
    }
    return nNumber;
}

bool hasShape(const std::string& p_strText) {
    const std::string strShape = "0000-00-00T00:00:00";
    if (p_strText.size() != strShape.size()) {
        return false;
    }
    for (std::size_t i = 0; i < strShape.size(); ++i) {
        const bool bDigit = p_strText[i] >= '0' && p_strText[i] <= '9';
        if ('0' == strShape[i] ? !bDigit : strShape[i] != p_strText[i]) {
            return false;
        }
    }
    return true;
}

}  // namespace

platform::CivilTime parseTime(const std::string& p_strText) {
    platform::CivilTime stTime;
    bool bGood = hasShape(p_strText);
    if (bGood) {
        stTime = {digitsAt(p_strText, 0, 4),  digitsAt(p_strText, 5, 2),  digitsAt(p_strText, 8, 2),
                  digitsAt(p_strText, 11, 2), digitsAt(p_strText, 14, 2), digitsAt(p_strText, 17, 2)};
        bGood = stTime.year >= 1970 && stTime.year <= 2099 && stTime.month >= 1 && stTime.month <= 12 &&
                stTime.day >= 1 && stTime.day <= daysOf(stTime.year, stTime.month) && stTime.hour <= 23 &&
                stTime.minute <= 59 && stTime.second <= 59;
    }
    if (!bGood) {
        throw Refusal(Refusal::Kind::BadValue, "bad-value",
                      "a time is a date and time of day without a zone, of the years 1970 to 2099, for instance "
                      "\"2026-11-21T22:40:05\", not \"" +
                          plainLine(p_strText, 40) + "\"");
    }
    return stTime;
}

ClockPacer::ClockPacer(std::function<void(const ClockView&)> p_fnTell)
    : m_fnTell(std::move(p_fnTell)),
      m_bHeldBefore(platform::Clock::isHeld()),
      m_bSimulated(m_bHeldBefore),
      m_nSpeed(m_bHeldBefore ? 0 : 1),
      m_tLast(Steady::now()),
      m_tTold(m_tLast) {
    m_objThread = std::thread([this] { body(); });
}

ClockPacer::~ClockPacer() {
    stop();
    if (!m_bHeldBefore) {
        platform::Clock::release();
    }
}

void ClockPacer::stop() {
    {
        const Lock lock(m_mutex);
        m_bStop = true;
    }
    m_condition.notify_all();
    if (m_objThread.joinable()) {
        m_objThread.join();
    }
}

ClockView ClockPacer::viewLocked() const {
    return {timeText(platform::Clock::civilTime()), m_bSimulated, m_nSpeed, m_nRevision};
}

ClockView ClockPacer::view() const {
    const Lock lock(m_mutex);
    return viewLocked();
}

void ClockPacer::set(bool p_bSimulated, const std::string& p_strTime, int p_nSpeed) {
    if (p_nSpeed < 0 || p_nSpeed > kFastest) {
        throw Refusal(Refusal::Kind::BadValue, "bad-value",
                      "the speed of the clock is 0 (stands) to " + std::to_string(kFastest) + ", not " +
                          std::to_string(p_nSpeed));
    }
    if (!p_bSimulated && !p_strTime.empty()) {
        throw Refusal(Refusal::Kind::BadValue, "bad-value",
                      "only a simulated clock can be set; the real one is the machine's");
    }
    const platform::CivilTime stTime = p_strTime.empty() ? platform::CivilTime{} : parseTime(p_strTime);
    ClockView view;
    {
        Lock lock(m_mutex);
        ++m_nSetting;
        const bool bStands = m_condition.wait_until(lock, Steady::now() + kLongestWait, [this] { return !m_bMoving; });
        --m_nSetting;
        if (!bStands) {
            m_condition.notify_all();
            Refusal refusal(Refusal::Kind::Busy, "busy", "the camera still works at what is due on its clock");
            refusal.retryAfter(1);
            throw Refusal(refusal);
        }
        if (!p_bSimulated) {
            platform::Clock::release();
        } else if (!p_strTime.empty() || !m_bSimulated) {
            platform::Clock::hold(p_strTime.empty() ? platform::Clock::civilTime() : stTime);
        }
        m_bSimulated = p_bSimulated;
        m_nSpeed = p_bSimulated ? p_nSpeed : 1;
        m_tLast = Steady::now();
        m_tTold = m_tLast;
        ++m_nRevision;
        view = viewLocked();
    }
    m_condition.notify_all();
    m_fnTell(view);
}

void ClockPacer::step(Lock& p_objLock) {
    const Steady::time_point tNow = Steady::now();
    const auto nPassed = std::min<Steady::duration>(tNow - m_tLast, kLongestStep);
    m_tLast = tNow;
    const auto nMicroseconds = std::chrono::duration_cast<std::chrono::microseconds>(nPassed).count() * m_nSpeed;
    m_bMoving = true;
    p_objLock.unlock();
    platform::Clock::advance(static_cast<INT64>(nMicroseconds));
    p_objLock.lock();
    m_bMoving = false;
    m_condition.notify_all();
}

void ClockPacer::body() {
    Lock lock(m_mutex);
    while (!m_bStop) {
        if (!m_bSimulated || 0 != m_nSetting) {
            m_condition.wait(lock, [this] { return m_bStop || (m_bSimulated && 0 == m_nSetting); });
            m_tLast = Steady::now();
            continue;
        }
        m_condition.wait_until(lock, m_tLast + kStep, [this] { return m_bStop || !m_bSimulated || 0 != m_nSetting; });
        if (m_bStop || !m_bSimulated || 0 != m_nSetting) {
            continue;
        }
        if (m_nSpeed > 0) {
            step(lock);
        } else {
            m_tLast = Steady::now();
        }
        if (m_bSimulated && !m_bStop && Steady::now() - m_tTold >= kTellEvery) {
            m_tTold = Steady::now();
            ++m_nRevision;
            const ClockView view = viewLocked();
            lock.unlock();
            m_fnTell(view);
            lock.lock();
        }
    }
}

}  // namespace camerad
