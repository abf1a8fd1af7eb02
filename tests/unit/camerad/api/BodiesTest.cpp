// Every route that takes a body, driven by its own example in the description: what is no such body is refused, in words,
// before the camera is asked.
#include "tests/unit/camerad/api/Fakes.h"
#include "tests/unit/camerad/api/Schema.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace camerad {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::IsEmpty;

using Row = DescribedOperation;

std::vector<Row> rowsWithBody() {
    std::vector<Row> vecRows;
    for (const Row& row : describedOperations()) {
        if (!row.objBody.is_null()) {
            vecRows.push_back(row);
        }
    }
    return vecRows;
}

// The patch of a scene is the camera's to judge, and this camera takes everything.
std::vector<Row> rowsWithFields() {
    std::vector<Row> vecRows = rowsWithBody();
    vecRows.erase(std::remove_if(vecRows.begin(), vecRows.end(),
                                 [](const Row& p_stRow) { return "/api/v1/scene" == p_stRow.strTarget; }),
                  vecRows.end());
    return vecRows;
}

std::vector<Row> rowsWithNothingToSay() {
    std::vector<Row> vecRows;
    for (const Row& row : describedOperations()) {
        if ("POST" == row.strMethod && row.objBody.is_null()) {
            vecRows.push_back(row);
        }
    }
    return vecRows;
}

std::vector<Row> rowsOfAChannel() {
    std::vector<Row> vecRows;
    for (const Row& row : describedOperations()) {
        if (std::string::npos != row.strTarget.find("/channels/1")) {
            vecRows.push_back(row);
        }
    }
    return vecRows;
}

std::vector<Row> rowsOfAKey() {
    std::vector<Row> vecRows;
    for (const Row& row : rowsOfAChannel()) {
        if (std::string::npos != row.strTarget.find("brightness")) {
            vecRows.push_back(row);
        }
    }
    return vecRows;
}

class Body : public testing::TestWithParam<Row> {
protected:
    void expectRefused(const std::string& p_strBody, int p_nStatus) {
        const HttpResponse response = m_objCamera.call(GetParam().strMethod, GetParam().strTarget, p_strBody);
        EXPECT_EQ(response.nStatus, p_nStatus) << p_strBody.substr(0, 200) << "\n" << response.strBody;
        EXPECT_THAT(m_objCamera.calls(), IsEmpty()) << p_strBody.substr(0, 200);
    }

    FakeCamera m_objCamera;
};

TEST_P(Body, OfTheDescriptionIsTaken) {
    const HttpResponse response =
        m_objCamera.call(GetParam().strMethod, GetParam().strTarget, GetParam().objBody.dump());
    EXPECT_LT(response.nStatus, 300) << response.strBody;
    EXPECT_THAT(m_objCamera.calls(), testing::Not(IsEmpty()));
}

TEST_P(Body, CutAtAnyByteIsRefused) {
    const std::string body = GetParam().objBody.dump();
    for (std::size_t length = 0; length < body.size(); ++length) {
        expectRefused(body.substr(0, length), 400);
    }
}

TEST_P(Body, OfAnotherKindIsRefused) {
    for (const char* body : {"[]", "null", "1", "\"x\"", "true", "[{}]"}) {
        expectRefused(body, 422);
    }
    for (const char* body : {"NaN", "{}{}", "\xFF", "{\"a\":\"\xC3\x28\"}", "a=1&b=2", "<a/>", "{\"\\ud800\":1}"}) {
        expectRefused(body, 400);
    }
    expectRefused(std::string(4000, '['), 400);
}

TEST_P(Body, WithoutItsContentTypeIsRefused) {
    for (const char* type : {"", "text/plain", "application/x-www-form-urlencoded", "multipart/form-data"}) {
        const HttpResponse response = m_objCamera.call(GetParam().strMethod, GetParam().strTarget,
                                                       GetParam().objBody.dump(), {{"content-type", type}});
        EXPECT_EQ(response.nStatus, 415) << type;
        EXPECT_THAT(response.strBody, HasSubstr("application/json"));
    }
    EXPECT_THAT(m_objCamera.calls(), IsEmpty());
}

class Field : public Body {};

TEST_P(Field, ThatIsUnknownIsRefused) {
    for (const auto& field : GetParam().objBody.items()) {
        json body = GetParam().objBody;
        body[field.key() + "x"] = 1;
        const HttpResponse response = m_objCamera.call(GetParam().strMethod, GetParam().strTarget, body.dump());
        EXPECT_EQ(response.nStatus, 422);
        EXPECT_EQ(json::parse(response.strBody).at("errors").at(0).at("pointer"), "/" + field.key() + "x");
        EXPECT_THAT(json::parse(response.strBody).at("detail").get<std::string>(),
                    HasSubstr("\"" + field.key() + "\""));
    }
    EXPECT_THAT(m_objCamera.calls(), IsEmpty());
}

TEST_P(Body, WithAFieldTwiceIsRefused) {
    for (const auto& field : GetParam().objBody.items()) {
        const std::string pair = json(field.key()).dump() + ":" + field.value().dump();
        expectRefused("{" + pair + "," + pair + "}", 400);
    }
}

TEST_P(Field, OfAnotherTypeIsRefused) {
    // Of each type; what fits a field is left out by the type of its example.
    const std::vector<json> vecValues = {nullptr,
                                         true,
                                         1,
                                         1.5,
                                         -1.0e300,
                                         9223372036854775807,
                                         json::array(),
                                         json::object(),
                                         json::array({1}),
                                         {{"a", 1}},
                                         "\x01 no such word"};
    for (const auto& field : GetParam().objBody.items()) {
        for (const json& value : vecValues) {
            const bool sameType = value.type() == field.value().type() ||
                                  (value.is_number_integer() && field.value().is_number_integer() && 1 == value);
            if (sameType) {
                continue;
            }
            json body = GetParam().objBody;
            body[field.key()] = value;
            expectRefused(body.dump(), 422);
        }
        expectRefused("{" + json(field.key()).dump() + ":1e400}", 400);
        if (field.value().is_number()) {
            json body = GetParam().objBody;
            body[field.key()] = 99999999999;
            expectRefused(body.dump(), 422);
        }
    }
}

std::string nameOf(const testing::TestParamInfo<Row>& p_stInfo) {
    std::string name = p_stInfo.param.strMethod + p_stInfo.param.strTarget;
    for (char& letter : name) {
        const bool fine =
            ('a' <= letter && letter <= 'z') || ('A' <= letter && letter <= 'Z') || ('0' <= letter && letter <= '9');
        letter = fine ? letter : '_';
    }
    return name;
}

INSTANTIATE_TEST_SUITE_P(Every, Body, testing::ValuesIn(rowsWithBody()), nameOf);
INSTANTIATE_TEST_SUITE_P(Every, Field, testing::ValuesIn(rowsWithFields()), nameOf);

class NothingToSay : public Body {};

TEST_P(NothingToSay, TakesNoBodyOrAnEmptyObject) {
    EXPECT_TRUE(GetParam().bEmpty);
    for (const char* body : {"", "{}", " { }\r\n"}) {
        const HttpResponse response = m_objCamera.call(GetParam().strMethod, GetParam().strTarget, body);
        EXPECT_LT(response.nStatus, 300) << body << response.strBody;
        EXPECT_THAT(m_objCamera.calls(), testing::Not(IsEmpty())) << body;
    }
}

TEST_P(NothingToSay, RefusesEverythingElse) {
    for (const char* body : {"{\"a\":1}", "{\"confirm\":\"factory\"}", "[]", "null", "\"\""}) {
        expectRefused(body, 422);
    }
    for (const char* body : {" ", "{", "{}{}", "x"}) {
        expectRefused(body, 400);
    }
    EXPECT_EQ(m_objCamera.call("POST", GetParam().strTarget, "{}", {{"content-type", "text/plain"}}).nStatus, 415);
    EXPECT_THAT(m_objCamera.call("POST", GetParam().strTarget, "{\"a\":1}").strBody, HasSubstr("it takes none"));
    EXPECT_THAT(m_objCamera.calls(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Every, NothingToSay, testing::ValuesIn(rowsWithNothingToSay()), nameOf);

class ChannelRoute : public testing::TestWithParam<Row> {
protected:
    std::string body() const { return GetParam().objBody.is_null() ? "" : GetParam().objBody.dump(); }
    FakeCamera m_objCamera;
};

TEST_P(ChannelRoute, OfAnUnknownChannelSaysWhichThereAre) {
    for (const char* channel : {"0", "3", "01", "-1", "1x", "99999999999999999999", "one", "\xFF"}) {
        std::string target = GetParam().strTarget;
        target.replace(target.find("/channels/1") + 10, 1, channel);
        const HttpResponse response = m_objCamera.call(GetParam().strMethod, target, body());
        EXPECT_EQ(response.nStatus, 404) << target;
        EXPECT_THAT(response.strBody, HasSubstr("this camera has 1, 2"));
    }
    EXPECT_THAT(m_objCamera.calls(), IsEmpty());
}

class KeyRoute : public ChannelRoute {};

TEST_P(KeyRoute, OfAnUnknownKeyNamesTheNearest) {
    std::string target = GetParam().strTarget;
    target.replace(target.find("brightness"), 10, "brigthness");
    const HttpResponse response = m_objCamera.call(GetParam().strMethod, target, body());
    EXPECT_EQ(response.nStatus, 404) << target;
    EXPECT_THAT(response.strBody, HasSubstr("did you mean \\\"brightness\\\"?"));
    EXPECT_THAT(m_objCamera.calls(), IsEmpty());
}

TEST_P(ChannelRoute, PassesEveryRefusalOn) {
    struct Kind {
        Refusal::Kind eKind;
        int nStatus;
    };
    for (const Kind& kind :
         {Kind{Refusal::Kind::NotFound, 404}, Kind{Refusal::Kind::BadValue, 422}, Kind{Refusal::Kind::Refused, 422},
          Kind{Refusal::Kind::Conflict, 409}, Kind{Refusal::Kind::Busy, 409}, Kind{Refusal::Kind::Failed, 500}}) {
        m_objCamera.objHost.objFirst.refusal = Refusal(kind.eKind, "camera-refused", "It cannot be done.");
        const HttpResponse response = m_objCamera.call(GetParam().strMethod, GetParam().strTarget, body());
        if (200 != response.nStatus) {  // what is known already needs no camera
            EXPECT_EQ(response.nStatus, kind.nStatus);
            EXPECT_EQ(json::parse(response.strBody).at("detail"), "It cannot be done.");
        } else {
            EXPECT_EQ(GetParam().strMethod, "GET");
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Every, ChannelRoute, testing::ValuesIn(rowsOfAChannel()), nameOf);
INSTANTIATE_TEST_SUITE_P(Every, KeyRoute, testing::ValuesIn(rowsOfAKey()), nameOf);

}  // namespace
}  // namespace camerad
