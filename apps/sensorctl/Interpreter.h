// Runs commands one after the other and reports each.
//
// Threads: one thread works the interpreter; transcript lines of a trace may come from any.
#pragma once

#include "apps/sensorctl/CommandTable.h"
#include "apps/sensorctl/LineSource.h"
#include "apps/sensorctl/Output.h"
#include "apps/sensorctl/Recorder.h"
#include "apps/sensorctl/Session.h"

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

namespace sensorctl {

class Interpreter {
public:
    struct Settings {
        bool bTrace = false;      // print commands and transcript lines as they happen
        bool bKeepGoing = false;  // go on after a command that failed
    };

    // All three must outlive the interpreter. Commands come from addAllCommands.
    Interpreter(Session& p_objSession, Output& p_objOutput, const Settings& p_stSettings);
    ~Interpreter();
    Interpreter(const Interpreter&) = delete;
    Interpreter& operator=(const Interpreter&) = delete;

    const CommandTable& table() const { return m_objTable; }

    // Runs lines until their end, quit, an interrupt or (unless told to keep going) a command that failed. In a
    // conversation neither a failure nor an interrupt from the keyboard ends it. Returns how many failed.
    std::size_t run(LineSource& p_objLines);
    std::size_t commands() const { return m_nCommands; }

    // --- For commands ---
    // Runs one command without reporting it. Arguments that it cannot use are a failed result.
    Result evaluate(const Words& p_vecWords);
    void quit() { m_bQuit = true; }
    void trace(bool p_bOn) { m_bTrace = p_bOn; }
    bool isTracing() const { return m_bTrace; }
    // Prints something that a command saw while it runs.
    void show(const char* p_szType, const std::string& p_strText, const Json& p_data) {
        m_objOutput.event(p_szType, p_strText, p_data);
    }
    // Records what is run from now on.
    void record(const std::string& p_strPath);
    Recorder& recorder() { return m_objRecorder; }
    // What the latest command that acts or looks answered.
    const Result& lastResult() const { return m_stLastResult; }
    // What driver and video module were told during the latest command that acts, as lines without the time.
    std::vector<std::string> lastLines() const;

private:
    Result runLine(const Line& p_stLine, const Words& p_vecWords);

    Session& m_objSession;
    Output& m_objOutput;
    const Settings m_stSettings;
    CommandTable m_objTable;
    Recorder m_objRecorder;
    Result m_stLastResult;
    std::uint64_t m_nLastStart = 0;  // transcript entries before the latest command that acts
    std::uint64_t m_nLastEnd = 0;    // and after it
    std::size_t m_nCommands = 0;
    bool m_bQuit = false;
    std::atomic<bool> m_bTrace;  // read by every thread that calls driver or video module
};

// A transcript entry as text, with the device time and what the command or key is called:
// "12:00:01 ia ch0 set 34 60 = 0                    brightness".
std::string textOf(const simcam::TranscriptEntry& p_stEntry);

// The same by name, for JSON. Microseconds count from the start of the session, so that a held clock gives the same
// transcript each time.
Json jsonOf(const Session& p_objSession, const simcam::TranscriptEntry& p_stEntry);

}  // namespace sensorctl
