// The files of the page, as they are built into the program.
#include "apps/camerad/page/Page.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numeric>
#include <regex>
#include <set>

using namespace camerad;

namespace {

constexpr std::size_t kMostBytes = 150 * 1024;

const PageFile* find(const std::string& p_strName) {
    for (const PageFile& file : pageFiles()) {
        if (file.szName == p_strName) {
            return &file;
        }
    }
    return nullptr;
}

// Every match of the expression's first group.
std::set<std::string> allMatches(const std::string& p_strText, const std::string& p_strExpression) {
    const std::regex expression(p_strExpression);
    std::set<std::string> found;
    for (std::sregex_iterator it(p_strText.begin(), p_strText.end(), expression), end; it != end; ++it) {
        found.insert((*it)[1]);
    }
    return found;
}

TEST(PageFiles, FitIntoWhatAThinLineCarriesInASecondOrTwo) {
    const std::size_t bytes =
        std::accumulate(pageFiles().begin(), pageFiles().end(), std::size_t{0},
                        [](std::size_t p_nSum, const PageFile& p_stFile) { return p_nSum + p_stFile.stPacked.nSize; });
    RecordProperty("packedBytes", static_cast<int>(bytes));
    EXPECT_LE(bytes, kMostBytes);
    EXPECT_GT(bytes, 1000U);
}

TEST(PageFiles, EveryFileThatTheStartNamesIsThere) {
    const PageFile* start = find("index.html");
    ASSERT_NE(nullptr, start);
    const std::set<std::string> named = allMatches(start->stPlain.text(), "(?:href|src)=\"?([^\"> ]+)");
    EXPECT_GE(named.size(), 2U) << "a script and a style at least";
    for (std::string name : named) {
        name = name.substr(name.find_first_not_of("./"));
        EXPECT_NE(nullptr, find(name)) << name;
    }
}

TEST(PageFiles, NothingRefersToAnotherMachine) {
    // Names of the languages that a picture or a mathematical text is written in; a browser does not load them.
    const std::set<std::string> names = {"http://www.w3.org/2000/svg", "http://www.w3.org/1998/Math/MathML",
                                         "http://www.w3.org/1999/xhtml", "http://www.w3.org/1999/xlink"};
    for (const PageFile& file : pageFiles()) {
        for (const std::string& address : allMatches(file.stPlain.text(), "((?:https?|wss?)://[^\"'`<> )]*)")) {
            EXPECT_EQ(1U, names.count(address)) << file.szName << " names " << address;
        }
        EXPECT_THAT(file.stPlain.text(), testing::Not(testing::HasSubstr("sourceMappingURL"))) << file.szName;
    }
}

TEST(PageFiles, TheStartHoldsNoScriptAndNoStyleOfItsOwn) {
    const std::string text = find("index.html")->stPlain.text();
    EXPECT_THAT(allMatches(text, "<script([^>]*)>"), testing::Each(testing::HasSubstr("src=")));
    EXPECT_THAT(allMatches(text, "(<style|style=|\\son[a-z]+=)"), testing::IsEmpty());
}

TEST(PageFiles, EachHasAPackedFormATypeAndATagOfItsOwn) {
    std::set<std::string> tags;
    for (const PageFile& file : pageFiles()) {
        const std::string packed = file.stPacked.text();
        ASSERT_GT(packed.size(), 18U) << file.szName;
        EXPECT_EQ("\x1f\x8b\x08", packed.substr(0, 3)) << file.szName;
        const auto byte = [&packed](std::size_t p_nFromEnd) {
            return static_cast<std::size_t>(static_cast<unsigned char>(packed[packed.size() - p_nFromEnd]));
        };
        EXPECT_EQ(file.stPlain.nSize, byte(4) | byte(3) << 8 | byte(2) << 16 | byte(1) << 24) << file.szName;
        EXPECT_THAT(file.szType, testing::HasSubstr("/")) << file.szName;
        tags.insert(file.szTag);
        EXPECT_EQ(32U, std::string(file.szTag).size());
    }
    EXPECT_EQ(pageFiles().size(), tags.size());
}

}  // namespace
