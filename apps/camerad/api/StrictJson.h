// The JSON that clients send, read strictly.
//
// parseStrictJson takes only what has one meaning: valid UTF-8, no name twice in an object, at most 64 levels, numbers that
// a double holds. FieldReader then takes the fields out; what is wrong with them is gathered, each with its place as a JSON
// pointer, and refused together by finish().
//
// Values without state. Functions throw ProblemAnswer.
#pragma once

#include "apps/camerad/http/Http.h"
#include "platform/Types.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace camerad {

// A refusal that already is an answer, with members that a Refusal does not have. addRoutes turns it into the answer.
class ProblemAnswer : public std::exception {
public:
    explicit ProblemAnswer(HttpResponse p_stResponse);
    const HttpResponse& response() const { return *m_pResponse; }
    const char* what() const noexcept override { return "a problem document"; }

private:
    std::shared_ptr<const HttpResponse> m_pResponse;
};

// A text of a client between double quotes, fit for a JSON text and a log: control bytes escaped, cut between two letters.
std::string quotedText(const std::string& p_strText);

// One step further in a JSON pointer: "/" and the name with ~ and / escaped.
std::string pointerStep(const std::string& p_strName);

// 400 "malformed-json", with the byte or the pointer, when it cannot be taken.
nlohmann::json parseStrictJson(const std::string& p_strText);

// What is wrong with one field.
struct FieldError {
    std::string strPointer;
    std::string strDetail;
};
using FieldErrors = std::vector<FieldError>;

// One object of a body. A field is known once it has been asked for. The value must outlive the reader.
class FieldReader {
public:
    FieldReader(const nlohmann::json& p_objValue, std::string p_strPointer, FieldErrors& p_vecErrors);

    bool has(const std::string& p_strName) const;

    // Nothing when the field is absent or wrong; what is wrong is noted.
    std::optional<int> integer(const std::string& p_strName, std::int64_t p_nMin = INT32_MIN,
                               std::int64_t p_nMax = INT32_MAX);
    std::optional<bool> flag(const std::string& p_strName);
    std::optional<std::string> text(const std::string& p_strName, std::size_t p_nMostBytes);
    std::optional<std::string> word(const std::string& p_strName, const std::vector<std::string>& p_vecWords);
    std::optional<int> minute(const std::string& p_strName);  // "HH:MM" as HH * 60 + MM, HH up to 99
    std::optional<u32> key(const std::string& p_strName);     // a number, or a name of a parameter
    std::optional<FieldReader> object(const std::string& p_strName);
    std::vector<FieldReader> list(const std::string& p_strName, std::size_t p_nMost);  // of objects

    // Notes an error when the field is absent.
    void need(const std::string& p_strName);
    // At least one of the fields that were asked for must be there.
    void needAny();
    void wrong(const std::string& p_strName, const std::string& p_strDetail);
    // Notes every field that was not asked for, with the known one that is nearest. The last call.
    void refuseUnknown();

    const std::string& pointer() const { return m_strPointer; }

private:
    const nlohmann::json* find(const std::string& p_strName);

    const nlohmann::json* m_pValue;
    std::string m_strPointer;
    FieldErrors* m_pErrors;
    std::vector<std::string> m_vecKnown;
};

// The whole body of a request: an object in JSON.
class BodyReader {
public:
    // 415 for another content type, 400 for what is no JSON, 422 for what is no object.
    explicit BodyReader(const HttpRequest& p_stRequest);
    BodyReader(const BodyReader&) = delete;
    BodyReader& operator=(const BodyReader&) = delete;

    FieldReader& fields() { return *m_pFields; }
    const nlohmann::json& value() const { return m_objValue; }
    FieldErrors& errors() { return m_vecErrors; }
    // 422 "bad-value" when anything is wrong with the fields.
    void finish();

private:
    nlohmann::json m_objValue;
    FieldErrors m_vecErrors;
    std::unique_ptr<FieldReader> m_pFields;
};

}  // namespace camerad
