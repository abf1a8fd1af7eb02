#include "apps/camerad/access/LoginPace.h"

#include <gmock/gmock.h>

namespace camerad {
namespace {

using std::chrono::minutes;
using std::chrono::seconds;

class LoginPaces : public ::testing::Test {
protected:
    void fail(const std::string& p_strKey, int p_nTimes = 1) {
        for (int i = 0; i < p_nTimes; ++i) {
            m_objPace.failed(p_strKey, m_nNow);
        }
    }
    int pause(const std::string& p_strKey) const { return m_objPace.pause(p_strKey, m_nNow); }

    LoginPace m_objPace{3, seconds(60)};
    LoginPace::Time m_nNow{std::chrono::hours(100)};
};

TEST_F(LoginPaces, LetTheFirstFailuresPassAndDoubleThePauseThen) {
    std::vector<int> vecPauses;
    for (int i = 0; i < 12; ++i) {
        fail("admin");
        vecPauses.push_back(pause("admin"));
        m_nNow += seconds(pause("admin"));
        EXPECT_EQ(pause("admin"), 0);
    }
    EXPECT_THAT(vecPauses, ::testing::ElementsAre(0, 0, 1, 2, 4, 8, 16, 32, 60, 60, 60, 60));
}

TEST_F(LoginPaces, CountSecondsUp) {
    fail("admin", 5);
    EXPECT_EQ(pause("admin"), 4);
    m_nNow += std::chrono::milliseconds(1);
    EXPECT_EQ(pause("admin"), 4);
    m_nNow += std::chrono::milliseconds(3998);
    EXPECT_EQ(pause("admin"), 1);
    m_nNow += std::chrono::milliseconds(1);
    EXPECT_EQ(pause("admin"), 0);
}

TEST_F(LoginPaces, DoNotOverflow) {
    fail("admin", 100000);
    EXPECT_EQ(pause("admin"), 60);
}

TEST_F(LoginPaces, AreForEachKeyItsOwn) {
    fail("admin", 10);
    EXPECT_EQ(pause("guest"), 0);
}

TEST_F(LoginPaces, ForgetAfterAWhile) {
    fail("admin", 10);
    m_nNow += seconds(60) + minutes(15) - seconds(1);
    fail("admin");
    EXPECT_EQ(pause("admin"), 60);
    m_nNow += seconds(60) + minutes(15);
    fail("admin");
    EXPECT_EQ(pause("admin"), 0);
}

TEST_F(LoginPaces, AreCleared) {
    fail("admin", 10);
    m_objPace.clear("admin");
    EXPECT_EQ(pause("admin"), 0);
    fail("admin", 2);
    EXPECT_EQ(pause("admin"), 0);
}

TEST_F(LoginPaces, HoldABoundedNumberOfKeysAndKeepTheWorst) {
    fail("admin", 10);
    for (int i = 0; i < 5000; ++i) {
        m_nNow += std::chrono::milliseconds(1);
        fail("name" + std::to_string(i), 4);
    }
    EXPECT_EQ(m_objPace.size(), LoginPace::kMostKeys);
    EXPECT_GT(pause("admin"), 0);
    EXPECT_EQ(pause("name0"), 0);
    EXPECT_GT(pause("name4999"), 0);
}

TEST_F(LoginPaces, LetForgottenKeysGoFirst) {
    fail("old", 20);
    m_nNow += minutes(17);
    for (std::size_t i = 1; i < LoginPace::kMostKeys; ++i) {
        fail("name" + std::to_string(i));
    }
    fail("new");
    EXPECT_EQ(m_objPace.size(), LoginPace::kMostKeys);
    fail("name1", 3);
    EXPECT_EQ(pause("name1"), 2);  // four failures: it was kept
}

TEST(AddressKeys, AreNetworksForIPv6) {
    struct Row {
        const char* szAddress;
        const char* szKey;
    };
    for (const Row& row :
         {Row{"192.0.2.7", "192.0.2.7"}, Row{"::ffff:192.0.2.7", "192.0.2.7"},
          Row{"2001:db8:1:2:3:4:5:6", "2001:db8:1:2::/64"}, Row{"2001:DB8:1:2::1", "2001:db8:1:2::/64"},
          Row{"::1", "::/64"}, Row{"fe80::1%eth0", "fe80::/64"}, Row{"", ""}, Row{"nonsense", "nonsense"}}) {
        EXPECT_EQ(paceKeyOfAddress(row.szAddress), row.szKey) << row.szAddress;
    }
    EXPECT_EQ(paceKeyOfAddress(std::string(100000, 'x')).size(), 64u);
}

}  // namespace
}  // namespace camerad
