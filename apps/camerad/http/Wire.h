// The bytes of one connection, in and out, each call with a deadline.
//
// The socket is non-blocking and belongs to somebody else, who may shut it down from another thread at any time: every call
// then ends at once. Otherwise one thread.
#pragma once

#include <openssl/types.h>

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>

namespace camerad {

using Deadline = std::chrono::steady_clock::time_point;

class Wire {
public:
    enum class Outcome { Done, Closed, Late };

    explicit Wire(int p_nSocket) : m_nSocket(p_nSocket) {}
    virtual ~Wire() = default;
    Wire(const Wire&) = delete;
    Wire& operator=(const Wire&) = delete;

    // Until both sides agree on how they talk.
    virtual Outcome open(Deadline p_tDeadline);
    // At least one byte and at most so many.
    virtual Outcome read(char* p_pTo, std::size_t p_nMost, std::size_t& p_nCount, Deadline p_tDeadline);
    virtual Outcome write(const char* p_pFrom, std::size_t p_nMost, std::size_t& p_nCount, Deadline p_tDeadline);
    // Tells the other side that nothing more comes.
    virtual void sayGoodbye();

    // False once the other side has closed its end, as far as that is known.
    bool isPeerThere() const;
    // Waits for the first byte without taking it.
    Outcome peek(char& p_cByte, Deadline p_tDeadline);

protected:
    int socket() const { return m_nSocket; }
    Outcome wait(short p_nEvents, Deadline p_tDeadline) const;

private:
    const int m_nSocket;
};

// Key and certificate of this server. Throws std::runtime_error for files that cannot be used.
class TlsContext {
public:
    TlsContext(const std::string& p_strCertificate, const std::string& p_strPrivateKey);
    SSL_CTX* get() const { return m_pContext.get(); }

private:
    std::unique_ptr<SSL_CTX, void (*)(SSL_CTX*)> m_pContext;
};

std::unique_ptr<Wire> makeTlsWire(const TlsContext& p_objContext, int p_nSocket);

}  // namespace camerad
