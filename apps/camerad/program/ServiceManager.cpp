#include "apps/camerad/program/ServiceManager.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstddef>
#include <cstring>

namespace camerad {

bool tellServiceManager(const char* p_szSocket, const std::string& p_strState) {
    if (nullptr == p_szSocket || '\0' == *p_szSocket) {
        return true;
    }
    sockaddr_un address{};
    const std::size_t length = std::strlen(p_szSocket);
    if (length >= sizeof(address.sun_path) || ('/' != *p_szSocket && '@' != *p_szSocket)) {
        return false;
    }
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, p_szSocket, length);
    if ('@' == *p_szSocket) {
        address.sun_path[0] = '\0';  // a name without a file
    }
    const int descriptor = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (-1 == descriptor) {
        return false;
    }
    const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + length);
    const ssize_t sent = sendto(descriptor, p_strState.data(), p_strState.size(), MSG_NOSIGNAL,
                                reinterpret_cast<const sockaddr*>(&address), size);
    close(descriptor);
    return sent == static_cast<ssize_t>(p_strState.size());
}

}  // namespace camerad
