#include "platform/ModuleConfigure.h"
#include "platform/QVFile.h"
#include "platform/linux/Decimal.h"
#include "platform/linux/XmlCheck.h"

#include <tinyxml.h>

#include <algorithm>
#include <utility>

namespace {

constexpr std::size_t kLargestDocument = 1024 * 1024;  // bytes; hundreds of times what a family of cameras needs
constexpr std::size_t kDeepestLevel = 64;
constexpr std::size_t kPadding = 16;         // zero bytes behind the text: TinyXML reads a little past the first
constexpr std::size_t kLongestDetail = 511;  // as ModuleConfigure says
constexpr std::size_t kLongestParameters = 255;

bool readDocument(const char* p_szPath, std::string& p_strText) {
    QVFile file;
    if (!file.open(p_szPath)) {
        return false;
    }
    char buffer[4096];
    int nRead = 0;
    while ((nRead = file.read(buffer, sizeof(buffer))) > 0) {
        p_strText.append(buffer, static_cast<std::size_t>(nRead));
        if (p_strText.size() > kLargestDocument) {
            return false;
        }
    }
    p_strText.resize(std::min(p_strText.size(), p_strText.find('\0')));
    return 0 == nRead;
}

std::string attributeOf(const TiXmlElement& p_objElement, const std::string& p_strName) {
    const std::string* const pValue = p_objElement.Attribute(p_strName);
    return nullptr == pValue ? std::string() : *pValue;
}

bool matches(const TiXmlElement& p_objDevice, const std::string& p_strModel, const std::string& p_strCode) {
    const std::string* const pModel = p_objDevice.Attribute(std::string("model"));
    const std::string* const pCode = p_objDevice.Attribute(std::string("code"));
    return nullptr != pModel && *pModel == p_strModel && (nullptr == pCode || *pCode == p_strCode);
}

bool readModule(const TiXmlElement& p_objElement, ModuleConfigure& p_objModule) {
    const std::string strDetail = attributeOf(p_objElement, "detail");
    const std::string strParameters = attributeOf(p_objElement, "parameters");
    u32 nId = 0;
    if (!platform::decimalOf(attributeOf(p_objElement, "id"), nId) || strDetail.size() > kLongestDetail ||
        strParameters.size() > kLongestParameters) {
        return false;
    }
    p_objModule.setModuleId(nId);
    p_objModule.setDetail(strDetail);
    p_objModule.setParameters(strParameters);
    return true;
}

}  // namespace

bool ModuleConfigureParser::parse(const char* p_szPath, const std::string& p_strModel, const std::string& p_strCode,
                                  std::vector<ModuleConfigure>& p_vecModules) {
    std::string strText;
    if (!readDocument(p_szPath, strText) || !platform::isPlainXml(strText, kDeepestLevel)) {
        return false;
    }
    strText.append(kPadding, '\0');
    TiXmlDocument document;
    document.Parse(strText.c_str(), nullptr, TIXML_ENCODING_UTF8);
    const TiXmlElement* const pRoot = document.RootElement();
    if (document.Error() || nullptr == pRoot) {
        return false;
    }
    std::vector<ModuleConfigure> vecFound;
    const bool bModules = "modules" == pRoot->ValueStr();
    for (const TiXmlElement* pDevice = bModules ? pRoot->FirstChildElement("device") : nullptr; nullptr != pDevice;
         pDevice = pDevice->NextSiblingElement("device")) {
        if (!matches(*pDevice, p_strModel, p_strCode)) {
            continue;
        }
        for (const TiXmlElement* pModule = pDevice->FirstChildElement("module"); nullptr != pModule;
             pModule = pModule->NextSiblingElement("module")) {
            ModuleConfigure objModule;
            if (!readModule(*pModule, objModule)) {
                return false;
            }
            vecFound.push_back(objModule);
        }
    }
    p_vecModules = std::move(vecFound);
    return true;
}
