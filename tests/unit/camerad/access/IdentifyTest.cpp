#include "tests/unit/camerad/access/AccessTest.h"

#include <atomic>
#include <thread>

namespace camerad {
namespace {

using std::chrono::minutes;
using ::testing::HasSubstr;
using ::testing::Not;

class IdentifyTest : public AccessTest {
protected:
    std::string refused(const HttpRequest& p_stRequest) {
        return refusedAs([&] { access().identify(p_stRequest); });
    }
};

TEST_F(IdentifyTest, IsNobodyWithoutCredentials) {
    const Identity identity = access().identify(HttpRequest());
    EXPECT_EQ(identity.eRole, Role::Nobody);
    EXPECT_EQ(identity.eVia, Identity::Via::Nothing);
    EXPECT_EQ(identity.strName, "");
    EXPECT_EQ(access().identify(requestWith("cookie", "another=one")).eRole, Role::Nobody);
}

TEST_F(IdentifyTest, KnowsASessionByItsCookie) {
    const AccessControl::Session session = loginAs("guest");
    const Identity identity = access().identify(requestOf(session));
    EXPECT_EQ(identity.strName, "guest");
    EXPECT_EQ(identity.eRole, Role::Viewer);
    EXPECT_EQ(identity.eVia, Identity::Via::Cookie);
    EXPECT_EQ(identity.strSession, session.stIdentity.strSession);
    EXPECT_NE(identity.strSession, session.strCookie) << "what goes around in the program is not the secret";
    EXPECT_EQ(access().proofOf(identity), session.strProof);
}

TEST_F(IdentifyTest, RefusesACookieThatIsNoSession) {
    for (const std::string& value : {std::string(), std::string("abc"), std::string(43, 'A'), std::string(100000, 'A'),
                                     std::string("\0\xFF", 2)}) {
        EXPECT_EQ(refused(requestWith("cookie", "camera_session=" + value)), "session-over");
    }
}

TEST_F(IdentifyTest, EndsASessionByLogout) {
    const AccessControl::Session session = loginAs("guest");
    access().logout(session.stIdentity);
    EXPECT_EQ(refused(requestOf(session)), "session-over");
    EXPECT_EQ(access().proofOf(session.stIdentity), "");
}

TEST_F(IdentifyTest, EndsASessionThatIsIdle) {
    const AccessControl::Session session = loginAs("guest");
    pass(minutes(29));
    EXPECT_EQ(refused(requestOf(session)), "");
    pass(minutes(30));
    EXPECT_EQ(refused(requestOf(session)), "session-over");
    EXPECT_EQ(access().counters().nSessions, 0u);
}

TEST_F(IdentifyTest, ForgetsSessionsWithTheProcess) {
    const AccessControl::Session session = loginAs("guest");
    reopen();
    EXPECT_EQ(refused(requestOf(session)), "session-over");
}

TEST_F(IdentifyTest, KnowsNameAndPassword) {
    const Identity identity = access().identify(basic("admin", kAdminPassword));
    EXPECT_EQ(identity.strName, "admin");
    EXPECT_EQ(identity.eRole, Role::Admin);
    EXPECT_EQ(identity.eVia, Identity::Via::Basic);
    EXPECT_EQ(access().proofOf(identity), "");
    EXPECT_EQ(refused(basic("admin", kGuestPassword)), "bad-credentials");
}

TEST_F(IdentifyTest, TakesAPasswordWithColons) {
    access().putAccount("guest", "a:b:c:d:e", Role::Viewer);
    EXPECT_EQ(access().identify(basic("guest", "a:b:c:d:e")).strName, "guest");
}

TEST_F(IdentifyTest, DoesNotTakePasswordsInTheClear) {
    access();
    m_stSettings.bBasicAllowed = false;
    reopen();
    const Refusal refusal = refusalOf([&] { access().identify(basic("admin", kAdminPassword)); });
    EXPECT_EQ(refusal.type(), "basic-not-taken");
    EXPECT_EQ(refusal.kind(), Refusal::Kind::Unauthorised);
    EXPECT_THAT(refusal.what(), HasSubstr("TLS"));
}

TEST_F(IdentifyTest, SaysNothingOfTheCredentials) {
    for (const HttpRequest& request :
         {basic("admin", "wrong secret"), requestWith("cookie", "camera_session=wrong-secret"),
          requestWith("authorization", "Bearer wrong-secret"), requestWith("authorization", "Wrong secret")}) {
        EXPECT_THAT(refusalOf([&] { access().identify(request); }).what(), Not(HasSubstr("secret")));
    }
}

TEST_F(IdentifyTest, TakesTheAuthorizationBeforeTheCookie) {
    HttpRequest request = requestOf(loginAs("guest"));
    request.mapHeaders.emplace("authorization", "Basic " + base64("admin:" + std::string(kAdminPassword)));
    EXPECT_EQ(access().identify(request).strName, "admin");
    request.mapHeaders.erase("authorization");
    request.mapHeaders.emplace("authorization", "Bearer nothing");
    EXPECT_EQ(refused(request), "bad-token");
}

TEST_F(IdentifyTest, ChecksAPairOfBasicOnceInAWhile) {
    access();
    const std::uint64_t before = access().counters().nLogins;
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(refused(basic("admin", kAdminPassword)), "");
    }
    EXPECT_EQ(access().counters().nLogins, before + 1);
    pass(minutes(5));
    EXPECT_EQ(refused(basic("admin", kAdminPassword)), "");
    EXPECT_EQ(access().counters().nLogins, before + 2);
}

TEST_F(IdentifyTest, ForgetsAPairWithTheAccount) {
    EXPECT_EQ(refused(basic("guest", kGuestPassword)), "");
    access().putAccount("guest", "another password", Role::Viewer);
    EXPECT_EQ(refused(basic("guest", kGuestPassword)), "bad-credentials");
    EXPECT_EQ(refused(basic("guest", "another password")), "");
    access().removeAccount("guest");
    EXPECT_EQ(refused(basic("guest", "another password")), "bad-credentials");
}

TEST_F(IdentifyTest, GivesAKnownPairTheRoleOfNow) {
    access().putAccount("second", "second password", Role::Admin);
    EXPECT_EQ(access().identify(basic("second", "second password")).eRole, Role::Admin);
    access().putAccount("second", "", Role::Viewer);
    EXPECT_EQ(access().identify(basic("second", "second password")).eRole, Role::Viewer);
}

TEST_F(IdentifyTest, KeepsABoundedNumberOfPairs) {
    access();
    for (int i = 0; i < 60; ++i) {
        access().putAccount("a" + std::to_string(i), "password" + std::to_string(i), Role::Viewer);
    }
    const auto all = [&] {
        for (int i = 0; i < 60; ++i) {
            EXPECT_EQ(refused(basic("a" + std::to_string(i), "password" + std::to_string(i))), "");
        }
    };
    all();
    const std::uint64_t before = access().counters().nLogins;
    all();
    EXPECT_EQ(access().counters().nLogins, before);
    // Passwords that were good and are so no more make room.
    for (int i = 0; i < 10; ++i) {
        access().putAccount("b", "password of b" + std::to_string(i), Role::Viewer);
        EXPECT_EQ(refused(basic("b", "password of b" + std::to_string(i))), "");
    }
    all();
    EXPECT_EQ(access().counters().nLogins, before + 10);
}

TEST_F(IdentifyTest, AnswersManyThreadsAtOnce) {
    access();
    const AccessControl::Session session = loginAs("admin");
    const std::string token = access().makeToken("script", Role::Viewer, 0).second;
    std::atomic<int> good{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int k = 0; k < 20; ++k) {
                good += "admin" == access().identify(requestOf(session)).strName ? 1 : 0;
                good += "script" == access().identify(requestWith("authorization", "Bearer " + token)).strName ? 1 : 0;
                good += "guest" == access().identify(basic("guest", kGuestPassword)).strName ? 1 : 0;
                access().accounts();
                access().counters();
            }
        });
    }
    for (int i = 0; i < 10; ++i) {
        access().putAccount("other", "other password", 0 == i % 2 ? Role::Viewer : Role::Admin);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(good, 4 * 20 * 3);
}

}  // namespace
}  // namespace camerad
