#include <wq_stat/correlation.h>

#include "detail/moves.h"
#include "detail/report_text.h"
#include "detail/wide_count.h"

#include <wq_stat/distributions.h>
#include <wq_udf/console.h>

#include <cmath>
#include <utility>

namespace wq_lib {

using detail::wideCount;

namespace {

constexpr const char* hypothesis = "no correlation (rho=0)";

constexpr std::size_t largeSample = 50;              // from 51 pairs on the z scale is used without corrections, and has limits
constexpr std::size_t infiniteDegrees = 4294967295;  // makes t_PercentPoint the quantile of the normal distribution

}  // namespace

Correlation::Correlation() { setHypothesisInfo(hypothesis); }

Correlation::~Correlation() = default;

Correlation::Correlation(Correlation&& other) noexcept : BasicXyStatistics(std::move(other))
{
    exchangeMembers(other);
    detail::whereMemoryAllows([&other] { other.setHypothesisInfo(hypothesis); });
}

Correlation& Correlation::operator=(Correlation&& other) noexcept
{
    Correlation taken(std::move(other));
    BasicXyStatistics::operator=(std::move(taken));
    exchangeMembers(taken);
    return *this;
}

void Correlation::exchangeMembers(Correlation& other) noexcept { detail::exchange(*this, other, &Correlation::correlationResult); }

void Correlation::resetResult()
{
    BasicXyStatistics::resetResult();
    correlationResult.r = 0.0;
}

bool Correlation::analyse()
{
    if (!BasicXyStatistics::analyse()) return false;
    const std::size_t n = xyResult.x.n;
    correlation_stat& c = correlationResult;
    c.r = xyResult.sumProducts / std::sqrt(xyResult.x.sumOfSquares * xyResult.y.sumOfSquares);
    c.confidenceLimits = confidenceInterval(c.r, n);
    c.tSignificance = significance_t0(c.r, n);
    c.FSignificance = significance_F(c.r, n);
    return true;
}

double Correlation::significance_t0(double r, std::size_t n)
{
    const double t = r * std::sqrt(static_cast<double>(wideCount(n - 2)) / (1.0 - sqr(r)));
    correlationResult.t = t;
    return 1.0 - t_Prob(t, n - 2, false);  // the probability of a smaller |t|, not that of a larger one as in significance_t1()
}

double Correlation::significance_t1(double r, double rho, std::size_t n)
{
    if (n < 10) return 0.0;
    const double t = n <= largeSample ? t_small_n(r, rho, n) : t_big_n(r, rho, n);
    correlationResult.t = t;
    return t_Prob(t, n - 2, false);
}

double Correlation::significance_F(double r, std::size_t n)
{
    const double F = (1.0 + std::fabs(r)) / (1.0 - std::fabs(r));
    correlationResult.F = F;
    return 1.0 - F_Prob(F, n - 2, n - 2);  // the upper tail of F >= 1: one side of the test, not doubled
}

double Correlation::t_small_n(double r, double rho, std::size_t n) const
{
    const double z = z_TransformSmall(r, n);
    const double zeta = z_TransformBig(rho);
    const double corrected = zeta - (3.0 * zeta + rho) / static_cast<double>(4 * wideCount(n) - 4);
    return (z - corrected) * std::sqrt(static_cast<double>(n) - 1.0);
}

double Correlation::t_big_n(double r, double rho, std::size_t n) const
{
    return (z_TransformBig(r) - z_TransformBig(rho)) * std::sqrt(static_cast<double>(n) - 3.0);
}

DataRange<double> Correlation::confidenceInterval(double r, std::size_t n) const
{
    if (n <= largeSample) return DataRange<double>();
    const double z = z_TransformBig(r);
    const double h = t_PercentPoint(significance, infiniteDegrees) / std::sqrt(static_cast<double>(n - 3));
    DataRange<double> limits;
    limits.setRange(z - h, z + h);  // in z: not taken back to r
    return limits;
}

// The other way round than for F, since the t test's significance is 1 - p. A negative r gives a negative one, and H0 is accepted.
bool Correlation::acceptH0_t() const { return significance > correlationResult.tSignificance; }

bool Correlation::acceptH0_F() const { return correlationResult.FSignificance >= significance; }

void Correlation::reportConsole()
{
    const correlation_stat& c = correlationResult;
    const std::size_t n = xyResult.x.n;

    detail::ReportText report(detail::NumberFormat::fixed(3));
    report.frame("CORRELATION ANALYSIS", comment);
    report.line("H0: ", hypothesisInfo);
    report.line("observations (n)           : ", n);
    report.line("correlation coefficient    : ", c.r);
    if (n > largeSample) {
        report.line("lower limit                : ", c.confidenceLimits.getLower());
        report.line("upper limit                : ", c.confidenceLimits.getUpper());
    } else {
        report.line("lower limit                : n/a");
        report.line("upper limit                : n/a");
    }
    report.line("significance level         : ", significance);
    report.line("t value                    : ", c.t, " ( p = ", c.tSignificance, ")");
    report.line("H0                         : ", detail::verdict(acceptH0_t()));
    report.line("F value                    : ", c.F, " ( p = ", c.FSignificance, ")");
    report.line("H0                         : ", detail::verdict(acceptH0_F()));
    report.emptyLine();
    report.emptyLine();
    display(report.text());
}

}  // namespace wq_lib
