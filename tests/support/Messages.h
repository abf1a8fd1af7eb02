// The messages of the library, as a test expects to see them on standard output and in the error log.
//
// Real lines of the source are written as "#" on both sides: anyLine turns every line number of an output or a log into
// "#". Where a line number is frozen, compare without anyLine and give the number. anyPlace does the same for the
// functions: for sites that may move between the functions of one source file.
#pragma once

#include <cctype>
#include <string>

namespace messages {

constexpr char kAny[] = "#";

// Every word of letters, digits and underscores behind the mark becomes "#".
inline std::string anyWordBehind(const std::string& p_strMark, const std::string& p_strText) {
    const auto isOfWord = [](char p_cByte) {
        return '_' == p_cByte || 0 != std::isalnum(static_cast<unsigned char>(p_cByte));
    };
    std::string strResult;
    std::size_t nFrom = 0;
    for (std::size_t nMark = p_strText.find(p_strMark); std::string::npos != nMark;
         nMark = p_strText.find(p_strMark, nFrom)) {
        const std::size_t nWord = nMark + p_strMark.size();
        strResult += p_strText.substr(nFrom, nWord - nFrom);
        nFrom = nWord;
        while (nFrom < p_strText.size() && isOfWord(p_strText[nFrom])) {
            ++nFrom;
        }
        strResult += nFrom > nWord ? kAny : "";
    }
    return strResult + p_strText.substr(nFrom);
}

inline std::string anyLine(const std::string& p_strText) {
    return anyWordBehind(" line:", p_strText);
}

inline std::string anyPlace(const std::string& p_strText) {
    return anyWordBehind(" fun:", anyLine(p_strText));
}

// Where a message comes from.
struct Place {
    std::string file;
    std::string function;
    std::string line = kAny;

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
