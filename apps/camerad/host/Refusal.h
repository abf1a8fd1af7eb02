// Why something that a client asked for is not done.
//
// The rooms of camerad throw it; the HTTP interface turns it into a problem document. A value.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>

namespace camerad {

class Refusal : public std::runtime_error {
public:
    enum class Kind {
        NotFound,      // there is no such channel, parameter, scheme, fault ...
        BadValue,      // what was sent cannot be understood or is outside its range; nothing was done
        Refused,       // driver, video module or library refused it; what is in force stays
        Conflict,      // the state does not allow it now, for instance a window that cannot be stored
        Busy,          // another operation on the channel takes its time; try again
        Unauthorised,  // who asks is not known
        Forbidden,     // who asks is known and may not
        TooMany,       // too many attempts, clients or requests; try again later
        TooLarge,      // more bytes than are taken
        Failed,        // the camera's own fault: a medium that fails, a document that cannot be built
    };

    // p_strType: the last word of the problem's type, in small letters with hyphens ("driver-refused").
    // p_strDetail: a sentence for the person who asked, which says what to do instead where that is known.
    Refusal(Kind p_eKind, std::string p_strType, const std::string& p_strDetail)
        : std::runtime_error(p_strDetail), m_eKind(p_eKind), m_strType(std::move(p_strType)) {}

    Kind kind() const { return m_eKind; }
    const std::string& type() const { return m_strType; }
    // When trying again makes sense, in seconds.
    std::optional<int> retryAfter() const { return m_nRetryAfter; }
    Refusal& retryAfter(int p_nSeconds) {
        m_nRetryAfter = p_nSeconds;
        return *this;
    }

private:
    Kind m_eKind;
    std::string m_strType;
    std::optional<int> m_nRetryAfter;
};

}  // namespace camerad
