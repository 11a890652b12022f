// What an analysis took of the data that were read, in words.
#pragma once

#include "data_files/two_data_files.h"

#include <wq_stat/wq_stat.h>

#include <cstddef>
#include <string>
#include <vector>

namespace wqstat {

struct HeldData {
    std::vector<double> observations;  ///< of each sample
    std::size_t classes = 0;           ///< what a file without columns holds them in; 0 where it holds them one by one
    std::string leftOut;               ///< "3 left out by --head"; empty where nothing was
};

HeldData heldBy(const wq_lib::BasicStatistics& analysis);
HeldData heldBy(const TwoDataFiles& test);
HeldData heldBy(wq_lib::GoodnessOfFit& test);
HeldData heldBy(const wq_lib::KolmogorovSmirnov2& test);
HeldData heldBy(const wq_lib::Circular& directions);

/**
 * "417 rows read, 410 observations", "4 classes read, 556 observations", "29 observations read, 3 left out by --head".
 * @param input of that many; each of several holds a sample of its own.
 * @param rows that were read of a table; nullptr of a file without columns.
 */
std::string readText(const HeldData& held, std::size_t input, std::size_t inputs, const std::size_t* rows);

}  // namespace wqstat
