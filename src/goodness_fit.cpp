#include <wq_stat/goodness_fit.h>

#include "detail/moves.h"
#include "detail/report_text.h"
#include "detail/stored_range.h"
#include "detail/to_integer.h"
#include "detail/wide_count.h"
#include "detail/wide_quantiles.h"

#include <wq_stat/distributions.h>
#include <wq_udf/console.h>

#include <cmath>
#include <cstdint>
#include <utility>

namespace wq_lib {

namespace {

constexpr const char* hypothesis = "observed and expected distributions do not differ";

}  // namespace

GoodnessOfFit::GoodnessOfFit() { setHypothesisInfo(hypothesis); }

GoodnessOfFit::~GoodnessOfFit() = default;

GoodnessOfFit::GoodnessOfFit(GoodnessOfFit&& other) noexcept : BasicXyStatistics(std::move(other))
{
    exchangeMembers(other);
    detail::whereMemoryAllows([&other] { other.setHypothesisInfo(hypothesis); });
}

GoodnessOfFit& GoodnessOfFit::operator=(GoodnessOfFit&& other) noexcept
{
    GoodnessOfFit taken(std::move(other));
    BasicXyStatistics::operator=(std::move(taken));
    exchangeMembers(taken);
    return *this;
}

void GoodnessOfFit::exchangeMembers(GoodnessOfFit& other) noexcept
{
    detail::exchange(*this, other, &GoodnessOfFit::X2, &GoodnessOfFit::G, &GoodnessOfFit::GAdjusted, &GoodnessOfFit::yatesCorrection,
                     &GoodnessOfFit::williamsCorrection);
}

bool GoodnessOfFit::analyse()
{
    resetResult();
    setDataRange();
    const std::size_t k = getSampleSize();
    const bool yates = yatesCorrection && k == 2;
    X2 = 0.0;
    G = 0.0;
    std::uint64_t total = 0;
    const detail::StoredRange range = detail::storedRange(dataStart, dataEnd, pairs.size());
    for (std::size_t i = range.begin; i < range.end; ++i) {
        const data_pair pair = getDataPair(i);
        const double observed = pair.x;
        const double expected = pair.y;
        total += detail::toInteger<std::uint64_t>(observed);  // class by class, without fractions
        double d = observed - expected;
        if (yates) d = std::fabs(d) - 0.5;  // Yates (1934)
        X2 = X2 + sqr(d) / expected;
        G = G + observed * std::log(observed / expected);
    }
    G = 2.0 * G;
    GAdjusted = G;
    if (williamsCorrection) {
        const double N = static_cast<double>(total);
        // Williams (1976), (k^2 - 1)/(6 N (k - 1)); for two classes the same in other steps, which round otherwise
        const double q = k == 2 ? 1.0 + 1.0 / (2.0 * N) : 1.0 + (static_cast<double>(k) + 1.0) / (6.0 * N);
        GAdjusted = G / q;
    }
    return true;
}

bool GoodnessOfFit::acceptH0()
{
    const double critical = detail::chiSquarePoint(getConfidence(), detail::wideCount(getSampleSize() - 1));
    if (X2 >= critical || G >= critical) return false;  // G itself, also where its correction is on
    return !(williamsCorrection && GAdjusted >= critical);
}

void GoodnessOfFit::reportConsole()
{
    const std::size_t df = getSampleSize() - 1;

    detail::ReportText report(detail::NumberFormat::fixed(3));
    report.frame("GOODNESS OF FIT STATISTICS", comment);
    report.line("Ho: ", hypothesisInfo);
    report.line("[Chi-square]");
    // p is the lower tail of the statistic: near 1 for a bad fit.
    report.line("X2    : ", X2, "  ( p=", chiSquareProb(X2, df), ")").emptyLine();
    report.line("[G-test]");
    report.line("G     : ", G, "  ( p=", chiSquareProb(G, df), ")").emptyLine();
    if (williamsCorrection) report.line("G adj : ", GAdjusted, "  ( p=", chiSquareProb(GAdjusted, df), ")").emptyLine();
    report.line("X2 ", significance, ",", detail::wideCount(df), ": ", detail::chiSquarePoint(getConfidence(), detail::wideCount(df)));
    report.line("Ho    : ", detail::verdict(acceptH0()));
    display(report.text());
}

}  // namespace wq_lib
