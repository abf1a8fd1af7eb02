// The legal values of the commands whose range depends on the state of the device.
#pragma once

#include <vector>

namespace simcam {

// Commands 49 and 50. A frame rate outside 1 to 240 counts as the nearer end.
std::vector<int> legalShutters(int p_nFrameRate, bool p_bWideDynamicRange);
// Command 82.
std::vector<int> legalIrisPositions(double p_dMagnification);
// Command 1537.
std::vector<int> legalNearLimits(double p_dMagnification);

// The value nearest to the wanted one, the lower of two equally near ones. The list is ascending and not empty.
int nearestOf(const std::vector<int>& p_vecLegal, int p_nWanted);

}  // namespace simcam
