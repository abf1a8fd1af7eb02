#include "apps/camerad/host/EventHub.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>

namespace camerad {

namespace {

const char kResync[] = "resync";

EventPtr resyncAt(std::uint64_t p_nNumber) {
    return std::make_shared<const Event>(Event{p_nNumber, kResync, 0, "{}"});
}

// Events in their order, bounded in number and bytes.
class Queue {
public:
    // False, and nothing is added, when it would be too much.
    bool push(const EventPtr& p_pEvent, std::size_t p_nEvents, std::size_t p_nBytes) {
        if (m_queEvents.size() >= p_nEvents || m_nBytes + p_pEvent->strData.size() > p_nBytes) {
            return false;
        }
        m_nBytes += p_pEvent->strData.size();
        m_queEvents.push_back(p_pEvent);
        return true;
    }
    void pop() {
        m_nBytes -= m_queEvents.front()->strData.size();
        m_queEvents.pop_front();
    }
    void clear() {
        m_queEvents.clear();
        m_nBytes = 0;
    }
    const std::deque<EventPtr>& events() const { return m_queEvents; }

private:
    std::deque<EventPtr> m_queEvents;
    std::size_t m_nBytes = 0;
};

class Listener : public EventHub::Subscription {
public:
    Listener(EventFilter p_stFilter, const EventHub::Limits& p_stLimits)
        : m_stFilter(std::move(p_stFilter)), m_stLimits(p_stLimits) {}

    std::vector<EventPtr> wait(std::chrono::milliseconds p_nTime) override {
        const auto until = std::chrono::steady_clock::now() + p_nTime;
        std::unique_lock lock(m_mutex);
        m_condition.wait_until(lock, until, [this] { return m_bClosed || !m_objQueue.events().empty(); });
        if (m_bClosed) {
            return {};
        }
        std::vector<EventPtr> vecEvents(m_objQueue.events().begin(), m_objQueue.events().end());
        m_objQueue.clear();
        return vecEvents;
    }

    bool isClosed() const override {
        const std::lock_guard lock(m_mutex);
        return m_bClosed;
    }

    const EventFilter& filter() const { return m_stFilter; }

    // False when the queue was lost.
    bool deliver(const EventPtr& p_pEvent) {
        bool bTaken = true;
        {
            const std::lock_guard lock(m_mutex);
            if (!m_objQueue.push(p_pEvent, m_stLimits.nQueue, m_stLimits.nBytes)) {
                resync(p_pEvent->nNumber);
                bTaken = false;
            }
        }
        m_condition.notify_all();
        return bTaken;
    }

    void deliverResync(std::uint64_t p_nNumber) {
        const std::lock_guard lock(m_mutex);
        resync(p_nNumber);
    }

    void close() {
        {
            const std::lock_guard lock(m_mutex);
            m_bClosed = true;
            m_objQueue.clear();
        }
        m_condition.notify_all();
    }

private:
    // With the lock.
    void resync(std::uint64_t p_nNumber) {
        m_objQueue.clear();
        m_objQueue.push(resyncAt(p_nNumber), 1, m_stLimits.nBytes);
    }

    const EventFilter m_stFilter;
    const EventHub::Limits m_stLimits;
    mutable std::mutex m_mutex;  // guards everything below
    std::condition_variable m_condition;
    Queue m_objQueue;
    bool m_bClosed = false;
};

}  // namespace

bool EventFilter::matches(const Event& p_stEvent) const {
    if (kResync == p_stEvent.strType) {
        return true;
    }
    const bool bChannel = 0 == nChannel || 0 == p_stEvent.nChannel || nChannel == p_stEvent.nChannel;
    const bool bType =
        vecTypes.empty() || vecTypes.end() != std::find(vecTypes.begin(), vecTypes.end(), p_stEvent.strType);
    return bChannel && bType;
}

struct EventHub::State {
    explicit State(const Limits& p_stLimits) : m_stLimits(p_stLimits), m_nLast(p_stLimits.nBefore) {}

    const Limits m_stLimits;
    std::mutex m_mutex;  // guards everything below but the counter
    std::uint64_t m_nLast;
    Queue m_objKept;
    std::vector<std::weak_ptr<Listener>> m_vecListeners;
    bool m_bClosed = false;
    std::atomic<std::uint64_t> m_nOverflows{0};

    // With the lock. The oldest go until there is room; one event that is larger than everything is not kept, and what
    // was before it neither, so that nobody takes the rest for all.
    void keep(const EventPtr& p_pEvent) {
        while (!m_objKept.push(p_pEvent, m_stLimits.nKept, m_stLimits.nBytes)) {
            if (m_objKept.events().empty()) {
                return;
            }
            m_objKept.pop();
        }
    }

    // With the lock: what the listener has missed, or a resync.
    void catchUp(Listener& p_objListener, std::uint64_t p_nAfter) const {
        if (p_nAfter == m_nLast) {
            return;
        }
        const std::deque<EventPtr>& queKept = m_objKept.events();
        const bool bKnown = p_nAfter < m_nLast && !queKept.empty() && queKept.front()->nNumber <= p_nAfter + 1;
        if (!bKnown) {
            p_objListener.deliverResync(m_nLast);
            return;
        }
        for (const EventPtr& pEvent : queKept) {
            if (pEvent->nNumber > p_nAfter && p_objListener.filter().matches(*pEvent) &&
                !p_objListener.deliver(pEvent)) {
                p_objListener.deliverResync(m_nLast);
                return;
            }
        }
    }
};

EventHub::EventHub() : EventHub(Limits{}) {}
EventHub::EventHub(const Limits& p_stLimits) : m_pState(std::make_shared<State>(p_stLimits)) {}
EventHub::~EventHub() {
    close();
}

void EventHub::publish(const std::string& p_strType, int p_nChannel, const nlohmann::json& p_objData) {
    // Texts may come from documents of the camera: what is no UTF-8 is replaced.
    std::string strData = p_objData.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    const std::lock_guard lock(m_pState->m_mutex);
    if (m_pState->m_bClosed) {
        return;
    }
    const EventPtr pEvent =
        std::make_shared<const Event>(Event{++m_pState->m_nLast, p_strType, p_nChannel, std::move(strData)});
    m_pState->keep(pEvent);
    std::vector<std::weak_ptr<Listener>>& vecListeners = m_pState->m_vecListeners;
    for (auto each = vecListeners.begin(); vecListeners.end() != each;) {
        const std::shared_ptr<Listener> pListener = each->lock();
        if (nullptr == pListener) {
            each = vecListeners.erase(each);
            continue;
        }
        if (pListener->filter().matches(*pEvent) && !pListener->deliver(pEvent)) {
            ++m_pState->m_nOverflows;
        }
        ++each;
    }
}

std::shared_ptr<EventHub::Subscription> EventHub::subscribe(const EventFilter& p_stFilter, std::uint64_t p_nAfter) {
    const auto pListener = std::make_shared<Listener>(p_stFilter, m_pState->m_stLimits);
    const std::lock_guard lock(m_pState->m_mutex);
    if (m_pState->m_bClosed) {
        pListener->close();
        return pListener;
    }
    if (0 != p_nAfter) {
        m_pState->catchUp(*pListener, p_nAfter);
    }
    std::vector<std::weak_ptr<Listener>>& vecListeners = m_pState->m_vecListeners;
    vecListeners.erase(std::remove_if(vecListeners.begin(), vecListeners.end(),
                                      [](const std::weak_ptr<Listener>& p_pOld) { return p_pOld.expired(); }),
                       vecListeners.end());
    vecListeners.push_back(pListener);
    return pListener;
}

std::uint64_t EventHub::lastNumber() const {
    const std::lock_guard lock(m_pState->m_mutex);
    return m_pState->m_nLast;
}

std::size_t EventHub::listeners() const {
    const std::lock_guard lock(m_pState->m_mutex);
    return static_cast<std::size_t>(
        std::count_if(m_pState->m_vecListeners.begin(), m_pState->m_vecListeners.end(),
                      [](const std::weak_ptr<Listener>& p_pListener) { return !p_pListener.expired(); }));
}

std::uint64_t EventHub::overflows() const {
    return m_pState->m_nOverflows;
}

void EventHub::close() {
    const std::lock_guard lock(m_pState->m_mutex);
    m_pState->m_bClosed = true;
    for (const std::weak_ptr<Listener>& pEach : m_pState->m_vecListeners) {
        if (const std::shared_ptr<Listener> pListener = pEach.lock()) {
            pListener->close();
        }
    }
    m_pState->m_vecListeners.clear();
}

}  // namespace camerad
