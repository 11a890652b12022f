// The four regressions: preparing the pairs, the fit, what an analysis calls, reports.
#include <wq_stat/distributions.h>
#include <wq_stat/regression.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "support/bits.h"
#include "support/console.h"
#include "support/files.h"
#include "support/paired.h"

using namespace wq_lib;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;
using wq_test::asItIs;
using wq_test::Calls;
using wq_test::callsOfPasses;
using wq_test::Choice;
using wq_test::expectSameStatistics;
using wq_test::fallingPairs;
using wq_test::golden;
using wq_test::holding;
using wq_test::logarithm;
using wq_test::naiveStatistics;
using wq_test::ordinaryPairs;
using wq_test::Pairs;
using wq_test::printed;
using wq_test::Recorded;
using wq_test::Transformation;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double pi = 3.14159265358979323846;
constexpr std::size_t wrapped = static_cast<std::size_t>(-1);  // what 1 - 2 is

// Notes analyseDataPair too, and lets it fail.
template <typename T>
class RecordedRegression : public Recorded<T> {
public:
    bool analyseDataPair() override
    {
        this->calls.emplace_back("prepare");
        return T::analyseDataPair() && !fails;
    }

    bool fails = false;
};

bool xAboveZero(const data_pair& pair) { return !(pair.x <= 0.0); }  // a NaN is kept
bool yAboveZero(const data_pair& pair) { return pair.y > 0.0; }
bool bothAboveZero(const data_pair& pair) { return xAboveZero(pair) && yAboveZero(pair); }

template <typename T>
struct Model {
    using type = T;
    const char* name;
    Choice kept;
    Transformation ofX, ofY;
    bool transformed() const { return ofX == logarithm || ofY == logarithm; }
};

// Calls f with each of the models.
template <typename F>
void forEveryModel(F&& f)
{
    const auto call = [&](auto model) {
        SCOPED_TRACE(model.name);
        f(model);
    };
    call(Model<LinearRegression>{"linear", wq_test::every, asItIs, asItIs});
    call(Model<LogarithmicRegression>{"logarithmic", xAboveZero, logarithm, asItIs});
    call(Model<ExponentialRegression>{"exponential", yAboveZero, asItIs, logarithm});
    call(Model<PowerRegression>{"power", bothAboveZero, logarithm, logarithm});
}

template <typename T>
T analysed(const Pairs& pairs, double significance = 0.05)
{
    T regression = holding<T>(pairs);
    regression.setSignificance(significance);
    EXPECT_TRUE(regression.analyse());
    return regression;
}

std::string report(BasicStatistics& regression)
{
    return printed([&] { regression.reportConsole(); });
}

void expectSameLimits(const DataRange<double>& actual, const DataRange<double>& expected)
{
    EXPECT_SAME_BITS(actual.getLower(), expected.getLower());
    EXPECT_SAME_BITS(actual.getUpper(), expected.getUpper());
}

void expectSameFit(const regression_stat& actual, const regression_stat& expected)
{
    EXPECT_SAME_BITS(actual.a, expected.a);
    EXPECT_SAME_BITS(actual.b, expected.b);
    EXPECT_SAME_BITS(actual.explained, expected.explained);
    EXPECT_SAME_BITS(actual.unexplained, expected.unexplained);
    EXPECT_SAME_BITS(actual.residualVariance, expected.residualVariance);
    EXPECT_SAME_BITS(actual.seB, expected.seB);
    EXPECT_SAME_BITS(actual.tB, expected.tB);
    EXPECT_SAME_BITS(actual.pB, expected.pB);
    expectSameLimits(actual.limitsB, expected.limitsB);
    EXPECT_SAME_BITS(actual.meanX, expected.meanX);
    EXPECT_SAME_BITS(actual.meanY, expected.meanY);
    EXPECT_SAME_BITS(actual.seY, expected.seY);
    expectSameLimits(actual.limitsY, expected.limitsY);
    EXPECT_EQ(actual.n, expected.n);
}

// The line through the paired statistics, for three pairs or more; a is not taken back from a scale of logarithms.
regression_stat naiveFit(const xy_stat& s, double significance)
{
    regression_stat r;
    r.n = s.x.n;
    const double df = double(r.n) - 2.0, t = t_PercentPoint(significance, r.n - 2);
    r.meanX = s.x.mean;
    r.meanY = s.y.mean;
    r.b = s.sumProducts / s.x.sumOfSquares;
    r.a = r.meanY - r.b * r.meanX;
    r.explained = s.sumProducts * s.sumProducts / s.x.sumOfSquares;
    r.unexplained = s.y.sumOfSquares - r.explained;
    r.residualVariance = r.unexplained / df;
    r.seB = std::sqrt(r.residualVariance / s.x.sumOfSquares);
    r.tB = r.b / r.seB;
    r.pB = t_Prob(r.tB, r.n - 2, false);
    r.seY = std::sqrt(r.residualVariance / double(r.n));
    r.limitsB.setRange(r.b - t * r.seB, r.b + t * r.seB);
    r.limitsY.setRange(r.meanY - t * r.seY, r.meanY + t * r.seY);
    return r;
}

// The value that follows a label of the report.
std::string shownAt(const std::string& text, const std::string& label)
{
    const std::size_t at = text.find("\n" + label);
    if (at == std::string::npos) return "no such line";
    const std::size_t begin = at + 1 + label.size();
    return text.substr(begin, text.find('\n', begin) - begin);
}

}  // namespace

// ---------------------------------------------------------------- the frame

TEST(Regression, newObject)
{
    forEveryModel([](auto model) {
        const typename decltype(model)::type regression;
        expectSameFit(regression.getRegressionResult(), regression_stat());
    });
}

TEST(Regression, withoutAModel)
{
    Regression regression = holding<Regression>(ordinaryPairs);
    EXPECT_TRUE(regression.analyseDataPair()) << "does nothing";
    EXPECT_EQ(regression.getXyResult().x.n, 0u);
    EXPECT_EQ(report(regression), "");

    EXPECT_TRUE(regression.analyse()) << "nothing is prepared, so there are no pairs";
    EXPECT_EQ(regression.getRegressionResult().n, 0u);
    EXPECT_TRUE(std::isnan(regression.getRegressionResult().b));
    EXPECT_TRUE(std::isnan(regression.getRegressionResult().pB));

    // a host may prepare the statistics itself
    EXPECT_TRUE(regression.BasicXyStatistics::analyse());
    EXPECT_TRUE(regression.analyse());
    expectSameFit(regression.getRegressionResult(), analysed<LinearRegression>(ordinaryPairs).getRegressionResult());
    EXPECT_EQ(report(regression), "");
}

TEST(Regression, confidenceLimits)
{
    const struct {
        double value, t, se, lower, upper;
    } rows[] = {
        {3.0, 2.0, 0.25, 2.5, 3.5},
        {-3.0, 0.0, 0.25, -3.0, -3.0},
        {0.0, 2.0, -1.0, 2.0, -2.0},
        {1.0, 0.0, infinity, NaN, NaN},
    };
    for (const auto& row : rows) {
        const DataRange<double> limits = Regression().getConfidenceLimits(row.value, row.t, row.se);
        EXPECT_SAME_BITS(limits.getLower(), row.lower);
        EXPECT_SAME_BITS(limits.getUpper(), row.upper);
    }
}

TEST(Regression, resetRegressionLeavesTheMeans)
{
    forEveryModel([](auto model) {
        auto regression = analysed<typename decltype(model)::type>(ordinaryPairs);
        regression_stat expected;
        expected.meanX = regression.getRegressionResult().meanX;
        expected.meanY = regression.getRegressionResult().meanY;
        EXPECT_NE(expected.meanX, 0.0);
        EXPECT_NE(regression.getRegressionResult().limitsY.getUpper(), 0.0);
        regression.resetRegression();
        expectSameFit(regression.getRegressionResult(), expected);
        EXPECT_EQ(regression.getXyResult().x.n, 10u) << "the paired statistics stay";

        regression.analyse();
        BasicStatistics& root = regression;
        root.resetResult();
        expectSameFit(regression.getRegressionResult(), expected);
        EXPECT_EQ(regression.getXyResult().x.n, 0u);
    });
}

// ---------------------------------------------------------------- the fit

TEST(Regression, figures)  // 50 digits: tests/reference/paired_50_digits.py
{
    const struct {
        const char* model;
        const char* name;
        double a, b, explained, unexplained, residualVariance, seB, tB, meanX, meanY, seY, pB;
    } rows[] = {
        {"linear", "ordinary", -3.46666666666666667, 3.08484848484848485, 785.093939393939394, 40.7810606060606061, 5.09763257575757576,
         0.24857490976918506, 12.4101361948111726, 5.5, 13.5, 0.713977070763310701, 1.65881645678709854e-6},
        {"linear", "falling", 20.8034825870646766, -1.37526652452025586, 332.642590618336887, 256.565742714996446, 64.1414356787491116,
         0.603903133474030999, -2.27729655351986178, 5.25, 13.5833333333333333, 3.26959313673605551, 1.91496016828332353},
        {"logarithmic", "ordinary", -3.65450622143067557, 11.3572812834903425, 623.774336056685736, 202.100663943314264,
         25.2625829929142829, 2.28559621056827726, 4.96906725298889721, 1.51044125730755153, 13.5, 1.58942074331859287,
         0.00109438002843046594},
        {"logarithmic", "falling", 21.8761904761904762, -7.97604258320041198, 534.889285714285714, 54.319047619047619, 13.5797619047619048,
         1.27087135907417154, -6.27604243832432474, 1.03972077083991796, 13.5833333333333333, 1.50442469096783, 1.99670953098797787},
        {"exponential", "ordinary", 2.31527626984155076, 0.271230845670941914, 6.0692091605783806, 0.0929142914610596402,
         0.011614286432632455, 0.0118650423297371342, 22.859661022123883, 5.5, 2.33129867063247101, 0.0340797394835002444,
         1.42201074125010107e-8},
        {"exponential", "falling", 20.5655397052000993, -0.134364495709538613, 3.17521518926762735, 0.582281716186080859,
         0.145570429046520215, 0.0287696465101913587, -4.67035615685932526, 5.25, 2.31820324273360419, 0.155761799470923023,
         1.99048420876336413},
        {"power", "ordinary", 1.93562805010834332, 1.10621105920556495, 5.91772433429333039, 0.244399117746109851, 0.0305498897182637314,
         0.0794813900915511952, 13.9178625075803028, 1.51044125730755153, 2.33129867063247101, 0.0552719546589983837,
         6.87612653573837488e-7},
        {"power", "falling", 20.3327965395905076, -0.667517618379585901, 3.74640251727869595, 0.0110943881750122605, 0.00277359704375306512,
         0.0181625656662684453, -36.7523856841052479, 1.03972077083991796, 2.31820324273360419, 0.0215003761352875914, 1.99999672758291169},
        {"power", "wide", 228.121327551770735, -0.962567978629703808, 462.274912048648001, 58.1263321510156445, 19.3754440503385482,
         0.19706390298056459, -4.88454741873572346, 3.09474772691356131, 2.45097256193992117, 1.96852452615346137, 3.42691531996192951},
    };
    const Pairs wide = {{1e-5, 7e7}, {0.25, 1e4}, {3, 0.1}, {1e4, 0.3}, {7e7, 1e-5}};
    int checked = 0;
    forEveryModel([&](auto model) {
        for (const auto& row : rows) {
            if (row.model != std::string(model.name)) continue;
            SCOPED_TRACE(row.name);
            ++checked;
            const std::string name = row.name;
            const Pairs& pairs = name == "ordinary" ? ordinaryPairs : name == "falling" ? fallingPairs : wide;
            const auto regression = analysed<typename decltype(model)::type>(pairs);
            const regression_stat& r = regression.getRegressionResult();
            // clang-format off
            const double figures[][2] = {{r.a, row.a}, {r.b, row.b}, {r.explained, row.explained}, {r.unexplained, row.unexplained},
                                         {r.residualVariance, row.residualVariance}, {r.seB, row.seB}, {r.tB, row.tB},
                                         {r.meanX, row.meanX}, {r.meanY, row.meanY}, {r.seY, row.seY}};
            // clang-format on
            for (const auto& [actual, expected] : figures) EXPECT_NEAR(actual, expected, 1e-12 * std::fabs(expected));
            EXPECT_NEAR(r.pB, row.pB, 1e-12);  // one minus something
            EXPECT_EQ(r.n, pairs.size());
        }
    });
    EXPECT_EQ(checked, 9);
}

TEST(Regression, sameFiguresAsANaiveComputation)
{
    forEveryModel([](auto model) {
        using T = typename decltype(model)::type;
        std::mt19937_64 random(415);
        int broken = 0;
        for (int repeat = 0; repeat < 400; ++repeat) {
            SCOPED_TRACE(repeat);
            // every fourth sample goes below zero, where the logarithms end
            std::uniform_real_distribution<double> x(repeat % 4 == 3 ? -1.0 : 0.01, 20.0), y(repeat % 4 == 3 ? -1.0 : 0.01, 1e3);
            Pairs pairs;
            for (auto n = 3 + random() % 40; n > 0; --n) pairs.push_back({x(random), y(random)});
            if (repeat % 20 == 19) pairs[0] = {0.0, 0.0};
            const double significance = 0.01 * double(1 + random() % 30);
            const T regression = analysed<T>(pairs, significance);
            const xy_stat statistics = naiveStatistics(pairs, model.kept, model.ofX, model.ofY);
            if (statistics.x.n < 3) continue;
            expectSameStatistics(regression.getXyResult(), statistics);
            regression_stat fit = naiveFit(statistics, significance);
            if (model.ofY == logarithm) fit.a = std::exp(fit.a);
            expectSameFit(regression.getRegressionResult(), fit);
            if (!std::isfinite(fit.b)) ++broken;
        }
        if (model.transformed()) {
            EXPECT_GT(broken, 20);
        } else {
            EXPECT_EQ(broken, 0);
        }
    });
}

TEST(Regression, exactLine)  // with 3 degrees of freedom an infinite t has A = pi^2 / 4; with 2 it has 1
{
    const struct {
        double b;
        int n;
        double pB;
    } rows[] = {
        {-0.5, 5, 1.0 + pi * pi / 4.0},
        {0.5, 5, 1.0 - pi * pi / 4.0},
        {-0.5, 4, 2.0},
        {0.5, 4, 0.0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.b * row.n);
        Pairs pairs;
        for (int x = 1; x <= row.n; ++x) pairs.push_back({double(x), 2.0 + row.b * x});
        const LinearRegression regression = analysed<LinearRegression>(pairs);
        const regression_stat& r = regression.getRegressionResult();
        EXPECT_SAME_BITS(r.a, 2.0);
        EXPECT_SAME_BITS(r.b, row.b);
        EXPECT_SAME_BITS(r.explained, regression.getXyResult().y.sumOfSquares);
        for (const double zero : {r.unexplained, r.residualVariance, r.seB, r.seY}) EXPECT_SAME_BITS(zero, 0.0);
        EXPECT_SAME_BITS(r.tB, row.b * infinity);
        EXPECT_NEAR(r.pB, row.pB, 1e-14);
        EXPECT_SAME_BITS(r.limitsB.getLower(), row.b);
        EXPECT_SAME_BITS(r.limitsB.getUpper(), row.b);
        EXPECT_SAME_BITS(r.limitsY.getLower(), r.meanY);
        EXPECT_SAME_BITS(r.limitsY.getUpper(), r.meanY);
    }
}

TEST(Regression, byHand)  // sums of squares 5 and 10, of products 7
{
    const LinearRegression regression = analysed<LinearRegression>({{1, 2}, {2, 3}, {3, 5}, {4, 6}});
    const regression_stat& r = regression.getRegressionResult();
    EXPECT_SAME_BITS(r.b, 1.4);
    EXPECT_SAME_BITS(r.a, 0.5);
    EXPECT_SAME_BITS(r.explained, 9.8);
    EXPECT_NEAR(r.unexplained, 0.2, 1e-15);
    EXPECT_NEAR(r.residualVariance, 0.1, 1e-15);
    EXPECT_NEAR(r.seB, std::sqrt(0.02), 1e-15);
    EXPECT_NEAR(r.tB, 1.4 / std::sqrt(0.02), 1e-13);
    EXPECT_NEAR(r.pB, 1.0 - std::sqrt(0.98), 1e-14);  // with 2 degrees of freedom A = t / sqrt(t^2 + 2), here 7 / sqrt(50)
    EXPECT_NEAR(r.seY, std::sqrt(0.025), 1e-15);
    EXPECT_SAME_BITS(r.meanX, 2.5);
    EXPECT_SAME_BITS(r.meanY, 4.0);
    EXPECT_EQ(r.n, 4u);
    EXPECT_NEAR(regression.getXyResult().covariance, 7.0 / 3.0, 1e-15) << "the linear model computes it";
}

TEST(Regression, limitsTakeTheUndividedLevelAndTwoDegreesLess)
{
    forEveryModel([](auto model) {
        for (const double significance : {0.5, 0.05, 0.01}) {
            const auto regression = analysed<typename decltype(model)::type>(ordinaryPairs, significance);
            const regression_stat& r = regression.getRegressionResult();
            const double t = t_PercentPoint(significance, 8);
            expectSameLimits(r.limitsB, regression.getConfidenceLimits(r.b, t, r.seB));
            expectSameLimits(r.limitsY, regression.getConfidenceLimits(r.meanY, t, r.seY));
            EXPECT_LT(r.limitsB.getLower(), r.limitsB.getUpper());
        }
    });
}

TEST(Regression, tooFewPairs)  // the line needs two, the transformed models need none
{
    forEveryModel([](auto model) {
        using T = typename decltype(model)::type;
        for (const Pairs& pairs : {Pairs{}, Pairs{{2, 3}}}) {
            T regression = holding<T>(pairs);
            EXPECT_EQ(regression.analyse(), model.transformed()) << pairs.size();
            EXPECT_EQ(regression.getRegressionResult().n, model.transformed() ? pairs.size() : 0u);
        }

        T regression = analysed<T>(ordinaryPairs);
        regression.setHead(0.9);
        EXPECT_EQ(regression.analyse(), model.transformed()) << "one pair in the range";
        EXPECT_EQ(regression.getRegressionResult().n, model.transformed() ? 1u : 0u);
        if (model.transformed()) return;
        regression_stat reset;
        reset.meanX = 5.5;  // the means are those of the fit before
        reset.meanY = 13.5;
        expectSameFit(regression.getRegressionResult(), reset);
    });
}

TEST(Regression, noPairInARangeThatWraps)
{
    forEveryModel([](auto model) {
        auto regression = holding<typename decltype(model)::type>(ordinaryPairs);
        regression.setHead(0.9);
        regression.setTail(0.9);
        EXPECT_TRUE(regression.analyse());
        const regression_stat& r = regression.getRegressionResult();
        EXPECT_EQ(r.n, 0u);
        for (const double none : {r.a, r.b, r.explained, r.unexplained, r.seB, r.tB, r.pB, r.meanX, r.meanY, r.seY})
            EXPECT_TRUE(std::isnan(none));
        EXPECT_SAME_BITS(regression.getXyResult().x.sumOfSquares, 0.0);
    });
}

TEST(Regression, fewDegreesOfFreedom)
{
    const LinearRegression two = analysed<LinearRegression>({{1, 3}, {2, 5}});
    EXPECT_SAME_BITS(two.getRegressionResult().a, 1.0);
    EXPECT_SAME_BITS(two.getRegressionResult().b, 2.0);
    EXPECT_SAME_BITS(two.getRegressionResult().unexplained, 0.0);
    for (const double none : {two.getRegressionResult().residualVariance, two.getRegressionResult().seB, two.getRegressionResult().tB,
                              two.getRegressionResult().seY, two.getRegressionResult().limitsB.getLower()})
        EXPECT_TRUE(std::isnan(none));
    EXPECT_SAME_BITS(two.getRegressionResult().pB, 0.0) << "t_Prob with no degree of freedom";

    const LinearRegression vertical = analysed<LinearRegression>({{2, 3}, {2, 4}, {2, 6}});
    EXPECT_FALSE(std::isfinite(vertical.getRegressionResult().b)) << "all x are equal";
    EXPECT_FALSE(std::isfinite(vertical.getRegressionResult().a));
    EXPECT_EQ(vertical.getRegressionResult().n, 3u);
}

// ---------------------------------------------------------------- transformed models

TEST(Regression, powerOfThreeTimesASquare)
{
    const PowerRegression regression = analysed<PowerRegression>({{1, 3}, {2, 12}, {3, 27}});
    EXPECT_NEAR(regression.getRegressionResult().b, 2.0, 1e-14);
    EXPECT_NEAR(regression.getRegressionResult().a, 3.0, 1e-14);
    EXPECT_EQ(regression.getRegressionResult().n, 3u);
}

TEST(Regression, curvesAreFound)
{
    const struct {
        double a, b;
    } rows[] = {{3.0, 2.0}, {0.25, -0.5}, {7.0, 0.125}, {0.125, 1.0}};
    for (const auto& row : rows) {
        Pairs logarithmic, exponential, power;
        for (int i = 1; i <= 12; ++i) {
            const double x = 0.5 * i;
            logarithmic.push_back({x, row.a + row.b * std::log(x)});
            exponential.push_back({x, row.a * std::exp(row.b * x)});
            power.push_back({x, row.a * std::pow(x, row.b)});
        }
        const regression_stat fits[] = {analysed<LogarithmicRegression>(logarithmic).getRegressionResult(),
                                        analysed<ExponentialRegression>(exponential).getRegressionResult(),
                                        analysed<PowerRegression>(power).getRegressionResult()};
        for (const regression_stat& r : fits) {
            EXPECT_NEAR(r.a, row.a, 1e-13 * std::fabs(row.a));
            EXPECT_NEAR(r.b, row.b, 1e-13 * std::fabs(row.b));
        }
    }
}

TEST(Regression, onlyAIsTakenBack)
{
    // the logarithms of y = 3 * 2^x and of y = 3 x^2 lie on lines through ln 3
    const ExponentialRegression exponential = analysed<ExponentialRegression>({{1, 6}, {2, 12}, {3, 24}});
    EXPECT_NEAR(exponential.getRegressionResult().a, 3.0, 1e-14);
    EXPECT_NEAR(exponential.getRegressionResult().b, std::log(2.0), 1e-15);
    EXPECT_NEAR(exponential.getRegressionResult().meanX, 2.0, 1e-15);
    EXPECT_NEAR(exponential.getRegressionResult().meanY, std::log(12.0), 1e-15);
    EXPECT_NEAR(exponential.getRegressionResult().limitsB.getLower(), std::log(2.0), 1e-6);
    EXPECT_NEAR(exponential.getRegressionResult().limitsY.getLower(), std::log(12.0), 1e-6);

    const PowerRegression power = analysed<PowerRegression>({{1, 3}, {2, 12}, {4, 48}});
    EXPECT_NEAR(power.getRegressionResult().meanX, std::log(2.0), 1e-15);
    EXPECT_NEAR(power.getRegressionResult().meanY, std::log(12.0), 1e-15);

    const LogarithmicRegression logarithmic = analysed<LogarithmicRegression>({{1, -3}, {2, 1}, {4, 5}});
    EXPECT_NEAR(logarithmic.getRegressionResult().a, -3.0, 1e-14) << "the scale of y is not that of logarithms";
    EXPECT_NEAR(logarithmic.getRegressionResult().b, 4.0 / std::log(2.0), 1e-14);
}

TEST(Regression, aIsTakenBackOnlyAfterAFit)
{
    forEveryModel([](auto model) {
        auto regression = holding<RecordedRegression<typename decltype(model)::type>>(ordinaryPairs);
        regression.fails = true;
        EXPECT_FALSE(regression.analyse());
        EXPECT_SAME_BITS(regression.getRegressionResult().a, 0.0) << "e^0 would be 1";
        EXPECT_EQ(regression.getRegressionResult().n, 0u) << "no fit";
        EXPECT_EQ(regression.getXyResult().x.n, 10u);
    });
}

TEST(Regression, pairsThatAreKept)  // beside (1, 2), (2, 3) and (4, 7)
{
    const struct {
        const char* shows;
        data_pair pair;
        bool byX, byY;  // kept by the models that take the logarithm of x, of y
    } rows[] = {
        {"both above 0", {3, 5}, true, true},
        {"the smallest numbers above 0", {5e-324, 5e-324}, true, true},
        {"infinity", {infinity, infinity}, true, true},
        {"x = 0", {0, 5}, false, true},
        {"x = -0", {-0.0, 5}, false, true},
        {"x below 0", {-3, 5}, false, true},
        {"x minus infinity", {-infinity, 5}, false, true},
        {"an x that is no number is kept", {NaN, 5}, true, true},
        {"y = 0", {3, 0}, true, false},
        {"y = -0", {3, -0.0}, true, false},
        {"y below 0", {3, -5}, true, false},
        {"a y that is no number is skipped", {3, NaN}, true, false},
        {"neither", {-1, -1}, false, false},
        {"x that is no number, y below 0", {NaN, -1}, true, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.shows);
        forEveryModel([&](auto model) {
            using T = typename decltype(model)::type;
            const bool kept = (row.byX || model.ofX != logarithm) && (row.byY || model.ofY != logarithm);
            for (std::size_t at = 0; at <= 3; ++at) {
                Pairs pairs = {{1, 2}, {2, 3}, {4, 7}};
                pairs.insert(pairs.begin() + static_cast<std::ptrdiff_t>(at), row.pair);
                const T regression = analysed<T>(pairs);
                EXPECT_EQ(regression.getRegressionResult().n, kept ? 4u : 3u);
                const basic_stat &x = regression.getXyResult().x, &y = regression.getXyResult().y;
                EXPECT_EQ(x.n, kept ? 4u : 3u);
                EXPECT_EQ(y.n, 0u);
                if (!kept) {  // extremes of the values as they are, sums of what is fitted
                    EXPECT_SAME_BITS(x.min, 1.0);
                    EXPECT_SAME_BITS(x.max, 4.0);
                    EXPECT_SAME_BITS(y.min, 2.0);
                    EXPECT_SAME_BITS(y.max, 7.0);
                    EXPECT_SAME_BITS(x.sum, model.ofX(1) + model.ofX(2) + model.ofX(4));
                    EXPECT_SAME_BITS(y.sum, model.ofY(2) + model.ofY(3) + model.ofY(7));
                    EXPECT_SAME_BITS(x.mean, x.sum / 3.0);
                }
            }
        });
    }
}

TEST(Regression, pairsThatAreSkippedEnterTheSquares)  // the second pass asks for nothing
{
    const struct {
        const char* model;
        const char* shows;
        Pairs pairs;
        std::size_t n;
        double squaresX, squaresY, products, b, a;
    } rows[] = {
        // means 3 and 0 of the two pairs kept; the squares of x are those of all three about 3
        {"exponential", "y = 0 at the left", {{1, 0}, {2, 1}, {4, 1}}, 2, 6, infinity, infinity, infinity, 0},
        {"exponential", "y = 0 at the right", {{2, 1}, {4, 1}, {5, 0}}, 2, 6, infinity, -infinity, -infinity, infinity},
        {"exponential", "y = 0 at the mean of x", {{2, 1}, {3, 0}, {4, 1}}, 2, 2, infinity, NaN, NaN, NaN},
        {"exponential", "y below 0", {{1, -1}, {2, 1}, {4, 1}}, 2, 6, NaN, NaN, NaN, NaN},
        {"exponential", "y that is no number", {{1, NaN}, {2, 1}, {4, 1}}, 2, 6, NaN, NaN, NaN, NaN},
        {"logarithmic", "x = 0", {{0, 1}, {1, 2}, {1, 4}}, 2, infinity, 6, infinity, NaN, NaN},
        {"logarithmic", "x below 0", {{-1, 1}, {1, 2}, {1, 4}}, 2, NaN, 6, NaN, NaN, NaN},
        {"logarithmic", "x that is no number is kept", {{NaN, 1}, {1, 2}, {1, 4}}, 3, NaN, 14.0 / 3.0, NaN, NaN, NaN},
        {"power", "x = 0", {{0, 1}, {1, 1}, {1, 1}}, 2, infinity, 0, NaN, NaN, NaN},
        {"power", "y = 0", {{1, 0}, {1, 1}, {1, 1}}, 2, 0, infinity, NaN, NaN, NaN},
        {"power", "both 0", {{0, 0}, {1, 1}, {1, 1}}, 2, infinity, infinity, infinity, NaN, NaN},
        {"power", "y below 0", {{1, -1}, {1, 1}, {1, 1}}, 2, 0, NaN, NaN, NaN, NaN},
    };
    std::size_t checked = 0;
    forEveryModel([&](auto model) {
        for (const auto& row : rows) {
            if (row.model != std::string(model.name)) continue;
            SCOPED_TRACE(row.shows);
            ++checked;
            const auto regression = analysed<typename decltype(model)::type>(row.pairs);
            const xy_stat& s = regression.getXyResult();
            EXPECT_EQ(s.x.n, row.n);
            if (std::isfinite(row.squaresY)) {
                EXPECT_NEAR(s.y.sumOfSquares, row.squaresY, 1e-15 * row.squaresY);
            } else {
                EXPECT_SAME_BITS(s.y.sumOfSquares, row.squaresY);
            }
            EXPECT_SAME_BITS(s.x.sumOfSquares, row.squaresX);
            EXPECT_SAME_BITS(s.sumProducts, row.products);
            EXPECT_SAME_BITS(s.x.variance, row.squaresX / double(row.n)) << "divided by the pairs kept";
            EXPECT_SAME_BITS(s.x.sampleVariance, row.squaresX / double(row.n - 1));
            const regression_stat& r = regression.getRegressionResult();
            EXPECT_SAME_BITS(r.b, row.b);
            EXPECT_SAME_BITS(r.a, row.a);
            for (const double none : {r.unexplained, r.seB, r.tB, r.limitsB.getLower()}) EXPECT_TRUE(std::isnan(none));
        }
    });
    EXPECT_EQ(checked, sizeof rows / sizeof *rows);
}

TEST(Regression, noPairOrOneKeptReturnsAtOnce)  // the degrees of freedom wrap to 2^64 - 2 and 2^64 - 1
{
    const struct {
        const char* shows;
        Pairs pairs;
        std::size_t n;
    } rows[] = {
        // clang-format off
        {"no pair", {}, 0},
        {"none kept", {{-1, -2}, {-2, -4}, {-4, -3}}, 0},
        {"none kept, zeros", {{0, 0}, {0, 0}}, 0},
        {"one pair", {{2, 3}}, 1},
        {"one kept", {{-1, -2}, {2, 3}, {-4, -3}}, 1},
        {"one kept, zeros", {{0, 0}, {2, 3}}, 1},
        // clang-format on
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.shows);
        forEveryModel([&](auto model) {
            if (!model.transformed()) return;
            auto regression = holding<typename decltype(model)::type>(row.pairs);
            EXPECT_TRUE(regression.analyse());
            const regression_stat& r = regression.getRegressionResult();
            EXPECT_EQ(r.n, row.n);
            EXPECT_FALSE(std::isfinite(r.b));  // infinite where the logarithm of a y = 0 comes in, else NaN
            EXPECT_FALSE(std::isfinite(r.explained));
            for (const double none : {r.unexplained, r.residualVariance, r.seB, r.tB, r.pB, r.seY, r.limitsB.getLower(),
                                      r.limitsB.getUpper(), r.limitsY.getLower(), r.limitsY.getUpper()})
                EXPECT_TRUE(std::isnan(none)) << none;
            EXPECT_SAME_BITS(r.meanX, row.n == 0 ? NaN : model.ofX(2.0));
            EXPECT_SAME_BITS(r.meanY, row.n == 0 ? NaN : model.ofY(3.0));
            EXPECT_EQ(shownAt(report(regression), "t.0.05[" + std::to_string(row.n - 2) + "]  :"), "0");
        });
    }
}

TEST(Regression, covarianceIsNotThatOfTheLogarithms)
{
    forEveryModel([](auto model) {
        if (!model.transformed()) return;
        using T = typename decltype(model)::type;
        T regression = analysed<T>(ordinaryPairs);
        EXPECT_SAME_BITS(regression.getXyResult().covariance, 0.0) << "a new object's";
        EXPECT_NE(regression.getXyResult().sumProducts, 0.0);

        EXPECT_TRUE(regression.BasicXyStatistics::analyse());
        EXPECT_SAME_BITS(regression.getXyResult().covariance, 254.5 / 9.0);
        regression.copyFrom(fallingPairs);
        EXPECT_TRUE(regression.analyse());
        EXPECT_EQ(regression.getXyResult().x.n, 16u);
        EXPECT_SAME_BITS(regression.getXyResult().covariance, 254.5 / 9.0) << "that of the analysis before";
    });
}

TEST(Regression, rangeIsThatOfHeadAndTail)
{
    forEveryModel([](auto model) {
        using T = typename decltype(model)::type;
        T regression = holding<T>(ordinaryPairs);
        regression.setHead(0.15);
        regression.setTail(0.29);
        ASSERT_TRUE(regression.analyse());
        const T inner = analysed<T>(Pairs(ordinaryPairs.begin() + 2, ordinaryPairs.begin() + 8));
        expectSameFit(regression.getRegressionResult(), inner.getRegressionResult());
        EXPECT_EQ(regression.getRegressionResult().n, 6u);
    });
}

TEST(Regression, analyseTwice)
{
    forEveryModel([](auto model) {
        auto regression = analysed<typename decltype(model)::type>(fallingPairs);
        const regression_stat once = regression.getRegressionResult();
        EXPECT_TRUE(regression.analyse());
        expectSameFit(regression.getRegressionResult(), once);
    });
}

// ---------------------------------------------------------------- what an analysis calls

TEST(Regression, analyseReadsEveryPairTwiceThroughTheVirtualOperation)
{
    const Pairs pairs = {{1, 2}, {-1, 3}, {2, 0}, {3, 5}, {4, 6}};  // skipped pairs are read too
    forEveryModel([&](auto model) {
        auto regression = holding<RecordedRegression<typename decltype(model)::type>>(pairs);
        regression.calls.clear();
        EXPECT_TRUE(regression.analyse());
        EXPECT_EQ(regression.calls, callsOfPasses({"prepare", "reset"}, 0, 4));

        regression.setHead(0.2);
        regression.setTail(0.2);
        regression.calls.clear();
        BasicStatistics& root = regression;
        EXPECT_TRUE(root.analyse());
        EXPECT_EQ(regression.calls, callsOfPasses({"prepare", "reset"}, 1, 3));

        regression.setHead(0.8);
        regression.setTail(0.0);
        regression.calls.clear();
        EXPECT_EQ(regression.analyse(), model.transformed());
        EXPECT_EQ(regression.calls, model.transformed() ? callsOfPasses({"prepare", "reset"}, 4, 4) : Calls({"prepare", "reset"}));
    });
    RecordedRegression<Regression> plain = holding<RecordedRegression<Regression>>(pairs);
    plain.calls.clear();
    EXPECT_TRUE(plain.analyse());
    EXPECT_THAT(plain.calls, ElementsAre("prepare"));
}

TEST(Regression, whatGetDataPairGivesIsWhatIsFitted)
{
    forEveryModel([](auto model) {
        using T = typename decltype(model)::type;
        auto regression = holding<RecordedRegression<T>>(fallingPairs);
        regression.change = [](data_pair pair) { return data_pair{pair.y, pair.x}; };
        EXPECT_TRUE(regression.analyse());
        Pairs swapped;
        for (const data_pair& pair : fallingPairs) swapped.push_back({pair.y, pair.x});
        expectSameFit(regression.getRegressionResult(), analysed<T>(swapped).getRegressionResult());
    });
}

TEST(Regression, drivenThroughTheBases)
{
    forEveryModel([](auto model) {
        using T = typename decltype(model)::type;
        const regression_stat expected = analysed<T>(ordinaryPairs).getRegressionResult();
        T regression = holding<T>(ordinaryPairs);
        Regression& base = regression;
        EXPECT_TRUE(base.analyse());
        expectSameFit(base.getRegressionResult(), expected);
        static_cast<BasicStatistics&>(regression).resetResult();
        EXPECT_EQ(base.getRegressionResult().n, 0u);
        EXPECT_TRUE(base.analyseDataPair());
        EXPECT_EQ(base.getXyResult().x.n, 10u);
        EXPECT_EQ(base.getRegressionResult().n, 0u);
        EXPECT_TRUE(static_cast<BasicXyStatistics&>(regression).analyse());
        EXPECT_THAT(report(base), HasSubstr(" REGRESSION ANALYSIS\n"));
    });
}

// ---------------------------------------------------------------- reports, tests/reference/make_golden_paired.py

TEST(Regression, reports)
{
    const Pairs shipped = [] {
        auto sample = wq_test::readFrom<BasicXyStatistics>(wq_test::shipped("nist_norris.txt"));
        Pairs pairs;
        for (std::size_t i = 0; i < sample.getSampleSize(); ++i) pairs.push_back(sample.getDataPair(i));
        return pairs;
    }();
    const struct {
        const char* name;
        Pairs pairs;
        const char* comment = "";
        double significance = 0.05;
        bool linearOnly = false;
        bool analysed = true;
    } rows[] = {
        {"ordinary", ordinaryPairs, "Ten pairs"},
        {"falling", fallingPairs, "b below 0"},
        {"at_one_percent", ordinaryPairs, "", 0.01},
        {"zero_x", {{0, 4}, {1, 3}, {2, 5}, {4, 8}}, "x = 0 once"},
        {"negative_x", {{-1, 4}, {1, 3}, {2, 5}, {4, 8}}, "x below 0 once"},
        {"zero_y", {{1, 0}, {2, 3}, {3, 5}, {5, 8}}, "y = 0 once"},
        {"negative_y", {{1, -2}, {2, 3}, {3, 5}, {5, 8}}, "y below 0 once"},
        {"nan_x", {{NaN, 2}, {2, 3}, {3, 5}, {5, 8}}},
        {"nan_y", {{1, NaN}, {2, 3}, {3, 5}, {5, 8}}},
        {"none_kept", {{-1, -2}, {-2, -4}, {-4, -3}}},
        {"one_kept", {{-1, -2}, {2, 3}, {-4, -3}}},
        {"one_pair", {{2, 3}}},
        {"empty", {}},
        {"not_analysed", ordinaryPairs, "Before any analysis", 0.05, false, false},
        {"equal_x", {{2, 3}, {2, 4}, {2, 6}}, "", 0.05, true},
        {"equal_y", {{1, 3}, {2, 3}, {6, 3}}, "", 0.05, true},
        {"exact_line", {{1, 1.5}, {2, 1}, {3, 0.5}, {4, 0}, {5, -0.5}}, "", 0.05, true},
        {"two_pairs", {{1, 3}, {2, 5}}, "", 0.05, true},
        {"two_identical", {{1.5, 2}, {1.5, 2}}, "", 0.05, true},
        {"norris", shipped, " calibration of ozone monitors (J. Norris); 36 observations; lower difficulty.", 0.05, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        forEveryModel([&](auto model) {
            if (row.linearOnly && model.transformed()) return;
            auto regression = holding<typename decltype(model)::type>(row.pairs);
            regression.setComment(row.comment);
            regression.setSignificance(row.significance);
            if (row.analysed) regression.analyse();
            EXPECT_EQ(report(regression), golden("regression_" + std::string(row.name) + "_" + model.name + ".txt"));
        });
    }
}

TEST(Regression, theTwoLabelsOfYStandAgainstEachOthersValue)
{
    forEveryModel([](auto model) {
        auto regression = analysed<typename decltype(model)::type>(ordinaryPairs);
        const regression_stat& r = regression.getRegressionResult();
        const std::string text = "\n" + regression.writeRegressionResult();
        const auto shown = [&](const char* label) { return std::stod(shownAt(text, label)); };
        EXPECT_NEAR(shown("upper limit Y            : "), r.limitsY.getLower(), 1e-5 * std::fabs(r.limitsY.getLower()));
        EXPECT_NEAR(shown("lower limit Y            : "), r.limitsY.getUpper(), 1e-5 * std::fabs(r.limitsY.getUpper()));
        EXPECT_LT(shown("upper limit Y            : "), shown("lower limit Y            : "));
        EXPECT_LT(shown("lower limit b            : "), shown("upper limit b            : "));
        EXPECT_THAT(text, Not(HasSubstr("probability"))) << "pB is not printed";
    });
}

TEST(Regression, formulaLines)
{
    const struct {
        const char* model;
        const char* ordinary;
        const char* falling;
    } rows[] = {
        // the linear block follows directly, the others after an empty line
        {"linear", "\ny = -3.46667 + 3.08485x\nn     ", "\ny = 20.8035 + -1.37527x\nn     "},
        {"logarithmic", "\ny = -3.65451 + 11.3573ln(x)\n\nn     ", "\ny = 21.8762 + -7.97604ln(x)\n\nn     "},
        {"exponential", "\ny = 2.31528e^(0.271231x)\n\nn     ", "\ny = 20.5655e^(-0.134364x)\n\nn     "},
        {"power", "\ny = 1.93563x^1.10621\n\nn     ", "\ny = 20.3328x^-0.667518\n\nn     "},
    };
    int checked = 0;
    forEveryModel([&](auto model) {
        using T = typename decltype(model)::type;
        for (const auto& row : rows) {
            if (row.model != std::string(model.name)) continue;
            ++checked;
            T rising = analysed<T>(ordinaryPairs), falling = analysed<T>(fallingPairs);
            EXPECT_THAT(report(rising), HasSubstr(row.ordinary));
            EXPECT_THAT(report(falling), HasSubstr(row.falling));
            EXPECT_THAT(report(rising), HasSubstr("\nt.0.05[8]  :2.30828\n"));
        }
    });
    EXPECT_EQ(checked, 4);
}

TEST(Regression, theBlockTakesTheCriticalValueFromTheCurrentLevel)
{
    LinearRegression regression = analysed<LinearRegression>(ordinaryPairs);
    const std::string before = regression.writeRegressionResult();
    regression.setSignificance(0.01);
    const std::string after = regression.writeRegressionResult();
    EXPECT_THAT(after, HasSubstr("\nt.0.01[8]  :"));
    EXPECT_NEAR(std::stod(shownAt(after, "t.0.01[8]  :")), t_PercentPoint(0.01, 8), 1e-5);
    const std::string label = "lower limit b            : ";
    EXPECT_EQ(shownAt(after, label), shownAt(before, label)) << "the limits are those of the analysis";
}

TEST(Regression, theBlockOfANewObject)
{
    const std::string block = Regression().writeRegressionResult();
    EXPECT_EQ(block.substr(0, 29), "n                        : 0\n");
    EXPECT_THAT(block, HasSubstr("\nt.0.05[" + std::to_string(wrapped - 1) + "]  :0\n"));
    EXPECT_EQ(block.back(), '\n');
}
