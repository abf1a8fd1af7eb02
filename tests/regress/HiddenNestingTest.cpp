// The XML library finds the ";" of a numbered character first and reads its digits backwards, so that end tags in between
// are swallowed. The nesting was underestimated, and a flat-looking document recursed without bound.
#include "sensor/style/XmlNesting.h"

#include <gtest/gtest.h>

#include <string>

TEST(HiddenNesting, EndTagsInsideANumberedCharacterCloseNothing) {
    std::string strText;
    for (int i = 0; i < 300; ++i) {
        strText += "<a>&#x</a>x41;";
    }
    EXPECT_GT(style::xmlNesting(strText.c_str(), 256), 256);
}
