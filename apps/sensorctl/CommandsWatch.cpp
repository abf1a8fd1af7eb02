#include "apps/sensorctl/Arguments.h"
#include "apps/sensorctl/ClockText.h"
#include "apps/sensorctl/Commands.h"
#include "apps/sensorctl/Interpreter.h"
#include "apps/sensorctl/Interrupt.h"
#include "apps/sensorctl/Shared.h"
#include "apps/sensorctl/Tokeniser.h"
#include "apps/sensorctl/Watch.h"

#include <algorithm>
#include <cstdio>
#include <optional>

namespace sensorctl {

namespace {

constexpr double kLongest = 7 * 86400;              // seconds; a week
constexpr INT64 kHeldStep = kMicrosecondsOfSecond;  // between two looks: a cycle of the controllers' threads
constexpr INT64 kRealStep = 100000;                 // microseconds; what a person takes for at once

struct Request {
    std::optional<INT64> microseconds;  // absent: until an interrupt
    std::int64_t nChanges = kIntMax;
    Watch::Subjects stSubjects;
    Words vecSubjects;  // as they were written
};

bool choose(const std::string& p_strWord, Watch::Subjects& p_stSubjects) {
    struct Name {
        const char* szName;
        bool Watch::Subjects::*pbOn;
    };
    static const Name kNames[] = {{"scheme", &Watch::Subjects::bScheme}, {"mode", &Watch::Subjects::bMode},
                                  {"state", &Watch::Subjects::bState},   {"light", &Watch::Subjects::bLight},
                                  {"driver", &Watch::Subjects::bDriver}, {"parameters", &Watch::Subjects::bParameters}};
    for (const Name& name : kNames) {
        if (lowerCase(p_strWord) == name.szName) {
            p_stSubjects.*name.pbOn = true;
            return true;
        }
    }
    return false;
}

// [SECONDS] [count N] [WHAT...]
Request parse(const Words& p_vecWords) {
    Request request;
    std::size_t at = 0;
    if (at < p_vecWords.size() && looksLikeNumber(p_vecWords[at])) {
        const double seconds = parseDecimal(p_vecWords[at++], "SECONDS", 0, kLongest);
        request.microseconds = static_cast<INT64>(seconds * static_cast<double>(kMicrosecondsOfSecond) + 0.5);
    }
    if (at < p_vecWords.size() && "count" == lowerCase(p_vecWords[at])) {
        if (++at == p_vecWords.size()) {
            throw CommandError("count needs a number of changes");
        }
        request.nChanges = parseNumber(p_vecWords[at++], "the number of changes", 1, kIntMax);
    }
    request.vecSubjects.assign(p_vecWords.begin() + static_cast<std::ptrdiff_t>(at), p_vecWords.end());
    if (request.vecSubjects.empty()) {
        return request;
    }
    request.stSubjects = {false, false, false, false, false, false, {}};
    for (const std::string& word : request.vecSubjects) {
        if (choose(word, request.stSubjects)) {
            continue;
        }
        const bool key = looksLikeNumber(word) || keyOfName(word);
        const std::string near =
            nearestMatch(word, {"scheme", "mode", "state", "light", "driver", "parameters", "count"});
        if (!key && !near.empty()) {
            throw CommandError("cannot watch " + quoted(word) + didYouMean(near));
        }
        request.stSubjects.setKeys.insert(parseKey(word));
    }
    return request;
}

std::string decimal(INT64 p_nMicroseconds) {
    char buffer[64];
    std::snprintf(buffer, sizeof(buffer), "%lld.%06lld",
                  static_cast<long long>(p_nMicroseconds / kMicrosecondsOfSecond),
                  static_cast<long long>(p_nMicroseconds % kMicrosecondsOfSecond));
    return buffer;
}

void show(Interpreter& p_objInterpreter, const Change& p_stChange) {
    const std::string clock = clockText(platform::Clock::civilTime());
    constexpr std::size_t kTimeOfDay = sizeof("2024-05-01 ") - 1;
    Json data = {{"time", clock}};
    data.update(p_stChange.data);
    p_objInterpreter.show("change", clock.substr(kTimeOfDay) + " " + p_stChange.strText, data);
}

Result watch(Session& p_objSession, Interpreter& p_objInterpreter, const Words& p_vecWords) {
    const Request request = parse(p_vecWords);
    if (!request.microseconds && !p_objSession.isRealTime()) {
        throw CommandError(
            "the clock is held and only commands move it: say for how many seconds, for instance watch 60");
    }
    const INT64 begin = platform::Clock::monotonicMicroseconds();
    const INT64 step = p_objSession.isRealTime() ? kRealStep : kHeldStep;
    Watch watched(p_objSession, request.stSubjects);
    std::int64_t seen = 0;
    INT64 passed = 0;
    while (seen < request.nChanges && 0 == interruptSignal() &&
           (!request.microseconds || passed < *request.microseconds)) {
        p_objSession.pass(request.microseconds ? std::min(step, *request.microseconds - passed) : step);
        passed = platform::Clock::monotonicMicroseconds() - begin;
        for (const Change& change : watched.look()) {
            if (seen < request.nChanges) {
                show(p_objInterpreter, change);
                ++seen;
            }
        }
    }
    Result result{true, "", {{"changes", seen}, {"clock", clockText(platform::Clock::civilTime())}}, {}};
    if (p_objSession.isRealTime()) {
        Words replay = {"watch", decimal(passed)};
        replay.insert(replay.end(), request.vecSubjects.begin(), request.vecSubjects.end());
        result.strReplay = lineOfWords(replay);
    }
    return result;
}

}  // namespace

void addWatchCommand(CommandTable& p_objTable, Interpreter& p_objInterpreter) {
    p_objTable.add({"watch", "[SECONDS] [count N] [scheme|mode|state|light|parameters|driver|KEY]...",
                    "let time pass and print what changes as it happens", "Time", 0, kAnyNumber,
                    [&p_objInterpreter](Session& p_objSession, const Words& p_vecWords) {
                        return watch(p_objSession, p_objInterpreter, p_vecWords);
                    }});
}

}  // namespace sensorctl
