#include "tests/unit/rootfs/Documents.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace {

void collect(const TiXmlElement* p_pElement, const std::string& p_strTab, std::vector<Parameter>& p_vecFound) {
    if (nullptr != p_pElement->Attribute("id")) {
        Parameter found;
        found.idText = attributeOf(*p_pElement, "id");
        found.id = std::atoi(found.idText.c_str());
        found.tab = p_strTab;
        found.type = attributeOf(*p_pElement, "type");
        found.label = attributeOf(*p_pElement, "label");
        found.hasValue = nullptr != p_pElement->Attribute("value");
        found.valueText = attributeOf(*p_pElement, "value");
        found.value = std::atoi(found.valueText.c_str());
        found.element = p_pElement;
        for (auto child = p_pElement->FirstChildElement(); nullptr != child; child = child->NextSiblingElement()) {
            found.choices.push_back({attributeOf(*child, "index"), attributeOf(*child, "label")});
        }
        p_vecFound.push_back(found);
    }
    for (auto child = p_pElement->FirstChildElement(); nullptr != child; child = child->NextSiblingElement()) {
        collect(child, p_strTab, p_vecFound);
    }
}

}  // namespace

std::string readRootfsFile(const std::string& p_strCameraPath) {
    std::ifstream file(std::string(ROOTFS_DIR) + p_strCameraPath, std::ios::binary);
    EXPECT_TRUE(file.is_open()) << p_strCameraPath;
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

std::unique_ptr<TiXmlDocument> parseDocument(const std::string& p_strText, const std::string& p_strWhat) {
    auto document = std::make_unique<TiXmlDocument>();
    document->Parse(p_strText.c_str(), nullptr, TIXML_ENCODING_UTF8);
    EXPECT_FALSE(document->Error()) << p_strWhat << ": " << document->ErrorDesc() << ", line " << document->ErrorRow();
    EXPECT_NE(nullptr, document->RootElement()) << p_strWhat << " holds no element";
    return document;
}

std::string textOf(const TiXmlDocument& p_objDocument) {
    TiXmlPrinter printer;
    p_objDocument.Accept(&printer);
    return printer.Str();
}

std::string attributeOf(const TiXmlElement& p_objElement, const char* p_szName) {
    const char* text = p_objElement.Attribute(p_szName);
    return nullptr == text ? std::string() : std::string(text);
}

std::optional<int> numberIn(const std::string& p_strText) {
    const std::size_t sign = 0 == p_strText.find('-') ? 1 : 0;
    const bool digits = p_strText.size() > sign && p_strText.size() <= sign + 9 &&
                        std::string::npos == p_strText.find_first_not_of("0123456789", sign);
    return digits ? std::optional<int>(std::atoi(p_strText.c_str())) : std::nullopt;
}

std::vector<std::string> splitAt(const std::string& p_strText, char p_cSeparator) {
    std::vector<std::string> pieces;
    std::istringstream stream(p_strText);
    for (std::string piece; std::getline(stream, piece, p_cSeparator);) {
        pieces.push_back(piece);
    }
    return pieces;
}

bool Parameter::offers(int p_nChoice) const {
    return std::any_of(choices.begin(), choices.end(),
                       [&](const Choice& choice) { return numberIn(choice.index) == p_nChoice; });
}

std::ostream& operator<<(std::ostream& p_objStream, const Parameter& p_stParameter) {
    return p_objStream << "id " << p_stParameter.idText << " \"" << p_stParameter.label << "\" in tab \""
                       << p_stParameter.tab << "\", value \"" << p_stParameter.valueText << "\"";
}

std::vector<const TiXmlElement*> StyleDocument::tabs() const {
    std::vector<const TiXmlElement*> found;
    const TiXmlElement* root = xml->RootElement();
    for (auto tab = root->FirstChildElement(); nullptr != tab; tab = tab->NextSiblingElement()) {
        found.push_back(tab);
    }
    return found;
}

std::vector<Parameter> StyleDocument::parameters() const {
    std::vector<Parameter> found;
    for (const TiXmlElement* tab : tabs()) {
        collect(tab, attributeOf(*tab, "key"), found);
    }
    for (Parameter& parameter : found) {
        parameter.document = xml;
    }
    return found;
}

bool StyleDocument::holds(int p_nId) const {
    return nullptr != findParameter(parameters(), p_nId);
}

const Parameter* findParameter(const std::vector<Parameter>& p_vecParameters, int p_nId) {
    const auto found = std::find_if(p_vecParameters.begin(), p_vecParameters.end(),
                                    [&](const Parameter& parameter) { return parameter.id == p_nId; });
    return p_vecParameters.end() == found ? nullptr : &*found;
}

StyleDocument loadStyle(const std::string& p_strCameraPath) {
    return {p_strCameraPath, parseDocument(readRootfsFile(p_strCameraPath), p_strCameraPath)};
}

int depthOf(const TiXmlNode& p_objNode) {
    int deepest = 0;
    for (auto child = p_objNode.FirstChildElement(); nullptr != child; child = child->NextSiblingElement()) {
        deepest = std::max(deepest, depthOf(*child));
    }
    return deepest + (nullptr == p_objNode.ToElement() ? 0 : 1);
}

std::vector<const TiXmlElement*> elementsOf(const TiXmlElement* p_pElement) {
    std::vector<const TiXmlElement*> found = {p_pElement};
    for (auto child = p_pElement->FirstChildElement(); nullptr != child; child = child->NextSiblingElement()) {
        for (const TiXmlElement* element : elementsOf(child)) {
            found.push_back(element);
        }
    }
    return found;
}
