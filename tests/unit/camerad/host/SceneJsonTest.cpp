#include "apps/camerad/host/SceneJson.h"

#include "apps/camerad/host/Refusal.h"
#include "tests/unit/camerad/host/Rig.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using camerad::patched;
using camerad::toJson;
using testing::HasSubstr;

namespace {

TEST(SceneJson, OfAFixedLight) {
    EXPECT_EQ(R"({"light":{"kind":"fixed","lux":1000.0},"lux":1000.0,"fog":0,"wind":20,"car":true,"distance":5.0,
                  "temperature":20.0,"clockShift":0})"_json,
              toJson(simcam::SceneState{}, 1000));
}

TEST(SceneJson, OfADayKeepsWhatThePatchLeavesOut) {
    const simcam::SceneState day = patched({}, R"({"light":{"kind":"day","sunset":"21:15","nightLux":0.5}})"_json);
    EXPECT_EQ(
        R"({"kind":"day","sunrise":"06:00","sunset":"21:15","twilightMinutes":30,"dayLux":20000.0,"nightLux":0.5})"_json,
        toJson(day, 1)["light"]);
    EXPECT_EQ("07:00", toJson(patched(day, R"({"light":{"sunrise":"07:00"}})"_json), 1)["light"]["sunrise"]);
}

TEST(SceneJson, TakesEachField) {
    const simcam::SceneState scene = patched(
        {}, R"({"fog":1,"wind":2,"car":false,"distance":3.5,"temperature":-4,"clockShift":-5,"light":{"lux":6}})"_json);
    EXPECT_EQ(R"({"light":{"kind":"fixed","lux":6.0},"lux":7.0,"fog":1,"wind":2,"car":false,"distance":3.5,
                  "temperature":-4.0,"clockShift":-5})"_json,
              toJson(scene, 7));
}

struct RefusedPatch {
    const char* patch;
    const char* text;
};
class ScenePatch : public testing::TestWithParam<RefusedPatch> {};

TEST_P(ScenePatch, ThatIsWrongSaysWhere) {
    const camerad::Refusal refusal = refusalOf([] { patched({}, nlohmann::json::parse(GetParam().patch)); });
    EXPECT_EQ(camerad::Refusal::Kind::BadValue, refusal.kind()) << GetParam().patch;
    EXPECT_THAT(refusal.what(), HasSubstr(GetParam().text)) << GetParam().patch;
}

INSTANTIATE_TEST_SUITE_P(
    Rows, ScenePatch,
    testing::Values(
        RefusedPatch{"[]", "object"}, RefusedPatch{R"({"fog":101})", "0 to 100"},
        RefusedPatch{R"({"fog":1.5})", "whole number"}, RefusedPatch{R"({"fog":"1"})", "\"fog\""},
        RefusedPatch{R"({"fog":null})", "\"fog\""}, RefusedPatch{R"({"fog":18446744073709551615})", "0 to 100"},
        RefusedPatch{R"({"wind":-1})", "\"wind\""}, RefusedPatch{R"({"car":1})", "true or false"},
        RefusedPatch{R"({"distance":0})", "\"distance\""}, RefusedPatch{R"({"temperature":86})", "-60 to 85"},
        RefusedPatch{R"({"clockShift":86401})", "\"clockShift\""}, RefusedPatch{R"({"lux":5})", "cannot be set"},
        RefusedPatch{R"({"fogg":5})", "did you mean \"fog\""}, RefusedPatch{R"({"light":5})", "\"light\""},
        RefusedPatch{R"({"light":{"kind":"moon"}})", "light/kind"},
        RefusedPatch{R"({"light":{"lux":200001}})", "light/lux"},
        RefusedPatch{R"({"light":{"dayLux":5}})", "\"dayLux\""},
        RefusedPatch{R"({"light":{"kind":"day","lux":5}})", "\"lux\""},
        RefusedPatch{R"({"light":{"kind":"day","sunrise":"24:00"}})", "light/sunrise"},
        RefusedPatch{R"({"light":{"kind":"day","sunrise":"21:00"}})", "before the sunset"},
        RefusedPatch{R"({"light":{"kind":"day","sunset":600}})", "light/sunset"},
        RefusedPatch{R"({"light":{"kind":"day","twilightMinutes":0}})", "1 to 180"},
        RefusedPatch{R"({"light":{"kind":"day","dayLux":0.01}})", "nightLux"}));

}  // namespace
