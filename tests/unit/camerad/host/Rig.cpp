#include "tests/unit/camerad/host/Rig.h"

#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <mutex>

namespace fs = std::filesystem;

namespace {
constexpr std::chrono::seconds kPatience{30};
}

Rig::Rig(const std::string& p_strVariant) {
    const auto fnOverlay = [&](const fs::path& p_objFrom) {
        for (const char* const szFolder : {"hd1", "mnt"}) {
            if (fs::exists(p_objFrom / szFolder)) {
                fs::copy(p_objFrom / szFolder, fs::path(m_objRoot.path()) / szFolder,
                         fs::copy_options::recursive | fs::copy_options::overwrite_existing);
            }
        }
    };
    fnOverlay(ROOTFS_DIR);
    if (!p_strVariant.empty()) {
        fnOverlay(fs::path(ROOTFS_DIR) / "variants" / p_strVariant);
    }
    m_stSettings.nLookMilliseconds = 20;
}

void Rig::start() {
    m_pHost = camerad::CameraHost::start(*m_pCamera, m_objEvents, m_stSettings);
}

void Rig::restart() {
    m_pHost.reset();
    m_pCamera.reset();
    m_pCamera = std::make_unique<simcam::Camera>();
    start();
}

int Rig::value(u32 p_nKey, int p_nChannel) {
    for (const camerad::ParameterValue& value : channel(p_nChannel).values().vecValues) {
        if (value.nKey == p_nKey) {
            return value.nValue;
        }
    }
    throw std::runtime_error("no value of key " + std::to_string(p_nKey));
}

bool Rig::isUnsaved(u32 p_nKey, int p_nChannel) {
    for (const camerad::ParameterValue& value : channel(p_nChannel).values().vecValues) {
        if (value.nKey == p_nKey) {
            return value.isUnsaved();
        }
    }
    throw std::runtime_error("no value of key " + std::to_string(p_nKey));
}

camerad::ChangeResult Rig::set(u32 p_nKey, int p_nValue, int p_nChannel) {
    return channel(p_nChannel).change({{p_nKey, p_nValue}}, true, kAnna).at(0);
}

int Rig::driver(u32 p_nCommand, int p_nChannel) {
    int nValue = -1;
    m_pCamera->driver().value(p_nChannel - 1, p_nCommand, nValue);
    return nValue;
}

std::vector<std::string> Rig::sets(std::uint64_t p_nAfter) {
    simcam::TranscriptFilter stFilter;
    stFilter.setsOnly = true;
    stFilter.after = p_nAfter;
    return m_pCamera->transcript().lines(stFilter);
}

std::vector<camerad::EventPtr> Ear::wait(std::chrono::milliseconds p_nTime) {
    std::vector<camerad::EventPtr> events(m_queUnread.begin(), m_queUnread.end());
    m_queUnread.clear();
    for (camerad::EventPtr& event : m_pEvents->wait(events.empty() ? p_nTime : std::chrono::milliseconds(0))) {
        events.push_back(std::move(event));
    }
    return events;
}

nlohmann::json Ear::await(const std::string& p_strType, const std::function<bool(const nlohmann::json&)>& p_fnWanted) {
    const auto tEnd = std::chrono::steady_clock::now() + kPatience;
    while (std::chrono::steady_clock::now() < tEnd) {
        if (m_queUnread.empty()) {
            const std::vector<camerad::EventPtr> events = m_pEvents->wait(std::chrono::milliseconds(200));
            m_queUnread.assign(events.begin(), events.end());
            continue;
        }
        const camerad::EventPtr event = m_queUnread.front();
        m_queUnread.pop_front();
        nlohmann::json data = nlohmann::json::parse(event->strData);
        if (event->strType == p_strType && (!p_fnWanted || p_fnWanted(data))) {
            return data;
        }
    }
    return nullptr;
}

bool eventually(const std::function<bool()>& p_fnCondition) {
    std::mutex mutex;
    std::condition_variable condition;
    std::unique_lock lock(mutex);
    return condition.wait_for(lock, std::chrono::milliseconds(0), p_fnCondition) || [&] {
        const auto tEnd = std::chrono::steady_clock::now() + kPatience;
        while (std::chrono::steady_clock::now() < tEnd) {
            if (condition.wait_for(lock, std::chrono::milliseconds(5), p_fnCondition)) {
                return true;
            }
        }
        return false;
    }();
}

camerad::Refusal refusalOf(const std::function<void()>& p_fnCode) {
    try {
        p_fnCode();
    } catch (const camerad::Refusal& objRefusal) {
        return objRefusal;
    }
    return {camerad::Refusal::Kind::Failed, "none", "nothing was refused"};
}
