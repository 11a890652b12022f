// Reference values: comma-separated rows under a line of titles, '#' lines skipped.
#pragma once

#include "files.h"

#include <cstddef>
#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace wq_test {

struct TableRow {
    int line = 0;
    std::vector<std::string> cells;
};

inline std::vector<TableRow> readTable(const std::string& path)
{
    std::istringstream text(contentOf(path));
    std::vector<TableRow> rows;
    std::string line;
    bool titles = true;
    for (int number = 1; std::getline(text, line); ++number) {
        if (line.empty() || line.front() == '#') continue;
        if (titles) {
            titles = false;
            continue;
        }
        TableRow row;
        row.line = number;
        std::size_t begin = 0;
        for (std::size_t end; (end = line.find(',', begin)) != std::string::npos; begin = end + 1)
            row.cells.push_back(line.substr(begin, end - begin));
        row.cells.push_back(line.substr(begin));
        rows.push_back(row);
    }
    return rows;
}

// A table made by the programs in tests/reference.
inline std::vector<TableRow> referenceTable(const std::string& name) { return readTable(std::string(WQ_TEST_DIR) + "/reference/" + name); }

inline double numberIn(const std::string& cell)
{
    char* end = nullptr;
    const double number = std::strtod(cell.c_str(), &end);
    if (cell.empty() || *end != '\0') throw std::runtime_error("not a number: '" + cell + "'");
    return number;
}

inline std::size_t countIn(const std::string& cell)
{
    char* end = nullptr;
    const std::size_t number = std::strtoull(cell.c_str(), &end, 10);
    if (cell.empty() || *end != '\0') throw std::runtime_error("not a count: '" + cell + "'");
    return number;
}

}  // namespace wq_test
