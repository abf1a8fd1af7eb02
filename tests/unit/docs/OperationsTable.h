// The tables of docs/operations.md, as the tests read them.
#pragma once

#include <fstream>
#include <string>
#include <vector>

// One line of a table: the section that it stands in, and its cells without the blanks around them.
struct TableRow {
    std::string section;
    std::vector<std::string> cells;

    // The name in the first cell, without its code marks.
    std::string name() const { return cells.front().substr(1, cells.front().size() - 2); }
};

inline std::string trimmed(const std::string& p_strText) {
    const std::size_t nFirst = p_strText.find_first_not_of(' ');
    return std::string::npos == nFirst ? "" : p_strText.substr(nFirst, p_strText.find_last_not_of(' ') - nFirst + 1);
}

// Every row whose first cell is a name in code marks.
inline std::vector<TableRow> operationRows() {
    std::ifstream page(OPERATIONS_PAGE);
    std::vector<TableRow> vecRows;
    std::string strSection;
    for (std::string strLine; std::getline(page, strLine);) {
        if (0 == strLine.rfind("## ", 0)) {
            strSection = strLine.substr(3);
        }
        if (0 != strLine.rfind("| `", 0)) {
            continue;
        }
        TableRow stRow{strSection, {}};
        for (std::size_t nFrom = 1, nEnd = strLine.find('|', 1); std::string::npos != nEnd;
             nFrom = nEnd + 1, nEnd = strLine.find('|', nFrom)) {
            stRow.cells.push_back(trimmed(strLine.substr(nFrom, nEnd - nFrom)));
        }
        vecRows.push_back(stRow);
    }
    return vecRows;
}
