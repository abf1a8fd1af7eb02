#include "apps/camerad/api/DescriptionPage.h"

#include <algorithm>
#include <array>
#include <vector>

namespace camerad {

namespace {

using nlohmann::json;

const char kReference[] = "$ref";

std::string escaped(const std::string& p_strText) {
    std::string result;
    for (const char letter : p_strText) {
        switch (letter) {
            case '&':
                result += "&amp;";
                break;
            case '<':
                result += "&lt;";
                break;
            case '>':
                result += "&gt;";
                break;
            case '"':
                result += "&quot;";
                break;
            default:
                result += letter;
        }
    }
    return result;
}

std::string text(const json& p_objValue, const char* p_szName) {
    const auto at = p_objValue.find(p_szName);
    return p_objValue.end() == at || !at->is_string() ? "" : escaped(at->get<std::string>());
}

class Page {
public:
    explicit Page(const json& p_objDocument) : m_objDocument(p_objDocument) {}

    std::string render() {
        const json& info = m_objDocument.at("info");
        m_strText =
            "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\"><meta name=\"viewport\" "
            "content=\"width=device-width, initial-scale=1\"><title>" +
            text(info, "title") + " " + text(info, "version") +
            "</title><link rel=\"stylesheet\" href=\"/api/description.css\"></head><body>\n<header><h1>" +
            text(info, "title") + " " + text(info, "version") + "</h1><p>" + text(info, "summary") + "</p><p>" +
            text(info, "description") + "</p><p><a href=\"/api/v1/openapi.json\">openapi.json</a></p></header>\n";
        contents();
        m_strText += "<main>\n";
        for (const json& tag : m_objDocument.at("tags")) {
            m_strText += "<section id=\"tag-" + text(tag, "name") + "\"><h2>" + text(tag, "description") + "</h2>\n";
            operations(tag.at("name").get<std::string>());
            m_strText += "</section>\n";
        }
        proofs();
        schemas();
        m_strText += "</main></body></html>\n";
        return m_strText;
    }

private:
    void contents() {
        m_strText += "<nav aria-label=\"Contents\"><ul>";
        for (const json& tag : m_objDocument.at("tags")) {
            m_strText += "<li><a href=\"#tag-" + text(tag, "name") + "\">" + text(tag, "description") + "</a></li>";
        }
        m_strText +=
            "<li><a href=\"#proofs\">How a request proves who it comes from</a></li>"
            "<li><a href=\"#schemas\">Shapes</a></li></ul></nav>\n";
    }

    void operations(const std::string& p_strTag) {
        for (const auto& path : m_objDocument.at("paths").items()) {
            for (const auto& operation : path.value().items()) {
                if (operation.value().at("tags").at(0) == p_strTag) {
                    describe(path.key(), operation.key(), operation.value());
                }
            }
        }
    }

    void describe(const std::string& p_strPath, std::string p_strMethod, const json& p_objOperation) {
        std::transform(p_strMethod.begin(), p_strMethod.end(), p_strMethod.begin(),
                       [](char p_cLetter) { return static_cast<char>(p_cLetter - 'a' + 'A'); });
        m_strText += "<article id=\"" + text(p_objOperation, "operationId") + "\"><h3><code><b>" + p_strMethod +
                     "</b> " + escaped(p_strPath) + "</code></h3><p>" + text(p_objOperation, "summary") +
                     ". <span class=\"role\">" + text(p_objOperation, "x-role") + "</span></p>\n";
        if (p_objOperation.contains("description")) {
            m_strText += "<p>" + text(p_objOperation, "description") + "</p>\n";
        }
        parameters(p_objOperation);
        if (p_objOperation.contains("requestBody")) {
            const json& body = resolved(p_objOperation.at("requestBody"));
            m_strText += body.value("required", false) ? "<h4>Body</h4>" : "<h4>Body, optional</h4>";
            contentOf(body);
        }
        m_strText += "<h4>Answers</h4><dl>\n";
        for (const auto& answer : p_objOperation.at("responses").items()) {
            const json& response = resolved(answer.value());
            m_strText += "<dt>" + escaped(answer.key()) + "</dt><dd>" + text(response, "description");
            if (!answer.value().contains(kReference)) {
                contentOf(response);
            }
            m_strText += "</dd>\n";
        }
        m_strText += "</dl></article>\n";
    }

    void parameters(const json& p_objOperation) {
        if (!p_objOperation.contains("parameters")) {
            return;
        }
        m_strText +=
            "<table><thead><tr><th>Parameter</th><th>In</th><th>Type</th><th>Meaning</th></tr></thead><tbody>\n";
        for (const json& reference : p_objOperation.at("parameters")) {
            const json& parameter = resolved(reference);
            m_strText += "<tr><td><code>" + text(parameter, "name") + "</code></td><td>" + text(parameter, "in") +
                         (parameter.value("required", false) ? "" : ", optional") + "</td><td>" +
                         typeOf(parameter.at("schema")) + "</td><td>" + text(parameter, "description") + "</td></tr>\n";
        }
        m_strText += "</tbody></table>\n";
    }

    void contentOf(const json& p_objHolder) {
        if (!p_objHolder.contains("content")) {
            return;
        }
        for (const auto& media : p_objHolder.at("content").items()) {
            m_strText +=
                " <p><code>" + escaped(media.key()) + "</code>: " + typeOf(media.value().at("schema")) + "</p>";
            if (media.value().contains("example")) {
                constexpr int kIndent = 2;
                m_strText += "<pre>" + escaped(media.value().at("example").dump(kIndent)) + "</pre>";
            }
        }
    }

    void proofs() {
        m_strText += "<section id=\"proofs\"><h2>How a request proves who it comes from</h2><dl>\n";
        for (const auto& scheme : m_objDocument.at("components").at("securitySchemes").items()) {
            m_strText += "<dt>" + escaped(scheme.key()) + "</dt><dd>" + text(scheme.value(), "description") + "</dd>\n";
        }
        m_strText += "</dl></section>\n";
    }

    void schemas() {
        m_strText += "<section id=\"schemas\"><h2>Shapes</h2>\n";
        for (const auto& schema : m_objDocument.at("components").at("schemas").items()) {
            m_strText += "<article id=\"schema-" + escaped(schema.key()) + "\"><h3>" + escaped(schema.key()) +
                         "</h3><p>" + text(schema.value(), "description") + "</p>\n";
            if (schema.value().contains("properties")) {
                fields(schema.value());
            } else {
                m_strText += "<p>" + typeOf(schema.value()) + "</p>\n";
            }
            m_strText += "</article>\n";
        }
        m_strText += "</section>\n";
    }

    void fields(const json& p_objSchema) {
        const json needed = p_objSchema.value("required", json::array());
        m_strText += "<table><thead><tr><th>Field</th><th>Type</th><th>Meaning</th></tr></thead><tbody>\n";
        for (const auto& field : p_objSchema.at("properties").items()) {
            const bool isNeeded = needed.end() != std::find(needed.begin(), needed.end(), field.key());
            m_strText += "<tr><td><code>" + escaped(field.key()) + "</code>" + (isNeeded ? "" : ", optional") +
                         "</td><td>" + typeOf(field.value()) + "</td><td>" + text(field.value(), "description") +
                         "</td></tr>\n";
        }
        m_strText += "</tbody></table>\n";
    }

    // What a schema is, in a few words of HTML.
    std::string typeOf(const json& p_objSchema) const {
        if (p_objSchema.contains(kReference)) {
            const auto reference = p_objSchema.at(kReference).get<std::string>();
            const std::string name = escaped(reference.substr(reference.rfind('/') + 1));
            return "<a href=\"#schema-" + name + "\">" + name + "</a>";
        }
        if (p_objSchema.contains("oneOf")) {
            std::string words;
            for (const json& choice : p_objSchema.at("oneOf")) {
                words += (words.empty() ? "" : " or ") + typeOf(choice);
            }
            return words;
        }
        if (p_objSchema.contains("enum")) {
            std::string words;
            for (const json& word : p_objSchema.at("enum")) {
                words += (words.empty() ? "<code>" : " <code>") + escaped(word.dump()) + "</code>";
            }
            return words;
        }
        const json type = p_objSchema.value("type", json("any"));
        std::string words = type.is_array() ? "" : type.get<std::string>();
        if (type.is_array()) {
            for (const json& one : type) {
                words += (words.empty() ? "" : " or ") + one.get<std::string>();
            }
        }
        if (p_objSchema.contains("items")) {
            return "list of " + typeOf(p_objSchema.at("items"));
        }
        if ("object" == words && p_objSchema.contains("properties")) {
            return fieldsInLine(p_objSchema);
        }
        return words + limitsOf(p_objSchema);
    }

    std::string fieldsInLine(const json& p_objSchema) const {
        std::string words;
        for (const auto& field : p_objSchema.at("properties").items()) {
            words +=
                (words.empty() ? "{ " : ", ") + ("<code>" + escaped(field.key()) + "</code>: ") + typeOf(field.value());
        }
        return words.empty() ? "{}" : words + " }";
    }

    static std::string limitsOf(const json& p_objSchema) {
        const bool least = p_objSchema.contains("minimum");
        const bool most = p_objSchema.contains("maximum");
        if (least && most) {
            return ", " + p_objSchema.at("minimum").dump() + " to " + p_objSchema.at("maximum").dump();
        }
        return least ? ", from " + p_objSchema.at("minimum").dump() : "";
    }

    // What a reference leads to; the value itself when it is none.
    const json& resolved(const json& p_objValue) const {
        if (!p_objValue.contains(kReference)) {
            return p_objValue;
        }
        return m_objDocument.at(json::json_pointer(p_objValue.at(kReference).get<std::string>().substr(1)));
    }

    const json& m_objDocument;
    std::string m_strText;
};

}  // namespace

std::string descriptionPage(const json& p_objDocument) {
    return Page(p_objDocument).render();
}

}  // namespace camerad
