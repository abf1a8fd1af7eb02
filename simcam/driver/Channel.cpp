#include "simcam/driver/Channel.h"

#include "simcam/driver/Choices.h"
#include "simcam/driver/CommandNumbers.h"
#include "simcam/driver/Data.h"
#include "simcam/driver/Optics.h"

#include <algorithm>

namespace simcam {
namespace {

constexpr int kIrisPriority = 2;  // of the exposure mode; the first mode in which the iris is the user's
constexpr int kDefaultFrameRate = 25;
constexpr int kModelRegister = 0;
constexpr int kModelNumber = 0x385;  // what the sensor says it is

std::size_t indexOf(const CommandRow& p_stRow) {
    std::size_t nCount = 0;
    return static_cast<std::size_t>(&p_stRow - commandTable(nCount));
}

bool isWithin(int p_nValue, int p_nLow, int p_nHigh) {
    return p_nValue >= p_nLow && p_nValue <= p_nHigh;
}

bool isLegal(u32 p_nCommand, u32 p_nValue) {
    const CommandRow* const pRow = findCommand(p_nCommand);
    return isWithin(static_cast<int>(p_nValue), pRow->min, pRow->max);
}

// Which options a kind of command knows.
bool knows(const CommandRow& p_stRow, u32 p_nOption) {
    if (p_nOption > IA_CMD_OPT_GET_EXEC_STATUS) {
        return false;
    }
    switch (p_stRow.kind) {
        case CommandKind::Record:
            return IA_CMD_OPT_GET == p_nOption || (IA_CMD_OPT_SET == p_nOption && kSensorCheck == p_stRow.command);
        case CommandKind::ReadOnly:
            return IA_CMD_OPT_SET != p_nOption && IA_CMD_OPT_CORRECT_PARAM != p_nOption;
        default:
            return true;
    }
}

}  // namespace

Channel::Channel(int p_nChannel) : m_strVersion("SIMCAM 1.0 sensor " + std::to_string(p_nChannel + 1)) {
    std::size_t nCount = 0;
    commandTable(nCount);
    m_vecSupported.assign(nCount, 1);
    powerCycle();
}

void Channel::powerCycle() {
    std::size_t nCount = 0;
    const CommandRow* const pRows = commandTable(nCount);
    m_vecKept.clear();
    for (std::size_t i = 0; i < nCount; ++i) {
        m_vecKept.push_back(pRows[i].powerUp);
    }
    m_arrRegisters.fill(0);
    m_arrRegisters[kModelRegister] = kModelNumber;
    m_objLens = Lens();
    m_objDayNight = DayNight();
    m_objHousing = Housing();
}

void Channel::advance(const Moment& p_stMoment) {
    m_objLens.advance(p_stMoment.now);
    m_objLens.setSubject(p_stMoment.now, p_stMoment.scene.subjectMetres);
    m_objLens.setNearLimit(p_stMoment.now, nearLimitCentimetres(inForce(p_stMoment, kFocusNearLimit)) / 100.0);
    m_objHousing.advance(p_stMoment.now, p_stMoment.scene.ambientCelsius);
    const bool bWasNight = m_objDayNight.isNight();
    m_objDayNight.advance(p_stMoment.now, p_stMoment.secondOfDay, dayNightSettings(), p_stMoment.scene);
    if (m_objDayNight.isNight() != bWasNight && 0 != kept(kRefocusAtDayNight)) {
        m_objLens.refocus(p_stMoment.now);
    }
}

int Channel::call(const Moment& p_stMoment, u32 p_nCommand, u32 p_nOption, void* p_pData) {
    const CommandRow* const pRow = findCommand(p_nCommand);
    if (nullptr == pRow || !isSupported(p_nCommand) || !knows(*pRow, p_nOption)) {
        return IA_ERR_UNSUPPORTED;
    }
    if (nullptr == p_pData) {
        return IA_ERR_NO_DATA;
    }
    if (kSensorCheck == p_nCommand) {
        return check(p_nOption, p_pData);
    }
    switch (p_nOption) {
        case IA_CMD_OPT_SET:
            return set(p_stMoment, *pRow, p_pData);
        case IA_CMD_OPT_GET:
            return get(p_stMoment, *pRow, p_pData);
        case IA_CMD_OPT_GET_PARAM_RNAGE:
            return range(p_stMoment, *pRow, p_pData);
        case IA_CMD_OPT_CORRECT_PARAM:
            return correct(p_stMoment, *pRow, p_pData);
        default:
            storeWord(p_pData, status(p_nCommand));
            return IA_OK;
    }
}

bool Channel::setSupported(u32 p_nCommand, bool p_bSupported) {
    const CommandRow* const pRow = findCommand(p_nCommand);
    if (nullptr == pRow) {
        return false;
    }
    m_vecSupported[indexOf(*pRow)] = p_bSupported ? 1 : 0;
    return true;
}

bool Channel::isSupported(u32 p_nCommand) const {
    const CommandRow* const pRow = findCommand(p_nCommand);
    return nullptr != pRow && 0 != m_vecSupported[indexOf(*pRow)];
}

int Channel::set(const Moment& p_stMoment, const CommandRow& p_stRow, const void* p_pData) {
    switch (p_stRow.kind) {
        case CommandKind::Shared: {
            const bool bThresholds = p_stRow.command <= kNightToDayThreshold || p_stRow.command == kDayNightSensitivity;
            const int nResult = bThresholds ? setThresholds(p_stRow.command, loadRecord<dn_thr_st>(p_pData))
                                            : setTimes(loadRecord<dn_time_st>(p_pData));
            advance(p_stMoment);
            return nResult;
        }
        case CommandKind::Dynamic:
            return setDynamic(p_stMoment, p_stRow, loadWord(p_pData));
        default:
            return setValue(p_stMoment, p_stRow, loadWord(p_pData));
    }
}

int Channel::setValue(const Moment& p_stMoment, const CommandRow& p_stRow, int p_nValue) {
    if (!isWithin(p_nValue, p_stRow.min, p_stRow.max)) {
        return IA_ERR_INVALID_VALUE;
    }
    const int nResult = act(p_stMoment, p_stRow.command, p_nValue);
    if (IA_OK != nResult) {
        return nResult;
    }
    if (CommandKind::Value == p_stRow.kind) {
        keep(p_stRow.command, p_nValue);
    }
    applied(p_stMoment, p_stRow.command, p_nValue);
    return IA_OK;
}

int Channel::setDynamic(const Moment& p_stMoment, const CommandRow& p_stRow, int p_nValue) {
    const bool bEndStop = kIrisPosition == p_stRow.command && kIrisEndStop == p_nValue;
    if (!bEndStop && !isWithin(p_nValue, p_stRow.min, p_stRow.max)) {
        return IA_ERR_INVALID_VALUE;
    }
    if (p_stMoment.strictRanges && !bEndStop) {
        const std::vector<int> vecLegal = legal(p_stMoment, p_stRow.command);
        if (!std::binary_search(vecLegal.begin(), vecLegal.end(), p_nValue)) {
            return IA_ERR_INVALID_VALUE;
        }
    }
    keep(p_stRow.command, p_nValue);
    advance(p_stMoment);
    return IA_OK;
}

int Channel::setThresholds(u32 p_nCommand, const dn_thr_st& p_stRecord) {
    if (kDayNightSensitivity == p_nCommand) {
        if (!isLegal(kDayNightSensitivity, p_stRecord.dn_sensitivity)) {
            return IA_ERR_INVALID_VALUE;
        }
        keep(kDayNightSensitivity, static_cast<int>(p_stRecord.dn_sensitivity));
        return IA_OK;
    }
    if (!isLegal(kDayToNightThreshold, p_stRecord.d2n_thr) || !isLegal(kNightToDayThreshold, p_stRecord.n2d_thr)) {
        return IA_ERR_INVALID_VALUE;
    }
    keep(kDayToNightThreshold, static_cast<int>(p_stRecord.d2n_thr));
    keep(kNightToDayThreshold, static_cast<int>(p_stRecord.n2d_thr));
    return IA_OK;
}

int Channel::setTimes(const dn_time_st& p_stRecord) {
    if (!isLegal(kDayToNightHour, p_stRecord.d2n_hour) || !isLegal(kDayToNightMinute, p_stRecord.d2n_min) ||
        !isLegal(kNightToDayHour, p_stRecord.n2d_hour) || !isLegal(kNightToDayMinute, p_stRecord.n2d_min)) {
        return IA_ERR_INVALID_VALUE;
    }
    keep(kDayToNightHour, static_cast<int>(p_stRecord.d2n_hour));
    keep(kDayToNightMinute, static_cast<int>(p_stRecord.d2n_min));
    keep(kNightToDayHour, static_cast<int>(p_stRecord.n2d_hour));
    keep(kNightToDayMinute, static_cast<int>(p_stRecord.n2d_min));
    return IA_OK;
}

// What can be refused: everything that moves the lens.
int Channel::act(const Moment& p_stMoment, u32 p_nCommand, int p_nValue) {
    switch (p_nCommand) {
        case kZoomPosition:
            return m_objLens.zoomTo(p_stMoment.now, p_nValue);
        case kZoomIn:
            return m_objLens.stepZoom(p_stMoment.now, p_nValue);
        case kZoomOut:
            return m_objLens.stepZoom(p_stMoment.now, -p_nValue);
        case kFocusPosition:
            return m_objLens.focusTo(p_stMoment.now, p_nValue);
        case kFocusNearer:
            return m_objLens.stepFocus(p_stMoment.now, p_nValue);
        case kFocusFarther:
            return m_objLens.stepFocus(p_stMoment.now, -p_nValue);
        case kFocusOnce:
            return 0 != p_nValue ? m_objLens.focusOnce(p_stMoment.now) : IA_OK;
        case kLensReset:
            return 0 != p_nValue ? m_objLens.reset(p_stMoment.now) : IA_OK;
        default:
            return IA_OK;
    }
}

// What follows from a value that has been taken.
void Channel::applied(const Moment& p_stMoment, u32 p_nCommand, int p_nValue) {
    switch (p_nCommand) {
        case kIrisOpenStep:
            stepIris(p_stMoment, p_nValue);
            break;
        case kIrisCloseStep:
            stepIris(p_stMoment, -p_nValue);
            break;
        case kFocusMode:
            m_objLens.setFocusMode(p_stMoment.now, p_nValue);
            break;
        case kFocusSensitivity:
            m_objLens.setSensitivity(p_nValue);
            break;
        case kZoomSpeed:
            m_objLens.setZoomSpeed(p_nValue);
            break;
        case kFocusSpeed:
            m_objLens.setFocusSpeed(p_nValue);
            break;
        case kHeadMoving:
            m_objLens.setHeadMoving(p_stMoment.now, 0 != p_nValue);
            break;
        case kDayNightState:
            m_objDayNight.force(0 != p_nValue);
            break;
        case kDayNightMode:
            m_objDayNight.release();
            break;
        default:
            break;
    }
    advance(p_stMoment);
}

int Channel::get(const Moment& p_stMoment, const CommandRow& p_stRow, void* p_pData) const {
    switch (p_stRow.command) {
        case kHeater:
            *static_cast<unsigned char*>(p_pData) = m_objHousing.isHeating() ? 1 : 0;
            return IA_OK;
        case kModuleVersion:
            std::memcpy(p_pData, m_strVersion.c_str(), m_strVersion.size() + 1);
            return IA_OK;
        case kDynamicCommands: {
            ia_dynamic_params_cmds_st stCommands = {};
            for (const u32 nCommand : {kLongestShutter, kFixedShutter, kIrisPosition, kFocusNearLimit}) {
                if (isSupported(nCommand)) {
                    stCommands.cmd_list[stCommands.cmd_cnt++] = nCommand;
                }
            }
            storeRecord(p_pData, stCommands);
            return IA_OK;
        }
        default:
            storeWord(p_pData, getValue(p_stMoment, p_stRow));
            return IA_OK;
    }
}

int Channel::getValue(const Moment& p_stMoment, const CommandRow& p_stRow) const {
    switch (p_stRow.command) {
        case kDayNightState:
            return m_objDayNight.isNight() ? 1 : 0;
        case kZoomPosition:
            return m_objLens.state(p_stMoment.now).zoom;
        case kFocusPosition:
            return m_objLens.state(p_stMoment.now).focus;
        case kFocusStatistic: {
            const double dLux = p_stMoment.scene.luxAt(p_stMoment.secondOfDay);
            return focusStatistic(m_objLens.state(p_stMoment.now).focus, m_objLens.magnificationAt(p_stMoment.now),
                                  p_stMoment.scene.subjectMetres, dLux);
        }
        default:
            return CommandKind::Dynamic == p_stRow.kind ? inForce(p_stMoment, p_stRow.command) : kept(p_stRow.command);
    }
}

int Channel::check(u32 p_nOption, void* p_pData) {
    auto stCheck = loadRecord<ia_sensor_check_st>(p_pData);
    if (!isWithin(stCheck.first, 0, static_cast<int>(m_arrRegisters.size()) - 1)) {
        return IA_ERR_INVALID_VALUE;
    }
    int& nRegister = m_arrRegisters[static_cast<std::size_t>(stCheck.first)];
    if (IA_CMD_OPT_SET == p_nOption) {
        nRegister = stCheck.third;
        return IA_OK;
    }
    stCheck.result = nRegister;
    storeRecord(p_pData, stCheck);
    return IA_OK;
}

int Channel::range(const Moment& p_stMoment, const CommandRow& p_stRow, void* p_pData) const {
    ia_dynamic_params_attr_st stRange = {};
    if (CommandKind::Dynamic == p_stRow.kind) {
        const std::vector<int> vecLegal = legal(p_stMoment, p_stRow.command);
        stRange.range_kind = 0;
        stRange.default_val = nearestOf(vecLegal, p_stRow.powerUp);
        stRange.min_val = vecLegal.front();
        stRange.max_val = vecLegal.back();
        stRange.items_cnt = static_cast<int>(vecLegal.size());
        std::copy(vecLegal.begin(), vecLegal.end(), stRange.item);
    } else {
        stRange.range_kind = 1;
        stRange.default_val = p_stRow.powerUp;
        stRange.min_val = p_stRow.min;
        stRange.max_val = p_stRow.max;
    }
    storeRecord(p_pData, stRange);
    return IA_OK;
}

int Channel::correct(const Moment& p_stMoment, const CommandRow& p_stRow, void* p_pData) const {
    const int nValue = loadWord(p_pData);
    storeWord(p_pData, CommandKind::Dynamic == p_stRow.kind ? nearestOf(legal(p_stMoment, p_stRow.command), nValue)
                                                            : std::clamp(nValue, p_stRow.min, p_stRow.max));
    return IA_OK;
}

int Channel::status(u32 p_nCommand) const {
    bool bRunning = false;
    switch (p_nCommand) {
        case kZoomPosition:
        case kZoomIn:
        case kZoomOut:
            bRunning = m_objLens.isZooming();
            break;
        case kFocusPosition:
        case kFocusNearer:
        case kFocusFarther:
            bRunning = m_objLens.isFocusMoving();
            break;
        case kFocusOnce:
            bRunning = m_objLens.isAutoFocusing();
            break;
        case kLensReset:
            bRunning = m_objLens.isResetting();
            break;
        default:
            break;
    }
    return bRunning ? IA_EXEC_RUNNING : IA_EXEC_DONE;
}

std::vector<int> Channel::legal(const Moment& p_stMoment, u32 p_nCommand) const {
    if (kIrisPosition == p_nCommand) {
        return legalIrisPositions(m_objLens.magnificationAt(p_stMoment.now));
    }
    if (kFocusNearLimit == p_nCommand) {
        return legalNearLimits(m_objLens.magnificationAt(p_stMoment.now));
    }
    const int nSet = kept(kSensorFrameRate);
    const int nStreams = 0 != p_stMoment.fastestStream ? p_stMoment.fastestStream : kDefaultFrameRate;
    return legalShutters(0 != nSet ? nSet : nStreams, 0 != kept(kWideDynamicRange));
}

int Channel::inForce(const Moment& p_stMoment, u32 p_nCommand) const {
    return nearestOf(legal(p_stMoment, p_nCommand), kept(p_nCommand));
}

void Channel::stepIris(const Moment& p_stMoment, int p_nStops) {
    if (kept(kExposureMode) < kIrisPriority) {
        return;  // the iris belongs to the automatic exposure
    }
    const std::vector<int> vecLegal = legal(p_stMoment, kIrisPosition);
    const auto current = std::lower_bound(vecLegal.begin(), vecLegal.end(), inForce(p_stMoment, kIrisPosition));
    const int nIndex = static_cast<int>(current - vecLegal.begin()) + p_nStops;
    keep(kIrisPosition,
         vecLegal[static_cast<std::size_t>(std::clamp(nIndex, 0, static_cast<int>(vecLegal.size()) - 1))]);
}

DayNightSettings Channel::dayNightSettings() const {
    DayNightSettings stSettings;
    stSettings.mode = kept(kDayNightMode);
    stSettings.dayToNight = kept(kDayToNightThreshold);
    stSettings.nightToDay = kept(kNightToDayThreshold);
    stSettings.delaySeconds = kept(kDayNightDelay);
    stSettings.dayToNightHour = kept(kDayToNightHour);
    stSettings.dayToNightMinute = kept(kDayToNightMinute);
    stSettings.nightToDayHour = kept(kNightToDayHour);
    stSettings.nightToDayMinute = kept(kNightToDayMinute);
    stSettings.sensitivity = kept(kDayNightSensitivity);
    return stSettings;
}

int Channel::kept(u32 p_nCommand) const {
    return m_vecKept[indexOf(*findCommand(p_nCommand))];
}

void Channel::keep(u32 p_nCommand, int p_nValue) {
    m_vecKept[indexOf(*findCommand(p_nCommand))] = p_nValue;
}

}  // namespace simcam
