// A benchmark that finds something wrong makes the program fail. Results go to standard error: standard output belongs to the library's messages, which go nowhere here.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <iostream>
#include <vector>

namespace {

class Reporter : public benchmark::ConsoleReporter {
public:
    Reporter() : ConsoleReporter(OO_Tabular) {}
    void ReportRuns(const std::vector<Run>& p_vecRuns) override {
        for (const Run& stRun : p_vecRuns) {
            m_bFailed = m_bFailed || stRun.error_occurred;
        }
        ConsoleReporter::ReportRuns(p_vecRuns);
    }
    bool hasFailed() const { return m_bFailed; }

private:
    bool m_bFailed = false;
};

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    if (nullptr == std::freopen("/dev/null", "w", stdout)) {
        std::cerr << "cannot send standard output away\n";
        return 1;
    }
    Reporter reporter;
    reporter.SetOutputStream(&std::cerr);
    reporter.SetErrorStream(&std::cerr);
    const std::size_t nRun = benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return nRun > 0 && !reporter.hasFailed() ? 0 : 1;
}
