// The files that are built into the program: openapi.json and description.css of this folder.
#pragma once

#include <string>

namespace camerad {

const std::string& openapiText();
const std::string& descriptionStyle();

}  // namespace camerad
