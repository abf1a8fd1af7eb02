#include "sensor/style/StyleDocument.h"

#include "platform/QVFile.h"
#include "sensor/style/XmlNesting.h"

#include <cstdlib>
#include <cstring>

namespace style {

namespace {
// Zero bytes behind the text: more than one character can announce.
constexpr std::size_t kPadding = 16;

// Bytes; a style document has some tens of thousands.
constexpr INT64 kLargestFile = 64 * 1024 * 1024;
}  // namespace

bool loadMem(TiXmlDocument& p_objDocument, const char* p_szText) {
    if (nullptr == p_szText || xmlNesting(p_szText, kDeepestNesting) > kDeepestNesting) {
        return false;
    }
    std::string strPadded(p_szText);
    strPadded.append(kPadding, '\0');
    p_objDocument.Parse(strPadded.c_str(), nullptr, TIXML_ENCODING_UTF8);
    return !p_objDocument.Error();
}

bool loadFile(TiXmlDocument& p_objDocument, const std::string& p_strCameraPath) {
    QVFile file;
    if (!file.open(p_strCameraPath.c_str())) {
        return false;
    }
    const INT64 nLength = file.getLength();
    if (nLength < 0 || nLength > kLargestFile) {
        return false;
    }
    std::string strText(static_cast<std::size_t>(nLength), '\0');
    return file.read(strText.data(), static_cast<int>(nLength)) == nLength && loadMem(p_objDocument, strText.c_str());
}

std::string xmlString(const TiXmlDocument& p_objDocument) {
    TiXmlPrinter printer;
    p_objDocument.Accept(&printer);
    return printer.Str();
}

int intAttribute(const TiXmlElement& p_objElement, const char* p_szName, int p_nDefault) {
    const char* const szValue = p_objElement.Attribute(p_szName);
    return nullptr == szValue ? p_nDefault : std::atoi(szValue);  // NOLINT(cert-err34-c): 0 stands for no number
}

bool hasId(const TiXmlElement& p_objElement, int p_nCmd) {
    return nullptr != p_objElement.Attribute("id") && intAttribute(p_objElement, "id", 0) == p_nCmd;
}

}  // namespace style
