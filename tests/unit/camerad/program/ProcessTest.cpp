// The whole program: started, spoken to, ended, started again.
#include "tests/unit/camerad/program/CameraProcess.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstddef>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <future>
#include <iterator>
#include <thread>
#include <utility>
#include <vector>

namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

const std::vector<std::string> kAnyPort = {"--listen", "127.0.0.1:0"};
const char kParameters[] = "/api/v1/channels/1/parameters";

std::vector<std::string> anyPortAnd(std::vector<std::string> p_vecMore) {
    p_vecMore.insert(p_vecMore.end(), kAnyPort.begin(), kAnyPort.end());
    return p_vecMore;
}

TEST(CameradProcess, TellsItsAddressAndItsFirstPasswordAndEndsWhenTold) {
    const CameraTree tree;
    CameraProcess process(tree, anyPortAnd({"--port-file", tree.path() + "/port"}));
    ASSERT_TRUE(process.waitUntilServing()) << process.errors();
    EXPECT_EQ(tree.read("/port"), std::to_string(process.port()) + "\n");
    EXPECT_NE(process.password(), "");
    EXPECT_EQ(jsonOf(process.client("")->Get("/healthz"))["status"], "ok");
    process.signal(SIGTERM);
    EXPECT_EQ(process.finish(), 0) << process.errors();
    EXPECT_THAT(process.lines(), SizeIs(2));
    EXPECT_FALSE(tree.exists("/port"));
    EXPECT_THAT(process.errors(), Not(HasSubstr(process.password())));
}

TEST(CameradProcess, FindsEverythingAgainAfterARestart) {
    const CameraTree tree;
    std::string password;
    {
        CameraProcess process(tree, kAnyPort);
        ASSERT_TRUE(process.waitUntilServing()) << process.errors();
        password = process.password();
        const auto client = process.client(password);
        const json patched =
            jsonOf(client->Patch(kParameters, R"({"parameters":[{"key":34,"value":61}]})", "application/json"));
        EXPECT_EQ(patched["results"][0]["value"], 61) << patched;
        jsonOf(client->Post("/api/v1/channels/1/save"));
        process.signal(SIGINT);
        EXPECT_EQ(process.finish(), 0) << process.errors();
    }
    CameraProcess process(tree, kAnyPort);
    ASSERT_TRUE(process.waitUntilServing()) << process.errors();
    EXPECT_EQ(process.password(), "");
    EXPECT_THAT(process.lines(), SizeIs(1));
    const json value = jsonOf(process.client(password)->Get(std::string(kParameters) + "/brightness"));
    EXPECT_EQ(value["value"], 61) << value;
    EXPECT_EQ(value["unsaved"], false) << value;
    EXPECT_EQ(process.client("wrong " + password)->Get(kParameters)->status, 401);
    process.signal(SIGTERM);
    EXPECT_EQ(process.finish(), 0) << process.errors();
}

TEST(CameradProcess, EndsWhilePeopleWatch) {
    const CameraTree tree;
    CameraProcess process(tree, kAnyPort);
    ASSERT_TRUE(process.waitUntilServing()) << process.errors();
    std::vector<std::thread> viewers;
    std::vector<std::future<void>> beginnings;
    for (const char* const path : {"/api/v1/events", "/api/v1/channels/1/preview.mjpg", "/api/v1/events"}) {
        std::promise<void> begin;
        beginnings.push_back(begin.get_future());
        viewers.emplace_back([&process, path, begin = std::move(begin)]() mutable {
            const auto client = process.client(process.password());
            bool first = true;
            client->Get(path, [&](const char*, std::size_t) {
                if (first) {
                    begin.set_value();
                }
                first = false;
                return true;
            });
        });
    }
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(120);
    for (const std::future<void>& beginning : beginnings) {
        EXPECT_EQ(beginning.wait_until(end), std::future_status::ready);
    }
    process.signal(SIGTERM);
    EXPECT_EQ(process.finish(), 0) << process.errors();  // a status of its own would tell that something hung
    for (std::thread& viewer : viewers) {
        viewer.join();
    }
}

TEST(CameradProcess, EndsWhileACallWaitsInTheDriver) {
    const CameraTree tree;
    CameraProcess process(tree, kAnyPort);
    ASSERT_TRUE(process.waitUntilServing()) << process.errors();
    const auto client = process.client(process.password());
    jsonOf(client->Post("/api/v1/faults", R"({"text":"cmd=34 opt=set delay=3000000000"})", "application/json"), 201);
    std::future<int> status = std::async(std::launch::async, [&process] {
        const auto other = process.client(process.password());
        const auto answer = other->Patch(kParameters, R"({"parameters":[{"key":34,"value":61}]})", "application/json");
        return answer ? answer->status : 0;
    });
    bool matched = false;
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(120);
    while (!matched && std::chrono::steady_clock::now() < end) {
        matched = 0 < jsonOf(client->Get("/api/v1/faults"))["faults"][0]["acted"].get<int>();
    }
    EXPECT_TRUE(matched);
    process.signal(SIGTERM);
    EXPECT_EQ(process.finish(), 0) << process.errors();
    status.wait();
}

TEST(CameradProcess, EndsInTimeWhenItsStartHangs) {
    const CameraTree tree;
    const int writer = open((tree.path() + "/mnt/mtd/code/config_file/snsversion.cfg.new").c_str(),
                            O_WRONLY | O_CREAT | O_CLOEXEC, 0600);  // as if another process wrote it, for ever
    ASSERT_NE(writer, -1);
    ASSERT_EQ(flock(writer, LOCK_EX), 0);
    CameraProcess process(tree, kAnyPort);
    ASSERT_TRUE(process.waitForPassword()) << process.errors();
    process.signal(SIGTERM);
    EXPECT_EQ(process.finish(), 3) << process.errors();
    EXPECT_THAT(process.errors(), HasSubstr("does not return"));
    close(writer);
}

const char kMessage[] = R"("kind":"message")";

// The log, once something that the library has printed stands in it, or after a minute.
std::string logWithMessages(httplib::Client& p_objClient) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    std::string log;
    do {
        log = jsonOf(p_objClient.Get("/api/v1/log?after=0&limit=5000")).dump();
    } while (std::string::npos == log.find(kMessage) && std::chrono::steady_clock::now() < end);
    return log;
}

TEST(CameradProcess, TheLibrarysMessagesAreNoOutputButStandInTheLog) {
    const CameraTree tree;
    CameraProcess process(tree, kAnyPort);
    ASSERT_TRUE(process.waitUntilServing()) << process.errors();
    const auto client = process.client(process.password());
    jsonOf(client->Put("/api/v1/messages/level", R"({"level":8})", "application/json"));
    jsonOf(client->Put(std::string(kParameters) + "/34", R"({"value":62})", "application/json"));
    EXPECT_THAT(logWithMessages(*client), HasSubstr(kMessage));
    process.signal(SIGTERM);
    EXPECT_EQ(process.finish(), 0) << process.errors();
    EXPECT_THAT(process.lines(), SizeIs(2));
}

// What is between two marks of a text.
std::string between(const std::string& p_strText, const std::string& p_strBegin, const std::string& p_strEnd) {
    const std::size_t begin = p_strText.find(p_strBegin);
    if (std::string::npos == begin) {
        return "";
    }
    const std::size_t at = begin + p_strBegin.size();
    return p_strText.substr(at, p_strText.find(p_strEnd, at) - at);
}

// Path and content of everything below a folder.
std::vector<std::pair<std::string, std::string>> filesBelow(const std::string& p_strFolder) {
    std::vector<std::pair<std::string, std::string>> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(p_strFolder)) {
        if (entry.is_regular_file()) {
            std::ifstream file(entry.path(), std::ios::binary);
            files.emplace_back(entry.path().string(), std::string(std::istreambuf_iterator<char>(file), {}));
        }
    }
    return files;
}

TEST(CameradProcess, NoSecretIsLogged) {
    const char kJson[] = "application/json";
    const CameraTree tree;
    CameraProcess process(tree, kAnyPort);
    ASSERT_TRUE(process.waitUntilServing()) << process.errors();
    const std::string first = process.password();
    const std::string wrong = "a wrong password";
    const std::string cut = "a password in half a body";
    const std::string fresh = "the admin's next password";
    const std::string guard = "the guard's own password";
    const std::string stranger = "0123456789abcdef_not-a-token-of-this-camera";
    const auto client = process.client(first);
    jsonOf(client->Put("/api/v1/messages/level", R"({"level":8})", kJson));
    jsonOf(client->Put(std::string(kParameters) + "/34", R"({"value":62})", kJson));

    EXPECT_EQ(client->Post("/api/v1/session", json({{"name", "admin"}, {"password", wrong}}).dump(), kJson)->status,
              401);
    EXPECT_EQ(client->Post("/api/v1/session", R"({"name":"admin","password":")" + cut, kJson)->status, 400);
    EXPECT_EQ(process.client(wrong)->Get(kParameters)->status, 401);
    const auto asBearer = [](const std::string& p_strToken) {
        return httplib::Headers{{"Authorization", "Bearer " + p_strToken}};
    };
    httplib::Client plain("127.0.0.1", process.port());
    plain.set_read_timeout(60);
    EXPECT_EQ(plain.Get(kParameters, asBearer(stranger))->status, 401);

    const auto login = plain.Post("/api/v1/session", json({{"name", "admin"}, {"password", first}}).dump(), kJson);
    const std::string proof = jsonOf(login)["csrf"];
    const std::string cookie = between(login->get_header_value("Set-Cookie"), "camera_session=", ";");
    const httplib::Headers session = {{"Cookie", "camera_session=" + cookie}, {"X-CSRF-Token", proof}};
    jsonOf(plain.Put("/api/v1/accounts/guard", session, json({{"password", guard}, {"role", "viewer"}}).dump(), kJson));
    const std::string token = jsonOf(
        plain.Post("/api/v1/tokens", session, R"({"name":"script","role":"viewer","days":1})", kJson), 201)["token"];
    jsonOf(plain.Get(kParameters, asBearer(token)));
    EXPECT_EQ(
        plain.Put("/api/v1/session/password", session, json({{"old", first}, {"new", fresh}}).dump(), kJson)->status,
        204);

    const auto reader = process.client(fresh);
    std::vector<std::pair<std::string, std::string>> texts = {{"the log", logWithMessages(*reader)},
                                                              {"the metrics", reader->Get("/metrics")->body}};
    EXPECT_THAT(texts[0].second, HasSubstr(kMessage)) << "at this level the library tells everything";
    process.signal(SIGTERM);
    EXPECT_EQ(process.finish(), 0) << process.errors();
    texts.emplace_back("standard error", process.errors());
    std::string output;
    for (const std::string& line : process.lines()) {
        output += std::string::npos == line.find("with the password ") ? line + "\n" : "";
    }
    texts.emplace_back("standard output", output);
    bool hashed = false;
    for (std::pair<std::string, std::string>& file : filesBelow(tree.path())) {
        hashed = hashed || std::string::npos != file.second.find("$y$");
        texts.push_back(std::move(file));
    }
    EXPECT_TRUE(hashed) << "the accounts are among the files";

    std::vector<std::string> secrets = {first,    wrong,  cut,   fresh, guard,
                                        stranger, cookie, proof, token, token.substr(token.find('_') + 1)};
    for (const std::string& password : {first, wrong, fresh}) {
        secrets.push_back(
            httplib::make_basic_authentication_header("admin", password).second.substr(sizeof("Basic ") - 1));
    }
    for (const std::string& secret : secrets) {
        ASSERT_GE(secret.size(), 8u);
        for (const auto& [place, text] : texts) {
            EXPECT_EQ(std::string::npos, text.find(secret)) << secret << " stands in " << place;
        }
    }
}

TEST(CameradProcess, SpeaksTlsWhereOthersReachIt) {
    const CameraTree tree;
    std::string fingerprint;
    std::string password;
    for (int start = 0; start < 2; ++start) {
        CameraProcess process(tree, {"--listen", "0.0.0.0:0"});
        ASSERT_TRUE(process.waitUntilServing()) << process.errors();
        EXPECT_THAT(process.address(), HasSubstr("https://"));
        EXPECT_NE(process.fingerprint(), "");
        if (0 == start) {
            fingerprint = process.fingerprint();
            password = process.password();
        }
        EXPECT_EQ(process.fingerprint(), fingerprint);
        jsonOf(process.client(password)->Get("/api/v1/version"));
        process.signal(SIGTERM);
        EXPECT_EQ(process.finish(), 0) << process.errors();
    }
}

TEST(CameradProcess, PlainHttpForOthersTakesNoPasswordInEachRequest) {
    const CameraTree tree;
    CameraProcess process(tree, {"--listen", "0.0.0.0:0", "--insecure"});
    ASSERT_TRUE(process.waitUntilServing()) << process.errors();
    EXPECT_THAT(process.address(), HasSubstr("http://"));
    EXPECT_EQ(process.fingerprint(), "");
    EXPECT_EQ(process.client(process.password())->Get("/api/v1/version")->status, 401);
}

TEST(CameradProcess, TwoOnOneDeviceRootAreOneTooMany) {
    const CameraTree tree;
    CameraProcess first(tree, kAnyPort);
    ASSERT_TRUE(first.waitUntilServing()) << first.errors();
    CameraProcess second(tree, kAnyPort);
    EXPECT_FALSE(second.waitUntilServing());
    EXPECT_EQ(second.finish(), 1);
    EXPECT_THAT(second.errors(), HasSubstr("another camerad"));
}

TEST(CameradProcess, APortThatIsTakenIsSaid) {
    const CameraTree tree;
    const CameraTree other;
    CameraProcess first(tree, kAnyPort);
    ASSERT_TRUE(first.waitUntilServing()) << first.errors();
    CameraProcess second(other, {"--listen", "127.0.0.1:" + std::to_string(first.port())});
    EXPECT_FALSE(second.waitUntilServing());
    EXPECT_EQ(second.finish(), 1);
    EXPECT_THAT(second.errors(), HasSubstr("cannot listen"));
    EXPECT_NE(second.password(), "");  // it was made, and nobody will ever hear it again
}

TEST(CameradProcess, AFirstPasswordThatCannotBeToldIsSaid) {
    const TestRoot empty;
    CameraProcess process(empty, kAnyPort, "", {}, "/dev/full");
    EXPECT_EQ(process.finish(), 1);
    EXPECT_THAT(process.errors(), HasSubstr("--set-password admin"));
}

TEST(CameradProcess, ADeviceRootWithoutACameraIsSaid) {
    const TestRoot empty;
    CameraProcess process(empty, kAnyPort);
    EXPECT_FALSE(process.waitUntilServing());
    EXPECT_EQ(process.finish(), 1);
    EXPECT_THAT(process.errors(), HasSubstr("camerad: "));
}

TEST(CameradProcess, ANewPasswordIsTakenFromStandardInput) {
    const CameraTree tree;
    CameraProcess unknown(tree, {"--set-password", "nobody"}, "correct horse\n");
    EXPECT_EQ(unknown.finish(), 1);
    EXPECT_THAT(unknown.errors(), HasSubstr("there are: admin"));
    CameraProcess setting(tree, {"--set-password", "admin"}, "correct horse\n");
    EXPECT_EQ(setting.finish(), 0) << setting.errors();
    EXPECT_THAT(setting.lines(), IsEmpty());
    EXPECT_THAT(setting.errors(), Not(HasSubstr("correct horse")));

    CameraProcess process(tree, kAnyPort);
    ASSERT_TRUE(process.waitUntilServing()) << process.errors();
    EXPECT_EQ(process.password(), "");
    jsonOf(process.client("correct horse")->Get("/api/v1/version"));
}

TEST(CameradProcess, WrongUseIsStatusTwo) {
    const CameraTree tree;
    CameraProcess process(tree, {"--listen", "nonsense:port"});
    EXPECT_EQ(process.finish(), 2);
    EXPECT_THAT(process.errors(), HasSubstr("--help"));
}

TEST(CameradProcess, TellsTheServiceManagerHowFarItIs) {
    const CameraTree tree;
    const std::string name = "@camerad-process-" + std::to_string(getpid());
    const int manager = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path + 1, name.data() + 1, name.size() - 1);
    ASSERT_EQ(bind(manager, reinterpret_cast<sockaddr*>(&address),
                   static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size())),
              0);
    const timeval patience{60, 0};
    setsockopt(manager, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof(patience));
    const auto hear = [manager] {
        char bytes[64];
        const ssize_t got = recv(manager, bytes, sizeof(bytes), 0);
        return std::string(bytes, got > 0 ? static_cast<std::size_t>(got) : 0);
    };
    CameraProcess process(tree, kAnyPort, "", {{"NOTIFY_SOCKET", name}});
    EXPECT_EQ(hear(), "READY=1");
    process.signal(SIGTERM);
    EXPECT_EQ(hear(), "STOPPING=1");
    EXPECT_EQ(process.finish(), 0) << process.errors();
    close(manager);
}

}  // namespace
