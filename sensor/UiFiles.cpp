// The documents that the user interface loads.
#include "platform/VelmorTime.h"
#include "sensor/ISensorController.h"
#include "sensor/diag/Message.h"
#include "sensor/style/DynamicStyle.h"
#include "technic/QVMutex.h"

#include <algorithm>

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
