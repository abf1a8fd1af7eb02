#include "apps/camerad/program/ServiceManager.h"

#include "tests/support/TestRoot.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstddef>
#include <cstring>
#include <stdexcept>
#include <string>

namespace {

using camerad::tellServiceManager;

// A manager that listens at a path, or at a name behind @.
class Manager {
public:
    explicit Manager(const std::string& p_strName) : m_nSocket(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::memcpy(address.sun_path, p_strName.data(), p_strName.size());
        if ('@' == p_strName.front()) {
            address.sun_path[0] = '\0';
        }
        const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + p_strName.size());
        if (0 != bind(m_nSocket, reinterpret_cast<sockaddr*>(&address), size)) {
            throw std::runtime_error("cannot listen at " + p_strName);
        }
    }
    ~Manager() { close(m_nSocket); }
    Manager(const Manager&) = delete;
    Manager& operator=(const Manager&) = delete;

    std::string hear() const {
        char bytes[256];
        const ssize_t got = recv(m_nSocket, bytes, sizeof(bytes), MSG_DONTWAIT);
        return {bytes, got > 0 ? static_cast<std::size_t>(got) : 0};
    }

private:
    int m_nSocket;
};

TEST(ServiceManager, IsToldAtAPath) {
    // The path of a socket has to be short: the test's folder goes by the number of its descriptor.
    const TestRoot root;
    const int folder = open(root.path().c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    const std::string path = "/proc/self/fd/" + std::to_string(folder) + "/notify";
    const Manager manager(path);
    EXPECT_TRUE(tellServiceManager(path.c_str(), "READY=1"));
    EXPECT_EQ(manager.hear(), "READY=1");
    close(folder);
}

TEST(ServiceManager, IsToldAtAName) {
    const std::string name = "@camerad-test-" + std::to_string(getpid());
    const Manager manager(name);
    EXPECT_TRUE(tellServiceManager(name.c_str(), "STOPPING=1"));
    EXPECT_EQ(manager.hear(), "STOPPING=1");
}

TEST(ServiceManager, NoneIsNoFailure) {
    EXPECT_TRUE(tellServiceManager(nullptr, "READY=1"));
    EXPECT_TRUE(tellServiceManager("", "READY=1"));
}

TEST(ServiceManager, OneThatIsNotThereIs) {
    EXPECT_FALSE(tellServiceManager("@camerad-test-nobody", "READY=1"));
    EXPECT_FALSE(tellServiceManager("relative", "READY=1"));
    EXPECT_FALSE(tellServiceManager(("/" + std::string(200, 'x')).c_str(), "READY=1"));
}

}  // namespace
