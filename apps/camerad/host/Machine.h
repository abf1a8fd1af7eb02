// What channels a camera has, from the files of its device root. Functions without state; they block for the medium.
#pragma once

#include "apps/camerad/host/Channel.h"

#include <vector>

namespace camerad {

// Ascending by number, at most p_nMost. Throws std::runtime_error when a file cannot be used or describes no channel.
std::vector<ChannelDescription> channelsOfMachine(int p_nMost);

// The number of user schemes that a detail string asks for, as the library reads it.
int schemesOf(const std::string& p_strDetail);

}  // namespace camerad
