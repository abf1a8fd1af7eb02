// openapi.json says what the routes do, and nothing else.
#include "apps/camerad/api/DescriptionPage.h"
#include "tests/unit/camerad/api/Fakes.h"
#include "tests/unit/camerad/api/Schema.h"

#include <gmock/gmock.h>

#include <set>

namespace camerad {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

std::string upper(std::string p_strWord) {
    for (char& letter : p_strWord) {
        letter = 'a' <= letter && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
    }
    return p_strWord;
}

// "GET /path role" of each.
std::set<std::string> describedRoutes() {
    std::set<std::string> setRoutes;
    for (const auto& path : description().at("paths").items()) {
        for (const auto& operation : path.value().items()) {
            setRoutes.insert(upper(operation.key()) + " " + path.key() + " " +
                             operation.value().at("x-role").get<std::string>());
        }
    }
    return setRoutes;
}

std::set<std::string> servedRoutes() {
    const FakeCamera camera;
    std::set<std::string> setRoutes;
    for (const Route& route : camera.objRouter.routes()) {
        const char* const role = Access::Everybody == route.eAccess ? "public"
                                 : Access::Viewer == route.eAccess  ? "viewer"
                                                                    : "admin";
        setRoutes.insert(route.strMethod + " " + route.strPattern + " " + role);
    }
    return setRoutes;
}

// Every value of that name anywhere in the document.
void collect(const json& p_objValue, const std::string& p_strName, std::vector<json>& p_vecFound) {
    if (p_objValue.is_object() && p_objValue.contains(p_strName)) {
        p_vecFound.push_back(p_objValue.at(p_strName));
    }
    for (const json& part : p_objValue) {
        if (part.is_structured()) {
            collect(part, p_strName, p_vecFound);
        }
    }
}

template <typename Code>
void forEachOperation(Code&& p_fnDo) {
    for (const auto& path : description().at("paths").items()) {
        for (const auto& operation : path.value().items()) {
            p_fnDo(upper(operation.key()), path.key(), operation.value());
        }
    }
}

TEST(Description, HasTheRoutesOfTheRouterAndTheirRoles) {
    EXPECT_THAT(describedRoutes(), testing::ContainerEq(servedRoutes()));
}

TEST(Description, EveryReferenceLeadsSomewhereAndEverySchemaIsUsed) {
    std::vector<json> vecReferences;
    collect(description(), "$ref", vecReferences);
    std::set<std::string> setUsed;
    for (const json& reference : vecReferences) {
        EXPECT_TRUE(description().contains(json::json_pointer(reference.get<std::string>().substr(1)))) << reference;
        setUsed.insert(reference.get<std::string>());
    }
    for (const char* kind : {"schemas", "responses", "requestBodies", "parameters"}) {
        for (const auto& part : description().at("components").at(kind).items()) {
            const std::string place = std::string("#/components/") + kind + "/" + part.key();
            // The shapes of the events are for the reader of a stream, which has no schema of its own.
            EXPECT_TRUE(1 == setUsed.count(place) || "Events" == part.key()) << place << " is used nowhere";
        }
    }
}

TEST(Description, EveryOperationHasItsOwnNameATagAndAnswers) {
    std::set<std::string> setNames;
    std::set<std::string> setTags;
    for (const json& tag : description().at("tags")) {
        setTags.insert(tag.at("name").get<std::string>());
    }
    forEachOperation([&](const std::string&, const std::string& p_strPath, const json& p_objOperation) {
        EXPECT_TRUE(setNames.insert(p_objOperation.at("operationId").get<std::string>()).second) << p_strPath;
        EXPECT_EQ(setTags.count(p_objOperation.at("tags").at(0).get<std::string>()), 1U) << p_strPath;
        EXPECT_FALSE(p_objOperation.at("summary").get<std::string>().empty()) << p_strPath;
        EXPECT_TRUE(p_objOperation.at("responses").contains("default")) << p_strPath;
    });
}

TEST(Description, EveryPartOfAPathIsAParameter) {
    forEachOperation([](const std::string& p_strMethod, const std::string& p_strPath, const json& p_objOperation) {
        std::set<std::string> setDescribed;
        for (const json& reference : p_objOperation.value("parameters", json::array())) {
            const json& parameter = resolved(reference);
            if ("path" == parameter.at("in")) {
                EXPECT_TRUE(parameter.at("required").get<bool>());
                setDescribed.insert("{" + parameter.at("name").get<std::string>() + "}");
            }
        }
        std::set<std::string> setWanted;
        for (std::size_t at = p_strPath.find('{'); std::string::npos != at; at = p_strPath.find('{', at + 1)) {
            setWanted.insert(p_strPath.substr(at, p_strPath.find('}', at) - at + 1));
        }
        EXPECT_EQ(setDescribed, setWanted) << p_strMethod << " " << p_strPath;
    });
}

TEST(Description, WhatChangesSomethingWithACookieNeedsTheProof) {
    forEachOperation([](const std::string& p_strMethod, const std::string& p_strPath, const json& p_objOperation) {
        const json& security = p_objOperation.at("security");
        if ("public" == p_objOperation.at("x-role")) {
            EXPECT_THAT(security, IsEmpty()) << p_strPath;
        } else {
            ASSERT_EQ(security.size(), 3U) << p_strPath;
            EXPECT_EQ(security.at(0).contains("csrf"), "GET" != p_strMethod) << p_strMethod << " " << p_strPath;
        }
    });
}

TEST(Description, ExamplesFitTheirSchemas) {
    std::size_t examples = 0;
    const auto check = [&](const std::string& p_strPlace, const json& p_objHolder) {
        for (const json& media : p_objHolder.value("content", json::object())) {
            if (media.contains("example")) {
                ++examples;
                EXPECT_THAT(schemaErrors(media.at("schema"), media.at("example")), IsEmpty()) << p_strPlace;
            }
        }
    };
    forEachOperation([&](const std::string& p_strMethod, const std::string& p_strPath, const json& p_objOperation) {
        check(p_strMethod + " " + p_strPath + " body", resolved(p_objOperation.value("requestBody", json::object())));
        for (const auto& answer : p_objOperation.at("responses").items()) {
            check(p_strMethod + " " + p_strPath + " " + answer.key(), resolved(answer.value()));
        }
    });
    EXPECT_GT(examples, 60U);
}

TEST(Description, EverySchemaIsUnderstoodByTheseTests) {
    for (const auto& schema : description().at("components").at("schemas").items()) {
        for (const json& value : {json(), json::object(), json::array(), json("x"), json(1), json(1.5), json(true)}) {
            for (const std::string& error : schemaErrors(schema.value(), value)) {
                EXPECT_THAT(error, Not(HasSubstr("not understood"))) << schema.key();
            }
        }
    }
}

TEST(Description, AFieldThatIsNotDescribedIsFound) {
    const json schema = {{"$ref", "#/components/schemas/DayNight"}};
    EXPECT_THAT(schemaErrors(schema, {{"state", "day"}}), IsEmpty());
    EXPECT_THAT(schemaErrors(schema, {{"state", "day"}, {"more", 1}}),
                ElementsAre(HasSubstr("/more: is not described")));
    EXPECT_THAT(schemaErrors(schema, {{"state", "dusk"}}), ElementsAre(HasSubstr("is none of")));
    EXPECT_THAT(schemaErrors(schema, json::object()), ElementsAre(HasSubstr("has no \"state\"")));
    EXPECT_THAT(schemaErrors(schema, {{"state", 1}}), testing::SizeIs(2));
    EXPECT_THAT(schemaErrors({{"type", "integer"}, {"maximum", 3}}, 4), ElementsAre(HasSubstr("beyond")));
    EXPECT_THAT(schemaErrors({{"oneOf", {{{"type", "integer"}}, {{"type", "number"}}}}}, 4), testing::SizeIs(1));
    EXPECT_THAT(schemaErrors({{"unheard", 1}}, 4), ElementsAre(HasSubstr("not understood")));
}

TEST(Description, IsServedAsItIsWritten) {
    FakeCamera camera;
    EXPECT_EQ(json::parse(camera.call("GET", "/api/v1/openapi.json").strBody), description());
}

TEST(DescriptionPage, ShowsEveryRouteAndEverySchema) {
    FakeCamera camera;
    const HttpResponse response = camera.call("GET", "/api");
    EXPECT_EQ(response.strType, "text/html; charset=utf-8");
    forEachOperation([&](const std::string& p_strMethod, const std::string& p_strPath, const json&) {
        EXPECT_THAT(response.strBody, HasSubstr("<b>" + p_strMethod + "</b> " + p_strPath + "<"));
    });
    for (const auto& schema : description().at("components").at("schemas").items()) {
        EXPECT_THAT(response.strBody, HasSubstr("id=\"schema-" + schema.key() + "\""));
    }
}

TEST(DescriptionPage, NeedsNothingButItsOwnStyle) {
    FakeCamera camera;
    const std::string page = camera.call("GET", "/api").strBody;
    for (const char* unwanted : {"<script", " style=", "<style", "http://", "https://"}) {
        EXPECT_THAT(page, Not(HasSubstr(unwanted)));
    }
    EXPECT_THAT(page, HasSubstr("href=\"/api/description.css\""));
    EXPECT_THAT(camera.call("GET", "/api").vecHeaders,
                ElementsAre(testing::Pair("Content-Security-Policy", HasSubstr("style-src 'self'"))));
    EXPECT_THAT(camera.call("GET", "/api/description.css").strBody, Not(HasSubstr("url(")));
}

TEST(DescriptionPage, EscapesWhatTheDocumentSays) {
    json document = description();
    document["info"]["summary"] = "<b>&\"x\"</b>";
    EXPECT_THAT(descriptionPage(document), HasSubstr("&lt;b&gt;&amp;&quot;x&quot;&lt;/b&gt;"));
}

}  // namespace
}  // namespace camerad
