#include "apps/camerad/program/Options.h"

#include "apps/camerad/http/HostCheck.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <filesystem>
#include <stdexcept>

namespace camerad {

namespace {

constexpr int kLastPort = 65535;

const char kFooter[] =
    "The address, at the first start the password of the account admin, and with TLS the fingerprint of the\n"
    "certificate go to standard output; everything else goes to standard error.\n"
    "\n"
    "Exit status: 0 ended by SIGTERM or SIGINT, 1 cannot start, 2 wrong use, 3 ended while a call did not return.";

ParsedProgramOptions refuse(const std::string& p_strText) {
    return {std::nullopt, kUsage, p_strText + " (see camerad --help)"};
}

// Throws std::invalid_argument with a sentence.
std::string usableRoot(const std::string& p_strRoot) {
    if (p_strRoot.empty()) {
        throw std::invalid_argument("no device root: name a directory with --root or CAMERA_ROOT");
    }
    std::error_code error;
    const std::filesystem::path path = std::filesystem::canonical(p_strRoot, error);
    if (error || !std::filesystem::is_directory(path, error)) {
        throw std::invalid_argument("the device root \"" + p_strRoot + "\" is not a directory");
    }
    if (path == path.root_path()) {
        throw std::invalid_argument(
            "the device root must not be /: the camera's files would be written into this machine's own");
    }
    return path.string();
}

int portIn(const std::string& p_strDigits) {
    const bool digits = !p_strDigits.empty() && p_strDigits.size() <= sizeof("65535") - 1 &&
                        std::all_of(p_strDigits.begin(), p_strDigits.end(),
                                    [](char p_cDigit) { return p_cDigit >= '0' && p_cDigit <= '9'; });
    const int port = digits ? std::stoi(p_strDigits) : kLastPort + 1;
    if (port > kLastPort) {
        throw std::invalid_argument("--listen: \"" + p_strDigits + "\" is no port; 0 to 65535, 0 for any that is free");
    }
    return port;
}

// "127.0.0.1:8080", "camera.lan", "[::1]:8080", "::1".
void readListen(const std::string& p_strText, ProgramOptions& p_stOptions) {
    const std::size_t bracket = p_strText.rfind(']');
    const std::size_t colon = p_strText.rfind(':');
    const bool bare = std::string::npos == bracket && p_strText.find(':') != colon;  // IPv6 without brackets
    const bool hasPort = !bare && std::string::npos != colon && (std::string::npos == bracket || colon > bracket);
    std::string address = hasPort ? p_strText.substr(0, colon) : p_strText;
    if (std::string::npos != bracket) {
        if ('[' != address.front() || ']' != address.back()) {
            throw std::invalid_argument("--listen: write an IPv6 address with a port as [ADDRESS]:PORT");
        }
        address = address.substr(1, address.size() - 2);
    }
    if (address.empty() ||
        std::all_of(address.begin(), address.end(), [](char p_cDigit) { return p_cDigit >= '0' && p_cDigit <= '9'; })) {
        throw std::invalid_argument("--listen: \"" + p_strText + "\" names no address; write ADDRESS or ADDRESS:PORT");
    }
    p_stOptions.strAddress = address;
    if (hasPort) {
        p_stOptions.nPort = portIn(p_strText.substr(colon + 1));
    }
}

}  // namespace

bool ProgramOptions::usesTls() const {
    return !bInsecure && !isLoopback(strAddress);
}

std::string programVersion() {
    return CAMERAD_VERSION;
}

ParsedProgramOptions parseProgramOptions(const std::vector<std::string>& p_vecArguments, const char* p_szRoot) {
    ProgramOptions options;
    options.strRoot = nullptr == p_szRoot ? "" : p_szRoot;
    std::string listen;
    CLI::App app{
        "Runs a network camera with a simulated sensor: an HTTP interface and a page in front of its "
        "image-sensor control library.",
        "camerad"};
    app.footer(kFooter);
    app.set_version_flag("--version", "camerad " + programVersion());
    app.add_option("--root", options.strRoot, "Device root: the directory that holds the camera's files [CAMERA_ROOT]")
        ->type_name("DIR");
    app.add_option("--listen", listen, "Where to listen; port 0 is any that is free [127.0.0.1:8080]")
        ->type_name("ADDRESS[:PORT]");
    app.add_flag("--insecure", options.bInsecure,
                 "Speak plain HTTP at an address that others reach; passwords then cross the network readably");
    app.add_option("--host", options.vecHosts,
                   "A name that this camera goes by, besides its address and this machine's name; may be repeated")
        ->type_name("NAME");
    app.add_option("--port-file", options.strPortFile, "Write the port to this file once the camera serves")
        ->type_name("FILE");
    app.add_option("--set-password", options.strSetPassword,
                   "Read a new password for this account from standard input, store it and end")
        ->type_name("NAME");
    try {
        std::vector<std::string> reversed(p_vecArguments.rbegin(), p_vecArguments.rend());
        app.parse(reversed);
        options.strRoot = usableRoot(options.strRoot);
        if (0 != app.count("--listen")) {
            readListen(listen, options);
        }
    } catch (const CLI::CallForHelp&) {
        return {std::nullopt, kEnded, app.help()};
    } catch (const CLI::CallForVersion& version) {
        return {std::nullopt, kEnded, std::string(version.what()) + "\n"};
    } catch (const CLI::ParseError& error) {
        return refuse(error.what());
    } catch (const std::invalid_argument& error) {
        return refuse(error.what());
    }
    for (const char* const name : {"--port-file", "--set-password", "--host"}) {
        if (0 != app.count(name) && app.get_option(name)->as<std::vector<std::string>>().front().empty()) {
            return refuse(std::string(name) + " needs a name");
        }
    }
    return {options, kEnded, {}};
}

}  // namespace camerad
