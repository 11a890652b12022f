#include "two_sample_command.h"

#include "command_line/failure.h"

#include <CLI/CLI.hpp>

#include <array>
#include <cmath>

namespace wqstat {

void TwoSampleCommand::declareSamples(CLI::App& app, bool typical)
{
    values.isTypical = typical;
    group.isTypical = typical;
    for (ColumnOption* const option : {&column, &column2, &values, &group}) addColumn(app, *option);
}

const Input& TwoSampleCommand::readSamples(wq_lib::BasicStatistics& analysis, std::size_t least, const SampleHandler& take)
{
    if (isGrouped() && (column.given() || column2.given())) throw WrongUsage("--value and --group stand in place of --column");
    std::array<std::size_t, 2> held{};
    const SampleHandler count = [&](std::size_t sample, double value) {
        ++held.at(sample);
        take(sample, value);
    };
    if (!isInTwoTables()) {
        const TableRows& table = isGrouped() ? readGroups(analysis, count) : readColumns(analysis, count);
        for (std::size_t sample = 0; sample < held.size(); ++sample) table.requireOf(words.labels[sample], held[sample], least);
        return table;
    }
    const Input* last = nullptr;
    for (std::size_t sample = 0; sample < held.size(); ++sample) {
        const TableRows& table = readTable(analysis, files()[sample], {column.column()}, [&](const double* row) { count(sample, row[0]); });
        table.require(held[sample], least);
        if (sample == 0) words.yTitle = table.title(0);
        last = &table;
    }
    return *last;
}

const TableRows& TwoSampleCommand::readColumns(wq_lib::BasicStatistics& analysis, const SampleHandler& take)
{
    const std::vector<Column> columns = chosen({&column, &column2});
    const TableRows& table = readTable(analysis, {{columns[0].name, columns[0].kind, true}, {columns[1].name, columns[1].kind, true}},
                                       [&take](const double* row) {
                                           for (std::size_t sample = 0; sample < 2; ++sample)
                                               if (!std::isnan(row[sample])) take(sample, row[sample]);
                                       });
    words.item = "sample";
    words.labels = {table.title(0), table.title(1)};
    return table;
}

const TableRows& TwoSampleCommand::readGroups(wq_lib::BasicStatistics& analysis, const SampleHandler& take)
{
    const TableRows& table = readTable(analysis, chosen({&group, &values}), [&take](const double* row) {
        if (row[0] <= 2.0) take(row[0] == 1.0 ? 0 : 1, row[1]);
    });
    const std::vector<std::string> labels = table.labels(0).all();
    if (labels.size() != 2)
        throw CannotAnalyse(table.name() + ": " + table.title(0) + " has " + std::to_string(labels.size()) +
                            (labels.size() == 1 ? " group" : " groups") + ", exactly two are needed");
    words.xTitle = table.title(0);
    words.yTitle = table.title(1);
    words.item = "sample";
    words.labels = labels;
    return table;
}

}  // namespace wqstat
