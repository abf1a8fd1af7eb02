// A story of a whole camera, told as a text that a person can read and a test compares as a whole.
//
// What is done to the camera is a step, headed "== who: what". Below it stands everything that the camera was told and
// said, in order, one line each:
//
//   12:00:00  ia ch0 set 34 60 = 0  (brightness)       a call of the driver, as simcam/Transcript.h writes it
//   12:00:00  video ch1 2384 1 = 0  (KEY_MIRROR)       a notification of the video module
//             out ...                                  a line on standard output, without its colours
//   12:59:59  ... 3599 times more                      the line above again and again, the last time at this time
//
// and then what the step left behind:
//
//             err ...                                  a line on standard error
//             log ...                                  a line of the error log, without its date
//             file new ..., changed ..., gone ...      what became of the files below the device root
//             -> ...                                   what the host got back
//
// Real line numbers of the source are written "line:#"; those that people look for in a camera's log stay. A "$" ends a
// line that would otherwise end with a blank. A line without anything is "out" alone.
//
// The expected text is transcripts/<story>.txt beside the test. With SENSORDLL_RENEW_TRANSCRIPTS=1 in its environment a
// test writes what happened there instead, to be read before it is kept.
#pragma once

#include "tests/integration/WholeCamera.h"

#include <cstdint>
#include <map>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

class Story : public WholeCamera {
protected:
    Story();
    ~Story() override;

    // A step of the host; returns what the code returns, and writes that down.
    template <typename Code>
    auto host(const std::string& p_strWhat, Code&& p_fnCode) {
        return step("host", p_strWhat, std::forward<Code>(p_fnCode));
    }
    // Something that happens to the camera: its flash, its scene, its hardware.
    template <typename Code>
    auto world(const std::string& p_strWhat, Code&& p_fnCode) {
        return step("world", p_strWhat, std::forward<Code>(p_fnCode));
    }
    // The held clock moves on: by a time, or to the next moment that it shows this time of day.
    void pass(int p_nSeconds);
    void until(int p_nHour, int p_nMinute, int p_nSecond = 0);
    // The held clock is set.
    void setClock(int p_nHour, int p_nMinute);

    // The usual steps of a host.
    void start(Channel& p_objChannel);
    void flush(Channel& p_objChannel);
    int set(Channel& p_objChannel, u32 p_nKey, int p_nValue);
    int set(Channel& p_objChannel, const std::string& p_strText);
    void scheme(Channel& p_objChannel, int p_nScheme);
    void mode(Channel& p_objChannel, int p_nMode);
    // "true" and the value, or "false".
    std::string get(Channel& p_objChannel, u32 p_nKey);
    // "1" and the pairs of getParameters, or "0".
    std::string list(Channel& p_objChannel, const std::string& p_strKeys);
    // The pairs of getAllParameters.
    std::string all(Channel& p_objChannel);
    // "true default 7 range "7 8 9"", or "false".
    std::string range(Channel& p_objChannel, int p_nCmd);
    // The result of SensorCheck, whose text is replaced.
    int check(Channel& p_objChannel, std::string& p_strText);
    int restore(Channel& p_objChannel, u32 p_nKey);
    bool rollback(Channel& p_objChannel);
    // Fetches the style document and tells it as a merged document is told among the files.
    std::string style(Channel& p_objChannel);
    void uinit(Channel& p_objChannel);
    void light(const std::string& p_strLux);
    void fault(const std::string& p_strText);
    void noFaults();

    // Whatever happens in the code is not told.
    template <typename Code>
    void untold(Code&& p_fnCode) {
        const std::size_t nLines = m_vecLines.size();
        step("untold", "", std::forward<Code>(p_fnCode));
        m_vecLines.resize(nLines);
    }

    // Compares the whole story with its transcript.
    void expectTranscript(const std::string& p_strName) const;

    // What the latest step told the driver and the video module, without times and names; for the facts that matter.
    const std::vector<std::string>& calls() const { return m_vecCalls; }
    std::vector<std::string> setsOf(const std::string& p_strStart) const;

private:
    template <typename Code>
    auto step(const char* p_szWho, const std::string& p_strWhat, Code&& p_fnCode) {
        begin(p_szWho, p_strWhat);
        if constexpr (std::is_void_v<decltype(p_fnCode())>) {
            p_fnCode();
            end("");
        } else {
            auto result = p_fnCode();
            end("->" + (shown(result).empty() ? "" : " " + shown(result)));
            return result;
        }
    }
    static std::string shown(bool p_bResult) { return p_bResult ? "true" : "false"; }
    static std::string shown(int p_nResult) { return std::to_string(p_nResult); }
    static std::string shown(u32 p_nResult) { return std::to_string(p_nResult); }
    static std::string shown(const std::string& p_strResult);  // a long list of pairs in several lines

    void begin(const char* p_szWho, const std::string& p_strWhat);
    void end(const std::string& p_strResult);
    void take(const std::string& p_strOutput);
    void takeText(const std::string& p_strText);
    void takeCall(const std::string& p_strMarked);
    void takeLog();
    void takeFiles();
    void addTimed(const std::string& p_strTime, const std::string& p_strLine);
    void add(const std::string& p_strLine);
    void closeRepetition();

    std::vector<std::string> m_vecLines;
    std::vector<std::string> m_vecCalls;            // of the latest step
    std::map<std::string, std::string> m_mapFiles;  // as the latest step left them
    // The repetition that is going on at the end of m_vecLines.
    std::string m_strRepeated;
    std::string m_strLastTime;
    int m_nRepetitions = 0;
};
