// Measures how far the library's distribution functions lie from the exact ones, and writes the page docs/accuracy.md.
//
// Usage: accuracy FOLDER   the page goes to standard output, the data behind its plots to the folder

#include <wq_stat/distributions.h>

#include <boost/math/distributions/chi_squared.hpp>
#include <boost/math/distributions/fisher_f.hpp>
#include <boost/math/distributions/normal.hpp>
#include <boost/math/distributions/students_t.hpp>
#include <boost/math/policies/policy.hpp>
#include <boost/math/special_functions/gamma.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <fstream>
#include <functional>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

namespace {

// Plain doubles: the quantiles of F fail in long double at some everyday points.
using Policy = boost::math::policies::policy<boost::math::policies::promote_double<false>>;
using Fisher = boost::math::fisher_f_distribution<double, Policy>;

using boost::math::cdf;
using boost::math::complement;
using boost::math::quantile;

using Degrees = std::vector<std::size_t>;
const Degrees evenDegrees = {2, 4, 6, 8, 10, 12, 16, 20, 24, 30, 40, 60, 100, 200, 500, 1000};
const Degrees oddDegrees = {1, 3, 5, 7, 9, 11, 15, 19, 25, 29, 41, 61, 101, 201, 501, 1001};
const Degrees allDegrees = [] {
    Degrees all = evenDegrees;
    all.insert(all.end(), oddDegrees.begin(), oddDegrees.end());
    std::sort(all.begin(), all.end());
    return all;
}();
const std::vector<double> probabilities = {0.001, 0.005, 0.01, 0.025, 0.05, 0.1, 0.2, 0.3, 0.4, 0.5,
                                           0.6,   0.7,   0.8,  0.9,   0.95, 0.975, 0.99, 0.995, 0.999};
const std::vector<double> upperProbabilities = {0.9, 0.95, 0.975, 0.99, 0.995, 0.999};

enum class Measure { absolute, relative };

/** The departures of one function over a grid. */
class Row {
public:
    Row(std::string function, std::string grid, Measure kind, std::string shownIn)
        : name(std::move(function)), range(std::move(grid)), measure(kind), analyses(std::move(shownIn))
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
        const double middle = departures[departures.size() / 2];
        std::printf("| `%s` | %s | %s | %.1e | %.1e | %s | %s |\n", name.c_str(), range.c_str(),
                    measure == Measure::relative ? "relative" : "absolute", middle, worst, where.c_str(), analyses.c_str());
    }

private:
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

double exactF(double f, std::size_t df1, std::size_t df2)
{
    return cdf(Fisher(static_cast<double>(df1), static_cast<double>(df2)), f);
}

double exactFPoint(double p, std::size_t df1, std::size_t df2)
{
    return quantile(Fisher(static_cast<double>(df1), static_cast<double>(df2)), p);
}

void tProb(const char* grid, const Degrees& degrees)
{
    Row row("t_Prob", grid, Measure::absolute, "regressions (pB), correlation, several y per x");
    for (const std::size_t df : degrees)
        for (double t = 0.0; t <= 6.0; t += 0.25)
            row.take(arguments("%g, %zu, false", t, df), wq_lib::t_Prob(t, df, false),
                     2.0 * cdf(complement(boost::math::students_t(static_cast<double>(df)), t)));
    row.print();
}

void tPercentPoint(const char* grid, const Degrees& degrees)
{
    Row row("t_PercentPoint", grid, Measure::relative, "one sample, regressions, correlation limits");
    for (const std::size_t df : degrees)
        for (const double alpha : {0.2, 0.1, 0.05, 0.025, 0.02, 0.01, 0.005, 0.001})
            row.take(arguments("%g, %zu", alpha, df), wq_lib::t_PercentPoint(alpha, df),
                     quantile(complement(boost::math::students_t(static_cast<double>(df)), alpha / 2.0)));
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

double kolmogorovQ(double lambda)
{
    double sum = 0.0;
    if (lambda < 1.0) {
        const double pi = 3.14159265358979323846;
        for (int k = 1; k < 40; k += 2) sum += std::exp(-(k * k) * pi * pi / (8.0 * lambda * lambda));
        return 1.0 - std::sqrt(2.0 * pi) / lambda * sum;
    }
    for (int j = 1; j < 40; ++j) sum += (j % 2 == 1 ? 2.0 : -2.0) * std::exp(-2.0 * j * j * lambda * lambda);
    return sum;
}

void printTable()
{
    std::puts("| function | arguments | departure | median | worst | where | shows in |");
    std::puts("|---|---|---|---|---|---|---|");
    const boost::math::normal normal;
    {
        Row row("normalProb", "x = -5 ... 5", Measure::absolute, "(for hosts)");
        for (double x = -5.0; x <= 5.0; x += 0.125) row.take(arguments("%g", x, 0), wq_lib::normalProb(x), cdf(normal, x));
        row.print();
    }
    {
        Row row("normalProbApprox", "x = -5 ... 5", Measure::absolute, "(for hosts)");
        for (double x = -5.0; x <= 5.0; x += 0.125) row.take(arguments("%g", x, 0), wq_lib::normalProbApprox(x), cdf(normal, x));
        row.print();
    }
    {
        Row row("normalPercentPoint", "p = 0.001 ... 0.999", Measure::absolute, "all critical values of t and chi-square");
        for (const double p : probabilities) row.take(arguments("%g", p, 0), wq_lib::normalPercentPoint(p), quantile(normal, p));
        row.print();
    }
    tProb("even df 2 ... 1000, t = 0 ... 6", evenDegrees);
    tProb("**odd df** 1 ... 1001, t = 0 ... 6", oddDegrees);
    tPercentPoint("df 1", {1});
    tPercentPoint("df 2 ... 4", {2, 3, 4});
    tPercentPoint("df 5 ... 1001", Degrees(allDegrees.begin() + 4, allDegrees.end()));
    {
        Row row("chiSquareProb", "df 1 ... 1001, p = 0.001 ... 0.999", Measure::absolute, "goodness of fit (p)");
        for (const std::size_t df : allDegrees)
            for (const double p : probabilities) {
                const boost::math::chi_squared distribution(static_cast<double>(df));
                const double x = quantile(distribution, p);
                row.take(arguments("%.4g, %zu", x, df), wq_lib::chiSquareProb(x, df), cdf(distribution, x));
            }
        row.print();
    }
    const auto chiSquarePoint = [](const char* grid, const Degrees& degrees, const std::vector<double>& levels) {
        Row row("chiSquarePoint", grid, Measure::relative, "goodness of fit (decision)");
        for (const std::size_t df : degrees)
            for (const double p : levels)
                row.take(arguments("%g, %zu", p, df), wq_lib::chiSquarePoint(p, df),
                         quantile(boost::math::chi_squared(static_cast<double>(df)), p));
        row.print();
    };
    chiSquarePoint("df 1, p = 0.9 ... 0.999", {1}, upperProbabilities);
    chiSquarePoint("df 2 ... 1001, p = 0.9 ... 0.999", Degrees(allDegrees.begin() + 1, allDegrees.end()), upperProbabilities);
    chiSquarePoint("df 1 ... 1001, p = 0.001 ... 0.8", allDegrees, {0.001, 0.01, 0.05, 0.1, 0.2, 0.5, 0.8});
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
    {
        Row row("lnGamma", "integers and half-integers to 1000", Measure::relative, "chi-square and F");
        for (double x = 2.5; x <= 1000.0; x += 0.5) row.take(arguments("%g", x, 0), wq_lib::lnGamma(x), boost::math::lgamma(x));
        row.print();
    }
    {
        Row row("D_Prob", "lambda 0.3 ... 4", Measure::absolute, "(for hosts)");
        for (double lambda = 0.3; lambda <= 4.0; lambda += 0.05) row.take(arguments("%g", lambda, 0), wq_lib::D_Prob(lambda), kolmogorovQ(lambda));
        row.print();
    }
}

void writePlotData(const std::string& folder)
{
    std::vector<double> degrees;
    for (int df = 2; df <= 100; ++df) degrees.push_back(df);
    writeCurve(folder + "/accuracy_F_point.dat", degrees, [](double df) { return wq_lib::F_PercentPoint(0.95, 1, static_cast<std::size_t>(df)); },
               [](double df) { return exactFPoint(0.95, 1, static_cast<std::size_t>(df)); });
    std::vector<double> ts;
    for (double t = 0.0; t <= 6.0; t += 0.05) ts.push_back(t);
    const boost::math::students_t student(9.0);
    writeCurve(folder + "/accuracy_t_odd.dat", ts, [](double t) { return wq_lib::t_Prob(t, 9, false); },
               [&](double t) { return 2.0 * cdf(complement(student, t)); });
    std::vector<double> levels;
    for (double p = 0.01; p < 0.995; p += 0.01) levels.push_back(p);
    writeCurve(folder + "/accuracy_chi_square.dat", levels, [](double p) { return wq_lib::chiSquarePoint(p, 1); },
               [](double p) { return quantile(boost::math::chi_squared(1.0), p); });
    std::vector<double> fs;
    for (double f = 0.02; f <= 8.0; f += 0.02) fs.push_back(f);
    writeCurve(folder + "/accuracy_F_prob.dat", fs, [](double f) { return wq_lib::F_Prob(f, 1, 28); }, [](double f) { return exactF(f, 1, 28); });
}

}  // namespace

const char* const introduction = R"(# Accuracy of the distribution functions

This page is written by `tools/accuracy`, which compares the library with Boost.Math; a test keeps it true.

The library's distribution functions are short textbook approximations, and some of them leave the textbook. Every report and
every decision of the library rests on the values below, so they stay as they are. Where a decision matters, ask for the exact one:
`wqstat ... --textbook`, or the functions of R, Boost or GSL.

Four things to know:

- **Odd degrees of freedom in `t_Prob`.** The factor is pi/2 where the textbook has 2/pi, and the result is no probability: it may be
  negative or above 1. It is stored as `pB` of the regressions and shown as `p` of the t test of the correlation.
- **One degree of freedom in the numerator of F** (an Anova of two groups). The last reduction steps of `betaRatio` differ from the
  published algorithm, and with a half-integer parameter the result jumps. The critical value `F_PercentPoint(0.95, 1, df2)` is too low
  from df2 = 10 on, and 3 df2/(df2 - 2), which goes to 3, from df2 = 26 on; the textbook goes to 3.84. An F between the two is called
  significant by the library alone. `F_Prob` itself may be far outside 0 ... 1 for an F near 1.
- **Quantiles of F below the median** solve for another distribution unless both degrees of freedom are equal.
- **Quantiles of t and chi-square** inherit up to 0.003 from the normal quantile; with 1 to 4 degrees of freedom they are off by percents.

## Measured departures

Absolute departures of probabilities, relative departures of quantiles, over the whole grid named. df stands for all of 1 ... 11, 12, 15,
16, 19, 20, 24, 25, 29, 30, 40, 41, 60, 61, 100, 101, 200, 201, 500, 501, 1000, 1001, or the even or odd ones among them.
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
