#include "tests/unit/sensorctl/ProgramRun.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace fs = std::filesystem;

namespace {

// Words of a list as the build writes it: separated by semicolons.
std::vector<std::string> listOf(const std::string& p_strList) {
    std::istringstream stream(p_strList);
    std::vector<std::string> words;
    for (std::string word; std::getline(stream, word, ';');) {
        words.push_back(word);
    }
    return words;
}

std::string contentOf(const std::string& p_strPath) {
    std::ifstream file(p_strPath, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// A file in the test's folder that is gone at the end.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::string& p_strContent = "") {
        m_strPath = (fs::current_path() / "stream-XXXXXX").string();
        const int descriptor = mkstemp(m_strPath.data());
        if (-1 == descriptor) {
            throw std::runtime_error("cannot make a file in " + fs::current_path().string());
        }
        close(descriptor);
        std::ofstream(m_strPath, std::ios::binary) << p_strContent;
    }
    ~TemporaryFile() { std::remove(m_strPath.c_str()); }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    const std::string& path() const { return m_strPath; }

private:
    std::string m_strPath;
};

void redirect(const std::string& p_strPath, int p_nMode, int p_nDescriptor) {
    const int opened = open(p_strPath.c_str(), p_nMode);
    if (-1 == opened || -1 == dup2(opened, p_nDescriptor)) {
        _exit(127);
    }
    close(opened);
}

}  // namespace

DeviceTree::DeviceTree() {
    fs::copy(SENSORCTL_SOURCE "/rootfs", path(), fs::copy_options::recursive | fs::copy_options::overwrite_existing);
}

void DeviceTree::become(const std::string& p_strVariant) const {
    fs::copy(SENSORCTL_SOURCE "/rootfs/variants/" + p_strVariant, path(),
             fs::copy_options::recursive | fs::copy_options::overwrite_existing);
}

std::vector<nlohmann::json> ProgramResult::jsonLines() const {
    std::vector<nlohmann::json> parsed;
    std::istringstream stream(strOutput);
    for (std::string line; std::getline(stream, line);) {
        nlohmann::json object = nlohmann::json::parse(line, nullptr, false);
        EXPECT_TRUE(object.is_object()) << "not a JSON object: " << line;
        parsed.push_back(std::move(object));
    }
    return parsed;
}

std::vector<nlohmann::json> ProgramResult::jsonLines(const std::string& p_strType) const {
    std::vector<nlohmann::json> chosen;
    for (const nlohmann::json& line : jsonLines()) {
        if (line.value("type", "") == p_strType) {
            chosen.push_back(line);
        }
    }
    return chosen;
}

std::vector<std::string> programWords() {
    std::vector<std::string> words = listOf(SENSORCTL_EMULATOR);
    words.push_back(SENSORCTL_PROGRAM);
    return words;
}

void becomeProgram(const std::vector<std::string>& p_vecArguments) {
    std::vector<std::string> words = programWords();
    words.insert(words.end(), p_vecArguments.begin(), p_vecArguments.end());
    std::vector<char*> pointers;
    for (std::string& word : words) {
        pointers.push_back(word.data());
    }
    pointers.push_back(nullptr);
    unsetenv("CAMERA_ROOT");
    execvp(pointers[0], pointers.data());
    _exit(127);
}

namespace {

int statusOf(int p_nWaited) {
    return WIFEXITED(p_nWaited) ? WEXITSTATUS(p_nWaited) : 128 + WTERMSIG(p_nWaited);
}

// Runs the program with its standard streams on these files and returns its status.
int start(const std::vector<std::string>& p_vecArguments, const std::string& p_strInput, const std::string& p_strOutput,
          const std::string& p_strErrors) {
    const pid_t child = fork();
    if (0 == child) {
        redirect(p_strInput, O_RDONLY, STDIN_FILENO);
        redirect(p_strOutput, O_WRONLY, STDOUT_FILENO);
        redirect(p_strErrors, O_WRONLY, STDERR_FILENO);
        becomeProgram(p_vecArguments);
    }
    int waited = 0;
    if (-1 == child || waitpid(child, &waited, 0) != child) {
        throw std::runtime_error("cannot start " SENSORCTL_PROGRAM);
    }
    return statusOf(waited);
}

}  // namespace

StartedProgram::StartedProgram(const std::vector<std::string>& p_vecArguments) {
    int input[2];
    int output[2];
    if (-1 == pipe2(input, O_CLOEXEC) || -1 == pipe2(output, O_CLOEXEC)) {
        throw std::runtime_error("cannot make pipes");
    }
    m_nChild = fork();
    if (0 == m_nChild) {
        dup2(input[0], STDIN_FILENO);
        dup2(output[1], STDOUT_FILENO);
        redirect("/dev/null", O_WRONLY, STDERR_FILENO);
        becomeProgram(p_vecArguments);
    }
    close(input[0]);
    close(output[1]);
    m_nInput = input[1];
    m_nOutput = output[0];
}

StartedProgram::~StartedProgram() {
    if (-1 != m_nChild) {
        kill(m_nChild, SIGKILL);
        finish();
    }
    close(m_nOutput);
}

void StartedProgram::say(const std::string& p_strLine) {
    const std::string line = p_strLine + "\n";
    EXPECT_EQ(write(m_nInput, line.data(), line.size()), static_cast<ssize_t>(line.size()));
}

std::string StartedProgram::hear() {
    std::string line;
    for (char letter = 0; 1 == read(m_nOutput, &letter, 1) && '\n' != letter;) {
        line += letter;
    }
    return line;
}

void StartedProgram::signal(int p_nSignal) {
    kill(m_nChild, p_nSignal);
}

int StartedProgram::finish(bool p_bEndInput) {
    if (p_bEndInput) {
        close(m_nInput);
        m_nInput = -1;
    }
    int waited = 0;
    waitpid(m_nChild, &waited, 0);
    m_nChild = -1;
    if (-1 != m_nInput) {
        close(m_nInput);
        m_nInput = -1;
    }
    return statusOf(waited);
}

ProgramResult runProgram(const std::vector<std::string>& p_vecArguments, const std::string& p_strInput) {
    const TemporaryFile input(p_strInput);
    const TemporaryFile output;
    const TemporaryFile errors;
    const int status = start(p_vecArguments, input.path(), output.path(), errors.path());
    return {status, contentOf(output.path()), contentOf(errors.path())};
}

ProgramResult runProgramTo(const std::string& p_strOutputPath, const std::vector<std::string>& p_vecArguments) {
    const TemporaryFile errors;
    const int status = start(p_vecArguments, "/dev/null", p_strOutputPath, errors.path());
    return {status, "", contentOf(errors.path())};
}

ProgramResult runScript(const DeviceTree& p_objTree, const std::string& p_strScript,
                        std::vector<std::string> p_vecOptions) {
    p_vecOptions.insert(p_vecOptions.begin(), {"--root", p_objTree.path()});
    return runProgram(p_vecOptions, p_strScript);
}

std::string errorOf(const DeviceTree& p_objTree, const std::string& p_strScript) {
    const ProgramResult run = runScript(p_objTree, p_strScript, {"--library-output", "none"});
    EXPECT_EQ(run.nStatus, 1) << p_strScript;
    return run.strErrors;
}

nlohmann::json lastData(const DeviceTree& p_objTree, const std::string& p_strScript) {
    const ProgramResult run = runScript(p_objTree, p_strScript, {"--json"});
    EXPECT_EQ(run.nStatus, 0) << run.strErrors << run.strOutput;
    const std::vector<nlohmann::json> results = run.jsonLines("result");
    return results.empty() ? nlohmann::json::object() : results.back()["data"];
}
