// What a page shows group by group, or class by class.
#pragma once

#include "command_line/sentence.h"
#include "data_files/data_words.h"

#include <wq_stat/wq_stat.h>

#include <cstddef>
#include <string>
#include <vector>

namespace wqstat {

/** A table with a row for each group or class; the first of them. */
struct PageRows {
    static constexpr std::size_t mostShown = 100;

    struct Cell {
        std::string path;  ///< of its member in the JSON document
        double value;
        double spread = 0.0;  ///< of limits their width
    };

    struct Row {
        Sentence name;
        std::vector<Cell> cells;
    };

    std::string caption;
    std::string item;   ///< "group"
    std::string items;  ///< "groups"
    std::vector<std::string> heads;
    std::vector<Row> rows;
    std::size_t total = 0;  ///< of which the first are here
};

// One for each analysis, which must have been made. Most have no such rows.
inline PageRows rowsOf(const wq_lib::BasicStatistics&, const DataWords&) { return {}; }
PageRows rowsOf(const wq_lib::SingleAnova& anova, const DataWords& words);
PageRows rowsOf(const wq_lib::LinearRegressionMultiY& regression, const DataWords& words);
PageRows rowsOf(wq_lib::GoodnessOfFit& test, const DataWords& words);
PageRows rowsOf(wq_lib::KolmogorovSmirnov2& test, const DataWords& words);
PageRows rowsOf(const wq_lib::Frequency& table, const DataWords& words);

/** Of the classes of a test: what each adds to chi-square. */
struct FitClass {
    double observed;
    double expected;
    double contribution;
};

/** @param i one of the classes that were analysed. */
FitClass fitClass(wq_lib::GoodnessOfFit& test, std::size_t i);

}  // namespace wqstat
