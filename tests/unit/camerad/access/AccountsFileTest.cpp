#include "apps/camerad/access/AccountsFile.h"

#include "apps/camerad/access/PasswordHash.h"
#include "tests/unit/camerad/access/AccessTest.h"

#include <nlohmann/json.hpp>

namespace camerad {
namespace {

using nlohmann::json;
using ::testing::HasSubstr;
using ::testing::Not;

const std::string kHash = "$y$j9T$k2XAnEHBqQ1Ct2aMXFKN..$r2se.clpTZgDnmlTdBTZzE/KXC04fzmw/Xd.nTpsuT7";
const std::string kSum(64, 'a');

json goodDocument() {
    return {{"version", 1},
            {"accounts",
             {{{"name", "admin"}, {"role", "admin"}, {"password", kHash}},
              {{"name", "guest"}, {"role", "viewer"}, {"password", kHash}}}},
            {"tokens",
             {{{"id", "0123456789abcdef"}, {"name", "backup"}, {"role", "viewer"}, {"sha256", kSum}},
              {{"id", "1123456789abcdef"},
               {"name", "backup"},
               {"role", "admin"},
               {"sha256", std::string(64, 'b')},
               {"expires", "2027-02-28T23:59:59Z"}}}}};
}

std::string refusedBecause(const std::string& p_strText) {
    return errorOf([&] { parseAccounts(p_strText); });
}

TEST(AccountsFiles, AreReadAndWritten) {
    const StoredAccess access = parseAccounts(goodDocument().dump());
    ASSERT_EQ(access.vecAccounts.size(), 2u);
    EXPECT_EQ(access.vecAccounts[0].strName, "admin");
    EXPECT_EQ(access.vecAccounts[0].eRole, Role::Admin);
    EXPECT_EQ(access.vecAccounts[0].strHash, kHash);
    EXPECT_EQ(access.vecAccounts[1].eRole, Role::Viewer);
    ASSERT_EQ(access.vecTokens.size(), 2u);
    EXPECT_EQ(access.vecTokens[0].strId, "0123456789abcdef");
    EXPECT_EQ(access.vecTokens[0].strSum, kSum);
    EXPECT_EQ(access.vecTokens[0].strExpires, "");
    EXPECT_EQ(access.vecTokens[1].eRole, Role::Admin);
    EXPECT_EQ(access.vecTokens[1].strExpires, "2027-02-28T23:59:59Z");
    EXPECT_EQ(json::parse(formatAccounts(access)), goodDocument());
}

TEST(AccountsFiles, WithNoTokensAreGood) {
    json document = goodDocument();
    document["tokens"] = json::array();
    EXPECT_EQ(parseAccounts(document.dump()).vecTokens.size(), 0u);
}

TEST(AccountsFiles, AreRefusedForWhatIsNotAsItHasToBe) {
    struct Row {
        const char* szPointer;
        json objValue;
        const char* szReason;
    };
    const json kGone = json::value_t::discarded;
    for (const Row& row : {
             Row{"/version", kGone, "no version"},
             Row{"/version", 2, "another release"},
             Row{"/version", 1.0, "no version"},
             Row{"/version", "1", "no version"},
             Row{"/extra", 1, "not known"},
             Row{"/accounts", kGone, "has no \"accounts\""},
             Row{"/tokens", kGone, "has no \"tokens\""},
             Row{"/accounts", json::object(), "no list"},
             Row{"/accounts", json::array(), "role \"admin\""},
             Row{"/tokens", nullptr, "no list"},
             Row{"/accounts/0", "admin", "account 1 is no object"},
             Row{"/accounts/0/role", "viewer", "role \"admin\""},
             Row{"/accounts/0/role", "Admin", "account 1 has a \"role\""},
             Row{"/accounts/0/role", "nobody", "account 1 has a \"role\""},
             Row{"/accounts/1/name", "admin", "name of another"},
             Row{"/accounts/1/name", "two words", "account 2 has a \"name\""},
             Row{"/accounts/1/name", 7, "account 2 has a \"name\""},
             Row{"/accounts/1/name", kGone, "account 2 has no \"name\""},
             Row{"/accounts/1/hint", "x", "account 2 has a member"},
             Row{"/accounts/1/password", "guess me", "account 2 has a \"password\""},
             Row{"/accounts/1/password", "", "account 2 has a \"password\""},
             Row{"/tokens/0/id", "0123456789ABCDEF", "token 1 has a \"id\""},
             Row{"/tokens/0/id", "0123456789abcde", "token 1 has a \"id\""},
             Row{"/tokens/1/id", "0123456789abcdef", "token 2 is there already"},
             Row{"/tokens/1/sha256", kSum, "token 2 is there already"},
             Row{"/tokens/1/sha256", kSum + "a", "token 2 has a \"sha256\""},
             Row{"/tokens/1/expires", "2027-02-28", "token 2 has a \"expires\""},
             Row{"/tokens/1/expires", "2027-13-28T00:00:00Z", "token 2 has a \"expires\""},
             Row{"/tokens/1/expires", "", "token 2 has a \"expires\""},
             Row{"/tokens/1/expires", nullptr, "token 2 has a \"expires\""},
             Row{"/tokens/1/role", kGone, "token 2 has no \"role\""},
             Row{"/tokens/1/extra", 1, "token 2 has a member"},
         }) {
        json document = goodDocument();
        const json::json_pointer pointer(row.szPointer);
        if (row.objValue.is_discarded()) {
            document[pointer.parent_pointer()].erase(pointer.back());
        } else {
            document[pointer] = row.objValue;
        }
        EXPECT_THAT(refusedBecause(document.dump()), HasSubstr(row.szReason)) << row.szPointer << " " << document;
    }
}

TEST(AccountsFiles, AreRefusedWhenTheyAreNoDocument) {
    for (const std::string& text :
         {std::string(), std::string("nothing"), std::string("[]"), std::string("null"), std::string("{\"version\":1}"),
          std::string("{\"version\":1e999}"), std::string("{\"version\":1,}"), goodDocument().dump() + "x",
          std::string("\xEF\xBB\xBF"), std::string("{\"version\":\"\xFF\"}"), std::string("\0", 1)}) {
        EXPECT_NE(refusedBecause(text), "") << text;
    }
}

TEST(AccountsFiles, AreRefusedWhenCutAnywhere) {
    const std::string text = goodDocument().dump();
    for (std::size_t i = 0; i < text.size(); ++i) {
        EXPECT_NE(refusedBecause(text.substr(0, i)), "") << i;
    }
}

TEST(AccountsFiles, AreRefusedWhenNestedDeeply) {
    EXPECT_THAT(refusedBecause(std::string(200000, '[')), HasSubstr("nested"));
    EXPECT_THAT(refusedBecause("{\"version\":1,\"accounts\":[{\"name\":[[1]]}]}"), HasSubstr("nested"));
}

TEST(AccountsFiles, AreRefusedWhenAMemberStandsTwice) {
    std::string text = goodDocument().dump();
    const std::string role = "\"role\":\"viewer\"";
    text.replace(text.find(role), role.size(), role + ",\"role\":\"admin\"");
    EXPECT_THAT(refusedBecause(text), HasSubstr("stands twice"));
}

TEST(AccountsFiles, AreBounded) {
    json document = goodDocument();
    for (std::size_t i = 0; i < kMostAccounts - 2; ++i) {
        document["accounts"].push_back({{"name", "a" + std::to_string(i)}, {"role", "viewer"}, {"password", kHash}});
    }
    EXPECT_EQ(refusedBecause(document.dump()), "");
    document["accounts"].push_back({{"name", "last"}, {"role", "viewer"}, {"password", kHash}});
    EXPECT_THAT(refusedBecause(document.dump()), HasSubstr("more than 64"));
}

TEST(AccountsFiles, OfTheMostEntriesAreReadBack) {
    StoredAccess access;
    for (std::size_t i = 0; i < kMostAccounts; ++i) {
        access.vecAccounts.push_back({std::string(30, 'n') + std::to_string(10 + i), Role::Admin, kHash});
    }
    for (std::size_t i = 0; i < kMostTokens; ++i) {
        const std::string number = std::to_string(100 + i);
        access.vecTokens.push_back({std::string(13, '0') + number, std::string(32, 't'), Role::Viewer,
                                    std::string(61, '0') + number, "2027-02-28T23:59:59Z"});
    }
    const std::string text = formatAccounts(access);
    EXPECT_LE(text.size(), kMostAccountsBytes);
    EXPECT_EQ(parseAccounts(text).vecTokens.size(), kMostTokens);
}

TEST(AccountsFiles, AreRefusedWithoutTellingWhatIsInThem) {
    json document = goodDocument();
    document["accounts"][0]["password"] = "the password itself";
    EXPECT_THAT(refusedBecause(document.dump()), Not(HasSubstr("itself")));
    EXPECT_THAT(refusedBecause("{\"password\": \"the password itself"), Not(HasSubstr("itself")));
}

TEST(Dates, AreThoseOfTheCalendar) {
    struct Row {
        long long nSeconds;
        const char* szText;
    };
    for (const Row& row : {
             Row{0, "1970-01-01T00:00:00Z"},
             Row{-1, "1970-01-01T00:00:00Z"},
             Row{951782399, "2000-02-28T23:59:59Z"},
             Row{951782400, "2000-02-29T00:00:00Z"},
             Row{951868800, "2000-03-01T00:00:00Z"},
             Row{1800000000, "2027-01-15T08:00:00Z"},
             Row{4107542399LL, "2100-02-28T23:59:59Z"},
             Row{4107542400LL, "2100-03-01T00:00:00Z"},
             Row{253402300799LL, "9999-12-31T23:59:59Z"},
             Row{9999999999999LL, "9999-12-31T23:59:59Z"},
         }) {
        EXPECT_EQ(formatDate(row.nSeconds), row.szText);
        EXPECT_TRUE(isDate(row.szText));
    }
}

TEST(Dates, AreToldFromOtherTexts) {
    for (const char* const szText :
         {"", "2027-01-15", "2027-01-15T08:00:00", "2027-01-15 08:00:00Z", "2027-00-15T08:00:00Z",
          "2027-01-32T08:00:00Z", "2027-01-15T24:00:00Z", "2027-01-15T08:60:00Z", "2027-01-15T08:00:60Z",
          "2027-1-015T08:00:00Z", "+027-01-15T08:00:00Z", "2027-01-15T08:00:00ZZ"}) {
        EXPECT_FALSE(isDate(szText)) << szText;
    }
}

}  // namespace
}  // namespace camerad
