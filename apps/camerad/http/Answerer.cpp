#include "apps/camerad/http/Answerer.h"

#include "apps/camerad/http/Problem.h"
#include "apps/camerad/http/Status.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <ctime>
#include <optional>
#include <string_view>

namespace camerad {

namespace {

constexpr std::size_t kSlice = 16384;  // bytes that have to be taken within the time for headway

thread_local Exchange* t_pExchange = nullptr;  // that this thread sends the answer of

// What httplib reads from and writes to.
class CleanStream : public httplib::Stream {
public:
    CleanStream(Exchange& p_stExchange, std::string p_strRequest)
        : m_stExchange(p_stExchange), m_strRequest(std::move(p_strRequest)) {}

    bool is_readable() const override { return m_nRead < m_strRequest.size(); }
    bool is_writable() const override { return isOpen(); }

    ssize_t read(char* p_pTo, size_t p_nMost) override {
        const std::size_t count = std::min(p_nMost, m_strRequest.size() - m_nRead);
        std::memcpy(p_pTo, m_strRequest.data() + m_nRead, count);
        m_nRead += count;
        return static_cast<ssize_t>(count);
    }

    ssize_t write(const char* p_pFrom, size_t p_nCount) override {
        if (m_bBroken || m_stExchange.bStopping || 0 == p_nCount) {
            m_bBroken = true;
            return -1;
        }
        std::size_t put = 0;
        const Deadline deadline = m_deadline.value_or(std::chrono::steady_clock::now() + m_stExchange.nWriteTime);
        const Wire::Outcome outcome =
            m_stExchange.objWire.write(p_pFrom, std::min<std::size_t>(p_nCount, kSlice), put, deadline);
        if (Wire::Outcome::Done != outcome) {
            m_bBroken = true;
            m_stExchange.bLate = Wire::Outcome::Late == outcome;
            return -1;
        }
        return static_cast<ssize_t>(put);
    }

    // httplib writes these into its request; nobody reads them.
    void get_remote_ip_and_port(std::string& /*p_strAddress*/, int& /*p_nPort*/) const override {}
    void get_local_ip_and_port(std::string& /*p_strAddress*/, int& /*p_nPort*/) const override {}
    // It looks at the number only to see whether select could take it.
    socket_t socket() const override { return 0; }

    bool isOpen() const { return !m_bBroken && !m_stExchange.bStopping && m_stExchange.objWire.isPeerThere(); }
    bool isBroken() const { return m_bBroken; }
    void setDeadline(std::optional<Deadline> p_deadline) { m_deadline = p_deadline; }

private:
    Exchange& m_stExchange;
    const std::string m_strRequest;
    std::size_t m_nRead = 0;
    std::optional<Deadline> m_deadline;  // of everything that is written meanwhile
    bool m_bBroken = false;
};

thread_local CleanStream* t_pStream = nullptr;

// A request that is made before any client can make one; its answer goes nowhere.
class FirstStream : public httplib::Stream {
public:
    bool is_readable() const override { return m_nRead < kRequest.size(); }
    bool is_writable() const override { return true; }
    ssize_t read(char* p_pTo, size_t p_nMost) override {
        const std::size_t count = kRequest.copy(p_pTo, p_nMost, m_nRead);
        m_nRead += count;
        return static_cast<ssize_t>(count);
    }
    ssize_t write(const char* /*p_pFrom*/, size_t p_nCount) override { return static_cast<ssize_t>(p_nCount); }
    void get_remote_ip_and_port(std::string& /*p_strAddress*/, int& /*p_nPort*/) const override {}
    void get_local_ip_and_port(std::string& /*p_strAddress*/, int& /*p_nPort*/) const override {}
    socket_t socket() const override { return 0; }

private:
    static constexpr std::string_view kRequest = "GET /first HTTP/1.1\r\n\r\n";  // every other one asks for "/"
    std::size_t m_nRead = 0;
};

class StreamSink : public HttpSink {
public:
    StreamSink(httplib::DataSink& p_objSink, CleanStream& p_objStream, std::chrono::milliseconds p_nWriteTime)
        : m_objSink(p_objSink), m_objStream(p_objStream), m_nWriteTime(p_nWriteTime) {}

    bool write(const std::string& p_strBytes) override {
        if (p_strBytes.empty()) {
            return isOpen();
        }
        m_objStream.setDeadline(std::chrono::steady_clock::now() + m_nWriteTime);
        m_objSink.write(p_strBytes.data(), p_strBytes.size());
        m_objStream.setDeadline(std::nullopt);
        return !m_objStream.isBroken();
    }
    bool isOpen() const override { return m_objStream.isOpen(); }

private:
    httplib::DataSink& m_objSink;
    CleanStream& m_objStream;
    const std::chrono::milliseconds m_nWriteTime;
};

bool runStream(const std::function<void(HttpSink&)>& p_fnStream, httplib::DataSink& p_objSink) {
    StreamSink sink(p_objSink, *t_pStream, t_pExchange->nWriteTime);
    try {
        p_fnStream(sink);
    } catch (const std::exception& error) {
        t_pExchange->fnLog(std::string("a stream ended early: ") + error.what());
        return false;
    }
    if (t_pStream->isBroken() || t_pExchange->bStopping) {
        return false;
    }
    p_objSink.done();
    return true;
}

std::string dateNow() {
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    gmtime_r(&now, &parts);
    std::array<char, sizeof("Sun, 06 Nov 1994 08:49:37 GMT") + 1> text{};
    std::strftime(text.data(), text.size(), "%a, %d %b %Y %H:%M:%S GMT", &parts);
    return text.data();
}

void fill(const HttpResponse& p_stFrom, httplib::Response& p_stTo) {
    p_stTo.status = p_stFrom.nStatus;
    for (const auto& [name, value] : p_stFrom.vecHeaders) {
        p_stTo.set_header(name, value);
    }
    if (p_stFrom.fnStream) {
        const auto provider = [stream = p_stFrom.fnStream](std::size_t /*p_nOffset*/, httplib::DataSink& p_objSink) {
            return runStream(stream, p_objSink);
        };
        if (t_pExchange->bOldProtocol) {
            p_stTo.set_content_provider(p_stFrom.strType, provider);
        } else {
            p_stTo.set_chunked_content_provider(p_stFrom.strType, provider);
        }
        t_pExchange->bClose = true;
    } else if (!p_stFrom.strBody.empty()) {
        p_stTo.set_content(p_stFrom.strBody, p_stFrom.strType);
    }
}

// What every answer says, unless it says something of its own.
void addHeaders(const Exchange& p_stExchange, httplib::Response& p_stResponse) {
    const std::pair<const char*, std::string> kAlways[] = {
        {"Cache-Control", "no-store"},
        {"Content-Security-Policy", "default-src 'none'; frame-ancestors 'none'"},
        {"Cross-Origin-Opener-Policy", "same-origin"},
        {"Cross-Origin-Resource-Policy", "same-origin"},
        {"Date", dateNow()},
        {"Referrer-Policy", "no-referrer"},
        {"Strict-Transport-Security", p_stExchange.strTransportSecurity},
        {"X-Content-Type-Options", "nosniff"}};
    for (const auto& [name, value] : kAlways) {
        if (!value.empty() && !p_stResponse.has_header(name)) {
            p_stResponse.set_header(name, value);
        }
    }
    p_stResponse.headers.erase("Keep-Alive");
    p_stResponse.headers.erase("Accept-Ranges");
    p_stResponse.headers.erase("Connection");
    if (p_stExchange.bClose) {
        p_stResponse.set_header("Connection", "close");
    } else if (p_stExchange.bOldProtocol) {
        p_stResponse.set_header("Connection", "keep-alive");
    }
    if (kNoContent == p_stResponse.status || kNotModified == p_stResponse.status) {
        p_stResponse.headers.erase("Content-Length");
    }
}

}  // namespace

Answerer::Answerer() {
    svr_sock_ = 0;  // it takes no connections itself, but is not shut down either
    // httplib makes its tables when it first reads a request, and when it first ends an answer in chunks. It is made to here,
    // where there is one thread: the compiled library does that in a way that a thread sanitizer cannot follow.
    Get("/first", [](const httplib::Request& /*p_stRequest*/, httplib::Response& p_stResponse) {
        p_stResponse.set_chunked_content_provider("text/plain",
                                                  [](std::size_t /*p_nOffset*/, httplib::DataSink& p_objSink) {
                                                      p_objSink.write("-", 1);
                                                      p_objSink.done();
                                                      return true;
                                                  });
    });
    FirstStream first;
    bool closed = false;
    process_request(first, true, closed, nullptr);

    Get(".*", [](const httplib::Request& /*p_stRequest*/, httplib::Response& p_stResponse) {
        fill(t_pExchange->fnAnswer(), p_stResponse);
    });
    set_post_routing_handler([](const httplib::Request& /*p_stRequest*/, httplib::Response& p_stResponse) {
        t_pExchange->nStatus = p_stResponse.status;
        addHeaders(*t_pExchange, p_stResponse);
    });
    // For what httplib refuses or fails at by itself.
    set_exception_handler([](const httplib::Request& /*p_stRequest*/, httplib::Response& p_stResponse,
                             const std::exception_ptr& /*p_pError*/) { p_stResponse.status = kFailed; });
    set_error_handler(HandlerWithResponse([](const httplib::Request& /*p_stRequest*/, httplib::Response& p_stResponse) {
        if (p_stResponse.body.empty() && p_stResponse.status >= kFirstRefusal) {
            fill(problemResponse(p_stResponse.status, "failed", "the request could not be answered"), p_stResponse);
        }
        return HandlerResponse::Handled;
    }));
}

bool Answerer::answer(Exchange& p_stExchange) {
    CleanStream stream(p_stExchange, p_stExchange.bHead ? "HEAD / HTTP/1.1\r\n\r\n" : "GET / HTTP/1.1\r\n\r\n");
    t_pExchange = &p_stExchange;
    t_pStream = &stream;
    bool closed = false;
    const bool sent = process_request(stream, p_stExchange.bClose, closed, nullptr);
    t_pExchange = nullptr;
    t_pStream = nullptr;
    return sent && !stream.isBroken();
}

}  // namespace camerad
