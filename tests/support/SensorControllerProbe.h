// The one way for tests to look inside a controller: its private members and operations under their own names.
#pragma once

#include "sensor/ISensorController.h"

#include <cstdlib>
#include <map>
#include <string>
#include <vector>

class SensorControllerProbe {
public:
    explicit SensorControllerProbe(ISensorController& p_objController) : c(p_objController) {}

    // Members.
    SysConfig& sysConf() { return c.m_stSysConf; }
    u32 cameraID() const { return c.m_nCameraID; }
    QVMutex& mutex() { return c.m_objMutex; }
    GThread& thread() { return *c.m_pSensorThread; }
    int lastScheme() const { return c.m_nLastScheme; }
    int curScheme() const { return static_cast<int>(u32{c.m_nCurScheme}); }
    u32 paramMode() const { return c.m_nParamMode; }
    u32 keyValSum() const { return c.m_nKeyValSum; }
    u32 keyCmdNum() const { return c.m_nKeyCmdNum; }
    u32 version() const { return c.m_nVersion; }
    u32 flags() const { return c.m_nFlags; }
    u32 lastSchedule() const { return c.m_nLastSchedule; }
    bool isLPRDevice() const { return c.m_bLPRDevice; }
    bool showWDR() const { return c.m_bShowWDRFalg; }
    bool scheduleSwitch() const { return c.m_bScheduleSwitch; }
    bool dnSchemeSwitch() const { return c.m_bDNSchemeSwitch; }
    bool limitedIrPower() const { return c.m_bisLimitedIrPower; }
    const keycmd* keyCmdMap() const { return c.m_pKeyCmdMap; }
    KeyVal* set(u32 p_nScheme) { return c.m_ppUserKeyVal[p_nScheme]; }  // up to and including the factory set
    KeyVal** sets() { return c.m_ppUserKeyVal; }
    KeyVal* scratch() { return c.m_pstKeyValTmp; }
    KeyVal* work() { return c.m_pKeyValWork; }
    MachineInfo& machineInfo() { return c.m_objMachineInfo; }
    bool hasSets() const { return nullptr != c.m_ppUserKeyVal; }

    void setCurScheme(int p_nScheme) { c.m_nCurScheme = static_cast<u32>(p_nScheme); }
    void setLastScheme(int p_nScheme) { c.m_nLastScheme = p_nScheme; }
    void setParamModeDirectly(u32 p_nMode) { c.m_nParamMode = p_nMode; }
    void setLastSchedule(u32 p_nSchedule) { c.m_nLastSchedule = p_nSchedule; }
    void setLimitedIrPower(bool p_bLimited) { c.m_bisLimitedIrPower = p_bLimited; }
    void setLPRDevice(bool p_bLPR) { c.m_bLPRDevice = p_bLPR; }
    void setSwitching(bool p_bSchedule, bool p_bDayNight) {
        c.m_bScheduleSwitch = p_bSchedule;
        c.m_bDNSchemeSwitch = p_bDayNight;
    }
    void setFlags(u32 p_nBits) { c.m_nFlags.setBits(p_nBits); }
    void clearFlags(u32 p_nBits) { c.m_nFlags.clearBits(p_nBits); }

    static constexpr u32 init_flag = ISensorController::init_flag;
    static constexpr u32 uinit_flag = ISensorController::uinit_flag;
    static constexpr u32 inited_flag = ISensorController::inited_flag;
    static constexpr u32 resetting_flag = ISensorController::resetting_flag;
    static constexpr u32 rollback_flag = ISensorController::rollback_flag;
    static constexpr u32 switching_flag = ISensorController::switching_flag;

    // Parameter sets of a test's own, without init: the same records in every user scheme and in the factory set, one
    // zeroed record in front, a key-command table, scratch and work arrays. uinit releases them.
    void buildSets(u32 p_nSchemeSum, const std::vector<KeyVal>& p_vecRecords) {
        const bool bHasTable = nullptr != c.m_ppUserKeyVal;  // after uinit only its address is left
        c.m_stSysConf.nSchemeSum = p_nSchemeSum;
        c.m_nKeyValSum = static_cast<u32>(p_vecRecords.size());
        std::vector<KeyVal> vecFactory(p_vecRecords);
        vecFactory.push_back({});  // so that there is an address even for an empty set
        c.allocateSets(vecFactory.data());
        if (!bHasTable) {
            c.buildKeyCmdMap();
        }
        const std::size_t nRoom = (c.m_nKeyCmdNum > c.m_nKeyValSum ? c.m_nKeyCmdNum : c.m_nKeyValSum) + 1;
        c.m_pstKeyValTmp = static_cast<KeyVal*>(std::calloc(nRoom, sizeof(KeyVal)));
        c.m_pKeyValWork = static_cast<KeyVal*>(std::calloc(nRoom, sizeof(KeyVal)));
        c.m_nFlags.setBits(inited_flag);
    }

    // The value of a key in a scheme's set; 0xDEADBEEF when it is not there.
    u32 valueIn(u32 p_nScheme, u32 p_nKey) const {
        u32 nValue = 0xDEADBEEFu;
        c.getKeyValFromCache(p_nScheme, p_nKey, nValue);
        return nValue;
    }

    // Operations.
    void buildKeyCmdMap() { c.buildKeyCmdMap(); }
    int findFromKeyCmdMap(const keycmd* p_pMap, u32 p_nKey, keycmd& p_stRow) const {
        return c.findFromKeyCmdMap(p_pMap, p_nKey, p_stRow);
    }
    int doIaCmd(u32 p_nCmd, u32 p_nOpt, void* p_pData) { return c.doIaCmd(p_nCmd, p_nOpt, p_pData); }
    int doIaCmd_User(u32 p_nCmd, u32 p_nOpt, void* p_pData) { return c.doIaCmd_User(p_nCmd, p_nOpt, p_pData); }
    int notifyToVideo(int p_nKey, int p_nValue) { return c.notifyToVideo(p_nKey, p_nValue); }
    int call(KeyCmdHandler p_pfnHandler, u32 p_nKey, u32 p_nDir, void* p_pVal) {
        return (c.*p_pfnHandler)(p_nKey, p_nDir, p_pVal);
    }
    // The handler that the table names for a key.
    KeyCmdHandler handlerOf(u32 p_nKey) const {
        keycmd stRow{};
        c.findFromKeyCmdMap(c.m_pKeyCmdMap, p_nKey, stRow);
        return stRow.pfnHandler;
    }
    // The handler of a name; null without one.
    static KeyCmdHandler handlerNamed(const char* p_szName) {
        using C = ISensorController;
        static const std::map<std::string, KeyCmdHandler> kHandlers = {
            {"doIaCmd", &C::doIaCmd},
            {"doIaCmd_User", &C::doIaCmd_User},
            {"doHwdr", &C::doHwdr},
            {"doImageAdjust", &C::doImageAdjust},
            {"test_debugParam", &C::test_debugParam},
            {"doDIS", &C::doDIS},
            {"doIaCmd_PanoTuning", &C::doIaCmd_PanoTuning},
            {"doDNThr", &C::doDNThr},
            {"doDNTime", &C::doDNTime},
            {"doMirror", &C::doMirror},
            {"doBeaway", &C::doBeaway},
        };
        return nullptr == p_szName ? nullptr : kHandlers.at(p_szName);
    }
    int setKeyValToCache(u32 p_nScheme, u32 p_nKey, u32 p_nValue, bool p_bForce) {
        return c.setKeyValToCache(p_nScheme, p_nKey, p_nValue, p_bForce);
    }
    int getKeyValFromCache(u32 p_nScheme, u32 p_nKey, u32& p_nValue) const {
        return c.getKeyValFromCache(p_nScheme, p_nKey, p_nValue);
    }
    bool isKeyValSame(const KeyVal& p_stKeyVal) const { return c.isKeyValSame(p_stKeyVal); }
    int setParameters(KeyVal* p_pKeyval, u32 p_nCount, bool p_bCache) {
        return c.setParameters(p_pKeyval, p_nCount, p_bCache);
    }
    int switch_to(int p_nScheme, bool p_bForce) { return c.switch_to(p_nScheme, p_bForce); }
    int LPR_switch_to(int p_nScheme) { return c.LPR_switch_to(p_nScheme); }
    int judgeCurScheme(int& p_nScheme, int& p_nSchedule) { return c.judgeCurScheme(p_nScheme, p_nSchedule); }
    int sensorThread() { return c.sensorThread(); }

private:
    ISensorController& c;
};
