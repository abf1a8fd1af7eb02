#include "apps/camerad/access/AccessControl.h"

#include "apps/camerad/access/AccountsFile.h"
#include "apps/camerad/access/Credentials.h"
#include "apps/camerad/access/LoginPace.h"
#include "apps/camerad/access/PasswordGate.h"
#include "apps/camerad/access/PasswordHash.h"
#include "apps/camerad/access/PrivateFile.h"
#include "apps/camerad/access/Rules.h"
#include "apps/camerad/access/Secrets.h"
#include "apps/camerad/access/Sessions.h"
#include "apps/camerad/http/Http.h"
#include "apps/shared/Text.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <stdexcept>

namespace camerad {

namespace {

constexpr std::size_t kPasswordsAtATime = 2;
constexpr std::size_t kPasswordsWaiting = 16;
constexpr std::size_t kMostKnownPairs = 64;  // of name and password that Basic has shown to be good
constexpr std::chrono::minutes kPairKnownFor{5};
constexpr int kMostTokenDays = 3650;
const char* const kFirstAccount = "admin";
const char* const kTokenStart = "camerad_";

Refusal badCredentials() {
    return Refusal(Refusal::Kind::Unauthorised, "bad-credentials",
                   "Name and password do not belong together; both are case-sensitive.");
}

// p_strWhy: "... have failed".
Refusal slowed(const std::string& p_strWhy, int p_nSeconds) {
    Refusal refusal(Refusal::Kind::TooMany, "login-slowed",
                    p_strWhy + "; wait " + std::to_string(p_nSeconds) + (1 == p_nSeconds ? " second" : " seconds") +
                        " and try again.");
    refusal.retryAfter(p_nSeconds);
    return refusal;
}

bool changesSomething(const std::string& p_strMethod) {
    return "GET" != p_strMethod && "HEAD" != p_strMethod && "OPTIONS" != p_strMethod;
}

PrivateFile fileOf(const std::string& p_strPath) {
    return {p_strPath, "The accounts file", kMostAccountsBytes, kForOwner};
}

TokenView viewOf(const StoredToken& p_stToken) {
    return {p_stToken.strId, p_stToken.strName, p_stToken.eRole, p_stToken.strExpires};
}

// Locks: m_objChanging is held by who changes accounts or tokens, also while the file is written; m_objMutex, taken after
// it, guards the rest and is never held while a password is hashed or a medium is waited for.
class FileAccessControl : public AccessControl {
public:
    explicit FileAccessControl(const AccessSettings& p_stSettings)
        : m_stSettings(p_stSettings),
          m_strPairKey(randomBytes(32)),
          m_objGate(kPasswordsAtATime, kPasswordsWaiting, p_stSettings.nPasswordWait),
          m_objAccountPace(p_stSettings.nFreeAttempts, p_stSettings.nLongestPause),
          m_objAddressPace(p_stSettings.nFreeAttempts, p_stSettings.nLongestPause),
          m_objOldPasswordPace(p_stSettings.nFreeAttempts, p_stSettings.nLongestPause),
          m_objSessions({p_stSettings.nSessionIdle, p_stSettings.nSessionLife, p_stSettings.nSessions}) {}

    void load();

    std::optional<std::string> firstPassword() override;
    Identity identify(const HttpRequest& p_stRequest) override;
    void authorise(const HttpRequest& p_stRequest, const Identity& p_stIdentity, const Route& p_stRoute) override;
    Session login(const std::string& p_strName, const std::string& p_strPassword,
                  const std::string& p_strRemote) override;
    void logout(const Identity& p_stIdentity) override;
    std::string proofOf(const Identity& p_stIdentity) override;
    std::vector<AccountView> accounts() override;
    void putAccount(const std::string& p_strName, const std::string& p_strPassword, Role p_eRole) override;
    void removeAccount(const std::string& p_strName) override;
    void changePassword(const Identity& p_stIdentity, const std::string& p_strOld,
                        const std::string& p_strNew) override;
    std::vector<TokenView> tokens() override;
    std::pair<TokenView, std::string> makeToken(const std::string& p_strName, Role p_eRole, int p_nDays) override;
    void removeToken(const std::string& p_strId) override;
    Counters counters() override;

private:
    using Lock = std::lock_guard<std::mutex>;
    using Time = std::chrono::steady_clock::time_point;

    Identity identifyByCookie(const std::string& p_strCookie);
    Identity identifyByBasic(const Authorization& p_stAuthorization, const std::string& p_strRemote);
    Identity identifyByToken(const std::string& p_strToken);

    // The account as it was when the password was found to be its; throws Refusal otherwise.
    StoredAccount requireGoodPassword(const std::string& p_strName, const std::string& p_strPassword,
                                      const std::string& p_strRemote);
    void requireNoPause(const std::string& p_strName, const std::string& p_strAddress);
    // Whether the account still has the password that was checked; the lock is held.
    const StoredAccount* unchanged(const StoredAccount& p_stAccount) const;

    std::string hashOf(const std::string& p_strPassword);
    StoredAccess stored();
    // Writes, then puts in force; m_objChanging is held. Throws Refusal (Failed), and everything stays as it was.
    void store(StoredAccess p_stAccess);
    void forgetPairsOf(const std::string& p_strName);  // the lock is held
    std::string dateNow() const;

    struct KnownPair {
        std::string strName;
        Time nUntil{};
    };

    const AccessSettings m_stSettings;
    const std::string m_strPairKey;
    std::string m_strNobodysHash;  // for names that are none, so that they take as long; constant after load
    PasswordGate m_objGate;        // synchronises itself

    std::mutex m_objChanging;
    std::mutex m_objMutex;
    StoredAccess m_stAccess;
    std::optional<std::string> m_strFirstPassword;
    LoginPace m_objAccountPace;
    LoginPace m_objAddressPace;
    LoginPace m_objOldPasswordPace;
    Sessions m_objSessions;
    std::map<std::string, KnownPair> m_mapPairs;  // by the keyed sum of name and password
    Counters m_stCounters;
};

void FileAccessControl::load() {
    std::string nobodys = randomSecret();
    m_strNobodysHash = hashPassword(nobodys, m_stSettings.nPasswordCost);
    forget(nobodys);

    std::optional<std::string> text = readPrivateFile(fileOf(m_stSettings.strFile));
    if (text) {
        const Forgotten forgotten(*text);
        try {
            m_stAccess = parseAccounts(*text);
        } catch (const std::runtime_error& error) {
            throw std::runtime_error("The accounts file cannot be used: in " + m_stSettings.strFile + ", " +
                                     error.what() +
                                     ". Put a backup back; or move the file away, and camerad begins anew with one "
                                     "account and shows its password once");
        }
        return;
    }
    std::string password = randomPassword();
    StoredAccess access;
    access.vecAccounts.push_back({kFirstAccount, Role::Admin, hashPassword(password, m_stSettings.nPasswordCost)});
    writePrivateFile(fileOf(m_stSettings.strFile), formatAccounts(access));
    ++m_stCounters.nFlashWrites;
    m_stAccess = std::move(access);
    m_strFirstPassword = std::move(password);
}

std::optional<std::string> FileAccessControl::firstPassword() {
    const Lock guard(m_objMutex);
    std::optional<std::string> password = m_strFirstPassword;
    if (m_strFirstPassword) {
        forget(*m_strFirstPassword);
        m_strFirstPassword.reset();
    }
    return password;
}

// --- Who a request comes from ---

Identity FileAccessControl::identify(const HttpRequest& p_stRequest) {
    std::optional<Authorization> given = authorization(p_stRequest);
    if (!given) {
        const std::optional<std::string> cookie = sessionCookie(p_stRequest);
        return cookie ? identifyByCookie(*cookie) : Identity();
    }
    const Forgotten forgottenPassword(given->strPassword);
    const Forgotten forgottenToken(given->strToken);
    return Authorization::Kind::Basic == given->eKind ? identifyByBasic(*given, p_stRequest.strRemote)
                                                      : identifyByToken(given->strToken);
}

Identity FileAccessControl::identifyByCookie(const std::string& p_strCookie) {
    const Lock guard(m_objMutex);
    const std::optional<Sessions::Found> found = m_objSessions.use(p_strCookie, m_stSettings.fnNow());
    const StoredAccount* const account = found ? m_stAccess.account(found->strName) : nullptr;
    if (nullptr == account) {
        throw Refusal(Refusal::Kind::Unauthorised, "session-over", "This session is over; log in again.");
    }
    return {account->strName, account->eRole, Identity::Via::Cookie, found->strId};
}

Identity FileAccessControl::identifyByToken(const std::string& p_strToken) {
    const std::string sum = sha256Hex(p_strToken);
    const Lock guard(m_objMutex);
    const StoredToken* token = nullptr;
    for (const StoredToken& candidate : m_stAccess.vecTokens) {
        token = isSameSecret(candidate.strSum, sum) ? &candidate : token;
    }
    if (nullptr == token) {
        throw Refusal(Refusal::Kind::Unauthorised, "bad-token",
                      "The token is not known; it may have been removed. An admin can make a new one.");
    }
    if (!token->strExpires.empty() && token->strExpires <= dateNow()) {
        throw Refusal(Refusal::Kind::Unauthorised, "token-expired",
                      "The token was good until " + token->strExpires + "; an admin can make a new one.");
    }
    return {token->strName, token->eRole, Identity::Via::Bearer, ""};
}

Identity FileAccessControl::identifyByBasic(const Authorization& p_stAuthorization, const std::string& p_strRemote) {
    if (!m_stSettings.bBasicAllowed) {
        throw Refusal(Refusal::Kind::Unauthorised, "basic-not-taken",
                      "Name and password in each request are taken over TLS only; use https, a token or the login.");
    }
    // A name holds no colon, so the pair is taken apart in one way only.
    std::string pair = p_stAuthorization.strName + ":" + p_stAuthorization.strPassword;
    const Forgotten forgotten(pair);
    const std::string key = keyedSum(m_strPairKey, pair);
    {
        const Lock guard(m_objMutex);
        const auto known = m_mapPairs.find(key);
        if (m_mapPairs.end() != known && m_stSettings.fnNow() < known->second.nUntil) {
            const StoredAccount* const account = m_stAccess.account(known->second.strName);
            if (nullptr != account) {
                return {account->strName, account->eRole, Identity::Via::Basic, ""};
            }
        }
    }
    const StoredAccount checked =
        requireGoodPassword(p_stAuthorization.strName, p_stAuthorization.strPassword, p_strRemote);
    const Lock guard(m_objMutex);
    const StoredAccount* const account = unchanged(checked);
    if (nullptr == account) {
        throw badCredentials();
    }
    const Time now = m_stSettings.fnNow();
    if (m_mapPairs.size() >= kMostKnownPairs) {
        m_mapPairs.erase(std::min_element(
            m_mapPairs.begin(), m_mapPairs.end(),
            [](const auto& p_one, const auto& p_other) { return p_one.second.nUntil < p_other.second.nUntil; }));
    }
    m_mapPairs[key] = {account->strName, now + kPairKnownFor};
    return {account->strName, account->eRole, Identity::Via::Basic, ""};
}

void FileAccessControl::authorise(const HttpRequest& p_stRequest, const Identity& p_stIdentity,
                                  const Route& p_stRoute) {
    if (changesSomething(p_stRequest.strMethod)) {
        requireSameOrigin(p_stRequest);
    }
    if (Access::Everybody != p_stRoute.eAccess && Role::Nobody == p_stIdentity.eRole) {
        throw Refusal(Refusal::Kind::Unauthorised, "login-needed", "Log in first, or send a token.");
    }
    if (Access::Admin == p_stRoute.eAccess && Role::Admin != p_stIdentity.eRole) {
        throw Refusal(Refusal::Kind::Forbidden, "admin-needed",
                      "\"" + p_stIdentity.strName + "\" may look but not change this; it takes the role \"admin\".");
    }
    if (Identity::Via::Cookie != p_stIdentity.eVia || !p_stRoute.bNeedsProof ||
        !changesSomething(p_stRequest.strMethod)) {
        return;
    }
    const std::string proof = proofOf(p_stIdentity);
    const auto given = p_stRequest.mapHeaders.equal_range("x-csrf-token");
    if (proof.empty() || given.first == given.second || given.second != std::next(given.first) ||
        !isSameSecret(proof, given.first->second)) {
        throw Refusal(Refusal::Kind::Forbidden, "proof-needed",
                      "The header X-CSRF-Token of this session is missing or wrong; GET /api/v1/session tells it. "
                      "In the browser, load the page anew.");
    }
}

// --- Passwords ---

void FileAccessControl::requireNoPause(const std::string& p_strName, const std::string& p_strAddress) {
    const Lock guard(m_objMutex);
    const Time now = m_stSettings.fnNow();
    const int seconds = std::max(m_objAccountPace.pause(p_strName, now), m_objAddressPace.pause(p_strAddress, now));
    if (seconds > 0) {
        ++m_stCounters.nSlowedLogins;
        throw slowed("Too many logins of this name or from this address have failed", seconds);
    }
}

StoredAccount FileAccessControl::requireGoodPassword(const std::string& p_strName, const std::string& p_strPassword,
                                                     const std::string& p_strRemote) {
    const std::string address = paceKeyOfAddress(p_strRemote);
    // What can be no account's is kept under one key, so that it fills no table.
    const std::string name = isName(p_strName) ? p_strName : "";
    requireNoPause(name, address);
    const auto turn = [this] {
        try {
            return std::make_unique<PasswordGate::Turn>(m_objGate);
        } catch (const Refusal&) {
            const Lock guard(m_objMutex);
            ++m_stCounters.nSlowedLogins;
            throw;
        }
    }();
    // Others may have failed while this one waited for its turn.
    requireNoPause(name, address);
    std::optional<StoredAccount> account;
    {
        const Lock guard(m_objMutex);
        const StoredAccount* const found = m_stAccess.account(name);
        account = nullptr == found ? std::nullopt : std::make_optional(*found);
    }
    const bool canBe = p_strPassword.size() <= kLongestPassword && std::string::npos == p_strPassword.find('\0');
    const bool isGood =
        isPasswordOf(canBe ? p_strPassword : std::string(), account ? account->strHash : m_strNobodysHash);

    const Lock guard(m_objMutex);
    if (!account || !canBe || !isGood) {
        ++m_stCounters.nFailedLogins;
        m_objAccountPace.failed(name, m_stSettings.fnNow());
        m_objAddressPace.failed(address, m_stSettings.fnNow());
        throw badCredentials();
    }
    ++m_stCounters.nLogins;
    m_objAccountPace.clear(name);
    return *account;
}

const StoredAccount* FileAccessControl::unchanged(const StoredAccount& p_stAccount) const {
    const StoredAccount* const account = m_stAccess.account(p_stAccount.strName);
    return nullptr != account && account->strHash == p_stAccount.strHash ? account : nullptr;
}

std::string FileAccessControl::hashOf(const std::string& p_strPassword) {
    const PasswordGate::Turn turn(m_objGate);
    try {
        return hashPassword(p_strPassword, m_stSettings.nPasswordCost);
    } catch (const std::runtime_error& error) {
        throw Refusal(Refusal::Kind::Failed, "password-not-hashed", error.what());
    }
}

// --- Sessions ---

AccessControl::Session FileAccessControl::login(const std::string& p_strName, const std::string& p_strPassword,
                                                const std::string& p_strRemote) {
    const StoredAccount checked = requireGoodPassword(p_strName, p_strPassword, p_strRemote);
    const Lock guard(m_objMutex);
    const StoredAccount* const account = unchanged(checked);
    if (nullptr == account) {
        throw badCredentials();
    }
    const Sessions::Made made = m_objSessions.make(account->strName, m_stSettings.fnNow());
    return {made.strSecret, made.strProof, {account->strName, account->eRole, Identity::Via::Cookie, made.strId}};
}

void FileAccessControl::logout(const Identity& p_stIdentity) {
    const Lock guard(m_objMutex);
    m_objSessions.end(p_stIdentity.strSession);
}

std::string FileAccessControl::proofOf(const Identity& p_stIdentity) {
    const Lock guard(m_objMutex);
    return m_objSessions.proofOf(p_stIdentity.strSession);
}

// --- Accounts ---

StoredAccess FileAccessControl::stored() {
    const Lock guard(m_objMutex);
    return m_stAccess;
}

void FileAccessControl::store(StoredAccess p_stAccess) {
    try {
        writePrivateFile(fileOf(m_stSettings.strFile), formatAccounts(p_stAccess));
    } catch (const std::runtime_error& error) {
        throw Refusal(Refusal::Kind::Failed, "accounts-not-stored", error.what());
    }
    const Lock guard(m_objMutex);
    ++m_stCounters.nFlashWrites;
    m_stAccess = std::move(p_stAccess);
}

void FileAccessControl::forgetPairsOf(const std::string& p_strName) {
    for (auto pair = m_mapPairs.begin(); m_mapPairs.end() != pair;) {
        pair = p_strName == pair->second.strName ? m_mapPairs.erase(pair) : std::next(pair);
    }
}

std::vector<AccountView> FileAccessControl::accounts() {
    std::vector<AccountView> views;
    for (const StoredAccount& account : stored().vecAccounts) {
        views.push_back({account.strName, account.eRole});
    }
    return views;
}

void FileAccessControl::putAccount(const std::string& p_strName, const std::string& p_strPassword, Role p_eRole) {
    requireName(p_strName, "The name of an account");
    if (Role::Nobody == p_eRole) {
        throw Refusal(Refusal::Kind::BadValue, "bad-role", "The role of an account is \"admin\" or \"viewer\".");
    }
    if (!p_strPassword.empty()) {
        requirePassword(p_strPassword);
    }
    const std::string hash = p_strPassword.empty() ? "" : hashOf(p_strPassword);

    const Lock changing(m_objChanging);
    StoredAccess access = stored();
    StoredAccount* account = access.account(p_strName);
    if (nullptr == account) {
        for (const StoredAccount& other : access.vecAccounts) {
            if (apps::lowerCase(other.strName) == apps::lowerCase(p_strName)) {
                throw Refusal(Refusal::Kind::Conflict, "name-taken",
                              "There is an account \"" + other.strName +
                                  "\"; names have to differ by more than small and capital letters.");
            }
        }
        if (hash.empty()) {
            throw Refusal(Refusal::Kind::BadValue, "bad-password", "A new account needs a password.");
        }
        if (access.vecAccounts.size() >= kMostAccounts) {
            throw Refusal(
                Refusal::Kind::Conflict, "too-many-accounts",
                "There are " + std::to_string(kMostAccounts) + " accounts, as many as there can be; remove one.");
        }
        access.vecAccounts.push_back({p_strName, p_eRole, hash});
    } else {
        account->eRole = p_eRole;
        account->strHash = hash.empty() ? account->strHash : hash;
        if (0 == access.admins()) {
            throw Refusal(Refusal::Kind::Conflict, "last-admin",
                          "\"" + p_strName + "\" is the last admin and stays one; make another account admin first.");
        }
    }
    store(std::move(access));
    const Lock guard(m_objMutex);
    m_objSessions.endOf(p_strName);
    forgetPairsOf(p_strName);
    m_objAccountPace.clear(p_strName);
}

void FileAccessControl::removeAccount(const std::string& p_strName) {
    const Lock changing(m_objChanging);
    StoredAccess access = stored();
    const auto found = std::find_if(access.vecAccounts.begin(), access.vecAccounts.end(),
                                    [&](const StoredAccount& p_stAccount) { return p_stAccount.strName == p_strName; });
    if (access.vecAccounts.end() == found) {
        throw Refusal(Refusal::Kind::NotFound, "no-such-account",
                      isName(p_strName) ? "There is no account \"" + p_strName + "\"." : "There is no such account.");
    }
    access.vecAccounts.erase(found);
    if (0 == access.admins()) {
        throw Refusal(Refusal::Kind::Conflict, "last-admin",
                      "\"" + p_strName + "\" is the last admin and stays; make another account admin first.");
    }
    store(std::move(access));
    const Lock guard(m_objMutex);
    m_objSessions.endOf(p_strName);
    forgetPairsOf(p_strName);
}

void FileAccessControl::changePassword(const Identity& p_stIdentity, const std::string& p_strOld,
                                       const std::string& p_strNew) {
    if (Identity::Via::Cookie != p_stIdentity.eVia && Identity::Via::Basic != p_stIdentity.eVia) {
        throw Refusal(Refusal::Kind::Forbidden, "no-password",
                      "A token has no password; log in with the account whose password is to change.");
    }
    requirePassword(p_strNew);
    const std::string& name = p_stIdentity.strName;
    std::string before;
    {
        const Lock guard(m_objMutex);
        const int seconds = m_objOldPasswordPace.pause(name, m_stSettings.fnNow());
        if (seconds > 0) {
            throw slowed("The old password was wrong too often", seconds);
        }
        const StoredAccount* const account = m_stAccess.account(name);
        before = nullptr == account ? m_strNobodysHash : account->strHash;
    }
    bool isGood = false;
    {
        const PasswordGate::Turn turn(m_objGate);
        isGood = p_strOld.size() <= kLongestPassword && std::string::npos == p_strOld.find('\0') &&
                 isPasswordOf(p_strOld, before);
    }
    if (!isGood) {
        const Lock guard(m_objMutex);
        m_objOldPasswordPace.failed(name, m_stSettings.fnNow());
        throw Refusal(Refusal::Kind::BadValue, "wrong-password", "The old password is not right; nothing was changed.");
    }
    const std::string hash = hashOf(p_strNew);

    const Lock changing(m_objChanging);
    StoredAccess access = stored();
    StoredAccount* const account = access.account(name);
    if (nullptr == account || account->strHash != before) {
        throw Refusal(Refusal::Kind::Conflict, "account-changed",
                      "The account was changed by somebody else at this moment; log in again.");
    }
    account->strHash = hash;
    store(std::move(access));
    const Lock guard(m_objMutex);
    m_objSessions.endOf(name, p_stIdentity.strSession);
    forgetPairsOf(name);
    m_objOldPasswordPace.clear(name);
}

// --- Tokens ---

std::string FileAccessControl::dateNow() const {
    return formatDate(
        std::chrono::duration_cast<std::chrono::seconds>(m_stSettings.fnDate().time_since_epoch()).count());
}

std::vector<TokenView> FileAccessControl::tokens() {
    std::vector<TokenView> views;
    for (const StoredToken& token : stored().vecTokens) {
        views.push_back(viewOf(token));
    }
    return views;
}

std::pair<TokenView, std::string> FileAccessControl::makeToken(const std::string& p_strName, Role p_eRole,
                                                               int p_nDays) {
    requireName(p_strName, "The name of a token");
    if (Role::Nobody == p_eRole) {
        throw Refusal(Refusal::Kind::BadValue, "bad-role", "The role of a token is \"admin\" or \"viewer\".");
    }
    if (p_nDays < 0 || p_nDays > kMostTokenDays) {
        throw Refusal(Refusal::Kind::BadValue, "bad-days",
                      "A token is good for 1 to " + std::to_string(kMostTokenDays) +
                          " days; leave the days out for one that does not end by itself.");
    }
    const Lock changing(m_objChanging);
    StoredAccess access = stored();
    const std::string now = dateNow();
    // Tokens whose time is over make room.
    access.vecTokens.erase(std::remove_if(access.vecTokens.begin(), access.vecTokens.end(),
                                          [&](const StoredToken& p_stToken) {
                                              return !p_stToken.strExpires.empty() && p_stToken.strExpires <= now;
                                          }),
                           access.vecTokens.end());
    if (access.vecTokens.size() >= kMostTokens) {
        throw Refusal(Refusal::Kind::Conflict, "too-many-tokens",
                      "There are " + std::to_string(kMostTokens) + " tokens, as many as there can be; remove one.");
    }
    const std::string secret = kTokenStart + randomSecret();
    StoredToken token;
    token.strId = randomHex(kTokenIdDigits);
    token.strName = p_strName;
    token.eRole = p_eRole;
    token.strSum = sha256Hex(secret);
    if (p_nDays > 0) {
        const auto seconds =
            std::chrono::duration_cast<std::chrono::seconds>(m_stSettings.fnDate().time_since_epoch()).count();
        token.strExpires = formatDate(seconds + p_nDays * kSecondsOfDay);
    }
    access.vecTokens.push_back(token);
    store(std::move(access));
    return {viewOf(token), secret};
}

void FileAccessControl::removeToken(const std::string& p_strId) {
    const Lock changing(m_objChanging);
    StoredAccess access = stored();
    const auto found = std::find_if(access.vecTokens.begin(), access.vecTokens.end(),
                                    [&](const StoredToken& p_stToken) { return p_stToken.strId == p_strId; });
    if (access.vecTokens.end() == found) {
        throw Refusal(Refusal::Kind::NotFound, "no-such-token",
                      "There is no token of that id; GET /api/v1/tokens lists them.");
    }
    access.vecTokens.erase(found);
    store(std::move(access));
}

AccessControl::Counters FileAccessControl::counters() {
    const Lock guard(m_objMutex);
    Counters counters = m_stCounters;
    counters.nSessions = m_objSessions.size(m_stSettings.fnNow());
    return counters;
}

}  // namespace

std::unique_ptr<AccessControl> AccessControl::open(const AccessSettings& p_stSettings) {
    auto access = std::make_unique<FileAccessControl>(p_stSettings);
    access->load();
    return access;
}

}  // namespace camerad
