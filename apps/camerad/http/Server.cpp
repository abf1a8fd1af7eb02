#include "apps/camerad/http/Server.h"

#include "apps/camerad/http/Connection.h"
#include "apps/camerad/http/Problem.h"
#include "apps/camerad/http/Shared.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstring>
#include <list>
#include <mutex>
#include <stdexcept>
#include <system_error>

namespace camerad {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kBacklog = 128;
constexpr std::size_t kStack = 512 * 1024;  // bytes; the deepest handler needs a fifth of it
constexpr int kSendBuffer = 128 * 1024;     // bytes: what a slow viewer lags behind at most
constexpr unsigned kPeerTime = 20000;       // ms until a peer that acknowledges nothing is given up
constexpr std::size_t kMostRefused = 32;    // connections that are being told that there are too many
constexpr std::chrono::milliseconds kRefusedTime{1000};
constexpr std::chrono::milliseconds kBreath{100};  // after accept failed for want of something
constexpr std::size_t kNetworkBytes = 8;           // of an IPv6 address that one client may own all of

[[noreturn]] void fail(const std::string& p_strWhat, int p_nError) {
    throw std::runtime_error(p_strWhat + ": " + std::generic_category().message(p_nError));
}

struct Address {
    std::string strText;
    std::string strClient;  // what counts as one client: an IPv4 address or an IPv6 network
};

Address addressOf(const sockaddr_storage& p_stAddress) {
    char text[INET6_ADDRSTRLEN] = {};
    if (AF_INET == p_stAddress.ss_family) {
        sockaddr_in address{};
        std::memcpy(&address, &p_stAddress, sizeof(address));
        inet_ntop(AF_INET, &address.sin_addr, text, sizeof(text));
        return {text, text};
    }
    sockaddr_in6 address{};
    std::memcpy(&address, &p_stAddress, sizeof(address));
    if (0 != IN6_IS_ADDR_V4MAPPED(&address.sin6_addr)) {
        constexpr std::size_t kMappedAt = 12;
        inet_ntop(AF_INET, &address.sin6_addr.s6_addr[kMappedAt], text, sizeof(text));
        return {text, text};
    }
    inet_ntop(AF_INET6, &address.sin6_addr, text, sizeof(text));
    return {text, std::string(reinterpret_cast<const char*>(address.sin6_addr.s6_addr), kNetworkBytes)};
}

Address localAddress(int p_nSocket) {
    sockaddr_storage address{};
    socklen_t length = sizeof(address);
    if (0 != getsockname(p_nSocket, reinterpret_cast<sockaddr*>(&address), &length)) {
        return {};
    }
    return addressOf(address);
}

int portOf(int p_nSocket) {
    sockaddr_storage address{};
    socklen_t length = sizeof(address);
    if (0 != getsockname(p_nSocket, reinterpret_cast<sockaddr*>(&address), &length)) {
        fail("the port of the server", errno);
    }
    if (AF_INET == address.ss_family) {
        sockaddr_in four{};
        std::memcpy(&four, &address, sizeof(four));
        return ntohs(four.sin_port);
    }
    sockaddr_in6 six{};
    std::memcpy(&six, &address, sizeof(six));
    return ntohs(six.sin6_port);
}

void setNumber(int p_nSocket, int p_nLevel, int p_nOption, int p_nValue) {
    setsockopt(p_nSocket, p_nLevel, p_nOption, &p_nValue, sizeof(p_nValue));
}

std::string withoutBrackets(const std::string& p_strAddress) {
    const bool bracketed = p_strAddress.size() > 2 && '[' == p_strAddress.front() && ']' == p_strAddress.back();
    return bracketed ? p_strAddress.substr(1, p_strAddress.size() - 2) : p_strAddress;
}

// A socket that listens there. Throws std::runtime_error.
int listenAt(const std::string& p_strAddress, int p_nPort) {
    const std::string where = "cannot listen at " + p_strAddress + " port " + std::to_string(p_nPort);
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    hints.ai_flags = AI_PASSIVE | AI_NUMERICSERV;
    addrinfo* found = nullptr;
    const int result = getaddrinfo(p_strAddress.c_str(), std::to_string(p_nPort).c_str(), &hints, &found);
    if (0 != result) {
        throw std::runtime_error(where + ": " + gai_strerror(result));
    }
    const std::unique_ptr<addrinfo, void (*)(addrinfo*)> list(found, freeaddrinfo);
    int error = EADDRNOTAVAIL;
    for (const addrinfo* one = list.get(); nullptr != one; one = one->ai_next) {
        const int descriptor = socket(one->ai_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
        if (-1 == descriptor) {
            error = errno;
            continue;
        }
        setNumber(descriptor, SOL_SOCKET, SO_REUSEADDR, 1);
        if (AF_INET6 == one->ai_family) {
            setNumber(descriptor, IPPROTO_IPV6, IPV6_V6ONLY, 0);
        }
        if (0 == bind(descriptor, one->ai_addr, one->ai_addrlen) && 0 == listen(descriptor, kBacklog)) {
            return descriptor;
        }
        error = errno;
        close(descriptor);
    }
    fail(where, error);
}

// What a client hears when there are too many: made once, sent without waiting.
std::string tooManyAnswer() {
    const HttpResponse problem = problemResponse(
        503, "too-many-connections", "there are as many connections as the camera serves at a time: try again later");
    return "HTTP/1.1 503 Service Unavailable\r\nConnection: close\r\nRetry-After: 5\r\nCache-Control: no-store\r\n"
           "X-Content-Type-Options: nosniff\r\nContent-Security-Policy: default-src 'none'; frame-ancestors 'none'\r\n"
           "Cross-Origin-Opener-Policy: same-origin\r\nCross-Origin-Resource-Policy: same-origin\r\n"
           "Referrer-Policy: no-referrer\r\nContent-Type: " +
           problem.strType + "\r\nContent-Length: " + std::to_string(problem.strBody.size()) + "\r\n\r\n" +
           problem.strBody;
}

class SocketServer : public Server {
public:
    SocketServer(const ServerSettings& p_stSettings, const Router& p_objRouter, AccessControl& p_objAccess)
        // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): m_stShared owns it
        : m_stShared(p_stSettings, p_objRouter, p_objAccess, tlsOf(p_stSettings)) {
        // The accepting thread goes on when there is no memory left.
        m_vecRefused.reserve(kMostRefused);
        m_vecWanted.reserve(kMostRefused + 2);
    }

    ~SocketServer() override { SocketServer::stop(); }

    void start() override;
    int port() const override { return m_nPort; }
    std::string url() const override;
    void stop() override;
    ServerCounters counters() const override;

private:
    // A connection and its thread.
    struct Place {
        SocketServer* pServer = nullptr;
        int nSocket = -1;
        Address stRemote;
        pthread_t thread{};
        bool bEnded = false;
    };
    // One that is told that there are too many.
    struct Refused {
        int nSocket;
        Deadline deadline;
    };

    static std::unique_ptr<TlsContext> tlsOf(const ServerSettings& p_stSettings);
    static void* acceptOn(void* p_pServer);
    static void* serveOn(void* p_pPlace);
    void acceptLoop();
    bool acceptOne();
    void take(int p_nSocket, const Address& p_stRemote);
    bool hasRoom(const Address& p_stRemote) const;
    void leave(const Address& p_stRemote);
    void refuse(int p_nSocket);
    void lookAfterRefused();
    void serve(Place& p_stPlace);
    void joinEnded();
    void wake() const;
    static bool startThread(pthread_t& p_nThread, std::size_t p_nStack, void* (*p_pfnRun)(void*), void* p_pArgument);

    Shared m_stShared;
    const std::string m_strTooMany = tooManyAnswer();
    int m_nListener = -1;
    int m_nWake = -1;  // readable when a connection has ended or the server stops
    int m_nPort = 0;
    pthread_t m_acceptor{};
    bool m_bRunning = false;

    // Of the accepting thread.
    std::vector<Refused> m_vecRefused;
    std::vector<pollfd> m_vecWanted;  // what it waits for

    // Guards what follows.
    mutable std::mutex m_mutex;
    std::list<std::unique_ptr<Place>> m_listPlaces;  // with those that have ended and are not joined yet
    std::size_t m_nOpen = 0;
    std::map<std::string, std::size_t> m_mapOpen;  // by client
};

std::unique_ptr<TlsContext> SocketServer::tlsOf(const ServerSettings& p_stSettings) {
    return p_stSettings.strCertificate.empty()
               ? nullptr
               : std::make_unique<TlsContext>(p_stSettings.strCertificate, p_stSettings.strPrivateKey);
}

// Signals are for the threads of whoever runs the server.
bool SocketServer::startThread(pthread_t& p_nThread, std::size_t p_nStack, void* (*p_pfnRun)(void*),
                               void* p_pArgument) {
    pthread_attr_t attributes;
    if (0 != pthread_attr_init(&attributes)) {
        return false;
    }
    pthread_attr_setstacksize(&attributes, p_nStack);
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    const int result = pthread_create(&p_nThread, &attributes, p_pfnRun, p_pArgument);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    pthread_attr_destroy(&attributes);
    return 0 == result;
}

void SocketServer::start() {
    m_nListener = listenAt(withoutBrackets(m_stShared.stSettings.strAddress), m_stShared.stSettings.nPort);
    m_nPort = portOf(m_nListener);
    m_nWake = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (-1 == m_nWake || !startThread(m_acceptor, kStack, acceptOn, this)) {
        const int error = errno;
        close(m_nListener);
        if (-1 != m_nWake) {
            close(m_nWake);
        }
        fail("cannot start the server", error);
    }
    m_bRunning = true;
}

std::string SocketServer::url() const {
    const std::string address = withoutBrackets(m_stShared.stSettings.strAddress);
    const bool six = std::string::npos != address.find(':');
    return (m_stShared.pTls ? "https://" : "http://") + (six ? "[" + address + "]" : address) + ":" +
           std::to_string(m_nPort) + "/";
}

void SocketServer::stop() {
    if (!m_bRunning) {
        return;
    }
    m_bRunning = false;
    m_stShared.bStopping = true;
    m_stShared.objAnswerer.close();
    wake();
    pthread_join(m_acceptor, nullptr);
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        for (const std::unique_ptr<Place>& place : m_listPlaces) {
            if (!place->bEnded) {
                shutdown(place->nSocket, SHUT_RDWR);
            }
        }
    }
    // Nothing is added any more, and a place stays until its thread is joined.
    for (const std::unique_ptr<Place>& place : m_listPlaces) {
        pthread_join(place->thread, nullptr);
    }
    m_listPlaces.clear();
    close(m_nListener);
    close(m_nWake);
}

void SocketServer::wake() const {
    const std::uint64_t one = 1;
    // Full means that it is awake already.
    [[maybe_unused]] const ssize_t written = write(m_nWake, &one, sizeof(one));
}

void* SocketServer::acceptOn(void* p_pServer) {
    static_cast<SocketServer*>(p_pServer)->acceptLoop();
    return nullptr;
}

void SocketServer::acceptLoop() {
    bool breathe = false;
    while (!m_stShared.bStopping) {
        m_vecWanted.assign({{m_nWake, POLLIN, 0}, {breathe ? -1 : m_nListener, POLLIN, 0}});
        for (const Refused& refused : m_vecRefused) {
            m_vecWanted.push_back({refused.nSocket, POLLIN, 0});
        }
        const int time = breathe || !m_vecRefused.empty() ? static_cast<int>(kBreath.count()) : -1;
        poll(m_vecWanted.data(), static_cast<nfds_t>(m_vecWanted.size()), time);
        std::uint64_t count = 0;
        while (read(m_nWake, &count, sizeof(count)) > 0) {
        }
        joinEnded();
        lookAfterRefused();
        breathe = !acceptOne();
    }
    for (const Refused& refused : m_vecRefused) {
        close(refused.nSocket);
    }
    m_vecRefused.clear();
}

// False when the machine has no room for another connection just now.
bool SocketServer::acceptOne() {
    sockaddr_storage address{};
    socklen_t length = sizeof(address);
    const int descriptor =
        accept4(m_nListener, reinterpret_cast<sockaddr*>(&address), &length, SOCK_NONBLOCK | SOCK_CLOEXEC);
    if (-1 == descriptor) {
        return EMFILE != errno && ENFILE != errno && ENOMEM != errno && ENOBUFS != errno;
    }
    setNumber(descriptor, IPPROTO_TCP, TCP_NODELAY, 1);
    setNumber(descriptor, IPPROTO_TCP, TCP_USER_TIMEOUT, static_cast<int>(kPeerTime));
    setNumber(descriptor, SOL_SOCKET, SO_SNDBUF, kSendBuffer);
    try {
        take(descriptor, addressOf(address));
    } catch (const std::exception& error) {
        m_stShared.logFailure("a connection could not be taken: ", error);
        refuse(descriptor);
    }
    return true;
}

// With the lock.
bool SocketServer::hasRoom(const Address& p_stRemote) const {
    const auto ofClient = m_mapOpen.find(p_stRemote.strClient);
    return m_nOpen < m_stShared.stSettings.nConnections &&
           (m_mapOpen.end() == ofClient || ofClient->second < m_stShared.stSettings.nConnectionsPerClient);
}

void SocketServer::take(int p_nSocket, const Address& p_stRemote) {
    std::unique_lock<std::mutex> lock(m_mutex);
    if (!hasRoom(p_stRemote)) {
        lock.unlock();
        refuse(p_nSocket);
        return;
    }
    // Nothing has changed when memory runs out on the way.
    std::list<std::unique_ptr<Place>> fresh;
    fresh.push_back(std::make_unique<Place>());
    Place& place = *fresh.back();
    place.pServer = this;
    place.nSocket = p_nSocket;
    place.stRemote = p_stRemote;
    ++m_mapOpen[p_stRemote.strClient];
    ++m_nOpen;
    m_listPlaces.splice(m_listPlaces.end(), fresh);
    if (!startThread(place.thread, kStack, serveOn, &place)) {
        leave(p_stRemote);
        m_listPlaces.pop_back();
        lock.unlock();
        refuse(p_nSocket);
    }
}

// With the lock.
void SocketServer::leave(const Address& p_stRemote) {
    --m_nOpen;
    const auto ofClient = m_mapOpen.find(p_stRemote.strClient);
    if (0 == --ofClient->second) {
        m_mapOpen.erase(ofClient);
    }
}

void SocketServer::refuse(int p_nSocket) {
    ++m_stShared.nRefused;
    if (m_stShared.pTls || m_vecRefused.size() >= kMostRefused) {
        close(p_nSocket);
        return;
    }
    send(p_nSocket, m_strTooMany.data(), m_strTooMany.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    shutdown(p_nSocket, SHUT_WR);
    m_vecRefused.push_back({p_nSocket, Clock::now() + kRefusedTime});
}

// Their requests are read over, so that the answer is not taken back.
void SocketServer::lookAfterRefused() {
    const auto ended = [](const Refused& p_stRefused) {
        char bytes[1024];
        const ssize_t got = recv(p_stRefused.nSocket, bytes, sizeof(bytes), MSG_DONTWAIT);
        const bool over =
            0 == got || (got < 0 && EAGAIN != errno && EINTR != errno) || Clock::now() >= p_stRefused.deadline;
        if (over) {
            close(p_stRefused.nSocket);
        }
        return over;
    };
    m_vecRefused.erase(std::remove_if(m_vecRefused.begin(), m_vecRefused.end(), ended), m_vecRefused.end());
}

void* SocketServer::serveOn(void* p_pPlace) {
    auto* const place = static_cast<Place*>(p_pPlace);
    place->pServer->serve(*place);
    return nullptr;
}

void SocketServer::serve(Place& p_stPlace) {
    try {
        Connection connection(m_stShared, p_stPlace.nSocket, p_stPlace.stRemote.strText,
                              localAddress(p_stPlace.nSocket).strText);
        connection.run();
    } catch (const std::exception& error) {
        m_stShared.logFailure("a connection ended early: ", error);
    }
    const std::lock_guard<std::mutex> guard(m_mutex);
    leave(p_stPlace.stRemote);
    close(p_stPlace.nSocket);
    p_stPlace.bEnded = true;
    wake();
}

void SocketServer::joinEnded() {
    std::list<std::unique_ptr<Place>> ended;
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        for (auto place = m_listPlaces.begin(); m_listPlaces.end() != place;) {
            const auto next = std::next(place);
            if ((*place)->bEnded) {
                ended.splice(ended.end(), m_listPlaces, place);
            }
            place = next;
        }
    }
    for (const std::unique_ptr<Place>& place : ended) {
        pthread_join(place->thread, nullptr);
    }
}

ServerCounters SocketServer::counters() const {
    ServerCounters counters;
    counters.mapRequests = m_stShared.requests();
    counters.nStreams = m_stShared.nStreams;
    counters.nRefusedConnections = m_stShared.nRefused;
    counters.nTimeouts = m_stShared.nTimeouts;
    const std::lock_guard<std::mutex> guard(m_mutex);
    counters.nConnections = m_nOpen;
    return counters;
}

}  // namespace

std::unique_ptr<Server> Server::create(const ServerSettings& p_stSettings, const Router& p_objRouter,
                                       AccessControl& p_objAccess) {
    return std::make_unique<SocketServer>(p_stSettings, p_objRouter, p_objAccess);
}

}  // namespace camerad
