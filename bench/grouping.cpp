// Anova of pairs (group, observation), grouping included.
#include "contenders.h"
#include "inputs.h"

#include <wq_stat/single_anova.h>

#include <algorithm>
#include <array>
#include <unordered_map>

namespace wq_bench {

namespace {

/** Groups, observations, sum of squares among and within groups, F. */
using Anova = std::array<double, 5>;
using Pairs = std::vector<wq_lib::data_pair>;

Anova library(wq_lib::SingleAnova& sample)
{
    sample.createSeries();
    sample.analyse();
    return {static_cast<double>(sample.getGroupCount()), static_cast<double>(sample.getTotalObservations()), sample.getAmong().ss,
            sample.getWithin().ss, sample.getAmong().fs};
}

struct Group {
    double id = 0.0;
    std::vector<double> observations;
};

Anova anovaOf(const std::vector<Group>& groups)
{
    double N = 0.0;
    double grandTotal = 0.0;
    double squares = 0.0;
    double squaredTotals = 0.0;
    for (const Group& group : groups) {
        const double n = static_cast<double>(group.observations.size());
        double sum = 0.0;
        for (const double y : group.observations) {
            sum += y;
            squares += y * y;
        }
        N += n;
        grandTotal += sum;
        squaredTotals += sum * sum / n;
    }
    const double a = static_cast<double>(groups.size());
    const double correction = grandTotal * grandTotal / N;
    const double among = squaredTotals - correction;
    const double within = squares - correction - among;
    return {a, N, among, within, (among / (a - 1.0)) / (within / (N - a))};
}

/** The pairs, and the groups made of them: like the library, who made them keeps them. */
struct Grouping {
    Pairs pairs;
    std::vector<Group> groups;
    std::unordered_map<double, std::size_t> positions;  // of a group in the list
};

/** Straightforward C++: a search through the list of groups for each pair. */
Anova plain(Grouping& g)
{
    for (const wq_lib::data_pair& pair : g.pairs) {
        auto group = std::find_if(g.groups.begin(), g.groups.end(), [&pair](const Group& candidate) { return candidate.id == pair.x; });
        if (group == g.groups.end()) group = g.groups.insert(group, Group{pair.x, {}});
        group->observations.push_back(pair.y);
    }
    return anovaOf(g.groups);
}

/** The same with the standard library's hash table. */
Anova hashed(Grouping& g)
{
    for (const wq_lib::data_pair& pair : g.pairs) {
        const auto [found, isNew] = g.positions.try_emplace(pair.x, g.groups.size());
        if (isNew) g.groups.push_back(Group{pair.x, {}});
        g.groups[found->second].observations.push_back(pair.y);
    }
    return anovaOf(g.groups);
}

void enterRow(std::size_t groups)
{
    const std::string row = "anova/" + std::to_string(groups);
    const auto pairs = [groups] {
        const double* const id = input("groups-" + std::to_string(groups), groupedPairs);
        const double* const y = input("grouped", groupedPairs);
        Pairs list(groupedPairs);
        for (std::size_t i = 0; i < groupedPairs; ++i) list[i] = {id[i], y[i]};
        return list;
    };
    const auto grouping = [pairs](std::size_t) { return std::make_unique<Grouping>(Grouping{pairs(), {}, {}}); };
    const auto analysis = [pairs](std::size_t) {
        auto sample = std::make_unique<wq_lib::SingleAnova>();
        sample->copyFrom(pairs());
        return sample;
    };
    contenderWithFreshInput(row, "wq_stat", 1, analysis, library);
    if (groups <= 10000) contenderWithFreshInput(row, "plain", 1, grouping, plain);  // at 10^5 groups it takes half a minute
    contenderWithFreshInput(row, "std", 1, grouping, hashed);
}

}  // namespace

void enterGrouping()
{
    for (const std::size_t groups : {10u, 100u, 1000u, 10000u, 100000u, 1000000u}) enterRow(groups);
}

}  // namespace wq_bench
