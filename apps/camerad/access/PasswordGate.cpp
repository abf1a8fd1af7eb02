#include "apps/camerad/access/PasswordGate.h"

#include "apps/camerad/host/Refusal.h"

namespace camerad {

namespace {

constexpr int kTryAgainSeconds = 2;

Refusal crowded() {
    Refusal refusal(Refusal::Kind::TooMany, "too-many-logins",
                    "Too many passwords are being checked at this moment; try again in a few seconds.");
    refusal.retryAfter(kTryAgainSeconds);
    return refusal;
}

}  // namespace

PasswordGate::Turn::Turn(PasswordGate& p_objGate) : m_objGate(p_objGate) {
    std::unique_lock<std::mutex> lock(p_objGate.m_objMutex);
    const auto isFree = [&p_objGate] { return p_objGate.m_nInside < p_objGate.m_nAtATime; };
    bool hasTurn = isFree();
    if (!hasTurn && p_objGate.m_nWaiting < p_objGate.m_nMostWaiting) {
        ++p_objGate.m_nWaiting;
        hasTurn = p_objGate.m_objLeft.wait_for(lock, p_objGate.m_nLongestWait, isFree);
        --p_objGate.m_nWaiting;
    }
    if (!hasTurn) {
        throw crowded();
    }
    ++p_objGate.m_nInside;
}

PasswordGate::Turn::~Turn() {
    {
        const std::lock_guard<std::mutex> guard(m_objGate.m_objMutex);
        --m_objGate.m_nInside;
    }
    m_objGate.m_objLeft.notify_one();
}

}  // namespace camerad
