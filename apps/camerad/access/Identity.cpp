#include "apps/camerad/access/Identity.h"

namespace camerad {

const char* roleName(Role p_eRole) {
    switch (p_eRole) {
        case Role::Admin:
            return "admin";
        case Role::Viewer:
            return "viewer";
        case Role::Nobody:
            break;
    }
    return "nobody";
}

}  // namespace camerad
