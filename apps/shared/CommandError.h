// A command that cannot be carried out as it was written: an unknown word, a bad number, a missing file. Its text is for
// people.
#pragma once

#include <stdexcept>
#include <string>

namespace apps {

class CommandError : public std::runtime_error {
public:
    explicit CommandError(const std::string& p_strText) : std::runtime_error(p_strText) {}
};

}  // namespace apps
