// A message is one write call, whatever it is made of, so that threads never interleave inside one.
#include "sensor/diag/Message.h"
#include "tests/support/Messages.h"
#include "tests/support/TestRoot.h"
#include "tests/unit/diag/OutputPipe.h"

#include <gtest/gtest.h>
#include <pthread.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr char kWriterSource[] = "Camera.cpp";

void sayEverything(int p_nThread, int p_nNumber) {
    SENSOR_WARN("warning %d of %d\n", p_nNumber, p_nThread);
    SENSOR_ERR("error %d of %d\n", p_nNumber, p_nThread);
    SENSOR_DBG("debug %d of %d\n", p_nNumber, p_nThread);
    SENSOR_TRACE("trace %d of %d\n", p_nNumber, p_nThread);
    SENSOR_INFO("dump %d of %d\n", p_nNumber, p_nThread);
    SENSOR_PRINT("print %d of %d\n", p_nNumber, p_nThread);
    SENSOR_ASSERT_DETAIL(false, "lens fits", "detail %d of %d\n", p_nNumber, p_nThread);
}

std::vector<std::string> everything(int p_nThread, int p_nNumber) {
    const messages::Place stPlace{kWriterSource, "sayEverything"};
    const std::string strNumbers = std::to_string(p_nNumber) + " of " + std::to_string(p_nThread) + "\n";
    return {messages::warning(stPlace, "warning " + strNumbers), messages::error(stPlace, "error " + strNumbers),
            messages::debug(stPlace, "debug " + strNumbers),     messages::trace("trace " + strNumbers),
            messages::info(stPlace, "dump " + strNumbers),       "print " + strNumbers,
            messages::assertion(stPlace, "lens fits"),           messages::detail("detail " + strNumbers)};
}

// Every piece that one write brought, until all output has been given back.
std::vector<std::string> pieces(OutputPipe& p_objPipe) {
    std::vector<std::string> vecPieces;
    for (std::string strPiece = p_objPipe.next(); !strPiece.empty(); strPiece = p_objPipe.next()) {
        vecPieces.push_back(messages::anyLine(strPiece));
    }
    return vecPieces;
}

TEST(OneWrite, CarriesEachMessageWhole) {
    const TestRoot root;
    root.debugLevel(7);
    OutputPipe packets(OutputPipe::Kind::Packets);
    sayEverything(1, 2);
    packets.restore();
    EXPECT_EQ(everything(1, 2), pieces(packets));
}

TEST(OneWrite, CarriesALongMessageWhole) {
    const TestRoot root;
    root.debugLevel(7);
    const std::string strLong(50000, 'x');
    OutputPipe packets(OutputPipe::Kind::Packets);
    SENSOR_INFO("%s\n", strLong.c_str());
    packets.restore();
    EXPECT_EQ(std::vector<std::string>{messages::info({kWriterSource, "TestBody"}, strLong + "\n")}, pieces(packets));
}

// Lets several threads speak at once and gives what arrived.
template <typename Collect>
auto collected(OutputPipe& p_objPipe, int p_nThreads, int p_nRounds, Collect&& p_fnCollect) {
    std::thread speakers([&, p_nThreads, p_nRounds] {
        std::vector<std::thread> threads;
        for (int i = 0; i < p_nThreads; ++i) {
            threads.emplace_back([i, p_nRounds] {
                for (int n = 0; n < p_nRounds; ++n) {
                    sayEverything(i, n);
                }
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        p_objPipe.restore();
    });
    auto result = p_fnCollect(p_objPipe);
    speakers.join();
    return result;
}

TEST(OneWrite, KeepsTheMessagesOfSeveralThreadsApart) {
    constexpr int kThreads = 6;
    constexpr int kRounds = 20;
    const TestRoot root;
    root.debugLevel(7);
    OutputPipe packets(OutputPipe::Kind::Packets);
    std::vector<std::string> vecPieces = collected(packets, kThreads, kRounds, pieces);

    std::vector<std::string> vecExpected;
    for (int i = 0; i < kThreads; ++i) {
        for (int n = 0; n < kRounds; ++n) {
            for (const std::string& strMessage : everything(i, n)) {
                vecExpected.push_back(strMessage);
            }
        }
    }
    std::sort(vecExpected.begin(), vecExpected.end());
    std::sort(vecPieces.begin(), vecPieces.end());
    EXPECT_EQ(vecExpected, vecPieces);
}

TEST(OneWrite, LeavesWholeMessagesInAPipe) {
    constexpr int kThreads = 6;
    constexpr int kRounds = 20;
    const TestRoot root;
    root.debugLevel(7);
    OutputPipe pipe(OutputPipe::Kind::Pipe);
    const std::string strAll =
        messages::anyLine(collected(pipe, kThreads, kRounds, [](OutputPipe& p_objPipe) { return p_objPipe.rest(); }));

    std::vector<std::string> vecOpen;
    std::size_t nLength = 0;
    for (int i = 0; i < kThreads; ++i) {
        for (int n = 0; n < kRounds; ++n) {
            for (const std::string& strMessage : everything(i, n)) {
                vecOpen.push_back(strMessage);
                nLength += strMessage.size();
            }
        }
    }
    EXPECT_EQ(nLength, strAll.size());
    for (const std::string& strMessage : vecOpen) {
        EXPECT_NE(std::string::npos, strAll.find(strMessage)) << strMessage;
    }
}

std::atomic<int> g_nSignals{0};

// A write that a signal interrupts, before or after it has taken part of the message, goes on where it stopped.
TEST(OneWrite, GoesOnAfterASignal) {
    const TestRoot root;
    root.debugLevel(6);
    struct sigaction stAction = {};
    struct sigaction stOld = {};
    stAction.sa_handler = [](int) { ++g_nSignals; };
    ASSERT_EQ(0, sigaction(SIGUSR1, &stAction, &stOld));

    std::string strLong;
    for (int i = 0; strLong.size() < 500000; ++i) {
        strLong += std::to_string(i) + " ";
    }
    OutputPipe pipe(OutputPipe::Kind::Pipe);
    std::atomic<bool> bEnded{false};
    std::thread speaker([&] {
        SENSOR_TRACE("%s", strLong.c_str());
        bEnded = true;
        pipe.restore();
    });
    std::string strShown = pipe.next(1);  // the write has begun and cannot end
    for (int i = 0; i < 20; ++i) {
        const int nBefore = g_nSignals;
        // Again until it is heard: a sanitizer keeps a signal that comes just before a write until that returns, which
        // only the next one makes it do.
        while (nBefore == g_nSignals && !bEnded) {
            pthread_kill(speaker.native_handle(), SIGUSR1);
            std::this_thread::yield();
        }
    }
    EXPECT_FALSE(bEnded);
    strShown += pipe.rest();
    speaker.join();
    EXPECT_EQ(0, sigaction(SIGUSR1, &stOld, nullptr));
    EXPECT_EQ(messages::trace(strLong), strShown);
}

TEST(OneWrite, IsGivenUpWhenNobodyReadsAndTheMessageIsStillLogged) {
    const TestRoot root;
    const auto pfnOld = std::signal(SIGPIPE, SIG_IGN);
    OutputPipe pipe(OutputPipe::Kind::Pipe);
    pipe.closeReadingEnd();
    SENSOR_ASSERT(false, "lens fits");
    pipe.restore();
    std::signal(SIGPIPE, pfnOld);
    EXPECT_EQ(messages::loggedAssertion({kWriterSource, "TestBody"}, "lens fits"), messages::anyLine(root.errorLog()));
}

}  // namespace
