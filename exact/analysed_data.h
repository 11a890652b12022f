// The observations that an analysis has seen. The classes offer them one by one, through operations that are not const but change nothing.
#pragma once

#include <wq_stat/basic_xy_stat.h>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace wq_exact::detail {

/** The pairs in the data range, each as the analysis has read it: through getDataPair(), which a host may have overridden. */
class AnalysedPairs {
public:
    explicit AnalysedPairs(const wq_lib::BasicXyStatistics& analysed)
        : sample(const_cast<wq_lib::BasicXyStatistics&>(analysed)),
          first(analysed.getDataStart()),
          last(std::min(analysed.getDataEnd(), Stored::count(analysed) - 1))
    {
        if (Stored::count(analysed) == 0 || first > last) first = last + 1;
    }

    template <typename Work>
    void each(Work work) const
    {
        for (std::size_t i = first; i != last + 1; ++i) work(sample.getDataPair(i));
    }

private:
    /** The number of pairs held: setSampleSize() may have set another. */
    struct Stored : wq_lib::BasicXyStatistics {
        static std::size_t count(const wq_lib::BasicXyStatistics& sample) { return (sample.*(&Stored::pairs)).size(); }
    };

    wq_lib::BasicXyStatistics& sample;
    std::size_t first;
    std::size_t last;
};

}  // namespace wq_exact::detail
