#include "apps/sensorctl/Commands.h"
#include "apps/sensorctl/Refusal.h"
#include "apps/sensorctl/Session.h"
#include "apps/sensorctl/Shared.h"

namespace sensorctl {

namespace {

const char kKeepGroup[] = "Keeping";
constexpr int kNotHeld = -1;  // of restore: the scheme does not hold the key

// What the library found in the window of the current scheme.
std::string windowProblem(int p_nCode) {
    switch (p_nCode) {
        case 505:
            return "its window starts later than 24:00";
        case 506:
            return "its window ends later than 24:00";
        case 507:
            return "its window does not start before it ends";
        default:
            return "the library failed";
    }
}

Result coded(const Session& p_objSession, const char* p_szWhat, int p_nReturned) {
    const Json data = {{"returned", p_nReturned}};
    if (0 != p_nReturned) {
        return refused(
            p_objSession,
            std::string(p_szWhat) + ": " + windowProblem(p_nReturned) + " (" + std::to_string(p_nReturned) + ")", data);
    }
    return {true, "", data, {}};
}

Result flush(Session& p_objSession, const Words&) {
    return coded(p_objSession, "the current scheme cannot be stored", p_objSession.controller().flush());
}

Result check(Session& p_objSession, const Words&) {
    return coded(p_objSession, "the current scheme could not be stored", p_objSession.controller().paramCheck());
}

Result restore(Session& p_objSession, const Words& p_vecWords) {
    const u32 key = parseKey(p_vecWords[0]);
    const int returned = p_objSession.controller().restore(static_cast<int>(key));
    const Json data = {{"key", key}, {"name", nameOfKey(key)}, {"returned", returned}};
    if (0 == returned) {
        return {true, "", data, {}};
    }
    return refused(p_objSession,
                   kNotHeld == returned ? "the current scheme does not hold " + describeKey(key)
                                        : "the driver refused " + describeKey(key),
                   data);
}

Result restoreAe(Session& p_objSession, const Words&) {
    return p_objSession.controller().restoreAeMode() ? Result{} : refused(p_objSession, "restoreAeMode returned false");
}

Result rollback(Session& p_objSession, const Words&) {
    return p_objSession.controller().resetToLastParameters()
               ? Result{}
               : refused(p_objSession, "resetToLastParameters returned false");
}

Result mirror(Session& p_objSession, const Words& p_vecWords) {
    ISensorController& controller = p_objSession.controller();
    int direction = 0;
    if (p_vecWords.empty()) {
        if (!controller.getMirrorValue(direction)) {
            return refused(p_objSession, "getMirrorValue returned false");
        }
    } else {
        direction = parseInt(p_vecWords[0], "the direction");
        if (!controller.setMirrorMode(direction)) {
            return refused(p_objSession, "setMirrorMode returned false", {{"direction", direction}});
        }
    }
    return {true, "", {{"direction", direction}}, {}};
}

}  // namespace

void addKeepCommands(CommandTable& p_objTable) {
    p_objTable.add({"flush", "", "store the current scheme on flash", kKeepGroup, 0, 0, flush});
    p_objTable.add(
        {"check", "", "whether the window of the current scheme lets it be stored", kKeepGroup, 0, 0, check});
    p_objTable.add(
        {"restore", "KEY", "send one value of the current scheme to the driver again", kKeepGroup, 1, 1, restore});
    p_objTable.add({"restoreAe", "", "send focus mode and exposure mode of the current scheme again", kKeepGroup, 0, 0,
                    restoreAe});
    p_objTable.add({"rollback", "", "discard what was not stored: read the scheme's file back and apply it", kKeepGroup,
                    0, 0, rollback});
    p_objTable.add({"mirror", "[DIRECTION]", "set the mirror direction and store it at once, or show it", kKeepGroup, 0,
                    1, mirror});
}

}  // namespace sensorctl
