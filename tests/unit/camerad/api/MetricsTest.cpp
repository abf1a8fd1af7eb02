// /metrics, read as strictly as the format is.
#include "apps/camerad/api/MetricsText.h"
#include "tests/unit/camerad/api/Fakes.h"

#include <gmock/gmock.h>

#include <map>
#include <regex>
#include <set>
#include <sstream>

namespace camerad {
namespace {

using testing::AnyOf;
using testing::Contains;
using testing::IsEmpty;

// One text in the format 0.0.4; what is wrong with it stands in vecErrors.
class Exposition {
public:
    explicit Exposition(const std::string& p_strText) {
        if (p_strText.empty() || '\n' != p_strText.back()) {
            vecErrors.push_back("the last line has no end");
        }
        std::istringstream stream(p_strText);
        for (std::string line; std::getline(stream, line);) {
            if (0 == line.compare(0, 1, "#")) {
                comment(line);
            } else {
                sample(line);
            }
        }
    }

    std::vector<std::string> vecErrors;
    std::map<std::string, std::string> mapTypes;
    std::map<std::string, double> mapSamples;  // with the labels as they stand

private:
    void comment(const std::string& p_strLine) {
        static const std::regex kHelp("# HELP ([a-zA-Z_:][a-zA-Z0-9_:]*) ([^\\\\]|\\\\\\\\|\\\\n)+");
        static const std::regex kType("# TYPE ([a-zA-Z_:][a-zA-Z0-9_:]*) (counter|gauge|histogram)");
        std::smatch match;
        if (std::regex_match(p_strLine, match, kHelp)) {
            m_strHelped = match[1];
        } else if (std::regex_match(p_strLine, match, kType)) {
            if (match[1] != m_strHelped) {
                vecErrors.push_back("no help just before: " + p_strLine);
            }
            if (!mapTypes.emplace(match[1], match[2]).second) {
                vecErrors.push_back("twice: " + p_strLine);
            }
            m_strName = match[1];
        } else {
            vecErrors.push_back("neither help nor type: " + p_strLine);
        }
    }

    void sample(const std::string& p_strLine) {
        static const std::regex kSample(
            "([a-zA-Z_:][a-zA-Z0-9_:]*)(\\{([a-zA-Z_][a-zA-Z0-9_]*=\"([^\"\\\\]|\\\\\\\\|\\\\\"|\\\\n)*\"(,(?=[a-z]))?)"
            "+\\})? "
            "(-?[0-9]+(\\.[0-9]+)?(e[+-][0-9]+)?|\\+Inf)");
        std::smatch match;
        if (!std::regex_match(p_strLine, match, kSample)) {
            vecErrors.push_back("no sample: " + p_strLine);
            return;
        }
        const std::string name = match[1];
        const std::set<std::string> setNames =
            "histogram" == mapTypes[m_strName]
                ? std::set<std::string>{m_strName + "_bucket", m_strName + "_sum", m_strName + "_count"}
                : std::set<std::string>{m_strName};
        if (0 == setNames.count(name)) {
            vecErrors.push_back("stands below another metric: " + p_strLine);
        }
        if (!mapSamples.emplace(name + match[2].str(), std::stod(match[6])).second) {
            vecErrors.push_back("twice: " + p_strLine);
        }
    }

    std::string m_strHelped;
    std::string m_strName;
};

TEST(Metrics, AreWellFormedAndComplete) {
    FakeCamera camera;
    HostCounters& counters = camera.objHost.stCounters;
    counters.mapDriver[{34, "set"}] = {10, 2};
    counters.mapDriver[{153, "get"}] = {5, 0};
    counters.mapNotifications[2384] = {4, 0};
    counters.mapSwitches["schedule"] = 3;
    counters.nFlashWrites = 12345678901;
    camera.stCounters.mapRequests[{"GET /api/v1/channels/{channel}", 200}] = {
        3, 0.75, {{0.001, 1}, {0.5, 1}, {5.0, 1}}};
    camera.stCounters.mapRequests[{"GET /api/v1/channels/{channel}", 404}] = {2, 0.25, {{0.001, 1}}};
    camera.stCounters.nConnections = 4;
    const HttpResponse response = camera.call("GET", "/metrics");
    EXPECT_EQ(response.strType, "text/plain; version=0.0.4; charset=utf-8");
    const Exposition text(response.strBody);
    EXPECT_THAT(text.vecErrors, IsEmpty());

    const std::string route = "{route=\"GET /api/v1/channels/{channel}\"";
    const std::map<std::string, double> mapWanted = {
        {"camerad_driver_calls_total{command=\"34\",option=\"set\"}", 10},
        {"camerad_driver_failures_total{command=\"34\",option=\"set\"}", 2},
        {"camerad_driver_failures_total{command=\"153\",option=\"get\"}", 0},
        {"camerad_notifications_total{key=\"2384\"}", 4},
        {"camerad_scheme_switches_total{why=\"schedule\"}", 3},
        {"camerad_flash_writes_total", 12345678907},
        {"camerad_library_messages_total", 0},
        {"camerad_http_requests_total" + route + ",status=\"200\"}", 3},
        {"camerad_http_requests_total" + route + ",status=\"404\"}", 2},
        {"camerad_http_request_seconds_bucket" + route + ",le=\"0.001\"}", 2},
        {"camerad_http_request_seconds_bucket" + route + ",le=\"0.5\"}", 3},
        {"camerad_http_request_seconds_bucket" + route + ",le=\"5\"}", 4},
        {"camerad_http_request_seconds_bucket" + route + ",le=\"+Inf\"}", 5},
        {"camerad_http_request_seconds_sum" + route + "}", 1},
        {"camerad_http_request_seconds_count" + route + "}", 5},
        {"camerad_http_connections", 4},
        {"camerad_http_streams", 0},
        {"camerad_http_refused_connections_total", 0},
        {"camerad_http_timeouts_total", 0},
        {"camerad_event_listeners", 0},
        {"camerad_event_overflows_total", 0},
        {"camerad_picture_frames_total{channel=\"1\"}", 7},
        {"camerad_picture_bytes_total", 700},
        {"camerad_picture_cpu_seconds_total", 0.5},
        {"camerad_picture_viewers", 2},
        {"camerad_logins_total{result=\"ok\"}", 5},
        {"camerad_logins_total{result=\"failed\"}", 3},
        {"camerad_logins_total{result=\"slowed\"}", 1},
        {"camerad_sessions", 2}};
    for (const auto& [name, value] : mapWanted) {
        ASSERT_EQ(text.mapSamples.count(name), 1U) << name << "\n" << response.strBody;
        EXPECT_DOUBLE_EQ(text.mapSamples.at(name), value) << name;
    }
    EXPECT_GT(text.mapSamples.at("process_resident_memory_bytes"), 100000);
    EXPECT_GE(text.mapSamples.at("process_cpu_seconds_total"), 0);
    EXPECT_GT(text.mapSamples.at("process_start_time_seconds"), 1.6e9);
    EXPECT_EQ(text.mapSamples.size(), mapWanted.size() + 1 + 3);  // the call 153 that did not fail, and the process
}

TEST(Metrics, AreWellFormedWithNothingToCount) {
    FakeCamera camera;
    camera.stApi.fnCounters = nullptr;
    EXPECT_THAT(Exposition(camera.call("GET", "/metrics").strBody).vecErrors, IsEmpty());
}

TEST(MetricsText, LabelsAndHelpAreEscaped) {
    MetricsText text;
    text.begin("x", "gauge", "a\\b\nc");
    text.sample(1, {{"l", "q\"b\\n\nend"}, {"m", ""}});
    EXPECT_EQ(text.text(), "# HELP x a\\\\b\\nc\n# TYPE x gauge\nx{l=\"q\\\"b\\\\n\\nend\",m=\"\"} 1\n");
    EXPECT_THAT(Exposition(text.text()).vecErrors, IsEmpty());
}

TEST(MetricsText, NumbersAreExact) {
    EXPECT_EQ(metricNumber(0), "0");
    EXPECT_EQ(metricNumber(123456789012345), "123456789012345");
    EXPECT_EQ(metricNumber(0.001), "0.001");
    EXPECT_EQ(metricNumber(-2.5), "-2.5");
}

TEST(Exposition, FindsWhatIsWrong) {
    for (const char* text :
         {"x 1", "# TYPE x counter\nx 1\n", "# HELP x h\n# TYPE x counter\ny 1\n",
          "# HELP x h\n# TYPE x counter\nx 1\nx 2\n", "# HELP x h\n# TYPE x counter\nx{l=\"\"\"} 1\n",
          "# HELP x h\n# TYPE x counter\nx{l=\"a\",} 1\n", "# HELP x h\n# TYPE x counter\nx one\n",
          "# HELP x h\n# TYPE x maybe\nx 1\n", "# HELP x \n# TYPE x counter\nx 1\n"}) {
        EXPECT_THAT(Exposition(text).vecErrors, testing::Not(IsEmpty())) << text;
    }
}

}  // namespace
}  // namespace camerad
