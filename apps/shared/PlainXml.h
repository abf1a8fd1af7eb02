// Whether a text is XML of the plain kind that a parser takes without harm.
#pragma once

#include <cstddef>
#include <string>

namespace apps {

// True for one element with what is in it: every start tag has its end tag, attributes are quoted, "<" stands nowhere else,
// and no element lies deeper than p_nLevels (1: the root alone). In front a declaration is allowed, comments anywhere.
// Stricter than XML on purpose, without CDATA and document types: what passes cannot be understood by a parser as nested
// deeper than it is, and a parser that descends by calls does not run out of stack.
bool isPlainXml(const std::string& p_strText, std::size_t p_nLevels);

}  // namespace apps
