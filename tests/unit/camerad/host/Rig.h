// What the tests of the host stand on: a device root laid out as a sample device, a simulated camera, a host that owns it.
#pragma once

#include "apps/camerad/host/CameraHost.h"
#include "apps/camerad/host/EventHub.h"
#include "simcam/Camera.h"
#include "tests/support/TestRoot.h"

#include <nlohmann/json.hpp>

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

// A listener who reads one event after the other.
class Ear {
public:
    explicit Ear(std::shared_ptr<camerad::EventHub::Subscription> p_pEvents) : m_pEvents(std::move(p_pEvents)) {}

    // What is there and has not been read.
    std::vector<camerad::EventPtr> wait(std::chrono::milliseconds p_nTime);
    // Reads on to the first event of that type which fulfils the condition; null after half a minute.
    nlohmann::json await(const std::string& p_strType,
                         const std::function<bool(const nlohmann::json&)>& p_fnWanted = nullptr);

private:
    std::shared_ptr<camerad::EventHub::Subscription> m_pEvents;
    std::deque<camerad::EventPtr> m_queUnread;
};

class Rig {
public:
    // Of rootfs/variants; empty for the tree as it is. The clock is held until somebody sets it.
    explicit Rig(const std::string& p_strVariant = "");

    void start();
    void stop() { m_pHost.reset(); }
    void restart();  // a new process on the same root: a camera without memory

    TestRoot& root() { return m_objRoot; }
    simcam::Camera& camera() { return *m_pCamera; }
    std::unique_ptr<Ear> listen(const camerad::EventFilter& p_stFilter) {
        return std::make_unique<Ear>(m_objEvents.subscribe(p_stFilter));
    }
    camerad::EventHub& events() { return m_objEvents; }
    camerad::CameraHost& host() { return *m_pHost; }
    camerad::ChannelHost& channel(int p_nChannel = 1) { return m_pHost->channel(p_nChannel); }
    camerad::HostSettings& settings() { return m_stSettings; }

    int value(u32 p_nKey, int p_nChannel = 1);  // as known
    bool isUnsaved(u32 p_nKey, int p_nChannel = 1);
    camerad::ChangeResult set(u32 p_nKey, int p_nValue, int p_nChannel = 1);
    int driver(u32 p_nCommand, int p_nChannel = 1);
    // Driver lines of sets since a place of the transcript.
    std::vector<std::string> sets(std::uint64_t p_nAfter);
    std::uint64_t end() { return m_pCamera->transcript().total(); }

private:
    TestRoot m_objRoot;
    std::unique_ptr<simcam::Camera> m_pCamera = std::make_unique<simcam::Camera>();
    camerad::EventHub m_objEvents;
    camerad::HostSettings m_stSettings;
    std::unique_ptr<camerad::CameraHost> m_pHost;
};

// Whether the condition holds before half a minute is over.
bool eventually(const std::function<bool()>& p_fnCondition);

const camerad::Actor kAnna = {"anna", "desk-1"};

// What the code refuses; a refusal of kind Failed with the text "nothing was refused" when it does not.
camerad::Refusal refusalOf(const std::function<void()>& p_fnCode);
