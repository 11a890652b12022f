// Which classes of a host have their pairs read straight from memory, which through their override. Built in several ways: with and without
// type information, at addresses of its own choice and at fixed ones. detail/pair_source.cpp is linked in, since the library keeps it to
// itself.
#include "classes.h"

#include "detail/pair_source.h"

#include <wq_stat/wq_stat.h>

#include <cstdio>

using namespace wq_lib;

namespace {

int failures = 0;

void expect(bool holds, const char* what)
{
    if (!holds) ++failures;
    std::printf("%s: %s\n", holds ? "as it should be" : "WRONG", what);
}

// ---------------------------------------------------------------- classes that inherit the operation

struct Unchanged : Correlation {};

struct WithMembers final : PowerRegression {
    void resetResult() override { PowerRegression::resetResult(); }
    double more[3] = {};
};

struct Unrelated {
    virtual ~Unrelated() = default;
    double before = 0.0;
};

struct SecondBase : Unrelated, LinearRegression {};

struct VirtualBase : virtual BasicXyStatistics {};

struct Further : Elsewhere {};

// ---------------------------------------------------------------- classes that override it

struct Doubled : LinearRegression {
    data_pair getDataPair(std::size_t i) override { return {pairs[i].x, 2.0 * pairs[i].y}; }
};

struct ForwardsOnly : LinearRegression {
    data_pair getDataPair(std::size_t i) override { return LinearRegression::getDataPair(i); }
};

struct ThirdGeneration : Doubled {};

struct DoubledBehind : Unrelated, LinearRegression {
    data_pair getDataPair(std::size_t i) override { return {pairs[i].x, 2.0 * pairs[i].y}; }
};

struct DoubledFromElsewhere : DoubledElsewhere {};

struct OverridesFurther : Elsewhere {
    data_pair getDataPair(std::size_t i) override { return {pairs[i].x, -pairs[i].y}; }
};

template <typename Class>
void expectStored(const char* name)
{
    Class object;
    expect(detail::readsStoredPairs(object), name);
}

template <typename Class>
void expectCalled(const char* name)
{
    Class object;
    expect(!detail::readsStoredPairs(object), name);
}

template <typename Regression>
double slope()
{
    Regression regression;
    for (int i = 0; i < 9; ++i) regression.add(i, 3.0 * i + 1.0);
    return regression.analyse() ? regression.getRegressionResult().b : 0.0;
}

void classesOfTheLibrary()
{
    expectStored<BasicXyStatistics>("BasicXyStatistics");
    expectStored<Correlation>("Correlation");
    expectStored<LinearRegression>("LinearRegression");
    expectStored<LogarithmicRegression>("LogarithmicRegression");
    expectStored<ExponentialRegression>("ExponentialRegression");
    expectStored<PowerRegression>("PowerRegression");
    expectStored<SingleAnova>("SingleAnova");
    expectStored<LinearRegressionMultiY>("LinearRegressionMultiY");
    expectStored<GoodnessOfFit>("GoodnessOfFit");
    expectStored<KolmogorovSmirnov2>("KolmogorovSmirnov2");
    expectStored<Circular>("Circular");
}

void classesOfTheHost()
{
    expectStored<Unchanged>("a class that overrides nothing");
    expectStored<WithMembers>("a class with members that overrides another operation");
    expectStored<SecondBase>("an analysis as second base");
    expectStored<VirtualBase>("an analysis as virtual base");
    expectStored<Elsewhere>("a class of another shared library");
    expectStored<Further>("a class derived from one of another shared library");

    expectCalled<Doubled>("a class that overrides");
    expectCalled<ForwardsOnly>("an override that only forwards");
    expectCalled<ThirdGeneration>("a class derived from one that overrides");
    expectCalled<DoubledBehind>("an override in a class with the analysis as second base");
    expectCalled<DoubledElsewhere>("an override in another shared library");
    expectCalled<DoubledFromElsewhere>("a class derived from one that overrides in another shared library");
    expectCalled<OverridesFurther>("an override above a class of another shared library");
}

void figures()
{
    expect(slope<LinearRegression>() == 3.0 && slope<SecondBase>() == 3.0, "the slope of the stored pairs");
    expect(slope<Doubled>() == 6.0 && slope<ThirdGeneration>() == 6.0 && slope<DoubledBehind>() == 6.0,
           "the slope of the override's pairs");
    expect(slope<DoubledElsewhere>() == 6.0 && slope<DoubledFromElsewhere>() == 6.0, "the slope of those of another shared library");
}

}  // namespace

int main()
{
    classesOfTheLibrary();
    classesOfTheHost();
    figures();
    return failures == 0 ? 0 : 1;
}
