// Who gets in: accounts, sessions, tokens, slowed logins, and the proof that a request comes from the camera's own page.
//
// Accounts and tokens live in one file below the device root (/mnt/mtd/camerad/accounts.json, mode 0600): passwords as
// yescrypt hashes, tokens as SHA-256 sums. Sessions live in memory. No secret is ever logged.
//
// Threads: every function may be called from any thread. Checking a password takes tens of milliseconds and memory by
// intent; only a bounded number is checked at a time. Functions throw Refusal.
#pragma once

#include "apps/camerad/access/Identity.h"
#include "apps/camerad/host/Refusal.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace camerad {

struct HttpRequest;
struct Route;

struct AccessSettings {
    std::string strFile = "/mnt/mtd/camerad/accounts.json";  // camera path
    bool bBasicAllowed = false;                              // the listener is the loopback or speaks TLS
    std::chrono::seconds nSessionIdle{30 * 60};
    std::chrono::seconds nSessionLife{12 * 3600};
    std::size_t nSessions = 64;     // at a time; the one idle longest goes
    std::size_t nFreeAttempts = 3;  // failed logins of an address and of an account before they are slowed down
    std::chrono::seconds nLongestPause{60};
    unsigned long nPasswordCost = 0;                // of yescrypt, 1 to 6; 0: the usual one of this machine
    std::chrono::milliseconds nPasswordWait{3000};  // for a turn to check a password
    std::function<std::chrono::steady_clock::time_point()> fnNow = std::chrono::steady_clock::now;   // for tests
    std::function<std::chrono::system_clock::time_point()> fnDate = std::chrono::system_clock::now;  // for tokens
};

struct AccountView {
    std::string strName;
    Role eRole = Role::Viewer;
};

struct TokenView {
    std::string strId;
    std::string strName;
    Role eRole = Role::Viewer;
    std::string strExpires;  // "2026-12-21T00:00:00Z", empty: never
};

class AccessControl {
public:
    // Reads the file. Without one, makes an account "admin" with a random password, stores it and hands it out once by
    // firstPassword. Throws std::runtime_error for a file that is there and cannot be used: it is never replaced silently.
    static std::unique_ptr<AccessControl> open(const AccessSettings& p_stSettings);
    virtual ~AccessControl() = default;

    virtual std::optional<std::string> firstPassword() = 0;  // the first call only

    // From cookie, Authorization: Basic or Bearer. Nobody when there are no credentials; Refusal (Unauthorised, TooMany)
    // when there are and they are not good.
    virtual Identity identify(const HttpRequest& p_stRequest) = 0;
    // Whether the identity may call the route: role, and for a method that changes something the same-origin proof (header
    // X-CSRF-Token of the session for a cookie; for all: an Origin or Sec-Fetch-Site that is there and foreign is refused).
    virtual void authorise(const HttpRequest& p_stRequest, const Identity& p_stIdentity, const Route& p_stRoute) = 0;

    struct Session {
        std::string strCookie;  // value of the cookie "camera_session"
        std::string strProof;   // for X-CSRF-Token
        Identity stIdentity;
    };
    virtual Session login(const std::string& p_strName, const std::string& p_strPassword,
                          const std::string& p_strRemote) = 0;
    virtual void logout(const Identity& p_stIdentity) = 0;
    virtual std::string proofOf(const Identity& p_stIdentity) = 0;  // empty for what is no session

    virtual std::vector<AccountView> accounts() = 0;
    // Makes or changes; an empty password keeps the old one. Ends the account's sessions. The last admin stays one.
    virtual void putAccount(const std::string& p_strName, const std::string& p_strPassword, Role p_eRole) = 0;
    virtual void removeAccount(const std::string& p_strName) = 0;
    // Ends the account's other sessions.
    virtual void changePassword(const Identity& p_stIdentity, const std::string& p_strOld,
                                const std::string& p_strNew) = 0;

    virtual std::vector<TokenView> tokens() = 0;
    // p_nDays: 1 to 3650; 0: for ever. The second of the pair is the token, which is not kept and never shown again.
    virtual std::pair<TokenView, std::string> makeToken(const std::string& p_strName, Role p_eRole, int p_nDays) = 0;
    virtual void removeToken(const std::string& p_strId) = 0;

    // Logins by name and password, of the page and by Basic (not those that the cache answers): let in, not let in, sent
    // away unchecked because of earlier failures or too many at once.
    struct Counters {
        std::uint64_t nLogins = 0, nFailedLogins = 0, nSlowedLogins = 0;
        std::size_t nSessions = 0;
        std::uint64_t nFlashWrites = 0;  // of the accounts file
    };
    virtual Counters counters() = 0;
};

// A key pair and a certificate for the TLS of this camera, made when the files are not there (mode 0600 for the key; valid
// for ten years; names: localhost, the machine's name, the address). Returns the SHA-256 fingerprint of the certificate.
// Files are camera paths. Throws std::runtime_error.
std::string ensureCertificate(const std::string& p_strCertificate, const std::string& p_strPrivateKey,
                              const std::string& p_strAddress);

}  // namespace camerad
