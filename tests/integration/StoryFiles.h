// The files that the library leaves below a device root, as lines of a story.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace storyfiles {

// Every file below the root that does not belong to the camera's fixed equipment, by its camera path: its bytes.
std::map<std::string, std::string> below(const std::string& p_strRoot);

// What happened to the files between two looks.
//
// A parameter file stands as its records, key=value; one with the keys of another file as what it has other. A merged
// style document stands tab by tab: key=value of its parameters, with the number of choices in brackets. Anything else
// stands as its first bytes.
std::vector<std::string> changes(const std::map<std::string, std::string>& p_mapBefore,
                                 const std::map<std::string, std::string>& p_mapNow);

// A style document tab by tab.
std::vector<std::string> styleLines(const std::string& p_strDocument);

}  // namespace storyfiles
