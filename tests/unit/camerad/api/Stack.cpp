#include "tests/unit/camerad/api/Stack.h"

#include "tests/unit/camerad/api/Schema.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>

namespace {

using nlohmann::json;

constexpr std::chrono::seconds kDeadline{30};
constexpr time_t kSeconds = 60;  // of a client, for what the camera does under an emulator

// The routes without anything behind, to find the pattern of a path.
std::string patternOf(const std::string& p_strMethod, const std::string& p_strPath) {
    static const camerad::Router objRouter = [] {
        camerad::Router router;
        for (const auto& path : description().at("paths").items()) {
            for (const auto& operation : path.value().items()) {
                camerad::Route route;
                for (const char letter : operation.key()) {
                    route.strMethod += static_cast<char>(letter - 'a' + 'A');
                }
                route.strPattern = path.key();
                route.fnHandler = [](const camerad::HttpRequest&) { return camerad::HttpResponse(); };
                router.add(route);
            }
        }
        return router;
    }();
    const camerad::Router::Found found = objRouter.find(p_strMethod, p_strPath.substr(0, p_strPath.find('?')));
    return nullptr == found.pRoute ? "" : found.pRoute->strPattern;
}

}  // namespace

StackClient::StackClient(int p_nPort) : m_objClient("127.0.0.1", p_nPort) {
    m_objClient.set_keep_alive(true);
    m_objClient.set_tcp_nodelay(true);  // head and body go one after the other
    m_objClient.set_read_timeout(kSeconds);
}

void StackClient::login(const std::string& p_strName, const std::string& p_strPassword) {
    const httplib::Response response =
        call("POST", "/api/v1/session", nlohmann::json({{"name", p_strName}, {"password", p_strPassword}}).dump());
    ASSERT_EQ(response.status, 200) << response.body;
    const std::string cookie = response.get_header_value("Set-Cookie");
    header("Cookie", cookie.substr(0, cookie.find(';')));
    header("X-CSRF-Token", nlohmann::json::parse(response.body).at("csrf").get<std::string>());
}

void StackClient::header(const std::string& p_strName, const std::string& p_strValue) {
    m_mapHeaders.erase(p_strName);
    m_mapHeaders.emplace(p_strName, p_strValue);
}

httplib::Response StackClient::call(const std::string& p_strMethod, const std::string& p_strTarget,
                                    const std::string& p_strBody) {
    httplib::Request request;
    request.method = p_strMethod;
    request.path = p_strTarget;
    request.headers = m_mapHeaders;
    request.body = p_strBody;
    if (!p_strBody.empty()) {
        request.headers.emplace("Content-Type", "application/json");
    }
    const httplib::Result result = m_objClient.send(request);
    if (!result) {
        ADD_FAILURE() << p_strMethod << " " << p_strTarget << ": " << httplib::to_string(result.error());
        return {};
    }
    const std::string pattern = patternOf(p_strMethod, p_strTarget);
    if (!pattern.empty()) {
        camerad::HttpResponse answer;
        answer.nStatus = result->status;
        answer.strType = result->get_header_value("Content-Type");
        answer.strBody = result->body;
        for (const std::string& error : answerErrors(p_strMethod, pattern, answer)) {
            ADD_FAILURE() << p_strMethod << " " << p_strTarget << " " << p_strBody << ": " << error;
        }
    }
    return *result;
}

json StackClient::json(const std::string& p_strMethod, const std::string& p_strTarget, const std::string& p_strBody) {
    const httplib::Response response = call(p_strMethod, p_strTarget, p_strBody);
    EXPECT_LT(response.status, 300) << p_strMethod << " " << p_strTarget << ": " << response.body;
    return nlohmann::json::parse(response.body, nullptr, false);
}

StackStream::StackStream(int p_nPort, const std::string& p_strTarget, const httplib::Headers& p_mapHeaders,
                         std::function<void(const char*, std::size_t)> p_fnChunk)
    : m_objClient("127.0.0.1", p_nPort) {
    m_objClient.set_read_timeout(kSeconds);
    m_objThread = std::thread([this, p_strTarget, p_mapHeaders, fnChunk = std::move(p_fnChunk)] {
        m_objClient.Get(p_strTarget, p_mapHeaders, [&](const char* p_pData, std::size_t p_nSize) {
            m_nBytes += p_nSize;
            fnChunk(p_pData, p_nSize);
            return !m_bStop;
        });
        m_bEnded = true;
    });
}

StackStream::~StackStream() {
    m_bStop = true;
    m_objClient.stop();
    m_objThread.join();
}

StackSocket::StackSocket(int p_nPort, bool p_bNarrow) : m_nSocket(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    if (p_bNarrow) {
        const int nLeast = 1;
        setsockopt(m_nSocket, SOL_SOCKET, SO_RCVBUF, &nLeast, sizeof(nLeast));
    }
    const timeval stPatience{kSeconds, 0};
    setsockopt(m_nSocket, SOL_SOCKET, SO_RCVTIMEO, &stPatience, sizeof(stPatience));
    sockaddr_in stAddress{};
    stAddress.sin_family = AF_INET;
    stAddress.sin_port = htons(static_cast<std::uint16_t>(p_nPort));
    stAddress.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(connect(m_nSocket, reinterpret_cast<const sockaddr*>(&stAddress), sizeof(stAddress)), 0);
}

StackSocket::~StackSocket() {
    if (-1 != m_nSocket) {
        close(m_nSocket);
    }
}

void StackSocket::send(const std::string& p_strBytes) const {
    for (std::size_t nSent = 0; nSent < p_strBytes.size();) {
        const ssize_t nNow = ::send(m_nSocket, p_strBytes.data() + nSent, p_strBytes.size() - nSent, MSG_NOSIGNAL);
        if (nNow <= 0) {
            return;  // the server has had enough of it, and says so in its answer
        }
        nSent += static_cast<std::size_t>(nNow);
    }
}

std::string StackSocket::readToEnd() const {
    std::string text;
    std::array<char, 4096> bytes{};
    for (ssize_t nGot = 0; (nGot = recv(m_nSocket, bytes.data(), bytes.size(), 0)) > 0;) {
        text.append(bytes.data(), static_cast<std::size_t>(nGot));
    }
    return text;
}

void StackSocket::reset() {
    const linger stAtOnce{1, 0};
    setsockopt(m_nSocket, SOL_SOCKET, SO_LINGER, &stAtOnce, sizeof(stAtOnce));
    close(m_nSocket);
    m_nSocket = -1;
}

EventReader::EventReader(int p_nPort, const httplib::Headers& p_mapHeaders, const std::string& p_strQuery)
    : m_objStream(p_nPort, "/api/v1/events" + p_strQuery, p_mapHeaders,
                  [this](const char* p_pData, std::size_t p_nSize) { take(p_pData, p_nSize); }) {
    EXPECT_FALSE(await("hello").is_null());
}

void EventReader::take(const char* p_pData, std::size_t p_nSize) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_strRest.append(p_pData, p_nSize);
    for (std::size_t end = m_strRest.find("\n\n"); std::string::npos != end; end = m_strRest.find("\n\n")) {
        event(m_strRest.substr(0, end + 1));
        m_strRest.erase(0, end + 2);
    }
    m_condition.notify_all();
}

void EventReader::event(const std::string& p_strText) {
    if (':' == p_strText[0]) {
        return;
    }
    const auto field = [&](const std::string& p_strName) {
        const std::size_t at = p_strText.find(p_strName);
        const std::size_t start = at + p_strName.size();
        return std::string::npos == at ? "" : p_strText.substr(start, p_strText.find('\n', start) - start);
    };
    const std::string type = field("event: ");
    json data = json::parse(field("data: "), nullptr, false);
    for (const std::string& error : eventErrors(type, data)) {
        ADD_FAILURE() << "event " << type << ": " << error << "\n" << data.dump();
    }
    m_vecEvents.emplace_back(type, std::move(data));
}

json EventReader::await(const std::string& p_strType, const std::function<bool(const json&)>& p_fnWanted) {
    std::unique_lock<std::mutex> lock(m_mutex);
    std::size_t seen = 0;
    json found;
    const bool came = m_condition.wait_for(lock, kDeadline, [&] {
        for (; seen < m_vecEvents.size(); ++seen) {
            const auto& [type, data] = m_vecEvents[seen];
            if (type == p_strType && (!p_fnWanted || p_fnWanted(data))) {
                found = data;
                return true;
            }
        }
        return false;
    });
    return came ? found : json();
}

std::function<bool(const json&)> brightnessIs(int p_nValue) {
    return [p_nValue](const json& p_objEvent) {
        const json& changes = p_objEvent.at("changes");
        return std::any_of(changes.begin(), changes.end(), [p_nValue](const json& p_objChange) {
            return 34 == p_objChange.at("key") && p_nValue == p_objChange.at("value");
        });
    };
}

std::map<std::string, int> EventReader::counts() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    std::map<std::string, int> mapCounts;
    for (const auto& [type, data] : m_vecEvents) {
        ++mapCounts[type];
    }
    return mapCounts;
}

Stack::Stack(const std::string& p_strVariant, const Settings& p_stSettings)
    : m_stSettings(p_stSettings), m_objRig(p_strVariant) {
    m_objRig.start();
    serve();
}

Stack::~Stack() {
    stop();
}

void Stack::serve() {
    camerad::AccessSettings access;
    access.bBasicAllowed = true;
    m_pAccess = camerad::AccessControl::open(access);
    if (const std::optional<std::string> password = m_pAccess->firstPassword()) {
        m_strPassword = *password;
    }
    camerad::PictureFeed::Settings picture;
    picture.nWidth = m_stSettings.nPictureWidth;
    picture.nHeight = m_stSettings.nPictureHeight;
    for (const int channel : m_objRig.host().channels()) {
        m_mapFeeds[channel] =
            camerad::PictureFeed::create(m_objRig.camera(), channel, m_objRig.channel(channel).isThermal(), picture);
    }
    m_pApi.reset(new camerad::Api{m_objRig.host(), m_objRig.events(), *m_pAccess, m_mapFeeds,
                                  [this] { return m_pServer->counters(); }, "1.1.0"});
    m_pRouter = std::make_unique<camerad::Router>();
    camerad::addRoutes(*m_pRouter, *m_pApi);
    m_pServer = camerad::Server::create(m_stSettings.stServer, *m_pRouter, *m_pAccess);
    m_pServer->start();
}

void Stack::stop() {
    for (const auto& [channel, feed] : m_mapFeeds) {
        feed->close();
    }
    if (nullptr != m_pServer) {
        m_pServer->stop();
    }
    m_pServer.reset();
    m_mapFeeds.clear();
}

void Stack::restart() {
    stop();
    m_pRouter.reset();
    m_pApi.reset();
    m_pAccess.reset();
    m_objRig.restart();
    serve();
}

std::unique_ptr<StackClient> Stack::admin() {
    auto client = std::make_unique<StackClient>(port());
    client->login("admin", m_strPassword);
    return client;
}
