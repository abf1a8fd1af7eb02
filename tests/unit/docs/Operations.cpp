#include "tests/unit/docs/Operations.h"

#include "platform/ModuleConfigure.h"

#include <functional>

namespace {

using Call = std::function<std::string(ISensorController&)>;

std::string text(bool p_bResult) {
    return p_bResult ? "true" : "false";
}
std::string text(int p_nResult) {
    return std::to_string(p_nResult);
}
std::string text(u32 p_nResult) {
    return std::to_string(p_nResult);
}
std::string text(const std::string& p_strResult) {
    return '"' + p_strResult + '"';
}

constexpr char kNoResult[] = "-";

Call setter(bool (ISensorController::*p_pfnSet)(int)) {
    return [=](ISensorController& c) { return text((c.*p_pfnSet)(1)); };
}
Call setter(bool (ISensorController::*p_pfnSet)(int&)) {
    return [=](ISensorController& c) {
        int nValue = 1;
        return text((c.*p_pfnSet)(nValue));
    };
}
Call getter(bool (ISensorController::*p_pfnGet)(int&)) {
    return setter(p_pfnGet);
}
Call step(bool (ISensorController::*p_pfnStep)()) {
    return [=](ISensorController& c) { return text((c.*p_pfnStep)()); };
}

using C = ISensorController;

const std::map<std::string, Call>& calls() {
    static const std::map<std::string, Call> kCalls = {
        // Set-up and state.
        {"ISensorController",
         [](C&) {
             const ISensorController another;
             return std::string(kNoResult);
         }},
        {"~ISensorController",
         [](C&) {
             delete new ISensorController;
             return std::string(kNoResult);
         }},
        {"setChannelID",
         [](C& c) {
             c.setChannelID(1);
             return std::string(kNoResult);
         }},
        {"setVideoStreamModule",
         [](C& c) {
             c.setVideoStreamModule(nullptr);
             return std::string(kNoResult);
         }},
        {"init", [](C& c) { return text(c.init(ModuleConfigure())); }},
        {"uinit",
         [](C& c) {
             c.uinit();
             return std::string(kNoResult);
         }},
        {"resetParameters", step(&C::resetParameters)},
        {"getSensorType", [](C& c) { return text(c.getSensorType()); }},
        {"getSensorStatus", [](C& c) { return text(c.getSensorStatus()); }},
        {"printDebugMsg",
         [](C& c) {
             c.printDebugMsg();
             return std::string(kNoResult);
         }},
        {"getSensorZoomFocusParam",
         [](C& c) {
             SensorZoomFocusParam objParam;
             return text(c.getSensorZoomFocusParam(objParam));
         }},
        {"setSensorZoomFocusParam",
         [](C& c) {
             SensorZoomFocusParam objParam;
             return text(c.setSensorZoomFocusParam(objParam));
         }},

        // Parameters.
        {"setParameter", [](C& c) { return text(c.setParameter(34, 1, true)); }},
        {"setParameters", [](C& c) { return text(c.setParameters("(34,1)", true)); }},
        {"setDNMode", setter(&C::setDNMode)},
        {"setWDRSwitch", setter(&C::setWDRSwitch)},
        {"setWDRStrength", setter(&C::setWDRStrength)},
        {"setHLCSwitch", setter(&C::setHLCSwitch)},
        {"setHLCStrength", setter(&C::setHLCStrength)},
        {"setBLCSwitch", setter(&C::setBLCSwitch)},
        {"setBLCStrength", setter(&C::setBLCStrength)},
        {"setDefogSwitch", setter(&C::setDefogSwitch)},
        {"setDefogStrength", setter(&C::setDefogStrength)},
        {"set2DSwitch", setter(&C::set2DSwitch)},
        {"set2DMode", setter(&C::set2DMode)},
        {"set2DAutoMaxStrength", setter(&C::set2DAutoMaxStrength)},
        {"set2DManualMaxStrength", setter(&C::set2DManualMaxStrength)},
        {"set3DSwitch", setter(&C::set3DSwitch)},
        {"set3DMode", setter(&C::set3DMode)},
        {"set3DAutoMaxStrength", setter(&C::set3DAutoMaxStrength)},
        {"set3DManualMaxStrength", setter(&C::set3DManualMaxStrength)},
        {"setBeaway", setter(&C::setBeaway)},
        {"setWhiteMode", setter(&C::setWhiteMode)},
        {"setIRSwitch", setter(&C::setIRSwitch)},
        {"setWhiteSwitch", setter(&C::setWhiteSwitch)},
        {"setMirrorMode", setter(&C::setMirrorMode)},

        // Reading back.
        {"getParameter",
         [](C& c) {
             int nValue = 0;
             return text(c.getParameter(34, nValue));
         }},
        {"getDNMode", getter(&C::getDNMode)},
        {"getWDRSwitch", getter(&C::getWDRSwitch)},
        {"getWDRStrength", getter(&C::getWDRStrength)},
        {"getHLCSwitch", getter(&C::getHLCSwitch)},
        {"getHLCStrength", getter(&C::getHLCStrength)},
        {"getBLCSwitch", getter(&C::getBLCSwitch)},
        {"getBLCStrength", getter(&C::getBLCStrength)},
        {"getDefogSwitch", getter(&C::getDefogSwitch)},
        {"getDefogStrength", getter(&C::getDefogStrength)},
        {"get2DSwitch", getter(&C::get2DSwitch)},
        {"get2DMode", getter(&C::get2DMode)},
        {"get2DAutoMaxStrength", getter(&C::get2DAutoMaxStrength)},
        {"get2DManualMaxStrength", getter(&C::get2DManualMaxStrength)},
        {"get3DSwitch", getter(&C::get3DSwitch)},
        {"get3DMode", getter(&C::get3DMode)},
        {"get3DAutoMaxStrength", getter(&C::get3DAutoMaxStrength)},
        {"get3DManualMaxStrength", getter(&C::get3DManualMaxStrength)},
        {"getBeaway", getter(&C::getBeaway)},
        {"getMirrorValue", getter(&C::getMirrorValue)},
        {"parseSensorParameter",
         [](C& c) {
             std::vector<std::string> vecItems;
             return text(c.parseSensorParameter("(34)", vecItems));
         }},
        {"getParameters",
         [](C& c) {
             std::string strOut;
             return text(c.getParameters("(34)", strOut));
         }},
        {"getAllParameters",
         [](C& c) {
             std::string strOut;
             return text(c.getAllParameters(strOut));
         }},
        {"SensorCheck",
         [](C& c) {
             std::string strText = "(1,2,3)";
             return text(c.SensorCheck(strText));
         }},

        // Keeping.
        {"flush", [](C& c) { return text(c.flush()); }},
        {"paramCheck", [](C& c) { return text(c.paramCheck()); }},
        {"restore", [](C& c) { return text(c.restore(34)); }},
        {"restoreAeMode", step(&C::restoreAeMode)},
        {"resetToLastParameters", step(&C::resetToLastParameters)},

        // Ranges and the maximum shutter.
        {"getSensorParamRange",
         [](C& c) {
             int nDefault = 0;
             std::string strRange;
             return text(c.getSensorParamRange(49, nDefault, strRange));
         }},
        {"getShutterValue", getter(&C::getShutterValue)},
        {"setShutterValue", setter(&C::setShutterValue)},
        {"shutterUp", step(&C::shutterUp)},
        {"shutterDown", step(&C::shutterDown)},

        // Schemes.
        {"setParamScheme", setter(&C::setParamScheme)},
        {"getParamScheme", getter(&C::getParamScheme)},
        {"setParamMode", setter(&C::setParamMode)},
        {"getParamMode", getter(&C::getParamMode)},

        // Style documents.
        {"getUIStyleFile", [](C& c) { return text(c.getUIStyleFile()); }},
        {"getUICommonFile", [](C& c) { return text(c.getUICommonFile(1)); }},
        {"getUILanguageFile", [](C& c) { return text(c.getUILanguageFile(1)); }},
        {"setLanguageDocuments",
         [](C& c) {
             return text(c.setLanguageDocuments({{1, "a", "b"}}));
         }},
        {"setShowWDRFalg", [](C& c) { return text(c.setShowWDRFalg(true)); }},
        {"getShowWDRFalg",
         [](C& c) {
             bool bShow = false;
             return text(c.getShowWDRFalg(bShow));
         }},
        {"setShowBeawayFalg", [](C& c) { return text(c.setShowBeawayFalg(true)); }},
        {"getShowBeawayFalg",
         [](C& c) {
             bool bShow = false;
             return text(c.getShowBeawayFalg(bShow));
         }},

        // Direct operations on the driver.
        {"getCmdExecStatus",
         [](C& c) {
             int nStatus = 0;
             return text(c.getCmdExecStatus(1569, nStatus));
         }},
        {"focusFar", step(&C::focusFar)},
        {"focusNear", step(&C::focusNear)},
        {"irisUp", step(&C::irisUp)},
        {"irisDown", step(&C::irisDown)},
        {"zoomIn", step(&C::zoomIn)},
        {"zoomOut", step(&C::zoomOut)},
        {"setPTZRunState", setter(&C::setPTZRunState)},
        {"getCameraVerInf",
         [](C& c) {
             std::string strVersion;
             return text(c.getCameraVerInf(strVersion));
         }},
        {"getZoomValue",
         [](C& c) {
             int nPosition = 0;
             int nRatio = 0;
             return text(c.getZoomValue(nPosition, nRatio));
         }},
        {"setZoomValue", setter(&C::setZoomValue)},
        {"setFocusValue", setter(&C::setFocusValue)},
        {"getFocusValue", getter(&C::getFocusValue)},
        {"setFocusMode", setter(&C::setFocusMode)},
        {"getFocusMode", getter(&C::getFocusMode)},
        {"setDNState", setter(&C::setDNState)},
        {"getDNState", getter(&C::getDNState)},
        {"getAFStatistic",
         [](C& c) {
             unsigned nStatistic = 0;
             return text(c.getAFStatistic(nStatistic));
         }},
        {"getWDR", getter(&C::getWDR)},
        {"setExposureStrategy", setter(&C::setExposureStrategy)},
        {"getIRSwitch", getter(&C::getIRSwitch)},
        {"getWhiteSwitch", getter(&C::getWhiteSwitch)},
        {"getWhiteMode", getter(&C::getWhiteMode)},
        {"getIrisValue", getter(&C::getIrisValue)},
        {"setIrisValue", setter(&C::setIrisValue)},
        {"getHeatStatus",
         [](C& c) {
             bool bHot = false;
             return text(c.getHeatStatus(bHot));
         }},
    };
    return kCalls;
}

}  // namespace

std::vector<std::string> operationNames() {
    std::vector<std::string> vecNames;
    for (const auto& [strName, fnCall] : calls()) {
        vecNames.push_back(strName);
    }
    return vecNames;
}

std::string callOperation(const std::string& p_strName, ISensorController& p_objController) {
    return calls().at(p_strName)(p_objController);
}
