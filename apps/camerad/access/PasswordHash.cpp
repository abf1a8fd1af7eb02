#include "apps/camerad/access/PasswordHash.h"

#include "apps/camerad/access/Secrets.h"

#include <crypt.h>
#include <openssl/crypto.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <stdexcept>

namespace camerad {

namespace {

const std::string kMethod = "$y$";
// What yescrypt's costs 1 to 6 look like in a hash: 1 to 32 MiB.
const char* const kParameters[] = {"j75", "j85", "j7T", "j8T", "j9T", "jAT"};
constexpr unsigned long kHighestCost = std::size(kParameters);
constexpr std::size_t kSaltBytes = 16;
constexpr std::size_t kHashLetters = 43;
constexpr std::size_t kLongestSalt = 86;
const char kLetters[] = "./0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";

// The hash by the method, cost and salt of the setting; empty when there is none.
std::string hashBy(const std::string& p_strPassword, const std::string& p_strSetting) {
    const auto free = [](crypt_data* p_pData) {
        OPENSSL_cleanse(p_pData, sizeof(crypt_data));
        delete p_pData;
    };
    const std::unique_ptr<crypt_data, decltype(free)> pData(new crypt_data(), free);
    const char* const szHash =
        crypt_rn(p_strPassword.c_str(), p_strSetting.c_str(), pData.get(), static_cast<int>(sizeof(crypt_data)));
    return nullptr == szHash ? "" : szHash;
}

bool isMadeOfLetters(const std::string& p_strText) {
    return std::string::npos == p_strText.find_first_not_of(kLetters);
}

}  // namespace

std::string hashPassword(const std::string& p_strPassword, unsigned long p_nCost) {
    const std::string salt = randomBytes(kSaltBytes);
    char szSetting[CRYPT_GENSALT_OUTPUT_SIZE] = "";
    if (p_nCost > kHighestCost ||
        nullptr == crypt_gensalt_rn(kMethod.c_str(), p_nCost, salt.data(), static_cast<int>(salt.size()), szSetting,
                                    static_cast<int>(sizeof(szSetting)))) {
        throw std::runtime_error("this machine's password library does not know yescrypt at cost " +
                                 std::to_string(p_nCost));
    }
    const std::string hash = hashBy(p_strPassword, szSetting);
    if (!isPasswordHash(hash)) {
        throw std::runtime_error("this machine could not hash a password; it may be short of memory");
    }
    return hash;
}

bool isPasswordOf(const std::string& p_strPassword, const std::string& p_strHash) {
    const std::string hash = hashBy(p_strPassword, p_strHash);
    return !hash.empty() && isSameSecret(hash, p_strHash);
}

bool isPasswordHash(const std::string& p_strText) {
    // $y$PARAMETERS$SALT$HASH
    if (0 != p_strText.compare(0, kMethod.size(), kMethod)) {
        return false;
    }
    const std::size_t parametersEnd = p_strText.find('$', kMethod.size());
    const std::size_t saltEnd =
        std::string::npos == parametersEnd ? parametersEnd : p_strText.find('$', parametersEnd + 1);
    if (std::string::npos == saltEnd) {
        return false;
    }
    const std::string parameters = p_strText.substr(kMethod.size(), parametersEnd - kMethod.size());
    const std::string salt = p_strText.substr(parametersEnd + 1, saltEnd - parametersEnd - 1);
    const std::string hash = p_strText.substr(saltEnd + 1);
    return std::find(std::begin(kParameters), std::end(kParameters), parameters) != std::end(kParameters) &&
           !salt.empty() && salt.size() <= kLongestSalt && isMadeOfLetters(salt) && kHashLetters == hash.size() &&
           isMadeOfLetters(hash);
}

}  // namespace camerad
