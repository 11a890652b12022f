// Analyses of two samples whose values are in tables.
#pragma once

#include "analysis_command.h"

#include <cstddef>
#include <functional>

namespace wqstat {

/** Takes a value of the first sample, which is 0, or of the second. */
using SampleHandler = std::function<void(std::size_t sample, double value)>;

/** The samples are two columns of one table, one column of two tables, or two groups of one column. */
class TwoSampleCommand : public AnalysisCommand {
protected:
    /** Adds the options that name the columns. @param typical whether an example of what to name has them. */
    void declareSamples(CLI::App& app, bool typical);

    /** Whether one of them was given. */
    bool namesSamples() const { return column.given() || column2.given() || values.given() || group.given(); }

    /** Two where the samples are one column of two tables. */
    std::size_t filesOfEach() const override { return isInTwoTables() ? 2 : 1; }

    /**
     * Reads both samples.
     * @param least how many observations each of them needs.
     * @return the data, that of the second sample last.
     * @throws WrongUsage where the columns do not fit together, CannotAnalyse for a sample that is too small.
     */
    const Input& readSamples(wq_lib::BasicStatistics& analysis, std::size_t least, const SampleHandler& take);

private:
    bool isGrouped() const { return values.given() || group.given(); }
    bool isInTwoTables() const { return !isGrouped() && column.given() && !column2.given(); }

    const TableRows& readColumns(wq_lib::BasicStatistics& analysis, const SampleHandler& take);
    const TableRows& readGroups(wq_lib::BasicStatistics& analysis, const SampleHandler& take);

    ColumnOption column{"--column", ColumnKind::number, "the values, of both files", false};
    ColumnOption column2{"--column2", ColumnKind::number, "the values of the second sample, beside that of --column", false};
    ColumnOption values{"--value", ColumnKind::number, "the values of both samples"};
    ColumnOption group{"--group", ColumnKind::label, "what tells the two samples apart"};
};

}  // namespace wqstat
