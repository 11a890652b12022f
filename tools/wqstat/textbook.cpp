#include "textbook.h"

#include "arguments.h"
#include "exact.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace wqstat {

// ---------------------------------------------------------------- the block

void Textbook::limits(const std::string& of, const std::string& path, double value, double halfWidth)
{
    figure("lower limit" + of, path + "/lower", value - halfWidth);
    figure("upper limit" + of, path + "/upper", value + halfWidth);
}

void Textbook::decision(const std::string& label, const std::string& path, Decision exact, Decision reported)
{
    content.push_back({label, path, exact});
    if (!exact || !reported) return;
    ++compared;
    if (*exact == *reported) return;
    differences.push_back(path);
    comparison += "The decision on " + label + " differs: the report " + (*reported ? "accepts" : "rejects") + " it.\n";
}

Textbook::Decision Textbook::byProbability(double p, double alpha) { return std::isnan(p) ? Decision() : p >= alpha; }

namespace {

std::string shownValue(double value) { return std::isnan(value) ? "n/a" : sixDigits(value); }
std::string shownValue(Textbook::Decision accepted) { return !accepted ? "n/a" : *accepted ? "accepted" : "rejected"; }

}  // namespace

std::string Textbook::block() const
{
    constexpr std::size_t ruleWidth = 70;  // as in the reports
    std::size_t width = 0;
    for (const Line& line : content) width = std::max(width, line.label.size());
    std::string text = "\nTEXTBOOK\n" + std::string(ruleWidth, '=') + "\n";
    for (const Line& line : content) {
        text += line.label + std::string(width - line.label.size(), ' ') + " : ";
        text += std::visit([](const auto& value) { return shownValue(value); }, line.content) + "\n";
    }
    if (compared > 0 && differences.empty())
        text += compared == 1 ? "The decision is the report's.\n" : "The decisions are the report's.\n";
    return text + comparison + "\n";
}

// ---------------------------------------------------------------- the analyses

namespace {

/** Degrees of freedom of a sample; a difference of counts would wrap. */
double degrees(std::size_t n, std::size_t lost) { return static_cast<double>(n) - static_cast<double>(lost); }

/** "t0.05(2),28": the level, two-sided, and the degrees of freedom. */
std::string tLabel(double alpha, double df) { return "t" + sixDigits(alpha) + "(2)," + sixDigits(df); }

std::string fLabel(double alpha, double df1, double df2)
{
    return "F" + sixDigits(alpha) + "[" + sixDigits(df1) + ", " + sixDigits(df2) + "]";
}

}  // namespace

Textbook textbook(wq_lib::BasicStatistics& sample)
{
    const wq_lib::basic_stat& result = sample.getResult();
    const double alpha = sample.getSignificance();
    const double df = degrees(result.n, 1);
    const double t = sample.StudentOfMeans(result.mean, result.sampleVariance, sample.getNullHypothesis(), result.n);
    const double p = exact::tTwoSided(t, df);
    const double critical = exact::tTwoSidedPoint(alpha, df);

    Textbook book;
    book.figure("p, two-sided", "p", p);
    book.figure(tLabel(alpha, df), "criticalT", critical);
    book.limits("", "confidenceLimits", result.mean, critical * result.stdError);
    book.figure(tLabel(alpha / 2.0, df) + ", where the report decides", "criticalTHalfAlpha", exact::tTwoSidedPoint(alpha / 2.0, df));
    book.decision("H0", "acceptH0", Textbook::byProbability(p, alpha), sample.acceptH0());
    return book;
}

Textbook textbook(wq_lib::Regression& regression)
{
    const wq_lib::regression_stat& fit = regression.getRegressionResult();
    const double alpha = regression.getSignificance();
    const double df = degrees(fit.n, 2);
    const double p = exact::tTwoSided(fit.tB, df);
    const double critical = exact::tTwoSidedPoint(alpha, df);

    Textbook book;
    book.figure("p of t for b, two-sided", "pB", p);
    book.figure(tLabel(alpha, df), "criticalT", critical);
    book.limits(" b", "limitsB", fit.b, critical * fit.seB);
    book.limits(" Y at mean X", "limitsY", fit.meanY, critical * fit.seY);
    book.decision("H0 [b = 0]", "acceptH0", Textbook::byProbability(p, alpha), {});
    return book;
}

Textbook textbook(wq_lib::Correlation& correlation)
{
    const wq_lib::correlation_stat& result = correlation.getCorrelationResult();
    const std::size_t n = correlation.getXyResult().x.n;
    const double alpha = correlation.getSignificance();
    const double df = degrees(n, 2);
    const double r = result.r > 1.0 ? 1.0 : result.r < -1.0 ? -1.0 : result.r;  // rounding may take it beyond, and then t and F too
    const double pT = exact::tTwoSided(r * std::sqrt(df / (1.0 - r * r)), df);
    const double upperF = exact::fUpper((1.0 + std::fabs(r)) / (1.0 - std::fabs(r)), df, df);
    const double pF = upperF > 0.5 ? 1.0 : 2.0 * upperF;  // F is never below 1
    const double z = std::atanh(r);
    const double halfWidth = exact::normalTwoSidedPoint(alpha) / std::sqrt(degrees(n, 3));

    Textbook book;
    book.limits(" in z", "confidenceLimits", z, n > 3 ? halfWidth : std::nan(""));
    book.figure("lower limit of r", "confidenceLimitsR/lower", n > 3 ? std::tanh(z - halfWidth) : std::nan(""));
    book.figure("upper limit of r", "confidenceLimitsR/upper", n > 3 ? std::tanh(z + halfWidth) : std::nan(""));
    book.figure("p of t, two-sided", "pT", pT);
    book.figure(tLabel(alpha, df), "criticalT", exact::tTwoSidedPoint(alpha, df));
    book.decision("H0 by t", "acceptH0_t", Textbook::byProbability(pT, alpha), correlation.acceptH0_t());
    book.figure("P of F, upper tail", "FSignificance", upperF);
    book.figure("p of F, two-sided", "pF", pF);
    book.figure(fLabel(alpha / 2.0, df, df), "criticalF", exact::fUpperPoint(alpha / 2.0, df, df));
    book.decision("H0 by F", "acceptH0_F", Textbook::byProbability(pF, alpha), correlation.acceptH0_F());
    return book;
}

namespace {

/** The mean, also where the values are large and lie close together. */
double meanOf(const std::vector<double>& values)
{
    const double n = static_cast<double>(values.size());
    const double first = std::accumulate(values.begin(), values.end(), 0.0) / n;
    return first + std::accumulate(values.begin(), values.end(), 0.0, [first](double sum, double y) { return sum + (y - first); }) / n;
}

/**
 * An analysis of variance from deviations. The class takes differences of sums of squares, of which no digit may be left; then its F is
 * not the one to look up.
 */
class Variation {
public:
    explicit Variation(const wq_lib::SingleAnova& anova)
    {
        for (const wq_lib::anova_group& group : anova.getGroups())
            groups.push_back({group.id, static_cast<double>(group.observations.size()), meanOf(group.observations)});
        double n = 0.0;
        for (const Group& group : groups) n += group.n;
        double meanX = 0.0;
        double meanY = 0.0;  // above that of the first group
        for (const Group& group : groups) {
            meanX += group.n * group.x / n;
            meanY += group.n * (group.mean - groups.front().mean) / n;
        }
        for (std::size_t i = 0; i < groups.size(); ++i) {
            const Group& group = groups[i];
            const double deviation = group.mean - groups.front().mean - meanY;
            ssAmong += group.n * deviation * deviation;
            for (const double y : anova.getGroups()[i].observations) ssWithin += (y - group.mean) * (y - group.mean);
            ssX += group.n * (group.x - meanX) * (group.x - meanX);
            spXY += group.n * (group.x - meanX) * deviation;
        }
        dfAmong = static_cast<double>(groups.size()) - 1.0;
        dfWithin = n - static_cast<double>(groups.size());
    }

    double msWithin() const { return ssWithin / dfWithin; }
    double fAmong() const { return ssAmong / dfAmong / msWithin(); }

    double dfAmong = 0.0;
    double dfWithin = 0.0;
    double ssAmong = 0.0;
    double ssWithin = 0.0;
    double ssX = 0.0;   ///< of the groups' x, as the regression sees them
    double spXY = 0.0;  ///< of x and y

private:
    struct Group {
        double x;
        double n;
        double mean;
    };
    std::vector<Group> groups;
};

/** An F with its critical value and both tails. @return the upper tail. */
double fTest(Textbook& book, const std::string& of, const std::string& path, double f, double df1, double df2, double alpha)
{
    const double p = exact::fUpper(f, df1, df2);
    book.figure("Fs" + of, path + "fs", f);
    book.figure(fLabel(alpha, df1, df2) + of, path + "criticalF", exact::fUpperPoint(alpha, df1, df2));
    book.figure("P[F]" + of + ", lower tail", path + "lowerTail", exact::fLower(f, df1, df2));
    book.figure("p" + of, path + "p", p);
    return p;
}

}  // namespace

Textbook textbook(wq_lib::SingleAnova& anova)
{
    const double alpha = anova.getSignificance();
    const double critical = wq_lib::F_PercentPoint(1.0 - alpha, anova.getAmong().df, anova.getWithin().df);
    const Variation variation(anova);

    Textbook book;
    const double p = fTest(book, "", "", variation.fAmong(), variation.dfAmong, variation.dfWithin, alpha);
    book.decision("H0", "acceptH0", Textbook::byProbability(p, alpha), !(anova.getAmong().fs > critical));  // as the report decides
    return book;
}

/** The class always gives the deviations 2 degrees of freedom, and fits no line where it sees none; here both are done by the book. */
Textbook textbook(wq_lib::LinearRegressionMultiY& regression)
{
    const double alpha = regression.getSignificance();
    const Variation variation(regression);
    const double b = variation.spXY / variation.ssX;
    const double explained = b * variation.spXY;
    const double df = variation.dfAmong - 1.0;
    const double msDeviations = df > 0.0 ? (variation.ssAmong - explained) / df : std::nan("");
    const double fDeviations = msDeviations / variation.msWithin();
    const double seB = std::sqrt(msDeviations / variation.ssX);
    const double t = b / seB;
    const double pT = exact::tTwoSided(t, df);
    const double critical = exact::tTwoSidedPoint(alpha, df);

    Textbook book;
    const double pAmong = fTest(book, " among groups", "among/", variation.fAmong(), variation.dfAmong, variation.dfWithin, alpha);
    book.decision("H0 [no difference among groups]", "among/acceptH0", Textbook::byProbability(pAmong, alpha), {});
    book.figure("df of deviations", "deviations/df", df);
    book.figure("MS of deviations", "deviations/ms", msDeviations);
    const double pDeviations = fTest(book, " of deviations", "deviations/", fDeviations, df, variation.dfWithin, alpha);
    book.decision("H0 [no deviations from the line]", "deviations/acceptH0", Textbook::byProbability(pDeviations, alpha), {});
    book.figure("Fs of linear regression", "regression/fs", explained / msDeviations);
    book.figure("regression coefficient b", "b", b);
    book.figure("standard error of b", "seB", seB);
    book.figure("t value for b", "tB", t);
    book.figure("p of t for b, two-sided", "pT", pT);
    book.figure(tLabel(alpha, df), "criticalT", critical);
    book.limits(" b", "limitsB", b, critical * seB);
    book.decision("H0 [b = 0]", "acceptH0", Textbook::byProbability(pT, alpha), !regression.isComputeRegression());
    return book;
}

Textbook textbook(wq_lib::GoodnessOfFit& test)
{
    const double alpha = test.getSignificance();
    const double df = degrees(test.getSampleSize(), 1);
    Textbook book;
    Textbook::Decision accepted;  // by those that are numbers: G is none where nothing was observed in a class
    const auto statistic = [&](const std::string& name, const std::string& path, double value) {
        const double p = exact::chiSquareUpper(value, df);
        book.figure("P of " + name + ", lower tail", path + "/lowerTail", exact::chiSquareLower(value, df));
        book.figure("p of " + name, path + "/p", p);
        if (!std::isnan(p)) accepted = accepted.value_or(true) && p >= alpha;
    };
    statistic("X2", "X2", test.getX2());
    statistic("G", "G", test.getG());
    if (test.isWilliamsCorrection()) statistic("G adj", "GAdjusted", test.getGAdjusted());
    book.figure("X2 " + sixDigits(alpha) + "," + sixDigits(df), "criticalChiSquare", exact::chiSquareUpperPoint(alpha, df));
    book.decision("Ho", "acceptH0", accepted, test.acceptH0());
    return book;
}

Textbook textbook(wq_lib::KolmogorovSmirnov2& test)
{
    const double alpha = test.getSignificance();
    const std::size_t n1 = test.getN1();
    const std::size_t n2 = test.getN2();
    const double size1 = static_cast<double>(n1);
    const double size2 = static_cast<double>(n2);
    const double root = std::sqrt(size1 * size2 / (size1 + size2));
    const double pLarge = n1 > 0 && n2 > 0 ? exact::kolmogorovUpper(test.getD() * root) : std::nan("");
    const std::string level = "D(" + sixDigits(alpha) + ")";

    Textbook book;
    book.figure("p, large samples", "pLargeSamples", pLarge);
    book.figure(level + ", large samples", "criticalDLargeSamples",
                n1 > 0 && n2 > 0 ? exact::kolmogorovUpperPoint(alpha) / root : std::nan(""));
    double p = pLarge;
    if (exact::canCountArrangements(n1, n2)) {
        p = exact::smirnovUpper(test.getD(), n1, n2);
        book.figure("p, these sample sizes", "pTheseSizes", p);
        book.figure(level + ", these sample sizes", "criticalDTheseSizes", exact::smirnovUpperPoint(alpha, n1, n2));
    }
    book.decision("H0", "acceptH0", Textbook::byProbability(p, alpha), test.acceptH0());
    return book;
}

Textbook textbook(wq_lib::TwoSamples& samples)
{
    const double alpha = samples.getSignificance();
    const double df1 = static_cast<double>(samples.getDf1());
    const double df2 = static_cast<double>(samples.getDf2());
    const double lower = exact::fLower(samples.getF(), df1, df2);
    const double upper = exact::fUpper(samples.getF(), df1, df2);
    const double p = 2.0 * std::min(lower, upper);  // both NaN or neither

    Textbook book;
    book.figure("P of F, lower tail", "lowerTail", lower);
    book.figure("p, two-sided", "p", p);
    book.figure(fLabel(alpha / 2.0, df1, df2), "criticalF", exact::fUpperPoint(alpha / 2.0, df1, df2));
    book.decision("H0", "acceptH0", Textbook::byProbability(p, alpha), samples.acceptH0());
    return book;
}

Textbook textbook(wq_lib::Circular& directions)
{
    const wq_lib::circular_stat& result = directions.getCircularResult();
    const double alpha = directions.getSignificance();
    const double n = static_cast<double>(result.n);
    const double p = exact::rayleighUpper(result.R, n);

    Textbook book;
    book.figure("p (Wilkie's formula)", "p", p);
    book.figure("z" + sixDigits(alpha) + "," + sixDigits(n), "criticalZ", exact::rayleighUpperPoint(alpha, n));
    book.decision("H0", "acceptH0", Textbook::byProbability(p, alpha), directions.acceptH0());
    return book;
}

}  // namespace wqstat
