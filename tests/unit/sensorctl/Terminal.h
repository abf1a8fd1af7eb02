// The program at a terminal of its own, as somebody sits in front of it.
#pragma once

#include <sys/types.h>
#include <string>
#include <vector>

class Terminal {
public:
    // Starts the program with these arguments; what it keeps of its user lies in p_strHome.
    Terminal(const std::vector<std::string>& p_vecArguments, const std::string& p_strHome);
    // Ends one that still runs.
    ~Terminal();
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;

    void type(const std::string& p_strKeys);

    // Waits until the text is on the screen, and returns what was printed from the end of the text that was waited for
    // before to the end of this one, escape sequences left out. Fails the test when it does not come within a minute.
    std::string until(const std::string& p_strText);

    // The same for the prompt, and waits until it reads single keys.
    std::string untilPrompt(const std::string& p_strPrompt);

    void signal(int p_nSignal);

    // Waits for the end and returns the exit status. Fails the test when it does not come within a minute.
    int finish();

private:
    bool readMore();

    pid_t m_nChild = -1;
    int m_nTerminal = -1;
    std::string m_strSeen;  // not yet waited for
    bool m_bLate = false;   // nothing came within the deadline
};
