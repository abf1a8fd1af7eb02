#include "tests/unit/camerad/access/AccessTest.h"

#include <openssl/bio.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>
#include <unistd.h>

#include <memory>

namespace camerad {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::Not;

constexpr char kCertificate[] = "/mnt/mtd/camerad/certificate.pem";
constexpr char kKey[] = "/mnt/mtd/camerad/key.pem";

class CertificateTest : public AccessTest {
protected:
    static std::string ensure(const std::string& p_strAddress = "192.0.2.7") {
        return ensureCertificate(kCertificate, kKey, p_strAddress);
    }
    static std::string refused() {
        return errorOf([] { ensure(); });
    }
    std::shared_ptr<X509> certificate() const {
        const std::string text = m_objRoot.read(kCertificate);
        const std::shared_ptr<BIO> pText(BIO_new_mem_buf(text.data(), static_cast<int>(text.size())), BIO_free_all);
        return {PEM_read_bio_X509(pText.get(), nullptr, nullptr, nullptr), X509_free};
    }
    // Whether the certificate is good for a name.
    bool isFor(const std::string& p_strName) const {
        return 1 == X509_check_host(certificate().get(), p_strName.c_str(), 0, 0, nullptr) ||
               1 == X509_check_ip_asc(certificate().get(), p_strName.c_str(), 0);
    }
};

TEST_F(CertificateTest, IsMadeOnce) {
    const std::string fingerprint = ensure();
    EXPECT_THAT(fingerprint, MatchesRegex("([0-9A-F]{2}:){31}[0-9A-F]{2}"));
    const std::string text = m_objRoot.read(kCertificate);
    EXPECT_EQ(ensure("192.0.2.8"), fingerprint);
    EXPECT_EQ(m_objRoot.read(kCertificate), text);
    m_objRoot.remove(kCertificate);
    m_objRoot.remove(kKey);
    EXPECT_NE(ensure(), fingerprint);
}

TEST_F(CertificateTest, KeepsItsKeyPrivate) {
    ensure();
    EXPECT_EQ(modeOf(kKey), 0600u);
    EXPECT_EQ(modeOf("/mnt/mtd/camerad"), 0700u);
    EXPECT_THAT(m_objRoot.read(kKey), HasSubstr("BEGIN PRIVATE KEY"));
    EXPECT_THAT(m_objRoot.read(kCertificate), AllOf(HasSubstr("BEGIN CERTIFICATE"), Not(HasSubstr("PRIVATE"))));
}

TEST_F(CertificateTest, IsForTheNamesOfTheCamera) {
    ensure();
    char szName[256] = "";
    ASSERT_EQ(gethostname(szName, sizeof(szName) - 1), 0);
    for (const std::string& name : {std::string("localhost"), std::string("127.0.0.1"), std::string("::1"),
                                    std::string("192.0.2.7"), std::string(szName)}) {
        EXPECT_TRUE(isFor(name)) << name;
    }
    EXPECT_FALSE(isFor("192.0.2.8"));
    EXPECT_FALSE(isFor("evil.example"));
}

TEST_F(CertificateTest, TakesNamesAndAddressesAndNothingElse) {
    struct Row {
        const char* szAddress;
        const char* szFor;  // a name that it is good for
    };
    for (const Row& row :
         {Row{"camera.example", "camera.example"}, Row{"2001:db8::7", "2001:db8::7"}, Row{"0.0.0.0", "127.0.0.1"},
          Row{"::", "::1"}, Row{"127.0.0.1", "127.0.0.1"}, Row{"", "localhost"}, Row{"a,DNS:evil.example", "localhost"},
          Row{"*.example", "localhost"}, Row{"x\nDNS:evil.example", "localhost"}}) {
        m_objRoot.remove(kCertificate);
        m_objRoot.remove(kKey);
        ensure(row.szAddress);
        EXPECT_TRUE(isFor(row.szFor)) << row.szAddress;
        EXPECT_FALSE(isFor("evil.example")) << row.szAddress;
        EXPECT_FALSE(isFor("any.example")) << row.szAddress;
        EXPECT_FALSE(isFor("0.0.0.0")) << row.szAddress;
    }
}

TEST_F(CertificateTest, IsNoAuthorityAndSignedByItself) {
    ensure();
    const std::shared_ptr<X509> pCertificate = certificate();
    ASSERT_NE(pCertificate, nullptr);
    EXPECT_EQ(X509_check_ca(pCertificate.get()), 0);
    EXPECT_EQ(X509_get_version(pCertificate.get()), 2);
    EXPECT_EQ(X509_get_extension_flags(pCertificate.get()) & EXFLAG_CRITICAL, 0u);
    EXPECT_EQ(X509_get_key_usage(pCertificate.get()), static_cast<std::uint32_t>(KU_DIGITAL_SIGNATURE));
    EXPECT_EQ(X509_get_extended_key_usage(pCertificate.get()), static_cast<std::uint32_t>(XKU_SSL_SERVER));
    EVP_PKEY* const pKey = X509_get0_pubkey(pCertificate.get());
    EXPECT_EQ(X509_verify(pCertificate.get(), pKey), 1);
    char szGroup[64] = "";
    EXPECT_EQ(EVP_PKEY_get_group_name(pKey, szGroup, sizeof(szGroup), nullptr), 1);
    EXPECT_STREQ(szGroup, "prime256v1");
}

TEST_F(CertificateTest, LastsTenYears) {
    ensure();
    const std::shared_ptr<X509> pCertificate = certificate();
    EXPECT_LT(X509_cmp_current_time(X509_get0_notBefore(pCertificate.get())), 0);
    int nDays = 0;
    int nSeconds = 0;
    ASSERT_EQ(ASN1_TIME_diff(&nDays, &nSeconds, X509_get0_notBefore(pCertificate.get()),
                             X509_get0_notAfter(pCertificate.get())),
              1);
    EXPECT_EQ(nDays, 3653);
}

TEST_F(CertificateTest, IsRefusedWithoutItsKey) {
    ensure();
    m_objRoot.remove(kKey);
    EXPECT_THAT(refused(), AllOf(HasSubstr("only " + std::string(kCertificate)), HasSubstr(kKey), HasSubstr("move")));
    EXPECT_FALSE(m_objRoot.exists(kKey));
}

TEST_F(CertificateTest, IsNotMadeForAKeyThatIsThere) {
    ensure();
    m_objRoot.remove(kCertificate);
    EXPECT_THAT(refused(), HasSubstr("only " + std::string(kKey)));
    EXPECT_FALSE(m_objRoot.exists(kCertificate));
}

TEST_F(CertificateTest, IsRefusedWithTheKeyOfAnother) {
    ensure();
    const std::string text = m_objRoot.read(kCertificate);
    m_objRoot.remove(kCertificate);
    m_objRoot.remove(kKey);
    ensure();
    m_objRoot.write(kCertificate, text);
    EXPECT_THAT(refused(),
                AllOf(HasSubstr("is not that of the certificate"), HasSubstr(kKey), HasSubstr(kCertificate)));
}

TEST_F(CertificateTest, IsRefusedWhenItIsNone) {
    ensure();
    const std::string text = m_objRoot.read(kCertificate);
    const std::string key = m_objRoot.read(kKey);
    m_objRoot.write(kCertificate, "nonsense");
    EXPECT_THAT(refused(), HasSubstr("no certificate in PEM"));
    m_objRoot.write(kCertificate, text);
    m_objRoot.write(kKey, key.substr(0, key.size() / 2));
    EXPECT_THAT(refused(), AllOf(HasSubstr("no private key in PEM"), Not(HasSubstr(key.substr(30, 20)))));
    m_objRoot.write(kKey, key);
    EXPECT_EQ(refused(), "");
    ASSERT_EQ(chmod(onThisMachine(kKey).c_str(), 0644), 0);
    EXPECT_THAT(refused(), HasSubstr("chmod 600"));
}

}  // namespace
}  // namespace camerad
