// From exposed light to the brightness of the picture: highlights, wide dynamic range, gamma.
#pragma once

#include "simcam/PictureParameters.h"
#include "simcam/picture/Light.h"

#include <cstdint>
#include <vector>

namespace simcam::picture {

// Brightness of the picture has 4 fractional bits: 4080 is 255.
constexpr int kBright = 16;
constexpr int kWhite = 255 * kBright;

// A table, rebuilt when what it depends on has changed.
class Tone {
public:
    void prepare(const PictureParameters& p_stParameters);

    // For light from 0; brighter than the sensor can hold counts as that.
    int of(int p_nLight) const {
        const int nIndex = p_nLight < kFine ? p_nLight : kFine + ((p_nLight - kFine) >> kCoarseShift);
        return m_vecTable[static_cast<std::size_t>(nIndex < kSize ? nIndex : kSize - 1)];
    }

private:
    static constexpr int kFine = 4096;
    static constexpr int kCoarseShift = 4;
    static constexpr int kSize = kFine + ((65536 - kFine) >> kCoarseShift);

    struct Setting {
        int highlight;
        int range;
        int gamma;
    };
    static int toned(int p_nLight, const Setting& p_stSetting);

    Setting m_stSetting = {-1, -1, -1};
    std::vector<std::int16_t> m_vecTable;
};

}  // namespace simcam::picture
