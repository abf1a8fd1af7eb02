// What a picture depends on, made safe to compute with.
#pragma once

#include "simcam/Commands.h"
#include "simcam/PictureParameters.h"

namespace simcam::picture {

// Every value within its range.
PictureParameters withinRanges(const PictureParameters& p_stParameters);

}  // namespace simcam::picture
