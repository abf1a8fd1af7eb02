#include "apps/camerad/program/LibraryMessages.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <string>
#include <vector>

namespace {

using camerad::LibraryMessages;
using testing::ElementsAre;

// Lines that were taken, and a wait for them.
class Lines {
public:
    LibraryMessages::Taker taker() {
        return [this](const std::string& p_strLine) {
            const std::lock_guard<std::mutex> guard(m_mutex);
            m_vecLines.push_back(p_strLine);
            m_changed.notify_all();
        };
    }
    std::vector<std::string> wait(std::size_t p_nCount) {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_changed.wait_for(lock, std::chrono::seconds(30), [&] { return m_vecLines.size() >= p_nCount; });
        return m_vecLines;
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<std::string> m_vecLines;
};

// Descriptor 1 leads into a pipe for as long as the object lives.
class Output {
public:
    Output() : m_nBefore(dup(STDOUT_FILENO)) {
        std::fflush(stdout);
        if (0 != pipe(m_nEnds)) {
            throw std::logic_error("no pipe");
        }
        dup2(m_nEnds[1], STDOUT_FILENO);
        close(m_nEnds[1]);
    }
    ~Output() {
        dup2(m_nBefore, STDOUT_FILENO);
        close(m_nBefore);
        close(m_nEnds[0]);
    }
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    std::string read() const {
        char bytes[256];
        const ssize_t got = ::read(m_nEnds[0], bytes, sizeof(bytes));
        return {bytes, got > 0 ? static_cast<std::size_t>(got) : 0};
    }

private:
    int m_nBefore;
    int m_nEnds[2] = {-1, -1};
};

TEST(LibraryMessages, LinesReachTheTakerAndNotTheOutput) {
    const Output output;
    Lines lines;
    {
        LibraryMessages messages;
        messages.setTaker(lines.taker());
        std::printf("one\ntw");
        std::fflush(stdout);
        EXPECT_EQ(write(STDOUT_FILENO, "o\n", 2), 2);
        EXPECT_THAT(lines.wait(2), ElementsAre("one", "two"));
        EXPECT_TRUE(messages.say("my own\n"));
        EXPECT_EQ(output.read(), "my own\n");
    }
    std::printf("afterwards\n");
    std::fflush(stdout);
    EXPECT_EQ(output.read(), "afterwards\n");
}

TEST(LibraryMessages, LinesBeforeTheTakerAreKept) {
    const Output output;
    Lines lines;
    LibraryMessages messages;
    std::printf("early\n");
    messages.setTaker(lines.taker());
    std::printf("late\n");
    EXPECT_THAT(lines.wait(2), ElementsAre("early", "late"));
    messages.setTaker(nullptr);
}

TEST(LibraryMessages, ALineWithoutEndIsCut) {
    const Output output;
    Lines lines;
    LibraryMessages messages;
    messages.setTaker(lines.taker());
    const std::string text(20000, 'x');
    EXPECT_EQ(write(STDOUT_FILENO, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    for (const std::string& line : lines.wait(2)) {
        EXPECT_EQ(line.size(), 8192U);
    }
    messages.setTaker(nullptr);
}

TEST(LibraryMessages, ManyLinesThatNobodyTakesHoldUpNobody) {
    const Output output;
    const LibraryMessages messages;
    const std::string line(1000, 'x');
    for (int i = 0; i < 2000; ++i) {
        std::printf("%s\n", line.c_str());
    }
}

}  // namespace
