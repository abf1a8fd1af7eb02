// What one command came to.
#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <utility>
#include <vector>

namespace sensorctl {

using Json = nlohmann::ordered_json;

struct Result {
    bool bOk = true;
    std::string strError;               // for people; set when bOk is false
    Json data = Json::object();         // the answer, by name
    std::vector<std::string> vecLines;  // the answer as text; the data on one line when empty
    std::string strReplay = {};         // how a script does the same again; as it was written when empty

    static Result failed(const std::string& p_strError, Json p_data = Json::object()) {
        return {false, p_strError, std::move(p_data), {}, {}};
    }
};

}  // namespace sensorctl
