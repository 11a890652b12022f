// The analyses of data files. Each command is what a host does with the class: set, read, prepare, analyse, report.
#include "analysis_command.h"

#include "failure.h"
#include "two_data_files.h"

#include <cstddef>
#include <limits>
#include <string>
#include <utility>

namespace wqstat {

namespace {

// ---------------------------------------------------------------- samples of numbers

constexpr std::size_t leastValues = 3;

class Describe final : public AnalysisCommand {
    void declareOptions(CLI::App& app) override
    {
        addReal(app, "--mu", mu, anyFinite, "mean under H0, 0 unless given");
        addReal(app, "--head", head, trimming, "fraction of the sorted sample to leave out at the low end");
        addReal(app, "--tail", tail, trimming, "fraction of the sorted sample to leave out at the high end");
    }

    OutputNames outputNames() const override { return {"sorted values", "values"}; }

    void run() override
    {
        if (!(head + tail < 1.0)) throw WrongUsage("--head and --tail: together they leave out the whole sample");
        wq_lib::BasicStatistics sample;
        sample.setNullHypothesis(mu);
        sample.setHead(head);
        sample.setTail(tail);
        const InputFile& input = read(sample, Layout::values);
        input.require(sample.getSampleSize(), leastValues);
        // Fractions that cross over leave an empty range, which analyse() takes for a long one.
        if (!sample.analyse() || sample.getResult().n < leastValues)
            throw CannotAnalyse(input.name() + ": --head and --tail leave too few of the " + std::to_string(sample.getSampleSize()) +
                                " observations, at least " + std::to_string(leastValues) + " are needed");
        present(sample);
    }

    static constexpr OpenRange trimming{-std::numeric_limits<double>::denorm_min(), 1.0, "0 or more and below 1"};

    double mu = 0.0;
    double head = 0.0;
    double tail = 0.0;
};

class FrequencyClasses final : public AnalysisCommand {
    void declareOptions(CLI::App& app) override { addCount(app, "--classes", classes, 1, 1'000'000, "number of classes, 10 unless given"); }

    bool hasTest() const override { return hasTextbook<wq_lib::Frequency>; }

    OutputNames outputNames() const override { return {"sorted values", "table"}; }

    void run() override
    {
        wq_lib::Frequency sample;
        const InputFile& input = read(sample, Layout::values);
        input.require(sample.getSampleSize(), leastValues);
        sample.autoClassWidth(classes);
        sample.initFrequency(sample.getClasses());
        sample.buildTable();
        sample.analyse();
        present(sample);
    }

    std::size_t classes = 10;
};

class Variances final : public AnalysisCommand {
    void declareFiles(CLI::App& app) override
    {
        app.add_option("FILE1", firstName, "data file of the first sample; - is standard input, for one of the two")->required()->type_name("");
        app.add_option("FILE2", secondName, "data file of the second sample")->required()->type_name("");
    }

    void declareOutputs(CLI::App&) override {}  // they belong to the analysis of one sample

    void run() override
    {
        if (firstName == "-" && secondName == "-") throw WrongUsage("FILE2: standard input can be read only once");
        TwoDataFiles samples;
        analyse(samples, firstName);
        analyse(samples.second, secondName);
        samples.setSecondSample(samples.second.getResult());
        samples.setComment(samples.second.getComment());
        samples.analyse();
        present(samples);
    }

    /** The statistics of one sample, also where the class has an analyse() of its own. */
    void analyse(wq_lib::BasicStatistics& sample, const std::string& name)
    {
        read(sample, name, Layout::values).require(sample.getSampleSize(), leastValues);
        sample.wq_lib::BasicStatistics::analyse();
    }

    std::string firstName;
    std::string secondName;
};

// ---------------------------------------------------------------- pairs

template <typename Analysis>
class Paired final : public AnalysisCommand {
    bool hasTest() const override { return hasTextbook<Analysis>; }

    void run() override
    {
        Analysis analysis;
        read(analysis, Layout::pairs).require(analysis.getSampleSize(), 2);
        analysis.analyse();
        present(analysis);
    }
};

class Regress final : public AnalysisCommand {
    void declareOptions(CLI::App& app) override
    {
        app.add_option("--model", model,
                       "required: linear (y = a + b x), logarithmic (y = a + b ln x), exponential (y = a e^(b x)) or power (y = a x^b)")
            ->required()
            ->check(CLI::IsMember({"linear", "logarithmic", "exponential", "power"}))
            ->type_name("MODEL");
    }

    void run() override
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
        const InputFile& input = read(regression, Layout::pairs);
        input.require(regression.getSampleSize(), leastPairs);
        regression.analyse();
        if (regression.getXyResult().x.n == 0) throw CannotAnalyse(input.name() + ": no pair has the logarithms of the " + model + " model");
        present(regression);
    }

    std::string model;
};

class Anova final : public AnalysisCommand {
    void declareOptions(CLI::App& app) override
    {
        app.add_flag("--details", details, "after the table print each group and the sums behind the table");
    }

    OutputNames outputNames() const override { return {"groups", "groups, one per row,"}; }

    void run() override
    {
        wq_lib::SingleAnova anova;
        read(anova, Layout::pairs).require(anova.getSampleSize(), 1);
        anova.createSeries();
        anova.analyse();
        present(anova, [&] {
            if (details) anova.testResults();
        });
    }

    bool details = false;
};

class MultiY final : public AnalysisCommand {
    OutputNames outputNames() const override { return {"groups", "groups, one per row,"}; }

    void run() override
    {
        wq_lib::LinearRegressionMultiY regression;
        readSeries(regression).require(regression.getSampleSize(), 1);
        regression.createSeries();
        regression.analyse();
        present(regression);
    }
};

// ---------------------------------------------------------------- classes

class Fit final : public AnalysisCommand {
    void declareOptions(CLI::App& app) override
    {
        app.add_flag("--yates", yates, "Yates' continuity correction of chi-square (two classes only)");
        app.add_flag("--no-williams", noWilliams, "leave out Williams' correction of G");
    }

    void run() override
    {
        wq_lib::GoodnessOfFit test;
        test.setYatesCorrection(yates);
        test.setWilliamsCorrection(!noWilliams);
        read(test, Layout::pairs).require(test.getSampleSize(), 1);
        test.analyse();
        present(test);
    }

    bool yates = false;
    bool noWilliams = false;
};

class KolmogorovSmirnov final : public AnalysisCommand {
    void declareOptions(CLI::App& app) override
    {
        app.add_flag("--frequencies", frequencies, "after the report print the cumulative frequencies");
    }

    void run() override
    {
        wq_lib::KolmogorovSmirnov2 test;
        read(test, Layout::pairs).require(test.getSampleSize(), 1);
        test.cumulative();
        test.analyse();
        present(test, [&] {
            if (frequencies) test.listFrequencies();
        });
    }

    bool frequencies = false;
};

// ---------------------------------------------------------------- directions

class Directions final : public AnalysisCommand {
    void declareOptions(CLI::App& app) override
    {
        app.add_option("--unit", unit, "unit of the angles: radians, degrees or bins; radians unless given")
            ->check(CLI::IsMember({"radians", "degrees", "bins"}))
            ->type_name("UNIT");
        addCount(app, "--bins", bins, 1, anyCount, "number of bins around the circle; needed for bin numbers and for grouped data");
        addReal(app, "--bin0", bin0, anyFinite, "number of the first bin, 0 unless given");
        app.add_option("--bin-name", binName, "what a bin is, such as month: printed before the number of the mean bin")->type_name("TEXT");
    }

    OutputNames outputNames() const override { return {"angles (in radians)", "angles (in radians)"}; }

    void run() override
    {
        if (unit == "bins" && bins == 0) throw WrongUsage("--unit bins: --bins is needed, the number of bins around the circle");
        wq_lib::Circular directions;
        directions.setDataType(unit == "degrees" ? wq_lib::DEGREES : unit == "bins" ? wq_lib::BIN_NUMBERS : wq_lib::RADIANS);
        directions.setBins(bins);
        directions.setBin0(bin0);
        directions.setBinName(binName);
        const InputFile& input = read(directions, Layout::angles);
        input.require(directions.getSampleSize(), 1);
        directions.analyse();
        if (directions.isGrouped() && bins == 0)
            throw CannotAnalyse(input.name() + ": the data are grouped: --bins is needed, the number of bins around the circle");
        present(directions);
    }

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
