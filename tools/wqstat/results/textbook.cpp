#include "textbook.h"

#include "command_line/arguments.h"

#include <algorithm>
#include <cmath>

namespace wqstat {

// ---------------------------------------------------------------- the block

void Textbook::limits(const std::string& of, const std::string& path, const wq_exact::Limits& limits)
{
    const double width = limits.upper - limits.lower;
    figure("lower limit" + of, path + "/lower", limits.lower, width);
    figure("upper limit" + of, path + "/upper", limits.upper, width);
}

void Textbook::decision(const std::string& label, const std::string& path, const wq_exact::Decision& decision)
{
    content.push_back({label, path, decision.accepted});
    allPaths.push_back(path);
    if (!decision.accepted || !decision.acceptedByReport) return;
    ++compared;
    if (!decision.reportDiffers()) return;
    differences.push_back(path);
    comparison += "The decision on " + label + " differs: the report " + (*decision.acceptedByReport ? "accepts" : "rejects") + " it.\n";
}

namespace {

std::string shownValue(double value) { return std::isnan(value) ? "n/a" : sixDigits(value); }
std::string shownValue(Textbook::Decision accepted) { return !accepted ? "n/a" : *accepted ? "accepted" : "rejected"; }

}  // namespace

double Textbook::value(const std::string& path) const
{
    for (const Line& line : content)
        if (line.path == path)
            if (const double* const figure = std::get_if<double>(&line.content)) return *figure;
    return std::nan("");
}

std::vector<std::string> Textbook::differenceSentences() const
{
    std::vector<std::string> sentences;
    std::size_t begin = 0;
    for (std::size_t end = comparison.find('\n'); end != std::string::npos; end = comparison.find('\n', begin)) {
        sentences.push_back(comparison.substr(begin, end - begin));
        begin = end + 1;
    }
    return sentences;
}

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
    text += comparison;
    for (const std::string& warning : warningTexts) text += "Warning: " + warning + "\n";
    return text + "\n";
}

// ---------------------------------------------------------------- the analyses

namespace {

/** "t0.05(2),28": the level, two-sided, and the degrees of freedom. */
std::string tLabel(double alpha, double df) { return "t" + sixDigits(alpha) + "(2)," + sixDigits(df); }

std::string fLabel(double alpha, double df1, double df2)
{
    return "F" + sixDigits(alpha) + "[" + sixDigits(df1) + ", " + sixDigits(df2) + "]";
}

/** An F of the upper tail with its critical value and both tails. */
void upperF(Textbook& book, const std::string& of, const std::string& path, const wq_exact::Test& F, double lowerTail)
{
    book.figure("Fs" + of, path + "fs", F.statistic);
    book.figure(fLabel(F.alpha, F.df1, F.df2) + of, path + "criticalF", F.criticalValue);
    book.figure("P[F]" + of + ", lower tail", path + "lowerTail", lowerTail);
    book.figure("p" + of, path + "p", F.p);
}

}  // namespace

Textbook textbook(const wq_exact::OneSampleResult& exact)
{
    const wq_exact::Test& t = exact.mean;
    Textbook book;
    book.figure("p, two-sided", "p", t.p);
    book.figure(tLabel(t.alpha, t.df1), "criticalT", t.criticalValue);
    book.limits("", "confidenceLimits", exact.meanLimits);
    book.limits(" of the variance", "varianceLimits", exact.varianceLimits);
    book.figure("Cohen's d", "cohensD", exact.cohensD);
    book.figure(tLabel(t.alpha / 2.0, t.df1) + ", where the report decides", "criticalTHalfAlpha", exact.criticalHalfAlpha);
    book.decision("H0", "acceptH0", t);
    book.decidesBy("p");
    return book;
}

Textbook textbook(const wq_exact::PairsResult& exact)
{
    Textbook book;
    book.figure("correlation coefficient r", "r", exact.r);
    book.limits(" of r", "limitsR", exact.limits);
    book.figure("p of r = 0, two-sided", "p", exact.p);
    book.figure("r squared", "rSquared", exact.rSquared);
    book.figure("largest x", "maximumX", exact.maximumX);
    book.figure("largest y", "maximumY", exact.maximumY);
    book.decidesBy("p");
    return book;
}

double constantOf(const wq_exact::RegressionResult& exact)
{
    return exact.scaleY == wq_exact::Scale::logarithm ? std::exp(exact.a) : exact.a;
}

namespace {

/** The line itself, where pairs without a logarithm leave the report none. */
void lineOfTheOthers(Textbook& book, const wq_exact::RegressionResult& exact)
{
    if (exact.skipped == 0 || std::isnan(exact.b)) {
        for (const char* const path : {"a", "b", "seB", "tB"}) book.noFigure(path);
        return;
    }
    book.figure("constant a", "a", constantOf(exact));
    book.figure("coefficient b", "b", exact.b, exact.seB);
    book.figure("standard error of b", "seB", exact.seB);
    book.figure("t of b", "tB", exact.slope.statistic);
}

}  // namespace

Textbook textbook(const wq_exact::RegressionResult& exact)
{
    const auto scaled = [](wq_exact::Scale scale, const char* name) {
        return (scale == wq_exact::Scale::logarithm ? "ln " : "") + std::string(name);
    };
    const std::string ofY = exact.scaleY == wq_exact::Scale::logarithm ? " of ln Y" : "";
    Textbook book;
    lineOfTheOthers(book, exact);
    book.figure("p of t for b, two-sided", "pB", exact.slope.p);
    book.figure(tLabel(exact.slope.alpha, exact.slope.df1), "criticalT", exact.slope.criticalValue);
    book.limits(" b", "limitsB", exact.slopeLimits);
    book.limits(" " + scaled(exact.scaleY, "Y") + " at mean " + scaled(exact.scaleX, "X"), "limitsY", exact.heightLimits);
    book.figure("R squared" + ofY, "rSquared", exact.rSquared);
    book.figure("adjusted R squared" + ofY, "adjustedRSquared", exact.adjustedRSquared);
    book.decision("H0 [b = 0]", "acceptH0", exact.slope);
    book.decidesBy("pB");
    return book;
}

Textbook textbook(const wq_exact::CorrelationResult& exact)
{
    Textbook book;
    book.limits(" in z", "confidenceLimits", exact.zLimits);
    book.limits(" of r", "confidenceLimitsR", exact.limits);
    book.figure("r squared", "rSquared", exact.rSquared);
    book.figure("p of t, two-sided", "pT", exact.t.p);
    book.figure(tLabel(exact.t.alpha, exact.t.df1), "criticalT", exact.t.criticalValue);
    book.decision("H0 by t", "acceptH0_t", exact.t);
    book.figure("P of F, upper tail", "FSignificance", exact.upperTailF);
    book.figure("p of F, two-sided", "pF", exact.F.p);
    book.figure(fLabel(exact.F.alpha / 2.0, exact.F.df1, exact.F.df2), "criticalF", exact.F.criticalValue);
    book.decision("H0 by F", "acceptH0_F", exact.F);
    book.decidesBy("pT");
    return book;
}

Textbook textbook(const wq_exact::AnovaResult& exact)
{
    Textbook book;
    book.figure("MS among groups", "msAmong", exact.among.meanSquare);
    book.figure("MS within groups", "msWithin", exact.within.meanSquare);
    upperF(book, "", "", exact.F, exact.lowerTail);
    book.figure("eta squared", "etaSquared", exact.etaSquared);
    book.figure("omega squared", "omegaSquared", exact.omegaSquared);
    book.decision("H0", "acceptH0", exact.F);
    book.decidesBy("p");
    return book;
}

Textbook textbook(const wq_exact::MultiYResult& exact)
{
    Textbook book;
    upperF(book, " among groups", "among/", exact.groups.F, exact.groups.lowerTail);
    wq_exact::Decision undecided = exact.groups.F;
    undecided.acceptedByReport.reset();  // this report has no H0 of the groups
    book.decision("H0 [no difference among groups]", "among/acceptH0", undecided);
    book.figure("df of deviations", "deviations/df", exact.deviations.df);
    book.figure("MS of deviations", "deviations/ms", exact.deviations.meanSquare);
    upperF(book, " of deviations", "deviations/", exact.deviationsF, exact.deviationsLowerTail);
    book.decision("H0 [no deviations from the line]", "deviations/acceptH0", exact.deviationsF);
    book.figure("Fs of linear regression", "regression/fs", exact.regressionF);
    book.figure("R squared", "rSquared", exact.rSquared);
    book.figure("regression coefficient b", "b", exact.b);
    book.figure("standard error of b", "seB", exact.seB);
    book.figure("t value for b", "tB", exact.slope.statistic);
    book.figure("p of t for b, two-sided", "pT", exact.slope.p);
    book.figure(tLabel(exact.slope.alpha, exact.slope.df1), "criticalT", exact.slope.criticalValue);
    book.limits(" b", "limitsB", exact.slopeLimits);
    book.decision("H0 [b = 0]", "acceptH0", exact.slope);
    book.decidesBy("pT");
    return book;
}

Textbook textbook(const wq_exact::GoodnessOfFitResult& exact)
{
    Textbook book;
    const auto statistic = [&](const std::string& name, const std::string& path, const wq_exact::Test& test, double lowerTail) {
        book.figure("P of " + name + ", lower tail", path + "/lowerTail", lowerTail);
        book.figure("p of " + name, path + "/p", test.p);
    };
    statistic("X2", "X2", exact.chiSquare, exact.chiSquareLowerTail);
    statistic("G", "G", exact.G, exact.GLowerTail);
    if (exact.GAdjusted)
        statistic("G adj", "GAdjusted", *exact.GAdjusted, exact.GAdjustedLowerTail);
    else
        for (const char* const path : {"GAdjusted/lowerTail", "GAdjusted/p"}) book.noFigure(path);
    const wq_exact::Test& test = exact.chiSquare;
    book.figure("X2 " + sixDigits(test.alpha) + "," + sixDigits(test.df1), "criticalChiSquare", test.criticalValue);
    book.figure("Cohen's w", "cohensW", exact.cohensW);
    book.decision("Ho", "acceptH0", exact.decision);
    if (exact.decision.accepted) book.decidesBy("X2/p");
    return book;
}

Textbook textbook(const wq_exact::KolmogorovSmirnovResult& exact)
{
    const std::string level = "D(" + sixDigits(exact.largeSamples.alpha) + ")";
    Textbook book;
    book.figure("p, large samples", "pLargeSamples", exact.largeSamples.p);
    book.figure(level + ", large samples", "criticalDLargeSamples", exact.largeSamples.criticalValue);
    if (exact.allArrangements) {
        book.figure("p, given the ties", "pTheseSizes", exact.allArrangements->p);
        book.figure(level + ", given the ties", "criticalDTheseSizes", exact.allArrangements->criticalValue);
    } else {
        for (const char* const path : {"pTheseSizes", "criticalDTheseSizes"}) book.noFigure(path);
    }
    book.decision("H0", "acceptH0", exact.decision);
    book.decidesBy(exact.allArrangements ? "pTheseSizes" : "pLargeSamples");
    return book;
}

Textbook textbook(const wq_exact::TwoVariancesResult& exact)
{
    const wq_exact::Test& F = exact.ratio;
    Textbook book;
    book.figure("F", "F", F.statistic);
    book.figure("P of F, lower tail", "lowerTail", exact.lowerTail);
    book.figure("p, two-sided", "p", F.p);
    book.figure(fLabel(F.alpha / 2.0, F.df1, F.df2), "criticalF", F.criticalValue);
    book.limits(" of the ratio", "ratioLimits", exact.ratioLimits);
    book.limits(" of variance 1", "varianceLimits1", exact.varianceLimits[0]);
    book.limits(" of variance 2", "varianceLimits2", exact.varianceLimits[1]);
    book.decision("H0", "acceptH0", F);
    book.decidesBy("p");
    return book;
}

Textbook textbook(const wq_exact::FrequencyResult& exact)
{
    Textbook book;
    book.figure("values", "n", static_cast<double>(exact.n));
    book.figure("values in the table", "counted", static_cast<double>(exact.counted));
    book.figure("smallest value", "minimum", exact.minimum);
    book.figure("largest value", "maximum", exact.maximum);
    book.figure("last class with all values", "lastClassCount", static_cast<double>(exact.lastClass));
    book.limits(" of the mean", "confidenceLimits", exact.meanLimits);
    return book;
}

Textbook textbook(const wq_exact::DirectionsResult& exact)
{
    const wq_exact::Test& test = exact.rayleigh;
    Textbook book;
    book.figure(exact.classes > 0.0 ? "z, not corrected" : "z", "z", test.statistic);
    book.figure("p of R", "p", test.p);
    book.figure("z" + sixDigits(test.alpha) + "," + sixDigits(exact.n), "criticalZ", test.criticalValue);
    book.decision("H0", "acceptH0", test);
    book.decidesBy("p");
    return book;
}

}  // namespace wqstat
