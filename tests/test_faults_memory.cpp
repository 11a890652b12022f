// Memory that runs out at every single allocation of every operation: std::bad_alloc leaves, the object is as the manual says, nothing
// is lost, and the operation done once more gives what it gives undisturbed.
#include <wq_report/csv_report.h>
#include <wq_stat/wq_stat.h>
#include <wq_udf/console.h>
#include <wq_udf/text.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iostream>
#include <limits>
#include <new>
#include <optional>
#include <sstream>
#include <streambuf>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "support/files.h"
#include "support/object_lives.h"

using namespace wq_lib;
using wq_test::analysed;
using wq_test::contentOf;
using wq_test::fill;
using wq_test::forEveryClass;
using wq_test::isPaired;
using wq_test::prepare;
using wq_test::stateOf;
using wq_test::TempFolder;
using wq_test::told;
using wq_test::xOf;
using wq_test::yOf;

// ---------------------------------------------------------------- memory that runs out on demand

namespace {

enum class Shortage { once, lasting };  // one allocation fails; or that one and all after it

struct Memory {
    bool limited = false;
    std::size_t left = 0;  // allocations that succeed before the first that fails
    Shortage shortage = Shortage::once;
    bool ranOut = false;
    long long live = 0;  // allocations that were not given back
};

Memory memory;

void* allocate(std::size_t size, std::size_t alignment = alignof(std::max_align_t)) noexcept
{
    if (memory.limited) {
        if (memory.left == 0) {
            memory.ranOut = true;
            memory.limited = memory.shortage == Shortage::lasting;
            return nullptr;
        }
        --memory.left;
    }
    void* const block = std::aligned_alloc(alignment, (std::max<std::size_t>(size, 1) + alignment - 1) / alignment * alignment);
    if (block != nullptr) ++memory.live;
    return block;
}

void* allocateOrThrow(std::size_t size, std::size_t alignment = alignof(std::max_align_t))
{
    void* const block = allocate(size, alignment);
    if (block == nullptr) throw std::bad_alloc();
    return block;
}

void release(void* block) noexcept
{
    if (block != nullptr) --memory.live;
    std::free(block);
}

}  // namespace

void* operator new(std::size_t size) { return allocateOrThrow(size); }
void* operator new[](std::size_t size) { return allocateOrThrow(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void* operator new(std::size_t size, std::align_val_t alignment) { return allocateOrThrow(size, static_cast<std::size_t>(alignment)); }
void* operator new[](std::size_t size, std::align_val_t alignment) { return allocateOrThrow(size, static_cast<std::size_t>(alignment)); }
void operator delete(void* block) noexcept { release(block); }
void operator delete[](void* block) noexcept { release(block); }
void operator delete(void* block, std::size_t) noexcept { release(block); }
void operator delete[](void* block, std::size_t) noexcept { release(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { release(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { release(block); }
void operator delete(void* block, std::align_val_t) noexcept { release(block); }
void operator delete[](void* block, std::align_val_t) noexcept { release(block); }
void operator delete(void* block, std::size_t, std::align_val_t) noexcept { release(block); }
void operator delete[](void* block, std::size_t, std::align_val_t) noexcept { release(block); }

namespace {

/** What a call did when only some allocations were to succeed. */
enum class Outcome { done, refused, ranOut };

template <typename Call>
Outcome withMemoryFor(std::size_t allocations, Shortage shortage, Call&& call)
{
    memory.left = allocations;
    memory.shortage = shortage;
    memory.ranOut = false;
    memory.limited = true;
    try {
        const bool done = call();
        memory.limited = false;
        return done ? Outcome::done : Outcome::refused;
    } catch (const std::bad_alloc&) {
        memory.limited = false;
        return Outcome::ranOut;
    } catch (...) {
        memory.limited = false;
        throw;
    }
}

/** Standard output and error in an array, since a text would take memory of its own. */
class Output : public std::streambuf {
public:
    Output() : coutBefore(std::cout.rdbuf(this)), cerrBefore(std::cerr.rdbuf(this)) { setp(text.data(), text.data() + text.size()); }
    ~Output() override
    {
        std::cout.rdbuf(coutBefore);
        std::cerr.rdbuf(cerrBefore);
    }
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    std::string taken()
    {
        std::string result(pbase(), pptr());
        setp(text.data(), text.data() + text.size());
        return result;
    }

private:
    std::array<char, 1 << 16> text;
    std::streambuf* coutBefore;
    std::streambuf* cerrBefore;
};

// ---------------------------------------------------------------- one operation

/** Refers to a callable, which has to outlive it. There are hundreds of them, and a std::function for each takes half as long again to
 * compile. */
template <typename T>
class Call {
public:
    template <typename F>
    Call(const F& f) : callable(&f),
                       invoke([](const void* named, T& object) -> bool { return (*static_cast<const F*>(named))(object); })
    {
    }
    bool operator()(T& object) const { return invoke(callable, object); }

private:
    const void* callable;
    bool (*invoke)(const void* callable, T& object);
};

/**
 * An operation on an object, and the states in which an object may be left when memory runs out: none named means that nothing may
 * have changed. The operation is done again from there.
 */
template <typename T>
struct Operation {
    const char* name;
    Call<T> run;
    std::vector<T> leftAs = {};
    std::string file = "";  // that it writes
};

/** An operation and the object on which it is tried, of whichever class. */
class Trial {
public:
    virtual ~Trial() = default;
    virtual std::size_t states() const = 0;         // in which the object may be left; the last is the one before the operation
    virtual void startFrom(std::size_t state) = 0;  // with an object made anew
    virtual bool run() = 0;
    virtual std::string told() const = 0;  // the state of the object
    virtual void end() = 0;                // gives the object back
};

template <typename T>
class TrialOf : public Trial {
public:
    TrialOf(const T& object, const Operation<T>& tried, const TempFolder& where) : operation(tried.run), starts(tried.leftAs), folder(where)
    {
        starts.push_back(object);
    }
    std::size_t states() const override { return starts.size(); }
    void startFrom(std::size_t state) override { current.emplace(starts[state]); }
    bool run() override { return operation(*current); }
    std::string told() const override { return stateOf(*current, folder); }
    void end() override { current.reset(); }

private:
    Call<T> operation;
    std::vector<T> starts;
    const TempFolder& folder;
    std::optional<T> current;
};

struct State {
    std::string left, afterAll;
};

std::string contentIfWritten(const std::string& file) { return file.empty() ? "" : contentOf(file); }

/** What the operation prints and writes when it is not disturbed. */
std::string outputOf(Trial& trial, const std::string& file)
{
    Output output;
    std::filesystem::remove(file);
    EXPECT_TRUE(trial.run()) << "undisturbed";
    return output.taken() + contentIfWritten(file);
}

void expectTrialToHold(Trial& trial, const std::string& file)
{
    std::vector<State> states;
    std::string output;
    for (std::size_t i = 0; i < trial.states(); ++i) {
        trial.startFrom(i);
        const std::string left = trial.told();
        output = outputOf(trial, file);
        states.push_back({left, trial.told()});
        trial.end();
    }

    std::size_t failures = 0;
    for (const Shortage shortage : {Shortage::once, Shortage::lasting}) {
        for (std::size_t k = 0;; ++k) {
            ASSERT_LT(k, 10000u) << "there is no end";
            const long long before = memory.live;
            bool ranOut = false;
            {
                trial.startFrom(states.size() - 1);
                std::string printed;
                Outcome outcome;
                {
                    std::filesystem::remove(file);
                    Output captured;
                    outcome = withMemoryFor(k, shortage, [&] { return trial.run(); });
                    printed = captured.taken();
                }
                ranOut = memory.ranOut;
                SCOPED_TRACE("with memory for " + std::to_string(k) + (shortage == Shortage::once ? " and then more" : ""));
                if (outcome == Outcome::done) {  // also where the standard library made do without the memory
                    EXPECT_EQ(printed + contentIfWritten(file), output);
                    EXPECT_EQ(trial.told(), states.back().afterAll);
                } else {
                    EXPECT_EQ(outcome, Outcome::ranOut);
                    EXPECT_EQ(printed, "") << "a text that is printed is whole";
                    const std::string left = trial.told();
                    const auto state = std::find_if(states.begin(), states.end(), [&](const State& s) { return s.left == left; });
                    if (state == states.end()) {
                        ADD_FAILURE() << "left as\n" << left << "\ninstead of\n" << states.back().left;
                    } else {
                        EXPECT_EQ(outputOf(trial, file), output);
                        EXPECT_EQ(trial.told(), state->afterAll);
                    }
                    ++failures;
                }
                trial.end();
            }
            EXPECT_EQ(memory.live, before) << "not given back";
            if (!ranOut || ::testing::Test::HasFailure()) break;
        }
    }
    EXPECT_GT(failures, 0u) << "takes no memory";
}

template <typename T>
void expectToHold(const char* className, const T& object, const Operation<T>& operation, const TempFolder& folder)
{
    SCOPED_TRACE(std::string(className) + ": " + operation.name);
    TrialOf<T> trial(object, operation, folder);
    expectTrialToHold(trial, operation.file);
}

const std::string longName = "a name that takes memory because it is long";

/** The states between: an object after each of the steps. */
template <typename T, typename Step>
std::vector<T> after(const T& object, std::size_t steps, Step&& step)
{
    std::vector<T> states;
    for (std::size_t count = 0; count <= steps; ++count) {
        T changed = object;
        step(changed, count);
        states.push_back(changed);
    }
    return states;
}

/** An object of each class with data alone. */
template <typename T>
T filled(std::size_t n = 9)
{
    T object;
    fill(object, n);
    return object;
}

template <typename T, typename Change>
T with(T object, Change&& change)
{
    change(object);
    return object;
}

}  // namespace

// ---------------------------------------------------------------- every class

TEST(MemoryRunsOut, objectsAreMadeAndCopied)
{
    const TempFolder folder;
    forEveryClass([&](auto c) {
        using T = typename decltype(c)::type;
        const T object = analysed<T>(9, longName);
        std::optional<T> made;
        made.emplace();  // what standard libraries set up once
        std::size_t failures = 0;
        for (const Shortage shortage : {Shortage::once, Shortage::lasting}) {
            for (const bool copied : {false, true}) {
                for (std::size_t k = 0;; ++k) {
                    SCOPED_TRACE(std::string(c.name) + ", " + std::to_string(k));
                    made.reset();
                    const long long before = memory.live;
                    const Outcome outcome = withMemoryFor(k, shortage, [&] {
                        if (copied)
                            made.emplace(object);
                        else
                            made.emplace();
                        return true;
                    });
                    if (outcome == Outcome::done) {
                        EXPECT_FALSE(memory.ranOut);
                        EXPECT_EQ(stateOf(*made, folder), stateOf(copied ? object : T(), folder));
                        break;
                    }
                    EXPECT_FALSE(made.has_value());
                    EXPECT_EQ(memory.live, before) << "not given back";
                    ++failures;
                }
            }
        }
        EXPECT_GT(failures, 0u);
    });
}

TEST(MemoryRunsOut, anAssignedObjectCanBeAssignedAgain)  // the members that were copied before stay copied
{
    const TempFolder folder;
    forEveryClass([&](auto c) {
        using T = typename decltype(c)::type;
        SCOPED_TRACE(c.name);
        const T source =
            with<T>(analysed<T>(20, longName), [](T& object) { object.setHypothesisInfo(longName), object.setDataFile(longName); });
        const std::string expected = stateOf(source, folder);
        std::size_t failures = 0;
        for (const Shortage shortage : {Shortage::once, Shortage::lasting}) {
            for (std::size_t k = 0;; ++k) {
                const long long before = memory.live;
                {
                    T object = analysed<T>(5, longName);
                    const Outcome outcome = withMemoryFor(k, shortage, [&] {
                        object = source;
                        return true;
                    });
                    if (outcome == Outcome::ranOut) {
                        stateOf(object, folder);  // nothing outside the data is read
                        object = source;
                        ++failures;
                    }
                    EXPECT_EQ(stateOf(object, folder), expected);
                }
                EXPECT_EQ(memory.live, before) << "not given back";
                if (!memory.ranOut) break;
            }
        }
        EXPECT_GT(failures, 0u);
    });
}

TEST(MemoryRunsOut, movesGoOn)  // only texts of a new object may be missing where the move was from
{
    const TempFolder folder;
    forEveryClass([&](auto c) {
        using T = typename decltype(c)::type;
        const T source = analysed<T>(9, longName);
        const std::string expected = stateOf(source, folder), fresh = stateOf(T(), folder);
        for (const Shortage shortage : {Shortage::once, Shortage::lasting}) {
            std::size_t shortages = 0;
            for (bool ranOut = true; ranOut;) {
                SCOPED_TRACE(std::string(c.name) + ", " + std::to_string(shortages));
                T object = source;
                T target = analysed<T>(5, longName);
                const auto move = [&] {
                    T moved(std::move(object));
                    target = std::move(moved);
                    return true;
                };
                EXPECT_EQ(withMemoryFor(shortages, shortage, move), Outcome::done);
                ranOut = memory.ranOut;
                EXPECT_EQ(stateOf(target, folder), expected);
                object.setHypothesisInfo(T().getHypothesisInfo());
                object.clearColumnNames();
                for (const std::string& name : wq_test::columns<T>()) object.addColumnName(name);
                EXPECT_EQ(stateOf(object, folder), fresh);
                shortages += ranOut ? 1 : 0;
                ASSERT_LT(shortages, 1000u) << "there is no end";
            }
            EXPECT_GT(shortages, 0u);
        }
    });
}

TEST(MemoryRunsOut, whileSettingsAreMade)
{
    const TempFolder folder;
    forEveryClass([&](auto c) {
        using T = typename decltype(c)::type;
        const T object = filled<T>();
        const auto check = [&](const char* name, Call<T> run) { expectToHold<T>(c.name, object, {name, run}, folder); };
        check("setDataFile", [](T& o) { return o.setDataFile(longName), true; });
        check("setHypothesisInfo", [](T& o) { return o.setHypothesisInfo(longName + longName), true; });
        check("setComment", [](T& o) { return o.setComment(longName), true; });
        check("addColumnName", [](T& o) { return o.addColumnName(longName), true; });
    });
    expectToHold<Circular>("Circular", {}, {"setBinName", [](Circular& o) { return o.setBinName(longName), true; }}, folder);

    BasicStatistics named;
    named.setDataFile(longName), named.setHypothesisInfo(longName), named.setComment(longName);
    named.clearColumnNames(), named.addColumnName(longName);
    using Getter = std::string (BasicStatistics::*)() const;
    for (const Getter get :
         {Getter(&BasicStatistics::getDataFile), Getter(&BasicStatistics::getHypothesisInfo), Getter(&BasicStatistics::getComment)})
        expectToHold<BasicStatistics>("", named, {"getter", [get](BasicStatistics& o) { return (o.*get)() == longName; }}, folder);
    expectToHold<BasicStatistics>("", named, {"getColumnName", [](BasicStatistics& o) { return o.getColumnName(0) == longName; }}, folder);
}

TEST(MemoryRunsOut, whileTheSampleIsFilled)
{
    const TempFolder folder;
    constexpr std::size_t more = 40;
    forEveryClass([&](auto c) {
        using T = typename decltype(c)::type;
        const T object = filled<T>(8);  // whose next observation takes new memory
        expectToHold<T>(c.name, object, {"add", [](T& o) { return fill(o, 1), true; }}, folder);
        expectToHold<T>(c.name, object, {"initDataList", [](T& o) { return o.initDataList(1000), true; }}, folder);

        // what was appended before stays, in order
        if constexpr (isPaired<T>) {
            std::vector<data_pair> values;
            for (std::size_t i = 0; i < more; ++i) values.push_back({xOf(i), yOf(i)});
            const auto some = after(object, more, [](T& o, std::size_t n) { fill(o, n); });
            expectToHold<T>(c.name, object, {"copyFrom", [&](T& o) { return o.copyFrom(values) > 0; }, some}, folder);
        } else {
            std::vector<double> values;
            for (std::size_t i = 0; i < more; ++i) values.push_back(yOf(i));
            const auto some = after(object, more, [](T& o, std::size_t n) { fill(o, n); });
            expectToHold<T>(c.name, object, {"copyFrom", [&](T& o) { return o.copyFrom(values) > 0; }, some}, folder);
        }
    });
}

// ---------------------------------------------------------------- files

namespace {

/** A file and its first lines, under one name. */
class GrowingFile {
public:
    GrowingFile(const TempFolder& where, std::vector<std::string> lines) : folder(where), all(std::move(lines)) { cut(all.size()); }

    void cut(std::size_t count) const
    {
        std::string content;
        for (std::size_t i = 0; i < count; ++i) content += all[i];
        std::filesystem::remove(path());  // some file systems are slow to write a file anew
        folder.write("data", content);
    }
    std::size_t size() const { return all.size(); }
    std::string path() const { return folder.path("data"); }

private:
    const TempFolder& folder;
    std::vector<std::string> all;
};

}  // namespace

TEST(MemoryRunsOut, whileAFileIsRead)  // the lines before stay, as when the file ended there
{
    const TempFolder folder;
    std::vector<std::string> lines = {"1.5;2.5\n", "# a first comment that is long\n", "3;4\n", "2.25;1e3\n",
                                      "#another comment that is longer than the first one was, so that it takes more memory\n"};
    for (int i = 0; i < 20; ++i) lines.push_back(std::to_string(7 * i % 5) + ";" + std::to_string(i % 3) + "\n");
    const GrowingFile file(folder, lines);
    forEveryClass([&](auto c) {
        using T = typename decltype(c)::type;
        const T object = with<T>(filled<T>(2), [](T& o) { o.setComment("c"); });
        const auto read = [&](T& o) { return o.readDataFile(file.path()); };
        const auto some = after(object, file.size(), [&](T& o, std::size_t n) {
            file.cut(n);
            read(o);
            file.cut(file.size());
        });
        expectToHold<T>(c.name, object, {"readDataFile", read, some}, folder);
    });
}

TEST(MemoryRunsOut, whileASeriesFileIsRead)
{
    const TempFolder folder;
    const GrowingFile file(folder, {"1;10;2\n", "# comment\n", "2;20\n", "3:|30:1\n", "4;40;3\n", "5;1\n", "6;2\n"});
    const LinearRegressionMultiY object = filled<LinearRegressionMultiY>();
    const auto read = [&](LinearRegressionMultiY& o) { return o.readSeriesFile(file.path()); };
    std::vector<LinearRegressionMultiY> some = {object};
    const std::size_t counts[] = {2, 2, 1, 3, 3, 3};  // of each line with data
    const double rows[][2] = {{1, 10}, {2, 20}, {3, 30}, {4, 40}, {5, 1}, {6, 2}};
    {
        LinearRegressionMultiY o = object;  // a line's repetitions come one by one
        file.cut(0);
        read(o);
        file.cut(file.size());
        some.push_back(o);
        for (std::size_t i = 0; i < 6; ++i)
            for (std::size_t k = 0; k < counts[i]; ++k) {
                o.add(rows[i][0], rows[i][1]);
                some.push_back(o);
            }
    }
    expectToHold<LinearRegressionMultiY>("LinearRegressionMultiY", object, {"readSeriesFile", read, some}, folder);
}

TEST(MemoryRunsOut, whileAFileIsWritten)
{
    const TempFolder folder;
    const std::string path = folder.path("written by the operation");
    forEveryClass([&](auto c) {
        using T = typename decltype(c)::type;
        const T object = with<T>(analysed<T>(9, longName), [](T& o) {
            o.clearColumnNames();
            for (int i = 0; i < 2; ++i) o.addColumnName(longName + "\"");
        });
        const T before = filled<T>();
        const auto write = [&](T& o) { return o.exportToR(path, "comment that is long enough\nof two lines"); };
        expectToHold<T>(c.name, object, {"exportToR", write, {}, path}, folder);
        // the univariate export corrects the end of the range
        expectToHold<T>(c.name, before, {"exportToR before analyse", write, {with<T>(before, write)}, path}, folder);
    });
    expectToHold<Frequency>("Frequency", analysed<Frequency>(9, longName),
                            {"exportTable", [&](Frequency& o) { return o.exportTable(path, longName); }, {}, path}, folder);
}

// ---------------------------------------------------------------- analyses

TEST(MemoryRunsOut, whileASampleIsAnalysed)  // where sorting takes memory: the record is reset, the sample as it was
{
    const TempFolder folder;
    const auto check = [&](const char* name, const auto& object) {
        using T = std::decay_t<decltype(object)>;
        const T reset = with<T>(object, [](T& o) { o.resetResult(); });
        const T ranged = with<T>(reset, [](T& o) { o.setDataRange(); });
        const std::vector<T> left = {reset, ranged};
        expectToHold<T>(name, object, {"analyse", [](T& o) { return o.analyse(); }, left}, folder);
        expectToHold<T>(name, object, {"sortData", [](T& o) { return o.sortData(), true; }}, folder);
        expectToHold<T>(name, object, {"quantile", [](T& o) { return o.quantile(1.0, 3), true; }}, folder);
        expectToHold<T>(name, object, {"median", [](T& o) { return o.median(), true; }}, folder);
        expectToHold<T>(name, object, {"quartile", [](T& o) { return o.quartile(3.0), true; }}, folder);
    };
    const auto withNegativeZero = [](auto object) {  // without one a processor with AVX-512 sorts in place
        object.add(-0.0);
        return object;
    };
    check("BasicStatistics", withNegativeZero(filled<BasicStatistics>(100)));
    check("Frequency", withNegativeZero(filled<Frequency>(600)));  // more than are sorted by insertion

    const Frequency object = withNegativeZero(filled<Frequency>(100));
    const Frequency reset = with<Frequency>(object, [](Frequency& o) { o.resetResult(); });
    expectToHold<Frequency>("Frequency", object, {"autoClassWidth", [](Frequency& o) { return o.autoClassWidth(4); }, {reset}}, folder);
    expectToHold<Frequency>("Frequency", object, {"initFrequency", [](Frequency& o) { return o.initFrequency(50); }}, folder);
    expectToHold<Frequency>("Frequency", analysed<Frequency>(9, longName),
                            {"initFrequency, again", [](Frequency& o) { return o.initFrequency(50); }}, folder);
}

TEST(MemoryRunsOut, whileALargeSampleIsSorted)  // whichever way it is sorted, and with NaN values to set apart
{
    const double NaN = std::numeric_limits<double>::quiet_NaN();
    for (const std::size_t n : {30u, 2000u, 40000u}) {
        for (const bool crowded : {false, true}) {
            for (const bool holed : {false, true}) {
                SCOPED_TRACE(std::to_string(n) + (crowded ? ", crowded" : "") + (holed ? ", with NaN" : ""));
                std::vector<double> values;
                for (std::size_t i = 0; i < n; ++i) {
                    const double x = static_cast<double>(i * 7919 % 100003);
                    values.push_back(holed && i % 10 == 0 ? NaN : crowded ? std::exp(std::fmod(x, 600.0)) : x);
                }
                values[1] = -0.0;  // else a processor with AVX-512 sorts without memory
                std::vector<double> expected = values;
                std::sort(expected.begin(), expected.end(), [](double a, double b) { return std::isnan(b) ? !std::isnan(a) : a < b; });
                std::size_t failures = 0;
                for (const Shortage shortage : {Shortage::once, Shortage::lasting}) {
                    for (std::size_t k = 0;; ++k) {
                        const long long before = memory.live;
                        {
                            BasicStatistics sample;
                            sample.copyFrom(values);
                            const auto sort = [&] { return sample.sortData(), true; };
                            if (withMemoryFor(k, shortage, sort) == Outcome::ranOut) {
                                ++failures;
                                EXPECT_FALSE(sample.isSorted());
                                sample.sortData();
                            }
                            ASSERT_EQ(sample.getSampleSize(), n);
                            std::size_t different = 0;
                            for (std::size_t i = 0; i < n; ++i) {
                                const double x = sample.getDataPoint(i);
                                if (!(x == expected[i]) && !(std::isnan(x) && std::isnan(expected[i]))) ++different;
                            }
                            EXPECT_EQ(different, 0u);
                        }
                        EXPECT_EQ(memory.live, before) << "not given back";
                        if (!memory.ranOut) break;
                    }
                }
                EXPECT_GT(failures, 0u);
            }
        }
    }
}

TEST(MemoryRunsOut, whileGroupsAreGathered)
{
    const TempFolder folder;
    const double NaN = std::numeric_limits<double>::quiet_NaN();
    const auto check = [&](const char* name, auto object) {
        using T = decltype(object);
        fill(object, 20);
        for (int i = 0; i < 12; ++i) object.add(100.0 + i % 10, i), object.add(i % 2 == 0 ? NaN : -0.0, i);
        expectToHold<T>(name, object, {"createSeries", [](T& o) { return o.createSeries(); }}, folder);
        object.createSeries();
        object.add(3.0, 4.0), object.add(1e9, 4.0), object.add(NaN, 5.0);
        expectToHold<T>(name, object, {"createSeries, again", [](T& o) { return o.createSeries(); }}, folder);
        expectToHold<T>(name, filled<T>(), {"createGroup", [](T& o) { return o.createGroup(2.0)->id == 2.0; }}, folder);
    };
    check("SingleAnova", SingleAnova());
    check("LinearRegressionMultiY", LinearRegressionMultiY());
}

TEST(MemoryRunsOut, whileFrequenciesAreCumulated)
{
    const TempFolder folder;
    using T = KolmogorovSmirnov2;
    expectToHold<T>("KolmogorovSmirnov2", filled<T>(), {"cumulative", [](T& o) { return o.cumulative(), true; }}, folder);
    expectToHold<T>("KolmogorovSmirnov2", analysed<T>(8, longName), {"cumulative, again", [](T& o) { return o.cumulative(), true; }},
                    folder);
    expectToHold<T>("KolmogorovSmirnov2", filled<T>(),
                    {"addCumulativeFrequency", [](T& o) { return o.addCumulativeFrequency(1.0, 2.0), true; }}, folder);
}

// ---------------------------------------------------------------- texts

TEST(MemoryRunsOut, whileTextsAreMade)  // a report is printed whole or not at all
{
    const TempFolder folder;
    forEveryClass([&](auto c) {
        using T = typename decltype(c)::type;
        const T object = analysed<T>(9, longName);
        if (!std::is_same_v<T, Regression>)  // which prints nothing
            expectToHold<T>(c.name, object, {"reportConsole", [](T& o) { return o.reportConsole(), true; }}, folder);
        expectToHold<T>(c.name, object, {"listData", [](T& o) { return o.listData(0, 100), true; }}, folder);
        if constexpr (std::is_base_of_v<SingleAnova, T>)
            expectToHold<T>(c.name, object, {"testResults", [](T& o) { return o.testResults(), true; }}, folder);
        if constexpr (std::is_base_of_v<KolmogorovSmirnov2, T>)
            expectToHold<T>(c.name, object, {"listFrequencies", [](T& o) { return o.listFrequencies(), true; }}, folder);
        if constexpr (std::is_base_of_v<Regression, T>)
            expectToHold<T>(c.name, object, {"writeRegressionResult", [](T& o) { return !o.writeRegressionResult().empty(); }}, folder);
    });
}

namespace {

/** A standard output that is out of memory itself. */
class NoRoom : public std::streambuf {
protected:
    int_type overflow(int_type) override { throw std::bad_alloc(); }
    std::streamsize xsputn(const char*, std::streamsize) override { throw std::bad_alloc(); }
};

}  // namespace

TEST(MemoryRunsOut, inTheHostsOwnStandardOutput)  // as with anything written to a stream: the stream tells, or throws if it was asked to
{
    BasicStatistics sample = filled<BasicStatistics>();
    sample.analyse();
    NoRoom noRoom;
    std::streambuf* const before = std::cout.rdbuf(&noRoom);
    EXPECT_NO_THROW(sample.reportConsole());
    EXPECT_TRUE(std::cout.bad());
    std::cout.clear();
    std::cout.exceptions(std::ios_base::badbit);
    EXPECT_THROW(sample.reportConsole(), std::bad_alloc);
    std::cout.exceptions(std::ios_base::goodbit);
    std::cout.clear();
    std::cout.rdbuf(before);
    Output output;
    sample.reportConsole();
    EXPECT_GT(output.taken().size(), 500u);
}

// ---------------------------------------------------------------- generators, companions, functions

namespace {

/** A call on nothing but its own objects. */
void expectToEndWell(const char* name, const std::function<bool()>& call)
{
    SCOPED_TRACE(name);
    std::string expected;
    {
        Output output;
        ASSERT_TRUE(call()) << "undisturbed";
        expected = output.taken();
    }
    std::size_t failures = 0;
    for (const Shortage shortage : {Shortage::once, Shortage::lasting}) {
        for (std::size_t k = 0;; ++k) {
            Output output;
            const long long before = memory.live;
            const Outcome outcome = withMemoryFor(k, shortage, call);
            EXPECT_EQ(memory.live, before) << "not given back";
            EXPECT_EQ(outcome, memory.ranOut ? Outcome::ranOut : Outcome::done) << k;
            EXPECT_EQ(output.taken(), memory.ranOut ? "" : expected);
            if (!memory.ranOut || ::testing::Test::HasFailure()) break;
            ++failures;
        }
    }
    EXPECT_GT(failures, 0u) << "takes no memory";
}

double pole(double x) { return 1.0 / (x - 0.3); }

}  // namespace

TEST(MemoryRunsOut, inFunctionsOfTheCompanions)
{
    std::string path = "folder that is long/name that is long too.extension";
    expectToEndWell("replicateChar", [] { return replicateChar('-', 70).size() == 70; });
    expectToEndWell("singleLine", [] { return singleLine(70).size() == 70; });
    expectToEndWell("doubleLine", [] { return doubleLine(70).size() == 70; });
    expectToEndWell("removeChar", [] { return removeChar(longName, 'a').size() < longName.size(); });
    expectToEndWell("splitFileName", [&] { return splitFileName(path).name == "name that is long too"; });
    expectToEndWell("display", [] { return display(longName + "\n"), true; });
    expectToEndWell("message", [] { return message(longName + longName), true; });
    expectToEndWell("errorMessage", [] { return errorMessage(longName + longName), true; });
    expectToEndWell("operator<<", [] { return wq_lib::operator<<(std::cout, longName).good(); });
    expectToEndWell("CsvReport", [] { return !CsvReport().isAppend(); });
    expectToEndWell("FileName", [&] {
        FileName name;
        name.setFileName(path);
        return name.getFileName() == path;
    });
}

TEST(MemoryRunsOut, aFileNameStaysTheOneBefore)
{
    std::string first = "first folder that is long/first name that is long.first extension";
    std::string second = "second folder that is long/second name that is long.second extension";
    for (std::size_t k = 0;; ++k) {
        FileName name;
        name.setFileName(first);
        const Outcome outcome = withMemoryFor(k, Shortage::once, [&] { return name.setFileName(second), true; });
        EXPECT_EQ(name.getFileName(), outcome == Outcome::done ? second : first);
        if (outcome == Outcome::done) break;
    }
}

TEST(MemoryRunsOut, inCopiesOfRecords)
{
    SingleAnova anova = filled<SingleAnova>(40);
    anova.createSeries();
    const std::vector<anova_group>& groups = anova.getGroups();
    expectToEndWell("groups", [&] { return std::vector<anova_group>(groups).size() == groups.size(); });
    expectToEndWell("find_group_id", [&] { return find_group_id(groups.back())(groups.back()); });
}

TEST(MemoryRunsOut, inAGenerator)
{
    expectToEndWell("a generator", [] {
        RandomCpp11 random;
        const RandomCpp11 copy = random;
        return copy.getGeneratorName() == "Mersenne Twister";
    });
    expectToEndWell("weights", [] {
        RandomCpp11 random;
        return random.getInteger({0.25, 0.25, 0.5}) < 3 && random.getInteger(std::vector<double>(20, 0.05)) < 20;
    });

    RandomCpp11 random, undisturbed;
    const auto rename = [&] { return random.setGeneratorName(longName), true; };
    EXPECT_EQ(withMemoryFor(0, Shortage::lasting, rename), Outcome::ranOut);
    EXPECT_EQ(random.getGeneratorName(), "Mersenne Twister");
    const auto choose = [&] { return random.getInteger({0.25, 0.75}) < 2; };
    EXPECT_EQ(withMemoryFor(0, Shortage::lasting, choose), Outcome::ranOut);
    EXPECT_EQ(random.getDraws(), 999u) << "nothing was drawn";
    EXPECT_EQ(random.getInteger(), undisturbed.getInteger());
}

TEST(MemoryRunsOut, inAFileWriter)  // which may then be opened again
{
    const TempFolder folder;
    std::string path = folder.path("a table with a long name.csv");
    const auto write = [&](CsvReport& file) {
        if (!file.fileOpen()) return false;
        file.setPrecision(3);
        file.writeComment("comment\n\n" + longName);
        file.writeHeader(longName + "|" + longName);
        file.cell(longName + ",", true);
        file.cell(1e300, 12, true);
        file.cell(5, false);
        file.writeEol();
        return file.fileClose();
    };
    CsvReport undisturbed;
    undisturbed.setFileName(path);
    ASSERT_TRUE(write(undisturbed));
    const std::string expected = contentOf(path);
    std::size_t failures = 0;
    for (const Shortage shortage : {Shortage::once, Shortage::lasting}) {
        for (std::size_t k = 0;; ++k) {
            SCOPED_TRACE(k);
            const long long before = memory.live;
            {
                CsvReport file;
                file.setFileName(path);
                const bool ranOut = withMemoryFor(k, shortage, [&] { return write(file); }) == Outcome::ranOut;
                EXPECT_EQ(ranOut, memory.ranOut);
                if (ranOut) {
                    ++failures;
                    file.fileClose();  // where the host's own code was left
                    EXPECT_TRUE(write(file));
                }
                EXPECT_EQ(contentOf(path), expected);
            }
            EXPECT_EQ(memory.live, before) << "not given back";
            if (!memory.ranOut) break;
        }
    }
    EXPECT_GT(failures, 5u);
}

TEST(MemoryRunsOut, aWriterThatCouldNotOpenIsNotOpen)
{
    const TempFolder folder;
    std::string path = folder.path("a.txt");
    std::size_t failures = 0;
    for (std::size_t k = 0;; ++k) {
        CsvReport file;
        file.setFileName(path);
        const auto open = [&] { return file.fileOpen(); };
        if (withMemoryFor(k, Shortage::once, open) == Outcome::done) break;
        ++failures;
        EXPECT_FALSE(file.fileClose()) << "nothing is open";
        ASSERT_TRUE(file.fileOpen());
        file.cell(7, false);
        EXPECT_TRUE(file.fileClose());
        EXPECT_EQ(contentOf(path), "7");
    }
    EXPECT_GT(failures, 0u);
}

TEST(MemoryRunsOut, inFunctions)  // only the one message takes memory
{
    expectToEndWell("quadratureIntegral", [] { return std::isnan(quadratureIntegral(pole, 0.0, 1.0)); });
    const auto noMemory = [](const std::function<bool()>& call) { EXPECT_EQ(withMemoryFor(0, Shortage::lasting, call), Outcome::done); };
    double sum = 0.0;
    noMemory([&] {
        sum += factorial(20) + lnGamma(1000.5) + betaRatio(0.3, 2.0, 3.5, -3.0) + inverseBetaRatio(0.3, 2.0, 3.5, -3.0);
        sum += binomial(3, 10, 0.5) + normalDensity(1.0) + normalProb(1.0) + normalProbApprox(1.0) + normalPercentPoint(0.7);
        sum += t_Prob(1.0, 7, false) + t_PercentPoint(0.05, 7) + chiSquareProb(1.0, 7) + chiSquarePoint(0.95, 7) + F_Prob(1.0, 7, 8);
        sum += F_PercentPoint(0.95, 1, 26) + D_Prob(0.5) + D_GoodnessOfFit(0.05, 20) + D_TwoSamples(0.05, 30, 30);
        sum += rayleighsProb(2.0, 20) + quadratureIntegral(sqr, 0.0, 1.0);
        return true;
    });
    EXPECT_TRUE(std::isfinite(sum));
}

TEST(MemoryRunsOut, butNotInWhatTakesNone)
{
    forEveryClass([&](auto c) {
        using T = typename decltype(c)::type;
        SCOPED_TRACE(c.name);
        T object = analysed<T>(9, longName);
        const long long before = memory.live;
        const auto call = [&] {
            object.analyse();  // of a sample that is sorted
            object.acceptH0();
            object.geometricMean(0, 8);
            object.resetResult();
            object.setDataRange();
            if constexpr (std::is_base_of_v<SingleAnova, T>) object.getGroup(2.0);
            return object.getSampleSize() == 9;
        };
        EXPECT_EQ(withMemoryFor(0, Shortage::lasting, call), Outcome::done);
        EXPECT_EQ(memory.live, before);
    });
    RandomCpp11 random;
    const auto draw = [&] { return random.initialize(), random.getInteger(6) + random.getInteger(1, 6) + random.getReal() > 0.0; };
    EXPECT_EQ(withMemoryFor(0, Shortage::lasting, draw), Outcome::done);
}
