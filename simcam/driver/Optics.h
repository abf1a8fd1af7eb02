// What the lens does to the picture.
#pragma once

#include "simcam/Scene.h"

namespace simcam {

// The auto focus statistic (command 1648), 100 to 10100, of a focus motor at this position. It peaks at the position that
// is sharp for the subject, is wider at wide angle, and lower in the dark.
int focusStatistic(int p_nFocus, double p_dMagnification, double p_dSubjectMetres, double p_dLux);

}  // namespace simcam
