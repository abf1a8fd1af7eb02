// Fields of a module's detail string: a run of groups "(" name "=" value ")".
//
// A name is found anywhere in the string: a name also matches inside a longer one, and inside a value. Both functions
// return 0 when found; -1, with the output untouched, when the name, the "=" behind it or the ")" behind that is missing.
//
// Used by sensor/style too: the style merge selects its variants by these fields.
#pragma once

#include "platform/Types.h"
#include "sensor/diag/Export.h"

// The buffer that a field's text goes through, and so the buffer that getDetailFieldToStr needs: 9 characters and the
// terminator. Longer values are cut.
constexpr int kDetailFieldSize = 10;

// The leading decimal number of the value, 0 when there is none.
SENSORDLL_API int getDetailFieldTou32(const char* p_szDetail, const char* p_szField, u32* p_pValue);

// The value as text. At most kDetailFieldSize - 1 characters are copied, and no terminator: the caller zeroes the buffer.
SENSORDLL_API int getDetailFieldToStr(const char* p_szDetail, const char* p_szField, char* p_pBuffer);
