#include "result_members.h"

#include "page_rows.h"
#include "command_line/arguments.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace wqstat {

namespace {

// ---------------------------------------------------------------- records

void limits(ResultWriter& out, const char* name, const wq_lib::DataRange<double>& range)
{
    out.object(name, [&] {
        out.member("lower", range.getLower());
        out.member("upper", range.getUpper());
    });
}

void members(ResultWriter& out, const wq_lib::basic_stat& r)
{
    out.member("n", r.n);
    out.member("min", r.min);
    out.member("max", r.max);
    out.member("mean", r.mean);
    if (r.min < 0.0)  // n/a in the report
        out.nothing("geoMean");
    else
        out.member("geoMean", r.geoMean);
    out.member("harmMean", r.harmMean);
    out.member("median", r.median);
    out.member("quartile1", r.quartile1);
    out.member("quartile3", r.quartile3);
    out.member("sum", r.sum);
    out.member("variance", r.variance);
    out.member("sampleVariance", r.sampleVariance);
    out.member("stdev", r.stdev);
    out.member("sampleStdev", r.sampleStdev);
    out.member("stdError", r.stdError);
    out.member("cv", r.cv);
    out.member("sumOfSquares", r.sumOfSquares);
    out.member("significance", r.significance);
    limits(out, "confidenceLimits", r.confidenceLimits);
}

/** Of one variable of a paired sample, without the fields that a paired analysis leaves at 0. */
void variableMembers(ResultWriter& out, const wq_lib::basic_stat& r)
{
    out.member("min", r.min);
    out.member("max", r.max);
    out.member("mean", r.mean);
    out.member("sum", r.sum);
    out.member("variance", r.variance);
    out.member("sampleVariance", r.sampleVariance);
    out.member("sumOfSquares", r.sumOfSquares);
}

void members(ResultWriter& out, const wq_lib::xy_stat& r)
{
    out.member("n", r.x.n);
    out.object("x", [&] { variableMembers(out, r.x); });
    out.object("y", [&] { variableMembers(out, r.y); });
    out.member("sumProducts", r.sumProducts);
    out.member("covariance", r.covariance);
}

void members(ResultWriter& out, const wq_lib::anova_source& r)
{
    out.member("df", r.df);
    out.member("ss", r.ss);
    out.member("ms", r.ms);
    out.member("fs", r.fs);
    out.member("expectedMs", r.expectedMs);
}

void groupMembers(ResultWriter& out, const wq_lib::anova_group& r, bool withObservations)
{
    out.member("id", r.id);
    out.member("n", r.n);
    out.member("mean", r.mean);
    out.member("sum", r.sum);
    out.member("sumSquaredObservations", r.sumSquaredObservations);
    out.member("sumOfSquares", r.sumOfSquares);
    out.member("variance", r.variance);
    if (withObservations) out.array("observations", r.observations, [&](double y) { out.member("", y); });
}

template <typename Record>
void record(ResultWriter& out, const char* name, const Record& r)
{
    out.object(name, [&] { members(out, r); });
}

/** What the Anova holds; also where a regression goes on from it. */
void anovaMembers(ResultWriter& out, const wq_lib::SingleAnova& anova, bool withObservations)
{
    out.member("groupCount", anova.getGroupCount());
    out.member("totalObservations", anova.getTotalObservations());
    out.member("grandTotal", anova.getGrandTotal());
    out.member("correctionTerm", anova.getCorrectionTerm());
    out.member("sumSquaredObservations", anova.getSumSquaredObservations());
    out.member("sumSquaredGroupTotals", anova.getSumSquaredGroupTotals());
    out.member("sumSquaredSampleSizes", anova.getSumSquaredSampleSizes());
    record(out, "total", anova.getTotal());
    record(out, "among", anova.getAmong());
    record(out, "within", anova.getWithin());
    out.member("meanSampleSize", anova.getMeanSampleSize());
    out.member("n0", anova.getN0());
    out.member("varianceComponent", anova.getVarianceComponent());
    out.member("varianceComponentRatio", anova.getVarianceComponentRatio());
    out.member("groupsCreated", anova.getGroupsCreated());
    out.member("equal", anova.isEqual());
    out.member("model", anova.getModel());
    out.array("groups", anova.getGroups(),
              [&](const wq_lib::anova_group& group) { out.object("", [&] { groupMembers(out, group, withObservations); }); });
}

/** The confidence limits of the groups' means, which no record holds. */
void groupLimits(ResultWriter& out, const wq_lib::SingleAnova& anova, const wq_exact::AnovaResult& exact)
{
    const auto figure = [&out](const char* name, double value) {
        if (std::isnan(value))
            out.nothing(name);
        else
            out.member(name, value);
    };
    out.array("groupLimits", anova.getGroups(), [&](const wq_lib::anova_group& group) {
        const wq_exact::Limits limits = exact.meanLimits(group);
        out.object("", [&] {
            figure("lower", limits.lower);
            figure("upper", limits.upper);
        });
    });
}

/** Critical value and probability that both Anova reports print. */
void anovaReport(ResultWriter& out, const wq_lib::SingleAnova& anova)
{
    out.member("criticalF", wq_lib::F_PercentPoint(1.0 - anova.getSignificance(), anova.getAmong().df, anova.getWithin().df));
    out.member("FProbability", wq_lib::F_Prob(anova.getAmong().fs, anova.getAmong().df, anova.getWithin().df));
}

const char* modelOf(const wq_lib::Regression& regression)
{
    if (dynamic_cast<const wq_lib::LogarithmicRegression*>(&regression) != nullptr) return "logarithmic";
    if (dynamic_cast<const wq_lib::ExponentialRegression*>(&regression) != nullptr) return "exponential";
    if (dynamic_cast<const wq_lib::PowerRegression*>(&regression) != nullptr) return "power";
    return "linear";
}

const char* nameOf(wq_lib::CIRCULAR_DATA unit)
{
    return unit == wq_lib::DEGREES ? "degrees" : unit == wq_lib::BIN_NUMBERS ? "bins" : "radians";
}

// ---------------------------------------------------------------- the textbook

/** The lines of an object of the textbook: a line, or null where there is none, and its path within the object. */
using BookLines = std::vector<std::pair<std::string_view, const Textbook::Line*>>;

void bookMember(ResultWriter& out, std::string_view name, const Textbook::Line* bookLine)
{
    if (bookLine == nullptr) {
        out.nothing(name);
        return;
    }
    const Textbook::Line& line = *bookLine;
    if (const auto* figure = std::get_if<double>(&line.content); figure != nullptr && std::isnan(*figure))
        out.nothing(name);
    else if (figure != nullptr)
        out.member(name, *figure);
    else if (const Textbook::Decision decision = std::get<Textbook::Decision>(line.content))
        out.member(name, *decision);
    else
        out.nothing(name);
}

/** "limits/lower" and "limits/upper" are the members of the object limits, wherever they stand. */
void bookMembers(ResultWriter& out, BookLines lines)
{
    while (!lines.empty()) {
        const auto [path, line] = lines.front();
        const std::size_t slash = path.find('/');
        if (slash == std::string_view::npos) {
            bookMember(out, path, line);
            lines.erase(lines.begin());
            continue;
        }
        const std::string_view prefix = path.substr(0, slash + 1);
        const auto isOutside = [&](const auto& one) { return one.first.substr(0, prefix.size()) != prefix; };
        const auto inside = std::stable_partition(lines.begin(), lines.end(), isOutside);
        BookLines within(inside, lines.end());
        lines.erase(inside, lines.end());
        for (auto& [innerPath, innerLine] : within) innerPath.remove_prefix(prefix.size());
        out.object(path.substr(0, slash), [&] { bookMembers(out, std::move(within)); });
    }
}

/** @param writeMore the members that are no lines of the block. */
template <typename More>
void writeTextbook(ResultWriter& out, const Textbook& textbook, More writeMore)
{
    BookLines lines;
    const auto isAt = [](const std::string& path) { return [&path](const Textbook::Line& line) { return line.path == path; }; };
    for (const std::string& path : textbook.paths()) {
        const auto line = std::find_if(textbook.lines().begin(), textbook.lines().end(), isAt(path));
        if (line != textbook.lines().end())
            lines.emplace_back(path, &*line);
        else if (out.hasFixedMembers())
            lines.emplace_back(path, nullptr);
    }
    out.object("textbook", [&] {
        bookMembers(out, std::move(lines));
        if constexpr (!std::is_same_v<More, std::nullptr_t>) writeMore();
        out.texts("differs", textbook.differing());
        out.texts("warnings", textbook.warnings());
        out.decidingP(textbook.value(textbook.deciding()));
    });
}

// ---------------------------------------------------------------- the whole

/** A part that an analysis does not have. */
constexpr std::nullptr_t none = nullptr;

template <typename WriteMembers>
void optionalObject(ResultWriter& out, const char* name, WriteMembers writeMembers)
{
    if constexpr (!std::is_same_v<WriteMembers, std::nullptr_t>) out.object(name, writeMembers);
}

/** The titles and labels of a table; nothing where the data are none. */
void writeWords(ResultWriter& out, const DataWords& words)
{
    const bool all = out.hasFixedMembers();
    if (!all && words.xTitle.empty() && words.yTitle.empty() && words.labels.empty()) return;
    const auto write = [&](const char* name, const std::string& text) {
        if (!text.empty())
            out.member(name, text);
        else if (all)
            out.nothing(name);
    };
    out.object("table", [&] {
        write("x", words.xTitle);
        write("y", words.yTitle);
        if (!all && words.labels.empty()) return;
        write("item", words.item);
        out.texts("labels", words.labels);
    });
}

/**
 * @param writeReport what the report prints that no record holds.
 * @param writeDecision as the report states it.
 * @param writeExact of the textbook, what its block does not print.
 */
template <typename Settings, typename Result, typename Report, typename Decision, typename Exact = std::nullptr_t>
void writeWhole(ResultWriter& out, const ResultHead& head, const wq_lib::BasicStatistics& analysis, Settings writeSettings,
                Result writeResult, Report writeReport, Decision writeDecision, Exact writeExact = none)
{
    out.beginObject("");
    out.member("wqstat", shortest(wq_stat_1VersionNumber));
    out.member("analysis", head.command);
    out.texts("files", head.files);
    if (!head.byColumn.empty()) out.part(head.byColumn, head.byValue);
    writeWords(out, head.words);
    out.member("comment", analysis.getComment());
    out.member("alpha", analysis.getSignificance());
    out.member("hypothesis", analysis.getHypothesisInfo());
    out.beginObject("settings");
    if constexpr (!std::is_same_v<Settings, std::nullptr_t>) writeSettings();
    out.endObject();
    out.object("result", writeResult);
    optionalObject(out, "report", writeReport);
    optionalObject(out, "decision", writeDecision);
    writeTextbook(out, head.textbook, writeExact);
    out.endObject();
}

}  // namespace

void writeResults(ResultWriter& out, const ResultHead& head, wq_lib::BasicStatistics& sample)
{
    const wq_lib::basic_stat& result = sample.getResult();
    const auto settings = [&] {
        out.member("nullHypothesis", sample.getNullHypothesis());
        out.member("head", sample.getHead());
        out.member("tail", sample.getTail());
    };
    const auto results = [&] {
        members(out, result);
        out.member("negative", sample.isNegative());
    };
    const auto report = [&] {
        out.member("t", sample.StudentOfMeans(result.mean, result.sampleVariance, sample.getNullHypothesis(), result.n));
        out.member("df", result.n - 1);
        out.member("criticalT", wq_lib::t_PercentPoint(sample.getSignificance(), result.n - 1));
    };
    writeWhole(out, head, sample, settings, results, report, [&] { out.member("acceptH0", sample.acceptH0()); });
}

void writeResults(ResultWriter& out, const ResultHead& head, wq_lib::BasicXyStatistics& pairs)
{
    const wq_lib::xy_stat& result = pairs.getXyResult();
    const auto spread = [&](const char* name, const wq_lib::basic_stat& r) {
        out.object(name, [&] {
            out.member("sampleStdev", pairs.standardDeviation(r.sampleVariance));
            out.member("stdError", pairs.standardError(r.sampleVariance, result.x.n));
        });
    };
    const auto report = [&] {
        spread("x", result.x);
        spread("y", result.y);
    };
    writeWhole(
        out, head, pairs, none, [&] { members(out, result); }, report, none);
}

void writeResults(ResultWriter& out, const ResultHead& head, wq_lib::Regression& regression)
{
    const wq_lib::regression_stat& fit = regression.getRegressionResult();
    const auto results = [&] {
        record(out, "xy", regression.getXyResult());
        out.member("a", fit.a);
        out.member("b", fit.b);
        out.member("explained", fit.explained);
        out.member("unexplained", fit.unexplained);
        out.member("residualVariance", fit.residualVariance);
        out.member("seB", fit.seB);
        out.member("tB", fit.tB);
        out.member("pB", fit.pB);
        limits(out, "limitsB", fit.limitsB);
        out.member("meanX", fit.meanX);
        out.member("meanY", fit.meanY);
        out.member("seY", fit.seY);
        limits(out, "limitsY", fit.limitsY);
        out.member("n", fit.n);
    };
    const auto report = [&] {
        const std::size_t df = fit.n - 2;
        out.member("df", df);
        out.member("criticalT", wq_lib::t_PercentPoint(regression.getSignificance(), df));
    };
    writeWhole(
        out, head, regression, [&] { out.member("model", modelOf(regression)); }, results, report, none);
}

void writeResults(ResultWriter& out, const ResultHead& head, wq_lib::Correlation& correlation)
{
    const wq_lib::correlation_stat& result = correlation.getCorrelationResult();
    const auto results = [&] {
        record(out, "xy", correlation.getXyResult());
        out.member("r", result.r);
        out.member("t", result.t);
        out.member("tSignificance", result.tSignificance);
        out.member("F", result.F);
        out.member("FSignificance", result.FSignificance);
        constexpr std::size_t mostWithoutLimits = 50;  // the report has n/a, the record 0
        if (correlation.getXyResult().x.n > mostWithoutLimits)
            limits(out, "confidenceLimits", result.confidenceLimits);
        else
            out.object("confidenceLimits", [&] {
                out.nothing("lower");
                out.nothing("upper");
            });
    };
    const auto decision = [&] {
        out.member("acceptH0_t", correlation.acceptH0_t());
        out.member("acceptH0_F", correlation.acceptH0_F());
    };
    writeWhole(out, head, correlation, none, results, none, decision);
}

void writeResults(ResultWriter& out, const ResultHead& head, wq_lib::SingleAnova& anova)
{
    const wq_exact::AnovaResult exact = wq_exact::of(anova);
    const auto decision = [&] { out.member("acceptH0", exact.F.acceptedByReport.value()); };
    writeWhole(
        out, head, anova, none, [&] { anovaMembers(out, anova, head.observations); }, [&] { anovaReport(out, anova); }, decision,
        [&] { groupLimits(out, anova, exact); });
}

void writeResults(ResultWriter& out, const ResultHead& head, wq_lib::LinearRegressionMultiY& regression)
{
    const wq_lib::regression_multi_y_stat& fit = regression.getRegressionResult();
    const auto results = [&] {
        out.object("anova", [&] { anovaMembers(out, regression, head.observations); });
        record(out, "regression", regression.getRegression());
        record(out, "deviations", regression.getDeviations());
        out.member("sumX", fit.sumX);
        out.member("sumX2", fit.sumX2);
        out.member("sumXT", fit.sumXT);
        out.member("correctionX", fit.correctionX);
        out.member("ssX", fit.ssX);
        out.member("spXY", fit.spXY);
        out.member("a", fit.a);
        out.member("b", fit.b);
        out.member("explained", fit.explained);
        out.member("unexplained", fit.unexplained);
        out.member("seB", fit.seB);
        out.member("tB", fit.tB);
        out.member("pT", fit.pT);
        limits(out, "limitsB", fit.limitsB);
    };
    const auto decision = [&] { out.member("computeRegression", regression.isComputeRegression()); };
    writeWhole(
        out, head, regression, none, results, [&] { anovaReport(out, regression); }, decision,
        [&] { groupLimits(out, regression, wq_exact::of(regression).groups); });
}

void writeResults(ResultWriter& out, const ResultHead& head, wq_lib::GoodnessOfFit& test)
{
    const std::size_t df = test.getSampleSize() - 1;
    const auto settings = [&] {
        out.member("yatesCorrection", test.isYatesCorrection());
        out.member("williamsCorrection", test.isWilliamsCorrection());
    };
    const auto results = [&] {
        out.member("X2", test.getX2());
        out.member("G", test.getG());
        out.member("GAdjusted", test.getGAdjusted());
        out.beginArray("classes");
        for (std::size_t i = 0; i < test.getSampleSize(); ++i) {
            const FitClass one = fitClass(test, i);
            out.object("", [&] {
                out.member("observed", one.observed);
                out.member("expected", one.expected);
                out.member("contribution", one.contribution);
            });
        }
        out.endArray();
    };
    const auto report = [&] {
        out.member("df", df);
        out.member("X2Probability", wq_lib::chiSquareProb(test.getX2(), df));
        out.member("GProbability", wq_lib::chiSquareProb(test.getG(), df));
        out.member("GAdjustedProbability", wq_lib::chiSquareProb(test.getGAdjusted(), df));
        out.member("criticalChiSquare", wq_lib::chiSquarePoint(test.getConfidence(), df));
    };
    writeWhole(out, head, test, settings, results, report, [&] { out.member("acceptH0", test.acceptH0()); });
}

void writeResults(ResultWriter& out, const ResultHead& head, wq_lib::KolmogorovSmirnov2& test)
{
    const auto size1 = static_cast<double>(test.getN1());
    const auto size2 = static_cast<double>(test.getN2());
    const auto cumulative = [&](std::size_t i) {
        const auto [c1, c2] = test.getCumulativeFrequency(i);
        const wq_lib::data_pair counts = test.getDataPair(i);
        out.beginObject("");
        out.member("count1", counts.x);
        out.member("count2", counts.y);
        out.member("F1", c1);
        out.member("F2", c2);
        out.member("relF1", c1 / size1);
        out.member("relF2", c2 / size2);
        out.member("diff", std::fabs(c1 / size1 - c2 / size2));
        out.endObject();
    };
    const auto results = [&] {
        out.member("n1", test.getN1());
        out.member("n2", test.getN2());
        out.member("D", test.getD());
        out.beginArray("cumulativeFrequencies");
        for (std::size_t i = 0; i < test.getSampleSize(); ++i) cumulative(i);
        out.endArray();
    };
    const auto report = [&] { out.member("criticalD", wq_lib::D_TwoSamples(test.getSignificance(), test.getN1(), test.getN2())); };
    writeWhole(out, head, test, none, results, report, [&] { out.member("acceptH0", test.acceptH0()); });
}

void writeResults(ResultWriter& out, const ResultHead& head, wq_lib::TwoSamples& samples)
{
    const auto results = [&] {
        record(out, "first", samples.getResult());
        record(out, "second", samples.getSecondSample());
        out.member("F", samples.getF());
        out.member("FProbability", samples.getFProbability());
        out.member("criticalF", samples.getCriticalF());
        out.member("df1", samples.getDf1());
        out.member("df2", samples.getDf2());
    };
    writeWhole(out, head, samples, none, results, none, [&] { out.member("acceptH0", samples.acceptH0()); });
}

void writeResults(ResultWriter& out, const ResultHead& head, wq_lib::Frequency& sample)
{
    double index = 0.0;
    const auto tableRow = [&](const wq_lib::frequency_class& row) {
        out.beginObject("");
        out.member("lower", sample.getStartClass() + index * sample.getClassWidth());
        out.member("upper", sample.getStartClass() + (index + 1.0) * sample.getClassWidth());
        out.member("count", row.count);
        out.member("rate", row.rate);
        out.endObject();
        index += 1.0;
    };
    const auto results = [&] {
        record(out, "sample", sample.getResult());
        out.member("startClass", sample.getStartClass());
        out.member("classWidth", sample.getClassWidth());
        out.array("table", sample.getTable(), tableRow);
    };
    writeWhole(
        out, head, sample, [&] { out.member("classes", sample.getClasses()); }, results, none, none);
}

void writeResults(ResultWriter& out, const ResultHead& head, wq_lib::Circular& directions)
{
    const wq_lib::circular_stat& r = directions.getCircularResult();
    const auto settings = [&] {
        out.member("unit", nameOf(directions.getDataType()));
        out.member("bins", directions.getBins());
        out.member("bin0", r.bin0);
        out.member("binName", directions.getBinName());
    };
    const auto results = [&] {
        out.member("n", r.n);
        out.member("bins", r.bins);
        out.member("bin0", r.bin0);
        out.member("a", r.a);
        out.member("r", r.r);
        out.member("s", r.s);
        out.member("sPrime", r.sPrime);
        out.member("meanBin", r.meanBin);
        out.member("binSize", r.binSize);
        out.member("R", r.R);
        out.member("z", r.z);
        out.member("significance", r.significance);
        out.member("p", r.p);
        out.member("accepted", r.accepted);
        out.member("grouped", directions.isGrouped());
    };
    const auto report = [&] { out.member("aDegrees", wq_lib::radianToDegree(r.a)); };
    writeWhole(out, head, directions, settings, results, report, [&] { out.member("acceptH0", r.accepted); });
}

}  // namespace wqstat
