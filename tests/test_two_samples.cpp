// F test of the variances of two samples.
#include <wq_stat/distributions.h>
#include <wq_stat/two_samples.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "support/bits.h"
#include "support/console.h"
#include "support/files.h"

using namespace wq_lib;
using wq_test::golden;
using wq_test::printed;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr std::size_t largestCount = std::numeric_limits<std::size_t>::max();

basic_stat sample(std::size_t n, double variance)
{
    basic_stat record;
    record.n = n;
    record.sampleVariance = variance;
    return record;
}

TwoSamples loaded(std::size_t n1, double variance1, std::size_t n2, double variance2)
{
    TwoSamples test;
    test.setFirstSample(sample(n1, variance1));
    test.setSecondSample(sample(n2, variance2));
    return test;
}

TwoSamples analysed(std::size_t n1, double variance1, std::size_t n2, double variance2)
{
    TwoSamples test = loaded(n1, variance1, n2, variance2);
    EXPECT_TRUE(test.analyse());
    return test;
}

std::string report(TwoSamples& test)
{
    return printed([&] { test.reportConsole(); });
}

}  // namespace

TEST(TwoSamples, newObject)
{
    TwoSamples test;
    EXPECT_EQ(test.getHypothesisInfo(), "the sample variances do not differ");
    const basic_stat& second = test.getSecondSample();
    EXPECT_EQ(second.n, 0u);
    for (const double value : {second.min, second.max, second.mean, second.sampleVariance, second.confidenceLimits.getUpper()})
        EXPECT_SAME_BITS(value, 0.0);
    EXPECT_EQ(test.getF(), 0.0);
    EXPECT_EQ(test.getFProbability(), 0.0);
    EXPECT_EQ(test.getCriticalF(), 0.0);
    EXPECT_EQ(test.getDf1(), 0u);
    EXPECT_EQ(test.getDf2(), 0u);
    EXPECT_FALSE(test.acceptH0()) << "0 > 0";
}

TEST(TwoSamples, ratioOfVariances)
{
    const TwoSamples test;
    const struct {
        const char* shows;
        double v1, v2, ratio;
    } rows[] = {
        {"larger first", 6.0, 2.0, 3.0},
        {"larger second", 2.0, 6.0, 3.0},
        {"equal", 2.5, 2.5, 1.0},
        {"second zero", 4.0, 0.0, infinity},
        {"first zero", 0.0, 4.0, infinity},
        {"both zero", 0.0, 0.0, NaN},
        {"both infinite", infinity, infinity, NaN},
        {"both negative: -1 is the larger", -1.0, -2.0, 0.5},
        {"first NaN: it is not larger", NaN, 2.0, NaN},
    };
    for (const auto& row : rows) EXPECT_SAME_BITS(test.compute_ratio(row.v1, row.v2), row.ratio) << row.shows;
}

TEST(TwoSamples, statistics)
{
    const struct {
        const char* shows;
        std::size_t n1;
        double v1;
        std::size_t n2;
        double v2;
        double F;
        std::size_t df1, df2;
        bool accepted;
    } rows[] = {
        {"first larger: its df comes first", 4, 12.5, 13, 3.125, 4.0, 3, 12, true},
        {"second larger: its df comes first", 13, 3.125, 4, 12.5, 4.0, 3, 12, true},
        {"above the critical value 4.474", 4, 14.0625, 13, 3.125, 4.5, 3, 12, false},
        {"equal variances: df1 belongs to the second sample", 5, 2.5, 9, 2.5, 1.0, 8, 4, true},
        {"a zero variance: F infinite", 5, 0.0, 9, 2.5, infinity, 8, 4, false},
        {"the other zero variance", 5, 2.5, 9, 0.0, infinity, 4, 8, false},
        {"both zero: F NaN, not accepted", 5, 0.0, 9, 0.0, NaN, 8, 4, false},
        {"a NaN variance is never the larger: df1 belongs to the second sample", 5, NaN, 9, 2.5, NaN, 8, 4, false},
        {"no observations: the df wraps, and nothing is known of F", 0, 4.0, 9, 2.0, 2.0, largestCount, 8, false},
        {"one observation: 0 degrees of freedom, critical value 0", 1, 4.0, 9, 2.0, 2.0, 0, 8, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.shows);
        TwoSamples test = analysed(row.n1, row.v1, row.n2, row.v2);
        EXPECT_SAME_BITS(test.getF(), row.F);
        EXPECT_EQ(test.getDf1(), row.df1);
        EXPECT_EQ(test.getDf2(), row.df2);
        EXPECT_EQ(test.acceptH0(), row.accepted);
        EXPECT_SAME_BITS(test.getFProbability(), F_Prob(row.F, row.df1, row.df2));
        EXPECT_SAME_BITS(test.getCriticalF(), F_PercentPoint(1.0 - 0.05 / 2.0, row.df1, row.df2));
    }
}

TEST(TwoSamples, criticalValueIsTheUpperPointOfHalfTheLevel)  // F tables: 4.47 for 3 and 12 degrees of freedom at 2.5 %
{
    TwoSamples test = analysed(4, 12.5, 13, 3.125);
    EXPECT_NEAR(test.getCriticalF(), 4.474180, 5e-7);  // exact: 4.474185
    test.setSignificance(0.1);
    EXPECT_NEAR(test.getCriticalF(), 4.474180, 5e-7) << "only an analysis computes it";
    EXPECT_TRUE(test.analyse());
    EXPECT_SAME_BITS(test.getCriticalF(), F_PercentPoint(0.95, 3, 12));
    EXPECT_FALSE(test.acceptH0());
}

TEST(TwoSamples, aSampleWithoutObservationsHasNoProbability)
{
    const TwoSamples test = analysed(0, 4.0, 9, 2.0);
    EXPECT_TRUE(std::isnan(test.getFProbability()));
    EXPECT_TRUE(std::isnan(test.getCriticalF()));
}

TEST(TwoSamples, lowerTailProbability)  // df 2 and 2: P(F <= f) = f/(1 + f)
{
    const TwoSamples test = analysed(3, 3.0, 3, 1.0);
    EXPECT_NEAR(test.getFProbability(), 0.75, 1e-7);
}

TEST(TwoSamples, decisionIsStrict)
{
    class Given : public TwoSamples {
    public:
        Given(double critical, double ratio)
        {
            criticalF = critical;
            F = ratio;
        }
    };
    EXPECT_FALSE(Given(4.0, 4.0).acceptH0());
    EXPECT_TRUE(Given(std::nextafter(4.0, 5.0), 4.0).acceptH0());
    EXPECT_FALSE(Given(infinity, infinity).acceptH0());
    EXPECT_FALSE(Given(NaN, 4.0).acceptH0());
    EXPECT_FALSE(Given(4.0, NaN).acceptH0());
}

TEST(TwoSamples, analysisResetsNothing)
{
    TwoSamples test = loaded(4, 12.5, 13, 3.125);
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(test.analyse());
        EXPECT_EQ(test.getResult().n, 4u);
        EXPECT_EQ(test.getResult().sampleVariance, 12.5);
        EXPECT_EQ(test.getSecondSample().n, 13u);
        EXPECT_EQ(test.getSecondSample().sampleVariance, 3.125);
        EXPECT_EQ(test.getF(), 4.0);
    }
}

TEST(TwoSamples, analysisLeavesTheObservationsAlone)
{
    TwoSamples test = loaded(4, 12.5, 13, 3.125);
    test.copyFrom({3, 1, 2});
    EXPECT_TRUE(test.analyse());
    EXPECT_EQ(test.getDataPoint(0), 3.0) << "not sorted";
    EXPECT_EQ(test.getResult().n, 4u);
}

TEST(TwoSamples, theSamplesOwnAnalysisResetsBothRecords)
{
    TwoSamples test = analysed(4, 12.5, 13, 3.125);
    test.copyFrom({4, 8, 6, 2});
    EXPECT_TRUE(test.BasicStatistics::analyse());
    EXPECT_EQ(test.getResult().n, 4u);
    EXPECT_DOUBLE_EQ(test.getResult().sampleVariance, 20.0 / 3.0);
    EXPECT_EQ(test.getSecondSample().n, 0u);
    EXPECT_EQ(test.getSecondSample().sampleVariance, 0.0);
    EXPECT_EQ(test.getF(), 4.0) << "the test itself keeps its figures";
    EXPECT_EQ(test.getDf2(), 12u);

    test.setSecondSample(sample(5, 20.0));
    EXPECT_TRUE(test.analyse());
    EXPECT_DOUBLE_EQ(test.getF(), 3.0);
    EXPECT_EQ(test.getDf1(), 4u);
    EXPECT_EQ(test.getDf2(), 3u);
}

TEST(TwoSamples, resetKeepsTheTest)
{
    TwoSamples test = analysed(4, 12.5, 13, 3.125);
    const double probability = test.getFProbability();
    const double critical = test.getCriticalF();
    BasicStatistics& base = test;
    base.resetResult();
    for (const basic_stat* record : {&test.getResult(), &test.getSecondSample()}) {
        EXPECT_EQ(record->n, 0u);
        EXPECT_EQ(record->sampleVariance, 0.0);
        EXPECT_EQ(record->min, std::numeric_limits<double>::max());
        EXPECT_EQ(record->max, std::numeric_limits<double>::min());
    }
    EXPECT_EQ(test.getF(), 4.0);
    EXPECT_SAME_BITS(test.getFProbability(), probability);
    EXPECT_SAME_BITS(test.getCriticalF(), critical);
    EXPECT_EQ(test.getDf1(), 3u);
    EXPECT_EQ(test.getDf2(), 12u);
    EXPECT_TRUE(test.acceptH0());
}

TEST(TwoSamples, sameBitsAsTheDefinition)
{
    std::mt19937_64 random(4);
    std::uniform_real_distribution<double> value(-10.0, 10.0);
    std::uniform_int_distribution<std::size_t> size(3, 30);
    for (int round = 0; round < 200; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        std::vector<double> values[2];
        double variance[2];
        for (int s = 0; s < 2; ++s) {
            values[s].resize(size(random));
            for (double& x : values[s]) x = value(random) * (s + 1);
            std::vector<double> ordered = values[s];
            std::sort(ordered.begin(), ordered.end());  // sums are formed in ascending order
            double sum = 0.0;
            for (const double x : ordered) sum += x;
            const double mean = sum / static_cast<double>(ordered.size());
            double squares = 0.0;
            for (const double x : ordered) squares += (x - mean) * (x - mean);
            variance[s] = squares / static_cast<double>(ordered.size() - 1);
        }
        const int larger = variance[0] > variance[1] ? 0 : 1;
        const double F = variance[larger] / variance[1 - larger];
        const std::size_t df1 = values[larger].size() - 1;
        const std::size_t df2 = values[1 - larger].size() - 1;

        TwoSamples test;
        test.copyFrom(values[0]);
        BasicStatistics second;
        second.copyFrom(values[1]);
        ASSERT_TRUE(test.BasicStatistics::analyse());
        ASSERT_TRUE(second.analyse());
        test.setSecondSample(second.getResult());
        EXPECT_TRUE(test.analyse());
        EXPECT_SAME_BITS(test.getF(), F);
        EXPECT_EQ(test.getDf1(), df1);
        EXPECT_EQ(test.getDf2(), df2);
        EXPECT_SAME_BITS(test.getFProbability(), F_Prob(F, df1, df2));
        EXPECT_SAME_BITS(test.getCriticalF(), F_PercentPoint(0.975, df1, df2));
        EXPECT_EQ(test.acceptH0(), F_PercentPoint(0.975, df1, df2) > F);
    }
}

TEST(TwoSamples, reports)  // tests/reference/make_golden_classes.py
{
    const struct {
        const char* file;
        std::size_t n1;
        double v1;
        std::size_t n2;
        double v2;
        const char* comment;
        double significance;
        bool analysed;
    } rows[] = {
        {"variances_first_larger.txt", 4, 12.5, 13, 3.125, "Four readings against thirteen", 0.05, true},
        {"variances_second_larger.txt", 13, 0.000123456789, 4, 1234567.875, "", 0.01, true},
        {"variances_equal.txt", 5, 2.5, 9, 2.5, "", 0.05, true},
        {"variances_one_zero.txt", 5, 0.0, 9, 2.5, "", 0.05, true},
        {"variances_both_zero.txt", 5, 0.0, 9, 0.0, "", 0.05, true},
        {"variances_no_size.txt", 0, 4.0, 9, 2.0, "", 0.05, true},
        {"variances_empty.txt", 0, 0.0, 0, 0.0, "", 0.05, true},
        {"variances_before_analysis.txt", 4, 12.5, 13, 3.125, "", 0.05, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.file);
        TwoSamples test = loaded(row.n1, row.v1, row.n2, row.v2);
        test.setComment(row.comment);
        test.setSignificance(row.significance);
        if (row.analysed) test.analyse();
        EXPECT_EQ(report(test), golden(row.file));
    }
}

TEST(TwoSamples, reportAsksTheVirtualDecision)
{
    class Stubborn : public TwoSamples {
    public:
        bool acceptH0() override { return true; }
    };
    Stubborn test;
    test.setHypothesisInfo("as ever");
    BasicStatistics& base = test;
    const std::string text = printed([&] { base.reportConsole(); });
    EXPECT_THAT(text, ::testing::HasSubstr("\nHo: as ever\n"));
    EXPECT_THAT(text, ::testing::EndsWith("H0             : accepted\n"));
}
