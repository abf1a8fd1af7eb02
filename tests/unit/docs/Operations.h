// Every public operation of the controller, callable by its name.
#pragma once

#include "sensor/ISensorController.h"

#include <map>
#include <string>
#include <vector>

// In ascending order.
std::vector<std::string> operationNames();

// Calls the operation with arguments that change or read something: setters get the value 1, lists name the key 34, ranges
// the command 49. Returns the result as the table writes it: true, false, a number, a text in quotes, "-" for none.
std::string callOperation(const std::string& p_strName, ISensorController& p_objController);
