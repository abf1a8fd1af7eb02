// What the process needs while many look at it.
#include "tests/unit/camerad/program/CameraProcess.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <iostream>

namespace {

using nlohmann::json;

constexpr std::size_t kMebi = 1024 * 1024;

// Natively, 64 clients with both streams take 6 MiB beyond what the process has with one client. Sanitizers keep shadows of
// all memory and what was freed, and an emulator counts its own translation of the program in: there the bound only tells
// that nothing grows without end.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kSanitized = true;
#elif defined(__has_feature)
constexpr bool kSanitized = __has_feature(address_sanitizer) || __has_feature(thread_sanitizer);
#else
constexpr bool kSanitized = false;
#endif
constexpr bool kNative = !kSanitized && sizeof(CAMERAD_EMULATOR) == 1;
constexpr std::size_t kMostGrowth = kNative ? 16 * kMebi : 1024 * kMebi;

// Streams that are read and thrown away, all by the thread that asks.
class Streams {
public:
    explicit Streams(int p_nPort) : m_nPort(p_nPort) {}
    ~Streams() {
        for (const pollfd& stPoll : m_vecPolls) {
            close(stPoll.fd);
        }
    }
    Streams(const Streams&) = delete;
    Streams& operator=(const Streams&) = delete;

    void add(const std::string& p_strPath, const std::string& p_strFields) {
        const int nSocket = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_in stAddress{};
        stAddress.sin_family = AF_INET;
        stAddress.sin_port = htons(static_cast<std::uint16_t>(m_nPort));
        stAddress.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        EXPECT_EQ(connect(nSocket, reinterpret_cast<const sockaddr*>(&stAddress), sizeof(stAddress)), 0);
        const std::string request = "GET " + p_strPath + " HTTP/1.1\r\nHost: localhost\r\n" + p_strFields + "\r\n";
        EXPECT_EQ(send(nSocket, request.data(), request.size(), MSG_NOSIGNAL), static_cast<ssize_t>(request.size()));
        m_vecPolls.push_back({nSocket, POLLIN, 0});
        m_vecBytes.push_back(0);
    }

    // Reads on until each has had so many bytes in all. False when that takes longer than two minutes.
    bool readEach(std::size_t p_nBytes) {
        const auto tEnd = std::chrono::steady_clock::now() + std::chrono::minutes(2);
        while (std::chrono::steady_clock::now() < tEnd) {
            if (*std::min_element(m_vecBytes.begin(), m_vecBytes.end()) >= p_nBytes) {
                return true;
            }
            readOnce();
        }
        return false;
    }

    void readOnce() {
        constexpr int kMilliseconds = 100;
        poll(m_vecPolls.data(), m_vecPolls.size(), kMilliseconds);
        std::array<char, 65536> bytes;
        for (std::size_t i = 0; i < m_vecPolls.size(); ++i) {
            const ssize_t nGot = 0 == m_vecPolls[i].revents ? 0 : recv(m_vecPolls[i].fd, bytes.data(), bytes.size(), 0);
            m_vecBytes[i] += static_cast<std::size_t>(std::max<ssize_t>(nGot, 0));
        }
    }

private:
    const int m_nPort;
    std::vector<pollfd> m_vecPolls;
    std::vector<std::size_t> m_vecBytes;  // of the stream in the same place
};

TEST(CameradProcess, NeedsLittleMemoryForSixtyFourClients) {
    const CameraTree tree;
    // The heap has as many parts as on two processors, wherever this runs.
    CameraProcess process(tree, {"--listen", "127.0.0.1:0"}, "", {{"MALLOC_ARENA_MAX", "16"}});
    ASSERT_TRUE(process.waitUntilServing()) << process.errors();
    const auto client = process.client(process.password());
    const json token =
        jsonOf(client->Post("/api/v1/tokens", R"({"name":"crowd","role":"viewer"})", "application/json"), 201);
    const std::string fields = "Authorization: Bearer " + token.at("token").get<std::string>() + "\r\n";
    Streams streams(process.port());
    const auto fnAddClient = [&] {
        streams.add("/api/v1/events", fields);
        streams.add("/api/v1/channels/1/preview.mjpg?fps=5", fields);
    };
    const auto fnChange = [&](int p_nChanges) {
        for (int i = 1; i <= p_nChanges; ++i) {
            jsonOf(client->Put("/api/v1/channels/1/parameters/34", json({{"value", i}}).dump(), "application/json"));
            streams.readOnce();
        }
    };
    constexpr std::size_t kBytes = 5000;  // more than the head of an answer: changes, and a piece of a picture
    fnAddClient();
    fnChange(50);
    ASSERT_TRUE(streams.readEach(kBytes));
    const std::size_t one = process.residentBytes();
    for (int i = 1; i < 64; ++i) {
        fnAddClient();
    }
    fnChange(100);
    ASSERT_TRUE(streams.readEach(kBytes));
    const std::size_t all = process.residentBytes();
    std::cout << "resident memory: " << one / 1024 << " KiB with one client, " << all / 1024 << " KiB with 64\n";
    EXPECT_LT(all, one + kMostGrowth);
    process.signal(SIGTERM);
    EXPECT_EQ(process.finish(), 0) << process.errors();
}

}  // namespace
