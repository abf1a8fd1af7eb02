// Who a request comes from. A value.
#pragma once

#include <string>

namespace camerad {

enum class Role { Nobody, Viewer, Admin };

const char* roleName(Role p_eRole);  // "nobody", "viewer", "admin"

struct Identity {
    std::string strName;  // of the account or the token; empty for nobody
    Role eRole = Role::Nobody;
    enum class Via { Nothing, Cookie, Basic, Bearer } eVia = Via::Nothing;
    std::string strSession;  // the session's id, of a cookie
};

}  // namespace camerad
