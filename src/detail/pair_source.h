// Where an analysis reads its pairs: straight from memory, or through an override of getDataPair.
#ifndef WQ_STAT_DETAIL_PAIR_SOURCE_H
#define WQ_STAT_DETAIL_PAIR_SOURCE_H

#include <wq_stat/basic_xy_stat.h>

#include <cstddef>
#include <vector>

namespace wq_lib::detail {

/** Whether a call of the object's getDataPair reaches the library's own, which gives the stored pair; false where that cannot be told. */
bool readsStoredPairs(const BasicXyStatistics& sample);

/** The pairs that getDataPair gives, one virtual call each. */
class CalledPairs {
public:
    explicit CalledPairs(BasicXyStatistics& calledSample) : sample(calledSample) {}
    data_pair operator[](std::size_t i) const { return sample.getDataPair(i); }

private:
    BasicXyStatistics& sample;
};

/** Calls work with something that gives pair i as [i]: decided once per analysis, since a virtual call costs more than the work on a pair.
 */
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
