// Every operation that changes something, asked of the whole of camerad with the example of the description.
#include "tests/unit/camerad/api/Schema.h"
#include "tests/unit/camerad/api/Stack.h"

#include <gtest/gtest.h>

namespace {

using nlohmann::json;

// Statuses of the description that are no refusal.
std::vector<int> goodStatuses(const DescribedOperation& p_stOperation) {
    std::vector<int> vecStatuses;
    for (const auto& response :
         operationOf(p_stOperation.strMethod, p_stOperation.strPattern)->at("responses").items()) {
        if ('2' == response.key()[0]) {
            vecStatuses.push_back(std::stoi(response.key()));
        }
    }
    return vecStatuses;
}

// Brings the camera into a state in which each operation can do what its example says.
class Writing {
public:
    Writing() {
        const auto first = m_objStack.admin();
        first->json("PUT", "/api/v1/accounts/boss", R"({"password":"upper floor","role":"admin"})");
        m_objBoss.login("boss", "upper floor");
        // The lens moves with the clock.
        m_objBoss.json("PUT", "/api/v1/clock", R"({"simulated":true,"speed":60})");
    }

    httplib::Response ask(DescribedOperation p_stOperation) {
        const std::string operation = p_stOperation.strMethod + " " + p_stOperation.strPattern;
        const std::string body = p_stOperation.objBody.is_null() ? "" : p_stOperation.objBody.dump();
        if ("POST /api/v1/session" == operation || "PUT /api/v1/session/password" == operation ||
            "DELETE /api/v1/session" == operation) {
            // "admin" has the password of the examples, whatever it was changed to before.
            m_objBoss.json("PUT", "/api/v1/accounts/admin", R"({"password":"correct horse","role":"admin"})");
            StackClient admin(m_objStack.port());
            if ("POST" != p_stOperation.strMethod) {
                admin.login("admin", "correct horse");
            }
            return admin.call(p_stOperation.strMethod, p_stOperation.strTarget, body);
        }
        if ("DELETE /api/v1/accounts/{name}" == operation) {
            m_objBoss.json("PUT", p_stOperation.strTarget, R"({"password":"not for long","role":"viewer"})");
        }
        if ("DELETE /api/v1/tokens/{id}" == operation) {
            p_stOperation.strTarget = "/api/v1/tokens/" + made("/api/v1/tokens", R"({"name":"n","role":"viewer"})");
        }
        if ("DELETE /api/v1/faults/{id}" == operation) {
            p_stOperation.strTarget = "/api/v1/faults/" + made("/api/v1/faults", R"({"text":"cmd=4711 silent=1"})");
        }
        if (std::string::npos != operation.find("/lens")) {
            // A lens that moves takes no other order.
            const std::string lens = p_stOperation.strTarget.substr(0, p_stOperation.strTarget.find("/lens") + 5);
            EXPECT_TRUE(eventually([&] { return false == m_objBoss.json("GET", lens).at("moving"); }));
        }
        return m_objBoss.call(p_stOperation.strMethod, p_stOperation.strTarget, body);
    }

private:
    // The id of a thing that is made there.
    std::string made(const std::string& p_strPath, const std::string& p_strBody) {
        const json id = m_objBoss.json("POST", p_strPath, p_strBody).at("id");
        return id.is_string() ? id.get<std::string>() : id.dump();
    }

    Stack m_objStack;
    StackClient m_objBoss{m_objStack.port()};
};

TEST(CameraOverHttp, EveryWriteOfTheDescriptionIsAnsweredAsItSays) {
    Writing writing;
    std::size_t asked = 0;
    for (const DescribedOperation& operation : describedOperations()) {
        if ("GET" == operation.strMethod) {
            continue;
        }
        const std::vector<int> vecGood = goodStatuses(operation);
        ASSERT_EQ(vecGood.size(), 1U) << testing::PrintToString(operation);
        // The client holds type and body against the description of that status.
        const httplib::Response response = writing.ask(operation);
        EXPECT_EQ(response.status, vecGood[0]) << testing::PrintToString(operation) << ": " << response.body;
        ++asked;
    }
    EXPECT_GT(asked, 30U);
}

}  // namespace
