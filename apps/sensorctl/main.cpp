// sensorctl: the program that owns one simulated camera.
//
// What it is linked with chooses the platform; here are the driver and the video module: those of the simulated camera.
#include "apps/sensorctl/Interrupt.h"
#include "apps/sensorctl/Options.h"
#include "apps/sensorctl/Program.h"
#include "simcam/Camera.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

namespace {
constexpr std::size_t kTranscriptLimit = 100000;  // entries: a day of cycles that ask the driver once a second

// The number of a standard descriptor that is closed would go to the next file that is opened. It is taken by one with
// which reading or writing fails, as it would have failed.
void occupyStandardDescriptors() {
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (-1 == fcntl(descriptor, F_GETFD)) {
            open("/dev/null", STDIN_FILENO == descriptor ? O_WRONLY : O_RDONLY);
        }
    }
}

}  // namespace
int main(int argc, char** argv) {
    occupyStandardDescriptors();
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
