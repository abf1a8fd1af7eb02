// Results go to standard error: standard output belongs to the library's messages, which go nowhere here.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <iostream>

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    if (nullptr == std::freopen("/dev/null", "w", stdout)) {
        std::cerr << "cannot send standard output away\n";
        return 1;
    }
    benchmark::ConsoleReporter reporter(benchmark::ConsoleReporter::OO_Tabular);
    reporter.SetOutputStream(&std::cerr);
    reporter.SetErrorStream(&std::cerr);
    const std::size_t nRun = benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return nRun > 0 ? 0 : 1;
}
