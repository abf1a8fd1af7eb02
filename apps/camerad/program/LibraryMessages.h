// Keeps the library's messages apart from the program's own words.
//
// The library prints its messages to file descriptor 1. As long as an object of this class lives, descriptor 1 leads into a
// pipe, a thread of its own takes line by line from it, and the standard output that the program was started with is behind
// a private descriptor. One object at a time; construct and destroy it while nothing prints.
#pragma once

#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace camerad {

class LibraryMessages {
public:
    using Taker = std::function<void(const std::string&)>;

    // Throws std::system_error when a descriptor cannot be had.
    LibraryMessages();
    ~LibraryMessages();
    LibraryMessages(const LibraryMessages&) = delete;
    LibraryMessages& operator=(const LibraryMessages&) = delete;

    // Where lines go from now on, without their ends; first those that came before, the newest of them at most. None: they
    // are kept. After the call returns, the taker before is not called any more.
    void setTaker(Taker p_fnTaker);

    // To the standard output that the program was started with. False when it does not take it.
    bool say(const std::string& p_strText) const;

private:
    void run();
    void takeBytes(const char* p_pBytes, std::size_t p_nCount);
    void takeLine();

    int m_nOutput;          // the real one
    int m_nRead;            // end of the pipe
    int m_nStop;            // readable when the thread is to end
    std::string m_strLine;  // so far; of the thread

    std::mutex m_mutex;  // guards what follows, and is held while the taker takes
    Taker m_fnTaker;
    std::deque<std::string> m_listKept;

    std::thread m_thread;
};

}  // namespace camerad
