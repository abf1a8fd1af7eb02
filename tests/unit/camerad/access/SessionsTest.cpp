#include "apps/camerad/access/Sessions.h"

#include <gmock/gmock.h>

namespace camerad {
namespace {

using std::chrono::minutes;
using std::chrono::seconds;

class SessionTable : public ::testing::Test {
protected:
    Sessions m_objSessions{{minutes(30), std::chrono::hours(12), 8}};
    Sessions::Time m_nNow{std::chrono::hours(100)};

    Sessions::Made make(const std::string& p_strName) {
        m_nNow += seconds(1);
        return m_objSessions.make(p_strName, m_nNow);
    }
    bool isAlive(const Sessions::Made& p_stMade) { return m_objSessions.use(p_stMade.strSecret, m_nNow).has_value(); }
};

TEST_F(SessionTable, FindsASessionByItsSecretAlone) {
    const Sessions::Made one = make("admin");
    const Sessions::Made other = make("guest");
    ASSERT_TRUE(isAlive(one));
    EXPECT_EQ(m_objSessions.use(one.strSecret, m_nNow)->strName, "admin");
    EXPECT_EQ(m_objSessions.use(other.strSecret, m_nNow)->strName, "guest");
    EXPECT_EQ(m_objSessions.proofOf(one.strId), one.strProof);
    EXPECT_FALSE(m_objSessions.use(one.strId, m_nNow));
    EXPECT_FALSE(m_objSessions.use(one.strProof, m_nNow));
    EXPECT_FALSE(m_objSessions.use("", m_nNow));
    EXPECT_EQ(m_objSessions.proofOf(one.strSecret), "");
}

TEST_F(SessionTable, GivesSecretProofAndIdThatHaveNothingInCommon) {
    const Sessions::Made one = make("admin");
    const Sessions::Made other = make("admin");
    EXPECT_NE(one.strSecret, one.strProof);
    EXPECT_NE(one.strSecret, one.strId);
    EXPECT_NE(one.strSecret, other.strSecret);
    EXPECT_NE(one.strProof, other.strProof);
}

TEST_F(SessionTable, EndsWhatIsNotUsed) {
    const Sessions::Made made = make("admin");
    m_nNow += minutes(30) - seconds(1);
    EXPECT_TRUE(isAlive(made));
    m_nNow += minutes(30) - seconds(1);
    EXPECT_TRUE(isAlive(made));
    m_nNow += minutes(30);
    EXPECT_FALSE(isAlive(made));
    EXPECT_EQ(m_objSessions.size(m_nNow), 0u);
}

TEST_F(SessionTable, EndsWhatIsUsedForTooLong) {
    const Sessions::Made made = make("admin");
    for (int i = 1; i < 12 * 4; ++i) {
        m_nNow += minutes(15);
        EXPECT_TRUE(isAlive(made)) << i;
    }
    m_nNow += minutes(15);
    EXPECT_FALSE(isAlive(made));
    EXPECT_EQ(m_objSessions.proofOf(made.strId), "");
}

TEST_F(SessionTable, LetsTheOneIdleLongestOfAnAccountGo) {
    const Sessions::Made admin = make("admin");
    const Sessions::Made first = make("guest");
    const Sessions::Made second = make("guest");
    EXPECT_TRUE(isAlive(first));
    m_nNow += seconds(1);
    EXPECT_TRUE(isAlive(first));
    const Sessions::Made third = make("guest");  // a quarter of eight is two
    EXPECT_TRUE(isAlive(first));
    EXPECT_FALSE(isAlive(second));
    EXPECT_TRUE(isAlive(third));
    for (int i = 0; i < 100; ++i) {
        make("guest");
    }
    EXPECT_TRUE(isAlive(admin)) << "nobody logs others out by logging in";
}

TEST_F(SessionTable, LetsTheOneIdleLongestOfAllGo) {
    const Sessions::Made first = make("account0");
    for (int i = 1; i < 8; ++i) {
        make("account" + std::to_string(i));
    }
    EXPECT_EQ(m_objSessions.size(m_nNow), 8u);
    m_nNow += seconds(1);
    EXPECT_TRUE(isAlive(first));
    make("one more");
    EXPECT_EQ(m_objSessions.size(m_nNow), 8u);
    EXPECT_TRUE(isAlive(first));
}

TEST_F(SessionTable, EndsOneOrAllOfAnAccount) {
    const Sessions::Made one = make("admin");
    const Sessions::Made other = make("admin");
    const Sessions::Made guest = make("guest");
    m_objSessions.endOf("admin", other.strId);
    EXPECT_FALSE(isAlive(one));
    EXPECT_TRUE(isAlive(other));
    m_objSessions.endOf("admin");
    EXPECT_FALSE(isAlive(other));
    EXPECT_TRUE(isAlive(guest));
    m_objSessions.end(guest.strId);
    EXPECT_FALSE(isAlive(guest));
}

}  // namespace
}  // namespace camerad
