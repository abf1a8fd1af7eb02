// Who is there: sessions, accounts, tokens.
#include "apps/camerad/api/Call.h"
#include "apps/camerad/api/StrictJson.h"
#include "apps/camerad/http/Status.h"

#include <algorithm>

namespace camerad {

namespace {

using nlohmann::json;

constexpr std::size_t kMostNameBytes = 256;  // the rules themselves are the access control's, and say more
constexpr std::size_t kMostPasswordBytes = 1024;
constexpr int kMostDays = 3650;
const char kCookie[] = "camera_session";

json viewOf(const AccountView& p_stView) {
    return {{"name", p_stView.strName}, {"role", roleName(p_stView.eRole)}};
}

json viewOf(const TokenView& p_stView) {
    json view = {{"id", p_stView.strId}, {"name", p_stView.strName}, {"role", roleName(p_stView.eRole)}};
    if (!p_stView.strExpires.empty()) {
        view["expires"] = p_stView.strExpires;
    }
    return view;
}

const char* wordOf(Identity::Via p_eVia) {
    switch (p_eVia) {
        case Identity::Via::Cookie:
            return "cookie";
        case Identity::Via::Basic:
            return "basic";
        case Identity::Via::Bearer:
            return "bearer";
        case Identity::Via::Nothing:
            break;
    }
    return "nothing";
}

std::optional<Role> roleOf(FieldReader& p_objFields) {
    const std::optional<std::string> word = p_objFields.word("role", {"viewer", "admin"});
    return word ? std::optional<Role>("admin" == *word ? Role::Admin : Role::Viewer) : std::nullopt;
}

std::string cookieText(const std::string& p_strValue, bool p_bSecure) {
    return std::string(kCookie) + "=" + p_strValue + "; HttpOnly; SameSite=Strict; Path=/" +
           (p_strValue.empty() ? "; Max-Age=0" : "") + (p_bSecure ? "; Secure" : "");
}

HttpResponse login(Api& p_stApi, const HttpRequest& p_stRequest) {
    BodyReader objBody(p_stRequest);
    FieldReader& fields = objBody.fields();
    fields.need("name");
    fields.need("password");
    const std::optional<std::string> name = fields.text("name", kMostNameBytes);
    const std::optional<std::string> password = fields.text("password", kMostPasswordBytes);
    objBody.finish();

    const AccessControl::Session session = p_stApi.objAccess.login(*name, *password, p_stRequest.strRemote);
    HttpResponse response = jsonAnswer({{"name", session.stIdentity.strName},
                                        {"role", roleName(session.stIdentity.eRole)},
                                        {"csrf", session.strProof}});
    response.vecHeaders.emplace_back("Set-Cookie", cookieText(session.strCookie, p_stRequest.bSecure));
    return response;
}

HttpResponse whoAmI(Api& p_stApi, const HttpRequest& p_stRequest) {
    const Identity& identity = p_stRequest.stIdentity;
    json view = {{"name", identity.strName}, {"role", roleName(identity.eRole)}, {"via", wordOf(identity.eVia)}};
    const std::string proof = p_stApi.objAccess.proofOf(identity);
    if (!proof.empty()) {
        view["csrf"] = proof;
    }
    return jsonAnswer(view);
}

HttpResponse logout(Api& p_stApi, const HttpRequest& p_stRequest) {
    p_stApi.objAccess.logout(p_stRequest.stIdentity);
    HttpResponse response = noContent();
    response.vecHeaders.emplace_back("Set-Cookie", cookieText("", p_stRequest.bSecure));
    return response;
}

HttpResponse changePassword(Api& p_stApi, const HttpRequest& p_stRequest) {
    BodyReader objBody(p_stRequest);
    FieldReader& fields = objBody.fields();
    fields.need("old");
    fields.need("new");
    const std::optional<std::string> old = fields.text("old", kMostPasswordBytes);
    const std::optional<std::string> wanted = fields.text("new", kMostPasswordBytes);
    objBody.finish();
    p_stApi.objAccess.changePassword(p_stRequest.stIdentity, *old, *wanted);
    return noContent();
}

HttpResponse putAccount(Api& p_stApi, const HttpRequest& p_stRequest) {
    const std::string& name = p_stRequest.mapPath.at("name");
    const std::vector<AccountView> vecAccounts = p_stApi.objAccess.accounts();
    const auto found = std::find_if(vecAccounts.begin(), vecAccounts.end(),
                                    [&name](const AccountView& p_stAccount) { return p_stAccount.strName == name; });
    const bool isNew = vecAccounts.end() == found;

    BodyReader objBody(p_stRequest);
    FieldReader& fields = objBody.fields();
    const std::optional<std::string> password = fields.text("password", kMostPasswordBytes);
    const std::optional<Role> role = roleOf(fields);
    if (isNew) {
        fields.need("password");
    } else {
        fields.needAny();
    }
    if (password && password->empty()) {
        fields.wrong("password", "A password must not be empty; leave the field out to keep the old one.");
    }
    objBody.finish();
    const Role eRole = role ? *role : (isNew ? Role::Viewer : found->eRole);
    p_stApi.objAccess.putAccount(name, password.value_or(""), eRole);
    return jsonAnswer(viewOf(AccountView{name, eRole}));
}

HttpResponse makeToken(Api& p_stApi, const HttpRequest& p_stRequest) {
    BodyReader objBody(p_stRequest);
    FieldReader& fields = objBody.fields();
    fields.need("name");
    fields.need("role");
    const std::optional<std::string> name = fields.text("name", kMostNameBytes);
    const std::optional<Role> role = roleOf(fields);
    const std::optional<int> days = fields.integer("days", 1, kMostDays);
    objBody.finish();
    const auto [token, secret] = p_stApi.objAccess.makeToken(*name, *role, days.value_or(0));
    json view = viewOf(token);
    view["token"] = secret;
    return jsonAnswer(view, kCreated);
}

template <typename View>
json listOf(const std::vector<View>& p_vecViews) {
    json list = json::array();
    for (const View& view : p_vecViews) {
        list.push_back(viewOf(view));
    }
    return list;
}

}  // namespace

void addSessionRoutes(Router& p_objRouter, Api& p_stApi) {
    Route loginRoute;
    loginRoute.strMethod = "POST";
    loginRoute.strPattern = "/api/v1/session";
    loginRoute.eAccess = Access::Everybody;
    loginRoute.nBodyLimit = kSmallBody;
    loginRoute.bNeedsProof = false;
    loginRoute.fnHandler = [&p_stApi](const HttpRequest& p_stRequest) {
        try {
            return login(p_stApi, p_stRequest);
        } catch (const ProblemAnswer& problem) {
            return problem.response();
        }
    };
    p_objRouter.add(std::move(loginRoute));

    const auto add = [&](const char* p_szMethod, const char* p_szPattern, Access p_eAccess, std::size_t p_nBody,
                         HttpResponse (*p_pHandler)(Api&, const HttpRequest&)) {
        addRoute(p_objRouter, p_szMethod, p_szPattern, p_eAccess, p_nBody,
                 [&p_stApi, p_pHandler](const HttpRequest& p_stRequest) { return p_pHandler(p_stApi, p_stRequest); });
    };
    add("GET", "/api/v1/session", Access::Viewer, kNoBody, whoAmI);
    add("DELETE", "/api/v1/session", Access::Viewer, kNoBody, logout);
    add("PUT", "/api/v1/session/password", Access::Viewer, kSmallBody, changePassword);
    add("GET", "/api/v1/accounts", Access::Admin, kNoBody, [](Api& p_stOwn, const HttpRequest&) {
        return jsonAnswer({{"accounts", listOf(p_stOwn.objAccess.accounts())}});
    });
    add("PUT", "/api/v1/accounts/{name}", Access::Admin, kSmallBody, putAccount);
    add("DELETE", "/api/v1/accounts/{name}", Access::Admin, kNoBody, [](Api& p_stOwn, const HttpRequest& p_stRequest) {
        p_stOwn.objAccess.removeAccount(p_stRequest.mapPath.at("name"));
        return noContent();
    });
    add("GET", "/api/v1/tokens", Access::Admin, kNoBody, [](Api& p_stOwn, const HttpRequest&) {
        return jsonAnswer({{"tokens", listOf(p_stOwn.objAccess.tokens())}});
    });
    add("POST", "/api/v1/tokens", Access::Admin, kSmallBody, makeToken);
    add("DELETE", "/api/v1/tokens/{id}", Access::Admin, kNoBody, [](Api& p_stOwn, const HttpRequest& p_stRequest) {
        p_stOwn.objAccess.removeToken(p_stRequest.mapPath.at("id"));
        return noContent();
    });
}

}  // namespace camerad
