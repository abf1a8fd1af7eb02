#include "platform/DeviceRoot.h"

#include <cstdlib>
#include <mutex>

namespace {

std::string withoutTrailingSlashes(std::string p_strRoot) {
    while (!p_strRoot.empty() && '/' == p_strRoot.back()) {
        p_strRoot.pop_back();
    }
    return p_strRoot;
}

struct Root {
    std::mutex mutex;       // guards both
    std::string directory;  // without a trailing slash; empty for "/"
    bool known = false;     // false until the first question or setDeviceRoot

    // Never destroyed: threads may ask while the process ends.
    static Root& instance() {
        static Root* const pRoot = new Root;
        return *pRoot;
    }
};

}  // namespace

namespace platform {

std::string deviceRoot() {
    Root& root = Root::instance();
    const std::lock_guard<std::mutex> guard(root.mutex);
    if (!root.known) {
        const char* const szEnvironment = std::getenv("CAMERA_ROOT");
        root.directory = withoutTrailingSlashes(nullptr == szEnvironment ? "" : szEnvironment);
        root.known = true;
    }
    return root.directory;
}

void setDeviceRoot(const std::string& p_strRoot) {
    Root& root = Root::instance();
    const std::lock_guard<std::mutex> guard(root.mutex);
    root.directory = withoutTrailingSlashes(p_strRoot);
    root.known = true;
}

std::string devicePath(const std::string& p_strCameraPath) {
    return !p_strCameraPath.empty() && '/' == p_strCameraPath.front() ? deviceRoot() + p_strCameraPath
                                                                      : p_strCameraPath;
}

}  // namespace platform
