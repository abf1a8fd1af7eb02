#include "tests/unit/camerad/api/Schema.h"

#include "apps/camerad/api/Embedded.h"

#include <algorithm>
#include <ostream>
#include <regex>
#include <set>

namespace {

using nlohmann::json;

class Validator {
public:
    std::vector<std::string> vecErrors;

    void check(const json& p_objSchema, const json& p_objValue, const std::string& p_strPlace) {
        if (p_objSchema.contains("$ref")) {
            check(resolved(p_objSchema), p_objValue, p_strPlace);
            return;
        }
        for (const auto& keyword : p_objSchema.items()) {
            apply(keyword.key(), keyword.value(), p_objSchema, p_objValue, p_strPlace);
        }
    }

private:
    void wrong(const std::string& p_strPlace, const std::string& p_strWhat) {
        vecErrors.push_back((p_strPlace.empty() ? "/" : p_strPlace) + ": " + p_strWhat);
    }

    static bool hasType(const std::string& p_strType, const json& p_objValue) {
        return ("object" == p_strType && p_objValue.is_object()) || ("array" == p_strType && p_objValue.is_array()) ||
               ("string" == p_strType && p_objValue.is_string()) ||
               ("integer" == p_strType && p_objValue.is_number_integer()) ||
               ("number" == p_strType && p_objValue.is_number()) ||
               ("boolean" == p_strType && p_objValue.is_boolean()) || ("null" == p_strType && p_objValue.is_null());
    }

    void checkType(const json& p_objTypes, const json& p_objValue, const std::string& p_strPlace) {
        const json types = p_objTypes.is_array() ? p_objTypes : json::array({p_objTypes});
        const bool good = std::any_of(types.begin(), types.end(), [&](const json& p_objType) {
            return hasType(p_objType.get<std::string>(), p_objValue);
        });
        if (!good) {
            wrong(p_strPlace, "is no " + types.dump() + " but " + p_objValue.dump().substr(0, 80));
        }
    }

    void checkFields(const json& p_objSchema, const json& p_objValue, const std::string& p_strPlace) {
        if (!p_objValue.is_object()) {
            return;
        }
        const json known = p_objSchema.value("properties", json::object());
        const json further = p_objSchema.value("additionalProperties", json(true));
        for (const auto& field : p_objValue.items()) {
            const std::string place = p_strPlace + "/" + field.key();
            if (known.contains(field.key())) {
                check(known.at(field.key()), field.value(), place);
            } else if (further.is_object()) {
                check(further, field.value(), place);
            } else if (!further.get<bool>()) {
                wrong(place, "is not described");
            }
        }
    }

    void checkChoices(const json& p_objChoices, const json& p_objValue, const std::string& p_strPlace) {
        int fitting = 0;
        for (const json& choice : p_objChoices) {
            Validator one;
            one.check(choice, p_objValue, p_strPlace);
            fitting += one.vecErrors.empty() ? 1 : 0;
        }
        if (1 != fitting) {
            wrong(p_strPlace,
                  "fits " + std::to_string(fitting) + " of the choices: " + p_objValue.dump().substr(0, 200));
        }
    }

    void apply(const std::string& p_strKeyword, const json& p_objRule, const json& p_objSchema, const json& p_objValue,
               const std::string& p_strPlace) {
        static const std::set<std::string> setRemarks = {"description", "example", "default", "contentMediaType",
                                                         "contentEncoding"};
        if ("type" == p_strKeyword) {
            checkType(p_objRule, p_objValue, p_strPlace);
        } else if ("properties" == p_strKeyword) {
            checkFields(p_objSchema, p_objValue, p_strPlace);
        } else if ("additionalProperties" == p_strKeyword) {
            if (!p_objSchema.contains("properties")) {
                checkFields(p_objSchema, p_objValue, p_strPlace);
            }
        } else if ("required" == p_strKeyword) {
            for (const json& name : p_objRule) {
                if (p_objValue.is_object() && !p_objValue.contains(name.get<std::string>())) {
                    wrong(p_strPlace, "has no " + name.dump());
                }
            }
        } else if ("enum" == p_strKeyword) {
            if (p_objRule.end() == std::find(p_objRule.begin(), p_objRule.end(), p_objValue)) {
                wrong(p_strPlace, "is none of " + p_objRule.dump() + " but " + p_objValue.dump());
            }
        } else if ("items" == p_strKeyword) {
            for (std::size_t i = 0; p_objValue.is_array() && i < p_objValue.size(); ++i) {
                check(p_objRule, p_objValue[i], p_strPlace + "/" + std::to_string(i));
            }
        } else if ("oneOf" == p_strKeyword) {
            checkChoices(p_objRule, p_objValue, p_strPlace);
        } else if ("pattern" == p_strKeyword) {
            const bool good = !p_objValue.is_string() || std::regex_search(p_objValue.get<std::string>(),
                                                                           std::regex(p_objRule.get<std::string>()));
            if (!good) {
                wrong(p_strPlace, "does not look like " + p_objRule.dump() + ": " + p_objValue.dump());
            }
        } else if ("minimum" == p_strKeyword || "maximum" == p_strKeyword) {
            const bool least = "minimum" == p_strKeyword;
            if (p_objValue.is_number() && (least ? p_objValue < p_objRule : p_objValue > p_objRule)) {
                wrong(p_strPlace, "is beyond the " + p_strKeyword + " " + p_objRule.dump() + ": " + p_objValue.dump());
            }
        } else if ("minItems" == p_strKeyword || "maxItems" == p_strKeyword || "minProperties" == p_strKeyword) {
            const bool counted = "minProperties" == p_strKeyword ? p_objValue.is_object() : p_objValue.is_array();
            const auto bound = p_objRule.get<std::size_t>();
            if (counted && ("maxItems" == p_strKeyword ? p_objValue.size() > bound : p_objValue.size() < bound)) {
                wrong(p_strPlace, "has " + std::to_string(p_objValue.size()) + " items");
            }
        } else if ("maxLength" == p_strKeyword) {
            if (p_objValue.is_string() &&
                p_objValue.get_ref<const std::string&>().size() > p_objRule.get<std::size_t>()) {
                wrong(p_strPlace, "is too long");
            }
        } else if (0 == setRemarks.count(p_strKeyword)) {
            wrong(p_strPlace, "the schema has the keyword \"" + p_strKeyword + "\", which is not understood here");
        }
    }
};

}  // namespace

std::vector<std::string> schemaErrors(const json& p_objSchema, const json& p_objValue) {
    Validator objValidator;
    objValidator.check(p_objSchema, p_objValue, "");
    return objValidator.vecErrors;
}

const json& description() {
    static const json objDocument = json::parse(camerad::openapiText());
    return objDocument;
}

const json& resolved(const json& p_objValue) {
    if (!p_objValue.is_object() || !p_objValue.contains("$ref")) {
        return p_objValue;
    }
    return description().at(json::json_pointer(p_objValue.at("$ref").get<std::string>().substr(1)));
}

const json* operationOf(const std::string& p_strMethod, const std::string& p_strPattern) {
    std::string method = p_strMethod;
    for (char& letter : method) {
        letter = static_cast<char>(letter - 'A' + 'a');
    }
    const json& paths = description().at("paths");
    const bool known = paths.contains(p_strPattern) && paths.at(p_strPattern).contains(method);
    return known ? &paths.at(p_strPattern).at(method) : nullptr;
}

void PrintTo(const DescribedOperation& p_stOperation, std::ostream* p_pStream) {
    *p_pStream << p_stOperation.strMethod << " " << p_stOperation.strTarget;
}

std::vector<DescribedOperation> describedOperations() {
    std::vector<DescribedOperation> vecOperations;
    for (const auto& path : description().at("paths").items()) {
        for (const auto& operation : path.value().items()) {
            DescribedOperation one{operation.key(), path.key(), path.key(), {}, false};
            for (char& letter : one.strMethod) {
                letter = static_cast<char>(letter - 'a' + 'A');
            }
            for (const json& reference : operation.value().value("parameters", json::array())) {
                const json& parameter = resolved(reference);
                const std::string part = "{" + parameter.at("name").get<std::string>() + "}";
                const std::size_t at = one.strTarget.find(part);
                if ("path" == parameter.at("in") && std::string::npos != at) {
                    const json& example = parameter.at("example");
                    one.strTarget.replace(at, part.size(),
                                          example.is_string() ? example.get<std::string>() : example.dump());
                }
            }
            if (operation.value().contains("requestBody")) {
                const json& body = resolved(operation.value().at("requestBody"));
                one.bEmpty = !body.at("required").get<bool>();
                one.objBody = one.bEmpty ? json() : body.at("content").at("application/json").at("example");
            }
            vecOperations.push_back(std::move(one));
        }
    }
    return vecOperations;
}

std::vector<std::string> answerErrors(const std::string& p_strMethod, const std::string& p_strPattern,
                                      const camerad::HttpResponse& p_stAnswer) {
    const json* const operation = operationOf(p_strMethod, p_strPattern);
    if (nullptr == operation) {
        return {p_strMethod + " " + p_strPattern + " is not described"};
    }
    const json& responses = operation->at("responses");
    const std::string status = std::to_string(p_stAnswer.nStatus);
    if (!responses.contains(status)) {
        return {"The status " + status + " is not described: " + p_stAnswer.strBody.substr(0, 200)};
    }
    const json& response = resolved(responses.at(status));
    if (!response.contains("content")) {
        return p_stAnswer.strBody.empty() ? std::vector<std::string>{} : std::vector<std::string>{"has a body"};
    }
    const std::string type = p_stAnswer.strType.substr(0, p_stAnswer.strType.find(';'));
    if (!response.at("content").contains(type)) {
        return {"The type \"" + type + "\" of status " + status + " is not described"};
    }
    if (std::string::npos == type.find("json")) {
        return {};
    }
    const json value = json::parse(p_stAnswer.strBody, nullptr, false);
    if (value.is_discarded()) {
        return {"is no JSON: " + p_stAnswer.strBody.substr(0, 200)};
    }
    std::vector<std::string> vecErrors = schemaErrors(response.at("content").at(type).at("schema"), value);
    if ("application/problem+json" == type && value.value("status", 0) != p_stAnswer.nStatus) {
        vecErrors.push_back("the problem's status is another than the answer's");
    }
    return vecErrors;
}

std::vector<std::string> eventErrors(const std::string& p_strType, const json& p_objData) {
    const json& types = description().at("components").at("schemas").at("Events").at("properties");
    if (!types.contains(p_strType)) {
        return {"the event \"" + p_strType + "\" is not described"};
    }
    return schemaErrors(types.at(p_strType), p_objData);
}
