#include "tests/unit/camerad/access/AccessTest.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <thread>

namespace camerad {
namespace {

using std::chrono::seconds;
using ::testing::HasSubstr;

// Of this thread.
double processorSeconds() {
    timespec stTime{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &stTime);
    return static_cast<double>(stTime.tv_sec) + static_cast<double>(stTime.tv_nsec) / 1e9;
}

class SlowedLoginTest : public AccessTest {
protected:
    std::string login(const std::string& p_strName, const std::string& p_strRemote) {
        return refusedAs(
            [&] { access().login(p_strName, "admin" == p_strName ? kAdminPassword : kGuestPassword, p_strRemote); });
    }
};

TEST_F(SlowedLoginTest, DoesNotTellUnknownNamesFromWrongPasswords) {
    const Refusal wrong = refusalOf([&] { access().login("admin", "wrong", kRemote); });
    const Refusal unknown = refusalOf([&] { access().login("nobody", "wrong", kRemote); });
    EXPECT_EQ(wrong.kind(), Refusal::Kind::Unauthorised);
    EXPECT_EQ(wrong.kind(), unknown.kind());
    EXPECT_EQ(wrong.type(), "bad-credentials");
    EXPECT_EQ(wrong.type(), unknown.type());
    EXPECT_STREQ(wrong.what(), unknown.what());
}

TEST_F(SlowedLoginTest, SlowsAnAccountDownFromEveryAddress) {
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(failToLogin("admin", "192.0.2." + std::to_string(i)), "bad-credentials");
    }
    const Refusal refusal = refusalOf([&] { access().login("admin", kAdminPassword, "192.0.2.99"); });
    EXPECT_EQ(refusal.type(), "login-slowed");
    EXPECT_EQ(refusal.kind(), Refusal::Kind::TooMany);
    EXPECT_EQ(refusal.retryAfter(), 1);
    EXPECT_THAT(refusal.what(), HasSubstr("wait 1 second and"));
    EXPECT_EQ(login("guest", "192.0.2.99"), "");
    pass(seconds(1));
    EXPECT_EQ(failToLogin("admin", "192.0.2.98"), "bad-credentials");
    EXPECT_THAT(refusalOf([&] { access().login("admin", kAdminPassword, "192.0.2.99"); }).what(),
                HasSubstr("wait 2 seconds and"));
    pass(seconds(2));
    EXPECT_EQ(login("admin", "192.0.2.99"), "");
}

TEST_F(SlowedLoginTest, SlowsAnAddressDownForEveryAccount) {
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(failToLogin("name" + std::to_string(i), "192.0.2.1"), "bad-credentials");
    }
    EXPECT_EQ(login("admin", "192.0.2.1"), "login-slowed");
    EXPECT_EQ(login("admin", "192.0.2.2"), "");
    EXPECT_EQ(access().counters().nSlowedLogins, 1u);
    EXPECT_EQ(access().counters().nFailedLogins, 3u);
    EXPECT_EQ(access().counters().nLogins, 1u);
}

TEST_F(SlowedLoginTest, TakesTheAddressesOfOneNetworkForOne) {
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(failToLogin("name" + std::to_string(i), "2001:db8::" + std::to_string(i + 1)), "bad-credentials");
    }
    EXPECT_EQ(login("admin", "2001:db8::99"), "login-slowed");
    EXPECT_EQ(login("admin", "2001:db8:0:1::99"), "");
}

TEST_F(SlowedLoginTest, ClearsTheAccountByASuccessAndNotTheAddress) {
    EXPECT_EQ(failToLogin("guest", "192.0.2.1"), "bad-credentials");
    EXPECT_EQ(failToLogin("guest", "192.0.2.1"), "bad-credentials");
    EXPECT_EQ(login("guest", "192.0.2.1"), "");
    EXPECT_EQ(failToLogin("guest", "192.0.2.2"), "bad-credentials");
    EXPECT_EQ(failToLogin("guest", "192.0.2.2"), "bad-credentials");
    EXPECT_EQ(login("guest", "192.0.2.3"), "");
    // With an account of one's own one cannot guess on and on.
    EXPECT_EQ(failToLogin("admin", "192.0.2.1"), "bad-credentials");
    EXPECT_EQ(login("guest", "192.0.2.1"), "login-slowed");
}

TEST_F(SlowedLoginTest, DoesNotPauseLongerThanTheLongestPause) {
    for (int i = 0; i < 30; ++i) {
        EXPECT_EQ(failToLogin("admin"), "bad-credentials") << i;
        pass(seconds(60));
    }
    EXPECT_EQ(failToLogin("admin"), "bad-credentials");
    EXPECT_EQ(refusalOf([&] { access().login("admin", kAdminPassword, kRemote); }).retryAfter(), 60);
    pass(seconds(59));
    EXPECT_EQ(login("admin", kRemote), "login-slowed");
    pass(seconds(1));
    EXPECT_EQ(login("admin", kRemote), "");
}

TEST_F(SlowedLoginTest, DoesNotPauseLongerBecauseOfTriesInAPause) {
    for (int i = 0; i < 3; ++i) {
        failToLogin("admin");
    }
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(login("admin", kRemote), "login-slowed");
    }
    pass(seconds(1));
    EXPECT_EQ(login("admin", kRemote), "");
    EXPECT_EQ(access().counters().nSlowedLogins, 100u);
}

TEST_F(SlowedLoginTest, SlowsBasicDownAsWell) {
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(refusedAs([&] { access().identify(basic("admin", "wrong" + std::to_string(i))); }),
                  "bad-credentials");
    }
    EXPECT_EQ(refusedAs([&] { access().identify(basic("admin", kAdminPassword)); }), "login-slowed");
}

TEST_F(SlowedLoginTest, LetsAScriptGoOnWhoseCredentialsAreKnown) {
    EXPECT_EQ(refusedAs([&] { access().identify(basic("admin", kAdminPassword)); }), "");
    for (int i = 0; i < 3; ++i) {
        failToLogin("admin");
    }
    EXPECT_EQ(refusedAs([&] { access().identify(basic("admin", kAdminPassword)); }), "");
    EXPECT_EQ(login("admin", kRemote), "login-slowed");
}

TEST_F(SlowedLoginTest, TakesEveryPasswordThatIsNone) {
    access().putAccount("guest", "a:b c d e f g", Role::Viewer);
    for (const std::string& password :
         {std::string(), std::string("a:b c d e f g\0", 14), std::string("a:b c d e f g\0x", 15),
          std::string(1000000, 'x'), std::string("\xFF\xFE\x80\n")}) {
        EXPECT_EQ(refusedAs([&] { access().login("guest", password, kRemote); }), "bad-credentials");
        pass(std::chrono::hours(1));
    }
    for (const std::string& name : {std::string(), std::string(1000000, 'x'), std::string("\0admin", 6),
                                    std::string("admin\0", 6), std::string("ADMIN")}) {
        EXPECT_EQ(refusedAs([&] { access().login(name, kAdminPassword, kRemote); }), "bad-credentials");
        pass(std::chrono::hours(1));
    }
}

TEST_F(SlowedLoginTest, DoesAsMuchWorkForAnUnknownName) {
    // At a cost that is long beside everything else; the least of several runs counts, of the processor's time, since the
    // machine has others to serve.
    m_stSettings.nPasswordCost = 4;
    m_stSettings.nFreeAttempts = 1000;
    access();
    const auto least = [&](const std::string& p_strName) {
        double spent = 1e9;
        for (int i = 0; i < 5; ++i) {
            const double start = processorSeconds();
            EXPECT_EQ(failToLogin(p_strName), "bad-credentials");
            spent = std::min(spent, processorSeconds() - start);
        }
        return spent;
    };
    const double known = least("admin");
    for (const char* const szName : {"nobody", "no name"}) {
        const double unknown = least(szName);
        EXPECT_GT(unknown * 3, known) << szName;
        EXPECT_GT(known * 3, unknown) << szName;
    }
}

TEST_F(SlowedLoginTest, HoldsWhenManyTryAtOnce) {
    access();
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&] {
            for (int k = 0; k < 10; ++k) {
                failToLogin("admin");
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    // Two are checked at a time, so that one more than the free ones may slip through.
    EXPECT_LE(access().counters().nFailedLogins, 4u);
    EXPECT_EQ(access().counters().nFailedLogins + access().counters().nSlowedLogins, 80u);
}

}  // namespace
}  // namespace camerad
