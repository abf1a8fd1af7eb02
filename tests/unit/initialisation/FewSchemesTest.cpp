// Modules with no user scheme, with one, and with as many as a module may have.
#include "tests/unit/initialisation/Operations.h"
#include "tests/unit/initialisation/StartedCamera.h"

namespace {

class FewSchemes : public StartedCamera {
protected:
    static Records defaults() { return with(factory(), KEY_SCHEME_MODE, 0); }
};

class SchemeSum : public FewSchemes, public testing::WithParamInterface<int> {};

}  // namespace

TEST_P(SchemeSum, EveryOperationWorks) {
    init("(max_scheme=" + std::to_string(GetParam()) + ")");
    for (const auto& vecOperations : {setOperations(), freeOperations()}) {
        for (const Operation& stOperation : vecOperations) {
            EXPECT_EQ(stOperation.ready, quietly([&] { return stOperation.call(controller()); })) << stOperation;
            outputOf([this] { controller().setParamMode(0); });
        }
    }
}

TEST_P(SchemeSum, SwitchingBySourceWorks) {
    for (const u32 nType : {1u, 8u}) {
        device(nType);
        for (const u32 nMode : {1u, 2u}) {
            stored({with(factory(), KEY_SCHEME_MODE, nMode), factory()});
            style(with(factory(), KEY_SCHEME_MODE, nMode));
            init("(max_scheme=" + std::to_string(GetParam()) + ")");
            controller().setParamMode(1);
            for (const int nNight : {1, 0}) {
                camera.driverHolds(0, 153, nNight);
                letTheThreadRun();
            }
            EXPECT_EQ(0, scheme());
            controller().uinit();
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Few, SchemeSum, testing::Values(0, 1, 2, 32));

TEST_F(FewSchemes, WithNoneWriteNoFileAndApplyTheFactorySet) {
    init("(max_scheme=0)");
    EXPECT_FALSE(root.exists(parameterFile(0)));
    EXPECT_TRUE(root.exists(kVersionFile));
    EXPECT_EQ("ia ch0 commands\n" + applied(), camera.text());
    EXPECT_EQ(0, scheme());
    EXPECT_EQ(factory(), setOf(0)) << "nothing turns its mode off";
}

TEST_F(FewSchemes, WithNoneRecordNoParameter) {
    init("(max_scheme=0)");
    camera.clear();
    EXPECT_EQ(0, controller().setParameter(KEY_BRIGHTNESS, 60, true));
    EXPECT_EQ(0, controller().setParameter(KEY_BRIGHTNESS, 60, true));
    EXPECT_EQ("ia ch0 set 34 = 60\nia ch0 set 34 = 60\n", camera.text());
    EXPECT_EQ(factory(), setOf(0));
}

TEST_F(FewSchemes, WithNoneIgnoreAStoredFile) {
    stored({with(factory(), KEY_BRIGHTNESS, 11)});
    init("(max_scheme=0)");
    EXPECT_EQ(factory(), setOf(0));
    EXPECT_EQ(fileOf(with(factory(), KEY_BRIGHTNESS, 11)), root.read(parameterFile(0)));
}

TEST_F(FewSchemes, WithNoneReset) {
    init("(max_scheme=0)");
    EXPECT_TRUE(controller().resetParameters());
    EXPECT_EQ(0, scheme());
    EXPECT_EQ(factory(), setOf(0));
}

TEST_F(FewSchemes, WithOneHaveTheFactorySetAsSchemeOne) {
    init("(max_scheme=1)");
    EXPECT_TRUE(root.exists(parameterFile(0)));
    EXPECT_FALSE(root.exists(parameterFile(1)));
    EXPECT_EQ(defaults(), setOf(0));
    EXPECT_EQ(defaults(), setOf(1));
    EXPECT_EQ(0, controller().setParameter(KEY_BRIGHTNESS, 60, true));
    camera.clear();
    EXPECT_TRUE(controller().setParamScheme(1));
    EXPECT_EQ("ia ch0 set 34 = 50\n", camera.text());
    EXPECT_EQ(with(defaults(), KEY_BRIGHTNESS, 60), setOf(0));
}

TEST_F(FewSchemes, WithOneFollowDayAndNightIntoTheFactorySet) {
    stored({with(factory(), KEY_SCHEME_MODE, 2)});
    init("(max_scheme=1)");
    controller().setParamMode(1);
    camera.driverHolds(0, 153, 1);
    letTheThreadRun();
    EXPECT_EQ(1, scheme());
}

TEST_F(FewSchemes, WithNoneStayWithTheFactorySetByNight) {
    device(8);
    style(with(factory(), KEY_SCHEME_MODE, 2));
    init("(max_scheme=0)");
    controller().setParamMode(1);
    camera.driverHolds(0, 153, 1);
    letTheThreadRun();
    EXPECT_EQ(0, scheme()) << "there is no scheme 1";
}

TEST_F(FewSchemes, ShareADayNightKeyWithTheFactorySetWhereThatIsSchemeOne) {
    stored({with(factory(), KEY_SCHEME_MODE, 2)});
    init("(max_scheme=1)");
    controller().setParamScheme(0);
    EXPECT_EQ(0, controller().setParameter(KEY_DN_MODE, 3, true));
    EXPECT_EQ(3u, probe().valueIn(1, KEY_DN_MODE));
}

TEST_F(FewSchemes, BeyondWhatAModuleMayHaveAreFour) {
    for (const char* szDetail : {"(max_scheme=33)", "(max_scheme=-1)", "(max_scheme=999999999)"}) {
        init(szDetail);
        EXPECT_EQ(4u, probe().sysConf().nSchemeSum) << szDetail;
        controller().uinit();
    }
}
