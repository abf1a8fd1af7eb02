#include "apps/camerad/access/AccountsFile.h"

#include "apps/camerad/access/PasswordHash.h"
#include "apps/camerad/access/Rules.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>
#include <initializer_list>
#include <set>
#include <stdexcept>

namespace camerad {

namespace {

using nlohmann::json;

constexpr int kVersion = 1;
constexpr std::size_t kSumDigits = 64;
constexpr int kDeepest = 3;  // an object in a list in the object

[[noreturn]] void refuse(const std::string& p_strWhy) {
    throw std::runtime_error(p_strWhy);
}

// The object's members are these, of which the last may be missing when p_bLastOptional.
void requireMembers(const json& p_objObject, const std::string& p_strWhere,
                    std::initializer_list<const char*> p_listNames, bool p_bLastOptional = false) {
    if (!p_objObject.is_object()) {
        refuse(p_strWhere + " is no object");
    }
    std::size_t missing = 0;
    for (const char* const name : p_listNames) {
        if (!p_objObject.contains(name)) {
            if (!p_bLastOptional || name != *(p_listNames.end() - 1)) {
                refuse(p_strWhere + " has no \"" + name + "\"");
            }
            ++missing;
        }
    }
    if (p_objObject.size() != p_listNames.size() - missing) {
        refuse(p_strWhere + " has a member that is not known");
    }
}

std::string textOf(const json& p_objObject, const std::string& p_strWhere, const char* p_szName,
                   bool (*p_pIsGood)(const std::string&)) {
    const json& value = p_objObject.at(p_szName);
    if (!value.is_string() || !p_pIsGood(value.get_ref<const std::string&>())) {
        refuse(p_strWhere + " has a \"" + p_szName + "\" that is none");
    }
    return value.get<std::string>();
}

bool isHex(const std::string& p_strText, std::size_t p_nDigits) {
    return p_nDigits == p_strText.size() && std::string::npos == p_strText.find_first_not_of("0123456789abcdef");
}
bool isTokenId(const std::string& p_strText) {
    return isHex(p_strText, kTokenIdDigits);
}
bool isSum(const std::string& p_strText) {
    return isHex(p_strText, kSumDigits);
}
bool isRole(const std::string& p_strText) {
    return roleOf(p_strText).has_value();
}

const json& listOf(const json& p_objDocument, const char* p_szName, std::size_t p_nMost) {
    const json& list = p_objDocument.at(p_szName);
    if (!list.is_array()) {
        refuse(std::string("\"") + p_szName + "\" is no list");
    }
    if (list.size() > p_nMost) {
        refuse(std::string("\"") + p_szName + "\" has more than " + std::to_string(p_nMost) + " entries");
    }
    return list;
}

// The document, without members that stand twice, of which one would be read and another one shown.
json parseStrictly(const std::string& p_strText) {
    std::vector<std::set<std::string>> objects;
    const auto look = [&objects](int p_nDepth, json::parse_event_t p_eEvent, json& p_objValue) {
        if (p_nDepth > kDeepest) {
            refuse("it is nested too deeply");
        }
        if (json::parse_event_t::object_start == p_eEvent) {
            objects.emplace_back();
        } else if (json::parse_event_t::object_end == p_eEvent) {
            objects.pop_back();
        } else if (json::parse_event_t::key == p_eEvent &&
                   !objects.back().insert(p_objValue.get<std::string>()).second) {
            refuse("a member stands twice in one object");
        }
        return true;
    };
    try {
        return json::parse(p_strText, look);
    } catch (const json::parse_error& error) {
        // Its own text would quote the file.
        refuse("it is no JSON from byte " + std::to_string(error.byte) + " on");
    } catch (const json::exception&) {
        refuse("it holds a number that is too large");
    }
}

template <typename List>
auto accountIn(List& p_vecAccounts, const std::string& p_strName) -> decltype(p_vecAccounts.data()) {
    const auto found = std::find_if(p_vecAccounts.begin(), p_vecAccounts.end(),
                                    [&](const StoredAccount& p_stAccount) { return p_stAccount.strName == p_strName; });
    return p_vecAccounts.end() == found ? nullptr : &*found;
}

}  // namespace

const StoredAccount* StoredAccess::account(const std::string& p_strName) const {
    return accountIn(vecAccounts, p_strName);
}

StoredAccount* StoredAccess::account(const std::string& p_strName) {
    return accountIn(vecAccounts, p_strName);
}

std::size_t StoredAccess::admins() const {
    return static_cast<std::size_t>(
        std::count_if(vecAccounts.begin(), vecAccounts.end(),
                      [](const StoredAccount& p_stAccount) { return Role::Admin == p_stAccount.eRole; }));
}

std::optional<Role> roleOf(const std::string& p_strName) {
    for (const Role role : {Role::Viewer, Role::Admin}) {
        if (roleName(role) == p_strName) {
            return role;
        }
    }
    return std::nullopt;
}

StoredAccess parseAccounts(const std::string& p_strText) {
    const json document = parseStrictly(p_strText);
    if (!document.is_object() || !document.contains("version") || !document["version"].is_number_integer()) {
        refuse("it has no version");
    }
    if (document["version"] != kVersion) {
        refuse("its version is not " + std::to_string(kVersion) + "; it was written by another release of camerad");
    }
    requireMembers(document, "the document", {"version", "accounts", "tokens"});

    StoredAccess access;
    for (const json& entry : listOf(document, "accounts", kMostAccounts)) {
        const std::string where = "account " + std::to_string(access.vecAccounts.size() + 1);
        requireMembers(entry, where, {"name", "role", "password"});
        StoredAccount account;
        account.strName = textOf(entry, where, "name", isName);
        account.eRole = *roleOf(textOf(entry, where, "role", isRole));
        account.strHash = textOf(entry, where, "password", isPasswordHash);
        if (nullptr != access.account(account.strName)) {
            refuse(where + " has the name of another one");
        }
        access.vecAccounts.push_back(account);
    }
    if (0 == access.admins()) {
        refuse("no account has the role \"admin\"");
    }
    std::set<std::string> ids;
    std::set<std::string> sums;
    for (const json& entry : listOf(document, "tokens", kMostTokens)) {
        const std::string where = "token " + std::to_string(access.vecTokens.size() + 1);
        requireMembers(entry, where, {"id", "name", "role", "sha256", "expires"}, true);
        StoredToken token;
        token.strId = textOf(entry, where, "id", isTokenId);
        token.strName = textOf(entry, where, "name", isName);
        token.eRole = *roleOf(textOf(entry, where, "role", isRole));
        token.strSum = textOf(entry, where, "sha256", isSum);
        token.strExpires = entry.contains("expires") ? textOf(entry, where, "expires", isDate) : "";
        if (!ids.insert(token.strId).second || !sums.insert(token.strSum).second) {
            refuse(where + " is there already");
        }
        access.vecTokens.push_back(token);
    }
    return access;
}

std::string formatAccounts(const StoredAccess& p_stAccess) {
    json document = {{"version", kVersion}, {"accounts", json::array()}, {"tokens", json::array()}};
    for (const StoredAccount& account : p_stAccess.vecAccounts) {
        document["accounts"].push_back(
            {{"name", account.strName}, {"role", roleName(account.eRole)}, {"password", account.strHash}});
    }
    for (const StoredToken& token : p_stAccess.vecTokens) {
        json entry = {
            {"id", token.strId}, {"name", token.strName}, {"role", roleName(token.eRole)}, {"sha256", token.strSum}};
        if (!token.strExpires.empty()) {
            entry["expires"] = token.strExpires;
        }
        document["tokens"].push_back(std::move(entry));
    }
    return document.dump(1) + "\n";
}

namespace {

constexpr int kLastYear = 9999;

struct Date {
    int nYear, nMonth, nDay;
};

// The Gregorian calendar, counted in days since 1970-01-01, from 1970 on.
Date dateOfDay(long long p_nDay) {
    // Years begin in March, so that the day too many is their last one.
    const long long day = p_nDay + 719468;
    const long long era = day / 146097;
    const long long dayOfEra = day % 146097;
    const long long yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const long long dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const long long month = (5 * dayOfYear + 2) / 153;
    const auto nDay = static_cast<int>(dayOfYear - (153 * month + 2) / 5 + 1);
    const auto nMonth = static_cast<int>(month < 10 ? month + 3 : month - 9);
    return {static_cast<int>(yearOfEra + era * 400 + (nMonth <= 2 ? 1 : 0)), nMonth, nDay};
}

}  // namespace

std::string formatDate(long long p_nSeconds) {
    constexpr long long kLastDay = 2932896;  // 9999-12-31
    const long long seconds = std::clamp(p_nSeconds, 0LL, (kLastDay + 1) * kSecondsOfDay - 1);
    const Date date = dateOfDay(seconds / kSecondsOfDay);
    const auto second = static_cast<int>(seconds % kSecondsOfDay);
    char szText[64];
    std::snprintf(szText, sizeof(szText), "%04d-%02d-%02dT%02d:%02d:%02dZ", std::min(date.nYear, kLastYear),
                  date.nMonth, date.nDay, second / 3600, second / 60 % 60, second % 60);
    return szText;
}

bool isDate(const std::string& p_strText) {
    static const std::string kForm = "0000-00-00T00:00:00Z";
    if (p_strText.size() != kForm.size()) {
        return false;
    }
    for (std::size_t i = 0; i < kForm.size(); ++i) {
        const bool isDigit = '0' <= p_strText[i] && p_strText[i] <= '9';
        if ('0' == kForm[i] ? !isDigit : kForm[i] != p_strText[i]) {
            return false;
        }
    }
    const auto number = [&](std::size_t p_nAt) { return (p_strText[p_nAt] - '0') * 10 + (p_strText[p_nAt + 1] - '0'); };
    const int month = number(5);
    const int day = number(8);
    return month >= 1 && month <= 12 && day >= 1 && day <= 31 && number(11) < 24 && number(14) < 60 && number(17) < 60;
}

}  // namespace camerad
