#include "apps/sensorctl/LibraryOutput.h"

#include "tests/support/TestRoot.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>

namespace sensorctl {
namespace {

void say(int p_nDescriptor, const char* p_szText, std::size_t p_nLength) {
    ASSERT_EQ(write(p_nDescriptor, p_szText, p_nLength), static_cast<ssize_t>(p_nLength));
}

std::string outputWith(LibraryOutput::Target p_eTarget) {
    return outputOf([&] {
        const LibraryOutput libraryOutput(p_eTarget);
        std::printf("message ");
        std::fflush(stdout);
        say(libraryOutput.resultDescriptor(), "result ", 7);
    });
}

TEST(LibraryOutput, ResultsReachStandardOutputAndMessagesDoNot) {
    EXPECT_EQ(outputWith(LibraryOutput::Target::nowhere), "result ");
    testing::internal::CaptureStderr();
    EXPECT_EQ(outputWith(LibraryOutput::Target::standardError), "result ");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "message ");
}

TEST(LibraryOutput, MessagesCanStayOnStandardOutput) {
    EXPECT_EQ(outputWith(LibraryOutput::Target::standardOutput), "message result ");
}

TEST(LibraryOutput, StandardOutputIsItselfAgainAtTheEnd) {
    EXPECT_EQ(outputOf([] {
                  { const LibraryOutput libraryOutput(LibraryOutput::Target::nowhere); }
                  say(STDOUT_FILENO, "after", 5);
              }),
              "after");
}

TEST(LibraryOutput, TheResultDescriptorIsNotInheritedByCommands) {
    const LibraryOutput libraryOutput(LibraryOutput::Target::standardError);
    EXPECT_EQ(fcntl(libraryOutput.resultDescriptor(), F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
}

}  // namespace
}  // namespace sensorctl
