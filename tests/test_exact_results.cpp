// What wq_exact says of analysed objects, against R (the calls stand beside the values) and against what the objects themselves decide.
#include <wq_exact/wq_exact.h>
#include <wq_stat/wq_stat.h>

#include "support/files.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <cstddef>
#include <filesystem>
#include <map>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

using namespace wq_lib;
using wq_test::reference;

namespace {

void expectClose(double value, double expected, int line)
{
    EXPECT_NEAR(value, expected, 1e-10 * std::fabs(expected)) << "expected in line " << line;
}

// cars: speed and stopping distance, the first ten of R's data set
template <typename Model>
Model cars()
{
    Model pairs;
    const double speed[] = {4, 4, 7, 7, 8, 9, 10, 10, 10, 11};
    const double distance[] = {2, 10, 4, 22, 16, 10, 18, 26, 34, 17};
    for (std::size_t i = 0; i < 10; ++i) pairs.add(speed[i], distance[i]);
    pairs.analyse();
    return pairs;
}

// ---------------------------------------------------------------- figures

// s <- c(4,4,7,7,8,9,10,10,10,11); d <- c(2,10,4,22,16,10,18,26,34,17); at <- data.frame(s = 9.5)
TEST(ExactResults, giveTheLimitsOfALineAndOfItsPredictions)
{
    const auto line = wq_exact::of(cars<LinearRegression>());  // m <- lm(d ~ s)
    EXPECT_EQ(line.n, 10U);
    expectClose(line.height(9.5), 19.7303571428571, __LINE__);  // predict(m, at, interval = "confidence")
    expectClose(line.lineLimits(9.5).lower, 12.8250932163498, __LINE__);
    expectClose(line.lineLimits(9.5).upper, 26.6356210693645, __LINE__);
    expectClose(line.predictionLimits(9.5).lower, 0.0367212191556945, __LINE__);  // interval = "prediction"
    expectClose(line.predictionLimits(9.5).upper, 39.4239930665586, __LINE__);
    expectClose(line.rSquared, 0.4164222993336917, __LINE__);  // summary(m)
    expectClose(line.adjustedRSquared, 0.3434750867504032, __LINE__);
    expectClose(line.slope.p, 0.0439068040279624, __LINE__);

    const auto logarithmic = wq_exact::of(cars<LogarithmicRegression>());  // lm(d ~ log(s))
    expectClose(logarithmic.predictionLimits(9.5).lower, -0.146215044155291, __LINE__);
    expectClose(logarithmic.predictionLimits(9.5).upper, 39.6455332468758, __LINE__);
    expectClose(logarithmic.slope.p, 0.0478336135372689, __LINE__);

    const auto exponential = wq_exact::of(cars<ExponentialRegression>());  // exp(predict(lm(log(d) ~ s), ...))
    expectClose(exponential.height(9.5), 17.6788364614701, __LINE__);
    expectClose(exponential.lineLimits(9.5).lower, 9.94632866392068, __LINE__);
    expectClose(exponential.lineLimits(9.5).upper, 31.4227761008057, __LINE__);

    const auto power = wq_exact::of(cars<PowerRegression>());  // exp(predict(lm(log(d) ~ log(s)), ...))
    expectClose(power.height(9.5), 17.8021607785808, __LINE__);
    expectClose(power.predictionLimits(9.5).lower, 3.44855667401899, __LINE__);
    expectClose(power.predictionLimits(9.5).upper, 91.8984254410129, __LINE__);
    EXPECT_TRUE(std::isnan(power.lineLimits(-1.0).lower));
}

template <typename Model>
void expectTheModelOfItsClass(const char* name)
{
    const Model model = cars<Model>();
    const Regression& known = model;
    const auto exact = wq_exact::of(model);
    const auto general = wq_exact::of(known);
    EXPECT_EQ(general.slope.p, exact.slope.p) << name;
    EXPECT_EQ(general.rSquared, exact.rSquared) << name;
    EXPECT_EQ(general.predictionLimits(9.5).lower, exact.predictionLimits(9.5).lower) << name;
}

TEST(ExactResults, areOfTheModelOfAnObjectKnownAsARegression)
{
    expectTheModelOfItsClass<LinearRegression>("linear");
    expectTheModelOfItsClass<LogarithmicRegression>("logarithmic");
    expectTheModelOfItsClass<ExponentialRegression>("exponential");
    expectTheModelOfItsClass<PowerRegression>("power");
}

TEST(ExactResults, giveCorrelationAndItsLimits)  // cor.test(s, d)
{
    const auto exact = wq_exact::of(cars<Correlation>());
    expectClose(exact.t.p, 0.0439068040279624, __LINE__);
    expectClose(exact.F.p, 0.0439068040279624, __LINE__);
    expectClose(exact.limits.lower, 0.0264134830834843, __LINE__);
    expectClose(exact.limits.upper, 0.9065858231949794, __LINE__);
    EXPECT_EQ(wq_exact::of(cars<BasicXyStatistics>()).p, exact.p);
}

TEST(ExactResults, giveSamples)  // x <- c(3.1, 4.7, 2.2, 5.9, 4.4, 3.8); y <- c(1.1, 9.7, 2.6, 8.8, 5.2)
{
    TwoSamples samples;
    samples.copyFrom({3.1, 4.7, 2.2, 5.9, 4.4, 3.8});
    samples.setNullHypothesis(3.0);
    samples.BasicStatistics::analyse();
    const wq_exact::OneSampleResult one = wq_exact::of(static_cast<const BasicStatistics&>(samples));
    expectClose(one.mean.p, 0.111883131412772, __LINE__);  // t.test(x, mu = 3)
    expectClose(one.meanLimits.lower, 2.66063229543561, __LINE__);
    expectClose(one.meanLimits.upper, 5.37270103789772, __LINE__);
    expectClose(one.varianceLimits.lower, 0.650561623697169, __LINE__);  // 5 * var(x) / qchisq(c(0.975, 0.025), 5)
    expectClose(one.varianceLimits.upper, 10.043571574168448, __LINE__);
    expectClose(one.cohensD, 0.786798813164047, __LINE__);  // (mean(x) - 3) / sd(x)

    BasicStatistics second;
    second.copyFrom({1.1, 9.7, 2.6, 8.8, 5.2});
    second.analyse();
    samples.setSecondSample(second.getResult());
    samples.analyse();
    const auto two = wq_exact::of(samples);
    expectClose(two.ratio.p, 0.0379541064538, __LINE__);  // var.test(y, x)
    expectClose(two.ratioLimits.lower, 1.14281715765293, __LINE__);
    expectClose(two.ratioLimits.upper, 79.06425140174646, __LINE__);
    const auto ofValues = wq_exact::of(samples, second);
    for (const wq_exact::TwoVariancesResult& exact : {two, ofValues}) {
        expectClose(exact.ratio.statistic, 8.443002595328409, __LINE__);  // var(y) / var(x)
        expectClose(exact.variances[0], 1.6696666666666666, __LINE__);
        expectClose(exact.variances[1], 14.097, __LINE__);
    }
}

TwoSamples twoSamples(const std::vector<double>& first, const BasicStatistics& second)
{
    TwoSamples samples;
    samples.copyFrom(first);
    samples.BasicStatistics::analyse();
    samples.setSecondSample(second.getResult());
    samples.analyse();
    return samples;
}

BasicStatistics sampleOf(const std::vector<double>& values)
{
    BasicStatistics sample;
    sample.copyFrom(values);
    sample.analyse();
    return sample;
}

// The mean of ten times 0.1 is rounded, and leaves them a variance.
TEST(ExactResults, knowConstantSamplesWhereRoundingLeavesThemAVariance)
{
    const std::vector<double> values(10, 0.1);
    const BasicStatistics tenths = sampleOf(values);
    const BasicStatistics others = sampleOf(std::vector<double>(11, 0.7));
    const std::vector<double> apart = {0.1, 0.2, 0.4};
    ASSERT_GT(tenths.getResult().sampleVariance, 0.0);
    ASSERT_GT(others.getResult().sampleVariance, 0.0);
    const auto expectNone = [](const wq_exact::TwoVariancesResult& exact, int line) {
        EXPECT_TRUE(std::isnan(exact.ratio.p)) << line;
        EXPECT_EQ(exact.ratio.accepted, std::nullopt) << line;
        EXPECT_TRUE(exact.ratio.reportLacksGround()) << line;
        EXPECT_EQ(exact.variances[0], 0.0) << line;
        EXPECT_EQ(exact.variances[1], 0.0) << line;
        EXPECT_TRUE(std::isnan(exact.varianceLimits[0].upper)) << line;
    };
    const TwoSamples both = twoSamples(values, others);
    expectNone(wq_exact::of(both), __LINE__);
    expectNone(wq_exact::of(both, others), __LINE__);
    TwoSamples records;
    records.setFirstSample(tenths.getResult());
    records.setSecondSample(others.getResult());
    records.analyse();
    expectNone(wq_exact::of(records), __LINE__);
    for (const auto& exact : {wq_exact::of(twoSamples(values, sampleOf(apart))), wq_exact::of(twoSamples(apart, tenths), tenths)}) {
        EXPECT_TRUE(std::isinf(exact.ratio.statistic));
        EXPECT_EQ(exact.ratio.p, 0.0);
    }
    EXPECT_TRUE(std::isnan(wq_exact::of(tenths).mean.p));
}

// setFirstSample() may leave the object with the values of another sample.
TEST(ExactResults, takeTheRecordWhereItIsAnothers)
{
    TwoSamples samples = twoSamples({1, 2, 3, 4}, sampleOf({1, 3, 5, 9}));
    EXPECT_DOUBLE_EQ(wq_exact::of(samples).ratio.statistic, 7.0);  // 35 / 5
    basic_stat record = samples.getResult();
    record.sampleVariance = 105.0 / 3.0;
    samples.setFirstSample(record);
    samples.analyse();
    EXPECT_DOUBLE_EQ(wq_exact::of(samples).ratio.statistic, 3.0);
    EXPECT_DOUBLE_EQ(wq_exact::of(samples, sampleOf({1, 2})).ratio.statistic, 3.0);  // nor are these the second record's
}

TEST(ExactResults, countWhatLiesInTheLastClass)
{
    const struct {
        int line;
        std::vector<double> values;
        std::size_t classes, lastClass;
    } rows[] = {
        {__LINE__, {-1, -2, -3}, 10, 0},  // the report's maximum is 0: nothing lies between -0.3 and 0
        {__LINE__, {-3, -2, -1, -1, -5}, 2, 3}, {__LINE__, {1, 1, 1}, 10, 3},
        {__LINE__, {1, 2, 3, 4}, 3, 2},  // 3 and 4, which the table leaves out
        {__LINE__, {4, 3, 2, 1}, 3, 2},         {__LINE__, {0.1, 0.4, 0.2, 0.7}, 7, 1},
    };
    for (const auto& row : rows) {
        Frequency table;
        table.copyFrom(row.values);
        table.autoClassWidth(row.classes);
        table.initFrequency(table.getClasses());
        table.buildTable();
        table.analyse();
        EXPECT_EQ(wq_exact::of(table).lastClass, row.lastClass) << row.line;
    }
    EXPECT_EQ(wq_exact::of(Frequency()).lastClass, 0U);
}

// buildTable() stops before the last index of the range; one beyond the sample lets it count all.
TEST(ExactResults, knowWhetherATableLeavesValuesOut)
{
    for (const std::size_t beyond : {0U, 1U}) {
        Frequency table;
        table.copyFrom({1, 2, 3, 4, 5});
        table.autoClassWidth(2);
        table.initFrequency(table.getClasses());
        table.setDataEnd(table.getDataEnd() + beyond);
        table.buildTable();
        table.analyse();
        EXPECT_EQ(wq_exact::of(table).n, 5U);
        EXPECT_EQ(wq_exact::of(table).leftOut(), 1U - beyond);
    }
}

TEST(ExactResults, giveGroups)  // aov(o ~ g), predict(..., interval = "confidence")
{
    SingleAnova anova;
    const double values[] = {5.1, 4.8, 6.0, 6.2, 7.1, 6.6, 5.9, 8.0, 7.3};
    for (std::size_t i = 0; i < 9; ++i) anova.add(i < 3 ? 1.0 : i < 7 ? 2.0 : 3.0, values[i]);
    anova.createSeries();
    anova.analyse();
    const auto exact = wq_exact::of(anova);
    expectClose(exact.F.p, 0.00985114954096254, __LINE__);
    expectClose(exact.among.meanSquare, 3.3625, __LINE__);
    expectClose(exact.within.meanSquare, 0.305833333333333, __LINE__);
    expectClose(exact.etaSquared, 0.785630841121495, __LINE__);
    expectClose(exact.omegaSquared, 0.68953849045963, __LINE__);
    const double limits[3][2] = {
        {4.51873187454458, 6.08126812545542}, {5.77340195618856, 7.12659804381144}, {6.69314587016675, 8.60685412983324}};
    for (std::size_t i = 0; i < 3; ++i) {
        expectClose(exact.meanLimits(anova.getGroups()[i]).lower, limits[i][0], __LINE__);
        expectClose(exact.meanLimits(anova.getGroups()[i]).upper, limits[i][1], __LINE__);
    }
}

// x <- c(1, 1, 1, 2, 2, 2, 2, 4, 4, 5, 5, 5, 5); y as below; m, g, n: the groups' means, x and sizes
TEST(ExactResults, giveALineThroughGroupsAndItsLimits)
{
    LinearRegressionMultiY series;
    const double values[] = {5.1, 4.8, 6.0, 6.2, 7.1, 6.6, 5.9, 8.0, 7.3, 7.9, 9.4, 8.8, 9.1};
    for (std::size_t i = 0; i < 13; ++i) series.add(i < 3 ? 1.0 : i < 7 ? 2.0 : i < 9 ? 4.0 : 5.0, values[i]);
    series.createSeries();
    series.analyse();
    const auto exact = wq_exact::of(series);
    expectClose(exact.rSquared, 0.870809650655763, __LINE__);  // summary(lm(y ~ x))
    expectClose(exact.adjustedRSquared, 0.85906507344265, __LINE__);
    expectClose(exact.slopeLimits.lower, 0.517605818255394, __LINE__);  // confint(w <- lm(m ~ g, weights = n))
    expectClose(exact.slopeLimits.upper, 1.13533535821519, __LINE__);
    expectClose(exact.height(3.5), 7.50554298642534, __LINE__);  // predict(w, data.frame(g = 3.5), interval = "confidence")
    expectClose(exact.lineLimits(3.5).lower, 6.98271378438948, __LINE__);
    expectClose(exact.lineLimits(3.5).upper, 8.0283721884612, __LINE__);
    expectClose(exact.predictionLimits(3.5, 4).lower, 6.46427997131018, __LINE__);  // the same, "prediction", weights = 4
    expectClose(exact.predictionLimits(3.5, 4).upper, 8.5468060015405, __LINE__);
    expectClose(exact.predictionLimits(3.5, 1).lower, 5.63021273735386, __LINE__);  // weights = 1
    expectClose(exact.predictionLimits(3.5, 1).upper, 9.38087323549682, __LINE__);
    LinearRegressionMultiY two;  // groups that leave no deviations
    for (std::size_t i = 0; i < 7; ++i) two.add(i < 3 ? 1.0 : 2.0, values[i]);
    two.createSeries();
    two.analyse();
    EXPECT_TRUE(std::isnan(wq_exact::of(two).lineLimits(1.5).lower));
    EXPECT_TRUE(std::isnan(wq_exact::of(two).predictionLimits(1.5, 3).upper));
}

// Large values that lie close together: the same figures as those of the values less 2^40, every one of which has the same digits.
TEST(ExactResults, loseNoDigitsToLargeValues)
{
    const double large = 1099511627776.0;
    const double near[] = {0.25, 0.5, 0.375, 1.5, 1.25, 1.75, 2.0, 0.125};
    const double x[] = {1, 4, 2, 8, 5, 7, 6, 3};
    const auto figures = [&](double origin) {
        BasicStatistics sample;
        sample.setNullHypothesis(origin + 0.5);
        SingleAnova groups;
        LinearRegressionMultiY series;
        LinearRegression line;
        std::vector<double> halves[2];
        for (std::size_t i = 0; i < 8; ++i) {
            const double value = origin + near[i];
            halves[i % 2].push_back(value);
            sample.add(value);
            groups.add(static_cast<double>(i / 3), value);
            series.add(static_cast<double>(i / 2), value);
            line.add(origin + x[i], value);
        }
        sample.analyse();
        groups.createSeries();
        groups.analyse();
        series.createSeries();
        series.analyse();
        line.analyse();
        const BasicStatistics second = sampleOf(halves[1]);
        const auto variances = wq_exact::of(twoSamples(halves[0], second), second);
        const auto slope = wq_exact::of(series);
        const auto fit = wq_exact::of(line);
        return std::vector<double>{
            wq_exact::of(sample).mean.p,
            wq_exact::of(sample).cohensD,
            variances.ratio.statistic,
            variances.ratio.p,
            variances.ratioLimits.upper,
            variances.varianceLimits[0].lower,
            variances.varianceLimits[1].lower,
            wq_exact::of(groups).F.p,
            wq_exact::of(groups).omegaSquared,
            slope.slope.p,
            slope.deviationsF.p,
            slope.b,
            fit.slope.p,
            fit.b,
            fit.adjustedRSquared,
            fit.residualVariance,
        };
    };
    const std::vector<double> expected = figures(0.0);
    const std::vector<double> found = figures(large);
    for (std::size_t i = 0; i < expected.size(); ++i) EXPECT_NEAR(found[i], expected[i], 1e-14 * std::fabs(expected[i])) << "figure " << i;
}

TEST(ExactResults, giveClasses)
{
    GoodnessOfFit fit;
    fit.copyFrom({{18, 25}, {55, 50}, {27, 25}});
    fit.analyse();
    const auto exact = wq_exact::of(fit);  // chisq.test(c(18, 55, 27), p = c(0.25, 0.5, 0.25))
    expectClose(exact.chiSquare.p, 0.269820056384687, __LINE__);
    expectClose(exact.cohensW, 0.161864140562386, __LINE__);
    EXPECT_FALSE(exact.reportDiffers());
    EXPECT_EQ(exact.p, exact.chiSquare.p);

    GoodnessOfFit few;  // chisq.test(c(1, 3, 8, 8)); G is 8.756, of which p is 0.0327
    few.copyFrom({{1, 5}, {3, 5}, {8, 5}, {8, 5}});
    few.analyse();
    const auto byX2 = wq_exact::of(few);
    expectClose(byX2.p, 0.055043936378878, __LINE__);
    expectClose(byX2.G.p, 0.032712973352932, __LINE__);
    EXPECT_EQ(byX2.decision.accepted, true);
    EXPECT_EQ(byX2.G.accepted, false);
    EXPECT_TRUE(byX2.reportDiffers());  // it rejects when G does

    GoodnessOfFit without;  // nothing is expected in the first class
    without.copyFrom({{5, 0}, {3, 5}});
    without.analyse();
    const auto untested = wq_exact::of(without);
    EXPECT_EQ(untested.classesWithoutExpected, 1U);
    for (const wq_exact::Test& test : {untested.chiSquare, untested.G, *untested.GAdjusted}) {
        EXPECT_TRUE(std::isnan(test.p));
        EXPECT_EQ(test.accepted, std::nullopt);
    }
    for (const double lowerTail : {untested.chiSquareLowerTail, untested.GLowerTail, untested.GAdjustedLowerTail, untested.p})
        EXPECT_TRUE(std::isnan(lowerTail));
    EXPECT_TRUE(untested.decision.reportLacksGround());

    KolmogorovSmirnov2 two;  // ks.test(c(1, 2, 3, 4.5, 6, 7), c(3.5, 5, 8, 9, 10), exact = TRUE)
    two.copyFrom({{1, 0}, {1, 0}, {1, 0}, {0, 1}, {1, 0}, {0, 1}, {1, 0}, {1, 0}, {0, 1}, {0, 1}, {0, 1}});
    two.cumulative();
    two.analyse();
    const auto distributions = wq_exact::of(two);
    expectClose(distributions.p, 0.238095238095241, __LINE__);
    EXPECT_FALSE(distributions.reportHasCriticalValue);
    EXPECT_TRUE(distributions.reportDiffers());
}

KolmogorovSmirnov2 compared(const std::vector<data_pair>& classes)
{
    KolmogorovSmirnov2 test;
    test.copyFrom(classes);
    test.cumulative();
    test.analyse();
    return test;
}

TEST(ExactResults, compareDistributionsGivenTheTies)
{
    // ks.test(rep(1:4, c(2, 3, 1, 0)), rep(1:4, c(0, 1, 2, 4)), exact = TRUE)
    const auto few = wq_exact::of(compared({{2, 0}, {3, 1}, {1, 2}, {0, 4}}));
    expectClose(few.p, 0.0291375291375267, __LINE__);
    EXPECT_EQ(few.decision.accepted, false);
    EXPECT_FALSE(few.reportDiffers());
    const auto thinned = wq_exact::of(compared({{0, 0}, {2, 0}, {0, 0}, {3, 1}, {1, 2}, {0, 4}, {0, 0}}));
    EXPECT_EQ(thinned.p, few.p);  // classes without observations
    EXPECT_FALSE(wq_exact::of(compared({{2.5, 0}, {3.5, 7}})).allArrangements);
    EXPECT_FALSE(wq_exact::of(compared({{2, -1}, {3, 7}})).allArrangements);
    KolmogorovSmirnov2 twice = compared({{2, 0}, {3, 1}});
    twice.cumulative();
    twice.analyse();
    EXPECT_FALSE(wq_exact::of(twice).allArrangements);  // its cumulative frequencies fall
}

// The statistics of what is no count are there, and mean nothing: no p is made of them, and no decision.
TEST(ExactResults, decideNothingByFrequenciesThatAreNoCounts)
{
    constexpr double infinite = std::numeric_limits<double>::infinity();
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double large = 1e308;
    const std::vector<data_pair> noFit[] = {{{infinite, 5}, {12, 20}}, {{-3, 6}, {12, 5}}, {{nan, 5}, {3, 5}}, {{3, infinite}, {12, 5}}};
    for (const std::vector<data_pair>& classes : noFit) {
        GoodnessOfFit fit;
        fit.copyFrom(classes);
        fit.analyse();
        const auto exact = wq_exact::of(fit);
        EXPECT_FALSE(exact.areCounts);
        for (const wq_exact::Test& test : {exact.chiSquare, exact.G, *exact.GAdjusted}) {
            EXPECT_TRUE(std::isnan(test.p));
            EXPECT_EQ(test.accepted, std::nullopt);
        }
        for (const double lowerTail : {exact.chiSquareLowerTail, exact.GLowerTail, exact.GAdjustedLowerTail, exact.p})
            EXPECT_TRUE(std::isnan(lowerTail));
        EXPECT_TRUE(exact.decision.reportLacksGround());
    }
    const std::vector<data_pair> noSamples[] = {
        {{infinite, 1}, {1, 3}, {20, 1}}, {{3, 4}, {-5, 4}}, {{5, 4}, {-3, 4}, {2, 1}}, {{3, 1}, {nan, 2}}, {{3, 1}, {2, -0.5}},
        {{large, 3}, {large, 2}}};
    for (const std::vector<data_pair>& classes : noSamples) {
        const auto exact = wq_exact::of(compared(classes));
        EXPECT_FALSE(exact.areCounts);
        EXPECT_FALSE(exact.allArrangements);
        EXPECT_TRUE(std::isnan(exact.largeSamples.p) && std::isnan(exact.p));
        EXPECT_EQ(exact.largeSamples.accepted, std::nullopt);
        EXPECT_TRUE(exact.decision.reportLacksGround());
    }
    const auto above = wq_exact::of(compared({{1.9, 0}, {0, 1}}));  // D = 1.9 / 1
    EXPECT_TRUE(above.areCounts);
    EXPECT_TRUE(std::isnan(above.p));
    EXPECT_TRUE(above.decision.reportLacksGround());
    const auto fractions = wq_exact::of(compared({{20.5, 31}, {20.5, 10}}));  // whose sums are whole
    EXPECT_TRUE(fractions.areCounts);
    EXPECT_TRUE(fractions.decision.accepted.has_value());
}

// So many directions in each class.
Circular counted(const std::vector<double>& counts)
{
    Circular directions;
    directions.setDataType(wq_lib::BIN_NUMBERS);
    directions.setBins(counts.size());
    for (std::size_t i = 0; i < counts.size(); ++i) directions.add(static_cast<double>(i + 1), counts[i]);
    directions.analyse();
    return directions;
}

// z of the middles of the classes, without the report's correction. By R:
// t <- 2 * pi * (seq_along(counts) - 0.5) / length(counts)
// (sum(counts * cos(t))^2 + sum(counts * sin(t))^2) / sum(counts)
// p of many classes as in test_exact_distributions.cpp; of few directions the sum of dmultinom() over all rows of
// expand.grid(rep(list(0:n), k)) whose sum is n and whose length is no less
TEST(ExactResults, takeGroupedDirectionsWithoutTheCorrection)
{
    const struct {
        int line;
        std::vector<double> counts;
        double z, p;
        bool differs;  // the report takes 3.084 and 2.842 for z
    } rows[] = {
        {__LINE__, {9, 4, 2, 5}, 2.5, 0.108393204573076, true},
        {__LINE__, {3, 1, 0, 2, 1, 4, 6, 3, 2, 1, 1, 1}, 2.77779454915, 0.06078211899, false},
    };
    for (const auto& row : rows) {
        const auto exact = wq_exact::of(counted(row.counts));
        EXPECT_NEAR(exact.rayleigh.statistic, row.z, 1e-11) << row.line;
        EXPECT_NEAR(exact.rayleigh.p, row.p, 1e-8) << row.line;
        EXPECT_EQ(exact.classes, static_cast<double>(row.counts.size())) << row.line;
        EXPECT_EQ(exact.rayleigh.accepted, true) << row.line;
        EXPECT_EQ(exact.reportDiffers(), row.differs) << row.line;
    }
    for (const auto& counts : {std::vector<double>{9, 2}, std::vector<double>{7}}) {
        const auto exact = wq_exact::of(counted(counts));
        EXPECT_TRUE(std::isnan(exact.rayleigh.p)) << counts.size();
        EXPECT_TRUE(exact.rayleigh.reportLacksGround()) << counts.size();
    }
    Circular single;
    single.copyFrom({{0.5, 0}, {1.0, 0}});
    single.analyse();
    EXPECT_EQ(wq_exact::of(single).classes, 0.0);
    EXPECT_EQ(wq_exact::of(single).rayleigh.statistic, single.getCircularResult().z);
}

// The same directions one by one, as numbers of bins.
Circular singly(const std::vector<double>& counts, double beyond = 0.0)
{
    Circular directions;
    directions.setDataType(wq_lib::BIN_NUMBERS);
    directions.setBins(counts.size());
    for (std::size_t i = 0; i < counts.size(); ++i)
        for (double left = counts[i]; left > 0.0; --left) directions.add(static_cast<double>(i + 1), 0.0);
    if (beyond != 0.0) directions.setDataPairX(0, directions.getDataPair(0).x + beyond);
    directions.analyse();
    return directions;
}

TEST(ExactResults, giveNumbersOfBinsThePOfTheirCounts)
{
    for (const auto& counts :
         {std::vector<double>{9, 4, 2, 5}, std::vector<double>{3, 1, 0, 2, 1, 4, 6, 3, 2, 1, 1, 1}, std::vector<double>{0, 2, 0, 0}}) {
        const auto expected = wq_exact::of(counted(counts));
        const auto exact = wq_exact::of(singly(counts));
        EXPECT_EQ(exact.classes, expected.classes);
        EXPECT_NEAR(exact.rayleigh.statistic, expected.rayleigh.statistic, 1e-13);
        EXPECT_NEAR(exact.rayleigh.p, expected.rayleigh.p, 1e-13);
        EXPECT_EQ(exact.rayleigh.accepted, expected.rayleigh.accepted);
        EXPECT_EQ(wq_exact::of(singly(counts, 4096.0 * static_cast<double>(counts.size()))).classes, expected.classes);  // turns
    }
    EXPECT_TRUE(std::isnan(wq_exact::of(singly({9, 2})).rayleigh.p));
    const auto times = wq_exact::of(singly({9, 4, 2, 5}, 0.25));  // a fraction of a bin is in no class
    EXPECT_EQ(times.classes, 0.0);
    EXPECT_EQ(times.rayleigh.p, wq_exact::rayleighUpperTail(times.rayleigh.statistic, 20.0));
}

// The distributions of n directions over k classes, one direction after the other: k^n outcomes, each as likely as the others.
std::map<std::vector<double>, double> outcomesByCounts(std::size_t n, std::size_t k)
{
    std::map<std::vector<double>, double> outcomes = {{std::vector<double>(k, 0.0), 1.0}};
    for (std::size_t i = 0; i < n; ++i) {
        std::map<std::vector<double>, double> more;
        for (const auto& [counts, share] : outcomes)
            for (std::size_t j = 0; j < k; ++j) {
                std::vector<double> next = counts;
                next[j] += 1.0;
                more[next] += share / static_cast<double>(k);
            }
        outcomes = more;
    }
    return outcomes;
}

double squaredLength(const std::vector<double>& counts)
{
    std::complex<double> sum = 0.0;
    for (std::size_t j = 0; j < counts.size(); ++j)
        sum += std::polar(counts[j], 6.283185307179586 * static_cast<double>(j) / static_cast<double>(counts.size()));
    return std::norm(sum);
}

TEST(ExactResults, lookAtAllDistributionsOfFewGroupedDirections)
{
    EXPECT_NEAR(wq_exact::of(counted({0, 2, 0, 0})).rayleigh.p, 0.25, 1e-15);    // both in one of 4 classes
    EXPECT_NEAR(wq_exact::of(counted({0, 0, 3})).rayleigh.p, 1.0 / 9.0, 1e-15);  // 3 of 27
    EXPECT_NEAR(wq_exact::of(counted({1, 0, 1, 0})).rayleigh.p, 1.0, 1e-15);     // opposite: length 0
    EXPECT_NEAR(wq_exact::of(counted({1, 0, 0, 0, 0})).rayleigh.p, 1.0, 1e-15);  // one direction has the length 1
    EXPECT_TRUE(std::isnan(wq_exact::of(counted({0, 2, 0, 0})).rayleigh.criticalValue));
    const struct {
        std::size_t n, k;
    } rows[] = {{2, 3}, {7, 3}, {12, 3}, {5, 4}, {9, 4}, {4, 5}, {4, 6}, {7, 6}, {3, 8}, {5, 8}};
    for (const auto& [n, k] : rows) {
        const auto outcomes = outcomesByCounts(n, k);
        double rejected[] = {0.0, 0.0, 0.0};
        const double levels[] = {0.01, 0.05, 0.3};
        for (const auto& [counts, share] : outcomes) {
            double tail = 0.0;
            for (const auto& [others, othersShare] : outcomes)
                if (squaredLength(others) > squaredLength(counts) - 1e-8) tail += othersShare;
            Circular directions = counted(counts);
            const double p = wq_exact::of(directions).rayleigh.p;
            ASSERT_NEAR(p, tail, 1e-13) << n << " directions in " << k << " classes";
            for (std::size_t i = 0; i < 3; ++i) {
                directions.setSignificance(levels[i]);
                if (!*wq_exact::of(directions).rayleigh.accepted) rejected[i] += share;
            }
        }
        for (std::size_t i = 0; i < 3; ++i) EXPECT_LE(rejected[i], levels[i] + 1e-12) << n << " directions in " << k << " classes";
    }
}

// Some 1 000 000 distributions at most; of more directions or classes the figures are those of ungrouped ones.
TEST(ExactResults, boundTheDistributionsOfGroupedDirections)
{
    const struct {
        std::size_t k;
        double each;  // directions in the first class
        bool looksAtAll;
    } rows[] = {{3, 1412, true}, {3, 1413, false}, {1413, 2, true}, {1414, 2, false}, {11, 12, true}, {12, 11, true}, {12, 12, false}};
    for (const auto& row : rows) {
        std::vector<double> counts(row.k, 0.0);
        counts[0] = row.each;
        const auto exact = wq_exact::of(counted(counts));
        EXPECT_EQ(std::isnan(exact.rayleigh.criticalValue), row.looksAtAll) << row.each << " in " << row.k;
        EXPECT_EQ(exact.rayleigh.accepted.has_value(), true);
        if (row.looksAtAll) {  // all in one class
            const double p = std::pow(static_cast<double>(row.k), 1.0 - row.each);
            EXPECT_NEAR(exact.rayleigh.p, p, 1e-12 * p) << row.each << " in " << row.k;
        }
    }
}

// ---------------------------------------------------------------- the report's decision

template <typename Analysis, typename Analyse>
void expectTheObjectsOwnDecision(const std::string& kind, Analyse analyse, bool (*own)(Analysis&),
                                 const wq_exact::Decision& (*exact)(const Analysis&))
{
    int seen = 0;
    for (const auto& entry : std::filesystem::directory_iterator(reference(kind)))
        for (const double alpha : {0.05, 0.01, 0.5}) {
            Analysis analysis;
            analysis.setSignificance(alpha);
            analyse(analysis, entry.path().string());
            EXPECT_EQ(exact(analysis).acceptedByReport, own(analysis)) << entry.path() << " at " << alpha;
            ++seen;
        }
    EXPECT_GT(seen, 0);
}

TEST(ExactResults, knowWhatTheReportDecides)
{
    if (reference("values").empty()) GTEST_SKIP() << "WQ_REFERENCE_DATA names no folder";
    static wq_exact::Decision kept;
    const auto load = [](auto& analysis, const std::string& file) {
        analysis.readDataFile(file);
        analysis.analyse();
    };
    expectTheObjectsOwnDecision<BasicStatistics>(
        "values", load, [](BasicStatistics& a) { return a.acceptH0(); },
        [](const BasicStatistics& a) -> const wq_exact::Decision& { return kept = wq_exact::of(a).mean; });
    expectTheObjectsOwnDecision<GoodnessOfFit>(
        "classes", load, [](GoodnessOfFit& a) { return a.acceptH0(); },
        [](const GoodnessOfFit& a) -> const wq_exact::Decision& { return kept = wq_exact::of(a).decision; });
    expectTheObjectsOwnDecision<KolmogorovSmirnov2>(
        "classes",
        [](KolmogorovSmirnov2& a, const std::string& file) {
            a.readDataFile(file);
            a.cumulative();
            a.analyse();
        },
        [](KolmogorovSmirnov2& a) { return a.acceptH0(); },
        [](const KolmogorovSmirnov2& a) -> const wq_exact::Decision& { return kept = wq_exact::of(a).decision; });
    expectTheObjectsOwnDecision<Correlation>(
        "pairs", load, [](Correlation& a) { return a.acceptH0_t(); },
        [](const Correlation& a) -> const wq_exact::Decision& { return kept = wq_exact::of(a).t; });
    expectTheObjectsOwnDecision<Circular>(
        "angles",
        [](Circular& a, const std::string& file) {
            a.setBins(24);
            a.readDataFile(file);
            a.analyse();
        },
        [](Circular& a) { return a.acceptH0(); },
        [](const Circular& a) -> const wq_exact::Decision& { return kept = wq_exact::of(a).rayleigh; });
}

// After analyse() the report prints the decision of that time, whatever the level is by now.
TEST(ExactResults, knowTheDecisionThatTheReportOfDirectionsPrints)
{
    Circular directions = counted({9, 4, 2, 5});
    const bool printed = directions.getCircularResult().accepted;
    EXPECT_FALSE(printed);
    directions.setSignificance(0.001);
    ASSERT_TRUE(directions.acceptH0());
    EXPECT_EQ(wq_exact::of(directions).rayleigh.acceptedByReport, printed);
    EXPECT_EQ(wq_exact::of(directions).rayleigh.accepted, true);
    directions.analyse();
    EXPECT_EQ(wq_exact::of(directions).rayleigh.acceptedByReport, true);
}

TEST(ExactResults, decideNothingWithoutALevel)
{
    for (const double level : {0.0, 1.0, -0.1, 1.5, std::nan(""), HUGE_VAL}) {
        auto correlation = cars<Correlation>();
        correlation.setSignificance(level);
        EXPECT_FALSE(wq_exact::of(correlation).t.accepted) << level;
        EXPECT_FALSE(wq_exact::of(correlation).F.accepted) << level;
        EXPECT_FALSE(std::isnan(wq_exact::of(correlation).t.p)) << level;
        Circular directions = counted({9, 4, 2, 5});
        directions.setSignificance(level);
        EXPECT_FALSE(wq_exact::of(directions).rayleigh.accepted) << level;
        KolmogorovSmirnov2 test = compared({{2, 0}, {3, 1}, {1, 2}, {0, 4}});
        test.setSignificance(level);
        EXPECT_FALSE(wq_exact::of(test).decision.accepted) << level;
        GoodnessOfFit fit;
        fit.copyFrom({{18, 25}, {55, 50}, {27, 25}});
        fit.setSignificance(level);
        fit.analyse();
        EXPECT_FALSE(wq_exact::of(fit).decision.accepted) << level;
    }
}

TEST(ExactResults, takeTheDegreesOfFreedomOfTheClassesThatAreSummed)
{
    GoodnessOfFit fit;
    fit.copyFrom({{18, 25}, {57, 50}, {27, 25}});
    fit.setTail(0.34);  // leaves the last one out
    fit.analyse();
    const auto exact = wq_exact::of(fit);
    EXPECT_EQ(exact.classes, 2U);
    EXPECT_EQ(exact.chiSquare.df1, 1.0);
    EXPECT_EQ(exact.G.df1, 1.0);
    expectClose(exact.chiSquare.p, 0.0864107329736999, __LINE__);  // chisq.test(c(18, 57), p = c(1, 2), rescale.p = TRUE)
}

TEST(ExactResults, knowTheDecisionOfTwoVariances)
{
    for (const double scale : {1.0, 2.0, 3.0, 5.0, 9.0}) {
        TwoSamples samples;
        samples.copyFrom({1, 2, 3, 4, 6});
        samples.BasicStatistics::analyse();
        BasicStatistics second;
        second.copyFrom({1 * scale, 5 * scale, 2 * scale, 9 * scale});
        second.analyse();
        samples.setSecondSample(second.getResult());
        samples.analyse();
        EXPECT_EQ(wq_exact::of(samples).ratio.acceptedByReport, samples.acceptH0()) << scale;
    }
}

// Decides the other way, as a host's class may.
template <typename Analysis>
class Contrary : public Analysis {
public:
    bool acceptH0() override { return !Analysis::acceptH0(); }
};

template <typename Analysis, typename Fill>
void expectTheDecisionOfTheHostsClass(const char* name, Fill fill, const wq_exact::Decision& (*decision)(const Analysis&))
{
    Analysis plain;
    Contrary<Analysis> contrary;
    fill(plain);
    fill(contrary);
    for (Analysis* const analysis : {&plain, static_cast<Analysis*>(&contrary)}) {
        std::ostringstream report;
        analysis->report(report);
        const bool printed = report.str().find("accepted") != std::string::npos;
        EXPECT_NE(printed, report.str().find("rejected") != std::string::npos) << name;
        EXPECT_EQ(decision(*analysis).acceptedByReport, printed) << name;
    }
    EXPECT_EQ(decision(contrary).accepted, decision(plain).accepted) << name;
    EXPECT_NE(decision(contrary).reportDiffers(), decision(plain).reportDiffers()) << name;
}

TEST(ExactResults, takeTheDecisionThatTheReportOfAHostsClassPrints)
{
    static wq_exact::Decision kept;
    expectTheDecisionOfTheHostsClass<BasicStatistics>(
        "one sample",
        [](BasicStatistics& sample) {
            sample.copyFrom({3.1, 4.7, 2.2, 5.9, 4.4, 3.8});
            sample.analyse();
        },
        [](const BasicStatistics& a) -> const wq_exact::Decision& { return kept = wq_exact::of(a).mean; });
    expectTheDecisionOfTheHostsClass<TwoSamples>(
        "two variances",
        [](TwoSamples& samples) {
            samples.copyFrom({1, 2, 3, 4, 6});
            samples.BasicStatistics::analyse();
            BasicStatistics second;
            second.copyFrom({10, 50, 20, 90});
            second.analyse();
            samples.setSecondSample(second.getResult());
            samples.analyse();
        },
        [](const TwoSamples& a) -> const wq_exact::Decision& { return kept = wq_exact::of(a).ratio; });
    expectTheDecisionOfTheHostsClass<GoodnessOfFit>(
        "goodness of fit",
        [](GoodnessOfFit& test) {
            test.copyFrom({{18, 25}, {55, 50}, {27, 25}});
            test.analyse();
        },
        [](const GoodnessOfFit& a) -> const wq_exact::Decision& { return kept = wq_exact::of(a).decision; });
    expectTheDecisionOfTheHostsClass<KolmogorovSmirnov2>(
        "distributions",
        [](KolmogorovSmirnov2& test) {
            test.copyFrom({{20, 21}, {21, 20}});
            test.cumulative();
            test.analyse();
        },
        [](const KolmogorovSmirnov2& a) -> const wq_exact::Decision& { return kept = wq_exact::of(a).decision; });
    expectTheDecisionOfTheHostsClass<Circular>(
        "directions",
        [](Circular& directions) {
            for (const double angle : {0.1, 0.2, 0.3, 0.25, 0.15, 0.4}) directions.add(angle, 0.0);
            directions.analyse();
        },
        [](const Circular& a) -> const wq_exact::Decision& { return kept = wq_exact::of(a).rayleigh; });
}

class Undecided : public BasicStatistics {
public:
    bool acceptH0() override { throw std::runtime_error("no decision"); }
};

// What the report of an object decides is not on the H0 that it is asked for as an object of another class.
TEST(ExactResults, haveNoDecisionOfAReportThatStatesNone)
{
    TwoSamples samples;
    Frequency table;
    Undecided undecided;
    for (BasicStatistics* const sample :
         {static_cast<BasicStatistics*>(&samples), static_cast<BasicStatistics*>(&table), static_cast<BasicStatistics*>(&undecided)}) {
        sample->copyFrom({3.1, 4.7, 2.2, 5.9, 4.4, 3.8});
        sample->BasicStatistics::analyse();
        EXPECT_EQ(wq_exact::of(*sample).mean.acceptedByReport, std::nullopt);
        EXPECT_EQ(wq_exact::of(*sample).mean.accepted, false);
    }
    KolmogorovSmirnov2 two = compared({{20, 21}, {21, 20}});
    EXPECT_EQ(wq_exact::of(static_cast<const GoodnessOfFit&>(two)).decision.acceptedByReport, std::nullopt);
    EXPECT_NE(wq_exact::of(two).decision.acceptedByReport, std::nullopt);
    LinearRegressionMultiY series;
    EXPECT_EQ(wq_exact::of(static_cast<const SingleAnova&>(series)).F.acceptedByReport, std::nullopt);
    EXPECT_NE(wq_exact::of(SingleAnova()).F.acceptedByReport, std::nullopt);
}

// ---------------------------------------------------------------- whatever is asked

// An object that was never filled, or whose settings are far from its data: nothing is decided, nothing is read that is not there.
template <typename Analysis>
void expectNothing()
{
    Analysis empty;
    EXPECT_FALSE(wq_exact::of(empty).reportDiffers());
    empty.setSampleSize(1000);
    empty.setDataStart(7);
    empty.setDataEnd(static_cast<std::size_t>(-1));
    EXPECT_FALSE(wq_exact::of(empty).reportDiffers());
}

TEST(ExactResults, areNoneWhereThereIsNothing)
{
    expectNothing<BasicStatistics>();
    expectNothing<TwoSamples>();
    expectNothing<Correlation>();
    expectNothing<SingleAnova>();
    expectNothing<LinearRegressionMultiY>();
    expectNothing<GoodnessOfFit>();
    expectNothing<KolmogorovSmirnov2>();
    expectNothing<Circular>();
    EXPECT_TRUE(std::isnan(wq_exact::of(BasicXyStatistics()).p));
    EXPECT_EQ(wq_exact::of(LinearRegression()).slope.accepted, std::nullopt);
    EXPECT_EQ(wq_exact::of(PowerRegression()).n, 0U);
    Frequency table;
    EXPECT_EQ(wq_exact::of(table).leftOut(), 0U);
}

TEST(ExactResults, ofAConstantVariableHaveNoCorrelation)
{
    for (const bool isX : {false, true}) {
        Correlation correlation;
        for (const double value : {1.0, 2.0, 4.0}) correlation.add(isX ? 7.0 : value, isX ? value : 7.0);
        correlation.analyse();
        const wq_exact::CorrelationResult exact = wq_exact::of(correlation);
        EXPECT_TRUE(std::isnan(exact.r)) << isX;
        EXPECT_TRUE(std::isnan(exact.rSquared)) << isX;
        EXPECT_TRUE(std::isnan(exact.p)) << isX;
    }
}

class Doubled : public LinearRegression {
public:
    data_pair getDataPair(std::size_t i) override
    {
        data_pair pair = LinearRegression::getDataPair(i);
        pair.y *= 2.0;
        return pair;
    }
};

class Throwing : public Correlation {
public:
    data_pair getDataPair(std::size_t) override { throw std::runtime_error("no pair"); }
};

TEST(ExactResults, readPairsAsTheAnalysisDoes)
{
    const auto once = wq_exact::of(cars<LinearRegression>());
    const auto twice = wq_exact::of(cars<Doubled>());
    EXPECT_DOUBLE_EQ(twice.b, 2.0 * once.b);
    EXPECT_DOUBLE_EQ(twice.slope.p, once.slope.p);
    Throwing throwing;
    throwing.add(1.0, 2.0);
    EXPECT_EQ(wq_exact::of(throwing).t.accepted, std::nullopt);  // and no exception
}

TEST(ExactResults, mayBeAskedForByManyThreads)
{
    const auto correlation = cars<Correlation>();
    const double expected = wq_exact::of(correlation).t.p;
    std::vector<double> found(8, 0.0);
    std::vector<std::thread> threads;
    for (double& p : found)
        threads.emplace_back([&] {
            for (int i = 0; i < 100; ++i) p = wq_exact::of(correlation).t.p;
        });
    for (std::thread& thread : threads) thread.join();
    for (const double p : found) EXPECT_EQ(p, expected);
}

}  // namespace
