#include "apps/sensorctl/Program.h"

#include "apps/sensorctl/CommandError.h"
#include "apps/sensorctl/Interpreter.h"
#include "apps/sensorctl/Interrupt.h"
#include "apps/sensorctl/Text.h"
#include "platform/DeviceRoot.h"

#include <fcntl.h>
#include <unistd.h>

#include <filesystem>
#include <iostream>

namespace sensorctl {

namespace {

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

int run(const Options& p_stOptions, simcam::Camera& p_objCamera, LineSource& p_objLines) {
    const LibraryOutput libraryOutput(p_stOptions.eLibraryOutput);
    Output output(libraryOutput.resultDescriptor(), p_stOptions.bJson ? Output::Form::jsonLines : Output::Form::text);
    Session session(p_objCamera, {p_stOptions.nChannel, p_stOptions.bRealTime, p_stOptions.stStart});
    if (p_stOptions.debugLevel) {
        session.debugSign().set(*p_stOptions.debugLevel, false);
    }
    Interpreter interpreter(session, output, {p_stOptions.bTrace, p_stOptions.bKeepGoing});
    const std::size_t failed = interpreter.run(p_objLines);
    const int status = statusOf(failed);
    output.summary(interpreter.commands(), failed, status);
    if (!output.isWhole()) {
        std::cerr << "sensorctl: standard output cannot be written\n";
        return kOutputLost;
    }
    return status;
}

}  // namespace

int runSession(const Options& p_stOptions, simcam::Camera& p_objCamera) {
    // The directory may be named relative to where we are; the shell commands of the library may run elsewhere.
    platform::setDeviceRoot(std::filesystem::canonical(p_stOptions.strRoot).string());
    try {
        if (!p_stOptions.vecCommands.empty()) {
            ArgumentLines lines(p_stOptions.vecCommands);
            return run(p_stOptions, p_objCamera, lines);
        }
        const std::string script = "-" == p_stOptions.strScript ? "" : p_stOptions.strScript;
        const Input input(script);
        std::error_code error;
        if (!input.isOpen() || std::filesystem::is_directory(script, error)) {
            std::cerr << "sensorctl: the script " + quoted(script) + " cannot be read\n";
            return kUsage;
        }
        if (script.empty() && isatty(STDIN_FILENO)) {
            std::cerr << "sensorctl: type commands, one a line; help lists them, quit ends\n";
        }
        StreamLines lines(input.descriptor(), script.empty() ? "standard input" : script);
        return run(p_stOptions, p_objCamera, lines);
    } catch (const CommandError& error) {
        std::cerr << std::string("sensorctl: ") + error.what() + "\n";
        return kUsage;
    }
}

}  // namespace sensorctl
