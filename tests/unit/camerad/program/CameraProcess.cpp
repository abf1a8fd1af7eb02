#include "tests/unit/camerad/program/CameraProcess.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kAddressAt = sizeof("camerad: ") - 1;
constexpr time_t kPatience = 60;  // seconds for an answer, also under an emulator

std::vector<std::string> wordsOf(const TestRoot& p_objRoot, const std::vector<std::string>& p_vecArguments) {
    std::vector<std::string> words;
    std::istringstream emulator(CAMERAD_EMULATOR);
    for (std::string word; std::getline(emulator, word, ';');) {
        words.push_back(word);
    }
    words.insert(words.end(), {CAMERAD_PROGRAM, "--root", p_objRoot.path()});
    words.insert(words.end(), p_vecArguments.begin(), p_vecArguments.end());
    return words;
}

std::string behind(const std::vector<std::string>& p_vecLines, const std::string& p_strMark) {
    for (const std::string& line : p_vecLines) {
        const std::size_t at = line.find(p_strMark);
        if (std::string::npos != at) {
            return line.substr(at + p_strMark.size());
        }
    }
    return {};
}

}  // namespace

CameraTree::CameraTree() {
    fs::copy(CAMERAD_SOURCE "/rootfs", path(), fs::copy_options::recursive | fs::copy_options::overwrite_existing);
}

CameraProcess::CameraProcess(const TestRoot& p_objRoot, std::vector<std::string> p_vecArguments,
                             const std::string& p_strInput,
                             const std::vector<std::pair<std::string, std::string>>& p_vecEnvironment,
                             const char* p_szOutput) {
    int input[2];
    int output[2];
    std::string errors = "errors-XXXXXX";
    m_nErrors = mkostemp(errors.data(), O_CLOEXEC);
    unlink(errors.c_str());
    if (-1 == m_nErrors || -1 == pipe2(input, O_CLOEXEC) || -1 == pipe2(output, O_CLOEXEC)) {
        throw std::runtime_error("cannot make pipes");
    }
    std::vector<std::string> words = wordsOf(p_objRoot, p_vecArguments);
    std::vector<char*> pointers;
    for (std::string& word : words) {
        pointers.push_back(word.data());
    }
    pointers.push_back(nullptr);
    m_nChild = fork();
    if (0 == m_nChild) {
        dup2(input[0], STDIN_FILENO);
        dup2(nullptr == p_szOutput ? output[1] : open(p_szOutput, O_WRONLY | O_CLOEXEC), STDOUT_FILENO);
        dup2(m_nErrors, STDERR_FILENO);
        unsetenv("CAMERA_ROOT");
        unsetenv("NOTIFY_SOCKET");
        for (const auto& [name, value] : p_vecEnvironment) {
            setenv(name.c_str(), value.c_str(), 1);
        }
        execvp(pointers[0], pointers.data());
        _exit(127);
    }
    close(input[0]);
    close(output[1]);
    m_nOutput = output[0];
    EXPECT_EQ(write(input[1], p_strInput.data(), p_strInput.size()), static_cast<ssize_t>(p_strInput.size()));
    close(input[1]);
}

CameraProcess::~CameraProcess() {
    if (-1 != m_nChild) {
        kill(m_nChild, SIGKILL);
        finish();
    }
    close(m_nOutput);
    close(m_nErrors);
}

bool CameraProcess::readLine() {
    std::size_t end = m_strPending.find('\n');
    while (std::string::npos == end) {
        std::array<char, 1024> bytes{};
        const ssize_t got = read(m_nOutput, bytes.data(), bytes.size());
        if (got < 0 && EINTR == errno) {
            continue;
        }
        if (got <= 0) {
            return false;
        }
        m_strPending.append(bytes.data(), static_cast<std::size_t>(got));
        end = m_strPending.find('\n');
    }
    m_vecLines.push_back(m_strPending.substr(0, end));
    m_strPending.erase(0, end + 1);
    return true;
}

bool CameraProcess::waitUntilServing() {
    while (readLine()) {
        if (0 == m_vecLines.back().rfind("camerad: http", 0)) {
            m_strAddress = m_vecLines.back().substr(kAddressAt);
            return true;
        }
    }
    return false;
}

bool CameraProcess::waitForPassword() {
    while (password().empty()) {
        if (!readLine()) {
            return false;
        }
    }
    return true;
}

void CameraProcess::signal(int p_nSignal) const {
    kill(m_nChild, p_nSignal);
}

std::size_t CameraProcess::residentBytes() const {
    constexpr std::size_t kKibi = 1024;
    std::ifstream stream("/proc/" + std::to_string(m_nChild) + "/status");
    for (std::string line; std::getline(stream, line);) {
        if (0 == line.rfind("VmRSS:", 0)) {
            return std::stoul(line.substr(line.find(':') + 1)) * kKibi;
        }
    }
    ADD_FAILURE() << "nothing tells the memory of the process";
    return 0;
}

int CameraProcess::finish() {
    while (readLine()) {
    }
    int waited = 0;
    waitpid(m_nChild, &waited, 0);
    m_nChild = -1;
    return WIFEXITED(waited) ? WEXITSTATUS(waited) : 128 + WTERMSIG(waited);
}

std::string CameraProcess::errors() const {
    std::string text;
    std::array<char, 4096> bytes{};
    off_t at = 0;
    for (ssize_t got = 0; (got = pread(m_nErrors, bytes.data(), bytes.size(), at)) > 0; at += got) {
        text.append(bytes.data(), static_cast<std::size_t>(got));
    }
    return text;
}

int CameraProcess::port() const {
    const std::size_t colon = m_strAddress.rfind(':');
    return std::string::npos == colon ? 0 : std::stoi(m_strAddress.substr(colon + 1));
}

std::string CameraProcess::password() const {
    return behind(m_vecLines, "with the password ");
}

std::string CameraProcess::fingerprint() const {
    return behind(m_vecLines, "fingerprint of the certificate: ");
}

std::unique_ptr<httplib::Client> CameraProcess::client(const std::string& p_strPassword) const {
    const bool secure = 0 == m_strAddress.rfind("https", 0);
    auto client = std::make_unique<httplib::Client>((secure ? "https://127.0.0.1:" : "http://127.0.0.1:") +
                                                    std::to_string(port()));
    client->enable_server_certificate_verification(false);
    client->set_read_timeout(kPatience);
    client->set_tcp_nodelay(true);  // head and body go one after the other
    client->set_basic_auth("admin", p_strPassword);
    return client;
}

nlohmann::json jsonOf(const httplib::Result& p_objResult, int p_nStatus) {
    if (!p_objResult) {
        ADD_FAILURE() << httplib::to_string(p_objResult.error());
        return nlohmann::json::object();
    }
    EXPECT_EQ(p_objResult->status, p_nStatus) << p_objResult->body;
    nlohmann::json document = nlohmann::json::parse(p_objResult->body, nullptr, false);
    EXPECT_TRUE(document.is_object()) << p_objResult->body;
    return document;
}
