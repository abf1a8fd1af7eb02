#include "apps/camerad/host/EventHub.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

using camerad::EventFilter;
using camerad::EventHub;
using camerad::EventPtr;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr std::chrono::milliseconds kNow{0};
constexpr std::chrono::milliseconds kLong{30000};

std::vector<std::string> typesOf(EventHub::Subscription& p_objListener, std::chrono::milliseconds p_nTime = kNow) {
    std::vector<std::string> types;
    for (const EventPtr& event : p_objListener.wait(p_nTime)) {
        types.push_back(event->strType);
    }
    return types;
}

TEST(EventHub, ListenersHearEverythingInOrder) {
    EventHub hub;
    const auto first = hub.subscribe({});
    hub.publish("a", 1, {{"x", 1}});
    const auto second = hub.subscribe({});
    hub.publish("b", 0, 2);
    const std::vector<EventPtr> events = first->wait(kNow);
    ASSERT_EQ(2u, events.size());
    EXPECT_EQ(1u, events[0]->nNumber);
    EXPECT_EQ("{\"x\":1}", events[0]->strData);
    EXPECT_EQ(1, events[0]->nChannel);
    EXPECT_EQ(2u, events[1]->nNumber);
    EXPECT_THAT(typesOf(*second), ElementsAre("b"));
    EXPECT_THAT(typesOf(*first), IsEmpty());
    EXPECT_EQ(2u, hub.lastNumber());
}

TEST(EventHub, AFilterGoesByChannelAndType) {
    EventHub hub;
    const auto listener = hub.subscribe({2, {"a", "b"}});
    hub.publish("a", 1, {});
    hub.publish("a", 2, {});
    hub.publish("b", 0, {});
    hub.publish("c", 2, {});
    EXPECT_THAT(typesOf(*listener), ElementsAre("a", "b"));
}

TEST(EventHub, WhoComesBackHearsWhatWasMissed) {
    EventHub hub;
    for (int i = 0; i < 5; ++i) {
        hub.publish(std::string(1, static_cast<char>('a' + i)), 0, {});
    }
    EXPECT_THAT(typesOf(*hub.subscribe({}, 3)), ElementsAre("d", "e"));
    EXPECT_THAT(typesOf(*hub.subscribe({0, {"e"}}, 3)), ElementsAre("e"));
    EXPECT_THAT(typesOf(*hub.subscribe({}, 5)), IsEmpty());
    EXPECT_THAT(typesOf(*hub.subscribe({}, 0)), IsEmpty());
}

TEST(EventHub, WhoComesBackTooLateOrFromElsewhereAsksAnew) {
    EventHub hub(EventHub::Limits{8, 4, 1024});
    for (int i = 0; i < 6; ++i) {
        hub.publish("a", 0, {});
    }
    EXPECT_THAT(typesOf(*hub.subscribe({}, 1)), ElementsAre("resync"));
    EXPECT_THAT(typesOf(*hub.subscribe({}, 2)), ElementsAre("a", "a", "a", "a"));
    EXPECT_THAT(typesOf(*hub.subscribe({0, {"none"}}, 99)), ElementsAre("resync"));
}

TEST(EventHub, WhoComesFromAnEarlierRunAsksAnew) {
    EventHub earlier(EventHub::Limits{8, 8, 1024, 700});
    EventHub hub(EventHub::Limits{8, 8, 1024, 1000});
    for (int i = 0; i < 4; ++i) {
        earlier.publish("a", 0, {});
        hub.publish("a", 0, {});
    }
    EXPECT_EQ(704u, earlier.lastNumber());
    EXPECT_EQ(1001u, hub.subscribe({}, 1000)->wait(std::chrono::milliseconds(0)).at(0)->nNumber);
    EXPECT_THAT(typesOf(*hub.subscribe({}, earlier.lastNumber())), ElementsAre("resync"));
    EXPECT_THAT(typesOf(*hub.subscribe({}, 1)), ElementsAre("resync"));
    EXPECT_THAT(typesOf(*earlier.subscribe({}, hub.lastNumber())), ElementsAre("resync"));
}

TEST(EventHub, MoreMissedThanAQueueHoldsIsAResync) {
    EventHub hub(EventHub::Limits{2, 10, 1024});
    for (int i = 0; i < 6; ++i) {
        hub.publish("a", 0, {});
    }
    const auto listener = hub.subscribe({}, 1);
    const std::vector<EventPtr> events = listener->wait(kNow);
    ASSERT_EQ(1u, events.size());
    EXPECT_EQ("resync", events[0]->strType);
    EXPECT_EQ(6u, events[0]->nNumber);
}

TEST(EventHub, ASlowListenerLosesItsQueueAndNobodyElseDoes) {
    EventHub hub(EventHub::Limits{3, 10, 1024});
    const auto slow = hub.subscribe({});
    const auto quick = hub.subscribe({});
    for (int i = 0; i < 4; ++i) {
        hub.publish("a", 0, {});
        EXPECT_THAT(typesOf(*quick), ElementsAre("a"));
    }
    hub.publish("b", 0, {});
    EXPECT_EQ(1u, hub.overflows());
    EXPECT_THAT(typesOf(*slow), ElementsAre("resync", "b"));
    hub.publish("c", 0, {});
    EXPECT_THAT(typesOf(*slow), ElementsAre("c"));
}

TEST(EventHub, BytesAreBoundedToo) {
    EventHub hub(EventHub::Limits{100, 100, 1000});
    const auto listener = hub.subscribe({});
    for (int i = 0; i < 3; ++i) {
        hub.publish("a", 0, std::string(398, 'x'));
    }
    EXPECT_THAT(typesOf(*listener), ElementsAre("resync"));
    EXPECT_THAT(typesOf(*hub.subscribe({}, 1)), ElementsAre("a", "a"));
    hub.publish("huge", 0, std::string(2000, 'x'));
    EXPECT_THAT(typesOf(*listener), ElementsAre("resync"));
    EXPECT_THAT(typesOf(*hub.subscribe({}, 3)), ElementsAre("resync"));
}

TEST(EventHub, AWaitEndsWithAnEventOrTheHub) {
    EventHub hub;
    const auto listener = hub.subscribe({});
    std::thread publisher([&] { hub.publish("a", 0, {}); });
    EXPECT_THAT(typesOf(*listener, kLong), ElementsAre("a"));
    publisher.join();
    std::thread closer([&] { hub.close(); });
    EXPECT_THAT(typesOf(*listener, kLong), IsEmpty());
    closer.join();
    EXPECT_TRUE(listener->isClosed());
    EXPECT_TRUE(hub.subscribe({})->isClosed());
    hub.publish("b", 0, {});
    EXPECT_EQ(1u, hub.lastNumber());
}

TEST(EventHub, ASubscriptionMayOutliveTheHub) {
    std::shared_ptr<EventHub::Subscription> listener;
    {
        EventHub hub;
        listener = hub.subscribe({});
    }
    EXPECT_TRUE(listener->isClosed());
    EXPECT_THAT(listener->wait(kLong), IsEmpty());
}

TEST(EventHub, WhoIsGoneIsNoListener) {
    EventHub hub;
    const auto stays = hub.subscribe({});
    {
        const auto goes = hub.subscribe({});
        EXPECT_EQ(2u, hub.listeners());
    }
    EXPECT_EQ(1u, hub.listeners());
}

TEST(EventHub, BytesThatAreNoUtf8AreReplaced) {
    EventHub hub;
    const auto listener = hub.subscribe({});
    hub.publish("a", 0, {{"text", "\xFF\n"}});
    EXPECT_EQ("{\"text\":\"\xEF\xBF\xBD\\n\"}", listener->wait(kNow).at(0)->strData);
}

TEST(EventHub, NumbersHaveNoGapsWhoeverPublishes) {
    EventHub hub(EventHub::Limits{1000, 1000, 1 << 20});
    const auto listener = hub.subscribe({});
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int k = 0; k < 100; ++k) {
                hub.publish("a", 0, k);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    std::uint64_t expected = 0;
    for (const EventPtr& event : listener->wait(kNow)) {
        EXPECT_EQ(++expected, event->nNumber);
    }
    EXPECT_EQ(400u, expected);
}

}  // namespace
