#include "apps/sensorctl/Arguments.h"
#include "apps/sensorctl/ClockText.h"
#include "apps/sensorctl/Commands.h"
#include "apps/sensorctl/Session.h"
#include "apps/sensorctl/Shared.h"

namespace sensorctl {

namespace {

const char kTimeGroup[] = "Time";
constexpr double kLongestWait = 7 * 86400;  // seconds; a week of cycles of the controllers' threads

Result passed(Session& p_objSession, INT64 p_nMicroseconds) {
    p_objSession.pass(p_nMicroseconds);
    return {true, "", {{"clock", clockText(platform::Clock::civilTime())}}, {}};
}

Result wait(Session& p_objSession, const Words& p_vecWords) {
    const double seconds = parseDecimal(p_vecWords[0], "SECONDS", 0, kLongestWait);
    return passed(p_objSession, static_cast<INT64>(seconds * static_cast<double>(kMicrosecondsOfSecond) + 0.5));
}

Result cycle(Session& p_objSession, const Words& p_vecWords) {
    const std::int64_t cycles =
        p_vecWords.empty() ? 1 : parseNumber(p_vecWords[0], "N", 1, static_cast<std::int64_t>(kLongestWait));
    return passed(p_objSession, cycles * kMicrosecondsOfSecond);
}

}  // namespace

void addTimeCommands(CommandTable& p_objTable) {
    p_objTable.add({"wait", "SECONDS", "let time pass: on the held clock at once, with --realtime really", kTimeGroup,
                    1, 1, wait});
    p_objTable.add(
        {"cycle", "[N]", "let the controller's own thread run N cycles of one second", kTimeGroup, 0, 1, cycle});
}

}  // namespace sensorctl
