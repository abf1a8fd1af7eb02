#include "tests/unit/camerad/access/AccessTest.h"

namespace camerad {
namespace {

using ::testing::HasSubstr;
using ::testing::MatchesRegex;

class TokensTest : public AccessTest {
protected:
    static HttpRequest with(const std::string& p_strToken) {
        return requestWith("authorization", "Bearer " + p_strToken);
    }
    std::string refused(const std::string& p_strToken) {
        return refusedAs([&] { access().identify(with(p_strToken)); });
    }
    std::string make(const std::string& p_strName, Role p_eRole, int p_nDays) {
        return refusedAs([&] { access().makeToken(p_strName, p_eRole, p_nDays); });
    }
};

TEST_F(TokensTest, LetTheirBearerIn) {
    const auto made = access().makeToken("backup", Role::Viewer, 0);
    EXPECT_THAT(made.second, MatchesRegex("camerad_[A-Za-z0-9_-]{43}"));
    EXPECT_THAT(made.first.strId, MatchesRegex("[0-9a-f]{16}"));
    EXPECT_EQ(made.first.strExpires, "");
    const Identity identity = access().identify(with(made.second));
    EXPECT_EQ(identity.strName, "backup");
    EXPECT_EQ(identity.eRole, Role::Viewer);
    EXPECT_EQ(identity.eVia, Identity::Via::Bearer);
    EXPECT_EQ(access().identify(with(access().makeToken("root", Role::Admin, 0).second)).eRole, Role::Admin);
    EXPECT_EQ(access().tokens().size(), 2u);
}

TEST_F(TokensTest, AreRefusedWhenTheyAreNotKnown) {
    const auto made = access().makeToken("backup", Role::Viewer, 0);
    EXPECT_EQ(refused("camerad_" + std::string(43, 'A')), "bad-token");
    EXPECT_EQ(refused(made.second + "x"), "bad-token");
    EXPECT_EQ(refused(made.second.substr(1)), "bad-token");
    EXPECT_EQ(refused(made.first.strId), "bad-token");
    EXPECT_EQ(refused("x"), "bad-token");
}

TEST_F(TokensTest, OutliveTheProcess) {
    const auto made = access().makeToken("backup", Role::Viewer, 2);
    reopen();
    EXPECT_EQ(refused(made.second), "");
    ASSERT_EQ(access().tokens().size(), 1u);
    EXPECT_EQ(access().tokens()[0].strId, made.first.strId);
    EXPECT_EQ(access().tokens()[0].strExpires, "2027-01-17T08:00:00Z");
}

TEST_F(TokensTest, End) {
    const auto made = access().makeToken("backup", Role::Viewer, 1);
    EXPECT_EQ(made.first.strExpires, "2027-01-16T08:00:00Z");
    pass(std::chrono::hours(24) - std::chrono::seconds(1));
    EXPECT_EQ(refused(made.second), "");
    pass(std::chrono::seconds(1));
    const Refusal refusal = refusalOf([&] { access().identify(with(made.second)); });
    EXPECT_EQ(refusal.type(), "token-expired");
    EXPECT_EQ(refusal.kind(), Refusal::Kind::Unauthorised);
    EXPECT_THAT(refusal.what(), HasSubstr("2027-01-16T08:00:00Z"));
    EXPECT_EQ(access().tokens().size(), 1u);
    access().makeToken("another", Role::Viewer, 1);
    EXPECT_EQ(access().tokens().size(), 1u) << "what is over makes room";
}

TEST_F(TokensTest, AreRemoved) {
    const auto made = access().makeToken("backup", Role::Viewer, 0);
    const auto other = access().makeToken("backup", Role::Viewer, 0);
    access().removeToken(made.first.strId);
    EXPECT_EQ(refused(made.second), "bad-token");
    EXPECT_EQ(refused(other.second), "");
    EXPECT_EQ(refusedAs([&] { access().removeToken(made.first.strId); }), "no-such-token");
    EXPECT_EQ(refusedAs([&] { access().removeToken(""); }), "no-such-token");
}

TEST_F(TokensTest, AreRefusedWithAReason) {
    EXPECT_EQ(make("two words", Role::Viewer, 0), "bad-name");
    EXPECT_EQ(make("backup", Role::Nobody, 0), "bad-role");
    EXPECT_EQ(make("backup", Role::Viewer, -1), "bad-days");
    EXPECT_EQ(make("backup", Role::Viewer, 3651), "bad-days");
    EXPECT_EQ(make("backup", Role::Viewer, 2147483647), "bad-days");
    EXPECT_EQ(make("backup", Role::Viewer, 3650), "");
    EXPECT_EQ(access().tokens()[0].strExpires, "2037-01-12T08:00:00Z");
}

TEST_F(TokensTest, AreBounded) {
    access();
    for (int i = 0; i < 128; ++i) {
        ASSERT_EQ(make("backup", Role::Viewer, 0), "") << i;
    }
    EXPECT_EQ(make("backup", Role::Viewer, 0), "too-many-tokens");
    reopen();
    EXPECT_EQ(access().tokens().size(), 128u);
}

TEST_F(TokensTest, AreNotSlowedDownByWrongOnes) {
    const auto made = access().makeToken("backup", Role::Viewer, 0);
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(refused("wrong"), "bad-token");
    }
    EXPECT_EQ(refused(made.second), "");
    EXPECT_EQ(loginAs("guest").stIdentity.strName, "guest");
}

}  // namespace
}  // namespace camerad
