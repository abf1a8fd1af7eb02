#include "tests/integration/StoryFiles.h"

#include "sensor/config/KeyVal.h"

#include <tinyxml.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace fs = std::filesystem;

namespace {

using Records = std::vector<KeyVal>;
using Files = std::map<std::string, std::string>;

constexpr std::size_t kWidth = 100;  // characters of a line of records

bool startsWith(const std::string& p_strText, const std::string& p_strStart) {
    return 0 == p_strText.compare(0, p_strStart.size(), p_strStart);
}

bool isParameterFile(const std::string& p_strName) {
    return startsWith(p_strName, "/mnt/mtd/code/config_file/sensor");
}

bool isStyle(const std::string& p_strName) {
    return startsWith(p_strName, "/tmp/merge_style_ch");
}

Records recordsOf(const std::string& p_strBytes) {
    Records vecRecords(p_strBytes.size() / sizeof(KeyVal));
    std::memcpy(vecRecords.data(), p_strBytes.data(), vecRecords.size() * sizeof(KeyVal));
    return vecRecords;
}

bool haveTheSameKeys(const Records& p_vecOne, const Records& p_vecOther) {
    return std::equal(p_vecOne.begin(), p_vecOne.end(), p_vecOther.begin(), p_vecOther.end(),
                      [](const KeyVal& p_stOne, const KeyVal& p_stOther) { return p_stOne.key == p_stOther.key; });
}

std::string valueText(u32 p_nValue) {
    return std::to_string(static_cast<int>(p_nValue));
}

// Words, as many in a line as go into it.
std::vector<std::string> wrapped(const std::vector<std::string>& p_vecWords, const std::string& p_strIndent) {
    std::vector<std::string> vecLines;
    for (const std::string& strWord : p_vecWords) {
        if (vecLines.empty() || vecLines.back().size() + strWord.size() >= kWidth) {
            vecLines.push_back(p_strIndent + strWord);
        } else {
            vecLines.back() += " " + strWord;
        }
    }
    return vecLines;
}

// "34: 50 to 60, 2353: 50 to 40", or how far the two are from being comparable.
std::string difference(const Records& p_vecBefore, const Records& p_vecNow) {
    if (!haveTheSameKeys(p_vecBefore, p_vecNow)) {
        return std::to_string(p_vecNow.size()) + " records, other keys";
    }
    std::string strText;
    for (std::size_t i = 0; i < p_vecNow.size(); ++i) {
        if (p_vecBefore[i].value != p_vecNow[i].value) {
            strText += (strText.empty() ? "" : ", ") + std::to_string(p_vecNow[i].key) + ": " +
                       valueText(p_vecBefore[i].value) + " to " + valueText(p_vecNow[i].value);
        }
    }
    return strText;
}

std::string bytesText(const std::string& p_strBytes) {
    constexpr std::size_t kShown = 24;
    std::string strText = std::to_string(p_strBytes.size()) + " bytes:";
    for (std::size_t i = 0; i < std::min(kShown, p_strBytes.size()); ++i) {
        char szByte[8];
        std::snprintf(szByte, sizeof(szByte), " %02x",
                      static_cast<unsigned>(static_cast<unsigned char>(p_strBytes[i])));
        strText += szByte;
    }
    return strText + (p_strBytes.size() > kShown ? " ..." : "");
}

void addParameters(const TiXmlElement& p_objElement, std::vector<std::string>& p_vecWords) {
    const char* const szId = p_objElement.Attribute("id");
    if (nullptr != szId) {
        const char* const szValue = p_objElement.Attribute("value");
        int nChoices = 0;
        for (const TiXmlElement* pChild = p_objElement.FirstChildElement(); nullptr != pChild;
             pChild = pChild->NextSiblingElement()) {
            nChoices += nullptr != pChild->Attribute("index") ? 1 : 0;
        }
        p_vecWords.push_back(std::string(szId) + (nullptr == szValue ? "" : std::string("=") + szValue) +
                             (0 == nChoices ? "" : "[" + std::to_string(nChoices) + "]"));
    }
    for (const TiXmlElement* pChild = p_objElement.FirstChildElement(); nullptr != pChild;
         pChild = pChild->NextSiblingElement()) {
        addParameters(*pChild, p_vecWords);
    }
}

void addStyle(const std::string& p_strDocument, std::vector<std::string>& p_vecLines) {
    const std::vector<std::string> vecStyle = storyfiles::styleLines(p_strDocument);
    p_vecLines.insert(p_vecLines.end(), vecStyle.begin(), vecStyle.end());
}

// A file that was there before, else one that is told earlier in the same list, with the same keys.
std::string likeness(const std::string& p_strName, const Records& p_vecRecords, const Files& p_mapNow) {
    for (const auto& [strOther, strBytes] : p_mapNow) {
        if (strOther == p_strName) {
            return "";
        }
        if (isParameterFile(strOther) && haveTheSameKeys(p_vecRecords, recordsOf(strBytes))) {
            const std::string strDifference = difference(recordsOf(strBytes), p_vecRecords);
            return "as " + fs::path(strOther).filename().string() +
                   (strDifference.empty() ? "" : " but " + strDifference);
        }
    }
    return "";
}

void addNew(const std::string& p_strName, const Files& p_mapNow, std::vector<std::string>& p_vecLines) {
    const std::string& strBytes = p_mapNow.at(p_strName);
    const std::string strHead = "file new " + p_strName;
    if (isStyle(p_strName)) {
        p_vecLines.push_back(strHead);
        addStyle(strBytes, p_vecLines);
        return;
    }
    if (!isParameterFile(p_strName) || 0 != strBytes.size() % sizeof(KeyVal)) {
        p_vecLines.push_back(strHead + ", " + bytesText(strBytes));
        return;
    }
    const Records vecRecords = recordsOf(strBytes);
    const std::string strSize = ", " + std::to_string(vecRecords.size()) + " records";
    const std::string strLikeness = likeness(p_strName, vecRecords, p_mapNow);
    p_vecLines.push_back(strHead + strSize + (strLikeness.empty() ? "" : ", " + strLikeness));
    if (strLikeness.empty()) {
        std::vector<std::string> vecWords;
        for (const KeyVal& stRecord : vecRecords) {
            vecWords.push_back(std::to_string(stRecord.key) + "=" + valueText(stRecord.value));
        }
        const std::vector<std::string> vecWrapped = wrapped(vecWords, "    ");
        p_vecLines.insert(p_vecLines.end(), vecWrapped.begin(), vecWrapped.end());
    }
}

void addChanged(const std::string& p_strName, const std::string& p_strBefore, const std::string& p_strNow,
                std::vector<std::string>& p_vecLines) {
    const std::string strHead = "file changed " + p_strName + ", ";
    if (isParameterFile(p_strName)) {
        p_vecLines.push_back(strHead + difference(recordsOf(p_strBefore), recordsOf(p_strNow)));
    } else if (isStyle(p_strName)) {
        p_vecLines.push_back(strHead + "now");
        addStyle(p_strNow, p_vecLines);
    } else {
        p_vecLines.push_back(strHead + bytesText(p_strNow));
    }
}

}  // namespace

std::vector<std::string> storyfiles::styleLines(const std::string& p_strDocument) {
    TiXmlDocument document;
    document.Parse(p_strDocument.c_str());
    const TiXmlElement* const pRoot = document.RootElement();
    if (document.Error() || nullptr == pRoot) {
        return {"  not a document"};
    }
    std::vector<std::string> vecLines;
    for (const TiXmlElement* pTab = pRoot->FirstChildElement(); nullptr != pTab; pTab = pTab->NextSiblingElement()) {
        std::vector<std::string> vecWords;
        addParameters(*pTab, vecWords);
        const char* const szKey = pTab->Attribute("key");
        vecLines.push_back("  tab " + std::string(nullptr == szKey ? "without a key" : szKey));
        const std::vector<std::string> vecWrapped = wrapped(vecWords, "    ");
        vecLines.insert(vecLines.end(), vecWrapped.begin(), vecWrapped.end());
    }
    return vecLines;
}

std::map<std::string, std::string> storyfiles::below(const std::string& p_strRoot) {
    Files mapFiles;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(p_strRoot)) {
        const std::string strName = entry.path().string().substr(p_strRoot.size());
        const bool bEquipment = startsWith(strName, "/hd1/") || startsWith(strName, "/mnt/mtd/sign/") ||
                                startsWith(strName, "/mnt/mtd/code/factory_setting/") ||
                                ".gitkeep" == entry.path().filename();  // keeps the sample tree's empty folders
        if (entry.is_regular_file() && !bEquipment) {
            std::ifstream file(entry.path(), std::ios::binary);
            mapFiles[strName] = {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
        }
    }
    return mapFiles;
}

std::vector<std::string> storyfiles::changes(const Files& p_mapBefore, const Files& p_mapNow) {
    std::vector<std::string> vecLines;
    for (const auto& [strName, strBytes] : p_mapBefore) {
        if (0 == p_mapNow.count(strName)) {
            vecLines.push_back("file gone " + strName);
        }
    }
    for (const auto& [strName, strBytes] : p_mapNow) {
        const auto pBefore = p_mapBefore.find(strName);
        if (p_mapBefore.end() == pBefore) {
            addNew(strName, p_mapNow, vecLines);
        } else if (pBefore->second != strBytes) {
            addChanged(strName, pBefore->second, strBytes, vecLines);
        }
    }
    return vecLines;
}
