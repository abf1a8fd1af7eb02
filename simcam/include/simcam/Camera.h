/// @file
/// A simulated camera: the scene, the driver that looks at it, the video module, and what tests and programs steer them
/// with.
#pragma once

#include "simcam/Driver.h"
#include "simcam/Export.h"
#include "simcam/Faults.h"
#include "simcam/Scene.h"
#include "simcam/Transcript.h"
#include "simcam/VideoModule.h"

#include <cstddef>
#include <memory>

/// The simulated camera.
namespace simcam {

/// How a camera is built.
struct CameraOptions {
    int channels = kMaxChannels;          ///< 1 to kMaxChannels
    std::size_t transcriptLimit = 10000;  ///< entries kept
};

/// A simulated camera.
///
///     simcam::Camera camera;
///     controller.setVideoStreamModule(&camera.video());
///     camera.scene().setLight(0.5);
///     camera.faults().add(fault);
///     std::cout << camera.transcript().text();
///
/// From its construction to its destruction, the camera is the one that ia_ioctrl_v2 reaches. Of several, the one that
/// was constructed last is reached; without any, ia_ioctrl_v2 returns IA_ERR_HARDWARE.
///
/// The parts belong to the camera. A driver call that is under way on another thread while the camera is destroyed is
/// finished safely; the video module must not be called any more.
///
/// Threads: any, once constructed. Not copyable.
class SIMCAM_API Camera {
public:
    /// A camera as it is after power-up.
    /// @param p_stOptions  how it is built
    explicit Camera(const CameraOptions& p_stOptions = {});
    /// Takes the camera away from ia_ioctrl_v2.
    ~Camera();
    Camera(const Camera&) = delete;
    Camera& operator=(const Camera&) = delete;

    /// The driver that ia_ioctrl_v2 reaches.
    /// @return the camera's
    Driver& driver();
    /// The video module to hand to the controllers.
    /// @return the camera's
    SimVideoModule& video();
    /// What stands in front of the camera.
    /// @return the camera's
    Scene& scene();
    /// The faults that driver and video module obey.
    /// @return the camera's
    FaultList& faults();
    /// What driver and video module were told.
    /// @return the camera's
    Transcript& transcript();

    /// Driver and video module as they are after power-up. Scene, faults and transcript stay.
    void powerCycle();

    struct Parts;  // internal

private:
    std::shared_ptr<Parts> m_pParts;
};

}  // namespace simcam
