// The analyses of data files. Each command is what a host does with the class: set, read, prepare, analyse, report.
#include "analysis_command.h"
#include "two_sample_command.h"

#include "command_line/failure.h"
#include "command_line/arguments.h"
#include "data_files/two_data_files.h"
#include "results/figures.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numeric>
#include <optional>
#include <string>
#include <system_error>
#include <type_traits>
#include <utility>
#include <vector>

namespace wqstat {

namespace {

// ---------------------------------------------------------------- samples of numbers

constexpr std::size_t leastValues = 3;

/** Rows that stand for several observations. */
class Repeats {
public:
    /** @return the count as an integer. @throws CannotAnalyse when all counts together are more than can be held. */
    std::size_t counted(double count)
    {
        constexpr double most = 1e9;
        total += count;
        if (total > most) throw CannotAnalyse("the counts add up to more than 1000000000 observations");
        return static_cast<std::size_t>(count);
    }

private:
    double total = 0.0;
};

class Describe final : public AnalysisCommand {
    std::string analysisName() const override { return "descriptive statistics"; }

    void declareOptions(CLI::App& app) override
    {
        addReal(app, "--mu", mu, anyFinite, "mean under H0, 0 unless given");
        addReal(app, "--head", head, trimming, "fraction of the sorted sample to leave out at the low end");
        addReal(app, "--tail", tail, trimming, "fraction of the sorted sample to leave out at the high end");
        addColumn(app, column);
    }

    OutputNames outputNames() const override { return {"sorted values", "values"}; }
    PlotChoices plotChoices() const override { return {"x"}; }

    void analyse() override
    {
        if (!(head + tail < 1.0)) throw WrongUsage("--head and --tail: together they leave out the whole sample");
        wq_lib::BasicStatistics sample;
        sample.setNullHypothesis(mu);
        sample.setHead(head);
        sample.setTail(tail);
        const Input& input = readsTables() ? readColumn(sample) : read(sample, Layout::values);
        input.require(sample.getSampleSize(), leastValues);
        // Fractions that cross over leave an empty range, which analyse() takes for a long one.
        if (!sample.analyse() || sample.getResult().n < leastValues)
            throw CannotAnalyse(input.name() + ": --head and --tail leave too few of the " + std::to_string(sample.getSampleSize()) +
                                " observations, at least " + std::to_string(leastValues) + " are needed");
        present(sample);
    }

    const Input& readColumn(wq_lib::BasicStatistics& sample)
    {
        const TableRows& table = readTable(sample, {column.column()}, [&sample](const double* row) { sample.add(row[0]); });
        words.xTitle = table.title(0);
        return table;
    }

    static constexpr OpenRange trimming{-std::numeric_limits<double>::denorm_min(), 1.0, "0 or more and below 1"};

    double mu = 0.0;
    double head = 0.0;
    double tail = 0.0;
    ColumnOption column{"--column", ColumnKind::number, "the values"};
};

class FrequencyClasses final : public AnalysisCommand {
    std::string analysisName() const override { return "frequencies"; }

    void declareOptions(CLI::App& app) override
    {
        addCount(app, "--classes", classes, 1, 1'000'000, "number of classes, 10 unless given");
        addColumn(app, column);
        addColumn(app, count);
    }

    OutputNames outputNames() const override { return {"sorted values", "table"}; }

    void analyse() override
    {
        wq_lib::Frequency sample;
        const Input& input = readsTables() ? readColumn(sample) : read(sample, Layout::values);
        input.require(sample.getSampleSize(), leastValues);
        sample.autoClassWidth(classes);
        sample.initFrequency(sample.getClasses());
        sample.buildTable();
        sample.analyse();
        present(sample);
    }

    const Input& readColumn(wq_lib::Frequency& sample)
    {
        Repeats repeats;
        const TableRows& table = readTable(sample, chosen({&column}, {&count}), [&](const double* row) {
            for (std::size_t n = count.given() ? repeats.counted(row[1]) : 1; n > 0; --n) sample.add(row[0]);
        });
        words.xTitle = table.title(0);
        return table;
    }

    std::size_t classes = 10;
    ColumnOption column{"--column", ColumnKind::number, "the values"};
    ColumnOption count{"--count", ColumnKind::count, "how often each value occurred, once unless given", false};
};

class Variances final : public TwoSampleCommand {
    std::string analysisName() const override { return "test of two variances"; }
    Sentence aboutBoth(const Sentence& first, const Sentence& second) const override { return second + " by " + first; }

    std::string filesText() const override
    {
        return "data files of the two samples, or tables that hold both; - is standard input, as is no FILE where a table holds both";
    }

    PlotChoices plotChoices() const override { return {"y"}; }
    void declareOptions(CLI::App& app) override { declareSamples(app, true); }

    void declareOutputs(CLI::App&) override {}  // they belong to the analysis of one sample

    void analyse() override
    {
        TwoDataFiles samples;
        if (readsTables())
            readTables(samples);
        else
            readFiles(samples);
        samples.wq_lib::BasicStatistics::analyse();  // of the first sample; the class has an analyse() of its own
        samples.second.analyse();
        samples.setSecondSample(samples.second.getResult());
        samples.setComment(samples.second.getComment());
        samples.analyse();
        present(samples);
    }

    std::size_t filesOfEach() const override { return readsTables() ? TwoSampleCommand::filesOfEach() : 2; }

    void readFiles(TwoDataFiles& samples)
    {
        read(samples, files()[0], Layout::values).require(samples.getSampleSize(), leastValues);
        read(samples.second, files()[1], Layout::values).require(samples.second.getSampleSize(), leastValues);
    }

    void readTables(TwoDataFiles& samples)
    {
        wq_lib::BasicStatistics* const both[] = {&samples, &samples.second};
        readSamples(samples, leastValues, [&both](std::size_t sample, double value) { both[sample]->add(value); });
        samples.second.setSignificance(samples.getSignificance());
    }
};

// ---------------------------------------------------------------- pairs

const ColumnOption columnX{"--x", ColumnKind::number, "x"};
const ColumnOption columnY{"--y", ColumnKind::number, "y"};

template <typename Analysis>
class Paired final : public AnalysisCommand {
    std::string analysisName() const override { return std::is_same_v<Analysis, wq_lib::Correlation> ? "correlation" : "paired samples"; }
    Sentence aboutBoth(const Sentence& first, const Sentence& second) const override { return first + " and " + second; }

    void declareOptions(CLI::App& app) override
    {
        addColumn(app, x);
        addColumn(app, y);
    }

    PlotChoices plotChoices() const override { return {"xy"}; }

    void analyse() override
    {
        Analysis analysis;
        readPairs(analysis, x, y).require(analysis.getSampleSize(), 2);
        analysis.analyse();
        present(analysis);
    }

    ColumnOption x = columnX;
    ColumnOption y = columnY;
};

class Regress final : public AnalysisCommand {
    std::string analysisName() const override { return model + " regression"; }
    Sentence aboutBoth(const Sentence& first, const Sentence& second) const override { return second + " by " + first; }

    PlotChoices plotChoices() const override { return {"xy", true}; }

    void declareOptions(CLI::App& app) override
    {
        app.add_option("--model", model,
                       "required: linear (y = a + b x), logarithmic (y = a + b ln x), exponential (y = a e^(b x)) or power (y = a x^b)")
            ->required()
            ->check(CLI::IsMember({"linear", "logarithmic", "exponential", "power"}))
            ->type_name("MODEL");
        addColumn(app, x);
        addColumn(app, y);
    }

    void analyse() override
    {
        if (model == "linear") fit<wq_lib::LinearRegression>(2);
        if (model == "logarithmic") fit<wq_lib::LogarithmicRegression>(1);
        if (model == "exponential") fit<wq_lib::ExponentialRegression>(1);
        if (model == "power") fit<wq_lib::PowerRegression>(1);
    }

    template <typename Model>
    void fit(std::size_t leastPairs)
    {
        Model regression;
        const Input& input = readPairs(regression, x, y);
        input.require(regression.getSampleSize(), leastPairs);
        regression.analyse();
        if (regression.getXyResult().x.n == 0)
            throw CannotAnalyse(input.name() + ": no pair has the logarithms of the " + model + " model");
        present(regression);
    }

    std::string model;
    ColumnOption x = columnX;
    ColumnOption y = columnY;
};

class Anova final : public AnalysisCommand {
    std::string analysisName() const override { return "one-way Anova"; }
    Sentence aboutBoth(const Sentence& first, const Sentence& second) const override { return second + " by " + first; }

    void declareOptions(CLI::App& app) override
    {
        app.add_flag("--details", details, "after the table print each group and the sums behind the table");
        addColumn(app, group);
        addColumn(app, value);
    }

    bool hasGroups() const override { return true; }
    PlotChoices plotChoices() const override { return {"y"}; }

    void analyse() override
    {
        wq_lib::SingleAnova anova;
        readGroups(anova).require(anova.getSampleSize(), 1);
        anova.createSeries();
        anova.analyse();
        present(anova, [&] {
            if (details) anova.testResults();
        });
    }

    const Input& readGroups(wq_lib::SingleAnova& anova)
    {
        if (!readsTables()) return readNamedPairs(anova);
        const TableRows& table = readTable(anova, chosen({&group, &value}), [&anova](const double* row) { anova.add(row[0], row[1]); });
        words.xTitle = table.title(0);
        words.yTitle = table.title(1);
        words.item = "group";
        words.labels = table.labels(0).all();
        return table;
    }

    bool details = false;
    ColumnOption group{"--group", ColumnKind::label, "the groups, which may be texts"};
    ColumnOption value{"--value", ColumnKind::number, "the observations"};
};

class MultiY final : public AnalysisCommand {
    std::string analysisName() const override { return "regression with several y for each x"; }
    Sentence aboutBoth(const Sentence& first, const Sentence& second) const override { return second + " by " + first; }

    void declareOptions(CLI::App& app) override
    {
        addColumn(app, x);
        addColumn(app, y);
        addColumn(app, count);
    }

    bool hasGroups() const override { return true; }

    void analyse() override
    {
        wq_lib::LinearRegressionMultiY regression;
        (readsTables() ? readColumns(regression) : readSeries(regression)).require(regression.getSampleSize(), 1);
        regression.createSeries();
        regression.analyse();
        present(regression);
    }

    const Input& readColumns(wq_lib::LinearRegressionMultiY& regression)
    {
        Repeats repeats;
        const TableRows& table = readTable(regression, chosen({&x, &y}, {&count}), [&](const double* row) {
            for (std::size_t n = count.given() ? repeats.counted(row[2]) : 1; n > 0; --n) regression.add(row[0], row[1]);
        });
        words.xTitle = table.title(0);
        words.yTitle = table.title(1);
        return table;
    }

    ColumnOption x = columnX;
    ColumnOption y = columnY;
    ColumnOption count{"--count", ColumnKind::count, "how often each pair occurred, once unless given", false};
};

// ---------------------------------------------------------------- classes

/** Positive numbers between colons. @throws WrongUsage */
std::vector<double> ratioArgument(const std::string& text)
{
    std::vector<double> parts;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find(':', begin), text.size());
        parts.push_back(realArgument(text.substr(begin, end - begin)));
        if (!(parts.back() > 0.0) || !std::isfinite(parts.back())) throw WrongUsage(inQuotes(text) + " is not a ratio of positive numbers");
        begin = end + 1;
    }
    return parts;
}

class Fit final : public AnalysisCommand {
    std::string analysisName() const override { return "goodness of fit"; }

    void declareOptions(CLI::App& app) override
    {
        app.add_flag("--yates", yates, "Yates' continuity correction of chi-square (two classes only)");
        app.add_flag("--no-williams", noWilliams, "leave out Williams' correction of G");
        addColumn(app, observed);
        addColumn(app, expected);
        addColumn(app, column);
        const auto store = [this](const std::string& text) { ratio = readArgument("--ratio", [&] { return ratioArgument(text); }); };
        app.add_option_function<std::string>("--ratio", store, "with --column: what the counts are expected to be like, such as 9:3:3:1")
            ->type_name("A:B:...");
    }

    void analyse() override
    {
        wq_lib::GoodnessOfFit test;
        test.setYatesCorrection(yates);
        test.setWilliamsCorrection(!noWilliams);
        (readsTables() ? readColumns(test) : read(test, Layout::pairs)).require(test.getSampleSize(), 1);
        test.analyse();
        present(test);
    }

    const Input& readColumns(wq_lib::GoodnessOfFit& test)
    {
        if (column.given() != !ratio.empty()) throw WrongUsage("--column and --ratio go together");
        if (column.given()) return readClasses(test);
        const TableRows& table = readTable(test, chosen({&observed, &expected}), [&test](const double* row) { test.add(row[0], row[1]); });
        words.yTitle = table.title(0);
        words.compared = {table.title(0), table.title(1)};
        return table;
    }

    /** Classes that the ratio gives the expected frequencies of: a column of their counts, or of labels that are to be counted. */
    const Input& readClasses(wq_lib::GoodnessOfFit& test)
    {
        if (observed.given() || expected.given()) throw WrongUsage("--column and --ratio stand in place of --observed and --expected");
        std::vector<double> counts;
        std::vector<std::size_t> first;  // the labels of the first rows
        const TableRows& table = readTable(test, {column.column()}, [&](const double* row) {
            const auto label = static_cast<std::size_t>(row[0]);
            counts.resize(std::max(counts.size(), label));
            counts[label - 1] += 1.0;
            if (first.size() <= ratio.size()) first.push_back(label);
        });
        words.xTitle = table.title(0);
        std::vector<std::string> labels = table.labels(0).all();
        const auto rows = static_cast<std::size_t>(std::accumulate(counts.begin(), counts.end(), 0.0));
        const bool areNumbers =
            std::all_of(labels.begin(), labels.end(), [](const std::string& label) { return numberIn(label).has_value(); });
        if (areNumbers && (rows == ratio.size() || *table.rowsRead() == ratio.size())) {
            counts = countsOf(table, labels, first);
            labels.clear();
        } else {
            words.item = "class";
            const bool mayBeCounts = areNumbers && rows < 2 * ratio.size();
            if (mayBeCounts)
                words.doubt = shown(table.title(0)) + " holds numbers, of which each different one is taken for the name of a class";
        }
        if (counts.size() != ratio.size()) throw CannotAnalyse(wrongNumber(table, areNumbers ? rows : 0, counts.size()));
        words.labels = labels;
        for (const double share : ratio) words.ratio += (words.ratio.empty() ? "" : ":") + figures(share, 15);
        const double total = std::accumulate(counts.begin(), counts.end(), 0.0);
        const double parts = std::accumulate(ratio.begin(), ratio.end(), 0.0);
        for (std::size_t i = 0; i < counts.size(); ++i) test.add(counts[i], total * ratio[i] / parts);
        return table;
    }

    static std::optional<double> numberIn(const std::string& text)
    {
        double number = 0.0;
        const char* const end = text.data() + text.size();
        const auto [used, error] = std::from_chars(text.data(), end, number);
        return used == end && error == std::errc() ? std::optional<double>(number) : std::nullopt;
    }

    /** The labels of the rows as counts, each of which meets the part of the ratio at its place. */
    static std::vector<double> countsOf(const TableRows& table, const std::vector<std::string>& labels,
                                        const std::vector<std::size_t>& rows)
    {
        const std::string column = table.name() + ": " + shown(table.title(0));
        if (rows.size() < *table.rowsRead())
            throw CannotAnalyse(column + " lacks " + counted(*table.rowsRead() - rows.size(), "count") +
                                ", and each part of --ratio is met by the row at its place");
        std::vector<double> counts;
        for (const std::size_t row : rows) {
            const std::string& text = labels[row - 1];
            counts.push_back(*numberIn(text));
            if (!(counts.back() >= 0.0) || !std::isfinite(counts.back()))
                throw CannotAnalyse(column + ", row " + std::to_string(counts.size()) + ": a count is expected, not " + inQuotes(text));
        }
        return counts;
    }

    /** @param numbers in the column, 0 of labels. */
    std::string wrongNumber(const TableRows& table, std::size_t numbers, std::size_t classes) const
    {
        const std::string has = numbers == 0 ? std::to_string(classes) + (classes == 1 ? " class" : " classes")
                                             : counted(numbers, "number") + ", " + std::to_string(classes) + " of them different";
        return table.name() + ": " + shown(table.title(0)) + " has " + has + ", but --ratio has " + counted(ratio.size(), "part");
    }

    bool yates = false;
    bool noWilliams = false;
    ColumnOption observed{"--observed", ColumnKind::number, "the observed frequencies"};
    ColumnOption expected{"--expected", ColumnKind::number, "the expected frequencies"};
    ColumnOption column{"--column", ColumnKind::label, "the classes, as labels to be counted or as counts", false};
    std::vector<double> ratio;
};

/** Adds the frequencies of two samples of values: every value that occurs is a class of its own, so that D is exact. */
void addClasses(wq_lib::KolmogorovSmirnov2& test, std::array<std::vector<double>, 2>& samples)
{
    for (std::vector<double>& sample : samples) std::sort(sample.begin(), sample.end());
    auto first = samples[0].cbegin();
    auto second = samples[1].cbegin();
    while (first != samples[0].cend() || second != samples[1].cend()) {
        const bool isSecond = first == samples[0].cend() || (second != samples[1].cend() && *second < *first);
        const double value = isSecond ? *second : *first;
        const auto firstEnd = std::find_if(first, samples[0].cend(), [value](double x) { return x != value; });
        const auto secondEnd = std::find_if(second, samples[1].cend(), [value](double x) { return x != value; });
        test.add(static_cast<double>(firstEnd - first), static_cast<double>(secondEnd - second));
        first = firstEnd;
        second = secondEnd;
    }
}

class KolmogorovSmirnov final : public TwoSampleCommand {
    std::string analysisName() const override { return "Kolmogorov-Smirnov test"; }
    Sentence aboutBoth(const Sentence& first, const Sentence& second) const override { return second + " by " + first; }

    std::string filesText() const override { return AnalysisCommand::filesText() + "; with --column alone two tables, one of each sample"; }

    void declareOptions(CLI::App& app) override
    {
        app.add_flag("--frequencies", frequencies, "after the report print the cumulative frequencies");
        addColumn(app, className);
        addColumn(app, count1);
        addColumn(app, count2);
        declareSamples(app, false);
    }

    void analyse() override
    {
        wq_lib::KolmogorovSmirnov2 test;
        readData(test).require(test.getSampleSize(), 1);
        test.cumulative();
        test.analyse();
        present(test, [&] {
            if (frequencies) test.listFrequencies();
        });
    }

    const Input& readData(wq_lib::KolmogorovSmirnov2& test)
    {
        if (readsTables() && !namesSamples()) return readCounts(test);
        if (readsTables()) return readValues(test);
        return read(test, Layout::pairs);
    }

    const Input& readValues(wq_lib::KolmogorovSmirnov2& test)
    {
        if (className.given() || count1.given() || count2.given())
            throw WrongUsage("--class, --count1 and --count2 are for counts, not for the values of two samples");
        std::array<std::vector<double>, 2> samples;
        const Input& input = readSamples(test, 1, [&samples](std::size_t sample, double value) { samples[sample].push_back(value); });
        addClasses(test, samples);
        words.classesAreValues = true;
        return input;
    }

    const Input& readCounts(wq_lib::KolmogorovSmirnov2& test)
    {
        std::size_t repeated = 0;  // the number of a class that is not the next one
        const TableRows& table = readTable(test, chosen({&count1, &count2}, {&className}), [&](const double* row) {
            test.add(row[0], row[1]);
            if (className.given() && row[2] != static_cast<double>(test.getSampleSize())) repeated = static_cast<std::size_t>(row[2]);
        });
        words.compared = {table.title(0), table.title(1)};
        if (!className.given()) return table;
        words.xTitle = table.title(2);
        words.item = "class";
        words.labels = table.labels(2).all();
        if (repeated > 0)
            throw CannotAnalyse(table.name() + ": " + inQuotes(words.labels[repeated - 1]) + " stands in " + table.title(2) +
                                " more than once");
        return table;
    }

    bool frequencies = false;
    ColumnOption className{"--class", ColumnKind::label, "the names of the classes, whose rows are in order", false};
    ColumnOption count1{"--count1", ColumnKind::count, "the frequencies of the first sample"};
    ColumnOption count2{"--count2", ColumnKind::count, "the frequencies of the second sample"};
};

// ---------------------------------------------------------------- directions

class Directions final : public AnalysisCommand {
    std::string analysisName() const override { return "directions"; }

    void declareOptions(CLI::App& app) override
    {
        app.add_option("--unit", unit, "unit of the angles: radians, degrees or bins; radians unless given")
            ->check(CLI::IsMember({"radians", "degrees", "bins"}))
            ->type_name("UNIT");
        addCount(app, "--bins", bins, 1, anyCount, "number of bins around the circle; needed for bin numbers and for grouped data");
        addReal(app, "--bin0", bin0, anyFinite, "number of the first bin, 0 unless given");
        app.add_option("--bin-name", binName, "what a bin is, such as month: printed before the number of the mean bin")->type_name("TEXT");
        addColumn(app, column);
        addColumn(app, count);
    }

    OutputNames outputNames() const override { return {"angles (in radians)", "angles (in radians)"}; }

    void analyse() override
    {
        if (unit == "bins" && bins == 0) throw WrongUsage("--unit bins: --bins is needed, the number of bins around the circle");
        wq_lib::Circular directions;
        directions.setDataType(unit == "degrees" ? wq_lib::DEGREES : unit == "bins" ? wq_lib::BIN_NUMBERS : wq_lib::RADIANS);
        directions.setBins(bins);
        directions.setBin0(bin0);
        directions.setBinName(binName);
        const Input& input = readsTables() ? readColumns(directions) : read(directions, Layout::angles);
        input.require(directions.getSampleSize(), 1);
        directions.analyse();
        if (directions.isGrouped() && bins == 0)
            throw CannotAnalyse(input.name() + ": the data are grouped: --bins is needed, the number of bins around the circle");
        present(directions);
    }

    const Input& readColumns(wq_lib::Circular& directions)
    {
        const TableRows& table = readTable(directions, chosen({&column}, {&count}),
                                           [&](const double* row) { directions.add(row[0], count.given() ? row[1] : 0.0); });
        words.xTitle = table.title(0);
        return table;
    }

    ColumnOption column{"--column", ColumnKind::number, "the angles"};
    ColumnOption count{"--count", ColumnKind::count, "the frequency of each angle, where the data are grouped", false};
    std::string unit = "radians";
    std::size_t bins = 0;
    double bin0 = 0.0;
    std::string binName;
};

}  // namespace

std::vector<CommandEntry> analysisCommands()
{
    return {
        {"describe", "describe a sample, confidence interval and t test of its mean", "wqstat describe --mu 5.517 cavendish.txt",
         make<Describe>},
        {"pairs", "describe paired samples", "wqstat pairs --list 0 4 nist_norris.txt", make<Paired<wq_lib::BasicXyStatistics>>},
        {"regress", "fit a line or curve", "wqstat regress --model linear nist_norris.txt", make<Regress>},
        {"correlate", "correlation coefficient with t and F test", "wqstat correlate --alpha 0.01 nist_norris.txt",
         make<Paired<wq_lib::Correlation>>},
        {"anova", "single classification analysis of variance", "wqstat anova --details nist_sirstv.txt", make<Anova>},
        {"multiy", "linear regression with several y for each x", "wqstat multiy seedlings.txt", make<MultiY>},
        {"fit", "goodness of fit: chi-square and G test", "wqstat fit mendel_peas.txt", make<Fit>},
        {"ks", "Kolmogorov-Smirnov test of two samples", "wqstat ks --frequencies pi_e_digits.txt", make<KolmogorovSmirnov>},
        {"variances", "F test of the variances of two samples", "wqstat variances nist_sirstv_instrument1.txt nist_sirstv_instrument2.txt",
         make<Variances>},
        {"frequency", "table of frequency classes", "wqstat frequency --classes 5 cavendish.txt", make<FrequencyClasses>},
        {"circular", "mean direction and Rayleigh's test", "wqstat circular --unit degrees directions.txt", make<Directions>},
    };
}

}  // namespace wqstat
