/// @file
/// The image-sensor control of one camera channel: the one class that the host sees.
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

/// The image-sensor control of one camera channel: the one class that the host sees.
///
/// Life: construct, setChannelID, setVideoStreamModule, init, operations, uinit, destroy. uinit may be followed by
/// another init. The destructor stops the background thread but releases no parameter set: call uinit first.
///
/// Units and ranges of parameter values are those of the driver; the style document (getUIStyleFile) describes them.
///
/// Threads. The host may call from several threads. Operations that touch the parameter sets take the controller's
/// mutex for their whole run and block while another one holds it; "Lock" says so below. init, uinit, construction and
/// destruction must have the controller to themselves. The controller's own thread ("SensorThread") takes no lock. No
/// operation may be called from inside a driver call or a notification of the video module: the mutex is not recursive,
/// and a second lock by its holder ends the process.
///
/// Blocking. "Driver" stands for the time that the driver takes for the calls, "files" for the time of the medium. What
/// waits on the platform's clock says how long at most. `docs/operations.md` has all of this in one table.
///
/// A controller that is not initialised, or no longer, refuses every operation that needs a parameter set: such a call
/// returns its failure value, says so at debug level 6 and touches nothing, except where its description says
/// otherwise. The direct operations on the driver work at any time. Not copyable.
class SENSORDLL_API ISensorController {
public:
    /// Creates the background thread object (not running) and reads the machine information. Does not touch the driver.
    /// @blocks files
    ISensorController();
    /// Stops the background thread and blocks until it is gone. Releases no parameter set: call uinit first.
    ~ISensorController();
    ISensorController(const ISensorController&) = delete;
    ISensorController& operator=(const ISensorController&) = delete;

    /// @name Set-up and state
    /// @{

    /// Names the channel. Before init.
    /// @param p_nChannelID  from 1; on a device of type 13 the channel is always 2, whatever is given
    /// @lock none
    void setChannelID(int p_nChannelID);

    /// Hands over the host's video module. Before init. Until it is set, notifications are dropped.
    /// @param p_pModule  never freed here, may be null; must outlive the controller's use
    /// @lock none
    void setVideoStreamModule(const VideoStreamModule* p_pModule);

    /// Builds the channel from its module configuration: the style document, the factory set, one parameter set a
    /// scheme, the parameter files; applies the starting scheme and starts the background thread. Steps that fail are
    /// reported in the log and do not stop it.
    /// @snippet ExamplesTest.cpp init
    /// @param p_objModuleConfigure  the channel's, as ModuleConfigureParser reads it
    /// @return true; false, without a change, on a controller that is initialised already
    /// @lock none; init must have the controller to itself
    /// @blocks files, driver, and one pace of the background thread (1 s); deleting files of another version up to 30 s
    ///         in addition
    bool init(const ModuleConfigure& p_objModuleConfigure);

    /// Stops the background thread and releases what init built. Does nothing on a controller that init has not built.
    /// @lock none; uinit must have the controller to itself
    /// @blocks until the thread is gone; its wait is woken, so for the driver calls of a switch at most
    void uinit();

    /// Back to factory settings: deletes the stored parameter files of every channel and builds the controller anew.
    /// Languages, channel and video module stay.
    /// @return true; false, without a change, on a controller that is not initialised
    /// @lock mutex
    /// @blocks as uinit and init, without the pace; deleting files up to 30 s
    bool resetParameters();

    /// The kind of sensor.
    /// @return the module id of the module configuration; 0 before init
    /// @lock none
    u32 getSensorType() const;

    /// Whether the controller is built.
    /// @return true from the end of init on, also after uinit; false while another init runs
    /// @lock none
    bool getSensorStatus() const;

    /// Does nothing.
    void printDebugMsg();

    /// Reads the lens lock.
    /// @param[out] p_objParam  the settings now
    /// @return 0
    /// @lock none
    int getSensorZoomFocusParam(SensorZoomFocusParam& p_objParam);
    /// Sets the lens lock. While it is on, driver commands 1536 to 1616 succeed without reaching the driver.
    /// @param p_objParam  the settings; only read
    /// @return 0
    /// @lock none
    int setSensorZoomFocusParam(SensorZoomFocusParam& p_objParam);

    /// @}
    /// @name Parameters
    /// @{

    /// Sets one parameter of the current scheme and sends it to the driver.
    /// @snippet ExamplesTest.cpp setParameter
    /// @param p_nKey    the parameter: the id of an element of the style document
    /// @param p_nValue  in the driver's units, in the range that the style document gives
    /// @param p_bCache  true: a value that is already in force is not sent again, and the value is recorded in the
    ///                  current scheme, in memory (flush stores it); false: always sent, never recorded
    /// @return 0, or the negated key at which it failed; -1 on a controller that is not initialised
    /// @lock mutex
    /// @blocks driver
    int setParameter(int p_nKey, int p_nValue, bool p_bCache);

    /// Sets several parameters, in the order of the text. The first failure ends the call, and what was applied before
    /// stays. Malformed pairs are not reported: a field that does not parse keeps the value of the pair before it.
    /// @snippet ExamplesTest.cpp setParameters
    /// @param p_strText  "(key,value)" pairs in decimal, for example "(34,50)(2337,128)"; a text without pairs succeeds
    /// @param p_bCache   as for setParameter
    /// @return 0, or the negated key at which it failed; -1 on a controller that is not initialised
    /// @lock mutex
    /// @blocks driver
    int setParameters(const std::string& p_strText, bool p_bCache);

    /// @}
    /// @name Named setters
    /// setParameter with p_bCache true: result true when that returned 0, lock and blocking the same. Arguments taken
    /// by reference are only read. Strengths are percent; what a choice means is written in the style document.
    /// @{

    /// Day and night, key 144. @param p_nMode  the choice @return true on success
    bool setDNMode(int p_nMode);
    /// Wide dynamic range, key 2368. @param p_nOn  0 off, 1 on @return true on success
    bool setWDRSwitch(int& p_nOn);
    /// Its strength, key 2369. @param p_nStrength  0 to 100 @return true on success
    bool setWDRStrength(int& p_nStrength);
    /// Highlight compensation, key 112. @param p_nOn  0 off, 1 on @return true on success
    bool setHLCSwitch(int& p_nOn);
    /// Its strength, key 113. @param p_nStrength  0 to 100 @return true on success
    bool setHLCStrength(int& p_nStrength);
    /// Backlight compensation, key 128. @param p_nOn  0 off, 1 on @return true on success
    bool setBLCSwitch(int& p_nOn);
    /// Its strength, key 130. @param p_nStrength  0 to 100 @return true on success
    bool setBLCStrength(int& p_nStrength);
    /// Defog, key 2400. @param p_nOn  0 off, 1 on @return true on success
    bool setDefogSwitch(int& p_nOn);
    /// Its strength, key 2401. @param p_nStrength  0 to 100 @return true on success
    bool setDefogStrength(int& p_nStrength);
    /// 2D noise reduction, key 2304. @param p_nOn  0 off, 1 on @return true on success
    bool set2DSwitch(int& p_nOn);
    /// Its mode, key 2305. @param p_nMode  0 automatic, 1 manual @return true on success
    bool set2DMode(int& p_nMode);
    /// Most in automatic mode, key 2306. @param p_nStrength  0 to 100 @return true on success
    bool set2DAutoMaxStrength(int& p_nStrength);
    /// Strength in manual mode, key 2307. @param p_nStrength  0 to 100 @return true on success
    bool set2DManualMaxStrength(int& p_nStrength);
    /// 3D noise reduction, key 2308. @param p_nOn  0 off, 1 on @return true on success
    bool set3DSwitch(int& p_nOn);
    /// Its mode, key 2309. @param p_nMode  0 automatic, 1 manual @return true on success
    bool set3DMode(int& p_nMode);
    /// Most in automatic mode, key 2312. @param p_nStrength  0 to 100 @return true on success
    bool set3DAutoMaxStrength(int& p_nStrength);
    /// Strength in manual mode, key 2313. @param p_nStrength  0 to 100 @return true on success
    bool set3DManualMaxStrength(int& p_nStrength);
    /// Beaway, key 2385. @param p_nOn  0 off, 1 on @return true on success
    bool setBeaway(int& p_nOn);
    /// White light mode, key 171. @param p_nMode  the choice @return true on success
    bool setWhiteMode(int p_nMode);

    /// Infrared light, key 160. Switching it on first asks the driver for the white light and switches that off.
    /// @param p_nOn  0 off, 1 on; any value but 1 touches its own key only
    /// @return true when all of it succeeded
    /// @lock mutex, for each change, not across them
    bool setIRSwitch(int p_nOn);
    /// White light, key 170. Switching it on first asks the driver for the infrared light and switches that off.
    /// @param p_nOn  0 off, 1 on; any value but 1 touches its own key only
    /// @return true when all of it succeeded
    /// @lock mutex, for each change, not across them
    bool setWhiteSwitch(int p_nOn);

    /// Sets the mirror direction, key 2384, and stores the current scheme at once.
    /// @param p_nDirection  0 off, 1 and 2 the two directions, 3 both
    /// @return true when the direction was set, also when it could not be stored
    /// @lock mutex, for the setting and for the storing
    /// @blocks driver, files
    bool setMirrorMode(int p_nDirection);

    /// @}
    /// @name Reading back
    /// @{

    /// Reads one parameter: from the current scheme's set; when the set does not hold the key, from the driver.
    /// Infrared keys 160, 161, 163, 165 and 167 that the set does not hold read as -1 without asking.
    /// @snippet ExamplesTest.cpp getParameter
    /// @param p_nKey       the parameter
    /// @param[out] p_nVal  its value; when the driver failed, as the driver left it
    /// @return false when the driver failed, which is an assertion, and on a controller that is not initialised
    /// @lock mutex
    /// @blocks driver, when it is asked
    bool getParameter(int p_nKey, int& p_nVal);

    /// @}
    /// @name Named getters
    /// getParameter: result, lock and blocking the same, except where noted.
    /// @{

    /// Key 144. @param[out] p_nMode  the choice @return true, whatever the read said
    bool getDNMode(int& p_nMode);
    /// Key 2368. @param[out] p_nOn  0 off, 1 on @return true on success
    bool getWDRSwitch(int& p_nOn);
    /// Key 2369. @param[out] p_nStrength  0 to 100 @return true on success
    bool getWDRStrength(int& p_nStrength);
    /// Key 112. @param[out] p_nOn  0 off, 1 on @return true on success
    bool getHLCSwitch(int& p_nOn);
    /// Key 113. @param[out] p_nStrength  0 to 100 @return true on success
    bool getHLCStrength(int& p_nStrength);
    /// Key 128. @param[out] p_nOn  0 off, 1 on @return true on success
    bool getBLCSwitch(int& p_nOn);
    /// Key 130. @param[out] p_nStrength  0 to 100 @return true on success
    bool getBLCStrength(int& p_nStrength);
    /// Key 2400. @param[out] p_nOn  0 off, 1 on @return true on success
    bool getDefogSwitch(int& p_nOn);
    /// Key 2401. @param[out] p_nStrength  0 to 100 @return true on success
    bool getDefogStrength(int& p_nStrength);
    /// Key 2304. @param[out] p_nOn  0 off, 1 on @return true on success
    bool get2DSwitch(int& p_nOn);
    /// Key 2305. @param[out] p_nMode  0 automatic, 1 manual @return true on success
    bool get2DMode(int& p_nMode);
    /// Key 2306. @param[out] p_nStrength  0 to 100 @return true on success
    bool get2DAutoMaxStrength(int& p_nStrength);
    /// Key 2307. @param[out] p_nStrength  0 to 100 @return true on success
    bool get2DManualMaxStrength(int& p_nStrength);
    /// Key 2308. @param[out] p_nOn  0 off, 1 on @return true on success
    bool get3DSwitch(int& p_nOn);
    /// Key 2309. @param[out] p_nMode  0 automatic, 1 manual @return true on success
    bool get3DMode(int& p_nMode);
    /// Key 2312. @param[out] p_nStrength  0 to 100 @return true on success
    bool get3DAutoMaxStrength(int& p_nStrength);
    /// Key 2313. @param[out] p_nStrength  0 to 100 @return true on success
    bool get3DManualMaxStrength(int& p_nStrength);
    /// Key 2385. @param[out] p_nOn  0 off, 1 on @return true on success
    bool getBeaway(int& p_nOn);
    /// Key 2384. @param[out] p_nDirection  0 to 3 @return true on success
    bool getMirrorValue(int& p_nDirection);

    /// @}
    /// @name Reading back several
    /// @{

    /// Takes a key list apart. Empty items are dropped, blanks are kept.
    /// @param p_strIds       for example "(34,2337)"
    /// @param[in,out] items  the items of the list are appended
    /// @return true when there are any items then; false, with the items as they were, for a text that is not one pair
    ///         of parentheses around something
    /// @lock none
    bool parseSensorParameter(const std::string& p_strIds, std::vector<std::string>& items);

    /// Reads several parameters.
    /// @snippet ExamplesTest.cpp getParameters
    /// @param p_strIds  a key list, for example "(34,2337)"; an item that is no number counts as key 0
    /// @param[out] out  "(key,value)" pairs in the order of the list; keys that cannot be read are left out
    /// @return 1; 0 for a malformed list, which is reported and leaves out as it is
    /// @lock mutex, for each key
    /// @blocks driver, for each key that the set does not hold
    int getParameters(const std::string& p_strIds, std::string& out);

    /// Reads the whole current scheme: what is in memory, after the driver has corrected it in place; but what is
    /// stored on flash while the style's own value of the maximum shutter is 200 or above, or there is none.
    /// @param[out] out  replaced by "(key,value)" pairs; as it is while no scheme is applied, and for the factory
    ///                  scheme where flash would answer
    /// @return true; false on a controller that is not initialised
    /// @lock mutex
    /// @blocks driver, files
    bool getAllParameters(std::string& out);

    /// A raw check command of the driver (2816).
    /// @param[in,out] io  a list of three numbers, for example "(1,2,3)"; with 2 in second place it reads, and io
    ///                    becomes the result in decimal; otherwise it writes, and io stays. Numbers after the third are
    ///                    not looked at
    /// @return the driver's result; 0 for a malformed list, which is reported
    /// @lock none
    /// @blocks driver
    int SensorCheck(std::string& io);

    /// @}
    /// @name Keeping
    /// @{

    /// Stores the current scheme on flash; nothing for the factory scheme. A failing medium is reported in the log, and
    /// the file keeps its old content.
    /// @snippet ExamplesTest.cpp flush
    /// @return 0; what paramCheck says, and then nothing is stored; -1 on a controller that is not initialised
    /// @lock mutex
    /// @blocks files
    int flush();

    /// Whether the current scheme's window can be stored. Values that a switch changes meanwhile may be old or new.
    /// @return 0, also when no scheme is applied and on a controller that is not initialised; 505 when the window starts
    ///         and 506 when it ends later than 24:00, 507 when it does not start before it ends
    /// @lock mutex
    int paramCheck();

    /// Sends one value of the current scheme to the driver again, changed or not.
    /// @param p_nKey  the parameter
    /// @return 0, the negated key when it failed, -1 when the scheme does not hold the key, which is an assertion, and
    ///         on a controller that is not initialised
    /// @lock mutex
    /// @blocks driver
    int restore(int p_nKey);

    /// Sends the focus mode (1536) and then the exposure mode (16) again; the second only when the first succeeded.
    /// @return true when both did
    /// @lock mutex, for each
    /// @blocks driver
    bool restoreAeMode();

    /// Discards what was not stored: reads the current scheme's file back and sends what differs. A file that cannot be
    /// read is reported, and the scratch set is applied with what it holds.
    /// @return true when everything was applied, and when there is nothing stored to go back to (factory scheme, no
    ///         scheme)
    /// @lock mutex, unless there is nothing to go back to
    /// @blocks files, driver
    bool resetToLastParameters();

    /// @}
    /// @name Ranges and the maximum shutter
    /// The maximum shutter is told as a place, from 0, in the first 30 values of the driver's list. Reading and
    /// stepping fail while the driver's current value is not in the list. Setting takes the mutex, reading does not,
    /// and the two are not atomic together.
    /// @{

    /// Default and legal values, now, of one of the commands 49, 50, 82 and 1537.
    /// @snippet ExamplesTest.cpp getSensorParamRange
    /// @param p_nCmd              the command
    /// @param[out] p_nDefault     the driver's default
    /// @param[in,out] p_strRange  the values are appended in the driver's order, with a blank between them
    /// @return false for any other command and when its range is not dynamic; true with nothing filled when the range
    ///         is not a list
    /// @lock none
    /// @blocks driver
    bool getSensorParamRange(int p_nCmd, int& p_nDefault, std::string& p_strRange);

    /// Where the maximum shutter stands.
    /// @param[out] index  its place, 0 to 29; untouched on failure
    /// @return false when it cannot be read or is not in the list
    /// @lock none
    /// @blocks driver
    bool getShutterValue(int& index);
    /// Sets the maximum shutter (key 49).
    /// @param index  a place in the list, from 0
    /// @return false for a place that the list does not have, and when setParameter failed
    /// @lock mutex, for the setting
    /// @blocks driver
    bool setShutterValue(int index);
    /// One step towards the end of the list; at the end the current value is set again.
    /// @snippet ExamplesTest.cpp shutterUp
    /// @return true when the value was set
    /// @lock mutex, for the setting
    /// @blocks driver
    bool shutterUp();
    /// One step towards the beginning of the list; at the beginning the current value is set again.
    /// @return true when the value was set
    /// @lock mutex, for the setting
    /// @blocks driver
    bool shutterDown();

    /// @}
    /// @name Schemes
    /// @{

    /// Applies a scheme: makes it current and sends what differs from the one before.
    /// @snippet ExamplesTest.cpp setParamScheme
    /// @param p_nScheme  0 to the number of user schemes minus 1, or that number for the factory scheme; anything else
    ///                   is reported and changes nothing
    /// @return true on an initialised controller, also when a value was refused; false on any other
    /// @lock mutex
    /// @blocks driver; waits in steps of 500 ms while a reset, a rollback or another switch is going on
    bool setParamScheme(int p_nScheme);

    /// The current scheme.
    /// @param[out] p_nScheme  -1 when none is applied
    /// @return true
    /// @lock mutex
    bool getParamScheme(int& p_nScheme);

    /// Whether the background thread switches schemes.
    /// @param p_nMode  0 manual, 1 automatic; other values are reported and stored all the same (any value but 0 counts
    ///                 as automatic)
    /// @return true on an initialised controller, false on any other
    /// @lock mutex
    /// @blocks in steps of 500 ms while a reset, a rollback or another switch is going on
    bool setParamMode(int p_nMode);
    /// Whether the background thread switches schemes.
    /// @param[out] p_nMode  as it was set; 0 after init
    /// @return true
    /// @lock mutex
    bool getParamMode(int& p_nMode);

    /// @}
    /// @name Style documents
    /// @{

    /// The style document with the driver's current ranges, built anew each time.
    /// @snippet ExamplesTest.cpp getUIStyleFile
    /// @return XML in UTF-8; empty when it could not be built and on a controller that is not initialised
    /// @lock mutex, after the wait
    /// @blocks up to 30 times 50 ms until the image pipeline runs (VideoStreamModule::get2ARunRet), then driver
    std::string getUIStyleFile();

    /// The common file of a language.
    /// @param p_nLanguageId  the host's number of the language; an unknown one counts as the first
    /// @return the text that setLanguageDocuments gave; empty when there is none
    /// @lock mutex
    std::string getUICommonFile(int p_nLanguageId);
    /// The language file of a language.
    /// @param p_nLanguageId  the host's number of the language; an unknown one counts as the first
    /// @return the text that setLanguageDocuments gave; empty when there is none
    /// @lock mutex
    std::string getUILanguageFile(int p_nLanguageId);

    /// Gives the documents that getUICommonFile and getUILanguageFile return; they replace those given before. Before
    /// or after init; they outlive uinit and resetParameters.
    /// @snippet ExamplesTest.cpp setLanguageDocuments
    /// @param p_vecDocuments  one entry a language
    /// @return false, and nothing changes, for a language that is there twice and for a text with a zero byte, which is
    ///         reported
    /// @lock mutex
    bool setLanguageDocuments(const std::vector<LanguageDocuments>& p_vecDocuments);

    /// Offers wide dynamic range on this channel, or not. init decides anew.
    /// @param p_bShow  whether the style document has its controls
    /// @return true
    /// @lock none
    bool setShowWDRFalg(bool p_bShow);
    /// Whether wide dynamic range is offered on this channel.
    /// @param[out] p_bShow  the flag
    /// @return true
    /// @lock none
    bool getShowWDRFalg(bool& p_bShow);

    /// Offers the beaway function, or not, for all channels of the process. init decides anew.
    /// @param p_bShow  whether the style documents have its controls
    /// @return true
    /// @lock none
    bool setShowBeawayFalg(bool p_bShow);
    /// Whether the beaway function is offered, for all channels of the process.
    /// @param[out] p_bShow  the flag
    /// @return true
    /// @lock none
    bool getShowBeawayFalg(bool& p_bShow);

    /// @}
    /// @name Direct operations on the driver
    /// No lock, no parameter set; they block for the driver. Each is true when every driver call that decides it
    /// succeeded. Outputs are as the driver left them otherwise.
    /// @{

    /// Whether an earlier command has been carried out.
    /// @param p_nCmd          the driver command
    /// @param[out] p_nStatus  IA_EXEC_DONE or IA_EXEC_RUNNING
    /// @return true on success
    bool getCmdExecStatus(int p_nCmd, int& p_nStatus);

    /// One step farther; forces manual focus. @return true on success of the step
    bool focusFar();
    /// One step nearer; forces manual focus. @return true on success of the step
    bool focusNear();
    /// Opens the iris by one step; forces manual exposure. @return true when both succeeded
    bool irisUp();
    /// Closes the iris by one step; forces manual exposure. @return true when both succeeded
    bool irisDown();
    /// One step towards tele. @return true on success
    bool zoomIn();
    /// One step towards wide. @return true on success
    bool zoomOut();
    /// Tells whether the pan/tilt head moves. @param p_nState  1 while it moves, 0 @return true on success
    bool setPTZRunState(int p_nState);

    /// The version of the camera module. @param[out] p_strVersion  at most 50 characters; untouched on failure
    /// @return true on success
    bool getCameraVerInf(std::string& p_strVersion);

    /// Where the zoom motor stands.
    /// @param[out] p_nPosition  position of the motor
    /// @param[out] p_nRatio     magnification in thousandths, 1000 to 16000; untouched above position 31424
    /// @return true on success
    bool getZoomValue(int& p_nPosition, int& p_nRatio);
    /// Moves the zoom motor. @param p_nPosition  position of the motor @return true on success
    bool setZoomValue(int p_nPosition);

    /// Moves the focus motor. @param p_nPosition  position of the motor @return true on success
    bool setFocusValue(int p_nPosition);
    /// Where the focus motor stands. @param[out] p_nPosition  position of the motor @return true on success
    bool getFocusValue(int& p_nPosition);
    /// Sets the focus mode. @param p_nMode  0 automatic, 1 manual, others as the driver has them @return true on
    /// success
    bool setFocusMode(int p_nMode);
    /// Reads the focus mode. @param[out] p_nMode  0 automatic, 1 manual, others as the driver has them
    /// @return true on success
    bool getFocusMode(int& p_nMode);
    /// Forces day or night. @param p_nState  0 day, otherwise night @return true on success
    bool setDNState(int p_nState);
    /// Whether it is day or night for the driver. @param[out] p_nState  0 day, otherwise night @return true on success
    bool getDNState(int& p_nState);
    /// How sharp the picture is. @param[out] p_nStatistic  higher is sharper @return true on success
    bool getAFStatistic(unsigned& p_nStatistic);
    /// Wide dynamic range as the driver has it. @param[out] p_nWDR  0 off, 1 on @return true on success
    bool getWDR(int& p_nWDR);
    /// Sets the exposure strategy. @param p_nStrategy  the driver's choice; only read @return true on success
    bool setExposureStrategy(int& p_nStrategy);
    /// Infrared light as the driver has it. @param[out] p_nOn  0 off, 1 on @return true on success
    bool getIRSwitch(int& p_nOn);
    /// White light as the driver has it. @param[out] p_nOn  0 off, 1 on @return true on success
    bool getWhiteSwitch(int& p_nOn);
    /// White light mode as the driver has it. @param[out] p_nMode  the driver's choice @return true on success
    bool getWhiteMode(int& p_nMode);
    /// Where the iris stands. @param[out] p_nValue  256 (closed) to 25600 (open) @return true on success
    bool getIrisValue(int& p_nValue);
    /// Moves the iris; forces manual exposure.
    /// @param p_nValue  256 (closed) to 25600 (open); below 256 becomes 256, above 25600 becomes 1048576
    /// @return true when both succeeded
    bool setIrisValue(int p_nValue);
    /// Whether the heater is on. @param[out] p_bHot  true while it heats @return true on success
    bool getHeatStatus(bool& p_bHot);
    /// @}

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
    bool getNamed(u32 p_nKey, int& p_nValue);
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
