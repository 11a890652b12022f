// Correlation: the coefficient, its t tests, F test and limits, decisions, report.
#include <wq_stat/correlation.h>
#include <wq_stat/distributions.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <random>
#include <string>

#include "support/bits.h"
#include "support/console.h"
#include "support/files.h"
#include "support/paired.h"

using namespace wq_lib;
using ::testing::HasSubstr;
using wq_test::Calls;
using wq_test::callsOfPasses;
using wq_test::expectSameStatistics;
using wq_test::fallingPairs;
using wq_test::golden;
using wq_test::holding;
using wq_test::naiveStatistics;
using wq_test::ordinaryPairs;
using wq_test::Pairs;
using wq_test::printed;
using wq_test::Recorded;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double pi = 3.14159265358979323846;

Correlation analysed(const Pairs& pairs, double significance = 0.05)
{
    Correlation correlation = holding<Correlation>(pairs);
    correlation.setSignificance(significance);
    EXPECT_TRUE(correlation.analyse());
    return correlation;
}

std::string report(BasicStatistics& correlation)
{
    return printed([&] { correlation.reportConsole(); });
}

Pairs negated(Pairs pairs)
{
    for (data_pair& pair : pairs) pair.y = -pair.y;
    return pairs;
}

// Around a line, without rounding: x = i / 4, y = slope x + (37 i^2 mod 101) / 32.
Pairs scattered(int n, double slope)
{
    Pairs pairs;
    for (int i = 0; i < n; ++i) pairs.push_back({i / 4.0, slope * i / 4.0 + (37 * i * i % 101) / 32.0});
    return pairs;
}

// Exactly on a line, x and y without rounding.
Pairs line(int n, double slope)
{
    Pairs pairs;
    for (int i = 0; i < n; ++i) pairs.push_back({i / 8.0, slope * i / 8.0});
    return pairs;
}

void expectSameResult(const correlation_stat& actual, const correlation_stat& expected)
{
    EXPECT_SAME_BITS(actual.r, expected.r);
    EXPECT_SAME_BITS(actual.t, expected.t);
    EXPECT_SAME_BITS(actual.tSignificance, expected.tSignificance);
    EXPECT_SAME_BITS(actual.F, expected.F);
    EXPECT_SAME_BITS(actual.FSignificance, expected.FSignificance);
    EXPECT_SAME_BITS(actual.confidenceLimits.getLower(), expected.confidenceLimits.getLower());
    EXPECT_SAME_BITS(actual.confidenceLimits.getUpper(), expected.confidenceLimits.getUpper());
}

// Lets a test set what the decisions compare.
class Decided : public Correlation {
public:
    Decided(double level, double tSignificance, double FSignificance)
    {
        setSignificance(level);
        correlationResult.tSignificance = tSignificance;
        correlationResult.FSignificance = FSignificance;
    }
};

}  // namespace

TEST(Correlation, newObject)
{
    const Correlation correlation;
    expectSameResult(correlation.getCorrelationResult(), correlation_stat());
    EXPECT_EQ(correlation.getHypothesisInfo(), "no correlation (rho=0)");
    EXPECT_TRUE(correlation.acceptH0_t()) << "0.05 > 0";
    EXPECT_FALSE(correlation.acceptH0_F()) << "0 < 0.05";
}

// ---------------------------------------------------------------- analyse

TEST(Correlation, figures)  // 50 digits: tests/reference/paired_50_digits.py
{
    const struct {
        const char* name;
        Pairs pairs;
        double r, t, F, tSignificance, FSignificance;
    } rows[] = {
        {"ordinary", ordinaryPairs, 0.974997837578684642, 12.4101361948111726, 78.9930808502755273, 0.999998341183543213,
         8.29408228393549272e-7},
        {"falling", fallingPairs, -0.751371100155720352, -2.27729655351986178, 7.04411716116924763, -0.914960168283323526,
         0.042519915858338237},
        {"strongly negative", negated(ordinaryPairs), -0.974997837578684642, -12.4101361948111726, 78.9930808502755273,
         -0.999998341183543213, 8.29408228393549272e-7},
        {"scattered", scattered(60, 0.125), 0.404502651451451122, 3.3684815402684055, 2.35853720402744461, 0.998651942437470104,
         0.000674028781264947851},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const Correlation correlation = analysed(row.pairs);
        const correlation_stat& r = correlation.getCorrelationResult();
        EXPECT_NEAR(r.r, row.r, 1e-14);
        EXPECT_NEAR(r.t, row.t, 1e-12 * std::fabs(row.t));
        EXPECT_NEAR(r.F, row.F, 1e-12 * row.F);
        EXPECT_NEAR(r.tSignificance, row.tSignificance, 1e-12);
        EXPECT_NEAR(r.FSignificance, row.FSignificance, 1e-7 * row.FSignificance);  // where the series of F ends
        expectSameStatistics(correlation.getXyResult(), naiveStatistics(row.pairs));
    }
}

TEST(Correlation, sameFiguresAsANaiveComputation)
{
    std::mt19937_64 random(5113);
    for (int repeat = 0; repeat < 400; ++repeat) {
        SCOPED_TRACE(repeat);
        std::normal_distribution<double> normal;
        const double slope = normal(random), noise = repeat % 3 == 0 ? 1e-9 : 1.0;
        Pairs pairs;
        for (auto n = 3 + random() % 80; n > 0; --n) {
            const double x = 100.0 * normal(random);
            pairs.push_back({x, slope * x + noise * normal(random)});
        }
        const double significance = 0.01 * double(1 + random() % 30);
        const Correlation correlation = analysed(pairs, significance);

        const xy_stat s = naiveStatistics(pairs);
        expectSameStatistics(correlation.getXyResult(), s);
        const std::size_t n = pairs.size();
        correlation_stat expected;
        const double r = s.sumProducts / std::sqrt(s.x.sumOfSquares * s.y.sumOfSquares);
        expected.r = r;
        expected.t = r * std::sqrt(double(n - 2) / (1.0 - r * r));
        expected.tSignificance = 1.0 - t_Prob(expected.t, n - 2, false);
        expected.F = (1.0 + std::fabs(r)) / (1.0 - std::fabs(r));
        expected.FSignificance = 1.0 - F_Prob(expected.F, n - 2, n - 2);
        if (n > 50) {
            const double h = t_PercentPoint(significance, 4294967295u) / std::sqrt(double(n - 3));
            expected.confidenceLimits.setRange(z_TransformBig(r) - h, z_TransformBig(r) + h);
        }
        expectSameResult(correlation.getCorrelationResult(), expected);
        EXPECT_EQ(correlation.acceptH0_t(), significance > expected.tSignificance);
        EXPECT_EQ(correlation.acceptH0_F(), expected.FSignificance >= significance);
    }
}

TEST(Correlation, tooFewPairsComputeNothing)
{
    Correlation correlation;
    EXPECT_FALSE(correlation.analyse());
    correlation.add(1, 2);
    EXPECT_FALSE(correlation.analyse());
    expectSameResult(correlation.getCorrelationResult(), correlation_stat());

    Correlation earlier = analysed(scattered(60, 0.125));
    correlation_stat expected = earlier.getCorrelationResult();
    earlier.setHead(0.98);
    EXPECT_FALSE(earlier.analyse()) << "one pair in the range";
    expected.r = 0.0;
    expectSameResult(earlier.getCorrelationResult(), expected);
}

TEST(Correlation, onlyRIsReset)
{
    Correlation correlation = analysed(scattered(60, 0.125));
    correlation_stat expected = correlation.getCorrelationResult();
    for (const double value : {expected.r, expected.t, expected.tSignificance, expected.F, expected.FSignificance,
                               expected.confidenceLimits.getLower(), expected.confidenceLimits.getUpper()})
        EXPECT_NE(value, 0.0);
    const double covariance = correlation.getXyResult().covariance;
    static_cast<BasicStatistics&>(correlation).resetResult();
    expected.r = 0.0;
    expectSameResult(correlation.getCorrelationResult(), expected);
    EXPECT_EQ(correlation.getXyResult().x.n, 0u);
    EXPECT_SAME_BITS(correlation.getXyResult().sumProducts, 0.0);
    EXPECT_SAME_BITS(correlation.getXyResult().covariance, covariance);
}

TEST(Correlation, limitsDisappearWithFewerPairs)
{
    Correlation correlation = analysed(scattered(60, 0.125));
    EXPECT_NE(correlation.getCorrelationResult().confidenceLimits.getUpper(), 0.0);
    correlation.setHead(0.5);
    ASSERT_TRUE(correlation.analyse());
    EXPECT_EQ(correlation.getXyResult().x.n, 30u);
    EXPECT_SAME_BITS(correlation.getCorrelationResult().confidenceLimits.getLower(), 0.0);
    EXPECT_SAME_BITS(correlation.getCorrelationResult().confidenceLimits.getUpper(), 0.0);
}

TEST(Correlation, perfectOnes)  // an infinite t has A = 1 for even, pi^2 / 4 for odd degrees of freedom
{
    const double half = 1.96044827374235124 / std::sqrt(57.0);  // the normal quantile of Abramowitz and Stegun 26.2.22
    const struct {
        int n;
        double slope, tSignificance, lower, upper;
    } rows[] = {
        {12, 2, 1.0, 0.0, 0.0},
        {12, -2, -1.0, 0.0, 0.0},
        {13, 2, pi * pi / 4.0, 0.0, 0.0},
        {13, -2, -pi * pi / 4.0, 0.0, 0.0},
        {60, 4, 1.0, 10000.0 - half, 10000.0 + half},  // z of r = 1 is 10000
        {60, -4, -1.0, -infinity, -infinity},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.slope * row.n);
        const Correlation correlation = analysed(line(row.n, row.slope));
        const correlation_stat& r = correlation.getCorrelationResult();
        EXPECT_SAME_BITS(r.r, row.slope > 0.0 ? 1.0 : -1.0);
        EXPECT_SAME_BITS(r.t, row.slope * infinity);
        EXPECT_NEAR(r.tSignificance, row.tSignificance, 1e-14);
        EXPECT_SAME_BITS(r.F, infinity);
        EXPECT_SAME_BITS(r.FSignificance, 0.0);
        EXPECT_EQ(correlation.acceptH0_t(), row.slope < 0.0);
        EXPECT_FALSE(correlation.acceptH0_F());
        if (std::isinf(row.lower)) {
            EXPECT_SAME_BITS(r.confidenceLimits.getLower(), row.lower);
            EXPECT_SAME_BITS(r.confidenceLimits.getUpper(), row.upper);
        } else {
            EXPECT_NEAR(r.confidenceLimits.getLower(), row.lower, 1e-6);
            EXPECT_NEAR(r.confidenceLimits.getUpper(), row.upper, 1e-6);
        }
    }
}

TEST(Correlation, rRoundedBeyondOne)  // 56 / sqrt(18.67 * 74.67): the products round to the double above 1
{
    const Correlation correlation = analysed({{1, 3}, {3, 7}, {7, 15}});
    const correlation_stat& r = correlation.getCorrelationResult();
    EXPECT_SAME_BITS(r.r, std::nextafter(1.0, 2.0));
    EXPECT_TRUE(std::isnan(r.t));
    EXPECT_TRUE(std::isnan(r.tSignificance));
    EXPECT_SAME_BITS(r.F, -9007199254740992.0);
    EXPECT_SAME_BITS(r.FSignificance, 0.0);
    EXPECT_FALSE(correlation.acceptH0_t());
    EXPECT_FALSE(correlation.acceptH0_F());
}

TEST(Correlation, samplesWithoutR)
{
    const struct {
        const char* shows;
        Pairs pairs;
        double head, tail;
    } rows[] = {
        {"equal x", {{2, 3}, {2, 4}, {2, 6}}, 0.0, 0.0},
        {"equal y", {{2, 3}, {4, 3}, {6, 3}}, 0.0, 0.0},
        {"identical pairs", {{2, 3}, {2, 3}}, 0.0, 0.0},
        {"a NaN", {{2, 3}, {NaN, 4}, {3, 6}}, 0.0, 0.0},
        {"an infinite y", {{2, 3}, {1, infinity}, {3, 6}}, 0.0, 0.0},
        {"a range that wraps: 2^64 - 2 degrees of freedom", ordinaryPairs, 0.9, 0.9},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.shows);
        Correlation correlation = holding<Correlation>(row.pairs);
        correlation.setHead(row.head);
        correlation.setTail(row.tail);
        EXPECT_TRUE(correlation.analyse());
        const correlation_stat& r = correlation.getCorrelationResult();
        for (const double none : {r.r, r.t, r.F}) EXPECT_TRUE(std::isnan(none));
        if (correlation.getXyResult().x.n == 2) {  // no degree of freedom: both probabilities are 0 before they are taken from 1
            EXPECT_SAME_BITS(r.tSignificance, 1.0);
            EXPECT_SAME_BITS(r.FSignificance, 1.0);
        } else {
            EXPECT_TRUE(std::isnan(r.tSignificance));
            EXPECT_FALSE(correlation.acceptH0_t());
        }
    }
}

TEST(Correlation, twoPairs)
{
    const Correlation correlation = analysed({{1, 2}, {3, 5}});
    const correlation_stat& r = correlation.getCorrelationResult();
    EXPECT_SAME_BITS(r.r, 1.0);
    EXPECT_TRUE(std::isnan(r.t));
    EXPECT_SAME_BITS(r.F, infinity);
    EXPECT_SAME_BITS(r.tSignificance, 1.0);
    EXPECT_SAME_BITS(r.FSignificance, 1.0);
    EXPECT_FALSE(correlation.acceptH0_t());
    EXPECT_TRUE(correlation.acceptH0_F());
}

// ---------------------------------------------------------------- single tests

TEST(Correlation, significance_t0)  // A(t) in closed form, with s = r and c = sqrt(1 - r^2)
{
    const auto df1 = [](double r) { return pi / 2.0 * std::asin(r); };
    const auto df2 = [](double r) { return r; };
    const auto df3 = [](double r) { return pi / 2.0 * (r * std::sqrt(1.0 - r * r) + std::asin(r)); };
    const auto df4 = [](double r) { return r * (1.0 + (1.0 - r * r) / 2.0); };
    for (const double r : {-0.99, -0.5, 0.0, 1e-6, 0.25, 0.75, 0.99}) {
        const struct {
            std::size_t n;
            double p;
        } rows[] = {{2, 1.0}, {3, df1(r)}, {4, df2(r)}, {5, df3(r)}, {6, df4(r)}};
        for (const auto& row : rows) {
            Correlation correlation;
            EXPECT_NEAR(correlation.significance_t0(r, row.n), row.p, 1e-14) << r << " " << row.n;
            EXPECT_SAME_BITS(correlation.getCorrelationResult().t, r * std::sqrt(double(row.n - 2) / (1.0 - r * r)));
            EXPECT_SAME_BITS(correlation.getCorrelationResult().tSignificance, 0.0) << "analyse() stores it";
        }
    }
}

TEST(Correlation, significance_t0WithWrappedDegreesOfFreedom)
{
    for (const std::size_t n : {0u, 1u}) {
        Correlation correlation;
        EXPECT_TRUE(std::isnan(correlation.significance_t0(0.5, n))) << "t_Prob beyond 2^53";
        EXPECT_NEAR(correlation.getCorrelationResult().t, 0.5 * std::sqrt(std::pow(2.0, 64) / 0.75), 1.0) << n;
    }
}

TEST(Correlation, significance_t1)  // 50 digits: tests/reference/paired_50_digits.py
{
    const struct {
        double r, rho;
        std::size_t n;
        double t, p;
    } rows[] = {
        // clang-format off
        {0.5, 0.25, 10, 0.787373330907080303, 0.453756564198364313},
        {0.5, 0.25, 11, 0.8399051603301899, -0.424402255057856594},
        {-0.875, 0.5, 50, -13.0702832236727092, 1.99999999999999998},  // the last one of the formula for small samples
        {-0.875, 0.5, 51, -13.1866656790976709, 3.46740110027233963},
        {0.75, 0.5, 50, 2.91122298312018388, 0.00544591549183365207},
        {0.75, 0.5, 51, 2.93512588667007573, -1.45490775562122421},
        {0.5, 0.5, 20, 0.0, 1.0},
        {0.125, -0.25, 100, 3.75310449883168424, 0.000296102097951604192},
        {0.0, 0.0625, 1000, -1.97603231989399471, 1.95157381370568399},
        // clang-format on
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.n);
        Correlation correlation;
        EXPECT_NEAR(correlation.significance_t1(row.r, row.rho, row.n), row.p, 1e-12);
        EXPECT_NEAR(correlation.getCorrelationResult().t, row.t, 1e-13 * std::fabs(row.t));
        EXPECT_SAME_BITS(correlation.getCorrelationResult().t,
                         row.n <= 50 ? correlation.t_small_n(row.r, row.rho, row.n) : correlation.t_big_n(row.r, row.rho, row.n));
        EXPECT_NEAR(row.n <= 50 ? correlation.t_small_n(row.r, row.rho, row.n) : correlation.t_big_n(row.r, row.rho, row.n), row.t,
                    1e-13 * std::fabs(row.t));
    }
}

TEST(Correlation, significance_t1NeedsTenPairs)
{
    Correlation correlation;
    correlation.significance_t0(0.5, 6);
    const double t = correlation.getCorrelationResult().t;
    EXPECT_NE(t, 0.0);
    for (const std::size_t n : {0u, 1u, 2u, 3u, 8u, 9u}) {
        EXPECT_SAME_BITS(correlation.significance_t1(0.875, 0.25, n), 0.0) << n;
        EXPECT_SAME_BITS(correlation.getCorrelationResult().t, t) << n;
    }
    EXPECT_NE(correlation.significance_t1(0.875, 0.25, 10), 0.0);
    EXPECT_NE(correlation.getCorrelationResult().t, t);
}

TEST(Correlation, tForAGivenRhoOutsideTheTests)  // the formulas ask nothing of n
{
    const Correlation correlation;
    const double z = std::atanh(0.5), zeta = std::atanh(0.25);
    EXPECT_NEAR(correlation.t_small_n(0.5, 0.25, 2), (z - (3 * z + 0.5) / 4) - (zeta - (3 * zeta + 0.25) / 4), 1e-15);
    EXPECT_NEAR(correlation.t_small_n(0.5, 0.25, 1000), ((z - (3 * z + 0.5) / 3996) - (zeta - (3 * zeta + 0.25) / 3996)) * std::sqrt(999.0),
                1e-13);
    EXPECT_NEAR(correlation.t_big_n(0.5, 0.25, 7), 2 * (z - zeta), 1e-15);
    EXPECT_SAME_BITS(correlation.t_big_n(0.5, 0.25, 3), 0.0);
    EXPECT_SAME_BITS(correlation.t_big_n(1.0, 0.0, 103), 100000.0) << "z of 1 is 10000";
    EXPECT_SAME_BITS(correlation.t_big_n(-1.0, 0.0, 103), -infinity);
    EXPECT_FALSE(std::isfinite(correlation.t_small_n(0.5, 0.25, 1))) << "divided by 4 (n - 1)";
}

TEST(Correlation, significance_F)  // the upper tail in closed form, x = (1 - |r|) / 2 and m = (n - 2) / 2: I_x(m, m)
{
    for (const double r : {-1.0, -0.75, -0.125, 0.0, 0.5, 0.9375}) {
        const double x = (1.0 - std::fabs(r)) / 2.0;
        const struct {
            std::size_t n;
            double p;
        } rows[] = {{2, 1.0}, {4, x}, {6, x * x * (3.0 - 2.0 * x)}, {8, x * x * x * (10.0 - 15.0 * x + 6.0 * x * x)}};
        for (const auto& row : rows) {
            Correlation correlation;
            EXPECT_NEAR(correlation.significance_F(r, row.n), row.p, 1e-15) << r << " " << row.n;
            EXPECT_SAME_BITS(correlation.getCorrelationResult().F, (1.0 + std::fabs(r)) / (1.0 - std::fabs(r)));
            EXPECT_SAME_BITS(correlation.getCorrelationResult().FSignificance, 0.0) << "analyse() stores it";
        }
    }
}

// ---------------------------------------------------------------- limits

TEST(Correlation, confidenceLimitsOfR)  // in 50 digits: tests/reference/paired_50_digits.py
{
    const struct {
        double r;
        std::size_t n;
        double significance, lower, upper;
    } rows[] = {
        {0.5, 51, 0.05, 0.266339809689683943, 0.832272478978425749},
        {0.5, 51, 0.01, 0.177265085006279865, 0.921347203661829827},
        {0.0, 103, 0.05, -0.196044827374235121, 0.196044827374235121},
        {-0.9375, 1003, 0.1, -1.76899701623364209, -1.66499018825150416},  // beyond -1: z, not r
        {0.5, 50, 0.05, 0.0, 0.0},
        {1.0, 50, 0.05, 0.0, 0.0},
        {0.5, 3, 0.05, 0.0, 0.0},
        {0.5, 0, 0.05, 0.0, 0.0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.n);
        Correlation correlation;
        correlation.setSignificance(row.significance);
        const DataRange<double> limits = correlation.confidenceInterval(row.r, row.n);
        EXPECT_NEAR(limits.getLower(), row.lower, 1e-7);  // exp(w^2 / df) - 1 has half of its digits for so large a df
        EXPECT_NEAR(limits.getUpper(), row.upper, 1e-7);
        if (row.n <= 50) {
            EXPECT_SAME_BITS(limits.getLower(), 0.0);
            EXPECT_SAME_BITS(limits.getUpper(), 0.0);
        } else {
            EXPECT_LT(z_to_r(limits.getLower()), row.r);
            EXPECT_GT(z_to_r(limits.getUpper()), row.r);
        }
        EXPECT_SAME_BITS(correlation.getCorrelationResult().confidenceLimits.getUpper(), 0.0) << "analyse() stores them";
    }
}

TEST(Correlation, confidenceIntervalOfAMeanStaysCallable)
{
    Correlation correlation;
    correlation.setSignificance(0.01);
    const DataRange<double> limits = correlation.confidenceInterval(10.0, 4.0, 25);
    const double half = t_PercentPoint(0.01, 24) * 0.4;
    EXPECT_NEAR(limits.getLower(), 10.0 - half, 1e-14);
    EXPECT_NEAR(limits.getUpper(), 10.0 + half, 1e-14);
}

// ---------------------------------------------------------------- decisions

TEST(Correlation, decisions)
{
    const struct {
        const char* shows;
        double significance, tSignificance, FSignificance;
        bool t, F;
    } rows[] = {
        {"t: one minus p below the level, F: p above it", 0.05, 0.04, 0.06, true, true},
        {"t: above, F: below", 0.05, 0.06, 0.04, false, false},
        {"equal: t rejects, F accepts", 0.05, 0.05, 0.05, false, true},
        {"a negative r", 0.05, -0.97, 0.0, true, false},
        {"no numbers", 0.05, NaN, NaN, false, false},
        {"no level", NaN, 0.0, 1.0, false, false},
    };
    for (const auto& row : rows) {
        const Decided correlation(row.significance, row.tSignificance, row.FSignificance);
        EXPECT_EQ(correlation.acceptH0_t(), row.t) << row.shows;
        EXPECT_EQ(correlation.acceptH0_F(), row.F) << row.shows;
    }
}

TEST(Correlation, theTTestAcceptsEveryNegativeCorrelation)  // and no positive one of any strength; the F test knows no sign
{
    const struct {
        const char* shows;
        Pairs pairs;
        bool t, F;
    } rows[] = {
        {"strongly positive", ordinaryPairs, false, false},
        {"strongly negative", negated(ordinaryPairs), true, false},
        {"weakly negative", {{1, 2}, {2, 3}, {3, 1.5}, {4, 2}}, true, true},
        {"weakly positive", {{1, 2}, {2, 1.5}, {3, 3}, {4, 2}}, false, true},
        {"none", {{1, 2}, {2, 1}, {3, 1}, {4, 2}}, true, true},
    };
    for (const auto& row : rows) {
        const Correlation correlation = analysed(row.pairs);
        EXPECT_EQ(correlation.acceptH0_t(), row.t) << row.shows;
        EXPECT_EQ(correlation.acceptH0_F(), row.F) << row.shows;
    }
    const Correlation none = analysed({{1, 2}, {2, 1}, {3, 1}, {4, 2}});
    EXPECT_SAME_BITS(none.getCorrelationResult().t, 0.0);
    EXPECT_SAME_BITS(none.getCorrelationResult().tSignificance, 0.0);
    EXPECT_SAME_BITS(none.getCorrelationResult().F, 1.0);
    EXPECT_NEAR(none.getCorrelationResult().FSignificance, 0.5, 1e-15);
}

TEST(Correlation, theVirtualDecisionIsThatOfTheEmptyUnivariateSample)
{
    Correlation correlation = analysed(ordinaryPairs);
    EXPECT_FALSE(correlation.acceptH0());
    Correlation unrelated = analysed({{1, 2}, {2, 1}, {3, 1}, {4, 2}});
    EXPECT_FALSE(unrelated.acceptH0());
}

// ---------------------------------------------------------------- what an analysis calls

TEST(Correlation, analyseReadsEveryPairTwiceThroughTheVirtualOperation)
{
    Recorded<Correlation> correlation = holding<Recorded<Correlation>>(ordinaryPairs);
    correlation.calls.clear();
    EXPECT_TRUE(static_cast<BasicStatistics&>(correlation).analyse());
    EXPECT_EQ(correlation.calls, callsOfPasses({"reset"}, 0, 9));

    correlation.setHead(0.15);
    correlation.setTail(0.29);
    correlation.calls.clear();
    EXPECT_TRUE(correlation.analyse());
    EXPECT_EQ(correlation.calls, callsOfPasses({"reset"}, 2, 7));

    correlation.setHead(0.9);
    correlation.setTail(0.0);
    correlation.calls.clear();
    EXPECT_FALSE(correlation.analyse());
    EXPECT_EQ(correlation.calls, Calls{"reset"});
}

TEST(Correlation, whatGetDataPairGivesIsWhatIsAnalysed)
{
    Recorded<Correlation> correlation = holding<Recorded<Correlation>>(ordinaryPairs);
    correlation.change = [](data_pair pair) { return data_pair{pair.x, -pair.y}; };
    EXPECT_TRUE(correlation.analyse());
    expectSameResult(correlation.getCorrelationResult(), analysed(negated(ordinaryPairs)).getCorrelationResult());
}

// ---------------------------------------------------------------- report, tests/reference/make_golden_paired.py

TEST(Correlation, reports)
{
    const struct {
        const char* name;
        Pairs pairs;
        const char* comment = "";
        double significance = 0.05;
        bool analysed = true;
    } rows[] = {
        {"ordinary", ordinaryPairs, "Ten pairs"},
        {"strongly_negative", negated(ordinaryPairs), "The t test accepts H0"},
        {"weak", scattered(30, 0.0), "Thirty pairs"},
        {"none", {{1, 2}, {2, 1}, {3, 1}, {4, 2}}, "r = 0"},
        {"fifty", scattered(50, 0.125), "No limits up to 50 pairs"},
        {"fifty_one", scattered(51, 0.125), "Limits from 51 pairs on"},
        {"fifty_one_at_one_percent", scattered(51, 0.125), "", 0.01},
        {"fifty_one_falling", scattered(51, -0.25)},
        {"perfect", line(12, 2)},
        {"perfect_odd", line(13, 2)},
        {"perfect_falling", line(12, -2)},
        {"perfect_sixty", line(60, 4)},
        {"perfect_falling_sixty", line(60, -4)},
        {"rounded_beyond_one", {{1, 3}, {3, 7}, {7, 15}}, "r is the double above 1"},
        {"two_pairs", {{1, 2}, {3, 5}}},
        {"three_pairs", {{1, 2}, {2, 7}, {3, 5}}},
        {"equal_x", {{2, 3}, {2, 4}, {2, 6}}},
        {"one_pair", {{2, 3}}},
        {"empty", {}},
        {"not_analysed", ordinaryPairs, "Before any analysis", 0.05, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Correlation correlation = holding<Correlation>(row.pairs);
        correlation.setComment(row.comment);
        correlation.setSignificance(row.significance);
        if (row.analysed) correlation.analyse();
        EXPECT_EQ(report(correlation), golden("correlation_" + std::string(row.name) + ".txt"));
    }
}

TEST(Correlation, reportOfAFile)
{
    Correlation correlation = wq_test::readFrom<Correlation>(wq_test::shipped("nist_norris.txt"));
    ASSERT_TRUE(correlation.analyse());
    EXPECT_EQ(report(correlation), golden("correlation_norris.txt"));
}

TEST(Correlation, theReportNamesTheHypothesisOfTheHost)
{
    Correlation correlation = holding<Correlation>(ordinaryPairs);
    correlation.setHypothesisInfo("rho is 0 in all towns");
    ASSERT_TRUE(correlation.analyse());
    EXPECT_EQ(report(correlation), golden("correlation_other_hypothesis.txt"));
}

TEST(Correlation, theReportFollowsTheCurrentLevel)
{
    const std::string decided = "\nF value                    : 7.044 ( p = 0.043)\nH0                         : ";
    Correlation correlation = analysed(fallingPairs);
    EXPECT_THAT(report(correlation), HasSubstr(decided + "rejected\n"));
    correlation.setSignificance(0.04);
    EXPECT_THAT(report(correlation), HasSubstr("\nsignificance level         : 0.040\n"));
    EXPECT_THAT(report(correlation), HasSubstr(decided + "accepted\n"));
}
