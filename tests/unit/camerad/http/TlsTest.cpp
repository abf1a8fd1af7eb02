// The server over TLS, with a certificate that each test makes for itself.
#include "tests/unit/camerad/http/HttpSupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <httplib.h>
#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/ssl.h>
#include <openssl/x509.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <thread>

namespace {

using camerad::Router;
using camerad::Server;
using camerad::ServerSettings;
using testing::HasSubstr;

// Key and certificate in files of the test's folder, removed at the end.
class KeyPair {
public:
    KeyPair() : m_strFolder((std::filesystem::current_path() / "tls-XXXXXX").string()) {
        if (nullptr == mkdtemp(m_strFolder.data())) {
            throw std::runtime_error("cannot make a folder");
        }
        constexpr long kYear = 365L * 24 * 3600;
        const std::unique_ptr<EVP_PKEY, void (*)(EVP_PKEY*)> key(EVP_EC_gen("P-256"), EVP_PKEY_free);
        const std::unique_ptr<X509, void (*)(X509*)> certificate(X509_new(), X509_free);
        ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), 1);
        X509_gmtime_adj(X509_getm_notBefore(certificate.get()), 0);
        X509_gmtime_adj(X509_getm_notAfter(certificate.get()), kYear);
        X509_set_pubkey(certificate.get(), key.get());
        X509_NAME* const name = X509_get_subject_name(certificate.get());
        X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC, reinterpret_cast<const unsigned char*>("localhost"), -1,
                                   -1, 0);
        X509_set_issuer_name(certificate.get(), name);
        X509_sign(certificate.get(), key.get(), EVP_sha256());
        std::FILE* const keyFile = std::fopen(privateKey().c_str(), "w");
        PEM_write_PrivateKey(keyFile, key.get(), nullptr, nullptr, 0, nullptr, nullptr);
        std::fclose(keyFile);
        std::FILE* const certificateFile = std::fopen(this->certificate().c_str(), "w");
        PEM_write_X509(certificateFile, certificate.get());
        std::fclose(certificateFile);
    }
    ~KeyPair() {
        std::error_code ignored;
        std::filesystem::remove_all(m_strFolder, ignored);
    }
    KeyPair(const KeyPair&) = delete;
    KeyPair& operator=(const KeyPair&) = delete;

    std::string certificate() const { return m_strFolder + "/certificate.pem"; }
    std::string privateKey() const { return m_strFolder + "/key.pem"; }
    ServerSettings settings() const {
        ServerSettings settings;
        settings.strCertificate = certificate();
        settings.strPrivateKey = privateKey();
        return settings;
    }

private:
    std::string m_strFolder;
};

void trustAnybody(httplib::SSLClient& p_objClient) {
    p_objClient.enable_server_certificate_verification(false);
}

TEST(HttpTls, AnswersAndSaysToStayWithIt) {
    const KeyPair keys;
    TestServer server(keys.settings());
    EXPECT_EQ(server.server().url(), "https://127.0.0.1:" + std::to_string(server.port()) + "/");
    httplib::SSLClient client("127.0.0.1", server.port());
    trustAnybody(client);
    client.set_keep_alive(true);
    for (int i = 0; i < 3; ++i) {
        const auto answer = client.Get("/whoami");
        ASSERT_TRUE(answer) << httplib::to_string(answer.error());
        EXPECT_EQ(answer->body, "@127.0.0.1 secure");
        EXPECT_EQ(answer->get_header_value("Strict-Transport-Security"), "max-age=31536000");
    }
    const auto big = client.Get("/big");
    ASSERT_TRUE(big);
    EXPECT_EQ(big->body.size(), 4U * 1024 * 1024);
    const auto echo = client.Post("/echo", std::string(1000, 'e'), "text/plain");
    ASSERT_TRUE(echo);
    EXPECT_EQ(echo->body.size(), 1000U);
}

TEST(HttpTls, OldVersionsAreRefused) {
    const KeyPair keys;
    const TestServer server(keys.settings());
    httplib::SSLClient client("127.0.0.1", server.port());
    trustAnybody(client);
    SSL_CTX_set_max_proto_version(client.ssl_context(), TLS1_1_VERSION);
    EXPECT_FALSE(client.Get("/hello"));
    httplib::SSLClient newer("127.0.0.1", server.port());
    trustAnybody(newer);
    SSL_CTX_set_max_proto_version(newer.ssl_context(), TLS1_2_VERSION);
    EXPECT_TRUE(newer.Get("/hello"));
}

TEST(HttpTls, PlainHttpIsToldSo) {
    const KeyPair keys;
    const TestServer server(keys.settings());
    const RawAnswer answer = server.get("/hello");
    EXPECT_EQ(answer.nStatus, 400);
    EXPECT_EQ(answer.problem(), "https-needed");
}

TEST(HttpTls, GarbageInTheHandshakeEndsTheConnection) {
    const KeyPair keys;
    const TestServer server(keys.settings());
    for (const std::string& garbage : {std::string("\x16\x03\x01\xFF\xFF garbage that is no handshake"),
                                       std::string("\x16\x03\x01\x00\x05\x01\x00\x00\x01\x00", 10),
                                       std::string(1000, '\x16'), std::string("\x16")}) {
        RawClient client(server.port());
        client.send(garbage);
        client.endSending();
        EXPECT_TRUE(client.isClosedByServer());
    }
    httplib::SSLClient client("127.0.0.1", server.port());
    trustAnybody(client);
    EXPECT_TRUE(client.Get("/hello"));
}

TEST(HttpTls, AHandshakeHasItsTime) {
    const KeyPair keys;
    ServerSettings settings = keys.settings();
    settings.nHandshakeTime = std::chrono::milliseconds(150);
    const TestServer server(settings);
    const RawClient silent(server.port());
    const RawClient slow(server.port());
    slow.send("\x16\x03\x01");
    EXPECT_TRUE(silent.isClosedByServer());
    EXPECT_TRUE(slow.isClosedByServer());
    EXPECT_TRUE(eventually([&server] { return 2U == server.counters().nTimeouts; }));
}

TEST(HttpTls, ConnectionsTooManyAreClosed) {
    const KeyPair keys;
    ServerSettings settings = keys.settings();
    settings.nConnections = 1;
    const TestServer server(settings);
    const RawClient first(server.port());
    EXPECT_TRUE(eventually([&server] { return 1U == server.counters().nConnections; }));
    const RawClient second(server.port());
    EXPECT_TRUE(second.isClosedByServer());
}

TEST(HttpTls, StopsInTheMiddle) {
    const KeyPair keys;
    TestServer server(keys.settings(), [](Router& p_objRouter) {
        p_objRouter.add({"GET", "/stream", camerad::Access::Everybody, 0, [](const camerad::HttpRequest&) {
                             camerad::HttpResponse response;
                             response.fnStream = [](camerad::HttpSink& p_objSink) {
                                 while (p_objSink.write(std::string(50000, 's'))) {
                                 }
                             };
                             return response;
                         }});
    });
    const RawClient inHandshake(server.port());
    inHandshake.send("\x16\x03\x01");
    std::atomic<bool> began{false};
    std::thread viewer([&server, &began] {
        httplib::SSLClient client("127.0.0.1", server.port());
        trustAnybody(client);
        client.Get("/stream", [&began](const char*, std::size_t) {
            began = true;
            return true;
        });
    });
    EXPECT_TRUE(eventually([&began] { return began.load(); }));
    server.server().stop();
    viewer.join();
    EXPECT_EQ(server.counters().nConnections, 0U);
}

TEST(HttpTls, LeavesNeitherDescriptorsNorThreads) {
    const KeyPair keys;
    const std::size_t descriptors = openDescriptors();
    const std::size_t threads = runningThreads();
    {
        const TestServer server(keys.settings());
        for (int i = 0; i < 5; ++i) {
            httplib::SSLClient client("127.0.0.1", server.port());
            trustAnybody(client);
            EXPECT_TRUE(client.Get("/hello"));
            RawClient(server.port()).send("\x16\x03\x01 garbage");
        }
    }
    EXPECT_EQ(openDescriptors(), descriptors);
    EXPECT_TRUE(eventually([threads] { return runningThreads() <= threads; }));
}

TEST(HttpTls, FilesThatCannotBeUsedAreSaid) {
    const KeyPair keys;
    const KeyPair others;
    const Router router;
    FakeAccess access;
    ServerSettings settings = keys.settings();
    settings.strPrivateKey = others.privateKey();
    EXPECT_THROW(Server::create(settings, router, access), std::runtime_error);
    settings.strPrivateKey = keys.privateKey() + ".missing";
    EXPECT_THROW(Server::create(settings, router, access), std::runtime_error);
    std::ofstream(keys.certificate()) << "no certificate\n";
    EXPECT_THROW(Server::create(keys.settings(), router, access), std::runtime_error);
}

}  // namespace
