// sensorctl: the program that owns one simulated camera.
//
// What it is linked with chooses the platform; here are the driver and the video module: those of the simulated camera.
#include "apps/sensorctl/Interrupt.h"
#include "apps/sensorctl/Options.h"
#include "apps/sensorctl/Program.h"
#include "simcam/Camera.h"

#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

namespace {
constexpr std::size_t kTranscriptLimit = 100000;  // entries: a day of cycles that ask the driver once a second
}

int main(int argc, char** argv) {
    try {
        const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
        if (!arguments.empty() && "--complete" == arguments.front()) {
            simcam::Camera camera;
            return sensorctl::printCompletion({arguments.begin() + 1, arguments.end()}, camera);
        }
        const sensorctl::ParsedOptions parsed = sensorctl::parseOptions(arguments, std::getenv("CAMERA_ROOT"));
        if (!parsed.options) {
            (sensorctl::kAllOk == parsed.nStatus ? std::cout << parsed.strText
                                                 : std::cerr << "sensorctl: " << parsed.strText << "\n");
            return parsed.nStatus;
        }
        sensorctl::catchInterrupts();
        simcam::Camera camera({simcam::kMaxChannels, kTranscriptLimit});
        return sensorctl::runSession(*parsed.options, camera);
    } catch (const std::exception& error) {
        std::cerr << std::string("sensorctl: ") + error.what() + "\n";
        return sensorctl::kUsage;
    }
}
