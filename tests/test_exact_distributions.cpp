// The distributions of wq_exact against values with 60 digits (tests/reference/exact_distributions.py, exact_rayleigh.c), all arrangements
// of small samples counted here, and the limits of what there is to compute.
#include <wq_exact/distributions.h>

#include "support/arrangements.h"
#include "support/table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <limits>
#include <map>
#include <set>
#include <string>
#include <vector>

using namespace wq_exact;
using wq_test::arrangementsByD;
using wq_test::numberIn;
using wq_test::referenceTable;
using wq_test::TableRow;

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

// ---------------------------------------------------------------- functions called by their names

using One = double (*)(double);
using Two = double (*)(double, double);
using Three = double (*)(double, double, double);
using Function = std::function<double(const std::vector<double>&)>;

Function of(One f)
{
    return [f](const std::vector<double>& a) { return f(a.at(0)); };
}
Function of(Two f)
{
    return [f](const std::vector<double>& a) { return f(a.at(0), a.at(1)); };
}
Function of(Three f)
{
    return [f](const std::vector<double>& a) { return f(a.at(0), a.at(1), a.at(2)); };
}

struct Entry {
    std::size_t arguments;
    bool isProbability;  // of the result; else it is a density or a quantile
    Function call;
};

const std::map<std::string, Entry> functions = {
    {"normalCdf", {1, true, of(normalCdf)}},
    {"normalUpperTail", {1, true, of(normalUpperTail)}},
    {"normalDensity", {1, false, of(normalDensity)}},
    {"normalQuantile", {1, false, of(normalQuantile)}},
    {"normalUpperQuantile", {1, false, of(normalUpperQuantile)}},
    {"tCdf", {2, true, of(tCdf)}},
    {"tUpperTail", {2, true, of(tUpperTail)}},
    {"tTwoSided", {2, true, of(tTwoSided)}},
    {"tDensity", {2, false, of(tDensity)}},
    {"tQuantile", {2, false, of(tQuantile)}},
    {"tUpperQuantile", {2, false, of(tUpperQuantile)}},
    {"tTwoSidedQuantile", {2, false, of(tTwoSidedQuantile)}},
    {"chiSquareCdf", {2, true, of(chiSquareCdf)}},
    {"chiSquareUpperTail", {2, true, of(chiSquareUpperTail)}},
    {"chiSquareDensity", {2, false, of(chiSquareDensity)}},
    {"chiSquareQuantile", {2, false, of(chiSquareQuantile)}},
    {"chiSquareUpperQuantile", {2, false, of(chiSquareUpperQuantile)}},
    {"fCdf", {3, true, of(fCdf)}},
    {"fUpperTail", {3, true, of(fUpperTail)}},
    {"fDensity", {3, false, of(fDensity)}},
    {"fQuantile", {3, false, of(fQuantile)}},
    {"fUpperQuantile", {3, false, of(fUpperQuantile)}},
    {"kolmogorovCdf", {1, true, of(kolmogorovCdf)}},
    {"kolmogorovUpperTail", {1, true, of(kolmogorovUpperTail)}},
    {"kolmogorovQuantile", {1, false, of(kolmogorovQuantile)}},
    {"kolmogorovUpperQuantile", {1, false, of(kolmogorovUpperQuantile)}},
    {"rayleighCdf", {2, true, of(rayleighCdf)}},
    {"rayleighUpperTail", {2, true, of(rayleighUpperTail)}},
    {"rayleighQuantile", {2, false, of(rayleighQuantile)}},
    {"rayleighUpperQuantile", {2, false, of(rayleighUpperQuantile)}},
};

// What a change of the first argument by half its last bit makes, relative to the result.
double conditioning(const Entry& function, std::vector<double> arguments, double value)
{
    const double there = arguments[0];
    arguments[0] = std::nextafter(there, infinity);
    const double above = function.call(arguments);
    arguments[0] = std::nextafter(there, -infinity);
    const double below = function.call(arguments);
    return std::fabs(above - below) / 4.0 / std::fabs(value);
}

// ---------------------------------------------------------------- values

// Holds functions to a table that goes below a least value, within 1e-13 and what the argument's rounding makes. Returns the names that
// occur.
std::set<std::string> expectTable(const std::string& file, double least)
{
    std::set<std::string> seen;
    double smallest = 1.0;
    for (const TableRow& row : referenceTable(file)) {
        const Entry& function = functions.at(row.cells.at(0));
        std::vector<double> arguments;
        for (std::size_t i = 1; i <= function.arguments; ++i) arguments.push_back(numberIn(row.cells.at(i)));
        const double expected = numberIn(row.cells.at(4));
        const double value = function.call(arguments);
        EXPECT_LE(std::fabs(value - expected), (1e-13 + conditioning(function, arguments, expected)) * std::fabs(expected))
            << file << ", line " << row.line << ": " << row.cells[0] << " is " << value << ", not " << expected;
        seen.insert(row.cells[0]);
        smallest = std::min(smallest, std::fabs(value));
    }
    EXPECT_LT(smallest, least) << file;
    return seen;
}

TEST(ExactDistributions, agreeWithSixtyDigitsIntoTheFarTails)
{
    const std::set<std::string> seen = expectTable("exact_distributions.csv", 1e-299);
    for (const auto& [name, function] : functions)  // the two that mirror another have their own test
        EXPECT_TRUE(seen.count(name) == 1 || name == "normalQuantile" || name == "tUpperQuantile" || name.find("rayleigh") == 0) << name;
}

TEST(ExactDistributions, areSymmetricWhereTheyShouldBe)
{
    for (const double p : {1e-300, 1e-17, 0.025, 0.3, 0.5}) {
        EXPECT_EQ(normalQuantile(p), -normalUpperQuantile(p));
        EXPECT_NEAR(normalCdf(normalQuantile(p)), p, 1e-12 * p);
        for (const double df : {0.5, 3.0, 1e7}) {
            EXPECT_EQ(tQuantile(p, df), -tUpperQuantile(p, df));
            EXPECT_EQ(tUpperQuantile(p, df), tTwoSidedQuantile(2.0 * p, df)) << p << " " << df;
        }
    }
    EXPECT_EQ(tQuantile(0.75, 3.0), -tQuantile(0.25, 3.0));
    EXPECT_EQ(tQuantile(0.5, 3.0), 0.0);
    EXPECT_EQ(normalQuantile(0.75), -normalQuantile(0.25));
    EXPECT_EQ(fUpperTail(4.0, 3.0, 7.0), fCdf(0.25, 7.0, 3.0));  // 1 / F
}

// ---------------------------------------------------------------- limits

TEST(ExactDistributions, haveNoNegativeZeroAtTheMedian)
{
    for (const double median : {normalQuantile(0.5), normalUpperQuantile(0.5), tQuantile(0.5, 1.0), tQuantile(0.5, 2.5),
                                tUpperQuantile(0.5, 7.0), tQuantile(0.5, 1e6)}) {
        EXPECT_EQ(median, 0.0);
        EXPECT_FALSE(std::signbit(median));
    }
}

TEST(ExactDistributions, haveLimits)
{
    const struct {
        int line;
        double value, expected;
    } rows[] = {
        {__LINE__, normalCdf(-infinity), 0.0},
        {__LINE__, normalCdf(infinity), 1.0},
        {__LINE__, normalUpperQuantile(0.0), infinity},
        {__LINE__, normalUpperQuantile(1.0), -infinity},
        {__LINE__, tCdf(-infinity, 2.0), 0.0},
        {__LINE__, tUpperTail(-infinity, 2.0), 1.0},
        {__LINE__, tTwoSided(infinity, 2.0), 0.0},
        {__LINE__, tTwoSided(0.0, 2.0), 1.0},
        {__LINE__, tDensity(infinity, 2.0), 0.0},
        {__LINE__, tTwoSidedQuantile(0.0, 2.0), infinity},
        {__LINE__, tTwoSidedQuantile(1.0, 2.0), 0.0},
        {__LINE__, tUpperQuantile(0.0, 2.0), infinity},
        {__LINE__, tUpperQuantile(1.0, 2.0), -infinity},
        {__LINE__, tTwoSidedQuantile(1e-300, 0.01), infinity},  // 1e30000
        {__LINE__, chiSquareCdf(-1.0, 2.0), 0.0},
        {__LINE__, chiSquareUpperTail(infinity, 2.0), 0.0},
        {__LINE__, chiSquareDensity(0.0, 1.0), infinity},
        {__LINE__, chiSquareDensity(0.0, 2.0), 0.5},
        {__LINE__, chiSquareDensity(0.0, 3.0), 0.0},
        {__LINE__, chiSquareDensity(-1.0, 3.0), 0.0},
        {__LINE__, chiSquareQuantile(0.0, 3.0), 0.0},
        {__LINE__, chiSquareQuantile(1.0, 3.0), infinity},
        {__LINE__, chiSquareQuantile(1e-300, 0.01), 0.0},  // 1e-60000
        {__LINE__, fCdf(infinity, 1.0, 2.0), 1.0},
        {__LINE__, fUpperTail(-0.0, 1.0, 2.0), 1.0},
        {__LINE__, fDensity(0.0, 2.0, 2.0), 1.0},
        {__LINE__, fUpperQuantile(0.0, 1.0, 2.0), infinity},
        {__LINE__, fUpperQuantile(1.0, 1.0, 2.0), 0.0},
        {__LINE__, kolmogorovCdf(-1.0), 0.0},
        {__LINE__, kolmogorovUpperTail(0.0), 1.0},
        {__LINE__, kolmogorovUpperTail(infinity), 0.0},
        {__LINE__, kolmogorovUpperQuantile(0.0), infinity},
        {__LINE__, kolmogorovQuantile(0.0), 0.0},
        // With so many degrees of freedom t is normal, and F is 1 (Student 1908; Fisher 1924).
        {__LINE__, tTwoSided(1.5, 1e300), 2.0 * normalUpperTail(1.5)},
        {__LINE__, fUpperQuantile(0.05, 1e300, 1e300), 1.0},
        {__LINE__, chiSquareQuantile(0.05, 1e100), 1e100},
    };
    for (const auto& row : rows) {
        if (std::isinf(row.expected))
            EXPECT_EQ(row.value, row.expected) << "row of line " << row.line;
        else
            EXPECT_NEAR(row.value, row.expected, 1e-14 * std::fabs(row.expected)) << "row of line " << row.line;
    }
}

TEST(ExactDistributions, areNotDefinedWithoutDegreesOfFreedomOrForNaN)
{
    for (const auto& [name, function] : functions) {
        for (std::size_t i = 0; i < function.arguments; ++i) {
            std::vector<double> arguments(function.arguments, 0.5);
            for (const double bad : {notANumber, 0.0, -1.0, infinity}) {
                if (i == 0 && !std::isnan(bad)) continue;  // a statistic may be anything else
                arguments[i] = bad;
                EXPECT_TRUE(std::isnan(function.call(arguments))) << name << ", argument " << i << " is " << bad;
            }
        }
        if (name.find("Quantile") == std::string::npos) continue;
        std::vector<double> arguments(function.arguments, 0.5);
        for (const double outside : {-1e-300, -infinity, 1.0000000000000002, infinity}) {
            arguments[0] = outside;
            EXPECT_TRUE(std::isnan(function.call(arguments))) << name << "(" << outside << ")";
        }
    }
}

bool isDegrees(double df) { return df > 0.0 && std::isfinite(df); }

// Whether there is a value: of a statistic that is a number, or a probability, and of degrees of freedom, or a number of directions.
bool isDefined(const std::string& name, const std::vector<double>& arguments)
{
    const double first = arguments[0];
    if (name.find("Quantile") != std::string::npos && !(first >= 0.0 && first <= 1.0)) return false;
    if (name.find("rayleigh") == std::string::npos) return std::all_of(arguments.begin() + 1, arguments.end(), isDegrees);
    if (arguments[1] == 1.0 && name.find("Quantile") != std::string::npos) return first == (name == "rayleighQuantile" ? 0.0 : 1.0);
    return arguments[1] >= 1.0 && std::isfinite(arguments[1]) && arguments[1] == std::floor(arguments[1]);
}

void expectWithinItsRange(const std::string& name, const Entry& function, std::vector<double> arguments)
{
    arguments.resize(function.arguments);
    const double value = function.call(arguments);
    std::string call = name;
    for (const double argument : arguments) call += " " + std::to_string(argument);
    if (!isDefined(name, arguments))
        EXPECT_TRUE(std::isnan(value)) << call << " is " << value;
    else if (function.isProbability)
        EXPECT_TRUE(value >= 0.0 && value <= 1.0) << call << " is " << value;
    else if (name.find("Density") != std::string::npos)
        EXPECT_TRUE(value >= 0.0) << call << " is " << value;
    else
        EXPECT_FALSE(std::isnan(value)) << call;
}

// Every combination of arguments that are small, large and in between: a probability is one, nothing throws, nothing takes for ever.
TEST(ExactDistributions, stayWithinTheirRanges)
{
    const double arguments[] = {-infinity, -1e300, -2.0, -1e-300, 0.0, 5e-324, 1e-300, 1e-17, 0.05,
                                0.5,       1.0,    1.5,  27.0,    1e5, 2.1e9,  1e17,   1e300, infinity};
    for (const auto& [name, function] : functions) {
        for (const double first : arguments)
            for (const double second : arguments)
                for (const double third : arguments) {
                    expectWithinItsRange(name, function, {first, second, third});
                    if (function.arguments < 3) break;
                }
    }
}

// Far from the centre the distance to it is that of a tail without anything in it, but for rounding.
TEST(ExactDistributions, haveNothingInTheTailsOfManyDegreesOfFreedom)
{
    const double rows[][3] = {
        {1e30, 203000.0, 200000.0}, {1.9372932602257912e19, 41988302.0, 1495176.0}, {1.7444921100912018e46, 3e6, 1e6}, {1e300, 3e9, 5e9}};
    for (const auto& [f, df1, df2] : rows) {
        EXPECT_EQ(fUpperTail(f, df1, df2), 0.0) << f;
        EXPECT_EQ(fCdf(f, df1, df2), 1.0) << f;
        EXPECT_EQ(fDensity(f, df1, df2), 0.0) << f;
        EXPECT_EQ(fCdf(1.0 / f, df2, df1), 0.0) << f;
        EXPECT_EQ(fDensity(1.0 / f, df2, df1), 0.0) << f;
    }
    for (const double f : {1e-300, 1e-30, 1e-19, 1e19, 1e46, 1e300})
        for (const double df1 : {2e5, 203000.0, 3e6, 41988302.0, 3e9, 7e11})
            for (const double df2 : {2e5, 1495176.0, 1e6, 5e9, 3e12})
                for (const char* const name : {"fCdf", "fUpperTail", "fDensity"})
                    expectWithinItsRange(name, functions.at(name), {f, df1, df2});
}

// ---------------------------------------------------------------- two samples, all arrangements

TEST(ExactDistributions, countAllArrangementsOfTwoSmallSamples)
{
    const struct {
        int n1, n2;
    } rows[] = {{1, 1}, {1, 8}, {2, 2}, {3, 7}, {4, 6}, {5, 5}, {8, 8}};
    for (const auto& [n1, n2] : rows) {
        const auto size1 = static_cast<std::size_t>(n1);
        const auto size2 = static_cast<std::size_t>(n2);
        const std::map<int, int> counts = arrangementsByD(n1, n2);
        double all = 0.0;
        for (const auto& [d, count] : counts) all += count;
        double below = 0.0;
        for (const auto& [d, count] : counts) {
            const double D = static_cast<double>(d) / (n1 * n2);
            EXPECT_NEAR(smirnovCdf(D, size1, size2), below / all, 1e-15) << n1 << " and " << n2 << ", D = " << D;
            EXPECT_NEAR(smirnovUpperTail(D, size1, size2), 1.0 - below / all, 1e-15);
            const double reaching = (all - below - 0.5) / all;  // between this tail and the next smaller one
            const auto next = counts.upper_bound(d);
            if (next != counts.end())
                EXPECT_EQ(smirnovUpperQuantile(reaching, size1, size2), static_cast<double>(next->first) / (n1 * n2));
            else
                EXPECT_TRUE(std::isnan(smirnovUpperQuantile(reaching, size1, size2)));
            below += count;
            EXPECT_EQ(smirnovQuantile((below - 0.5) / all, size1, size2), D);
        }
    }
    EXPECT_NEAR(smirnovUpperTail(1.0, 100, 100), 2.0 / 9.0548514656103e58, 1e-71);  // two of "100 out of 200" arrangements
    EXPECT_TRUE(std::isnan(smirnovUpperTail(0.5, 101, 100)));
    EXPECT_TRUE(std::isnan(smirnovUpperTail(0.5, 0, 3)));
    EXPECT_TRUE(std::isnan(smirnovUpperTail(notANumber, 3, 3)));
    EXPECT_TRUE(std::isnan(smirnovUpperQuantile(-0.1, 3, 3)));
}

// Equal values have no order: D is looked for only where a class ends.
TEST(ExactDistributions, countAllArrangementsGivenTheTies)
{
    const struct {
        int n1, n2;
        std::vector<std::size_t> classes;
    } rows[] = {
        {6, 7, {2, 4, 3, 4}},
        {3, 3, {6}},
        {3, 3, {0, 3, 0, 3}},
        {1, 8, {4, 5}},
        {5, 6, {1, 3, 1, 1, 5}},
        {8, 8, {2, 2, 2, 2, 2, 2, 2, 2}},
        {4, 4, {1, 1, 1, 1, 1, 1, 1, 1}},
    };
    for (const auto& [n1, n2, classes] : rows) {
        const auto size1 = static_cast<std::size_t>(n1);
        const auto size2 = static_cast<std::size_t>(n2);
        const std::map<int, int> counts = arrangementsByD(n1, n2, classes);
        double all = 0.0;
        for (const auto& [d, count] : counts) all += count;
        double reaching = all;
        for (const auto& [d, count] : counts) {
            const double D = static_cast<double>(d) / (n1 * n2);
            EXPECT_NEAR(smirnovUpperTail(D, size1, size2, classes), reaching / all, 1e-15) << n1 << " and " << n2 << ", D = " << D;
            const double critical = smirnovUpperQuantile((reaching + 0.5) / all, size1, size2, classes);
            if (reaching < all)
                EXPECT_LE(critical, D);
            else
                EXPECT_TRUE(std::isnan(critical)) << "no level above 1";
            EXPECT_LE(smirnovUpperTail(D, size1, size2, classes), smirnovUpperTail(D, size1, size2) + 1e-15);
            reaching -= count;
        }
    }
    const double twice = 2.0 / 9.0548514656103e58;
    EXPECT_NEAR(smirnovUpperTail(1.0, 100, 100, {100, 100}), twice, 1e-71);
    EXPECT_EQ(smirnovUpperTail(1.0, 100, 100, {99, 101}), 0.0);  // the class in the middle has values of both samples
    for (const auto& classes : {std::vector<std::size_t>{}, {2, 3}, {2, 5}, {7, static_cast<std::size_t>(-1)}}) {
        EXPECT_TRUE(std::isnan(smirnovUpperTail(0.5, 3, 3, classes)));
        EXPECT_TRUE(std::isnan(smirnovUpperQuantile(0.5, 3, 3, classes)));
    }
    EXPECT_TRUE(std::isnan(smirnovUpperTail(0.5, 101, 100, {201})));
    EXPECT_TRUE(std::isnan(smirnovUpperTail(notANumber, 3, 3, {6})));
    EXPECT_TRUE(std::isnan(smirnovUpperQuantile(1.5, 3, 3, {6})));
}

// ---------------------------------------------------------------- Rayleigh

TEST(ExactDistributions, haveRayleighsTailsAndTheirQuantiles)
{
    EXPECT_EQ(expectTable("exact_rayleigh.csv", 2e-300), (std::set<std::string>{"rayleighCdf", "rayleighUpperTail"}));
    for (const TableRow& row : referenceTable("exact_rayleigh.csv")) {
        const double z = numberIn(row.cells.at(1));
        const double n = numberIn(row.cells.at(2));
        const double p = numberIn(row.cells.at(4));
        if (p > 0.5) continue;  // the other tail has the digits
        const double found = row.cells[0] == "rayleighCdf" ? rayleighQuantile(p, n) : rayleighUpperQuantile(p, n);
        EXPECT_NEAR(found, z, 1e-13 * z) << "line " << row.line;
    }
}

// R's integrate() of Kluyver's integral, piece by piece because the integrand oscillates, to t = T:
// f <- function(t) besselJ(R * t, 1) * besselJ(t, 0)^n
// 1 - R * sum(sapply(0:(2 * T - 1), function(i) integrate(f, i * 0.5, (i + 1) * 0.5, rel.tol = 1e-11)$value))
TEST(ExactDistributions, haveRayleighsTailsAsRIntegratesThem)
{
    const struct {
        double n, z, p;
    } rows[] = {
        {6, 1.0, 0.383706956},     {6, 3.0, 0.0422765704},    {6, 4.5, 0.00491339182},   {10, 0.85, 0.438395681},
        {10, 2.919, 0.0499811732}, {10, 5.0, 0.00401618947},  {10, 6.5, 0.000459920641}, {20, 0.8, 0.454839376},
        {20, 3.0, 0.0478265054},   {20, 7.5, 0.000288034966}, {50, 3.0, 0.0490256884},   {50, 8.0, 0.000257976860},
    };
    for (const auto& [n, z, p] : rows) EXPECT_NEAR(rayleighUpperTail(z, n), p, 1e-9) << n << " directions, z = " << z;
}

// R of two directions is twice the cosine of half the angle between them. The first terms for small z: of three the density of R^2 at 0
// is 3 / pi^2 times the integral of 1 / sqrt(3), which is the chance that two steps end within R of the third's start.
TEST(ExactDistributions, haveRayleighsTailsInClosedForm)
{
    constexpr double pi = 3.141592653589793;
    for (const double z : {1e-300, 1e-9, 0.3, 1.27, 1.95}) {
        EXPECT_NEAR(rayleighUpperTail(z, 2.0), 2.0 / pi * std::acos(std::sqrt(z / 2.0)), 1e-15) << z;
        EXPECT_NEAR(rayleighCdf(z, 2.0) / (2.0 / pi * std::asin(std::sqrt(z / 2.0))), 1.0, 1e-7) << z;
        EXPECT_NEAR(rayleighQuantile(rayleighCdf(z, 2.0), 2.0), z, 1e-14 * z / (2.0 - z)) << z;
    }
    for (const double z : {1e-300, 1e-30, 1e-14}) {
        EXPECT_NEAR(rayleighCdf(z, 3.0) / z, std::sqrt(3.0) / pi, 1e-13) << z;
        EXPECT_NEAR(rayleighQuantile(z, 3.0) / z, pi / std::sqrt(3.0), 1e-13) << z;
    }
    for (const double z : {0.0, 1e-9, 3.0, 600.0}) EXPECT_NEAR(rayleighUpperTail(z, 1e20) / std::exp(-z), 1.0, 1e-13) << z;
    // Pearson (1906): the terms in 1 / n after the exponential one.
    for (const double z : {0.5, 3.0, 30.0})
        EXPECT_NEAR(rayleighUpperTail(z, 1e9) / std::exp(-z), 1.0 + (2.0 * z - z * z) / 4e9, 1e-12) << z;
}

TEST(ExactDistributions, endWhereDirectionsCannotBeMoreAlike)
{
    for (const double n : {2.0, 3.0, 4.0, 30.0, 1e6, 1e17, 1e300}) {
        EXPECT_EQ(rayleighUpperTail(0.0, n), 1.0) << n;
        EXPECT_EQ(rayleighUpperTail(-1.0, n), 1.0) << n;
        EXPECT_EQ(rayleighUpperTail(n, n), 0.0) << n;
        EXPECT_EQ(rayleighUpperTail(infinity, n), 0.0) << n;
        EXPECT_EQ(rayleighCdf(0.0, n), 0.0) << n;
        EXPECT_EQ(rayleighCdf(n, n), 1.0) << n;
        EXPECT_EQ(rayleighUpperQuantile(0.0, n), n);
        EXPECT_EQ(rayleighUpperQuantile(1.0, n), 0.0);
        EXPECT_EQ(rayleighQuantile(0.0, n), 0.0);
        EXPECT_EQ(rayleighQuantile(1.0, n), n);
        EXPECT_TRUE(std::isnan(rayleighUpperQuantile(1.1, n)));
        EXPECT_TRUE(std::isnan(rayleighQuantile(-0.1, n)));
    }
    EXPECT_EQ(rayleighUpperQuantile(1e-300, 5.0), 5.0);  // the double next to it
    // One direction has R = 1.
    EXPECT_EQ(rayleighUpperTail(1.0, 1.0), 1.0);
    EXPECT_EQ(rayleighCdf(1.0, 1.0), 0.0);
    EXPECT_EQ(rayleighUpperQuantile(1.0, 1.0), 0.0);
    EXPECT_TRUE(std::isnan(rayleighUpperQuantile(0.05, 1.0)));
    EXPECT_TRUE(std::isnan(rayleighQuantile(0.05, 1.0)));
    for (const double n : {0.0, -3.0, 0.5, 3.5, infinity, notANumber}) {
        EXPECT_TRUE(std::isnan(rayleighUpperTail(0.3, n))) << n;
        EXPECT_TRUE(std::isnan(rayleighCdf(0.3, n))) << n;
        EXPECT_TRUE(std::isnan(rayleighQuantile(0.3, n))) << n;
        EXPECT_TRUE(std::isnan(rayleighUpperQuantile(0.3, n))) << n;
    }
    EXPECT_TRUE(std::isnan(rayleighUpperTail(notANumber, 5.0)));
}

}  // namespace
