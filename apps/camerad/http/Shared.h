// What the connections of one server share.
//
// Threads: settings, router and access do not change while the server runs; the rest synchronises itself.
#pragma once

#include "apps/camerad/http/Answerer.h"
#include "apps/camerad/http/Server.h"

#include <atomic>
#include <exception>
#include <memory>
#include <mutex>
#include <string>

namespace camerad {

struct Shared {
    const ServerSettings stSettings;
    const Router& objRouter;
    AccessControl& objAccess;
    const std::unique_ptr<TlsContext> pTls;  // null: plain HTTP
    Answerer objAnswerer;
    std::atomic<bool> bStopping{false};
    std::atomic<std::size_t> nStreams{0};
    std::atomic<std::uint64_t> nTimeouts{0};
    std::atomic<std::uint64_t> nRefused{0};

    Shared(const ServerSettings& p_stSettings, const Router& p_objRouter, AccessControl& p_objAccess,
           std::unique_ptr<TlsContext> p_pTls)
        : stSettings(p_stSettings), objRouter(p_objRouter), objAccess(p_objAccess), pTls(std::move(p_pTls)) {}

    // For what no client may learn. Falls back to standard error.
    void log(const std::string& p_strLine) const;
    // For where nothing may be thrown any more: when not even the log can be written, the failure stays unsaid.
    void logFailure(const char* p_szWhat, const std::exception& p_objError) const noexcept;
    void count(const std::string& p_strRoute, int p_nStatus, double p_dSeconds);
    std::map<std::pair<std::string, int>, ServerCounters::Requests> requests() const;
    // False when there are as many streams as there may be.
    bool takeStream();

private:
    mutable std::mutex m_mutex;
    std::map<std::pair<std::string, int>, ServerCounters::Requests> m_mapRequests;
};

}  // namespace camerad
