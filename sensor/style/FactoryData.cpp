#include "sensor/style/FactoryData.h"

#include "sensor/diag/Message.h"
#include "sensor/style/DynamicStyle.h"
#include "sensor/style/StyleDocument.h"

#include <algorithm>
#include <string>

namespace {

constexpr char kSourceFile[] = "SensorFile.cpp";
}  // namespace

u32 factoryRoom(const char* p_szStyle) {
    if (nullptr == p_szStyle) {
        return 0;
    }
    const std::string strStyle(p_szStyle);
    return static_cast<u32>(
        std::count_if(strStyle.begin(), strStyle.end(), [](char p_cByte) { return '<' == p_cByte || '&' == p_cByte; }));
}

int style2KeyVal(TiXmlElement* pRootNode, KeyVal* p_pKeyVal, u32* p_pnKeyValNum) {
    if (nullptr == pRootNode) {
        return 0;
    }
    if (nullptr != pRootNode->Attribute("id") && nullptr != pRootNode->Attribute("value")) {
        p_pKeyVal[*p_pnKeyValNum] = {static_cast<u32>(style::intAttribute(*pRootNode, "id", 0)),
                                     static_cast<u32>(style::intAttribute(*pRootNode, "value", 0))};
        ++*p_pnKeyValNum;
    }
    int nResult = 0;
    for (TiXmlElement* pChild = pRootNode->FirstChildElement(); nullptr != pChild && 0 == nResult;
         pChild = pChild->NextSiblingElement()) {
        nResult = style2KeyVal(pChild, p_pKeyVal, p_pnKeyValNum);
    }
    return nResult;
}

int getFctData(int p_channelID, char* p_szStyle, KeyVal* p_pKeyVal, u32* p_pnKeyValNum, bool p_bShowWDRFalg) {
    std::string strDnaStyle;
    SENSOR_ASSERT(QVS_SUCCESS == getDnaStyle(p_channelID, p_szStyle, strDnaStyle, p_bShowWDRFalg),
                  "QVS_SUCCESS == getDnaStyle(p_channelID,p_szStyle, strDnaStyle,p_bShowWDRFalg)");
    TiXmlDocument objDnaStyleDoc;
    SENSOR_ASSERT(style::loadMem(objDnaStyleDoc, strDnaStyle.c_str()),
                  "objDnaStyleDoc.LoadMem(strDnaStyle.c_str(), TIXML_ENCODING_UTF8)");
    *p_pnKeyValNum = 0;
    TiXmlElement* const pRootNode = objDnaStyleDoc.RootElement();
    SENSOR_ASSERT_DETAIL(QVS_SUCCESS == style2KeyVal(pRootNode, p_pKeyVal, p_pnKeyValNum),
                         "QVS_SUCCESS == style2KeyVal(pRootNode, p_pKeyVal, p_pnKeyValNum)", "p_pnKeyValNum(%u)\n",
                         *p_pnKeyValNum);
    return QVS_SUCCESS;
}
