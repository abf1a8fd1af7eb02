#include "apps/sensorctl/Options.h"

#include "apps/sensorctl/Arguments.h"
#include "apps/sensorctl/ClockText.h"
#include "apps/sensorctl/Shared.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <filesystem>

namespace sensorctl {

namespace {

constexpr int kChannels = 4;

const char kFooter[] =
    "Commands come from the arguments (several are separated by --), from --script, or from standard input,\n"
    "one per line. `sensorctl --root DIR help` lists them.\n"
    "\n"
    "Exit status: 0 all commands succeeded, 1 a command failed, 2 wrong use, 3 standard output or the record was "
    "lost,\n"
    "128 plus the signal when one ended the session.";

// CLI11 takes what follows the first word that is no option as it is; an unknown option counts as such a word.
ParsedOptions refuse(const std::string& p_strText) {
    return {std::nullopt, kUsage, p_strText + " (see sensorctl --help)"};
}

std::string unknownOption(const CLI::App& p_objApp, const std::string& p_strWord) {
    std::vector<std::string> names;
    for (const CLI::Option* option : p_objApp.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            names.push_back("--" + name);
        }
    }
    return "unknown option " + quoted(p_strWord) +
           didYouMean(nearestMatch(p_strWord.substr(0, p_strWord.find('=')), names));
}

std::string rootProblem(const std::string& p_strRoot) {
    if (p_strRoot.empty()) {
        return "no device root: name a directory with --root or CAMERA_ROOT";
    }
    std::error_code error;
    const std::filesystem::path path = std::filesystem::canonical(p_strRoot, error);
    if (error || !std::filesystem::is_directory(path, error)) {
        return "the device root " + quoted(p_strRoot) + " is not a directory";
    }
    if (path == path.root_path()) {
        return "the device root must not be /: the camera's files would be written into this machine's own";
    }
    return {};
}

std::vector<std::string> libraryTargets() {
    return {"stdout", "stderr", "none"};
}

LibraryOutput::Target targetOf(const std::string& p_strName) {
    if ("stdout" == p_strName) {
        return LibraryOutput::Target::standardOutput;
    }
    return "none" == p_strName ? LibraryOutput::Target::nowhere : LibraryOutput::Target::standardError;
}

// The options, and where what is written goes.
struct Description {
    Options options;
    std::string strStart;
    std::string strLibraryOutput = "stderr";
    int nDebugLevel = 1;
    CLI::App app{"Drives one simulated camera through its image-sensor control library.", "sensorctl"};
    CLI::Option* levelOption = nullptr;

    Description() {
        app.prefix_command();
        app.footer(kFooter);
        app.set_version_flag("--version", std::string("sensorctl ") + SENSORCTL_VERSION);
        app.add_option("--root", options.strRoot,
                       "Device root: the directory that holds the camera's files [CAMERA_ROOT]")
            ->type_name("DIR");
        app.add_option("--script", options.strScript, "Read commands from this file; - is standard input")
            ->type_name("FILE");
        app.add_option("--record", options.strRecord, "Record the session as a script in this file, which must be new")
            ->type_name("FILE");
        app.add_option("--channel", options.nChannel, "Channel that commands go to, from 1")
            ->type_name("N")
            ->check(CLI::Range(1, kChannels));
        levelOption = app.add_option("--debug-level", nDebugLevel, "Debug level of the library for this session")
                          ->type_name("N")
                          ->check(CLI::Range(kLowestLevel, kHighestLevel));
        app.add_flag("--trace", options.bTrace,
                     "Print commands and what driver and video module are told as it happens");
        app.add_flag("--json", options.bJson, "Print JSON, one object per line");
        app.add_flag("--realtime", options.bRealTime, "Let the clock run; otherwise it is held and commands move it");
        app.add_option("--at", strStart, "Time at which the held clock starts [2024-05-01 12:00:00]")
            ->type_name("TIME");
        app.add_flag("--keep-going", options.bKeepGoing, "Go on after a command that failed");
        app.add_option("--library-output", strLibraryOutput,
                       "Where the library's own messages go: stdout, stderr or none")
            ->type_name("WHERE")
            ->check(CLI::IsMember(libraryTargets()));
    }
    Description(const Description&) = delete;
    Description& operator=(const Description&) = delete;
};

}  // namespace

std::vector<OptionInfo> optionList() {
    Description description;
    std::vector<OptionInfo> list;
    for (const CLI::Option* option : description.app.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            // Behind a colon stands what the value is checked for.
            const std::string type = option->get_type_name();
            list.push_back({"--" + name, 0 == option->get_expected_max() ? "" : type.substr(0, type.find(':')), {}});
            if ("library-output" == name) {
                list.back().vecChoices = libraryTargets();
            }
        }
    }
    return list;
}

ParsedOptions parseOptions(const std::vector<std::string>& p_vecArguments, const char* p_szRoot) {
    Description description;
    Options& options = description.options;
    CLI::App& app = description.app;
    options.strRoot = nullptr == p_szRoot ? "" : p_szRoot;

    try {
        std::vector<std::string> reversed(p_vecArguments.rbegin(), p_vecArguments.rend());
        app.parse(reversed);
        options.vecCommands = app.remaining();
        if (!description.strStart.empty()) {
            options.stStart = parseClock(description.strStart, options.stStart);
        }
    } catch (const CLI::CallForHelp&) {
        return {std::nullopt, kAllOk, app.help()};
    } catch (const CLI::CallForVersion& version) {
        return {std::nullopt, kAllOk, std::string(version.what()) + "\n"};
    } catch (const CLI::ParseError& error) {
        return refuse(error.what());
    } catch (const CommandError& error) {
        return refuse(error.what());
    }

    if (!options.vecCommands.empty() && "--" == options.vecCommands.front()) {
        options.vecCommands.erase(options.vecCommands.begin());
    } else if (!options.vecCommands.empty() && startsWith(options.vecCommands.front(), "-")) {
        return refuse(unknownOption(app, options.vecCommands.front()));
    }
    for (const char* const name : {"--script", "--record"}) {
        if (0 != app.count(name) && app.get_option(name)->as<std::string>().empty()) {
            return refuse(std::string(name) + " needs the name of a file");
        }
    }
    if (!options.vecCommands.empty() && !options.strScript.empty()) {
        return refuse("commands come either from the arguments or from --script");
    }
    if (!description.strStart.empty() && options.bRealTime) {
        return refuse("--at sets a held clock; it does not go with --realtime");
    }
    if (options.bJson && "stdout" == description.strLibraryOutput) {
        return refuse("--library-output stdout would mix the library's messages into the JSON lines");
    }
    const std::string problem = rootProblem(options.strRoot);
    if (!problem.empty()) {
        return refuse(problem);
    }
    if (0 != description.levelOption->count()) {
        options.debugLevel = description.nDebugLevel;
    }
    options.eLibraryOutput = targetOf(description.strLibraryOutput);
    return {options, kAllOk, {}};
}

}  // namespace sensorctl
