// A host of another team: it starts a controller on the simulated camera, sets the brightness and reads it back.
#include "platform/MachineInfo.h"
#include "platform/ModuleConfigure.h"
#include "sensor/ISensorController.h"
#include "simcam/Camera.h"

#include <cstdio>

int main() {
    constexpr int nBrightness = 34;
    simcam::Camera camera;  // the driver and the video module

    MachineInfo machine;
    std::vector<ModuleConfigure> modules;
    if (!SystemInfoParser::parseMachineInfo("/mnt/mtd/code/factory_setting/machineinfo.ini", machine) ||
        !ModuleConfigureParser::parse("/hd1/moduleConfig/moduleConfig.xml", machine.getHardwareModel(),
                                      machine.getHardwareCode(), modules) ||
        modules.empty()) {
        std::puts("no module configuration");
        return 1;
    }

    ISensorController controller;
    controller.setChannelID(1);
    controller.setVideoStreamModule(&camera.video());
    if (!controller.init(modules.front())) {
        return 1;
    }

    int nBefore = -1, nAfter = -1, nDriver = -1, nStored = -1;
    const bool bRead = controller.getParameter(nBrightness, nBefore);
    const int nSet = controller.setParameter(nBrightness, 61, true);
    const bool bReadBack = controller.getParameter(nBrightness, nAfter);
    const bool bDriver = camera.driver().value(0, nBrightness, nDriver);
    nStored = controller.flush();
    std::printf("read %d: %d\nset: %d\nread %d: %d\ndriver %d: %d\nflush: %d\n", bRead, nBefore, nSet, bReadBack,
                nAfter, bDriver, nDriver, nStored);
    controller.uinit();
    return 0;
}
