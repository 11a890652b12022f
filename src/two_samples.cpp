#include <wq_stat/two_samples.h>

#include "detail/moves.h"
#include "detail/report_text.h"
#include "detail/wide_count.h"

#include <wq_stat/distributions.h>
#include <wq_udf/console.h>

#include <utility>

namespace wq_lib {

namespace {

constexpr const char* hypothesis = "the sample variances do not differ";

}  // namespace

TwoSamples::TwoSamples() { setHypothesisInfo(hypothesis); }

TwoSamples::~TwoSamples() = default;

TwoSamples::TwoSamples(TwoSamples&& other) noexcept : BasicStatistics(std::move(other))
{
    exchangeMembers(other);
    detail::whereMemoryAllows([&other] { other.setHypothesisInfo(hypothesis); });
}

TwoSamples& TwoSamples::operator=(TwoSamples&& other) noexcept
{
    TwoSamples taken(std::move(other));
    BasicStatistics::operator=(std::move(taken));
    exchangeMembers(taken);
    return *this;
}

void TwoSamples::exchangeMembers(TwoSamples& other) noexcept
{
    detail::exchange(*this, other, &TwoSamples::secondSample, &TwoSamples::F, &TwoSamples::FProbability, &TwoSamples::criticalF,
                     &TwoSamples::df1, &TwoSamples::df2);
}

void TwoSamples::resetResult()
{
    resetSet(result);
    resetSet(secondSample);
}

double TwoSamples::compute_ratio(double v1, double v2) const { return v1 > v2 ? v1 / v2 : v2 / v1; }

bool TwoSamples::analyse()
{
    const double variance1 = result.sampleVariance;
    const double variance2 = secondSample.sampleVariance;
    const bool firstIsLarger = variance1 > variance2;
    df1 = (firstIsLarger ? result.n : secondSample.n) - 1;
    df2 = (firstIsLarger ? secondSample.n : result.n) - 1;
    F = compute_ratio(variance1, variance2);
    FProbability = F_Prob(F, df1, df2);
    criticalF = F_PercentPoint(1.0 - significance / 2.0, df1, df2);
    return true;
}

bool TwoSamples::acceptH0() { return criticalF > F; }

void TwoSamples::reportConsole()
{
    detail::ReportText report(detail::NumberFormat::plain());
    report.frame("TEST VARIANCES OF TWO SAMPLES", comment);
    report.line("Ho: ", hypothesisInfo);  // "H0" below: both spellings are the report's
    report.line("sample size 1  : ", result.n);
    report.line("sample var 1   : ", result.sampleVariance);
    report.line("sample size 2  : ", secondSample.n);
    report.line("sample var 2   : ", secondSample.sampleVariance);
    report.line("F              : ", F, " (p = ", FProbability, ")");  // the lower tail: near 1 for a large F
    // The level as it is set; the value belongs to half of it.
    report.line("Critical value : F ", significance, "[", detail::wideCount(df1), ",", detail::wideCount(df2), "] = ", criticalF);
    report.line("H0             : ", detail::verdict(acceptH0()));
    message(report.text());
}

}  // namespace wq_lib
