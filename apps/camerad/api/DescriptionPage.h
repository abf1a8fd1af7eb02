// The description of the interface as a page that a person reads. A function without state.
#pragma once

#include <nlohmann/json.hpp>

#include <string>

namespace camerad {

// HTML without script; its style is /api/description.css. The document is one of OpenAPI 3.1 as openapi.json writes it:
// references are to its own components.
std::string descriptionPage(const nlohmann::json& p_objDocument);

}  // namespace camerad
