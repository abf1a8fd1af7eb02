#include "apps/shared/PlainXml.h"

#include <gtest/gtest.h>

namespace apps {
namespace {

constexpr std::size_t kLevels = 4;

TEST(PlainXml, PlainDocumentsPass) {
    for (const char* text : {
             "<a/>",
             "<a></a>",
             " <a b=\"c\" d='e\"f'>text &lt; more</a>\n",
             "<?xml version=\"1.0\" encoding=\"UTF-8\"?><!-- <a> --><a><!-- </a> --><b/></a><!-- end -->",
             "<a><b><c><d/></c></b></a>",
             "<a><b/><b/><b/><b/><b/></a >",
             "<a b=\"x > y /> z\"></a>",
         }) {
        EXPECT_TRUE(isPlainXml(text, kLevels)) << text;
    }
}

TEST(PlainXml, EverythingElseIsRefused) {
    for (const char* text : {
             "",
             "text",
             "<a>",
             "</a>",
             "<a></b>",
             "<a/><b/>",
             "<a/>text",
             "<a b></a>",
             "<a b=c></a>",
             "<a b=\"c></a>",
             "<a b=\"<\"></a>",
             "<a b=\"c\"d=\"e\"></a>",
             "<a / ></a>",
             "<a><![CDATA[<b>]]></a>",
             "<!DOCTYPE a><a/>",
             "<a><!-- open</a>",
             "<?xml version=\"1.0\"><a/>",
             "<?xml x=\"><b><b><b><b><b>\" ?><a/>",
             "<?xml version=\"1.0\"",
             "< a/>",
             "<a><b></a></b>",
         }) {
        EXPECT_FALSE(isPlainXml(text, kLevels)) << text;
    }
}

TEST(PlainXml, NestingIsBounded) {
    EXPECT_TRUE(isPlainXml("<a><b><c><d></d></c></b></a>", 4));
    EXPECT_FALSE(isPlainXml("<a><b><c><d></d></c></b></a>", 3));
    EXPECT_FALSE(isPlainXml("<a/>", 0));
    std::string deep;
    for (int i = 0; i < 1000000; ++i) {
        deep += "<a>";
    }
    EXPECT_FALSE(isPlainXml(deep, 256));
}

TEST(PlainXml, AZeroByteIsRefusedWhereverItStands) {
    for (const std::string& text : {std::string("<a>\0</a>", 8), std::string("<a b=\"\0\"/>", 11),
                                    std::string("\0<a/>", 5), std::string("<?xml \0?><a/>", 13)}) {
        EXPECT_FALSE(isPlainXml(text, kLevels));
    }
}

}  // namespace
}  // namespace apps
