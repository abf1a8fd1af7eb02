// A server with a few routes on a port of its own, and a client that sends exactly the bytes it is told.
#pragma once

#include "apps/camerad/http/Server.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

// Knows "Bearer admin" and "Bearer viewer"; any other credential is refused.
class FakeAccess : public camerad::AccessControl {
public:
    std::optional<std::string> firstPassword() override { return std::nullopt; }
    camerad::Identity identify(const camerad::HttpRequest& p_stRequest) override;
    void authorise(const camerad::HttpRequest& p_stRequest, const camerad::Identity& p_stIdentity,
                   const camerad::Route& p_stRoute) override;
    Session login(const std::string&, const std::string&, const std::string&) override { return {}; }
    void logout(const camerad::Identity&) override {}
    std::string proofOf(const camerad::Identity&) override { return {}; }
    std::vector<camerad::AccountView> accounts() override { return {}; }
    void putAccount(const std::string&, const std::string&, camerad::Role) override {}
    void removeAccount(const std::string&) override {}
    void changePassword(const camerad::Identity&, const std::string&, const std::string&) override {}
    std::vector<camerad::TokenView> tokens() override { return {}; }
    std::pair<camerad::TokenView, std::string> makeToken(const std::string&, camerad::Role, int) override { return {}; }
    void removeToken(const std::string&) override {}
    Counters counters() override { return {}; }
};

// An answer, taken apart.
struct RawAnswer {
    int nStatus = 0;
    std::multimap<std::string, std::string> mapHeaders;  // names in small letters
    std::string strBody;

    std::string header(const std::string& p_strName) const;
    std::string problem() const;  // the last word of the type of its problem document; empty when there is none
};

class RawClient {
public:
    explicit RawClient(int p_nPort);
    ~RawClient();
    RawClient(const RawClient&) = delete;
    RawClient& operator=(const RawClient&) = delete;

    // False when the server does not take them.
    bool send(const std::string& p_strBytes) const;
    void endSending() const;
    void narrow() const;                                     // takes as few bytes at a time as the system allows
    std::string readSome(std::size_t p_nMost = 4096) const;  // empty at the end, or when nothing came for long
    std::string readToEnd() const;
    // True when the server closed the connection within the time that a test waits for an event.
    bool isClosedByServer() const;
    // The next answer; its body by Content-Length. Bytes behind it stay for the one after.
    RawAnswer answer();
    void reset();  // closes so that the server hears of it as of a fault
    int port() const { return m_nOwnPort; }
    void close();

private:
    int m_nSocket = -1;
    int m_nOwnPort = 0;
    std::string m_strIn;
};

RawAnswer parseAnswer(const std::string& p_strBytes);

// Waits for something to become true; false when it has not within half a minute.
bool eventually(const std::function<bool()>& p_fnIsSo);

// A gate that threads wait at.
class Gate {
public:
    void open();
    bool wait();  // false when nobody opened it for half a minute

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_bOpen = false;
};

class TestServer {
public:
    // Starts at once; the routes are those of addTestRoutes and what the function adds.
    explicit TestServer(camerad::ServerSettings p_stSettings = {},
                        const std::function<void(camerad::Router&)>& p_fnMore = nullptr);
    ~TestServer();

    int port() const { return m_pServer->port(); }
    camerad::Server& server() { return *m_pServer; }
    camerad::ServerCounters counters() const { return m_pServer->counters(); }
    RawAnswer ask(const std::string& p_strRequest) const;  // on a connection of its own
    RawAnswer get(const std::string& p_strPath, const std::string& p_strFields = "") const;
    std::vector<std::string> log() const;

private:
    FakeAccess m_objAccess;
    camerad::Router m_objRouter;
    mutable std::mutex m_mutex;
    std::vector<std::string> m_vecLog;
    std::unique_ptr<camerad::Server> m_pServer;
};

// "GET <path> HTTP/1.1" with a Host and these fields (each with its line end).
std::string getRequest(const std::string& p_strPath, const std::string& p_strFields = "");
// With the length of the body.
std::string postRequest(const std::string& p_strPath, const std::string& p_strBody,
                        const std::string& p_strFields = "");

std::size_t openDescriptors();
std::size_t runningThreads();
