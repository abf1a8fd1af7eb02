// The whole of camerad over real sockets, from a request to the driver and back.
#include "tests/unit/camerad/api/Schema.h"
#include "tests/unit/camerad/api/Stack.h"

#include <gmock/gmock.h>

#include <set>

namespace {

using nlohmann::json;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

const std::string kChannel = "/api/v1/channels/1";

TEST(CameraOverHttp, NobodySeesAnythingWithoutALogin) {
    Stack stack;
    StackClient client(stack.port());
    std::size_t asked = 0;
    for (const auto& path : description().at("paths").items()) {
        if (path.value().contains("get") && "public" != path.value().at("get").at("x-role")) {
            EXPECT_EQ(client.call("GET", path.key()).status, 401) << path.key();
            ++asked;
        }
    }
    EXPECT_GT(asked, 20U);
    EXPECT_EQ(client.json("GET", "/healthz").at("status"), "ok");
}

TEST(CameraOverHttp, AParameterThatIsSetReachesTheDriver) {
    Stack stack;
    const auto client = stack.admin();
    const std::uint64_t before = stack.rig().end();
    const json value = client->json("PUT", kChannel + "/parameters/brightness", R"({"value":61})");
    EXPECT_EQ(value.at("value"), 61);
    EXPECT_EQ(value.at("unsaved"), true);
    EXPECT_THAT(stack.rig().sets(before), Contains(HasSubstr("set 34 61 = 0")));
    EXPECT_EQ(client->json("GET", kChannel + "/parameters/34").at("value"), 61);

    EXPECT_EQ(client->call("PUT", kChannel + "/parameters/brightness", R"({"value":101})").status, 422);
    EXPECT_EQ(client->json("GET", kChannel + "/parameters/34").at("value"), 61);
}

TEST(CameraOverHttp, WithoutTheProofNothingIsChanged) {
    Stack stack;
    const auto client = stack.admin();
    client->header("X-CSRF-Token", "guessed");
    const std::uint64_t before = stack.rig().end();
    EXPECT_EQ(client->call("PUT", kChannel + "/parameters/34", R"({"value":61})").status, 403);
    EXPECT_THAT(stack.rig().sets(before), IsEmpty());
}

TEST(CameraOverHttp, ATokenAndAPasswordWorkWithoutASession) {
    Stack stack;
    const auto admin = stack.admin();
    const json token = admin->json("POST", "/api/v1/tokens", R"({"name":"script","role":"viewer","days":1})");
    StackClient script(stack.port());
    script.header("Authorization", "Bearer " + token.at("token").get<std::string>());
    EXPECT_EQ(script.json("GET", "/api/v1/session").at("via"), "bearer");
    EXPECT_EQ(script.call("PUT", kChannel + "/parameters/34", R"({"value":61})").status, 403);
    EXPECT_EQ(admin->call("DELETE", "/api/v1/tokens/" + token.at("id").get<std::string>()).status, 204);
    EXPECT_EQ(script.call("GET", "/api/v1/session").status, 401);

    StackClient basic(stack.port());
    const auto header = httplib::make_basic_authentication_header("admin", stack.password());
    basic.header(header.first, header.second);
    EXPECT_EQ(basic.json("PUT", kChannel + "/parameters/34", R"({"value":62})").at("value"), 62);
}

TEST(CameraOverHttp, EveryReadOfTheDescriptionAnswersAsItSays) {
    Stack stack("dome-thermal");
    const auto client = stack.admin();
    std::set<std::string> setAsked;
    for (const auto& path : description().at("paths").items()) {
        const std::string& pattern = path.key();
        const bool stream = std::string::npos != pattern.find("preview") || std::string::npos != pattern.find("events");
        if (!path.value().contains("get") || stream) {
            continue;
        }
        for (const int channel : stack.rig().host().channels()) {
            std::string target = pattern;
            for (const auto& [part, text] : std::map<std::string, std::string>{
                     {"{channel}", std::to_string(channel)}, {"{key}", "34"}, {"{number}", "1568"}}) {
                if (std::string::npos != target.find(part)) {
                    target.replace(target.find(part), part.size(), text);
                }
            }
            if (setAsked.insert(target).second) {
                EXPECT_EQ(client->call("GET", target).status, 200) << target;
            }
        }
    }
    EXPECT_GT(setAsked.size(), 30U);
}

TEST(CameraOverHttp, SchemesAreNamedTimedAndChosen) {
    Stack stack;
    const auto client = stack.admin();
    const json view = client->json("PATCH", kChannel + "/schemes/1",
                                   R"({"name":"Nacht ü","window":{"start":"20:00","end":"24:00"}})");
    EXPECT_EQ(view.at("schemes").at(1).at("name"), "Nacht ü");
    EXPECT_EQ(view.at("schemes").at(1).at("window").at("start"), "20:00");
    EXPECT_EQ(client->json("PATCH", kChannel + "/schemes", R"({"current":1})").at("current"), 1);
    EXPECT_EQ(client->json("GET", kChannel + "/parameters").at("scheme"), 1);
    const httplib::Response refused =
        client->call("PATCH", kChannel + "/schemes/1", R"({"window":{"start":"21:00","end":"20:00"}})");
    EXPECT_EQ(refused.status, 409);
    EXPECT_EQ(json::parse(refused.body).at("type"), "/problems/window-not-storable");
    EXPECT_EQ(client->call("PATCH", kChannel + "/schemes/1", json({{"name", std::string(41, 'x')}}).dump()).status,
              422);
}

TEST(CameraOverHttp, WhatWasSavedOutlivesTheProcessAndTheRestDoesNot) {
    Stack stack;
    {
        const auto client = stack.admin();
        client->json("PUT", kChannel + "/parameters/brightness", R"({"value":61})");
        const json saved = client->json("POST", kChannel + "/save");
        EXPECT_THAT(saved.at("saved"), Contains(0));
        EXPECT_THAT(saved.at("failed"), IsEmpty());
        client->json("PUT", kChannel + "/parameters/contrast", R"({"value":33})");
    }
    stack.restart();
    const auto client = stack.admin();
    const json values = client->json("GET", kChannel + "/parameters?keys=brightness,contrast").at("parameters");
    EXPECT_EQ(values.at(0).at("value"), 61);
    EXPECT_EQ(values.at(0).at("unsaved"), false);
    EXPECT_NE(values.at(1).at("value"), 33);
}

TEST(CameraOverHttp, DiscardingGoesBackToWhatIsStored) {
    Stack stack;
    const auto client = stack.admin();
    const json before = client->json("GET", kChannel + "/parameters/34").at("value");
    client->json("PUT", kChannel + "/parameters/34", R"({"value":99})");
    EXPECT_THAT(client->json("POST", kChannel + "/discard").at("discarded"), Contains(0));
    EXPECT_EQ(client->json("GET", kChannel + "/parameters/34").at("value"), before);
}

TEST(CameraOverHttp, OneClientHearsWhatAnotherDoes) {
    Stack stack;
    const auto first = stack.admin();
    const auto second = stack.admin();
    EventReader reader(stack.port(), first->headers());
    second->header("X-Client-Id", "other-tab");
    second->json("PUT", kChannel + "/parameters/34", R"({"value":63})");
    const json event = reader.await("parameter", brightnessIs(63));
    ASSERT_FALSE(event.is_null());
    EXPECT_EQ(event.at("by"), "admin");
    EXPECT_EQ(event.at("origin"), "other-tab");
    EXPECT_FALSE(reader.await("driver").is_null());
}

TEST(CameraOverHttp, EveryEventIsAsItIsDescribed) {
    Stack stack;
    const auto client = stack.admin();
    EventReader reader(stack.port(), client->headers());  // holds each event against the description
    httplib::Headers returning = client->headers();
    returning.emplace("Last-Event-ID", "of-another-run");
    EventReader latecomer(stack.port(), returning);
    client->json("PUT", kChannel + "/parameters/34", R"({"value":63})");
    client->json("PUT", kChannel + "/parameters/2368", R"({"value":1})");
    client->json("PATCH", kChannel + "/schemes", R"({"current":1})");
    client->json("PATCH", "/api/v1/scene", R"({"fog":40,"light":{"kind":"day"}})");
    client->json("PUT", "/api/v1/clock", R"({"simulated":true,"speed":60})");
    client->json("POST", "/api/v1/faults", R"({"text":"cmd=2369 opt=set silent=1"})");
    client->json("PUT", kChannel + "/day-night", R"({"state":"night"})");
    client->json("POST", kChannel + "/lens/zoom-in");
    client->json("PUT", "/api/v1/messages/level", R"({"level":2})");
    client->json("POST", kChannel + "/reset", R"({"confirm":"factory"})");
    stack.rig().host().addMessage("[sensor info] \x1b[32mas the library prints it \xFF");
    for (const auto& type : description().at("components").at("schemas").at("Events").at("properties").items()) {
        EventReader& who = "resync" == type.key() ? latecomer : reader;
        EXPECT_FALSE(who.await(type.key()).is_null()) << "no event of type " << type.key();
    }
}

TEST(CameraOverHttp, PicturesComeAloneAndMoving) {
    Stack stack;
    const auto client = stack.admin();
    const httplib::Response one = client->call("GET", kChannel + "/snapshot.jpg");
    EXPECT_THAT(one.body, StartsWith("\xFF\xD8"));
    std::mutex mutex;
    std::string text;
    const StackStream stream(stack.port(), kChannel + "/preview.mjpg?fps=25", client->headers(),
                             [&](const char* p_pData, std::size_t p_nSize) {
                                 const std::lock_guard<std::mutex> lock(mutex);
                                 text.append(p_pData, p_nSize);
                             });
    EXPECT_TRUE(eventually([&] {
        const std::lock_guard<std::mutex> lock(mutex);
        std::size_t parts = 0;
        for (std::size_t at = text.find("--frame\r\n"); std::string::npos != at;
             at = text.find("--frame\r\n", at + 1)) {
            ++parts;
        }
        return parts >= 3;
    }));
    const std::lock_guard<std::mutex> lock(mutex);
    EXPECT_THAT(text, StartsWith("--frame\r\nContent-Type: image/jpeg\r\nContent-Length: "));
}

TEST(CameraOverHttp, AStreamEndsSoonAfterItsSession) {
    Stack stack;
    const auto client = stack.admin();
    EventReader reader(stack.port(), client->headers());
    EXPECT_EQ(client->call("DELETE", "/api/v1/session").status, 204);
    EXPECT_TRUE(eventually([&] { return reader.hasEnded(); }));
}

TEST(CameraOverHttp, AStopEndsEveryStream) {
    Stack stack;
    const auto client = stack.admin();
    EventReader reader(stack.port(), client->headers());
    const StackStream stream(stack.port(), kChannel + "/preview.mjpg", client->headers(),
                             [](const char*, std::size_t) {});
    EXPECT_TRUE(eventually([&] { return 2 == stack.counters().nStreams; }));
    stack.stop();
    EXPECT_TRUE(eventually([&] { return reader.hasEnded() && stream.hasEnded(); }));
}

}  // namespace
