#include "apps/camerad/access/Secrets.h"

#include <gmock/gmock.h>

#include <set>

namespace camerad {
namespace {

using ::testing::MatchesRegex;

TEST(Secrets, AreDifferentEachTime) {
    std::set<std::string> texts;
    for (int i = 0; i < 100; ++i) {
        const std::string text = randomSecret();
        EXPECT_THAT(text, MatchesRegex("[A-Za-z0-9_-]{43}"));
        EXPECT_TRUE(isSecret(text));
        texts.insert(text);
    }
    EXPECT_EQ(texts.size(), 100u);
}

TEST(Secrets, OfEveryLetterOfTheirAlphabet) {
    std::set<char> letters;
    for (int i = 0; i < 100; ++i) {
        for (const char letter : randomSecret()) {
            letters.insert(letter);
        }
    }
    EXPECT_EQ(letters.size(), 64u);
    std::set<char> passwordLetters;
    for (int i = 0; i < 100; ++i) {
        const std::string password = randomPassword();
        EXPECT_THAT(password, MatchesRegex("[a-z2-9]{5}-[a-z2-9]{5}-[a-z2-9]{5}-[a-z2-9]{5}"));
        passwordLetters.insert(password.begin(), password.end());
    }
    EXPECT_EQ(passwordLetters.size(), 32u);  // 31 letters and digits, and the hyphen
    for (const char letter : std::string("ilo01")) {
        EXPECT_EQ(passwordLetters.count(letter), 0u) << letter << " is mistaken for another one";
    }
}

TEST(Secrets, AreToldFromOtherTexts) {
    EXPECT_FALSE(isSecret(""));
    EXPECT_FALSE(isSecret(std::string(42, 'A')));
    EXPECT_FALSE(isSecret(std::string(44, 'A')));
    EXPECT_FALSE(isSecret(std::string(42, 'A') + "="));
    EXPECT_FALSE(isSecret(std::string(42, 'A') + '\0'));
    EXPECT_TRUE(isSecret(std::string(43, 'A')));
}

TEST(Secrets, HaveTheSumsOfThePublishedExamples) {
    EXPECT_EQ(sha256Hex("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(sha256Hex(""), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    EXPECT_EQ(hexOf(keyedSum("Jefe", "what do ya want for nothing?")),
              "5bdcc146bf60754e6a042426089575c75a003f089d2739839dec58b964ec3843");
}

TEST(Secrets, AreComparedAsAWhole) {
    EXPECT_TRUE(isSameSecret("", ""));
    EXPECT_TRUE(isSameSecret("abc", "abc"));
    EXPECT_FALSE(isSameSecret("abc", "abd"));
    EXPECT_FALSE(isSameSecret("abc", "ab"));
    EXPECT_FALSE(isSameSecret("", "a"));
}

TEST(Secrets, AreForgotten) {
    std::string secret = "a secret that is longer than what fits into the object itself";
    { const Forgotten forgotten(secret); }
    EXPECT_EQ(secret, "");
}

TEST(Base64, IsTakenApart) {
    struct Row {
        const char* szText;
        const char* szBytes;
    };
    for (const Row& row :
         {Row{"", ""}, Row{"Zg==", "f"}, Row{"Zm8=", "fo"}, Row{"Zm9v", "foo"}, Row{"Zm9vYg==", "foob"},
          Row{"Zm9vYmE=", "fooba"}, Row{"Zm9vYmFy", "foobar"}, Row{"/+7/", "\xFF\xEE\xFF"}}) {
        EXPECT_EQ(fromBase64(row.szText), row.szBytes) << row.szText;
    }
    EXPECT_EQ(fromBase64("AAAA"), std::string(3, '\0'));
}

TEST(Base64, RefusesEveryOtherSpelling) {
    for (const char* const szText : {"Z", "Zg", "Zg=", "Zh==", "Zm9=", "=", "====", "Z===", "Zm=v",
                                     "Zm9v=", "Zm9v====", "Zm 9", "Zm9\n", "Zm9-", "Zm9_", "=Zm9"}) {
        EXPECT_EQ(fromBase64(szText), std::nullopt) << szText;
    }
}

}  // namespace
}  // namespace camerad
