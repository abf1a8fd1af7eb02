// Style documents of a test's own, and a view of documents that tests can compare.
#pragma once

#include "tinyxml.h"

#include <string>

namespace documents {

// As many elements as that, each inside the one before.
inline std::string nest(int p_nDepth) {
    std::string strText;
    std::string strEnd;
    for (int i = 1; i < p_nDepth; ++i) {
        strText += "<a>";
        strEnd += "</a>";
    }
    return strText + "<a/>" + strEnd;
}

// The elements and texts of a tree on one line: formatting does not show, everything else does.
inline std::string compact(const TiXmlNode& p_objNode) {
    TiXmlPrinter printer;
    printer.SetStreamPrinting();
    p_objNode.Accept(&printer);
    return printer.Str();
}

// The same of a text; "(broken)" when it does not parse.
inline std::string compact(const std::string& p_strText) {
    TiXmlDocument document;
    document.Parse(p_strText.c_str(), nullptr, TIXML_ENCODING_UTF8);
    return document.Error() ? "(broken)" : compact(document);
}

}  // namespace documents
