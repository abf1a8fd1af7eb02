#include "apps/camerad/picture/FrameBoard.h"

#include "apps/camerad/host/Refusal.h"

#include <algorithm>

namespace camerad {

namespace {

using Clock = FrameBoard::Clock;

constexpr double kLeastFrames = 0.1;           // a second
constexpr double kMostFrames = 120;            // a second
constexpr std::chrono::hours kLongestWait{1};  // a caller that waits longer asks again
constexpr int kBusySeconds = 1;                // until a picture may come in time

// What is no number counts as the least rate.
double rateWithin(double p_dFrames, double p_dMost) {
    return p_dFrames >= kLeastFrames ? std::min(p_dFrames, p_dMost) : kLeastFrames;
}

Clock::time_point deadline(std::chrono::milliseconds p_nTime) {
    const std::chrono::milliseconds nLongest = kLongestWait;
    return Clock::now() + std::clamp(p_nTime, std::chrono::milliseconds(0), nLongest);
}

}  // namespace

FrameBoard::FrameBoard(double p_dMostFrames) : m_dMostFrames(rateWithin(p_dMostFrames, kMostFrames)) {}

void FrameBoard::enter(Looker& p_stLooker, double p_dFrames) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    p_stLooker.dFrames = rateWithin(p_dFrames, m_dMostFrames);
    m_vecLookers.push_back(&p_stLooker);
}

void FrameBoard::leave(Looker& p_stLooker) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_vecLookers.erase(std::find(m_vecLookers.begin(), m_vecLookers.end(), &p_stLooker));
    m_condDrawer.notify_all();
}

Frame FrameBoard::next(Looker& p_stLooker, std::chrono::milliseconds p_nTime) {
    const Clock::time_point tUntil = deadline(p_nTime);
    std::unique_lock<std::mutex> lock(m_mutex);
    const Clock::duration nPeriod = FramePace::periodOf(p_stLooker.dFrames);
    // A frame from before a time in which nobody took any shows what was then. A new viewer gets its first one at once.
    const bool bFirst = 0 == p_stLooker.nSeen;
    const Clock::duration nFresh = 2 * (bFirst ? FramePace::periodOf(m_dMostFrames) : period());
    p_stLooker.nWanted = (Clock::now() - m_tDrawn > nFresh ? m_nDrawn : p_stLooker.nSeen) + 1;
    m_nAsked = bFirst ? std::max(m_nAsked, p_stLooker.nWanted) : m_nAsked;
    m_condDrawer.notify_all();
    Frame pFrame;
    while (!m_bClosed) {
        const bool bNewer = m_nDrawn >= p_stLooker.nWanted;
        const Clock::time_point tNow = Clock::now();
        const Clock::time_point tDue = p_stLooker.objPace.due(nPeriod);
        if (bNewer && tDue <= tNow) {
            p_stLooker.objPace.took(tNow, nPeriod);
            p_stLooker.nSeen = m_nDrawn;
            m_bTaken = true;
            m_condDrawer.notify_all();
            pFrame = m_pFrame;
            break;
        }
        if (tNow >= tUntil) {
            break;
        }
        m_condDrawn.wait_until(lock, bNewer ? std::min(tDue, tUntil) : tUntil);
    }
    p_stLooker.nWanted = 0;
    return pFrame;
}

Frame FrameBoard::snapshot(std::chrono::milliseconds p_nTime) {
    const Clock::time_point tUntil = deadline(p_nTime);
    std::unique_lock<std::mutex> lock(m_mutex);
    const std::uint64_t nWanted = m_nBegun + 1;
    m_nAsked = std::max(m_nAsked, nWanted);
    m_condDrawer.notify_all();
    m_condDrawn.wait_until(lock, tUntil, [&] { return m_bClosed || m_nEnded >= nWanted; });
    if (m_nDrawn >= nWanted) {
        return m_pFrame;
    }
    if (m_nEnded >= nWanted) {
        throw Refusal(Refusal::Kind::Failed, "no-picture", "The camera cannot draw its picture: " + m_strWhy + ".");
    }
    const char* const szWhy = m_bClosed ? "The camera is going down; try again when it is up."
                                        : "The picture was not drawn in time; try again in a second.";
    throw Refusal(Refusal(Refusal::Kind::Busy, "busy", szWhy).retryAfter(kBusySeconds));
}

bool FrameBoard::isClosed() const {
    const std::lock_guard<std::mutex> guard(m_mutex);
    return m_bClosed;
}

void FrameBoard::close() {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_bClosed = true;
    m_condDrawer.notify_all();
    m_condDrawn.notify_all();
}

PictureFeed::Counters FrameBoard::counters() const {
    const std::lock_guard<std::mutex> guard(m_mutex);
    PictureFeed::Counters stCounters = m_stCounters;
    stCounters.nViewers = m_vecLookers.size();
    return stCounters;
}

bool FrameBoard::awaitTurn() {
    std::unique_lock<std::mutex> lock(m_mutex);
    while (!m_bClosed) {
        const std::optional<Clock::time_point> tTurn = turn();
        const Clock::time_point tNow = Clock::now();
        if (!tTurn) {
            m_condDrawer.wait(lock);
        } else if (*tTurn > tNow) {
            m_condDrawer.wait_until(lock, *tTurn);
        } else {
            // A snapshot between two frames of the viewers does not shift these.
            if (isLookedAt() && tNow >= m_objPace.due(period())) {
                m_objPace.took(tNow, period());
            }
            m_objLimit.took(tNow, FramePace::periodOf(m_dMostFrames));
            ++m_nBegun;
            return true;
        }
    }
    return false;
}

void FrameBoard::post(Frame p_pFrame, double p_dSeconds, const std::string& p_strWhy) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_nEnded = m_nBegun;
    m_stCounters.dSeconds += p_dSeconds;
    m_strWhy = p_strWhy;
    if (nullptr != p_pFrame) {
        ++m_stCounters.nFrames;
        m_stCounters.nBytes += p_pFrame->size();
        m_pFrame = std::move(p_pFrame);
        m_nDrawn = m_nBegun;
        m_tDrawn = Clock::now();
        m_bTaken = false;
    }
    m_condDrawn.notify_all();
}

Clock::duration FrameBoard::period() const {
    double dFrames = kLeastFrames;
    for (const Looker* pLooker : m_vecLookers) {
        dFrames = std::max(dFrames, pLooker->dFrames);
    }
    return FramePace::periodOf(dFrames);
}

bool FrameBoard::isLookedAt() const {
    // For viewers that are held up elsewhere nothing is drawn beyond one frame that none of them has taken.
    return std::any_of(m_vecLookers.begin(), m_vecLookers.end(),
                       [this](const Looker* p_pLooker) { return m_bTaken || p_pLooker->nWanted > m_nDrawn; });
}

std::optional<Clock::time_point> FrameBoard::turn() const {
    const bool bAsked = m_nAsked > m_nBegun;
    if (!bAsked && !isLookedAt()) {
        return std::nullopt;
    }
    const Clock::time_point tLimit = m_objLimit.due(FramePace::periodOf(m_dMostFrames));
    return bAsked ? tLimit : std::max(tLimit, m_objPace.due(period()));
}

}  // namespace camerad
