#include "apps/shared/KeyNames.h"

#include "apps/shared/CommandError.h"
#include "apps/shared/NearestMatch.h"
#include "apps/shared/Number.h"
#include "apps/shared/Text.h"

namespace apps {

namespace {

const char* const kPrefixes[] = {"key_", "ia_cmd_ui_"};

std::string withoutPrefix(const std::string& p_strLowerName) {
    for (const std::string strPrefix : kPrefixes) {
        if (startsWith(p_strLowerName, strPrefix)) {
            return p_strLowerName.substr(strPrefix.size());
        }
    }
    return p_strLowerName;
}

std::vector<std::string> shortNames() {
    std::vector<std::string> vecNames;
    for (const KeyName& row : keyNames()) {
        vecNames.push_back(withoutPrefix(lowerCase(row.szName)));
    }
    return vecNames;
}

}  // namespace

const std::vector<KeyName>& keyNames() {
    static const std::vector<KeyName> vecNames = {
#define ROW(name, key) {#name, key},
#include "apps/shared/KeyNames.def"
#undef ROW
    };
    return vecNames;
}

std::string nameOfKey(u32 p_nKey) {
    for (const KeyName& row : keyNames()) {
        if (row.nKey == p_nKey) {
            return row.szName;
        }
    }
    return {};
}

std::string shortNameOfKey(u32 p_nKey) {
    return withoutPrefix(lowerCase(nameOfKey(p_nKey)));
}

std::optional<u32> keyOfName(const std::string& p_strName) {
    const std::string strLower = lowerCase(p_strName);
    for (const KeyName& row : keyNames()) {
        const std::string strRow = lowerCase(row.szName);
        if (strLower == strRow || strLower == withoutPrefix(strRow)) {
            return row.nKey;
        }
    }
    return std::nullopt;
}

u32 parseKey(const std::string& p_strWord) {
    if (const std::optional<u32> key = keyOfName(p_strWord)) {
        return *key;
    }
    if (looksLikeNumber(p_strWord)) {
        return static_cast<u32>(parseNumber(p_strWord, "the key", 0, kIntMax));
    }
    const std::string strWanted = withoutPrefix(lowerCase(p_strWord));
    throw CommandError("unknown key " + quoted(p_strWord) + didYouMean(nearestMatch(strWanted, shortNames())));
}

std::string describeKey(u32 p_nKey) {
    const std::string strName = nameOfKey(p_nKey);
    return strName.empty() ? "key " + std::to_string(p_nKey) : strName + " (" + std::to_string(p_nKey) + ")";
}

}  // namespace apps
