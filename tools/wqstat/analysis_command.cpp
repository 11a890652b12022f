#include "analysis_command.h"

#include "command_line/arguments.h"
#include "command_line/command_words.h"
#include "command_line/failure.h"
#include "command_line/progress.h"
#include "command_line/terminal.h"
#include "command_line/version_text.h"
#include "command_line/viewer.h"
#include "data_files/file_identity.h"
#include "data_files/input_file.h"
#include "numbers/white_space.h"
#include "results/figures.h"
#include "results/json_writer.h"
#include "results/output_file.h"
#include "results/tsv_writer.h"

#include <CLI/CLI.hpp>

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <iostream>
#include <set>
#include <string_view>
#include <utility>

namespace wqstat {

// ---------------------------------------------------------------- options

void AnalysisCommand::declare(CLI::App& app)
{
    commandName = app.get_name();
    app.add_option("FILE", givenFiles, filesText())->type_name("");
    addReal(app, "--alpha", alpha, fraction, "significance level, 0.05 unless given");
    declareOptions(app);
    tableOptions.declareFormat(app);
    app.add_flag("--lenient", lenient, "read a file without columns as the library does, and warn of what that makes of it");
    declareOutputs(app);
    views.declare(app, hasGroups());
    views.declarePlot(app, plotChoices());
}

void AnalysisCommand::declareOutputs(CLI::App& app) { outputs.declare(app, outputNames()); }

// ---------------------------------------------------------------- one analysis after the other

/** The files of each analysis. */
std::vector<std::vector<std::string>> AnalysisCommand::filesOfAll() const
{
    std::vector<std::string> names = givenFiles;
    const bool isPair = filesOfEach() == 2;
    if (isPair && names.size() != 2) {
        if (readsTables() && names.size() < 2) throw WrongUsage("--column: a second file is needed, or --column2");
        throw WrongUsage("two FILEs are needed, one for each sample, not " + std::to_string(names.size()));
    }
    if (isPair && !tableOptions.by().empty()) throw WrongUsage("--by: both samples have to be in one table");
    if (names.empty() && inputIsTerminal()) throw WrongUsage("FILE is required where standard input is a terminal");
    if (names.empty()) names.emplace_back("-");
    const auto dashes = std::count(names.begin(), names.end(), "-");
    if (dashes > 1) throw WrongUsage("standard input can be read only once");
    if (dashes > 0 && inputIsTerminal()) throw WrongUsage("FILE '-': standard input is a terminal");
    if (isPair) return {names};
    std::vector<std::vector<std::string>> all;
    for (const std::string& name : names) all.push_back({name});
    return all;
}

/** One file cannot hold what several analyses write. */
void AnalysisCommand::guardOutputsOfSeveral() const
{
    const std::pair<const char*, const std::string&> written[] = {{"--export", outputs.exportName()}, {"--plot", views.plot().fileName}};
    for (const auto& [option, name] : written)
        if (!name.empty()) throw WrongUsage(std::string(option) + " is for one analysis, not for several files or --by");
}

const std::string& AnalysisCommand::fileToShow() const { return views.pageName().empty() ? views.plot().fileName : views.pageName(); }

void AnalysisCommand::requireSomethingToShow() const
{
    if (fileToShow().empty()) throw CannotAnalyse("--open: there is nothing to show without --html or --plot");
    requireViewer();
}

ExitStatus AnalysisCommand::run()
{
    const bool isInParts = readsTables() && !tableOptions.by().empty();
    const std::vector<std::vector<std::string>> all = filesOfAll();
    isOneOfSeveral = all.size() > 1 || isInParts;
    if (isOneOfSeveral) guardOutputsOfSeveral();
    if (isOneOfSeveral && !views.pageName().empty()) guardPageOfSeveral(all);
    if (views.open()) requireSomethingToShow();
    for (const std::vector<std::string>& names : all) {
        if (!std::cout) break;
        fileNames = names;
        tableParts.clear();
        part = 0;
        do {
            analyseNext();
        } while (++part < tableParts.size() && std::cout);
    }
    if (writer && isOneOfSeveral && views.json()) writer->endArray();
    if (writer) writer->finish();
    if (isOneOfSeveral && !views.pageName().empty() && std::cout.flush()) writePageOfSeveral();
    if (views.open() && std::cout.flush()) show(fileToShow());
    return status;
}

void AnalysisCommand::analyseNext()
{
    inputNames.clear();
    inputs.clear();
    descriptions.clear();
    words = {};
    namesInComment = {};
    hasWarned = false;
    try {
        analyse();
    } catch (const CannotAnalyse& problem) {
        if (lenient && !hasWarned) printWarnings({});  // what was left out may be why
        if (!isOneOfSeveral) throw;
        printWarning(problem.what());
        keepFailure(problem.what());
        status = couldNotAnalyse;
    }
}

// ---------------------------------------------------------------- reading

const Input& AnalysisCommand::open(const std::string& name, Layout layout, const std::function<bool(const std::string&)>& readFile)
{
    inputNames.push_back(name);
    StreamFingerprint fingerprint(name, !views.pageName().empty());
    auto file = std::make_unique<InputFile>(name, layout, lenient ? Surprise::warns : Surprise::stops, tableOptions, fingerprint.handler());
    fingerprints[name] = fingerprint.text();
    const InputFile& input = *file;
    inputs.push_back(std::move(file));
    progress().show("reading " + input.name());
    if (!readFile(input.path())) throw CannotAnalyse(input.name() + ": reading failed");
    progress().show("analysing");
    return input;
}

const Input& AnalysisCommand::read(wq_lib::BasicStatistics& analysis, const std::string& name, Layout layout)
{
    analysis.setSignificance(alpha);
    return open(name, layout, [&analysis](const std::string& path) { return analysis.readDataFile(path); });
}

const Input& AnalysisCommand::read(wq_lib::BasicStatistics& analysis, Layout layout) { return read(analysis, files()[0], layout); }

const Input& AnalysisCommand::readSeries(wq_lib::LinearRegressionMultiY& analysis)
{
    analysis.setSignificance(alpha);
    return open(files()[0], Layout::series, [&analysis](const std::string& path) { return analysis.readSeriesFile(path); });
}

const TableRows& AnalysisCommand::readTable(wq_lib::BasicStatistics& analysis, const std::vector<Column>& columns,
                                            const RowHandler& takeRow)
{
    return readTable(analysis, files()[0], columns, takeRow);
}

const TableRows& AnalysisCommand::readTable(wq_lib::BasicStatistics& analysis, const std::string& name, const std::vector<Column>& columns,
                                            const RowHandler& takeRow)
{
    if (lenient) throw WrongUsage("--lenient is for the library's own formats; tables are always read strictly");
    analysis.setSignificance(alpha);
    inputNames.push_back(name);
    if (!tableOptions.by().empty()) return readPart(name, columns, takeRow);
    StreamFingerprint fingerprint(name, !views.pageName().empty());
    auto table = std::make_unique<Table>(name, tableOptions.format(), fingerprint.handler());
    describing(*table, [&] { table->read(columns, takeRow); });
    fingerprints[name] = fingerprint.text();
    progress().show("analysing");
    const Table& input = *table;
    inputs.push_back(std::move(table));
    if (tableOptions.verbose()) descriptions.push_back(input.description());
    return input;
}

/** Where reading fails, what was found out of the table may be why. */
void AnalysisCommand::describing(const Table& table, const std::function<void()>& read) const
{
    try {
        read();
    } catch (const CannotAnalyse&) {
        const std::string found = tableOptions.verbose() ? table.description() : "";
        if (!found.empty()) printWarning(found);
        throw;
    }
}

/** The first part that is asked for reads them all. */
const TableRows& AnalysisCommand::readPart(const std::string& name, const std::vector<Column>& columns, const RowHandler& takeRow)
{
    if (part == 0) {
        StreamFingerprint fingerprint(name, !views.pageName().empty());
        const auto table = std::make_shared<Table>(name, tableOptions.format(), fingerprint.handler());
        describing(*table, [&] { tableParts = partsOf(table, columns, tableOptions.by()); });
        fingerprints[name] = fingerprint.text();
        if (tableParts.empty()) table->require(0, 1);
        if (tableOptions.verbose()) printWarning(table->description());
        if (views.warnings())
            for (const Sentence& warning : table->warnings()) printWarning(warning.text());
        const std::vector<Sentence> warnings = table->warnings();
        pageOfAll.notes.insert(pageOfAll.notes.end(), warnings.begin(), warnings.end());
        progress().show("analysing");
    }
    TablePart& input = *tableParts[part];
    inputs.push_back(std::move(tableParts[part]));
    byColumn = input.columnTitle();
    byValue = input.value();
    input.hand(columns, takeRow);
    return input;
}

const Input& AnalysisCommand::readNamedPairs(wq_lib::BasicXyStatistics& analysis)
{
    const Input& input = read(analysis, Layout::pairs);
    namesInComment = pairNames(analysis.getComment());
    return input;
}

const Input& AnalysisCommand::readPairs(wq_lib::BasicXyStatistics& analysis, const ColumnOption& x, const ColumnOption& y)
{
    if (!readsTables()) return readNamedPairs(analysis);
    const TableRows& table = readTable(analysis, chosen({&x, &y}), [&analysis](const double* row) { analysis.add(row[0], row[1]); });
    words.xTitle = table.title(0);
    words.yTitle = table.title(1);
    return table;
}

// ---------------------------------------------------------------- results

namespace {

/** Whether both names mean one file, be it there or not. */
bool isSameFile(const std::string& a, const std::string& b)
{
    const std::optional<FileIdentity> known = identityOf(a);
    if (known) return known == identityOf(b);
    std::error_code ignored;
    const auto place = [&ignored](const std::string& name) { return weakly_canonical(absolute(behindLinks(name)), ignored); };
    return place(a) == place(b);
}

}  // namespace

/** Before the first of several analyses is printed. */
void AnalysisCommand::guardPageOfSeveral(const std::vector<std::vector<std::string>>& all) const
{
    std::vector<std::optional<FileIdentity>> dataFiles;
    for (const std::vector<std::string>& names : all)
        for (const std::string& name : names) dataFiles.push_back(identityOf(name));
    guardOutput("--html", views.pageName(), dataFiles);
    static_cast<void>(pictureWords());  // a size that cannot be
    requireGnuplot("--html");
}

/** What cannot be written or drawn is said before anything is printed. */
void AnalysisCommand::guardFiles() const
{
    const std::string& picture = views.plot().fileName;
    const std::string& page = views.pageName();
    const std::pair<const char*, const std::string&> written[] = {
        {"--export", outputs.exportName()}, {"--plot", picture}, {"--html", page}};
    std::vector<std::optional<FileIdentity>> dataFiles;
    for (const auto& input : inputs) dataFiles.push_back(input->identity());
    for (const auto& [option, name] : written)
        if (!name.empty()) guardOutput(option, name, dataFiles);
    const auto guardPair = [](const char* option, const std::string& name, const std::string& other, const char* what) {
        if (!name.empty() && !other.empty() && isSameFile(name, other)) throw WrongUsage(option + (": " + shown(name)) + " is the " + what);
    };
    guardPair("--plot", picture, outputs.exportName(), "export file");
    guardPair("--html", page, outputs.exportName(), "export file");
    guardPair("--html", page, picture, "picture");
    if (picture.empty() && page.empty()) return;
    static_cast<void>(pictureWords());  // a size that cannot be
    requireGnuplot(picture.empty() ? "--html" : "--plot");
}

ResultWriter& AnalysisCommand::resultWriter()
{
    if (writer) return *writer;
    if (views.tsv())
        writer = std::make_unique<TsvWriter>(std::cout);
    else
        writer = std::make_unique<JsonWriter>(std::cout);
    if (isOneOfSeveral && views.json()) writer->beginArray("");
    return *writer;
}

/** As head(1) names what it prints of several files. */
void AnalysisCommand::printName()
{
    if (!isOneOfSeveral) return;
    std::cout << (hasPrinted ? "\n==> " : "==> ") << inputs.back()->name() << " <==\n";
    hasPrinted = true;
}

void AnalysisCommand::printWarning(const std::string& text) const
{
    progress().hide();
    std::cerr << "wqstat: " << text << '\n';
}

void AnalysisCommand::printWarnings(const std::vector<std::string>& ofAnalysis)
{
    hasWarned = true;
    for (const std::string& description : descriptions) printWarning(description);
    if (!views.warnings()) return;
    for (const auto& input : inputs)
        for (const Sentence& warning : input->warnings()) printWarning(warning.text());
    const std::string name = isOneOfSeveral ? inputs.back()->name() + ": " : "";
    for (const std::string& warning : ofAnalysis) printWarning(name + "warning: " + warning);
}

/** What the numbers that stand for labels mean. Labels keep their encoding, but on a terminal. */
void AnalysisCommand::printKey() const
{
    for (const Sentence& line : keyLines()) std::cout << line.text() << '\n';
}

std::vector<Sentence> AnalysisCommand::keyLines() const
{
    std::vector<Sentence> lines;
    for (const std::string& label : words.labels)
        lines.push_back(words.item + " " + std::to_string(lines.size() + 1) + ": " + Sentence::name(shown(label, OtherBytes::kept)));
    return lines;
}

std::string AnalysisCommand::exportComment(const wq_lib::BasicStatistics& analysis) const
{
    std::string text = "wqstat " + commandName + " " + inputs.front()->name();
    const std::string comment = analysis.getComment();
    const std::string_view ownWords = wq_lib::detail::trimmed(comment);
    if (!ownWords.empty()) text.append("\n").append(ownWords);
    return text;
}

void AnalysisCommand::writeExport(const std::function<bool(const std::string&)>& writeFile) const
{
    std::cout.flush();  // the export may go to the same place
    OutputFile file(outputs.exportName(), "the export");
    errno = 0;
    if (!writeFile(file.path())) file.fail(errno);
    file.keep();
}

namespace {

/** A title of a column, of as many bytes as can be read. */
std::string cutTitle(const std::string& title)
{
    constexpr std::size_t most = 200;
    return title.size() > most ? shown(title) : title;
}

}  // namespace

PictureWords AnalysisCommand::pictureWords() const
{
    const PlotRequest& plot = views.plot();
    const auto firstOf = [](const std::string& given, const std::string& title, const std::string& name) {
        return !given.empty() ? given : !title.empty() ? title : name;
    };
    const std::string x = firstOf(plot.xLabel, cutTitle(words.xTitle), namesInComment.x);
    const std::string y = firstOf(plot.yLabel, cutTitle(words.yTitle), namesInComment.y);
    PictureWords asked;
    asked.source = source(x, y).text();
    asked.title = plot.title;
    asked.xLabel = x;
    asked.yLabel = y;
    asked.logarithmic = plot.logarithmic;
    asked.residuals = plot.residuals;
    asked.canvas = plot.canvas;
    asked.labels = words.labels;
    asked.xIsAsked = !plot.xLabel.empty();
    asked.yIsAsked = !plot.yLabel.empty();
    asked.classesAreValues = words.classesAreValues;
    asked.compared = words.compared;
    if (plot.residuals && !asked.canvas.isGiven) asked.canvas.height = 800.0;
    finish(asked.canvas, plot.fontSize, plot.dots);
    return asked;
}

/** Of the file, without its folders, and of the part of it. */
std::string AnalysisCommand::nameInTitle(std::size_t input) const
{
    const std::string name = inputs[input]->name();
    const std::string path = shown(inputNames[input]);
    if (name.compare(0, path.size(), path) != 0) return name;
    return shown(std::filesystem::path(inputNames[input]).filename().string()) + name.substr(path.size());
}

std::string AnalysisCommand::filesInTitle() const
{
    std::string names;
    for (std::size_t i = 0; i < inputs.size(); ++i) names += (names.empty() ? "" : " and ") + nameInTitle(i);
    return names;
}

/** What the analysis is about, by the names of its variables; empty where they have none. */
Sentence AnalysisCommand::subject(const std::string& x, const std::string& y) const
{
    const bool isOfFrequencies = words.compared.size() == 2 && views.plot().xLabel.empty() && views.plot().yLabel.empty();
    if (isOfFrequencies) return Sentence::name(cutTitle(words.compared[0])) + " and " + Sentence::name(cutTitle(words.compared[1]));
    if (!x.empty() && !y.empty()) return aboutBoth(Sentence::name(x), Sentence::name(y));
    if (!x.empty() || !words.yTitle.empty()) return Sentence::name(x.empty() ? cutTitle(words.yTitle) : x);
    if (words.item == "sample" && words.labels.size() == 2)
        return Sentence::name(cutTitle(words.labels[0])) + " and " + Sentence::name(cutTitle(words.labels[1]));
    return {};
}

/** What the data are called: by what the analysis is about, or else by their files. */
Sentence AnalysisCommand::source(const std::string& x, const std::string& y) const
{
    const Sentence about = subject(x, y);
    return about.empty() ? Sentence::name(filesInTitle()) + titleSeparator + analysisName() : about;
}

VariableNames AnalysisCommand::variableNames(const PictureWords& asked) const
{
    VariableNames names{asked.xLabel, asked.yLabel, {}, {}, words.ratio};
    for (const std::string& title : words.compared) names.compared.push_back(cutTitle(title));
    if (words.item == "sample" && words.labels.size() == 2)
        for (const std::string& label : words.labels) names.samples.push_back(cutTitle(label));
    return names;
}

PageContent AnalysisCommand::contentOfInputs(const HeldData& held) const
{
    PageContent page;
    page.command = commandName;
    page.version = versionText();
    page.commandLine = commandLine();
    if (words.item == "sample") page.key = keyLines();
    page.leavesOut = !held.leftOut.empty();
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        page.files.push_back({inputs[i]->name(), readText(held, i, inputs.size(), inputs[i]->rowsRead()), ""});
        for (const Sentence& warning : inputs[i]->warnings()) page.warnings.push_back(warning);
    }
    return page;
}

namespace {

std::string nameOf(const std::string& name) { return name == "-" ? "standard input" : name; }

}  // namespace

void AnalysisCommand::addFingerprints(PageContent& content) const
{
    for (std::size_t i = 0; i < inputNames.size(); ++i) setFingerprint(content.files[i], inputNames[i], fingerprints.at(inputNames[i]));
}

/** A file that could not be read stands on the page all the same. */
PageFile AnalysisCommand::fileOfSeveral(const std::string& name) const
{
    PageFile file{nameOf(name), "", ""};
    const auto taken = fingerprints.find(name);
    try {
        setFingerprint(file, name, taken == fingerprints.end() ? "" : taken->second);
    } catch (const CannotAnalyse&) {  // it has none
    }
    return file;
}

void AnalysisCommand::writePage(const std::string& html) const
{
    OutputFile file(views.pageName(), "the page");
    if (file.isDirect()) throw CannotAnalyse(shown(views.pageName()) + ": is no file");
    file.write(html);
    file.keep();
}

void AnalysisCommand::keepFailure(const std::string& text)
{
    if (views.pageName().empty()) return;
    OneOfSeveral one;
    one.name = inputs.empty() ? nameOf(fileNames.back()) : inputs.back()->name();
    const bool isNamed = text.compare(0, one.name.size(), one.name) == 0;
    one.failure = isNamed ? Sentence::name(one.name) + text.substr(one.name.size()) : Sentence(text);
    pageOfAll.analyses.push_back(one);
}

PictureWords AnalysisCommand::wordsOfMultiple(const std::string& name) const
{
    PictureWords small = pictureWords();
    small.source = name;
    small.title = "";
    small.residuals = false;
    small.canvas = Canvas();
    small.canvas.isSmallMultiple = true;
    small.canvas.width = 320.0;
    small.canvas.height = 240.0;
    small.canvas.fontSize = 9.0;
    return small;
}

void AnalysisCommand::writePageOfSeveral()
{
    pageOfAll.fileName = views.pageName();
    pageOfAll.command = commandName;
    pageOfAll.heading = Sentence::name(views.plot().title.value_or(""));
    if (pageOfAll.heading.empty()) {
        pageOfAll.heading = counted(pageOfAll.analyses.size(), "analysis", "analyses");
        if (!byColumn.empty()) pageOfAll.heading += ", by " + Sentence::name(cutTitle(byColumn));
    }
    const std::string source =
        givenFiles.size() > 1 ? counted(givenFiles.size(), "file", "files") : nameOf(givenFiles.empty() ? "-" : givenFiles.front());
    pageOfAll.title =
        pageOfAll.heading.text() + titleSeparator + analysisName() + titleSeparator + std::filesystem::path(source).filename().string();
    pageOfAll.alpha = alpha;
    pageOfAll.version = versionText();
    pageOfAll.commandLine = commandLine();
    std::set<std::string> named;
    for (const std::string& name : givenFiles.empty() ? std::vector<std::string>{"-"} : givenFiles)
        if (named.insert(name).second) pageOfAll.files.push_back(fileOfSeveral(name));
    progress().show("drawing");
    writePage(htmlPageOfSeveral(pageOfAll));
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
