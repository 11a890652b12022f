// Different objects in different threads at the same time: each gives what it gives alone. Run under the thread sanitizer too.
#include <wq_stat/wq_stat.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <iostream>
#include <streambuf>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include "support/console.h"
#include "support/files.h"
#include "support/object_lives.h"

using namespace wq_lib;
using ::testing::HasSubstr;
using wq_test::contentOf;
using wq_test::fill;
using wq_test::forEveryClass;
using wq_test::isPaired;
using wq_test::prepare;
using wq_test::printed;
using wq_test::printMore;
using wq_test::StandardOutputTo;
using wq_test::TempFolder;
using wq_test::toldQuietly;
using wq_test::xOf;
using wq_test::yOf;

namespace {

constexpr std::size_t threadCount = 8;

// Runs task(0) ... task(7), each in a thread of its own.
template <typename Task>
void inThreads(Task&& task)
{
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < threadCount; ++i) threads.emplace_back([&task, i] { task(i); });
    for (std::thread& thread : threads) thread.join();
}

// Standard output that keeps the text of each thread apart.
class PerThread : public std::streambuf {
public:
    PerThread() : before(std::cout.rdbuf(this)) {}
    ~PerThread() override { std::cout.rdbuf(before); }
    PerThread(const PerThread&) = delete;
    PerThread& operator=(const PerThread&) = delete;

    static std::string taken() { return std::exchange(text, ""); }

protected:
    int_type overflow(int_type c) override
    {
        if (!traits_type::eq_int_type(c, traits_type::eof())) text += traits_type::to_char_type(c);
        return traits_type::not_eof(c);
    }
    std::streamsize xsputn(const char* s, std::streamsize n) override
    {
        text.append(s, static_cast<std::size_t>(n));
        return n;
    }

private:
    static thread_local std::string text;
    std::streambuf* before;
};

thread_local std::string PerThread::text;

// The life of an object of every class, loaded from files of its own, and a few numbers of the distributions and of a generator.
std::string livesOfAll(const TempFolder& folder, std::size_t seed)
{
    std::string text;
    std::string content = "# data of thread " + std::to_string(seed) + "\n";
    for (std::size_t i = 0; i < 40; ++i)
        content += std::to_string(xOf(i + seed)) + (i % 2 == 0 ? ";" : ":|") + std::to_string(yOf(i * seed)) + "\n";
    const std::string file = folder.write("data" + std::to_string(seed), content);
    const std::string series = folder.write("series" + std::to_string(seed), "1:10:2\n2;" + std::to_string(seed) + "\n# note\n3|30|1\n");
    forEveryClass([&](auto c) {
        using T = typename decltype(c)::type;
        T object;
        bool read = object.readDataFile(file);
        if constexpr (std::is_same_v<T, LinearRegressionMultiY>) read = read && object.readSeriesFile(series);
        prepare(object);
        const bool analysed = object.analyse();
        text += std::string(c.name) + (read ? " read" : "") + (analysed ? " analysed\n" : "\n") + toldQuietly(object, folder);
        object.reportConsole();
        object.listData(0, 30);
        printMore(object);
        text += PerThread::taken();
    });
    wq_test::Transcript figures;
    const std::size_t df = seed + 2;
    figures << F_Prob(1.5, df, 12) << F_PercentPoint(0.95, 1, 20 + df) << t_PercentPoint(0.05, df) << chiSquarePoint(0.9, df)
            << D_TwoSamples(0.05, 30, 30 + df) << normalProb(0.1 * static_cast<double>(df)) << binomial(df, 20, 0.3) << factorial(df)
            << quadratureIntegral(sqr, 0.0, static_cast<double>(df)) << lnGamma(200.0 + static_cast<double>(df));
    RandomCpp11 random;
    for (std::size_t i = 0; i < 100 * seed; ++i) random.getInteger();
    figures << std::to_string(random.getInteger({0.25, 0.5, 0.25})) << random.getReal();
    return text + figures.text;
}

}  // namespace

TEST(Threads, differentObjectsGiveWhatTheyGiveAlone)
{
    const TempFolder folder;
    const PerThread output;
    std::vector<std::string> alone, together(threadCount);
    for (std::size_t i = 0; i < threadCount; ++i) alone.push_back(livesOfAll(folder, i + 1));
    for (std::size_t i = 1; i < threadCount; ++i) ASSERT_NE(alone[i], alone[0]);
    EXPECT_THAT(alone[0], HasSubstr("KOLMOGOROV-SMIRNOV TWO SAMPLE TEST\n"));
    for (int repeat = 0; repeat < 5; ++repeat) {
        inThreads([&](std::size_t i) { together[i] = livesOfAll(folder, i + 1); });
        for (std::size_t i = 0; i < threadCount; ++i) EXPECT_EQ(together[i], alone[i]) << "thread " << i;
    }
}

TEST(Threads, largeSamplesAreSortedSideBySide)  // with all the workspace that large samples take
{
    std::vector<double> values;
    for (std::size_t i = 0; i < 100000; ++i) values.push_back(static_cast<double>(i * 7919 % 100003));
    const auto median = [&values](std::size_t i) {
        BasicStatistics sample;
        sample.copyFrom(values);
        sample.add(1e6 * static_cast<double>(i));
        sample.analyse();
        return sample.getResult().median + sample.getResult().max;
    };
    std::vector<double> alone, together(threadCount);
    for (std::size_t i = 0; i < threadCount; ++i) alone.push_back(median(i));
    inThreads([&](std::size_t i) { together[i] = median(i); });
    EXPECT_EQ(together, alone);
}

TEST(Threads, oneDataFileIsReadByAll)
{
    const TempFolder folder;
    std::string content = "# one file\n";
    for (int i = 0; i < 20000; ++i) content += std::to_string(i % 1000) + ";" + std::to_string(i) + "\n";
    const std::string path = folder.write("data", content);
    std::vector<double> sums(threadCount);
    inThreads([&](std::size_t i) {
        BasicXyStatistics pairs;
        if (pairs.readDataFile(path) && pairs.analyse()) sums[i] = pairs.getXyResult().y.sum;
    });
    EXPECT_EQ(sums, std::vector<double>(threadCount, 19999.0 * 20000.0 / 2.0));
}

TEST(Threads, reportsOnStandardOutputStayWhole)  // while the host leaves its streams synchronised with stdio, as they are at first
{
    constexpr int repeats = 20;
    const TempFolder folder;
    const auto reportOf = [](std::size_t i, int count) {
        LinearRegression regression;
        fill(regression, 5 + i);
        regression.setComment("thread " + std::to_string(i));
        regression.analyse();
        for (int k = 0; k < count; ++k) regression.reportConsole();
    };
    std::vector<std::string> reports;
    for (std::size_t i = 0; i < threadCount; ++i) reports.push_back(printed([&] { reportOf(i, 1); }));
    {
        const StandardOutputTo file(folder.path("output"));
        inThreads([&](std::size_t i) { reportOf(i, repeats); });
    }
    std::string left = contentOf(folder.path("output"));
    std::vector<int> found(threadCount);
    while (!left.empty()) {
        std::size_t i = 0;
        while (i < threadCount && left.compare(0, reports[i].size(), reports[i]) != 0) ++i;
        ASSERT_LT(i, threadCount) << "no whole report begins here:\n" << left.substr(0, 2000);
        ++found[i];
        left.erase(0, reports[i].size());
    }
    EXPECT_EQ(found, std::vector<int>(threadCount, repeats));
}
