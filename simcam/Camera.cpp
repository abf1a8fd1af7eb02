// The simulated camera, and the driver call that reaches it.
#include "simcam/Camera.h"

#include "platform/ImageAdjust.h"

#include <mutex>

namespace simcam {

// In the order in which each part looks at the ones before it.
struct Camera::Parts {
    explicit Parts(const CameraOptions& p_stOptions)
        : transcript(p_stOptions.transcriptLimit),
          video(p_stOptions.channels, faults, transcript),
          driver(p_stOptions.channels, scene, video, faults, transcript) {
        scene.onChange([this] { driver.sceneChanged(); });
    }

    FaultList faults;
    Transcript transcript;
    Scene scene;
    SimVideoModule video;
    Driver driver;
};

namespace {

// The camera that ia_ioctrl_v2 reaches. A caller keeps its parts alive for the length of its call. Never destroyed: a thread
// may still call while the process ends.
struct Installed {
    std::mutex mutex;  // guards parts
    std::shared_ptr<Camera::Parts> parts;
};

Installed& installed() {
    static Installed& objInstalled = *new Installed;
    return objInstalled;
}

}  // namespace

Camera::Camera(const CameraOptions& p_stOptions) : m_pParts(std::make_shared<Parts>(p_stOptions)) {
    Installed& objInstalled = installed();
    const std::lock_guard<std::mutex> guard(objInstalled.mutex);
    objInstalled.parts = m_pParts;
}

Camera::~Camera() {
    {
        Installed& objInstalled = installed();
        const std::lock_guard<std::mutex> guard(objInstalled.mutex);
        if (objInstalled.parts == m_pParts) {
            objInstalled.parts.reset();
        }
    }
    m_pParts->transcript.setObserver({});
}

Driver& Camera::driver() {
    return m_pParts->driver;
}

SimVideoModule& Camera::video() {
    return m_pParts->video;
}

Scene& Camera::scene() {
    return m_pParts->scene;
}

FaultList& Camera::faults() {
    return m_pParts->faults;
}

Transcript& Camera::transcript() {
    return m_pParts->transcript;
}

void Camera::powerCycle() {
    m_pParts->video.powerCycle();
    m_pParts->driver.powerCycle();
}

}  // namespace simcam

extern "C" int ia_ioctrl_v2(int p_nChannel, u32 p_nCommand, u32 p_nOption, void* p_pData) {
    std::shared_ptr<simcam::Camera::Parts> pParts;
    {
        simcam::Installed& objInstalled = simcam::installed();
        const std::lock_guard<std::mutex> guard(objInstalled.mutex);
        pParts = objInstalled.parts;
    }
    return nullptr == pParts ? IA_ERR_HARDWARE : pParts->driver.call(p_nChannel, p_nCommand, p_nOption, p_pData);
}
