#include "warnings.h"

#include "figures.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstdlib>

namespace wqstat {

namespace {

std::string verdict(bool accepted) { return accepted ? "accepts" : "rejects"; }

/** What is wrong with a decision of the report; nothing where it is that of the exact figures. reason is why these decide nothing. */
void addDecision(Warnings& warnings, const wq_exact::Decision& decision, double p, const std::string& what, const std::string& reason)
{
    if (decision.reportDiffers())
        warnings.differing.push_back("the exact p " + what + "is " + figures(p, 2) + ", which " + verdict(*decision.accepted) +
                                     " H0; the report " + verdict(*decision.acceptedByReport) + " it");
    if (decision.reportLacksGround())
        warnings.add("the report " + verdict(*decision.acceptedByReport) + " H0 " + (what.empty() ? "" : "by the test " + what) +
                     "without ground: " + reason);
}

void addDecision(Warnings& warnings, const wq_exact::Test& test, const std::string& what, const std::string& reason)
{
    addDecision(warnings, test, test.p, what, reason);
}

/** Why a t or F of so many observations is none; constant says what is all equal. */
std::string reasonOf(double df, bool isConstant, const std::string& constant)
{
    if (!(df > 0.0)) return "there are no degrees of freedom";
    return isConstant ? constant : "the statistic is no number";
}

/** The report's maximum starts just above 0, and stays there when all values lie below. */
void addMaximum(Warnings& warnings, const std::string& of, double reported, double maximum)
{
    if (maximum < reported)
        warnings.add("no value" + of + " is above 0: the largest is " + figures(maximum, 6) + ", where the report says " +
                     figures(reported, 6));
}

}  // namespace

// ---------------------------------------------------------------- samples

std::string reasonForNoTest(const wq_exact::OneSampleResult& exact, const wq_lib::BasicStatistics& sample)
{
    return reasonOf(exact.mean.df1, exact.maximum == sample.getResult().min, "the values are all equal");
}

Warnings warningsOf(const wq_exact::OneSampleResult& exact, const wq_lib::BasicStatistics& sample)
{
    Warnings warnings;
    addDecision(warnings, exact.mean, "", reasonForNoTest(exact, sample));
    addMaximum(warnings, "", sample.getResult().max, exact.maximum);
    return warnings;
}

Warnings warningsOf(const wq_exact::FrequencyResult& exact, const wq_lib::Frequency& sample)
{
    Warnings warnings;
    if (exact.leftOut() > 0)
        warnings.addLeavingOut(counted(exact.leftOut(), "value is", "values are") + " in no class: the table counts " +
                               digits(exact.counted) + " of " + digits(exact.n) + " and leaves the largest out");
    addMaximum(warnings, "", sample.getResult().max, exact.maximum);
    return warnings;
}

std::string reasonForNoTest(const wq_exact::TwoVariancesResult& exact)
{
    const bool bothConstant = exact.variances[0] == 0.0 && exact.variances[1] == 0.0;
    return reasonOf(std::min(exact.ratio.df1, exact.ratio.df2), bothConstant, "the values of both samples are all equal");
}

Warnings warningsOf(const wq_exact::TwoVariancesResult& exact, const TwoDataFiles& samples)
{
    const bool first = exact.variances[0] == 0.0;
    const bool second = exact.variances[1] == 0.0;
    const wq_lib::BasicStatistics& firstSample = samples;
    Warnings warnings;
    addDecision(warnings, exact.ratio, "", reasonForNoTest(exact));
    if (first != second)
        warnings.add(std::string("the values of the ") + (first ? "first" : "second") +
                     " sample are all equal, so that F is no finite number");
    addMaximum(warnings, " of the first sample", firstSample.getResult().max, wq_exact::of(firstSample).maximum);
    addMaximum(warnings, " of the second sample", samples.second.getResult().max, wq_exact::of(samples.second).maximum);
    return warnings;
}

// ---------------------------------------------------------------- pairs

std::string reasonForNoTest(const wq_exact::PairsResult& exact, const wq_lib::BasicXyStatistics& pairs)
{
    const wq_lib::xy_stat& result = pairs.getXyResult();
    const bool isConstant = exact.maximumX == result.x.min || exact.maximumY == result.y.min;
    return isConstant ? "x or y is constant" : reasonOf(static_cast<double>(exact.n) - 2.0, false, "");
}

std::string reasonForNoTest(const wq_exact::RegressionResult& exact)
{
    return reasonOf(exact.slope.df1, exact.sumOfSquaresX == 0.0 || exact.residualVariance == 0.0,
                    exact.sumOfSquaresX == 0.0 ? "x is constant" : "y is constant");
}

namespace {

constexpr char ofX[] = " of x";
constexpr char ofY[] = " of y";

void addMaxima(Warnings& warnings, const wq_exact::PairsResult& exact, const wq_lib::BasicXyStatistics& pairs)
{
    addMaximum(warnings, ofX, pairs.getXyResult().x.max, exact.maximumX);
    addMaximum(warnings, ofY, pairs.getXyResult().y.max, exact.maximumY);
}

}  // namespace

Warnings warningsOf(const wq_exact::PairsResult& exact, const wq_lib::BasicXyStatistics& pairs)
{
    Warnings warnings;
    addMaxima(warnings, exact, pairs);
    return warnings;
}

Warnings warningsOf(const wq_exact::RegressionResult& exact, const wq_lib::Regression& regression)
{
    Warnings warnings;
    if (exact.skipped > 0)
        warnings.addLeavingOut(
            counted(exact.skipped, "pair has", "pairs have") + " no logarithm (0 or less) and " + (exact.skipped == 1 ? "is" : "are") +
            " left out" +
            (std::isfinite(exact.b) && !std::isfinite(regression.getRegressionResult().b) ? "; the report's b is no number for it" : ""));
    if (!exact.slope.accepted)
        warnings.add("the report's t and limits of b, and the pB it stores, rest on nothing: " + reasonForNoTest(exact));
    const wq_lib::xy_stat& result = regression.getXyResult();
    const wq_exact::PairsResult pairs = wq_exact::of(static_cast<const wq_lib::BasicXyStatistics&>(regression));
    if (exact.scaleX == wq_exact::Scale::linear) addMaximum(warnings, ofX, result.x.max, pairs.maximumX);
    if (exact.scaleY == wq_exact::Scale::linear) addMaximum(warnings, ofY, result.y.max, pairs.maximumY);
    return warnings;
}

Warnings warningsOf(const wq_exact::CorrelationResult& exact, const wq_lib::Correlation& correlation)
{
    const std::string reason = reasonForNoTest(exact, correlation);
    Warnings warnings;
    addDecision(warnings, exact.t, "of t ", reason);
    addDecision(warnings, exact.F, "of F ", reason);
    addMaxima(warnings, exact, correlation);
    return warnings;
}

// ---------------------------------------------------------------- groups

std::string reasonForNoTest(const wq_exact::AnovaResult& exact)
{
    if (!(exact.among.df > 0.0)) return "there is one group";
    if (!(exact.within.df > 0.0)) return "no group has more than one observation";
    return exact.total.sumOfSquares == 0.0 ? "the observations are all equal" : "F is no number";
}

std::string reasonForNoTest(const wq_exact::MultiYResult& exact)
{
    if (!(exact.deviations.df > 0.0)) return "fewer than 3 groups leave no deviations from a line";
    if (exact.groups.among.sumOfSquares == 0.0 && exact.groups.within.sumOfSquares > 0.0) return "the means of the groups are all equal";
    return reasonForNoTest(exact.groups);
}

Warnings warningsOf(const wq_exact::AnovaResult& exact, const wq_lib::SingleAnova&)
{
    Warnings warnings;
    addDecision(warnings, exact.F, "", reasonForNoTest(exact));
    return warnings;
}

Warnings warningsOf(const wq_exact::MultiYResult& exact, const wq_lib::LinearRegressionMultiY&)
{
    Warnings warnings;
    addDecision(warnings, exact.slope, "of the slope ", reasonForNoTest(exact));
    return warnings;
}

// ---------------------------------------------------------------- classes

namespace {

constexpr char noCounts[] = "a frequency is negative, not finite or too large";

}  // namespace

std::string reasonForNoTest(const wq_exact::GoodnessOfFitResult& exact)
{
    if (!exact.areCounts) return noCounts;
    if (exact.classesWithoutExpected == 0) return reasonOf(exact.chiSquare.df1, false, "");
    return "nothing is expected in " + counted(exact.classesWithoutExpected, "class", "classes");
}

Warnings warningsOf(const wq_exact::GoodnessOfFitResult& exact, const wq_lib::GoodnessOfFit&)
{
    constexpr double rounding = 1e-9;
    Warnings warnings;
    addDecision(warnings, exact.decision, exact.p, "", reasonForNoTest(exact));
    const double sum = std::min(std::fabs(exact.sumObserved), std::fabs(exact.sumExpected));  // of which one may be infinite
    const double difference = std::fabs(exact.sumObserved - exact.sumExpected);
    if (exact.sumObserved != exact.sumExpected && !(difference <= rounding * sum))
        warnings.add("the sums of the observed and the expected frequencies differ: " + figures(exact.sumObserved, 10) + " and " +
                     figures(exact.sumExpected, 10));
    if (exact.classesBelowFive > exact.classesWithoutExpected)
        warnings.add("fewer than 5 are expected in " + counted(exact.classesBelowFive, "class", "classes") +
                     ": X2 and G are hardly distributed as chi-square");
    return warnings;
}

namespace {

bool hasBothSamples(const wq_lib::KolmogorovSmirnov2& test) { return test.getN1() > 0 && test.getN2() > 0; }

}  // namespace

std::string reasonForNoTest(const wq_exact::KolmogorovSmirnovResult& exact, const wq_lib::KolmogorovSmirnov2& test)
{
    if (!exact.areCounts) return noCounts;
    return hasBothSamples(test) ? "D is above 1, for the frequencies are not whole numbers" : "a sample is empty";
}

Warnings warningsOf(const wq_exact::KolmogorovSmirnovResult& exact, const wq_lib::KolmogorovSmirnov2& test)
{
    Warnings warnings;
    addDecision(warnings, exact.decision, exact.p, exact.allArrangements ? "given the ties " : "", reasonForNoTest(exact, test));
    if (exact.areCounts && hasBothSamples(test) && !exact.reportHasCriticalValue)
        warnings.add("samples of " + digits(test.getN1()) + " and " + digits(test.getN2()) +
                     " are too small for the report's critical value: without one it rejects every D above 0");
    return warnings;
}

// ---------------------------------------------------------------- directions

std::string reasonForNoTest(const wq_exact::DirectionsResult& exact)
{
    if (!std::isnan(exact.rayleigh.statistic)) return "directions in fewer than 3 classes have no test of R";
    return exact.n > 0.0 ? "z is no number" : "there are no directions";
}

Warnings warningsOf(const wq_exact::DirectionsResult& exact, wq_lib::Circular& directions)
{
    constexpr double circle = 6.2831854;  // 2 pi, and a little for rounding
    Warnings warnings;
    addDecision(warnings, exact.rayleigh, "", reasonForNoTest(exact));
    std::size_t outside = 0;
    if (directions.getDataType() == wq_lib::RADIANS)
        for (std::size_t i = 0; i < directions.getSampleSize(); ++i)
            if (std::fabs(directions.getDataPair(i).x) > circle) ++outside;
    if (outside > 0)
        warnings.add(counted(outside, "angle lies", "angles lie") +
                     " beyond 2 pi and can hardly be radians: --unit says what the angles are");
    return warnings;
}

// ---------------------------------------------------------------- exports

namespace {

/** Numbers that an export writes with a fixed number of decimals. */
class Rounding {
public:
    explicit Rounding(int writtenDecimals) : decimals(writtenDecimals), safe(std::pow(10.0, significant - 1 - writtenDecimals)) {}

    void see(double value)
    {
        if (!(std::fabs(value) < safe) || value == 0.0) return;
        if (figures(written(value), significant) == figures(value, significant)) return;
        if (losing++ == 0) example = figures(value, significant) + ", written as " + figures(written(value), significant);
    }

    /**
     * A rate of so many observations. One below 0.1 has hardly ever 6 digits behind its zeros, and needs only as many as tell it from the
     * rate of any other count; that is so of up to a million observations.
     */
    void seeRate(const wq_lib::frequency_class& one, std::size_t observations)
    {
        if (std::round(written(one.rate) * static_cast<double>(observations)) != static_cast<double>(one.count)) see(one.rate);
    }

    Warnings warnings() const
    {
        Warnings found;
        if (losing > 0)
            found.add("the export writes " + std::to_string(decimals) + " decimals, too few for " + counted(losing, "number", "numbers") +
                      ", such as " + example);
        return found;
    }

private:
    double written(double value) const
    {
        char text[400];
        std::snprintf(text, sizeof text, "%.*f", decimals, value);
        return std::strtod(text, nullptr);
    }

    static constexpr int significant = 6;
    int decimals;
    double safe;  // what is as large has so many digits before the point and behind it
    std::size_t losing = 0;
    std::string example;
};

}  // namespace

Warnings exportWarnings(const wq_lib::BasicStatistics& sample)
{
    Rounding rounding(12);
    for (std::size_t i = sample.getDataStart(); i < sample.getSampleSize() && i <= sample.getDataEnd(); ++i)
        rounding.see(sample.getDataPoint(i));
    return rounding.warnings();
}

Warnings exportWarnings(wq_lib::BasicXyStatistics& pairs)
{
    Rounding rounding(6);
    for (std::size_t i = 0; i < pairs.getSampleSize(); ++i) {
        const wq_lib::data_pair pair = pairs.getDataPair(i);
        rounding.see(pair.x);
        rounding.see(pair.y);
    }
    return rounding.warnings();
}

Warnings exportWarnings(const wq_lib::SingleAnova& anova)
{
    Rounding rounding(4);
    for (const wq_lib::anova_group& group : anova.getGroups())
        for (const double y : group.observations) rounding.see(y);
    return rounding.warnings();
}

Warnings exportWarnings(const wq_lib::Frequency& sample)
{
    constexpr double noise = 1e-9;  // of the width: what a limit or middle at 0 has from its computation
    const double width = sample.getClassWidth();
    const auto limit = [&](std::size_t i) { return sample.getStartClass() + static_cast<double>(i) * width; };
    Rounding rounding(6);
    const auto see = [&](double place) {
        if (!(std::fabs(place) <= noise * std::fabs(width))) rounding.see(place);
    };
    see(limit(0));
    for (std::size_t i = 0; i < sample.getTable().size(); ++i) {
        see(limit(i + 1));
        see(limit(i + 1) - 0.5 * width);
        rounding.seeRate(sample.getTable()[i], sample.getResult().n);
    }
    return rounding.warnings();
}

}  // namespace wqstat
