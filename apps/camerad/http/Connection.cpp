#include "apps/camerad/http/Connection.h"

#include "apps/camerad/http/ChunkedBody.h"
#include "apps/camerad/http/HostCheck.h"
#include "apps/camerad/http/Problem.h"
#include "apps/camerad/http/Status.h"

#include <algorithm>

namespace camerad {

namespace {

using Clock = std::chrono::steady_clock;
using Outcome = Wire::Outcome;

constexpr std::size_t kReadSize = 4096;
constexpr char kHandshake = 0x16;       // first byte of a client that speaks TLS
constexpr std::size_t kEmptyLines = 4;  // bytes of line ends that are read over before a request
constexpr std::chrono::milliseconds kLingerTime{1000};
constexpr std::size_t kLingerBytes = 256 * 1024;
constexpr int kRetrySeconds = 5;
constexpr char kTransportSecurity[] = "max-age=31536000";

std::string joined(const std::vector<std::string>& p_vecWords) {
    std::string list;
    for (const std::string& word : p_vecWords) {
        list += (list.empty() ? "" : ", ") + word;
    }
    return list;
}

}  // namespace

Connection::Connection(Shared& p_stShared, int p_nSocket, std::string p_strRemote, std::string p_strLocal)
    : m_stShared(p_stShared),
      m_stSettings(p_stShared.stSettings),
      m_nSocket(p_nSocket),
      m_strRemote(std::move(p_strRemote)),
      m_strLocal(std::move(p_strLocal)) {}

void Connection::run() {
    if (!m_stShared.pTls) {
        m_pWire = std::make_unique<Wire>(m_nSocket);
    } else if (!openTls()) {
        return;
    }
    bool goOn = true;
    while (goOn && !m_stShared.bStopping && waitForRequest()) {
        std::string head;
        try {
            if (!readHead(head)) {
                return;
            }
        } catch (const HttpRefusal& refusal) {
            sendProblem(refusal);
            linger();
            return;
        }
        Request request;
        receive(request, head);
        goOn = send(request);
    }
    if (goOn) {
        m_pWire->sayGoodbye();  // nothing was asked for any more
    } else {
        linger();
    }
}

bool Connection::openTls() {
    const Deadline deadline = Clock::now() + m_stSettings.nHandshakeTime;
    char first = 0;
    m_pWire = std::make_unique<Wire>(m_nSocket);
    Outcome outcome = m_pWire->peek(first, deadline);
    if (Outcome::Done == outcome && kHandshake != first) {
        sendProblem(
            {kBadRequest, "https-needed", "this port speaks HTTPS only: use an address that begins with https"});
        linger();
        return false;
    }
    if (Outcome::Done == outcome) {
        m_pWire = makeTlsWire(*m_stShared.pTls, m_nSocket);
        outcome = m_pWire->open(deadline);
    }
    m_stShared.nTimeouts += Outcome::Late == outcome ? 1 : 0;
    return Outcome::Done == outcome;
}

// Appends what comes to what is there.
Wire::Outcome Connection::more(std::size_t p_nMost, Deadline p_tDeadline) {
    char bytes[kReadSize];
    std::size_t count = 0;
    const Outcome outcome = m_pWire->read(bytes, std::min(p_nMost, sizeof(bytes)), count, p_tDeadline);
    if (Outcome::Done == outcome) {
        m_strIn.append(bytes, count);
    }
    return outcome;
}

// A client may keep its connection for later and say nothing; that is no fault of its.
bool Connection::waitForRequest() {
    const Deadline deadline = Clock::now() + m_stSettings.nIdleTime;
    for (std::size_t skipped = 0;; ++skipped) {
        if (m_strIn.empty() && Outcome::Done != more(kReadSize, deadline)) {
            return false;
        }
        if (('\r' != m_strIn.front() && '\n' != m_strIn.front()) || skipped >= kEmptyLines) {
            return true;
        }
        m_strIn.erase(0, 1);
    }
}

// False when the connection is to be closed without a word.
bool Connection::readHead(std::string& p_strHead) {
    const Deadline deadline = Clock::now() + m_stSettings.nHeaderTime;
    if (m_strIn.front() < 'A' || m_strIn.front() > 'z') {
        throw HttpRefusal(kBadRequest, "bad-request", "this is no request of HTTP");
    }
    std::size_t searched = 0;
    for (;;) {
        const std::string fresh = m_strIn.substr(searched);
        const std::size_t end = endOfHead(fresh);
        if (std::string::npos != end && searched + end <= m_stSettings.nHeaderBytes) {
            p_strHead = m_strIn.substr(0, searched + end);
            m_strIn.erase(0, searched + end);
            return true;
        }
        if (std::string::npos != end || m_strIn.size() >= m_stSettings.nHeaderBytes) {
            const bool path = m_strIn.find("\r\n") >= m_stSettings.nHeaderBytes;
            throw HttpRefusal(path ? kPathTooLong : kFieldsTooLarge, path ? "path-too-long" : "header-too-large",
                              (path ? "the address" : "the header") + std::string(" is longer than the ") +
                                  std::to_string(m_stSettings.nHeaderBytes) + " bytes taken here");
        }
        for (std::size_t i = fresh.find('\n'); std::string::npos != i; i = fresh.find('\n', i + 1)) {
            if (i + searched > 0 && '\r' != m_strIn[i + searched - 1]) {
                throw HttpRefusal(kBadRequest, "bad-request",
                                  "a line of the header does not end with carriage return and line feed");
            }
        }
        // The end may begin with the last bytes that are there.
        constexpr std::size_t kBeginningOfEnd = 3;
        searched = m_strIn.size() - std::min(m_strIn.size(), kBeginningOfEnd);
        switch (more(kReadSize, deadline)) {
            case Outcome::Done:
                break;
            case Outcome::Closed:
                if (m_stShared.bStopping) {
                    return false;
                }
                throw HttpRefusal(kBadRequest, "bad-request", "the request ends in the middle of its header");
            case Outcome::Late:
                ++m_stShared.nTimeouts;
                throw HttpRefusal(kTooSlow, "too-slow", "the header of the request took too long");
        }
    }
}

// Reads the request and decides who answers it. Never throws what a client could cause.
void Connection::receive(Request& p_stRequest, const std::string& p_strHead) {
    p_stRequest.bBodyTaken = false;
    try {
        p_stRequest.stHead = readRequestHead(p_strHead, m_stSettings.nPathBytes);
        const RequestHead& head = p_stRequest.stHead;
        HttpRequest& request = p_stRequest.stRequest;
        request.strMethod = head.strMethod;
        request.strPath = head.strPath;
        request.mapQuery = head.mapQuery;
        request.mapHeaders = head.mapHeaders;
        request.strRemote = m_strRemote;
        request.bSecure = nullptr != m_stShared.pTls;
        p_stRequest.bBodyTaken = !head.hasBody();
        route(p_stRequest);
        if (!p_stRequest.refusal) {
            admit(p_stRequest);
            readBody(p_stRequest);
        }
    } catch (const HttpRefusal& refusal) {
        p_stRequest.refusal = problemResponse(refusal.status(), refusal.type(), refusal.what());
    } catch (const Refusal& refusal) {
        p_stRequest.refusal = unauthorised(p_stRequest, problemResponse(refusal));
    } catch (const std::exception& error) {
        m_stShared.log("a request could not be admitted: " + std::string(error.what()));
        p_stRequest.refusal = problemResponse(kFailed, "failed", "the camera could not answer; its log says why");
    }
}

void Connection::route(Request& p_stRequest) {
    const RequestHead& head = p_stRequest.stHead;
    p_stRequest.strLabel = "unmatched";
    if (!isOurHost(head.strHost, m_stSettings.vecHosts, m_stSettings.strAddress, m_strLocal)) {
        throw HttpRefusal(kNotThisHost, "not-this-host",
                          "this camera does not go by the name that was asked for: use its address, or start it with "
                          "--host and the name");
    }
    if ("*" == head.strPath) {
        p_stRequest.refusal = problemResponse(kNoSuchMethod, "no-such-method", "ask for a path instead of *");
        p_stRequest.refusal->vecHeaders.emplace_back("Allow", "DELETE, GET, HEAD, PATCH, POST, PUT");
        return;
    }
    const Router::Found found = m_stShared.objRouter.find(head.strMethod, head.strPath);
    if (nullptr == found.pRoute && found.vecAllowed.empty()) {
        throw HttpRefusal(kNotFound, "no-such-path", "there is nothing at this path: see /api for what there is");
    }
    if (nullptr == found.pRoute) {
        p_stRequest.refusal = problemResponse(kNoSuchMethod, "no-such-method",
                                              "this path takes " + joined(found.vecAllowed) + ", not this method");
        p_stRequest.refusal->vecHeaders.emplace_back("Allow", joined(found.vecAllowed));
        return;
    }
    p_stRequest.pRoute = found.pRoute;
    p_stRequest.stRequest.mapPath = found.mapPath;
    p_stRequest.strLabel = found.pRoute->strMethod + " " + found.pRoute->strPattern;
}

// Before anything of the body is read.
void Connection::admit(Request& p_stRequest) {
    HttpRequest& request = p_stRequest.stRequest;
    const Route& route = *p_stRequest.pRoute;
    if (Access::Everybody == route.eAccess) {
        try {
            request.stIdentity = m_stShared.objAccess.identify(request);
        } catch (const Refusal&) {
            request.stIdentity = Identity();  // whoever may log in may come with a session that has ended
        }
    } else {
        request.stIdentity = m_stShared.objAccess.identify(request);
    }
    m_stShared.objAccess.authorise(request, request.stIdentity, route);
}

void Connection::readBody(Request& p_stRequest) {
    const RequestHead& head = p_stRequest.stHead;
    if (!head.hasBody()) {
        return;
    }
    const std::size_t limit = p_stRequest.pRoute->nBodyLimit;
    if (head.nLength > limit || (head.bChunked && 0 == limit)) {
        throw HttpRefusal(kTooLarge, "too-large",
                          0 == limit ? "this takes no body"
                                     : "the body is longer than the " + std::to_string(limit) + " bytes taken here");
    }
    if (const std::string encoding = p_stRequest.stRequest.header("content-encoding", "identity");
        "identity" != encoding) {
        throw HttpRefusal(kUnsupportedType, "bad-encoding",
                          "the body has to be sent as it is, without Content-Encoding");
    }
    const Deadline deadline = Clock::now() + m_stSettings.nBodyTime;
    if (head.bExpectsContinue && m_strIn.empty()) {
        const std::string goOn = "HTTP/1.1 100 Continue\r\n\r\n";
        std::size_t put = 0;
        m_pWire->write(goOn.data(), goOn.size(), put, deadline);
    }
    ChunkedBody pieces(limit);
    const auto length = static_cast<std::size_t>(head.nLength);
    for (;;) {
        if (head.bChunked) {
            pieces.take(m_strIn);
        }
        if (head.bChunked ? pieces.isComplete() : m_strIn.size() >= length) {
            break;
        }
        const Outcome outcome = more(head.bChunked ? kReadSize : length - m_strIn.size(), deadline);
        if (Outcome::Late == outcome) {
            ++m_stShared.nTimeouts;
            throw HttpRefusal(kTooSlow, "too-slow", "the body of the request took too long");
        }
        if (Outcome::Closed == outcome) {
            throw HttpRefusal(kBadRequest, "bad-body", "the request ends in the middle of its body");
        }
    }
    p_stRequest.stRequest.strBody = head.bChunked ? pieces.body() : m_strIn.substr(0, length);
    if (!head.bChunked) {
        m_strIn.erase(0, length);
    }
    p_stRequest.bBodyTaken = true;
}

// A client that is no page learns how to say who it is; a browser would ask its user with a window of its own.
HttpResponse Connection::unauthorised(const Request& p_stRequest, HttpResponse p_stResponse) const {
    const HttpRequest& request = p_stRequest.stRequest;
    const char* const kOfPages[] = {"sec-fetch-site", "x-client-id", "x-csrf-token", "cookie"};
    const bool page = std::any_of(std::begin(kOfPages), std::end(kOfPages),
                                  [&request](const char* p_szName) { return 0 != request.mapHeaders.count(p_szName); });
    if (kUnauthorised == p_stResponse.nStatus && !page) {
        p_stResponse.vecHeaders.emplace_back("WWW-Authenticate", "Bearer realm=\"camera\"");
        if (request.bSecure || isLoopback(m_stSettings.strAddress)) {
            p_stResponse.vecHeaders.emplace_back("WWW-Authenticate", "Basic realm=\"camera\", charset=\"UTF-8\"");
        }
    }
    return p_stResponse;
}

HttpResponse Connection::handle(Request& p_stRequest, bool& p_bStream) {
    if (p_stRequest.refusal) {
        return *p_stRequest.refusal;
    }
    HttpResponse response;
    try {
        response = p_stRequest.pRoute->fnHandler(p_stRequest.stRequest);
    } catch (const Refusal& refusal) {
        return unauthorised(p_stRequest, problemResponse(refusal));
    } catch (const std::exception& error) {
        m_stShared.log(p_stRequest.strLabel + " failed: " + error.what());
        return problemResponse(kFailed, "failed", "the camera could not answer; its log says why");
    } catch (...) {
        m_stShared.log(p_stRequest.strLabel + " failed");
        return problemResponse(kFailed, "failed", "the camera could not answer; its log says why");
    }
    if (response.fnStream && "HEAD" != p_stRequest.stHead.strMethod) {
        p_bStream = m_stShared.takeStream();
        if (!p_bStream) {
            response = problemResponse(kUnavailable, "too-many-streams",
                                       "there are as many streams as the camera serves at a time: close one");
            response.vecHeaders.emplace_back("Retry-After", std::to_string(kRetrySeconds));
        }
    }
    return response;
}

// False when the connection ends with this answer.
bool Connection::send(Request& p_stRequest) {
    const Clock::time_point begin = Clock::now();
    const auto count = [&](int p_nStatus) {
        m_stShared.count(p_stRequest.strLabel, p_nStatus, std::chrono::duration<double>(Clock::now() - begin).count());
    };
    bool stream = false;
    const auto answer = [&] {
        HttpResponse response = handle(p_stRequest, stream);
        if (stream) {
            count(response.nStatus);
        }
        return response;
    };
    Exchange exchange{*m_pWire,
                      m_stShared.bStopping,
                      m_stSettings.nWriteTime,
                      answer,
                      [this](const std::string& p_strLine) { m_stShared.log(p_strLine); },
                      "HEAD" == p_stRequest.stHead.strMethod,
                      p_stRequest.stHead.bOldProtocol,
                      p_stRequest.stHead.bClose || !p_stRequest.bBodyTaken,
                      m_stShared.pTls ? kTransportSecurity : "",
                      false,
                      0};
    bool sent = false;
    try {
        sent = m_stShared.objAnswerer.answer(exchange);
    } catch (const std::exception& error) {
        m_stShared.log(p_stRequest.strLabel + " could not be answered: " + error.what());
    }
    m_stShared.nTimeouts += exchange.bLate ? 1 : 0;  // first: who sees that the stream has ended may look why
    if (stream) {
        --m_stShared.nStreams;
    } else {
        count(exchange.nStatus);
    }
    m_bBroken = !sent;
    return sent && !exchange.bClose;
}

void Connection::sendProblem(const HttpRefusal& p_objRefusal) {
    Request request;
    request.bBodyTaken = false;
    request.refusal = problemResponse(p_objRefusal.status(), p_objRefusal.type(), p_objRefusal.what());
    send(request);
}

// A socket that is closed while bytes of the client are unread takes the answer back. So the client is told that nothing
// more comes, and what it still sends is read over for a moment.
void Connection::linger() {
    if (m_bBroken) {
        return;
    }
    m_pWire->sayGoodbye();
    Wire plain(m_nSocket);
    const Deadline deadline = Clock::now() + kLingerTime;
    char bytes[kReadSize];
    std::size_t total = 0;
    std::size_t count = 0;
    while (!m_stShared.bStopping && total < kLingerBytes &&
           Outcome::Done == plain.read(bytes, sizeof(bytes), count, deadline)) {
        total += count;
    }
}

}  // namespace camerad
