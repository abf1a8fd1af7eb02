#include "apps/sensorctl/Table.h"

#include "apps/sensorctl/Shared.h"

#include <algorithm>

namespace sensorctl {

namespace {

struct Column {
    std::size_t nWidth = 0;
    bool bNumbers = true;
};

// A number, perhaps with a mark behind it, or the sign for none.
bool isNumber(const std::string& p_strCell) {
    return "-" == p_strCell ||
           (looksLikeNumber(p_strCell) && std::string::npos == p_strCell.find_first_not_of("0123456789*", 1));
}

std::vector<Column> columnsOf(const std::vector<std::vector<std::string>>& p_vecRows) {
    std::vector<Column> columns;
    for (std::size_t row = 0; row < p_vecRows.size(); ++row) {
        columns.resize(std::max(columns.size(), p_vecRows[row].size()));
        for (std::size_t i = 0; i < p_vecRows[row].size(); ++i) {
            const std::string& cell = p_vecRows[row][i];
            columns[i].nWidth = std::max(columns[i].nWidth, cell.size());
            columns[i].bNumbers = columns[i].bNumbers && (0 == row || isNumber(cell));
        }
    }
    return columns;
}

}  // namespace

std::vector<std::string> alignedLines(const std::vector<std::vector<std::string>>& p_vecRows) {
    const std::vector<Column> columns = columnsOf(p_vecRows);
    std::vector<std::string> lines;
    for (const std::vector<std::string>& row : p_vecRows) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) {
            const std::string padding(columns[i].nWidth - row[i].size(), ' ');
            line += (0 == i ? "" : "  ") + (columns[i].bNumbers ? padding + row[i] : row[i] + padding);
        }
        line.erase(line.find_last_not_of(' ') + 1);
        lines.push_back(line);
    }
    return lines;
}

bool matchesWildcards(const std::string& p_strText, const std::string& p_strPattern) {
    const std::string text = lowerCase(p_strText);
    const std::string pattern = lowerCase(p_strPattern);
    if (std::string::npos == pattern.find_first_of("*?")) {
        return std::string::npos != text.find(pattern);
    }
    // Only the latest * can have to take more: one place to come back to is enough.
    std::size_t at = 0;
    std::size_t in = 0;
    std::size_t star = std::string::npos;
    std::size_t taken = 0;
    while (at < text.size()) {
        if (in < pattern.size() && '*' == pattern[in]) {
            star = in++;
            taken = at;
        } else if (in < pattern.size() && ('?' == pattern[in] || pattern[in] == text[at])) {
            ++in;
            ++at;
        } else if (std::string::npos != star) {
            in = star + 1;
            at = ++taken;
        } else {
            return false;
        }
    }
    return std::string::npos == pattern.find_first_not_of('*', in);
}

}  // namespace sensorctl
