// A driver and a video module that write down every call and answer as they are told.
//
// They stand in for the simulated camera where a test wants to say exactly what the driver answers. Calls of both go into
// one transcript, in order, one line each:
//
//   ia ch0 set 34 = 50                    a set of a 32-bit value
//   ia ch0 set 145 = 30 60 0              a set of a record: its words
//   ia ch0 get 153 -> 1                   a get of a 32-bit value that succeeded
//   ia ch0 get 153 failed -1              any call that failed
//   ia ch0 range 49, ia ch0 commands, ia ch0 status 1569 -> 0, ia ch0 correct 49: 7 -> 9
//   video ch1 2384 = 1                    a notification; " failed 5" follows when it did not return 0
#pragma once

#include "platform/ImageAdjust.h"
#include "platform/VideoStreamModule.h"

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

class RecordingCamera : public VideoStreamModule {
public:
    // The camera that ia_ioctrl_v2 reaches from now on; one at a time.
    RecordingCamera();
    ~RecordingCamera() override;

    // --- Answers of the driver ---
    // By default every call succeeds; a get answers what was last set for (channel, command), or 0.
    void driverHolds(int p_nChannel, u32 p_nCmd, int p_nValue);
    int driverValue(int p_nChannel, u32 p_nCmd);
    // This and every later call with (command, option) fails with the result, p_nTimes times (-1: always).
    void driverFails(u32 p_nCmd, u32 p_nOpt, int p_nResult, int p_nTimes = -1);
    // Dynamic commands and their ranges; the range of a command that has none fails with -1.
    void dynamicCommands(const std::vector<u32>& p_vecCmds);
    void range(u32 p_nCmd, const ia_dynamic_params_attr_st& p_stRange);
    static ia_dynamic_params_attr_st rangeOf(int p_nDefault, const std::vector<int>& p_vecItems);
    // Full control of one (command, option); the call is recorded first. Runs without the camera's lock.
    using Answer = std::function<int(int channel, void* data)>;
    void onDriver(u32 p_nCmd, u32 p_nOpt, Answer p_fnAnswer);

    // --- Answers of the video module ---
    void videoFails(int p_nKey, int p_nResult);
    int runRet = 0;       // of get2ARunRet
    int runRetCalls = 0;  // how often it was asked
    std::vector<AVStreamParam> streams;
    LimitedFramesWDRModeParam limits;
    std::function<void(int channel, int key, int value)> onNotify;  // called after recording

    // --- Transcript ---
    std::vector<std::string> transcript();
    std::string text();  // the transcript, a newline after each line
    void clear();
    // Only the lines that begin like this, for instance "ia ch0 set 34 ".
    std::vector<std::string> linesLike(const std::string& p_strStart);

    int notifyChange(int p_nChannel, int p_nKey, int p_nValue) override;
    int get2ARunRet() override;
    bool getAVStreamParam(int p_nChannel, std::vector<AVStreamParam>& p_vecStreams) override;
    bool getLimitedFramesWDRModeParam(int p_nChannel, LimitedFramesWDRModeParam& p_stParam) override;

    int ioctrl(int p_nChannel, u32 p_nCmd, u32 p_nOpt, void* p_pData);

private:
    struct Fault {
        int result;
        int times;
    };
    void record(const std::string& p_strLine);

    std::mutex m_mutex;  // guards everything below
    std::vector<std::string> m_vecLines;
    std::map<std::pair<int, u32>, int> m_mapValues;
    std::map<std::pair<u32, u32>, Fault> m_mapFaults;
    std::map<std::pair<u32, u32>, Answer> m_mapAnswers;
    std::map<u32, ia_dynamic_params_attr_st> m_mapRanges;
    std::map<int, int> m_mapVideoFaults;
    std::vector<u32> m_vecDynamic;
};
