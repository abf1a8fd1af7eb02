#include "apps/sensorctl/Commands.h"
#include "apps/sensorctl/Interpreter.h"
#include "apps/sensorctl/Shared.h"
#include "apps/sensorctl/TranscriptMatch.h"

namespace sensorctl {

namespace {

// One form of expect.
struct Form {
    const char* szName;
    const char* szArguments;
    std::size_t nMinArguments;  // without the name
    std::size_t nMaxArguments;
    Result (*pfnRun)(Session&, Interpreter&, const Words&);
};

Result verdict(bool p_bHolds, const std::string& p_strExpected, const std::string& p_strFound) {
    const Json data = {{"expected", p_strExpected}, {"found", p_strFound}};
    if (!p_bHolds) {
        return Result::failed("expected " + p_strExpected + ", found " + p_strFound, data);
    }
    return {true, "", data, {"  as expected: " + p_strExpected}};
}

Result sameNumber(const std::string& p_strWhat, std::int64_t p_nExpected, std::int64_t p_nFound) {
    return verdict(p_nExpected == p_nFound, p_strWhat + " " + std::to_string(p_nExpected), std::to_string(p_nFound));
}

std::string shortListing(const std::vector<std::string>& p_vecLines) {
    constexpr std::size_t kShown = 8;
    if (p_vecLines.empty()) {
        return "nothing";
    }
    const std::vector<std::string> shown(
        p_vecLines.begin(), p_vecLines.begin() + static_cast<std::ptrdiff_t>(std::min(p_vecLines.size(), kShown)));
    const std::size_t left = p_vecLines.size() - shown.size();
    return "\"" + join(shown, "\", \"") + "\"" + (0 == left ? "" : " and " + std::to_string(left) + " more");
}

Result scheme(Session& p_objSession, Interpreter&, const Words& p_vecWords) {
    int current = -1;
    p_objSession.controller().getParamScheme(current);
    return sameNumber("scheme", parseInt(p_vecWords[0], "the scheme"), current);
}

Result mode(Session& p_objSession, Interpreter&, const Words& p_vecWords) {
    int current = 0;
    p_objSession.controller().getParamMode(current);
    return sameNumber("mode", parseInt(p_vecWords[0], "the mode"), current);
}

Result driver(Session& p_objSession, Interpreter&, const Words& p_vecWords) {
    const auto command = static_cast<u32>(parseNumber(p_vecWords[0], "the driver command", 0, kIntMax));
    const int expected = parseInt(p_vecWords[1], "the value");
    int held = 0;
    if (!p_objSession.camera().driver().value(p_objSession.driverChannel(), command, held)) {
        return Result::failed("the driver has no value of command " + std::to_string(command));
    }
    return sameNumber("driver command " + std::to_string(command) + " at", expected, held);
}

Result file(Session& p_objSession, Interpreter&, const Words& p_vecWords) {
    const auto number = static_cast<int>(parseNumber(p_vecWords[0], "the scheme", 0, 32));
    const u32 key = parseKey(p_vecWords[1]);
    const int expected = parseInt(p_vecWords[2], "the value");
    const std::string name = parameterFileName(p_objSession.channel(), number);
    ParameterFile stored = readParameterFile(name);
    const StoredValue* const found = stored.find(key);
    if (nullptr == found) {
        return Result::failed(name + " does not hold " + describeKey(key));
    }
    return sameNumber(describeKey(key) + " of stored scheme " + std::to_string(number) + " at", expected,
                      found->nValue);
}

Result sent(Session&, Interpreter& p_objInterpreter, const Words& p_vecWords) {
    const std::string pattern = join(p_vecWords, " ");
    const std::vector<std::string> lines = p_objInterpreter.lastLines();
    return verdict(countMatches(lines, pattern) > 0, "\"" + pattern + "\" to be sent", shortListing(lines));
}

Result silent(Session&, Interpreter& p_objInterpreter, const Words& p_vecWords) {
    const std::string pattern = join(p_vecWords, " ");
    const std::vector<std::string> lines = p_objInterpreter.lastLines();
    const std::string what = pattern.empty() ? "nothing" : "no \"" + pattern + "\"";
    return verdict(0 == countMatches(lines, pattern), what + " to be sent", shortListing(lines));
}

Result count(Session&, Interpreter& p_objInterpreter, const Words& p_vecWords) {
    const std::int64_t expected = parseNumber(p_vecWords[0], "N", 0, kIntMax);
    const std::string pattern = join(Words(p_vecWords.begin() + 1, p_vecWords.end()), " ");
    const std::size_t found = countMatches(p_objInterpreter.lastLines(), pattern);
    return sameNumber("number of calls" + (pattern.empty() ? "" : " \"" + pattern + "\""), expected,
                      static_cast<std::int64_t>(found));
}

Result transcript(Session& p_objSession, Interpreter&, const Words& p_vecWords) {
    const std::string pattern = join(p_vecWords, " ");
    const std::vector<std::string> lines = p_objSession.camera().transcript().lines();
    return verdict(countMatches(lines, pattern) > 0, "\"" + pattern + "\" in the transcript",
                   std::to_string(lines.size()) + " lines, none of them so");
}

// answer FIELD VALUE
Result answer(Session&, Interpreter& p_objInterpreter, const Words& p_vecWords) {
    const Json& data = p_objInterpreter.lastResult().data;
    std::vector<std::string> fields;
    for (const auto& [field, value] : data.items()) {
        fields.push_back(field);
        if (field == p_vecWords[0]) {
            const std::string found = value.is_string() ? value.get<std::string>()
                                                        : value.dump(-1, ' ', false, Json::error_handler_t::replace);
            return verdict(found == p_vecWords[1], field + " " + quoted(p_vecWords[1]), quoted(found));
        }
    }
    throw CommandError("the latest answer has no field " + quoted(p_vecWords[0]) +
                       didYouMean(nearestMatch(p_vecWords[0], fields)));
}

Result style(Session& p_objSession, Interpreter&, const Words& p_vecWords) {
    const std::string document = p_objSession.controller().getUIStyleFile();
    return verdict(std::string::npos != document.find(p_vecWords[0]), quoted(p_vecWords[0]) + " in the style document",
                   std::to_string(document.size()) + " bytes");
}

// How often "expect fail" stands in front of the command.
std::size_t nestingOf(const Words& p_vecWords) {
    std::size_t at = 0;
    while (at + 1 < p_vecWords.size() && "expect" == lowerCase(p_vecWords[at]) &&
           "fail" == lowerCase(p_vecWords[at + 1])) {
        at += 2;
    }
    return at / 2;
}

Result fail(Session&, Interpreter& p_objInterpreter, const Words& p_vecWords) {
    constexpr std::size_t kDeepest = 16;  // each level takes stack; the record of a failed check has one
    if (nestingOf(p_vecWords) >= kDeepest) {
        throw CommandError("expect fail is nested too deeply");
    }
    const Result result = p_objInterpreter.evaluate(p_vecWords);
    return verdict(!result.bOk, quoted(join(p_vecWords, " ")) + " to fail",
                   result.bOk ? "success" : "\"" + result.strError + "\"");
}

const std::vector<Form>& forms() {
    static const std::vector<Form> vecForms = {
        {"sent", "WORDS...", 1, kAnyNumber, sent},
        {"silent", "[WORDS...]", 0, kAnyNumber, silent},
        {"count", "N [WORDS...]", 1, kAnyNumber, count},
        {"transcript", "WORDS...", 1, kAnyNumber, transcript},
        {"answer", "FIELD VALUE", 2, 2, answer},
        {"scheme", "N", 1, 1, scheme},
        {"mode", "N", 1, 1, mode},
        {"driver", "COMMAND VALUE", 2, 2, driver},
        {"file", "SCHEME KEY VALUE", 3, 3, file},
        {"style", "TEXT", 1, 1, style},
        {"fail", "COMMAND...", 1, kAnyNumber, fail},
    };
    return vecForms;
}

Result expect(Session& p_objSession, Interpreter& p_objInterpreter, const Words& p_vecWords) {
    std::vector<std::string> names;
    for (const Form& form : forms()) {
        names.push_back(form.szName);
        if (lowerCase(p_vecWords[0]) != form.szName) {
            continue;
        }
        const Words arguments(p_vecWords.begin() + 1, p_vecWords.end());
        if (arguments.size() < form.nMinArguments || arguments.size() > form.nMaxArguments) {
            throw CommandError(std::string("wrong number of arguments; usage: expect ") + form.szName + " " +
                               form.szArguments);
        }
        return form.pfnRun(p_objSession, p_objInterpreter, arguments);
    }
    throw CommandError("expect does not know " + quoted(p_vecWords[0]) +
                       didYouMean(nearestMatch(p_vecWords[0], names)));
}

}  // namespace

void addExpectCommand(CommandTable& p_objTable, Interpreter& p_objInterpreter) {
    std::vector<std::string> usages;
    for (const Form& form : forms()) {
        usages.push_back(std::string(form.szName) + " " + form.szArguments);
    }
    p_objTable.add({"expect", join(usages, " | "),
                    "fail unless this holds; sent, silent and count look at the latest command that acts", "Checks", 1,
                    kAnyNumber,
                    [&p_objInterpreter](Session& p_objSession, const Words& p_vecWords) {
                        return expect(p_objSession, p_objInterpreter, p_vecWords);
                    },
                    Effect::speaks});
}

}  // namespace sensorctl
