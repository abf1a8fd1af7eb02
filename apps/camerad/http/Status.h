// The status codes of HTTP that camerad answers with (RFC 9110; 421 and 431: RFC 9113 and 6585).
#pragma once

namespace camerad {

constexpr int kCreated = 201;
constexpr int kNoContent = 204;
constexpr int kNotModified = 304;
constexpr int kFirstRefusal = 400;  // from here on an answer refuses
constexpr int kBadRequest = 400;
constexpr int kUnauthorised = 401;
constexpr int kForbidden = 403;
constexpr int kNotFound = 404;
constexpr int kNoSuchMethod = 405;
constexpr int kTooSlow = 408;
constexpr int kConflict = 409;
constexpr int kTooLarge = 413;
constexpr int kPathTooLong = 414;
constexpr int kUnsupportedType = 415;
constexpr int kBadExpectation = 417;
constexpr int kNotThisHost = 421;
constexpr int kUnprocessable = 422;
constexpr int kTooMany = 429;
constexpr int kFieldsTooLarge = 431;
constexpr int kFailed = 500;
constexpr int kNoSuchEncoding = 501;
constexpr int kUnavailable = 503;
constexpr int kNoSuchVersion = 505;

}  // namespace camerad
