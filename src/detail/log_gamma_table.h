// ln gamma of small integers and half-integers, which the distributions ask for again and again.
#ifndef WQ_STAT_DETAIL_LOG_GAMMA_TABLE_H
#define WQ_STAT_DETAIL_LOG_GAMMA_TABLE_H

#include "to_integer.h"

#include <array>
#include <cfenv>
#include <cstddef>

namespace wq_lib::detail {

/** The values of a function at 0.5, 1, 1.5 ... 128, computed once with the function itself, so that every bit is the same. */
class LogGammaTable {
public:
    static constexpr std::size_t largest = 128;

    template <typename LogGamma>
    explicit LogGammaTable(LogGamma&& logGamma)
    {
        // The values outlive the call that happens to be the first, so they must not depend on the rounding mode of its host.
        const int modeOfHost = std::fegetround();
        std::fesetround(FE_TONEAREST);
        for (std::size_t i = 1; i < values.size(); ++i) values[i] = logGamma(static_cast<double>(i) / 2.0);
        std::fesetround(modeOfHost);
    }

    /** @return the entry of x; nullptr for an x that is not in the table. */
    const double* find(double x) const
    {
        if (!(x > 0.0 && x <= static_cast<double>(largest))) return nullptr;
        const std::size_t i = toSmallIndex(2.0 * x);
        return static_cast<double>(i) == 2.0 * x ? &values[i] : nullptr;
    }

private:
    std::array<double, 2 * largest + 1> values{};
};

}  // namespace wq_lib::detail

#endif
