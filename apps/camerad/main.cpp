// camerad: the host process of a camera, with an HTTP interface and a page.
//
// What it is linked with chooses the platform; here are the driver and the video module: those of the simulated camera.
#include "apps/camerad/program/Options.h"
#include "apps/camerad/program/Program.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

namespace {

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
        const camerad::ParsedProgramOptions parsed =
            camerad::parseProgramOptions(arguments, std::getenv("CAMERA_ROOT"));
        if (!parsed.options) {
            (camerad::kEnded == parsed.nStatus ? std::cout << parsed.strText
                                               : std::cerr << "camerad: " << parsed.strText << "\n");
            return parsed.nStatus;
        }
        return camerad::runCamera(*parsed.options);
    } catch (const std::exception& error) {
        std::cerr << std::string("camerad: ") + error.what() + "\n";
        return camerad::kCannotStart;
    }
}
