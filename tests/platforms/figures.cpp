// Prints figures of every function and class, as text and bit for bit, and the texts of reports, listings and exports: what
// scripts/platforms compares between machines. Usage: figures FOLDER_OF_DATA
//
// Lines "figure NAME TEXT BITS" are figures; all others are texts.
#include <wq_stat/wq_stat.h>

#include <cfloat>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <exception>
#include <fstream>
#include <iostream>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

using namespace wq_lib;

namespace {

std::uint64_t bitsOf(double x)
{
    if (std::isnan(x)) return 0x7ff8000000000000;  // the sign of a NaN is the processor's choice
    std::uint64_t bits = 0;
    std::memcpy(&bits, &x, sizeof bits);
    return bits;
}

void figure(const std::string& name, double x)
{
    char line[64];
    std::snprintf(line, sizeof line, " %s%.6g %016llx", std::isnan(x) ? "nan " : "", std::isnan(x) ? 0.0 : x,
                  static_cast<unsigned long long>(bitsOf(x)));
    std::cout << "figure " << name << line << '\n';
}

void heading(const std::string& text) { std::cout << "== " << text << '\n'; }

// ---------------------------------------------------------------- functions

void distributions()
{
    const double points[] = {-37.5, -3.1,  -1.0, -0.25, 0.0, 1e-9,  0.01, 0.3,  0.5,  0.95,
                             0.975, 0.999, 1.0,  1.5,   2.0, 2.776, 4.5,  9.99, 30.0, 710.0};
    const std::size_t degrees[] = {0, 1, 2, 3, 4, 5, 10, 29, 30, 100, 101, 4000};
    const std::size_t wrapped[] = {static_cast<std::size_t>(0) - 1, static_cast<std::size_t>(0) - 2};
    for (const double x : points) {
        const std::string at = "(" + std::to_string(x) + ")";
        figure("lnGamma" + at, lnGamma(x));
        figure("normalDensity" + at, normalDensity(x));
        if (std::fabs(x) < 10.0) figure("normalProb" + at, normalProb(x));
        figure("normalProbApprox" + at, normalProbApprox(x));
        figure("normalPercentPoint" + at, normalPercentPoint(x));
        figure("z_TransformBig" + at, z_TransformBig(x));
        figure("z_to_r" + at, z_to_r(x));
        figure("D_Prob" + at, D_Prob(x));
        figure("degreeToRadian" + at, degreeToRadian(x));
        figure("computeAngle" + at, computeAngle(x, 2.0 - x));
        figure("computeCircleArea" + at, computeCircleArea(x));
        for (const std::size_t df : degrees) {
            const std::string with = "(" + std::to_string(x) + "," + std::to_string(df) + ")";
            figure("t_Prob" + with, t_Prob(x, df, true));
            figure("t_Prob2" + with, t_Prob(x, df, false));
            figure("t_PercentPoint" + with, t_PercentPoint(x, df));
            figure("chiSquareProb" + with, chiSquareProb(x, df));
            figure("chiSquarePoint" + with, chiSquarePoint(x, df));
            figure("F_Prob" + with, F_Prob(x, df, 7));
            figure("F_Prob1" + with, F_Prob(x, 1, df));
            if (x >= 0.0 && x <= 1.0) figure("F_PercentPoint" + with, F_PercentPoint(x, df, 12));
            if (x >= 0.0 && x <= 1.0) figure("binomial" + with, binomial(3, df, x));
            figure("z_TransformSmall" + with, z_TransformSmall(x, df));
            figure("D_GoodnessOfFit" + with, D_GoodnessOfFit(x, df));
            figure("D_TwoSamples" + with, D_TwoSamples(x, df, 41));
            figure("rayleighsProb" + with, rayleighsProb(x, df));
        }
        for (const std::size_t df : wrapped) {
            const std::string with = "(" + std::to_string(x) + ",0-" + std::to_string(std::size_t{0} - df) + ")";
            figure("t_Prob" + with, t_Prob(x, df, true));
            figure("chiSquareProb" + with, chiSquareProb(x, df));
            figure("F_Prob" + with, F_Prob(x, df, 7));
            figure("F_PercentPoint" + with, F_PercentPoint(0.95, df, 7));
            figure("z_TransformSmall" + with, z_TransformSmall(x, df));
            figure("D_TwoSamples" + with, D_TwoSamples(0.05, df, 41));
        }
    }
    for (std::size_t n = 0; n < 30; ++n) figure("factorial(" + std::to_string(n) + ")", factorial(n));
}

// ---------------------------------------------------------------- texts as numbers

void numbers(const std::string& file)
{
    const std::vector<std::string> texts = {
        // clang-format off
        "1", "-0", "0.1", "+12.5", "1e22", "1e23", "8.5e-3", "123456789012345678", "9007199254740993", "0.3000000000000000444",
        "1.7976931348623157e308", "1.7976931348623159e308", "2.2250738585072014e-308", "4.9e-324", "1e-400", "1e400", "0x1p-3", "0x1.8",
        "0x.fffffffffffff8p0", "0x1p-1074", "0x1p-1080", "0x", "inf", "-infinity", "nan", "nan(12)", "7,5", "12abc", "abc", "1e", "1e+", ".5",
        "5.", ".", "--1", "  42", "1" + std::string(200, '0'), "0." + std::string(200, '0') + "17",
        // clang-format on
        "2.22507385850720125957382125702076802007701776340698873928837676330601332841749757068540634146032305410823932e-308",
        "179769313486231580793728971405303415079934132710037826936173778980444968292764750946649017977587207096330286416692887910946555",
    };
    for (const std::string& text : texts) {
        std::ofstream(file, std::ios::binary) << text << '\n';
        BasicStatistics sample;
        try {
            sample.readDataFile(file);
            figure("read(" + text.substr(0, 40) + ")", sample.getDataPoint(0));
        } catch (const std::exception& error) {
            std::cout << "read(" << text << "): " << error.what() << '\n';
        }
        BasicXyStatistics pairs;
        std::ofstream(file, std::ios::binary) << text << ";1\n";
        try {
            pairs.readDataFile(file);
            if (pairs.getSampleSize() > 0) figure("readPair(" + text.substr(0, 40) + ")", pairs.getDataPair(0).x);
        } catch (const std::exception& error) {
            std::cout << "readPair(" << text << "): " << error.what() << '\n';
        }
    }
    std::remove(file.c_str());
}

// ---------------------------------------------------------------- classes

void record(const std::string& name, const basic_stat& r)
{
    const std::pair<const char*, double> fields[] = {
        // clang-format off
        {"min", r.min}, {"max", r.max}, {"mean", r.mean}, {"geoMean", r.geoMean}, {"harmMean", r.harmMean}, {"median", r.median},
        {"quartile1", r.quartile1}, {"quartile3", r.quartile3}, {"sum", r.sum}, {"variance", r.variance}, {"sampleVariance", r.sampleVariance},
        {"stdev", r.stdev}, {"stdError", r.stdError}, {"cv", r.cv}, {"sumOfSquares", r.sumOfSquares},
        {"lower", r.confidenceLimits.getLower()}, {"upper", r.confidenceLimits.getUpper()},
        // clang-format on
    };
    for (const auto& [field, value] : fields) figure(name + "." + field, value);
}

/** The text of an exported file. */
template <typename Analysis>
void exported(Analysis& analysis, const std::string& file)
{
    std::cout << "export: " << analysis.exportToR(file, "as exported") << '\n';
    std::ifstream in(file, std::ios::binary);
    for (std::string line; std::getline(in, line);) std::cout << line << '\n';
    in.close();
    std::remove(file.c_str());
}

template <typename Analysis>
void regression(const std::string& name, Analysis& fit, const std::string& file)
{
    heading(name);
    std::cout << "analyse: " << fit.analyse() << '\n';
    fit.reportConsole();
    const regression_stat& r = fit.getRegressionResult();
    for (const double value : {r.a, r.b, r.explained, r.unexplained, r.residualVariance, r.seB, r.tB, r.pB, r.limitsB.getLower(),
                               r.limitsB.getUpper(), r.seY, r.limitsY.getLower(), r.limitsY.getUpper()})
        figure(name, value);
    record(name + ".x", fit.getXyResult().x);
    exported(fit, file);
}

void oneSample(const std::string& name, BasicStatistics& sample, const std::string& file)
{
    heading(name);
    std::cout << "analyse: " << sample.analyse() << '\n';
    sample.reportConsole();
    record(name, sample.getResult());
    sample.listData(0, 5);
    for (const double p : {0.0, 1.0, 2.5, 7.0, 4294967296.0, 1e12, -1.0}) figure(name + ".quantile", sample.quantile(p, 4));
    exported(sample, file);
}

/** Loads a file, or leaves the object empty when there is none of that name. */
template <typename Analysis>
Analysis loaded(const std::string& path)
{
    Analysis analysis;
    if (!path.empty()) analysis.readDataFile(path);
    return analysis;
}

void analyses(const std::string& data, const std::string& file)
{
    for (const char* const name : {"cavendish.txt", "nist_numacc1.txt", "nist_numacc3.txt", ""}) {
        auto sample = loaded<BasicStatistics>(*name == '\0' ? "" : data + name);
        oneSample(std::string("one sample ") + name, sample, file);
        sample.setHead(0.9);
        sample.setTail(0.9);
        oneSample(std::string("trimmed away ") + name, sample, file);
    }
    for (const char* const name : {"nist_norris.txt", "seedlings.txt", ""}) {
        const std::string path = *name == '\0' ? "" : data + name;
        auto linear = loaded<LinearRegression>(path);
        regression(std::string("linear ") + name, linear, file);
        auto logarithmic = loaded<LogarithmicRegression>(path);
        regression(std::string("logarithmic ") + name, logarithmic, file);
        auto exponential = loaded<ExponentialRegression>(path);
        regression(std::string("exponential ") + name, exponential, file);
        auto power = loaded<PowerRegression>(path);
        regression(std::string("power ") + name, power, file);
        auto correlation = loaded<Correlation>(path);
        heading(std::string("correlation ") + name);
        std::cout << "analyse: " << correlation.analyse() << '\n';
        correlation.reportConsole();
        const correlation_stat& c = correlation.getCorrelationResult();
        for (const double value : {c.r, c.t, c.tSignificance, c.F, c.FSignificance}) figure("correlation", value);
    }
    for (const char* const name : {"nist_smls01.txt", "nist_smls05.txt", "nist_smls08.txt", "nist_sirstv.txt", ""}) {
        heading(std::string("anova ") + name);
        auto anova = loaded<SingleAnova>(*name == '\0' ? "" : data + name);
        anova.createSeries();
        std::cout << "analyse: " << anova.analyse() << '\n';
        anova.reportConsole();
        anova.testResults();
        for (const anova_source* row : {&anova.getTotal(), &anova.getAmong(), &anova.getWithin()})
            for (const double value : {row->ss, row->ms, row->fs, row->expectedMs}) figure("anova", value);
        figure("anova.n0", anova.getN0());
        figure("anova.component", anova.getVarianceComponent());
        exported(anova, file);
    }
    {
        heading("multi y");
        LinearRegressionMultiY fit;
        for (int group = 1; group <= 5; ++group)
            for (int i = 0; i < 4; ++i) fit.add(group, 3.0 * group + std::sqrt(2.0 + group * i));
        fit.createSeries();
        std::cout << "analyse: " << fit.analyse() << '\n';
        fit.reportConsole();
        const auto& r = fit.getRegressionResult();
        for (const double value : {r.a, r.b, r.seB, r.tB, r.pT, r.explained, r.unexplained}) figure("multi y", value);
    }
    {
        heading("goodness of fit");
        for (const bool empty : {false, true}) {
            auto fit = loaded<GoodnessOfFit>(empty ? "" : data + "mendel_peas.txt");
            std::cout << "analyse: " << fit.analyse() << '\n';
            fit.reportConsole();
            for (const double value : {fit.getX2(), fit.getG(), fit.getGAdjusted()}) figure("goodness of fit", value);
        }
    }
    {
        heading("two samples' distributions");
        auto test = loaded<KolmogorovSmirnov2>(data + "pi_e_digits.txt");
        test.setDataRange();
        test.cumulative();
        std::cout << "analyse: " << test.analyse() << '\n';
        test.reportConsole();
        test.listFrequencies();
        figure("D", test.getD());
    }
    for (const bool empty : {false, true}) {
        heading("two variances");
        TwoSamples test;
        if (!empty) {
            auto first = loaded<BasicStatistics>(data + "nist_sirstv_instrument1.txt");
            auto second = loaded<BasicStatistics>(data + "nist_sirstv_instrument2.txt");
            first.analyse();
            second.analyse();
            test.setFirstSample(first.getResult());
            test.setSecondSample(second.getResult());
        }
        std::cout << "analyse: " << test.analyse() << '\n';
        test.reportConsole();
        for (const double value : {test.getF(), test.getFProbability(), test.getCriticalF()}) figure("two variances", value);
    }
    {
        heading("frequency classes");
        auto table = loaded<Frequency>(data + "cavendish.txt");
        table.autoClassWidth(8);
        table.initFrequency(8);
        table.setDataRange();
        table.buildTable();
        std::cout << "analyse: " << table.analyse() << '\n';
        table.reportConsole();
    }
    for (const bool negative : {false, true}) {
        heading("circular");
        auto directions = loaded<Circular>(data + "directions.txt");
        if (negative) directions.add(1.0, -2.0e10);  // a sum of frequencies below 0
        directions.setBins(12);
        std::cout << "analyse: " << directions.analyse() << '\n';
        if (!negative) directions.reportConsole();
        const circular_stat& c = directions.getCircularResult();
        for (const double value : {c.a, c.r, c.s, c.sPrime, c.R, c.z, c.p}) figure("circular", value);
    }
}

// ---------------------------------------------------------------- sorting

void sorting()
{
    constexpr std::size_t n = 100000;
    std::mt19937 engine(7);
    const auto real = [&engine] { return static_cast<double>(engine()) / 4294967296.0; };
    for (int shape = 0; shape < 8; ++shape) {
        BasicStatistics sample;
        for (std::size_t i = 0; i < n; ++i) {
            double x = real() - 0.5;
            if (shape == 1) x = std::ldexp(x, static_cast<int>(engine() % 2000) - 1000);
            if (shape == 2) x = std::floor(8.0 * x);
            if (shape == 3) x = static_cast<double>(i);
            if (shape == 4) x = -static_cast<double>(i);
            if (shape == 5 && i % 7 == 0) x = std::numeric_limits<double>::quiet_NaN();
            if (shape == 6) x = i % 2 == 0 ? 0.0 : -0.0;
            if (shape == 7 && i % 11 == 0) x = i % 2 == 0 ? HUGE_VAL : -HUGE_VAL;
            sample.add(x);
        }
        sample.sortData();
        std::uint64_t hash = 14695981039346656037u;  // FNV-1a over the sorted bits, where no NaN and no sign of zero depends on the way
        for (std::size_t i = 0; i < n; ++i) {
            const double x = sample.getDataPoint(i);
            hash = (hash ^ bitsOf(x == 0.0 ? 0.0 : x)) * 1099511628211u;
        }
        std::cout << "sorted shape " << shape << ": " << hash << '\n';
        sample.analyse();
        record("shape" + std::to_string(shape), sample.getResult());
    }
}

void randomNumbers()
{
    RandomCpp11 generator;
    for (int i = 0; i < 20; ++i) {
        figure("random", generator.getReal());
        std::cout << generator.getInteger() << ' ' << generator.getInteger(99) << ' ' << generator.getInteger(5, 10) << '\n';
    }
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 2) return 2;
    const std::string data = std::string(argv[1]) + "/";
    const std::string file = "figures.tmp";
    distributions();
    numbers(file);
    analyses(data, file);
    sorting();
    randomNumbers();
    std::cout << wq_stat_1VersionString;
    figure("version", wq_stat_1VersionNumber);
    return std::cout.flush() ? 0 : 1;
}
