#include "analysis_command.h"

#include "arguments.h"
#include "failure.h"
#include "progress.h"

#include <filesystem>
#include <iostream>
#include <utility>

namespace wqstat {

// ---------------------------------------------------------------- options

void AnalysisCommand::declare(CLI::App& app)
{
    commandName = app.get_name();
    declareFiles(app);
    addReal(app, "--alpha", alpha, fraction, "significance level, 0.05 unless given");
    declareOptions(app);
    declareOutputs(app);
    views.declare(app, hasTest());
    views.declarePlot(app);
}

void AnalysisCommand::declareFiles(CLI::App& app)
{
    app.add_option("FILE", fileName, "data file; - is standard input")->required()->type_name("");
}

void AnalysisCommand::declareOutputs(CLI::App& app) { outputs.declare(app, outputNames()); }

// ---------------------------------------------------------------- reading

const InputFile& AnalysisCommand::open(const std::string& name, Layout layout, const std::function<bool(const std::string&)>& readFile)
{
    inputNames.push_back(name);
    inputs.push_back(std::make_unique<InputFile>(name, layout));
    const InputFile& input = *inputs.back();
    progress().show("reading " + input.name());
    if (!readFile(input.path())) throw CannotAnalyse(input.name() + ": reading failed");
    progress().show("analysing");
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

namespace {

/** Whether both names mean one file, be it there or not. */
bool isSameFile(const std::filesystem::path& a, const std::filesystem::path& b)
{
    std::error_code ignored;
    return std::filesystem::equivalent(a, b, ignored) ||
           std::filesystem::weakly_canonical(absolute(a), ignored) == std::filesystem::weakly_canonical(absolute(b), ignored);
}

}  // namespace

/** A mistyped name must not cost the data, and what cannot be drawn is said before anything is printed. */
void AnalysisCommand::guardInputs() const
{
    const std::pair<const char*, const std::string&> written[] = {{"--export", outputs.exportName()}, {"--plot", views.plot().fileName}};
    std::error_code ignored;
    for (const auto& [option, name] : written)
        for (const auto& input : inputs)
            if (!name.empty() && std::filesystem::equivalent(input->path(), name, ignored))
                throw WrongUsage(std::string(option) + ": " + shown(name) + " is the data file");
    if (views.plot().fileName.empty()) return;
    if (!outputs.exportName().empty() && isSameFile(outputs.exportName(), views.plot().fileName))
        throw WrongUsage("--plot: " + shown(views.plot().fileName) + " is the export file");
    requireGnuplot();
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

PictureWords AnalysisCommand::pictureWords() const
{
    std::string source = "wqstat " + commandName;
    for (const auto& input : inputs) source += " " + input->name();
    return {source, views.plot().xLabel, views.plot().yLabel};
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
