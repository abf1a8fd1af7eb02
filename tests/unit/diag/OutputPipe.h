// Standard output as a test's own end of a line: what is written can be looked at write by write, or held back.
#pragma once

#include <string>

class OutputPipe {
public:
    enum class Kind {
        Pipe,    // bytes; a writer blocks when it is full
        Packets  // every write call arrives as a piece of its own
    };

    // Standard output leads here from now on.
    explicit OutputPipe(Kind p_eKind);
    ~OutputPipe();  // as restore()
    OutputPipe(const OutputPipe&) = delete;
    OutputPipe& operator=(const OutputPipe&) = delete;

    // Standard output leads where it led before. What was written can still be read, then comes the end.
    void restore();

    // What the next write brought (Packets), or what is there, up to the given number of bytes (Pipe). Blocks for the
    // first byte; empty at the end.
    std::string next(std::size_t p_nMost = 1 << 20);

    // Everything up to the end. Needs restore(), now or by another thread.
    std::string rest();

    // Nobody reads any more.
    void closeReadingEnd();

private:
    int m_nSaved = -1;
    int m_nReading = -1;
};
