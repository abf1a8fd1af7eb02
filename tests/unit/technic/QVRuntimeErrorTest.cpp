#include "technic/QVRuntimeError.h"

#include <gtest/gtest.h>

#include <exception>
#include <string>
#include <type_traits>

namespace {

TEST(QVRuntimeError, HoldsTheMessageOfAString) {
    std::string strMessage = "lens lost";
    const QVRuntimeError error(strMessage);
    strMessage = "changed";
    EXPECT_STREQ("lens lost", error.what());
}

TEST(QVRuntimeError, HoldsTheMessageOfACString) {
    char szMessage[] = "lens lost";
    const QVRuntimeError error(static_cast<const char*>(szMessage));
    szMessage[0] = 'x';
    EXPECT_STREQ("lens lost", error.what());
}

TEST(QVRuntimeError, MayHaveAnEmptyMessage) {
    EXPECT_STREQ("", QVRuntimeError("").what());
    EXPECT_STREQ("", QVRuntimeError(std::string()).what());
}

TEST(QVRuntimeError, IsAStandardException) {
    static_assert(std::is_base_of_v<std::exception, QVRuntimeError>);
    try {
        throw QVRuntimeError("lens lost");
    } catch (const std::exception& error) {
        EXPECT_STREQ("lens lost", error.what());
    }
}

TEST(QVRuntimeError, KeepsItsMessageWhenCopied) {
    std::exception_ptr pCopy;
    {
        const QVRuntimeError error(std::string(1000, 'x'));
        pCopy = std::make_exception_ptr(error);
    }
    EXPECT_THROW(
        {
            try {
                std::rethrow_exception(pCopy);
            } catch (const QVRuntimeError& error) {
                EXPECT_EQ(std::string(1000, 'x'), error.what());
                throw;
            }
        },
        QVRuntimeError);
}

}  // namespace
