// Starts the program as a user does, against a device root of the test's own.
#pragma once

#include "tests/support/TestRoot.h"

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

// A copy of the sample device tree in a folder of the test.
class DeviceTree : public TestRoot {
public:
    DeviceTree();

    // Lays a variant of the device (a folder of rootfs/variants) over the tree.
    void become(const std::string& p_strVariant) const;
};

struct ProgramResult {
    int nStatus = -1;  // exit status; 128 and the signal when a signal ended the program
    std::string strOutput;
    std::string strErrors;

    // Standard output as JSON, one object a line. A line that is none fails the test.
    std::vector<nlohmann::json> jsonLines() const;
    // Only the lines of this type ("result", "transcript", "summary").
    std::vector<nlohmann::json> jsonLines(const std::string& p_strType) const;
};

// Turns a child process into the program; CAMERA_ROOT is not set.
[[noreturn]] void becomeProgram(const std::vector<std::string>& p_vecArguments);

// The words that start the program: those of the emulator, if there is one, and its path.
std::vector<std::string> programWords();

// Runs the program with these arguments and this standard input. CAMERA_ROOT is not set.
ProgramResult runProgram(const std::vector<std::string>& p_vecArguments, const std::string& p_strInput = "");

// The same with standard output leading to this path of the machine; strOutput stays empty.
ProgramResult runProgramTo(const std::string& p_strOutputPath, const std::vector<std::string>& p_vecArguments);

// A program that is spoken to while it runs. The destructor kills one that still does.
class StartedProgram {
public:
    explicit StartedProgram(const std::vector<std::string>& p_vecArguments);
    ~StartedProgram();
    StartedProgram(const StartedProgram&) = delete;
    StartedProgram& operator=(const StartedProgram&) = delete;

    void say(const std::string& p_strLine);
    // The next line of standard output; blocks until there is one, empty at the end.
    std::string hear();
    void signal(int p_nSignal);
    // Ends standard input, waits for the end and returns the exit status.
    int finish(bool p_bEndInput = true);

private:
    int m_nChild = -1;
    int m_nInput = -1;
    int m_nOutput = -1;
};

// As runProgram with the tree as the device root and the script on standard input.
ProgramResult runScript(const DeviceTree& p_objTree, const std::string& p_strScript,
                        std::vector<std::string> p_vecOptions = {});

// What such a script, which must fail, wrote to standard error. The library's output is left out.
std::string errorOf(const DeviceTree& p_objTree, const std::string& p_strScript);

// As runScript with --json, for one script that must succeed: the data of the last result.
nlohmann::json lastData(const DeviceTree& p_objTree, const std::string& p_strScript);
