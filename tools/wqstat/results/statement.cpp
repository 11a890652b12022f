#include "statement.h"

#include "results/figures.h"
#include "results/textbook.h"
#include "results/warnings.h"

#include <cmath>

namespace wqstat {

namespace {

Sentence nameOr(const std::string& name, const char* usual) { return name.empty() ? Sentence(usual) : Sentence::name(name); }

/** The words with the name behind them; nothing without one. */
Sentence behind(const char* words, const std::string& name) { return name.empty() ? Sentence() : words + Sentence::name(name); }

/** "first and second" */
Sentence both(const std::vector<std::string>& names) { return Sentence::name(names[0]) + " and " + Sentence::name(names[1]); }

std::string level(const wq_lib::BasicStatistics& analysis) { return figures(100.0 * analysis.getConfidence()) + " %"; }

/** " (95 % CI 5.3639 to 5.532)"; empty without limits. @param write how a figure is written */
template <typename Write>
std::string limitsText(const Textbook& book, const std::string& path, const wq_lib::BasicStatistics& analysis, Write write)
{
    const double lower = book.value(path + "/lower");
    const double upper = book.value(path + "/upper");
    if (!std::isfinite(lower) || !std::isfinite(upper)) return "";
    return " (" + level(analysis) + " CI " + write(lower) + " to " + write(upper) + ")";
}

std::string withLimits(double value, const Textbook& book, const std::string& path, const wq_lib::BasicStatistics& analysis)
{
    const double width = book.value(path + "/upper") - book.value(path + "/lower");
    return figuresWithin(value, width) + limitsText(book, path, analysis, [width](double limit) { return figuresWithin(limit, width); });
}

std::string coefficientWithLimits(double value, const Textbook& book, const std::string& path, const wq_lib::BasicStatistics& analysis)
{
    return coefficient(value) + limitsText(book, path, analysis, coefficient);
}

/** ", d = -0.313", a figure of the textbook; empty where there is none. */
std::string effectSize(const char* symbol, const Textbook& book, const std::string& path)
{
    const double value = book.value(path);
    return std::isfinite(value) ? std::string(", ") + symbol + " = " + figures(value, 3) : "";
}

/** A share of a variance, with as many digits as tell it from 1. */
std::string determination(const char* symbol, const Textbook& book)
{
    const double value = book.value("rSquared");
    return std::isfinite(value) ? std::string(", ") + symbol + " = " + coefficient(value) : "";
}

/** " = 2.5", behind the name of a statistic; of an infinite one the cause. */
std::string valueText(double value, const std::string& cause)
{
    if (std::isfinite(value)) return " = " + figures(value);
    return std::string(std::isnan(value) ? " is undefined" : " is infinite") + (cause.empty() ? "" : ": " + cause);
}

std::string withDf(const char* statistic, double df, double value, const std::string& cause = "")
{
    return std::string(statistic) + "(" + figures(df, 10) + ")" + valueText(value, cause);
}

std::string withDf(const char* statistic, double df1, double df2, double value, const std::string& cause = "")
{
    return std::string(statistic) + "(" + figures(df1, 10) + ", " + figures(df2, 10) + ")" + valueText(value, cause);
}

std::string noTest(const std::string& reason) { return "no test: " + reason; }

/** "t(28) = -1.68, p = 0.103", or why there is no test. */
std::string tested(const std::string& statistic, double p, const std::string& reason)
{
    return std::isnan(p) ? noTest(reason) : statistic + ", " + probability(p);
}

/** A standard deviation; of equal values 0, where rounding leaves a little, and the record has none. */
std::string deviationText(const wq_lib::basic_stat& sample, double maximum)
{
    return "SD = " + figures(sample.min == maximum ? 0.0 : sample.sampleStdev);
}

double lessBy(std::size_t n, double lost) { return static_cast<double>(n) - lost; }

const char* formulaOf(const wq_lib::Regression& regression)
{
    if (dynamic_cast<const wq_lib::LogarithmicRegression*>(&regression) != nullptr) return "y = a + b ln x";
    if (dynamic_cast<const wq_lib::ExponentialRegression*>(&regression) != nullptr) return "y = a e^(b x)";
    if (dynamic_cast<const wq_lib::PowerRegression*>(&regression) != nullptr) return "y = a x^b";
    return "y = a + b x";
}

}  // namespace

Statement statementOf(wq_lib::BasicStatistics& sample, const VariableNames& names)
{
    const wq_lib::basic_stat& result = sample.getResult();
    const wq_exact::OneSampleResult exact = wq_exact::of(sample);
    const Textbook book = textbook(exact);
    const double t = sample.StudentOfMeans(result.mean, result.sampleVariance, sample.getNullHypothesis(), result.n);
    return {"What is the mean of " + nameOr(names.x, "the values") + ", and does it differ from " +
                figures(sample.getNullHypothesis(), 10) + "?",
            "M = " + withLimits(result.mean, book, "confidenceLimits", sample) + ", " + deviationText(result, exact.maximum) + ", n = " +
                digits(result.n) + "; " + tested(withDf("t", lessBy(result.n, 1.0), t), exact.mean.p, reasonForNoTest(exact, sample)) +
                effectSize("d", book, "cohensD"),
            {{"sample size", "result/n", static_cast<double>(result.n)},
             {"mean", "result/mean", result.mean, result.stdError},
             {"median", "result/median", result.median, result.sampleStdev},
             {"standard deviation", "result/sampleStdev", result.sampleStdev},
             {"standard error of the mean", "result/stdError", result.stdError},
             {"t", "report/t", t}}};
}

Statement statementOf(wq_lib::Frequency& table, const VariableNames& names)
{
    const wq_lib::basic_stat& result = table.getResult();
    return {"How are " + nameOr(names.x, "the values") + " distributed over " + digits(table.getTable().size()) + " classes?",
            "M = " + figuresWithin(result.mean, result.sampleStdev) + ", " + deviationText(result, wq_exact::of(table).maximum) +
                ", median " + figuresWithin(result.median, result.sampleStdev) + ", n = " + digits(result.n),
            {{"sample size", "result/sample/n", static_cast<double>(result.n)},
             {"mean", "result/sample/mean", result.mean, result.sampleStdev},
             {"standard deviation", "result/sample/sampleStdev", result.sampleStdev},
             {"lower limit of the first class", "result/startClass", table.getStartClass(), table.getClassWidth()},
             {"width of a class", "result/classWidth", table.getClassWidth()}}};
}

namespace {

/** "r = 0.2 (95 % CI 0.1 to 0.3), p = 0.01, r2 = 0.04", or why there is no r, or no test of it. */
std::string correlationText(const std::string& symbol, double r, const Textbook& book, const std::string& limits,
                            const wq_exact::PairsResult& exact, const wq_lib::BasicXyStatistics& pairs)
{
    const std::string reason = reasonForNoTest(exact, pairs);
    if (std::isnan(exact.r)) return "r is undefined: " + reason;
    return symbol + " = " + coefficientWithLimits(r, book, limits, pairs) + ", " +
           (std::isnan(exact.p) ? noTest(reason) : probability(exact.p)) + determination("r\u00b2", book);
}

}  // namespace

Statement statementOf(wq_lib::BasicXyStatistics& pairs, const VariableNames& names)
{
    const wq_lib::xy_stat& result = pairs.getXyResult();
    const wq_exact::PairsResult exact = wq_exact::of(pairs);
    const Textbook book = textbook(exact);
    const double spreadX = std::sqrt(result.x.sampleVariance);
    const double spreadY = std::sqrt(result.y.sampleVariance);
    return {"How do " + nameOr(names.x, "x") + " and " + nameOr(names.y, "y") + " vary together?",
            correlationText("r", exact.r, book, "limitsR", exact, pairs) + ", means " + figuresWithin(result.x.mean, spreadX) + " and " +
                figuresWithin(result.y.mean, spreadY) + ", n = " + digits(result.x.n),
            {{"pairs", "result/n", static_cast<double>(result.x.n)},
             {"mean of x", "result/x/mean", result.x.mean, spreadX},
             {"mean of y", "result/y/mean", result.y.mean, spreadY},
             {"covariance", "result/covariance", result.covariance}}};
}

Statement statementOf(wq_lib::Correlation& correlation, const VariableNames& names)
{
    const wq_lib::correlation_stat& result = correlation.getCorrelationResult();
    const std::size_t n = correlation.getXyResult().x.n;
    const wq_exact::CorrelationResult exact = wq_exact::of(correlation);
    const Textbook book = textbook(exact);
    const std::string r = "r(" + figures(lessBy(n, 2.0), 10) + ")";
    return {"Are " + nameOr(names.x, "x") + " and " + nameOr(names.y, "y") + " correlated?",
            correlationText(n > 2 ? r : "r", result.r, book, "confidenceLimitsR", exact, correlation) + ", n = " + digits(n),
            {{"pairs", "result/xy/n", static_cast<double>(n)},
             {"correlation coefficient r", "result/r", result.r},
             {"t", "result/t", result.t},
             {"F", "result/F", result.F}}};
}

Statement statementOf(wq_lib::Regression& regression, const VariableNames& names)
{
    const wq_lib::regression_stat& fit = regression.getRegressionResult();
    const wq_exact::RegressionResult exact = wq_exact::of(regression);
    const Textbook book = textbook(exact);
    const bool isOfLogarithm = exact.scaleY == wq_exact::Scale::logarithm;
    const std::string t = withDf("t", exact.slope.df1, exact.slope.statistic, "the pairs lie on the line");
    const std::string line = "a = " + figures(constantOf(exact)) + ", b = " + withLimits(exact.b, book, "limitsB", regression) + ", " +
                             tested(t, exact.slope.p, reasonForNoTest(exact)) + determination("R\u00b2", book) +
                             (isOfLogarithm && std::isfinite(exact.rSquared) ? " of ln y" : "");
    const std::string noLine = "no line: " + (exact.n < 2 ? "there is one pair" : reasonForNoTest(exact));
    const std::string ofReport = std::isfinite(exact.b) && !std::isfinite(fit.b) ? " (report)" : "";
    const std::string ofY = isOfLogarithm ? " of ln y" : "";
    return {"How does " + nameOr(names.y, "y") + " depend on " + nameOr(names.x, "x") + ", by " + formulaOf(regression) + "?",
            (std::isfinite(exact.b) ? line : noLine) + ", n = " + digits(exact.n),
            {{"pairs", "result/n", static_cast<double>(fit.n)},
             {"constant a" + ofReport, "result/a", fit.a},
             {"coefficient b" + ofReport, "result/b", fit.b},
             {"standard error of b" + ofReport, "result/seB", fit.seB},
             {"t of b" + ofReport, "result/tB", fit.tB},
             {"explained sum of squares" + ofY + ofReport, "result/explained", fit.explained},
             {"unexplained sum of squares" + ofY + ofReport, "result/unexplained", fit.unexplained}}};
}

namespace {

/** The differences among groups. */
std::string amongText(const wq_exact::AnovaResult& exact)
{
    const wq_exact::Test& F = exact.F;
    return tested(withDf("F", exact.among.df, exact.within.df, F.statistic, "within each group the observations are all equal"), F.p,
                  reasonForNoTest(exact));
}

}  // namespace

Statement statementOf(wq_lib::SingleAnova& anova, const VariableNames& names)
{
    const wq_exact::AnovaResult exact = wq_exact::of(anova);
    const Textbook book = textbook(exact);
    const double n = static_cast<double>(anova.getTotalObservations());
    const std::string effects = effectSize("\u03b7\u00b2", book, "etaSquared") + effectSize("\u03c9\u00b2", book, "omegaSquared");
    return {"Does " + nameOr(names.y, "the observation") + " differ among the groups of " + nameOr(names.x, "x") + "?",
            amongText(exact) + (std::isnan(exact.F.p) ? "" : effects),
            {{"groups", "result/groupCount", static_cast<double>(anova.getGroupCount())}, {"observations", "result/totalObservations", n}}};
}

Statement statementOf(wq_lib::LinearRegressionMultiY& regression, const VariableNames& names)
{
    const wq_exact::MultiYResult exact = wq_exact::of(regression);
    const Textbook book = textbook(exact);
    const wq_lib::regression_multi_y_stat& fit = regression.getRegressionResult();
    const std::string t = withDf("t", exact.deviations.df, exact.slope.statistic, "the means of the groups lie on the line");
    const std::string line = "a = " + figures(exact.a) + ", b = " + withLimits(exact.b, book, "limitsB", regression) + ", " +
                             tested(t, exact.slope.p, reasonForNoTest(exact)) + determination("R\u00b2", book);
    return {"How does " + nameOr(names.y, "y") + ", observed several times, depend on " + nameOr(names.x, "x") + ", by y = a + b x?",
            "among groups " + amongText(exact.groups) + "; " +
                (std::isfinite(exact.b) ? line : "no line: " + reasonForNoTest(exact.groups)),
            {{"observations", "result/anova/totalObservations", static_cast<double>(regression.getTotalObservations())},
             {"constant a", "result/a", fit.a},
             {"coefficient b", "result/b", fit.b}}};
}

namespace {

Sentence questionOfFit(const VariableNames& names)
{
    const Sentence of = behind(" of ", names.x);
    if (!names.ratio.empty()) return "Do the frequencies" + of + " fit the ratio " + names.ratio + "?";
    if (names.compared.empty()) return "Do the observed frequencies" + of + " fit the expected ones?";
    return "Do the frequencies in " + Sentence::name(names.compared[0]) + of + " fit those in " + Sentence::name(names.compared[1]) + "?";
}

Sentence questionOfDistributions(const VariableNames& names)
{
    constexpr char same[] = " come from the same distribution";
    if (!names.compared.empty()) return "Do " + both(names.compared) + same + behind(" over the classes of ", names.x) + "?";
    if (names.samples.empty()) return "Do the two samples" + behind(" of ", names.y) + same + "?";
    if (names.y.empty()) return "Do " + both(names.samples) + same + "?";
    return "Does " + Sentence::name(names.y) + same + " in " + both(names.samples) + behind(" of ", names.x) + "?";
}

Sentence questionOfVariances(const VariableNames& names)
{
    if (names.samples.empty()) return "Do the variances of " + nameOr(names.y, "the two samples") + " differ?";
    if (names.y.empty()) return "Do the variances of " + both(names.samples) + " differ?";
    return "Does the variance of " + Sentence::name(names.y) + " differ between " + both(names.samples) + behind(" of ", names.x) + "?";
}

}  // namespace

Statement statementOf(wq_lib::GoodnessOfFit& test, const VariableNames& names)
{
    const wq_exact::GoodnessOfFitResult exact = wq_exact::of(test);
    const bool isTested = !std::isnan(exact.p);
    const auto shown = [&](const char* statistic, const wq_exact::Test& of) {
        return withDf(statistic, of.df1, of.statistic) + (isTested ? ", " + probability(of.p) : "");
    };
    return {questionOfFit(names),
            shown("\u03c7\u00b2", exact.chiSquare) + (isTested ? ", which decides; " : "; ") + shown("G", exact.G) +
                (isTested ? effectSize("w", textbook(exact), "cohensW") : ", " + noTest(reasonForNoTest(exact))),
            {{"chi-square", "result/X2", test.getX2()},
             {"G", "result/G", test.getG()},
             {"G, corrected", "result/GAdjusted", test.getGAdjusted()}}};
}

Statement statementOf(wq_lib::KolmogorovSmirnov2& test, const VariableNames& names)
{
    const wq_exact::KolmogorovSmirnovResult exact = wq_exact::of(test);
    const Textbook book = textbook(exact);
    const double counted = book.value("pTheseSizes");
    const double p = std::isnan(counted) ? book.value("pLargeSamples") : counted;
    return {questionOfDistributions(names),
            tested("D = " + figures(test.getD()), p, reasonForNoTest(exact, test)) + (std::isnan(counted) ? "" : " given the ties") +
                ", n = " + digits(test.getN1()) + " and " + digits(test.getN2()),
            {{"first sample", "result/n1", static_cast<double>(test.getN1())},
             {"second sample", "result/n2", static_cast<double>(test.getN2())},
             {"D", "result/D", test.getD()}}};
}

Statement statementOf(TwoDataFiles& samples, const VariableNames& names)
{
    const wq_exact::TwoVariancesResult exact = exactOf(samples);
    const wq_exact::Test& test = exact.ratio;
    const Textbook book = textbook(exact);
    const double first = exact.variances[0];
    const double second = exact.variances[1];
    const std::string F = withDf("F", test.df1, test.df2, test.statistic,
                                 std::string("the values of the ") + (first == 0.0 ? "first" : "second") + " sample are all equal");
    return {questionOfVariances(names),
            tested(F, test.p, reasonForNoTest(exact)) +
                (std::isfinite(test.statistic) ? ", ratio " + withLimits(test.statistic, book, "ratioLimits", samples) : "") +
                ", variances " + figures(first) + " and " + figures(second),
            {{"variance of the first sample", "result/first/sampleVariance", samples.getResult().sampleVariance},
             {"variance of the second sample", "result/second/sampleVariance", samples.getSecondSample().sampleVariance},
             {"F (report)", "result/F", samples.getF()}}};
}

Statement statementOf(wq_lib::Circular& directions, const VariableNames& names)
{
    const wq_lib::circular_stat& result = directions.getCircularResult();
    const wq_exact::DirectionsResult exact = wq_exact::of(directions);
    const double z = exact.rayleigh.statistic;
    const bool isGrouped = directions.isGrouped();
    const std::string direction = "mean direction " + figures(wq_lib::radianToDegree(result.a)) + "\u00b0, r = " + coefficient(result.r) +
                                  (isGrouped ? " corrected for grouping, z without the correction = " : ", z = ") + figures(z);
    constexpr double leastLength = 1e-12;  // below it rounding has made it
    const bool hasNone = std::sqrt(z / exact.n) < leastLength || exact.classes == 1.0;
    const std::string withoutOne = std::string("no mean direction: ") +
                                   (exact.classes == 1.0 ? "there is one class" : "the observations cancel each other out, r = 0, z = 0");
    return {"Is there a mean direction of " + nameOr(names.x, "the observations") + ", or do they point anywhere?",
            (hasNone ? withoutOne : direction) + ", " +
                (std::isnan(exact.rayleigh.p) ? noTest(reasonForNoTest(exact)) : probability(exact.rayleigh.p)) +
                ", n = " + digits(result.n),
            {{"observations", "result/n", static_cast<double>(result.n)},
             {"mean direction in degrees", "report/aDegrees", wq_lib::radianToDegree(result.a)},
             {"mean direction in radians", "result/a", result.a},
             {"length r of the mean vector", "result/r", result.r},
             {"Rayleigh's z", "result/z", result.z}}};
}

}  // namespace wqstat
