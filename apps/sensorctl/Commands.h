// The commands, by concern. Each function adds its own to the table.
#pragma once

#include "apps/sensorctl/CommandTable.h"

namespace sensorctl {

class Interpreter;

void addLifeCommands(CommandTable& p_objTable);  // init, uinit, reset, restart, power-cycle, channel, machine, status
void addParameterCommands(CommandTable& p_objTable);  // set, setter and the named setters
void addReadCommands(CommandTable& p_objTable);       // get, getter and the named getters, getAll, sensorCheck
void addKeepCommands(CommandTable& p_objTable);       // flush, check, restore, restoreAe, rollback, mirror
void addShutterCommands(CommandTable& p_objTable);    // range, shutter
void addLanguageCommands(CommandTable& p_objTable);   // languages, commonFile, languageFile
void addListCommand(CommandTable& p_objTable);        // list
void addDiffCommand(CommandTable& p_objTable);        // diff
void addWatchCommand(CommandTable& p_objTable, Interpreter& p_objInterpreter);  // watch
void addOperationCommands(CommandTable& p_objTable);   // direct lens, iris, day/night and status operations
void addSchemeCommands(CommandTable& p_objTable);      // scheme, mode, show, style
void addStoreCommands(CommandTable& p_objTable);       // dump, flash
void addTimeCommands(CommandTable& p_objTable);        // wait, cycle
void addSceneCommands(CommandTable& p_objTable);       // scene
void addDeviceCommands(CommandTable& p_objTable);      // driver, fault
void addVideoCommands(CommandTable& p_objTable);       // video
void addTranscriptCommands(CommandTable& p_objTable);  // transcript
void addTalkCommands(CommandTable& p_objTable, Interpreter& p_objInterpreter);   // echo, debug, trace, quit
void addHelpCommand(CommandTable& p_objTable, Interpreter& p_objInterpreter);    // help
void addRecordCommand(CommandTable& p_objTable, Interpreter& p_objInterpreter);  // record
void addExpectCommand(CommandTable& p_objTable, Interpreter& p_objInterpreter);  // expect

// All of the above.
void addAllCommands(CommandTable& p_objTable, Interpreter& p_objInterpreter);

}  // namespace sensorctl
