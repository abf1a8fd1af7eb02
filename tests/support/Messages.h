// The messages of the library, as a test expects to see them on standard output and in the error log.
//
// Real lines of the source are written as "#" on both sides: anyLine turns every line number of an output or a log into
// "#". Where a line number is frozen, compare without anyLine and give the number.
#pragma once

#include <cctype>
#include <string>

namespace messages {

constexpr char kAnyLine[] = "#";

// Every number behind "line:" becomes "#".
inline std::string anyLine(const std::string& p_strText) {
    static const std::string strMark = " line:";
    std::string strResult;
    std::size_t nFrom = 0;
    for (std::size_t nMark = p_strText.find(strMark); std::string::npos != nMark;
         nMark = p_strText.find(strMark, nFrom)) {
        const std::size_t nNumber = nMark + strMark.size();
        strResult += p_strText.substr(nFrom, nNumber - nFrom);
        nFrom = nNumber;
        while (nFrom < p_strText.size() && 0 != std::isdigit(static_cast<unsigned char>(p_strText[nFrom]))) {
            ++nFrom;
        }
        strResult += nFrom > nNumber ? kAnyLine : "";
    }
    return strResult + p_strText.substr(nFrom);
}

// Where a message comes from.
struct Place {
    std::string file;
    std::string function;
    std::string line = kAnyLine;

    std::string text() const { return "file:" + file + " fun:" + function + " line:" + line + "\n"; }
};

inline std::string coloured(int p_nForeground, const std::string& p_strText) {
    return "\033[0m\033[" + std::to_string(p_nForeground) + "m" + p_strText + "\033[0m";
}

// On standard output.
inline std::string debug(const Place& p_stPlace, const std::string& p_strText) {
    return coloured(0, "[sensor dbg] " + p_stPlace.text() + p_strText);
}
inline std::string trace(const std::string& p_strText) {
    return coloured(0, p_strText);
}
inline std::string error(const Place& p_stPlace, const std::string& p_strText) {
    return coloured(0, "[sensor err] " + p_stPlace.text() + p_strText);
}
inline std::string info(const Place& p_stPlace, const std::string& p_strText) {
    return coloured(35, "[sensor info] " + p_stPlace.text() + p_strText);
}
inline std::string warning(const Place& p_stPlace, const std::string& p_strText) {
    return coloured(0, "[sensor warn] " + p_stPlace.text() + p_strText);
}
inline std::string assertion(const Place& p_stPlace, const std::string& p_strCondition) {
    return coloured(31, "[sensor assert] " + p_stPlace.text() + p_strCondition + "   ~~~Assertion failed.\n");
}
inline std::string detail(const std::string& p_strText) {
    return coloured(31, p_strText);
}

// In the error log, without the dates.
inline std::string loggedWarning(const Place& p_stPlace, const std::string& p_strText) {
    return "[sensor warn] " + p_stPlace.text() + "[sensor warn] " + p_strText;
}
inline std::string loggedAssertion(const Place& p_stPlace, const std::string& p_strCondition) {
    return "[sensor assert] " + p_stPlace.text() + "[sensor assert] " + p_strCondition + "   ~~~Assertion failed.\n";
}
inline std::string loggedDetail(const std::string& p_strText) {
    return "[sensor assert] " + p_strText;
}

}  // namespace messages
