// One language of the user interface, as a host hands it to a controller.
#pragma once

#include <string>

struct LanguageDocuments {
    int m_nLanguageId;
    std::string m_strLanguageFile;  // what getUILanguageFile returns for this language
    std::string m_strCommonFile;    // what getUICommonFile returns for this language
};
