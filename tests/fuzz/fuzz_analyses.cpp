// Any operations of any class in any order, with any settings: no call ends the program or takes long, and a second object that goes
// through the same shows and prints the same. The statistics of one sample and of pairs are those of their definitions, bit for bit.

#include "limited_memory.h"
#include "memory_file.h"
#include "plain_analyses.h"
#include "script.h"
#include "target.h"

#include "support/console.h"
#include "support/same_bits.h"

#include <wq_stat/wq_stat.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iostream>
#include <limits>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

using namespace wq_lib;
using wq_fuzz::Line;
using wq_fuzz::require;

namespace {

constexpr std::size_t enoughObservations = 20000;  // reports and listings cost what they print
constexpr std::size_t enoughClasses = 5000;
constexpr std::size_t tooManyClasses = std::size_t{1} << 21;  // their table is refused
constexpr std::size_t beyondTheLoops = std::size_t{1} << 55;  // degrees of freedom that are answered without a loop

// Counts that become degrees of freedom (of a report of GoodnessOfFit even the sample size that a host sets): a call's cost grows with
// them, as the manual says, so between this and the counts that are answered without a loop it takes hours, and nothing else.
std::size_t affordableCount(Line& line)
{
    const std::size_t n = line.count();
    return n < beyondTheLoops ? n % 100000 : n;
}

const wq_fuzz::MemoryFile& file()
{
    static const wq_fuzz::MemoryFile memory;
    return memory;
}

// ---- what is seen of an object, as one number

class Seen {
public:
    void note(std::string_view text)
    {
        for (const char c : text) add(static_cast<unsigned char>(c));
        add(256);
    }
    void note(double value)
    {
        std::uint64_t bits;
        if (std::isnan(value)) value = std::numeric_limits<double>::quiet_NaN();
        std::memcpy(&bits, &value, sizeof bits);
        add(bits);
    }
    template <typename Integer, typename = std::enable_if_t<std::is_integral_v<Integer>>>
    void note(Integer value)
    {
        add(static_cast<std::uint64_t>(value));
    }
    void note(const DataRange<double>& range) { all(range.getLower(), range.getUpper()); }
    void note(const basic_stat& s)
    {
        all(s.n, s.min, s.max, s.mean, s.geoMean, s.harmMean, s.median, s.quartile1, s.quartile3, s.sum, s.variance, s.sampleVariance,
            s.stdev, s.sampleStdev, s.stdError, s.cv, s.sumOfSquares, s.significance, s.confidenceLimits);
    }
    void note(const xy_stat& s) { all(s.x, s.y, s.sumProducts, s.covariance); }
    void note(const regression_stat& s)
    {
        all(s.a, s.b, s.explained, s.unexplained, s.residualVariance, s.seB, s.tB, s.pB, s.limitsB, s.meanX, s.meanY, s.seY, s.limitsY,
            s.n);
    }
    void note(const anova_source& s) { all(s.df, s.ss, s.ms, s.fs, s.expectedMs); }
    void note(const regression_multi_y_stat& s)
    {
        all(s.sumX, s.sumX2, s.sumXT, s.correctionX, s.ssX, s.spXY, s.a, s.b, s.explained, s.unexplained, s.seB, s.tB, s.pT, s.limitsB);
    }
    void note(const correlation_stat& s) { all(s.r, s.t, s.tSignificance, s.F, s.FSignificance, s.confidenceLimits); }
    void note(const circular_stat& s)
    {
        all(s.n, s.bins, s.bin0, s.a, s.r, s.s, s.sPrime, s.meanBin, s.binSize, s.R, s.z, s.significance, s.p, s.accepted);
    }
    template <typename... Values>
    void all(const Values&... values)
    {
        (note(values), ...);
    }

    std::uint64_t hash() const { return state; }

private:
    void add(std::uint64_t value) { state = (state ^ value) * 1099511628211u + 1; }

    std::uint64_t state = 14695981039346656037u;
};

// An object whose number of observations the target may know.
template <typename Analysis>
struct Watched : Analysis {
    static constexpr bool isPaired = std::is_base_of_v<BasicXyStatistics, Analysis>;
    std::size_t stored() const
    {
        if constexpr (isPaired)
            return this->pairs.size();
        else
            return this->data.size();
    }
};

template <typename A, typename Base>
constexpr bool isA = std::is_base_of_v<Base, A>;

template <typename A>
void noteState(A& a, Seen& seen)
{
    seen.all(a.getResult(), a.getHead(), a.getTail(), a.getSampleSize(), a.getDataStart(), a.getDataEnd(), a.getSignificance(),
             a.getConfidence(), a.getNullHypothesis(), a.isNegative(), a.isSorted(), a.getDataFile(), a.getHypothesisInfo(), a.getComment(),
             a.stored());
    if constexpr (A::isPaired)
        seen.note(a.getXyResult());
    else
        for (std::size_t i = 0; i < a.stored(); ++i) seen.note(a.getDataPoint(i));
    if constexpr (isA<A, Regression>) seen.note(a.getRegressionResult());
    if constexpr (isA<A, Correlation>) seen.note(a.getCorrelationResult());
    if constexpr (isA<A, SingleAnova>)
        seen.all(a.getGroupCount(), a.getTotalObservations(), a.getGrandTotal(), a.getCorrectionTerm(), a.getSumSquaredObservations(),
                 a.getSumSquaredGroupTotals(), a.getSumSquaredSampleSizes(), a.getTotal(), a.getAmong(), a.getWithin(),
                 a.getMeanSampleSize(), a.getN0(), a.getVarianceComponent(), a.getVarianceComponentRatio(), a.getGroups().size(),
                 a.getGroupsCreated(), a.isEqual(), a.getModel());
    if constexpr (isA<A, LinearRegressionMultiY>)
        seen.all(a.getRegressionResult(), a.getRegression(), a.getDeviations(), a.isComputeRegression());
    if constexpr (isA<A, GoodnessOfFit>) seen.all(a.getX2(), a.getG(), a.getGAdjusted());
    if constexpr (isA<A, KolmogorovSmirnov2>) seen.all(a.getD(), a.getN1(), a.getN2());
    if constexpr (isA<A, TwoSamples>)
        seen.all(a.getSecondSample(), a.getF(), a.getFProbability(), a.getCriticalF(), a.getDf1(), a.getDf2());
    if constexpr (isA<A, Frequency>) {
        seen.all(a.getClasses(), a.getStartClass(), a.getClassWidth(), a.getTable().size());
        for (const frequency_class& each : a.getTable()) seen.all(each.count, each.rate);
    }
    if constexpr (isA<A, Circular>) seen.all(a.getCircularResult(), a.isGrouped(), a.getBinName(), a.getBinSize(), a.getBin0());
}

// ---- the operations

template <typename A>
struct Operation {
    const char* name;
    void (*call)(A& a, Line& line, Seen& seen);
};

basic_stat record(Line& line)
{
    basic_stat s;
    s.n = affordableCount(line);
    s.sampleVariance = line.number();
    s.mean = line.number();
    s.variance = line.number();
    return s;
}

template <typename A>
const std::vector<Operation<A>>& operations()
{
    static const std::vector<Operation<A>> all = [] {
        std::vector<Operation<A>> list = {
            {"add",
             [](A& a, Line& line, Seen&) {
                 const std::vector<double> values = line.numbers();
                 if constexpr (A::isPaired)
                     for (std::size_t i = 0; i + 1 < values.size(); i += 2) a.add(values[i], values[i + 1]);
                 else
                     for (const double x : values) a.add(x);
             }},
            {"copyFrom",
             [](A& a, Line& line, Seen& seen) {
                 const std::vector<double> values = line.numbers();
                 if constexpr (A::isPaired) {
                     std::vector<data_pair> pairs;
                     for (const double x : values) pairs.push_back({x, pairs.empty() ? x : pairs.back().x});
                     seen.note(a.copyFrom(pairs));
                 } else {
                     seen.note(a.copyFrom(values));
                 }
             }},
            {"ramp",
             [](A& a, Line& line, Seen&) {  // many observations: number, first, step
                 const std::size_t n = line.count() % 2000;
                 const double first = line.number(), step = line.number();
                 for (std::size_t i = 0; i < n; ++i) {
                     const double x = first + step * static_cast<double>(i);
                     if constexpr (A::isPaired)
                         a.add(x, std::fmod(x * x, 7.0));
                     else
                         a.add(x);
                 }
             }},
            {"analyse",
             [](A& a, Line&, Seen& seen) {
                 const bool sorts = !a.isSorted();
                 const bool returned = a.analyse();
                 seen.note(returned);
                 if constexpr (std::is_same_v<A, Watched<BasicStatistics>>) {
                     if (sorts) wq_fuzz::requireSorted(a);
                     wq_fuzz::requireAnalysed(a, returned);
                 }
                 if constexpr (std::is_same_v<A, Watched<BasicXyStatistics>> || isA<A, LinearRegression>)
                     wq_fuzz::requirePairsAnalysed(a, returned);
             }},
            {"acceptH0", [](A& a, Line&, Seen& seen) { seen.note(a.acceptH0()); }},
            {"reportConsole", [](A& a, Line&, Seen&) { a.reportConsole(); }},
            {"listData",
             [](A& a, Line& line, Seen&) {
                 const std::size_t from = line.count();
                 a.listData(from, line.count());
             }},
            {"baseListData",
             [](A& a, Line& line, Seen&) {
                 const std::size_t from = line.count();
                 static_cast<BasicStatistics&>(a).listData(from, line.count());
             }},
            {"exportToR",
             [](A& a, Line& line, Seen& seen) {
                 file().write("");
                 require(a.exportToR(file().path(), line.text()), "the export failed");
                 seen.note(file().content());
             }},
            {"exportNowhere", [](A& a, Line& line, Seen&) { require(!a.exportToR("", line.text()), "an export without a file"); }},
            {"readDataFile",
             [](A& a, Line& line, Seen& seen) {
                 file().write(line.text());
                 seen.note(a.readDataFile(file().path()));
             }},
            {"readAgain", [](A& a, Line&, Seen& seen) { seen.note(a.readDataFile()); }},
            {"geometricMean",
             [](A& a, Line& line, Seen& seen) {
                 const std::size_t from = line.count();
                 seen.note(a.geometricMean(from, line.count()));
             }},
            {"resetResult", [](A& a, Line&, Seen&) { a.resetResult(); }},
            {"initDataList", [](A& a, Line& line, Seen&) { a.initDataList(line.count()); }},
            {"setHead", [](A& a, Line& line, Seen&) { a.setHead(line.number()); }},
            {"setTail", [](A& a, Line& line, Seen&) { a.setTail(line.number()); }},
            {"setSampleSize", [](A& a, Line& line, Seen&) { a.setSampleSize(affordableCount(line)); }},
            {"setDataStart", [](A& a, Line& line, Seen&) { a.setDataStart(line.count()); }},
            {"setDataEnd", [](A& a, Line& line, Seen&) { a.setDataEnd(line.count()); }},
            {"setDataRange", [](A& a, Line&, Seen&) { a.setDataRange(); }},
            {"setSignificance", [](A& a, Line& line, Seen&) { a.setSignificance(line.number()); }},
            {"setNullHypothesis", [](A& a, Line& line, Seen&) { a.setNullHypothesis(line.number()); }},
            {"setNegative", [](A& a, Line& line, Seen&) { a.setNegative(line.flag()); }},
            {"setSorted", [](A& a, Line& line, Seen&) { a.setSorted(line.flag()); }},
            {"setComment", [](A& a, Line& line, Seen&) { a.setComment(line.text()); }},
            {"setHypothesisInfo", [](A& a, Line& line, Seen&) { a.setHypothesisInfo(line.text()); }},
            {"addColumnName", [](A& a, Line& line, Seen&) { a.addColumnName(line.text()); }},
            {"clearColumnNames", [](A& a, Line&, Seen&) { a.clearColumnNames(); }},
            {"sortData", [](A& a, Line&, Seen&) { a.sortData(); }},
            {"quantile",
             [](A& a, Line& line, Seen& seen) {
                 const double p = line.number();
                 seen.note(a.quantile(p, line.count()));
             }},
            {"median", [](A& a, Line&, Seen& seen) { seen.note(a.median()); }},
            {"quartile", [](A& a, Line& line, Seen& seen) { seen.note(a.quartile(line.number())); }},
            {"statistics",
             [](A& a, Line& line, Seen& seen) {
                 const double mean = line.number(), variance = line.number(), mu0 = line.number();
                 const std::size_t n = line.count();
                 seen.all(a.standardError(variance, n), a.standardDeviation(variance), a.coefficientOfVariation(variance, mean, n),
                          a.confidenceInterval(mean, variance, n), a.StudentOfMeans(mean, variance, mu0, n));
             }},
            {"copy",
             [](A& a, Line&, Seen&) {
                 const A other(a);
                 a = other;
             }},
            {"move",
             [](A& a, Line&, Seen&) {
                 A other(std::move(a));
                 a = A();
                 a = std::move(other);
             }},
            {"swapWithNew", [](A& a, Line&, Seen&) { a = A(); }},
        };
        const auto add = [&](const char* name, void (*call)(A&, Line&, Seen&)) { list.push_back({name, call}); };

        if constexpr (A::isPaired) {
            add("setDataPairX", [](A& a, Line& line, Seen&) {
                const std::size_t i = line.count();
                if (i < a.stored()) a.setDataPairX(i, line.number());
            });
            add("getDataPair", [](A& a, Line& line, Seen& seen) {
                const std::size_t i = line.count();
                if (i < a.stored()) seen.all(a.getDataPair(i).x, a.getDataPair(i).y);
            });
        }
        if constexpr (isA<A, Regression>) {
            add("analyseDataPair", [](A& a, Line&, Seen& seen) { seen.note(a.analyseDataPair()); });
            add("resetRegression", [](A& a, Line&, Seen&) { a.resetRegression(); });
            add("writeRegressionResult", [](A& a, Line&, Seen& seen) { seen.note(a.writeRegressionResult()); });
        }
        if constexpr (isA<A, Correlation>)
            add("significance", [](A& a, Line& line, Seen& seen) {
                const double r = line.number(), rho = line.number();
                const std::size_t n = affordableCount(line);
                seen.all(a.significance_t0(r, n), a.significance_t1(r, rho, n), a.significance_F(r, n), a.confidenceInterval(r, n),
                         a.t_small_n(r, rho, n), a.t_big_n(r, rho, n), a.acceptH0_t(), a.acceptH0_F());
            });
        if constexpr (isA<A, SingleAnova>) {
            add("createSeries", [](A& a, Line&, Seen& seen) { seen.note(a.createSeries()); });
            add("createGroup", [](A& a, Line& line, Seen& seen) { seen.note(a.createGroup(line.number())->id); });
            add("getGroup", [](A& a, Line& line, Seen& seen) {
                const auto group = a.getGroup(line.number());
                seen.note(group - a.getGroup(std::numeric_limits<double>::quiet_NaN()));
            });
            add("observe", [](A& a, Line& line, Seen&) {  // an observation of a group that exists
                const auto group = a.getGroup(line.number());
                if (group != a.getGroup(std::numeric_limits<double>::quiet_NaN())) group->observations.push_back(line.number());
            });
            add("testResults", [](A& a, Line&, Seen&) { a.testResults(); });
            add("resetAnova", [](A& a, Line&, Seen&) { a.resetAnova(); });
            add("setGroups", [](A& a, Line& line, Seen&) { a.setGroups(line.count()); });
            add("increaseGroups", [](A& a, Line&, Seen&) { a.increaseGroups(); });
            add("setModel", [](A& a, Line& line, Seen&) { a.setModel(static_cast<int>(line.count())); });
            add("setEqual", [](A& a, Line& line, Seen&) { a.setEqual(line.flag()); });
        }
        if constexpr (isA<A, LinearRegressionMultiY>) {
            add("readSeriesFile", [](A& a, Line& line, Seen& seen) {
                file().write(line.text());
                seen.note(a.readSeriesFile(file().path()));
            });
            add("setComputeRegression", [](A& a, Line& line, Seen&) { a.setComputeRegression(line.flag()); });
        }
        if constexpr (isA<A, GoodnessOfFit>) {
            add("setYatesCorrection", [](A& a, Line& line, Seen&) { a.setYatesCorrection(line.flag()); });
            add("setWilliamsCorrection", [](A& a, Line& line, Seen&) { a.setWilliamsCorrection(line.flag()); });
        }
        if constexpr (isA<A, KolmogorovSmirnov2>) {
            add("cumulative", [](A& a, Line&, Seen&) { a.cumulative(); });
            add("addCumulativeFrequency", [](A& a, Line& line, Seen&) {
                const double c1 = line.number();
                a.addCumulativeFrequency(c1, line.number());
            });
            add("resetCumulativeFrequency", [](A& a, Line&, Seen&) { a.resetCumulativeFrequency(); });
            add("listFrequencies", [](A& a, Line&, Seen&) { a.listFrequencies(); });
        }
        if constexpr (isA<A, TwoSamples>) {
            add("setFirstSample", [](A& a, Line& line, Seen&) { a.setFirstSample(record(line)); });
            add("setSecondSample", [](A& a, Line& line, Seen&) { a.setSecondSample(record(line)); });
            add("analyseAsOneSample", [](A& a, Line&, Seen& seen) { seen.note(a.BasicStatistics::analyse()); });
            add("compute_ratio", [](A& a, Line& line, Seen& seen) {
                const double v1 = line.number();
                seen.note(a.compute_ratio(v1, line.number()));
            });
        }
        if constexpr (isA<A, Frequency>) {
            add("autoClassWidth", [](A& a, Line& line, Seen& seen) { seen.note(a.autoClassWidth(line.count())); });
            add("initFrequency", [](A& a, Line& line, Seen& seen) {
                const std::size_t asked = line.count(), before = a.getTable().size();
                const std::size_t k = asked < tooManyClasses ? asked % enoughClasses : asked;
                seen.note(a.initFrequency(k));
                require(k < tooManyClasses && a.getTable().size() == before + k, "a table of ", a.getTable().size());
            });
            add("setClasses", [](A& a, Line& line, Seen&) { a.setClasses(line.count()); });
            add("setStartClass", [](A& a, Line& line, Seen&) { a.setStartClass(line.number()); });
            add("buildTable", [](A& a, Line&, Seen&) { a.buildTable(); });
            add("exportTable", [](A& a, Line& line, Seen& seen) {
                file().write("");
                require(a.exportTable(file().path(), line.text()), "the export of the table failed");
                seen.note(file().content());
            });
        }
        if constexpr (isA<A, Circular>) {
            add("setDataType", [](A& a, Line& line, Seen&) { a.setDataType(static_cast<CIRCULAR_DATA>(line.count() % 3)); });
            add("setBins", [](A& a, Line& line, Seen&) { a.setBins(line.count()); });
            add("setBin0", [](A& a, Line& line, Seen&) { a.setBin0(line.number()); });
            add("setBinName", [](A& a, Line& line, Seen&) { a.setBinName(line.text()); });
            add("setGrouped", [](A& a, Line& line, Seen&) { a.setGrouped(line.flag()); });
            add("checkGrouped", [](A& a, Line&, Seen&) { a.checkGrouped(); });
            add("computeBinSize", [](A& a, Line&, Seen&) { a.computeBinSize(); });
            add("convertToRadians", [](A& a, Line&, Seen&) { a.convertToRadians(); });
            add("rayleighsTest", [](A& a, Line& line, Seen&) {
                const std::size_t n = line.count();
                a.rayleighsTest(n, line.number());
            });
        }
        return list;
    }();
    return all;
}

template <typename A>
std::size_t sizeOf(const A& a)
{
    std::size_t n = a.stored();
    if constexpr (isA<A, Frequency>) n += a.getTable().size();
    if constexpr (isA<A, SingleAnova>)
        for (const anova_group& group : a.getGroups()) n += group.observations.size();
    return n;
}

// ---- a script, performed

// Calls, and tells how it ended. Only what a data file holds may be a bad argument; only memory may run out elsewhere.
template <typename Call>
std::string_view ending(const char* name, Call&& call)
{
    const bool reads = std::string_view(name).substr(0, 4) == "read";
    try {
        call();
        return "returned";
    } catch (const std::bad_alloc&) {
        return "bad_alloc";
    } catch (const std::length_error&) {
        return "length_error";
    } catch (const std::invalid_argument&) {
        require(reads, name, ": invalid_argument");
        return "invalid_argument";
    } catch (const std::out_of_range&) {
        require(reads, name, ": out_of_range");
        return "out_of_range";
    }
}

template <typename Analysis>
std::uint64_t performed(const std::vector<Line>& script)
{
    using A = Watched<Analysis>;
    A analysis;
    Seen seen;
    file().write("");
    for (std::size_t i = 1; i < script.size() && sizeOf(analysis) < enoughObservations; ++i) {
        Line line = script[i];
        const auto& [name, call] = wq_fuzz::named(operations<A>(), line.word());
        const wq_test::Capture output(std::cout), errors(std::cerr);
        const auto perform = [&, call = call] { call(analysis, line, seen); };
        seen.note(ending(name, perform));
        seen.all(output.text(), errors.text());
        noteState(analysis, seen);
    }
    return seen.hash();
}

// ---- the random generator, against the standard's own engine and distributions

std::uint64_t performedAtRandom(const std::vector<Line>& script)
{
    RandomCpp11 random;
    std::mt19937 engine(0);
    engine.discard(999);
    unsigned long long draws = 999;
    Seen seen;
    for (std::size_t i = 1; i < script.size(); ++i) {
        Line line = script[i];
        const std::string name = line.word();
        const auto below = [&](unsigned int n) { return std::uniform_int_distribution<unsigned int>(0, n)(engine); };
        if (name == "real") {
            const double value = random.getReal();
            require(value >= 0.0 && value < 1.0, "getReal ", value);
            require(wq_test::sameBits(value, std::uniform_real_distribution<double>(0.0, 1.0)(engine)), "getReal ", value);
            ++draws;
        } else if (name == "upTo") {
            const auto n = static_cast<unsigned int>(line.count());
            const unsigned int value = random.getInteger(n);
            require(value == below(n), "getInteger(", n, ") ", value);
            ++draws;
        } else if (name == "range") {
            const auto low = static_cast<unsigned int>(line.count()), high = static_cast<unsigned int>(line.count());
            const unsigned int value = random.getInteger(low, high);
            require(value == below(high - low) + low, "getInteger(", low, ", ", high, ") ", value);
            ++draws;
        } else if (name == "weights") {
            const std::vector<double> weights = line.numbers();
            unsigned int expected = 0;
            if (weights.size() != 1) {
                const double r = std::uniform_real_distribution<double>(0.0, 1.0)(engine);
                double s = 0.0;
                for (; expected < weights.size() && !(s <= r && r < s + weights[expected]); ++expected) s += weights[expected];
                ++draws;
            }
            const unsigned int value = random.getInteger(weights);
            require(value == expected, "weighted choice ", value, " instead of ", expected);
        } else if (name == "initialize") {
            random.initialize();
            engine.seed(0);
            engine.discard(999);
            draws += 999;
        } else if (name == "warmUp") {
            const std::size_t n = line.count() % 10000;
            random.warmUp(n);
            engine.discard(n == 0 ? 0 : n - 1);
            draws += n == 0 ? 0 : n - 1;
        } else if (name == "setDraws") {
            draws = line.count();
            random.setDraws(draws);
        } else {
            const unsigned int value = random.getInteger();
            require(value == engine(), "getInteger ", value);
            ++draws;
        }
        require(random.getDraws() == draws, "draws ", random.getDraws(), " instead of ", draws);
    }
    return seen.hash();
}

const struct {
    const char* name;
    std::uint64_t (*performed)(const std::vector<Line>& script);
} classes[] = {
    {"BasicStatistics", performed<BasicStatistics>},
    {"TwoSamples", performed<TwoSamples>},
    {"Frequency", performed<Frequency>},
    {"BasicXyStatistics", performed<BasicXyStatistics>},
    {"LinearRegression", performed<LinearRegression>},
    {"LogarithmicRegression", performed<LogarithmicRegression>},
    {"ExponentialRegression", performed<ExponentialRegression>},
    {"PowerRegression", performed<PowerRegression>},
    {"Correlation", performed<Correlation>},
    {"SingleAnova", performed<SingleAnova>},
    {"LinearRegressionMultiY", performed<LinearRegressionMultiY>},
    {"GoodnessOfFit", performed<GoodnessOfFit>},
    {"KolmogorovSmirnov2", performed<KolmogorovSmirnov2>},
    {"Circular", performed<Circular>},
    {"RandomCpp11", performedAtRandom},
};

}  // namespace

// The first line: a class. Then an operation per line.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const std::vector<Line> script = wq_fuzz::linesOf({reinterpret_cast<const char*>(bytes), size});
    if (script.empty()) return 0;
    const wq_fuzz::LimitedMemory limited;
    Line first = script.front();
    const auto& [name, performed] = wq_fuzz::named(classes, first.word());
    require(performed(script) == performed(script), name, ": a second object shows something else");
    return 0;
}
