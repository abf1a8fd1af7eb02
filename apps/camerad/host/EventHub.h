// What happens in the camera, told to everyone who listens.
//
// publish never waits for a listener: each subscription has a bounded queue of its own. A listener that
// falls behind loses its queue, and reads one event of type "resync" instead, after which it has to ask for everything
// anew. The newest events are kept for those who come back (Last-Event-ID).
//
// Threads: every function may be called from any thread.
#pragma once

#include <nlohmann/json.hpp>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace camerad {

struct Event {
    std::uint64_t nNumber = 0;  // without gaps
    std::string strType;        // parameter, scheme, schemes, ranges, driver, message, lens, ... (openapi.json)
    int nChannel = 0;           // from 1; 0: of no channel
    std::string strData;        // JSON, one line
};
using EventPtr = std::shared_ptr<const Event>;

struct EventFilter {
    int nChannel = 0;                   // 0: any; events of no channel always pass
    std::vector<std::string> vecTypes;  // empty: any; "resync" always passes
    bool matches(const Event& p_stEvent) const;
};

class EventHub {
public:
    struct Limits {
        std::size_t nQueue = 512;              // events waiting for one listener
        std::size_t nKept = 1024;              // events kept for those who come back
        std::size_t nBytes = 4 * 1024 * 1024;  // of the data of either
        // Number of the event before the first. Where it is another one in each run, a listener of an earlier run is not
        // taken for one who has heard the beginning of this one.
        std::uint64_t nBefore = 0;
    };

    class Subscription {
    public:
        virtual ~Subscription() = default;
        // Blocks until there are events or the time is over. Returns what is there, oldest first. After close: at once,
        // with nothing.
        virtual std::vector<EventPtr> wait(std::chrono::milliseconds p_nTime) = 0;
        virtual bool isClosed() const = 0;
    };

    EventHub();
    explicit EventHub(const Limits& p_stLimits);
    ~EventHub();  // closes every subscription
    EventHub(const EventHub&) = delete;
    EventHub& operator=(const EventHub&) = delete;

    // Gives the event its number. A number of 0 channels: see Event.
    void publish(const std::string& p_strType, int p_nChannel, const nlohmann::json& p_objData);

    // p_nAfter: the number of the last event that the listener has seen, 0 for none. What came after it is delivered
    // first; when that is no longer kept, or the number is unknown, one "resync".
    std::shared_ptr<Subscription> subscribe(const EventFilter& p_stFilter, std::uint64_t p_nAfter = 0);

    std::uint64_t lastNumber() const;
    std::size_t listeners() const;
    std::uint64_t overflows() const;  // how often a listener lost its queue

    // Wakes and ends every subscription; new ones are closed from the start.
    void close();

private:
    struct State;
    std::shared_ptr<State> m_pState;
};

}  // namespace camerad
