#include "apps/sensorctl/Commands.h"
#include "apps/sensorctl/Interpreter.h"
#include "apps/sensorctl/Shared.h"

namespace sensorctl {

namespace {

Json stateOf(const Recorder& p_objRecorder) {
    return {{"recording", p_objRecorder.isRecording()},
            {"file", p_objRecorder.path()},
            {"commands", p_objRecorder.lines()}};
}

Result record(Interpreter& p_objInterpreter, const Words& p_vecWords) {
    Recorder& recorder = p_objInterpreter.recorder();
    if (!p_vecWords.empty()) {
        "stop" == lowerCase(p_vecWords[0]) ? recorder.end() : p_objInterpreter.record(p_vecWords[0]);
    }
    return {true, "", stateOf(recorder), {}};
}

}  // namespace

void addRecordCommand(CommandTable& p_objTable, Interpreter& p_objInterpreter) {
    p_objTable.add(
        {"record", "[FILE] | stop", "record what is done from now on as a script; alone: show whether it is",
         "Scripts and help", 0, 1,
         [&p_objInterpreter](Session&, const Words& p_vecWords) { return record(p_objInterpreter, p_vecWords); },
         Effect::speaks});
}

}  // namespace sensorctl
