// The distributions against: their formulas in 50 digits, plain loops, published and hand-computed figures, textbook values.
#include <wq_stat/distributions.h>

#include "../src/detail/root_bracket.h"
#include "../src/detail/wide_count.h"
#include "support/bits.h"
#include "support/console.h"
#include "support/files.h"
#include "support/plain_distributions.h"
#include "support/table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <limits>
#include <map>
#include <optional>
#include <random>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

using namespace wq_lib;
using wq_test::countIn;
using wq_test::numberIn;
using wq_test::printed;
using wq_test::readTable;
using wq_test::referenceTable;
using wq_test::TableRow;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double pi = 3.14159265358979323846;
constexpr std::size_t largest = std::numeric_limits<std::size_t>::max();

const char* const limitMessage = "recursion limit reached: singularity likely\n";

double logBeta(double p, double q) { return lnGamma(p) + lnGamma(q) - lnGamma(p + q); }

double square(double x) { return x * x; }
double cubic(double x) { return x * x * x - 2.0 * x + 5.0; }
double exponential(double x) { return std::exp(x); }
double sine(double x) { return std::sin(x); }
double poleAtZero(double x) { return 1.0 / x; }
double poleAtAThird(double x) { return 1.0 / (x - 1.0 / 3.0); }
double undefined(double) { return notANumber; }

using Integrand = double (*)(double);

const std::map<std::string, Integrand> integrands = {
    {"square", square}, {"cubic", cubic}, {"exp", exponential}, {"sin", sine}, {"normalDensity", normalDensity}};

// ---------------------------------------------------------------- functions called by their names, from the cells of a table

template <typename T>
T argument(const std::string& cell)
{
    if constexpr (std::is_same_v<T, double>)
        return numberIn(cell);
    else if constexpr (std::is_same_v<T, bool>)
        return countIn(cell) != 0;
    else if constexpr (std::is_same_v<T, Integrand>)
        return integrands.at(cell);
    else
        return countIn(cell);
}

using Call = std::function<double(const TableRow&)>;

template <typename... Args, std::size_t... I>
double callWithCells(double (*function)(Args...), const TableRow& row, std::index_sequence<I...>)
{
    return function(argument<Args>(row.cells.at(I + 1))...);
}

template <typename... Args>
Call callable(double (*function)(Args...))
{
    return [function](const TableRow& row) { return callWithCells(function, row, std::index_sequence_for<Args...>()); };
}

// clang-format off
#define WQ_FUNCTION(name) {#name, callable(&name)}
#define WQ_INTEGRATOR(name) {#name, callable<Integrand, double, double>(&name)}
const std::map<std::string, Call> functions = {
    WQ_FUNCTION(factorial),       WQ_FUNCTION(lnGamma),            WQ_FUNCTION(betaRatio),          WQ_FUNCTION(inverseBetaRatio),
    WQ_INTEGRATOR(simpsonIntegral), WQ_INTEGRATOR(quadratureIntegral), WQ_FUNCTION(binomial),       WQ_FUNCTION(normalDensity),
    WQ_FUNCTION(normalProb),      WQ_FUNCTION(normalProbApprox),   WQ_FUNCTION(normalPercentPoint), WQ_FUNCTION(t_Prob),
    WQ_FUNCTION(t_PercentPoint),  WQ_FUNCTION(chiSquareProb),      WQ_FUNCTION(chiSquarePoint),     WQ_FUNCTION(F_Prob),
    WQ_FUNCTION(F_PercentPoint),  WQ_FUNCTION(z_TransformBig),     WQ_FUNCTION(z_TransformSmall),   WQ_FUNCTION(z_to_r),
    WQ_FUNCTION(D_GoodnessOfFit), WQ_FUNCTION(D_TwoSamples),       WQ_FUNCTION(D_Prob),             WQ_FUNCTION(rayleighsProb),
    WQ_FUNCTION(degreeToRadian),  WQ_FUNCTION(radianToDegree),     WQ_FUNCTION(computeResultant),   WQ_FUNCTION(computeAngle),
    WQ_FUNCTION(computeCircleArea)};
#undef WQ_INTEGRATOR
#undef WQ_FUNCTION
// clang-format on

std::string textOf(const TableRow& row)
{
    std::string text = row.cells.front() + "(";
    for (std::size_t i = 1; i + 1 < row.cells.size() && i <= 4 && !row.cells[i].empty(); ++i) text += (i > 1 ? ", " : "") + row.cells[i];
    return text + "), line " + std::to_string(row.line);
}

std::vector<std::string> namesIn(const std::string& table)
{
    std::set<std::string> names;
    for (const TableRow& row : referenceTable(table)) names.insert(row.cells.front());
    return {names.begin(), names.end()};
}

std::string nameOf(const ::testing::TestParamInfo<std::string>& info) { return info.param; }

}  // namespace

// ---------------------------------------------------------------- the formulas without rounding

class DistributionsFormula : public ::testing::TestWithParam<std::string> {};

// distributions.csv: the same steps in 50 digits (tests/reference/distributions_table.py).
// A relative 1e-12 is met wherever a formula lets a double meet it. Where digits cancel, the table's last column says how far the
// roundings of the stated steps can carry any double: 1 - betaRatio(...) and 1 - lower close to 0 (F_Prob, t_Prob, normalProb and
// normalProbApprox in the far tails), 1 - (0.5 + |p - 0.5|) at the ends (normalPercentPoint, and t_PercentPoint and chiSquarePoint
// through it), (1 + r) / (1 - r) and e^z - e^-z near 0 (z_...), acos and asin near 1 (computeAngle).
TEST_P(DistributionsFormula, agreesWith50Digits)
{
    int rows = 0;
    for (const TableRow& row : referenceTable("distributions.csv")) {
        if (row.cells.front() != GetParam()) continue;
        ++rows;
        const double expected = numberIn(row.cells.at(5));
        const double rounding = numberIn(row.cells.at(6));
        double value = 0.0;
        const std::string output = printed([&] { value = functions.at(GetParam())(row); });
        EXPECT_NEAR(value, expected, std::max(1e-12 * std::fabs(expected), rounding)) << textOf(row);
        EXPECT_EQ(output, "") << textOf(row);
    }
    EXPECT_GE(rows, 4) << "the table has lost its rows";
}

INSTANTIATE_TEST_SUITE_P(Distributions, DistributionsFormula, ::testing::ValuesIn(namesIn("distributions.csv")), nameOf);

TEST(Distributions, everyFunctionHasRowsIn50Digits)
{
    const std::vector<std::string> names = namesIn("distributions.csv");
    for (const auto& function : functions) EXPECT_TRUE(std::binary_search(names.begin(), names.end(), function.first)) << function.first;
    EXPECT_EQ(names.size(), functions.size());
}

class DistributionsExact : public ::testing::TestWithParam<std::string> {};

// distributions_exact.csv: only + - * / and square roots, so every bit is determined (tests/reference/distributions_exact.py).
TEST_P(DistributionsExact, agreesBitForBit)
{
    for (const TableRow& row : referenceTable("distributions_exact.csv")) {
        if (row.cells.front() == GetParam()) {
            EXPECT_SAME_BITS(functions.at(GetParam())(row), numberIn(row.cells.at(5))) << textOf(row);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Distributions, DistributionsExact, ::testing::ValuesIn(namesIn("distributions_exact.csv")), nameOf);

// ---------------------------------------------------------------- figures

TEST(Distributions, workedFigures)
{
    // Published tables, figures computed by hand, and figures the reports rest on; given to the digits known, off by less than one
    // unit of the last.
    const struct {
        int line;
        const char* call;
        double value, expected, unit;
    } rows[] = {
    // clang-format off
#define WQ_FIGURE(call, expected, unit) {__LINE__, #call, call, expected, unit}
        WQ_FIGURE(lnGamma(0.5), 0.5723649, 1e-7),
        WQ_FIGURE(betaRatio(5.0 / 7.0, 5.0, 5.0, logBeta(5.0, 5.0)), 0.917746, 1e-6),
        WQ_FIGURE(betaRatio(0.5, 1.0, 1.0, 0.0), 0.5, 1e-7),
        // A half-integer shape: textbook 0.95, 0.95, 4.965, 4.242, 4.225.
        WQ_FIGURE(F_Prob(4.965, 1, 10), 0.951550, 1e-6),
        WQ_FIGURE(F_PercentPoint(0.95, 1, 10), 4.876437, 1e-6),
        WQ_FIGURE(F_PercentPoint(0.95, 4, 10), 3.478050, 1e-6),
        WQ_FIGURE(F_PercentPoint(0.975, 3, 12), 4.474180, 1e-6),
        WQ_FIGURE(F_PercentPoint(0.95, 1, 25), 3.638, 1e-3),
        WQ_FIGURE(F_PercentPoint(0.95, 1, 26), 3.25, 1e-12),
        // The sum of the series is negative here.
        WQ_FIGURE(F_Prob(1.0, 1, 3), 1.16308, 1e-5),
        WQ_FIGURE(F_Prob(3.1, 1, 100), 1.00554, 1e-5),
        WQ_FIGURE(F_Prob(1.0, 2, 2), 0.5, 1e-12),
        WQ_FIGURE(normalProb(1.96), 0.975, 1e-5),
        WQ_FIGURE(normalPercentPoint(0.975), 1.96045, 1e-5),
        WQ_FIGURE(normalPercentPoint(0.025), -1.96045, 1e-5),
        WQ_FIGURE(normalPercentPoint(0.95), 1.64449, 1e-5),
        WQ_FIGURE(normalPercentPoint(0.5), -3.4e-6, 1e-7),
        WQ_FIGURE(t_Prob(2.0, 2, true), 0.0917, 1e-4),
        WQ_FIGURE(t_Prob(1.0, 1, true), -0.117, 1e-3),
        WQ_FIGURE(t_PercentPoint(0.05, 1000), 1.9628, 1e-4),
        WQ_FIGURE(t_PercentPoint(0.05, 10), 2.2296, 1e-4),
        WQ_FIGURE(chiSquarePoint(0.95, 1), 3.7455, 1e-4),
        WQ_FIGURE(D_Prob(1.36), 0.04949, 1e-5),
        WQ_FIGURE(D_GoodnessOfFit(0.05, 101), std::sqrt(-std::log(0.025) / 202.0), 1e-15),
        WQ_FIGURE(simpsonIntegral(square, 0.0, 2.0), 8.0 / 3.0, 1e-14),
        WQ_FIGURE(quadratureIntegral(square, 0.0, 3.0), 9.0, 1e-13),
#undef WQ_FIGURE
        // clang-format on
    };
    for (const auto& row : rows) EXPECT_NEAR(row.value, row.expected, row.unit) << row.call << ", line " << row.line;
}

TEST(Distributions, criticalFOfTwoGroupsWhereTheIterationCircles)
{
    // betaRatio jumps where qq + psq * cx passes an integer: at x = (df2 - 2)/(df2 + 1) for df1 = 1, that is f = 3 df2/(df2 - 2).
    for (std::size_t df2 = 26; df2 <= 400; df2 = df2 < 60 ? df2 + 1 : df2 * 3 / 2) {
        const double expected = 3.0 * static_cast<double>(df2) / (static_cast<double>(df2) - 2.0);
        EXPECT_NEAR(F_PercentPoint(0.95, 1, df2), expected, 1e-11) << "df2 = " << df2;
    }
    for (std::size_t df2 = 2; df2 < 26; ++df2)
        EXPECT_NEAR(F_Prob(F_PercentPoint(0.95, 1, df2), 1, df2), 0.95, 1e-6) << "converges, df2 = " << df2;
}

TEST(Distributions, bisectedQuantileStandsAtTheJump)
{
    const struct {
        double p;
        std::size_t df1, df2;
    } rows[] = {{0.95, 1, 26}, {0.95, 1, 27}, {0.95, 1, 100}, {0.95, 1, 1000}, {0.9, 1, 11}, {0.9, 1, 30}};
    for (const auto& row : rows) {
        const double a = static_cast<double>(row.df2) / 2.0;
        const double b = static_cast<double>(row.df1) / 2.0;
        const double beta = logBeta(a, b);
        const double level = 1.0 - row.p;
        const double x = inverseBetaRatio(level, a, b, beta);
        EXPECT_GE(betaRatio(x, a, b, beta), level) << "p " << row.p << ", df " << row.df1 << ", " << row.df2;
        EXPECT_LT(betaRatio(std::nextafter(x, 0.0), a, b, beta), level) << "p " << row.p << ", df " << row.df1 << ", " << row.df2;
    }
}

TEST(RootBracket, bisectsBetweenTheInnermostPointsVisited)
{
    wq_lib::detail::RootBracket bracket;
    for (const double below : {0.25, 0.375, 0.3125, -1.0, 1.25}) bracket.visit(below, true);
    for (const double notBelow : {0.75, 0.625, 0.6875, -0.5, 1.5}) bracket.visit(notBelow, false);
    const double crossing = bracket.bisect([](double x) {
        EXPECT_GT(x, 0.375);
        EXPECT_LT(x, 0.625);
        return x < 0.4;
    });
    EXPECT_SAME_BITS(crossing, 0.4);

    EXPECT_SAME_BITS(wq_lib::detail::RootBracket().bisect([](double) { return true; }), 1.0) << "nothing visited: between 0 and 1";
    EXPECT_SAME_BITS(wq_lib::detail::RootBracket().bisect([](double) { return false; }), std::numeric_limits<double>::denorm_min());
}

// ---------------------------------------------------------------- edges

TEST(Distributions, factorialEdges)
{
    EXPECT_SAME_BITS(factorial(0), 1.0);
    EXPECT_SAME_BITS(factorial(1), 1.0);
    EXPECT_TRUE(std::isfinite(factorial(170)));
    EXPECT_NEAR(factorial(170) / 7.257415615307994e306, 1.0, 1e-13);  // 170! = 7.2574156153079989...e306
    EXPECT_SAME_BITS(factorial(171), -1.0);
    EXPECT_SAME_BITS(factorial(largest), -1.0);
}

TEST(Distributions, lnGammaEdges)
{
    EXPECT_SAME_BITS(lnGamma(1.0), 0.0);
    EXPECT_SAME_BITS(lnGamma(2.0), 0.0);
    EXPECT_NEAR(lnGamma(0.5), std::log(pi) / 2.0, 1e-15);
    EXPECT_NEAR(lnGamma(5.0), std::log(24.0), 1e-14);
    EXPECT_NEAR(lnGamma(2.5), std::log(0.75 * std::sqrt(pi)), 1e-15);
    EXPECT_NEAR(lnGamma(2.3), std::log(1.3) + std::log(0.3) + std::log(pi) / 2.0, 1e-15) << "neither integer nor half: the same steps";
    EXPECT_NEAR(lnGamma(0.25), std::log(pi) / 2.0, 1e-15);
    EXPECT_NEAR(lnGamma(-7.0), std::log(pi) / 2.0, 1e-15);
    EXPECT_SAME_BITS(lnGamma(notANumber), 0.0);
    const double beyond = std::nextafter(9007199254740992.0, infinity);
    EXPECT_SAME_BITS(lnGamma(beyond), notANumber);
    EXPECT_SAME_BITS(lnGamma(1e300), notANumber);
    EXPECT_SAME_BITS(lnGamma(infinity), notANumber);
}

TEST(Distributions, betaRatioAtTheEndsIsTheArgumentWhateverTheShapes)
{
    for (const double p : {0.5, 1.0, 7.5, -1.0, notANumber})
        for (const double q : {0.5, 3.0, 1e300, notANumber})
            for (const double beta : {0.0, -5.0, infinity, notANumber}) {
                EXPECT_SAME_BITS(betaRatio(0.0, p, q, beta), 0.0);
                EXPECT_SAME_BITS(betaRatio(1.0, p, q, beta), 1.0);
                EXPECT_SAME_BITS(inverseBetaRatio(0.0, p, q, beta), 0.0);
                EXPECT_SAME_BITS(inverseBetaRatio(1.0, p, q, beta), 1.0);
            }
}

TEST(Distributions, betaRatioOutsideItsRangeIsZero)
{
    for (const double x : {-infinity, -1e300, -1.0, -1e-320, 1.0 + 1e-15, 2.0, 1e300, infinity})
        for (const double p : {0.5, 1.0, 13.0})
            for (const double q : {0.5, 2.0, 50.5}) EXPECT_SAME_BITS(betaRatio(x, p, q, logBeta(p, q)), 0.0) << x << ", " << p << ", " << q;
}

TEST(Distributions, betaRatioWithoutNumberIsNaN)
{
    EXPECT_SAME_BITS(betaRatio(0.5, 2.0, 3.0, notANumber), notANumber);
    EXPECT_SAME_BITS(betaRatio(notANumber, 2.0, 3.0, logBeta(2.0, 3.0)), notANumber);
}

TEST(Distributions, inverseBetaRatioOverwritesOneShapeOnly)
{
    // For alpha > 0.5 the second shape becomes the first, so the result is that of the pair (p, p), not of (q, p).
    for (const double alpha : {0.6, 0.9, 0.99})
        for (const auto& [p, q] : {std::pair(2.0, 5.0), std::pair(5.0, 2.0), std::pair(4.0, 4.0)}) {
            const double beta = logBeta(p, q);
            EXPECT_SAME_BITS(inverseBetaRatio(alpha, p, q, beta), 1.0 - inverseBetaRatio(1.0 - alpha, p, p, beta))
                << alpha << ", " << p << ", " << q;
        }
    const double x = inverseBetaRatio(0.9, 2.0, 5.0, logBeta(2.0, 5.0));
    EXPECT_GT(std::fabs(betaRatio(x, 2.0, 5.0, logBeta(2.0, 5.0)) - 0.9), 0.01) << "not the inverse";
}

TEST(Distributions, inverseBetaRatioOutsideItsRangeIsNaN)
{
    for (const double alpha : {-2.0, 1.5, 1e6, infinity, -infinity, notANumber})
        for (const auto& [p, q] : {std::pair(2.0, 3.0), std::pair(6.0, 4.0)})
            EXPECT_SAME_BITS(inverseBetaRatio(alpha, p, q, logBeta(p, q)), notANumber) << alpha << ", " << p << ", " << q;
    EXPECT_SAME_BITS(inverseBetaRatio(0.05, 2.0, 3.0, notANumber), notANumber);
}

TEST(Distributions, simpsonIntegralWeightsTheEndsByHalfTheWidth)
{
    EXPECT_NEAR(simpsonIntegral(square, -1.0, 1.0), 2.0 / 3.0, 1e-15);
    EXPECT_NEAR(simpsonIntegral(cubic, 0.0, 2.0), 10.0, 1e-14);
    // With b - a = 1 the ends weigh half of what they should. What is missing, h (1 - h0)(f(a) + f(b))/3, halves with every pass;
    // at 2^29 steps two passes differ by less than 1e-9. The square and the sums round alike on every machine.
    EXPECT_NEAR(simpsonIntegral(square, 0.0, 1.0), 0.333333333022846, 1e-15);
}

TEST(Distributions, simpsonIntegralEndsAfter2To30Steps)
{
    // The step is 3/2^30 then, and the ends weigh 3/2 times what they should: 9 + h (h0 - 1) 9/3 = 9 + 4.19e-9.
    EXPECT_NEAR(simpsonIntegral(square, 0.0, 3.0), 9.0 + 4.19e-9, 1e-10);
}

TEST(Distributions, simpsonIntegralEndsWhereItIsNotFinite)
{
    EXPECT_SAME_BITS(simpsonIntegral(undefined, 0.0, 2.0), notANumber);
    EXPECT_SAME_BITS(simpsonIntegral(poleAtZero, -1.0, 1.0), infinity) << "the pole is the midpoint";
    EXPECT_SAME_BITS(simpsonIntegral(square, 0.0, infinity), infinity);
}

TEST(Distributions, quadratureIntegralOfAPole)
{
    double value = 0.0;
    EXPECT_EQ(printed([&] { value = quadratureIntegral(poleAtAThird, -1.0, 1.0); }), limitMessage);
    EXPECT_SAME_BITS(value, notANumber);

    EXPECT_EQ(printed([&] { value = quadratureIntegral(poleAtZero, -1.0, 1.0); }), "") << "the pole is the midpoint";
    EXPECT_SAME_BITS(value, infinity);
}

TEST(Distributions, quadratureIntegralEndsWhereRoundingExceedsTheTolerance)
{
    double value = 0.0;
    EXPECT_EQ(printed([&] { value = quadratureIntegral(exponential, 0.0, 15.0); }), limitMessage);
    EXPECT_SAME_BITS(value, notANumber);
    EXPECT_EQ(printed([&] { value = normalProb(1e8); }), limitMessage);
    EXPECT_SAME_BITS(value, notANumber);
}

TEST(Distributions, quadratureIntegralKeepsItsTolerance)
{
    EXPECT_NEAR(quadratureIntegral(exponential, 0.0, 1.0), std::exp(1.0) - 1.0, 1e-9);
    EXPECT_NEAR(quadratureIntegral(sine, 0.0, pi), 2.0, 1e-9);
    EXPECT_NEAR(quadratureIntegral(exponential, 1.0, 0.0), 1.0 - std::exp(1.0), 1e-9) << "reversed limits: negative";
    EXPECT_SAME_BITS(quadratureIntegral(cubic, 1.0, 1.0), 0.0);
}

TEST(Distributions, quadratureRecursionReturnsAtDepth65)
{
    double value = 0.0;
    const auto recursion = [&](std::size_t depth) {
        return printed([&] { value = quadratureRecursion(square, 0.0, 2.0, 1.0, 0.0, 4.0, 1.0, 8.0 / 3.0, 1e-9, depth); });
    };
    EXPECT_EQ(recursion(64), "");
    EXPECT_NEAR(value, 8.0 / 3.0, 1e-15);
    EXPECT_EQ(recursion(65), limitMessage);
    EXPECT_SAME_BITS(value, notANumber);
    // Too rough an estimate at depth 64: the left half comes back as NaN with the message, the right half is not tried.
    EXPECT_EQ(printed([&] { value = quadratureRecursion(square, 0.0, 2.0, 1.0, 0.0, 4.0, 1.0, 3.0, 1e-9, 64); }), limitMessage);
    EXPECT_SAME_BITS(value, notANumber);
}

namespace {

/** What a lambda with captures, an object that counts, a std::function and a function with a state stand for. */
template <typename Integral>
void expectSameBits(const std::string& what, Integrand f, Integral&& integral)
{
    SCOPED_TRACE(what);
    const double expected = integral(f);
    int calls = 0;
    EXPECT_SAME_BITS(integral([f, &calls](double x) { return ++calls, f(x); }), expected);
    EXPECT_GT(calls, 0);
    EXPECT_SAME_BITS(integral(std::function<double(double)>(f)), expected);
    struct Counting {
        Integrand f;
        int calls = 0;
        double operator()(double x) { return ++calls, f(x); }
    } counting{f};
    EXPECT_SAME_BITS(integral(counting), expected);
    EXPECT_EQ(counting.calls, calls) << "the object itself is called";
}

}  // namespace

TEST(Distributions, integratorsTakeAnyCallable)
{
    for (const auto& [name, f] : integrands) {
        for (const auto& [a, b] : {std::pair{0.0, 2.0}, {-1.0, 1.0}, {1.0, 3.0}, {0.1, 4.3}, {3.0, -2.5}}) {
            const std::string what = name + " from " + std::to_string(a) + " to " + std::to_string(b);
            if (b - a == 2.0) expectSameBits(what, f, [a = a, b = b](auto&& g) { return simpsonIntegral(g, a, b); });
            expectSameBits(what, f, [a = a, b = b](auto&& g) { return quadratureIntegral(g, a, b); });
            expectSameBits(what, f, [a = a, b = b, f = f](auto&& g) {
                return quadratureRecursion(g, a, b, (a + b) / 2.0, f(a), f(b), f((a + b) / 2.0), 1.0, 1e-6, 7);
            });
        }
    }
    EXPECT_EQ(printed([] { EXPECT_TRUE(std::isnan(quadratureIntegral([&](double x) { return poleAtAThird(x); }, -1.0, 1.0))); }),
              limitMessage);
    EXPECT_NEAR(quadratureIntegral([](double x) { return static_cast<int>(x); }, 1.25, 1.75), 0.5, 1e-15) << "an integer for a real";
}

TEST(Distributions, integratorsHandTheStateOn)
{
    double factor = 3.0;
    const auto f = [](double x, void* state) { return *static_cast<double*>(state) * x; };
    EXPECT_NEAR(simpsonIntegral(f, &factor, 0.0, 2.0), 6.0, 1e-14);
    EXPECT_NEAR(quadratureIntegral(f, &factor, 0.0, 2.0), 6.0, 1e-14);
    EXPECT_NEAR(quadratureRecursion(f, &factor, 0.0, 2.0, 1.0, 0.0, 6.0, 3.0, 6.0, 1e-9, 1), 6.0, 1e-14);
}

TEST(Distributions, anIntegrandMayIntegrateAndThrow)
{
    using Function = std::function<double(double)>;  // one type inside and outside
    const Function plane = [](double x) { return quadratureIntegral(Function([x](double y) { return x * y; }), 0.0, 2.0); };
    EXPECT_NEAR(quadratureIntegral(plane, 0.0, 1.0), 1.0, 1e-9);
    int calls = 0;
    const auto throwing = [&calls](double x) { return ++calls < 4 ? x * x * x * x : throw std::domain_error("left"); };
    EXPECT_THROW(quadratureIntegral(throwing, 0.0, 1.0), std::domain_error);
    EXPECT_EQ(calls, 4);
}

TEST(Distributions, binomialEdges)
{
    const double fours[] = {1.0 / 16.0, 4.0 / 16.0, 6.0 / 16.0, 4.0 / 16.0, 1.0 / 16.0};
    for (std::size_t k = 0; k <= 4; ++k) EXPECT_SAME_BITS(binomial(k, 4, 0.5), fours[k]);
    EXPECT_SAME_BITS(binomial(0, 3, 0.25), 0.75 * 0.75 * 0.75);
    EXPECT_SAME_BITS(binomial(0, 0, 0.3), 1.0);
    EXPECT_SAME_BITS(binomial(3, 3, 0.5), 0.125) << "a factor of 1 on the way does not end the product";
    EXPECT_SAME_BITS(binomial(5, 4, 0.5), 0.0) << "more successes than trials";
    EXPECT_SAME_BITS(binomial(2, 4, 0.0), 0.0);
    EXPECT_SAME_BITS(binomial(0, 4, 1.0), 0.0);
    EXPECT_SAME_BITS(binomial(1, 4, 1.0), notANumber) << "division by 1 - p";
    EXPECT_SAME_BITS(binomial(2, 4, notANumber), notANumber);
}

TEST(Distributions, normalEdges)
{
    EXPECT_SAME_BITS(normalProb(0.0), 0.5);
    EXPECT_SAME_BITS(normalProbApprox(0.0), 0.5);
    EXPECT_SAME_BITS(normalProbApprox(-0.0), 0.5);
    EXPECT_NEAR(normalDensity(0.0), 1.0 / std::sqrt(2.0 * pi), 1e-16);
    for (const double p : {0.6, 0.8, 0.95, 0.975, 0.999}) EXPECT_NEAR(normalPercentPoint(1.0 - p), -normalPercentPoint(p), 1e-12) << p;
    for (const double p : {-1.0, -1e-9, 0.0, 1.0, 1.5, infinity, notANumber}) EXPECT_SAME_BITS(normalPercentPoint(p), notANumber) << p;
}

TEST(Distributions, studentEdges)
{
    for (const double t : {-3.0, 0.0, 1.0, infinity, notANumber})
        for (const bool oneSided : {true, false}) EXPECT_SAME_BITS(t_Prob(t, 0, oneSided), 0.0);
    for (const std::size_t df : {2u, 4u, 10u, 100u, 10000u}) {
        EXPECT_SAME_BITS(t_Prob(0.0, df, false), 1.0) << df;
        EXPECT_SAME_BITS(t_Prob(0.0, df, true), 0.5) << df;
        EXPECT_NEAR(t_Prob(infinity, df, true), 0.0, 1e-12) << df;
    }
    EXPECT_NEAR(t_Prob(1.0, 1, true), 0.5 * (1.0 - pi * pi / 8.0), 1e-15) << "pi/2 times theta, for pi/2 the textbook's factor 2/pi";
    EXPECT_SAME_BITS(t_Prob(1.0, largest - 1, true), notANumber) << "1 - 3 degrees of freedom";
    EXPECT_SAME_BITS(t_Prob(1.0, largest, false), notANumber);
    EXPECT_SAME_BITS(t_Prob(1.0, (std::size_t{1} << 53) + 1, true), notANumber);
    EXPECT_NEAR(t_Prob(94906265.624, std::size_t{1} << 53, true), 0.0, 1e-12)
        << "the last with a result; t = sqrt(df) keeps the series short";

    EXPECT_SAME_BITS(t_PercentPoint(0.05, 0), 0.0);
    EXPECT_SAME_BITS(t_PercentPoint(notANumber, 0), 0.0);
    EXPECT_SAME_BITS(t_PercentPoint(0.0, 10), notANumber);
    EXPECT_SAME_BITS(t_PercentPoint(2.0, 10), notANumber);
    EXPECT_NEAR(t_PercentPoint(1.95, 10), t_PercentPoint(0.05, 10), 1e-12) << "squared: above 1 it is the value of 2 - alpha";
    EXPECT_SAME_BITS(t_PercentPoint(0.05, largest), 0.0) << "exp(w^2/df) - 1 has no digit left";
}

TEST(Distributions, chiSquareEdges)
{
    for (const std::size_t df : {std::size_t{0}, std::size_t{1}, std::size_t{2}, std::size_t{100}, largest}) {
        EXPECT_SAME_BITS(chiSquareProb(0.0, df), 0.0) << df;
        EXPECT_SAME_BITS(chiSquareProb(-0.0, df), 0.0) << df;
    }
    EXPECT_SAME_BITS(chiSquareProb(5.0, 0), 0.0);
    EXPECT_SAME_BITS(chiSquareProb(notANumber, 0), 0.0);
    EXPECT_SAME_BITS(chiSquareProb(-1.0, 4), notANumber);
    EXPECT_SAME_BITS(chiSquareProb(1.0, largest), notANumber);
    EXPECT_SAME_BITS(chiSquareProb(2000.0, 4), 0.0) << "exp(...) is 0, so the product is, though the probability is 1";
    EXPECT_SAME_BITS(chiSquareProb(1460.0, 4), infinity) << "exp(...) is subnormal and the sum overflows";
    EXPECT_SAME_BITS(chiSquarePoint(0.95, 0), 0.0);
    EXPECT_LT(chiSquarePoint(0.025, 1), 0.0);
    EXPECT_GT(chiSquarePoint(0.05, 1), 0.0);
    EXPECT_SAME_BITS(chiSquarePoint(0.0, 3), notANumber);
    EXPECT_SAME_BITS(chiSquarePoint(1.0, 3), notANumber);
}

TEST(Distributions, fisherFEdges)
{
    for (const std::size_t df : {0u, 1u, 2u, 10u}) {
        EXPECT_SAME_BITS(F_Prob(2.0, 0, df), 0.0) << df;
        EXPECT_SAME_BITS(F_Prob(2.0, df, 0), 0.0) << df;
        EXPECT_SAME_BITS(F_PercentPoint(0.95, 0, df), 0.0) << df;
        EXPECT_SAME_BITS(F_PercentPoint(0.95, df, 0), 0.0) << df;
        EXPECT_SAME_BITS(F_PercentPoint(0.0, df, 7), 0.0) << df;
    }
    EXPECT_SAME_BITS(F_Prob(0.0, 3, 5), 0.0);
    EXPECT_SAME_BITS(F_Prob(infinity, 3, 5), 1.0);
    EXPECT_SAME_BITS(F_Prob(-2.0, 4, 6), 1.0);
    EXPECT_SAME_BITS(F_Prob(notANumber, 4, 6), notANumber);
    EXPECT_SAME_BITS(F_Prob(2.0, largest - 1, 6), notANumber);
    EXPECT_SAME_BITS(F_Prob(1e6, 1, largest), notANumber);
    EXPECT_SAME_BITS(F_Prob(2.0, 1, largest), 0.0) << "x = b/(b + a f) rounds to 1, and the shapes do not matter";
    EXPECT_SAME_BITS(F_PercentPoint(1.0, 4, 6), infinity);
    EXPECT_SAME_BITS(F_PercentPoint(0.95, 1, largest - 1), notANumber);
    EXPECT_SAME_BITS(F_PercentPoint(1.5, 4, 6), notANumber);
    for (const std::size_t df : {2u, 4u, 10u, 30u}) {
        const double quantile = F_PercentPoint(0.05, df, df);
        EXPECT_NEAR(quantile * F_PercentPoint(0.95, df, df), 1.0, 1e-6) << "the lower tail holds for equal degrees of freedom, " << df;
        EXPECT_GT(std::fabs(F_Prob(F_PercentPoint(0.05, df, df + 6), df, df + 6) - 0.05), 0.01) << "and not for others, " << df;
    }
}

TEST(Distributions, correlationTransformEdges)
{
    EXPECT_SAME_BITS(z_TransformBig(1.0), 10000.0);
    EXPECT_SAME_BITS(z_TransformBig(-1.0), -infinity);
    EXPECT_SAME_BITS(z_TransformBig(0.0), 0.0);
    EXPECT_SAME_BITS(z_TransformBig(1.0001), notANumber);
    for (int i = -99; i <= 99; ++i) EXPECT_NEAR(z_to_r(z_TransformBig(i / 100.0)), i / 100.0, 1e-15) << i;
    EXPECT_SAME_BITS(z_TransformSmall(0.5, 1), -infinity) << "n - 1 is 0";
    EXPECT_SAME_BITS(z_TransformSmall(-0.5, 1), infinity);
    EXPECT_SAME_BITS(z_TransformSmall(0.0, 1), notANumber);
    const double z = z_TransformBig(0.5);
    EXPECT_SAME_BITS(z_TransformSmall(0.5, 0), z - (3.0 * z + 0.5) / 18446744073709551612.0) << "4 (n - 1) wraps to 2^64 - 4";
    // 4 (n - 1) for n = 2^62 + 3 is 2^64 + 8, which wraps to 8.
    EXPECT_SAME_BITS(z_TransformSmall(0.5, (std::size_t{1} << 62) + 3), z_TransformSmall(0.5, 3));
    EXPECT_SAME_BITS(z_to_r(709.0), 1.0);
    EXPECT_SAME_BITS(z_to_r(710.0), notANumber);
    EXPECT_SAME_BITS(z_to_r(-710.0), notANumber);
}

TEST(Distributions, aCountThatWrappedIn32BitsIsOneThatWrapsIn64)
{
    const struct {
        std::uint32_t count;
        std::uint64_t wide;
    } rows[] = {
        {0, 0},
        {1, 1},
        {2147483647, 2147483647},             // the largest that is taken for a count
        {2147483648, 18446744071562067968u},  // 2^64 - 2^31
        {4294967294, 18446744073709551614u},  // no pair, less two
        {4294967295, 18446744073709551615u},  // no value, less one
    };
    for (const auto& row : rows) EXPECT_EQ(wq_lib::detail::wideCount(row.count), row.wide) << row.count;
    for (const std::uint64_t count : {std::uint64_t{0}, std::uint64_t{4294967295}, std::uint64_t{1} << 63, ~std::uint64_t{0}})
        EXPECT_EQ(wq_lib::detail::wideCount(count), count);
}

TEST(Distributions, kolmogorovCriticalValuesNeedLargeSamples)
{
    EXPECT_SAME_BITS(D_GoodnessOfFit(0.05, 0), 0.0);
    EXPECT_SAME_BITS(D_GoodnessOfFit(0.05, 100), 0.0);
    EXPECT_SAME_BITS(D_GoodnessOfFit(0.05, 101), std::sqrt(-std::log(0.025) / 202.0));
    EXPECT_SAME_BITS(D_GoodnessOfFit(0.05, largest), std::sqrt(-std::log(0.025) / 36893488147419103232.0)) << "2n does not wrap";

    const double c = std::sqrt(-0.5 * std::log(0.025));
    const struct {
        std::size_t n1, n2;
        double expected;
    } rows[] = {
        // clang-format off
        {0, 100, 0.0}, {100, 0, 0.0}, {0, 0, 0.0},
        {20, 35, 0.0}, {35, 20, 0.0}, {26, 26, 0.0}, {26, 40, 0.0}, {40, 26, 0.0}, {1, 1, 0.0},
        {30, 30, c * std::sqrt(2.0 / 30.0)}, {27, 27, c * std::sqrt(2.0 / 27.0)}, {40, 40, c * std::sqrt(2.0 / 40.0)},
        {27, 40, c * std::sqrt(67.0 / 1080.0)}, {40, 27, c * std::sqrt(67.0 / 1080.0)},
        {20, 41, c * std::sqrt(61.0 / 820.0)}, {41, 20, c * std::sqrt(61.0 / 820.0)}, {1, 41, c * std::sqrt(42.0 / 41.0)},
        {41, 41, c * std::sqrt(2.0 / 41.0)},
        // n1 n2 wraps: (2^64 - 2) * 100 is 2^64 - 200, 2^60 * 32 is 0.
        {largest - 1, 100, c * std::sqrt(18446744073709551716.0 / 18446744073709551416.0)},
        {std::size_t{1} << 60, 32, infinity},
        // clang-format on
    };
    for (const auto& row : rows) {
        EXPECT_SAME_BITS(D_TwoSamples(0.05, row.n1, row.n2), row.expected) << row.n1 << ", " << row.n2;
        EXPECT_SAME_BITS(D_TwoSamples(0.0, row.n1, row.n2), 0.0) << row.n1 << ", " << row.n2;
    }
}

TEST(Distributions, kolmogorovSignificanceEdges)
{
    for (const double lambda : {0.0, 0.01, -0.01, 0.03, 19.5, 25.0, 1e300, infinity, notANumber})
        EXPECT_SAME_BITS(D_Prob(lambda), 1.0) << lambda << ": 100 terms do not suffice";
    EXPECT_NE(D_Prob(0.0310), 1.0) << "the sum ends in time, close to 1";
    EXPECT_GT(D_Prob(0.045), 1.0) << "by less than 5e-9";
    EXPECT_SAME_BITS(D_Prob(-1.36), D_Prob(1.36));
}

TEST(Distributions, rayleighsSignificanceEdges)
{
    for (const double z : {-1.0, 0.0, 0.5, 3.0, 20.0, infinity, notANumber}) {
        EXPECT_SAME_BITS(rayleighsProb(z, 0), 0.0) << z;
        EXPECT_SAME_BITS(rayleighsProb(z, 50), std::exp(-z)) << z;
        EXPECT_SAME_BITS(rayleighsProb(z, largest), std::exp(-z)) << z;
    }
    EXPECT_NE(rayleighsProb(3.0, 49), std::exp(-3.0));
    for (const std::size_t n : {1u, 5u, 49u}) EXPECT_SAME_BITS(rayleighsProb(0.0, n), 1.0) << n;
    EXPECT_LT(rayleighsProb(7.0, 7), 0.0);
    EXPECT_GT(rayleighsProb(7.0, 13), 0.0);
}

TEST(Distributions, angleEdges)
{
    const double tiny = std::nextafter(0.0, 1.0);
    const struct {
        int line;
        double x, y, expected;
    } rows[] = {
        {__LINE__, 0.0, 0.0, 0.0},
        {__LINE__, -0.0, -0.0, 0.0},
        {__LINE__, 1.0, 0.0, 0.0},
        {__LINE__, 1.0, -0.0, 0.0},
        {__LINE__, 0.0, 1.0, pi / 2.0},
        {__LINE__, -0.0, 1.0, pi / 2.0},
        {__LINE__, -1.0, 0.0, pi},
        {__LINE__, 0.0, -1.0, 3.0 * pi / 2.0},
        {__LINE__, 1.0, 1.0, pi / 4.0},
        {__LINE__, -1.0, 1.0, 3.0 * pi / 4.0},
        {__LINE__, -1.0, -1.0, 5.0 * pi / 4.0},
        {__LINE__, 1.0, -1.0, 7.0 * pi / 4.0},
        {__LINE__, 1.0, -1e-20, 2.0 * pi},  // rounded up to the double 2 pi
        {__LINE__, notANumber, 1.0, 0.0},
        {__LINE__, -1.0, notANumber, 0.0},
        {__LINE__, notANumber, notANumber, 0.0},
        {__LINE__, infinity, 1.0, notANumber},
        {__LINE__, 1.0, infinity, pi / 2.0},
        {__LINE__, tiny, tiny, 0.0},         // squares of 0
        {__LINE__, 1e300, 1e300, pi / 2.0},  // an infinite length
    };
    for (const auto& row : rows) {
        if (std::isnan(row.expected))
            EXPECT_SAME_BITS(computeAngle(row.x, row.y), row.expected) << "row of line " << row.line;
        else
            EXPECT_NEAR(computeAngle(row.x, row.y), row.expected, 1e-15) << "row of line " << row.line;
    }
    for (int degrees = 1; degrees < 360; ++degrees) {
        const double angle = degreeToRadian(degrees);
        EXPECT_NEAR(computeAngle(5.0 * std::cos(angle), 5.0 * std::sin(angle)), angle, 1e-7) << degrees;
    }
    EXPECT_NEAR(degreeToRadian(180.0), pi, 1e-15);
    EXPECT_NEAR(radianToDegree(pi), 180.0, 1e-13);
    EXPECT_SAME_BITS(computeCircleArea(1.0), 3.141592653589793);
    EXPECT_SAME_BITS(computeResultant(3.0, -4.0), 5.0);
    EXPECT_SAME_BITS(computeResultant(1e300, 0.0), infinity);
}

TEST(Distributions, inlineHelpers)
{
    EXPECT_SAME_BITS(sqr(-3.0), 9.0);
    EXPECT_SAME_BITS(sqr(0.1), 0.1 * 0.1);
    const struct {
        long n;
        bool expected;
    } rows[] = {{-3, true},
                {-2, false},
                {-1, true},
                {0, false},
                {1, true},
                {2, false},
                {std::numeric_limits<long>::max(), true},
                {std::numeric_limits<long>::min(), false}};
    for (const auto& row : rows) EXPECT_EQ(odd(row.n), row.expected) << row.n;
}

// ---------------------------------------------------------------- plain loops

namespace plain {

using namespace wq_test::plain;

// Counts how many calls a plain loop could answer, and compares those.
class Comparison {
public:
    template <typename Plain, typename Library, typename... Args>
    void operator()(Plain&& plainCall, Library&& libraryCall, Args... args)
    {
        Budget budget{20000};
        const Result expected = plainCall(args..., budget);
        ++calls;
        if (!expected) {
            ++endless;
            return;
        }
        const double value = libraryCall(args...);
        if (!wq_test::sameBits(value, *expected)) {
            if (++differing > 20) return;
            std::ostringstream text;
            text.precision(17);
            ((text << args << ", "), ...);
            ADD_FAILURE() << "of " << text.str() << "plainly " << ::testing::PrintToString(*expected) << ", by the library "
                          << ::testing::PrintToString(value);
        }
    }

    int calls = 0, endless = 0, differing = 0;
};

}  // namespace plain

#define WQ_PLAIN(name) [](auto&&... args) { return plain::name(args...); }, [](auto... args) { return wq_lib::name(args...); }

namespace {

// Random arguments of the everyday kind. The generator is determined by the standard, the conversions are our own.
class Everyday {
public:
    explicit Everyday(unsigned seed) : generator(seed) {}

    double unit() { return (static_cast<double>(generator()) + 0.5) / 4294967296.0; }
    double between(double a, double b) { return a + (b - a) * unit(); }
    double statistic() { return unit() < 0.5 ? between(0.0, 5.0) : -std::log(unit()) * 20.0; }
    double shape() { return 0.5 * static_cast<double>(1 + below(unit() < 0.7 ? 40 : 400)); }
    std::size_t degrees() { return 1 + below(unit() < 0.7 ? 30 : 500); }
    std::size_t below(std::size_t n) { return generator() % n; }

private:
    std::mt19937 generator;
};

}  // namespace

TEST(DistributionsPlainLoop, lnGamma)
{
    plain::Comparison compare;
    for (int i = -20; i < 4000; ++i) compare(WQ_PLAIN(lnGamma), 0.25 * i);
    EXPECT_EQ(compare.endless, 0);
}

TEST(DistributionsPlainLoop, betaRatio)
{
    plain::Comparison compare;
    for (int i = -2; i <= 42; ++i)
        for (double p = 0.5; p <= 15.0; p += 0.5)
            for (double q = 0.5; q <= 15.0; q += 0.5) compare(WQ_PLAIN(betaRatio), i / 40.0, p, q, logBeta(p, q));
    Everyday any(20240501);
    for (int i = 0; i < 40000; ++i) {
        const double p = any.shape(), q = any.shape();
        const double x = i % 4 == 0 ? p / (p + q) + any.between(-0.02, 0.02) : any.unit();
        compare(WQ_PLAIN(betaRatio), x, p, q, logBeta(p, q));
    }
    for (int i = 0; i < 20000; ++i)  // shapes nobody asks for: any real ones, and any beta
        compare(WQ_PLAIN(betaRatio), any.between(-0.5, 1.5), any.between(-5.0, 30.0), any.between(-5.0, 30.0), any.between(-10.0, 10.0));
    EXPECT_GT(compare.calls, 100000);
    EXPECT_LT(compare.endless, compare.calls / 10) << "too few calls left to compare";
}

TEST(DistributionsPlainLoop, inverseBetaRatio)
{
    plain::Comparison compare;
    for (const double alpha : {0.0, 1e-6, 0.001, 0.01, 0.025, 0.05, 0.1, 0.25, 0.5, 0.75, 0.9, 0.95, 0.99, 1.0})
        for (double p = 0.5; p <= 12.0; p += 0.5)
            for (double q = 0.5; q <= 12.0; q += 0.5) compare(WQ_PLAIN(inverseBetaRatio), alpha, p, q, logBeta(p, q));
    Everyday any(20240502);
    for (int i = 0; i < 8000; ++i) {
        const double p = any.shape(), q = any.shape();
        compare(WQ_PLAIN(inverseBetaRatio), any.unit(), p, q, logBeta(p, q));
    }
    for (int i = 0; i < 4000; ++i)
        compare(WQ_PLAIN(inverseBetaRatio), any.between(-0.5, 1.5), any.between(0.1, 20.0), any.between(0.1, 20.0),
                any.between(-10.0, 3.0));
    EXPECT_GT(compare.calls, 20000);
    EXPECT_LT(compare.endless, compare.calls / 2) << "too few calls left to compare";
}

TEST(DistributionsPlainLoop, t_Prob)
{
    plain::Comparison compare;
    for (const bool oneSided : {true, false})
        for (std::size_t df = 0; df <= 300; ++df)
            for (const double t :
                 {-50.0, -3.0, -0.5, -0.0, 0.0, 1e-320, 0.01, 0.3, 1.0, 1.96, 2.5, 5.0, 30.0, 1e6, 1e300, infinity, notANumber})
                compare(WQ_PLAIN(t_Prob), t, df, oneSided);
    Everyday any(20240503);
    for (int i = 0; i < 20000; ++i) compare(WQ_PLAIN(t_Prob), any.between(-6.0, 6.0), any.below(20000), i % 2 == 0);
    EXPECT_EQ(compare.endless, 0);
}

TEST(DistributionsPlainLoop, chiSquareProb)
{
    plain::Comparison compare;
    for (std::size_t df = 0; df <= 200; ++df)
        for (const double x : {-1.0, 0.0, 1e-320, 1e-12, 0.05, 0.5, 1.0, 3.841, 10.0, 100.0, 1000.0, 1e6, 1e300, infinity, notANumber})
            compare(WQ_PLAIN(chiSquareProb), x, df);
    Everyday any(20240504);
    for (int i = 0; i < 20000; ++i) compare(WQ_PLAIN(chiSquareProb), any.statistic() * any.between(0.0, 20.0), any.degrees());
    EXPECT_EQ(compare.endless, 0);
}

TEST(DistributionsPlainLoop, F_Prob)
{
    plain::Comparison compare;
    for (std::size_t df1 = 0; df1 <= 12; ++df1)
        for (std::size_t df2 = 0; df2 <= 120; df2 += df2 < 40 ? 1 : 10)
            for (const double f : {-1.0, 0.0, 0.01, 0.5, 1.0, 1.01, 1.7, 3.10493, 4.0, 4.965, 10.0, 1000.0})
                compare(WQ_PLAIN(F_Prob), f, df1, df2);
    Everyday any(20240505);
    for (int i = 0; i < 20000; ++i) compare(WQ_PLAIN(F_Prob), any.statistic(), any.degrees(), any.degrees());
    EXPECT_GT(compare.calls, 20000);
    EXPECT_LT(compare.endless, compare.calls / 10) << "too few calls left to compare";
}

TEST(DistributionsPlainLoop, F_PercentPoint)
{
    plain::Comparison compare;
    for (const double p : {0.0, 0.05, 0.5, 0.8, 0.9, 0.95, 0.975, 0.99, 0.999, 1.0})
        for (std::size_t df1 = 0; df1 <= 12; ++df1)
            for (std::size_t df2 = 0; df2 <= 120; df2 += df2 < 40 ? 1 : 10) compare(WQ_PLAIN(F_PercentPoint), p, df1, df2);
    EXPECT_LT(compare.endless, compare.calls / 4) << "too few calls left to compare";
    EXPECT_GT(compare.endless, 0) << "p = 0.95 with 1 and 26 degrees of freedom has no end";
}

TEST(DistributionsPlainLoop, binomial)
{
    plain::Comparison compare;
    for (const double p : {0.0, 1e-320, 1e-12, 0.05, 0.3, 0.5, 0.95, 1.0 - 1e-12, 1.0, infinity, notANumber})
        for (std::size_t n = 0; n <= 30; ++n)
            for (std::size_t k = 0; k <= n; ++k) compare(WQ_PLAIN(binomial), k, n, p);
    Everyday any(20240506);
    for (int i = 0; i < 5000; ++i) {
        const std::size_t n = any.below(3000);
        compare(WQ_PLAIN(binomial), any.below(n + 1), n, any.unit());
    }
    EXPECT_EQ(compare.endless, 0);
}

// ---------------------------------------------------------------- the accuracy that the header states

namespace {

struct Accuracy {
    const char* function;
    const char* where;  // the region, in the words of the header
    std::function<bool(const std::vector<double>&)> holds;
    bool relative;
    double bound;
};

bool isEven(double n) { return std::fmod(n, 2.0) == 0.0; }

// The bounds are those of the published sources, or of the same formulas measured in Python (tests/reference/distributions_textbook.py
// prints them). The last argument is the exact value.
const std::vector<Accuracy> accuracies = {
    {"factorial", "n <= 170", [](const auto&) { return true; }, true, 1e-15},
    {"normalDensity", "|x| <= 5", [](const auto& a) { return std::fabs(a[0]) <= 5.0; }, true, 6e-15},
    {"binomial", "n <= 300", [](const auto&) { return true; }, true, 3e-16 * 900.0},
    {"computeAngle", "everywhere", [](const auto&) { return true; }, false, 3e-8},
    {"normalProb", "|x| <= 5e4", [](const auto& a) { return std::fabs(a[0]) <= 5e4; }, false, 1e-9},
    {"normalProbApprox", "everywhere", [](const auto&) { return true; }, false, 2.5e-4},
    {"normalPercentPoint", "1e-15 ... 1 - 1e-15", [](const auto& a) { return a[0] >= 1e-15 && a[0] <= 1.0 - 1e-15; }, false, 3e-3},
    {"lnGamma", "x <= 1e4", [](const auto& a) { return a[0] <= 1e4; }, true, 1e-14},
    {"lnGamma", "x <= 1e5", [](const auto& a) { return a[0] <= 1e5 + 1.0; }, true, 1e-13},
    {"t_Prob", "even df <= 1e4", [](const auto& a) { return isEven(a[1]) && a[1] <= 1e4; }, false, 2e-13},
    {"t_Prob", "odd df, one-sided", [](const auto& a) { return !isEven(a[1]) && a[2] != 0.0; }, false, 0.74},
    {"t_Prob", "odd df, two-sided", [](const auto& a) { return !isEven(a[1]) && a[2] == 0.0; }, false, 1.48},
    {"t_PercentPoint", "0.05, df 1", [](const auto& a) { return a[0] == 0.05 && a[1] == 1.0; }, true, 0.4},
    {"t_PercentPoint", "0.05, df 2", [](const auto& a) { return a[0] == 0.05 && a[1] == 2.0; }, true, 0.042},
    {"t_PercentPoint", "0.05, df 3, 4", [](const auto& a) { return a[0] == 0.05 && (a[1] == 3.0 || a[1] == 4.0); }, true, 0.013},
    {"t_PercentPoint", "0.05, df >= 5", [](const auto& a) { return a[0] == 0.05 && a[1] >= 5.0; }, true, 0.003},
    {"t_PercentPoint", "0.05, df >= 8", [](const auto& a) { return a[0] == 0.05 && a[1] >= 8.0; }, true, 0.001},
    {"t_PercentPoint", "0.001 ... 0.5, df >= 10", [](const auto& a) { return a[0] >= 0.001 && a[0] <= 0.5 && a[1] >= 10.0; }, true, 0.005},
    {"chiSquareProb", "x <= 200", [](const auto& a) { return a[0] <= 200.0 && a.back() > 1e-300; }, true, 2e-6},
    {"chiSquareProb", "x <= 1400", [](const auto& a) { return a[0] <= 1400.0 && a.back() > 1e-300; }, true, 6e-6},
    {"chiSquarePoint", "0.95, df 1", [](const auto& a) { return a[0] == 0.95 && a[1] == 1.0; }, true, 0.026},
    {"chiSquarePoint", "0.95, df 2", [](const auto& a) { return a[0] == 0.95 && a[1] == 2.0; }, true, 0.01},
    {"chiSquarePoint", "0.95, df >= 3", [](const auto& a) { return a[0] == 0.95 && a[1] >= 3.0; }, true, 0.006},
    {"chiSquarePoint", "0.95, df >= 10", [](const auto& a) { return a[0] == 0.95 && a[1] >= 10.0; }, true, 0.001},
    {"chiSquarePoint", "0.5 ... 0.999", [](const auto& a) { return a[0] >= 0.5 && a[0] <= 0.999; }, true, 0.035},
    {"chiSquarePoint", "0.5 ... 0.999, df >= 10", [](const auto& a) { return a[0] >= 0.5 && a[0] <= 0.999 && a[1] >= 10.0; }, true, 0.007},
    {"chiSquarePoint", "0.05, df 2", [](const auto& a) { return a[0] == 0.05 && a[1] == 2.0; }, true, 0.24},
    {"chiSquarePoint", "0.05, df >= 10", [](const auto& a) { return a[0] == 0.05 && a[1] >= 10.0; }, true, 0.003},
    {"F_Prob", "even df1 and f > 1", [](const auto& a) { return a[0] > 1.0 && isEven(a[1]) && a[1] <= 2000.0 && a[2] <= 2000.0; }, false,
     2e-7},
    {"F_Prob", "even df2 and f < 1", [](const auto& a) { return a[0] < 1.0 && isEven(a[2]) && a[1] <= 2000.0 && a[2] <= 2000.0; }, false,
     2e-7},
    {"F_Prob", "df1 = 1, f >= 4", [](const auto& a) { return a[1] == 1.0 && a[0] >= 4.0; }, false, 0.021},
    {"F_Prob", "df1 = 1, f >= 5", [](const auto& a) { return a[1] == 1.0 && a[0] >= 5.0; }, false, 0.005},
    {"F_Prob", "df1 = 1, f >= 10", [](const auto& a) { return a[1] == 1.0 && a[0] >= 10.0; }, false, 6e-5},
    {"F_Prob", "df1 = 3, f > 1", [](const auto& a) { return a[1] == 3.0 && a[0] > 1.0; }, false, 0.1},
    {"F_Prob", "df1 = 3, f >= 2", [](const auto& a) { return a[1] == 3.0 && a[0] >= 2.0; }, false, 0.0015},
    {"F_Prob", "odd df1 >= 5, f > 1", [](const auto& a) { return !isEven(a[1]) && a[1] >= 5.0 && a[0] > 1.0; }, false, 0.005},
    {"F_Prob", "odd df1 >= 15, f > 1", [](const auto& a) { return !isEven(a[1]) && a[1] >= 15.0 && a[0] > 1.0; }, false, 2e-7},
    {"F_PercentPoint", "even df1, p 0.8 ... 0.99, df2 = 1", [](const auto& a) { return a[0] >= 0.8 && isEven(a[1]); }, true, 1e-5},
    {"F_PercentPoint", "even df1, p 0.8 ... 0.99, df2 >= 2", [](const auto& a) { return a[0] >= 0.8 && isEven(a[1]) && a[2] >= 2.0; }, true,
     2e-7},
    {"F_PercentPoint", "df1 = 1, p 0.95, df2 <= 10", [](const auto& a) { return a[0] == 0.95 && a[1] == 1.0 && a[2] <= 10.0; }, true, 0.02},
    {"F_PercentPoint", "df1 = 1, p 0.95", [](const auto& a) { return a[0] == 0.95 && a[1] == 1.0; }, true, 0.24},
    {"F_PercentPoint", "df1 = 1, p 0.975", [](const auto& a) { return a[0] == 0.975 && a[1] == 1.0; }, true, 0.1},
    {"F_PercentPoint", "df1 = 1, p 0.9", [](const auto& a) { return a[0] == 0.9 && a[1] == 1.0; }, true, 0.13},
    {"F_PercentPoint", "df1 = 1, p 0.8", [](const auto& a) { return a[0] == 0.8 && a[1] == 1.0; }, true, 0.76},
    {"F_PercentPoint", "df1 = 1, p 0.99", [](const auto& a) { return a[0] == 0.99 && a[1] == 1.0; }, true, 0.015},
    {"F_PercentPoint", "df1 = 3, p >= 0.95", [](const auto& a) { return a[0] >= 0.95 && a[1] == 3.0; }, true, 0.001},
    {"F_PercentPoint", "odd df1 >= 5, p >= 0.95", [](const auto& a) { return a[0] >= 0.95 && !isEven(a[1]) && a[1] >= 5.0; }, true, 3e-5},
    {"z_TransformBig", "|r| <= 0.99", [](const auto& a) { return std::fabs(a[0]) <= 0.99; }, false, 1e-15},
    {"z_to_r", "|z| <= 700", [](const auto& a) { return std::fabs(a[0]) <= 700.0; }, false, 1e-15},
    {"D_GoodnessOfFit", "everywhere", [](const auto&) { return true; }, true, 1e-13},
    {"D_Prob", "0.031 ... 18", [](const auto& a) { return a[0] >= 0.031 && a[0] <= 18.0; }, false, 5e-9},
    {"D_Prob", "0.3 ... 18", [](const auto& a) { return a[0] >= 0.3 && a[0] <= 18.0; }, true, 1e-8},
    {"rayleighsProb", "n 7 ... 49", [](const auto& a) { return a[1] >= 7.0 && a[1] < 50.0; }, false, 1e-3},
    {"rayleighsProb", "n >= 50", [](const auto& a) { return a[1] >= 50.0; }, false, 2.5e-3},
    {"rayleighsProb", "n 10 ... 49, z <= 4.6", [](const auto& a) { return a[1] >= 10.0 && a[1] < 50.0 && a[0] <= 4.6; }, true, 0.01},
};

// Holds every row to all statements about it. Exact values carry 15 digits.
void checkAccuracy(const std::vector<TableRow>& table, const std::set<std::string>& withoutRows)
{
    std::map<const Accuracy*, int> used;
    int rows = 0, stated = 0;
    for (const TableRow& row : table) {
        const std::string& name = row.cells.at(0);
        ASSERT_TRUE(functions.count(name)) << name << ", line " << row.line;
        const double exact = numberIn(row.cells.at(4));
        std::vector<double> arguments;
        for (std::size_t i = 1; i <= 3 && !row.cells[i].empty(); ++i) arguments.push_back(numberIn(row.cells[i]));
        arguments.push_back(exact);

        const double departure = std::fabs(functions.at(name)(row) - exact);
        ++rows;
        bool any = false;
        for (const Accuracy& accuracy : accuracies) {
            if (name != accuracy.function || !accuracy.holds(arguments)) continue;
            any = true;
            ++used[&accuracy];
            EXPECT_LE(departure, accuracy.bound * (accuracy.relative ? std::fabs(exact) : 1.0) + 5e-15 * std::fabs(exact))
                << textOf(row) << ": " << accuracy.where;
        }
        stated += any ? 1 : 0;
    }
    std::cout << rows << " exact values, the header states an accuracy for " << stated << " of them\n";
    EXPECT_GT(rows, 0);
    for (const Accuracy& accuracy : accuracies) {
        const bool expected = withoutRows.count(accuracy.function) == 0;
        EXPECT_TRUE(!expected || used[&accuracy] > 0) << "nothing was held to " << accuracy.function << ", " << accuracy.where;
    }
}

}  // namespace

TEST(DistributionsAccuracy, isWhatTheHeaderStates) { checkAccuracy(referenceTable("distributions_textbook.csv"), {"D_GoodnessOfFit"}); }

// $WQ_REFERENCE_DATA/distributions.csv: exact values computed elsewhere.
TEST(DistributionsAccuracy, isWhatTheHeaderStatesForTheReferenceData)
{
    const char* folder = std::getenv("WQ_REFERENCE_DATA");
    if (folder == nullptr) GTEST_SKIP() << "WQ_REFERENCE_DATA is not set: no folder with reference data";
    checkAccuracy(readTable(std::string(folder) + "/distributions.csv"),
                  {"factorial", "lnGamma", "normalDensity", "binomial", "computeAngle", "rayleighsProb"});
}

// What is far off, and has to stay: reports and decisions rest on it.
TEST(DistributionsAccuracy, poorPlacesStayAsTheHeaderSaysThem)
{
    for (const std::size_t df : {1u, 3u, 11u, 29u, 271u}) {
        EXPECT_LT(t_Prob(0.76, df, true), 0.0) << df;
        EXPECT_GT(t_Prob(0.55, df, true), -0.02) << df;
        EXPECT_GT(t_Prob(-0.76, df, true), 1.0) << df;
        EXPECT_NEAR(t_Prob(1e6, df, true), 0.5 - pi * pi / 8.0, 1e-5) << df;
        EXPECT_SAME_BITS(t_Prob(0.0, df, false), 1.0) << df;
    }
    EXPECT_LT(F_Prob(1.0, 1, 100), -1e7);
    EXPECT_GT(F_Prob(1.0, 1, 1000), 1e67);
    EXPECT_LT(F_Prob(1.5, 1, 100), -30.0);
    EXPECT_GT(F_Prob(0.9, 100, 1), 1e5);
    EXPECT_LT(normalProb(-9.5), 0.0);
    EXPECT_NEAR(t_PercentPoint(0.05, 1), 1.39 * 12.7062, 0.1);
    EXPECT_LT(std::fabs(t_PercentPoint(0.05, 1000000000000) - 1.96045), 1e-5);
    EXPECT_GT(std::fabs(t_PercentPoint(0.05, 1000000000000000) - 1.96045), 0.01);
}
