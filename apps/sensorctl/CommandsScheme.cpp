#include "apps/sensorctl/Commands.h"
#include "apps/sensorctl/DocumentResult.h"
#include "apps/sensorctl/Refusal.h"
#include "apps/sensorctl/Session.h"
#include "apps/sensorctl/Shared.h"

namespace sensorctl {

namespace {

const char kSchemeGroup[] = "Schemes and style";

Result scheme(Session& p_objSession, const Words& p_vecWords) {
    ISensorController& controller = p_objSession.controller();
    if (!p_vecWords.empty()) {
        const int wanted = parseInt(p_vecWords[0], "the scheme");
        if (!controller.setParamScheme(wanted)) {
            return refused(p_objSession, "setParamScheme returned false", {{"wanted", wanted}});
        }
    }
    int current = -1;
    controller.getParamScheme(current);
    return {true, "", {{"scheme", current}}, {}};
}

int parseMode(const std::string& p_strWord) {
    const std::string word = lowerCase(p_strWord);
    if ("manual" == word) {
        return 0;
    }
    if ("auto" == word || "automatic" == word) {
        return 1;
    }
    return parseInt(p_strWord, "the mode (0 manual, 1 auto)");
}

Result mode(Session& p_objSession, const Words& p_vecWords) {
    ISensorController& controller = p_objSession.controller();
    if (!p_vecWords.empty()) {
        const int wanted = parseMode(p_vecWords[0]);
        if (!controller.setParamMode(wanted)) {
            return refused(p_objSession, "setParamMode returned false", {{"wanted", wanted}});
        }
    }
    int current = 0;
    controller.getParamMode(current);
    return {true, "", {{"mode", current}}, {}};
}

Result show(Session& p_objSession, const Words& p_vecWords) {
    ISensorController& controller = p_objSession.controller();
    const std::string what = lowerCase(p_vecWords[0]);
    const bool wdr = "wdr" == what;
    if (!wdr && "beaway" != what) {
        throw CommandError("show knows wdr and beaway, not " + quoted(p_vecWords[0]) +
                           didYouMean(nearestMatch(what, {"wdr", "beaway"})));
    }
    if (p_vecWords.size() > 1) {
        const bool wanted = parseSwitch(p_vecWords[1], "the flag");
        wdr ? controller.setShowWDRFalg(wanted) : controller.setShowBeawayFalg(wanted);
    }
    bool current = false;
    wdr ? controller.getShowWDRFalg(current) : controller.getShowBeawayFalg(current);
    return {true, "", {{what, current}}, {}};
}

Result style(Session& p_objSession, const Words&) {
    return documentResult(p_objSession.controller().getUIStyleFile());
}

}  // namespace

void addSchemeCommands(CommandTable& p_objTable) {
    p_objTable.add({"scheme", "[N]", "apply a scheme, or show the current one (-1: none)", kSchemeGroup, 0, 1, scheme});
    p_objTable.add(
        {"mode", "[manual|auto|N]", "whether the controller switches schemes by itself", kSchemeGroup, 0, 1, mode});
    p_objTable.add({"show", "wdr|beaway [0|1]", "offer a function in the style document, or show whether it is",
                    kSchemeGroup, 1, 2, show});
    p_objTable.add({"style", "", "the style document of the user interface", kSchemeGroup, 0, 0, style});
}

}  // namespace sensorctl
