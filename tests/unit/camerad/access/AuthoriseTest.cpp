#include "tests/unit/camerad/access/AccessTest.h"

namespace camerad {
namespace {

using ::testing::HasSubstr;

class AuthoriseTest : public AccessTest {
protected:
    static Route route(Access p_eAccess, bool p_bNeedsProof = true) {
        Route stRoute;
        stRoute.eAccess = p_eAccess;
        stRoute.bNeedsProof = p_bNeedsProof;
        return stRoute;
    }
    std::string refused(const HttpRequest& p_stRequest, const Identity& p_stIdentity, const Route& p_stRoute) {
        return refusedAs([&] { access().authorise(p_stRequest, p_stIdentity, p_stRoute); });
    }
    static Identity of(Role p_eRole) { return {"somebody", p_eRole, Identity::Via::Bearer, ""}; }
};

TEST_F(AuthoriseTest, LetsRolesDoWhatTheyMay) {
    struct Row {
        Access eAccess;
        Role eRole;
        const char* szRefused;
    };
    for (const Row& row : {Row{Access::Everybody, Role::Nobody, ""}, Row{Access::Everybody, Role::Viewer, ""},
                           Row{Access::Everybody, Role::Admin, ""}, Row{Access::Viewer, Role::Nobody, "login-needed"},
                           Row{Access::Viewer, Role::Viewer, ""}, Row{Access::Viewer, Role::Admin, ""},
                           Row{Access::Admin, Role::Nobody, "login-needed"},
                           Row{Access::Admin, Role::Viewer, "admin-needed"}, Row{Access::Admin, Role::Admin, ""}}) {
        for (const char* const szMethod : {"GET", "POST"}) {
            EXPECT_EQ(refused(requestWith("x", "y", szMethod), of(row.eRole), route(row.eAccess)), row.szRefused)
                << szMethod << " " << static_cast<int>(row.eAccess) << " " << roleName(row.eRole);
        }
    }
}

TEST_F(AuthoriseTest, TellsWhoIsUnknownFromWhoMayNot) {
    EXPECT_EQ(refusalOf([&] { access().authorise(HttpRequest(), Identity(), route(Access::Viewer)); }).kind(),
              Refusal::Kind::Unauthorised);
    const Refusal refusal =
        refusalOf([&] { access().authorise(HttpRequest(), of(Role::Viewer), route(Access::Admin)); });
    EXPECT_EQ(refusal.kind(), Refusal::Kind::Forbidden);
    EXPECT_THAT(refusal.what(), HasSubstr("\"somebody\""));
}

TEST_F(AuthoriseTest, AsksACookieForTheProof) {
    const AccessControl::Session session = loginAs("admin");
    const AccessControl::Session other = loginAs("admin");
    for (const char* const szMethod : {"POST", "PUT", "PATCH", "DELETE", "anything"}) {
        HttpRequest request = requestOf(session, szMethod);
        EXPECT_EQ(refused(request, session.stIdentity, route(Access::Admin)), "proof-needed") << szMethod;
        request.mapHeaders.emplace("x-csrf-token", other.strProof);
        EXPECT_EQ(refused(request, session.stIdentity, route(Access::Admin)), "proof-needed") << szMethod;
        request.mapHeaders.erase("x-csrf-token");
        request.mapHeaders.emplace("x-csrf-token", session.strCookie);
        EXPECT_EQ(refused(request, session.stIdentity, route(Access::Admin)), "proof-needed") << szMethod;
        request.mapHeaders.erase("x-csrf-token");
        request.mapHeaders.emplace("x-csrf-token", session.strProof);
        EXPECT_EQ(refused(request, session.stIdentity, route(Access::Admin)), "") << szMethod;
        request.mapHeaders.emplace("x-csrf-token", session.strProof);
        EXPECT_EQ(refused(request, session.stIdentity, route(Access::Admin)), "proof-needed") << szMethod;
    }
    for (const char* const szMethod : {"GET", "HEAD", "OPTIONS"}) {
        EXPECT_EQ(refused(requestOf(session, szMethod), session.stIdentity, route(Access::Admin)), "") << szMethod;
    }
}

TEST_F(AuthoriseTest, DoesNotTakeAnEmptyProofOfASessionThatIsOver) {
    const AccessControl::Session session = loginAs("admin");
    access().logout(session.stIdentity);
    HttpRequest request = requestOf(session, "POST");
    request.mapHeaders.emplace("x-csrf-token", "");
    EXPECT_EQ(refused(request, session.stIdentity, route(Access::Admin)), "proof-needed");
}

TEST_F(AuthoriseTest, AsksNoProofWhereTheRouteNeedsNone) {
    const AccessControl::Session session = loginAs("admin");
    EXPECT_EQ(refused(requestOf(session, "POST"), session.stIdentity, route(Access::Everybody, false)), "");
}

TEST_F(AuthoriseTest, RefusesForeignPagesWhateverTheyCarry) {
    const AccessControl::Session session = loginAs("admin");
    HttpRequest request = requestOf(session, "POST");
    request.mapHeaders.emplace("x-csrf-token", session.strProof);
    request.mapHeaders.emplace("origin", "http://evil.example");
    EXPECT_EQ(refused(request, session.stIdentity, route(Access::Admin)), "foreign-origin");
    for (const bool needsProof : {true, false}) {
        for (const Access access : {Access::Everybody, Access::Viewer, Access::Admin}) {
            EXPECT_EQ(refused(requestWith("sec-fetch-site", "cross-site", "POST"), of(Role::Admin),
                              route(access, needsProof)),
                      "foreign-origin");
            EXPECT_EQ(refused(requestWith("origin", "null", "DELETE"), of(Role::Admin), route(access, needsProof)),
                      "foreign-origin");
        }
    }
    EXPECT_EQ(refused(requestWith("sec-fetch-site", "cross-site"), of(Role::Admin), route(Access::Admin)), "")
        << "a link from elsewhere to the page";
}

TEST_F(AuthoriseTest, LetsTheCamerasOwnPageIn) {
    const AccessControl::Session session = loginAs("admin");
    HttpRequest request = requestOf(session, "POST");
    request.mapHeaders.emplace("x-csrf-token", session.strProof);
    request.mapHeaders.emplace("origin", "http://camera.example");
    request.mapHeaders.emplace("sec-fetch-site", "same-origin");
    EXPECT_EQ(refused(request, session.stIdentity, route(Access::Admin)), "");
}

}  // namespace
}  // namespace camerad
