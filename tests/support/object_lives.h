// The life of an object of any analysis class, and everything it tells as one text, for tests that hold for all of them.
#pragma once

#include <wq_stat/wq_stat.h>

#include <cmath>
#include <cstddef>
#include <cstdio>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include "analyses.h"
#include "console.h"
#include "files.h"

namespace wq_test {

// Names of the columns in a new object.
template <typename T>
std::vector<std::string> columns()
{
    if (!isPaired<T>) return {"DATA"};
    if (std::is_same_v<T, wq_lib::KolmogorovSmirnov2>) return {"F1", "F2", "relF1", "relF2", "diff"};
    return {"X", "Y"};
}

template <typename T>
struct Class {
    using type = T;
    const char* name;
};

// Calls f with each analysis class.
template <typename F>
void forEveryClass(F&& f)
{
    f(Class<wq_lib::BasicStatistics>{"BasicStatistics"});
    f(Class<wq_lib::TwoSamples>{"TwoSamples"});
    f(Class<wq_lib::Frequency>{"Frequency"});
    f(Class<wq_lib::BasicXyStatistics>{"BasicXyStatistics"});
    f(Class<wq_lib::Regression>{"Regression"});
    f(Class<wq_lib::LinearRegression>{"LinearRegression"});
    f(Class<wq_lib::LogarithmicRegression>{"LogarithmicRegression"});
    f(Class<wq_lib::ExponentialRegression>{"ExponentialRegression"});
    f(Class<wq_lib::PowerRegression>{"PowerRegression"});
    f(Class<wq_lib::Correlation>{"Correlation"});
    f(Class<wq_lib::SingleAnova>{"SingleAnova"});
    f(Class<wq_lib::LinearRegressionMultiY>{"LinearRegressionMultiY"});
    f(Class<wq_lib::GoodnessOfFit>{"GoodnessOfFit"});
    f(Class<wq_lib::KolmogorovSmirnov2>{"KolmogorovSmirnov2"});
    f(Class<wq_lib::Circular>{"Circular"});
}

// ---------------------------------------------------------------- filling and preparing

inline double xOf(std::size_t i) { return 1.0 + static_cast<double>(i % 4) + 0.25 * static_cast<double>(i % 3); }
inline double yOf(std::size_t i) { return 2.0 + static_cast<double>(i * i % 7); }

template <typename T>
void fill(T& object, std::size_t n)
{
    for (std::size_t i = 0; i < n; ++i) {
        if constexpr (isPaired<T>)
            object.add(xOf(i), yOf(i));
        else
            object.add(yOf(i));
    }
}

// What a host calls between loading and analyse().
inline void prepare(wq_lib::BasicStatistics&) {}
inline void prepare(wq_lib::SingleAnova& anova) { anova.createSeries(); }
inline void prepare(wq_lib::KolmogorovSmirnov2& test) { test.cumulative(); }

inline void prepare(wq_lib::Frequency& frequency)
{
    frequency.autoClassWidth(3);
    frequency.initFrequency(frequency.getClasses());
    frequency.buildTable();
}

inline void prepare(wq_lib::TwoSamples& test)
{
    wq_lib::BasicStatistics second;
    fill(second, test.getSampleSize() + 2);
    second.analyse();
    test.wq_lib::BasicStatistics::analyse();
    test.setSecondSample(second.getResult());
}

// An object with data that are prepared and analysed.
template <typename T>
T analysed(std::size_t n, const std::string& comment = "")
{
    T object;
    fill(object, n);
    object.setComment(comment);
    prepare(object);
    object.analyse();
    return object;
}

// ---------------------------------------------------------------- all that an object tells, as text

// Values to the last bit, every NaN alike.
class Transcript {
public:
    Transcript& operator<<(double value)
    {
        char figure[40];
        if (std::isnan(value))
            std::snprintf(figure, sizeof figure, "nan");
        else
            std::snprintf(figure, sizeof figure, "%a", value);
        text += std::string(figure) + "\n";
        return *this;
    }
    Transcript& operator<<(const std::string& value)
    {
        text += value + "\n";
        return *this;
    }
    Transcript& operator<<(std::size_t value) { return *this << std::to_string(value); }
    Transcript& operator<<(bool value) { return *this << std::string(value ? "true" : "false"); }
    Transcript& operator<<(const wq_lib::DataRange<double>& range) { return *this << range.getLower() << range.getUpper(); }
    Transcript& operator<<(const wq_lib::anova_source& row) { return *this << row.df << row.ss << row.ms << row.fs << row.expectedMs; }
    Transcript& operator<<(const wq_lib::basic_stat& r)
    {
        return *this << r.n << r.min << r.max << r.mean << r.geoMean << r.harmMean << r.median << r.quartile1 << r.quartile3 << r.sum
                     << r.variance << r.sampleVariance << r.stdev << r.sampleStdev << r.stdError << r.cv << r.sumOfSquares << r.significance
                     << r.confidenceLimits << r.reserved1 << r.reserved2;
    }

    std::string text;
};

// The accessors of each class; those of its bases are told by their own.
inline void tell(Transcript& out, const wq_lib::BasicStatistics& o)
{
    out << o.getResult() << o.getHead() << o.getTail() << o.getSampleSize() << o.getDataStart() << o.getDataEnd() << o.getSignificance()
        << o.getConfidence() << o.getNullHypothesis() << o.isNegative() << o.isSorted() << o.getDataFile() << o.getHypothesisInfo()
        << o.getComment() << o.getColumnName(0);
}

inline void tell(Transcript& out, const wq_lib::BasicXyStatistics& o)
{
    tell(out, static_cast<const wq_lib::BasicStatistics&>(o));
    const wq_lib::xy_stat& r = o.getXyResult();
    out << r.x << r.y << r.sumProducts << r.covariance << o.getColumnName(1);
}

inline void tell(Transcript& out, const wq_lib::Regression& o)
{
    tell(out, static_cast<const wq_lib::BasicXyStatistics&>(o));
    const wq_lib::regression_stat& r = o.getRegressionResult();
    out << r.a << r.b << r.explained << r.unexplained << r.residualVariance << r.seB << r.tB << r.pB << r.limitsB << r.meanX << r.meanY
        << r.seY << r.limitsY << r.n;
}

inline void tell(Transcript& out, const wq_lib::Correlation& o)
{
    tell(out, static_cast<const wq_lib::BasicXyStatistics&>(o));
    const wq_lib::correlation_stat& r = o.getCorrelationResult();
    out << r.r << r.t << r.tSignificance << r.F << r.FSignificance << r.confidenceLimits << o.acceptH0_t() << o.acceptH0_F();
}

inline void tell(Transcript& out, const wq_lib::SingleAnova& o)
{
    tell(out, static_cast<const wq_lib::BasicXyStatistics&>(o));
    out << o.getGroupCount() << std::to_string(o.getTotalObservations()) << o.getGrandTotal() << o.getCorrectionTerm()
        << o.getSumSquaredObservations() << o.getSumSquaredGroupTotals() << o.getSumSquaredSampleSizes() << o.getTotal() << o.getAmong()
        << o.getWithin() << o.getMeanSampleSize() << o.getN0() << o.getVarianceComponent() << o.getVarianceComponentRatio()
        << o.getGroupsCreated() << o.isEqual() << std::to_string(o.getModel());
    for (const wq_lib::anova_group& g : o.getGroups()) {
        out << g.id << std::to_string(g.n) << g.mean << g.sum << g.sumSquaredObservations << g.sumOfSquares << g.variance;
        for (const double y : g.observations) out << y;
    }
}

inline void tell(Transcript& out, const wq_lib::LinearRegressionMultiY& o)
{
    tell(out, static_cast<const wq_lib::SingleAnova&>(o));
    const wq_lib::regression_multi_y_stat& r = o.getRegressionResult();
    out << r.sumX << r.sumX2 << r.sumXT << r.correctionX << r.ssX << r.spXY << r.a << r.b << r.explained << r.unexplained << r.reserved1
        << r.seB << r.tB << r.pT << r.limitsB << r.reserved2 << r.reserved3 << r.reserved4 << r.reserved5 << r.reserved6 << r.reserved7
        << o.getRegression() << o.getDeviations() << o.isComputeRegression();
}

inline void tell(Transcript& out, const wq_lib::GoodnessOfFit& o)
{
    tell(out, static_cast<const wq_lib::BasicXyStatistics&>(o));
    out << o.getX2() << o.getG() << o.getGAdjusted() << o.isYatesCorrection() << o.isWilliamsCorrection();
}

inline void tell(Transcript& out, const wq_lib::KolmogorovSmirnov2& o)
{
    tell(out, static_cast<const wq_lib::GoodnessOfFit&>(o));
    out << o.getD() << o.getN1() << o.getN2();
}

inline void tell(Transcript& out, const wq_lib::TwoSamples& o)
{
    tell(out, static_cast<const wq_lib::BasicStatistics&>(o));
    out << o.getSecondSample() << o.getF() << o.getFProbability() << o.getCriticalF() << o.getDf1() << o.getDf2();
}

inline void tell(Transcript& out, const wq_lib::Frequency& o)
{
    tell(out, static_cast<const wq_lib::BasicStatistics&>(o));
    out << o.getClasses() << o.getStartClass() << o.getClassWidth();
    for (const wq_lib::frequency_class& c : o.getTable()) out << std::to_string(c.count) << c.rate;
}

inline void tell(Transcript& out, const wq_lib::Circular& o)
{
    tell(out, static_cast<const wq_lib::BasicXyStatistics&>(o));
    const wq_lib::circular_stat& r = o.getCircularResult();
    out << r.n << r.bins << r.bin0 << r.a << r.r << r.s << r.sPrime << r.meanBin << r.binSize << r.R << r.z << r.significance << r.p
        << r.accepted << o.getBinName() << o.isGrouped() << o.getBins() << o.getBin0() << o.getBinSize() << o.getMeanBin()
        << std::to_string(o.getDataType());
}

// Operations of single classes that print.
inline void printMore(wq_lib::BasicStatistics&) {}
inline void printMore(wq_lib::SingleAnova& anova) { anova.testResults(); }
inline void printMore(wq_lib::KolmogorovSmirnov2& test) { test.listFrequencies(); }
inline void printMore(wq_lib::Regression& regression) { std::cout << regression.writeRegressionResult(); }

// Files of single classes.
inline void exportMore(Transcript&, wq_lib::BasicStatistics&, const std::string&) {}
inline void exportMore(Transcript& out, wq_lib::Frequency& frequency, const std::string& path)
{
    out << frequency.exportTable(path, "table") << contentOf(path);
}

// Where this thread exports an object; no file is there yet.
inline std::string pathOfExport(const TempFolder& folder)
{
    std::ostringstream id;
    id << std::this_thread::get_id();
    const std::string path = folder.path("export" + id.str());
    std::remove(path.c_str());
    return path;
}

inline void tellMeans(Transcript& out, wq_lib::BasicStatistics& o)
{
    constexpr std::size_t last = static_cast<std::size_t>(-1);
    out << o.acceptH0() << o.geometricMean(0, 5) << o.geometricMean(3, 1) << o.geometricMean(0, last);
}

inline void tellQuantiles(Transcript& out, wq_lib::BasicStatistics& o)
{
    out << o.median() << o.quartile(1) << o.quartile(3) << o.quantile(1, 0);
}

inline void tellExport(Transcript& out, wq_lib::BasicStatistics& o, const std::string& path)
{
    out << o.exportToR(path, "comment") << contentOf(path);
}

// Results, files and functions of an object, all but what it prints.
template <typename T>
std::string toldQuietly(T& object, const TempFolder& folder)
{
    Transcript out;
    tell(out, object);
    tellMeans(out, object);
    if constexpr (!isPaired<T>) tellQuantiles(out, object);
    const std::string path = pathOfExport(folder);
    tellExport(out, object, path);
    exportMore(out, object, path);
    return out.text;
}

// What an object prints.
template <typename T>
void printAll(T& object)
{
    constexpr std::size_t last = static_cast<std::size_t>(-1);
    object.reportConsole();
    object.listData(0, 0);
    object.listData(0, last);
    object.listData(3, 1);
    object.listData(last, last);
    printMore(object);
}

template <typename T>
std::string told(T& object, const TempFolder& folder)
{
    const std::string quietly = toldQuietly(object, folder);
    const Capture output(std::cout), error(std::cerr);
    printAll(object);
    return quietly + output.text() + error.text();
}

// The same of an object that is left as it is: telling sorts.
template <typename T>
std::string stateOf(const T& object, const TempFolder& folder)
{
    T copy = object;
    return told(copy, folder);
}

// ---------------------------------------------------------------- any object

// An object of any class: a test that needs no more of it than this is a plain function, compiled once.
class AnyObject {
public:
    virtual ~AnyObject() = default;
    virtual wq_lib::BasicStatistics& root() = 0;
    virtual const wq_lib::xy_stat* xyResult() const = 0;  // null in an analysis of one column
    virtual void fill(std::size_t n) = 0;
    virtual void add(double x, double y) = 0;  // y alone in an analysis of one column
    virtual void prepare() = 0;
    virtual void listData(std::size_t from, std::size_t to) = 0;
    virtual void printMore() = 0;
    virtual void printAll() = 0;
    virtual std::string told(const TempFolder& folder) = 0;
};

template <typename T>
class ObjectOf : public AnyObject {
public:
    wq_lib::BasicStatistics& root() override { return object; }
    const wq_lib::xy_stat* xyResult() const override
    {
        if constexpr (isPaired<T>)
            return &object.getXyResult();
        else
            return nullptr;
    }
    void fill(std::size_t n) override { wq_test::fill(object, n); }
    void add(double x, double y) override
    {
        if constexpr (isPaired<T>)
            object.add(x, y);
        else
            static_cast<void>(x), object.add(y);
    }
    void prepare() override { wq_test::prepare(object); }
    void listData(std::size_t from, std::size_t to) override { object.listData(from, to); }
    void printMore() override { wq_test::printMore(object); }
    void printAll() override { wq_test::printAll(object); }
    std::string told(const TempFolder& folder) override { return wq_test::told(object, folder); }

private:
    T object;
};

struct AnyClass {
    const char* name;
    bool paired;  // two columns
    bool series;  // of the analyses of variance, which list and export groups
    std::vector<std::string> columns;
    std::unique_ptr<AnyObject> (*make)();
};

template <typename T>
std::unique_ptr<AnyObject> makeObject()
{
    return std::make_unique<ObjectOf<T>>();
}

// The analysis classes in the order of forEveryClass().
inline std::vector<AnyClass> everyClass()
{
    std::vector<AnyClass> classes;
    forEveryClass([&](auto c) {
        using T = typename decltype(c)::type;
        classes.push_back({c.name, isPaired<T>, std::is_base_of_v<wq_lib::SingleAnova, T>, columns<T>(), makeObject<T>});
    });
    return classes;
}

}  // namespace wq_test
