// Calls of the distribution functions with any bits: the same bits as the plain loops of tests/support, wherever these end.

#include "script.h"
#include "target.h"

#include "support/console.h"
#include "support/plain_distributions.h"
#include "support/same_bits.h"

#include <wq_stat/distributions.h>

#include <cmath>
#include <cstddef>
#include <iostream>
#include <limits>
#include <string>

using namespace wq_lib;
using wq_fuzz::Line;
using wq_test::plain::Budget;
using wq_test::plain::Integrand;
using wq_test::plain::Result;

namespace plain = wq_test::plain;

namespace {

constexpr std::size_t affordable = 200000;  // degrees of freedom, trials: their cost grows with them
constexpr double twoTo53 = 9007199254740992.0;
constexpr std::size_t beyondTheLoops = std::size_t{1} << 55;  // from here on they are answered without a loop

// What the call costs is documented to grow with the count; those between cost hours, and nothing else happens there.
std::size_t affordableCount(Line& line)
{
    const std::size_t n = line.count();
    return n < beyondTheLoops ? n % affordable : n;
}

double affordableGamma(Line& line)
{
    const double x = line.number();
    return x > static_cast<double>(affordable) && x <= twoTo53 ? std::fmod(x, static_cast<double>(affordable)) : x;
}

// A larger shape may cost inverseBetaRatio seconds, and near 2^53 a minute, which its comment says.
double affordableShape(Line& line)
{
    const double largest = 8796093022208.0;  // 2^43
    const double x = line.number();
    return std::fabs(x) > largest ? std::fmod(x, largest) : x;
}

void expect(double value, const Result& plainly)
{
    wq_fuzz::require(!plainly || wq_test::sameBits(value, *plainly), "plainly ", plainly.value_or(0.0), ", by the library ", value);
}

void expectWithin(double value, double low, double high)
{
    wq_fuzz::require(std::isnan(value) || (value >= low && value <= high), value, " is not within ", low, " ... ", high);
}

double square(double x) { return x * x; }
double pole(double x) { return 1.0 / (x - 1.0 / 3.0); }
double undefined(double) { return std::numeric_limits<double>::quiet_NaN(); }
double steep(double x) { return std::exp(x); }
double wave(double x) { return std::sin(x); }
double density(double x) { return std::exp(-0.5 * x * x) / std::sqrt(6.283185307179586); }

Integrand integrand(Line& line)
{
    static const Integrand all[] = {square, pole, undefined, steep, wave, density};
    return all[line.count() % std::size(all)];
}

const struct {
    const char* name;
    void (*call)(Line& line, Budget& budget);
} calls[] = {
    {"factorial",
     [](Line& a, Budget&) {
         const std::size_t n = a.count();
         expect(factorial(n), plain::factorial(n));
     }},
    {"lnGamma",
     [](Line& a, Budget& budget) {
         const double x = affordableGamma(a);
         expect(lnGamma(x), plain::lnGamma(x, budget));
     }},
    {"betaRatio",
     [](Line& a, Budget& budget) {
         const double x = a.number(), p = a.number(), q = a.number(), beta = a.number();
         expect(betaRatio(x, p, q, beta), plain::betaRatio(x, p, q, beta, budget));
     }},
    {"inverseBetaRatio",
     [](Line& a, Budget& budget) {
         const double alpha = a.number(), p = affordableShape(a), q = affordableShape(a), beta = a.number();
         expect(inverseBetaRatio(alpha, p, q, beta), plain::inverseBetaRatio(alpha, p, q, beta, budget));
     }},
    {"simpsonIntegral",
     [](Line& a, Budget& budget) {
         const Integrand f = integrand(a);
         const double from = a.number(), to = a.number();
         const Result plainly = plain::simpsonIntegral(f, from, to, budget);
         if (plainly) expect(simpsonIntegral(f, from, to), plainly);  // else it may well go on to 2^30 steps
     }},
    {"quadratureIntegral",
     [](Line& a, Budget& budget) {
         const Integrand f = integrand(a);
         const double from = a.number(), to = a.number();
         const Result plainly = plain::quadratureIntegral(f, from, to, budget);
         double value = 0.0;
         const std::string message = wq_test::printed([&] { value = quadratureIntegral(f, from, to); });
         expect(value, plainly);
         wq_fuzz::require(message.empty() || (std::isnan(value) && message == "recursion limit reached: singularity likely\n"), message);
     }},
    {"binomial",
     [](Line& a, Budget& budget) {
         const std::size_t k = affordableCount(a), n = affordableCount(a) % affordable;
         const double p = a.number();
         expect(binomial(k, n, p), k > n ? Result() : plain::binomial(k, n, p, budget));
     }},
    {"normalDensity",
     [](Line& a, Budget&) {
         const double x = a.number();
         expectWithin(normalDensity(x), 0.0, 0.4);
         expect(normalDensity(-x), normalDensity(x));
     }},
    {"normalProb",
     [](Line& a, Budget& budget) {
         const double x = a.number();
         const Result integral = plain::quadratureIntegral(normalDensity, 0.0, x, budget);
         double value = 0.0;
         const std::string message = wq_test::printed([&] { value = normalProb(x); });
         if (integral) expect(value, 0.5 + *integral);
         wq_fuzz::require(message.empty() || std::isnan(value), message);
     }},
    {"normalProbApprox",
     [](Line& a, Budget&) {
         const double x = a.number();
         expectWithin(normalProbApprox(x), 0.0, 1.0);
     }},
    {"normalPercentPoint",
     [](Line& a, Budget&) {
         const double p = a.number();
         expectWithin(normalPercentPoint(p), p > 0.5 ? -1e-5 : -9.0, p > 0.5 ? 9.0 : 1e-5);
     }},
    {"t_Prob",
     [](Line& a, Budget& budget) {
         const double t = a.number();
         const std::size_t df = affordableCount(a);
         const bool oneSided = a.flag();
         expect(t_Prob(t, df, oneSided), plain::t_Prob(t, df, oneSided, budget));
     }},
    {"t_PercentPoint",
     [](Line& a, Budget&) {
         const double alpha = a.number();
         expectWithin(t_PercentPoint(alpha, a.count()), 0.0, std::numeric_limits<double>::infinity());
     }},
    {"chiSquareProb",
     [](Line& a, Budget& budget) {
         const double x = a.number();
         const std::size_t df = affordableCount(a);
         expect(chiSquareProb(x, df), plain::chiSquareProb(x, df, budget));
     }},
    {"chiSquarePoint",
     [](Line& a, Budget&) {
         const double p = a.number();
         const std::size_t df = a.count();
         wq_fuzz::require(df != 0 || wq_test::sameBits(chiSquarePoint(p, df), 0.0), "without degrees of freedom it is not 0");
         chiSquarePoint(p, df);
     }},
    {"F_Prob",
     [](Line& a, Budget& budget) {
         const double f = a.number();
         const std::size_t df1 = affordableCount(a), df2 = affordableCount(a);
         expect(F_Prob(f, df1, df2), plain::F_Prob(f, df1, df2, budget));
     }},
    {"F_PercentPoint",
     [](Line& a, Budget& budget) {
         const double p = a.number();
         const std::size_t df1 = affordableCount(a), df2 = affordableCount(a);
         expect(F_PercentPoint(p, df1, df2), plain::F_PercentPoint(p, df1, df2, budget));
     }},
    {"z_TransformBig",
     [](Line& a, Budget&) {
         const double r = a.number();
         const double z = z_TransformBig(r);
         wq_fuzz::require(std::isnan(z) == !(std::fabs(r) <= 1.0), "z of ", r, " is ", z);
     }},
    {"z_TransformSmall",
     [](Line& a, Budget&) {
         const double r = a.number();
         const double z = z_TransformSmall(r, a.count());
         wq_fuzz::require(std::fabs(r) <= 1.0 || std::isnan(z), "z of ", r, " is ", z);
     }},
    {"z_to_r", [](Line& a, Budget&) { expectWithin(z_to_r(a.number()), -1.0, 1.0); }},
    {"D_GoodnessOfFit",
     [](Line& a, Budget&) {
         const double alpha = a.number();
         expectWithin(D_GoodnessOfFit(alpha, a.count()), 0.0, std::numeric_limits<double>::infinity());
     }},
    {"D_TwoSamples",
     [](Line& a, Budget&) {
         const double alpha = a.number();
         const std::size_t n1 = a.count(), n2 = a.count();
         expectWithin(D_TwoSamples(alpha, n1, n2), 0.0, std::numeric_limits<double>::infinity());
         expect(D_TwoSamples(alpha, n2, n1), D_TwoSamples(alpha, n1, n2));
     }},
    {"D_Prob",
     [](Line& a, Budget&) {
         const double lambda = a.number();
         expect(D_Prob(lambda), plain::D_Prob(lambda));
     }},
    {"rayleighsProb",
     [](Line& a, Budget&) {
         const double z = a.number();
         const std::size_t n = a.count();
         const double p = rayleighsProb(z, n);
         if (n >= 50) expect(p, std::exp(-z));
         if (n == 0) expect(p, 0.0);
     }},
    {"degrees",
     [](Line& a, Budget&) {
         const double x = a.number();
         expect(degreeToRadian(x), 0.017453292519943295 * x);
         expect(radianToDegree(x), 57.29577951308232 * x);
         expect(computeCircleArea(x), 3.141592653589793 * (x * x));
     }},
    {"computeAngle",
     [](Line& a, Budget&) {
         const double x = a.number(), y = a.number();
         expectWithin(computeAngle(x, y), 0.0, 6.283185307179586);
         expect(computeResultant(x, y), std::sqrt(x * x + y * y));
     }},
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    Budget budget{40000};  // for all plain loops of one input
    for (Line line : wq_fuzz::linesOf({reinterpret_cast<const char*>(bytes), size})) {
        const auto& [name, call] = wq_fuzz::named(calls, line.word());
        call(line, budget);
        if (budget.steps < 0) break;
    }
    return 0;
}
