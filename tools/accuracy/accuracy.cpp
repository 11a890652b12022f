// Measures how far the library's distribution functions lie from the exact ones, and writes the first part of docs/accuracy.md.
//
// Usage: accuracy FOLDER   the text goes to standard output, the data behind its plots to the folder

#include "numbers/pi.h"

#include <wq_exact/distributions.h>
#include <wq_stat/distributions.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <fstream>
#include <functional>
#include <initializer_list>
#include <iostream>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

namespace {

using Degrees = std::vector<std::size_t>;
const Degrees evenDegrees = {2, 4, 6, 8, 10, 12, 16, 20, 24, 30, 40, 60, 100, 200, 500, 1000};
const Degrees oddDegrees = {1, 3, 5, 7, 9, 11, 15, 19, 25, 29, 41, 61, 101, 201, 501, 1001};
const Degrees allDegrees = [] {
    Degrees all = evenDegrees;
    all.insert(all.end(), oddDegrees.begin(), oddDegrees.end());
    std::sort(all.begin(), all.end());
    return all;
}();
const std::vector<double> probabilities = {0.001, 0.005, 0.01, 0.025, 0.05, 0.1,   0.2,  0.3,   0.4,  0.5,
                                           0.6,   0.7,   0.8,  0.9,   0.95, 0.975, 0.99, 0.995, 0.999};
const std::vector<double> upperProbabilities = {0.9, 0.95, 0.975, 0.99, 0.995, 0.999};

enum class Measure { absolute, relative };

/** The departures of one function over a grid. */
class Row {
public:
    Row(std::string function, std::string grid, Measure kind, std::string shownIn)
        : name(std::move(function)),
          range(std::move(grid)),
          measure(kind),
          analyses(std::move(shownIn))
    {
    }

    void take(const std::string& arguments, double library, double exact)
    {
        const double difference = std::fabs(library - exact);
        const double departure = measure == Measure::relative ? difference / std::fabs(exact) : difference;
        departures.push_back(std::isnan(departure) ? HUGE_VAL : departure);
        if (departures.back() > worst || departures.size() == 1) {
            worst = departures.back();
            char text[160];
            std::snprintf(text, sizeof text, "%s(%s) = %.4g, exact %.4g", name.c_str(), arguments.c_str(), library, exact);
            where = text;
        }
    }

    void print()
    {
        std::sort(departures.begin(), departures.end());
        const std::string middle = shown(departures[departures.size() / 2]);
        std::printf("| `%s` | %s | %s | %s | %s | %s | %s |\n", name.c_str(), range.c_str(),
                    measure == Measure::relative ? "relative" : "absolute", middle.c_str(), shown(worst).c_str(),
                    worst < noise ? "" : where.c_str(), analyses.c_str());
    }

private:
    static constexpr double noise = 1e-13;  // less is rounding, which is another one on another processor

    static std::string shown(double departure)
    {
        if (departure < noise) return "< 1e-13";
        char text[40];
        std::snprintf(text, sizeof text, "%.1e", departure);
        return text;
    }

    std::string name;
    std::string range;
    Measure measure;
    std::string analyses;
    std::vector<double> departures;
    double worst = 0.0;
    std::string where;
};

std::string arguments(const char* format, double a, std::size_t b)
{
    char text[80];
    std::snprintf(text, sizeof text, format, a, b);
    return text;
}

std::string arguments(const char* format, double a, std::size_t b, std::size_t c)
{
    char text[80];
    std::snprintf(text, sizeof text, format, a, b, c);
    return text;
}

std::string arguments(std::initializer_list<double> values)
{
    std::string list;
    for (const double value : values) {
        char text[40];
        std::snprintf(text, sizeof text, "%s%.4g", list.empty() ? "" : ", ", value);
        list += text;
    }
    return list;
}

double exactF(double f, std::size_t df1, std::size_t df2) { return wq_exact::fCdf(f, static_cast<double>(df1), static_cast<double>(df2)); }

double exactFPoint(double p, std::size_t df1, std::size_t df2)
{
    return wq_exact::fQuantile(p, static_cast<double>(df1), static_cast<double>(df2));
}

void tProb(const char* grid, const Degrees& degrees, double from, double to)
{
    Row row("t_Prob", grid, Measure::absolute, "regressions (pB), correlation, several y per x");
    for (const std::size_t df : degrees)
        for (double t = from; t <= to; t += 0.25)
            row.take(arguments("%g, %zu, false", t, df), wq_lib::t_Prob(t, df, false), wq_exact::tTwoSided(t, static_cast<double>(df)));
    row.print();
}

void tPercentPoint(const char* grid, const Degrees& degrees)
{
    Row row("t_PercentPoint", grid, Measure::relative, "one sample, regressions, correlation limits");
    for (const std::size_t df : degrees)
        for (const double alpha : {0.2, 0.1, 0.05, 0.025, 0.02, 0.01, 0.005, 0.001})
            row.take(arguments("%g, %zu", alpha, df), wq_lib::t_PercentPoint(alpha, df),
                     wq_exact::tTwoSidedQuantile(alpha, static_cast<double>(df)));
    row.print();
}

void fProb(const char* grid, const Degrees& degrees1, const Degrees& degrees2)
{
    Row row("F_Prob", grid, Measure::absolute, "Anova, several y per x, correlation (F), two variances");
    for (const std::size_t df1 : degrees1)
        for (const std::size_t df2 : degrees2)
            for (const double p : probabilities) {
                const double f = exactFPoint(p, df1, df2);
                row.take(arguments("%.4g, %zu, %zu", f, df1, df2), wq_lib::F_Prob(f, df1, df2), exactF(f, df1, df2));
            }
    row.print();
}

void fPercentPoint(const char* grid, const std::vector<double>& levels, const Degrees& degrees1, const Degrees& degrees2)
{
    Row row("F_PercentPoint", grid, Measure::relative, "Anova, several y per x, two variances");
    for (const std::size_t df1 : degrees1)
        for (const std::size_t df2 : degrees2)
            for (const double p : levels)
                row.take(arguments("%g, %zu, %zu", p, df1, df2), wq_lib::F_PercentPoint(p, df1, df2), exactFPoint(p, df1, df2));
    row.print();
}

double lnBeta(double p, double q) { return wq_lib::lnGamma(p) + wq_lib::lnGamma(q) - wq_lib::lnGamma(p + q); }

/** The incomplete beta function is the distribution of f p / (f p + q), F with 2p and 2q degrees of freedom. */
double exactBeta(double x, double p, double q) { return wq_exact::fCdf(q * x / (p * (1.0 - x)), 2.0 * p, 2.0 * q); }

double exactBetaPoint(double level, double p, double q)
{
    const double f = wq_exact::fQuantile(level, 2.0 * p, 2.0 * q);
    return p * f / (p * f + q);
}

const std::vector<double> wholeShapes = {1, 2, 3, 5, 10, 30, 100};
const std::vector<double> halfShapes = {0.5, 1.5, 2.5, 5.5, 10.5, 30.5, 100.5};

void betaRatio(const char* grid, const std::vector<double>& ps, const std::vector<double>& qs)
{
    Row row("betaRatio", grid, Measure::absolute, "all that rests on F");
    for (const double p : ps)
        for (const double q : qs)
            for (const double level : probabilities) {
                const double x = exactBetaPoint(level, p, q);
                row.take(arguments({x, p, q}) + ", ln B", wq_lib::betaRatio(x, p, q, lnBeta(p, q)), exactBeta(x, p, q));
            }
    row.print();
}

void inverseBetaRatio(const char* grid, const std::vector<double>& levels, bool sameShapes)
{
    Row row("inverseBetaRatio", grid, Measure::absolute, "critical values of F");
    for (const double p : wholeShapes)
        for (const double q : wholeShapes)
            for (const double level : levels)
                if ((p == q) == sameShapes)
                    row.take(arguments({level, p, q}) + ", ln B", wq_lib::inverseBetaRatio(level, p, q, lnBeta(p, q)),
                             exactBetaPoint(level, p, q));
    row.print();
}

/** The data of a plot: a line per abscissa, the library's value and the exact one. */
void writeCurve(const std::string& fileName, const std::vector<double>& abscissas, const std::function<double(double)>& library,
                const std::function<double(double)>& exact)
{
    std::ofstream file(fileName);
    for (const double x : abscissas) {
        char line[120];
        std::snprintf(line, sizeof line, "%.6g %.6g %.6g\n", x, library(x), exact(x));
        file << line;
    }
}

/** P(D < d) of n values against a continuous distribution, by the matrix of Durbin as Marsaglia, Tsang and Wang (2003) fill it. */
double kolmogorovOneSample(double d, std::size_t n)
{
    using Matrix = std::vector<std::vector<double>>;
    const double nd = static_cast<double>(n) * d;
    const auto k = static_cast<std::size_t>(nd) + 1;
    const std::size_t m = 2 * k - 1;
    const double h = static_cast<double>(k) - nd;
    Matrix base(m, std::vector<double>(m));
    for (std::size_t i = 0; i < m; ++i)
        for (std::size_t j = 0; j < m; ++j) base[i][j] = i + 1 < j ? 0.0 : 1.0;
    for (std::size_t i = 0; i < m; ++i) {
        base[i][0] -= std::pow(h, static_cast<double>(i + 1));
        base[m - 1][i] -= std::pow(h, static_cast<double>(m - i));
    }
    base[m - 1][0] += 2.0 * h - 1.0 > 0.0 ? std::pow(2.0 * h - 1.0, static_cast<double>(m)) : 0.0;
    for (std::size_t i = 0; i < m; ++i)
        for (std::size_t j = 0; j < std::min(i + 1, m); ++j)
            for (std::size_t g = 1; g <= i + 1 - j; ++g) base[i][j] /= static_cast<double>(g);

    const auto product = [m](const Matrix& a, const Matrix& b) {
        Matrix c(m, std::vector<double>(m));
        for (std::size_t i = 0; i < m; ++i)
            for (std::size_t l = 0; l < m; ++l)
                for (std::size_t j = 0; j < m; ++j) c[i][j] += a[i][l] * b[l][j];
        return c;
    };
    Matrix power(m, std::vector<double>(m));
    for (std::size_t i = 0; i < m; ++i) power[i][i] = 1.0;
    const auto rescale = [k](Matrix& a, double& logOfScale) {
        const double size = a[k - 1][k - 1];
        for (auto& line : a)
            for (double& element : line) element /= size;
        logOfScale += std::log(size);
    };
    double logOfPower = 0.0;  // what was taken out of the matrices, so that they stay within range
    double logOfBase = 0.0;
    for (std::size_t rest = n; rest > 0; rest /= 2) {
        if (rest % 2 == 1) {
            power = product(power, base);
            logOfPower += logOfBase;
            rescale(power, logOfPower);
        }
        base = product(base, base);
        logOfBase *= 2.0;
        rescale(base, logOfBase);
    }
    const double size = static_cast<double>(n);
    return std::exp(std::log(power[k - 1][k - 1]) + logOfPower + std::lgamma(size + 1.0) - size * std::log(size));
}

/** P(D >= d) of two samples of a continuous distribution, by counting the paths through the lattice that stay within d. */
double kolmogorovTwoSamples(double d, std::size_t n1, std::size_t n2)
{
    const double a = static_cast<double>(n1);
    const double b = static_cast<double>(n2);
    std::vector<double> within(n2 + 1);  // share of the paths to (i, j) that stayed within
    for (std::size_t i = 0; i <= n1; ++i)
        for (std::size_t j = 0; j <= n2; ++j) {
            const double x = static_cast<double>(i);
            const double y = static_cast<double>(j);
            if (std::fabs(x / a - y / b) >= d - 1e-9)
                within[j] = 0.0;
            else if (i + j == 0)
                within[j] = 1.0;
            else
                within[j] = ((i > 0 ? x * within[j] : 0.0) + (j > 0 ? y * within[j - 1] : 0.0)) / (x + y);
        }
    return 1.0 - within[n2];
}

/** The smallest multiple of 1/steps near about from which on P(d) is at most alpha. */
double criticalD(double alpha, double about, double steps, const std::function<double(double)>& probability)
{
    double low = std::floor(0.7 * about * steps);
    double high = std::ceil(1.3 * about * steps);
    while (high - low > 1.0) {
        const double middle = std::floor((low + high) / 2.0);
        (probability(middle / steps) > alpha ? low : high) = middle;
    }
    return high / steps;
}

/** P(R^2/n > z) of n directions without a preference (Kluyver 1906): 1 - r times the integral of J1(r t) J0(t)^n, by Simpson's rule. */
double rayleighExact(double z, std::size_t n)
{
    const double r = std::sqrt(z * static_cast<double>(n));
    const auto f = [r, n](double t) { return std::cyl_bessel_j(1.0, r * t) * std::pow(std::cyl_bessel_j(0.0, t), static_cast<double>(n)); };
    constexpr int intervals = 4000;
    const double end = n < 50 ? 40.0 : 2.4;  // there the power is below 1e-6, and the rest of the integral with it
    double sum = f(0.0) + f(end);
    for (int i = 1; i < intervals; ++i) sum += (i % 2 == 1 ? 4.0 : 2.0) * f(end * i / intervals);
    return 1.0 - r * sum * end / intervals / 3.0;
}

double exactFactorial(unsigned n)
{
    long double product = 1.0L;
    for (unsigned i = 2; i <= n; ++i) product *= static_cast<long double>(i);
    return static_cast<double>(product);
}

double exactBinomial(std::size_t k, std::size_t n, double p)
{
    const auto lnFactorial = [](std::size_t i) { return std::lgamma(static_cast<long double>(i) + 1.0L); };
    const long double successes = static_cast<long double>(k) * std::log(static_cast<long double>(p));
    const long double failures = static_cast<long double>(n - k) * std::log1p(-static_cast<long double>(p));
    return static_cast<double>(std::exp(lnFactorial(n) - lnFactorial(k) - lnFactorial(n - k) + successes + failures));
}

void factorials()
{
    Row row("factorial", "n = 0 ... 170", Measure::relative, "(for hosts)");
    for (unsigned n = 0; n <= 170; ++n) row.take(arguments({1.0 * n}), wq_lib::factorial(n), exactFactorial(n));
    row.print();
}

void simpsonIntegrals()
{
    Row row("simpsonIntegral", "exp, sin, 1/x from a to a + 2", Measure::absolute, "(for hosts)");
    for (const double a : {0.5, 1.0, 3.0}) {
        row.take("exp, " + arguments({a, a + 2.0}), wq_lib::simpsonIntegral([](double x) { return std::exp(x); }, a, a + 2.0),
                 std::exp(a + 2.0) - std::exp(a));
        row.take("sin, " + arguments({a, a + 2.0}), wq_lib::simpsonIntegral([](double x) { return std::sin(x); }, a, a + 2.0),
                 std::cos(a) - std::cos(a + 2.0));
        row.take("1/x, " + arguments({a, a + 2.0}), wq_lib::simpsonIntegral([](double x) { return 1.0 / x; }, a, a + 2.0),
                 std::log((a + 2.0) / a));
    }
    row.print();
}

void quadratureIntegrals()
{
    Row row("quadratureIntegral", "exp, sin, 1/x from a to b", Measure::absolute, "normalProb");
    for (const double a : {0.5, 1.0, 3.0})
        for (const double b : {4.0, 7.0}) {
            row.take("exp, " + arguments({a, b}), wq_lib::quadratureIntegral([](double x) { return std::exp(x); }, a, b),
                     std::exp(b) - std::exp(a));
            row.take("sin, " + arguments({a, b}), wq_lib::quadratureIntegral([](double x) { return std::sin(x); }, a, b),
                     std::cos(a) - std::cos(b));
            row.take("1/x, " + arguments({a, b}), wq_lib::quadratureIntegral([](double x) { return 1.0 / x; }, a, b), std::log(b / a));
        }
    row.print();
}

void binomialProbabilities()
{
    Row row("binomial", "n to 1000, p = 0.01 ... 0.5, P above 1e-12", Measure::relative, "(for hosts)");
    for (const std::size_t n : Degrees{1, 5, 10, 50, 100, 1000})
        for (const double p : {0.01, 0.1, 0.3, 0.5})
            for (std::size_t k = 0; k <= n; k += std::max<std::size_t>(1, n / 20)) {
                const double exact = exactBinomial(k, n, p);
                if (exact > 1e-12)
                    row.take(arguments({static_cast<double>(k), static_cast<double>(n), p}), wq_lib::binomial(k, n, p), exact);
            }
    row.print();
}

void normalDensities()
{
    Row row("normalDensity", "x = -5 ... 5", Measure::relative, "normalProb");
    for (double x = -5.0; x <= 5.0; x += 0.125) row.take(arguments({x}), wq_lib::normalDensity(x), wq_exact::normalDensity(x));
    row.print();
}

void fishersZ()
{
    Row row("z_TransformBig", "r = -0.99 ... 0.99", Measure::absolute, "correlation (limits)");
    for (int r = -99; r <= 99; ++r) row.take(arguments({r / 100.0}), wq_lib::z_TransformBig(r / 100.0), std::atanh(r / 100.0));
    row.print();
}

void fishersZBack()
{
    Row row("z_to_r", "z = -5 ... 5", Measure::absolute, "(for hosts)");
    for (double z = -5.0; z <= 5.0; z += 0.125) row.take(arguments({z}), wq_lib::z_to_r(z), std::tanh(z));
    row.print();
}

void criticalDOfOneSample()
{
    Row row("D_GoodnessOfFit", "n = 101 ... 300, alpha = 0.2 ... 0.01", Measure::relative, "(for hosts)");
    for (const std::size_t n : Degrees{101, 200, 300})
        for (const double alpha : {0.2, 0.1, 0.05, 0.01}) {
            const double d = wq_lib::D_GoodnessOfFit(alpha, n);
            row.take(arguments("%g, %zu", alpha, n), d,
                     criticalD(alpha, d, 1e6, [n](double x) { return 1.0 - kolmogorovOneSample(x, n); }));
        }
    row.print();
}

void criticalDOfTwoSamples()
{
    Row row("D_TwoSamples", "sizes 27 ... 400, alpha = 0.2 ... 0.01, against the smallest D there can be that is significant",
            Measure::relative, "Kolmogorov-Smirnov test (decision)");
    for (const std::size_t n1 : Degrees{27, 40, 100, 400})
        for (const std::size_t n2 : Degrees{27, 40, 50, 100, 400}) {
            const auto probability = [n1, n2](double x) { return kolmogorovTwoSamples(x, n1, n2); };
            for (const double alpha : {0.2, 0.1, 0.05, 0.01}) {
                const double d = wq_lib::D_TwoSamples(alpha, n1, n2);
                row.take(arguments("%g, %zu, %zu", alpha, n1, n2), d,
                         criticalD(alpha, d, static_cast<double>(std::lcm(n1, n2)), probability));
            }
        }
    row.print();
}

void rayleigh(const char* grid, const Degrees& sizes)
{
    Row row("rayleighsProb", grid, Measure::absolute, "circular (p)");
    for (const std::size_t n : sizes)
        for (double z = 0.25; z <= std::min(7.0, 0.9 * static_cast<double>(n)); z += 0.5)
            row.take(arguments("%g, %zu", z, n), wq_lib::rayleighsProb(z, n), rayleighExact(z, n));
    row.print();
}

void angles()
{
    Row row("computeAngle", "the circle in steps of 1 degree, and 1.5e-8 beside the axes", Measure::absolute, "circular");
    const double turn = wq_lib::detail::twoPi;
    const auto take = [&](double x, double y) {
        const double exact = std::atan2(y, x);
        row.take(arguments({x, y}), wq_lib::computeAngle(x, y), exact < 0.0 ? exact + turn : exact);
    };
    for (int degree = 0; degree < 360; ++degree) take(std::cos(turn * degree / 360.0), std::sin(turn * degree / 360.0));
    for (const double near : {1.5e-8, -1.5e-8})
        for (const double side : {1.0, -1.0}) {
            if (near > 0.0 || side < 0.0) take(side, near);
            take(near, side);
        }
    row.print();
}

void printFurther()
{
    factorials();
    betaRatio("p and q whole, to 100", wholeShapes, wholeShapes);
    betaRatio("**p half-integer**, q whole, to 100", halfShapes, wholeShapes);
    betaRatio("p whole, **q half-integer**, to 100", wholeShapes, halfShapes);
    inverseBetaRatio("p and q whole, alpha = 0.001 ... 0.5", {0.001, 0.01, 0.05, 0.1, 0.3, 0.5}, false);
    inverseBetaRatio("p = q, whole, alpha = 0.6 ... 0.999", {0.6, 0.9, 0.95, 0.999}, true);
    inverseBetaRatio("p and q whole, **not equal, alpha = 0.6 ... 0.999**", {0.6, 0.9, 0.95, 0.999}, false);
    simpsonIntegrals();
    quadratureIntegrals();
    binomialProbabilities();
    normalDensities();
    fishersZ();
    fishersZBack();
    criticalDOfOneSample();
    criticalDOfTwoSamples();
    rayleigh("n = 7 ... 49, z to 7", {7, 8, 10, 15, 20, 30, 49});
    rayleigh("n = 50 ... 500, z to 7", {50, 100, 500});
    angles();
}

void normals()
{
    {
        Row row("normalProb", "x = -5 ... 5", Measure::absolute, "(for hosts)");
        for (double x = -5.0; x <= 5.0; x += 0.125) row.take(arguments("%g", x, 0), wq_lib::normalProb(x), wq_exact::normalCdf(x));
        row.print();
    }
    {
        Row row("normalProbApprox", "x = -5 ... 5", Measure::absolute, "(for hosts)");
        for (double x = -5.0; x <= 5.0; x += 0.125) row.take(arguments("%g", x, 0), wq_lib::normalProbApprox(x), wq_exact::normalCdf(x));
        row.print();
    }
    {
        Row row("normalPercentPoint", "p = 0.001 ... 0.999", Measure::absolute, "all critical values of t and chi-square");
        for (const double p : probabilities) row.take(arguments("%g", p, 0), wq_lib::normalPercentPoint(p), wq_exact::normalQuantile(p));
        row.print();
    }
}

void chiSquares()
{
    {
        Row row("chiSquareProb", "df 1 ... 1001, p = 0.001 ... 0.999", Measure::absolute, "goodness of fit (p)");
        for (const std::size_t df : allDegrees)
            for (const double p : probabilities) {
                const double x = wq_exact::chiSquareQuantile(p, static_cast<double>(df));
                row.take(arguments("%.4g, %zu", x, df), wq_lib::chiSquareProb(x, df), wq_exact::chiSquareCdf(x, static_cast<double>(df)));
            }
        row.print();
    }
    const auto chiSquarePoint = [](const char* grid, const Degrees& degrees, const std::vector<double>& levels) {
        Row row("chiSquarePoint", grid, Measure::relative, "goodness of fit (decision)");
        for (const std::size_t df : degrees)
            for (const double p : levels)
                row.take(arguments("%g, %zu", p, df), wq_lib::chiSquarePoint(p, df),
                         wq_exact::chiSquareQuantile(p, static_cast<double>(df)));
        row.print();
    };
    chiSquarePoint("df 1, p = 0.9 ... 0.999", {1}, upperProbabilities);
    chiSquarePoint("df 2 ... 1001, p = 0.9 ... 0.999", Degrees(allDegrees.begin() + 1, allDegrees.end()), upperProbabilities);
    chiSquarePoint("df 1 ... 1001, p = 0.001 ... 0.8", allDegrees, {0.001, 0.01, 0.05, 0.1, 0.2, 0.5, 0.8});
}

void lnGammas()
{
    Row row("lnGamma", "integers and half-integers to 1000", Measure::relative, "chi-square and F");
    for (double x = 2.5; x <= 1000.0; x += 0.5) row.take(arguments("%g", x, 0), wq_lib::lnGamma(x), std::lgamma(x));
    row.print();
}

void kolmogorovs()
{
    Row row("D_Prob", "lambda 0.3 ... 4", Measure::absolute, "(for hosts)");
    for (double lambda = 0.3; lambda <= 4.0; lambda += 0.05)
        row.take(arguments("%g", lambda, 0), wq_lib::D_Prob(lambda), wq_exact::kolmogorovUpperTail(lambda));
    row.print();
}

void printTable()
{
    std::puts("| function | arguments | departure | median | worst | where | shows in |");
    std::puts("|---|---|---|---|---|---|---|");
    normals();
    tProb("even df 2 ... 1000, t = 0 ... 6", evenDegrees, 0.0, 6.0);
    tProb("even df 2 ... 1000, **t = -6 ... -0.25**", evenDegrees, -6.0, -0.25);
    tProb("**odd df** 1 ... 1001, t = 0 ... 6", oddDegrees, 0.0, 6.0);
    tPercentPoint("df 1", {1});
    tPercentPoint("df 2 ... 4", {2, 3, 4});
    tPercentPoint("df 5 ... 1001", Degrees(allDegrees.begin() + 4, allDegrees.end()));
    chiSquares();
    fProb("both df even", evenDegrees, evenDegrees);
    fProb("**df1 odd**, df2 even", oddDegrees, evenDegrees);
    fProb("df1 even, **df2 odd**", evenDegrees, oddDegrees);
    fProb("**both df odd**", oddDegrees, oddDegrees);
    fPercentPoint("both df even, p = 0.9 ... 0.999", upperProbabilities, evenDegrees, evenDegrees);
    fPercentPoint("**df1 = 1**, any df2, p = 0.9 ... 0.999", upperProbabilities, {1}, allDegrees);
    fPercentPoint("**df1 = 3, 5, 7**, any df2, p = 0.9 ... 0.999", upperProbabilities, {3, 5, 7}, allDegrees);
    fPercentPoint("**df1 odd from 9**, any df2, p = 0.9 ... 0.999", upperProbabilities, Degrees(oddDegrees.begin() + 4, oddDegrees.end()),
                  allDegrees);
    fPercentPoint("df1 even, **df2 odd**, p = 0.9 ... 0.999", upperProbabilities, evenDegrees, oddDegrees);
    fPercentPoint("**p = 0.01 ... 0.4**, any df", {0.01, 0.05, 0.1, 0.2, 0.4}, allDegrees, allDegrees);
    lnGammas();
    kolmogorovs();
    printFurther();
}

void writePlotData(const std::string& folder)
{
    std::vector<double> degrees;
    for (int df = 2; df <= 100; ++df) degrees.push_back(df);
    writeCurve(
        folder + "/accuracy_F_point.dat", degrees, [](double df) { return wq_lib::F_PercentPoint(0.95, 1, static_cast<std::size_t>(df)); },
        [](double df) { return exactFPoint(0.95, 1, static_cast<std::size_t>(df)); });
    std::vector<double> ts;
    for (double t = 0.0; t <= 6.0; t += 0.05) ts.push_back(t);
    writeCurve(
        folder + "/accuracy_t_odd.dat", ts, [](double t) { return wq_lib::t_Prob(t, 9, false); },
        [](double t) { return wq_exact::tTwoSided(t, 9.0); });
    std::vector<double> levels;
    for (double p = 0.01; p < 0.995; p += 0.01) levels.push_back(p);
    writeCurve(
        folder + "/accuracy_chi_square.dat", levels, [](double p) { return wq_lib::chiSquarePoint(p, 1); },
        [](double p) { return wq_exact::chiSquareQuantile(p, 1.0); });
    std::vector<double> fs;
    for (double f = 0.02; f <= 8.0; f += 0.02) fs.push_back(f);
    writeCurve(
        folder + "/accuracy_F_prob.dat", fs, [](double f) { return wq_lib::F_Prob(f, 1, 28); }, [](double f) { return exactF(f, 1, 28); });
}

}  // namespace

const char* const introduction = R"(# Accuracy of the distribution functions

This page is written by `tools/accuracy`; a test keeps it true. It compares the library with [the exact figures](exact.md) of
`libwq_exact`, with the distribution of D (one sample: the matrix of Marsaglia, Tsang and Wang, 2003; two samples: all paths counted) and of
Rayleigh's z (Kluyver's integral), and its decisions with the exact ones [where H0 holds](#how-often-h0-is-rejected-where-it-holds).

The library's distribution functions are short textbook approximations, and some of them leave the textbook. Every report and
every decision of the library rests on the values below, so they stay as they are. Where a decision matters, ask for the exact one:
`wqstat ... --textbook`, or [`wq_exact::of(analysis)`](exact.md).

Four things to know:

- **Odd degrees of freedom, and a negative t, in `t_Prob`.** With odd degrees the factor is pi/2 where the textbook has 2/pi, and the result is
  no probability: it may be negative or above 1. Of a negative t the two-sided result is 2 minus that of |t|, with even degrees too, so that it
  lies above 1 there. It is stored as `pB` of the regressions, and one minus it is shown as `p` of the t test of the correlation.
- **One degree of freedom in the numerator of F** (an Anova of two groups). The last reduction steps of `betaRatio` differ from the
  published algorithm, and with a half-integer parameter the result jumps. The critical value `F_PercentPoint(0.95, 1, df2)` is too low
  from df2 = 3 on, by more than 1 % from 8 on, and 3 df2/(df2 - 2), which goes to 3, from df2 = 26 on; the textbook goes to 3.84. An F between
  the two is called significant by the library alone. `F_Prob` itself may be far outside 0 ... 1 for an F near 1.
- **Quantiles of F below the median** solve for another distribution unless both degrees of freedom are equal.
- **Quantiles of t and chi-square** inherit up to 0.003 from the normal quantile; with 1 to 4 degrees of freedom they are off by percents, far out
  by a multiple, and the low ones of chi-square may be negative.

## Measured departures

Absolute departures of probabilities, relative departures of quantiles, over the whole grid named. df stands for all of 1 ... 11, 12, 15,
16, 19, 20, 24, 25, 29, 30, 40, 41, 60, 61, 100, 101, 200, 201, 500, 501, 1000, 1001, or the even or odd ones among them. What is below 1e-13
is rounding. `degreeToRadian`, `radianToDegree`, `computeResultant`, `computeCircleArea`, `z_TransformSmall`, `sqr` and `odd` are single formulas,
right to rounding; `quadratureRecursion` is part of `quadratureIntegral`.
)";

const char* const plots = R"(
## Pictures

The library's curve beside the exact one, where they part most.

![Critical F for one numerator degree of freedom](pictures/accuracy_F_point.svg)

![P(F) for 1 and 28 degrees of freedom](pictures/accuracy_F_prob.svg)

![Two-sided p of t for 9 degrees of freedom](pictures/accuracy_t_odd.svg)

![Chi-square quantiles for 1 degree of freedom](pictures/accuracy_chi_square.svg)
)";

int main(int count, char** words)
{
    if (count != 2) {
        std::cerr << "usage: accuracy FOLDER\n";
        return 2;
    }
    std::puts(introduction);
    printTable();
    std::fputs(plots, stdout);
    writePlotData(words[1]);
}
