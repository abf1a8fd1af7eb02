#include "apps/sensorctl/Commands.h"
#include "apps/sensorctl/Session.h"
#include "apps/sensorctl/Shared.h"

namespace sensorctl {

namespace {

const char kOperationsGroup[] = "Direct operations on the driver";

Result answer(const char* p_szName, bool p_bOk, Json p_data = Json::object()) {
    if (!p_bOk) {
        return Result::failed(std::string(p_szName) + " returned false", std::move(p_data));
    }
    return {true, "", std::move(p_data), {}};
}

// An operation without arguments.
void addStep(CommandTable& p_objTable, const char* p_szName, bool (ISensorController::*p_pfnStep)(),
             const char* p_szSummary) {
    p_objTable.add({p_szName, "", p_szSummary, kOperationsGroup, 0, 0, [=](Session& p_objSession, const Words&) {
                        return answer(p_szName, (p_objSession.controller().*p_pfnStep)());
                    }});
}

// An operation that takes one number.
template <typename Argument>
void addSet(CommandTable& p_objTable, const char* p_szName, bool (ISensorController::*p_pfnSet)(Argument),
            const char* p_szWhat, const char* p_szSummary) {
    p_objTable.add(
        {p_szName, p_szWhat, p_szSummary, kOperationsGroup, 1, 1, [=](Session& p_objSession, const Words& p_vecWords) {
             int value = parseInt(p_vecWords[0], p_szWhat);
             const Json data = {{"value", value}};
             return answer(p_szName, (p_objSession.controller().*p_pfnSet)(value), data);
         }});
}

// An operation that answers one value. p_szField names it in the result.
template <typename Value>
void addGet(CommandTable& p_objTable, const char* p_szName, bool (ISensorController::*p_pfnGet)(Value&),
            const char* p_szField, const char* p_szSummary) {
    p_objTable.add({p_szName, "", p_szSummary, kOperationsGroup, 0, 0, [=](Session& p_objSession, const Words&) {
                        Value value{};
                        const bool ok = (p_objSession.controller().*p_pfnGet)(value);
                        return answer(p_szName, ok, {{p_szField, value}});
                    }});
}

Result getZoomValue(Session& p_objSession, const Words&) {
    int position = 0;
    int ratio = 0;
    const bool ok = p_objSession.controller().getZoomValue(position, ratio);
    return answer("getZoomValue", ok, {{"position", position}, {"ratio", ratio}});
}

Result getCmdExecStatus(Session& p_objSession, const Words& p_vecWords) {
    const int command = parseInt(p_vecWords[0], "COMMAND");
    int status = 0;
    const bool ok = p_objSession.controller().getCmdExecStatus(command, status);
    return answer("getCmdExecStatus", ok, {{"command", command}, {"status", status}});
}

Result lensLock(Session& p_objSession, const Words& p_vecWords) {
    SensorZoomFocusParam param;
    ISensorController& controller = p_objSession.controller();
    if (!p_vecWords.empty()) {
        param.setLockZoomFocusEnable(parseSwitch(p_vecWords[0], "the lens lock"));
        controller.setSensorZoomFocusParam(param);
    }
    controller.getSensorZoomFocusParam(param);
    return answer("lensLock", true, {{"locked", param.getLockZoomFocusEnable()}});
}

void addLens(CommandTable& p_objTable) {
    addStep(p_objTable, "focusFar", &ISensorController::focusFar, "focus one step further; forces manual focus");
    addStep(p_objTable, "focusNear", &ISensorController::focusNear, "focus one step nearer; forces manual focus");
    addStep(p_objTable, "irisUp", &ISensorController::irisUp, "open the iris one step; forces iris priority");
    addStep(p_objTable, "irisDown", &ISensorController::irisDown, "close the iris one step; forces iris priority");
    addStep(p_objTable, "zoomIn", &ISensorController::zoomIn, "zoom in one step");
    addStep(p_objTable, "zoomOut", &ISensorController::zoomOut, "zoom out one step");
    addSet(p_objTable, "setPTZRunState", &ISensorController::setPTZRunState, "STATE", "whether the head is moving");
    p_objTable.add(
        {"getZoomValue", "", "zoom position, and magnification in thousandths", kOperationsGroup, 0, 0, getZoomValue});
    addSet(p_objTable, "setZoomValue", &ISensorController::setZoomValue, "POSITION", "move the zoom to a position");
    addGet(p_objTable, "getFocusValue", &ISensorController::getFocusValue, "position", "focus position");
    addSet(p_objTable, "setFocusValue", &ISensorController::setFocusValue, "POSITION", "move the focus to a position");
    addGet(p_objTable, "getFocusMode", &ISensorController::getFocusMode, "mode", "focus mode");
    addSet(p_objTable, "setFocusMode", &ISensorController::setFocusMode, "MODE", "focus mode");
    addGet(p_objTable, "getAFStatistic", &ISensorController::getAFStatistic, "statistic", "sharpness; peaks in focus");
    addGet(p_objTable, "getIrisValue", &ISensorController::getIrisValue, "value", "iris position");
    addSet(p_objTable, "setIrisValue", &ISensorController::setIrisValue, "VALUE",
           "iris position; forces iris priority");
    p_objTable.add({"getCmdExecStatus", "COMMAND", "whether a driver command is still being carried out (1)",
                    kOperationsGroup, 1, 1, getCmdExecStatus});
    p_objTable.add(
        {"lensLock", "[0|1]", "lock zoom, focus and lens, or show whether they are", kOperationsGroup, 0, 1, lensLock});
}

void addLightAndState(CommandTable& p_objTable) {
    addGet(p_objTable, "getDNState", &ISensorController::getDNState, "state", "0 day, otherwise night");
    addSet(p_objTable, "setDNState", &ISensorController::setDNState, "STATE", "0 day, otherwise night");
    addGet(p_objTable, "getWDR", &ISensorController::getWDR, "wdr", "wide dynamic range mode of the driver");
    addSet(p_objTable, "setExposureStrategy", &ISensorController::setExposureStrategy, "STRATEGY", "exposure strategy");
    addGet(p_objTable, "getIRSwitch", &ISensorController::getIRSwitch, "on", "infrared light of the driver");
    addGet(p_objTable, "getWhiteSwitch", &ISensorController::getWhiteSwitch, "on", "white light of the driver");
    addGet(p_objTable, "getWhiteMode", &ISensorController::getWhiteMode, "mode", "white light mode of the driver");
    addGet(p_objTable, "getHeatStatus", &ISensorController::getHeatStatus, "hot", "whether the heater is on");
    addGet(p_objTable, "getCameraVerInf", &ISensorController::getCameraVerInf, "version",
           "version of the camera module");
}

}  // namespace

void addOperationCommands(CommandTable& p_objTable) {
    addLens(p_objTable);
    addLightAndState(p_objTable);
}

}  // namespace sensorctl
