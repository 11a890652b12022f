// Hosts with a rounding mode, exception flags and processes of their own.
#include <wq_report/csv_report.h>
#include <wq_stat/wq_stat.h>

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cfenv>
#include <cfloat>
#include <cmath>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <limits>
#include <random>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

#include "support/bits.h"
#include "support/console.h"
#include "support/files.h"
#include "support/object_lives.h"

using namespace wq_lib;
using wq_test::analysed;
using wq_test::contentOf;
using wq_test::fill;
using wq_test::forEveryClass;
using wq_test::prepare;
using wq_test::printed;
using wq_test::StandardOutputTo;
using wq_test::TempFolder;
using wq_test::told;

namespace {

struct Mode {
    int mode;
    const char* name;
};

constexpr Mode directedModes[] = {{FE_UPWARD, "upward"}, {FE_DOWNWARD, "downward"}, {FE_TOWARDZERO, "toward zero"}};

/** What a call gives under a rounding mode; the mode must be the same after it. */
template <typename Call>
auto rounding(int mode, Call&& call)
{
    std::fesetround(mode);
    auto result = call();
    const int after = std::fegetround();
    std::fesetround(FE_TONEAREST);
    EXPECT_EQ(after, mode) << "the library changed the rounding mode";
    return result;
}

/** Runs a child process. @return its exit status; 100 + signal when it was ended by one. */
int inAChild(const std::function<int()>& task)
{
    const pid_t child = fork();
    if (child == 0) _exit(task());
    int status = 0;
    EXPECT_EQ(waitpid(child, &status, 0), child);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 100 + WTERMSIG(status);
}

bool isNumber(const std::string& word, double& number)
{
    char* end = nullptr;
    number = std::strtod(word.c_str(), &end);
    return !word.empty() && *end == '\0';
}

/** Texts that are the same but for the last digits of their numbers. */
void expectCloseText(const std::string& text, const std::string& expected)
{
    std::string copies[] = {text, expected};
    for (std::string& copy : copies)
        std::replace_if(
            copy.begin(), copy.end(), [](char c) { return std::strchr(",;:()[]=", c) != nullptr; }, ' ');
    std::istringstream words(copies[0]), expectedWords(copies[1]);
    std::string word, expectedWord;
    for (int count = 1; expectedWords >> expectedWord; ++count) {
        ASSERT_TRUE(words >> word) << "ends before " << expectedWord;
        double number, expectedNumber;
        if (word == expectedWord || !isNumber(word, number) || !isNumber(expectedWord, expectedNumber)) {
            ASSERT_EQ(word, expectedWord) << "word " << count;
        } else {
            ASSERT_NEAR(number, expectedNumber, 2e-6 + 1e-5 * std::fabs(expectedNumber)) << "word " << count;
        }
    }
    EXPECT_FALSE(words >> word) << "goes on with " << word;
}

}  // namespace

// ---------------------------------------------------------------- rounding mode

TEST(RoundingMode, analysesDifferInTheLastDigitsOnly)
{
    const TempFolder folder;
    forEveryClass([&](auto c) {
        using T = typename decltype(c)::type;
        if (std::is_same_v<T, Regression>) return;  // has no data of its own, and so degrees of freedom beyond any accuracy
        const auto life = [&] {
            T object = analysed<T>(60);
            return told(object, folder);
        };
        const std::string expected = life();
        for (const Mode& m : directedModes) {
            SCOPED_TRACE(std::string(c.name) + ", " + m.name);
            expectCloseText(rounding(m.mode, life), expected);
        }
    });
}

TEST(RoundingMode, numbersBecomeTheSameText)
{
    std::mt19937_64 bits(20240229);
    std::vector<double> numbers = {0.5, 0.125, 2.5, 1e15 + 0.5, 0.1, 1e-5, 9.9999995, 123456.5, 1e300, 5e-324};
    for (int i = 0; i < 2000; ++i) {
        const std::uint64_t word = bits();
        double number;
        std::memcpy(&number, &word, sizeof number);
        numbers.push_back(number);
        numbers.push_back(std::ldexp(static_cast<double>(word >> 11), -static_cast<int>(word % 64)));
    }
    const TempFolder folder;
    const auto texts = [&] {
        BasicStatistics sample;
        BasicXyStatistics pairs;
        SingleAnova anova;
        for (const double number : numbers) sample.add(number), pairs.add(number, -number), anova.add(1.0, number);
        anova.createSeries();
        std::string text = printed([&] {
            sample.listData(0, numbers.size());
            pairs.listData(0, numbers.size());
        });
        const auto exported = [&](BasicStatistics& object) {
            const std::string path = folder.path("export");
            EXPECT_TRUE(object.exportToR(path, ""));
            return contentOf(path);
        };
        return text + exported(sample) + exported(pairs) + exported(anova);
    };
    const std::string expected = texts();
    for (const Mode& m : directedModes) EXPECT_TRUE(rounding(m.mode, texts) == expected) << m.name;
}

TEST(RoundingMode, textsBecomeNumbersWithinTheLastBit)
{
    std::mt19937_64 bits(20240301);
    std::string lines;
    for (int i = 0; i < 3000; ++i) {
        char line[64];
        const auto digits = static_cast<long long>(bits() % 10000000000000000ull >> bits() % 50);
        std::snprintf(line, sizeof line,
                      i % 3 == 0   ? "%lld.%03d\n"
                      : i % 3 == 1 ? "%lld.5e-%d\n"
                                   : "0.%lld%d\n",
                      digits, static_cast<int>(bits() % 200 + 100));
        lines += line;
    }
    const TempFolder folder;
    const std::string path = folder.write("data", lines);
    const auto read = [&] {
        BasicStatistics sample;
        EXPECT_TRUE(sample.readDataFile(path));
        return sample;
    };
    const BasicStatistics expected = read();
    ASSERT_EQ(expected.getSampleSize(), 3000u);
    for (const Mode& m : directedModes) {
        SCOPED_TRACE(m.name);
        const BasicStatistics sample = rounding(m.mode, read);
        ASSERT_EQ(sample.getSampleSize(), expected.getSampleSize());
        for (std::size_t i = 0; i < 3000; ++i) {
            const double x = sample.getDataPoint(i), nearest = expected.getDataPoint(i);
            ASSERT_TRUE(x == nearest || x == std::nextafter(nearest, m.mode == FE_UPWARD ? HUGE_VAL : 0.0)) << x << " for " << nearest;
        }
    }
}

TEST(RoundingMode, samplesAreSorted)
{
    std::mt19937_64 bits(20240302);
    std::vector<double> values;
    for (int i = 0; i < 50000; ++i) values.push_back(static_cast<double>(bits() >> 11) * (i % 5 == 0 ? 1e-16 : 1e-3));
    std::vector<double> expected = values;
    std::sort(expected.begin(), expected.end());
    for (const Mode& m : directedModes) {
        const BasicStatistics sample = rounding(m.mode, [&] {
            BasicStatistics filled;
            filled.copyFrom(values);
            filled.sortData();
            return filled;
        });
        std::size_t different = 0;
        for (std::size_t i = 0; i < values.size(); ++i) different += sample.getDataPoint(i) == expected[i] ? 0u : 1u;
        EXPECT_EQ(different, 0u) << m.name;
    }
}

TEST(RoundingMode, everyFunctionEnds)  // also where, rounded upwards, every term changes a sum and no number is halved to 0
{
    const double reals[] = {-2.0,
                            -1e-5,
                            0.0,
                            1e-300,
                            0.01,
                            0.5,
                            0.99,
                            1.0,
                            1.5,
                            10.0,
                            1e5,
                            1e300,
                            std::numeric_limits<double>::infinity(),
                            std::numeric_limits<double>::quiet_NaN()};
    const std::size_t counts[] = {0, 1, 2, 3, 5, 26, 51, 1001, static_cast<std::size_t>(-1)};
    for (const Mode& m : directedModes) {
        const std::size_t calls = rounding(m.mode, [&] {
            std::size_t ended = 0;
            const auto end = [&ended](double) { ++ended; };
            const wq_test::Capture message(std::cout);  // of the integrator
            for (const double x : reals) {
                for (const double p : {0.5, 1.0, 1.5, 500.5})
                    for (const double q : {0.5, 1.0, 2.5, 7.0})
                        for (const double beta : {-20.0, -3.0, 0.0, 5.0}) {
                            end(betaRatio(x, p, q, beta));
                            end(inverseBetaRatio(x, p, q, beta));
                        }
                for (const std::size_t n : counts) {
                    end(t_Prob(x, n, false));
                    end(t_PercentPoint(x, n));
                    end(chiSquarePoint(x, n));
                    end(rayleighsProb(x, n));
                    if (n > 1001) continue;
                    end(chiSquareProb(x, n));
                    end(binomial(n / 3, n, x));
                    for (const std::size_t k : counts) {
                        if (k > 1001) continue;
                        end(F_Prob(x, n, k));
                        end(F_PercentPoint(x, n, k));
                    }
                }
                end(normalProb(x));
                end(normalProbApprox(x));
                end(normalPercentPoint(x));
                end(D_Prob(x));
                end(quadratureIntegral(sqr, 0.0, x));
            }
            end(t_Prob(0.5, 10000001, false));
            constexpr double p = 8.4620363071413022e-107, q = 2.3193841024599808e-257;  // the series leaves the range of double
            end(inverseBetaRatio(0.31759996871313101, p, q, lnGamma(p) + lnGamma(q) - lnGamma(p + q)));
            end(F_PercentPoint(-1e-5, 10, 3));
            return ended;
        });
        EXPECT_GT(calls, 3000u) << m.name;
    }
}

TEST(RoundingMode, ofTheFirstCallDoesNotStay)  // ln gamma keeps what it computes at first; in a process that did not call it yet
{
    for (const Mode& m : directedModes) {
        const int status = inAChild([&] {
            std::fesetround(m.mode);
            volatile double first = lnGamma(100.5);
            static_cast<void>(first);
            if (std::fegetround() != m.mode) return 2;
            std::fesetround(FE_TONEAREST);
            for (int i = 3; i <= 256; ++i) {  // the products themselves, as for arguments that are not kept
                double product = 0.0;
                double y = 0.5 * i - 1.0;
                for (; y > 0.0; y -= 1.0) product += std::log(y);
                if (y < 0.0) product += 0.5723649429247001;
                if (!wq_test::sameBits(lnGamma(0.5 * i), product)) return 1;
            }
            return 0;
        });
        EXPECT_EQ(status, 0) << m.name;
    }
}

TEST(RoundingMode, randomNumbersStayInTheirRange)
{
    for (const Mode& m : directedModes) {
        EXPECT_TRUE(rounding(m.mode, [] {
            RandomCpp11 random;
            RandomCpp11 integers;
            bool inside = true;
            for (int i = 0; i < 100000; ++i) {
                const double x = random.getReal();
                inside = inside && x >= 0.0 && x < 1.0 && integers.getInteger(6) <= 6;
            }
            return inside;
        })) << m.name;
    }
}

// ---------------------------------------------------------------- exception flags

TEST(ExceptionFlags, areNeverClearedOrMasked)
{
    const TempFolder folder;
    forEveryClass([&](auto c) {
        using T = typename decltype(c)::type;
        SCOPED_TRACE(c.name);
        for (const int flag : {FE_DIVBYZERO, FE_INEXACT, FE_INVALID, FE_OVERFLOW, FE_UNDERFLOW}) {
            std::feclearexcept(FE_ALL_EXCEPT);
            std::feraiseexcept(flag);
            T object = analysed<T>(9);
            told(object, folder);
            EXPECT_NE(std::fetestexcept(flag), 0) << flag;
        }
        std::feclearexcept(FE_ALL_EXCEPT);
#ifdef __GLIBC__
        const int trapsBefore = fegetexcept();
        T object = analysed<T>(9);
        told(object, folder);
        EXPECT_EQ(fegetexcept(), trapsBefore);
#endif
    });
}

#ifdef __GLIBC__
TEST(ExceptionFlags, aHostThatTrapsThemIsEndedByAResultThatIsNaN)  // for such results are computed, not looked for
{
    EXPECT_EQ(inAChild([] {
                  std::signal(SIGFPE, SIG_DFL);  // sanitizers have a handler
                  feenableexcept(FE_DIVBYZERO | FE_INVALID);
                  SingleAnova empty;
                  empty.analyse();
                  return 0;
              }),
              100 + SIGFPE);
}
#endif

// ---------------------------------------------------------------- fork

TEST(Fork, parentAndChildGoOnWithTheirOwnObjects)
{
    const TempFolder folder;
    forEveryClass([&](auto c) {
        using T = typename decltype(c)::type;
        SCOPED_TRACE(c.name);
        T object = analysed<T>(9);
        T undisturbed = object;
        const std::string expected = told(undisturbed, folder);
        const std::string path = folder.path("told by the child");
        const int status = inAChild([&] {
            const std::string text = told(object, folder);
            fill(object, 5);
            prepare(object);
            object.analyse();
            folder.write("told by the child", text);
            return 0;
        });
        EXPECT_EQ(status, 0);
        EXPECT_EQ(contentOf(path), expected);
        EXPECT_EQ(told(object, folder), expected) << "the parent's";
    });
}

TEST(Fork, whatIsPrintedIsPrintedOnce)  // nothing waits in a buffer that both processes would empty
{
    const TempFolder folder;
    BasicStatistics sample = analysed<BasicStatistics>(9);
    TwoSamples variances = analysed<TwoSamples>(9);
    const std::string report = printed([&] { sample.reportConsole(); }), message = printed([&] { variances.reportConsole(); });
    {
        const StandardOutputTo file(folder.path("output"));
        sample.reportConsole();
        variances.reportConsole();
        const int status = inAChild([&] {
            sample.reportConsole();
            std::fflush(nullptr);  // as exit() does
            return 0;
        });
        EXPECT_EQ(status, 0);
        variances.reportConsole();
    }
    EXPECT_EQ(contentOf(folder.path("output")), report + message + report + message);
}

TEST(Fork, bothProcessesWriteFiles)
{
    const TempFolder folder;
    std::string path = folder.path("open");
    CsvReport file;
    file.setFileName(path);
    ASSERT_TRUE(file.fileOpen());
    file.cell("written before", false);
    file.writeEol();
    BasicStatistics sample = analysed<BasicStatistics>(9);
    const int status = inAChild([&] { return sample.exportToR(folder.path("by the child"), "c") ? 0 : 1; });
    EXPECT_EQ(status, 0);
    file.cell("written after", false);
    file.writeEol();
    EXPECT_TRUE(file.fileClose());
    EXPECT_EQ(contentOf(path), "written before\nwritten after\n") << "a child that ends by _exit leaves open files alone";
    EXPECT_TRUE(sample.exportToR(folder.path("by the parent"), "c"));
    EXPECT_EQ(contentOf(folder.path("by the parent")), contentOf(folder.path("by the child")));
}

TEST(Fork, eachProcessDrawsTheSameNumbersFromThereOn)
{
    const TempFolder folder;
    RandomCpp11 undisturbed;
    RandomCpp11 random;
    random.getReal();
    undisturbed.getReal();
    const std::string expected = std::to_string(undisturbed.getInteger());
    EXPECT_EQ(inAChild([&] {
                  folder.write("drawn", std::to_string(random.getInteger()));
                  return 0;
              }),
              0);
    EXPECT_EQ(contentOf(folder.path("drawn")), expected);
    EXPECT_EQ(std::to_string(random.getInteger()), expected) << "the child's draw is not the parent's";
}
