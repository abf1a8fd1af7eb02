#include "platform/StringHandler.h"

void StringHandler::split(const std::string& p_strText, std::vector<std::string>& p_vecPieces,
                          const std::string& p_strSeparator) {
    std::vector<std::string> vecFound;  // p_strText may stand in p_vecPieces
    std::size_t nStart = 0;
    while (nStart < p_strText.size()) {
        const std::size_t nFound = p_strSeparator.empty() ? std::string::npos : p_strText.find(p_strSeparator, nStart);
        const std::size_t nEnd = std::string::npos == nFound ? p_strText.size() : nFound;
        if (nEnd > nStart) {
            vecFound.push_back(p_strText.substr(nStart, nEnd - nStart));
        }
        nStart = nEnd + p_strSeparator.size();
        if (std::string::npos == nFound) {
            break;
        }
    }
    p_vecPieces.insert(p_vecPieces.end(), vecFound.begin(), vecFound.end());
}
