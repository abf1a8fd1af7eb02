#include "apps/camerad/http/Wire.h"

#include <openssl/err.h>
#include <openssl/ssl.h>
#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <stdexcept>

namespace camerad {

namespace {

constexpr unsigned char kProtocol[] = "\x08http/1.1";  // as the extension carries it: its length, then its name

bool wouldBlock() {
    return EAGAIN == errno || EWOULDBLOCK == errno;
}

// The one protocol spoken here; a client that wants only others is told so by the end of the handshake.
int chooseProtocol(SSL* /*p_pSession*/, const unsigned char** p_ppOut, unsigned char* p_pLength,
                   const unsigned char* p_pOffered, unsigned p_nOffered, void* /*p_pNothing*/) {
    unsigned char* chosen = nullptr;
    if (OPENSSL_NPN_NEGOTIATED ==
        SSL_select_next_proto(&chosen, p_pLength, kProtocol, sizeof(kProtocol) - 1, p_pOffered, p_nOffered)) {
        *p_ppOut = chosen;
        return SSL_TLSEXT_ERR_OK;
    }
    return SSL_TLSEXT_ERR_ALERT_FATAL;
}

class TlsWire : public Wire {
public:
    TlsWire(const TlsContext& p_objContext, int p_nSocket)
        : Wire(p_nSocket), m_pSession(SSL_new(p_objContext.get()), SSL_free) {
        if (nullptr == m_pSession || 1 != SSL_set_fd(m_pSession.get(), p_nSocket)) {
            throw std::runtime_error("no memory for a TLS session");
        }
    }

    Outcome open(Deadline p_tDeadline) override {
        return repeat([this] { return SSL_accept(m_pSession.get()); }, p_tDeadline);
    }

    Outcome read(char* p_pTo, std::size_t p_nMost, std::size_t& p_nCount, Deadline p_tDeadline) override {
        return repeat([&] { return SSL_read_ex(m_pSession.get(), p_pTo, p_nMost, &p_nCount); }, p_tDeadline);
    }

    Outcome write(const char* p_pFrom, std::size_t p_nMost, std::size_t& p_nCount, Deadline p_tDeadline) override {
        return repeat([&] { return SSL_write_ex(m_pSession.get(), p_pFrom, p_nMost, &p_nCount); }, p_tDeadline);
    }

    void sayGoodbye() override {
        if (!m_bBroken) {
            ERR_clear_error();
            SSL_shutdown(m_pSession.get());
        }
        ERR_clear_error();
        Wire::sayGoodbye();
    }

private:
    // Until the step is done, which may need both directions of the socket.
    template <typename Step>
    Outcome repeat(Step p_fnStep, Deadline p_tDeadline) {
        for (;;) {
            ERR_clear_error();
            errno = 0;
            const int result = p_fnStep();
            if (1 == result) {
                return Outcome::Done;
            }
            const int error = SSL_get_error(m_pSession.get(), result);
            if (SSL_ERROR_WANT_READ != error && SSL_ERROR_WANT_WRITE != error) {
                m_bBroken = SSL_ERROR_ZERO_RETURN != error;
                ERR_clear_error();
                return Outcome::Closed;
            }
            const Outcome waited = wait(SSL_ERROR_WANT_READ == error ? POLLIN : POLLOUT, p_tDeadline);
            if (Outcome::Done != waited) {
                return waited;
            }
        }
    }

    std::unique_ptr<SSL, void (*)(SSL*)> m_pSession;
    bool m_bBroken = false;  // nothing may be written to the session any more
};

}  // namespace

Wire::Outcome Wire::open(Deadline /*p_tDeadline*/) {
    return Outcome::Done;
}

Wire::Outcome Wire::read(char* p_pTo, std::size_t p_nMost, std::size_t& p_nCount, Deadline p_tDeadline) {
    for (;;) {
        const ssize_t got = recv(m_nSocket, p_pTo, p_nMost, 0);
        if (got > 0) {
            p_nCount = static_cast<std::size_t>(got);
            return Outcome::Done;
        }
        if (0 == got || (!wouldBlock() && EINTR != errno)) {
            return Outcome::Closed;
        }
        const Outcome waited = wait(POLLIN, p_tDeadline);
        if (Outcome::Done != waited) {
            return waited;
        }
    }
}

Wire::Outcome Wire::write(const char* p_pFrom, std::size_t p_nMost, std::size_t& p_nCount, Deadline p_tDeadline) {
    for (;;) {
        const ssize_t put = send(m_nSocket, p_pFrom, p_nMost, MSG_NOSIGNAL);
        if (put > 0) {
            p_nCount = static_cast<std::size_t>(put);
            return Outcome::Done;
        }
        if (0 != put && !wouldBlock() && EINTR != errno) {
            return Outcome::Closed;
        }
        const Outcome waited = wait(POLLOUT, p_tDeadline);
        if (Outcome::Done != waited) {
            return waited;
        }
    }
}

void Wire::sayGoodbye() {
    shutdown(m_nSocket, SHUT_WR);
}

bool Wire::isPeerThere() const {
    pollfd state{m_nSocket, POLLRDHUP, 0};
    return poll(&state, 1, 0) >= 0 && 0 == (state.revents & (POLLRDHUP | POLLHUP | POLLERR | POLLNVAL));
}

Wire::Outcome Wire::peek(char& p_cByte, Deadline p_tDeadline) {
    for (;;) {
        const ssize_t got = recv(m_nSocket, &p_cByte, 1, MSG_PEEK);
        if (got > 0) {
            return Outcome::Done;
        }
        if (0 == got || (!wouldBlock() && EINTR != errno)) {
            return Outcome::Closed;
        }
        const Outcome waited = wait(POLLIN, p_tDeadline);
        if (Outcome::Done != waited) {
            return waited;
        }
    }
}

Wire::Outcome Wire::wait(short p_nEvents, Deadline p_tDeadline) const {
    for (;;) {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(p_tDeadline - std::chrono::steady_clock::now()).count();
        if (left <= 0) {
            return Outcome::Late;
        }
        pollfd state{m_nSocket, p_nEvents, 0};
        const int ready = poll(&state, 1, static_cast<int>(std::min<long long>(left, INT_MAX)));
        if (ready > 0) {
            return Outcome::Done;
        }
        if (ready < 0 && EINTR != errno) {
            return Outcome::Closed;
        }
    }
}

TlsContext::TlsContext(const std::string& p_strCertificate, const std::string& p_strPrivateKey)
    : m_pContext(SSL_CTX_new(TLS_server_method()), SSL_CTX_free) {
    SSL_CTX* const context = m_pContext.get();
    if (nullptr == context || 1 != SSL_CTX_set_min_proto_version(context, TLS1_2_VERSION) ||
        1 != SSL_CTX_set_cipher_list(context, "ECDHE+AESGCM:ECDHE+CHACHA20") ||
        1 != SSL_CTX_set_num_tickets(context, 0)) {
        throw std::runtime_error("TLS cannot be set up on this machine");
    }
    SSL_CTX_set_options(context, SSL_OP_NO_COMPRESSION | SSL_OP_NO_RENEGOTIATION | SSL_OP_CIPHER_SERVER_PREFERENCE |
                                     SSL_OP_NO_TICKET | SSL_OP_PRIORITIZE_CHACHA);
    SSL_CTX_set_session_cache_mode(context, SSL_SESS_CACHE_OFF);
    SSL_CTX_set_mode(context,
                     SSL_MODE_ENABLE_PARTIAL_WRITE | SSL_MODE_ACCEPT_MOVING_WRITE_BUFFER | SSL_MODE_RELEASE_BUFFERS);
    SSL_CTX_set_alpn_select_cb(context, chooseProtocol, nullptr);
    const bool loaded = 1 == SSL_CTX_use_certificate_chain_file(context, p_strCertificate.c_str()) &&
                        1 == SSL_CTX_use_PrivateKey_file(context, p_strPrivateKey.c_str(), SSL_FILETYPE_PEM) &&
                        1 == SSL_CTX_check_private_key(context);
    ERR_clear_error();
    if (!loaded) {
        throw std::runtime_error("the certificate " + p_strCertificate + " and the private key " + p_strPrivateKey +
                                 " cannot be read or do not belong together");
    }
}

std::unique_ptr<Wire> makeTlsWire(const TlsContext& p_objContext, int p_nSocket) {
    return std::make_unique<TlsWire>(p_objContext, p_nSocket);
}

}  // namespace camerad
