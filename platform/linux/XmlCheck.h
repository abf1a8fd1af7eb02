// A strict look at an XML text before TinyXML sees it.
//
// TinyXML calls itself for each level of elements, without a limit, and reads bytes of a multi-byte character without
// looking for the end of the text. A text that passes here does neither, because both read it alike: the check accepts
// only what is plain XML (one root element, UTF-8, quoted attributes, balanced tags), never what TinyXML would forgive.
#pragma once

#include <string>

namespace platform {

// True when the text is well formed and no element is nested deeper than p_nLevels (the root element is level 1).
// Refused as well, though XML has it: a document type with an internal subset, entities other than the five known ones
// and character numbers, processing instructions that hold ">" or whose name begins with "xml".
bool isPlainXml(const std::string& p_strText, std::size_t p_nLevels);

}  // namespace platform
