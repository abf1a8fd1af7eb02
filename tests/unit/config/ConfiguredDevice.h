// A device with machine information and all style documents, and the configuration of one of its channels.
//
// Every base style says in its root's attribute "from" which one it is and has one tab, "picture"; every diversity document
// adds a tab whose key is the document's own name, when the module's detail string holds (kind=1).
#pragma once

#include "platform/ModuleConfigure.h"
#include "sensor/config/sensor.h"
#include "tests/support/TestRoot.h"

#include <gtest/gtest.h>

#include <string>

class ConfiguredDevice : public testing::Test {
protected:
    static inline const std::string kMachineInfo = "/mnt/mtd/code/factory_setting/machineinfo.ini";

    ConfiguredDevice() {
        GTEST_FLAG_SET(death_test_style, "threadsafe");
        deviceType("1");
        for (const char* szEnding : {".xml", "_dome.xml", "_Thermal.xml"}) {
            const std::string strEnding = szEnding;
            m_objRoot.write(base(strEnding), "<style from=\"Style" + strEnding + "\"><tab key=\"picture\"/></style>");
            m_objRoot.write(diversity(strEnding),
                            "<variant kind=\"1\"><AddAfter tab_key=\"picture\"><tab "
                            "key=\"StyleDiversity" +
                                strEnding + "\"/></AddAfter></variant>");
        }
        m_objModule.setModuleId(21);
        m_objModule.setParameters("lens=3");
        m_objModule.setDetail("(max_scheme=2)(kind=1)");
    }
    ~ConfiguredDevice() override { release(); }

    static std::string base(const std::string& p_strEnding) {
        return "/hd1/moduleConfig/sensorConfig/style/Style" + p_strEnding;
    }
    static std::string diversity(const std::string& p_strEnding) {
        return "/hd1/moduleConfig/sensorConfig/styleDiversity/StyleDiversity" + p_strEnding;
    }
    void deviceType(const std::string& p_strType) {
        m_objRoot.write(kMachineInfo,
                        "[machine]\ndevicetype=" + p_strType + "\nhardwaremodel=model\nhardwarecode=code\n");
    }

    // Builds the configuration of a channel, in place of the one before. What was shown meanwhile.
    std::string init(int p_nChannel = 1) {
        release();
        return outputOf([&] { EXPECT_EQ(0, initSysConf(p_nChannel, m_objModule, &m_stSysConf)); });
    }
    void release() {
        uinitSysConf(&m_stSysConf);
        m_stSysConf = SysConfig();
    }

    std::string style() const { return nullptr == m_stSysConf.szUIStyle ? "(none)" : m_stSysConf.szUIStyle; }
    bool styleHas(const std::string& p_strText) const { return std::string::npos != style().find(p_strText); }

    TestRoot m_objRoot;
    ModuleConfigure m_objModule;
    SysConfig m_stSysConf;
};
