// Defog: takes away the light that fog adds, which is what even the darkest thing of a region has.
#pragma once

#include "simcam/PictureParameters.h"
#include "simcam/picture/Exposure.h"

#include <array>

namespace simcam::picture {

// The haze of a picture, from region to region.
class Haze {
public:
    // The exposure says how bright the picture is against the metering.
    Haze(const PictureParameters& p_stParameters, const Metering& p_stMetering, const Exposure& p_stExposure);

    bool isClear() const { return m_bClear; }

    // Takes it away from a row of a plane of exposed light.
    void takeFrom(int* p_pRow, int p_nWidth, int p_nRow, int p_nHeight) const;

private:
    int between(int p_nX, int p_nWidth, const std::array<int, kRegionsAcross>& p_arrRow) const;

    bool m_bClear = true;
    int m_nDensest = 1;                                                     // exposed light
    std::array<std::array<int, kRegionsAcross>, kRegionsDown> m_arrHaze{};  // exposed light
};

}  // namespace simcam::picture
