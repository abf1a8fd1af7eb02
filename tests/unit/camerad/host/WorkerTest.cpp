#include "apps/camerad/host/Worker.h"

#include "tests/unit/camerad/host/Rig.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <future>

using camerad::Refusal;
using camerad::Worker;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

Worker::Clock::time_point in(int p_nMilliseconds) {
    return Worker::Clock::now() + std::chrono::milliseconds(p_nMilliseconds);
}

class WorkerTest : public testing::Test {
protected:
    // Keeps the worker busy until released.
    std::promise<void> block() {
        std::promise<void> release;
        auto begun = std::make_shared<std::promise<void>>();
        const std::shared_future<void> free = release.get_future().share();
        EXPECT_TRUE(worker.postQuietly([begun, free] {
            begun->set_value();
            free.wait();
        }));
        begun->get_future().wait();
        return release;
    }

    std::mutex mutex;
    std::vector<std::string> busy;
    std::atomic<int> looks{0};
    Worker worker{{4, std::chrono::milliseconds(5), "channel 1"},
                  [this] { ++looks; },
                  [this](const std::string& p_strOperation) {
                      const std::lock_guard lock(mutex);
                      busy.push_back(p_strOperation);
                  }};
};

TEST_F(WorkerTest, DoesOneThingAfterTheOther) {
    std::vector<int> order;
    worker.run([&] { order.push_back(1); }, in(30000));
    worker.run([&] { order.push_back(2); }, in(30000));
    EXPECT_THAT(order, ElementsAre(1, 2));
}

TEST_F(WorkerTest, HandsBackWhatAJobThrows) {
    const Refusal refusal = refusalOf(
        [&] { worker.run([] { throw Refusal(Refusal::Kind::Conflict, "window-not-storable", "no"); }, in(30000)); });
    EXPECT_EQ(Refusal::Kind::Conflict, refusal.kind());
    EXPECT_EQ("window-not-storable", refusal.type());
    const Refusal failure = refusalOf([&] { worker.run([] { throw std::runtime_error("broken"); }, in(30000)); });
    EXPECT_EQ(Refusal::Kind::Failed, failure.kind());
    EXPECT_THAT(failure.what(), HasSubstr("broken"));
}

TEST_F(WorkerTest, WhatDoesNotBeginInTimeIsNeverDone) {
    std::promise<void> release = block();
    auto done = std::make_shared<std::atomic<bool>>(false);
    const Refusal refusal = refusalOf([&] { worker.run([done] { *done = true; }, in(20)); });
    EXPECT_EQ(Refusal::Kind::Busy, refusal.kind());
    EXPECT_THAT(refusal.what(), HasSubstr("nothing was done"));
    EXPECT_TRUE(refusal.retryAfter());
    release.set_value();
    worker.run([] {}, in(30000));
    EXPECT_FALSE(*done);
}

TEST_F(WorkerTest, WhatHasBegunGoesOnWithoutItsCaller) {
    std::promise<void> release;
    const std::shared_future<void> free = release.get_future().share();
    auto done = std::make_shared<std::atomic<bool>>(false);
    std::string words = "nothing was done";
    // A worker that a busy machine does not let begin in time gets more of it.
    for (int time = 50; time < 30000 && std::string::npos != words.find("nothing was done"); time *= 2) {
        words = refusalOf([&] {
                    worker.run(
                        [free, done] {
                            free.wait();
                            *done = true;
                        },
                        in(time));
                }).what();
    }
    EXPECT_THAT(words, HasSubstr("takes longer"));
    release.set_value();
    worker.run([] {}, in(30000));
    EXPECT_TRUE(*done);
}

TEST_F(WorkerTest, AFullQueueRefusesAtOnce) {
    std::promise<void> release = block();
    for (int i = 0; i < 4; ++i) {
        EXPECT_TRUE(worker.postQuietly([] {}));
    }
    EXPECT_FALSE(worker.postQuietly([] {}));
    EXPECT_EQ(Refusal::Kind::Busy, refusalOf([&] { worker.run([] {}, in(30000)); }).kind());
    release.set_value();
}

TEST_F(WorkerTest, AnExclusiveOperationRefusesEverythingElseUntilItsEnd) {
    std::promise<void> release = block();
    Worker::Ticket ticket = worker.post("reset", [] {});
    EXPECT_EQ("reset", worker.operation());
    EXPECT_THAT(refusalOf([&] { worker.run([] {}, in(30000)); }).what(), HasSubstr("busy with a reset"));
    EXPECT_THAT(refusalOf([&] { worker.post("reset", [] {}); }).what(), HasSubstr("busy with a reset"));
    EXPECT_FALSE(worker.postQuietly([] {}));
    release.set_value();
    ticket.wait(in(30000));
    EXPECT_EQ("", worker.operation());
    EXPECT_THAT(busy, ElementsAre("reset", ""));
    worker.run([] {}, in(30000));
}

TEST_F(WorkerTest, AnExclusiveOperationThatDoesNotBeginInTimeIsTakenBack) {
    std::promise<void> release = block();
    Worker::Ticket ticket = worker.post("reset", [] {});
    EXPECT_EQ(Refusal::Kind::Busy, refusalOf([&] { ticket.wait(in(20)); }).kind());
    EXPECT_EQ("", worker.operation());
    release.set_value();
    worker.run([] {}, in(30000));
    EXPECT_THAT(busy, ElementsAre("reset", ""));
}

TEST_F(WorkerTest, AnOperationThatIsKeptEndsWithTheNextOfItsName) {
    worker
        .post(
            "start", [] {}, true)
        .wait(in(30000));
    EXPECT_EQ("start", worker.operation());
    EXPECT_EQ(Refusal::Kind::Busy, refusalOf([&] { worker.run([] {}, in(30000)); }).kind());
    EXPECT_EQ(Refusal::Kind::Busy, refusalOf([&] { worker.post("reset", [] {}); }).kind());
    worker.post("start", [] {}).wait(in(30000));
    EXPECT_EQ("", worker.operation());
}

TEST_F(WorkerTest, WhatEndsAKeptOperationIsDoneHoweverLongThatTakes) {
    std::promise<void> release;
    std::shared_future<void> free = release.get_future().share();
    Worker::Ticket down = worker.post(
        "start", [free] { free.wait(); }, true);
    std::atomic<bool> up{false};
    Worker::Ticket ticket = worker.post("start", [&up] { up = true; });
    EXPECT_EQ(Refusal::Kind::Busy, refusalOf([&] { ticket.wait(in(20)); }).kind());
    EXPECT_EQ("start", worker.operation());
    release.set_value();
    ticket.wait(in(30000));
    EXPECT_TRUE(up);
    EXPECT_EQ("", worker.operation());
}

TEST_F(WorkerTest, LooksBetweenJobs) {
    EXPECT_TRUE(eventually([&] { return looks > 3; }));
}

TEST_F(WorkerTest, WhatWaitsAtTheEndIsTakenBack) {
    std::promise<void> release = block();
    std::atomic<bool> done{false};
    Worker::Ticket ticket = worker.post("reset", [&] { done = true; });
    std::atomic<bool> last{false};
    std::thread stopper([&] { worker.stop([&] { last = true; }); });
    EXPECT_TRUE(eventually([&] { return !worker.postQuietly([] {}); }));
    // Only a worker that is being stopped says so.
    EXPECT_TRUE(eventually([&] {
        return std::string::npos !=
               std::string(refusalOf([&] { worker.run([] {}, in(0)); }).what()).find("is being stopped");
    }));
    release.set_value();
    stopper.join();
    EXPECT_TRUE(last);
    EXPECT_FALSE(done);
    EXPECT_TRUE(ticket.isOver());
    EXPECT_THAT(refusalOf([&] { ticket.wait(in(30000)); }).what(), HasSubstr("nothing was done"));
}

}  // namespace
