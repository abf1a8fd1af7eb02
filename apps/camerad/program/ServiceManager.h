// Tells the service manager that started the program how far it is. Without one, nothing happens.
#pragma once

#include <string>

namespace camerad {

// p_szSocket: what the environment says in NOTIFY_SOCKET, a path, or a name behind @; null: there is no manager. False when
// it could not be told.
bool tellServiceManager(const char* p_szSocket, const std::string& p_strState);

}  // namespace camerad
