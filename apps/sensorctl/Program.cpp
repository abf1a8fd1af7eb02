#include "apps/sensorctl/Program.h"

#include "apps/sensorctl/Completion.h"
#include "apps/sensorctl/HistoryFile.h"
#include "apps/sensorctl/Interpreter.h"
#include "apps/sensorctl/Interrupt.h"
#include "apps/sensorctl/Prompt.h"
#include "apps/sensorctl/Shared.h"
#include "platform/DeviceRoot.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iostream>
#include <memory>

namespace sensorctl {

namespace {

// Makes the source of the commands, once session and interpreter are there.
using LineSourceOf = std::function<std::unique_ptr<LineSource>(Session&, Interpreter&)>;

// A descriptor to read commands from; closed at the end unless it is standard input.
class Input {
public:
    explicit Input(const std::string& p_strScript)
        : m_nDescriptor(p_strScript.empty() ? STDIN_FILENO : open(p_strScript.c_str(), O_RDONLY | O_CLOEXEC)) {}
    ~Input() {
        if (m_nDescriptor > STDIN_FILENO) {
            close(m_nDescriptor);
        }
    }
    Input(const Input&) = delete;
    Input& operator=(const Input&) = delete;

    bool isOpen() const { return -1 != m_nDescriptor; }
    int descriptor() const { return m_nDescriptor; }

private:
    const int m_nDescriptor;
};

int statusOf(std::size_t p_nFailed) {
    if (0 != interruptSignal()) {
        return kInterrupted + interruptSignal();
    }
    return 0 == p_nFailed ? kAllOk : kCommandFailed;
}

// False when the record is not whole.
bool endRecording(Interpreter& p_objInterpreter) {
    try {
        if (p_objInterpreter.recorder().isRecording()) {
            p_objInterpreter.recorder().end();
        }
        return true;
    } catch (const CommandError& error) {
        std::cerr << std::string("sensorctl: ") + error.what() + "\n";
        return false;
    }
}

int run(const Options& p_stOptions, simcam::Camera& p_objCamera, const LineSourceOf& p_fnLines) {
    const LibraryOutput libraryOutput(p_stOptions.eLibraryOutput);
    Output output(libraryOutput.resultDescriptor(), p_stOptions.bJson ? Output::Form::jsonLines : Output::Form::text);
    Session session(p_objCamera, {p_stOptions.nChannel, p_stOptions.bRealTime, p_stOptions.stStart});
    if (p_stOptions.debugLevel) {
        session.debugSign().set(*p_stOptions.debugLevel, false);
    }
    Interpreter interpreter(session, output, {p_stOptions.bTrace, p_stOptions.bKeepGoing});
    if (!p_stOptions.strRecord.empty()) {
        interpreter.record(p_stOptions.strRecord);
    }
    const std::unique_ptr<LineSource> lines = p_fnLines(session, interpreter);
    const std::size_t failed = interpreter.run(*lines);
    const int status = endRecording(interpreter) ? statusOf(failed) : kOutputLost;
    output.summary(interpreter.commands(), failed, status);
    if (!output.isWhole()) {
        std::cerr << "sensorctl: standard output cannot be written\n";
        return kOutputLost;
    }
    return status;
}

// The words of the selected channel's style document, as far as init has laid it out.
CompletionSources sourcesOf(Session& p_objSession) {
    return {[&p_objSession](u32 p_nKey) { return valuesToChoose(p_objSession.channel(), p_nKey); },
            [&p_objSession]() { return tabsToChoose(p_objSession.channel()); }};
}

std::unique_ptr<LineSource> prompt(Session& p_objSession, Interpreter& p_objInterpreter) {
    const HistoryFile history(historyPath(std::getenv("SENSORCTL_HISTORY"), std::getenv("XDG_STATE_HOME"),
                                          std::getenv("HOME"), platform::deviceRoot()));
    const auto completion = std::make_shared<Completion>(p_objInterpreter.table(), sourcesOf(p_objSession));
    return std::make_unique<Prompt>(STDIN_FILENO, history,
                                    [completion](const Words& p_vecBefore, const std::string& p_strBegun) {
                                        return completion->candidates(p_vecBefore, p_strBegun);
                                    });
}

}  // namespace

int printCompletion(const std::vector<std::string>& p_vecWords, simcam::Camera& p_objCamera) {
    Output output(STDOUT_FILENO, Output::Form::text);
    Session session(p_objCamera, {});
    const Interpreter interpreter(session, output, {});
    const Words before(p_vecWords.begin(), p_vecWords.end() - (p_vecWords.empty() ? 0 : 1));
    const Completion completion(interpreter.table(), {});
    for (const std::string& word : completion.argumentCandidates(before, p_vecWords.empty() ? "" : p_vecWords.back())) {
        output.event("completion", word, {});
    }
    return output.isWhole() ? kAllOk : kOutputLost;
}

int runSession(const Options& p_stOptions, simcam::Camera& p_objCamera) {
    // The directory may be named relative to where we are; the shell commands of the library may run elsewhere.
    platform::setDeviceRoot(std::filesystem::canonical(p_stOptions.strRoot).string());
    try {
        if (!p_stOptions.vecCommands.empty()) {
            return run(p_stOptions, p_objCamera, [&](Session&, Interpreter&) {
                return std::make_unique<ArgumentLines>(p_stOptions.vecCommands);
            });
        }
        const std::string script = "-" == p_stOptions.strScript ? "" : p_stOptions.strScript;
        const Input input(script);
        std::error_code error;
        if (!input.isOpen() || std::filesystem::is_directory(script, error)) {
            std::cerr << "sensorctl: the script " + quoted(script) + " cannot be read\n";
            return kUsage;
        }
        if (script.empty() && isatty(STDIN_FILENO)) {
            std::cerr << "sensorctl: type commands, one a line; help lists them, Tab completes, quit ends\n";
            return run(p_stOptions, p_objCamera, prompt);
        }
        return run(p_stOptions, p_objCamera, [&](Session&, Interpreter&) {
            return std::make_unique<StreamLines>(input.descriptor(), script.empty() ? "standard input" : script);
        });
    } catch (const CommandError& error) {
        std::cerr << std::string("sensorctl: ") + error.what() + "\n";
        return kUsage;
    }
}

}  // namespace sensorctl
