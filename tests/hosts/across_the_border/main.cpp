// A host for libraries that another compiler built. Everything that crosses the border between them crosses it here: exceptions both
// ways, texts and vectors, overridden operations, type information, objects made on one side and deleted on the other.
#include <wq_report/csv_report.h>
#include <wq_stat/wq_stat.h>
#include <wq_udf/console.h>
#include <wq_udf/file_name.h>
#include <wq_udf/text.h>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <limits>
#include <memory>
#include <stdexcept>
#include <string>
#include <typeinfo>
#include <vector>

using namespace wq_lib;

namespace {

int failures = 0;

void expect(bool holds, const char* what)
{
    if (!holds) ++failures;
    std::printf("%s: %s\n", holds ? "as it should be" : "WRONG", what);
}

struct HostError : std::runtime_error {
    explicit HostError(std::size_t where) : std::runtime_error("the host's own"), index(where) {}
    std::size_t index;
};

/** Refuses one of its pairs. */
class Refusing : public Correlation {
public:
    data_pair getDataPair(std::size_t i) override
    {
        if (i == refused) throw HostError(i);
        return Correlation::getDataPair(i);
    }
    void resetResult() override
    {
        ++resets;
        Correlation::resetResult();
    }
    std::size_t refused = 3;
    int resets = 0;
};

/** Draws from the host's own source. */
class Counter : public RandomGenerator {
public:
    using RandomGenerator::getInteger;
    void initialize() override { next = 0; }
    unsigned int getInteger() override { return ++draws, next++; }
    unsigned int getInteger(unsigned int n) override { return getInteger() % (n + 1); }
    double getReal() override { return 0.125 * (getInteger() % 8); }

private:
    unsigned int next = 0;
};

/** Writes every text in angle brackets. */
class Bracketed : public CsvReport {
public:
    using CsvReport::cell;
    void cell(const std::string& text, bool more) override { CsvReport::cell("<" + text + ">", more); }
};

double integrand(double x)
{
    if (x > 0.9) throw HostError(9);
    return x;
}

std::string contentOf(const char* path)
{
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void exceptionsOfTheLibrary()
{
    std::ofstream("data") << "1\nnone\n";
    std::ofstream("huge") << "1\n1e999\n";
    BasicStatistics sample;
    try {
        sample.readDataFile("data");
        expect(false, "a line without a number throws");
    } catch (const std::invalid_argument& error) {
        expect(std::string(error.what()) == "stod" && sample.getSampleSize() == 1, "std::invalid_argument with its text");
    }
    try {
        sample.readDataFile("huge");
        expect(false, "a number that is too large throws");
    } catch (const std::exception& error) {
        expect(dynamic_cast<const std::out_of_range*>(&error) != nullptr, "std::out_of_range, caught as its base");
    }
    try {
        sample.initDataList(std::numeric_limits<std::size_t>::max());
        expect(false, "a size that cannot be throws");
    } catch (const std::length_error&) {
        expect(true, "std::length_error from inside a vector");
    }
}

void exceptionsOfTheHost()
{
    Refusing pairs;
    for (int i = 0; i < 6; ++i) pairs.add(i, i * i);
    BasicStatistics& analysis = pairs;
    try {
        analysis.analyse();
        expect(false, "a refused pair throws");
    } catch (const HostError& error) {
        expect(error.index == 3, "the host's exception through an analysis of the library");
    }
    pairs.refused = 100;
    expect(analysis.analyse() && pairs.getXyResult().x.n == 6, "the analysis after it");
    expect(pairs.resets == 2, "an overridden operation that the library calls");
    try {
        simpsonIntegral(integrand, 0.0, 1.0);
        expect(false, "a refused argument throws");
    } catch (const HostError& error) {
        expect(error.index == 9, "the host's exception through an integrator");
    }
}

void valuesOfTheStandardLibrary()
{
    BasicStatistics sample;
    std::vector<double> values;
    for (int i = 1; i <= 1000; ++i) values.push_back(i);
    expect(sample.copyFrom(values) == 1000, "a vector by value");
    sample.setComment(std::string(100, 'c'));
    sample.setComment("d");
    expect(sample.getComment() == std::string(100, 'c') + "d", "a text there and back");

    SingleAnova anova;
    for (int i = 0; i < 9; ++i) anova.add(i % 3, i);
    anova.createSeries();
    const std::vector<anova_group>& groups = anova.getGroups();
    expect(groups.size() == 3 && groups[1].observations == std::vector<double>{1, 4, 7}, "vectors within a vector");
    std::vector<anova_group> copies = groups;
    copies.push_back(*anova.getGroup(2.0));
    expect(copies.back().observations.back() == 8.0, "records that are copied and kept");

    std::string path = "folder that is rather long/name that is rather long.extension";
    const name_of_file parts = splitFileName(path);
    expect(parts.folder + parts.name + parts.extension == path, "a record of texts");
    expect(removeChar(replicateChar('-', 70) + "end", '-') == "end", "texts from functions");
    expect(Random.getInteger({1.0}) == 0 && std::string(wq_stat_1VersionString).find("wq_lib-1.1") != std::string::npos,
           "objects of the library: the generator, the version");
}

void overriddenOperations()
{
    Counter counter;
    RandomGenerator& generator = counter;
    generator.warmUp(5);
    expect(generator.getInteger() == 4 && generator.getInteger(10, 12) == 12, "a generator of the host, drawn from by the library");
    expect(generator.getInteger({0.5, 0.25, 0.25}) == 2 && generator.getDraws() == 7, "a choice of the library by the host's numbers");

    Bracketed table;
    std::string path = "table";
    table.setFileName(path);
    Report& report = table;
    Table& cells = table;
    table.fileOpen();
    report.writeHeader("a|b");
    cells.cell(std::string("c"), true);
    cells.cell(1.5, 2, false);
    table.writeEol();
    expect(table.fileClose() && contentOf("table") == "<a>,<b>\n<c>,1.50\n", "a writer of the host, called through each of its bases");
}

void typeInformation()
{
    std::vector<std::unique_ptr<BasicStatistics>> analyses;
    analyses.push_back(std::make_unique<Correlation>());
    analyses.push_back(std::make_unique<Refusing>());
    analyses.push_back(std::make_unique<LinearRegressionMultiY>());
    const BasicStatistics &first = *analyses[0], &second = *analyses[1];
    expect(typeid(first) == typeid(Correlation) && typeid(second) != typeid(Correlation), "typeid");
    expect(dynamic_cast<Correlation*>(analyses[1].get()) != nullptr, "dynamic_cast to a class of the library");
    expect(dynamic_cast<SingleAnova*>(analyses[2].get()) != nullptr, "dynamic_cast over two levels");
    expect(dynamic_cast<SingleAnova*>(analyses[0].get()) == nullptr, "dynamic_cast to a class that it is not");
    CsvReport table;
    Report* const report = &table;
    Table* const cells = dynamic_cast<Table*>(report);
    expect(cells == static_cast<Table*>(&table) && dynamic_cast<WriteFile*>(cells) == &table, "dynamic_cast across");
    RandomGenerator* const generator = &Random;
    expect(dynamic_cast<RandomCpp11*>(generator) == &Random, "dynamic_cast of an object of the library");
    analyses.clear();
    expect(analyses.empty(), "objects deleted by their base");
}

}  // namespace

int main()
{
    exceptionsOfTheLibrary();
    exceptionsOfTheHost();
    valuesOfTheStandardLibrary();
    overriddenOperations();
    typeInformation();
    return failures == 0 ? 0 : 1;
}
