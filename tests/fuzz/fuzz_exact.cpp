// The exact figures of any arguments and any data: a probability is one, limits are in order, a decision rests on a p.

#include "script.h"
#include "target.h"

#include <wq_exact/wq_exact.h>
#include <wq_stat/wq_stat.h>

#include <cmath>
#include <cstddef>
#include <iterator>
#include <optional>
#include <vector>

using namespace wq_exact;
using wq_fuzz::Line;
using wq_fuzz::require;

namespace {

bool isDegrees(double df) { return df > 0.0 && std::isfinite(df); }
bool isProbability(double p) { return p >= 0.0 && p <= 1.0; }

// A probability where all is defined, else NaN.
void expectProbability(const char* what, double p, bool isDefined)
{
    require(isDefined ? isProbability(p) : std::isnan(p), what, " is ", p);
}

// A distribution at x: its tails, and its quantiles of the probability that x is as well.
void expectTails(double x, double lower, double upper, bool isDefined)
{
    isDefined = isDefined && !std::isnan(x);
    expectProbability("lower tail", lower, isDefined);
    expectProbability("upper tail", upper, isDefined);
    require(!isDefined || std::fabs(lower + upper - 1.0) < 1e-10, "the tails are ", lower, " and ", upper);
}

void expectQuantile(double p, double value, double least, bool isDefined)
{
    require(isDefined && isProbability(p) ? value >= least : std::isnan(value), "quantile of ", p, " is ", value);
}

void expectDensity(double x, double value, bool isDefined)
{
    require(isDefined && !std::isnan(x) ? value >= 0.0 : std::isnan(value), "density at ", x, " is ", value);
}

// ---------------------------------------------------------------- results of analyses

// A probability, or none.
void expectTail(const char* what, double p) { require(std::isnan(p) || isProbability(p), what, " is ", p); }

void expect(const Decision& decision, double p, double alpha)
{
    expectTail("p", p);
    const bool isLevel = alpha > 0.0 && alpha < 1.0;
    require(decision.accepted.has_value() == (isLevel && !std::isnan(p)), "a decision with p = ", p, ", alpha ", alpha);
    require(!decision.accepted || *decision.accepted == (p >= alpha), "p is ", p, ", alpha ", alpha);
    require(!decision.reportDiffers() || decision.acceptedByReport, "the report decides nothing, and differs");
    require(!(decision.reportDiffers() && decision.reportLacksGround()), "differs without a decision to differ from");
}

void expect(const Test& test) { expect(test, test.p, test.alpha); }

// At the level 1 they are the same but for rounding.
void expect(const Limits& limits)
{
    const double rounding = 1e-12 * std::fabs(limits.upper);
    require(!(limits.lower > limits.upper + rounding), "limits ", limits.lower, " and ", limits.upper);
}

// Rounding may take a share past its end.
void expectShare(double share) { require(!(share < -1e-9 || share > 1.0 + 1e-9), "a share of ", share); }

void expect(const PairsResult& exact)
{
    expectShare(std::fabs(exact.r));
    expectShare(exact.rSquared);
    expect(exact.limits);
    expectTail("p of r", exact.p);
}

template <typename Analysis>
Analysis loaded(Line& line)
{
    Analysis analysis;
    analysis.setSignificance(line.number());
    const std::vector<double> values = line.numbers();
    for (std::size_t i = 0; i + 1 < values.size(); i += 2) analysis.add(values[i], values[i + 1]);
    return analysis;
}

template <typename Model>
void regression(Line& line)
{
    const double at = line.number();
    auto model = loaded<Model>(line);
    model.analyse();
    const RegressionResult exact = wq_exact::of(model);
    expect(exact.slope);
    expect(exact.slopeLimits);
    expect(exact.heightLimits);
    expect(exact.lineLimits(at));
    expect(exact.predictionLimits(at));
    expectShare(exact.rSquared);
}

void expect(const TwoVariancesResult& exact)
{
    expect(exact.ratio);
    expectTail("lower tail", exact.lowerTail);
    expect(exact.ratioLimits);
    for (const Limits& limits : exact.varianceLimits) expect(limits);
}

void expect(const AnovaResult& exact)
{
    expect(exact.F);
    expectTail("lower tail", exact.lowerTail);
    expectShare(exact.etaSquared);
}

template <typename Anova>
Anova grouped(Line& line)
{
    auto anova = loaded<Anova>(line);
    anova.createSeries();
    anova.analyse();
    return anova;
}

// The cost of the library's own F grows with the degrees of freedom.
wq_lib::basic_stat recordOf(Line& line)
{
    wq_lib::basic_stat record;
    record.n = line.count() % 100000;
    record.sampleVariance = line.number();
    return record;
}

// ---------------------------------------------------------------- the calls

const struct {
    const char* name;
    void (*call)(Line& line);
} calls[] = {
    {"normal",
     [](Line& a) {
         const double z = a.number(), p = a.number();
         expectTails(z, normalCdf(z), normalUpperTail(z), true);
         expectDensity(z, normalDensity(z), true);
         expectQuantile(p, normalQuantile(p), -HUGE_VAL, true);
         expectQuantile(p, normalUpperQuantile(p), -HUGE_VAL, true);
     }},
    {"t",
     [](Line& a) {
         const double t = a.number(), df = a.number(), p = a.number();
         expectTails(t, tCdf(t, df), tUpperTail(t, df), isDegrees(df));
         expectProbability("two-sided", tTwoSided(t, df), isDegrees(df) && !std::isnan(t));
         expectDensity(t, tDensity(t, df), isDegrees(df));
         expectQuantile(p, tQuantile(p, df), -HUGE_VAL, isDegrees(df));
         expectQuantile(p, tUpperQuantile(p, df), -HUGE_VAL, isDegrees(df));
         expectQuantile(p, tTwoSidedQuantile(p, df), 0.0, isDegrees(df));
     }},
    {"chiSquare",
     [](Line& a) {
         const double x = a.number(), df = a.number(), p = a.number();
         expectTails(x, chiSquareCdf(x, df), chiSquareUpperTail(x, df), isDegrees(df));
         expectDensity(x, chiSquareDensity(x, df), isDegrees(df));
         expectQuantile(p, chiSquareQuantile(p, df), 0.0, isDegrees(df));
         expectQuantile(p, chiSquareUpperQuantile(p, df), 0.0, isDegrees(df));
     }},
    {"F",
     [](Line& a) {
         const double f = a.number(), df1 = a.number(), df2 = a.number(), p = a.number();
         const bool isDefined = isDegrees(df1) && isDegrees(df2);
         expectTails(f, fCdf(f, df1, df2), fUpperTail(f, df1, df2), isDefined);
         expectDensity(f, fDensity(f, df1, df2), isDefined);
         expectQuantile(p, fQuantile(p, df1, df2), 0.0, isDefined);
         expectQuantile(p, fUpperQuantile(p, df1, df2), 0.0, isDefined);
     }},
    {"kolmogorov",
     [](Line& a) {
         const double lambda = a.number(), p = a.number();
         expectTails(lambda, kolmogorovCdf(lambda), kolmogorovUpperTail(lambda), true);
         expectQuantile(p, kolmogorovQuantile(p), 0.0, true);
         expectQuantile(p, kolmogorovUpperQuantile(p), 0.0, true);
     }},
    {"smirnov",
     [](Line& a) {
         const double d = a.number();
         const std::size_t n1 = a.count(), n2 = a.count();
         const double p = a.number();
         const bool isDefined = canCountArrangements(n1, n2);
         expectTails(d, smirnovCdf(d, n1, n2), smirnovUpperTail(d, n1, n2), isDefined);
         for (const double q : {smirnovQuantile(p, n1, n2), smirnovUpperQuantile(p, n1, n2)}) expectProbability("D", q, !std::isnan(q));
     }},
    {"ties",
     [](Line& a) {
         const double d = a.number();
         const std::size_t n1 = a.count(), n2 = a.count();
         const double p = a.number();
         std::vector<std::size_t> classes;
         double sum = 0.0;
         for (const double size : a.numbers()) {
             classes.push_back(size >= 0.0 && size < 1e6 ? static_cast<std::size_t>(size) : 0);
             sum += static_cast<double>(classes.back());
         }
         const bool isDefined = canCountArrangements(n1, n2) && sum == static_cast<double>(n1 + n2);
         expectProbability("tail", smirnovUpperTail(d, n1, n2, classes), isDefined && !std::isnan(d));
         const double q = smirnovUpperQuantile(p, n1, n2, classes);
         expectProbability("D", q, !std::isnan(q));
         require(std::isnan(q) || (isDefined && smirnovUpperTail(q, n1, n2, classes) <= p * (1.0 + 1e-12)), "no quantile: ", q);
     }},
    {"rayleigh",
     [](Line& a) {
         const double z = a.number(), n = a.number(), p = a.number();
         const bool isDefined = n >= 1.0 && std::isfinite(n) && n == std::floor(n);
         for (const double tail : {rayleighCdf(z, n), rayleighUpperTail(z, n)})
             expectProbability("tail", tail, isDefined && !std::isnan(z));
         const bool isOne = n == 1.0;  // whose z is always 1
         expectQuantile(p, rayleighQuantile(p, n), 0.0, isDefined && (!isOne || p == 0.0));
         expectQuantile(p, rayleighUpperQuantile(p, n), 0.0, isDefined && (!isOne || p == 1.0));
         for (const double q : {rayleighQuantile(p, n), rayleighUpperQuantile(p, n)}) require(!(q > n), "z of ", n, " directions is ", q);
     }},
    {"describe",
     [](Line& a) {
         wq_lib::BasicStatistics sample;
         sample.setSignificance(a.number());
         sample.setNullHypothesis(a.number());
         sample.setHead(a.number());
         sample.setTail(a.number());
         for (const double value : a.numbers()) sample.add(value);
         sample.analyse();
         const OneSampleResult exact = wq_exact::of(sample);
         expect(exact.mean);
         expect(exact.meanLimits);
         expect(exact.varianceLimits);
     }},
    {"frequency",
     [](Line& a) {
         const std::size_t classes = a.count() % 1000;
         wq_lib::Frequency sample;
         for (const double value : a.numbers()) sample.add(value);
         sample.autoClassWidth(classes);
         sample.initFrequency(sample.getClasses());
         sample.buildTable();
         sample.analyse();
         const FrequencyResult exact = wq_exact::of(sample);
         require(exact.leftOut() <= exact.n && !(exact.minimum > exact.maximum), "left out ", exact.leftOut());
     }},
    {"variances",
     [](Line& a) {
         wq_lib::TwoSamples samples;
         samples.setSignificance(a.number());
         samples.setFirstSample(recordOf(a));
         samples.setSecondSample(recordOf(a));
         samples.analyse();
         expect(wq_exact::of(samples));
         wq_lib::BasicStatistics second;
         for (const double value : a.numbers()) second.add(value);
         second.analyse();
         samples.setSecondSample(second.getResult());
         samples.analyse();
         expect(wq_exact::of(samples, second));
     }},
    {"pairs",
     [](Line& a) {
         auto pairs = loaded<wq_lib::BasicXyStatistics>(a);
         pairs.analyse();
         expect(wq_exact::of(pairs));
     }},
    {"correlate",
     [](Line& a) {
         auto correlation = loaded<wq_lib::Correlation>(a);
         correlation.analyse();
         const CorrelationResult exact = wq_exact::of(correlation);
         expect(static_cast<const PairsResult&>(exact));
         expect(exact.t);
         expect(exact.F);
         expect(exact.zLimits);
         expectTail("upper tail of F", exact.upperTailF);
     }},
    {"linear", regression<wq_lib::LinearRegression>},
    {"logarithmic", regression<wq_lib::LogarithmicRegression>},
    {"exponential", regression<wq_lib::ExponentialRegression>},
    {"power", regression<wq_lib::PowerRegression>},
    {"anova",
     [](Line& a) {
         const auto anova = grouped<wq_lib::SingleAnova>(a);
         const AnovaResult exact = wq_exact::of(anova);
         expect(exact);
         for (const wq_lib::anova_group& group : anova.getGroups()) expect(exact.meanLimits(group));
     }},
    {"multiy",
     [](Line& a) {
         const double at = a.number();
         const std::size_t observations = a.count();
         const MultiYResult exact = wq_exact::of(grouped<wq_lib::LinearRegressionMultiY>(a));
         expect(exact.groups);
         expect(exact.deviationsF);
         expectTail("lower tail of the deviations", exact.deviationsLowerTail);
         expect(exact.lineLimits(at));
         expect(exact.predictionLimits(at, observations));
         expect(exact.slope);
         expect(exact.slopeLimits);
         expectShare(exact.rSquared);
     }},
    {"fit",
     [](Line& a) {
         const bool yates = a.flag(), williams = a.flag();
         auto test = loaded<wq_lib::GoodnessOfFit>(a);
         test.setYatesCorrection(yates);
         test.setWilliamsCorrection(williams);
         test.analyse();
         const GoodnessOfFitResult exact = wq_exact::of(test);
         expect(exact.chiSquare);
         expect(exact.G);
         if (exact.GAdjusted) expect(*exact.GAdjusted);
         expect(exact.decision, exact.p, exact.chiSquare.alpha);
         for (const double tail : {exact.chiSquareLowerTail, exact.GLowerTail, exact.GAdjustedLowerTail}) expectTail("lower tail", tail);
     }},
    {"ks",
     [](Line& a) {
         auto test = loaded<wq_lib::KolmogorovSmirnov2>(a);
         test.cumulative();
         test.analyse();
         const KolmogorovSmirnovResult exact = wq_exact::of(test);
         expect(exact.largeSamples);
         if (exact.allArrangements) expect(*exact.allArrangements);
         expect(exact.decision, exact.p, exact.largeSamples.alpha);
     }},
    {"circular",
     [](Line& a) {
         const bool degrees = a.flag();
         auto directions = loaded<wq_lib::Circular>(a);
         directions.setDataType(degrees ? wq_lib::DEGREES : wq_lib::RADIANS);
         directions.analyse();
         expect(wq_exact::of(directions).rayleigh);
     }},
    {"grouped",
     [](Line& a) {
         const std::size_t classes = a.count();
         auto directions = loaded<wq_lib::Circular>(a);
         directions.setDataType(wq_lib::BIN_NUMBERS);
         directions.setBins(classes);
         directions.analyse();
         expect(wq_exact::of(directions).rayleigh);
     }},
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    constexpr std::size_t most = 50;  // calls of one input
    std::size_t made = 0;
    for (Line line : wq_fuzz::linesOf({reinterpret_cast<const char*>(bytes), size})) {
        const auto& [name, call] = wq_fuzz::named(calls, line.word());
        call(line);
        if (++made == most) break;
    }
    return 0;
}
