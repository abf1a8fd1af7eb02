#include "apps/camerad/program/Password.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <stdexcept>
#include <string>

namespace {

// What readPassword makes of these bytes on a pipe.
std::string passwordFrom(const std::string& p_strBytes) {
    int ends[2];
    if (0 != pipe(ends) || write(ends[1], p_strBytes.data(), p_strBytes.size()) < 0) {
        throw std::logic_error("no pipe");
    }
    close(ends[1]);
    try {
        const std::string password = camerad::readPassword(ends[0]);
        close(ends[0]);
        return password;
    } catch (...) {
        close(ends[0]);
        throw;
    }
}

TEST(CameradPassword, IsTheFirstLine) {
    EXPECT_EQ(passwordFrom("correct horse\nbattery\n"), "correct horse");
    EXPECT_EQ(passwordFrom("without an end"), "without an end");
}

TEST(CameradPassword, NoneIsSaid) {
    EXPECT_THROW(passwordFrom(""), std::runtime_error);
    EXPECT_THROW(passwordFrom("\n"), std::runtime_error);
}

TEST(CameradPassword, OneWithoutEndIsNotReadForEver) {
    EXPECT_THROW(passwordFrom(std::string(2000, 'x')), std::runtime_error);
}

}  // namespace
