#include "apps/camerad/access/PasswordHash.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace camerad {
namespace {

using ::testing::StartsWith;

TEST(PasswordHashes, BelongToOnePassword) {
    const std::string hash = hashPassword("gr\xC3\xBC\xC3\x9F dich", 1);
    EXPECT_THAT(hash, StartsWith("$y$j75$"));
    EXPECT_TRUE(isPasswordHash(hash));
    EXPECT_TRUE(isPasswordOf("gr\xC3\xBC\xC3\x9F dich", hash));
    EXPECT_FALSE(isPasswordOf("gr\xC3\xBC\xC3\x9F dicH", hash));
    EXPECT_FALSE(isPasswordOf("", hash));
}

TEST(PasswordHashes, OfTheLongestPasswordLookAtItsLastByte) {
    const std::string hash = hashPassword(std::string(256, 'x'), 1);
    EXPECT_TRUE(isPasswordOf(std::string(256, 'x'), hash));
    EXPECT_FALSE(isPasswordOf(std::string(255, 'x'), hash));
    EXPECT_FALSE(isPasswordOf(std::string(255, 'x') + 'y', hash));
}

TEST(PasswordHashes, OfOnePasswordDiffer) {
    EXPECT_NE(hashPassword("password", 1), hashPassword("password", 1));
}

TEST(PasswordHashes, CostWhatWasAskedFor) {
    EXPECT_THAT(hashPassword("password", 0), StartsWith("$y$j9T$"));
    EXPECT_THAT(hashPassword("password", 2), StartsWith("$y$j85$"));
    EXPECT_THAT(hashPassword("password", 6), StartsWith("$y$jAT$"));
    EXPECT_THROW(hashPassword("password", 7), std::runtime_error);
}

TEST(PasswordHashes, AreToldFromOtherTexts) {
    const std::string salt = "k2XAnEHBqQ1Ct2aMXFKN..";
    const std::string end = "$" + salt + "$" + std::string(43, 'a');
    EXPECT_TRUE(isPasswordHash("$y$j9T" + end));
    for (const std::string& text :
         {std::string(), std::string("$y$"), std::string("$y$j9T$"), "$y$j9T$" + salt,
          "$y$j9T$$" + std::string(43, 'a'), "$y$j9T" + end + "a", "$y$j9T$" + salt + "$" + std::string(42, 'a'),
          "$y$j9T$" + salt + "$" + std::string(42, 'a') + ":", "$y$j9T$a b$" + std::string(43, 'a'),
          "$y$j9T$" + std::string(87, 'a') + "$" + std::string(43, 'a'),
          // more memory than the camera has: 64 MiB, 4 GiB, anything
          "$y$jBT" + end, "$y$jIT" + end, "$y$j9T0" + end, "$y$" + end,
          // other methods
          "$6" + end, "$gy$j9T" + end, std::string("$1$salt$hash"), std::string("plain text"), std::string("*0")}) {
        EXPECT_FALSE(isPasswordHash(text)) << text;
        EXPECT_FALSE(isPasswordOf("password", "$nothing$" + text)) << text;
    }
}

}  // namespace
}  // namespace camerad
