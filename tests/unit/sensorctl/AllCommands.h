// The commands of the program, without a device root.
#pragma once

#include "apps/sensorctl/Interpreter.h"
#include "apps/sensorctl/Output.h"
#include "apps/sensorctl/Session.h"
#include "simcam/Camera.h"

class AllCommands {
public:
    const sensorctl::CommandTable& table() const { return m_objInterpreter.table(); }

private:
    simcam::Camera m_objCamera;
    sensorctl::Session m_objSession{m_objCamera, {}};
    sensorctl::Output m_objOutput{-1, sensorctl::Output::Form::text};
    sensorctl::Interpreter m_objInterpreter{m_objSession, m_objOutput, {}};
};
