// A driver that answers with the bytes of the fuzz input: any result, any count, any value, in any record.
#pragma once

#include "fuzz/support/Fuzz.h"

namespace fuzz {

// The driver takes its answers from this input from now on; zeros without one. The input must outlive its use.
void driverAnswersFrom(Input* p_pInput);

}  // namespace fuzz
