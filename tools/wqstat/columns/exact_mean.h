// The mean of numbers that come one by one.
#pragma once

#include <cstdint>

namespace wqstat {

/** The numbers' rounding errors are summed beside them (Neumaier 1974); numbers near the largest double do not overflow. */
class ExactMean {
public:
    void add(double value);

    /** NaN without numbers, and of infinities of both signs. */
    double mean() const;

private:
    struct Sum {
        double sum = 0.0;
        double lost = 0.0;

        void add(double value);
    };

    Sum ordinary;
    Sum large;                // of numbers beyond 2^960, scaled down
    double infinities = 0.0;  // their sum
    std::uint64_t count = 0;
};

}  // namespace wqstat
