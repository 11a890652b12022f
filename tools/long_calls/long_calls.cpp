// Measures how long the slowest calls of the library take as their arguments grow, and writes the page docs/long-calls.md.
//
// Usage: long_calls         the page goes to standard output
//        long_calls PAGE    counts the work anew, without measuring, and says where the committed page is not true any more (exit status 1)

#include <wq_stat/wq_stat.h>

#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace {

std::uint64_t logarithms = 0;
std::uint64_t exponentials = 0;

using Function = double (*)(double);

Function ofTheCLibrary(const char* name) { return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name)); }

}  // namespace

// The library's loops of logarithms and exponentials call these two, which count.
extern "C" double log(double x)
{
    static const Function original = ofTheCLibrary("log");
    ++logarithms;
    return original(x);
}

extern "C" double exp(double x)
{
    static const Function original = ofTheCLibrary("exp");
    ++exponentials;
    return original(x);
}

namespace {

using namespace wq_lib;

volatile double sink;  // keeps calls from being left out

// ---------------------------------------------------------------- integrands, which count their evaluations

std::uint64_t evaluations = 0;

double parabola(double x)
{
    ++evaluations;
    return 10.0 * x * x;
}

double wave(double x)
{
    ++evaluations;
    return std::sin(x);
}

double pole(double x)
{
    ++evaluations;
    return 1.0 / std::fabs(x - 1.0 / 3.0);
}

std::uint64_t countLogarithms() { return logarithms; }
std::uint64_t countExponentials() { return exponentials; }
std::uint64_t countEvaluations() { return evaluations; }

// ---------------------------------------------------------------- measuring

using Call = std::function<void()>;

double processorSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

/** Seconds of the processor that one call takes: the shortest of three measurements, and of more for short calls. */
double secondsOf(const std::function<Call()>& prepare)
{
    double shortest = std::numeric_limits<double>::infinity();
    double spent = 0.0;
    for (int times = 0; times < 3 || (spent < 0.02 && times < 1000); ++times) {
        const Call call = prepare();
        const double start = processorSeconds();
        call();
        const double seconds = processorSeconds() - start;
        spent += seconds;
        shortest = std::min(shortest, seconds);
        if (seconds > 0.3) break;
    }
    return shortest;
}

/** For calls that may be repeated as they are; those far below the clock's tick are made many times. */
double secondsOfRepeatable(const Call& call)
{
    std::uint64_t times = 1;
    for (;; times *= 4) {
        const double seconds = secondsOf([&] {
            return [&] {
                for (std::uint64_t i = 0; i < times; ++i) call();
            };
        });
        if (seconds > 1e-3) return seconds / static_cast<double>(times);
    }
}

// ---------------------------------------------------------------- what is measured

// How the time grows.
constexpr const char* constant = "constant";
constexpr const char* root = "√n";
constexpr const char* linear = "n";
constexpr const char* linearLog = "n log n";

/** A call whose time grows with a count n. */
struct GrowingCall {
    const char* text;
    const char* order;
    std::function<Call(std::size_t)> prepare;  // makes the call for n, everything ready but the call itself
    bool repeatable;
    const char* work = "";                       // counted work, as printed
    std::function<double(double)> workFor = {};  // the same as a figure
    std::uint64_t (*counter)() = nullptr;
};

/** What the amount of counted work is; about and atMost where it hangs on the last bits of the C library's functions. */
enum class Amount { exact, about, atMost };

/** A call whose length does not hang on a count, or is at its longest. */
struct LongCall {
    const char* text;
    const char* why;
    Call call;
    const char* work = "";  // what is counted
    std::uint64_t (*counter)() = nullptr;
    Amount kind = Amount::about;
    std::uint64_t amount = 0;
};

template <typename F>
std::function<Call(std::size_t)> distribution(F&& f)
{
    return [f](std::size_t n) -> Call { return [f, n] { sink = f(n); }; };
}

double real(std::size_t n) { return static_cast<double>(n); }

double logBeta(double p, double q) { return std::lgamma(p) + std::lgamma(q) - std::lgamma(p + q); }

std::vector<double> randomValues(std::size_t n)
{
    std::mt19937_64 engine(n);
    std::vector<double> values(n);
    for (double& value : values) value = std::ldexp(static_cast<double>(engine() >> 11), -53);
    return values;
}

template <typename Analysis>
std::shared_ptr<Analysis> withRandomPairs(std::size_t n)
{
    auto analysis = std::make_shared<Analysis>();
    const std::vector<double> values = randomValues(2 * n);
    analysis->initDataList(n);
    for (std::size_t i = 0; i < n; ++i) analysis->add(values[2 * i], values[2 * i + 1]);
    return analysis;
}

/** One file for all calls that read or write one, removed at the end. */
std::string temporaryFile()
{
    static const struct File {
        const std::string path = (std::filesystem::temp_directory_path() / ("wq_stat-long-calls-" + std::to_string(getpid()))).string();
        ~File() { std::remove(path.c_str()); }
    } file;
    return file.path;
}

std::vector<GrowingCall> growingDistributions()
{
    return {
        {"factorial(n)", constant, distribution([](std::size_t n) { return factorial(n); }), true},
        {"lnGamma(n)", linear, distribution([](std::size_t n) { return lnGamma(real(n)); }), true, "n − 1 logarithms",
         [](double n) { return n - 1.0; }, countLogarithms},
        {"t_Prob(2, n, false)", linear, distribution([](std::size_t n) { return t_Prob(2.0, n, false); }), true},
        {"t_PercentPoint(0.05, n)", constant, distribution([](std::size_t n) { return t_PercentPoint(0.05, n); }), true},
        {"chiSquareProb(n, n)", linear, distribution([](std::size_t n) { return chiSquareProb(real(n), n); }), true, "n/2 + 1 logarithms",
         [](double n) { return n / 2.0 + 1.0; }, countLogarithms},
        {"chiSquarePoint(0.95, n)", constant, distribution([](std::size_t n) { return chiSquarePoint(0.95, n); }), true},
        {"F_Prob(1.1, n, n)", linear, distribution([](std::size_t n) { return F_Prob(1.1, n, n); }), true, "2n − 1 logarithms",
         [](double n) { return 2.0 * n - 1.0; }, countLogarithms},
        {"F_Prob(4, 1, n)", linear, distribution([](std::size_t n) { return F_Prob(4.0, 1, n); }), true},
        {"F_PercentPoint(0.95, n, n)", linear, distribution([](std::size_t n) { return F_PercentPoint(0.95, n, n); }), true},
        {"F_PercentPoint(0.95, 1, n)", linear, distribution([](std::size_t n) { return F_PercentPoint(0.95, 1, n); }), true},
        {"betaRatio(0.5, n, n, beta)", root,
         distribution([](std::size_t n) { return betaRatio(0.5, real(n), real(n), logBeta(real(n), real(n))); }), true},
        {"inverseBetaRatio(0.3, n, n, beta)", root,
         distribution([](std::size_t n) { return inverseBetaRatio(0.3, real(n), real(n), logBeta(real(n), real(n))); }), true},
        {"binomial(n/2, n, 0.5)", constant, distribution([](std::size_t n) { return binomial(n / 2, n, 0.5); }), true},
        {"binomial(10, n, 10.0/n)", linear, distribution([](std::size_t n) { return binomial(10, n, 10.0 / real(n)); }), true},
    };
}

std::vector<GrowingCall> growingAnalyses()
{
    return {
        {"BasicStatistics::analyse()", linearLog,
         [](std::size_t n) -> Call {
             auto sample = std::make_shared<BasicStatistics>();
             sample->copyFrom(randomValues(n));
             return [sample] { sample->analyse(); };
         },
         false},
        {"LinearRegression::analyse()", linear,
         [](std::size_t n) -> Call {
             auto sample = withRandomPairs<LinearRegression>(n);
             return [sample] { sample->analyse(); };
         },
         false},
        {"Correlation::analyse()", linear,
         [](std::size_t n) -> Call {
             auto sample = withRandomPairs<Correlation>(n);
             return [sample] { sample->analyse(); };
         },
         false},
        {"createSeries(), n ids", linear,
         [](std::size_t n) -> Call {
             auto sample = withRandomPairs<SingleAnova>(n);
             return [sample] { sample->createSeries(); };
         },
         false},
        {"SingleAnova::analyse(), n groups", linear,
         [](std::size_t n) -> Call {
             auto sample = withRandomPairs<SingleAnova>(n);
             sample->createSeries();
             return [sample] { sample->analyse(); };
         },
         false},
        {"getGroup(id), n groups", linear,
         [](std::size_t n) -> Call {
             auto sample = withRandomPairs<SingleAnova>(n);
             sample->createSeries();
             return [sample] { sample->getGroup(2.0); };
         },
         false},
        {"cumulative() and analyse() of KolmogorovSmirnov2", linear,
         [](std::size_t n) -> Call {
             auto sample = withRandomPairs<KolmogorovSmirnov2>(n);
             return [sample] {
                 sample->cumulative();
                 sample->analyse();
             };
         },
         false},
        {"buildTable(), n values and n classes", linear,
         [](std::size_t n) -> Call {
             auto sample = std::make_shared<Frequency>();
             sample->copyFrom(randomValues(n));
             sample->autoClassWidth(n);
             sample->initFrequency(n);
             return [sample] { sample->buildTable(); };
         },
         false},
        {"Circular::analyse()", linear,
         [](std::size_t n) -> Call {
             auto sample = withRandomPairs<Circular>(n);
             sample->setBins(12);
             return [sample] { sample->analyse(); };
         },
         false},
        {"exportToR, n values", linear,
         [](std::size_t n) -> Call {
             auto sample = std::make_shared<BasicStatistics>();
             sample->copyFrom(randomValues(n));
             return [sample] { sample->exportToR(temporaryFile(), ""); };
         },
         false},
        {"readDataFile, n lines", linear,
         [](std::size_t n) -> Call {
             std::ofstream file(temporaryFile());
             file.precision(17);
             for (const double value : randomValues(n)) file << value << "\n";
             auto sample = std::make_shared<BasicStatistics>();
             return [sample] { sample->readDataFile(temporaryFile()); };
         },
         false},
        {"readSeriesFile, one line with the count n", linear,
         [](std::size_t n) -> Call {
             std::ofstream(temporaryFile()) << "1:2:" << n << "\n";
             auto sample = std::make_shared<LinearRegressionMultiY>();
             return [sample] { sample->readSeriesFile(temporaryFile()); };
         },
         false},
        {"getInteger(n weights)", linear,
         [](std::size_t n) -> Call {
             const std::vector<double> weights(n, 1.0 / real(n));
             return [weights] { sink = Random.getInteger(weights); };
         },
         true},
        {"warmUp(n)", linear, [](std::size_t n) -> Call { return [n] { Random.warmUp(n); }; }, true},
    };
}

std::vector<LongCall> longCalls()
{
    constexpr std::size_t largest = std::numeric_limits<std::size_t>::max();
    return {
        {"factorial(2^64 - 1)", "ends at 171!, which no double holds", [] { sink = factorial(largest); }},
        {"simpsonIntegral(10 x^2, 0, 1)", "the end points have a wrong weight, and the sums settle too slowly: all 2^30 steps",
         [] { sink = simpsonIntegral(parabola, 0.0, 1.0); }, "evaluations", countEvaluations, Amount::exact, (std::uint64_t{1} << 30) + 1},
        {"simpsonIntegral(10 x^2, 0, 2)", "the width for which the rule holds", [] { sink = simpsonIntegral(parabola, 0.0, 2.0); },
         "evaluations", countEvaluations, Amount::exact, 5},
        {"quadratureIntegral(sin, 0, 100)", "as many steps as the function has bends", [] { sink = quadratureIntegral(wave, 0.0, 100.0); },
         "evaluations", countEvaluations},
        {"quadratureIntegral(1/abs(x - 1/3), 0, 1)", "a pole: given up at depth 64", [] { sink = quadratureIntegral(pole, 0.0, 1.0); },
         "evaluations", countEvaluations},
        {"F_PercentPoint(0.95, 1, 26)", "the iteration circles, then bisects", [] { sink = F_PercentPoint(0.95, 1, 26); }, "exponentials",
         countExponentials, Amount::atMost, 2 * 5000 + 1100},
        {"D_Prob(0.001)", "100 terms do not suffice", [] { sink = D_Prob(0.001); }, "exponentials", countExponentials, Amount::exact, 100},
        {"normalProb(50000)", "quadrature over a wide range", [] { sink = normalProb(50000.0); }, "exponentials", countExponentials},
        {"binomial(2^63, 2^64 - 1, 0.5)", "nothing is left of the product after 1075 steps",
         [] { sink = binomial(largest / 2, largest, 0.5); }},
        {"t_Prob(2, 2^64 - 1, false)", "beyond 2^53 degrees of freedom: NaN", [] { sink = t_Prob(2.0, largest, false); }},
        {"F_Prob(2, 2^64 - 1, 2^64 - 1)", "wrapped degrees of freedom: NaN", [] { sink = F_Prob(2.0, largest, largest); }},
    };
}

// ---------------------------------------------------------------- the page

std::string timeText(double seconds)
{
    const struct {
        double unit;
        const char* name;
    } units[] = {{1.0, "s"}, {1e-3, "ms"}, {1e-6, "µs"}, {1e-9, "ns"}};
    char text[40];
    for (const auto& [unit, name] : units)
        if (seconds >= 0.95 * unit || unit == 1e-9) {
            const double value = seconds / unit;
            std::snprintf(text, sizeof text, value < 9.95 ? "%.1f %s" : "%.0f %s", value, name);
            break;
        }
    return text;
}

/** @return the seconds of a cell that holds a time, nothing for any other cell. */
std::optional<double> timeIn(const std::string& cell)
{
    static const std::map<std::string, double> units = {{"s", 1.0}, {"ms", 1e-3}, {"µs", 1e-6}, {"ns", 1e-9}};
    std::istringstream text(cell);
    double value = 0.0;
    std::string unit;
    std::string more;
    if (!(text >> value >> unit) || text >> more || units.count(unit) == 0) return std::nullopt;
    return value * units.at(unit);
}

/** @return the figure of a cell such as "about 1234 evaluations". */
std::optional<double> countIn(const std::string& cell)
{
    std::istringstream text(cell);
    std::string about;
    double value = 0.0;
    if (!(text >> about >> value) || about != "about") return std::nullopt;
    return value;
}

constexpr const char* notMeasured = "?";

/** Makes the page, with times where it measures; what contradicts the stated work is a complaint. */
class Page {
public:
    explicit Page(bool withTimes) : measures(withTimes) {}

    std::string text() const { return content; }
    const std::vector<std::string>& complaints() const { return problems; }

    void add(const std::string& paragraph) { content += paragraph; }

    void addGrowing(const std::vector<GrowingCall>& calls, std::size_t first)
    {
        content += "| call | grows as | counted work |";
        for (int decade = 0; decade < decades; ++decade)
            content += " n = 10^" + std::to_string(static_cast<int>(std::log10(real(first))) + decade) + " |";
        content += "\n|---|---|---|---|---|---|---|---|\n";
        for (const GrowingCall& call : calls) {
            content += "| `" + std::string(call.text) + "` | " + call.order + " | " + call.work + " |";
            std::size_t n = first;
            for (int decade = 0; decade < decades; ++decade, n *= 10) {
                if (call.counter != nullptr) checkWork(call.text, call.counter, call.prepare(n), call.workFor(real(n)));
                content += " " + timeOf(call, n) + " |";
            }
            content += "\n";
        }
    }

    void addLong(const std::vector<LongCall>& calls)
    {
        content += "| call | what happens | counted work | time |\n|---|---|---|---|\n";
        for (const LongCall& call : calls) {
            std::string work;
            const std::uint64_t start = call.counter != nullptr ? call.counter() : 0;
            call.call();
            if (call.counter != nullptr) {
                const std::uint64_t count = call.counter() - start;
                const bool wrong =
                    (call.kind == Amount::exact && count != call.amount) || (call.kind == Amount::atMost && count > call.amount);
                if (wrong) complainOfWork(call.text, real(count), real(call.amount));
                const char* const before = call.kind == Amount::exact ? "" : call.kind == Amount::about ? "about " : "at most ";
                work = before + std::to_string(call.kind == Amount::about ? count : call.amount) + " " + call.work;
            }
            content += "| `" + std::string(call.text) + "` | " + call.why + " | " + work + " | " +
                       (measures ? timeText(secondsOfRepeatable(call.call)) : notMeasured) + " |\n";
        }
    }

private:
    static constexpr int decades = 5;

    std::string timeOf(const GrowingCall& call, std::size_t n) const
    {
        if (!measures) return notMeasured;
        return timeText(call.repeatable ? secondsOfRepeatable(call.prepare(n)) : secondsOf([&] { return call.prepare(n); }));
    }

    void checkWork(const char* text, std::uint64_t (*counter)(), const Call& call, double expected)
    {
        const std::uint64_t before = counter();
        call();
        const double count = real(counter() - before);
        if (count != expected) complainOfWork(text, count, expected);
    }

    void complainOfWork(const char* text, double count, double expected)
    {
        char line[200];
        std::snprintf(line, sizeof line, "%s: counted %.0f where %.0f are stated", text, count, expected);
        problems.emplace_back(line);
    }

    bool measures;
    std::string content;
    std::vector<std::string> problems;
};

const char* const introduction = R"(# Long calls

This page is written by `tools/long_calls`; a test counts the work again and fails when a call does another amount of it than stands here.

Every call of the library ends on every input. The tables show the calls that take longest and how their time grows with n. The times
are those of the processor, measured on one machine; yours will be other, the orders will not. "Counted work" is exact and the same
everywhere.

Nothing here is of concern for samples of everyday size: up to ten thousand degrees of freedom every distribution function answers well
within a millisecond. Where a host takes degrees of freedom or counts from outside, it should bound them: **linear means that 10^12 takes
ten thousand times as long as 10^8.** Bounds that the library itself sets are 2^53 for the degrees of freedom of `t_Prob` and the argument
of `lnGamma`, and with it for chi-square and F (beyond they return NaN at once); a call just below would take a year. `binomial` has no
bound but n + k.

## Distributions

n is the number of degrees of freedom, of trials, or the argument. beta is the logarithm of the beta function of the two shapes.

)";

const char* const analyses = R"(
## Analyses

n is the number of values, pairs, lines, groups or classes.

)";

const char* const others = R"(
## Calls at their longest

)";

const char* const closing = R"(
Three more, which the test leaves out:

- `inverseBetaRatio` with a shape above 2^53 may take a minute: the terms of its series hardly change there. No degrees of freedom lead to
  it, for `lnGamma` is NaN before.
- `quadratureIntegral` of a function that bends everywhere costs what the function costs: each bend is halved until the two estimates
  agree to within its share of 10^-9. `quadratureRecursion` goes no deeper than 64 halvings, and gives up at the first interval that
  needs more.
- `readSeriesFile` takes a count from the file, up to 2147483647 for each line, and memory for as many pairs.
)";

// ---------------------------------------------------------------- the committed page

std::vector<std::string> linesOf(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

std::vector<std::string> cellsOf(const std::string& row)
{
    std::vector<std::string> cells;
    std::size_t begin = 0;
    for (std::size_t end; (end = row.find(" |", begin)) != std::string::npos; begin = end + 2)
        cells.push_back(row.substr(begin, end - begin));
    return cells;
}

/** Whether a cell of the page may stand for what was found now. */
bool agrees(const std::string& committed, const std::string& found)
{
    if (committed == found) return true;
    if (found == std::string(" ") + notMeasured) return timeIn(committed).has_value();
    const std::optional<double> stated = countIn(committed);
    const std::optional<double> counted = countIn(found);
    return stated && counted && std::fabs(*counted - *stated) <= 0.1 * *stated;
}

void compare(const std::string& committed, const std::string& measured, std::vector<std::string>& problems)
{
    const std::vector<std::string> before = linesOf(committed);
    const std::vector<std::string> now = linesOf(measured);
    if (before.size() != now.size())
        problems.push_back("the page has " + std::to_string(before.size()) + " lines, not " + std::to_string(now.size()));
    for (std::size_t i = 0; i < std::min(before.size(), now.size()); ++i) {
        if (now[i].rfind("| `", 0) != 0) {
            if (before[i] != now[i]) problems.push_back("line " + std::to_string(i + 1) + " of the page is not: " + now[i]);
            continue;
        }
        const std::vector<std::string> cellsBefore = cellsOf(before[i]);
        const std::vector<std::string> cellsNow = cellsOf(now[i]);
        bool same = cellsBefore.size() == cellsNow.size();
        for (std::size_t c = 0; same && c < cellsNow.size(); ++c) same = agrees(cellsBefore[c], cellsNow[c]);
        if (!same) problems.push_back("the page says: " + before[i] + "\nfound now:     " + now[i]);
    }
}

}  // namespace

int main(int argc, char** argv)
{
    sink = lnGamma(1.0);          // the first call fills a table
    std::ostringstream messages;  // of the quadrature, which is no part of the page
    std::streambuf* const console = std::cout.rdbuf(messages.rdbuf());
    Page page(argc < 2);
    page.add(introduction);
    page.addGrowing(growingDistributions(), 10'000);
    page.add(analyses);
    page.addGrowing(growingAnalyses(), 100);
    page.add(others);
    page.addLong(longCalls());
    page.add(closing);
    std::cout.rdbuf(console);

    std::vector<std::string> problems = page.complaints();
    if (argc < 2) {
        std::cout << page.text();
    } else {
        std::ifstream file(argv[1]);
        std::ostringstream committed;
        committed << file.rdbuf();
        compare(committed.str(), page.text(), problems);
        if (!problems.empty()) problems.push_back("renew the page with: cmake --build <release build> --target long_calls_page");
    }
    for (const std::string& problem : problems) std::cerr << problem << "\n";
    return problems.empty() ? 0 : 1;
}
