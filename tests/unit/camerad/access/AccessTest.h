// A camera's access control on a device root of its own, with a clock and a date that the test moves.
#pragma once

#include "apps/camerad/access/AccessControl.h"
#include "apps/camerad/http/Http.h"
#include "tests/support/TestRoot.h"

#include <gmock/gmock.h>

#include <sys/stat.h>

#include <string>

namespace camerad {

constexpr char kAccountsFile[] = "/mnt/mtd/camerad/accounts.json";
constexpr char kRemote[] = "192.0.2.7";

// What a piece of code refuses; fails when it does not.
template <typename Code>
Refusal refusalOf(Code&& p_fnCode) {
    try {
        p_fnCode();
    } catch (const Refusal& refusal) {
        return refusal;
    }
    ADD_FAILURE() << "nothing was refused";
    return Refusal(Refusal::Kind::Failed, "", "");
}

// The type of what it refuses; empty when it does not refuse.
template <typename Code>
std::string refusedAs(Code&& p_fnCode) {
    try {
        p_fnCode();
    } catch (const Refusal& refusal) {
        return refusal.type();
    }
    return "";
}

// The text of the std::runtime_error; empty when there is none.
template <typename Code>
std::string errorOf(Code&& p_fnCode) {
    try {
        p_fnCode();
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "";
}

class AccessTest : public ::testing::Test {
protected:
    AccessTest() {
        m_stSettings.nPasswordCost = 1;  // the lowest, since what a password costs is not what these tests are about
        m_stSettings.bBasicAllowed = true;
        m_stSettings.fnNow = [this] { return m_nNow; };
        m_stSettings.fnDate = [this] { return m_nDate; };
    }

    // The access control with the accounts "admin" (password kAdminPassword) and "guest" (kGuestPassword), a viewer.
    AccessControl& access() {
        if (nullptr == m_pAccess) {
            reopen();
            m_pAccess->putAccount("admin", kAdminPassword, Role::Admin);
            m_pAccess->putAccount("guest", kGuestPassword, Role::Viewer);
        }
        return *m_pAccess;
    }
    void reopen() {
        m_pAccess.reset();
        m_pAccess = AccessControl::open(m_stSettings);
    }
    void pass(std::chrono::seconds p_nTime) {
        m_nNow += p_nTime;
        m_nDate += p_nTime;
    }

    AccessControl::Session loginAs(const std::string& p_strName) {
        return access().login(p_strName, "admin" == p_strName ? kAdminPassword : kGuestPassword, kRemote);
    }
    std::string failToLogin(const std::string& p_strName, const std::string& p_strRemote = kRemote) {
        return refusedAs([&] { access().login(p_strName, "not the password", p_strRemote); });
    }

    static HttpRequest requestWith(const std::string& p_strName, const std::string& p_strValue,
                                   const std::string& p_strMethod = "GET") {
        HttpRequest request;
        request.strMethod = p_strMethod;
        request.strRemote = kRemote;
        request.mapHeaders.emplace("host", "camera.example");
        request.mapHeaders.emplace(p_strName, p_strValue);
        return request;
    }
    static HttpRequest requestOf(const AccessControl::Session& p_stSession, const std::string& p_strMethod = "GET") {
        return requestWith("cookie", "camera_session=" + p_stSession.strCookie, p_strMethod);
    }
    static std::string base64(const std::string& p_strText);
    static HttpRequest basic(const std::string& p_strName, const std::string& p_strPassword) {
        return requestWith("authorization", "Basic " + base64(p_strName + ":" + p_strPassword));
    }

    mode_t modeOf(const std::string& p_strName) const {
        struct stat stFile {};
        return 0 == lstat((m_objRoot.path() + p_strName).c_str(), &stFile) ? stFile.st_mode & 07777u : 0u;
    }
    std::string onThisMachine(const std::string& p_strName) const { return m_objRoot.path() + p_strName; }

    static constexpr char kAdminPassword[] = "correct horse battery";
    static constexpr char kGuestPassword[] = "a guest may look";

    TestRoot m_objRoot;
    AccessSettings m_stSettings;
    std::chrono::steady_clock::time_point m_nNow{std::chrono::hours(1000)};
    std::chrono::system_clock::time_point m_nDate{std::chrono::seconds(1800000000)};  // 2027-01-15T08:00:00Z
    std::unique_ptr<AccessControl> m_pAccess;
};

}  // namespace camerad
