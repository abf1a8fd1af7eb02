#include "apps/sensorctl/Commands.h"
#include "apps/sensorctl/Interpreter.h"
#include "apps/sensorctl/Shared.h"
#include "apps/sensorctl/SubCommands.h"
#include "apps/sensorctl/TranscriptMatch.h"

namespace sensorctl {

namespace {

Result listing(Session& p_objSession, const std::string& p_strPattern, bool p_bFailedOnly) {
    simcam::TranscriptFilter filter;
    filter.failedOnly = p_bFailedOnly;
    const simcam::Transcript& transcript = p_objSession.camera().transcript();
    Json entries = Json::array();
    std::vector<std::string> lines;
    for (const simcam::TranscriptEntry& entry : transcript.entries(filter)) {
        if (matchesWords(simcam::toText(entry, false), p_strPattern)) {
            entries.push_back(jsonOf(p_objSession, entry));
            lines.push_back(textOf(entry));
        }
    }
    lines.push_back(std::to_string(lines.size()) + " of " + std::to_string(transcript.total()) + " calls");
    return {true, "", {{"entries", entries}, {"total", transcript.total()}, {"dropped", transcript.dropped()}}, lines};
}

Result print(Session& p_objSession, const Words&) {
    return listing(p_objSession, "", false);
}
Result failed(Session& p_objSession, const Words&) {
    return listing(p_objSession, "", true);
}
Result filter(Session& p_objSession, const Words& p_vecWords) {
    return listing(p_objSession, join(p_vecWords, " "), false);
}

Result clear(Session& p_objSession, const Words&) {
    p_objSession.camera().transcript().clear();
    return {};
}

const std::vector<SubCommand>& transcriptCommands() {
    static const std::vector<SubCommand> vecTable = {
        {"print", "", 0, 0, print},
        {"filter", "WORDS...", 1, kAnyNumber, filter},
        {"failed", "", 0, 0, failed},
        {"clear", "", 0, 0, clear},
    };
    return vecTable;
}

Result transcript(Session& p_objSession, const Words& p_vecWords) {
    return p_vecWords.empty() ? print(p_objSession, p_vecWords)
                              : runSubCommand("transcript", transcriptCommands(), p_objSession, p_vecWords);
}

}  // namespace

void addTranscriptCommands(CommandTable& p_objTable) {
    p_objTable.add({"transcript", argumentsOf(transcriptCommands()),
                    "what driver and video module were told; alone: all of it", "Transcript", 0, kAnyNumber, transcript,
                    Effect::looks});
}

}  // namespace sensorctl
