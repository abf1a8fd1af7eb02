#include "sensor/style/DynamicStyle.h"

#include "sensor/config/DriverLists.h"
#include "sensor/config/KeyVal.h"
#include "sensor/diag/Message.h"
#include "sensor/style/ShowFlags.h"
#include "sensor/style/StyleDocument.h"

#include <algorithm>

namespace {

constexpr char kSourceFile[] = "SensorFile.cpp";
constexpr diag::Operation kPrune = {"doDnaStyle",
                                    "int doDnaStyle(TiXmlElement*, int, const ia_dynamic_params_attr_st*)"};
constexpr diag::Operation kCustomize = {"doCustomizeStyle",
                                        "int doCustomizeStyle(TiXmlElement*, int, ia_dynamic_params_attr_st*)"};

// Commands and ids with a meaning of their own here.
constexpr int kNoWDRNote = 10;     // shown only where wide dynamic range is not offered
constexpr int kNoBeawayNote = 11;  // shown only where beaway is not offered
constexpr int kMaxShutter = 49;
constexpr int kFixShutter = 50;
constexpr int kNearLimit = 1537;
constexpr int kHLCSwitch = 112;
constexpr int kBLCSwitch = 128;

// A style's own value of these decides with the driver about the default.
constexpr int kDriverDefault = 100;  // this value leaves the driver's default

// Handles every element with the command's id, in document order; the first result other than 0 ends the walk.
template <typename Handle>
int forEachWithId(TiXmlElement* p_pElement, int p_nCmd, const Handle& p_fnHandle) {
    if (nullptr == p_pElement) {
        return 0;
    }
    if (style::hasId(*p_pElement, p_nCmd)) {
        return p_fnHandle(*p_pElement);
    }
    for (TiXmlElement* pChild = p_pElement->FirstChildElement(); nullptr != pChild;
         pChild = pChild->NextSiblingElement()) {
        const int nResult = forEachWithId(pChild, p_nCmd, p_fnHandle);
        if (0 != nResult) {
            return nResult;
        }
    }
    return 0;
}

bool holdsItem(const ia_dynamic_params_attr_st& p_stRange, int p_nItemSum, int p_nValue) {
    const int* const pEnd = p_stRange.item + p_nItemSum;
    return pEnd != std::find(p_stRange.item, pEnd, p_nValue);
}

int pruneParameter(TiXmlElement& p_objParameter, int p_nCmd, const ia_dynamic_params_attr_st& p_stRange) {
    SENSOR_DBG_OF(kPrune, "_________________cmd(%d) default(%d)__________________\n", p_nCmd, p_stRange.default_val);
    p_objParameter.SetAttribute("value", p_stRange.default_val);
    const int nItemSum = dynamicItemCount(p_stRange);
    TiXmlElement* pNext = nullptr;
    for (TiXmlElement* pChoice = p_objParameter.FirstChildElement(); nullptr != pChoice; pChoice = pNext) {
        pNext = pChoice->NextSiblingElement();
        const char* const szIndex = pChoice->Attribute("index");
        if (nullptr == szIndex) {
            return -1;
        }
        if (!holdsItem(p_stRange, nItemSum, style::intAttribute(*pChoice, "index", 0))) {
            SENSOR_DBG_OF(kPrune, "_________________delete comboitem(%s)__________________\n", szIndex);
            p_objParameter.RemoveChild(pChoice);
        }
    }
    return 0;
}

int collectChoices(const TiXmlElement& p_objParameter, ia_dynamic_params_attr_st& p_stRange) {
    int nCollected = 0;
    int nLeftOut = 0;
    for (const TiXmlElement* pChoice = p_objParameter.FirstChildElement(); nullptr != pChoice;
         pChoice = pChoice->NextSiblingElement()) {
        if (nullptr == pChoice->Attribute("index")) {
            continue;
        }
        if (nCollected < IA_DYNAMIC_ITEMS_MAX) {
            p_stRange.item[nCollected++] = style::intAttribute(*pChoice, "index", 0);
        } else {
            ++nLeftOut;
        }
    }
    if (nLeftOut > 0) {
        SENSOR_ERR_OF(kCustomize, "%d choices beyond %d are left out\n", nLeftOut, IA_DYNAMIC_ITEMS_MAX);
    }
    p_stRange.items_cnt = nCollected;
    // Meant: without a choice, the highest value is the word in front of the items, which is their number, and the lowest
    // is what the first item held before.
    p_stRange.max_val = nCollected > 0 ? p_stRange.item[nCollected - 1] : p_stRange.items_cnt;
    p_stRange.min_val = p_stRange.item[0];
    return 0;
}

// Lets the style's own value of a shutter or near limit into the driver's range.
void applyOwnValue(TiXmlElement* p_pRoot, int p_nIndex, int p_nCmd, ia_dynamic_params_attr_st& dnaParamList) {
    int nVal = 0;
    if (0 != getDnaValbyCmdId(p_pRoot, p_nCmd, nVal) || kDriverDefault == nVal) {
        return;
    }
    SENSOR_PRINT("dnaCmdList.cmd_list[%d] = dnaParamList.items_cnt(%d)\n", p_nIndex, dnaParamList.items_cnt);
    const int nItemSum = dynamicItemCount(dnaParamList);
    for (int i = 0; i < nItemSum; ++i) {
        SENSOR_PRINT(" dnaParamList.item[%d] = %d nVal = %d \n", i, dnaParamList.item[i], nVal);
        if (dnaParamList.item[i] == nVal) {
            dnaParamList.default_val = nVal;
            break;
        }
    }
    if (nVal >= kOwnChoicesOffset && kMaxShutter == p_nCmd) {
        doCustomizeStyle(p_pRoot, p_nCmd, &dnaParamList);
        dnaParamList.default_val = nVal - kOwnChoicesOffset;
    }
}

void removeById(TiXmlElement* p_pRoot, int p_nId) {
    TiXmlElement* pNode = nullptr;
    getNodebyCmdId(p_pRoot, p_nId, pNode);
    DeleteNode(p_pRoot, pNode);
}

}  // namespace

int doDnaStyle(TiXmlElement* p_pElement, int p_nCmd, const ia_dynamic_params_attr_st* p_pRange) {
    return forEachWithId(p_pElement, p_nCmd, [&](TiXmlElement& p_objParameter) {
        return pruneParameter(p_objParameter, p_nCmd, *p_pRange);
    });
}

int doCustomizeStyle(TiXmlElement* p_pElement, int p_nCmd, ia_dynamic_params_attr_st* p_pRange) {
    return forEachWithId(p_pElement, p_nCmd,
                         [&](TiXmlElement& p_objParameter) { return collectChoices(p_objParameter, *p_pRange); });
}

int getDnaValbyCmdId(TiXmlElement* p_pElement, int p_nCmd, int& p_nValue) {
    return forEachWithId(p_pElement, p_nCmd, [&](TiXmlElement& p_objParameter) {
        p_nValue = style::intAttribute(p_objParameter, "value", p_nValue);
        return 0;
    });
}

int getNodebyCmdId(TiXmlElement* p_pElement, int p_nCmd, TiXmlElement*& p_pNode) {
    return forEachWithId(p_pElement, p_nCmd, [&](TiXmlElement& p_objParameter) {
        p_pNode = &p_objParameter;
        return 0;
    });
}

int DeleteNode(TiXmlElement* p_pRoot, TiXmlElement* p_pNode) {
    if (nullptr == p_pRoot || nullptr == p_pNode) {
        return -1;
    }
    TiXmlNode* const pParent = p_pNode->Parent();
    if (nullptr != pParent && nullptr != pParent->ToElement()) {
        pParent->RemoveChild(p_pNode);
    }
    return 0;
}

int ModifyNodebyCmdId(TiXmlElement* p_pElement, int p_nCmd) {
    return forEachWithId(p_pElement, p_nCmd, [&](TiXmlElement& p_objParameter) {
        if (kHLCSwitch == p_nCmd) {
            p_objParameter.SetAttribute("enable_list", "128");
        } else if (kBLCSwitch == p_nCmd) {
            p_objParameter.SetAttribute("enable_list", "112");
        }
        return 0;
    });
}

int getDnaStyle(int p_channelID, const char* szStyle, std::string& strDnaStyle, bool p_bShowWDRFalg) {
    ia_dynamic_params_cmds_st dnaCmdList{};
    SENSOR_ASSERT(
        QVS_SUCCESS == ia_ioctrl_v2(p_channelID - 1, IA_CMD_DYNAMIC_PARAMS_CMDS_GET, IA_CMD_OPT_GET, &dnaCmdList),
        "QVS_SUCCESS == ia_ioctrl_v2(p_channelID-1, IA_CMD_DYNAMIC_PARAMS_CMDS_GET, IA_CMD_OPT_GET, "
        "(void*)(&dnaCmdList))");
    TiXmlDocument objStyleXmlDoc;
    SENSOR_ASSERT(style::loadMem(objStyleXmlDoc, szStyle), "objStyleXmlDoc.LoadMem(szStyle, TIXML_ENCODING_UTF8)");
    TiXmlElement* const pRoot = objStyleXmlDoc.RootElement();

    SENSOR_DBG("dnaCmdList.cmd_cnt(%d)\n", dnaCmdList.cmd_cnt);
    const int nCmdSum = dynamicCommandCount(dnaCmdList);
    // Zeroed once, not for each command: a failed request applies the range before it again.
    ia_dynamic_params_attr_st dnaParamList{};
    for (int i = 0; i < nCmdSum; ++i) {
        const int nCmd = static_cast<int>(dnaCmdList.cmd_list[i]);
        SENSOR_DBG("dnaCmdList.cmd_list[%d] = cmd(%d)\n", i, nCmd);
        SENSOR_ASSERT(QVS_SUCCESS == ia_ioctrl_v2(p_channelID - 1, dnaCmdList.cmd_list[i], IA_CMD_OPT_GET_PARAM_RNAGE,
                                                  &dnaParamList),
                      "QVS_SUCCESS == ia_ioctrl_v2(p_channelID-1, (ia_cmd_e)dnaCmdList.cmd_list[i], "
                      "IA_CMD_OPT_GET_PARAM_RNAGE, (void*)(&dnaParamList))");
        if (kMaxShutter == nCmd || kFixShutter == nCmd || kNearLimit == nCmd) {
            applyOwnValue(pRoot, i, nCmd, dnaParamList);
        }
        SENSOR_ASSERT(QVS_SUCCESS == doDnaStyle(pRoot, nCmd, &dnaParamList),
                      "QVS_SUCCESS == doDnaStyle(objStyleXmlDoc.RootElement(), dnaCmdList.cmd_list[i], &dnaParamList)");
    }
    if (p_bShowWDRFalg) {
        removeById(pRoot, kNoWDRNote);
    }
    if (getshowBeawayFalg()) {
        removeById(pRoot, kNoBeawayNote);
    }
    objStyleXmlDoc.SaveFile();  // meant: a document from memory has no name, so nothing is written
    strDnaStyle = style::xmlString(objStyleXmlDoc);
    return QVS_SUCCESS;
}
