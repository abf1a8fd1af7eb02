// The controller object: construction, destruction and the small accessors.
#include "sensor/ISensorController.h"

#include "platform/DeviceType.h"
#include "sensor/diag/Message.h"
#include "technic/Function.h"

namespace {
constexpr char kSourceFile[] = "ISensorController.cpp";
constexpr char kMachineInfoFile[] = "/mnt/mtd/code/factory_setting/machineinfo.ini";
constexpr u32 kThermalChannel = 2;
}  // namespace

ISensorController::ISensorController() {
    const function<int> fnBody(bind_funcobj0<int, ISensorController>(&ISensorController::sensorThread, this));
    const function<int> fnStart(&GThread::emptyFunction);
    const function<int> fnExit(&GThread::emptyFunction);
    m_pSensorThread = std::make_unique<GThread>(fnBody, "SensorThread", fnStart, fnExit);
    SystemInfoParser::parseMachineInfo(kMachineInfoFile, m_objMachineInfo);
}

ISensorController::~ISensorController() {
    m_pSensorThread->stop();
    m_pSensorThread.reset();  // before the members that its body reads
}

// Meant: on this device the one sensor is the thermal channel, whatever the host says.
void ISensorController::setChannelID(int p_nChannelID) {
    m_nCameraID = DeviceType::THERMAL_DEVICE == m_objMachineInfo.getDeviceType() ? kThermalChannel
                                                                                 : static_cast<u32>(p_nChannelID);
}

u32 ISensorController::getSensorType() const {
    return loadRelaxed(m_stSysConf.moduleConfig.nModuleId);
}

bool ISensorController::getSensorStatus() const {
    return m_nFlags.anyBit(inited_flag);
}

void ISensorController::printDebugMsg() {}

int ISensorController::getSensorZoomFocusParam(SensorZoomFocusParam& p_objParam) {
    p_objParam = m_objZoomFocusParam;
    return QVS_SUCCESS;
}

int ISensorController::setSensorZoomFocusParam(SensorZoomFocusParam& p_objParam) {
    m_objZoomFocusParam = p_objParam;
    return QVS_SUCCESS;
}

bool ISensorController::isReady(const char* p_szCaller) const {
    if (nullptr != m_ppUserKeyVal) {
        return true;
    }
    SENSOR_ERR("%s: the controller is not initialised\n", p_szCaller);
    return false;
}
