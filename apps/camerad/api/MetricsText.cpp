#include "apps/camerad/api/MetricsText.h"

#include <iomanip>
#include <limits>
#include <locale>
#include <sstream>

namespace camerad {

namespace {

// Backslash and newline have another meaning in a help text and a label, the quote in a label.
std::string escaped(const std::string& p_strText, bool p_bLabel) {
    std::string result;
    for (const char letter : p_strText) {
        if ('\\' == letter) {
            result += "\\\\";
        } else if ('\n' == letter) {
            result += "\\n";
        } else if (p_bLabel && '"' == letter) {
            result += "\\\"";
        } else {
            result += letter;
        }
    }
    return result;
}

}  // namespace

std::string metricNumber(double p_dValue) {
    if (std::numeric_limits<double>::infinity() == p_dValue) {
        return "+Inf";
    }
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    stream << std::setprecision(std::numeric_limits<double>::digits10) << p_dValue;
    return stream.str();
}

void MetricsText::begin(const std::string& p_strName, const char* p_szType, const std::string& p_strHelp) {
    m_strName = p_strName;
    m_strText += "# HELP " + p_strName + " " + escaped(p_strHelp, false) + "\n";
    m_strText += "# TYPE " + p_strName + " " + p_szType + "\n";
}

void MetricsText::sample(double p_dValue, const Labels& p_vecLabels, const std::string& p_strSuffix) {
    m_strText += m_strName + p_strSuffix;
    const char* separator = "{";
    for (const auto& [name, value] : p_vecLabels) {
        m_strText += separator + name + "=\"" + escaped(value, true) + "\"";
        separator = ",";
    }
    m_strText += (p_vecLabels.empty() ? " " : "} ") + metricNumber(p_dValue) + "\n";
}

void MetricsText::single(const std::string& p_strName, const char* p_szType, const std::string& p_strHelp,
                         double p_dValue) {
    begin(p_strName, p_szType, p_strHelp);
    sample(p_dValue);
}

}  // namespace camerad
