// The options of the program.
#pragma once

#include "apps/sensorctl/LibraryOutput.h"
#include "platform/Clock.h"

#include <optional>
#include <string>
#include <vector>

namespace sensorctl {

// Exit statuses of the program. Frozen: scripts test them.
constexpr int kAllOk = 0;          // every command did what it should
constexpr int kCommandFailed = 1;  // at least one did not
constexpr int kUsage = 2;          // wrong options, no device root, no such script: nothing was run
constexpr int kOutputLost = 3;     // standard output, or the record of the session, could not be written
constexpr int kInterrupted = 128;  // plus the signal: the session was ended from outside

struct Options {
    std::string strRoot;    // device root; a directory that exists
    std::string strScript;  // empty: none
    std::string strRecord;  // file to record the session in; empty: none
    int nChannel = 1;
    std::optional<int> debugLevel;
    bool bTrace = false;
    bool bJson = false;
    bool bRealTime = false;
    bool bKeepGoing = false;
    platform::CivilTime stStart{2024, 5, 1, 12, 0, 0};
    LibraryOutput::Target eLibraryOutput = LibraryOutput::Target::standardError;
    std::vector<std::string> vecCommands;  // the arguments behind the options
};

// What became of the arguments: options to run with, or a text and a status to end with.
struct ParsedOptions {
    std::optional<Options> options;
    int nStatus = kAllOk;
    std::string strText;  // help and version for standard output (status 0), otherwise an error
};

struct OptionInfo {
    std::string strName;                  // "--root"
    std::string strValue;                 // what stands behind it, for instance "DIR"; empty for a switch
    std::vector<std::string> vecChoices;  // the values that it takes, when they are few
};

// All options of the program.
std::vector<OptionInfo> optionList();

// p_szRoot is the device root that the environment names, null when it names none.
ParsedOptions parseOptions(const std::vector<std::string>& p_vecArguments, const char* p_szRoot);

}  // namespace sensorctl
