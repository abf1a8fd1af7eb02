// The description of the interface as the tests hold answers against it: the part of JSON Schema that it uses.
//
// One thread.
#pragma once

#include "apps/camerad/http/Http.h"

#include <nlohmann/json.hpp>

#include <iosfwd>
#include <string>
#include <vector>

// What is wrong with the value; empty when nothing. A keyword of the schema that is not understood is wrong too.
std::vector<std::string> schemaErrors(const nlohmann::json& p_objSchema, const nlohmann::json& p_objValue);

// openapi.json as it is built into the program.
const nlohmann::json& description();

// What a $ref leads to; the value itself when it is none.
const nlohmann::json& resolved(const nlohmann::json& p_objValue);

// The operation of a route; null when the description has none.
const nlohmann::json* operationOf(const std::string& p_strMethod, const std::string& p_strPattern);

// An operation with the examples that stand beside it, ready to be asked.
struct DescribedOperation {
    std::string strMethod;
    std::string strPattern;
    std::string strTarget;   // the pattern with the examples of its parameters
    nlohmann::json objBody;  // null for a route that needs none
    bool bEmpty = false;     // it takes an empty one

    friend void PrintTo(const DescribedOperation& p_stOperation, std::ostream* p_pStream);
};

// Every operation of the description.
std::vector<DescribedOperation> describedOperations();

// What is wrong with an answer of that route, by the description: its status, its type, every field.
std::vector<std::string> answerErrors(const std::string& p_strMethod, const std::string& p_strPattern,
                                      const camerad::HttpResponse& p_stAnswer);

// What is wrong with an event, by the description.
std::vector<std::string> eventErrors(const std::string& p_strType, const nlohmann::json& p_objData);
