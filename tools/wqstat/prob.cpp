// wqstat prob: the functions of the distributions header, called by name.
#include "command.h"

#include "command_line/arguments.h"
#include "command_line/failure.h"
#include "command_line/help_formatter.h"
#include "command_line/progress.h"
#include "results/figures.h"

#include <CLI/CLI.hpp>

#include <wq_exact/distributions.h>
#include <wq_exact/test.h>
#include <wq_stat/distributions.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace wqstat {

namespace {

using Integrand = double (*)(double);
using Arguments = std::vector<std::string>;

const std::pair<const char*, Integrand> integrands[] = {
    // clang-format off
    {"exp", [](double x) { return std::exp(x); }},
    {"log", [](double x) { return std::log(x); }},
    {"sqrt", [](double x) { return std::sqrt(x); }},
    {"sin", [](double x) { return std::sin(x); }},
    {"cos", [](double x) { return std::cos(x); }},
    {"sqr", [](double x) { return sqr(x); }},
    {"reciprocal", [](double x) { return 1.0 / x; }},
    {"normalDensity", wq_lib::normalDensity},
    // clang-format on
};

std::string integrandNames()
{
    std::string names;
    for (const auto& [name, function] : integrands) names += (names.empty() ? "" : ", ") + std::string(name);
    return names;
}

// What a parameter takes, by its type.
void convert(const std::string& text, double& value) { value = realArgument(text); }
void convert(const std::string& text, std::size_t& value) { value = countArgument(text); }
void convert(const std::string& text, long& value) { value = integerArgument(text); }
void convert(const std::string& text, bool& value) { value = flagArgument(text); }
void convert(const std::string& text, Integrand& value)
{
    for (const auto& [name, function] : integrands) {
        if (text == name) {
            value = function;
            return;
        }
    }
    throw WrongUsage(inQuotes(text) + " is no integrand; there are " + integrandNames());
}

std::string written(double value) { return shortest(value); }
std::string written(bool value) { return value ? "true" : "false"; }

/** A function with the names of its parameters. */
struct Function {
    const char* name;
    Arguments parameters;
    const char* meaning;
    std::function<std::string(const Arguments&)> call;   // with as many arguments as parameters
    std::function<double(const Arguments&)> exact = {};  // what it is named for, to the last digits; none where that is not at hand
    bool isProbability = false;
};

std::string usageOf(const Function& function)
{
    std::string usage = function.name;
    for (const std::string& parameter : function.parameters) usage += " " + parameter;
    return usage;
}

template <typename Parameter>
Parameter argument(const Function& function, const Arguments& texts, std::size_t i)
{
    return readArgument(usageOf(function) + ": " + function.parameters[i], [&] {
        Parameter value{};
        convert(texts[i], value);
        return value;
    });
}

template <typename Result, typename... Parameters, std::size_t... i>
std::string called(Result (*function)(Parameters...), const Function& description, const Arguments& texts, std::index_sequence<i...>)
{
    return written(function(argument<Parameters>(description, texts, i)...));
}

/** A row of the table; as many names as the function has parameters. */
template <typename Result, typename... Parameters, typename... Names>
Function row(const char* name, Result (*function)(Parameters...), const char* meaning, Names... names)
{
    static_assert(sizeof...(Parameters) == sizeof...(Names), "a name for each parameter");
    Function description{name, {names...}, meaning, {}};
    description.call = [function, description](const Arguments& texts) {
        return called(function, description, texts, std::index_sequence_for<Parameters...>());
    };
    return description;
}

enum class Is { probability, number };

/** A row with what the function is named for beside it. */
template <typename... Parameters, std::size_t... i>
double calledExact(double (*exact)(Parameters...), const Function& description, const Arguments& texts, std::index_sequence<i...>)
{
    return exact(argument<Parameters>(description, texts, i)...);
}

template <typename... Parameters>
Function beside(Function approximation, Is kind, double (*exact)(Parameters...))
{
    approximation.isProbability = kind == Is::probability;
    approximation.exact = [exact, approximation](const Arguments& texts) {
        return calledExact(exact, approximation, texts, std::index_sequence_for<Parameters...>());
    };
    return approximation;
}

// The exact functions with the parameters of the approximations.

using OfOne = double (*)(double);
OfOne plain(double (*exact)(double) noexcept) { return exact; }

double exactT(double t, std::size_t df, bool oneSided)
{
    return oneSided ? wq_exact::tUpperTail(t, static_cast<double>(df)) : wq_exact::tTwoSided(t, static_cast<double>(df));
}
double exactTPoint(double alpha, std::size_t df) { return wq_exact::tTwoSidedQuantile(alpha, static_cast<double>(df)); }
double exactChiSquare(double x, std::size_t df) { return wq_exact::chiSquareCdf(x, static_cast<double>(df)); }
double exactChiSquarePoint(double p, std::size_t df) { return wq_exact::chiSquareQuantile(p, static_cast<double>(df)); }
double exactF(double f, std::size_t df1, std::size_t df2) { return wq_exact::fCdf(f, static_cast<double>(df1), static_cast<double>(df2)); }
double exactFPoint(double p, std::size_t df1, std::size_t df2)
{
    return wq_exact::fQuantile(p, static_cast<double>(df1), static_cast<double>(df2));
}
/** I_x(p, q) by the F distribution with 2p and 2q degrees of freedom (NIST DLMF 8.17); BETA is known without being said. */
double exactBeta(double x, double p, double q, double)
{
    const double inside = x > 1.0 ? 1.0 : x;  // the whole distribution lies below it
    return wq_exact::fCdf(q * inside / (p * (1.0 - inside)), 2.0 * p, 2.0 * q);
}
double exactBetaPoint(double alpha, double p, double q, double)
{
    const double f = wq_exact::fQuantile(alpha, 2.0 * p, 2.0 * q);
    return std::isinf(f) ? 1.0 : p * f / (q + p * f);
}
double exactD(double alpha, std::size_t n1, std::size_t n2)
{
    if (n1 == 0 || n2 == 0) return wq_exact::none;
    if (wq_exact::canCountArrangements(n1, n2)) return wq_exact::smirnovUpperQuantile(alpha, n1, n2);
    return wq_exact::kolmogorovUpperQuantile(alpha) * std::sqrt(1.0 / static_cast<double>(n1) + 1.0 / static_cast<double>(n2));
}
double exactRayleigh(double z, std::size_t n) { return wq_exact::rayleighUpperTail(z, static_cast<double>(n)); }

/** Where gamma(x) is positive. */
double exactLnGamma(double x)
{
    const bool isDefined = x > 0.0 || (x < 0.0 && x != std::floor(x) && std::fmod(std::floor(x), 2.0) == 0.0);
    return isDefined ? static_cast<double>(std::lgamma(static_cast<long double>(x))) : wq_exact::none;
}

constexpr long double twoPi = 6.283185307179586476925286766559005768L;

/** ln n! - ln(sqrt(2 pi n) (n/e)^n), n > 0, by Stirling's series where that has all digits. */
long double stirlingError(long double n)
{
    constexpr long double few = 40.0L;
    if (n <= few) return std::lgamma(n + 1.0L) - (n + 0.5L) * std::log(n) + n - 0.5L * std::log(twoPi);
    const long double square = n * n;
    return (1.0L / 12.0L - (1.0L / 360.0L - (1.0L / 1260.0L - (1.0L / 1680.0L - 1.0L / 1188.0L / square) / square) / square) / square) / n;
}

/** x ln(x / mean) + mean - x. */
long double deviance(long double x, long double mean)
{
    const long double distance = (x - mean) / mean;
    return mean * ((1.0L + distance) * std::log1p(distance) - distance);
}

/** Loader (2000), Fast and Accurate Computation of Binomial Probabilities: no difference of large logarithms. */
double exactBinomial(std::size_t successes, std::size_t trials, double p)
{
    if (!(p >= 0.0 && p <= 1.0)) return wq_exact::none;
    if (successes > trials) return 0.0;
    const auto k = static_cast<long double>(successes);
    const auto n = static_cast<long double>(trials);
    const auto failures = static_cast<long double>(trials - successes);
    if (trials == 0) return 1.0;
    if (p == 0.0 || p == 1.0) return successes == (p == 0.0 ? 0 : trials) ? 1.0 : 0.0;
    if (successes == 0) return static_cast<double>(std::exp(n * std::log1p(-static_cast<long double>(p))));
    if (successes == trials) return static_cast<double>(std::exp(n * std::log(static_cast<long double>(p))));
    const long double errors = stirlingError(n) - stirlingError(k) - stirlingError(failures);
    const long double deviances = deviance(k, n * p) + deviance(failures, n * (1.0L - p));
    return static_cast<double>(std::sqrt(n / (twoPi * k * failures)) * std::exp(errors - deviances));
}

std::vector<Function> functions()
{
    using namespace wq_lib;
    using Integral = double (*)(Integrand, double, double);
    using Interval = double (*)(Integrand, double, double, double, double, double, double, double, double, std::size_t);
    return {
        row("factorial", factorial, "n!; -1 above 170", "N"),
        beside(row("lnGamma", lnGamma, "ln gamma(x) of an integer or half-integer; takes x steps", "X"), Is::number, exactLnGamma),
        beside(row("betaRatio", betaRatio, "incomplete beta function I_x(p, q); BETA is ln B(p, q)", "X", "P", "Q", "BETA"),
               Is::probability, exactBeta),
        beside(row("inverseBetaRatio", inverseBetaRatio, "the x at which betaRatio is ALPHA", "ALPHA", "P", "Q", "BETA"), Is::number,
               exactBetaPoint),
        row("simpsonIntegral", Integral{simpsonIntegral}, "Simpson sum from a to b; may take seconds", "INTEGRAND", "A", "B"),
        row("quadratureIntegral", Integral{quadratureIntegral}, "integral from a to b by adaptive quadrature", "INTEGRAND", "A", "B"),
        row("quadratureRecursion", Interval{quadratureRecursion}, "one interval of quadratureIntegral", "INTEGRAND", "A", "B", "M", "FA",
            "FB", "FM", "WHOLE", "TOLERANCE", "DEPTH"),
        beside(row("binomial", binomial, "probability of k successes in n trials", "K", "N", "P"), Is::probability, exactBinomial),
        row("normalDensity", normalDensity, "density of the standard normal distribution", "X"),
        beside(row("normalProb", normalProb, "standard normal distribution, lower tail", "X"), Is::probability, plain(wq_exact::normalCdf)),
        beside(row("normalProbApprox", normalProbApprox, "the same by a polynomial, to 2.5e-4", "X"), Is::probability,
               plain(wq_exact::normalCdf)),
        beside(row("normalPercentPoint", normalPercentPoint, "quantile of the standard normal distribution (lower tail p)", "P"),
               Is::number, plain(wq_exact::normalQuantile)),
        beside(row("t_Prob", t_Prob, "Student's t, upper tail, one- or two-sided", "T", "DF", "ONE_SIDED"), Is::probability, exactT),
        beside(row("t_PercentPoint", t_PercentPoint, "critical value of Student's t (two-sided alpha)", "ALPHA", "DF"), Is::number,
               exactTPoint),
        beside(row("chiSquareProb", chiSquareProb, "chi-square distribution, lower tail", "X", "DF"), Is::probability, exactChiSquare),
        beside(row("chiSquarePoint", chiSquarePoint, "quantile of chi-square (lower tail p)", "P", "DF"), Is::number, exactChiSquarePoint),
        beside(row("F_Prob", F_Prob, "F distribution, lower tail", "F", "DF1", "DF2"), Is::probability, exactF),
        beside(row("F_PercentPoint", F_PercentPoint, "quantile of F (lower tail p)", "P", "DF1", "DF2"), Is::number, exactFPoint),
        row("z_TransformBig", z_TransformBig, "Fisher's z of a correlation coefficient", "R"),
        row("z_TransformSmall", z_TransformSmall, "the same with a correction for small samples", "R", "N"),
        row("z_to_r", z_to_r, "correlation coefficient of Fisher's z", "Z"),
        row("D_GoodnessOfFit", D_GoodnessOfFit, "critical value of D, one sample; 0: none available", "ALPHA", "N"),
        beside(row("D_TwoSamples", D_TwoSamples, "critical value of D, two samples; 0: none available", "ALPHA", "N1", "N2"), Is::number,
               exactD),
        beside(row("D_Prob", D_Prob, "significance of Kolmogorov's statistic, upper tail", "LAMBDA"), Is::probability,
               plain(wq_exact::kolmogorovUpperTail)),
        beside(row("rayleighsProb", rayleighsProb, "significance of Rayleigh's z, upper tail", "Z", "N"), Is::probability, exactRayleigh),
        row("degreeToRadian", degreeToRadian, "degrees to radians", "DEGREES"),
        row("radianToDegree", radianToDegree, "radians to degrees", "RADIANS"),
        row("computeResultant", computeResultant, "length of the vector (x, y)", "X", "Y"),
        row("computeAngle", computeAngle, "direction of the vector (x, y) in radians, 0 to 2 pi", "X", "Y"),
        row("computeCircleArea", computeCircleArea, "area of a circle of radius r", "R"),
        row("sqr", ::sqr, "x squared", "X"),
        row("odd", ::odd, "whether n is odd", "N"),
    };
}

std::string listOf(const std::vector<Function>& table)
{
    std::size_t width = 0;
    constexpr std::size_t widest = 40;
    for (const Function& function : table) width = std::max(width, std::min(usageOf(function).size(), widest));
    std::string list;
    for (const Function& function : table) {
        std::string usage = usageOf(function);
        if (usage.size() > width)
            usage += "\n" + std::string(width, ' ');
        else
            usage.resize(width, ' ');
        list += usage + "  " + function.meaning + "\n";
    }
    return list;
}

/** What the library has to say while it computes belongs beside the value, not before it; it is told when all is done. */
class MessagesToError {
public:
    MessagesToError() : output(std::cout.rdbuf(messages.rdbuf())) {}
    ~MessagesToError()
    {
        std::cout.rdbuf(output);
        progress().hide();
        if (messages.tellp() > 0) std::cerr << messages.rdbuf();
    }
    MessagesToError(const MessagesToError&) = delete;
    MessagesToError& operator=(const MessagesToError&) = delete;

private:
    std::stringstream messages;
    std::streambuf* output;
};

class Prob final : public Command {
    void declare(CLI::App& app) override
    {
        app.add_flag("--list", list, "list the functions, with arguments and meaning");
        app.add_flag("--exact", exact, "print what the function is named for to the last digits, not the library's approximation");
        app.add_flag("--no-warnings", withoutWarnings,
                     "do not say where the approximation is off by more than 1 %, is no probability or stands for nothing");
        app.allow_extras();  // not as options, so that arguments like -.5 and -inf are none
        app.formatter(std::make_shared<HelpFormatter>("FUNCTION ARGUMENTS..."));
        app.footer("Prints the value with as many digits as tell it from every other.\n"
                   "DF, N and K are whole numbers of 0 or more. ONE_SIDED is 1, true or one for one side, 0, false or two for both.\n"
                   "INTEGRAND is one of " +
                   integrandNames() + ".");
        subcommand = &app;
    }

    std::vector<std::string> words() const override
    {
        std::vector<std::string> names;
        for (const Function& function : functions()) names.emplace_back(function.name);
        return names;
    }

    ExitStatus run() override
    {
        const std::vector<Function> table = functions();
        const Arguments words = subcommand->remaining();
        if (list && words.empty()) {
            std::cout << listOf(table);
            return done;
        }
        if (list) throw WrongUsage("--list stands alone, without " + inQuotes(words.front()));
        if (words.empty()) throw WrongUsage("FUNCTION is required; wqstat prob --list names them");
        const auto function = std::find_if(table.begin(), table.end(), [&](const Function& f) { return words.front() == f.name; });
        if (function == table.end())
            throw WrongUsage("there is no function " + inQuotes(words.front()) + "; wqstat prob --list names them");
        const Arguments texts(words.begin() + 1, words.end());
        if (texts.size() != function->parameters.size())
            throw WrongUsage(usageOf(*function) + ": " + std::to_string(texts.size()) + " arguments given, " +
                             std::to_string(function->parameters.size()) + " needed");
        if (exact) {
            if (!function->exact) throw WrongUsage("--exact: " + inQuotes(function->name) + " has no exact value here");
            std::cout << shortest(function->exact(texts)) << '\n';
            return done;
        }
        const std::string value = valueOf(*function, texts);
        if (function->exact && !withoutWarnings) warn(*function, realArgument(value), function->exact(texts));
        std::cout << value << '\n';
        return done;
    }

    static void warn(const Function& function, double value, double exactValue)
    {
        constexpr double tolerance = 0.01;
        const bool exists = !std::isnan(exactValue);
        if (value == exactValue || (std::isnan(value) && !exists)) return;
        const bool isNone = function.isProbability && !(value >= 0.0 && value <= 1.0);
        if (!isNone && std::isfinite(exactValue) && std::fabs(value - exactValue) <= tolerance * std::fabs(exactValue)) return;
        progress().hide();
        std::cerr << "wqstat: warning: " << function.name << " is an approximation"
                  << (isNone && exists ? ", and this is no probability" : "")
                  << (exists ? ": the exact value is " + figures(exactValue, 6) : ", and these arguments have no exact value") << '\n';
    }

    static std::string valueOf(const Function& function, const Arguments& texts)
    {
        progress().show(std::string("computing ") + function.name);
        const MessagesToError redirection;
        return function.call(texts);
    }

    bool list = false;
    bool exact = false;
    bool withoutWarnings = false;
    CLI::App* subcommand = nullptr;
};

}  // namespace

CommandEntry probCommand() { return {"prob", "value of a distribution function", "wqstat prob t_PercentPoint 0.05 10", make<Prob>}; }

}  // namespace wqstat
