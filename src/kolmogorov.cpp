#include <wq_stat/kolmogorov.h>

#include "detail/column_title.h"
#include "detail/moves.h"
#include "detail/report_text.h"
#include "detail/reserve_more.h"
#include "detail/stored_range.h"
#include "detail/to_integer.h"
#include "detail/wide_count.h"

#include <wq_stat/distributions.h>
#include <wq_udf/console.h>

#include <cmath>
#include <utility>

namespace wq_lib {

namespace {

void describe(KolmogorovSmirnov2& test)
{
    test.setHypothesisInfo("both data samples drawn from same continuous distribution");
    test.clearColumnNames();
    for (const char* const name : {"F1", "F2", "relF1", "relF2", "diff"}) test.addColumnName(name);
}

}  // namespace

KolmogorovSmirnov2::KolmogorovSmirnov2() { describe(*this); }

KolmogorovSmirnov2::~KolmogorovSmirnov2() = default;

KolmogorovSmirnov2::KolmogorovSmirnov2(KolmogorovSmirnov2&& other) noexcept : GoodnessOfFit(std::move(other))
{
    exchangeMembers(other);
    detail::whereMemoryAllows([&other] { describe(other); });
}

KolmogorovSmirnov2& KolmogorovSmirnov2::operator=(KolmogorovSmirnov2&& other) noexcept
{
    KolmogorovSmirnov2 taken(std::move(other));
    GoodnessOfFit::operator=(std::move(taken));
    exchangeMembers(taken);
    return *this;
}

void KolmogorovSmirnov2::exchangeMembers(KolmogorovSmirnov2& other) noexcept
{
    detail::exchange(*this, other, &KolmogorovSmirnov2::cumulativeFrequencies, &KolmogorovSmirnov2::D, &KolmogorovSmirnov2::n1,
                     &KolmogorovSmirnov2::n2);
}

void KolmogorovSmirnov2::cumulative()
{
    const detail::StoredRange range = detail::storedRange(dataStart, dataEnd, pairs.size());
    detail::reserveMore(cumulativeFrequencies, range.end - range.begin);  // all of them, or none
    n1 = 0;  // the frequencies of an earlier call stay in front of the new ones
    n2 = 0;
    double c1 = 0.0;
    double c2 = 0.0;
    for (std::size_t i = range.begin; i < range.end; ++i) {
        const data_pair pair = getDataPair(i);
        c1 = c1 + pair.x;
        c2 = c2 + pair.y;
        addCumulativeFrequency(c1, c2);
    }
}

bool KolmogorovSmirnov2::analyse()
{
    resetResult();
    n1 = 0;
    n2 = 0;
    if (!cumulativeFrequencies.empty()) {
        n1 = detail::toInteger<std::size_t>(cumulativeFrequencies.back().first);
        n2 = detail::toInteger<std::size_t>(cumulativeFrequencies.back().second);
    }
    const double size1 = static_cast<double>(detail::wideCount(n1));
    const double size2 = static_cast<double>(detail::wideCount(n2));
    for (const auto& [c1, c2] : cumulativeFrequencies) {
        const double d = std::fabs(c1 / size1 - c2 / size2);
        if (d > D) D = d;  // D only grows, over all analyses of the object
    }
    return true;
}

// Where there is no critical value it is 0, and any difference rejects.
bool KolmogorovSmirnov2::acceptH0() { return D_TwoSamples(significance, n1, n2) >= D; }

void KolmogorovSmirnov2::reportConsole()
{
    detail::ReportText report(detail::NumberFormat::fixed(3));
    report.frame("KOLMOGOROV-SMIRNOV TWO SAMPLE TEST", comment);
    report.line("H0: ", hypothesisInfo);
    report.line("n1      : ", detail::wideCount(n1));
    report.line("n2      : ", detail::wideCount(n2));
    report.line("D       : ", D);
    report.line("D(", significance, "): ", D_TwoSamples(significance, n1, n2));
    report.line("H0      : ", detail::verdict(acceptH0()));
    display(report.text());
}

void KolmogorovSmirnov2::listFrequencies()
{
    constexpr std::size_t wide = 12;
    constexpr std::size_t narrow = 8;
    const double size1 = static_cast<double>(detail::wideCount(n1));
    const double size2 = static_cast<double>(detail::wideCount(n2));

    detail::ReportText table(detail::NumberFormat::fixed(3));
    const auto title = [this](std::size_t i) { return detail::columnTitle(columnNames, i); };
    table.line(detail::flushRight(title(0), wide), " ", detail::flushRight(title(1), wide), " ", detail::flushRight(title(2), narrow), " ",
               detail::flushRight(title(3), narrow), " ", detail::flushRight(title(4), narrow));
    table.rule();
    for (const auto& [c1, c2] : cumulativeFrequencies) {
        const double relative1 = c1 / size1;
        const double relative2 = c2 / size2;
        table.line(detail::flushRight(c1, wide), " ", detail::flushRight(c2, wide), " ", detail::flushRight(relative1, narrow), " ",
                   detail::flushRight(relative2, narrow), " ", detail::flushRight(std::fabs(relative1 - relative2), narrow));
    }
    display(table.text());
}

}  // namespace wq_lib
