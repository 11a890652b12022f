#include <wq_stat/regression_multi_y.h>

#include "detail/anova_table.h"
#include "detail/confidence_limits.h"
#include "numbers/data_lines.h"
#include "numbers/number_reading.h"
#include "detail/moves.h"
#include "detail/report_text.h"
#include "detail/wide_count.h"

#include <wq_stat/distributions.h>
#include <wq_udf/console.h>

#include <cmath>
#include <string_view>
#include <utility>

namespace wq_lib {

namespace {

constexpr std::size_t deviationsDf = 2;  // whatever the number of groups

void resetRow(anova_source& row)
{
    row.df = 0;
    row.ss = 0.0;
    row.ms = 0.0;
    row.fs = 0.0;
    row.expectedMs = 0.0;
}

}  // namespace

LinearRegressionMultiY::LinearRegressionMultiY() = default;
LinearRegressionMultiY::~LinearRegressionMultiY() = default;

LinearRegressionMultiY::LinearRegressionMultiY(LinearRegressionMultiY&& other) noexcept : SingleAnova(std::move(other))
{
    exchangeMembers(other);
}

LinearRegressionMultiY& LinearRegressionMultiY::operator=(LinearRegressionMultiY&& other) noexcept
{
    LinearRegressionMultiY taken(std::move(other));
    SingleAnova::operator=(std::move(taken));
    exchangeMembers(taken);
    return *this;
}

void LinearRegressionMultiY::exchangeMembers(LinearRegressionMultiY& other) noexcept
{
    detail::exchange(*this, other, &LinearRegressionMultiY::regressionResult, &LinearRegressionMultiY::regression,
                     &LinearRegressionMultiY::deviations, &LinearRegressionMultiY::computeRegression);
}

bool LinearRegressionMultiY::readSeriesFile(const std::string& fileName)
{
    detail::DataLines lines(fileName, detail::EndMarker::isData);
    return readLines(lines);
}

bool LinearRegressionMultiY::readSeries(std::istream& stream)
{
    detail::DataLines lines(stream, detail::EndMarker::isData);
    return readLines(lines);
}

bool LinearRegressionMultiY::readLines(detail::DataLines& lines)
{
    if (!lines.isOpen()) return false;
    pairs.clear();
    int count = 0;  // holds until a line names another
    while (lines.next()) {
        if (lines.isComment()) continue;
        std::string_view rest = lines.text();
        std::string_view field;
        if (!detail::takeField(rest, field)) continue;
        const double x = detail::readDouble(field);
        const double y = detail::takeField(rest, field) ? detail::readDouble(field) : 0.0;
        if (detail::takeField(rest, field)) count = detail::readInt(field);
        for (int i = 0; i < count; ++i) add(x, y);
    }
    return !lines.hasFailed();
}

// ---------------------------------------------------------------- analysis

void LinearRegressionMultiY::resetRegression()
{
    regression_multi_y_stat fresh;
    fresh.reserved2 = regressionResult.reserved2;
    fresh.reserved3 = regressionResult.reserved3;
    fresh.reserved4 = regressionResult.reserved4;
    regressionResult = fresh;
}

void LinearRegressionMultiY::resetResult()
{
    resetAnova();
    resetRegression();
    resetRow(regression);
    resetRow(deviations);
}

DataRange<double> LinearRegressionMultiY::getConfidenceLimits(double value, double t, double se) const
{
    return detail::limitsAround(value, t, se);
}

bool LinearRegressionMultiY::analyse()
{
    if (!SingleAnova::analyse()) return false;

    // A probability, not the percent point, decides whether there is a line to fit.
    const double threshold = (1.0 / static_cast<double>(detail::wideCount(among.df))) * F_Prob(1.0 - significance, 1, within.df);
    setComputeRegression(!(threshold > among.fs));
    if (!computeRegression) return true;

    regression_multi_y_stat& fit = regressionResult;
    const double N = static_cast<double>(totalObservations);
    for (const anova_group& group : groups) {
        const double n = static_cast<double>(group.n);
        fit.sumX += n * group.id;
        fit.sumX2 += n * sqr(group.id);
        fit.sumXT += group.id * group.sum;
    }
    fit.correctionX = sqr(fit.sumX) / N;
    fit.ssX = fit.sumX2 - fit.correctionX;
    fit.spXY = fit.sumXT - fit.sumX * grandTotal / N;
    fit.explained = sqr(fit.spXY) / fit.ssX;
    fit.unexplained = among.ss - fit.explained;
    fit.b = fit.spXY / fit.ssX;
    fit.a = grandTotal / N - fit.b * fit.sumX / N;

    regression.df = 1;
    regression.ss = fit.explained;
    regression.ms = regression.ss / 1.0;
    regression.expectedMs = 0.0;
    deviations.df = deviationsDf;
    deviations.ss = fit.unexplained;
    deviations.ms = deviations.ss / static_cast<double>(deviationsDf);
    deviations.fs = deviations.ms / within.ms;
    deviations.expectedMs = 0.0;
    regression.fs = regression.ms / deviations.ms;

    const double t = t_PercentPoint((getConfidence() + 1.0) * 0.5, deviationsDf);  // a level near 1: t is close to 0
    fit.seB = std::sqrt(deviations.ms / fit.ssX);
    fit.tB = fit.b / fit.seB;
    fit.pT = t_Prob(fit.tB, deviationsDf, false);
    fit.limitsB = getConfidenceLimits(fit.b, t, fit.seB);
    return true;
}

// ---------------------------------------------------------------- output

void LinearRegressionMultiY::reportConsole()
{
    const regression_multi_y_stat& fit = regressionResult;

    detail::ReportText report(detail::NumberFormat::fixed(3));
    report.emptyLine();
    report.frame("LINEAR REGRESSION MULTI Y ANALYSIS", comment);
    report.emptyLine();
    report.line("[Anova table]");
    detail::writeTableHead(report);
    detail::writeAmongRow(report, among);
    if (computeRegression) {
        detail::writeFullRow(report, "Linear regression  \t", regression);
        detail::writeFullRow(report, "Deviations         \t", deviations);
    }
    detail::writeWithinAndTotalRows(report, within, total);
    report.line("F", significance, "[", detail::wideCount(among.df), ", ", detail::wideCount(within.df),
                "] = ", F_PercentPoint(1.0 - significance, among.df, within.df), "\tP[F] = ", F_Prob(among.fs, among.df, within.df));
    report.emptyLine();
    if (computeRegression) {
        report.line("regression               : y = ", fit.a, fit.b >= 0.0 ? " + " : "", fit.b, "x");
        report.emptyLine();
        report.line("constant a               : ", fit.a);
        report.line("regression coefficient b : ", fit.b);
        report.line("explained                : ", fit.explained);
        report.line("unexplained              : ", fit.unexplained);
        report.line("standard error of b      : ", fit.seB);
        report.line("t value for b            : ", fit.tB);
        report.line("P[t value]               : ", fit.pT);
        report.line("lower limit b            : ", fit.limitsB.getLower());
        report.line("upper limit b            : ", fit.limitsB.getUpper());
    } else {
        report.line("No significant regression");
    }
    display(report.text());
}

}  // namespace wq_lib
