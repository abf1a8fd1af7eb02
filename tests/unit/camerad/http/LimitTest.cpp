// Sizes, connections and streams have an end.
#include "tests/unit/camerad/http/HttpSupport.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

using camerad::ServerSettings;

TEST(HttpLimit, AHeaderOfExactlyTheLimitIsTaken) {
    ServerSettings settings;
    settings.nHeaderBytes = 1000;
    const TestServer server(settings);
    const std::string without = getRequest("/hello", "X-Test: \r\n");
    const auto withSize = [&without](std::size_t p_nSize) {
        return getRequest("/hello", "X-Test: " + std::string(p_nSize - without.size(), 'x') + "\r\n");
    };
    EXPECT_EQ(server.ask(withSize(1000)).nStatus, 200);
    const RawAnswer answer = server.ask(withSize(1001));
    EXPECT_EQ(answer.nStatus, 431);
    EXPECT_EQ(answer.problem(), "header-too-large");
}

TEST(HttpLimit, AHeaderWithoutEndIsRefused) {
    const TestServer server;
    RawClient client(server.port());
    client.send("GET /hello HTTP/1.1\r\n");
    std::thread flood([&client] {
        while (client.send("X-Test: 0123456789012345678901234567890123456789\r\n")) {
        }
    });
    EXPECT_EQ(client.answer().nStatus, 431);
    client.endSending();
    flood.join();
}

TEST(HttpLimit, ALongPathIsRefused) {
    const TestServer server;
    for (const std::size_t size : {std::size_t{600}, std::size_t{10000}, std::size_t{100000}}) {
        const RawAnswer answer = server.get("/" + std::string(size, 'a'));
        EXPECT_EQ(answer.nStatus, 414) << size;
        EXPECT_EQ(answer.problem(), "path-too-long") << size;
    }
}

TEST(HttpLimit, AConnectionTooManyIsToldToComeBack) {
    ServerSettings settings;
    settings.nConnections = 3;
    const TestServer server(settings);
    std::vector<std::unique_ptr<RawClient>> clients;
    for (int i = 0; i < 3; ++i) {
        clients.push_back(std::make_unique<RawClient>(server.port()));
    }
    EXPECT_TRUE(eventually([&server] { return 3U == server.counters().nConnections; }));
    const RawAnswer answer = server.get("/hello");
    EXPECT_EQ(answer.nStatus, 503);
    EXPECT_EQ(answer.problem(), "too-many-connections");
    EXPECT_EQ(answer.header("retry-after"), "5");
    EXPECT_EQ(server.counters().nRefusedConnections, 1U);

    clients.pop_back();
    EXPECT_TRUE(eventually([&server] { return 2U == server.counters().nConnections; }));
    EXPECT_EQ(server.get("/hello").nStatus, 200);
}

TEST(HttpLimit, ARefusedClientThatSaysNothingIsLetGo) {
    ServerSettings settings;
    settings.nConnections = 1;
    const TestServer server(settings);
    const RawClient first(server.port());
    EXPECT_TRUE(eventually([&server] { return 1U == server.counters().nConnections; }));
    const std::size_t before = openDescriptors();
    {
        std::vector<std::unique_ptr<RawClient>> refused;
        for (int i = 0; i < 100; ++i) {
            refused.push_back(std::make_unique<RawClient>(server.port()));
        }
        EXPECT_TRUE(eventually([&server] { return 100U == server.counters().nRefusedConnections; }));
        // The server lets go of all of them by itself, while the clients keep their ends.
        EXPECT_TRUE(eventually([before] { return before + 100 == openDescriptors(); }));
    }
    EXPECT_EQ(openDescriptors(), before);
}

TEST(HttpLimit, OneClientMayNotTakeAllConnections) {
    ServerSettings settings;
    settings.nConnectionsPerClient = 2;
    const TestServer server(settings);
    const RawClient one(server.port());
    const RawClient two(server.port());
    EXPECT_TRUE(eventually([&server] { return 2U == server.counters().nConnections; }));
    EXPECT_EQ(server.get("/hello").nStatus, 503);
}

TEST(HttpLimit, SixtyFourClientsAtATime) {
    const TestServer server;
    std::atomic<int> good{0};
    std::vector<std::thread> clients;
    for (int i = 0; i < 64; ++i) {
        clients.emplace_back([&server, &good, i] {
            RawClient client(server.port());
            for (int n = 0; n < 20; ++n) {
                const std::string text = std::to_string(i) + "." + std::to_string(n);
                client.send(0 == n % 2 ? getRequest("/names/" + text) : postRequest("/echo", text));
                good += client.answer().strBody == text ? 1 : 0;
            }
        });
    }
    for (std::thread& client : clients) {
        client.join();
    }
    EXPECT_EQ(good, 64 * 20);
    EXPECT_TRUE(eventually([&server] { return 0U == server.counters().nConnections; }));
}

}  // namespace
