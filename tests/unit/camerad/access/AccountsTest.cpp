#include "tests/unit/camerad/access/AccessTest.h"

#include <unistd.h>

namespace camerad {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

class AccountsTest : public AccessTest {
protected:
    std::vector<std::string> names() {
        std::vector<std::string> vecNames;
        for (const AccountView& view : access().accounts()) {
            vecNames.push_back(view.strName + " " + roleName(view.eRole));
        }
        return vecNames;
    }
    std::string put(const std::string& p_strName, const std::string& p_strPassword, Role p_eRole) {
        return refusedAs([&] { access().putAccount(p_strName, p_strPassword, p_eRole); });
    }
    std::string login(const std::string& p_strName, const std::string& p_strPassword) {
        return refusedAs([&] { access().login(p_strName, p_strPassword, kRemote); });
    }
};

TEST_F(AccountsTest, AreMadeChangedAndRemoved) {
    EXPECT_THAT(names(), ElementsAre("admin admin", "guest viewer"));
    EXPECT_EQ(put("second", "second password", Role::Admin), "");
    EXPECT_EQ(login("second", "second password"), "");
    EXPECT_EQ(put("second", "", Role::Viewer), "");
    EXPECT_EQ(login("second", "second password"), "");
    EXPECT_EQ(put("second", "third password", Role::Viewer), "");
    EXPECT_EQ(login("second", "second password"), "bad-credentials");
    EXPECT_EQ(login("second", "third password"), "");
    EXPECT_THAT(names(), ElementsAre("admin admin", "guest viewer", "second viewer"));
    access().removeAccount("second");
    EXPECT_EQ(login("second", "third password"), "bad-credentials");
    EXPECT_THAT(names(), ElementsAre("admin admin", "guest viewer"));
}

TEST_F(AccountsTest, CountHowOftenTheyAreWritten) {
    const std::uint64_t before = access().counters().nFlashWrites;
    EXPECT_GE(before, 1u) << "the first account";
    EXPECT_EQ(put("second", "second password", Role::Admin), "");
    EXPECT_EQ(put("two words", "password", Role::Viewer), "bad-name");
    EXPECT_EQ(login("second", "second password"), "");
    EXPECT_EQ(access().counters().nFlashWrites, before + 1);
    access().removeAccount("second");
    EXPECT_EQ(access().counters().nFlashWrites, before + 2);
    reopen();
    EXPECT_EQ(access().counters().nFlashWrites, 0u) << "nothing has to be written again";
}

TEST_F(AccountsTest, OutliveTheProcess) {
    access();
    reopen();
    EXPECT_THAT(names(), ElementsAre("admin admin", "guest viewer"));
    EXPECT_EQ(login("guest", kGuestPassword), "");
}

TEST_F(AccountsTest, AreRefusedWithAReason) {
    EXPECT_EQ(put("two words", "password", Role::Viewer), "bad-name");
    EXPECT_EQ(put("second", "short", Role::Viewer), "bad-password");
    EXPECT_EQ(put("second", "", Role::Viewer), "bad-password");
    EXPECT_EQ(put("second", "password", Role::Nobody), "bad-role");
    EXPECT_EQ(put("Guest", "password", Role::Viewer), "name-taken");
    EXPECT_THAT(names(), ElementsAre("admin admin", "guest viewer"));
    EXPECT_EQ(refusedAs([&] { access().removeAccount("second"); }), "no-such-account");
    EXPECT_THAT(refusalOf([&] { access().removeAccount("<script>"); }).what(), Not(HasSubstr("script")));
}

TEST_F(AccountsTest, KeepTheirLastAdmin) {
    const std::string before = (access(), m_objRoot.read(kAccountsFile));
    EXPECT_EQ(put("admin", "", Role::Viewer), "last-admin");
    EXPECT_EQ(put("admin", "another password", Role::Viewer), "last-admin");
    EXPECT_EQ(refusedAs([&] { access().removeAccount("admin"); }), "last-admin");
    EXPECT_EQ(m_objRoot.read(kAccountsFile), before);
    EXPECT_EQ(login("admin", kAdminPassword), "");
    EXPECT_EQ(put("second", "second password", Role::Admin), "");
    EXPECT_EQ(put("admin", "", Role::Viewer), "");
    EXPECT_EQ(refusedAs([&] { access().removeAccount("second"); }), "last-admin");
}

TEST_F(AccountsTest, AreBounded) {
    access();
    for (int i = 0; i < 62; ++i) {
        ASSERT_EQ(put("a" + std::to_string(i), "password", Role::Viewer), "");
    }
    EXPECT_EQ(put("last", "password", Role::Viewer), "too-many-accounts");
    EXPECT_EQ(put("a0", "password2", Role::Viewer), "");
    reopen();
    EXPECT_EQ(access().accounts().size(), 64u);
}

TEST_F(AccountsTest, EndTheirSessionsWhenTheyChange) {
    const AccessControl::Session admin = loginAs("admin");
    const AccessControl::Session one = loginAs("guest");
    const AccessControl::Session other = loginAs("guest");
    EXPECT_EQ(put("guest", "", Role::Admin), "");
    EXPECT_EQ(refusedAs([&] { access().identify(requestOf(one)); }), "session-over");
    EXPECT_EQ(refusedAs([&] { access().identify(requestOf(other)); }), "session-over");
    EXPECT_EQ(access().identify(requestOf(admin)).strName, "admin");
    const AccessControl::Session again = loginAs("guest");
    EXPECT_EQ(again.stIdentity.eRole, Role::Admin);
    access().removeAccount("guest");
    EXPECT_EQ(refusedAs([&] { access().identify(requestOf(again)); }), "session-over");
}

TEST_F(AccountsTest, ChangeTheirOwnPasswordAndKeepThisSession) {
    const AccessControl::Session one = loginAs("guest");
    const AccessControl::Session other = loginAs("guest");
    access().changePassword(one.stIdentity, kGuestPassword, "a new password");
    EXPECT_EQ(access().identify(requestOf(one)).strName, "guest");
    EXPECT_EQ(refusedAs([&] { access().identify(requestOf(other)); }), "session-over");
    EXPECT_EQ(login("guest", kGuestPassword), "bad-credentials");
    EXPECT_EQ(login("guest", "a new password"), "");
    reopen();
    EXPECT_EQ(login("guest", "a new password"), "");
}

TEST_F(AccountsTest, ChangeTheirPasswordOnlyByTheOldOne) {
    const AccessControl::Session session = loginAs("guest");
    const auto change = [&](const std::string& p_strOld, const std::string& p_strNew) {
        return refusedAs([&] { access().changePassword(session.stIdentity, p_strOld, p_strNew); });
    };
    EXPECT_EQ(change("wrong", "a new password"), "wrong-password");
    EXPECT_EQ(change(std::string(100000, 'x'), "a new password"), "wrong-password");
    EXPECT_EQ(change(kGuestPassword, "short"), "bad-password");
    EXPECT_EQ(change("wrong", "a new password"), "wrong-password");
    EXPECT_EQ(change(kGuestPassword, "a new password"), "login-slowed") << "a stolen session does not guess it";
    EXPECT_EQ(login("guest", kGuestPassword), "") << "and does not slow down who logs in";
    pass(std::chrono::seconds(1));
    EXPECT_EQ(change(std::string(kGuestPassword) + std::string("\0x", 2), "a new password"), "wrong-password");
    pass(std::chrono::seconds(2));
    EXPECT_EQ(change(kGuestPassword, "a new password"), "");
    EXPECT_EQ(refusedAs([&] {
                  access().changePassword({"script", Role::Admin, Identity::Via::Bearer, ""}, "x", "a new password");
              }),
              "no-password");
}

TEST_F(AccountsTest, StayAsTheyAreWhenTheyCannotBeStored) {
    const AccessControl::Session session = loginAs("guest");
    m_objRoot.makeFolder(std::string(kAccountsFile) + ".new");
    const Refusal refusal = refusalOf([&] { access().putAccount("guest", "another password", Role::Admin); });
    EXPECT_EQ(refusal.kind(), Refusal::Kind::Failed);
    EXPECT_EQ(refusal.type(), "accounts-not-stored");
    EXPECT_THAT(refusal.what(), HasSubstr("still there"));
    EXPECT_EQ(login("guest", kGuestPassword), "");
    EXPECT_EQ(access().identify(requestOf(session)).eRole, Role::Viewer);
    EXPECT_EQ(refusedAs([&] { access().removeAccount("guest"); }), "accounts-not-stored");
    EXPECT_EQ(refusedAs([&] { access().makeToken("script", Role::Viewer, 0); }), "accounts-not-stored");
    EXPECT_EQ(access().tokens().size(), 0u);
    EXPECT_THAT(names(), ElementsAre("admin admin", "guest viewer"));
}

TEST_F(AccountsTest, LeaveNoPasswordAnywhereOnTheFlash) {
    access().putAccount("guest", "look for this text", Role::Viewer);
    const std::string token = access().makeToken("script", Role::Viewer, 1).second;
    const AccessControl::Session session = access().login("guest", "look for this text", kRemote);
    const std::string text = m_objRoot.read(kAccountsFile);
    EXPECT_THAT(text, Not(HasSubstr("look for this text")));
    EXPECT_THAT(text, Not(HasSubstr(token)));
    EXPECT_THAT(text, Not(HasSubstr(token.substr(token.find('_') + 1))));
    EXPECT_THAT(text, Not(HasSubstr(session.strCookie)));
    EXPECT_THAT(text, Not(HasSubstr(session.strProof)));
}

}  // namespace
}  // namespace camerad
