// Style documents in and out of the XML library.
#pragma once

#include "tinyxml.h"

#include <string>

namespace style {

// Elements nested deeper than this are refused: the XML library descends one call a level, without a bound of its own.
constexpr int kDeepestNesting = 256;

// Parses a zero-terminated text as UTF-8. False when it is null, nested too deeply or not well formed; the document then
// holds what was parsed. The library reads past the end of a text that is cut inside a character, so it gets a padded copy.
bool loadMem(TiXmlDocument& p_objDocument, const char* p_szText);

// The same for the file of a camera path. False also when it cannot be read.
bool loadFile(TiXmlDocument& p_objDocument, const std::string& p_strCameraPath);

// The document as text.
std::string xmlString(const TiXmlDocument& p_objDocument);

// The number that the attribute holds (leading decimal number, 0 without one); p_nDefault when there is no such attribute.
int intAttribute(const TiXmlElement& p_objElement, const char* p_szName, int p_nDefault);

// Whether the element's "id" is this command.
bool hasId(const TiXmlElement& p_objElement, int p_nCmd);

}  // namespace style
