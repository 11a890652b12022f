// Probabilities of several tests, adjusted for their number.
#pragma once

#include <vector>

namespace wqstat {

/**
 * By Holm's method (S. Holm 1979, A simple sequentially rejective multiple test procedure, Scandinavian Journal of Statistics 6, 65-70): of
 * m probabilities the smallest is multiplied by m, the next by m - 1, and so on; none becomes less than one before it, or more than 1. To
 * reject where the adjusted p is below alpha makes any false rejection no more likely than alpha, whatever the tests have in common.
 * @param p NaN where there was no test; it stays NaN, and does not count.
 */
std::vector<double> holmAdjusted(const std::vector<double>& p);

}  // namespace wqstat
