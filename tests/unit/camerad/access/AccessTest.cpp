#include "tests/unit/camerad/access/AccessTest.h"

#include <openssl/evp.h>

namespace camerad {

std::string AccessTest::base64(const std::string& p_strText) {
    std::string text(4 * ((p_strText.size() + 2) / 3) + 1, '\0');
    const int length =
        EVP_EncodeBlock(reinterpret_cast<unsigned char*>(text.data()),
                        reinterpret_cast<const unsigned char*>(p_strText.data()), static_cast<int>(p_strText.size()));
    text.resize(static_cast<std::size_t>(length));
    return text;
}

namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;
using ::testing::Not;

class FirstStart : public AccessTest {};

TEST_F(FirstStart, MakesAnAdminAndHandsOutItsPasswordOnce) {
    reopen();
    const std::optional<std::string> password = m_pAccess->firstPassword();
    ASSERT_TRUE(password);
    EXPECT_THAT(*password, MatchesRegex("[a-z2-9]{5}-[a-z2-9]{5}-[a-z2-9]{5}-[a-z2-9]{5}"));
    EXPECT_FALSE(m_pAccess->firstPassword());
    ASSERT_EQ(m_pAccess->accounts().size(), 1u);
    EXPECT_EQ(m_pAccess->accounts()[0].strName, "admin");
    EXPECT_EQ(m_pAccess->accounts()[0].eRole, Role::Admin);
    EXPECT_EQ(m_pAccess->login("admin", *password, kRemote).stIdentity.eRole, Role::Admin);
}

TEST_F(FirstStart, MakesAnotherPasswordForEachCamera) {
    reopen();
    const std::optional<std::string> one = m_pAccess->firstPassword();
    m_objRoot.remove(kAccountsFile);
    reopen();
    EXPECT_NE(one, m_pAccess->firstPassword());
}

TEST_F(FirstStart, StoresThePasswordAsAHashInAPrivateFile) {
    reopen();
    const std::string password = m_pAccess->firstPassword().value_or("");
    const std::string text = m_objRoot.read(kAccountsFile);
    EXPECT_THAT(text, AllOf(HasSubstr("$y$"), Not(HasSubstr(password))));
    EXPECT_EQ(modeOf(kAccountsFile), 0600u);
    EXPECT_EQ(modeOf("/mnt/mtd/camerad"), 0700u);
    EXPECT_FALSE(m_objRoot.exists("/mnt/mtd/camerad/accounts.json.new"));
}

TEST_F(FirstStart, IsOnlyTheFirst) {
    reopen();
    const std::string password = m_pAccess->firstPassword().value_or("");
    const std::string before = m_objRoot.read(kAccountsFile);
    reopen();
    EXPECT_FALSE(m_pAccess->firstPassword());
    EXPECT_EQ(m_objRoot.read(kAccountsFile), before);
    EXPECT_EQ(m_pAccess->login("admin", password, kRemote).stIdentity.strName, "admin");
}

TEST_F(FirstStart, UsesTheUsualCostOfThisMachineWhenNothingIsSaid) {
    m_stSettings.nPasswordCost = 0;
    reopen();
    EXPECT_THAT(m_objRoot.read(kAccountsFile), HasSubstr("$y$j9T$"));
}

TEST_F(FirstStart, RefusesABrokenFileAndLeavesItAsItIs) {
    m_objRoot.write(kAccountsFile, "{\"version\": 1, \"secret-looking\": \"$y$j9T$abc\"");
    chmod(onThisMachine(kAccountsFile).c_str(), 0600);
    chmod(onThisMachine("/mnt/mtd/camerad").c_str(), 0700);
    const std::string error = errorOf([&] { reopen(); });
    EXPECT_THAT(error, AllOf(HasSubstr(kAccountsFile), HasSubstr("no JSON"), HasSubstr("move the file away")));
    EXPECT_THAT(error, AllOf(Not(HasSubstr("$y$")), Not(HasSubstr("secret-looking"))));
    EXPECT_THAT(m_objRoot.read(kAccountsFile), HasSubstr("secret-looking"));
}

TEST_F(FirstStart, NamesTheRoles) {
    EXPECT_STREQ(roleName(Role::Nobody), "nobody");
    EXPECT_STREQ(roleName(Role::Viewer), "viewer");
    EXPECT_STREQ(roleName(Role::Admin), "admin");
}

}  // namespace
}  // namespace camerad
