// The key pair and the certificate by which a camera shows that it is the same one as the last time.
#include "apps/camerad/access/AccessControl.h"
#include "apps/camerad/access/PrivateFile.h"
#include "apps/camerad/access/Secrets.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <openssl/bio.h>
#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <ctime>
#include <memory>
#include <stdexcept>

namespace camerad {

namespace {

constexpr long kX509Version3 = 2;
constexpr std::size_t kSerialBytes = 16;
constexpr int kDaysValid = 3652;  // ten years
constexpr std::time_t kEarliest =
    1767225600;  // 2026-01-01: a camera whose clock was not set yet makes one that lasts, too
constexpr std::size_t kLongestCommonName = 64;
const char* const kLoopback = "localhost";

struct Free {
    void operator()(BIO* p_pBio) const { BIO_free_all(p_pBio); }
    void operator()(EVP_PKEY* p_pKey) const { EVP_PKEY_free(p_pKey); }
    void operator()(X509* p_pCertificate) const { X509_free(p_pCertificate); }
    void operator()(X509_EXTENSION* p_pExtension) const { X509_EXTENSION_free(p_pExtension); }
    void operator()(BIGNUM* p_pNumber) const { BN_free(p_pNumber); }
};
using Bio = std::unique_ptr<BIO, Free>;
using Key = std::unique_ptr<EVP_PKEY, Free>;
using Certificate = std::unique_ptr<X509, Free>;

void require(bool p_bDone, const char* p_szWhat) {
    if (!p_bDone) {
        ERR_clear_error();
        throw std::runtime_error(std::string("The certificate of this camera cannot be made: ") + p_szWhat +
                                 " failed in the cryptographic library; it may be short of memory");
    }
}

bool isAddress(const std::string& p_strText) {
    unsigned char address[sizeof(in6_addr)];
    return 1 == inet_pton(AF_INET, p_strText.c_str(), address) || 1 == inet_pton(AF_INET6, p_strText.c_str(), address);
}

bool isEveryAddress(const std::string& p_strText) {
    return "0.0.0.0" == p_strText || "::" == p_strText;
}

// A name as certificates take it, without anything that could begin another entry.
bool isHostName(const std::string& p_strText) {
    static const char kLetters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789.-";
    return !p_strText.empty() && p_strText.size() <= 253 && '.' != p_strText[0] && '-' != p_strText[0] &&
           std::string::npos == p_strText.find_first_not_of(kLetters);
}

std::string machineName() {
    char szName[256] = "";
    return 0 == gethostname(szName, sizeof(szName) - 1) && isHostName(szName) ? szName : kLoopback;
}

std::string namesFor(const std::string& p_strAddress) {
    std::string names = std::string("DNS:") + kLoopback + ",IP:127.0.0.1,IP:::1";
    const auto add = [&names](const std::string& p_strName) {
        if (std::string::npos == ("," + names + ",").find("," + p_strName + ",")) {
            names += "," + p_strName;
        }
    };
    add("DNS:" + machineName());
    if (isAddress(p_strAddress)) {
        if (!isEveryAddress(p_strAddress)) {
            add("IP:" + p_strAddress);
        }
    } else if (isHostName(p_strAddress)) {
        add("DNS:" + p_strAddress);
    }
    return names;
}

void addExtension(X509* p_pCertificate, int p_nKind, const std::string& p_strText) {
    X509V3_CTX context;
    X509V3_set_ctx(&context, p_pCertificate, p_pCertificate, nullptr, nullptr, 0);
    X509V3_set_ctx_nodb(&context);
    const std::unique_ptr<X509_EXTENSION, Free> pExtension(
        X509V3_EXT_conf_nid(nullptr, &context, p_nKind, p_strText.c_str()));
    require(nullptr != pExtension && 1 == X509_add_ext(p_pCertificate, pExtension.get(), -1), "an extension");
}

Certificate certificateOf(EVP_PKEY* p_pKey, const std::string& p_strAddress) {
    Certificate pCertificate(X509_new());
    require(nullptr != pCertificate && 1 == X509_set_version(pCertificate.get(), kX509Version3), "the certificate");

    std::string serial = randomBytes(kSerialBytes);
    serial[0] = static_cast<char>((static_cast<unsigned char>(serial[0]) & 0x7Fu) | 0x40u);  // positive, not zero
    const std::unique_ptr<BIGNUM, Free> pSerial(
        BN_bin2bn(reinterpret_cast<const unsigned char*>(serial.data()), static_cast<int>(serial.size()), nullptr));
    require(
        nullptr != pSerial && nullptr != BN_to_ASN1_INTEGER(pSerial.get(), X509_get_serialNumber(pCertificate.get())),
        "the serial number");

    // From yesterday on, for browsers whose clock is behind.
    std::time_t begin = std::max(std::time(nullptr), kEarliest);
    require(nullptr != X509_time_adj_ex(X509_getm_notBefore(pCertificate.get()), -1, 0, &begin) &&
                nullptr != X509_time_adj_ex(X509_getm_notAfter(pCertificate.get()), kDaysValid, 0, &begin),
            "its time");

    const std::string name = ("camerad " + machineName()).substr(0, kLongestCommonName);
    X509_NAME* const pName = X509_get_subject_name(pCertificate.get());  // belongs to the certificate
    require(1 == X509_NAME_add_entry_by_txt(pName, "CN", MBSTRING_ASC,
                                            reinterpret_cast<const unsigned char*>(name.c_str()), -1, -1, 0) &&
                1 == X509_set_issuer_name(pCertificate.get(), pName) &&
                1 == X509_set_pubkey(pCertificate.get(), p_pKey),
            "its name");

    addExtension(pCertificate.get(), NID_basic_constraints, "critical,CA:FALSE");
    addExtension(pCertificate.get(), NID_key_usage, "critical,digitalSignature");
    addExtension(pCertificate.get(), NID_ext_key_usage, "serverAuth");
    addExtension(pCertificate.get(), NID_subject_key_identifier, "hash");
    addExtension(pCertificate.get(), NID_subject_alt_name, namesFor(p_strAddress));
    require(0 != X509_sign(pCertificate.get(), p_pKey, EVP_sha256()), "the signature");
    return pCertificate;
}

std::string textOf(BIO* p_pBio) {
    char* pText = nullptr;
    const long nLength = BIO_get_mem_data(p_pBio, &pText);
    return nLength > 0 ? std::string(pText, static_cast<std::size_t>(nLength)) : std::string();
}

Bio bioOf(const std::string& p_strText) {
    return Bio(BIO_new_mem_buf(p_strText.data(), static_cast<int>(p_strText.size())));
}

// "AB:CD:..", as browsers show it.
std::string fingerprintOf(const X509* p_pCertificate) {
    unsigned char sum[EVP_MAX_MD_SIZE];
    unsigned nLength = 0;
    require(1 == X509_digest(p_pCertificate, EVP_sha256(), sum, &nLength), "the fingerprint");
    std::string hex = hexOf(std::string(reinterpret_cast<const char*>(sum), nLength));
    std::string text;
    for (std::size_t i = 0; i < hex.size(); ++i) {
        text += i > 0 && 0 == i % 2 ? ":" : "";
        text += 'a' <= hex[i] && hex[i] <= 'f' ? static_cast<char>(hex[i] - 'a' + 'A') : hex[i];
    }
    return text;
}

// No passphrase is asked for on a terminal.
int noPassphrase(char*, int, int, void*) {
    return 0;
}

std::string fingerprintOfPair(const std::string& p_strCertificateText, const std::string& p_strKeyText,
                              const std::string& p_strCertificate, const std::string& p_strPrivateKey) {
    const Bio pCertificateText = bioOf(p_strCertificateText);
    const Bio pKeyText = bioOf(p_strKeyText);
    const Certificate pCertificate(nullptr == pCertificateText
                                       ? nullptr
                                       : PEM_read_bio_X509(pCertificateText.get(), nullptr, noPassphrase, nullptr));
    const Key pKey(nullptr == pKeyText ? nullptr
                                       : PEM_read_bio_PrivateKey(pKeyText.get(), nullptr, noPassphrase, nullptr));
    const bool isPair =
        nullptr != pCertificate && nullptr != pKey && 1 == X509_check_private_key(pCertificate.get(), pKey.get());
    ERR_clear_error();
    const std::string both = p_strCertificate + " and " + p_strPrivateKey;
    if (nullptr == pCertificate) {
        throw std::runtime_error(p_strCertificate + " holds no certificate in PEM; put the right file there, or move " +
                                 both + " away, and a new pair is made");
    }
    if (nullptr == pKey) {
        throw std::runtime_error(p_strPrivateKey +
                                 " holds no private key in PEM, or one with a passphrase; put the right file there, or "
                                 "move " +
                                 both + " away, and a new pair is made");
    }
    if (!isPair) {
        throw std::runtime_error("The key in " + p_strPrivateKey + " is not that of the certificate in " +
                                 p_strCertificate +
                                 "; put the right files there, or move both away, and a new pair is made");
    }
    return fingerprintOf(pCertificate.get());
}

}  // namespace

std::string ensureCertificate(const std::string& p_strCertificate, const std::string& p_strPrivateKey,
                              const std::string& p_strAddress) {
    const PrivateFile certificateFile{p_strCertificate, "The certificate of this camera", 65536, kForReaders};
    const PrivateFile keyFile{p_strPrivateKey, "The private key of this camera", 65536, kForOwner};
    const std::optional<std::string> certificateText = readPrivateFile(certificateFile);
    std::optional<std::string> keyText = readPrivateFile(keyFile);
    if (certificateText.has_value() != keyText.has_value()) {
        const std::string& there = keyText ? p_strPrivateKey : p_strCertificate;
        const std::string& missing = keyText ? p_strCertificate : p_strPrivateKey;
        throw std::runtime_error("Of the certificate and its key only " + there + " is there; put " + missing +
                                 " back, or move " + there + " away, and a new pair is made");
    }
    if (keyText) {
        const Forgotten forgotten(*keyText);
        return fingerprintOfPair(*certificateText, *keyText, p_strCertificate, p_strPrivateKey);
    }

    const Key pKey(EVP_EC_gen("P-256"));
    require(nullptr != pKey, "the key");
    const Certificate pCertificate = certificateOf(pKey.get(), p_strAddress);
    const Bio pCertificateText(BIO_new(BIO_s_mem()));
    const Bio pKeyText(BIO_new(BIO_s_secmem()));
    require(nullptr != pCertificateText && nullptr != pKeyText &&
                1 == PEM_write_bio_X509(pCertificateText.get(), pCertificate.get()) &&
                1 == PEM_write_bio_PKCS8PrivateKey(pKeyText.get(), pKey.get(), nullptr, nullptr, 0, nullptr, nullptr),
            "writing");
    std::string key = textOf(pKeyText.get());
    const Forgotten forgotten(key);
    writePrivateFile(keyFile, key);
    writePrivateFile(certificateFile, textOf(pCertificateText.get()));
    return fingerprintOf(pCertificate.get());
}

}  // namespace camerad
