// Where an analysis reads its pairs: straight from memory, or through an override of getDataPair.
#ifndef WQ_STAT_SRC_PAIR_SOURCE_H
#define WQ_STAT_SRC_PAIR_SOURCE_H

#include <wq_stat/basic_xy_stat.h>
#include <wq_stat/correlation.h>
#include <wq_stat/regression.h>

#include <cstddef>
#include <cstring>
#include <typeinfo>
#include <vector>

namespace wq_lib::detail {

template <typename... Classes>
bool isExactlyOneOf(const BasicXyStatistics& sample)
{
    const std::type_info& type = typeid(sample);
    return ((type == typeid(Classes)) || ...);
}

/** False for a class that a host compiled without run-time type information: its table of virtual functions holds none (Itanium C++ ABI). */
inline bool hasTypeInformation(const BasicXyStatistics& sample)
{
#ifdef __GXX_ABI_VERSION
    const void* const* table;
    std::memcpy(&table, static_cast<const void*>(&sample), sizeof table);
    return table[-1] != nullptr;
#else
    return true;
#endif
}

/** Whether the object is of a class that takes getDataPair from the library, and not of a host's, which may override it. */
inline bool readsStoredPairs(const BasicXyStatistics& sample)
{
    return hasTypeInformation(sample) && isExactlyOneOf<BasicXyStatistics, Correlation, LinearRegression, LogarithmicRegression, ExponentialRegression, PowerRegression>(
        sample);
}

/** The pairs that getDataPair gives, one virtual call each. */
class CalledPairs {
public:
    explicit CalledPairs(BasicXyStatistics& calledSample) : sample(calledSample) {}
    data_pair operator[](std::size_t i) const { return sample.getDataPair(i); }

private:
    BasicXyStatistics& sample;
};

/** Calls work with something that gives pair i as [i]: decided once per analysis, since a virtual call costs more than the work on a pair. */
template <typename Work>
void withPairs(BasicXyStatistics& sample, const std::vector<data_pair>& stored, Work&& work)
{
    if (readsStoredPairs(sample))
        work(stored.data());
    else
        work(CalledPairs(sample));
}

}  // namespace wq_lib::detail

#endif
