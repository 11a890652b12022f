// Data sets that others published, against certified and independently computed results.
//
// The sets under examples/data are checked always. With WQ_REFERENCE_DATA set to a folder of reference data, every row of its
// expected.csv is checked: file, file2, analysis, options, field, value, digits, basis, source. A row asks for a relative error below
// 10^-digits; digits 0 promises none, so that the value need only be there; rows without digits are textbook values which
// the approximations of this library need not meet.
#include <wq_stat/wq_stat.h>

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "support/files.h"

using namespace wq_lib;

namespace {

// ---------------------------------------------------------------- fields: name -> getter, an index for those with []

template <typename T>
using Fields = std::map<std::string, double (*)(T&, std::size_t)>;

// What an analysis of one set of files with one set of options gives.
class Outcome {
public:
    virtual ~Outcome() = default;
    virtual double value(const std::string& field) = 0;
};

template <typename T>
class OutcomeOf : public Outcome {
public:
    explicit OutcomeOf(const Fields<T>& names) : fields(names) {}

    double value(const std::string& field) override
    {
        std::string name = field;
        std::size_t index = 0;
        const std::size_t open = field.find('['), close = field.find(']');
        if (open != std::string::npos) {
            index = std::stoul(field.substr(open + 1, close - open - 1));
            name = field.substr(0, open + 1) + field.substr(close);
        }
        const auto getter = fields.find(name);
        if (getter == fields.end()) throw std::invalid_argument("unknown field " + field);
        return getter->second(analysis, index);
    }

    T analysis;

private:
    const Fields<T>& fields;
};

double number(std::size_t n) { return static_cast<double>(n); }

// clang-format off
#define FIELD(T, name, expression) {name, +[](T& t, std::size_t) -> double { return expression; }}
#define FIELD_AT(T, name, expression) {name, +[](T& t, std::size_t i) -> double { return expression; }}
// clang-format on

const Fields<BasicStatistics> basicFields = {
    FIELD(BasicStatistics, "n", number(t.getResult().n)),
    FIELD(BasicStatistics, "min", t.getResult().min),
    FIELD(BasicStatistics, "max", t.getResult().max),
    FIELD(BasicStatistics, "mean", t.getResult().mean),
    FIELD(BasicStatistics, "geoMean", t.getResult().geoMean),
    FIELD(BasicStatistics, "harmMean", t.getResult().harmMean),
    FIELD(BasicStatistics, "median", t.getResult().median),
    FIELD(BasicStatistics, "quartile1", t.getResult().quartile1),
    FIELD(BasicStatistics, "quartile3", t.getResult().quartile3),
    FIELD(BasicStatistics, "sum", t.getResult().sum),
    FIELD(BasicStatistics, "variance", t.getResult().variance),
    FIELD(BasicStatistics, "sampleVariance", t.getResult().sampleVariance),
    FIELD(BasicStatistics, "stdev", t.getResult().stdev),
    FIELD(BasicStatistics, "sampleStdev", t.getResult().sampleStdev),
    FIELD(BasicStatistics, "stdError", t.getResult().stdError),
    FIELD(BasicStatistics, "cv", t.getResult().cv),
    FIELD(BasicStatistics, "sumOfSquares", t.getResult().sumOfSquares),
    FIELD(BasicStatistics, "geometricMean(all)", t.geometricMean(0, t.getSampleSize() - 1)),
    FIELD(BasicStatistics, "StudentOfMeans",
          t.StudentOfMeans(t.getResult().mean, t.getResult().sampleVariance, t.getNullHypothesis(), t.getResult().n)),
};

const Fields<BasicXyStatistics> pairFields = {
    FIELD(BasicXyStatistics, "x.n", number(t.getXyResult().x.n)),
    FIELD(BasicXyStatistics, "x.min", t.getXyResult().x.min),
    FIELD(BasicXyStatistics, "x.max", t.getXyResult().x.max),
    FIELD(BasicXyStatistics, "x.sum", t.getXyResult().x.sum),
    FIELD(BasicXyStatistics, "x.mean", t.getXyResult().x.mean),
    FIELD(BasicXyStatistics, "x.variance", t.getXyResult().x.variance),
    FIELD(BasicXyStatistics, "x.sampleVariance", t.getXyResult().x.sampleVariance),
    FIELD(BasicXyStatistics, "x.sumOfSquares", t.getXyResult().x.sumOfSquares),
    FIELD(BasicXyStatistics, "y.min", t.getXyResult().y.min),
    FIELD(BasicXyStatistics, "y.max", t.getXyResult().y.max),
    FIELD(BasicXyStatistics, "y.sum", t.getXyResult().y.sum),
    FIELD(BasicXyStatistics, "y.mean", t.getXyResult().y.mean),
    FIELD(BasicXyStatistics, "y.variance", t.getXyResult().y.variance),
    FIELD(BasicXyStatistics, "y.sampleVariance", t.getXyResult().y.sampleVariance),
    FIELD(BasicXyStatistics, "y.sumOfSquares", t.getXyResult().y.sumOfSquares),
    FIELD(BasicXyStatistics, "sumProducts", t.getXyResult().sumProducts),
    FIELD(BasicXyStatistics, "covariance", t.getXyResult().covariance),
};

const Fields<Correlation> correlationFields = {
    FIELD(Correlation, "n", number(t.getXyResult().x.n)),
    FIELD(Correlation, "r", t.getCorrelationResult().r),
    FIELD(Correlation, "t", t.getCorrelationResult().t),
    FIELD(Correlation, "F", t.getCorrelationResult().F),
    FIELD(Correlation, "confidenceLimits.lower", t.getCorrelationResult().confidenceLimits.getLower()),
    FIELD(Correlation, "confidenceLimits.upper", t.getCorrelationResult().confidenceLimits.getUpper()),
};

template <typename T>
Fields<T> regressionFields()
{
    return {
        FIELD(T, "n", number(t.getRegressionResult().n)),
        FIELD(T, "a", t.getRegressionResult().a),
        FIELD(T, "b", t.getRegressionResult().b),
        FIELD(T, "explained", t.getRegressionResult().explained),
        FIELD(T, "unexplained", t.getRegressionResult().unexplained),
        FIELD(T, "residualVariance", t.getRegressionResult().residualVariance),
        FIELD(T, "seB", t.getRegressionResult().seB),
        FIELD(T, "tB", t.getRegressionResult().tB),
        FIELD(T, "meanX", t.getRegressionResult().meanX),
        FIELD(T, "meanY", t.getRegressionResult().meanY),
        FIELD(T, "seY", t.getRegressionResult().seY),
    };
}

template <typename T>
Fields<T> anovaFields()
{
    return {
        FIELD(T, "groupCount", number(t.getGroupCount())),
        FIELD(T, "totalObservations", static_cast<double>(t.getTotalObservations())),
        FIELD(T, "grandTotal", t.getGrandTotal()),
        FIELD(T, "correctionTerm", t.getCorrectionTerm()),
        FIELD(T, "sumSquaredObservations", t.getSumSquaredObservations()),
        FIELD(T, "sumSquaredGroupTotals", t.getSumSquaredGroupTotals()),
        FIELD(T, "sumSquaredSampleSizes", t.getSumSquaredSampleSizes()),
        FIELD(T, "meanSampleSize", t.getMeanSampleSize()),
        FIELD(T, "n0", t.getN0()),
        FIELD(T, "varianceComponent", t.getVarianceComponent()),
        FIELD(T, "varianceComponentRatio", t.getVarianceComponentRatio()),
        FIELD(T, "total.df", number(t.getTotal().df)),
        FIELD(T, "total.ss", t.getTotal().ss),
        FIELD(T, "among.df", number(t.getAmong().df)),
        FIELD(T, "among.ss", t.getAmong().ss),
        FIELD(T, "among.ms", t.getAmong().ms),
        FIELD(T, "among.fs", t.getAmong().fs),
        FIELD(T, "among.expectedMs", t.getAmong().expectedMs),
        FIELD(T, "within.df", number(t.getWithin().df)),
        FIELD(T, "within.ss", t.getWithin().ss),
        FIELD(T, "within.ms", t.getWithin().ms),
        FIELD(T, "within.expectedMs", t.getWithin().expectedMs),
        FIELD_AT(T, "groups[].id", t.getGroups().at(i).id),
        FIELD_AT(T, "groups[].n", static_cast<double>(t.getGroups().at(i).n)),
        FIELD_AT(T, "groups[].mean", t.getGroups().at(i).mean),
        FIELD_AT(T, "groups[].sum", t.getGroups().at(i).sum),
        FIELD_AT(T, "groups[].sumOfSquares", t.getGroups().at(i).sumOfSquares),
        FIELD_AT(T, "groups[].variance", t.getGroups().at(i).variance),
    };
}

Fields<LinearRegressionMultiY> multiYFields()
{
    using T = LinearRegressionMultiY;
    Fields<T> fields = anovaFields<T>();
    fields.insert({
        FIELD(T, "sumX", t.getRegressionResult().sumX),
        FIELD(T, "sumX2", t.getRegressionResult().sumX2),
        FIELD(T, "sumXT", t.getRegressionResult().sumXT),
        FIELD(T, "correctionX", t.getRegressionResult().correctionX),
        FIELD(T, "ssX", t.getRegressionResult().ssX),
        FIELD(T, "spXY", t.getRegressionResult().spXY),
        FIELD(T, "a", t.getRegressionResult().a),
        FIELD(T, "b", t.getRegressionResult().b),
        FIELD(T, "explained", t.getRegressionResult().explained),
        FIELD(T, "unexplained", t.getRegressionResult().unexplained),
        FIELD(T, "seB", t.getRegressionResult().seB),
        FIELD(T, "tB", t.getRegressionResult().tB),
        FIELD(T, "regression.df", number(t.getRegression().df)),
        FIELD(T, "regression.ss", t.getRegression().ss),
        FIELD(T, "regression.ms", t.getRegression().ms),
        FIELD(T, "regression.fs", t.getRegression().fs),
        FIELD(T, "deviations.df", number(t.getDeviations().df)),
        FIELD(T, "deviations.ss", t.getDeviations().ss),
        FIELD(T, "deviations.ms", t.getDeviations().ms),
        FIELD(T, "deviations.fs", t.getDeviations().fs),
    });
    return fields;
}

const Fields<GoodnessOfFit> fitFields = {
    FIELD(GoodnessOfFit, "X2", t.getX2()),
    FIELD(GoodnessOfFit, "G", t.getG()),
    FIELD(GoodnessOfFit, "GAdjusted", t.getGAdjusted()),
};

// cumulative() makes one entry for each of the pairs.
std::pair<double, double> cumulativeAt(KolmogorovSmirnov2& t, std::size_t i)
{
    if (i >= t.getSampleSize()) throw std::out_of_range("no cumulative frequency " + std::to_string(i));
    return t.getCumulativeFrequency(i);
}

const Fields<KolmogorovSmirnov2> kolmogorovFields = {
    FIELD(KolmogorovSmirnov2, "D", t.getD()),
    FIELD(KolmogorovSmirnov2, "n1", number(t.getN1())),
    FIELD(KolmogorovSmirnov2, "n2", number(t.getN2())),
    FIELD(KolmogorovSmirnov2, "D_TwoSamples", D_TwoSamples(t.getSignificance(), t.getN1(), t.getN2())),
    FIELD_AT(KolmogorovSmirnov2, "cumulative[].first", cumulativeAt(t, i).first),
    FIELD_AT(KolmogorovSmirnov2, "cumulative[].second", cumulativeAt(t, i).second),
};

const Fields<TwoSamples> varianceFields = {
    FIELD(TwoSamples, "F", t.getF()),
    FIELD(TwoSamples, "df1", number(t.getDf1())),
    FIELD(TwoSamples, "df2", number(t.getDf2())),
};

const Fields<Frequency> frequencyFields = {
    FIELD(Frequency, "classes", number(t.getClasses())),
    FIELD(Frequency, "classWidth", t.getClassWidth()),
    FIELD(Frequency, "startClass", t.getStartClass()),
    FIELD_AT(Frequency, "table[].count", static_cast<double>(t.getTable().at(i).count)),
    FIELD_AT(Frequency, "table[].rate", t.getTable().at(i).rate),
};

const Fields<Circular> circularFields = {
    FIELD(Circular, "n", number(t.getCircularResult().n)),
    FIELD(Circular, "a", t.getCircularResult().a),
    FIELD(Circular, "r", t.getCircularResult().r),
    FIELD(Circular, "s", t.getCircularResult().s),
    FIELD(Circular, "sPrime", t.getCircularResult().sPrime),
    FIELD(Circular, "binSize", t.getCircularResult().binSize),
    FIELD(Circular, "meanBin", number(t.getCircularResult().meanBin)),
    FIELD(Circular, "R", t.getCircularResult().R),
    FIELD(Circular, "z", t.getCircularResult().z),
    FIELD(Circular, "p", t.getCircularResult().p),
};

#undef FIELD
#undef FIELD_AT

// ---------------------------------------------------------------- analyses: name -> what runs it

using Options = std::map<std::string, std::string>;

struct Request {
    std::string file, file2;  // paths
    Options options;
};

void require(bool done, const std::string& what)
{
    if (!done) throw std::runtime_error(what);
}

double toNumber(const std::string& text)
{
    double value = 0.0;
    const auto end = text.data() + text.size();
    require(std::from_chars(text.data(), end, value).ptr == end && !text.empty(), "no number: " + text);
    return value;
}

// Takes an option out of those that wait to be used.
bool take(Options& options, const std::string& name, std::string& value)
{
    const auto found = options.find(name);
    if (found == options.end()) return false;
    value = found->second;
    options.erase(found);
    return true;
}

std::size_t count(const std::string& text) { return static_cast<std::size_t>(toNumber(text)); }

// Sets the options of the class and runs its analysis; `options` must be empty at the end.
void run(BasicStatistics& t, Options& options)
{
    std::string value;
    if (take(options, "head", value)) t.setHead(toNumber(value));
    if (take(options, "tail", value)) t.setTail(toNumber(value));
    if (take(options, "mu0", value)) t.setNullHypothesis(toNumber(value));
    require(t.analyse(), "analyse");
}

void run(Frequency& t, Options& options)
{
    std::string value;
    require(take(options, "autoClassWidth", value), "no option autoClassWidth");
    require(t.autoClassWidth(count(value)), "autoClassWidth");
    require(t.initFrequency(t.getClasses()), "initFrequency");
    t.buildTable();
    require(t.analyse(), "analyse");
}

void run(GoodnessOfFit& t, Options& options)
{
    std::string value;
    if (take(options, "yates", value)) t.setYatesCorrection(value == "1");
    if (take(options, "williams", value)) t.setWilliamsCorrection(value == "1");
    require(t.analyse(), "analyse");
}

void run(KolmogorovSmirnov2& t, Options&)
{
    t.cumulative();
    require(t.analyse(), "analyse");
}

void run(SingleAnova& t, Options&)
{
    require(t.createSeries(), "createSeries");
    require(t.analyse(), "analyse");
}

void run(Circular& t, Options& options)
{
    const std::map<std::string, CIRCULAR_DATA> types = {{"RADIANS", RADIANS}, {"DEGREES", DEGREES}, {"BIN_NUMBERS", BIN_NUMBERS}};
    std::string value;
    if (take(options, "type", value)) t.setDataType(types.at(value));
    if (take(options, "bins", value)) t.setBins(count(value));
    if (take(options, "bin0", value)) t.setBin0(toNumber(value));
    require(t.analyse(), "analyse");
}

void load(BasicStatistics& t, const Request& request) { require(t.readDataFile(request.file), "cannot read " + request.file); }
void load(LinearRegressionMultiY& t, const Request& request) { require(t.readSeriesFile(request.file), "cannot read " + request.file); }

void load(TwoSamples& t, const Request& request)
{
    BasicStatistics second;
    require(second.readDataFile(request.file2), "cannot read " + request.file2);
    require(second.analyse(), "analysis of the second sample");
    require(t.readDataFile(request.file), "cannot read " + request.file);
    require(t.BasicStatistics::analyse(), "analysis of the first sample");
    t.setSecondSample(second.getResult());
}

using Analysis = std::function<std::unique_ptr<Outcome>(const Request&)>;

template <typename T>
Analysis analysing(const Fields<T>& fields)
{
    return [fields](const Request& request) {
        auto outcome = std::make_unique<OutcomeOf<T>>(fields);
        Options options = request.options;
        load(outcome->analysis, request);
        run(outcome->analysis, options);
        require(options.empty(), "unknown option");
        return outcome;
    };
}

using Analyses = std::map<std::string, Analysis>;

const Analyses& analyses()
{
    static const Analyses all = {
        {"BasicStatistics", analysing<BasicStatistics>(basicFields)},
        {"BasicXyStatistics", analysing<BasicXyStatistics>(pairFields)},
        {"Circular", analysing<Circular>(circularFields)},
        {"Correlation", analysing<Correlation>(correlationFields)},
        {"ExponentialRegression", analysing<ExponentialRegression>(regressionFields<ExponentialRegression>())},
        {"Frequency", analysing<Frequency>(frequencyFields)},
        {"GoodnessOfFit", analysing<GoodnessOfFit>(fitFields)},
        {"KolmogorovSmirnov2", analysing<KolmogorovSmirnov2>(kolmogorovFields)},
        {"LinearRegression", analysing<LinearRegression>(regressionFields<LinearRegression>())},
        {"LinearRegressionMultiY", analysing<LinearRegressionMultiY>(multiYFields())},
        {"LogarithmicRegression", analysing<LogarithmicRegression>(regressionFields<LogarithmicRegression>())},
        {"PowerRegression", analysing<PowerRegression>(regressionFields<PowerRegression>())},
        {"SingleAnova", analysing<SingleAnova>(anovaFields<SingleAnova>())},
        {"TwoSamples", analysing<TwoSamples>(varianceFields)},
    };
    return all;
}

// ---------------------------------------------------------------- rows

bool agrees(double value, double expected, int digits)
{
    return digits == 0 || value == expected || std::fabs(value - expected) < std::pow(10.0, -digits) * std::fabs(expected);
}

// The cells of a line of comma-separated text; those in double quotes may hold commas and doubled quotes.
std::vector<std::string> cellsOf(const std::string& line)
{
    std::vector<std::string> cells(1);
    bool quoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        // clang-format off
        if (quoted && c == '"' && i + 1 < line.size() && line[i + 1] == '"') cells.back() += line[++i];
        else if (c == '"') quoted = !quoted;
        else if (c == ',' && !quoted) cells.emplace_back();
        else if (c != '\r') cells.back() += c;
        // clang-format on
    }
    return cells;
}

Options optionsOf(const std::string& text)
{
    Options options;
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        const std::size_t equals = word.find('=');
        require(equals != std::string::npos, "no option: " + word);
        options[word.substr(0, equals)] = word.substr(equals + 1);
    }
    return options;
}

struct Tally {
    int checked = 0, withoutDigits = 0, textbook = 0;
};

}  // namespace

TEST(RealData, everyReferenceValue)
{
    const char* folder = std::getenv("WQ_REFERENCE_DATA");
    if (folder == nullptr || *folder == '\0') GTEST_SKIP() << "WQ_REFERENCE_DATA names no folder of reference data";
    const std::string root = std::string(folder) + "/";

    std::ifstream file(root + "expected.csv");
    ASSERT_TRUE(file) << "no expected.csv in " << root;
    std::string line;
    ASSERT_TRUE(std::getline(file, line));
    const std::vector<std::string> columns = {"file", "file2", "analysis", "options", "field", "value", "digits", "basis", "source"};
    ASSERT_EQ(cellsOf(line), columns);

    std::map<std::string, Tally> tallies;
    std::map<std::string, std::unique_ptr<Outcome>> outcomes;  // by files, analysis and options
    int rows = 0;
    for (int lineNumber = 2; std::getline(file, line); ++lineNumber) {
        ++rows;
        SCOPED_TRACE("expected.csv, line " + std::to_string(lineNumber) + ": " + line);
        const std::vector<std::string> cells = cellsOf(line);
        ASSERT_EQ(cells.size(), 9u);
        const std::string &analysis = cells[2], &field = cells[4], &digits = cells[6], &basis = cells[7];
        Tally& tally = tallies[analysis];
        if (digits.empty()) {
            EXPECT_EQ(basis, "textbook") << "a row without digits";
            ++tally.textbook;
            continue;
        }
        EXPECT_TRUE(basis == "certified" || basis == "computed") << basis;
        try {
            std::unique_ptr<Outcome>& outcome = outcomes[cells[0] + "," + cells[1] + "," + analysis + "," + cells[3]];
            if (outcome == nullptr) {
                const Request request{root + cells[0], root + cells[1], optionsOf(cells[3])};
                outcome = analyses().at(analysis)(request);
            }
            const double value = outcome->value(field), expected = toNumber(cells[5]);
            const int wanted = std::stoi(digits);
            EXPECT_TRUE(agrees(value, expected, wanted))
                << ::testing::PrintToString(value) << " instead of " << ::testing::PrintToString(expected) << ": a relative error of "
                << std::fabs(value - expected) / std::fabs(expected);
            ++(wanted == 0 ? tally.withoutDigits : tally.checked);
        } catch (const std::exception& failure) {
            ADD_FAILURE() << failure.what();
        }
    }
    EXPECT_GT(rows, 0);
    for (const auto& [analysis, tally] : tallies) {
        std::cout << analysis << ": " << tally.checked << " values checked, " << tally.withoutDigits
                  << " more computed of which no digit can be expected, " << tally.textbook << " textbook values left out\n";
    }
    for (const auto& analysis : analyses()) EXPECT_GT(tallies[analysis.first].checked, 0) << "no value of " << analysis.first;
}

TEST(RealData, certifiedValuesOfTheShippedSets)  // NIST Statistical Reference Datasets, the certified values
{
    const struct {
        const char *file, *analysis, *field;
        double value;
        int digits;  // 12 but for ill-conditioned sets: sums of squares as differences of uncorrected sums
    } rows[] = {
        {"nist_numacc1.txt", "BasicStatistics", "n", 3, 12},
        {"nist_numacc1.txt", "BasicStatistics", "mean", 10000002, 12},
        {"nist_numacc1.txt", "BasicStatistics", "sampleStdev", 1, 12},
        {"nist_numacc3.txt", "BasicStatistics", "n", 1001, 12},
        {"nist_numacc3.txt", "BasicStatistics", "mean", 1000000.2, 12},
        {"nist_numacc3.txt", "BasicStatistics", "sampleStdev", 0.1, 9},
        {"nist_norris.txt", "LinearRegression", "n", 36, 12},
        {"nist_norris.txt", "LinearRegression", "a", -0.262323073774029, 12},
        {"nist_norris.txt", "LinearRegression", "b", 1.00211681802045, 12},
        {"nist_norris.txt", "LinearRegression", "explained", 4255954.13232369, 12},
        {"nist_norris.txt", "LinearRegression", "unexplained", 26.6173985294224, 11},
        {"nist_norris.txt", "LinearRegression", "residualVariance", 0.782864662630069, 11},
        {"nist_norris.txt", "LinearRegression", "seB", 0.429796848199937e-03, 11},
        {"nist_sirstv.txt", "SingleAnova", "among.df", 4, 12},
        {"nist_sirstv.txt", "SingleAnova", "among.ss", 5.11462616000000e-02, 8},
        {"nist_sirstv.txt", "SingleAnova", "among.ms", 1.27865654000000e-02, 8},
        {"nist_sirstv.txt", "SingleAnova", "among.fs", 1.18046237440255, 8},
        {"nist_sirstv.txt", "SingleAnova", "within.df", 20, 12},
        {"nist_sirstv.txt", "SingleAnova", "within.ss", 2.16636560000000e-01, 9},
        {"nist_sirstv.txt", "SingleAnova", "within.ms", 1.08318280000000e-02, 9},
        {"nist_smls01.txt", "SingleAnova", "among.df", 8, 12},
        {"nist_smls01.txt", "SingleAnova", "among.ss", 1.68, 12},
        {"nist_smls01.txt", "SingleAnova", "among.ms", 0.21, 12},
        {"nist_smls01.txt", "SingleAnova", "among.fs", 21.0, 12},
        {"nist_smls01.txt", "SingleAnova", "within.df", 180, 12},
        {"nist_smls01.txt", "SingleAnova", "within.ss", 1.8, 12},
        {"nist_smls01.txt", "SingleAnova", "within.ms", 0.01, 12},
        {"nist_smls02.txt", "SingleAnova", "among.df", 8, 12},
        {"nist_smls02.txt", "SingleAnova", "among.ss", 16.08, 12},
        {"nist_smls02.txt", "SingleAnova", "among.ms", 2.01, 12},
        {"nist_smls02.txt", "SingleAnova", "among.fs", 201.0, 12},
        {"nist_smls02.txt", "SingleAnova", "within.df", 1800, 12},
        {"nist_smls02.txt", "SingleAnova", "within.ss", 18.0, 12},
        {"nist_smls02.txt", "SingleAnova", "within.ms", 0.01, 12},
        {"nist_smls04.txt", "SingleAnova", "among.df", 8, 12},
        {"nist_smls04.txt", "SingleAnova", "among.ss", 1.68, 1},
        {"nist_smls04.txt", "SingleAnova", "among.ms", 0.21, 1},
        {"nist_smls04.txt", "SingleAnova", "among.fs", 21.0, 1},
        {"nist_smls04.txt", "SingleAnova", "within.df", 180, 12},
        {"nist_smls04.txt", "SingleAnova", "within.ss", 1.8, 1},
        {"nist_smls04.txt", "SingleAnova", "within.ms", 0.01, 1},
        {"nist_smls05.txt", "SingleAnova", "among.df", 8, 12},
        {"nist_smls05.txt", "SingleAnova", "among.ss", 16.08, 1},
        {"nist_smls05.txt", "SingleAnova", "among.ms", 2.01, 1},
        {"nist_smls05.txt", "SingleAnova", "within.df", 1800, 12},
        {"nist_smls07.txt", "SingleAnova", "among.df", 8, 12},
        {"nist_smls07.txt", "SingleAnova", "within.df", 180, 12},
        {"nist_smls08.txt", "SingleAnova", "among.df", 8, 12},
        {"nist_smls08.txt", "SingleAnova", "within.df", 1800, 12},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.file) + ", " + row.field);
        try {
            const double value = analyses().at(row.analysis)({wq_test::shipped(row.file), "", {}})->value(row.field);
            EXPECT_TRUE(agrees(value, row.value, row.digits)) << ::testing::PrintToString(value) << " instead of " << row.value;
        } catch (const std::exception& failure) {
            ADD_FAILURE() << failure.what();
        }
    }
}
