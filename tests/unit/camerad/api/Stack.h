// camerad as the program puts it together, in this process: a camera on a device root, its host, its server on a port of
// its own, and clients that speak to it over real sockets.
#pragma once

#include "apps/camerad/api/Api.h"
#include "tests/unit/camerad/host/Rig.h"

#include <httplib.h>

#include <atomic>
#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

// A client with one connection. Not for two threads at once.
class StackClient {
public:
    explicit StackClient(int p_nPort);

    // Logs in; from then on every request carries the cookie and the proof.
    void login(const std::string& p_strName, const std::string& p_strPassword);
    void header(const std::string& p_strName, const std::string& p_strValue);

    // Every answer of a described route is held against the description.
    httplib::Response call(const std::string& p_strMethod, const std::string& p_strTarget,
                           const std::string& p_strBody = "");
    // The answer's JSON; a status of 300 and more fails the test.
    nlohmann::json json(const std::string& p_strMethod, const std::string& p_strTarget,
                        const std::string& p_strBody = "");
    httplib::Headers headers() const { return m_mapHeaders; }

private:
    httplib::Client m_objClient;
    httplib::Headers m_mapHeaders;
};

// Reads a stream on a thread of its own until it is told to stop.
class StackStream {
public:
    // p_fnChunk gets everything as it comes, on the stream's thread.
    StackStream(int p_nPort, const std::string& p_strTarget, const httplib::Headers& p_mapHeaders,
                std::function<void(const char*, std::size_t)> p_fnChunk);
    ~StackStream();
    StackStream(const StackStream&) = delete;
    StackStream& operator=(const StackStream&) = delete;

    std::uint64_t bytes() const { return m_nBytes; }
    bool hasEnded() const { return m_bEnded; }

private:
    httplib::Client m_objClient;
    std::atomic<std::uint64_t> m_nBytes{0};
    std::atomic<bool> m_bStop{false};
    std::atomic<bool> m_bEnded{false};
    std::thread m_objThread;
};

// A connection that sends exactly the bytes it is told, and reads when it is told.
class StackSocket {
public:
    // A narrow one takes as few bytes at a time as the system allows.
    explicit StackSocket(int p_nPort, bool p_bNarrow = false);
    ~StackSocket();
    StackSocket(const StackSocket&) = delete;
    StackSocket& operator=(const StackSocket&) = delete;

    void send(const std::string& p_strBytes) const;
    std::string readToEnd() const;  // everything until the server closes, a minute at most
    void reset();                   // closes so that the server hears of it as of a fault

private:
    int m_nSocket = -1;
};

// Events as they come; every one is held against the description.
class EventReader {
public:
    EventReader(int p_nPort, const httplib::Headers& p_mapHeaders, const std::string& p_strQuery = "");

    // Waits, half a minute at most, until an event of the type fulfils the condition. Null when none does.
    nlohmann::json await(const std::string& p_strType,
                         const std::function<bool(const nlohmann::json&)>& p_fnWanted = nullptr);
    std::map<std::string, int> counts() const;  // by type
    bool hasEnded() const { return m_objStream.hasEnded(); }

private:
    void take(const char* p_pData, std::size_t p_nSize);
    void event(const std::string& p_strText);

    mutable std::mutex m_mutex;  // guards what follows
    std::condition_variable m_condition;
    std::string m_strRest;
    std::vector<std::pair<std::string, nlohmann::json>> m_vecEvents;
    StackStream m_objStream;  // last: its thread uses the rest
};

// Whether an event "parameter" tells this brightness.
std::function<bool(const nlohmann::json&)> brightnessIs(int p_nValue);

class Stack {
public:
    struct Settings {
        camerad::ServerSettings stServer;
        int nPictureWidth = 160;  // the picture itself is tested elsewhere
        int nPictureHeight = 90;
    };
    explicit Stack(const std::string& p_strVariant = "") : Stack(p_strVariant, Settings{}) {}
    Stack(const std::string& p_strVariant, const Settings& p_stSettings);
    ~Stack();

    // The process ends and begins anew on the same device root.
    void restart();
    void stop();

    Rig& rig() { return m_objRig; }
    int port() const { return m_pServer->port(); }
    camerad::ServerCounters counters() const { return m_pServer->counters(); }
    const std::string& password() const { return m_strPassword; }  // of the account "admin"
    std::unique_ptr<StackClient> admin();                          // logged in
    const camerad::Router& router() const { return *m_pRouter; }
    camerad::AccessControl& access() { return *m_pAccess; }

private:
    void serve();

    const Settings m_stSettings;
    Rig m_objRig;
    std::string m_strPassword;
    std::unique_ptr<camerad::AccessControl> m_pAccess;
    std::map<int, std::unique_ptr<camerad::PictureFeed>> m_mapFeeds;
    std::unique_ptr<camerad::Api> m_pApi;
    std::unique_ptr<camerad::Router> m_pRouter;
    std::unique_ptr<camerad::Server> m_pServer;
};
