// How deeply the elements of an XML text nest, told without recursion and before the XML library sees it.
#pragma once

namespace style {

// The deepest level that the XML library would reach on this zero-terminated text: 1 for a single element, 0 for none. The
// walk takes the text apart exactly as the library does, its leniencies included, and stops where the library would give
// up; it stops early once the depth exceeds p_nEnough.
int xmlNesting(const char* p_szText, int p_nEnough);

}  // namespace style
