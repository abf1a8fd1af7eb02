// The camera's paths inside a shell command.
#pragma once

#include <string>

namespace platform {

// Puts the value of a shell variable in front of every /mnt, /hd1 and /tmp that stands at the start of a shell word, or
// in one behind "=", ":", "," or ":-", quoted or not. The value is always expanded quoted, so it may hold anything,
// while wildcards behind it keep working. Elsewhere ("foo/tmp", "/x/mnt", "/mnt2") nothing changes.
//
// Comments, quotes, "$(...)" and "`...`" are followed; the inside of here-documents and of quoted texts that another
// shell reads (sh -c '...') is not.
std::string withRootInFront(const std::string& p_strCommand, const std::string& p_strVariable);

}  // namespace platform
