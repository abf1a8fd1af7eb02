#include "tests/unit/camerad/http/HttpSupport.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <stdexcept>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds kLong{30};  // until a test gives up

std::string small(std::string p_strText) {
    std::transform(p_strText.begin(), p_strText.end(), p_strText.begin(),
                   [](char p_cByte) { return static_cast<char>(std::tolower(static_cast<unsigned char>(p_cByte))); });
    return p_strText;
}

void addTestRoutes(camerad::Router& p_objRouter) {
    using camerad::Access;
    using camerad::HttpRequest;
    using camerad::HttpResponse;
    const auto text = [](const std::string& p_strText) {
        HttpResponse response;
        response.strType = "text/plain";
        response.strBody = p_strText;
        return response;
    };
    p_objRouter.add({"GET", "/hello", Access::Everybody, 0, [=](const HttpRequest&) { return text("hello"); }});
    p_objRouter.add({"GET", "/names/{name}", Access::Everybody, 0,
                     [=](const HttpRequest& p_stRequest) { return text(p_stRequest.mapPath.at("name")); }});
    p_objRouter.add({"GET", "/query", Access::Everybody, 0,
                     [=](const HttpRequest& p_stRequest) { return text(p_stRequest.query("q", "none")); }});
    p_objRouter.add({"GET", "/header", Access::Everybody, 0,
                     [=](const HttpRequest& p_stRequest) { return text(p_stRequest.header("x-test", "none")); }});
    p_objRouter.add({"POST", "/echo", Access::Everybody, 1000,
                     [=](const HttpRequest& p_stRequest) { return text(p_stRequest.strBody); }});
    p_objRouter.add({"GET", "/whoami", Access::Everybody, 0, [=](const HttpRequest& p_stRequest) {
                         return text(p_stRequest.stIdentity.strName + "@" + p_stRequest.strRemote +
                                     (p_stRequest.bSecure ? " secure" : ""));
                     }});
    p_objRouter.add({"GET", "/viewer", Access::Viewer, 0,
                     [=](const HttpRequest& p_stRequest) { return text(p_stRequest.stIdentity.strName); }});
    p_objRouter.add({"PUT", "/admin", Access::Admin, 100, [=](const HttpRequest&) { return text("done"); }});
    p_objRouter.add({"DELETE", "/thing", Access::Everybody, 0, [](const HttpRequest&) {
                         HttpResponse response;
                         response.nStatus = 204;
                         return response;
                     }});
    p_objRouter.add(
        {"GET", "/busy", Access::Everybody, 0, [](const HttpRequest&) -> HttpResponse {
             throw camerad::Refusal(camerad::Refusal::Kind::Busy, "busy", "the camera resets").retryAfter(7);
         }});
    p_objRouter.add({"GET", "/broken", Access::Everybody, 0,
                     [](const HttpRequest&) -> HttpResponse { throw std::runtime_error("the inside of the camera"); }});
    p_objRouter.add({"GET", "/big", Access::Everybody, 0,
                     [=](const HttpRequest&) { return text(std::string(4 * 1024 * 1024, 'b')); }});
}

}  // namespace

camerad::Identity FakeAccess::identify(const camerad::HttpRequest& p_stRequest) {
    const std::string credential = p_stRequest.header("authorization");
    if (credential.empty()) {
        return {};
    }
    if ("Bearer admin" != credential && "Bearer viewer" != credential) {
        throw camerad::Refusal(camerad::Refusal::Kind::Unauthorised, "bad-credentials", "nobody goes by that name");
    }
    camerad::Identity identity;
    identity.strName = credential.substr(sizeof("Bearer ") - 1);
    identity.eRole = "admin" == identity.strName ? camerad::Role::Admin : camerad::Role::Viewer;
    identity.eVia = camerad::Identity::Via::Bearer;
    return identity;
}

void FakeAccess::authorise(const camerad::HttpRequest& p_stRequest, const camerad::Identity& p_stIdentity,
                           const camerad::Route& p_stRoute) {
    if ("https://evil.example" == p_stRequest.header("origin")) {
        throw camerad::Refusal(camerad::Refusal::Kind::Forbidden, "foreign-origin", "another page sends this");
    }
    if (camerad::Access::Everybody == p_stRoute.eAccess) {
        return;
    }
    if (camerad::Role::Nobody == p_stIdentity.eRole) {
        throw camerad::Refusal(camerad::Refusal::Kind::Unauthorised, "unauthorised", "say who you are");
    }
    if (camerad::Access::Admin == p_stRoute.eAccess && camerad::Role::Admin != p_stIdentity.eRole) {
        throw camerad::Refusal(camerad::Refusal::Kind::Forbidden, "forbidden", "this is for an admin");
    }
}

std::string RawAnswer::header(const std::string& p_strName) const {
    const auto found = mapHeaders.find(p_strName);
    return mapHeaders.end() == found ? "" : found->second;
}

std::string RawAnswer::problem() const {
    const std::string before = "/problems/";
    const nlohmann::json document = nlohmann::json::parse(strBody, nullptr, false);
    if ("application/problem+json" != header("content-type") || !document.is_object() ||
        document.value("status", 0) != nStatus || document.value("detail", "").empty() ||
        document.value("title", "").empty() || 0 != document.value("type", "").rfind(before, 0)) {
        return {};
    }
    return document["type"].get<std::string>().substr(before.size());
}

RawClient::RawClient(int p_nPort) : m_nSocket(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(p_nPort));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (-1 == m_nSocket || 0 != connect(m_nSocket, reinterpret_cast<sockaddr*>(&address), sizeof(address))) {
        throw std::runtime_error("cannot connect to port " + std::to_string(p_nPort));
    }
    const timeval time{kLong.count(), 0};
    setsockopt(m_nSocket, SOL_SOCKET, SO_RCVTIMEO, &time, sizeof(time));
    setsockopt(m_nSocket, SOL_SOCKET, SO_SNDTIMEO, &time, sizeof(time));
    socklen_t length = sizeof(address);
    getsockname(m_nSocket, reinterpret_cast<sockaddr*>(&address), &length);
    m_nOwnPort = ntohs(address.sin_port);
}

RawClient::~RawClient() {
    close();
}

void RawClient::close() {
    if (-1 != m_nSocket) {
        ::close(m_nSocket);
        m_nSocket = -1;
    }
}

bool RawClient::send(const std::string& p_strBytes) const {
    std::size_t done = 0;
    while (done < p_strBytes.size()) {
        const ssize_t put = ::send(m_nSocket, p_strBytes.data() + done, p_strBytes.size() - done, MSG_NOSIGNAL);
        if (put <= 0) {
            return false;
        }
        done += static_cast<std::size_t>(put);
    }
    return true;
}

void RawClient::endSending() const {
    shutdown(m_nSocket, SHUT_WR);
}

void RawClient::narrow() const {
    const int least = 1;
    setsockopt(m_nSocket, SOL_SOCKET, SO_RCVBUF, &least, sizeof(least));
}

void RawClient::reset() {
    const linger now{1, 0};
    setsockopt(m_nSocket, SOL_SOCKET, SO_LINGER, &now, sizeof(now));
    close();
}

std::string RawClient::readSome(std::size_t p_nMost) const {
    std::string bytes(p_nMost, '\0');
    const ssize_t got = recv(m_nSocket, bytes.data(), bytes.size(), 0);
    bytes.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
    return bytes;
}

std::string RawClient::readToEnd() const {
    std::string all;
    for (std::string some = readSome(); !some.empty(); some = readSome()) {
        all += some;
    }
    return all;
}

bool RawClient::isClosedByServer() const {
    const Clock::time_point end = Clock::now() + kLong;
    while (Clock::now() < end) {
        char byte = 0;
        const ssize_t got = recv(m_nSocket, &byte, 1, 0);
        if (0 == got || (got < 0 && EAGAIN != errno && EINTR != errno)) {
            return true;
        }
    }
    return false;
}

RawAnswer RawClient::answer() {
    std::size_t end = m_strIn.find("\r\n\r\n");
    while (std::string::npos == end) {
        const std::string some = readSome();
        if (some.empty()) {
            return {};
        }
        m_strIn += some;
        end = m_strIn.find("\r\n\r\n");
    }
    const std::size_t head = end + 4;
    const std::string length = parseAnswer(m_strIn.substr(0, head)).header("content-length");
    const std::size_t whole = head + (length.empty() ? 0 : std::stoul(length));
    while (m_strIn.size() < whole) {
        const std::string some = readSome();
        if (some.empty()) {
            break;
        }
        m_strIn += some;
    }
    const RawAnswer answer = parseAnswer(m_strIn.substr(0, whole));
    m_strIn.erase(0, whole);
    return answer;
}

RawAnswer parseAnswer(const std::string& p_strBytes) {
    RawAnswer answer;
    const std::size_t end = p_strBytes.find("\r\n\r\n");
    if (0 != p_strBytes.rfind("HTTP/1.1 ", 0) || std::string::npos == end) {
        return answer;
    }
    answer.nStatus = std::stoi(p_strBytes.substr(sizeof("HTTP/1.1 ") - 1));
    answer.strBody = p_strBytes.substr(end + 4);
    std::size_t begin = p_strBytes.find("\r\n") + 2;
    while (begin < end + 2) {
        const std::size_t lineEnd = p_strBytes.find("\r\n", begin);
        const std::string line = p_strBytes.substr(begin, lineEnd - begin);
        const std::size_t colon = line.find(": ");
        answer.mapHeaders.emplace(small(line.substr(0, colon)), line.substr(colon + 2));
        begin = lineEnd + 2;
    }
    return answer;
}

bool eventually(const std::function<bool()>& p_fnIsSo) {
    const Clock::time_point end = Clock::now() + kLong;
    while (!p_fnIsSo()) {
        if (Clock::now() > end) {
            return false;
        }
        std::this_thread::yield();
    }
    return true;
}

void Gate::open() {
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_bOpen = true;
    m_changed.notify_all();
}

bool Gate::wait() {
    std::unique_lock<std::mutex> lock(m_mutex);
    return m_changed.wait_for(lock, kLong, [this] { return m_bOpen; });
}

TestServer::TestServer(camerad::ServerSettings p_stSettings, const std::function<void(camerad::Router&)>& p_fnMore) {
    addTestRoutes(m_objRouter);
    if (p_fnMore) {
        p_fnMore(m_objRouter);
    }
    p_stSettings.fnLog = [this](const std::string& p_strLine) {
        const std::lock_guard<std::mutex> guard(m_mutex);
        m_vecLog.push_back(p_strLine);
    };
    m_pServer = camerad::Server::create(p_stSettings, m_objRouter, m_objAccess);
    m_pServer->start();
}

TestServer::~TestServer() {
    m_pServer->stop();
}

RawAnswer TestServer::ask(const std::string& p_strRequest) const {
    RawClient client(port());
    client.send(p_strRequest);
    return client.answer();
}

RawAnswer TestServer::get(const std::string& p_strPath, const std::string& p_strFields) const {
    return ask(getRequest(p_strPath, p_strFields));
}

std::vector<std::string> TestServer::log() const {
    const std::lock_guard<std::mutex> guard(m_mutex);
    return m_vecLog;
}

std::string getRequest(const std::string& p_strPath, const std::string& p_strFields) {
    return "GET " + p_strPath + " HTTP/1.1\r\nHost: localhost\r\n" + p_strFields + "\r\n";
}

std::string postRequest(const std::string& p_strPath, const std::string& p_strBody, const std::string& p_strFields) {
    return "POST " + p_strPath + " HTTP/1.1\r\nHost: localhost\r\nContent-Length: " + std::to_string(p_strBody.size()) +
           "\r\n" + p_strFields + "\r\n" + p_strBody;
}

namespace {
std::size_t entriesOf(const char* p_szFolder) {
    const std::filesystem::directory_iterator entries(p_szFolder);
    return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}
}  // namespace

std::size_t openDescriptors() {
    return entriesOf("/proc/self/fd");
}

std::size_t runningThreads() {
    return entriesOf("/proc/self/task");
}
