// What each route asks of the camera, and what it answers.
#include "tests/unit/camerad/api/Fakes.h"

#include <gmock/gmock.h>

namespace camerad {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::Pair;

std::string detailOf(const HttpResponse& p_stResponse) {
    return json::parse(p_stResponse.strBody).at("detail").get<std::string>();
}

std::string typeOf(const HttpResponse& p_stResponse) {
    return json::parse(p_stResponse.strBody).at("type").get<std::string>();
}

// --- Session and accounts ---

TEST(SessionRoutes, LoginSetsTheCookieAndHandsOutTheProof) {
    FakeCamera camera;
    const HttpResponse response = camera.call("POST", "/api/v1/session", R"({"name":"admin","password":"pw-pw-pw"})");
    EXPECT_EQ(response.nStatus, 200);
    EXPECT_EQ(json::parse(response.strBody), json({{"name", "admin"}, {"role", "admin"}, {"csrf", "PROOF"}}));
    EXPECT_THAT(response.vecHeaders,
                ElementsAre(Pair("Set-Cookie", "camera_session=COOKIE; HttpOnly; SameSite=Strict; Path=/")));
    EXPECT_THAT(camera.calls(), ElementsAre("login admin pw-pw-pw 192.0.2.7"));
}

TEST(SessionRoutes, OverTlsTheCookieIsSecure) {
    FakeCamera camera;
    camera.bSecure = true;
    EXPECT_THAT(camera.call("POST", "/api/v1/session", R"({"name":"a","password":"b"})").vecHeaders,
                ElementsAre(Pair("Set-Cookie", HasSubstr("; Secure"))));
}

TEST(SessionRoutes, ARefusedLoginSetsNoCookie) {
    FakeCamera camera;
    camera.objAccess.refusal = Refusal(Refusal::Kind::Unauthorised, "bad-credentials", "Name or password is wrong.");
    const HttpResponse response = camera.call("POST", "/api/v1/session", R"({"name":"a","password":"b"})");
    EXPECT_EQ(response.nStatus, 401);
    EXPECT_THAT(response.vecHeaders, IsEmpty());
    camera.objAccess.refusal = Refusal(Refusal::Kind::TooMany, "login-slowed", "Try again in 8 seconds.").retryAfter(8);
    const HttpResponse slowed = camera.call("POST", "/api/v1/session", R"({"name":"a","password":"b"})");
    EXPECT_EQ(slowed.nStatus, 429);
    EXPECT_THAT(slowed.vecHeaders, ElementsAre(Pair("Retry-After", "8")));
}

TEST(SessionRoutes, WhoIAmSaysHowAndTheProofOnlyWithACookie) {
    FakeCamera camera;
    EXPECT_EQ(camera.json("GET", "/api/v1/session"),
              json({{"name", "boss"}, {"role", "admin"}, {"via", "cookie"}, {"csrf", "PROOF"}}));
    camera.stIdentity = {"script", Role::Viewer, Identity::Via::Bearer, ""};
    EXPECT_EQ(camera.json("GET", "/api/v1/session"), json({{"name", "script"}, {"role", "viewer"}, {"via", "bearer"}}));
    camera.stIdentity.eVia = Identity::Via::Basic;
    EXPECT_EQ(camera.json("GET", "/api/v1/session").at("via"), "basic");
}

TEST(SessionRoutes, LogoutTakesTheCookieAway) {
    FakeCamera camera;
    const HttpResponse response = camera.call("DELETE", "/api/v1/session");
    EXPECT_EQ(response.nStatus, 204);
    EXPECT_THAT(response.vecHeaders, ElementsAre(Pair("Set-Cookie", HasSubstr("camera_session=;"))));
    EXPECT_THAT(response.vecHeaders.at(0).second, HasSubstr("Max-Age=0"));
    EXPECT_THAT(camera.calls(), ElementsAre("logout boss"));
}

TEST(SessionRoutes, APasswordIsChangedByTheOldOne) {
    FakeCamera camera;
    EXPECT_EQ(camera.call("PUT", "/api/v1/session/password", R"({"old":"o","new":"n"})").nStatus, 204);
    EXPECT_THAT(camera.calls(), ElementsAre("password boss o n"));
}

TEST(AccountRoutes, AnAccountIsMadeChangedAndRemoved) {
    FakeCamera camera;
    EXPECT_EQ(camera.json("GET", "/api/v1/accounts").at("accounts").at(1),
              json({{"name", "guard"}, {"role", "viewer"}}));
    EXPECT_EQ(camera.json("PUT", "/api/v1/accounts/new", R"({"password":"secret-1"})"),
              json({{"name", "new"}, {"role", "viewer"}}));
    EXPECT_EQ(camera.json("PUT", "/api/v1/accounts/guard", R"({"role":"admin"})"),
              json({{"name", "guard"}, {"role", "admin"}}));
    EXPECT_EQ(camera.json("PUT", "/api/v1/accounts/admin", R"({"password":"secret-2"})").at("role"), "admin");
    EXPECT_EQ(camera.call("DELETE", "/api/v1/accounts/guard").nStatus, 204);
    EXPECT_THAT(camera.calls(), ElementsAre("account new \"secret-1\" viewer", "account guard \"\" admin",
                                            "account admin \"secret-2\" admin", "no account guard"));
}

TEST(AccountRoutes, ANewAccountNeedsAPasswordAndNoneIsEverEmpty) {
    FakeCamera camera;
    EXPECT_THAT(detailOf(camera.call("PUT", "/api/v1/accounts/new", R"({"role":"viewer"})")),
                HasSubstr("\"password\""));
    EXPECT_THAT(detailOf(camera.call("PUT", "/api/v1/accounts/guard", R"({"password":""})")), HasSubstr("empty"));
    EXPECT_THAT(detailOf(camera.call("PUT", "/api/v1/accounts/guard", "{}")), HasSubstr("at least one"));
    EXPECT_THAT(detailOf(camera.call("PUT", "/api/v1/accounts/guard", R"({"role":"root"})")),
                HasSubstr("one of \"viewer\", \"admin\""));
    EXPECT_THAT(camera.calls(), IsEmpty());
}

TEST(TokenRoutes, ATokenIsShownOnceAndWithdrawn) {
    FakeCamera camera;
    const json token = camera.json("POST", "/api/v1/tokens", R"({"name":"nightly","role":"viewer","days":30})");
    EXPECT_EQ(token.at("token"), "SECRET");
    EXPECT_TRUE(token.contains("expires"));
    EXPECT_FALSE(camera.json("POST", "/api/v1/tokens", R"({"name":"x","role":"admin"})").contains("expires"));
    EXPECT_EQ(camera.json("GET", "/api/v1/tokens").at("tokens").size(), 2U);
    EXPECT_EQ(camera.call("DELETE", "/api/v1/tokens/t1").nStatus, 204);
    EXPECT_THAT(camera.calls(), ElementsAre("token nightly viewer 30", "token x admin 0", "no token t1"));
}

// --- Parameters ---

TEST(ParameterRoutes, ChannelsAreListedAndShown) {
    FakeCamera camera;
    camera.objHost.objSecond.stView.strBusyWith = "reset";
    camera.objHost.objSecond.stView.strProblem = "It is being reset.";
    const json list = camera.json("GET", "/api/v1/channels").at("channels");
    ASSERT_EQ(list.size(), 2U);
    EXPECT_EQ(list.at(0), camera.json("GET", "/api/v1/channels/1"));
    EXPECT_EQ(list.at(0).at("busyWith"), nullptr);
    EXPECT_EQ(list.at(1).at("busyWith"), "reset");
    EXPECT_EQ(list.at(1).at("kind"), "thermal");
    EXPECT_FALSE(list.at(0).contains("problem"));
    EXPECT_EQ(list.at(1).at("problem"), "It is being reset.");
}

TEST(ParameterRoutes, AllValuesOrSomeOfThem) {
    FakeCamera camera;
    const json all = camera.json("GET", "/api/v1/channels/1/parameters");
    EXPECT_EQ(all.at("scheme"), 0);
    EXPECT_EQ(all.at("revision"), 17);
    EXPECT_EQ(all.at("parameters").at(0), json({{"key", 34},
                                                {"name", "KEY_BRIGHTNESS"},
                                                {"value", 60},
                                                {"default", 50},
                                                {"stored", 50},
                                                {"unsaved", true}}));
    EXPECT_FALSE(all.at("parameters").at(1).contains("stored"));
    const json some = camera.json("GET", "/api/v1/channels/1/parameters?keys=contrast,0x22");
    ASSERT_EQ(some.at("parameters").size(), 2U);
    EXPECT_EQ(some.at("parameters").at(0).at("key"), 2353);
    EXPECT_EQ(some.at("parameters").at(1).at("key"), 34);
}

TEST(ParameterRoutes, KeysOfTheListThatAreUnknownAreNamed) {
    FakeCamera camera;
    const HttpResponse unknown = camera.call("GET", "/api/v1/channels/1/parameters?keys=34,contrats");
    EXPECT_EQ(unknown.nStatus, 404);
    EXPECT_THAT(detailOf(unknown), HasSubstr("did you mean \"contrast\"?"));
    const HttpResponse unheld = camera.call("GET", "/api/v1/channels/1/parameters?keys=153");
    EXPECT_EQ(unheld.nStatus, 404);
    EXPECT_EQ(json::parse(unheld.strBody).at("key"), 153);
    for (const char* list : {"", ",", "34,", "34,,34"}) {
        EXPECT_EQ(camera.call("GET", std::string("/api/v1/channels/1/parameters?keys=") + list).nStatus, 404) << list;
    }
    EXPECT_THAT(detailOf(camera.call("GET", "/api/v1/channels/1/parameters?kyes=34")),
                HasSubstr("did you mean \"keys\"?"));
    EXPECT_EQ(camera.call("GET", "/api/v1/channels/1/parameters?keys=34&keys=34").nStatus, 422);
}

TEST(ParameterRoutes, OneValueByNumberOrName) {
    FakeCamera camera;
    for (const char* key : {"34", "0x22", "brightness", "KEY_Brightness"}) {
        EXPECT_EQ(camera.json("GET", std::string("/api/v1/channels/1/parameters/") + key).at("value"), 60) << key;
    }
    EXPECT_EQ(camera.json("GET", "/api/v1/channels/1/parameters/1571").at("value"), 3);
}

TEST(ParameterRoutes, OneValueIsSet) {
    FakeCamera camera;
    const json value = camera.json("PUT", "/api/v1/channels/1/parameters/brightness", R"({"value":61})");
    EXPECT_EQ(value.at("value"), 61);
    EXPECT_EQ(value.at("unsaved"), true);
    camera.call("PUT", "/api/v1/channels/2/parameters/34", R"({"value":-1,"record":false})");
    EXPECT_THAT(camera.calls(), ElementsAre("set 34 61", "set 34 -1 unrecorded"));
}

TEST(ParameterRoutes, WhatNoSchemeHoldsAnswersWithWhatWasSent) {
    FakeCamera camera;
    EXPECT_EQ(camera.json("PUT", "/api/v1/channels/1/parameters/1571", R"({"value":2})").at("value"), 2);
}

TEST(ParameterRoutes, ARefusalNamesTheKey) {
    FakeCamera camera;
    camera.objHost.objFirst.changeRefusal = Refusal(Refusal::Kind::BadValue, "bad-value", "It takes 0 to 100.");
    const HttpResponse response = camera.call("PUT", "/api/v1/channels/1/parameters/34", R"({"value":161})");
    EXPECT_EQ(response.nStatus, 422);
    EXPECT_EQ(json::parse(response.strBody).at("key"), 34);
    EXPECT_EQ(json::parse(response.strBody).at("type"), "/problems/bad-value");
}

TEST(ParameterRoutes, ABusyChannelSaysWhenToTryAgain) {
    FakeCamera camera;
    camera.objHost.objFirst.refusal = Refusal(Refusal::Kind::Busy, "busy", "A reset is going on.").retryAfter(2);
    for (const char* target : {"/api/v1/channels/1/parameters/34", "/api/v1/channels/1/lens"}) {
        const HttpResponse response = camera.call("GET", target);
        EXPECT_EQ(response.nStatus, 409) << target;
        EXPECT_THAT(response.vecHeaders, ElementsAre(Pair("Retry-After", "2"))) << target;
    }
}

TEST(ParameterRoutes, SeveralAreSetEachForItself) {
    FakeCamera camera;
    camera.objHost.objFirst.nChangesSince = 2;
    const json done = camera.json("PATCH", "/api/v1/channels/1/parameters",
                                  R"({"parameters":[{"key":34,"value":61},{"key":"contrast","value":40}]})");
    EXPECT_EQ(done.at("revision"), 18) << "of the change, although there has been another one since";
    EXPECT_EQ(done.at("results"),
              json::parse(R"([{"key":34,"ok":true,"value":61},{"key":2353,"ok":true,"value":40}])"));
    camera.objHost.objFirst.changeRefusal = Refusal(Refusal::Kind::Refused, "camera-refused", "The camera refused it.");
    const json refused = camera.json("PATCH", "/api/v1/channels/1/parameters",
                                     R"({"parameters":[{"key":34,"value":62},{"key":1571,"value":1}],"record":false})");
    EXPECT_EQ(refused.at("results").at(0).at("ok"), false);
    EXPECT_EQ(refused.at("results").at(0).at("value"), 61);
    EXPECT_EQ(refused.at("results").at(0).at("problem").at("type"), "/problems/camera-refused");
    EXPECT_FALSE(refused.at("results").at(1).contains("value"));
    EXPECT_THAT(camera.calls(),
                ElementsAre("set 34 61", "set 2353 40", "set 34 62 unrecorded", "set 1571 1 unrecorded"));
}

TEST(ParameterRoutes, WhenTheBodyIsWrongNothingIsSetAndAllIsTold) {
    FakeCamera camera;
    const HttpResponse response =
        camera.call("PATCH", "/api/v1/channels/1/parameters",
                    R"({"parameters":[{"key":34,"value":61},{"key":"brigthness","value":1.5},{"value":1,"kee":2}]})");
    EXPECT_EQ(response.nStatus, 422);
    std::vector<std::string> vecPointers;
    const json problem = json::parse(response.strBody);
    for (const json& error : problem.at("errors")) {
        vecPointers.push_back(error.at("pointer"));
    }
    EXPECT_THAT(vecPointers,
                ElementsAre("/parameters/1/key", "/parameters/1/value", "/parameters/2/key", "/parameters/2/kee"));
    EXPECT_THAT(camera.calls(), IsEmpty());
}

TEST(ParameterRoutes, TwoHundredAndFiftySixAreTakenAtOnceAndNoMore) {
    FakeCamera camera;
    const auto bodyOf = [](int p_nCount) {
        json list = json::array();
        for (int i = 0; i < p_nCount; ++i) {
            list.push_back({{"key", 34}, {"value", i}});
        }
        return json({{"parameters", list}}).dump();
    };
    EXPECT_EQ(camera.json("PATCH", "/api/v1/channels/1/parameters", bodyOf(256)).at("results").size(), 256U);
    EXPECT_EQ(camera.calls().size(), 256U);
    EXPECT_EQ(camera.call("PATCH", "/api/v1/channels/1/parameters", bodyOf(257)).nStatus, 422);
    EXPECT_THAT(camera.calls(), IsEmpty());
}

TEST(ParameterRoutes, BackToTheDefaultOrToWhatIsStored) {
    FakeCamera camera;
    EXPECT_EQ(camera.json("POST", "/api/v1/channels/1/parameters/34/default").at("key"), 34);
    EXPECT_EQ(camera.json("POST", "/api/v1/channels/1/parameters/brightness/restore").at("key"), 34);
    EXPECT_THAT(camera.calls(), ElementsAre("default 34", "restore 34"));
}

TEST(ParameterRoutes, MetadataAndDocument) {
    FakeCamera camera;
    const json metadata = camera.json("GET", "/api/v1/channels/2/metadata");
    EXPECT_EQ(metadata.at("channel"), 2);
    EXPECT_EQ(metadata.at("revision"), 17);
    EXPECT_EQ(metadata.at("tabs").at(0).at("groups").at(0).at("showIf"), "82=1");
    const HttpResponse document = camera.call("GET", "/api/v1/channels/2/style");
    EXPECT_EQ(document.strType, "application/xml");
    EXPECT_EQ(document.strBody, "<style/>");
}

// --- Who asks ---

TEST(Call, TheHostLearnsWhoAskedAndItsMark) {
    FakeCamera camera;
    camera.call("POST", "/api/v1/channels/1/save", "", {{"x-client-id", "Tab-7_a"}});
    EXPECT_EQ(camera.objHost.objFirst.stLastActor.strName, "boss");
    EXPECT_EQ(camera.objHost.objFirst.stLastActor.strOrigin, "Tab-7_a");
    camera.calls();
    for (const std::string& mark : {std::string("a b"), std::string(41, 'x'), std::string("\"<script>")}) {
        EXPECT_EQ(camera.call("POST", "/api/v1/channels/1/save", "", {{"x-client-id", mark}}).nStatus, 400) << mark;
    }
    EXPECT_THAT(camera.calls(), IsEmpty());
}

// --- Schemes ---

TEST(SchemeRoutes, AllSchemesWithTheirTimes) {
    FakeCamera camera;
    const json view = camera.json("GET", "/api/v1/channels/1/schemes");
    EXPECT_EQ(view.at("schemes").at(0).at("inForce").at(1), json({{"start", "20:30"}, {"end", "24:00"}}));
    EXPECT_EQ(view.at("schemes").at(1).at("window"), json({{"start", "20:00"}, {"end", "20:30"}}));
    EXPECT_EQ(view.at("schemes").at(0).at("unsaved"), json::array({34}));
}

TEST(SchemeRoutes, SwitchingByItselfEndsBeforeAndBeginsAfterTheRest) {
    FakeCamera camera;
    camera.call("PATCH", "/api/v1/channels/1/schemes", R"({"current":1,"automatic":true,"follow":"schedule"})");
    camera.call("PATCH", "/api/v1/channels/1/schemes", R"({"current":4,"automatic":false})");
    EXPECT_THAT(camera.calls(), ElementsAre("follow schedule", "scheme 1", "automatic", "by hand", "scheme 4"));
}

TEST(SchemeRoutes, WhatIsNoSchemeOrNothingIsRefused) {
    FakeCamera camera;
    for (const char* body : {"{}", R"({"current":5})", R"({"current":-1})", R"({"follow":"moon"})",
                             R"({"automatic":1})", R"({"curent":1})"}) {
        EXPECT_EQ(camera.call("PATCH", "/api/v1/channels/1/schemes", body).nStatus, 422) << body;
    }
    for (const char* scheme : {"2", "-1", "x", "4", "99999999999"}) {
        EXPECT_EQ(camera.call("PATCH", std::string("/api/v1/channels/1/schemes/") + scheme, R"({"name":"N"})").nStatus,
                  404)
            << scheme;
    }
    EXPECT_THAT(camera.calls(), IsEmpty());
}

TEST(SchemeRoutes, AWindowIsSetBeforeTheName) {
    FakeCamera camera;
    camera.call("PATCH", "/api/v1/channels/1/schemes/1", R"({"name":"Late","window":{"start":"20:15","end":"24:00"}})");
    EXPECT_THAT(camera.calls(), ElementsAre("window 1 20:15 24:0", "name 1 Late"));
    camera.objHost.objFirst.refusal =
        Refusal(Refusal::Kind::Conflict, "window-not-storable", "The window starts after 24:00.");
    const HttpResponse response =
        camera.call("PATCH", "/api/v1/channels/1/schemes/1", R"({"window":{"start":"25:00","end":"26:00"}})");
    EXPECT_EQ(response.nStatus, 409);
    EXPECT_EQ(typeOf(response), "/problems/window-not-storable");
}

TEST(SchemeRoutes, AWindowNeedsBothTimesAndNothingElse) {
    FakeCamera camera;
    for (const char* window : {R"({"start":"20:00"})", R"({"start":"20:00","end":"x"})", R"("20:00-24:00")", "null",
                               "{}", R"({"start":"20:00","end":"21:00","stop":"22:00"})"}) {
        EXPECT_EQ(
            camera.call("PATCH", "/api/v1/channels/1/schemes/1", "{\"window\":" + std::string(window) + "}").nStatus,
            422)
            << window;
    }
    EXPECT_THAT(camera.calls(), IsEmpty());
}

// --- Keeping ---

TEST(KeepingRoutes, SavingTellsWhatWasStoredAndWhatWasNot) {
    FakeCamera camera;
    const json saved = camera.json("POST", "/api/v1/channels/1/save");
    EXPECT_EQ(saved.at("saved"), json({0, 1}));
    EXPECT_EQ(saved.at("failed"),
              json::array({{{"scheme", 2}, {"code", 507}, {"detail", "It does not start before it ends."}}}));
    EXPECT_EQ(camera.json("POST", "/api/v1/channels/1/discard"), json::parse(R"({"discarded":[0],"failed":[]})"));
    EXPECT_EQ(camera.call("POST", "/api/v1/channels/1/restore-focus-and-exposure").nStatus, 204);
    EXPECT_THAT(camera.calls(), ElementsAre("save", "discard", "restore focus and exposure"));
}

TEST(KeepingRoutes, AResetWantsTheWord) {
    FakeCamera camera;
    for (const char* body :
         {"{}", R"({"confirm":"Factory"})", R"({"confirm":true})", R"({"confirm":"factory","x":1})"}) {
        EXPECT_EQ(camera.call("POST", "/api/v1/channels/1/reset", body).nStatus, 422) << body;
    }
    EXPECT_EQ(camera.call("POST", "/api/v1/channels/1/reset").nStatus, 400);
    EXPECT_THAT(camera.calls(), IsEmpty());
    EXPECT_EQ(camera.json("POST", "/api/v1/channels/1/reset", R"({"confirm":"factory"})").at("channel"), 1);
    EXPECT_THAT(camera.calls(), ElementsAre("reset"));
}

// --- Lens and driver ---

TEST(LensRoutes, RangesShutterAndItsSteps) {
    FakeCamera camera;
    EXPECT_EQ(camera.json("GET", "/api/v1/channels/1/ranges"),
              json::parse(R"({"ranges":[{"key":49,"default":7,"values":[7,8,9]}]})"));
    const json shutter = camera.json("GET", "/api/v1/channels/1/shutter");
    EXPECT_EQ(shutter, json::parse(R"({"place":3,"values":[25,50,100,120]})"));
    EXPECT_EQ(camera.json("PUT", "/api/v1/channels/1/shutter", R"({"place":2})"), shutter);
    EXPECT_EQ(camera.json("POST", "/api/v1/channels/1/shutter/up"), shutter);
    EXPECT_EQ(camera.json("POST", "/api/v1/channels/1/shutter/down"), shutter);
    EXPECT_THAT(camera.calls(), ElementsAre("shutter 2", "shutter step 1", "shutter step -1"));
}

TEST(LensRoutes, TheLensIsMovedToWhatIsNamed) {
    FakeCamera camera;
    const json lens = camera.json("GET", "/api/v1/channels/1/lens");
    EXPECT_EQ(lens.at("zoom"), json({{"position", 16384}, {"ratio", 1.5}}));
    EXPECT_EQ(camera.json("PUT", "/api/v1/channels/1/lens", R"({"zoom":20000})"), lens);
    camera.call("PUT", "/api/v1/channels/1/lens", R"({"focus":1,"iris":2,"focusMode":3})");
    EXPECT_EQ(camera.call("PUT", "/api/v1/channels/1/lens", "{}").nStatus, 422);
    EXPECT_THAT(camera.calls(), ElementsAre("lens to 20000 - - -", "lens to - 1 2 3"));
}

TEST(LensRoutes, EveryActionIsPassedOnAndNoOther) {
    FakeCamera camera;
    for (const char* action :
         {"zoom-in", "zoom-out", "focus-near", "focus-far", "auto-focus", "iris-open", "iris-close", "lens-reset"}) {
        camera.call("POST", std::string("/api/v1/channels/1/lens/") + action);
        EXPECT_THAT(camera.calls(), ElementsAre(std::string("lens ") + action));
    }
    const HttpResponse response = camera.call("POST", "/api/v1/channels/1/lens/zoom-inn");
    EXPECT_EQ(response.nStatus, 404);
    EXPECT_THAT(detailOf(response), HasSubstr("did you mean \"zoom-in\"?"));
}

TEST(LensRoutes, DayAndNight) {
    FakeCamera camera;
    EXPECT_EQ(camera.json("GET", "/api/v1/channels/1/day-night").at("state"), "day");
    EXPECT_EQ(camera.json("PUT", "/api/v1/channels/1/day-night", R"({"state":"night"})").at("state"), "night");
    EXPECT_EQ(camera.call("PUT", "/api/v1/channels/1/day-night", R"({"state":"dusk"})").nStatus, 422);
    EXPECT_THAT(camera.calls(), ElementsAre("night"));
}

TEST(LensRoutes, CommandStatusAndSensorCheck) {
    FakeCamera camera;
    EXPECT_EQ(camera.json("GET", "/api/v1/channels/1/commands/1568/status"),
              json({{"command", 1568}, {"running", true}}));
    EXPECT_EQ(camera.json("GET", "/api/v1/channels/1/commands/0x10/status").at("running"), false);
    EXPECT_EQ(camera.call("GET", "/api/v1/channels/1/commands/x/status").nStatus, 404);
    EXPECT_EQ(camera.call("GET", "/api/v1/channels/1/commands/-1/status").nStatus, 404);
    EXPECT_EQ(camera.json("POST", "/api/v1/channels/1/sensor-check", json({{"text", "(1,2,3)"}}).dump()),
              json({{"result", -5}, {"text", "77"}}));
    EXPECT_EQ(
        camera.call("POST", "/api/v1/channels/1/sensor-check", json({{"text", std::string(1025, 'x')}}).dump()).nStatus,
        422);
    EXPECT_THAT(camera.calls(), ElementsAre("check (1,2,3)"));
}

// --- Scene, clock, faults ---

TEST(SceneRoutes, ThePatchIsTheCamerasToJudge) {
    FakeCamera camera;
    EXPECT_EQ(camera.json("GET", "/api/v1/scene").at("lux"), 1000.0);
    EXPECT_EQ(camera.json("PATCH", "/api/v1/scene", R"({"fog":40,"light":{"lux":5}})").at("fog"), 0);
    EXPECT_THAT(camera.calls(), ElementsAre(R"(scene {"fog":40,"light":{"lux":5}})"));
    camera.objHost.refusal = Refusal(Refusal::Kind::BadValue, "bad-value", "\"fog\" must be from 0 to 100.");
    EXPECT_EQ(camera.call("PATCH", "/api/v1/scene", R"({"fog":140})").nStatus, 422);
}

TEST(SceneRoutes, TheClockKeepsItsSpeedUnlessAnotherIsNamed) {
    FakeCamera camera;
    EXPECT_EQ(camera.json("PUT", "/api/v1/clock", R"({"simulated":true,"time":"2026-11-21T22:40:05","speed":1440})"),
              json({{"time", "2026-11-21T22:40:05"}, {"simulated", true}, {"speed", 1440}, {"revision", 3}}));
    camera.call("PUT", "/api/v1/clock", R"({"simulated":true})");
    camera.call("PUT", "/api/v1/clock", R"({"simulated":false})");
    camera.call("PUT", "/api/v1/clock", R"({"simulated":false,"speed":1})");
    camera.call("PUT", "/api/v1/clock", R"({"simulated":true,"speed":0})");
    EXPECT_THAT(camera.calls(), ElementsAre("clock simulated 2026-11-21T22:40:05 1440", "clock simulated  1440",
                                            "clock real  1", "clock real  1", "clock simulated  0"));
    for (const char* body :
         {"{}", R"({"simulated":1})", R"({"simulated":true,"speed":7201})", R"({"simulated":true,"speed":-1})",
          R"({"simulated":false,"speed":60})", R"({"simulated":false,"time":"2026-11-21T22:40:05"})",
          R"({"simulated":true,"tiem":""})"}) {
        EXPECT_EQ(camera.call("PUT", "/api/v1/clock", body).nStatus, 422) << body;
    }
    EXPECT_THAT(camera.calls(), IsEmpty());
}

TEST(SceneRoutes, FaultsComeAndGo) {
    FakeCamera camera;
    const HttpResponse made = camera.call("POST", "/api/v1/faults", R"({"text":"cmd=2369 silent=1"})");
    EXPECT_EQ(made.nStatus, 201);
    EXPECT_EQ(json::parse(made.strBody),
              json({{"id", 2}, {"text", "cmd=2369 silent=1"}, {"matched", 0}, {"acted", 0}}));
    EXPECT_EQ(camera.json("GET", "/api/v1/faults").at("faults").size(), 2U);
    EXPECT_EQ(camera.call("DELETE", "/api/v1/faults/2").nStatus, 204);
    EXPECT_EQ(camera.call("DELETE", "/api/v1/faults").nStatus, 204);
    EXPECT_EQ(camera.call("DELETE", "/api/v1/faults/x").nStatus, 404);
    EXPECT_EQ(camera.call("POST", "/api/v1/power-cycle").nStatus, 204);
    EXPECT_THAT(camera.calls(), ElementsAre("fault cmd=2369 silent=1", "no fault 2", "no faults", "power cycle"));
}

// --- Log ---

TEST(LogRoutes, TheLogGoesOnWhereTheReaderWas) {
    FakeCamera camera;
    for (unsigned i = 1; i <= 3; ++i) {
        camera.objHost.vecLog.push_back({i, "2026-11-21T22:40:05", "driver", 1, 34, "set", -5, "ia \"x\"\xFF"});
    }
    const json first = camera.json("GET", "/api/v1/log?limit=2");
    EXPECT_EQ(first.at("entries").size(), 2U);
    EXPECT_EQ(first.at("last"), 2);
    const json rest = camera.json("GET", "/api/v1/log?after=2");
    EXPECT_EQ(rest.at("entries").at(0).at("number"), 3);
    EXPECT_EQ(camera.json("GET", "/api/v1/log?after=3"), json({{"entries", json::array()}, {"last", 3}}));
    for (const char* query : {"after=-1", "after=x", "limit=0", "limit=5001", "limit=", "befor=1", "after=1&after=2"}) {
        EXPECT_EQ(camera.call("GET", std::string("/api/v1/log?") + query).nStatus, 422) << query;
    }
}

TEST(LogRoutes, TheLevelOfTheLibrarysMessages) {
    FakeCamera camera;
    EXPECT_EQ(camera.json("PUT", "/api/v1/messages/level", R"({"level":6})").at("level"), 6);
    EXPECT_EQ(camera.json("GET", "/api/v1/messages/level").at("level"), 6);
    EXPECT_EQ(camera.call("PUT", "/api/v1/messages/level", R"({"level":9})").nStatus, 422);
    EXPECT_EQ(camera.call("PUT", "/api/v1/messages/level", R"({"level":-1})").nStatus, 422);
    EXPECT_THAT(camera.calls(), ElementsAre("level 6"));
}

TEST(LogRoutes, TheVersion) {
    FakeCamera camera;
    EXPECT_EQ(camera.json("GET", "/api/v1/version"), json({{"name", "camerad"}, {"version", "1.1.0"}, {"api", "v1"}}));
}

// --- Health ---

TEST(MetricsRoutes, HealthIsGoodWhileAChannelIsBusyAndBadWhenItIsDown) {
    FakeCamera camera;
    EXPECT_EQ(camera.json("GET", "/healthz"), json::parse(R"({"status":"ok","channels":{"1":"ready","2":"ready"}})"));
    camera.objHost.objSecond.stView.bReady = false;
    camera.objHost.objSecond.stView.strBusyWith = "reset";
    EXPECT_EQ(camera.json("GET", "/healthz"), json::parse(R"({"status":"ok","channels":{"1":"ready","2":"busy"}})"));
    camera.objHost.objSecond.stView.strBusyWith.clear();
    const HttpResponse response = camera.call("GET", "/healthz");
    EXPECT_EQ(response.nStatus, 503);
    EXPECT_EQ(json::parse(response.strBody),
              json::parse(R"({"status":"failing","channels":{"1":"ready","2":"down"}})"));
}

}  // namespace
}  // namespace camerad
