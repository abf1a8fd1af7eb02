// The image-sensor control of one camera channel: the one class that the host sees.
//
// Life: construct, setChannelID, setVideoStreamModule, init, operations, uinit, destroy. uinit may be followed by another
// init. The destructor stops the background thread but releases no parameter set: call uinit first.
//
// Units and ranges of parameter values are those of the driver; the style document (getUIStyleFile) describes them.
//
// Threads. The host may call from several threads. Operations that touch the parameter sets take the controller's mutex
// for their whole run and block while another one holds it; each comment below says so. init, uinit, construction and
// destruction must have the controller to themselves. The controller's own thread ("SensorThread") takes no lock.
//
// A controller that is not initialised, or no longer, refuses every operation that needs a parameter set: such a call
// returns its failure value, reports itself in the log and touches nothing. The direct operations on the driver work at
// any time.
#pragma once

#include "platform/GThread.h"
#include "platform/MachineInfo.h"
#include "platform/ModuleConfigure.h"
#include "platform/QVMutex.h"
#include "platform/SensorZoomFocusParam.h"
#include "platform/Types.h"
#include "platform/VideoStreamModule.h"
#include "sensor/KeyCmd.h"
#include "sensor/LanguageDocuments.h"
#include "sensor/config/KeyVal.h"
#include "sensor/config/SysConfig.h"
#include "sensor/diag/Export.h"
#include "technic/RelaxedWord.h"

#include <memory>
#include <string>
#include <vector>

class SENSORDLL_API ISensorController {
public:
    // Creates the background thread object (not running) and reads the machine information. Does not touch the driver.
    ISensorController();
    ~ISensorController();
    ISensorController(const ISensorController&) = delete;
    ISensorController& operator=(const ISensorController&) = delete;

    // --- Set-up and state ---------------------------------------------------------------------------------------------

    // The channel, from 1. On a device of type 13 the channel is always 2, whatever is given. Before init. No lock.
    void setChannelID(int p_nChannelID);

    // The host's video module; never freed here, may be null. Before init. Until it is set, notifications are dropped.
    void setVideoStreamModule(const VideoStreamModule* p_pModule);

    // Builds the channel from its module configuration: the style document, the factory set, one parameter set a scheme,
    // the parameter files; applies the starting scheme and starts the background thread. Returns true; steps that fail
    // are reported in the log and do not stop it. False, without a change, on a controller that is initialised already.
    // Blocks for file access, the driver and one pace of the background thread (a second). No lock.
    bool init(const ModuleConfigure& p_objModuleConfigure);

    // Stops the background thread and releases what init built. Does nothing on a controller that init has not built.
    // Blocks until the thread is gone. No lock.
    void uinit();

    // Back to factory settings: deletes the stored parameter files of every channel and builds the controller anew.
    // Returns true; false, without a change, on a controller that is not initialised. Mutex. Blocks like uinit and init.
    bool resetParameters();

    // The module id of the module configuration. No lock.
    u32 getSensorType() const;

    // True from the end of init on, also after uinit; false while another init runs. No lock.
    bool getSensorStatus() const;

    // Does nothing.
    void printDebugMsg();

    // The lens lock. While it is on, driver commands 1536 to 1616 succeed without reaching the driver. Both return 0.
    // No lock.
    int getSensorZoomFocusParam(SensorZoomFocusParam& p_objParam);
    int setSensorZoomFocusParam(SensorZoomFocusParam& p_objParam);

    // --- Parameters -----------------------------------------------------------------------------------------------------

    // Sets one parameter of the current scheme and sends it to the driver. With p_bCache a value that is already in force
    // is not sent again, and the value is recorded in the current scheme (in memory; it reaches flash when stored).
    // Returns 0, or the negated key at which it failed. Mutex.
    int setParameter(int p_nKey, int p_nValue, bool p_bCache);

    // The same for a text of "(key,value)" pairs in decimal, for example "(34,50)(2337,128)". Pairs are applied in order;
    // the first failure ends the call, and what was applied before stays. A text without pairs succeeds. Malformed pairs
    // are not reported: a field that does not parse keeps the value of the pair before it. Mutex.
    int setParameters(const std::string& p_strText, bool p_bCache);

    // Named setters: setParameter with p_bCache true. True when that returned 0. Arguments taken by reference are only
    // read. Mutex.
    bool setDNMode(int p_nMode);
    bool setWDRSwitch(int& p_nOn);
    bool setWDRStrength(int& p_nStrength);
    bool setHLCSwitch(int& p_nOn);
    bool setHLCStrength(int& p_nStrength);
    bool setBLCSwitch(int& p_nOn);
    bool setBLCStrength(int& p_nStrength);
    bool setDefogSwitch(int& p_nOn);
    bool setDefogStrength(int& p_nStrength);
    bool set2DSwitch(int& p_nOn);
    bool set2DMode(int& p_nMode);
    bool set2DAutoMaxStrength(int& p_nStrength);
    bool set2DManualMaxStrength(int& p_nStrength);
    bool set3DSwitch(int& p_nOn);
    bool set3DMode(int& p_nMode);
    bool set3DAutoMaxStrength(int& p_nStrength);
    bool set3DManualMaxStrength(int& p_nStrength);
    bool setBeaway(int& p_nOn);
    bool setWhiteMode(int p_nMode);

    // Infrared and white light exclude each other: switching one on (1) first asks the driver for the other and switches
    // it off. Any other value touches its own key only. The mutex is taken for each change, not across them.
    bool setIRSwitch(int p_nOn);
    bool setWhiteSwitch(int p_nOn);

    // Sets the mirror direction (0 off, 1 and 2 the two directions, 3 both) with p_bCache true, and stores the current
    // scheme at once. True when the direction was set, also when it could not be stored. The mutex is taken for each.
    bool setMirrorMode(int p_nDirection);

    // --- Reading back -----------------------------------------------------------------------------------------------

    // One parameter: from the current scheme's set; when the set does not hold the key, from the driver. Infrared keys
    // 160, 161, 163, 165 and 167 that the set does not hold read as -1 without asking. False when the driver failed, which
    // is an assertion; p_nVal is then as the driver left it. Mutex.
    bool getParameter(int p_nKey, int& p_nVal);

    // Named getters: getParameter. getDNMode is true whatever the read said. Mutex.
    bool getDNMode(int& p_nMode);
    bool getWDRSwitch(int& p_nOn);
    bool getWDRStrength(int& p_nStrength);
    bool getHLCSwitch(int& p_nOn);
    bool getHLCStrength(int& p_nStrength);
    bool getBLCSwitch(int& p_nOn);
    bool getBLCStrength(int& p_nStrength);
    bool getDefogSwitch(int& p_nOn);
    bool getDefogStrength(int& p_nStrength);
    bool get2DSwitch(int& p_nOn);
    bool get2DMode(int& p_nMode);
    bool get2DAutoMaxStrength(int& p_nStrength);
    bool get2DManualMaxStrength(int& p_nStrength);
    bool get3DSwitch(int& p_nOn);
    bool get3DMode(int& p_nMode);
    bool get3DAutoMaxStrength(int& p_nStrength);
    bool get3DManualMaxStrength(int& p_nStrength);
    bool getBeaway(int& p_nOn);
    bool getMirrorValue(int& p_nDirection);

    // Takes a key list apart, for example "(34,2337)": appends its items and is true when there are any then. False, with
    // the items as they were, for a text that is not one pair of parentheses around something. Empty items are dropped,
    // blanks are kept. No lock.
    bool parseSensorParameter(const std::string& p_strIds, std::vector<std::string>& items);

    // Several parameters: a key list in, "(key,value)" pairs out, in its order. An item that is no number counts as key 0;
    // keys that cannot be read are left out. 1; 0 for a malformed list, which is reported and leaves out as it is. The
    // mutex is taken for each key.
    int getParameters(const std::string& p_strIds, std::string& out);

    // The whole current scheme as "(key,value)" pairs: what is in memory, after the driver has corrected it in place; but
    // what is stored on flash while the style's own value of the maximum shutter is 200 or above. out is replaced; it
    // stays as it is while no scheme is applied, and for the factory scheme where flash would answer. True; false on a
    // controller that is not initialised. Mutex. Blocks for the driver and file access.
    bool getAllParameters(std::string& out);

    // A raw check command of the driver: a list of three numbers, for example "(1,2,3)". With 2 in second place it reads,
    // and io becomes the result in decimal; otherwise it writes, and io stays. The driver's result; 0 for a malformed
    // list, which is reported. Numbers after the third are not looked at. No lock.
    int SensorCheck(std::string& io);

    // --- Keeping ----------------------------------------------------------------------------------------------------

    // Stores the current scheme on flash; nothing for the factory scheme. 0; what paramCheck says, and then nothing is
    // stored. A failing medium is reported in the log, and the file keeps its old content. Mutex. Blocks for file access.
    int flush();

    // Whether the current scheme's window can be stored: 0; 505 when it starts and 506 when it ends later than 24:00, 507
    // when it does not start before it ends. No lock: values that another thread changes meanwhile may be old or new.
    int paramCheck();

    // Sends one value of the current scheme to the driver again, changed or not. 0, the negated key when it failed, -1
    // when the scheme does not hold the key, which is an assertion. Mutex.
    int restore(int p_nKey);

    // The same for the focus mode and then the exposure mode; the second only when the first succeeded. True when both
    // did. The mutex is taken for each.
    bool restoreAeMode();

    // Discards what was not stored: reads the current scheme's file back and sends what differs. True when everything was
    // applied, and when there is nothing stored to go back to (factory scheme, no scheme). A file that cannot be read is
    // reported, and the scratch set is applied with what it holds. Mutex, unless there is nothing to go back to. Blocks for
    // file access and the driver.
    bool resetToLastParameters();

    // --- Ranges and the maximum shutter -----------------------------------------------------------------------------

    // Default and legal values of one of the commands 49, 50, 82 and 1537, now. The values are appended to p_strRange in
    // the driver's order, with a blank between them. False for any other command and when its range is not dynamic; true
    // with nothing filled when the range is not a list. No lock. Blocks for the driver.
    bool getSensorParamRange(int p_nCmd, int& p_nDefault, std::string& p_strRange);

    // The maximum shutter as a place, from 0, in the first 30 values of the driver's list. Reading and stepping fail while
    // the driver's current value is not in the list. A step at the end of the list sets the current value again. Setting
    // takes the mutex, reading does not, and the two are not atomic together.
    bool getShutterValue(int& index);
    bool setShutterValue(int index);
    bool shutterUp();    // towards the end of the list
    bool shutterDown();  // towards its beginning

    // --- Schemes --------------------------------------------------------------------------------------------------------

    // Applies a scheme: 0 to the number of user schemes minus 1, or that number for the factory scheme. Anything else is
    // reported and changes nothing. Always true on an initialised controller. Mutex; waits in steps of half a second
    // while a reset, a rollback or another switch is going on.
    bool setParamScheme(int p_nScheme);

    // The current scheme, -1 when none is applied. Always true. Mutex.
    bool getParamScheme(int& p_nScheme);

    // 0 manual, 1 automatic: whether the background thread switches schemes. Other values are reported and stored all the
    // same (any value but 0 counts as automatic). Always true on an initialised controller. Mutex; waits as
    // setParamScheme.
    bool setParamMode(int p_nMode);
    bool getParamMode(int& p_nMode);

    // --- Style documents ------------------------------------------------------------------------------------------------

    // The style document with the driver's current ranges, built anew each time; empty when it could not be built. Waits
    // up to 30 times 50 ms for the image pipeline, then takes the mutex.
    std::string getUIStyleFile();

    // The common file and the language file of a language; those of the first language when the id is unknown, an empty
    // text when there is none. Mutex.
    std::string getUICommonFile(int p_nLanguageId);
    std::string getUILanguageFile(int p_nLanguageId);

    // The documents that these two return, one entry a language; they replace those given before. Before or after init;
    // they outlive uinit and resetParameters. False, and nothing changes, for a language that is there twice and for a
    // text with a zero byte, which is reported. Mutex.
    bool setLanguageDocuments(const std::vector<LanguageDocuments>& p_vecDocuments);

    // Whether wide dynamic range is offered on this channel. Always true. No lock.
    bool setShowWDRFalg(bool p_bShow);
    bool getShowWDRFalg(bool& p_bShow);

    // Whether the beaway function is offered, for all channels of the process. Always true. No lock.
    bool setShowBeawayFalg(bool p_bShow);
    bool getShowBeawayFalg(bool& p_bShow);

    // --- Direct operations on the driver: no lock, no parameter set ------------------------------------------------------

    // Each is true when every driver call that decides it succeeded. Outputs are as the driver left them otherwise.

    bool getCmdExecStatus(int p_nCmd, int& p_nStatus);  // IA_EXEC_DONE or IA_EXEC_RUNNING

    bool focusFar();   // one step; forces manual focus
    bool focusNear();  // one step; forces manual focus
    bool irisUp();     // one step; forces manual exposure
    bool irisDown();   // one step; forces manual exposure
    bool zoomIn();
    bool zoomOut();
    bool setPTZRunState(int p_nState);

    // The text of the camera module's version; untouched on failure.
    bool getCameraVerInf(std::string& p_strVersion);

    // Position of the zoom motor, and its magnification in thousandths (1000 to 16000; untouched above position 31424).
    bool getZoomValue(int& p_nPosition, int& p_nRatio);
    bool setZoomValue(int p_nPosition);

    bool setFocusValue(int p_nPosition);
    bool getFocusValue(int& p_nPosition);
    bool setFocusMode(int p_nMode);
    bool getFocusMode(int& p_nMode);
    bool setDNState(int p_nState);
    bool getDNState(int& p_nState);  // 0 day, otherwise night
    bool getAFStatistic(unsigned& p_nStatistic);
    bool getWDR(int& p_nWDR);
    bool setExposureStrategy(int& p_nStrategy);
    bool getIRSwitch(int& p_nOn);
    bool getWhiteSwitch(int& p_nOn);
    bool getWhiteMode(int& p_nMode);
    bool getIrisValue(int& p_nValue);
    bool setIrisValue(int p_nValue);  // forces manual exposure; up to 255 becomes 256, above 25600 becomes 1048576
    bool getHeatStatus(bool& p_bHot);

private:
    friend class SensorControllerProbe;  // the one way for tests to look inside

    // Bits of m_nFlags.
    enum Flag : u32 {
        init_flag = 1u << 0,       // init is running
        uinit_flag = 1u << 1,      // uinit is running
        inited_flag = 1u << 2,     // init has ended; only another init clears it
        resetting_flag = 1u << 3,  // resetParameters is running
        rollback_flag = 1u << 4,   // a rollback to the stored values is running
        switching_flag = 1u << 5,  // a scheme is being applied
    };
    static constexpr u32 kBusyMask = resetting_flag | rollback_flag | switching_flag;
    static constexpr u32 kApplyingMask = init_flag | resetting_flag | rollback_flag | switching_flag;

    // What an operation that returns a code gives back on a controller that is not initialised.
    static constexpr int kNotReady = -1;

    // Whether init has built the parameter sets and uinit has not released them; reports a refused caller.
    bool isReady(const char* p_szCaller) const;

    // Key-command table.
    void buildKeyCmdMap();
    int findFromKeyCmdMap(const keycmd* p_pMap, unsigned int p_nKey, keycmd& p_stRow) const;

    // Driver gateway.
    int doIaCmd(unsigned int p_nCmd, unsigned int p_nOpt, void* p_pData);
    int exchangeWord(u32 p_nCmd, u32 p_nOpt, u32& p_nWord);
    int doIaCmd_User(unsigned int p_nCmd, unsigned int p_nOpt, void* p_pData);
    int notifyToVideo(int p_nKey, int p_nValue);
    bool setDriverValue(u32 p_nCmd, int p_nValue);
    bool getDriverValue(u32 p_nCmd, int& p_nValue);

    // Special-key handlers, and what they share.
    u32 companion(u32 p_nKey) const;
    int notifyUnsigned(u32 p_nKey, u32 p_nValue);
    int doHwdr(unsigned int p_nKey, unsigned int p_nDir, void* p_pVal);
    int doImageAdjust(unsigned int p_nKey, unsigned int p_nDir, void* p_pVal);
    int test_debugParam(unsigned int p_nKey, unsigned int p_nDir, void* p_pVal);
    int doDIS(unsigned int p_nKey, unsigned int p_nDir, void* p_pVal);
    int doIaCmd_PanoTuning(unsigned int p_nKey, unsigned int p_nDir, void* p_pVal);
    int doDNThr(unsigned int p_nKey, unsigned int p_nDir, void* p_pVal);
    int doDNTime(unsigned int p_nKey, unsigned int p_nDir, void* p_pVal);
    int doMirror(unsigned int p_nKey, unsigned int p_nDir, void* p_pVal);
    int doBeaway(unsigned int p_nKey, unsigned int p_nDir, void* p_pVal);

    // Parameter cache. setOf is null for a scheme that is not in the table.
    KeyVal* setOf(u32 p_nScheme);
    const KeyVal* setOf(u32 p_nScheme) const;
    int setKeyValToCache(u32 p_nScheme, u32 p_nKey, u32 p_nValue, bool p_bForce);
    int getKeyValFromCache(u32 p_nScheme, u32 p_nKey, u32& p_nValue) const;
    bool isKeyValSame(const KeyVal& p_stKeyVal) const;

    // Write path: the list form, and its steps. Takes no lock.
    enum class EntryOutcome { Record, LeaveOut, EndWalk };
    int setParameters(KeyVal* p_pKeyval, u32 p_nCount, bool p_bCache);
    EntryOutcome applyEntry(u32 p_nIndex, KeyVal& p_stEntry, u32 p_nFirstKey, int& p_nResult);
    void takeSchemeMode(u32 p_nMode);
    bool applyOnSecondChannel(u32 p_nKey, u32& p_nValue);
    bool shareDayNightKey(u32 p_nKey, u32 p_nValue);
    bool isPowerAllowed(const KeyVal& p_stEntry);
    bool followLightType(u32 p_nLightType, u32& p_nKey, u32 p_nValue);
    bool dispatch(u32 p_nKey, u32 p_nIndex, KeyVal& p_stEntry);
    void record(u32 p_nIndex, const KeyVal& p_stEntry);
    bool setCached(u32 p_nKey, int p_nValue);

    // Read path.
    bool getCached(u32 p_nKey, int& p_nValue);
    bool isShutterDriverGoverned() const;

    // Persistence.
    bool isUserScheme(u32 p_nScheme) const;
    int checkWindow(u32 p_nScheme) const;

    // The maximum shutter's list.
    std::vector<int> shutterList();
    int shutterPlace(const std::vector<int>& p_vecList);
    bool stepShutter(int p_nStep);

    // Schemes.
    int switch_to(int p_nScheme, bool p_bForce);
    int LPR_switch_to(int p_nScheme);
    struct SchemeWindow {
        u32 nStart;  // hour * 100 + minute
        u32 nEnd;
    };
    SchemeWindow windowOf(const KeyVal* p_pSet) const;
    int judgeCurScheme(int& p_nScheme, int& p_nSchedule);
    void setSwitchingSource(u32 p_nMode);
    bool beginSwitch(int p_nScheme);
    void waitWhileBusy() const;

    // Background thread: one cycle, and its steps. Takes no lock.
    int sensorThread();
    int dayNightScheme();
    bool isCurrent(int p_nScheme) const;
    void switchByItself(int p_nScheme);
    void followDayNightForPlates();
    void followScheduleForPlates(int p_nScheme);

    // Steps of init and resetParameters.
    void allocateSets(KeyVal* p_pFactory);
    void readDeviceFacts();
    std::string parameterFile(u32 p_nScheme) const;
    void writeDefaults(u32 p_nScheme, const std::string& p_strFile);
    void loadScheme(u32 p_nScheme);
    void decideOfferedControls();
    ModuleConfigure moduleConfigureForReset() const;

    void fillLanguageTable();
    std::string languageText(int p_nLanguageId, char* LanguageFileEntry::*p_pText) const;

    // Members in the order and of the meaning of the camera's own record. Shared words are relaxed atomics; everything
    // else changes only while the controller is built or released, or under m_objMutex.
    SysConfig m_stSysConf;
    RelaxedWord<u32> m_nCameraID{1};                    // channel, from 1; the driver counts from 0
    QVMutex m_objMutex;                                 // serialises the host's operations on the parameter sets
    std::unique_ptr<GThread> m_pSensorThread;           // runs sensorThread
    RelaxedWord<int> m_nLastScheme{-1};                 // applied before the latest switch
    RelaxedWord<u32> m_nCurScheme{0xFFFFFFFFu};         // applied now
    RelaxedWord<u32> m_nParamMode{0};                   // 0 manual, otherwise automatic
    KeyVal** m_ppUserKeyVal = nullptr;                  // owned: nSchemeSum + 1 sets, the last one the factory set
    KeyVal* m_pstKeyValTmp = nullptr;                   // owned: scratch, m_nKeyValSum records
    KeyVal* m_pFctKeyVal = nullptr;                     // the factory set; owns nothing after init
    u32 m_nKeyValSum = 0;                               // records of every set
    KeyVal* m_pKeyValWork = nullptr;                    // owned: scratch for a patched set
    keycmd* m_pKeyCmdMap = nullptr;                     // owned
    u32 m_nVersion = 8;                                 // version of the parameter files; frozen
    VideoStreamModule* m_pVideoStreamModule = nullptr;  // the host's
    MachineInfo m_objMachineInfo;
    RelaxedWord<u32> m_nFlags{0};           // Flag bits
    u32 m_nKeyCmdNum = 160;                 // rows of m_pKeyCmdMap; 154 once it is built
    RelaxedWord<u32> m_nLastSchedule{255};  // what the thread of a plate-recognition device last acted on
    bool m_bLPRDevice = false;
    RelaxedWord<bool> m_bShowWDRFalg{true};
    RelaxedWord<bool> m_bScheduleSwitch{false};
    RelaxedWord<bool> m_bDNSchemeSwitch{false};
    bool m_bisLimitedIrPower = false;
    SensorZoomFocusParam m_objZoomFocusParam;
    std::vector<LanguageDocuments> m_vecLanguageDocuments;  // as the host gave them
    std::vector<LanguageFileEntry> m_vecLanguageFiles;      // the table of m_stSysConf
};
