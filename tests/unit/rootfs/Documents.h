// Style documents as the tests look at them: a parsed text, its tabs and its parameters in document order.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <tinyxml.h>

// The whole content of a file of the sample tree, named by its camera path; fails the test when it cannot be read.
std::string readRootfsFile(const std::string& p_strCameraPath);

// Parses a text; fails the test, naming p_strWhat, when it is not well-formed.
std::unique_ptr<TiXmlDocument> parseDocument(const std::string& p_strText, const std::string& p_strWhat);

std::string textOf(const TiXmlDocument& p_objDocument);

// The attribute, empty when absent.
std::string attributeOf(const TiXmlElement& p_objElement, const char* p_szName);

// A whole text that is a decimal number, possibly negative; nothing for any other text.
std::optional<int> numberIn(const std::string& p_strText);

std::vector<std::string> splitAt(const std::string& p_strText, char p_cSeparator);

struct Choice {
    std::string index;  // as it stands in the document
    std::string label;
};

// An element that carries "id".
struct Parameter {
    int id = 0;
    std::string idText;
    std::string tab;  // the key of its tab
    std::string type;
    std::string label;
    bool hasValue = false;
    std::string valueText;
    int value = 0;
    std::vector<Choice> choices;
    const TiXmlElement* element = nullptr;
    std::shared_ptr<TiXmlDocument> document;  // keeps the element alive

    std::string attribute(const char* p_szName) const { return attributeOf(*element, p_szName); }
    std::optional<int> number(const char* p_szName) const { return numberIn(attribute(p_szName)); }
    bool offers(int p_nChoice) const;
};

// Prints the row that a failed expectation is about.
std::ostream& operator<<(std::ostream& p_objStream, const Parameter& p_stParameter);

// One style document, base or merged, with the name that failures show.
struct StyleDocument {
    std::string name;
    std::shared_ptr<TiXmlDocument> xml;

    std::vector<const TiXmlElement*> tabs() const;
    std::vector<Parameter> parameters() const;  // document order, an element before its children
    bool holds(int p_nId) const;
};

// The parameter of the list with this id, null when there is none.
const Parameter* findParameter(const std::vector<Parameter>& p_vecParameters, int p_nId);

StyleDocument loadStyle(const std::string& p_strCameraPath);

// The deepest nesting of elements; a root without children is 1.
int depthOf(const TiXmlNode& p_objNode);

// Every element below and including the given one.
std::vector<const TiXmlElement*> elementsOf(const TiXmlElement* p_pElement);
