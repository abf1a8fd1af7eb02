// Builds a text in the format 0.0.4 that a metrics collector reads.
//
// One thread.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace camerad {

class MetricsText {
public:
    using Labels = std::vector<std::pair<std::string, std::string>>;

    // Begins a metric: its samples follow. p_szType: counter, gauge, histogram.
    void begin(const std::string& p_strName, const char* p_szType, const std::string& p_strHelp);
    // A sample of the metric that was begun last.
    void sample(double p_dValue, const Labels& p_vecLabels = {}, const std::string& p_strSuffix = "");
    // A metric with one sample.
    void single(const std::string& p_strName, const char* p_szType, const std::string& p_strHelp, double p_dValue);

    const std::string& text() const { return m_strText; }

private:
    std::string m_strText;
    std::string m_strName;
};

// A number as the format has it, the same in every locale.
std::string metricNumber(double p_dValue);

}  // namespace camerad
