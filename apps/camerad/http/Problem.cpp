#include "apps/camerad/http/Problem.h"

#include "apps/camerad/http/Status.h"

#include <algorithm>
#include <cctype>

namespace camerad {

namespace {

// "bad-value" is "Bad value" for a person.
std::string inWords(const std::string& p_strType) {
    std::string words = p_strType;
    std::replace(words.begin(), words.end(), '-', ' ');
    if (!words.empty()) {
        words.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(words.front())));
    }
    return words;
}

// What a client sent may stand in a detail: bytes that are no UTF-8 are replaced, never an exception.
std::string textOf(const nlohmann::json& p_objDocument) {
    return p_objDocument.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

}  // namespace

int statusOf(Refusal::Kind p_eKind) {
    switch (p_eKind) {
        case Refusal::Kind::NotFound:
            return kNotFound;
        case Refusal::Kind::BadValue:
        case Refusal::Kind::Refused:
            return kUnprocessable;
        case Refusal::Kind::Conflict:
        case Refusal::Kind::Busy:
            return kConflict;
        case Refusal::Kind::Unauthorised:
            return kUnauthorised;
        case Refusal::Kind::Forbidden:
            return kForbidden;
        case Refusal::Kind::TooMany:
            return kTooMany;
        case Refusal::Kind::TooLarge:
            return kTooLarge;
        case Refusal::Kind::Failed:
            break;
    }
    return kFailed;
}

nlohmann::json problemDocument(int p_nStatus, const std::string& p_strType, const std::string& p_strDetail) {
    return {{"type", "/problems/" + p_strType},
            {"title", inWords(p_strType)},
            {"status", p_nStatus},
            {"detail", p_strDetail}};
}

nlohmann::json problemDocument(const Refusal& p_objRefusal) {
    return problemDocument(statusOf(p_objRefusal.kind()), p_objRefusal.type(), p_objRefusal.what());
}

HttpResponse problemResponse(int p_nStatus, const std::string& p_strType, const std::string& p_strDetail) {
    HttpResponse response;
    response.nStatus = p_nStatus;
    response.strType = "application/problem+json";
    response.strBody = textOf(problemDocument(p_nStatus, p_strType, p_strDetail));
    return response;
}

HttpResponse problemResponse(const Refusal& p_objRefusal) {
    HttpResponse response = problemResponse(statusOf(p_objRefusal.kind()), p_objRefusal.type(), p_objRefusal.what());
    if (p_objRefusal.retryAfter()) {
        response.vecHeaders.emplace_back("Retry-After", std::to_string(*p_objRefusal.retryAfter()));
    }
    return response;
}

}  // namespace camerad
