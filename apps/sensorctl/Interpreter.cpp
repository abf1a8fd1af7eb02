#include "apps/sensorctl/Interpreter.h"

#include "apps/sensorctl/ClockText.h"
#include "apps/sensorctl/Commands.h"
#include "apps/sensorctl/Interrupt.h"
#include "apps/sensorctl/Shared.h"
#include "apps/sensorctl/Tokeniser.h"

#include <algorithm>
#include <iostream>

namespace sensorctl {

Interpreter::Interpreter(Session& p_objSession, Output& p_objOutput, const Settings& p_stSettings)
    : m_objSession(p_objSession), m_objOutput(p_objOutput), m_stSettings(p_stSettings), m_bTrace(p_stSettings.bTrace) {
    addAllCommands(m_objTable, *this);
    m_objSession.camera().transcript().setObserver([this](const simcam::TranscriptEntry& p_stEntry) {
        if (m_bTrace) {
            m_objOutput.transcript(textOf(p_stEntry), jsonOf(m_objSession, p_stEntry));
        }
    });
}

Interpreter::~Interpreter() {
    m_objSession.camera().transcript().setObserver({});
}

std::size_t Interpreter::run(LineSource& p_objLines) {
    std::size_t failed = 0;
    Line line;
    while (!m_bQuit && 0 == interruptSignal() && m_objOutput.isWhole() && p_objLines.next(line)) {
        Words words;
        Result result;
        try {
            words = line.vecWords ? *line.vecWords : tokenise(line.strText);
        } catch (const CommandError& error) {
            line.strProblem = line.strProblem.empty() ? error.what() : line.strProblem;
        }
        if (words.empty() && line.strProblem.empty()) {
            continue;
        }
        ++m_nCommands;
        result = runLine(line, words);
        if (p_objLines.isConversation()) {
            forgetKeyboardInterrupt();
        }
        if (result.bOk) {
            continue;
        }
        ++failed;
        std::cerr << "sensorctl: " + line.stPosition.text() + ": " + printable(result.strError) + "\n" << std::flush;
        if (!m_stSettings.bKeepGoing && !p_objLines.isConversation()) {
            break;
        }
    }
    return failed;
}

Result Interpreter::runLine(const Line& p_stLine, const Words& p_vecWords) {
    constexpr std::size_t kShownBytes = 200;  // of a line that is no command
    if (!p_stLine.strProblem.empty()) {
        const Result result = Result::failed(p_stLine.strProblem);
        m_objOutput.result(p_stLine.stPosition, p_stLine.strText.substr(0, kShownBytes), result);
        return result;
    }
    const std::string command = lineOfWords(p_vecWords);
    const std::string name = lowerCase(p_vecWords.front());
    if (m_bTrace && "echo" != name && "expect" != name) {
        m_objOutput.command(command);
    }
    const bool recorded = m_objRecorder.isRecording() && "record" != name && "help" != name && "quit" != name;
    const INT64 begin = platform::Clock::monotonicMicroseconds();
    const Result result = evaluate(p_vecWords);
    if (recorded) {
        m_objRecorder.took(result.strReplay.empty() ? command : result.strReplay, result.bOk, begin,
                           platform::Clock::monotonicMicroseconds());
    }
    m_objOutput.result(p_stLine.stPosition, command, result);
    return result;
}

void Interpreter::record(const std::string& p_strPath) {
    m_objRecorder.begin(
        p_strPath, {platform::Clock::civilTime(), m_objSession.channel(), platform::Clock::monotonicMicroseconds()});
}

Result Interpreter::evaluate(const Words& p_vecWords) {
    try {
        const Command& command = m_objTable.match(p_vecWords);
        const std::uint64_t start = m_objSession.camera().transcript().total();
        Result result = command.fnRun(m_objSession, Words(p_vecWords.begin() + 1, p_vecWords.end()));
        m_objSession.settle();
        if (Effect::speaks != command.eEffect) {
            m_stLastResult = result;
        }
        if (Effect::acts == command.eEffect) {
            m_nLastStart = start;
            m_nLastEnd = m_objSession.camera().transcript().total();
        }
        return result;
    } catch (const CommandError& error) {
        return Result::failed(error.what());
    } catch (const std::exception& error) {
        return Result::failed(std::string("unexpected: ") + error.what());
    }
}

std::vector<std::string> Interpreter::lastLines() const {
    simcam::TranscriptFilter filter;
    filter.after = m_nLastStart;
    std::vector<std::string> lines;
    for (const simcam::TranscriptEntry& entry : m_objSession.camera().transcript().entries(filter)) {
        if (entry.number <= m_nLastEnd) {
            lines.push_back(simcam::toText(entry, false));
        }
    }
    return lines;
}

namespace {

// What the command or key is called; empty when it has no name.
std::string subjectOf(const simcam::TranscriptEntry& p_stEntry) {
    const simcam::CommandRow* const row = simcam::findCommand(p_stEntry.command);
    if (simcam::TranscriptEntry::Kind::Driver == p_stEntry.kind) {
        return nullptr == row ? "" : row->name;
    }
    return nameOfKey(p_stEntry.command);
}

}  // namespace

std::string textOf(const simcam::TranscriptEntry& p_stEntry) {
    constexpr std::size_t kTimeOfDay = sizeof("2024-05-01 ") - 1;
    constexpr std::size_t kSubjectColumn = 48;  // behind most lines
    std::string line = clockText(p_stEntry.time).substr(kTimeOfDay) + " " + simcam::toText(p_stEntry, false);
    const std::string subject = subjectOf(p_stEntry);
    if (!subject.empty()) {
        line.resize(std::max(line.size() + 2, kSubjectColumn), ' ');
    }
    return line + subject;
}

Json jsonOf(const Session& p_objSession, const simcam::TranscriptEntry& p_stEntry) {
    const bool driver = simcam::TranscriptEntry::Kind::Driver == p_stEntry.kind;
    Json data = {{"number", p_stEntry.number},
                 {"time", clockText(p_stEntry.time)},
                 {"microseconds", p_stEntry.microseconds - p_objSession.startMicroseconds()},
                 {"from", driver ? "driver" : "video"},
                 {"channel", p_stEntry.channel}};
    if (driver) {
        data["option"] = simcam::optionName(p_stEntry.option);
        data["command"] = p_stEntry.command;
    } else {
        data["key"] = p_stEntry.command;
    }
    data["name"] = subjectOf(p_stEntry);
    data["before"] = p_stEntry.before;
    data["after"] = p_stEntry.after;
    if (!p_stEntry.text.empty()) {
        data["text"] = p_stEntry.text;
    }
    data["result"] = p_stEntry.result;
    if (0 != p_stEntry.fault) {
        data["fault"] = p_stEntry.fault;
    }
    return data;
}

}  // namespace sensorctl
