// Every distribution function ends, whatever it is given: all combinations of the arguments below, and each result of the right kind. A
// call without an end, or one that takes minutes, meets the time limit of the runner.
//
// Left out of the full walk, with rows of their own: the integrators, whose cost lies in the integrand; factorial and binomial,
// which take a step per count (factorial ends at 171); inverseBetaRatio with shapes above 2^53.
#include <wq_stat/distributions.h>

#include "support/bits.h"
#include "support/console.h"
#include "support/table.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <sstream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

using namespace wq_lib;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr std::size_t largest = std::numeric_limits<std::size_t>::max();

const std::vector<std::size_t> counts = {0, 1, 2, 3, 5, 10, 27, 100, 10000, std::size_t{1} << 60, largest - 1, largest};

const std::vector<double> reals = {notANumber, infinity, -infinity, 0.0,  -0.0, 1e-320, -1e-320, 1e-12, -1e-12, 0.05, -0.05, 0.5,   -0.5,
                                   0.95,       -0.95,    1.0,       -1.0, 2.0,  -2.0,   50.0,    -50.0, 1e6,    -1e6, 1e300, -1e300};

const std::vector<bool> flags = {false, true};

template <typename T>
const auto& allOf()
{
    if constexpr (std::is_same_v<T, double>)
        return reals;
    else if constexpr (std::is_same_v<T, bool>)
        return flags;
    else
        return counts;
}

template <typename... Args>
std::string textOf(const char* function, const Args&... args)
{
    std::ostringstream text;
    text.precision(17);
    text << function << "(";
    const char* separator = "";
    ((text << separator << args, separator = ", "), ...);
    return text.str() + ")";
}

// Makes every call, one argument after the other.
template <typename... Rest>
struct Walk;

template <>
struct Walk<> {
    template <typename Call, typename Check, typename... Bound>
    static void through(const Call& call, const Check& check, Bound... bound)
    {
        check(call(bound...), bound...);
    }
};

template <typename First, typename... Rest>
struct Walk<First, Rest...> {
    template <typename Call, typename Check, typename... Bound>
    static void through(const Call& call, const Check& check, Bound... bound)
    {
        for (const First value : allOf<First>()) Walk<Rest...>::through(call, check, bound..., value);
    }
};

template <typename... Args, typename Check>
void walk(double (*call)(Args...), const Check& check)
{
    std::string ignored = wq_test::printed([&] { Walk<Args...>::through(call, check); });
}

char kindOf(double x)
{
    if (std::isnan(x)) return 'n';
    if (std::isinf(x)) return x > 0.0 ? '+' : '-';
    return '.';
}

// Compares the kinds of all results with those that distributions_limits.py found.
template <typename... Args>
void walkAgainstTable(const char* function, double (*call)(Args...))
{
    std::string expected;
    for (const wq_test::TableRow& row : wq_test::referenceTable("distributions_limits.csv"))
        if (row.cells.at(0) == function) expected = row.cells.at(1);
    ASSERT_FALSE(expected.empty()) << function << " has no row in the table";

    std::size_t next = 0;
    int differing = 0;
    walk(call, [&](double result, auto... args) {
        const char kind = next < expected.size() ? expected[next] : '?';
        ++next;
        if (kindOf(result) != kind && ++differing <= 10)
            ADD_FAILURE() << textOf(function, args...) << " is " << ::testing::PrintToString(result) << ", not of kind " << kind;
    });
    EXPECT_EQ(next, expected.size()) << "calls made of " << function;
    EXPECT_EQ(differing, 0);
}

bool anyNaN(double a, double b, double c) { return std::isnan(a) || std::isnan(b) || std::isnan(c); }

}  // namespace

#define WQ_WALK(function)                                                                                                                  \
  TEST(DistributionsLimits, function) { walkAgainstTable(#function, &wq_lib::function); }

WQ_WALK(factorial)
WQ_WALK(lnGamma)
WQ_WALK(normalDensity)
WQ_WALK(normalProb)
WQ_WALK(normalProbApprox)
WQ_WALK(normalPercentPoint)
WQ_WALK(t_Prob)
WQ_WALK(t_PercentPoint)
WQ_WALK(chiSquareProb)
WQ_WALK(chiSquarePoint)
WQ_WALK(F_Prob)
WQ_WALK(z_TransformBig)
WQ_WALK(z_TransformSmall)
WQ_WALK(z_to_r)
WQ_WALK(D_GoodnessOfFit)
WQ_WALK(D_TwoSamples)
WQ_WALK(D_Prob)
WQ_WALK(rayleighsProb)
WQ_WALK(degreeToRadian)
WQ_WALK(radianToDegree)
WQ_WALK(computeResultant)
WQ_WALK(computeAngle)
WQ_WALK(computeCircleArea)

TEST(DistributionsLimits, betaRatio)
{
    walk(&wq_lib::betaRatio, [](double result, double x, double p, double q, double beta) {
        std::optional<double> expected;
        if (x == 0.0 || x == 1.0)
            expected = x;
        else if (x < 0.0 || x > 1.0)
            expected = 0.0;
        else if (std::isnan(x) || anyNaN(p, q, beta))
            expected = notANumber;
        if (expected) {
            EXPECT_SAME_BITS(result, *expected) << textOf("betaRatio", x, p, q, beta);
        }
    });
}

// Finite shapes above 2^53 are left out: i is lost in p + i there, the terms of the series may stay as they are for 10^7 and more
// steps, and one call may take a minute, as its comment says. No degrees of freedom lead there: lnGamma is NaN before.
double inverseBetaRatioOfModestShapes(double alpha, double p, double q, double beta)
{
    const auto isHuge = [](double shape) { return std::isfinite(shape) && shape > 0x1p53; };
    return isHuge(p) || isHuge(q) ? notANumber : wq_lib::inverseBetaRatio(alpha, p, q, beta);
}

TEST(DistributionsLimits, inverseBetaRatio)
{
    walk(&inverseBetaRatioOfModestShapes, [](double result, double alpha, double p, double q, double beta) {
        if ((std::isfinite(p) && p > 0x1p53) || (std::isfinite(q) && q > 0x1p53)) return;
        std::optional<double> expected;
        if (alpha == 0.0 || alpha == 1.0)
            expected = alpha;
        else if (std::isnan(alpha) || anyNaN(p, alpha > 0.5 ? p : q, beta))
            expected = notANumber;  // above 0.5 p takes the place of q
        if (expected) {
            EXPECT_SAME_BITS(result, *expected) << textOf("inverseBetaRatio", alpha, p, q, beta);
        } else {
            EXPECT_FALSE(result < 0.0 || result > 1.0) << textOf("inverseBetaRatio", alpha, p, q, beta) << " is " << result;
        }
    });
}

TEST(DistributionsLimits, F_PercentPoint)
{
    walk(&wq_lib::F_PercentPoint, [](double result, double p, std::size_t df1, std::size_t df2) {
        const bool countless = df1 > (std::size_t{1} << 54) || df2 > (std::size_t{1} << 54);
        std::optional<double> expected;
        if (p == 0.0 || df1 == 0 || df2 == 0 || 1.0 - p == 1.0)
            expected = 0.0;
        else if (p == 1.0)
            expected = infinity;
        else if (std::isnan(p) || countless)
            expected = notANumber;
        if (expected) {
            EXPECT_EQ(kindOf(result), kindOf(*expected)) << textOf("F_PercentPoint", p, df1, df2);
        }
        if (expected == 0.0) {
            EXPECT_EQ(result, 0.0) << textOf("F_PercentPoint", p, df1, df2);
        }
        if (!expected && p > 0.0 && p < 1.0) {
            EXPECT_GE(result, 0.0) << textOf("F_PercentPoint", p, df1, df2);
        }
    });
}

namespace {

double constant(double) { return 3.0; }
double identity(double x) { return x; }
double exponential(double x) { return std::exp(x); }
double pole(double x) { return 1.0 / (x - 1.0 / 3.0); }
double nothing(double) { return notANumber; }

using Integrand = double (*)(double);

}  // namespace

// Between any two limits; what an integrand costs beyond that is its own affair.
TEST(DistributionsLimits, quadratureIntegralOfSomeFunctions)
{
    const std::vector<std::pair<const char*, Integrand>> integrands = {{"constant", constant},       {"identity", identity},
                                                                       {"exponential", exponential}, {"pole", pole},
                                                                       {"nothing", nothing},         {"normalDensity", normalDensity}};
    for (const auto& [name, integrand] : integrands)
        walk(
            +[](double, double) { return 0.0; },
            [&, f = integrand, named = name](double, double a, double b) {
                const double result = quadratureIntegral(f, a, b);
                if (std::isnan(a) || std::isnan(b) || f == nothing) {
                    EXPECT_SAME_BITS(result, notANumber) << textOf(named, a, b);
                }
            });
}

// A finite result of simpsonIntegral may cost 2^30 evaluations; without one it ends in the first pass.
TEST(DistributionsLimits, simpsonIntegralWithoutFiniteResult)
{
    walk(
        +[](double, double) { return 0.0; },
        [](double, double a, double b) {
            if (std::isfinite(a) && std::isfinite(b)) return;
            const double result = simpsonIntegral(constant, a, b);
            EXPECT_FALSE(std::isfinite(result)) << textOf("simpsonIntegral", a, b);
        });
    EXPECT_SAME_BITS(simpsonIntegral(nothing, 0.0, 1.0), notANumber);
}

// binomial takes n and k steps. With counts up to 10^4 it always ends soon; with more, where the products settle.
TEST(DistributionsLimits, binomialOfModestCounts)
{
    for (const std::size_t k : counts)
        for (const std::size_t n : counts)
            for (const double p : reals) {
                if (k > 10000 || n > 10000) continue;
                const double result = binomial(k, n, p);
                if (std::isnan(p) && (n > 0 || k > 0)) {
                    EXPECT_SAME_BITS(result, notANumber) << textOf("binomial", k, n, p);
                }
                if (p >= 0.0 && p < 1.0 && k > n) {
                    EXPECT_EQ(result, 0.0) << textOf("binomial", k, n, p);
                }
                if (p > 0.0 && p < 1.0 && k <= n) {
                    EXPECT_TRUE(result >= 0.0 && result < 1.0 + 1e-12) << textOf("binomial", k, n, p);
                }
            }
}

namespace {

struct BinomialRow {
    int line;
    std::size_t k, n;
    double p, expected;
};

void checkBinomial(const std::vector<BinomialRow>& rows)
{
    for (const BinomialRow& row : rows) {
        const double result = binomial(row.k, row.n, row.p);
        EXPECT_TRUE(result == row.expected || wq_test::sameBits(result, row.expected))  // a 0 may have either sign
            << "row of line " << row.line << " is " << result;
    }
}

constexpr std::size_t huge = std::size_t{1} << 60;

}  // namespace

TEST(DistributionsLimits, binomialOfHugeCountsWhereTheProductsSettle)
{
    checkBinomial({
        {__LINE__, 0, huge, 0.05, 9.0 * std::numeric_limits<double>::denorm_min()},  // 0.95 * 9 rounds to 9 again
        {__LINE__, 0, huge, 0.95, 0.0},                                              // (1 - p)^n is too small
        {__LINE__, huge, largest, 0.5, 0.0},
        {__LINE__, largest, largest, 0.95, 0.0},
        {__LINE__, 0, largest, 0.0, 1.0},  // 1 - p is 1
        {__LINE__, 0, largest, 1e-320, 1.0},
        {__LINE__, largest, largest, 0.0, 0.0},
        {__LINE__, largest, largest, 1e-320, 0.0},
        {__LINE__, largest, 5, 0.5, 0.0},  // n - i reaches 0
        {__LINE__, huge, 0, 0.3, 0.0},
        {__LINE__, 0, largest, 1.0, 0.0},
        {__LINE__, largest, largest, 1.0, notANumber},
        {__LINE__, largest, largest, notANumber, notANumber},
    });
}

// What is no probability ends as well: a product of 0 stays 0, and one that only changes its sign has that of its parity.
TEST(DistributionsLimits, binomialOfHugeCountsOutsideItsRange)
{
    checkBinomial({
        {__LINE__, largest, 5, -0.0, 0.0},
        {__LINE__, largest, 5, 2.0, 0.0},
        {__LINE__, largest, 5, -0.5, 0.0},
        {__LINE__, largest, 0, 1e6, 0.0},
        {__LINE__, largest, 3, infinity, notANumber},
        {__LINE__, 0, largest, 2.0, -1.0},  // (-1) to an odd power
        {__LINE__, 0, largest - 1, 2.0, 1.0},
        {__LINE__, 0, largest, 3.0, -infinity},
        {__LINE__, 0, largest - 1, 3.0, infinity},
        {__LINE__, 0, largest, -1.0, infinity},
    });
}
