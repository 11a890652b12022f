#include "analysis_command.h"

#include "arguments.h"
#include "failure.h"

#include <filesystem>
#include <iostream>

namespace wqstat {

// ---------------------------------------------------------------- options

void AnalysisCommand::declare(CLI::App& app)
{
    commandName = app.get_name();
    declareFiles(app);
    addReal(app, "--alpha", alpha, fraction, "significance level, 0.05 unless given");
    declareOptions(app);
    declareOutputs(app);
}

void AnalysisCommand::declareFiles(CLI::App& app)
{
    app.add_option("FILE", fileName, "data file; - is standard input")->required()->type_name("");
}

void AnalysisCommand::declareOutputs(CLI::App& app) { outputs.declare(app, outputNames()); }

// ---------------------------------------------------------------- reading

const InputFile& AnalysisCommand::open(const std::string& name, Layout layout, const std::function<bool(const std::string&)>& readFile)
{
    inputs.push_back(std::make_unique<InputFile>(name, layout));
    const InputFile& input = *inputs.back();
    if (!readFile(input.path())) throw CannotAnalyse(input.name() + ": reading failed");
    return input;
}

const InputFile& AnalysisCommand::read(wq_lib::BasicStatistics& analysis, const std::string& name, Layout layout)
{
    analysis.setSignificance(alpha);
    return open(name, layout, [&analysis](const std::string& path) { return analysis.readDataFile(path); });
}

const InputFile& AnalysisCommand::read(wq_lib::BasicStatistics& analysis, Layout layout) { return read(analysis, fileName, layout); }

const InputFile& AnalysisCommand::readSeries(wq_lib::LinearRegressionMultiY& analysis)
{
    analysis.setSignificance(alpha);
    return open(fileName, Layout::series, [&analysis](const std::string& path) { return analysis.readSeriesFile(path); });
}

// ---------------------------------------------------------------- results

/** A mistyped export must not cost the data. */
void AnalysisCommand::guardInputs() const
{
    std::error_code ignored;
    for (const auto& input : inputs)
        if (!outputs.exportName().empty() && std::filesystem::equivalent(input->path(), outputs.exportName(), ignored))
            throw WrongUsage("--export: " + shown(outputs.exportName()) + " is the data file");
}

void AnalysisCommand::printWarnings() const
{
    for (const auto& input : inputs)
        for (const std::string& warning : input->warnings()) std::cerr << "wqstat: " << warning << '\n';
}

std::string AnalysisCommand::exportComment(const wq_lib::BasicStatistics& analysis) const
{
    constexpr const char* whiteSpace = " \t\n\v\f\r";
    std::string text = "wqstat " + commandName + " " + inputs.front()->name();
    const std::string comment = analysis.getComment();
    const std::size_t begin = comment.find_first_not_of(whiteSpace);
    if (begin != std::string::npos) text += "\n" + comment.substr(begin, comment.find_last_not_of(whiteSpace) + 1 - begin);
    return text;
}

void AnalysisCommand::reportExport(bool written) const
{
    if (!written) throw CannotAnalyse(shown(outputs.exportName()) + ": the export cannot be written");
}

void AnalysisCommand::list(wq_lib::BasicStatistics& analysis, ListRange range) { analysis.listData(range.from, range.to); }

void AnalysisCommand::list(wq_lib::BasicXyStatistics& analysis, ListRange range) { analysis.listData(range.from, range.to); }

/** This one lists without the end. */
void AnalysisCommand::list(wq_lib::SingleAnova& analysis, ListRange range)
{
    analysis.listData(range.from, range.to == anyCount ? anyCount : range.to + 1);
}

bool AnalysisCommand::exportTo(wq_lib::BasicStatistics& analysis, const std::string& fileName, const std::string& comment)
{
    return analysis.exportToR(fileName, comment);
}

bool AnalysisCommand::exportTo(wq_lib::Frequency& analysis, const std::string& fileName, const std::string& comment)
{
    return analysis.exportTable(fileName, comment);
}

}  // namespace wqstat
