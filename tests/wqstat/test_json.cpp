// wqstat --json: the document holds every field of the result records, bit for bit, and all that the report prints.
#include "data_files.h"
#include "documents.h"

#include "support/bits.h"

#include <wq_stat/wq_stat.h>

#include <gmock/gmock.h>

#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <map>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;
using namespace wq_test;
using namespace wq_test::data_files;

// ---------------------------------------------------------------- the report, written from the document

// As reports print a number: counts in full, doubles with so many decimals, or 6 significant digits when decimals is negative.
std::string printedNumber(const Json& member, int decimals)
{
    if (member.is_number_integer()) return member.dump();
    const double value = numberOf(member);
    if (std::isnan(value)) return "nan";
    char text[400];
    if (decimals < 0)
        std::snprintf(text, sizeof text, "%g", value);
    else
        std::snprintf(text, sizeof text, "%.*f", decimals, value);
    return text;
}

// A text with {POINTER} for each member of the document; {POINTER|4} prints it with 4 decimals, {POINTER|verdict} in words.
std::string rendered(const Json& document, const std::string& pattern, int decimals)
{
    std::string text;
    std::size_t begin = 0;
    for (std::size_t open; (open = pattern.find('{', begin)) != std::string::npos;) {
        const std::size_t close = pattern.find('}', open);
        std::string pointer = pattern.substr(open + 1, close - open - 1);
        std::string format;
        if (const std::size_t bar = pointer.find('|'); bar != std::string::npos) {
            format = pointer.substr(bar + 1);
            pointer.resize(bar);
        }
        const Json& member = document.at(Json::json_pointer(pointer));
        text += pattern.substr(begin, open - begin);
        if (format == "verdict")
            text += member.get<bool>() ? "accepted" : "rejected";
        else if (format == "text")
            text += member.get<std::string>();
        else
            text += printedNumber(member, format.empty() ? decimals : std::stoi(format));
        begin = close + 1;
    }
    return text + pattern.substr(begin);
}

const std::string doubleRule = std::string(70, '=') + "\n";
const std::string rule = std::string(70, '-') + "\n";

std::string frame(const std::string& title) { return title + "\n" + doubleRule + "{/comment|text}\n"; }

const std::string describeReport = frame("BASIC STATISTICS") +
                                   "sample size     : {/result/n}\n"
                                   "minimum value   : {/result/min}\n"
                                   "maximum value   : {/result/max}\n"
                                   "sum             : {/result/sum}\n"
                                   "arithmetic mean : {/result/mean}\n"
                                   "variance        : {/result/variance}\n"
                                   "sample var      : {/result/sampleVariance}\n"
                                   "sample stdev    : {/result/sampleStdev}\n"
                                   "standard error  : {/result/stdError}\n"
                                   "CV              : {/result/cv}\n"
                                   "\n"
                                   "90% confidence interval\n"
                                   "Student t       : {/report/criticalT}\n"
                                   "lower limit     : {/result/confidenceLimits/lower}\n"
                                   "upper limit     : {/result/confidenceLimits/upper}\n"
                                   "\n"
                                   "geometric mean  : {/result/geoMean}\n"
                                   "harmonic mean   : {/result/harmMean}\n"
                                   "median          : {/result/median}\n"
                                   "25th percentile : {/result/quartile1}\n"
                                   "75th percentile : {/result/quartile3}\n" +
                                   rule +
                                   "Hypothesis testing H0: u = {/settings/nullHypothesis}\n"
                                   "t statistic     : {/report/t}\n"
                                   "t{/alpha}(2),{/report/df}     : {/report/criticalT}\n"
                                   "H0              : {/decision/acceptH0|verdict}\n"
                                   "\n\n";

const std::string pairsReport = frame("BASIC XY STATISTICS") + "Data pairs         : {/result/n}\n"
                                                               "sum of X           : {/result/x/sum}\n"
                                                               "mean of X          : {/result/x/mean}\n"
                                                               "variance of X      : {/result/x/variance}\n"
                                                               "sample var of X    : {/result/x/sampleVariance}\n"
                                                               "sample stdev of X  : {/report/x/sampleStdev}\n"
                                                               "standard error of X: {/report/x/stdError}\n"
                                                               "sum of squares of X: {/result/x/sumOfSquares}\n"
                                                               "\n"
                                                               "sum of Y           : {/result/y/sum}\n"
                                                               "mean of Y          : {/result/y/mean}\n"
                                                               "variance of Y      : {/result/y/variance}\n"
                                                               "sample var of Y    : {/result/y/sampleVariance}\n"
                                                               "sample stdev of Y  : {/report/y/sampleStdev}\n"
                                                               "standard error of Y: {/report/y/stdError}\n"
                                                               "sum of squares of Y: {/result/y/sumOfSquares}\n"
                                                               "\n"
                                                               "sum of products XY : {/result/sumProducts}\n"
                                                               "covariance XY      : {/result/covariance}\n"
                                                               "\n\n";

const std::string regressionLines = "n                        : {/result/n}\n"
                                    "constant a               : {/result/a}\n"
                                    "regression coefficient b : {/result/b}\n"
                                    "explained                : {/result/explained}\n"
                                    "unexplained              : {/result/unexplained}\n"
                                    "standard error of b      : {/result/seB}\n"
                                    "t value for b            : {/result/tB}\n"
                                    "t.{/alpha}[{/report/df}]  :{/report/criticalT}\n"
                                    "lower limit b            : {/result/limitsB/lower}\n"
                                    "upper limit b            : {/result/limitsB/upper}\n"
                                    "mean X,Y                 : {/result/meanX}, {/result/meanY}\n"
                                    "standard error of Y at X : {/result/seY}\n"
                                    "upper limit Y            : {/result/limitsY/lower}\n"
                                    "lower limit Y            : {/result/limitsY/upper}\n";

std::string regressionReport(const std::string& kind, const std::string& equation)
{
    const std::string gap = kind == "LINEAR" ? "\n" : "\n\n";
    return frame(kind + " REGRESSION ANALYSIS") + "y = {/result/a}" + equation + gap + regressionLines;
}

std::string correlationReport(bool limits)
{
    return frame("CORRELATION ANALYSIS") +
           "H0: {/hypothesis|text}\n"
           "observations (n)           : {/result/xy/n}\n"
           "correlation coefficient    : {/result/r}\n" +
           (limits ? "lower limit                : {/result/confidenceLimits/lower}\n"
                     "upper limit                : {/result/confidenceLimits/upper}\n"
                   : "lower limit                : n/a\n"
                     "upper limit                : n/a\n") +
           "significance level         : {/alpha}\n"
           "t value                    : {/result/t} ( p = {/result/tSignificance})\n"
           "H0                         : {/decision/acceptH0_t|verdict}\n"
           "F value                    : {/result/F} ( p = {/result/FSignificance})\n"
           "H0                         : {/decision/acceptH0_F|verdict}\n"
           "\n\n";
}

// The rows of an Anova table; source is where the document has them.
std::string tableHead() { return "Source of variation\tdf\tSS\t\tMS\texp MS\tFs\n" + rule; }

std::string tableRow(const std::string& label, const std::string& source)
{
    return label + "{" + source + "/df}\t{" + source + "/ss}\t{" + source + "/ms}\t{" + source + "/expectedMs}\t{" + source + "/fs}\n";
}

std::string tableEnd(const std::string& anova)
{
    return "Within groups       \t{" + anova + "/within/df}\t{" + anova + "/within/ss}\t{" + anova + "/within/ms}\t{" + anova +
           "/within/expectedMs}\n" + "Total groups         \t{" + anova + "/total/df}\t{" + anova + "/total/ss}\t\n" + rule;
}

std::string anovaReport(std::size_t groups)
{
    std::string text = frame("Single Classification Anova") + tableHead() + tableRow("Among groups       \t", "/result/among") +
                       tableEnd("/result") +
                       "F{/alpha}[{/result/among/df}, {/result/within/df}] = {/report/criticalF}\tP[F] ={/report/FProbability}"
                       "\tr_i = {/result/varianceComponentRatio}\n"
                       "H0 [no added variance component among groups] is {/decision/acceptH0|verdict}.\n"
                       "Anova samples\n" +
                       rule;
    for (std::size_t i = 0; i < groups; ++i) {
        const std::string group = "{/result/groups/" + std::to_string(i);
        text += "Group                       : " + group + "/id}\n" + "n                           : " + group + "/n}\n" +
                "Sum                         : " + group + "/sum}\n" + "Mean                        : " + group + "/mean}\n" +
                "Sum of squared observations : " + group + "/sumSquaredObservations}\n" + "Sum of squares              : " + group +
                "/sumOfSquares}\n" + "Variance                    : " + group + "/variance}\nn";
    }
    return text + "\n"
                  "Total observations          : {/result/totalObservations}\n"
                  "Grand total                 : {/result/grandTotal}\n"
                  "Sum of squared observations : {/result/sumSquaredObservations}\n"
                  "Sum of squared group totals : {/result/sumSquaredGroupTotals}\n"
                  "Correction term             : {/result/correctionTerm}\n"
                  "arithmetic mean sample size : {/result/meanSampleSize}\n"
                  "mean sample size (n0)       : {/result/n0}\n"
                  "variance component (r)      : {/result/varianceComponent}\n\n";
}

std::string multiYReport()
{
    return "\n" + frame("LINEAR REGRESSION MULTI Y ANALYSIS") + "\n[Anova table]\n" + tableHead() +
           tableRow("Among groups       \t", "/result/anova/among") + tableRow("Linear regression  \t", "/result/regression") +
           tableRow("Deviations         \t", "/result/deviations") + tableEnd("/result/anova") +
           "F{/alpha}[{/result/anova/among/df}, {/result/anova/within/df}] = {/report/criticalF}\tP[F] = {/report/FProbability}\n\n"
           "regression               : y = {/result/a} + {/result/b}x\n\n"
           "constant a               : {/result/a}\n"
           "regression coefficient b : {/result/b}\n"
           "explained                : {/result/explained}\n"
           "unexplained              : {/result/unexplained}\n"
           "standard error of b      : {/result/seB}\n"
           "t value for b            : {/result/tB}\n"
           "P[t value]               : {/result/pT}\n"
           "lower limit b            : {/result/limitsB/lower}\n"
           "upper limit b            : {/result/limitsB/upper}\n";
}

const std::string fitReport = frame("GOODNESS OF FIT STATISTICS") + "Ho: {/hypothesis|text}\n"
                                                                    "[Chi-square]\n"
                                                                    "X2    : {/result/X2}  ( p={/report/X2Probability})\n\n"
                                                                    "[G-test]\n"
                                                                    "G     : {/result/G}  ( p={/report/GProbability})\n\n"
                                                                    "G adj : {/result/GAdjusted}  ( p={/report/GAdjustedProbability})\n\n"
                                                                    "X2 {/alpha},{/report/df}: {/report/criticalChiSquare}\n"
                                                                    "Ho    : {/decision/acceptH0|verdict}\n";

std::string flushRight(std::string text, std::size_t width) { return text.insert(0, width - std::min(width, text.size()), ' '); }

// A report with the table of cumulative frequencies behind it, whose cells are set flush right.
std::string kolmogorovReport(const Json& document)
{
    std::string text = rendered(document,
                                frame("KOLMOGOROV-SMIRNOV TWO SAMPLE TEST") + "H0: {/hypothesis|text}\n"
                                                                              "n1      : {/result/n1}\n"
                                                                              "n2      : {/result/n2}\n"
                                                                              "D       : {/result/D}\n"
                                                                              "D({/alpha}): {/report/criticalD}\n"
                                                                              "H0      : {/decision/acceptH0|verdict}\n",
                                3);
    text += flushRight("F1", 12) + " " + flushRight("F2", 12) + " " + flushRight("relF1", 8) + " " + flushRight("relF2", 8) + " " +
            flushRight("diff", 8) + "\n" + rule;
    for (const Json& row : document.at("result").at("cumulativeFrequencies"))
        text += flushRight(printedNumber(row.at("F1"), 3), 12) + " " + flushRight(printedNumber(row.at("F2"), 3), 12) + " " +
                flushRight(printedNumber(row.at("relF1"), 3), 8) + " " + flushRight(printedNumber(row.at("relF2"), 3), 8) + " " +
                flushRight(printedNumber(row.at("diff"), 3), 8) + "\n";
    return text;
}

const std::string variancesReport = frame("TEST VARIANCES OF TWO SAMPLES") +
                                    "Ho: {/hypothesis|text}\n"
                                    "sample size 1  : {/result/first/n}\n"
                                    "sample var 1   : {/result/first/sampleVariance}\n"
                                    "sample size 2  : {/result/second/n}\n"
                                    "sample var 2   : {/result/second/sampleVariance}\n"
                                    "F              : {/result/F} (p = {/result/FProbability})\n"
                                    "Critical value : F {/alpha}[{/result/df1},{/result/df2}] = {/result/criticalF}\n"
                                    "H0             : {/decision/acceptH0|verdict}\n";

std::string frequencyReport(std::size_t classes)
{
    std::string text = frame("FREQUENCY CLASSES") + "Class [low  - high] Frequency rate\n";
    for (std::size_t j = 0; j < classes; ++j) {
        const std::string row = "{/result/table/" + std::to_string(j);
        text += flushRight(std::to_string(j), 5) + " [" + row + "/lower}-" + row + "/upper}] " + row + "/count} " + row + "/rate|4}\n";
    }
    return text;
}

std::string circularReport(bool grouped)
{
    return frame("RAYLEIGH'S STATISTICS") +
           "Ho: {/hypothesis|text}\n"
           "sample size     : {/result/n}\n" +
           "Grouped data    : " + (grouped ? "true" : "false") + "\n" + (grouped ? "rc" : "r ") +
           "              : {/result/r}\n"
           "a               : {/result/a} radians / {/report/aDegrees} degrees\n"
           "s               : {/result/s}\n"
           "s'              : {/result/sPrime}\n" +
           (grouped ? "Number of bins  : {/result/bins}\n"
                      "Size of bin     : {/result/binSize} radians\n"
                      "Mean bin#       : {/settings/binName|text} #{/result/meanBin}\n"
                    : "") +
           "R               : {/result/R}\n"
           "z               : {/result/z}\n"
           "p               : {/result/p}\n"
           "signifance level: {/result/significance}\n"
           "H0              : {/decision/acceptH0|verdict}\n" +
           (grouped ? "rc: resultant corrected for grouped data \n" : "") + "\n";
}

TEST(Json, holdsAllThatTheReportPrints)
{
    const TempFolder folder;
    std::string many = "# 60 pairs\n";
    for (int i = 0; i < 60; ++i) many += std::to_string(i) + ";" + std::to_string((i * 37) % 60) + "\n";
    const std::string sixty = folder.write("sixty.txt", many);
    const std::string months = folder.write("months.txt", "1;3\n2;7\n3;9\n4;2\n12;1\n");
    const std::string positive = folder.write("positive.txt", "1;2\n2;3.5\n4;4\n8;9\n9.5;9\n");

    const int general = -1;
    const struct {
        int line;
        Words arguments;
        std::string report;
        int decimals;
    } rows[] = {
        {__LINE__, {"describe", "--alpha", "0.1", "--mu", "5.517", "--head", "0.1", cavendish}, describeReport, general},
        {__LINE__, {"pairs", norris}, pairsReport, general},
        {__LINE__, {"regress", "--model", "linear", norris}, regressionReport("LINEAR", " + {/result/b}x"), general},
        {__LINE__, {"regress", "--model", "logarithmic", positive}, regressionReport("LOGARITHMIC", " + {/result/b}ln(x)"), general},
        {__LINE__, {"regress", "--model", "exponential", positive}, regressionReport("EXPONENTIAL", "e^({/result/b}x)"), general},
        {__LINE__, {"regress", "--model", "power", positive}, regressionReport("POWER", "x^{/result/b}"), general},
        {__LINE__, {"correlate", "--alpha", "0.01", norris}, correlationReport(false), 3},
        {__LINE__, {"correlate", sixty}, correlationReport(true), 3},
        {__LINE__, {"multiy", seedlings}, multiYReport(), 3},
        {__LINE__, {"fit", peas}, fitReport, 3},
        {__LINE__, {"variances", instrument1, instrument2}, variancesReport, general},
        {__LINE__, {"frequency", "--classes", "5", cavendish}, frequencyReport(5), 3},
        {__LINE__, {"circular", "--unit", "degrees", pigeons}, circularReport(false), general},
        {__LINE__, {"circular", "--unit", "bins", "--bins", "12", "--bin-name", "month", months}, circularReport(true), general},
    };
    for (const auto& row : rows) {
        const Outcome report = run(row.arguments);
        EXPECT_EQ(report.status, done) << report;
        EXPECT_EQ(rendered(documentOf(row.arguments), row.report, row.decimals), report.output) << "row of line " << row.line;
    }
    EXPECT_EQ(rendered(documentOf({"anova", resistivity}), anovaReport(5), 3), run({"anova", "--details", resistivity}).output);
    EXPECT_EQ(kolmogorovReport(documentOf({"ks", digits})), run({"ks", "--frequencies", digits}).output);
}

// ---------------------------------------------------------------- every field, bit for bit

using Fields = std::map<std::string, double>;  // a number of the document by its JSON pointer

double number(std::size_t n) { return static_cast<double>(n); }

Fields operator+(Fields fields, const Fields& more)
{
    fields.insert(more.begin(), more.end());
    return fields;
}

Fields under(const std::string& prefix, const Fields& fields)
{
    Fields named;
    for (const auto& [name, value] : fields) named[prefix + name] = value;
    return named;
}

Fields fieldsOf(const wq_lib::basic_stat& r)
{
    return {{"/n", number(r.n)},
            {"/min", r.min},
            {"/max", r.max},
            {"/mean", r.mean},
            {"/geoMean", r.geoMean},
            {"/harmMean", r.harmMean},
            {"/median", r.median},
            {"/quartile1", r.quartile1},
            {"/quartile3", r.quartile3},
            {"/sum", r.sum},
            {"/variance", r.variance},
            {"/sampleVariance", r.sampleVariance},
            {"/stdev", r.stdev},
            {"/sampleStdev", r.sampleStdev},
            {"/stdError", r.stdError},
            {"/cv", r.cv},
            {"/sumOfSquares", r.sumOfSquares},
            {"/significance", r.significance},
            {"/confidenceLimits/lower", r.confidenceLimits.getLower()},
            {"/confidenceLimits/upper", r.confidenceLimits.getUpper()}};
}

Fields fieldsOf(const wq_lib::xy_stat& r)
{
    const auto variable = [](const wq_lib::basic_stat& v) {
        return Fields{{"/min", v.min},
                      {"/max", v.max},
                      {"/mean", v.mean},
                      {"/sum", v.sum},
                      {"/variance", v.variance},
                      {"/sampleVariance", v.sampleVariance},
                      {"/sumOfSquares", v.sumOfSquares}};
    };
    return under("/x", variable(r.x)) + under("/y", variable(r.y)) +
           Fields{{"/n", number(r.x.n)}, {"/sumProducts", r.sumProducts}, {"/covariance", r.covariance}};
}

Fields fieldsOf(const wq_lib::anova_source& r)
{
    return {{"/df", number(r.df)}, {"/ss", r.ss}, {"/ms", r.ms}, {"/fs", r.fs}, {"/expectedMs", r.expectedMs}};
}

Fields fieldsOf(const wq_lib::regression_stat& r)
{
    return {{"/a", r.a},
            {"/b", r.b},
            {"/explained", r.explained},
            {"/unexplained", r.unexplained},
            {"/residualVariance", r.residualVariance},
            {"/seB", r.seB},
            {"/tB", r.tB},
            {"/pB", r.pB},
            {"/limitsB/lower", r.limitsB.getLower()},
            {"/limitsB/upper", r.limitsB.getUpper()},
            {"/meanX", r.meanX},
            {"/meanY", r.meanY},
            {"/seY", r.seY},
            {"/limitsY/lower", r.limitsY.getLower()},
            {"/limitsY/upper", r.limitsY.getUpper()},
            {"/n", number(r.n)}};
}

Fields anovaFields(const wq_lib::SingleAnova& anova)
{
    Fields fields = {{"/groupCount", number(anova.getGroupCount())},
                     {"/totalObservations", static_cast<double>(anova.getTotalObservations())},
                     {"/grandTotal", anova.getGrandTotal()},
                     {"/correctionTerm", anova.getCorrectionTerm()},
                     {"/sumSquaredObservations", anova.getSumSquaredObservations()},
                     {"/sumSquaredGroupTotals", anova.getSumSquaredGroupTotals()},
                     {"/sumSquaredSampleSizes", anova.getSumSquaredSampleSizes()},
                     {"/meanSampleSize", anova.getMeanSampleSize()},
                     {"/n0", anova.getN0()},
                     {"/varianceComponent", anova.getVarianceComponent()},
                     {"/varianceComponentRatio", anova.getVarianceComponentRatio()},
                     {"/groupsCreated", number(anova.getGroupsCreated())},
                     {"/equal", anova.isEqual() ? 1.0 : 0.0},
                     {"/model", static_cast<double>(anova.getModel())}};
    fields = fields + under("/total", fieldsOf(anova.getTotal())) + under("/among", fieldsOf(anova.getAmong())) +
             under("/within", fieldsOf(anova.getWithin()));
    for (std::size_t i = 0; i < anova.getGroups().size(); ++i) {
        const wq_lib::anova_group& g = anova.getGroups()[i];
        const std::string group = "/groups/" + std::to_string(i);
        fields = fields + under(group, {{"/id", g.id},
                                        {"/n", static_cast<double>(g.n)},
                                        {"/mean", g.mean},
                                        {"/sum", g.sum},
                                        {"/sumSquaredObservations", g.sumSquaredObservations},
                                        {"/sumOfSquares", g.sumOfSquares},
                                        {"/variance", g.variance}});
        for (std::size_t j = 0; j < g.observations.size(); ++j) fields[group + "/observations/" + std::to_string(j)] = g.observations[j];
    }
    return fields;
}

// The result has these fields and no other.
void expectResult(const Words& arguments, const Fields& expected)
{
    SCOPED_TRACE(arguments.front());
    const Json document = documentOf(arguments);
    const Json flat = document.at("result").flatten();
    Fields found;
    for (const auto& [pointer, member] : flat.items()) found[pointer] = numberOf(member);
    for (const auto& [pointer, value] : expected) {
        ASSERT_EQ(found.count(pointer), 1U) << pointer << " is missing";
        EXPECT_TRUE(sameBits(found.at(pointer), value)) << pointer << " is " << found.at(pointer) << ", not " << value;
    }
    for (const auto& [pointer, value] : found) EXPECT_EQ(expected.count(pointer), 1U) << pointer << " is unknown";
}

template <typename Analysis>
Analysis analysed(const std::string& file)
{
    Analysis analysis;
    EXPECT_TRUE(analysis.readDataFile(file));
    EXPECT_TRUE(analysis.analyse());
    return analysis;
}

template <typename Model>
void expectRegression(const std::string& name, const std::string& file)
{
    const auto model = analysed<Model>(file);
    expectResult({"regress", "--model", name, file}, under("/xy", fieldsOf(model.getXyResult())) + fieldsOf(model.getRegressionResult()));
    EXPECT_EQ(documentOf({"regress", "--model", name, file}).at("settings"), Json({{"model", name}}));
}

TEST(Json, hasEveryFieldOfTheRecordsBitForBit)
{
    using namespace wq_lib;
    const auto sample = analysed<BasicStatistics>(cavendish);
    expectResult({"describe", cavendish}, fieldsOf(sample.getResult()) + Fields{{"/negative", 0.0}});
    expectResult({"pairs", norris}, fieldsOf(analysed<BasicXyStatistics>(norris).getXyResult()));
    expectRegression<LinearRegression>("linear", norris);
    expectRegression<LogarithmicRegression>("logarithmic", norris);
    expectRegression<ExponentialRegression>("exponential", norris);
    expectRegression<PowerRegression>("power", norris);

    const auto correlation = analysed<Correlation>(norris);
    const correlation_stat& c = correlation.getCorrelationResult();
    expectResult({"correlate", norris}, under("/xy", fieldsOf(correlation.getXyResult())) +
                                            Fields{{"/r", c.r},
                                                   {"/t", c.t},
                                                   {"/tSignificance", c.tSignificance},
                                                   {"/F", c.F},
                                                   {"/FSignificance", c.FSignificance},
                                                   {"/confidenceLimits/lower", std::nan("")},  // null: 36 pairs, n/a in the report
                                                   {"/confidenceLimits/upper", std::nan("")}});

    SingleAnova anova;
    anova.readDataFile(resistivity);
    anova.createSeries();
    anova.analyse();
    expectResult({"anova", "--observations", resistivity}, anovaFields(anova));

    LinearRegressionMultiY line;
    line.readSeriesFile(seedlings);
    line.createSeries();
    line.analyse();
    const regression_multi_y_stat& m = line.getRegressionResult();
    expectResult({"multiy", "--observations", seedlings}, under("/anova", anovaFields(line)) +
                                                              under("/regression", fieldsOf(line.getRegression())) +
                                                              under("/deviations", fieldsOf(line.getDeviations())) +
                                                              Fields{{"/sumX", m.sumX},
                                                                     {"/sumX2", m.sumX2},
                                                                     {"/sumXT", m.sumXT},
                                                                     {"/correctionX", m.correctionX},
                                                                     {"/ssX", m.ssX},
                                                                     {"/spXY", m.spXY},
                                                                     {"/a", m.a},
                                                                     {"/b", m.b},
                                                                     {"/explained", m.explained},
                                                                     {"/unexplained", m.unexplained},
                                                                     {"/seB", m.seB},
                                                                     {"/tB", m.tB},
                                                                     {"/pT", m.pT},
                                                                     {"/limitsB/lower", m.limitsB.getLower()},
                                                                     {"/limitsB/upper", m.limitsB.getUpper()}});

    const auto fit = analysed<GoodnessOfFit>(peas);
    // Observed and expected stand in the file; the contributions are worked by hand: (315 - 312.75)^2 / 312.75 and so on.
    const double peaClasses[][3] = {
        {315, 312.75, 5.0625 / 312.75}, {101, 104.25, 10.5625 / 104.25}, {108, 104.25, 14.0625 / 104.25}, {32, 34.75, 7.5625 / 34.75}};
    Fields fitted = {{"/X2", fit.getX2()}, {"/G", fit.getG()}, {"/GAdjusted", fit.getGAdjusted()}};
    for (std::size_t i = 0; i < std::size(peaClasses); ++i)
        fitted = fitted + under("/classes/" + std::to_string(i),
                                {{"/observed", peaClasses[i][0]}, {"/expected", peaClasses[i][1]}, {"/contribution", peaClasses[i][2]}});
    expectResult({"fit", peas}, fitted);

    KolmogorovSmirnov2 kolmogorov;
    kolmogorov.readDataFile(digits);
    kolmogorov.cumulative();
    kolmogorov.analyse();
    Fields cumulative = {{"/n1", number(kolmogorov.getN1())}, {"/n2", number(kolmogorov.getN2())}, {"/D", kolmogorov.getD()}};
    for (std::size_t i = 0; i < kolmogorov.getSampleSize(); ++i) {
        const auto [f1, f2] = kolmogorov.getCumulativeFrequency(i);
        const double rel1 = f1 / number(kolmogorov.getN1());
        const double rel2 = f2 / number(kolmogorov.getN2());
        cumulative = cumulative + under("/cumulativeFrequencies/" + std::to_string(i), {{"/count1", kolmogorov.getDataPair(i).x},
                                                                                        {"/count2", kolmogorov.getDataPair(i).y},
                                                                                        {"/F1", f1},
                                                                                        {"/F2", f2},
                                                                                        {"/relF1", rel1},
                                                                                        {"/relF2", rel2},
                                                                                        {"/diff", std::fabs(rel1 - rel2)}});
    }
    expectResult({"ks", digits}, cumulative);

    TwoSamples samples;
    samples.setFirstSample(analysed<BasicStatistics>(instrument1).getResult());
    samples.setSecondSample(analysed<BasicStatistics>(instrument2).getResult());
    samples.analyse();
    expectResult({"variances", instrument1, instrument2}, under("/first", fieldsOf(samples.getResult())) +
                                                              under("/second", fieldsOf(samples.getSecondSample())) +
                                                              Fields{{"/F", samples.getF()},
                                                                     {"/FProbability", samples.getFProbability()},
                                                                     {"/criticalF", samples.getCriticalF()},
                                                                     {"/df1", number(samples.getDf1())},
                                                                     {"/df2", number(samples.getDf2())}});

    Frequency table;
    table.readDataFile(cavendish);
    table.autoClassWidth(4);
    table.initFrequency(4);
    table.buildTable();
    table.analyse();
    Fields classes = under("/sample", fieldsOf(table.getResult())) +
                     Fields{{"/startClass", table.getStartClass()}, {"/classWidth", table.getClassWidth()}};
    for (std::size_t j = 0; j < 4; ++j)
        classes = classes + under("/table/" + std::to_string(j), {{"/lower", table.getStartClass() + number(j) * table.getClassWidth()},
                                                                  {"/upper", table.getStartClass() + number(j + 1) * table.getClassWidth()},
                                                                  {"/count", static_cast<double>(table.getTable()[j].count)},
                                                                  {"/rate", table.getTable()[j].rate}});
    expectResult({"frequency", "--classes", "4", cavendish}, classes);

    Circular directions;
    directions.setDataType(DEGREES);
    directions.readDataFile(pigeons);
    directions.analyse();
    const circular_stat& r = directions.getCircularResult();
    expectResult({"circular", "--unit", "degrees", pigeons}, {{"/n", number(r.n)},
                                                              {"/bins", number(r.bins)},
                                                              {"/bin0", r.bin0},
                                                              {"/a", r.a},
                                                              {"/r", r.r},
                                                              {"/s", r.s},
                                                              {"/sPrime", r.sPrime},
                                                              {"/meanBin", number(r.meanBin)},
                                                              {"/binSize", r.binSize},
                                                              {"/R", r.R},
                                                              {"/z", r.z},
                                                              {"/significance", r.significance},
                                                              {"/p", r.p},
                                                              {"/accepted", r.accepted ? 1.0 : 0.0},
                                                              {"/grouped", 0.0}});
}

// ---------------------------------------------------------------- the rest of the document

TEST(Json, tellsWhatWasAnalysedAndHow)
{
    const Json document = documentOf({"describe", "--alpha", "0.01", "--mu", "-5.5", "--head", "0.1", "--tail", "0.2", cavendish});
    std::vector<std::string> members;
    for (const auto& [name, member] : document.items()) members.push_back(name);
    EXPECT_THAT(members, ElementsAre("wqstat", "analysis", "files", "comment", "alpha", "hypothesis", "settings", "result", "report",
                                     "decision", "textbook"));
    EXPECT_THAT(run({"--version"}).output, StartsWith("wqstat " + document.at("wqstat").get<std::string>() + "\n"));
    EXPECT_EQ(document.at("analysis"), "describe");
    EXPECT_EQ(document.at("files"), Json({cavendish}));
    EXPECT_EQ(document.at("comment"), " Cavendish 1798: density of the Earth (water = 1), 29 measurements.");
    EXPECT_EQ(document.at("alpha"), 0.01);
    EXPECT_EQ(document.at("settings"), Json({{"nullHypothesis", -5.5}, {"head", 0.1}, {"tail", 0.2}}));

    EXPECT_EQ(documentOf({"variances", instrument2, instrument1}).at("files"), Json({instrument2, instrument1}));
    EXPECT_EQ(documentOf({"correlate", norris}).at("hypothesis"), wq_lib::Correlation().getHypothesisInfo());
    EXPECT_EQ(documentOf({"fit", "--yates", "--no-williams", peas}).at("settings"),
              Json({{"yatesCorrection", true}, {"williamsCorrection", false}}));
    EXPECT_EQ(documentOf({"frequency", cavendish}).at("settings"), Json({{"classes", 10}}));
    EXPECT_EQ(documentOf({"circular", "--unit", "bins", "--bins", "360", "--bin0", "1.5", "--bin-name", "degree", pigeons}).at("settings"),
              Json({{"unit", "bins"}, {"bins", 360}, {"bin0", 1.5}, {"binName", "degree"}}));
    EXPECT_EQ(documentOf({"circular", pigeons}).at("settings").at("unit"), "radians");
}

// The record passes over the values that have no logarithm, and holds the mean of the others.
TEST(Json, hasNoGeometricMeanOfASampleWithNegativeValues)
{
    const TempFolder folder;
    const std::string below = folder.write("below.txt", "4\n-2\n9\n1\n");
    const std::string above = folder.write("above.txt", "4\n2\n8\n1\n");
    EXPECT_TRUE(documentOf({"describe", below}).at("result").at("geoMean").is_null());
    EXPECT_TRUE(documentOf({"frequency", below}).at("result").at("sample").at("geoMean").is_null());
    EXPECT_NEAR(documentOf({"frequency", above}).at("result").at("sample").at("geoMean").get<double>(), std::sqrt(8.0), 1e-12);
    const Json variances = documentOf({"variances", above, below}).at("result");
    EXPECT_NEAR(variances.at("first").at("geoMean").get<double>(), std::sqrt(8.0), 1e-12);
    EXPECT_TRUE(variances.at("second").at("geoMean").is_null());
    EXPECT_TRUE(documentOf({"variances", below, above}).at("result").at("first").at("geoMean").is_null());
}

TEST(Json, writesNumbersThatAreNotFiniteAsText)
{
    const TempFolder folder;
    const Json equal = documentOf({"describe", folder.write("equal.txt", "2\n2\n2\n")});
    EXPECT_EQ(equal.at("result").at("stdev"), "NaN");
    EXPECT_EQ(equal.at("report").at("t"), "NaN");
    const Json infinite = documentOf({"describe", folder.write("infinite.txt", "1\n-2\n-inf\n")});
    EXPECT_EQ(infinite.at("result").at("min"), "-Inf");
    EXPECT_TRUE(infinite.at("result").at("geoMean").is_null());  // n/a in the report
    const Json impossible = documentOf({"fit", folder.write("impossible.txt", "3;0\n4;7\n")});
    EXPECT_EQ(impossible.at("result").at("X2"), "Inf");
    const Json groups = documentOf({"anova", "--observations", folder.write("one_group.txt", "1;2\n1;nan\n")});
    EXPECT_EQ(groups.at("result").at("groups").at(0).at("observations"), Json({2.0, "NaN"}));
}

TEST(Json, holdsObservationsOnlyWhereAskedFor)
{
    const struct {
        Words command;
        const char* groups;
    } rows[] = {{{"anova", resistivity}, "/result/groups"}, {{"multiy", seedlings}, "/result/anova/groups"}};
    for (const auto& row : rows) {
        Json all = documentOf(with(row.command, {"--observations"}));
        for (Json& group : all.at(Json::json_pointer(row.groups))) {
            EXPECT_EQ(group.at("observations").size(), group.at("n"));
            group.erase("observations");
        }
        EXPECT_EQ(documentOf(row.command), all) << joined(row.command);
        EXPECT_EQ(run(with(row.command, {"--observations"})), refused("--observations requires --json", row.command.front()));
    }
    EXPECT_EQ(run({"describe", "--json", "--observations", cavendish}).status, wrongUsage);
}

// As std::to_chars writes a number, in a notation that readers take for that of a real.
std::string shortestText(double value)
{
    char text[400];
    const bool plain = value == 0.0 || (std::fabs(value) >= 1e-4 && std::fabs(value) < 1e15);
    std::string digits(
        text, std::to_chars(text, text + sizeof text, value, plain ? std::chars_format::fixed : std::chars_format::scientific).ptr);
    return plain && digits.find('.') == std::string::npos ? digits + ".0" : digits;
}

TEST(Json, writesEachNumberWithTheFewestDigits)
{
    std::vector<double> values{0.0,
                               -0.0,
                               1e-5,
                               1e-4,
                               9.9e-5,
                               999999999.0,
                               999999999.5,
                               999999999.999999,
                               1e9,
                               1e9 + 0.1,
                               1e14,
                               1e15,
                               1e16,
                               0.1 + 0.2,
                               2.0 / 3.0,
                               5e-324,
                               1.7976931348623157e308,
                               0.000001,
                               0.0000015,
                               123456789.123456,
                               123456789.1234567,
                               -7.25,
                               1000000.000001,
                               0.00012345678901234567,
                               -0.00098765432109876543,
                               123456789012345.67,
                               999999999999999.9,
                               4503599627370496.0 / 8,
                               0.3};
    std::mt19937_64 draw(14);
    for (int decimals = 0; decimals < 9; ++decimals)
        for (int i = 0; i < 300; ++i) {
            const double whole = static_cast<double>(draw() % (std::uint64_t{1} << (10 + draw() % 50)));
            values.push_back((i % 2 == 0 ? 1.0 : -1.0) * whole / std::pow(10.0, decimals));
            values.push_back(std::nextafter(values.back(), i % 3 == 0 ? 0.0 : 1e300));
        }
    const TempFolder folder;
    std::string table = "g,v\n";
    for (const double value : values) table += "a," + shortestText(value) + "\n";
    const std::string output =
        run({"anova", "--json", "--observations", "--no-warnings", "--group", "g", "--value", "v", folder.write("t.csv", table)}).output;
    std::istringstream lines(output.substr(output.find("\"observations\": [")));
    std::string line;
    std::getline(lines, line);
    for (const double value : values) {
        std::getline(lines, line);
        line.erase(0, line.find_first_not_of(' '));
        if (!line.empty() && line.back() == ',') line.pop_back();
        EXPECT_EQ(line, shortestText(value));
    }
}

TEST(Json, isWholeWhateverItsLength)
{
    const TempFolder folder;
    std::string pairs;
    for (int i = 0; i < 3000; ++i) pairs += std::to_string(i) + ";1\n" + std::to_string(i) + ";4\n";
    const std::string file = folder.write("pairs.txt", pairs);
    const Json groups = documentOf({"anova", "--observations", file}).at("result").at("groups");
    ASSERT_EQ(groups.size(), 3000U);
    for (std::size_t i = 0; i < groups.size(); ++i) {
        EXPECT_EQ(groups[i].at("id"), static_cast<double>(i));
        EXPECT_EQ(groups[i].at("observations"), Json({1.0, 4.0}));
    }
    // A text that is longer than all that waits to be written.
    std::string label(100000, 'x');
    const std::string table = folder.write("table.csv", "g,v\n" + label + ",1\nb,2\n" + label + ",3\n");
    EXPECT_EQ(documentOf({"anova", "--group", "g", "--value", "v", table}).at("table").at("labels"), Json({label, "b"}));
}

TEST(Json, isOnlyTheDocumentOnStandardOutput)
{
    const TempFolder folder;
    const std::string file = folder.write("pairs.txt", "1;2\n2 3\n3;5\n");
    const Outcome outcome = run({"pairs", "--lenient", "--json", "--export", folder.path("pairs.R"), file});
    EXPECT_EQ(outcome.status, done);
    EXPECT_EQ(Json::parse(outcome.output).at("result").at("n"), 3);
    EXPECT_THAT(outcome.errors, HasSubstr("pairs.txt:2: warning: "));
    run({"pairs", "--lenient", "--export", folder.path("without.R"), file});
    EXPECT_EQ(contentOf(folder.path("pairs.R")), contentOf(folder.path("without.R")));

    EXPECT_EQ(run({"describe", "--json", folder.write("few.txt", "1\n2\n")}),
              cannotAnalyse(folder.path("few.txt") + ": 2 observations, at least 3 are needed"));
}

TEST(Json, namesStandardInputAndSurvivesForeignText)
{
    const TempFolder folder;
    const std::string strange = folder.write("strange.txt", "# a \"quoted\" \\ t\xc3\xa4st \xff\x01\n1\n2\n4\n");
    Streams streams;
    streams.input = strange;
    const Outcome outcome = run({"describe", "--json", "-"}, streams);
    const Json document = Json::parse(outcome.output);
    EXPECT_EQ(document.at("files"), Json({"-"}));
    EXPECT_EQ(document.at("comment"), " a \"quoted\" \\ t\xc3\xa4st \\xff\x01");
}

TEST(Json, excludesWhatAddsToTheReport)
{
    EXPECT_EQ(run({"describe", "--json", "--list", "0", "1", cavendish}), refused("--list excludes --json", "describe"));
    EXPECT_EQ(run({"anova", "--json", "--details", resistivity}), refused("--details excludes --json", "anova"));
    EXPECT_EQ(run({"ks", "--json", "--frequencies", digits}), refused("--frequencies excludes --json", "ks"));
}

}  // namespace
