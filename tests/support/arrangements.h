// All arrangements of two small samples, counted by their D: the distribution of the two-sample Kolmogorov-Smirnov test where H0 holds.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <map>
#include <vector>

namespace wq_test {

// D of the arrangement of two samples whose bits say which value belongs to the first, in steps of 1 / (n1 n2). The values of a class are
// equal.
inline int stepsOfD(unsigned arrangement, int n1, int n2, const std::vector<std::size_t>& classes)
{
    int difference = 0;
    int largest = 0;
    for (const std::size_t size : classes) {
        for (std::size_t i = 0; i < size; ++i, arrangement >>= 1) difference += (arrangement & 1U) != 0 ? n2 : -n1;
        largest = std::max(largest, std::abs(difference));
    }
    return largest;
}

// How many arrangements have each D.
inline std::map<int, int> arrangementsByD(int n1, int n2, const std::vector<std::size_t>& classes)
{
    std::map<int, int> counts;
    for (unsigned arrangement = 0; arrangement < 1U << (n1 + n2); ++arrangement) {
        int ones = 0;
        for (int i = 0; i < n1 + n2; ++i) ones += static_cast<int>(arrangement >> i & 1U);
        if (ones == n1) ++counts[stepsOfD(arrangement, n1, n2, classes)];
    }
    return counts;
}

// Of values that all differ.
inline std::map<int, int> arrangementsByD(int n1, int n2)
{
    return arrangementsByD(n1, n2, std::vector<std::size_t>(static_cast<std::size_t>(n1 + n2), 1));
}

}  // namespace wq_test
