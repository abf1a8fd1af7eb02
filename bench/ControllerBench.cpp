// The host's calls: what an unchanged value, a changed one, a whole scheme and the style document cost.
#include "bench/BenchCamera.h"

#include <benchmark/benchmark.h>

namespace {

constexpr int kBrightness = 34;

void setUnchangedParameter(benchmark::State& p_objState) {
    BenchCamera camera;
    for (auto _ : p_objState) {
        benchmark::DoNotOptimize(camera.controller().setParameter(kBrightness, 50, true));
    }
}
BENCHMARK(setUnchangedParameter);

void setChangedParameter(benchmark::State& p_objState) {
    BenchCamera camera;
    int nValue = 0;
    for (auto _ : p_objState) {
        nValue = (nValue + 1) % 100;
        benchmark::DoNotOptimize(camera.controller().setParameter(kBrightness, nValue, true));
    }
}
BENCHMARK(setChangedParameter);

// Two schemes that agree: every key is compared, none is sent.
void switchToEqualScheme(benchmark::State& p_objState) {
    BenchCamera camera;
    int nScheme = 0;
    for (auto _ : p_objState) {
        nScheme = 1 - nScheme;
        camera.controller().setParamScheme(nScheme);
    }
}
BENCHMARK(switchToEqualScheme);

// Two schemes of which a tenth of the keys differs.
void switchToDifferentScheme(benchmark::State& p_objState) {
    BenchCamera camera;
    camera.controller().setParamScheme(1);
    camera.controller().setParameters(
        "(34,11)(2337,12)(2353,13)(2321,14)(96,1)(65,15)(66,16)(2306,17)(2307,18)(2312,19)"
        "(2313,20)(113,21)(130,22)(2401,23)(163,24)",
        true);
    int nScheme = 1;
    for (auto _ : p_objState) {
        nScheme = 1 - nScheme;
        camera.controller().setParamScheme(nScheme);
    }
}
BENCHMARK(switchToDifferentScheme);

void buildStyleFile(benchmark::State& p_objState) {
    BenchCamera camera;
    for (auto _ : p_objState) {
        benchmark::DoNotOptimize(camera.controller().getUIStyleFile());
    }
}
BENCHMARK(buildStyleFile)->Unit(benchmark::kMillisecond);

void initialiseAndRelease(benchmark::State& p_objState) {
    for (auto _ : p_objState) {
        const BenchCamera camera;
        benchmark::DoNotOptimize(&camera);
    }
}
BENCHMARK(initialiseAndRelease)->Unit(benchmark::kMillisecond);

}  // namespace
