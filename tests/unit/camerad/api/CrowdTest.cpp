// Many clients at a time, good ones and bad ones.
#include "tests/unit/camerad/api/Stack.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <iostream>

namespace {

using nlohmann::json;
using Clock = std::chrono::steady_clock;

const char kBrightness[] = "/api/v1/channels/1/parameters/34";

// Each holds a stream of events and one of pictures. A listener has room for more events than there are changes, so none
// may be told to ask for everything anew. What the process needs for as many is measured where it runs alone.
TEST(Crowd, SixtyFourClientsWithBothStreamsLoseNothing) {
    constexpr int kClients = 64;
    constexpr int kChanges = 60;
    Stack stack;
    const auto client = stack.admin();
    client->json("PUT", kBrightness, R"({"value":0})");

    std::vector<std::unique_ptr<EventReader>> vecReaders;
    std::vector<std::unique_ptr<StackStream>> vecViewers;
    for (int i = 0; i < kClients; ++i) {
        vecReaders.push_back(std::make_unique<EventReader>(stack.port(), client->headers(), "?types=parameter"));
        vecViewers.push_back(std::make_unique<StackStream>(stack.port(), "/api/v1/channels/1/preview.mjpg?fps=5",
                                                           client->headers(), [](const char*, std::size_t) {}));
    }
    ASSERT_TRUE(eventually([&] { return 2 * kClients == static_cast<int>(stack.counters().nStreams); }));
    for (int i = 1; i <= kChanges; ++i) {
        client->json("PUT", kBrightness, json({{"value", i}}).dump());
    }
    for (const auto& reader : vecReaders) {
        for (int i = kChanges; i > 0; --i) {
            ASSERT_FALSE(reader->await("parameter", brightnessIs(i)).is_null()) << "value " << i << " was lost";
        }
        EXPECT_EQ(reader->counts().count("resync"), 0U);
        EXPECT_EQ(reader->counts().at("parameter"), kChanges);
    }
    for (const auto& viewer : vecViewers) {
        EXPECT_TRUE(eventually([&] { return viewer->bytes() > 3000; }));
    }
    EXPECT_EQ(2 * kClients, static_cast<int>(stack.counters().nStreams));
    EXPECT_EQ(stack.counters().nRefusedConnections, 0U);
}

std::string fields(const httplib::Headers& p_mapHeaders) {
    std::string text = "Host: localhost\r\n";
    for (const auto& [name, value] : p_mapHeaders) {
        text += name + ": " + value + "\r\n";
    }
    return text;
}

double metric(StackClient& p_objClient, const std::string& p_strName) {
    const std::string text = "\n" + p_objClient.call("GET", "/metrics").body;
    const std::size_t at = text.find("\n" + p_strName + " ");
    EXPECT_NE(at, std::string::npos) << p_strName;
    return std::string::npos == at ? 0 : std::stod(text.substr(at + p_strName.size() + 2));
}

// Who was too slow loses its events, and in the end its connection.
double metricOfSlowness(StackClient& p_objClient) {
    return metric(p_objClient, "camerad_event_overflows_total") + metric(p_objClient, "camerad_http_timeouts_total");
}

// Sets the brightness to another value each time. The longest time that one took.
Clock::duration slowestOf(StackClient& p_objClient, int p_nSets, std::vector<std::string>& p_vecLines,
                          const std::function<void(int)>& p_fnBetween = nullptr) {
    Clock::duration nSlowest{0};
    for (int i = 0; i < p_nSets; ++i) {
        const int nValue = i % 100;
        const Clock::time_point tBefore = Clock::now();
        const httplib::Response response = p_objClient.call("PUT", kBrightness, json({{"value", nValue}}).dump());
        nSlowest = std::max(nSlowest, Clock::now() - tBefore);
        EXPECT_EQ(response.status, 200) << response.body;
        p_vecLines.push_back("ia ch0 set 34 " + std::to_string(nValue) + " = 0");
        if (p_fnBetween) {
            p_fnBetween(i);
        }
    }
    return nSlowest;
}

std::vector<std::string> setsOfBrightness(Stack& p_objStack, std::uint64_t p_nAfter) {
    std::vector<std::string> vecLines;
    for (const std::string& line : p_objStack.rig().sets(p_nAfter)) {
        if (0 == line.rfind("ia ch0 set 34 ", 0)) {
            vecLines.push_back(line);
        }
    }
    return vecLines;
}

// Who asks for streams and reads nothing, stops in the middle of a request, or goes away with a fault, is waited for by
// nobody else: had a change to wait for one of them, it would take as long as the server bears with it.
TEST(Crowd, SlowAndBrokenClientsDelayNoParameter) {
    constexpr std::chrono::seconds kBornWith{3};
    constexpr int kSets = 200;
    Stack::Settings settings;
    settings.stServer.nWriteTime = kBornWith;
    settings.nPictureWidth = 640;  // so large that what the system takes for a client is full at once
    settings.nPictureHeight = 360;
    Stack stack("", settings);
    const auto client = stack.admin();
    std::vector<std::string> vecQuiet;
    const Clock::duration nQuiet = slowestOf(*client, 50, vecQuiet);
    const double slowness = metricOfSlowness(*client);

    const std::string mine = fields(client->headers());
    std::vector<std::unique_ptr<StackSocket>> vecBad;
    const auto addBad = [&](const std::string& p_strBytes) {
        vecBad.push_back(std::make_unique<StackSocket>(stack.port(), true));
        vecBad.back()->send(p_strBytes);
    };
    for (int i = 0; i < 32; ++i) {
        addBad("GET /api/v1/events HTTP/1.1\r\n" + mine + "\r\n");
        addBad("GET /api/v1/channels/1/preview.mjpg?fps=25 HTTP/1.1\r\n" + mine + "\r\n");
    }
    for (int i = 0; i < 8; ++i) {
        addBad("GET /api/v1/ev");
        addBad("PUT " + std::string(kBrightness) + " HTTP/1.1\r\n" + mine +
               "Content-Type: application/json\r\nContent-Length: 13\r\n\r\n{\"val");
    }
    // Some may be given up while others still come.
    const auto fnBegun = [&](const char* p_szRoute) { return stack.counters().mapRequests[{p_szRoute, 200}].nCount; };
    ASSERT_TRUE(eventually([&] {
        return 32 == fnBegun("GET /api/v1/events") && 32 == fnBegun("GET /api/v1/channels/{channel}/preview.mjpg");
    }));

    // Fills what the system takes for each listener, and then what the camera keeps for it, until the metrics tell of it.
    const json filler = {{"text", std::string(256 * 1024, 'x')}};
    ASSERT_TRUE(eventually([&] {
        stack.rig().events().publish("message", 0, filler);
        return metricOfSlowness(*client) > slowness;
    }));

    const std::uint64_t before = stack.rig().end();
    std::vector<std::string> vecExpected;
    const Clock::duration nSlowest = slowestOf(*client, kSets, vecExpected, [&](int p_nSet) {
        if (0 == p_nSet % 20) {
            StackSocket other(stack.port(), true);
            other.send("GET /api/v1/events HTTP/1.1\r\n" + mine + "\r\n");
            other.reset();
        }
    });
    EXPECT_THAT(setsOfBrightness(stack, before), testing::ElementsAreArray(vecExpected));
    const auto inMilliseconds = [](Clock::duration p_nTime) {
        return std::chrono::duration_cast<std::chrono::milliseconds>(p_nTime).count();
    };
    std::cout << "slowest change: " << inMilliseconds(nQuiet) << " ms alone, " << inMilliseconds(nSlowest)
              << " ms in bad company\n";
    // The second for machines on which a change takes long in any company.
    EXPECT_LT(nSlowest, std::max<Clock::duration>(kBornWith, 40 * nQuiet) / 2);
    EXPECT_EQ(client->call("GET", kBrightness).status, 200);
}

}  // namespace
