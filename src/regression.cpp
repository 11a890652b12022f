#include <wq_stat/regression.h>

#include "detail/confidence_limits.h"
#include "detail/moves.h"
#include "detail/paired_passes.h"
#include "detail/report_text.h"
#include "detail/stored_range.h"
#include "detail/wide_count.h"
#include "detail/wide_quantiles.h"

#include <wq_stat/distributions.h>
#include <wq_udf/console.h>

#include <cmath>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

namespace wq_lib {

// ---------------------------------------------------------------- Regression

Regression::Regression() = default;
Regression::~Regression() = default;

Regression::Regression(Regression&& other) noexcept : BasicXyStatistics(std::move(other)) { exchangeMembers(other); }

Regression& Regression::operator=(Regression&& other) noexcept
{
    Regression taken(std::move(other));
    BasicXyStatistics::operator=(std::move(taken));
    exchangeMembers(taken);
    return *this;
}

void Regression::exchangeMembers(Regression& other) noexcept { detail::exchange(*this, other, &Regression::regressionResult); }

void Regression::resetRegression()
{
    // The means are no part of what a reset takes back.
    const double meanX = regressionResult.meanX;
    const double meanY = regressionResult.meanY;
    regressionResult = regression_stat();
    regressionResult.meanX = meanX;
    regressionResult.meanY = meanY;
}

void Regression::resetResult()
{
    BasicXyStatistics::resetResult();
    resetRegression();
}

bool Regression::analyseDataPair() { return true; }

DataRange<double> Regression::getConfidenceLimits(double value, double t, double se) const { return detail::limitsAround(value, t, se); }

bool Regression::analyse()
{
    if (!analyseDataPair()) return false;
    const basic_stat& x = xyResult.x;
    const basic_stat& y = xyResult.y;
    const std::uint64_t df = detail::wideCount(x.n - 2);
    const double t = detail::studentPoint(significance, df);

    regression_stat& fit = regressionResult;
    fit.n = x.n;
    fit.b = xyResult.sumProducts / x.sumOfSquares;
    fit.a = y.mean - fit.b * x.mean;
    fit.explained = sqr(xyResult.sumProducts) / x.sumOfSquares;
    fit.unexplained = y.sumOfSquares - fit.explained;
    fit.residualVariance = fit.unexplained / static_cast<double>(df);
    fit.seB = std::sqrt(fit.residualVariance / x.sumOfSquares);
    fit.tB = fit.b / fit.seB;
    fit.pB = t_Prob(fit.tB, x.n - 2, false);
    fit.limitsB = getConfidenceLimits(fit.b, t, fit.seB);
    fit.meanX = x.mean;
    fit.meanY = y.mean;
    fit.seY = std::sqrt(fit.residualVariance / static_cast<double>(fit.n));
    fit.limitsY = getConfidenceLimits(y.mean, t, fit.seY);
    return true;
}

std::string Regression::writeRegressionResult()
{
    const regression_stat& fit = regressionResult;
    const std::uint64_t df = detail::wideCount(fit.n - 2);

    detail::ReportText block(detail::NumberFormat::plain());
    block.line("n                        : ", fit.n);
    block.line("constant a               : ", fit.a);
    block.line("regression coefficient b : ", fit.b);
    block.line("explained                : ", fit.explained);
    block.line("unexplained              : ", fit.unexplained);
    block.line("standard error of b      : ", fit.seB);
    block.line("t value for b            : ", fit.tB);
    block.line("t.", significance, "[", df,
               "]  :", detail::studentPoint(significance, df));  // the one label without a blank before its value
    block.line("lower limit b            : ", fit.limitsB.getLower());
    block.line("upper limit b            : ", fit.limitsB.getUpper());
    block.line("mean X,Y                 : ", fit.meanX, ", ", fit.meanY);
    block.line("standard error of Y at X : ", fit.seY);
    block.line("upper limit Y            : ", fit.limitsY.getLower());  // the two labels stand against each other's value;
    block.line("lower limit Y            : ", fit.limitsY.getUpper());  // hosts know the report so
    return block.text();
}

void Regression::reportConsole() {}

namespace {

/** Fills the paired record from the logarithms. There is no least number of pairs. */
template <typename Transformation>
bool fillTransformed(BasicXyStatistics& sample, const std::vector<data_pair>& stored, xy_stat& result)
{
    sample.resetResult();
    sample.setDataRange();
    const detail::StoredRange range = detail::storedRange(sample.getDataStart(), sample.getDataEnd(), stored.size());
    detail::pairedPasses<Transformation>(sample, stored, range, result);
    return true;
}

/** For models whose line was fitted to ln y: its constant is ln a. */
bool withConstantOfY(bool fitted, regression_stat& fit)
{
    if (fitted) fit.a = std::exp(fit.a);
    return fitted;
}

/** The report of a transformed model, an empty line between formula and results. */
template <typename... Formula>
std::string transformedReport(std::string_view title, std::string_view comment, std::string_view results, const Formula&... formula)
{
    return detail::ReportText(detail::NumberFormat::plain()).frame(title, comment).line(formula...).emptyLine().write(results).text();
}

}  // namespace

// ---------------------------------------------------------------- LinearRegression

LinearRegression::LinearRegression() = default;
LinearRegression::~LinearRegression() = default;

void LinearRegression::resetResult() { Regression::resetResult(); }

bool LinearRegression::analyseDataPair() { return BasicXyStatistics::analyse(); }

void LinearRegression::reportConsole()
{
    detail::ReportText report(detail::NumberFormat::plain());
    report.frame("LINEAR REGRESSION ANALYSIS", comment);
    report.line("y = ", regressionResult.a, " + ", regressionResult.b, "x");
    report.write(writeRegressionResult());
    display(report.text());
}

// ---------------------------------------------------------------- LogarithmicRegression

LogarithmicRegression::LogarithmicRegression() = default;
LogarithmicRegression::~LogarithmicRegression() = default;

bool LogarithmicRegression::analyseDataPair() { return fillTransformed<detail::LogarithmOfX>(*this, pairs, xyResult); }

void LogarithmicRegression::reportConsole()
{
    display(transformedReport("LOGARITHMIC REGRESSION ANALYSIS", comment, writeRegressionResult(), "y = ", regressionResult.a, " + ",
                              regressionResult.b, "ln(x)"));
}

// ---------------------------------------------------------------- ExponentialRegression

ExponentialRegression::ExponentialRegression() = default;
ExponentialRegression::~ExponentialRegression() = default;

bool ExponentialRegression::analyse() { return withConstantOfY(Regression::analyse(), regressionResult); }

bool ExponentialRegression::analyseDataPair() { return fillTransformed<detail::LogarithmOfY>(*this, pairs, xyResult); }

void ExponentialRegression::reportConsole()
{
    display(transformedReport("EXPONENTIAL REGRESSION ANALYSIS", comment, writeRegressionResult(), "y = ", regressionResult.a, "e^(",
                              regressionResult.b, "x)"));
}

// ---------------------------------------------------------------- PowerRegression

PowerRegression::PowerRegression() = default;
PowerRegression::~PowerRegression() = default;

bool PowerRegression::analyse() { return withConstantOfY(Regression::analyse(), regressionResult); }

bool PowerRegression::analyseDataPair() { return fillTransformed<detail::LogarithmOfBoth>(*this, pairs, xyResult); }

void PowerRegression::reportConsole()
{
    display(transformedReport("POWER REGRESSION ANALYSIS", comment, writeRegressionResult(), "y = ", regressionResult.a, "x^",
                              regressionResult.b));
}

}  // namespace wq_lib
