#include "apps/camerad/program/Password.h"

#include "apps/camerad/access/AccessControl.h"

#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <iostream>
#include <stdexcept>

namespace camerad {

namespace {

constexpr std::size_t kLongestPassword = 1024;

// A terminal that does not show what is typed, for as long as the object lives.
class Silent {
public:
    explicit Silent(int p_nDescriptor) : m_nDescriptor(p_nDescriptor) {
        tcgetattr(p_nDescriptor, &m_stBefore);
        termios silent = m_stBefore;
        silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        tcsetattr(p_nDescriptor, TCSAFLUSH, &silent);
    }
    ~Silent() { tcsetattr(m_nDescriptor, TCSAFLUSH, &m_stBefore); }
    Silent(const Silent&) = delete;
    Silent& operator=(const Silent&) = delete;

private:
    const int m_nDescriptor;
    termios m_stBefore{};
};

std::string readLine(int p_nDescriptor) {
    std::string line;
    for (;;) {
        char byte = 0;
        const ssize_t got = read(p_nDescriptor, &byte, 1);
        if (got < 0 && EINTR == errno) {
            continue;
        }
        if (got <= 0 || '\n' == byte) {
            break;
        }
        line += byte;
        if (line.size() > kLongestPassword) {
            throw std::runtime_error("the password is longer than " + std::to_string(kLongestPassword) + " bytes");
        }
    }
    if (line.empty()) {
        throw std::runtime_error("no password came from standard input");
    }
    return line;
}

}  // namespace

std::string readPassword(int p_nDescriptor) {
    if (0 == isatty(p_nDescriptor)) {
        return readLine(p_nDescriptor);
    }
    const Silent silent(p_nDescriptor);
    std::cerr << "New password: ";
    const std::string once = readLine(p_nDescriptor);
    std::cerr << "\nThe same again: ";
    const std::string again = readLine(p_nDescriptor);
    std::cerr << "\n";
    if (once != again) {
        throw std::runtime_error("the two differ; the password stays as it was");
    }
    return once;
}

void setPassword(const std::string& p_strName, const std::string& p_strPassword) {
    const std::unique_ptr<AccessControl> access = AccessControl::open({});
    std::string names;
    for (const AccountView& account : access->accounts()) {
        if (account.strName == p_strName) {
            access->putAccount(p_strName, p_strPassword, account.eRole);
            return;
        }
        names += (names.empty() ? "" : ", ") + account.strName;
    }
    throw std::runtime_error("there is no account \"" + p_strName + "\"; there are: " + names);
}

}  // namespace camerad
