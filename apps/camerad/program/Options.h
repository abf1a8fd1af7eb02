// What the command line says. Functions without state.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace camerad {

enum ExitStatus : int { kEnded = 0, kCannotStart = 1, kUsage = 2, kHung = 3 };

struct ProgramOptions {
    std::string strRoot;  // canonical
    std::string strAddress = "127.0.0.1";
    int nPort = 8080;
    bool bInsecure = false;
    std::vector<std::string> vecHosts;
    std::string strPortFile;
    std::string strSetPassword;  // of this account; then nothing is served

    bool usesTls() const;
};

struct ParsedProgramOptions {
    std::optional<ProgramOptions> options;  // none: print the text and end with the status
    int nStatus = kEnded;
    std::string strText;
};

// p_szRoot: the device root of the environment, or null.
ParsedProgramOptions parseProgramOptions(const std::vector<std::string>& p_vecArguments, const char* p_szRoot);

std::string programVersion();

}  // namespace camerad
