// A message that nobody sees still asks the sign file for the level: what that costs without a file and with one, and what
// a message costs that is shown.
#include "sensor/diag/Message.h"
#include "tests/support/TestRoot.h"

#include <benchmark/benchmark.h>

namespace {

constexpr char kSourceFile[] = "MessageBench.cpp";
constexpr int kQuietLevel = 1;
constexpr int kTracingLevel = 6;

void suppressedMessageWithoutSignFile(benchmark::State& p_objState) {
    const TestRoot root;
    for (auto _ : p_objState) {
        SENSOR_DBG("value %d\n", 1);
    }
}
BENCHMARK(suppressedMessageWithoutSignFile);

void suppressedMessageWithSignFile(benchmark::State& p_objState) {
    const TestRoot root;
    root.debugLevel(kQuietLevel);
    for (auto _ : p_objState) {
        SENSOR_DBG("value %d\n", 1);
    }
}
BENCHMARK(suppressedMessageWithSignFile);

void shownMessage(benchmark::State& p_objState) {
    const TestRoot root;
    root.debugLevel(kTracingLevel);
    for (auto _ : p_objState) {
        SENSOR_DBG("value %d\n", 1);
    }
}
BENCHMARK(shownMessage);

void loggedAssertion(benchmark::State& p_objState) {
    const TestRoot root;
    root.debugLevel(kQuietLevel);
    for (auto _ : p_objState) {
        SENSOR_ASSERT(false, "false");
    }
}
BENCHMARK(loggedAssertion);

}  // namespace
