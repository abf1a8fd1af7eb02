// The program as a user starts it, on a device root of the test's own.
#pragma once

#include "tests/support/TestRoot.h"

#include <httplib.h>
#include <nlohmann/json.hpp>

#include <memory>
#include <optional>
#include <string>
#include <vector>

// A copy of the sample device tree in a folder of the test.
class CameraTree : public TestRoot {
public:
    CameraTree();
};

class CameraProcess {
public:
    // Starts the program with --root and these arguments. With a password on standard input when there is one. Its
    // standard output goes to p_szOutput when that names a file; nothing of it can be read then.
    explicit CameraProcess(const TestRoot& p_objRoot, std::vector<std::string> p_vecArguments = {},
                           const std::string& p_strInput = "",
                           const std::vector<std::pair<std::string, std::string>>& p_vecEnvironment = {},
                           const char* p_szOutput = nullptr);
    ~CameraProcess();  // kills one that still runs
    CameraProcess(const CameraProcess&) = delete;
    CameraProcess& operator=(const CameraProcess&) = delete;

    // Reads standard output up to the line with the address. False when the program ended before.
    bool waitUntilServing();
    // Likewise up to that with the first password, which comes before the camera starts.
    bool waitForPassword();
    void signal(int p_nSignal) const;
    std::size_t residentBytes() const;  // memory of the process that is in use; with an emulator, of that
    int finish();                       // waits for the end; exit status, 128 and the signal when a signal ended it

    const std::vector<std::string>& lines() const { return m_vecLines; }  // of standard output, as far as read
    std::string errors() const;                                           // standard error so far
    std::string address() const { return m_strAddress; }
    int port() const;
    std::string password() const;     // that the program told; empty when it told none
    std::string fingerprint() const;  // likewise

    // A client that is signed in by name and password.
    std::unique_ptr<httplib::Client> client(const std::string& p_strPassword) const;

private:
    bool readLine();

    pid_t m_nChild = -1;
    int m_nOutput = -1;
    int m_nErrors = -1;
    std::string m_strPending;
    std::vector<std::string> m_vecLines;
    std::string m_strAddress;
};

// The JSON of an answer with this status; fails the test otherwise.
nlohmann::json jsonOf(const httplib::Result& p_objResult, int p_nStatus = 200);
