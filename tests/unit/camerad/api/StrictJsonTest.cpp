#include "apps/camerad/api/StrictJson.h"

#include <gmock/gmock.h>

#include <functional>

namespace camerad {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

json problemOf(const std::function<void()>& p_fnDo) {
    try {
        p_fnDo();
    } catch (const ProblemAnswer& problem) {
        return json::parse(problem.response().strBody);
    }
    return {};
}

json refusalOf(const std::string& p_strText) {
    return problemOf([&] { parseStrictJson(p_strText); });
}

TEST(StrictJson, EveryKindOfValueIsTaken) {
    const json value = parseStrictJson(R"( {"a":[1,-2,3.5,true,false,null,{"b":[]},"ü\u00fc"],"c":{}} )");
    EXPECT_EQ(value,
              json({{"a", {1, -2, 3.5, true, false, nullptr, {{"b", json::array()}}, "üü"}}, {"c", json::object()}}));
    EXPECT_EQ(parseStrictJson("7"), json(7));
    EXPECT_EQ(parseStrictJson("18446744073709551615"), json(18446744073709551615U));
}

class BadText : public testing::TestWithParam<const char*> {};

TEST_P(BadText, IsRefusedWithADetail) {
    const json problem = refusalOf(GetParam());
    ASSERT_EQ(problem.value("status", 0), 400) << GetParam();
    EXPECT_EQ(problem.at("type"), "/problems/malformed-json");
    EXPECT_FALSE(problem.at("detail").get<std::string>().empty());
}

INSTANTIATE_TEST_SUITE_P(StrictJson, BadText,
                         testing::Values("", " ", "{", "}", "[", "[1,]", "{\"a\"}", "{\"a\":}", "{\"a\":1,}", "{a:1}",
                                         "{'a':1}", "nul", "NaN", "Infinity", "-", "01", "1.", ".5", "+1", "0x10",
                                         "1e400", "-1e400", "[1] 2", "{} {}", "\"\x01\"", "\"\xFF\"", "\"\xC0\x80\"",
                                         "\"\\ud800\"", "\"\\x41\"", "\"open", "// 1\n1", "/**/1",
                                         "{\"a\":1,\"a\":2}"));

TEST(StrictJson, ANameTwiceInAnObjectIsRefusedWithItsPlace) {
    EXPECT_EQ(refusalOf(R"({"list":[{"x":1},{"x":1,"y":2,"x":3}]})").at("errors").at(0).at("pointer"), "/list/1/x");
    EXPECT_EQ(parseStrictJson(R"({"a":{"x":1},"b":{"x":1}})").size(), 2U);
}

TEST(StrictJson, ANumberThatNoDoubleHoldsIsRefusedWithItsPlace) {
    const json problem = refusalOf(R"({"a":[0,{"b/c~d":[5,1e400]}]})");
    EXPECT_EQ(problem.at("errors").at(0).at("pointer"), "/a/1/b~1c~0d/1");
    EXPECT_THAT(problem.at("detail").get<std::string>(), HasSubstr("too large"));
}

TEST(StrictJson, SixtyFourLevelsAreTakenAndNoMore) {
    EXPECT_THAT(refusalOf(std::string(64, '[') + std::string(64, ']')), IsEmpty());
    EXPECT_THAT(refusalOf(std::string(65, '[') + std::string(65, ']')).at("detail").get<std::string>(),
                HasSubstr("deeper than 64"));
    std::string objects;
    for (int i = 0; i < 100000; ++i) {
        objects += "{\"a\":";
    }
    EXPECT_THAT(refusalOf(objects).at("detail").get<std::string>(), HasSubstr("deeper than 64"));
}

TEST(StrictJson, ATextCutAtAnyByteIsRefused) {
    const std::string text = R"({"parameters":[{"key":"brightness","value":-60.5e1}],"record":true,"x":null})";
    ASSERT_THAT(refusalOf(text), IsEmpty());
    for (std::size_t length = 0; length < text.size(); ++length) {
        EXPECT_EQ(refusalOf(text.substr(0, length)).value("status", 0), 400) << text.substr(0, length);
    }
}

TEST(StrictJson, ALongTextIsQuotedUpToAWholeLetter) {
    std::string umlauts;
    for (int i = 0; i < 100; ++i) {
        umlauts += "ü";
    }
    const std::string quoted = quotedText("x" + umlauts);
    EXPECT_LT(quoted.size(), 100U);
    EXPECT_NO_THROW(json(quoted).dump());
    EXPECT_THAT(quoted, HasSubstr("..."));
    EXPECT_EQ(quotedText("a\nb"), "\"a\\x0Ab\"");
}

// One object and what is wrong with it.
class Fields {
public:
    explicit Fields(const std::string& p_strText) : m_objValue(json::parse(p_strText)) {}
    FieldReader reader() { return FieldReader(m_objValue, "", vecErrors); }
    std::vector<std::string> pointers() const {
        std::vector<std::string> vecPointers;
        for (const FieldError& error : vecErrors) {
            vecPointers.push_back(error.strPointer);
        }
        return vecPointers;
    }
    FieldErrors vecErrors;

private:
    json m_objValue;
};

TEST(FieldReader, OnlyWholeNumbersInTheirRangeAreTaken) {
    Fields good(R"({"a":-2147483648,"b":2147483647,"c":0})");
    FieldReader reader = good.reader();
    EXPECT_EQ(reader.integer("a"), INT32_MIN);
    EXPECT_EQ(reader.integer("b"), INT32_MAX);
    EXPECT_EQ(reader.integer("c", 0, 0), 0);
    EXPECT_EQ(reader.integer("absent"), std::nullopt);
    EXPECT_THAT(good.vecErrors, IsEmpty());
    for (const char* value : {"2147483648", "-2147483649", "9223372036854775808", "18446744073709551615",
                              "99999999999999999999999", "1.5", "1.0", "1e2", "\"1\"", "true", "null", "[]", "{}"}) {
        Fields bad("{\"a\":" + std::string(value) + "}");
        EXPECT_EQ(bad.reader().integer("a"), std::nullopt) << value;
        EXPECT_THAT(bad.pointers(), ElementsAre("/a")) << value;
        EXPECT_THAT(bad.vecErrors.at(0).strDetail, HasSubstr("-2147483648 to 2147483647")) << value;
    }
}

TEST(FieldReader, AKeyIsANumberOrAName) {
    for (const char* value :
         {"34", "\"34\"", "\"0x22\"", "\"brightness\"", "\"KEY_BRIGHTNESS\"", "\"key_Brightness\""}) {
        Fields good("{\"key\":" + std::string(value) + "}");
        EXPECT_EQ(good.reader().key("key"), 34U) << value;
        EXPECT_THAT(good.vecErrors, IsEmpty()) << value;
    }
    for (const char* value : {"-1", "1.5", "2147483648", "\"\"", "\"-1\"", "null", "[34]", "true"}) {
        Fields bad("{\"key\":" + std::string(value) + "}");
        EXPECT_EQ(bad.reader().key("key"), std::nullopt) << value;
        EXPECT_THAT(bad.pointers(), ElementsAre("/key")) << value;
    }
    Fields near(R"({"key":"brigthness"})");
    EXPECT_EQ(near.reader().key("key"), std::nullopt);
    EXPECT_THAT(near.vecErrors.at(0).strDetail, HasSubstr("did you mean \"brightness\"?"));
}

TEST(FieldReader, ATimeOfTheDayHasTwoDigitsEach) {
    Fields good(R"({"a":"08:30","b":"24:00","c":"99:59"})");
    FieldReader reader = good.reader();
    EXPECT_EQ(reader.minute("a"), 510);
    EXPECT_EQ(reader.minute("b"), 1440);
    EXPECT_EQ(reader.minute("c"), 99 * 60 + 59);
    EXPECT_THAT(good.vecErrors, IsEmpty());
    for (const char* value : {"\"8:30\"", "\"08:60\"", "\"0830\"", "\"08-30\"", "\"08:3\"", "\"08:300\"", "\"\"", "510",
                              "\"-8:30\"", "\" 8:30\""}) {
        Fields bad("{\"a\":" + std::string(value) + "}");
        EXPECT_EQ(bad.reader().minute("a"), std::nullopt) << value;
        EXPECT_THAT(bad.pointers(), ElementsAre("/a")) << value;
    }
}

TEST(FieldReader, WhatIsUnknownIsRefusedWithTheNearest) {
    Fields fields(R"({"valeu":1,"other":2,"value":3})");
    FieldReader reader = fields.reader();
    reader.integer("value");
    reader.flag("record");
    reader.refuseUnknown();
    ASSERT_THAT(fields.pointers(), ElementsAre("/other", "/valeu"));
    EXPECT_THAT(fields.vecErrors[0].strDetail, HasSubstr("there are \"value\", \"record\""));
    EXPECT_THAT(fields.vecErrors[1].strDetail, HasSubstr("did you mean \"value\"?"));
}

TEST(FieldReader, AllThatIsWrongIsToldTogetherUpToABound) {
    std::string text = "{";
    for (int i = 0; i < 100; ++i) {
        text += (0 == i ? "\"x" : ",\"x") + std::to_string(i) + "\":1";
    }
    Fields fields(text + "}");
    FieldReader reader = fields.reader();
    reader.need("name");
    reader.refuseUnknown();
    EXPECT_EQ(fields.vecErrors.size(), 20U);
    EXPECT_EQ(fields.pointers().front(), "/name");
}

// A list of long names that are none would keep a thread busy for seconds.
TEST(FieldReader, NamesAreNotLookedUpOnceEnoughIsWrong) {
    std::string text = "{\"good\":\"brightness\"";
    for (int i = 0; i < 20; ++i) {
        text += ",\"x" + std::to_string(i) + "\":\"brightnes\"";
    }
    Fields fields(text + "}");
    FieldReader reader = fields.reader();
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(reader.key("good"), 34U) << i;
        EXPECT_EQ(reader.key("x" + std::to_string(i)), std::nullopt) << i;
    }
    EXPECT_EQ(fields.vecErrors.size(), 20U);
    EXPECT_EQ(reader.key("good"), std::nullopt);
}

TEST(FieldReader, ItemsOfAListHaveTheirPlace) {
    Fields fields(R"({"list":[{"a":1},7,{"a":"x"}]})");
    FieldReader reader = fields.reader();
    std::vector<FieldReader> items = reader.list("list", 3);
    ASSERT_EQ(items.size(), 2U);
    EXPECT_EQ(items[0].integer("a"), 1);
    EXPECT_EQ(items[1].integer("a"), std::nullopt);
    EXPECT_THAT(fields.pointers(), ElementsAre("/list/1", "/list/2/a"));
    for (const char* value : {"[]", "[{},{},{},{}]", "{}", "null", "1"}) {
        Fields bad("{\"list\":" + std::string(value) + "}");
        EXPECT_THAT(bad.reader().list("list", 3), testing::SizeIs(0)) << value;
        EXPECT_THAT(bad.pointers(), ElementsAre("/list")) << value;
    }
}

HttpRequest requestWith(const std::string& p_strType, const std::string& p_strBody) {
    HttpRequest request;
    request.mapHeaders.emplace("content-type", p_strType);
    request.strBody = p_strBody;
    return request;
}

TEST(BodyReader, OnlyJsonInUtf8IsTaken) {
    for (const char* type : {"application/json", "Application/JSON", "application/json; charset=utf-8",
                             "application/json;charset=\"UTF-8\""}) {
        EXPECT_THAT(problemOf([&] { BodyReader objBody(requestWith(type, "{}")); }), IsEmpty()) << type;
    }
    for (const char* type : {"", "text/plain", "application/json5", "application/jsonx", "multipart/form-data",
                             "application/x-www-form-urlencoded", "application/json; charset=latin1"}) {
        EXPECT_EQ(problemOf([&] { BodyReader objBody(requestWith(type, "{}")); }).value("status", 0), 415) << type;
    }
}

TEST(BodyReader, ABodyMustBeThereAndAnObject) {
    EXPECT_EQ(problemOf([] { BodyReader objBody(requestWith("application/json", "")); }).value("status", 0), 400);
    for (const char* body : {"[]", "1", "\"x\"", "null", "true"}) {
        const json problem = problemOf([&] { BodyReader objBody(requestWith("application/json", body)); });
        EXPECT_EQ(problem.value("status", 0), 422) << body;
        EXPECT_EQ(problem.at("errors").at(0).at("pointer"), "") << body;
    }
}

}  // namespace
}  // namespace camerad
