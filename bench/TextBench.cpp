// The text form of a whole parameter set.
#include "sensor/config/SensorKeyVal.h"

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

namespace {

constexpr u32 kRecords = 154;  // as many as a camera has parameters

std::vector<KeyVal> records() {
    std::vector<KeyVal> vecRecords(kRecords);
    for (u32 i = 0; i < kRecords; ++i) {
        vecRecords[i] = {2000 + i, i % 7 * 1000};
    }
    return vecRecords;
}

void writeParameterText(benchmark::State& p_objState) {
    std::vector<KeyVal> vecRecords = records();
    for (auto _ : p_objState) {
        std::string strText;
        keyval_st2str(strText, vecRecords.data(), kRecords);
        benchmark::DoNotOptimize(strText);
    }
}
BENCHMARK(writeParameterText);

void readParameterText(benchmark::State& p_objState) {
    std::vector<KeyVal> vecRecords = records();
    std::string strText;
    keyval_st2str(strText, vecRecords.data(), kRecords);
    u32 nCount = 0;
    for (auto _ : p_objState) {
        keyval_str2st(strText, vecRecords.data(), &nCount);
        benchmark::DoNotOptimize(nCount);
    }
}
BENCHMARK(readParameterText);

}  // namespace
