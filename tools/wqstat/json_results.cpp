#include "json_results.h"

#include "arguments.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <cstddef>
#include <type_traits>
#include <utility>

namespace wqstat {

namespace {

using Json = nlohmann::ordered_json;

// ---------------------------------------------------------------- values

/** A number; one that is not finite as the text that the exports write for it. */
Json number(double value)
{
    if (std::isfinite(value)) return value;
    return std::isnan(value) ? "NaN" : value > 0.0 ? "Inf" : "-Inf";
}

template <typename Integer, typename = std::enable_if_t<std::is_integral_v<Integer>>>
Json number(Integer value)
{
    return value;
}

Json limits(const wq_lib::DataRange<double>& range) { return {{"lower", number(range.getLower())}, {"upper", number(range.getUpper())}}; }

// ---------------------------------------------------------------- records

Json record(const wq_lib::basic_stat& r)
{
    return {{"n", number(r.n)},
            {"min", number(r.min)},
            {"max", number(r.max)},
            {"mean", number(r.mean)},
            {"geoMean", number(r.geoMean)},
            {"harmMean", number(r.harmMean)},
            {"median", number(r.median)},
            {"quartile1", number(r.quartile1)},
            {"quartile3", number(r.quartile3)},
            {"sum", number(r.sum)},
            {"variance", number(r.variance)},
            {"sampleVariance", number(r.sampleVariance)},
            {"stdev", number(r.stdev)},
            {"sampleStdev", number(r.sampleStdev)},
            {"stdError", number(r.stdError)},
            {"cv", number(r.cv)},
            {"sumOfSquares", number(r.sumOfSquares)},
            {"significance", number(r.significance)},
            {"confidenceLimits", limits(r.confidenceLimits)}};
}

/** Of one variable of a paired sample, without the fields that a paired analysis leaves at 0. */
Json variable(const wq_lib::basic_stat& r)
{
    return {{"min", number(r.min)},
            {"max", number(r.max)},
            {"mean", number(r.mean)},
            {"sum", number(r.sum)},
            {"variance", number(r.variance)},
            {"sampleVariance", number(r.sampleVariance)},
            {"sumOfSquares", number(r.sumOfSquares)}};
}

Json record(const wq_lib::xy_stat& r)
{
    return {{"n", number(r.x.n)},
            {"x", variable(r.x)},
            {"y", variable(r.y)},
            {"sumProducts", number(r.sumProducts)},
            {"covariance", number(r.covariance)}};
}

Json record(const wq_lib::anova_source& r)
{
    return {{"df", number(r.df)}, {"ss", number(r.ss)}, {"ms", number(r.ms)}, {"fs", number(r.fs)}, {"expectedMs", number(r.expectedMs)}};
}

Json record(const wq_lib::anova_group& r)
{
    Json observations = Json::array();
    for (const double y : r.observations) observations.push_back(number(y));
    return {{"id", number(r.id)},
            {"n", number(r.n)},
            {"mean", number(r.mean)},
            {"sum", number(r.sum)},
            {"sumSquaredObservations", number(r.sumSquaredObservations)},
            {"sumOfSquares", number(r.sumOfSquares)},
            {"variance", number(r.variance)},
            {"observations", std::move(observations)}};
}

/** What the Anova holds; also where a regression goes on from it. */
Json anovaResult(const wq_lib::SingleAnova& anova)
{
    Json groups = Json::array();
    for (const wq_lib::anova_group& group : anova.getGroups()) groups.push_back(record(group));
    return {{"groupCount", number(anova.getGroupCount())},
            {"totalObservations", number(anova.getTotalObservations())},
            {"grandTotal", number(anova.getGrandTotal())},
            {"correctionTerm", number(anova.getCorrectionTerm())},
            {"sumSquaredObservations", number(anova.getSumSquaredObservations())},
            {"sumSquaredGroupTotals", number(anova.getSumSquaredGroupTotals())},
            {"sumSquaredSampleSizes", number(anova.getSumSquaredSampleSizes())},
            {"total", record(anova.getTotal())},
            {"among", record(anova.getAmong())},
            {"within", record(anova.getWithin())},
            {"meanSampleSize", number(anova.getMeanSampleSize())},
            {"n0", number(anova.getN0())},
            {"varianceComponent", number(anova.getVarianceComponent())},
            {"varianceComponentRatio", number(anova.getVarianceComponentRatio())},
            {"groupsCreated", number(anova.getGroupsCreated())},
            {"equal", anova.isEqual()},
            {"model", number(anova.getModel())},
            {"groups", std::move(groups)}};
}

/** Critical value and probability that both Anova reports print. */
Json anovaReport(const wq_lib::SingleAnova& anova)
{
    const std::size_t among = anova.getAmong().df;
    const std::size_t within = anova.getWithin().df;
    return {{"criticalF", number(wq_lib::F_PercentPoint(1.0 - anova.getSignificance(), among, within))},
            {"FProbability", number(wq_lib::F_Prob(anova.getAmong().fs, among, within))}};
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

// ---------------------------------------------------------------- the document

Json textbookObject(const Textbook& textbook)
{
    Json object = Json::object();
    for (const Textbook::Line& line : textbook.lines()) {
        Json& member = object[Json::json_pointer("/" + line.path)];
        if (const auto* figure = std::get_if<double>(&line.content))
            member = number(*figure);
        else if (const Textbook::Decision decision = std::get<Textbook::Decision>(line.content))
            member = *decision;  // else null
    }
    object["differs"] = textbook.differing();
    return object;
}

/** The members between the head and the textbook; what is empty is left out. */
struct Body {
    Json settings = Json::object();
    Json result;
    Json report = Json::object();    ///< what the report prints that no record holds
    Json decision = Json::object();  ///< as the report states it
};

std::string document(const JsonHead& head, const wq_lib::BasicStatistics& analysis, Body body)
{
    Json json = {{"wqstat", shortest(wq_stat_1VersionNumber)},
                 {"analysis", head.command},
                 {"files", head.files},
                 {"comment", analysis.getComment()},
                 {"alpha", analysis.getSignificance()},
                 {"hypothesis", analysis.getHypothesisInfo()},
                 {"settings", std::move(body.settings)},
                 {"result", std::move(body.result)}};
    if (!body.report.empty()) json["report"] = std::move(body.report);
    if (!body.decision.empty()) json["decision"] = std::move(body.decision);
    if (head.textbook) json["textbook"] = textbookObject(*head.textbook);
    // Comments and file names may hold anything; what is no UTF-8 becomes the replacement character.
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace

std::string jsonDocument(const JsonHead& head, wq_lib::BasicStatistics& sample)
{
    const wq_lib::basic_stat& result = sample.getResult();
    Body body;
    body.settings = {
        {"nullHypothesis", number(sample.getNullHypothesis())}, {"head", number(sample.getHead())}, {"tail", number(sample.getTail())}};
    body.result = record(result);
    body.result["negative"] = sample.isNegative();
    body.report = {{"t", number(sample.StudentOfMeans(result.mean, result.sampleVariance, sample.getNullHypothesis(), result.n))},
                   {"df", number(result.n - 1)},
                   {"criticalT", number(wq_lib::t_PercentPoint(sample.getSignificance(), result.n - 1))}};
    body.decision = {{"acceptH0", sample.acceptH0()}};
    return document(head, sample, std::move(body));
}

std::string jsonDocument(const JsonHead& head, wq_lib::BasicXyStatistics& pairs)
{
    const wq_lib::xy_stat& result = pairs.getXyResult();
    const auto spread = [&](const wq_lib::basic_stat& r) {
        return Json{{"sampleStdev", number(pairs.standardDeviation(r.sampleVariance))},
                    {"stdError", number(pairs.standardError(r.sampleVariance, result.x.n))}};
    };
    Body body;
    body.result = record(result);
    body.report = {{"x", spread(result.x)}, {"y", spread(result.y)}};
    return document(head, pairs, std::move(body));
}

std::string jsonDocument(const JsonHead& head, wq_lib::Regression& regression)
{
    const wq_lib::regression_stat& fit = regression.getRegressionResult();
    Body body;
    body.settings = {{"model", modelOf(regression)}};
    body.result = {{"xy", record(regression.getXyResult())},
                   {"a", number(fit.a)},
                   {"b", number(fit.b)},
                   {"explained", number(fit.explained)},
                   {"unexplained", number(fit.unexplained)},
                   {"residualVariance", number(fit.residualVariance)},
                   {"seB", number(fit.seB)},
                   {"tB", number(fit.tB)},
                   {"pB", number(fit.pB)},
                   {"limitsB", limits(fit.limitsB)},
                   {"meanX", number(fit.meanX)},
                   {"meanY", number(fit.meanY)},
                   {"seY", number(fit.seY)},
                   {"limitsY", limits(fit.limitsY)},
                   {"n", number(fit.n)}};
    const std::size_t df = fit.n - 2;
    body.report = {{"df", number(df)}, {"criticalT", number(wq_lib::t_PercentPoint(regression.getSignificance(), df))}};
    return document(head, regression, std::move(body));
}

std::string jsonDocument(const JsonHead& head, wq_lib::Correlation& correlation)
{
    const wq_lib::correlation_stat& result = correlation.getCorrelationResult();
    Body body;
    body.result = {{"xy", record(correlation.getXyResult())},
                   {"r", number(result.r)},
                   {"t", number(result.t)},
                   {"tSignificance", number(result.tSignificance)},
                   {"F", number(result.F)},
                   {"FSignificance", number(result.FSignificance)},
                   {"confidenceLimits", limits(result.confidenceLimits)}};
    body.decision = {{"acceptH0_t", correlation.acceptH0_t()}, {"acceptH0_F", correlation.acceptH0_F()}};
    return document(head, correlation, std::move(body));
}

std::string jsonDocument(const JsonHead& head, wq_lib::SingleAnova& anova)
{
    Body body;
    body.result = anovaResult(anova);
    body.report = anovaReport(anova);
    const double critical = wq_lib::F_PercentPoint(1.0 - anova.getSignificance(), anova.getAmong().df, anova.getWithin().df);
    body.decision = {{"acceptH0", !(anova.getAmong().fs > critical)}};  // as the report decides; the class has no operation for it
    return document(head, anova, std::move(body));
}

std::string jsonDocument(const JsonHead& head, wq_lib::LinearRegressionMultiY& regression)
{
    const wq_lib::regression_multi_y_stat& fit = regression.getRegressionResult();
    Body body;
    body.result = {{"anova", anovaResult(regression)},
                   {"regression", record(regression.getRegression())},
                   {"deviations", record(regression.getDeviations())},
                   {"sumX", number(fit.sumX)},
                   {"sumX2", number(fit.sumX2)},
                   {"sumXT", number(fit.sumXT)},
                   {"correctionX", number(fit.correctionX)},
                   {"ssX", number(fit.ssX)},
                   {"spXY", number(fit.spXY)},
                   {"a", number(fit.a)},
                   {"b", number(fit.b)},
                   {"explained", number(fit.explained)},
                   {"unexplained", number(fit.unexplained)},
                   {"seB", number(fit.seB)},
                   {"tB", number(fit.tB)},
                   {"pT", number(fit.pT)},
                   {"limitsB", limits(fit.limitsB)}};
    body.report = anovaReport(regression);
    body.decision = {{"computeRegression", regression.isComputeRegression()}};
    return document(head, regression, std::move(body));
}

std::string jsonDocument(const JsonHead& head, wq_lib::GoodnessOfFit& test)
{
    const std::size_t df = test.getSampleSize() - 1;
    Body body;
    body.settings = {{"yatesCorrection", test.isYatesCorrection()}, {"williamsCorrection", test.isWilliamsCorrection()}};
    body.result = {{"X2", number(test.getX2())}, {"G", number(test.getG())}, {"GAdjusted", number(test.getGAdjusted())}};
    body.report = {{"df", number(df)},
                   {"X2Probability", number(wq_lib::chiSquareProb(test.getX2(), df))},
                   {"GProbability", number(wq_lib::chiSquareProb(test.getG(), df))},
                   {"GAdjustedProbability", number(wq_lib::chiSquareProb(test.getGAdjusted(), df))},
                   {"criticalChiSquare", number(wq_lib::chiSquarePoint(test.getConfidence(), df))}};
    body.decision = {{"acceptH0", test.acceptH0()}};
    return document(head, test, std::move(body));
}

std::string jsonDocument(const JsonHead& head, wq_lib::KolmogorovSmirnov2& test)
{
    const double size1 = static_cast<double>(test.getN1());
    const double size2 = static_cast<double>(test.getN2());
    Json cumulative = Json::array();
    for (std::size_t i = 0; i < test.getSampleSize(); ++i) {
        const auto [c1, c2] = test.getCumulativeFrequency(i);
        cumulative.push_back({{"F1", number(c1)},
                              {"F2", number(c2)},
                              {"relF1", number(c1 / size1)},
                              {"relF2", number(c2 / size2)},
                              {"diff", number(std::fabs(c1 / size1 - c2 / size2))}});
    }
    Body body;
    body.result = {{"n1", number(test.getN1())},
                   {"n2", number(test.getN2())},
                   {"D", number(test.getD())},
                   {"cumulativeFrequencies", std::move(cumulative)}};
    body.report = {{"criticalD", number(wq_lib::D_TwoSamples(test.getSignificance(), test.getN1(), test.getN2()))}};
    body.decision = {{"acceptH0", test.acceptH0()}};
    return document(head, test, std::move(body));
}

std::string jsonDocument(const JsonHead& head, wq_lib::TwoSamples& samples)
{
    Body body;
    body.result = {{"first", record(samples.getResult())},
                   {"second", record(samples.getSecondSample())},
                   {"F", number(samples.getF())},
                   {"FProbability", number(samples.getFProbability())},
                   {"criticalF", number(samples.getCriticalF())},
                   {"df1", number(samples.getDf1())},
                   {"df2", number(samples.getDf2())}};
    body.decision = {{"acceptH0", samples.acceptH0()}};
    return document(head, samples, std::move(body));
}

std::string jsonDocument(const JsonHead& head, wq_lib::Frequency& sample)
{
    Json table = Json::array();
    for (const wq_lib::frequency_class& row : sample.getTable()) {
        const double index = static_cast<double>(table.size());
        table.push_back({{"lower", number(sample.getStartClass() + index * sample.getClassWidth())},
                         {"upper", number(sample.getStartClass() + (index + 1.0) * sample.getClassWidth())},
                         {"count", number(row.count)},
                         {"rate", number(row.rate)}});
    }
    Body body;
    body.settings = {{"classes", number(sample.getClasses())}};
    body.result = {{"sample", record(sample.getResult())},
                   {"startClass", number(sample.getStartClass())},
                   {"classWidth", number(sample.getClassWidth())},
                   {"table", std::move(table)}};
    return document(head, sample, std::move(body));
}

std::string jsonDocument(const JsonHead& head, wq_lib::Circular& directions)
{
    const wq_lib::circular_stat& r = directions.getCircularResult();
    Body body;
    body.settings = {{"unit", nameOf(directions.getDataType())},
                     {"bins", number(directions.getBins())},
                     {"bin0", number(r.bin0)},
                     {"binName", directions.getBinName()}};
    body.result = {{"n", number(r.n)},
                   {"bins", number(r.bins)},
                   {"bin0", number(r.bin0)},
                   {"a", number(r.a)},
                   {"r", number(r.r)},
                   {"s", number(r.s)},
                   {"sPrime", number(r.sPrime)},
                   {"meanBin", number(r.meanBin)},
                   {"binSize", number(r.binSize)},
                   {"R", number(r.R)},
                   {"z", number(r.z)},
                   {"significance", number(r.significance)},
                   {"p", number(r.p)},
                   {"accepted", r.accepted},
                   {"grouped", directions.isGrouped()}};
    body.report = {{"aDegrees", number(wq_lib::radianToDegree(r.a))}};
    body.decision = {{"acceptH0", r.accepted}};
    return document(head, directions, std::move(body));
}

}  // namespace wqstat
