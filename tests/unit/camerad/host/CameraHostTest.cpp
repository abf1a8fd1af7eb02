// The camera that the process owns: starting, stopping, the channels beside each other, clock, faults, log, power.
#include "tests/unit/camerad/host/Rig.h"

#include "platform/Clock.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <future>
#include <thread>

using camerad::Refusal;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

std::vector<std::string> variants() {
    std::vector<std::string> names = {""};
    for (const auto& entry : std::filesystem::directory_iterator(std::string(ROOTFS_DIR) + "/variants")) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

class CameraHostOf : public testing::TestWithParam<std::string> {};

TEST_P(CameraHostOf, EveryChannelIsReadyAndCanBeChanged) {
    Rig rig(GetParam());
    rig.start();
    ASSERT_FALSE(rig.host().channels().empty());
    for (const int channel : rig.host().channels()) {
        EXPECT_TRUE(rig.channel(channel).view().bReady) << rig.channel(channel).view().strProblem;
        EXPECT_FALSE(rig.channel(channel).values().vecValues.empty());
        for (const camerad::SchemeView& scheme : rig.channel(channel).schemes().vecSchemes) {
            EXPECT_EQ(0, scheme.stWindow.check());
        }
        const bool thermal = std::string::npos != GetParam().find("thermal") && 2 == channel;
        EXPECT_EQ(thermal, rig.channel(channel).isThermal());
        const std::uint64_t before = rig.end();
        const u32 key = nullptr == rig.channel(channel).style()->find(34) ? 8206 : 34;
        EXPECT_FALSE(rig.set(key, 61, channel).refusal);
        EXPECT_THAT(rig.sets(before),
                    ElementsAre("ia ch" + std::to_string(channel - 1) + " set " + std::to_string(key) + " 61 = 0"));
        EXPECT_THAT(rig.channel(channel).save(kAnna).vecSchemes, ElementsAre(0));
    }
    rig.restart();
    for (const int channel : rig.host().channels()) {
        EXPECT_TRUE(rig.channel(channel).view().bReady);
    }
}

INSTANTIATE_TEST_SUITE_P(Variants, CameraHostOf, testing::ValuesIn(variants()),
                         [](const testing::TestParamInfo<std::string>& p_stInfo) {
                             std::string name = p_stInfo.param.empty() ? "camera" : p_stInfo.param;
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

TEST(CameraHost, OneThermalSensorIsTheSecondChannel) {
    Rig rig("thermal-only");
    rig.start();
    EXPECT_THAT(rig.host().channels(), ElementsAre(2));
    const Refusal refusal = refusalOf([&] { rig.channel(1); });
    EXPECT_EQ(Refusal::Kind::NotFound, refusal.kind());
    EXPECT_STREQ("the camera has no channel 1; it has 2", refusal.what());
}

TEST(CameraHost, WithoutItsFilesThereIsNoCamera) {
    Rig rig;
    rig.root().remove("/hd1/moduleConfig/moduleConfig.xml");
    EXPECT_THROW(rig.start(), std::runtime_error);
    rig.root().remove("/mnt/mtd/code/factory_setting/machineinfo.ini");
    EXPECT_THROW(rig.start(), std::runtime_error);
}

TEST(CameraHost, AChannelThatCannotStartSaysWhyAndTheOtherOneWorks) {
    Rig rig("thermal");
    rig.root().remove("/hd1/moduleConfig/sensorConfig/style/Style_Thermal.xml");
    rig.start();
    EXPECT_TRUE(rig.channel(1).view().bReady);
    EXPECT_FALSE(rig.set(34, 60).refusal);
    const camerad::ChannelView view = rig.channel(2).view();
    EXPECT_FALSE(view.bReady);
    EXPECT_THAT(view.strProblem, HasSubstr("style document"));
    EXPECT_EQ("not-ready", refusalOf([&] { rig.channel(2).values(); }).type());
    EXPECT_EQ("not-ready", refusalOf([&] { rig.channel(2).save(kAnna); }).type());
}

TEST(CameraHost, AStuckDriverCallHoldsUpItsOwnChannelOnly) {
    Rig rig("thermal");
    rig.settings().nWaitMilliseconds = 60000;
    rig.start();
    rig.host().setClock(false, "", 1, kAnna);
    rig.host().addFault("cmd=34 ch=0 opt=set delay=3600000000 times=1", kAnna);
    std::promise<void> begun;
    std::thread stuck([&] {
        begun.set_value();
        EXPECT_FALSE(rig.set(34, 60).refusal);
    });
    begun.get_future().wait();
    EXPECT_TRUE(eventually([&] { return 1 == rig.host().faults()["faults"][0]["acted"]; }));
    EXPECT_FALSE(rig.set(8206, 61, 2).refusal);
    EXPECT_FALSE(rig.channel(1).values().vecValues.empty()) << "what is known needs no worker";
    EXPECT_EQ(50, rig.driver(34));
    rig.host().setClock(true, "", 0, kAnna);  // lets the wait pass
    stuck.join();
    EXPECT_EQ(60, rig.driver(34));
}

TEST(CameraHost, ACallThatTakesTooLongGoesOnWithoutItsCaller) {
    Rig rig;
    rig.settings().nWaitMilliseconds = 1000;
    rig.start();
    rig.host().setClock(false, "", 1, kAnna);
    rig.host().addFault("cmd=34 opt=set delay=3600000000 times=1", kAnna);
    const Refusal begun = refusalOf([&] { rig.set(34, 60); });
    EXPECT_EQ(Refusal::Kind::Busy, begun.kind());
    EXPECT_THAT(begun.what(), HasSubstr("takes longer"));
    EXPECT_TRUE(begun.retryAfter());
    const Refusal waiting = refusalOf([&] { rig.set(2353, 60); });
    EXPECT_EQ(Refusal::Kind::Busy, waiting.kind());
    EXPECT_THAT(waiting.what(), HasSubstr("nothing was done"));
    rig.host().setClock(true, "", 0, kAnna);
    EXPECT_TRUE(eventually([&] { return 60 == rig.value(34); }));
    EXPECT_EQ(50, rig.value(2353));
    EXPECT_FALSE(rig.set(2353, 61).refusal);
}

TEST(CameraHost, EndsAtOnceWhileADriverCallIsStuck) {
    Rig rig;
    rig.settings().nWaitMilliseconds = 1000;
    rig.start();
    rig.host().setClock(false, "", 1, kAnna);
    rig.host().addFault("cmd=34 opt=set delay=3600000000", kAnna);
    EXPECT_EQ(Refusal::Kind::Busy, refusalOf([&] { rig.set(34, 60); }).kind());
    const auto began = std::chrono::steady_clock::now();
    rig.stop();
    EXPECT_LT(std::chrono::steady_clock::now() - began, std::chrono::seconds(30));
}

TEST(CameraHost, DuringAResetEverythingElseIsRefusedAtOnce) {
    Rig rig("thermal");
    rig.start();
    rig.host().setClock(false, "", 1, kAnna);
    rig.host().addFault("cmd=4112 ch=0 delay=3600000000 times=1", kAnna);
    const auto listener = rig.listen({1, {"busy"}});
    std::thread reset([&] { rig.channel(1).reset(kAnna); });
    EXPECT_EQ("reset", listener->await("busy")["operation"]);
    EXPECT_EQ("reset", rig.channel(1).view().strBusyWith);
    const Refusal refusal = refusalOf([&] { rig.set(34, 60); });
    EXPECT_EQ(Refusal::Kind::Busy, refusal.kind());
    EXPECT_THAT(refusal.what(), HasSubstr("busy with a reset"));
    EXPECT_TRUE(refusal.retryAfter());
    EXPECT_EQ(Refusal::Kind::Busy, refusalOf([&] { rig.channel(1).reset(kAnna); }).kind());
    EXPECT_EQ(Refusal::Kind::Busy, refusalOf([&] { rig.host().powerCycle(kAnna); }).kind());
    EXPECT_FALSE(rig.set(8206, 61, 2).refusal) << "the other channel is free";
    rig.host().setClock(true, "", 0, kAnna);
    reset.join();
    EXPECT_TRUE(listener->await("busy")["operation"].is_null());
    EXPECT_FALSE(rig.set(34, 60).refusal);
    EXPECT_TRUE(rig.channel(2).view().bReady);
}

TEST(CameraHost, AResetOfOneChannelLeavesTheOtherOneWithoutStoredFiles) {
    Rig rig("thermal");
    rig.start();
    rig.channel(1).reset(kAnna);
    EXPECT_TRUE(eventually([&] { return !rig.channel(2).schemes().vecSchemes[0].vecUnsaved.empty(); }));
    EXPECT_THAT(rig.channel(2).save(kAnna).vecSchemes, ElementsAre(0, 1, 2, 3));
    EXPECT_THAT(rig.channel(2).schemes().vecSchemes[0].vecUnsaved, IsEmpty());
}

TEST(CameraHost, APowerCutLosesWhatWasNotSaved) {
    Rig rig("thermal");
    rig.start();
    rig.set(34, 60);
    rig.channel(1).save(kAnna);
    rig.set(34, 70);
    rig.set(8206, 61, 2);
    const auto listener = rig.listen({1, {"busy", "scheme"}});
    rig.host().powerCycle(kAnna);
    EXPECT_EQ("start", listener->await("busy")["operation"]);
    EXPECT_EQ("start", listener->await("scheme")["why"]);
    EXPECT_EQ(60, rig.value(34));
    EXPECT_EQ(60, rig.driver(34));
    EXPECT_EQ(50, rig.value(8206, 2));
    EXPECT_EQ("", rig.channel(1).view().strBusyWith);
    EXPECT_FALSE(rig.set(34, 61).refusal);
}

TEST(CameraHost, APowerCutThatAChannelHoldsUpIsTakenBack) {
    Rig rig("thermal");
    rig.settings().nWaitMilliseconds = 1000;
    rig.settings().nResetMilliseconds = 2000;
    rig.start();
    EXPECT_TRUE(eventually([&] { return rig.channel(1).view().bReady && rig.channel(2).view().bReady; }));
    EXPECT_TRUE(eventually([&] { return rig.channel(1).view().strBusyWith.empty(); }));
    rig.host().setClock(false, "", 1, kAnna);
    rig.host().addFault("cmd=34 ch=0 opt=set delay=3600000000 times=1", kAnna);
    EXPECT_EQ(Refusal::Kind::Busy, refusalOf([&] { rig.set(34, 60); }).kind());
    EXPECT_EQ(1, rig.host().faults()["faults"][0]["acted"]) << "it has begun";
    EXPECT_EQ(Refusal::Kind::Busy, refusalOf([&] { rig.host().powerCycle(kAnna); }).kind());
    rig.host().setClock(true, "", 0, kAnna);
    EXPECT_TRUE(eventually([&] { return rig.channel(1).view().strBusyWith.empty(); }));
    EXPECT_TRUE(eventually([&] { return rig.channel(2).view().bReady; }));
    EXPECT_TRUE(eventually([&] { return 60 == rig.value(34); }));
    EXPECT_TRUE(eventually([&] {
        try {
            return !rig.set(34, 62).refusal && !rig.set(8206, 62, 2).refusal;
        } catch (const Refusal&) {
            return false;
        }
    }));
}

// --- Clock ---

TEST(CameraHost, TheClockCanBeSimulated) {
    Rig rig;
    rig.start();
    EXPECT_TRUE(rig.host().clock().bSimulated);
    EXPECT_EQ(0, rig.host().clock().nSpeed);
    const auto listener = rig.listen({0, {"clock"}});
    rig.host().setClock(true, "2026-11-21T22:40:05", 0, kAnna);
    nlohmann::json told = listener->await("clock");
    told.erase("revision");
    EXPECT_EQ(R"({"time":"2026-11-21T22:40:05","simulated":true,"speed":0})"_json, told);
    rig.host().setClock(true, "", 7200, kAnna);
    EXPECT_TRUE(eventually([&] { return rig.host().clock().strTime > "2026-11-22T02"; }));
    rig.host().setClock(true, "2026-11-21T22:40:05", 0, kAnna);
    EXPECT_EQ("2026-11-21T22:40:05", rig.host().clock().strTime);
    rig.host().setClock(false, "", 1, kAnna);
    EXPECT_FALSE(platform::Clock::isHeld());
    EXPECT_FALSE(rig.host().clock().bSimulated);
    EXPECT_EQ(Refusal::Kind::BadValue,
              refusalOf([&] { rig.host().setClock(false, "2026-11-21T22:40:05", 1, kAnna); }).kind());
    EXPECT_EQ(Refusal::Kind::BadValue, refusalOf([&] { rig.host().setClock(true, "", 7201, kAnna); }).kind());
    EXPECT_EQ(Refusal::Kind::BadValue, refusalOf([&] { rig.host().setClock(true, "now", 1, kAnna); }).kind());
}

TEST(CameraHost, AFastDaySwitchesTheSchemesWhileManySetTheClock) {
    Rig rig("thermal");
    rig.settings().nWaitMilliseconds = 60000;
    rig.start();
    // A step of the fast clock is work for many seconds on a slow machine, and until its end the clock refuses to be set.
    const auto setClock = [&rig](bool p_bSimulated, const std::string& p_strTime, int p_nSpeed) {
        EXPECT_TRUE(eventually([&] {
            return "none" == refusalOf([&] { rig.host().setClock(p_bSimulated, p_strTime, p_nSpeed, kAnna); }).type();
        }));
    };
    rig.channel().setWindow(0, {0, 0, 12, 0}, kAnna);
    rig.channel().setWindow(1, {12, 0, 24, 0}, kAnna);
    rig.channel().setFollow("schedule", kAnna);
    rig.channel().setAutomatic(true, kAnna);
    const auto listener = rig.listen({1, {"scheme"}});
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&, i] {
            for (int k = 0; k < 10; ++k) {
                setClock(0 != (i + k) % 3, "", 7200);
                rig.set(34, i * 10 + k);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (const auto& [time, scheme] :
         {std::make_pair("2024-05-01T11:50:00", 1), std::make_pair("2024-05-01T23:50:00", 0)}) {
        setClock(true, time, 0);
        platform::Clock::advance(2000000);
        setClock(true, "", 7200);
        const auto fnThere = [nTo = scheme](const nlohmann::json& p_objEvent) { return nTo == p_objEvent["to"]; };
        EXPECT_FALSE(listener->await("scheme", fnThere).is_null()) << time;
    }
    EXPECT_FALSE(rig.set(34, 99).refusal);
}

TEST(CameraHost, AClockThatWasRunningIsLeftRunning) {
    Rig rig;
    platform::Clock::release();
    rig.start();
    EXPECT_FALSE(rig.host().clock().bSimulated);
    rig.host().setClock(true, "2026-11-21T22:40:05", 10, kAnna);
    rig.stop();
    EXPECT_FALSE(platform::Clock::isHeld());
}

// --- Scene, faults, log ---

TEST(CameraHost, TheSceneIsChangedAsAWholeOrNotAtAll) {
    Rig rig;
    rig.start();
    const auto listener = rig.listen({0, {"scene"}});
    rig.host().changeScene(R"({"fog":40,"light":{"kind":"day","sunrise":"05:30"}})"_json, kAnna);
    const nlohmann::json scene = listener->await("scene");
    EXPECT_EQ(40, scene["fog"]);
    EXPECT_EQ("05:30", scene["light"]["sunrise"]);
    EXPECT_NEAR(20000.0, scene["lux"].get<double>(), 0.001) << "at noon";
    EXPECT_EQ(scene, rig.host().scene());
    const Refusal refusal = refusalOf([&] { rig.host().changeScene(R"({"wind":5,"fog":101})"_json, kAnna); });
    EXPECT_EQ(Refusal::Kind::BadValue, refusal.kind());
    EXPECT_EQ(20, rig.host().scene()["wind"]);
}

// A page hears of a change as an answer and as an event, in any order; the revision tells it which is the newer.
TEST(CameraHost, WhatIsToldHasARevisionThatGrows) {
    Rig rig;
    rig.start();
    const auto listener = rig.listen({0, {"scene", "clock", "schemes"}});
    const auto expectGrowth = [&](const std::string& p_strType, const std::function<void(int)>& p_fnChange,
                                  const std::function<std::uint64_t()>& p_fnNow) {
        std::uint64_t last = p_fnNow();
        for (int i = 1; i <= 3; ++i) {
            p_fnChange(i);
            const nlohmann::json event = listener->await(p_strType, [last](const nlohmann::json& p_objEvent) {
                return p_objEvent.at("revision").get<std::uint64_t>() > last;
            });
            ASSERT_FALSE(event.is_null()) << p_strType;
            last = event.at("revision").get<std::uint64_t>();
            EXPECT_EQ(last, p_fnNow()) << p_strType;
        }
    };
    expectGrowth(
        "scene",
        [&](int p_nTime) {
            rig.host().changeScene({{"fog", p_nTime}}, kAnna);
        },
        [&] { return rig.host().scene().at("revision").get<std::uint64_t>(); });
    expectGrowth(
        "schemes", [&](int p_nTime) { rig.channel().setSchemeName(1, std::to_string(p_nTime), kAnna); },
        [&] { return rig.channel().schemes().nRevision; });
    rig.host().setClock(false, "", 1, kAnna);  // a simulated one is told once a second, changed or not
    expectGrowth(
        "clock", [&](int p_nTime) { rig.host().setClock(false, "", p_nTime, kAnna); },
        [&] { return rig.host().clock().nRevision; });
}

TEST(CameraHost, FaultsAreListedWithWhatBecameOfThem) {
    Rig rig;
    rig.start();
    const auto listener = rig.listen({0, {"faults"}});
    const int id = rig.host().addFault("cmd=34 opt=set result=-5 times=1", kAnna);
    EXPECT_EQ(1u, listener->await("faults")["faults"].size());
    rig.set(34, 60);
    EXPECT_EQ(1, rig.host().faults()["faults"][0]["acted"]);
    EXPECT_EQ(id, rig.host().faults()["faults"][0]["id"]);
    rig.host().removeFault(id, kAnna);
    EXPECT_THAT(rig.host().faults()["faults"], IsEmpty());
    EXPECT_EQ(Refusal::Kind::NotFound, refusalOf([&] { rig.host().removeFault(id, kAnna); }).kind());
    EXPECT_EQ(Refusal::Kind::BadValue, refusalOf([&] { rig.host().addFault("cmd=x", kAnna); }).kind());
    for (int i = 0; i < 64; ++i) {
        rig.host().addFault("cmd=190 result=-1", kAnna);
    }
    EXPECT_EQ(Refusal::Kind::Conflict, refusalOf([&] { rig.host().addFault("cmd=190 result=-1", kAnna); }).kind());
    rig.host().clearFaults(kAnna);
    EXPECT_THAT(rig.host().faults()["faults"], IsEmpty());
}

TEST(CameraHost, TheLogTellsDriverCallsAndMessages) {
    Rig rig;
    rig.start();
    const std::vector<camerad::LogEntry> before = rig.host().log(0, 5000);
    const auto listener = rig.listen({0, {"driver", "message"}});
    rig.set(34, 60);
    rig.host().addMessage("\033[31mone\ttwo\033[0m\n");
    const nlohmann::json message = listener->await("message");
    EXPECT_EQ("one two ", message["text"]);
    const std::vector<camerad::LogEntry> log = rig.host().log(before.back().nNumber, 5000);
    ASSERT_EQ(2u, log.size());
    EXPECT_EQ("driver", log[0].strKind);
    EXPECT_EQ(1, log[0].nChannel);
    EXPECT_EQ(34u, log[0].nCommand);
    EXPECT_EQ("set", log[0].strOption);
    EXPECT_EQ("ia ch0 set 34 60 = 0", log[0].strText);
    EXPECT_EQ("message", log[1].strKind);
    EXPECT_EQ(1u, rig.host().log(before.back().nNumber, 1).size());
    const camerad::HostCounters counters = rig.host().counters();
    EXPECT_GE(counters.mapDriver.at({34, "set"}).nCalls, 2u);
    EXPECT_EQ(1u, counters.nMessages);
}

TEST(CameraHost, WhatTheVideoModuleIsToldIsLoggedAndCountedBesideTheDriver) {
    constexpr u32 kMirror = 2384;
    Rig rig;
    rig.start();
    const auto listener = rig.listen({0, {"driver"}});
    const std::uint64_t before = rig.host().log(0, 5000).back().nNumber;
    const std::uint64_t told = rig.host().counters().mapNotifications[kMirror].nCalls;
    ASSERT_FALSE(rig.set(kMirror, 1).refusal);
    nlohmann::json video;
    listener->await("driver", [&](const nlohmann::json& p_objData) {
        for (const nlohmann::json& entry : p_objData["entries"]) {
            if ("video" == entry["kind"] && entry["number"].get<std::uint64_t>() > before) {
                video = entry;
            }
        }
        return !video.is_null();
    });
    ASSERT_FALSE(video.is_null());
    EXPECT_EQ(kMirror, video["command"]);
    EXPECT_EQ(1, video["channel"]);
    EXPECT_EQ("", video["option"]);
    EXPECT_EQ(0, video["result"]);
    std::vector<std::string> kinds;
    for (const camerad::LogEntry& entry : rig.host().log(before, 5000)) {
        if (kMirror == entry.nCommand) {
            kinds.push_back(entry.strKind);
        }
    }
    EXPECT_THAT(kinds, UnorderedElementsAre("driver", "video"));
    EXPECT_EQ(told + 1, rig.host().counters().mapNotifications[kMirror].nCalls);
    EXPECT_EQ(0u, rig.host().counters().mapNotifications[kMirror].nFailures);
}

TEST(CameraHost, ADriverCallThatFailsIsCountedAsThat) {
    Rig rig;
    rig.start();
    const camerad::HostCounters::Command before = rig.host().counters().mapDriver[{34, "set"}];
    EXPECT_EQ(0u, before.nFailures);
    rig.host().addFault("cmd=34 opt=set result=-5 times=1", kAnna);
    EXPECT_TRUE(rig.set(34, 60).refusal);
    camerad::HostCounters::Command now = rig.host().counters().mapDriver[{34, "set"}];
    EXPECT_EQ(before.nCalls + 1, now.nCalls);
    EXPECT_EQ(1u, now.nFailures);
    EXPECT_FALSE(rig.set(34, 60).refusal);
    now = rig.host().counters().mapDriver[{34, "set"}];
    EXPECT_EQ(before.nCalls + 2, now.nCalls);
    EXPECT_EQ(1u, now.nFailures);
}

TEST(CameraHost, DriverCallsAreToldTogetherAndTheRestIsCounted) {
    Rig rig;
    rig.start();
    const auto listener = rig.listen({0, {"driver"}});
    std::vector<camerad::Change> changes;
    for (int i = 0; i < 250; ++i) {
        changes.push_back({34, i % 100});
    }
    const std::uint64_t before = rig.host().log(0, 5000).back().nNumber;
    rig.channel().change(changes, true, kAnna);
    std::uint64_t told = 0;
    std::uint64_t dropped = 0;
    EXPECT_TRUE(eventually([&] {
        for (const camerad::EventPtr& event : listener->wait(std::chrono::milliseconds(0))) {
            const nlohmann::json data = nlohmann::json::parse(event->strData);
            EXPECT_LE(data["entries"].size(), 200u);
            for (const nlohmann::json& entry : data["entries"]) {
                told += entry["number"].get<std::uint64_t>() > before ? 1u : 0u;
            }
            dropped += data["dropped"].get<std::uint64_t>();
        }
        return told + dropped >= 250;
    }));
    EXPECT_EQ(rig.host().log(before, 5000).size(), told + dropped);
}

TEST(CameraHost, MessagesAreToldOneByOneAndTheRestIsCounted) {
    Rig rig;
    rig.start();
    const auto listener = rig.listen({0, {"message"}});
    for (int i = 0; i < 300; ++i) {
        rig.host().addMessage("line " + std::to_string(i));
    }
    std::uint64_t told = 0;
    std::uint64_t dropped = 0;
    EXPECT_TRUE(eventually([&] {
        for (const camerad::EventPtr& event : listener->wait(std::chrono::milliseconds(0))) {
            ++told;
            dropped += nlohmann::json::parse(event->strData)["dropped"].get<std::uint64_t>();
        }
        return told + dropped >= 300;
    }));
    EXPECT_EQ(300u, told + dropped);
}

TEST(CameraHost, TheLevelOfMessagesIsKeptInTheSignFile) {
    Rig rig;
    rig.start();
    const auto listener = rig.listen({0, {"level"}});
    EXPECT_EQ(1, rig.host().messageLevel().nLevel);
    rig.root().write("/mnt/mtd/sign/Debug.sign", "3\n0\n");
    rig.host().setMessageLevel(6, kAnna);
    EXPECT_EQ(6, rig.host().messageLevel().nLevel);
    EXPECT_EQ(R"({"level":6,"revision":1})"_json, listener->await("level")) << "for the other pages";
    EXPECT_EQ("6\n0\n", rig.root().read("/mnt/mtd/sign/Debug.sign"));
    EXPECT_EQ(Refusal::Kind::BadValue, refusalOf([&] { rig.host().setMessageLevel(9, kAnna); }).kind());
    EXPECT_EQ(Refusal::Kind::BadValue, refusalOf([&] { rig.host().setMessageLevel(-1, kAnna); }).kind());
    rig.host().setMessageLevel(1, kAnna);
}

}  // namespace
