#include <wq_stat/single_anova.h>

#include "detail/anova_table.h"
#include "detail/group_index.h"
#include "detail/moves.h"
#include "detail/prefetch.h"
#include "detail/r_export.h"
#include "detail/report_text.h"
#include "detail/reserve_more.h"
#include "detail/wide_count.h"

#include <wq_stat/distributions.h>
#include <wq_udf/console.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <new>
#include <utility>
#include <vector>

namespace wq_lib {

namespace {

/** Where the pairs belong: known before any group grows, so that each grows once. */
struct Grouping {
    std::vector<std::uint32_t> positions;  // of each pair's group
    std::vector<std::size_t> counts;       // of the pairs of each group, the new ones behind those there are
    std::vector<double> newIds;
};

Grouping groupsOf(const std::vector<data_pair>& pairs, const std::vector<anova_group>& groups)
{
    detail::GroupIndex index;
    for (std::size_t i = 0; i < groups.size(); ++i)
        if (!std::isnan(groups[i].id)) index.findOrEnter(groups[i].id, i);

    constexpr std::size_t soon = 16;  // pairs, until which a slot has come from a far cache

    Grouping grouping;
    grouping.positions.reserve(pairs.size());
    std::size_t groupCount = groups.size();
    const data_pair* const end = pairs.data() + pairs.size();
    for (const data_pair& pair : pairs) {
        detail::prefetch(&pair, end);
        if (static_cast<std::size_t>(end - &pair) > soon) index.prefetchSlot((&pair)[soon].x);
        std::size_t position = std::isnan(pair.x) ? index.none : index.findOrEnter(pair.x, groupCount);
        if (position == index.none) {
            position = groupCount++;
            if (position > UINT32_MAX) throw std::bad_alloc();  // so many groups fit no memory
            grouping.newIds.push_back(pair.x);
        }
        grouping.positions.push_back(static_cast<std::uint32_t>(position));
    }
    // Apart, so that no count that is slow to come keeps a look for a group waiting.
    grouping.counts.resize(groupCount);
    for (const std::uint32_t position : grouping.positions) ++grouping.counts[position];
    return grouping;
}

/** The new groups, with room for their observations. @param first the position of the first one. */
std::vector<anova_group> emptyGroups(const Grouping& grouping, std::size_t first)
{
    std::vector<anova_group> groups(grouping.newIds.size());
    for (std::size_t i = 0; i < groups.size(); ++i) {
        groups[i].id = grouping.newIds[i];
        groups[i].observations.reserve(grouping.counts[first + i]);
    }
    return groups;
}

}  // namespace

SingleAnova::SingleAnova() = default;
SingleAnova::~SingleAnova() = default;

SingleAnova::SingleAnova(SingleAnova&& other) noexcept : BasicXyStatistics(std::move(other)) { exchangeMembers(other); }

SingleAnova& SingleAnova::operator=(SingleAnova&& other) noexcept
{
    SingleAnova taken(std::move(other));
    BasicXyStatistics::operator=(std::move(taken));
    exchangeMembers(taken);
    return *this;
}

void SingleAnova::exchangeMembers(SingleAnova& other) noexcept
{
    detail::exchange(*this, other, &SingleAnova::groupCount, &SingleAnova::totalObservations, &SingleAnova::grandTotal,
                     &SingleAnova::correctionTerm, &SingleAnova::sumSquaredObservations, &SingleAnova::sumSquaredGroupTotals,
                     &SingleAnova::sumSquaredSampleSizes, &SingleAnova::total, &SingleAnova::among, &SingleAnova::within,
                     &SingleAnova::meanSampleSize, &SingleAnova::n0, &SingleAnova::varianceComponent, &SingleAnova::varianceComponentRatio,
                     &SingleAnova::groups, &SingleAnova::groupsCreated, &SingleAnova::equal, &SingleAnova::model);
}

// ---------------------------------------------------------------- groups

SingleAnova::group_iterator SingleAnova::getGroup(double id)
{
    anova_group key;
    key.id = id;
    return std::find_if(groups.begin(), groups.end(), find_group_id(key));
}

SingleAnova::group_iterator SingleAnova::createGroup(double id)
{
    anova_group group;
    group.id = id;
    groups.push_back(group);
    increaseGroups();
    return groups.end() - 1;
}

bool SingleAnova::createSeries()
{
    if (pairs.empty()) return false;
    const Grouping grouping = groupsOf(pairs, groups);

    // All memory before the first change, so that everything is gathered or nothing.
    std::vector<anova_group> newGroups = emptyGroups(grouping, groups.size());
    std::vector<double*> ends(grouping.counts.size());
    for (std::size_t i = 0; i < groups.size(); ++i) detail::reserveMore(groups[i].observations, grouping.counts[i]);
    detail::reserveMore(groups, newGroups.size());

    for (anova_group& group : newGroups) {
        groups.push_back(std::move(group));
        increaseGroups();
    }
    for (std::size_t i = 0; i < groups.size(); ++i) {
        std::vector<double>& observations = groups[i].observations;
        const std::size_t before = observations.size();
        observations.resize(before + grouping.counts[i]);
        ends[i] = observations.data() + before;
    }
    const data_pair* const end = pairs.data() + pairs.size();
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        detail::prefetch(pairs.data() + i, end);
        *ends[grouping.positions[i]]++ = pairs[i].y;
    }
    return true;
}

// ---------------------------------------------------------------- analysis

void SingleAnova::resetResult() { resetAnova(); }  // not the paired record, which no step fills

void SingleAnova::resetAnova()
{
    groupCount = 0;
    totalObservations = 0;
    grandTotal = 0.0;
    correctionTerm = 0.0;
    sumSquaredObservations = 0.0;
    sumSquaredGroupTotals = 0.0;
    sumSquaredSampleSizes = 0.0;
    varianceComponentRatio = 0.0;
    total.df = 0;
    total.ss = 0.0;
    among.df = 0;
    among.ss = 0.0;
    among.ms = 0.0;
    among.fs = 0.0;
    among.expectedMs = 0.0;
    within.df = 0;
    within.ss = 0.0;
    within.ms = 0.0;
    within.expectedMs = 0.0;
}

bool SingleAnova::analyse()
{
    resetResult();
    for (anova_group& group : groups) {
        double sum = 0.0;
        double sumSquaredGroup = 0.0;
        for (const double y : group.observations) {
            sum += y;
            sumSquaredGroup += sqr(y);
        }
        group.sum = sum;
        group.sumSquaredObservations = sumSquaredGroup;
        group.n = static_cast<std::int64_t>(group.observations.size());
        const double n = static_cast<double>(group.n);
        group.mean = group.sum / n;
        double sumOfSquares = group.sumOfSquares;  // goes on from the last analysis
        for (const double y : group.observations) sumOfSquares += sqr(y - group.mean);
        group.sumOfSquares = sumOfSquares;
        group.variance = group.n > 1 ? group.sumOfSquares / static_cast<double>(group.n - 1) : 0.0;

        totalObservations += group.n;
        grandTotal += group.sum;
        sumSquaredObservations += group.sumSquaredObservations;
        sumSquaredGroupTotals += sqr(group.sum) / n;
        sumSquaredSampleSizes += sqr(n);
    }
    groupCount = groups.size();
    const double N = static_cast<double>(totalObservations);
    const double a = static_cast<double>(groupCount);

    correctionTerm = sqr(grandTotal) / N;
    total.df = static_cast<std::size_t>(totalObservations) - 1;
    total.ss = sumSquaredObservations - correctionTerm;
    among.df = groupCount - 1;
    among.ss = sumSquaredGroupTotals - correctionTerm;
    among.ms = among.ss / static_cast<double>(detail::wideCount(among.df));
    within.df = static_cast<std::size_t>(totalObservations) - groupCount;
    within.ss = total.ss - among.ss;
    within.ms = within.ss / static_cast<double>(detail::wideCount(within.df));
    among.fs = among.ms / within.ms;
    meanSampleSize = N / a;
    // Average group size n0 and variance component of the textbook (Sokal and Rohlf, Biometry).
    n0 = (N - sumSquaredSampleSizes / N) * (1.0 / static_cast<double>(detail::wideCount(groupCount - 1)));
    within.expectedMs = within.ms;
    varianceComponent = (among.ms - within.ms) / n0;
    among.expectedMs = varianceComponent + within.expectedMs;  // without the factor n0 of the textbook's expectation
    varianceComponentRatio = varianceComponent / (within.ms + varianceComponent);

    // n0 and the mean differ in the last bit for some balanced designs.
    const bool sameSizes = std::all_of(groups.begin(), groups.end(), [this](const anova_group& g) { return g.n == groups.front().n; });
    setEqual(n0 == meanSampleSize || (groups.size() > 1 && sameSizes));
    return true;
}

// ---------------------------------------------------------------- output

void SingleAnova::reportConsole()
{
    const double criticalF = F_PercentPoint(1.0 - significance, among.df, within.df);

    detail::ReportText report(detail::NumberFormat::fixed(3));
    report.frame("Single Classification Anova", comment);
    detail::writeTableHead(report);
    detail::writeAmongRow(report, among);
    detail::writeWithinAndTotalRows(report, within, total);
    // "P[F] =" has no blank behind it here; the several-y report has one.
    report.line("F", significance, "[", detail::wideCount(among.df), ", ", detail::wideCount(within.df), "] = ", criticalF,
                "\tP[F] =", F_Prob(among.fs, among.df, within.df), "\tr_i = ", varianceComponentRatio);
    // Accepted also where F or its critical value is NaN.
    report.line("H0 [no added variance component among groups] is ", detail::verdict(!(among.fs > criticalF)), ".");
    display(report.text());
}

void SingleAnova::testResults()
{
    detail::ReportText report(detail::NumberFormat::fixed(3));
    report.line("Anova samples");
    report.rule();
    for (const anova_group& group : groups) {
        report.line("Group                       : ", group.id);
        report.line("n                           : ", group.n);
        report.line("Sum                         : ", group.sum);
        report.line("Mean                        : ", group.mean);
        report.line("Sum of squared observations : ", group.sumSquaredObservations);
        report.line("Sum of squares              : ", group.sumOfSquares);
        report.line("Variance                    : ", group.variance);
        report.write("n");  // the letter, not a line end
    }
    report.emptyLine();
    report.line("Total observations          : ", totalObservations);
    report.line("Grand total                 : ", grandTotal);
    report.line("Sum of squared observations : ", sumSquaredObservations);
    report.line("Sum of squared group totals : ", sumSquaredGroupTotals);  // each divided by its group's size
    report.line("Correction term             : ", correctionTerm);
    report.line("arithmetic mean sample size : ", meanSampleSize);
    report.line("mean sample size (n0)       : ", n0);
    report.line("variance component (r)      : ", varianceComponent);  // not r_i of the table, which is the ratio
    report.emptyLine();
    display(report.text());
}

void SingleAnova::listData(std::size_t first, std::size_t last)
{
    detail::ReportText listing(detail::NumberFormat::plain());
    for (std::size_t i = first; i < std::min(last, groups.size()); ++i) {
        listing.line("Series ", i, ": id =", groups[i].id);  // no blank
        for (const double y : groups[i].observations) listing.write(y, " ");
        listing.line(" [", groups[i].observations.size(), "]");
    }
    listing.line("-");
    display(listing.text());
}

bool SingleAnova::exportToR(const std::string& fileName, const std::string& fileComment)
{
    return detail::exportForR(fileName, fileComment, [this](CsvReport& file) {
        for (std::size_t i = 0; i < groups.size(); ++i) {
            file.cell(static_cast<int>(i), true);  // a row starts with the group's place in the list, not with its id
            for (const double y : groups[i].observations) file.cell(y, 4, false);
            file.writeEol();
        }
    });
}

}  // namespace wq_lib
