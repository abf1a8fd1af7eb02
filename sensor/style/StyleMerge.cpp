#include "sensor/style/StyleMerge.h"

#include "platform/DeviceRoot.h"
#include "platform/StringHandler.h"
#include "sensor/config/DetailField.h"
#include "sensor/config/KeyVal.h"
#include "sensor/config/SensorFile.h"
#include "sensor/diag/Message.h"
#include "sensor/style/StyleDocument.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

constexpr char kSourceFile[] = "SensorFile.cpp";
constexpr diag::Operation kMerge = {"mergeStyle", "int mergeStyle(int, ModuleConfig*, char**, char*)"};

// Meant: values that agree in their first five characters are the same.
constexpr std::size_t kDecidingCharacters = 5;

bool isAccepted(const std::string& p_strAccepted, const char* p_szValue) {
    return 0 == std::strncmp(p_strAccepted.c_str(), p_szValue, kDecidingCharacters);
}

// Whether one condition of a variant holds.
bool isSelectedBy(const TiXmlAttribute& modi_attr, const char* p_szDetail) {
    SENSOR_DBG_OF(kMerge, "modi_attr->Name()(%s), modi_attr->Value()(%s)\n", modi_attr.Name(), modi_attr.Value());
    char nVal[kDetailFieldSize] = {};
    if (0 == getDetailFieldToStr(p_szDetail, modi_attr.Name(), nVal)) {
        std::vector<std::string> vecAccepted;
        StringHandler::split(modi_attr.Value(), vecAccepted, ",");
        const auto accepts = [&](const std::string& p_strAccepted) { return isAccepted(p_strAccepted, nVal); };
        if (std::any_of(vecAccepted.begin(), vecAccepted.end(), accepts) || isAccepted(modi_attr.Value(), nVal)) {
            return true;
        }
    }
    SENSOR_DBG_OF(kMerge, "modi_attr->Name()(%s), modi_attr->Value()(%s) nVal(%s)\n", modi_attr.Name(),
                  modi_attr.Value(), nVal);
    return false;
}

bool isSelected(const TiXmlElement& p_objVariant, const char* p_szDetail) {
    for (const TiXmlAttribute* pAttribute = p_objVariant.FirstAttribute(); nullptr != pAttribute;
         pAttribute = pAttribute->Next()) {
        if (isSelectedBy(*pAttribute, p_szDetail)) {
            return true;
        }
    }
    return false;
}

void applyVariant(TiXmlDocument& doc_style, const TiXmlElement& p_objVariant) {
    const TiXmlElement* node_second = p_objVariant.FirstChildElement();
    SENSOR_ASSERT_OF(kMerge, nullptr != node_second, "NULL != (node_second = node_first->FirstChildElement())");
    for (; nullptr != node_second; node_second = node_second->NextSiblingElement()) {
        updateStyleTab(&doc_style, node_second->Value(), node_second->Attribute("tab_key"),
                       node_second->FirstChildElement());
    }
}

// Writes the document to the channel's file and reads it back in place of the text.
void writeBack(TiXmlDocument& doc_style, int p_nChannelID, char** ui_style) {
    const std::string strFileName = mergedStyleFile(p_nChannelID);
    doc_style.SaveFile(platform::devicePath(strFileName));
    SENSOR_INFO_OF(kMerge, "%s\n", style::xmlString(doc_style).c_str());

    const INT64 file_len = getFileLen(strFileName.c_str());
    const std::size_t nSize = static_cast<std::size_t>(file_len) + 1;
    char* const pBlock = static_cast<char*>(std::realloc(*ui_style, nSize));
    int nLoaded = -1;
    if (nullptr != pBlock) {
        std::memset(pBlock, 0, nSize);
        *ui_style = pBlock;
        nLoaded = loadFromFile(strFileName.c_str(), *ui_style, file_len);
    }
    SENSOR_ASSERT_OF(kMerge, nLoaded > 0, "loadFromFile(filename, *ui_style, file_len) > 0");
}

}  // namespace

std::string mergedStyleFile(int p_nChannelID) {
    return "/tmp/merge_style_ch" + std::to_string(p_nChannelID) + ".xml";
}

int mergeStyle(int p_nChannelID, ModuleConfig* p_pModuleConfig, char** ui_style, char* ui_styleDiversity) {
    TiXmlDocument doc_style;
    SENSOR_ASSERT(style::loadMem(doc_style, *ui_style), "doc_style.LoadMem(*ui_style, TIXML_ENCODING_UTF8)");
    TiXmlDocument doc_style_div;
    SENSOR_ASSERT(style::loadMem(doc_style_div, ui_styleDiversity),
                  "doc_style_div.LoadMem(ui_styleDiversity, TIXML_ENCODING_UTF8)");

    const TiXmlElement* node_first = doc_style_div.RootElement();
    SENSOR_ASSERT(nullptr != node_first, "NULL != (node_first = doc_style_div.RootElement())");
    for (; nullptr != node_first; node_first = node_first->NextSiblingElement()) {
        if (isSelected(*node_first, p_pModuleConfig->szDetail)) {
            applyVariant(doc_style, *node_first);
        }
    }
    writeBack(doc_style, p_nChannelID, ui_style);
    return QVS_SUCCESS;
}

int updateStyleTab(TiXmlDocument* p_pStyle, const char* p_szOperation, const char* p_szTabKey,
                   const TiXmlElement* p_pNewTab) {
    TiXmlElement* const pRoot = p_pStyle->RootElement();
    TiXmlElement* tab_node = nullptr == pRoot ? nullptr : pRoot->FirstChildElement();
    if (!SENSOR_ASSERT(nullptr != tab_node, "NULL != (tab_node = doc_style->RootElement()->FirstChildElement())") ||
        nullptr == p_szTabKey) {
        return 0;
    }
    const auto hasKey = [&](const TiXmlElement& p_objTab) {
        const char* const szKey = p_objTab.Attribute("key");
        return nullptr != szKey && 0 == std::strcmp(szKey, p_szTabKey);
    };
    while (nullptr != tab_node && !hasKey(*tab_node)) {
        tab_node = tab_node->NextSiblingElement();
    }
    if (nullptr == tab_node) {
        return 0;
    }
    const std::string strOperation = nullptr == p_szOperation ? "" : p_szOperation;
    if ("Delete" == strOperation) {
        pRoot->RemoveChild(tab_node);
    } else if (nullptr != p_pNewTab && "AddAfter" == strOperation) {
        pRoot->InsertAfterChild(tab_node, *p_pNewTab);
    } else if (nullptr != p_pNewTab && "Modify" == strOperation) {
        pRoot->InsertAfterChild(tab_node, *p_pNewTab);
        pRoot->RemoveChild(tab_node);
    }
    return 0;
}
