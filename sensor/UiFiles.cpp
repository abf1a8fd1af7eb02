// The documents that the user interface loads.
#include "platform/VelmorTime.h"
#include "sensor/ISensorController.h"
#include "sensor/config/sensor.h"
#include "sensor/diag/Message.h"
#include "sensor/style/DynamicStyle.h"
#include "technic/QVMutex.h"

#include <algorithm>
#include <cstring>
#include <set>

namespace {

constexpr char kSourceFile[] = "ISensorController.cpp";
constexpr int kMostPolls = 30;     // of the image pipeline
constexpr int kPollPause = 50000;  // microseconds

// Gives the image pipeline time to come up, so that the driver's ranges are those of the running picture.
void waitForPipeline(VideoStreamModule& p_objModule) {
    for (int nCount = 1; nCount <= kMostPolls; ++nCount) {
        if (0 == p_objModule.get2ARunRet()) {
            SENSOR_PRINT("### m_pVideoStreamModule->get2ARunRet() is ok! count = %d\n", nCount);
            return;
        }
        VelmorTime(0, kPollPause).wait();
    }
}

// The table holds zero-terminated texts.
bool hasZeroByte(const std::string& p_strText) {
    return std::string::npos != p_strText.find('\0');
}

}  // namespace

std::string ISensorController::getUIStyleFile() {
    if (nullptr != m_pVideoStreamModule) {
        waitForPipeline(*m_pVideoStreamModule);
    }
    const QVMutexManager guard(&m_objMutex, kSourceFile, __LINE__);
    if (!isReady(__func__)) {
        return {};
    }
    std::string strTmp;
    SENSOR_ASSERT(
        QVS_SUCCESS == getDnaStyle(static_cast<int>(u32{m_nCameraID}), m_stSysConf.szUIStyle, strTmp, m_bShowWDRFalg),
        "QVS_SUCCESS == getDnaStyle(m_nCameraID,m_stSysConf.szUIStyle, strTmp,m_bShowWDRFalg)");
    SENSOR_INFO("%s\n", strTmp.c_str());
    return strTmp;
}

bool ISensorController::setLanguageDocuments(const std::vector<LanguageDocuments>& p_vecDocuments) {
    const QVMutexManager guard(&m_objMutex, kSourceFile, __LINE__);
    std::set<int> setIds;
    for (const LanguageDocuments& stDocuments : p_vecDocuments) {
        if (!setIds.insert(stDocuments.m_nLanguageId).second) {
            SENSOR_ERR("language %d is there twice, no language is taken over\n", stDocuments.m_nLanguageId);
            return false;
        }
        if (hasZeroByte(stDocuments.m_strLanguageFile) || hasZeroByte(stDocuments.m_strCommonFile)) {
            SENSOR_ERR("language %d: a text holds a zero byte, no language is taken over\n", stDocuments.m_nLanguageId);
            return false;
        }
    }
    std::vector<LanguageDocuments> vecDocuments = p_vecDocuments;
    m_vecLanguageDocuments.swap(vecDocuments);
    if (nullptr != m_ppUserKeyVal) {
        freeLanguageTexts(m_stSysConf);
        fillLanguageTable();
    }
    return true;
}

// Lays the host's documents out as the table that the channel's configuration knows. The texts become the
// configuration's, which frees them; the array stays the controller's.
void ISensorController::fillLanguageTable() {
    m_stSysConf.nLanguageSum = 0;  // the table is empty until the new one stands
    m_stSysConf.pLanguageFiles = nullptr;
    m_vecLanguageFiles.assign(m_vecLanguageDocuments.size(), LanguageFileEntry{});
    std::transform(m_vecLanguageDocuments.begin(), m_vecLanguageDocuments.end(), m_vecLanguageFiles.begin(),
                   [](const LanguageDocuments& p_stDocuments) {
                       LanguageFileEntry stEntry{};
                       stEntry.nLanguageId = p_stDocuments.m_nLanguageId;
                       stEntry.szLanguageFile = strdup(p_stDocuments.m_strLanguageFile.c_str());
                       stEntry.szCommonFile = strdup(p_stDocuments.m_strCommonFile.c_str());
                       return stEntry;
                   });
    m_stSysConf.nLanguageSum = static_cast<u32>(m_vecLanguageFiles.size());
    m_stSysConf.pLanguageFiles = m_vecLanguageFiles.empty() ? nullptr : m_vecLanguageFiles.data();
}

// The text of the language's entry, or of the first one when there is none for the language.
std::string ISensorController::languageText(int p_nLanguageId, char* LanguageFileEntry::*p_pText) const {
    if (nullptr == m_stSysConf.pLanguageFiles || 0 == m_stSysConf.nLanguageSum) {
        return {};
    }
    const LanguageFileEntry* const pFirst = m_stSysConf.pLanguageFiles;
    const LanguageFileEntry* const pEnd = pFirst + m_stSysConf.nLanguageSum;
    const LanguageFileEntry* const pFound = std::find_if(
        pFirst, pEnd, [=](const LanguageFileEntry& p_stEntry) { return p_stEntry.nLanguageId == p_nLanguageId; });
    const char* const szText = (pEnd == pFound ? pFirst : pFound)->*p_pText;
    return nullptr == szText ? "" : szText;
}

std::string ISensorController::getUICommonFile(int p_nLanguageId) {
    const QVMutexManager guard(&m_objMutex, kSourceFile, __LINE__);
    SENSOR_DBG("LanguageId(%d)\n", p_nLanguageId);
    return isReady(__func__) ? languageText(p_nLanguageId, &LanguageFileEntry::szCommonFile) : std::string();
}

std::string ISensorController::getUILanguageFile(int p_nLanguageId) {
    const QVMutexManager guard(&m_objMutex, kSourceFile, __LINE__);
    SENSOR_DBG("LanguageId(%d)\n", p_nLanguageId);
    return isReady(__func__) ? languageText(p_nLanguageId, &LanguageFileEntry::szLanguageFile) : std::string();
}
