// The commands, by concern. Each function adds its own to the table.
#pragma once

#include "apps/sensorctl/CommandTable.h"

namespace sensorctl {

class Interpreter;

void addLifeCommands(CommandTable& p_objTable);  // init, uinit, reset, restart, power-cycle, channel, machine, status
void addParameterCommands(CommandTable& p_objTable);   // set, setter and the named setters
void addOperationCommands(CommandTable& p_objTable);   // direct lens, iris, day/night and status operations
void addSchemeCommands(CommandTable& p_objTable);      // scheme, mode, show, style
void addStoreCommands(CommandTable& p_objTable);       // dump, flash
void addTimeCommands(CommandTable& p_objTable);        // wait, cycle
void addSceneCommands(CommandTable& p_objTable);       // scene
void addDeviceCommands(CommandTable& p_objTable);      // driver, fault
void addVideoCommands(CommandTable& p_objTable);       // video
void addTranscriptCommands(CommandTable& p_objTable);  // transcript
void addTalkCommands(CommandTable& p_objTable, Interpreter& p_objInterpreter);   // echo, help, quit, debug
void addExpectCommand(CommandTable& p_objTable, Interpreter& p_objInterpreter);  // expect

// All of the above.
void addAllCommands(CommandTable& p_objTable, Interpreter& p_objInterpreter);

}  // namespace sensorctl
