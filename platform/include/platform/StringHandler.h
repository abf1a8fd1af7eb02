/// @file
/// Small text helpers.
#pragma once

#include "platform/Types.h"

#include <sstream>
#include <string>
#include <vector>

/// Small text helpers. All are re-entrant and never block.
class PLATFORM_API StringHandler {
public:
    /// Appends the pieces of a text between occurrences of a separator. Blanks around a piece are kept; empty pieces
    /// are dropped ("a,,b" gives "a" and "b").
    /// @param p_strText            the text; may itself stand in the list
    /// @param[in,out] p_vecPieces  the pieces are appended to it
    /// @param p_strSeparator       the separator text; an empty one gives the whole text as one piece
    static void split(const std::string& p_strText, std::vector<std::string>& p_vecPieces,
                      const std::string& p_strSeparator);

    /// Reads a value from a text with the stream extraction operator.
    /// @tparam T            type of the value
    /// @param p_strText     the text
    /// @param[out] p_tValue the value; of a text that holds none, what the extraction stores (0 for numbers)
    /// @return false when the text holds no value of T
    template <typename T>
    static bool str2type(const std::string& p_strText, T& p_tValue) {
        std::stringstream stream(p_strText, std::ios::in | std::ios::out);
        stream >> p_tValue;
        return !stream.fail();
    }
};
