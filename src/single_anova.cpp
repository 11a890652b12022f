#include <wq_stat/single_anova.h>

#include "anova_table.h"
#include "group_index.h"
#include "r_export.h"
#include "read_ahead.h"
#include "report_text.h"

#include <wq_stat/distributions.h>
#include <wq_udf/console.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <new>
#include <utility>
#include <vector>

namespace wq_lib {

SingleAnova::SingleAnova() = default;
SingleAnova::~SingleAnova() = default;

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
    detail::GroupIndex index;
    for (std::size_t i = 0; i < groups.size(); ++i)
        if (!std::isnan(groups[i].id)) index.findOrEnter(groups[i].id, i);

    // Positions and counts first, so that the list of groups, and then every group, grows once.
    std::vector<std::uint32_t> positions;
    std::vector<std::size_t> counts(groups.size());
    std::vector<double> newIds;
    positions.reserve(pairs.size());
    const data_pair* const end = pairs.data() + pairs.size();
    for (const data_pair& pair : pairs) {
        detail::readAhead(&pair, end);
        std::size_t position = std::isnan(pair.x) ? index.none : index.findOrEnter(pair.x, counts.size());
        if (position == index.none) {
            position = counts.size();
            if (position > UINT32_MAX) throw std::bad_alloc();  // so many groups fit no memory
            counts.push_back(0);
            newIds.push_back(pair.x);
        }
        ++counts[position];
        positions.push_back(static_cast<std::uint32_t>(position));
    }

    // All memory before the first change, so that everything is gathered or nothing.
    std::vector<double*> ends;
    ends.reserve(counts.size());
    for (std::size_t i = 0; i < groups.size(); ++i) groups[i].observations.reserve(groups[i].observations.size() + counts[i]);
    std::vector<anova_group> newGroups(newIds.size());
    for (std::size_t i = 0; i < newIds.size(); ++i) {
        newGroups[i].id = newIds[i];
        newGroups[i].observations.reserve(counts[groups.size() + i]);
    }
    groups.reserve(counts.size());

    for (anova_group& group : newGroups) {
        groups.push_back(std::move(group));
        increaseGroups();
    }
    for (std::size_t i = 0; i < groups.size(); ++i) {
        std::vector<double>& observations = groups[i].observations;
        observations.resize(observations.size() + counts[i]);
        ends.push_back(observations.data() + (observations.size() - counts[i]));
    }
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        detail::readAhead(pairs.data() + i, end);
        *ends[positions[i]]++ = pairs[i].y;
    }
    return true;
}

// ---------------------------------------------------------------- analysis

void SingleAnova::resetResult() { resetAnova(); }

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
    among.ms = among.ss / static_cast<double>(among.df);
    within.df = static_cast<std::size_t>(totalObservations) - groupCount;
    within.ss = total.ss - among.ss;
    within.ms = within.ss / static_cast<double>(within.df);
    among.fs = among.ms / within.ms;
    meanSampleSize = N / a;
    n0 = (N - sumSquaredSampleSizes / N) * (1.0 / static_cast<double>(groupCount - 1));
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
    report.line("F", significance, "[", among.df, ", ", within.df, "] = ", criticalF,
                "\tP[F] =", F_Prob(among.fs, among.df, within.df), "\tr_i = ", varianceComponentRatio);
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
    report.line("Sum of squared group totals : ", sumSquaredGroupTotals);
    report.line("Correction term             : ", correctionTerm);
    report.line("arithmetic mean sample size : ", meanSampleSize);
    report.line("mean sample size (n0)       : ", n0);
    report.line("variance component (r)      : ", varianceComponent);
    report.emptyLine();
    display(report.text());
}

void SingleAnova::listData(std::size_t first, std::size_t last)
{
    detail::ReportText listing(detail::NumberFormat::plain());
    for (std::size_t i = first; i < std::min(last, groups.size()); ++i) {
        listing.line("Series ", i, ": id =", groups[i].id);
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
            file.cell(static_cast<int>(i), true);
            for (const double y : groups[i].observations) file.cell(y, 4, false);
            file.writeEol();
        }
    });
}

}  // namespace wq_lib
