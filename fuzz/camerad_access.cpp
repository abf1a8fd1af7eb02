// What comes to the access control of camerad from outside: its file, cookies, authorizations and origins.
//
// 1. The first byte tells what the rest is.
// 2. An accounts file is understood or refused with a text; what is understood reads the same after it was written.
// 3. Headers, one after the other, each ended by a zero byte, are read for the cookie of the session, for credentials and
//    for the origin: there is an answer, nothing or a refusal. What was found stands in a header.
// 4. A text is taken as a secret, a date, a hash, base64, a name, a password and an address.
#include "apps/camerad/access/AccountsFile.h"
#include "apps/camerad/access/Credentials.h"
#include "apps/camerad/access/LoginPace.h"
#include "apps/camerad/access/PasswordHash.h"
#include "apps/camerad/access/Rules.h"
#include "apps/camerad/access/Secrets.h"
#include "apps/camerad/host/Refusal.h"
#include "apps/camerad/http/Http.h"
#include "fuzz/support/Fuzz.h"

#include <stdexcept>

namespace {

void playFile(const std::string& p_strText) {
    camerad::StoredAccess stAccess;
    try {
        stAccess = camerad::parseAccounts(p_strText);
    } catch (const std::runtime_error& error) {
        FUZZ_CHECK('\0' != *error.what());
        return;
    }
    FUZZ_CHECK(stAccess.admins() > 0);
    const std::string strWritten = camerad::formatAccounts(stAccess);
    FUZZ_CHECK(camerad::formatAccounts(camerad::parseAccounts(strWritten)) == strWritten);
}

template <typename Code>
void orRefusal(Code&& p_fnCode) {
    try {
        p_fnCode();
    } catch (const camerad::Refusal& refusal) {
        FUZZ_CHECK('\0' != *refusal.what() && !refusal.type().empty());
    }
}

void playHeaders(const std::string& p_strName, fuzz::Input& p_objInput) {
    camerad::HttpRequest stRequest;
    stRequest.bSecure = 0 != (p_objInput.byte() & 1u);
    stRequest.mapHeaders.emplace("host", p_objInput.text());
    std::string strAll;
    while (!p_objInput.atEnd()) {
        const std::string strValue = p_objInput.text();
        strAll += strValue + '\n';
        stRequest.mapHeaders.emplace(p_strName, strValue);
    }
    orRefusal([&] {
        const auto cookie = camerad::sessionCookie(stRequest);
        FUZZ_CHECK(!cookie || std::string::npos != strAll.find(*cookie));
        FUZZ_CHECK(!cookie || std::string::npos != strAll.find(camerad::kSessionCookie));
    });
    orRefusal([&] {
        const auto authorization = camerad::authorization(stRequest);
        FUZZ_CHECK(!authorization || std::string::npos == authorization->strName.find(':'));
        FUZZ_CHECK(!authorization || std::string::npos != strAll.find(authorization->strToken));
    });
    orRefusal([&] { camerad::requireSameOrigin(stRequest); });
}

void playText(const std::string& p_strText) {
    FUZZ_CHECK(!camerad::isSecret(p_strText) || camerad::kSecretLetters == p_strText.size());
    FUZZ_CHECK(!camerad::isDate(p_strText) || 20 == p_strText.size());
    FUZZ_CHECK(!camerad::isPasswordHash(p_strText) || 0 == p_strText.compare(0, 4, "$y$j"));
    const auto bytes = camerad::fromBase64(p_strText);
    FUZZ_CHECK(!bytes || bytes->size() <= p_strText.size() / 4 * 3);
    orRefusal([&] {
        camerad::requireName(p_strText, "A name");
        FUZZ_CHECK(camerad::isName(p_strText));
    });
    orRefusal([&] {
        camerad::requirePassword(p_strText);
        FUZZ_CHECK(p_strText.size() <= camerad::kLongestPassword && std::string::npos == p_strText.find('\0'));
    });
    FUZZ_CHECK(camerad::paceKeyOfAddress(p_strText).size() <= 64);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* p_pData, std::size_t p_nSize) {
    fuzz::Input input(p_pData, p_nSize);
    switch (input.byte()) {
        case 'f':
            playFile(input.rest());
            break;
        case 'c':
            playHeaders("cookie", input);
            break;
        case 'a':
            playHeaders("authorization", input);
            break;
        case 'o':
            playHeaders("origin", input);
            break;
        default:
            playText(input.rest());
            break;
    }
    return 0;
}
