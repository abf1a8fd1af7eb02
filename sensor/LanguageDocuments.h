/// @file
/// One language of the user interface, as a host hands it to a controller.
#pragma once

#include <string>

/// One language of the user interface.
struct LanguageDocuments {
    int m_nLanguageId;              ///< the host's number of the language
    std::string m_strLanguageFile;  ///< what ISensorController::getUILanguageFile returns for this language
    std::string m_strCommonFile;    ///< what ISensorController::getUICommonFile returns for this language
};
