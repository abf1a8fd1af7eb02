#include "apps/camerad/http/Shared.h"

#include <iostream>

namespace camerad {

namespace {
constexpr double kBounds[] = {0.001, 0.005, 0.01, 0.05, 0.1, 0.5, 1, 5};  // seconds
}

void Shared::log(const std::string& p_strLine) const {
    if (stSettings.fnLog) {
        stSettings.fnLog(p_strLine);
    } else {
        std::cerr << "camerad: " + p_strLine + "\n";
    }
}

void Shared::logFailure(const char* p_szWhat, const std::exception& p_objError) const noexcept {
    try {
        log(std::string(p_szWhat) + p_objError.what());
    } catch (const std::exception&) {
        return;  // there is no memory for as much as a line
    }
}

void Shared::count(const std::string& p_strRoute, int p_nStatus, double p_dSeconds) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    ServerCounters::Requests& requests = m_mapRequests[{p_strRoute, p_nStatus}];
    if (requests.mapBuckets.empty()) {
        for (const double bound : kBounds) {
            requests.mapBuckets[bound] = 0;
        }
    }
    ++requests.nCount;
    requests.dSeconds += p_dSeconds;
    const auto bucket = requests.mapBuckets.lower_bound(p_dSeconds);
    if (requests.mapBuckets.end() != bucket) {
        ++bucket->second;
    }
}

std::map<std::pair<std::string, int>, ServerCounters::Requests> Shared::requests() const {
    const std::lock_guard<std::mutex> guard(m_mutex);
    return m_mapRequests;
}

bool Shared::takeStream() {
    std::size_t now = nStreams;
    while (now < stSettings.nStreams) {
        if (nStreams.compare_exchange_weak(now, now + 1)) {
            return true;
        }
    }
    return false;
}

}  // namespace camerad
