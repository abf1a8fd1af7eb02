// Keeps the library's messages apart from the program's results.
//
// The library prints its messages to file descriptor 1. As long as an object of this class lives, descriptor 1 leads where
// the messages are wanted, and the standard output that the program was started with is behind a private descriptor.
// One object at a time; construct and destroy it while nothing prints.
#pragma once

namespace sensorctl {

class LibraryOutput {
public:
    enum class Target { standardOutput, standardError, nowhere };

    // Throws std::system_error when a descriptor cannot be had.
    explicit LibraryOutput(Target p_eTarget);
    ~LibraryOutput();
    LibraryOutput(const LibraryOutput&) = delete;
    LibraryOutput& operator=(const LibraryOutput&) = delete;

    // Where results go. Owned by this object.
    int resultDescriptor() const { return m_nResults; }

private:
    int m_nResults;
};

}  // namespace sensorctl
