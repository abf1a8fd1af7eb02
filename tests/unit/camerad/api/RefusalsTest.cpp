// Every type of problem document: how it comes about, its status, and words in it that help.
#include "apps/camerad/access/PasswordGate.h"
#include "apps/camerad/host/Style.h"
#include "apps/camerad/host/Worker.h"
#include "apps/camerad/http/Problem.h"
#include "apps/camerad/page/Page.h"
#include "tests/unit/camerad/api/Schema.h"
#include "tests/unit/camerad/api/Stack.h"

#include <gmock/gmock.h>

#include <future>
#include <set>
#include <thread>

namespace {

using camerad::AccessControl;
using camerad::HttpResponse;
using camerad::Identity;
using camerad::Refusal;
using camerad::Role;
using camerad::ServerSettings;
using nlohmann::json;
using testing::HasSubstr;

const std::string kFirst = "/api/v1/channels/1";

struct Answer {
    int nStatus = 0;
    std::string strBody;
};

Answer answerOf(const HttpResponse& p_stResponse) {
    return {p_stResponse.nStatus, p_stResponse.strBody};
}

// What a room refuses, as the server would answer it.
Answer refused(const std::function<void()>& p_fnCode) {
    return answerOf(camerad::problemResponse(refusalOf(p_fnCode)));
}

// An access control of its own, with few attempts and a clock that the test moves.
class Door {
public:
    Door() {
        static int nDoors = 0;
        stSettings.strFile = "/mnt/mtd/camerad/door" + std::to_string(++nDoors) + ".json";
        stSettings.nPasswordCost = 1;
        stSettings.fnNow = [this] {
            if (fnAtNow) {
                fnAtNow();
            }
            return tNow;
        };
        stSettings.fnDate = [this] { return tDate; };
        pAccess = AccessControl::open(stSettings);
        pAccess->putAccount("anna", "annas password", Role::Viewer);
    }

    Answer identify(const std::string& p_strAuthorization) const {
        camerad::HttpRequest request;
        request.strMethod = "GET";
        request.strRemote = "192.0.2.7";
        request.mapHeaders.emplace("authorization", p_strAuthorization);
        return refused([&] { pAccess->identify(request); });
    }

    camerad::AccessSettings stSettings;
    std::function<void()> fnAtNow;
    std::chrono::steady_clock::time_point tNow{std::chrono::hours(1000)};
    std::chrono::system_clock::time_point tDate{std::chrono::seconds(1800000000)};
    std::unique_ptr<AccessControl> pAccess;
};

// A camera, somebody who may do everything, and ways to ask.
class Bench {
public:
    Bench() : m_pAdmin(m_objStack.admin()) {}

    Stack& stack() { return m_objStack; }

    Answer ask(const std::string& p_strMethod, const std::string& p_strTarget, const std::string& p_strBody = "") {
        const httplib::Response response = m_pAdmin->call(p_strMethod, p_strTarget, p_strBody);
        return {response.status, response.body};
    }

    // By somebody else, or in another way.
    Answer askWith(const httplib::Headers& p_mapHeaders, const std::string& p_strMethod, const std::string& p_strTarget,
                   const std::string& p_strBody = "") {
        StackClient client(m_objStack.port());
        for (const auto& [name, value] : p_mapHeaders) {
            client.header(name, value);
        }
        const httplib::Response response = client.call(p_strMethod, p_strTarget, p_strBody);
        return {response.status, response.body};
    }
    Answer adminWith(const std::string& p_strName, const std::string& p_strValue, const std::string& p_strMethod,
                     const std::string& p_strTarget, const std::string& p_strBody) {
        httplib::Headers headers = m_pAdmin->headers();
        headers.erase(p_strName);
        headers.emplace(p_strName, p_strValue);
        return askWith(headers, p_strMethod, p_strTarget, p_strBody);
    }
    httplib::Headers token(const char* p_szRole) {
        const json made = m_pAdmin->json("POST", "/api/v1/tokens", json({{"name", "t"}, {"role", p_szRole}}).dump());
        return {{"Authorization", "Bearer " + made.at("token").get<std::string>()}};
    }

    // These bytes to this server; the server closes.
    static Answer raw(int p_nPort, const std::string& p_strBytes) {
        const StackSocket socket(p_nPort);
        socket.send(p_strBytes);
        const std::string answer = socket.readToEnd();
        const std::size_t body = answer.find("\r\n\r\n");
        const bool good = 0 == answer.rfind("HTTP/1.", 0) && std::string::npos != body;
        return good ? Answer{std::stoi(answer.substr(9)), answer.substr(body + 4)} : Answer{0, answer};
    }
    Answer raw(const std::string& p_strBytes) { return raw(m_objStack.port(), p_strBytes); }
    Answer get(const std::string& p_strPath, const std::string& p_strFields = "") {
        return raw(head("GET", p_strPath, p_strFields));
    }
    // Anybody may ask this.
    Answer post(const std::string& p_strFields, const std::string& p_strBody = "") {
        return raw(head("POST", "/api/v1/session", p_strFields) + p_strBody);
    }
    static std::string head(const std::string& p_strMethod, const std::string& p_strPath,
                            const std::string& p_strFields) {
        return p_strMethod + " " + p_strPath + " HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n" + p_strFields +
               "\r\n";
    }

    // Another server for the same camera.
    std::unique_ptr<camerad::Server> server(const ServerSettings& p_stSettings) {
        auto server = camerad::Server::create(p_stSettings, m_objStack.router(), m_objStack.access());
        server->start();
        return server;
    }

private:
    Stack m_objStack;
    std::unique_ptr<StackClient> m_pAdmin;
};

struct Row {
    const char* szType;
    int nStatus;
    const char* szWords;  // of the detail, that help
    std::function<Answer(Bench&)> fnProvoke;
};

// --- Who gets in ---

// Somebody takes the account away while its password is being changed.
Answer accountChanged() {
    Door door;
    Answer answer;
    for (int i = 0; i < 100 && std::string::npos == answer.strBody.find("account-changed"); ++i) {
        door.tNow += std::chrono::hours(1);
        door.pAccess->putAccount("berta", "bertas password", Role::Viewer);
        std::promise<void> begun;
        bool told = false;
        door.fnAtNow = [&] {
            if (!told) {
                begun.set_value();
            }
            told = true;
        };
        std::thread other([&] {
            begun.get_future().wait();
            door.pAccess->removeAccount("berta");
        });
        answer = refused([&] {
            door.pAccess->changePassword({"berta", Role::Viewer, Identity::Via::Cookie, ""}, "bertas password",
                                         "another password");
        });
        other.join();
        door.fnAtNow = nullptr;
    }
    return answer;
}

Answer slowedLogin() {
    Door door;
    Answer answer;
    for (int i = 0; i < 6; ++i) {
        answer = refused([&] { door.pAccess->login("anna", "a wrong password", "192.0.2.7"); });
    }
    return answer;
}

Answer expiredToken() {
    Door door;
    const std::string token = door.pAccess->makeToken("script", Role::Viewer, 1).second;
    door.tDate += std::chrono::hours(48);
    return door.identify("Bearer " + token);
}

std::vector<Row> rowsOfLogins() {
    return {
        {"login-needed", 401, "Log in first", [](Bench& b) { return b.askWith({}, "GET", "/api/v1/session"); }},
        {"bad-credentials", 401, "case-sensitive",
         [](Bench& b) { return b.askWith({}, "POST", "/api/v1/session", R"({"name":"admin","password":"no"})"); }},
        {"session-over", 401, "log in again",
         [](Bench& b) {
             return b.askWith({{"Cookie", "camera_session=gone"}}, "GET", "/api/v1/session");
         }},
        {"ambiguous-session", 401, "delete the cookies",
         [](Bench& b) {
             return b.askWith({{"Cookie", "camera_session=a; camera_session=b"}}, "GET", "/api/v1/session");
         }},
        {"bad-authorization", 401, "Basic and Bearer are",
         [](Bench& b) {
             return b.askWith({{"Authorization", "Digest x"}}, "GET", "/api/v1/session");
         }},
        {"bad-token", 401, "An admin can make a new one",
         [](Bench& b) {
             return b.askWith({{"Authorization", "Bearer unknown"}}, "GET", "/api/v1/session");
         }},
        {"basic-not-taken", 401, "use https", [](Bench&) { return Door().identify("Basic YW5uYTp4"); }},
        {"token-expired", 401, "an admin can make a new one", [](Bench&) { return expiredToken(); }},
        {"login-slowed", 429, "and try again", [](Bench&) { return slowedLogin(); }},
        {"too-many-logins", 429, "try again in a few seconds",
         [](Bench&) {
             camerad::PasswordGate gate(0, 0, std::chrono::milliseconds(0));
             return refused([&] { const camerad::PasswordGate::Turn turn(gate); });
         }},
        {"admin-needed", 403, "it takes the role \"admin\"",
         [](Bench& b) { return b.askWith(b.token("viewer"), "POST", kFirst + "/save"); }},
        {"proof-needed", 403, "GET /api/v1/session tells it",
         [](Bench& b) { return b.adminWith("X-CSRF-Token", "guessed", "POST", kFirst + "/save", ""); }},
        {"foreign-origin", 403, "only the camera's own page",
         [](Bench& b) { return b.adminWith("Sec-Fetch-Site", "cross-site", "POST", kFirst + "/save", ""); }},
    };
}

std::vector<Row> rowsOfAccounts() {
    return {
        {"no-password", 403, "log in with the account",
         [](Bench& b) {
             return b.askWith(b.token("admin"), "PUT", "/api/v1/session/password",
                              R"({"old":"some old one","new":"some new one"})");
         }},
        {"wrong-password", 422, "nothing was changed",
         [](Bench& b) { return b.ask("PUT", "/api/v1/session/password", R"({"old":"no","new":"some new one"})"); }},
        {"bad-password", 422, "a few words in a row",
         [](Bench& b) { return b.ask("PUT", "/api/v1/accounts/carl", R"({"password":"x","role":"viewer"})"); }},
        {"bad-name", 422, "a letter from A to Z",
         [](Bench& b) { return b.ask("POST", "/api/v1/tokens", R"({"name":"a b","role":"viewer"})"); }},
        {"bad-role", 422, "\"admin\" or \"viewer\"",
         [](Bench&) { return refused([] { Door().pAccess->putAccount("carl", "", Role::Nobody); }); }},
        {"bad-days", 422, "leave the days out",
         [](Bench&) { return refused([] { Door().pAccess->makeToken("script", Role::Viewer, 5000); }); }},
        {"name-taken", 409, "small and capital letters",
         [](Bench& b) { return b.ask("PUT", "/api/v1/accounts/Admin", R"({"password":"some old one"})"); }},
        {"last-admin", 409, "make another account admin first",
         [](Bench& b) { return b.ask("PUT", "/api/v1/accounts/admin", R"({"role":"viewer"})"); }},
        {"no-such-account", 404, "There is no account \"nobody\"",
         [](Bench& b) { return b.ask("DELETE", "/api/v1/accounts/nobody"); }},
        {"no-such-token", 404, "GET /api/v1/tokens lists them",
         [](Bench& b) { return b.ask("DELETE", "/api/v1/tokens/none"); }},
        {"too-many-accounts", 409, "remove one",
         [](Bench&) {
             const Door door;
             return refused([&] {
                 for (int i = 0; i < 100; ++i) {
                     door.pAccess->putAccount("user" + std::to_string(i), "some password", Role::Viewer);
                 }
             });
         }},
        {"too-many-tokens", 409, "remove one",
         [](Bench&) {
             const Door door;
             return refused([&] {
                 for (int i = 0; i < 200; ++i) {
                     door.pAccess->makeToken("script", Role::Viewer, 0);
                 }
             });
         }},
        {"accounts-not-stored", 500, "still there",
         [](Bench& b) {
             const Door door;
             b.stack().rig().root().makeFolder(door.stSettings.strFile + ".new");
             const Answer answer = refused([&] { door.pAccess->removeAccount("anna"); });
             b.stack().rig().root().remove(door.stSettings.strFile + ".new");
             return answer;
         }},
        {"account-changed", 409, "log in again", [](Bench&) { return accountChanged(); }},
    };
}

// --- Requests as such ---

Answer toOneThatSpeaksTls(Bench& p_objBench) {
    camerad::ensureCertificate("/mnt/mtd/camerad/row.pem", "/mnt/mtd/camerad/row.key", "127.0.0.1");
    ServerSettings settings;
    settings.strCertificate = p_objBench.stack().rig().root().path() + "/mnt/mtd/camerad/row.pem";
    settings.strPrivateKey = p_objBench.stack().rig().root().path() + "/mnt/mtd/camerad/row.key";
    const auto server = p_objBench.server(settings);
    return Bench::raw(server->port(), Bench::head("GET", "/healthz", ""));
}

Answer tooSlow(Bench& p_objBench) {
    ServerSettings settings;
    settings.nHeaderTime = std::chrono::milliseconds(20);
    const auto server = p_objBench.server(settings);
    return Bench::raw(server->port(), "GET /healthz HT");
}

Answer oneConnectionTooMany(Bench& p_objBench) {
    ServerSettings settings;
    settings.nConnections = 1;
    const auto server = p_objBench.server(settings);
    const StackSocket first(server->port());
    EXPECT_TRUE(eventually([&] { return 1 == server->counters().nConnections; }));
    return Bench::raw(server->port(), Bench::head("GET", "/healthz", ""));
}

Answer oneStreamTooMany(Bench& p_objBench) {
    ServerSettings settings;
    settings.nStreams = 0;
    const auto server = p_objBench.server(settings);
    const std::string authorization = p_objBench.token("viewer").begin()->second;
    return Bench::raw(server->port(), Bench::head("GET", "/api/v1/events", "Authorization: " + authorization + "\r\n"));
}

// A handler that fails in a way that nobody has foreseen.
Answer failed(Bench& p_objBench) {
    camerad::Router router;
    camerad::Route route;
    route.strMethod = "GET";
    route.strPattern = "/broken";
    route.eAccess = camerad::Access::Everybody;
    route.fnHandler = [](const camerad::HttpRequest&) -> HttpResponse { throw std::runtime_error("inside"); };
    router.add(route);
    ServerSettings settings;
    settings.fnLog = [](const std::string&) {};
    const auto server = camerad::Server::create(settings, router, p_objBench.stack().access());
    server->start();
    return Bench::raw(server->port(), Bench::head("GET", "/broken", ""));
}

std::vector<Row> rowsOfRequests() {
    return {
        {"bad-request", 400, "method, address, version", [](Bench& b) { return b.raw("GET\r\n\r\n"); }},
        {"bad-target", 400, "two hexadecimal digits", [](Bench& b) { return b.get("/%zz"); }},
        {"bad-host", 400, "no Host header", [](Bench& b) { return b.raw("GET / HTTP/1.1\r\n\r\n"); }},
        {"bad-header", 400, "is there twice",
         [](Bench& b) { return b.get("/", "Content-Type: a/b\r\nContent-Type: c/d\r\n"); }},
        {"bad-length", 400, "not a number of bytes", [](Bench& b) { return b.post("Content-Length: x\r\n"); }},
        {"bad-body", 400, "hexadecimal number",
         [](Bench& b) { return b.post("Transfer-Encoding: chunked\r\n", "zz\r\n"); }},
        {"bad-encoding", 415, "without Content-Encoding",
         [](Bench& b) { return b.post("Content-Length: 2\r\nContent-Encoding: gzip\r\n", "{}"); }},
        {"bad-expectation", 417, "100-continue", [](Bench& b) { return b.get("/", "Expect: a-miracle\r\n"); }},
        {"no-such-encoding", 501, "chunked", [](Bench& b) { return b.post("Transfer-Encoding: gzip\r\n"); }},
        {"no-such-version", 505, "HTTP/1.1",
         [](Bench& b) { return b.raw("GET / HTTP/9.9\r\nHost: localhost\r\n\r\n"); }},
        {"no-such-method", 405, "this path takes", [](Bench& b) { return b.raw(Bench::head("PUT", "/healthz", "")); }},
        {"no-such-path", 404, "see /api", [](Bench& b) { return b.get("/nowhere"); }},
        {"not-this-host", 421, "use its address",
         [](Bench& b) { return b.raw("GET / HTTP/1.1\r\nHost: example.com\r\nConnection: close\r\n\r\n"); }},
        {"path-too-long", 414, "longer than 512 bytes", [](Bench& b) { return b.get("/" + std::string(600, 'a')); }},
        {"header-too-large", 431, "bytes taken here",
         [](Bench& b) { return b.get("/", "X-Long: " + std::string(20000, 'a') + "\r\n"); }},
        {"too-large", 413, "bytes taken here", [](Bench& b) { return b.post("Content-Length: 999999\r\n"); }},
        {"too-slow", 408, "took too long", tooSlow},
        {"too-many-connections", 503, "try again later", oneConnectionTooMany},
        {"too-many-streams", 503, "close one", oneStreamTooMany},
        {"https-needed", 400, "begins with https", toOneThatSpeaksTls},
        {"failed", 500, "its log says why", failed},
        {"not-acceptable", 406, "plain or packed",
         [](Bench&) {
             camerad::HttpRequest request;
             request.mapHeaders.emplace("accept-encoding", "br, identity;q=0");
             return answerOf(camerad::servePageFile(camerad::pageFiles().front(), request));
         }},
        {"malformed-json", 400, "from byte",
         [](Bench& b) { return b.ask("PUT", kFirst + "/parameters/34", R"({"value":)"); }},
        {"wrong-content-type", 415, "application/json", [](Bench& b) { return b.post("Content-Length: 2\r\n", "{}"); }},
        {"bad-client-id", 400, "up to 40 letters",
         [](Bench& b) { return b.adminWith("X-Client-Id", "not one", "POST", kFirst + "/save", ""); }},
    };
}

// --- What is not there ---

std::vector<Row> rowsOfUnknownThings() {
    return {
        {"not-found", 404, "whole number from 1", [](Bench& b) { return b.ask("DELETE", "/api/v1/faults/x"); }},
        {"unknown-channel", 404, "this camera has 1", [](Bench& b) { return b.ask("GET", "/api/v1/channels/9"); }},
        {"unknown-parameter", 404, "did you mean \"brightness\"?",
         [](Bench& b) { return b.ask("GET", kFirst + "/parameters/brigthness"); }},
        {"unknown-action", 404, "did you mean \"zoom-in\"?",
         [](Bench& b) { return b.ask("POST", kFirst + "/lens/zoom-inn"); }},
        {"no-such-channel", 404, "it has 1",
         [](Bench& b) { return refused([&] { b.stack().rig().host().channel(9); }); }},
        {"no-such-action", 404, "did you mean \"zoom-in\"?",
         [](Bench& b) { return refused([&] { b.stack().rig().channel().lensAction("zoom-inn", kAnna); }); }},
        {"no-such-scheme", 404, "has the schemes 0 to 3",
         [](Bench& b) { return refused([&] { b.stack().rig().channel().setScheme(9, kAnna); }); }},
        {"no-such-parameter", 404, "channel 1 has no parameter",
         [](Bench& b) { return b.ask("PUT", kFirst + "/parameters/9004", R"({"value":1})"); }},
        {"no-such-command", 404, "on channel 1",
         [](Bench& b) { return b.ask("GET", kFirst + "/commands/99999/status"); }},
        {"no-such-fault", 404, "there is no fault 77", [](Bench& b) { return b.ask("DELETE", "/api/v1/faults/77"); }},
        {"no-picture", 404, "Channel 1 has no picture",
         [](Bench& b) {
             Stack& stack = b.stack();
             std::map<int, std::unique_ptr<camerad::PictureFeed>> mapNone;
             camerad::Api api{stack.rig().host(), stack.rig().events(), stack.access(), mapNone, nullptr, "1.1.0"};
             camerad::Router router;
             camerad::addRoutes(router, api);
             const camerad::Router::Found found = router.find("GET", kFirst + "/snapshot.jpg");
             camerad::HttpRequest request;
             request.mapPath = found.mapPath;
             return refused([&] { found.pRoute->fnHandler(request); });
         }},
    };
}

// --- What the camera does not do ---

const char kStyle[] = "/hd1/moduleConfig/sensorConfig/style/Style.xml";

// A camera whose style document is another one before it starts.
Answer withStyle(const std::function<std::string(std::string)>& p_fnChanged, const std::function<void(Rig&)>& p_fnDo) {
    Rig rig;
    rig.root().write(kStyle, p_fnChanged(rig.root().read(kStyle)));
    rig.start();
    return refused([&] { p_fnDo(rig); });
}

std::string withoutSchedule(std::string p_strStyle) {
    const std::string key = "id=\"8000\"";
    return p_strStyle.replace(p_strStyle.find(key), key.size(), "id=\"8010\"");
}

Answer refusedByTheDriver(Bench& p_objBench) {
    p_objBench.ask("POST", "/api/v1/faults", R"({"text":"cmd=34 opt=set result=-5"})");
    Answer answer = p_objBench.ask("PUT", kFirst + "/parameters/34", R"({"value":61})");
    p_objBench.ask("DELETE", "/api/v1/faults");
    return answer;
}

Answer oneFaultTooMany(Bench& p_objBench) {
    Answer answer = refused([&] {
        for (int i = 0; i < 100; ++i) {
            p_objBench.stack().rig().host().addFault("cmd=4711 silent=1", kAnna);
        }
    });
    p_objBench.ask("DELETE", "/api/v1/faults");
    return answer;
}

Answer failsAtReset() {
    Rig rig;
    rig.start();
    rig.root().remove(kStyle);
    return refused([&] { rig.channel().reset(kAnna); });
}

Answer notKept() {
    Rig rig;
    rig.start();
    rig.root().makeFolder("/mnt/mtd/camerad/settings.json");
    return refused([&] { rig.channel().setAutomatic(true, kAnna); });
}

Answer internalFailure() {
    using namespace std::chrono_literals;
    camerad::Worker worker(
        {4, 5ms, "channel 1"}, [] {}, [](const std::string&) {});
    return refused([&] {
        worker.run([] { throw std::runtime_error("broken"); },
                   camerad::Worker::Clock::now() + std::chrono::seconds(30));
    });
}

Answer busyPicture(Bench& p_objBench) {
    Rig& rig = p_objBench.stack().rig();
    const auto feed = camerad::PictureFeed::create(rig.camera(), 1, false, {});
    feed->close();
    return refused([&] { feed->snapshot(std::chrono::milliseconds(0)); });
}

std::vector<Row> rowsOfTheCamera() {
    return {
        {"bad-value", 422, "takes 0 to 100",
         [](Bench& b) { return b.ask("PUT", kFirst + "/parameters/34", R"({"value":101})"); }},
        {"camera-refused", 422, "stays in force", refusedByTheDriver},
        {"not-readable", 422, "can be set and not read back",
         [](Bench& b) { return b.ask("GET", kFirst + "/parameters/2497"); }},
        {"busy", 409, "try again when it is up", busyPicture},
        {"no-default", 409, "is in no scheme",
         [](Bench& b) { return b.ask("POST", kFirst + "/parameters/1616/default"); }},
        {"not-recorded", 409, "nothing to send again",
         [](Bench& b) { return b.ask("POST", kFirst + "/parameters/1616/restore"); }},
        {"without-effect", 409, "under the light type in force",
         [](Bench& b) {
             b.ask("PUT", kFirst + "/parameters/224", R"({"value":2})");
             const int before = b.stack().rig().value(161);
             return b.ask("PUT", kFirst + "/parameters/161", json({{"value", 1 == before ? 2 : 1}}).dump());
         }},
        {"window-not-storable", 409, "start before it ends",
         [](Bench& b) {
             return b.ask("PATCH", kFirst + "/schemes/1", R"({"window":{"start":"21:00","end":"20:00"}})");
         }},
        {"no-schedule", 409, "no schemes that could switch",
         [](Bench&) { return withStyle(withoutSchedule, [](Rig& r) { r.channel().setFollow("schedule", kAnna); }); }},
        {"too-many-faults", 409, "remove one first", oneFaultTooMany},
        {"not-kept", 500, "not after a restart", [](Bench&) { return notKept(); }},
        {"not-ready", 500, "channel 1 is not ready",
         [](Bench&) { return withStyle([](const std::string&) { return ""; }, [](Rig& r) { r.channel().values(); }); }},
        {"reset-failed", 500, "did not come to its end", [](Bench&) { return failsAtReset(); }},
        {"internal", 500, "broken", [](Bench&) { return internalFailure(); }},
        {"style-document", 500, "style document",
         [](Bench&) { return refused([] { camerad::parseStyleDocument("no document"); }); }},
    };
}

// Nothing that a test can do brings these about.
const std::set<std::string> kNotProvoked = {
    "scene",                // each value is checked before the scene is given it
    "password-not-hashed",  // the password library is out of memory
};

TEST(Refusals, EachTypeComesAboutAndHelps) {
    Bench bench;
    std::set<std::string> setSeen = kNotProvoked;
    for (const auto& fnRows : {rowsOfLogins, rowsOfAccounts, rowsOfRequests, rowsOfUnknownThings, rowsOfTheCamera}) {
        for (const Row& row : fnRows()) {
            SCOPED_TRACE(row.szType);
            const Answer answer = row.fnProvoke(bench);
            EXPECT_EQ(answer.nStatus, row.nStatus) << answer.strBody;
            const json problem = json::parse(answer.strBody, nullptr, false);
            ASSERT_TRUE(problem.is_object()) << answer.strBody;
            EXPECT_EQ(problem.at("type"), std::string("/problems/") + row.szType) << answer.strBody;
            EXPECT_THAT(problem.at("detail").get<std::string>(), HasSubstr(row.szWords));
            EXPECT_EQ(problem.at("status"), row.nStatus);
            EXPECT_THAT(schemaErrors(description().at("components").at("schemas").at("Problem"), problem),
                        testing::IsEmpty());
            EXPECT_TRUE(setSeen.insert(row.szType).second) << "there twice";
        }
    }
    std::set<std::string> setDescribed;
    for (const json& type :
         description().at("components").at("schemas").at("Problem").at("properties").at("type").at("enum")) {
        setDescribed.insert(type.get<std::string>().substr(std::string("/problems/").size()));
    }
    EXPECT_THAT(setSeen, testing::ContainerEq(setDescribed));
}

}  // namespace
