#include "platform/linux/StderrLine.h"

#include <unistd.h>

namespace platform {

void stderrLine(const std::string& p_strText) {
    const std::string strLine = p_strText + "\n";
    const ssize_t nWritten = ::write(STDERR_FILENO, strLine.data(), strLine.size());
    static_cast<void>(nWritten);  // there is nobody left to tell
}

}  // namespace platform
