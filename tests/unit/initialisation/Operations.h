// Every public operation of the controller by name, each told as the text of its result.
#pragma once

#include "platform/SensorZoomFocusParam.h"
#include "sensor/ISensorController.h"

#include <functional>
#include <ostream>
#include <string>
#include <vector>

struct Operation {
    std::string name;
    std::function<std::string(ISensorController&)> call;
    std::string ready;     // the result with sets, whichever scheme is applied
    std::string notReady;  // the result without
};

inline std::ostream& operator<<(std::ostream& p_stream, const Operation& p_stOperation) {
    return p_stream << p_stOperation.name;
}

inline std::string told(bool p_bResult) {
    return p_bResult ? "true" : "false";
}

// Operations that need parameter sets.
inline std::vector<Operation> setOperations() {
    using C = ISensorController;
    std::vector<Operation> vecOperations = {
        {"setParameter", [](C& c) { return std::to_string(c.setParameter(34, 5, true)); }, "0", "-1"},
        {"setParameter uncached", [](C& c) { return std::to_string(c.setParameter(34, 5, false)); }, "0", "-1"},
        {"setParameters", [](C& c) { return std::to_string(c.setParameters("(34,5)(49,6)", true)); }, "0", "-1"},
        {"setParameters of nothing", [](C& c) { return std::to_string(c.setParameters("", true)); }, "0", "-1"},
        {"setDNMode", [](C& c) { return told(c.setDNMode(1)); }, "true", "false"},
        {"setWhiteMode", [](C& c) { return told(c.setWhiteMode(1)); }, "true", "false"},
        {"setIRSwitch on", [](C& c) { return told(c.setIRSwitch(1)); }, "true", "false"},
        {"setIRSwitch off", [](C& c) { return told(c.setIRSwitch(0)); }, "true", "false"},
        {"setWhiteSwitch on", [](C& c) { return told(c.setWhiteSwitch(1)); }, "true", "false"},
        {"setWhiteSwitch off", [](C& c) { return told(c.setWhiteSwitch(0)); }, "true", "false"},
        {"setParamScheme", [](C& c) { return told(c.setParamScheme(0)); }, "true", "false"},
        {"setParamScheme out of range", [](C& c) { return told(c.setParamScheme(99)); }, "true", "false"},
        {"setParamScheme below zero", [](C& c) { return told(c.setParamScheme(-1)); }, "true", "false"},
        {"setParamMode", [](C& c) { return told(c.setParamMode(0)); }, "true", "false"},
        {"setParamMode out of range", [](C& c) { return told(c.setParamMode(2)); }, "true", "false"},
        {"getUIStyleFile", [](C& c) { return told(!c.getUIStyleFile().empty()); }, "true", "false"},
        {"getUICommonFile", [](C& c) { return c.getUICommonFile(1); }, "", ""},
        {"getUILanguageFile", [](C& c) { return c.getUILanguageFile(1); }, "", ""},
        {"resetParameters", [](C& c) { return told(c.resetParameters()); }, "true", "false"},
        {"setMirrorMode", [](C& c) { return told(c.setMirrorMode(1)); }, "true", "false"},
        {"getAllParameters",
         [](C& c) {
             std::string s;
             return told(c.getAllParameters(s));
         },
         "true", "false"},
    };
    using Accessor = bool (C::*)(int&);
    const std::pair<const char*, Accessor> aAccessors[] = {
        {"setWDRSwitch", &C::setWDRSwitch},
        {"setWDRStrength", &C::setWDRStrength},
        {"setHLCSwitch", &C::setHLCSwitch},
        {"setHLCStrength", &C::setHLCStrength},
        {"setBLCSwitch", &C::setBLCSwitch},
        {"setBLCStrength", &C::setBLCStrength},
        {"setDefogSwitch", &C::setDefogSwitch},
        {"setDefogStrength", &C::setDefogStrength},
        {"set2DSwitch", &C::set2DSwitch},
        {"set2DMode", &C::set2DMode},
        {"set2DAutoMaxStrength", &C::set2DAutoMaxStrength},
        {"set2DManualMaxStrength", &C::set2DManualMaxStrength},
        {"set3DSwitch", &C::set3DSwitch},
        {"set3DMode", &C::set3DMode},
        {"set3DAutoMaxStrength", &C::set3DAutoMaxStrength},
        {"set3DManualMaxStrength", &C::set3DManualMaxStrength},
        {"setBeaway", &C::setBeaway},
        {"getWDRSwitch", &C::getWDRSwitch},
        {"getWDRStrength", &C::getWDRStrength},
        {"getHLCSwitch", &C::getHLCSwitch},
        {"getHLCStrength", &C::getHLCStrength},
        {"getBLCSwitch", &C::getBLCSwitch},
        {"getBLCStrength", &C::getBLCStrength},
        {"getDefogSwitch", &C::getDefogSwitch},
        {"getDefogStrength", &C::getDefogStrength},
        {"get2DSwitch", &C::get2DSwitch},
        {"get2DMode", &C::get2DMode},
        {"get2DAutoMaxStrength", &C::get2DAutoMaxStrength},
        {"get2DManualMaxStrength", &C::get2DManualMaxStrength},
        {"get3DSwitch", &C::get3DSwitch},
        {"get3DMode", &C::get3DMode},
        {"get3DAutoMaxStrength", &C::get3DAutoMaxStrength},
        {"get3DManualMaxStrength", &C::get3DManualMaxStrength},
        {"getBeaway", &C::getBeaway},
        {"getMirrorValue", &C::getMirrorValue},
    };
    for (const auto& [szName, pfnAccessor] : aAccessors) {
        const auto call = [pfn = pfnAccessor](C& c) {
            int nValue = 1;
            return told((c.*pfn)(nValue));
        };
        vecOperations.push_back({szName, call, "true", "false"});
    }
    return vecOperations;
}

// Operations that work in every state of the controller.
inline std::vector<Operation> freeOperations() {
    using C = ISensorController;
    const auto always = [](const std::string& p_strName, std::function<std::string(C&)> p_fnCall,
                           const std::string& p_strResult) {
        return Operation{p_strName, std::move(p_fnCall), p_strResult, p_strResult};
    };
    std::vector<Operation> vecOperations = {
        always(
            "getParamMode",
            [](C& c) {
                int n = 9;
                return told(c.getParamMode(n) && 0 == n);
            },
            "true"),
        always(
            "setShowWDRFalg", [](C& c) { return told(c.setShowWDRFalg(true)); }, "true"),
        always(
            "getShowWDRFalg",
            [](C& c) {
                bool b = false;
                return told(c.getShowWDRFalg(b) && b);
            },
            "true"),
        always(
            "setShowBeawayFalg", [](C& c) { return told(c.setShowBeawayFalg(true)); }, "true"),
        always(
            "getShowBeawayFalg",
            [](C& c) {
                bool b = false;
                return told(c.getShowBeawayFalg(b) && b);
            },
            "true"),
        always(
            "printDebugMsg",
            [](C& c) {
                c.printDebugMsg();
                return std::string("done");
            },
            "done"),
        always(
            "getSensorZoomFocusParam",
            [](C& c) {
                SensorZoomFocusParam obj;
                return std::to_string(c.getSensorZoomFocusParam(obj));
            },
            "0"),
        always(
            "setSensorZoomFocusParam",
            [](C& c) {
                SensorZoomFocusParam obj;
                return std::to_string(c.setSensorZoomFocusParam(obj));
            },
            "0"),
        always(
            "focusFar", [](C& c) { return told(c.focusFar()); }, "true"),
        always(
            "focusNear", [](C& c) { return told(c.focusNear()); }, "true"),
        always(
            "irisUp", [](C& c) { return told(c.irisUp()); }, "true"),
        always(
            "irisDown", [](C& c) { return told(c.irisDown()); }, "true"),
        always(
            "zoomIn", [](C& c) { return told(c.zoomIn()); }, "true"),
        always(
            "zoomOut", [](C& c) { return told(c.zoomOut()); }, "true"),
        always(
            "setPTZRunState", [](C& c) { return told(c.setPTZRunState(1)); }, "true"),
        always(
            "getCameraVerInf",
            [](C& c) {
                std::string s;
                c.getCameraVerInf(s);
                return s;
            },
            "recording camera"),
        always(
            "getCmdExecStatus",
            [](C& c) {
                int n = 9;
                return told(c.getCmdExecStatus(1569, n));
            },
            "true"),
        always(
            "getZoomValue",
            [](C& c) {
                int n = 0, r = 0;
                return told(c.getZoomValue(n, r));
            },
            "true"),
        always(
            "setZoomValue", [](C& c) { return told(c.setZoomValue(0)); }, "true"),
        always(
            "setFocusValue", [](C& c) { return told(c.setFocusValue(1)); }, "true"),
        always(
            "setFocusMode", [](C& c) { return told(c.setFocusMode(1)); }, "true"),
        always(
            "setDNState", [](C& c) { return told(c.setDNState(0)); }, "true"),
        always(
            "setIrisValue", [](C& c) { return told(c.setIrisValue(1)); }, "true"),
        always(
            "setExposureStrategy",
            [](C& c) {
                int n = 1;
                return told(c.setExposureStrategy(n));
            },
            "true"),
        always(
            "getAFStatistic",
            [](C& c) {
                unsigned n = 0;
                return told(c.getAFStatistic(n));
            },
            "true"),
        always(
            "getHeatStatus",
            [](C& c) {
                bool b = true;
                return told(c.getHeatStatus(b) && !b);
            },
            "true"),
        always(
            "getDNMode",
            [](C& c) {
                int n = 9;
                return told(c.getDNMode(n));
            },
            "true"),
        always(
            "parseSensorParameter",
            [](C& c) {
                std::vector<std::string> v;
                return told(c.parseSensorParameter("(34)", v));
            },
            "true"),
        always(
            "getParameters",
            [](C& c) {
                std::string s;
                return std::to_string(c.getParameters("(34)", s));
            },
            "1"),
        always(
            "SensorCheck",
            [](C& c) {
                std::string s = "(1,0,3)";
                return std::to_string(c.SensorCheck(s));
            },
            "0"),
        always(
            "restore of nothing", [](C& c) { return std::to_string(c.restore(4711)); }, "-1"),
        always(
            "restoreAeMode without its keys", [](C& c) { return told(c.restoreAeMode()); }, "false"),
        always(
            "resetToLastParameters", [](C& c) { return told(c.resetToLastParameters()); }, "true"),
        always(
            "getSensorParamRange",
            [](C& c) {
                int n = 9;
                std::string s;
                return told(c.getSensorParamRange(49, n, s));
            },
            "false"),
        always(
            "getShutterValue",
            [](C& c) {
                int n = 9;
                return told(c.getShutterValue(n));
            },
            "false"),
        always(
            "setShutterValue", [](C& c) { return told(c.setShutterValue(0)); }, "false"),
        always(
            "shutterUp", [](C& c) { return told(c.shutterUp()); }, "false"),
        always(
            "shutterDown", [](C& c) { return told(c.shutterDown()); }, "false"),
        always(
            "setLanguageDocuments", [](C& c) { return told(c.setLanguageDocuments({})); }, "true"),
    };
    using Getter = bool (C::*)(int&);
    const std::pair<const char*, Getter> aGetters[] = {
        {"getFocusValue", &C::getFocusValue}, {"getFocusMode", &C::getFocusMode},
        {"getDNState", &C::getDNState},       {"getWDR", &C::getWDR},
        {"getIRSwitch", &C::getIRSwitch},     {"getWhiteMode", &C::getWhiteMode},
        {"getIrisValue", &C::getIrisValue},   {"getWhiteSwitch", &C::getWhiteSwitch},
    };
    for (const auto& [szName, pfnGetter] : aGetters) {
        const auto call = [pfn = pfnGetter](C& c) {
            int nValue = 9;
            return told((c.*pfn)(nValue));
        };
        vecOperations.push_back(always(szName, call, "true"));
    }
    return vecOperations;
}
