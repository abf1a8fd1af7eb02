// The HTTP server: connections, TLS, limits, who gets in, and the routes.
//
// One thread for each connection, up to the limit; what is beyond is answered 503 and closed. Each connection has
// deadlines of its own, so that a slow client costs nobody else anything. Uses httplib for the protocol; no other file
// includes it.
//
// Threads: start and stop from one thread; the rest from any.
#pragma once

#include "apps/camerad/access/AccessControl.h"
#include "apps/camerad/http/Router.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace camerad {

struct ServerSettings {
    std::string strAddress = "127.0.0.1";
    int nPort = 0;                      // 0: any that is free
    std::string strCertificate;         // file on this machine, PEM; with it the server speaks TLS and nothing else
    std::string strPrivateKey;          // file on this machine, PEM
    std::vector<std::string> vecHosts;  // names that a Host header may carry besides address and localhost; "*": any

    std::size_t nConnections = 256;           // at a time
    std::size_t nStreams = 160;               // of them streams
    std::size_t nConnectionsPerClient = 160;  // of one address
    std::size_t nHeaderBytes = 16384;         // of one request, with its first line
    std::size_t nPathBytes = 512;
    std::chrono::milliseconds nHandshakeTime{5000};
    std::chrono::milliseconds nHeaderTime{5000};  // from the first byte of a request to the end of its header
    std::chrono::milliseconds nBodyTime{10000};   // for the whole body
    std::chrono::milliseconds nIdleTime{15000};   // between two requests, and before the first
    std::chrono::milliseconds nWriteTime{5000};   // for 16 KiB of an answer, or one write of a stream, to be taken
    // Gets a line for each failure that no client may learn the inside of; from any thread. None: standard error.
    std::function<void(const std::string&)> fnLog;
};

struct ServerCounters {
    struct Requests {
        std::uint64_t nCount = 0;
        double dSeconds = 0;                         // sum
        std::map<double, std::uint64_t> mapBuckets;  // upper bound in seconds to count (cumulative is up to the reader)
    };
    // "GET /api/v1/..." (the pattern) and status. What found no route counts as "unmatched", what could not be read as
    // "unreadable". The time of a stream ends where it begins.
    std::map<std::pair<std::string, int>, Requests> mapRequests;
    std::size_t nConnections = 0, nStreams = 0;            // now
    std::uint64_t nRefusedConnections = 0, nTimeouts = 0;  // since the start
};

class Server {
public:
    // The router and the access control must outlive the server.
    static std::unique_ptr<Server> create(const ServerSettings& p_stSettings, const Router& p_objRouter,
                                          AccessControl& p_objAccess);
    virtual ~Server() = default;  // stops

    // Listens and serves until stop. Throws std::runtime_error when the address cannot be had.
    virtual void start() = 0;
    virtual int port() const = 0;         // that it listens on, after start
    virtual std::string url() const = 0;  // "http://127.0.0.1:8080/"
    // Ends every connection and stream and waits for their threads.
    virtual void stop() = 0;
    virtual ServerCounters counters() const = 0;
};

}  // namespace camerad
