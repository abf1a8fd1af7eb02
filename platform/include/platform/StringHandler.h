// Small text helpers. All are re-entrant and never block.
#pragma once

#include "platform/Types.h"

#include <sstream>
#include <string>
#include <vector>

class PLATFORM_API StringHandler {
public:
    // Appends the pieces of p_strText between occurrences of the separator text. Blanks around a piece are kept; empty
    // pieces are dropped ("a,,b" gives "a" and "b"). An empty separator gives the whole text as one piece. The text may
    // itself stand in the list.
    static void split(const std::string& p_strText, std::vector<std::string>& p_vecPieces,
                      const std::string& p_strSeparator);

    // Reads a value of T from the text with the stream extraction operator. A text that holds no value of T stores what
    // the extraction stores (0 for numbers) and returns false.
    template <typename T>
    static bool str2type(const std::string& p_strText, T& p_tValue) {
        std::stringstream stream(p_strText, std::ios::in | std::ios::out);
        stream >> p_tValue;
        return !stream.fail();
    }
};
