// What the accounts file holds, and its text: JSON, version 1.
//
//     {"version": 1,
//      "accounts": [{"name": "admin", "role": "admin", "password": "$y$..."}],
//      "tokens": [{"id": "0123456789abcdef", "name": "backup", "role": "viewer", "sha256": "...",
//                  "expires": "2026-12-21T00:00:00Z"}]}
//
// Functions without state; any thread.
#pragma once

#include "apps/camerad/access/Identity.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace camerad {

constexpr std::size_t kMostAccounts = 64;
constexpr std::size_t kMostTokens = 128;
constexpr std::size_t kMostAccountsBytes = 262144;
constexpr std::size_t kTokenIdDigits = 16;

struct StoredAccount {
    std::string strName;
    Role eRole = Role::Viewer;
    std::string strHash;  // yescrypt
};

struct StoredToken {
    std::string strId;
    std::string strName;
    Role eRole = Role::Viewer;
    std::string strSum;      // SHA-256 of the token
    std::string strExpires;  // "2026-12-21T00:00:00Z", empty: never
};

struct StoredAccess {
    std::vector<StoredAccount> vecAccounts;
    std::vector<StoredToken> vecTokens;

    const StoredAccount* account(const std::string& p_strName) const;
    StoredAccount* account(const std::string& p_strName);
    std::size_t admins() const;
};

// "admin" or "viewer".
std::optional<Role> roleOf(const std::string& p_strName);

// Throws std::runtime_error that says what is wrong and holds nothing of the text but names of members.
StoredAccess parseAccounts(const std::string& p_strText);
std::string formatAccounts(const StoredAccess& p_stAccess);

constexpr long long kSecondsOfDay = 86400;
// Seconds since 1970 as UTC, "2026-12-21T00:00:00Z", from 1970 to 9999; texts of this form sort as the times do.
std::string formatDate(long long p_nSeconds);
bool isDate(const std::string& p_strText);

}  // namespace camerad
