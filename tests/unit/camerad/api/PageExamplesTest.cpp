// The examples of docs/http-api.md, played against a camera: each request that stands there is answered as a reader
// expects it.
#include "tests/unit/camerad/api/Stack.h"

#include <gmock/gmock.h>

#include <fstream>
#include <regex>
#include <sstream>

namespace {

using nlohmann::json;

struct Example {
    std::string strLine;
    std::string strMethod;
    std::string strTarget;
    std::string strBody;
};

std::string firstMatch(const std::string& p_strText, const std::string& p_strPattern) {
    std::smatch match;
    return std::regex_search(p_strText, match, std::regex(p_strPattern)) ? match[1].str() : "";
}

// Every line of the page that is a call of curl.
std::vector<Example> examples() {
    std::ifstream stream(HTTP_API_PAGE);
    std::vector<Example> vecExamples;
    for (std::string line; std::getline(stream, line);) {
        if (0 == line.compare(0, 9, "    curl ")) {
            Example example;
            example.strLine = line;
            example.strTarget = firstMatch(line, "\\$camera(/[^ \"]*)");
            example.strBody = firstMatch(line, "-d '([^']*)'");
            example.strMethod = firstMatch(line, "-X ([A-Z]+)");
            if (example.strMethod.empty()) {
                example.strMethod = example.strBody.empty() ? "GET" : "POST";
            }
            vecExamples.push_back(example);
        }
    }
    return vecExamples;
}

TEST(PageOfTheInterface, EveryExampleWorks) {
    Stack stack;
    const auto admin = stack.admin();
    const json token = admin->json("POST", "/api/v1/tokens", R"({"name":"page","role":"admin"})");
    StackClient script(stack.port());
    script.header("Authorization", "Bearer " + token.at("token").get<std::string>());

    const std::vector<Example> vecExamples = examples();
    EXPECT_GT(vecExamples.size(), 20U);
    for (Example example : vecExamples) {
        SCOPED_TRACE(example.strLine);
        ASSERT_FALSE(example.strTarget.empty());
        if (std::string::npos != example.strTarget.find("/tokens/ID")) {
            const json other = admin->json("POST", "/api/v1/tokens", R"({"name":"other","role":"viewer"})");
            example.strTarget = "/api/v1/tokens/" + other.at("id").get<std::string>();
        }
        if ("/api/v1/session" == example.strTarget && "POST" == example.strMethod) {
            json body = json::parse(example.strBody);
            ASSERT_EQ(body.at("password"), "PASSWORD");
            body["password"] = stack.password();
            example.strBody = body.dump();
        }
        const bool isEvents = std::string::npos != example.strTarget.find("/events");
        if (isEvents || std::string::npos != example.strTarget.find("/preview.mjpg")) {
            const StackStream stream(stack.port(), example.strTarget, script.headers(),
                                     [](const char*, std::size_t) {});
            EXPECT_TRUE(eventually([&] { return stream.bytes() > 20; }));
            continue;
        }
        if ("/api/v1/session" == example.strTarget && "DELETE" == example.strMethod) {
            StackClient page(stack.port());
            page.login("admin", stack.password());
            EXPECT_EQ(page.call("DELETE", example.strTarget).status, 204);
            continue;
        }
        const httplib::Response response = script.call(example.strMethod, example.strTarget, example.strBody);
        EXPECT_LT(response.status, 300) << response.body;
        EXPECT_GE(response.status, 200);
    }
}

}  // namespace
