#include "apps/camerad/api/StrictJson.h"

#include "apps/camerad/api/Call.h"
#include "apps/camerad/http/Problem.h"
#include "apps/camerad/http/Status.h"
#include "apps/shared/NearestMatch.h"
#include "apps/shared/Text.h"

#include <algorithm>
#include <utility>

namespace camerad {

namespace {

using nlohmann::json;

constexpr std::size_t kDeepest = 64;      // levels of arrays and objects; no body needs more than four
constexpr std::size_t kQuotedBytes = 72;  // of a client's text in a refusal
constexpr std::size_t kMostErrors = 20;   // that one refusal tells
constexpr int kOverflowId = 406;          // of the parser: a number that no double holds

[[noreturn]] void refuseText(const std::string& p_strDetail, const std::string& p_strPointer) {
    json document = problemDocument(kBadRequest, "malformed-json", p_strDetail);
    document["errors"] = json::array({{{"pointer", p_strPointer}, {"detail", p_strDetail}}});
    throw ProblemAnswer({kBadRequest,
                         "application/problem+json",
                         document.dump(-1, ' ', false, json::error_handler_t::replace),
                         {},
                         nullptr});
}

// Builds the value while the parser reads, and knows where it is.
class Builder : public nlohmann::json_sax<json> {
public:
    Builder() noexcept(false) {}  // an empty value of the JSON library counts as one that may throw
    Builder(const Builder&) = delete;
    Builder& operator=(const Builder&) = delete;

    bool null() override { return add(json()); }
    bool boolean(bool p_bValue) override { return add(json(p_bValue)); }
    bool number_integer(number_integer_t p_nValue) override { return add(json(p_nValue)); }
    bool number_unsigned(number_unsigned_t p_nValue) override { return add(json(p_nValue)); }
    bool number_float(number_float_t p_dValue, const string_t&) override { return add(json(p_dValue)); }
    bool string(string_t& p_strValue) override { return add(json(std::move(p_strValue))); }
    bool binary(binary_t&) override { return false; }  // JSON text has none

    bool start_object(std::size_t) override { return enter(json::object()); }
    bool start_array(std::size_t) override { return enter(json::array()); }
    bool end_object() override { return leave(); }
    bool end_array() override { return leave(); }

    bool key(string_t& p_strName) override {
        Level& level = m_vecLevels.back();
        level.strName = p_strName;
        if (level.pValue->contains(p_strName)) {
            refuseText("The field " + quotedText(p_strName) + " stands twice in the same object; send it once.",
                       pointer());
        }
        return true;
    }

    bool parse_error(std::size_t p_nPosition, const std::string&,
                     const nlohmann::detail::exception& p_objError) override {
        if (kOverflowId == p_objError.id) {
            refuseText("A number is too large to be taken.", pointer());
        }
        refuseText("The body is no valid JSON from byte " + std::to_string(p_nPosition) + " on.", pointer());
    }

    json take() { return std::move(m_objRoot); }

private:
    struct Level {
        json* pValue;
        std::string strName;  // of the field that is read, in an object
    };

    // Of the value that comes next.
    std::string pointer() const {
        std::string path;
        for (const Level& level : m_vecLevels) {
            // An array already holds the item that is open below it, but not yet the one that comes next.
            const std::size_t open = &level == &m_vecLevels.back() ? 0 : 1;
            path += level.pValue->is_array() ? "/" + std::to_string(level.pValue->size() - open)
                                             : pointerStep(level.strName);
        }
        return path;
    }

    json* place(json&& p_objValue) {
        if (m_vecLevels.empty()) {
            m_objRoot = std::move(p_objValue);
            return &m_objRoot;
        }
        Level& level = m_vecLevels.back();
        if (level.pValue->is_array()) {
            level.pValue->push_back(std::move(p_objValue));
            return &level.pValue->back();
        }
        return &((*level.pValue)[level.strName] = std::move(p_objValue));
    }

    bool add(json&& p_objValue) {
        place(std::move(p_objValue));
        return true;
    }

    bool enter(json&& p_objValue) {
        if (kDeepest == m_vecLevels.size()) {
            refuseText("The body is nested deeper than " + std::to_string(kDeepest) + " levels.", pointer());
        }
        // A field keeps its place while its value is read: what holds it does not grow meanwhile.
        json* const value = place(std::move(p_objValue));
        m_vecLevels.push_back({value, {}});
        return true;
    }

    bool leave() {
        m_vecLevels.pop_back();
        return true;
    }

    json m_objRoot;
    std::vector<Level> m_vecLevels;
};

std::string listed(const std::vector<std::string>& p_vecWords) {
    std::vector<std::string> vecQuoted;
    for (const std::string& word : p_vecWords) {
        vecQuoted.push_back('"' + word + '"');
    }
    return apps::join(vecQuoted, ", ");
}

bool isJsonType(const std::string& p_strHeader) {
    std::string type = apps::lowerCase(p_strHeader);
    type.erase(std::remove_if(type.begin(), type.end(), [](char p_cByte) { return ' ' == p_cByte || '\t' == p_cByte; }),
               type.end());
    return "application/json" == type || "application/json;charset=utf-8" == type ||
           "application/json;charset=\"utf-8\"" == type;
}

bool isDigit(char p_cByte) {
    return '0' <= p_cByte && p_cByte <= '9';
}

}  // namespace

ProblemAnswer::ProblemAnswer(HttpResponse p_stResponse)
    : m_pResponse(std::make_shared<const HttpResponse>(std::move(p_stResponse))) {}

std::string quotedText(const std::string& p_strText) {
    if (p_strText.size() <= kQuotedBytes) {
        return apps::quoted(p_strText);
    }
    constexpr unsigned kContinuationMask = 0xC0;  // 10xxxxxx goes on with the letter before
    constexpr unsigned kContinuation = 0x80;
    std::size_t end = kQuotedBytes;
    while (end > 0 && kContinuation == (static_cast<unsigned char>(p_strText[end]) & kContinuationMask)) {
        --end;
    }
    return apps::quoted(p_strText.substr(0, end) + "...");
}

std::string pointerStep(const std::string& p_strName) {
    std::string step = "/";
    for (const char letter : p_strName) {
        if ('~' == letter) {
            step += "~0";
        } else if ('/' == letter) {
            step += "~1";
        } else {
            step += letter;
        }
    }
    return step;
}

json parseStrictJson(const std::string& p_strText) {
    Builder objBuilder;
    json::sax_parse(p_strText, &objBuilder);  // what cannot be taken throws
    return objBuilder.take();
}

FieldReader::FieldReader(const json& p_objValue, std::string p_strPointer, FieldErrors& p_vecErrors)
    : m_pValue(&p_objValue), m_strPointer(std::move(p_strPointer)), m_pErrors(&p_vecErrors) {}

bool FieldReader::has(const std::string& p_strName) const {
    return m_pValue->contains(p_strName);
}

void FieldReader::wrong(const std::string& p_strName, const std::string& p_strDetail) {
    if (m_pErrors->size() < kMostErrors) {
        m_pErrors->push_back({m_strPointer + pointerStep(p_strName), p_strDetail});
    }
}

const json* FieldReader::find(const std::string& p_strName) {
    if (m_vecKnown.end() == std::find(m_vecKnown.begin(), m_vecKnown.end(), p_strName)) {
        m_vecKnown.push_back(p_strName);
    }
    const auto at = m_pValue->find(p_strName);
    return m_pValue->end() == at ? nullptr : &*at;
}

std::optional<int> FieldReader::integer(const std::string& p_strName, std::int64_t p_nMin, std::int64_t p_nMax) {
    const json* const value = find(p_strName);
    if (nullptr == value) {
        return std::nullopt;
    }
    const std::string range = "must be a whole number from " + std::to_string(p_nMin) + " to " + std::to_string(p_nMax);
    if (!value->is_number_integer()) {
        wrong(p_strName, quotedText(p_strName) + " " + range + ".");
        return std::nullopt;
    }
    // Above the signed numbers only unsigned ones are left, and they are beyond every range.
    const bool beyond = value->is_number_unsigned() && value->get<std::uint64_t>() > std::uint64_t{INT64_MAX};
    const std::int64_t number = beyond ? INT64_MAX : value->get<std::int64_t>();
    if (number < p_nMin || number > p_nMax) {
        wrong(p_strName, quotedText(p_strName) + " " + range + ", not " + value->dump() + ".");
        return std::nullopt;
    }
    return static_cast<int>(number);
}

std::optional<bool> FieldReader::flag(const std::string& p_strName) {
    const json* const value = find(p_strName);
    if (nullptr == value) {
        return std::nullopt;
    }
    if (!value->is_boolean()) {
        wrong(p_strName, quotedText(p_strName) + " must be true or false.");
        return std::nullopt;
    }
    return value->get<bool>();
}

std::optional<std::string> FieldReader::text(const std::string& p_strName, std::size_t p_nMostBytes) {
    const json* const value = find(p_strName);
    if (nullptr == value) {
        return std::nullopt;
    }
    if (!value->is_string()) {
        wrong(p_strName, quotedText(p_strName) + " must be a text.");
        return std::nullopt;
    }
    auto text = value->get<std::string>();
    if (text.size() > p_nMostBytes) {
        wrong(p_strName,
              quotedText(p_strName) + " must not be longer than " + std::to_string(p_nMostBytes) + " bytes.");
        return std::nullopt;
    }
    return text;
}

std::optional<std::string> FieldReader::word(const std::string& p_strName, const std::vector<std::string>& p_vecWords) {
    const json* const value = find(p_strName);
    if (nullptr == value) {
        return std::nullopt;
    }
    const bool known = value->is_string() && p_vecWords.end() != std::find(p_vecWords.begin(), p_vecWords.end(),
                                                                           value->get_ref<const std::string&>());
    if (!known) {
        wrong(p_strName, quotedText(p_strName) + " must be one of " + listed(p_vecWords) + ".");
        return std::nullopt;
    }
    return value->get<std::string>();
}

std::optional<int> FieldReader::minute(const std::string& p_strName) {
    constexpr std::size_t kLength = 5;  // "HH:MM"
    constexpr int kMinutes = 60;
    const std::optional<std::string> text = this->text(p_strName, kLength);
    if (!text) {
        return std::nullopt;
    }
    const std::string& time = *text;
    const bool shaped = kLength == time.size() && isDigit(time[0]) && isDigit(time[1]) && ':' == time[2] &&
                        isDigit(time[3]) && isDigit(time[4]) && time[3] < '6';
    if (!shaped) {
        wrong(p_strName,
              quotedText(p_strName) + " must be a time of the day such as \"08:30\", not " + quotedText(time) + ".");
        return std::nullopt;
    }
    const int hours = (time[0] - '0') * 10 + (time[1] - '0');
    return hours * kMinutes + (time[3] - '0') * 10 + (time[4] - '0');
}

std::optional<u32> FieldReader::key(const std::string& p_strName) {
    const json* const value = find(p_strName);
    if (nullptr == value) {
        return std::nullopt;
    }
    if (!value->is_string()) {
        if (!value->is_number_integer()) {
            wrong(p_strName, quotedText(p_strName) + " must be the number or the name of a parameter.");
            return std::nullopt;
        }
        const std::optional<int> number = integer(p_strName, 0, INT32_MAX);
        return number ? std::optional<u32>(static_cast<u32>(*number)) : std::nullopt;
    }
    // A name that is wrong is compared with every known one, which nobody gets to hear when enough is wrong already.
    if (m_pErrors->size() >= kMostErrors) {
        return std::nullopt;
    }
    try {
        return keyOfText(value->get_ref<const std::string&>());
    } catch (const Refusal& refusal) {
        wrong(p_strName, refusal.what());
        return std::nullopt;
    }
}

std::optional<FieldReader> FieldReader::object(const std::string& p_strName) {
    const json* const value = find(p_strName);
    if (nullptr == value) {
        return std::nullopt;
    }
    if (!value->is_object()) {
        wrong(p_strName, quotedText(p_strName) + " must be an object.");
        return std::nullopt;
    }
    return FieldReader(*value, m_strPointer + pointerStep(p_strName), *m_pErrors);
}

std::vector<FieldReader> FieldReader::list(const std::string& p_strName, std::size_t p_nMost) {
    const json* const value = find(p_strName);
    std::vector<FieldReader> vecReaders;
    if (nullptr == value) {
        return vecReaders;
    }
    if (!value->is_array() || value->empty() || value->size() > p_nMost) {
        wrong(p_strName, quotedText(p_strName) + " must be a list of 1 to " + std::to_string(p_nMost) + " objects.");
        return vecReaders;
    }
    for (std::size_t i = 0; i < value->size(); ++i) {
        const std::string step = p_strName + "/" + std::to_string(i);
        if (!(*value)[i].is_object()) {
            if (m_pErrors->size() < kMostErrors) {
                m_pErrors->push_back({m_strPointer + "/" + step, "Each item of the list must be an object."});
            }
            continue;
        }
        vecReaders.emplace_back((*value)[i], m_strPointer + "/" + step, *m_pErrors);
    }
    return vecReaders;
}

void FieldReader::need(const std::string& p_strName) {
    if (nullptr == find(p_strName)) {
        wrong(p_strName, "The field " + quotedText(p_strName) + " is missing.");
    }
}

void FieldReader::needAny() {
    for (const std::string& name : m_vecKnown) {
        if (has(name)) {
            return;
        }
    }
    if (m_pErrors->size() < kMostErrors) {
        m_pErrors->push_back(
            {m_strPointer, "Nothing is to be changed; at least one of " + listed(m_vecKnown) + " must be there."});
    }
}

void FieldReader::refuseUnknown() {
    for (const auto& item : m_pValue->items()) {
        if (m_vecKnown.end() == std::find(m_vecKnown.begin(), m_vecKnown.end(), item.key())) {
            const std::string nearest = apps::didYouMean(apps::nearestMatch(item.key(), m_vecKnown));
            const std::string known =
                m_vecKnown.empty() ? "; it takes none." : "; there are " + listed(m_vecKnown) + ".";
            wrong(item.key(),
                  "There is no field " + quotedText(item.key()) + " here" + (nearest.empty() ? known : nearest));
        }
    }
}

BodyReader::BodyReader(const HttpRequest& p_stRequest) {
    if (p_stRequest.strBody.empty()) {
        throw ProblemAnswer(
            problemResponse(kBadRequest, "malformed-json", "A body in JSON is needed and there is none."));
    }
    if (!isJsonType(p_stRequest.header("content-type"))) {
        throw ProblemAnswer(problemResponse(kUnsupportedType, "wrong-content-type",
                                            "The body must be JSON in UTF-8; send it with \"Content-Type: "
                                            "application/json\"."));
    }
    m_objValue = parseStrictJson(p_stRequest.strBody);
    if (!m_objValue.is_object()) {
        m_vecErrors.push_back({"", "The body must be an object: {...}."});
        finish();
    }
    m_pFields = std::make_unique<FieldReader>(m_objValue, "", m_vecErrors);
}

void BodyReader::finish() {
    if (nullptr != m_pFields) {
        m_pFields->refuseUnknown();
    }
    if (m_vecErrors.empty()) {
        return;
    }
    json document = problemDocument(kUnprocessable, "bad-value", m_vecErrors.front().strDetail);
    json errors = json::array();
    for (const FieldError& error : m_vecErrors) {
        errors.push_back({{"pointer", error.strPointer}, {"detail", error.strDetail}});
    }
    document["errors"] = std::move(errors);
    throw ProblemAnswer({kUnprocessable,
                         "application/problem+json",
                         document.dump(-1, ' ', false, json::error_handler_t::replace),
                         {},
                         nullptr});
}

}  // namespace camerad
