#include "statement.h"

#include "results/figures.h"
#include "results/textbook.h"

#include <cmath>

namespace wqstat {

namespace {

std::string nameOr(const std::string& name, const char* usual) { return name.empty() ? usual : name; }

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
    return figures(value) + limitsText(book, path, analysis, [](double limit) { return figures(limit); });
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

std::string withDf(const char* statistic, double df, double value)
{
    return std::string(statistic) + "(" + figures(df, 10) + ") = " + figures(value);
}

std::string withDf(const char* statistic, double df1, double df2, double value)
{
    return std::string(statistic) + "(" + figures(df1, 10) + ", " + figures(df2, 10) + ") = " + figures(value);
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
    const Textbook book = textbook(wq_exact::of(sample));
    const double t = sample.StudentOfMeans(result.mean, result.sampleVariance, sample.getNullHypothesis(), result.n);
    return {"What is the mean of " + nameOr(names.x, "the values") + ", and does it differ from " +
                figures(sample.getNullHypothesis(), 10) + "?",
            "M = " + withLimits(result.mean, book, "confidenceLimits", sample) + ", SD = " + figures(result.sampleStdev) +
                ", n = " + digits(result.n) + "; " + withDf("t", lessBy(result.n, 1.0), t) + ", " + probability(book.value("p")) +
                effectSize("d", book, "cohensD"),
            {{"sample size", "result/n", static_cast<double>(result.n)},
             {"mean", "result/mean", result.mean},
             {"median", "result/median", result.median},
             {"standard deviation", "result/sampleStdev", result.sampleStdev},
             {"standard error of the mean", "result/stdError", result.stdError},
             {"t", "report/t", t}}};
}

Statement statementOf(wq_lib::Frequency& table, const VariableNames& names)
{
    const wq_lib::basic_stat& result = table.getResult();
    return {"How are " + nameOr(names.x, "the values") + " distributed over " + digits(table.getTable().size()) + " classes?",
            "M = " + figures(result.mean) + ", SD = " + figures(result.sampleStdev) + ", median " + figures(result.median) +
                ", n = " + digits(result.n),
            {{"sample size", "result/sample/n", static_cast<double>(result.n)},
             {"mean", "result/sample/mean", result.mean},
             {"standard deviation", "result/sample/sampleStdev", result.sampleStdev},
             {"lower limit of the first class", "result/startClass", table.getStartClass()},
             {"width of a class", "result/classWidth", table.getClassWidth()}}};
}

Statement statementOf(wq_lib::BasicXyStatistics& pairs, const VariableNames& names)
{
    const wq_lib::xy_stat& result = pairs.getXyResult();
    const Textbook book = textbook(wq_exact::of(pairs));
    return {"How do " + nameOr(names.x, "x") + " and " + nameOr(names.y, "y") + " vary together?",
            "r = " + coefficientWithLimits(book.value("r"), book, "limitsR", pairs) + ", " + probability(book.value("p")) +
                determination("r\u00b2", book) + ", means " + figures(result.x.mean) + " and " + figures(result.y.mean) +
                ", n = " + digits(result.x.n),
            {{"pairs", "result/n", static_cast<double>(result.x.n)},
             {"mean of x", "result/x/mean", result.x.mean},
             {"mean of y", "result/y/mean", result.y.mean},
             {"covariance", "result/covariance", result.covariance}}};
}

Statement statementOf(wq_lib::Correlation& correlation, const VariableNames& names)
{
    const wq_lib::correlation_stat& result = correlation.getCorrelationResult();
    const std::size_t n = correlation.getXyResult().x.n;
    const Textbook book = textbook(wq_exact::of(correlation));
    return {"Are " + nameOr(names.x, "x") + " and " + nameOr(names.y, "y") + " correlated?",
            "r(" + figures(lessBy(n, 2.0), 10) + ") = " + coefficientWithLimits(result.r, book, "confidenceLimitsR", correlation) + ", " +
                probability(book.value("pT")) + determination("r\u00b2", book) + ", n = " + digits(n),
            {{"pairs", "result/xy/n", static_cast<double>(n)},
             {"correlation coefficient r", "result/r", result.r},
             {"t", "result/t", result.t},
             {"F", "result/F", result.F}}};
}

Statement statementOf(wq_lib::Regression& regression, const VariableNames& names)
{
    const wq_lib::regression_stat& fit = regression.getRegressionResult();
    const Textbook book = textbook(wq_exact::of(regression));
    return {"How does " + nameOr(names.y, "y") + " depend on " + nameOr(names.x, "x") + ", by " + formulaOf(regression) + "?",
            "a = " + figures(fit.a) + ", b = " + withLimits(fit.b, book, "limitsB", regression) + ", " +
                withDf("t", lessBy(fit.n, 2.0), fit.tB) + ", " + probability(book.value("pB")) + determination("R\u00b2", book) +
                ", n = " + digits(fit.n),
            {{"pairs", "result/n", static_cast<double>(fit.n)},
             {"constant a", "result/a", fit.a},
             {"coefficient b", "result/b", fit.b},
             {"standard error of b", "result/seB", fit.seB},
             {"t of b", "result/tB", fit.tB},
             {"explained sum of squares", "result/explained", fit.explained},
             {"unexplained sum of squares", "result/unexplained", fit.unexplained}}};
}

Statement statementOf(wq_lib::SingleAnova& anova, const VariableNames& names)
{
    const Textbook book = textbook(wq_exact::of(anova));
    const double df1 = lessBy(anova.getGroups().size(), 1.0);
    const double n = static_cast<double>(anova.getTotalObservations());
    return {"Does " + nameOr(names.y, "the observation") + " differ among the groups of " + nameOr(names.x, "x") + "?",
            withDf("F", df1, n - df1 - 1.0, book.value("fs")) + ", " + probability(book.value("p")) +
                effectSize("\u03b7\u00b2", book, "etaSquared") + effectSize("\u03c9\u00b2", book, "omegaSquared"),
            {{"groups", "result/groupCount", static_cast<double>(anova.getGroupCount())}, {"observations", "result/totalObservations", n}}};
}

Statement statementOf(wq_lib::LinearRegressionMultiY& regression, const VariableNames& names)
{
    const Textbook book = textbook(wq_exact::of(regression));
    const wq_lib::regression_multi_y_stat& fit = regression.getRegressionResult();
    const double b = book.value("b");
    const double df1 = lessBy(regression.getGroups().size(), 1.0);
    const double df2 = static_cast<double>(regression.getTotalObservations()) - df1 - 1.0;
    return {"How does " + nameOr(names.y, "y") + ", observed several times, depend on " + nameOr(names.x, "x") + "?",
            "among groups " + withDf("F", df1, df2, book.value("among/fs")) + ", " + probability(book.value("among/p")) +
                "; b = " + withLimits(b, book, "limitsB", regression) + ", " + withDf("t", book.value("deviations/df"), book.value("tB")) +
                ", " + probability(book.value("pT")) + determination("R\u00b2", book),
            {{"observations", "result/anova/totalObservations", static_cast<double>(regression.getTotalObservations())},
             {"constant a", "result/a", fit.a},
             {"coefficient b", "result/b", fit.b}}};
}

Statement statementOf(wq_lib::GoodnessOfFit& test, const VariableNames&)
{
    const wq_exact::GoodnessOfFitResult exact = wq_exact::of(test);
    const bool isTested = !std::isnan(exact.p);
    const char* const noTest = exact.classesWithoutExpected > 0 ? ", no test: nothing is expected in a class"
                               : !(exact.chiSquare.df1 > 0.0)   ? ", no test: there are no degrees of freedom"
                                                                : ", no test: chi-square is no number";
    const auto shown = [&](const char* statistic, const wq_exact::Test& of) {
        return withDf(statistic, of.df1, of.statistic) + (isTested ? ", " + probability(of.p) : "");
    };
    return {"Do the observed frequencies fit the expected ones?",
            shown("\u03c7\u00b2", exact.chiSquare) + (isTested ? ", which decides; " : "; ") + shown("G", exact.G) +
                (isTested ? effectSize("w", textbook(exact), "cohensW") : noTest),
            {{"chi-square", "result/X2", test.getX2()},
             {"G", "result/G", test.getG()},
             {"G, corrected", "result/GAdjusted", test.getGAdjusted()}}};
}

Statement statementOf(wq_lib::KolmogorovSmirnov2& test, const VariableNames&)
{
    const Textbook book = textbook(wq_exact::of(test));
    const double counted = book.value("pTheseSizes");
    return {"Do the two samples come from the same distribution?",
            "D = " + figures(test.getD()) + ", " +
                (std::isnan(counted) ? probability(book.value("pLargeSamples")) : probability(counted) + " given the ties") +
                ", n = " + digits(test.getN1()) + " and " + digits(test.getN2()),
            {{"first sample", "result/n1", static_cast<double>(test.getN1())},
             {"second sample", "result/n2", static_cast<double>(test.getN2())},
             {"D", "result/D", test.getD()}}};
}

Statement statementOf(TwoDataFiles& samples, const VariableNames& names)
{
    const Textbook book = textbook(wq_exact::of(samples));
    const double first = samples.getResult().sampleVariance;
    const double second = samples.getSecondSample().sampleVariance;
    return {"Do the variances of " + nameOr(names.y, "the two samples") + " differ?",
            withDf("F", static_cast<double>(samples.getDf1()), static_cast<double>(samples.getDf2()), samples.getF()) + ", " +
                probability(book.value("p")) + ", ratio " + withLimits(samples.getF(), book, "ratioLimits", samples) + ", variances " +
                figures(first) + " and " + figures(second),
            {{"variance of the first sample", "result/first/sampleVariance", first},
             {"variance of the second sample", "result/second/sampleVariance", second},
             {"F", "result/F", samples.getF()}}};
}

Statement statementOf(wq_lib::Circular& directions, const VariableNames& names)
{
    const wq_lib::circular_stat& result = directions.getCircularResult();
    const Textbook book = textbook(wq_exact::of(directions));
    const bool isGrouped = directions.isGrouped();
    return {"Is there a mean direction of " + nameOr(names.x, "the observations") + ", or do they point anywhere?",
            "mean direction " + figures(wq_lib::radianToDegree(result.a)) + "\u00b0, r = " + coefficient(result.r) +
                (isGrouped ? " corrected for grouping, z without the correction = " : ", z = ") + figures(book.value("z")) + ", " +
                probability(book.value("p")) + ", n = " + digits(result.n),
            {{"observations", "result/n", static_cast<double>(result.n)},
             {"mean direction in radians", "result/a", result.a},
             {"length r of the mean vector", "result/r", result.r},
             {"Rayleigh's z", "result/z", result.z}}};
}

}  // namespace wqstat
