// All arrangements of two small samples, counted by their D: the distribution of the two-sample Kolmogorov-Smirnov test where H0 holds.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <map>

namespace wq_test {

// D of the arrangement of two samples whose bits say which value belongs to the first, in steps of 1 / (n1 n2).
inline int stepsOfD(unsigned arrangement, int n1, int n2)
{
    int difference = 0;
    int largest = 0;
    for (int i = 0; i < n1 + n2; ++i) {
        difference += (arrangement >> i & 1U) != 0 ? n2 : -n1;
        largest = std::max(largest, std::abs(difference));
    }
    return largest;
}

// How many arrangements have each D.
inline std::map<int, int> arrangementsByD(int n1, int n2)
{
    std::map<int, int> counts;
    for (unsigned arrangement = 0; arrangement < 1U << (n1 + n2); ++arrangement) {
        int ones = 0;
        for (int i = 0; i < n1 + n2; ++i) ones += static_cast<int>(arrangement >> i & 1U);
        if (ones == n1) ++counts[stepsOfD(arrangement, n1, n2)];
    }
    return counts;
}

}  // namespace wq_test
