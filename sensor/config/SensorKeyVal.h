// The text form of parameter lists, and the correction of stored values by the driver.
#pragma once

#include "platform/Types.h"
#include "sensor/config/KeyVal.h"
#include "sensor/diag/Export.h"

#include <string>

// Reads "(key,value)" pairs from the text into the array and stores their number. The array must hold keyval_room(text)
// records. Never fails: every parenthesised stretch yields a record, and a field that does not parse keeps the value of
// the record before it (0 for the first).
SENSORDLL_API void keyval_str2st(const std::string& p_strText, KeyVal* p_pKeyVal, u32* p_pCount);

// The most records that a text can yield: one for each closing parenthesis.
u32 keyval_room(const std::string& p_strText);

// Appends "(key,value)" for each record, both in signed decimal, without separators.
SENSORDLL_API void keyval_st2str(std::string& p_strText, KeyVal* p_pKeyVal, u32 p_nCount);

// Has the driver (channel from 0) bring every value that it governs dynamically into its current range, in place. Always
// QVS_SUCCESS; failures are reported. A dynamic command that the array does not hold corrects the record in front of the
// array, which must be there for that reason. With a null array, nothing is corrected.
SENSORDLL_API int keyval_correct(int p_nChannel_id, KeyVal* p_pKeyval, u32 p_nCount);
