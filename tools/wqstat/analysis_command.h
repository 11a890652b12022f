// The steps that all analyses of data files share: read, check, report, list, export; once for each file, or each part of a table.
#pragma once

#include "command.h"
#include "pictures/gnuplot.h"
#include "data_files/comment_words.h"
#include "data_files/data_words.h"
#include "data_files/input.h"
#include "data_files/line_check.h"
#include "data_files/table_options.h"
#include "results/result_members.h"
#include "results/result_writer.h"
#include "command_line/options.h"
#include "pictures/picture.h"
#include "results/captured_output.h"
#include "results/held_data.h"
#include "results/html_page.h"
#include "results/html_page_of_several.h"
#include "results/page_file.h"
#include "command_line/progress.h"
#include "results/textbook.h"
#include "results/warnings.h"

#include <wq_stat/wq_stat.h>

#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace wqstat {

constexpr char titleSeparator[] = " \u2013 ";

class AnalysisCommand : public Command {
public:
    void declare(CLI::App& app) final;

    /** Analyses one file after the other; what cannot be analysed is told where there are several, and the next comes. */
    ExitStatus run() final;

protected:
    /** Reads the data of one analysis, analyses and presents them. @throws CannotAnalyse, WrongUsage */
    virtual void analyse() = 0;

    /** What the data files are, for the list of options. */
    virtual std::string filesText() const { return "data files, each analysed by itself; - is standard input, as is no FILE"; }

    /** How many files one analysis needs: 1 or 2. */
    virtual std::size_t filesOfEach() const { return 1; }

    /** The files of the analysis that is made. */
    const std::vector<std::string>& files() const { return fileNames; }

    /** Adds the options of the one command. */
    virtual void declareOptions(CLI::App&) {}

    /** Adds --list and --export. */
    virtual void declareOutputs(CLI::App& app);

    /** What it is called in titles: "one-way Anova". */
    virtual std::string analysisName() const = 0;

    /** What it is about where both axes have names; of a single variable the y axis shows a count. */
    virtual Sentence aboutBoth(const Sentence& x, const Sentence&) const { return x; }

    /** What its pictures can show besides the usual. */
    virtual PlotChoices plotChoices() const { return {}; }

    /** Whether its results hold groups of observations. */
    virtual bool hasGroups() const { return false; }

    /** What --list and --export put out, where it is not the usual thing. */
    virtual OutputNames outputNames() const
    {
        return hasGroups() ? OutputNames{"groups", "groups, one per row,"} : OutputNames{"observations", "data"};
    }

    /** Adds an option that names a column of a table. */
    void addColumn(CLI::App& app, ColumnOption& column) { tableOptions.addColumn(app, column); }

    /** Whether the data files are tables: a column has been named. */
    bool readsTables() const { return tableOptions.isTable(); }

    /** Sets the shared options and reads the data file. */
    const Input& read(wq_lib::BasicStatistics& analysis, Layout layout);
    const Input& readSeries(wq_lib::LinearRegressionMultiY& analysis);
    const Input& read(wq_lib::BasicStatistics& analysis, const std::string& name, Layout layout);

    /**
     * Sets the shared options and hands the rows of the data file, a table, to takeRow.
     * @throws WrongUsage where a column that is needed has not been named.
     */
    const TableRows& readTable(wq_lib::BasicStatistics& analysis, const std::vector<Column>& columns, const RowHandler& takeRow);
    const TableRows& readTable(wq_lib::BasicStatistics& analysis, const std::string& name, const std::vector<Column>& columns,
                               const RowHandler& takeRow);

    /** Pairs in the library's own format, with the names that their comment has for them. */
    const Input& readNamedPairs(wq_lib::BasicXyStatistics& analysis);

    /** Pairs: of two columns, where these are named, or of a file in the format of pairs. */
    const Input& readPairs(wq_lib::BasicXyStatistics& analysis, const ColumnOption& x, const ColumnOption& y);

    /** The words to show the results with, for readers of tables. */
    DataWords words;

    /** Where the data are pairs in the library's own format, how their comment names the columns. */
    PairNames namesInComment;

    /** Prints warnings and report, then textbook, details, listing, export and picture as the options ask; or the results as JSON. */
    template <typename Analysis>
    void present(Analysis& analysis)
    {
        present(analysis, [] {});
    }

    template <typename Analysis, typename Details>
    void present(Analysis& analysis, Details printDetails)
    {
        progress().hide();
        guardFiles();
        const auto exact = exactOf(analysis);
        Warnings warnings = warningsOf(exact, analysis);
        if (!words.doubt.empty()) warnings.add(words.doubt);
        if (!outputs.exportName().empty()) warnings.add(exportWarnings(analysis));
        printWarnings(warnings.all());
        Textbook book = textbook(exact);
        if (views.json() || views.tsv()) {
            book.setWarnings(warnings.all());
            writeResults(resultWriter(), {commandName, inputNames, byColumn, byValue, book, words, views.observations()}, analysis);
            if (!isOneOfSeveral) resultWriter().finish();  // whatever becomes of the files
        } else {
            book.setWarnings(warnings.others);  // the block has its own words for decisions that differ
            printName();
            analysis.reportConsole();
            printKey();
            if (views.textbook()) std::cout << book.block();
            printDetails();
            if (outputs.listRange()) list(analysis, *outputs.listRange());
        }
        progress().show("writing");
        if (!outputs.exportName().empty())
            writeExport([&](const std::string& path) { return exportTo(analysis, path, exportComment(analysis)); });
        if (!views.plot().fileName.empty()) draw(picture(analysis, pictureWords()), views.plot().fileName);
        if (views.pageName().empty()) return;
        if (isOneOfSeveral)
            keepForPage(analysis);
        else
            writePage(htmlPage(pageOf(analysis)));
    }

private:
    std::vector<std::vector<std::string>> filesOfAll() const;
    void guardOutputsOfSeveral() const;
    const std::string& fileToShow() const;
    void requireSomethingToShow() const;
    void analyseNext();
    void describing(const Table& table, const std::function<void()>& read) const;
    const TableRows& readPart(const std::string& name, const std::vector<Column>& columns, const RowHandler& takeRow);
    ResultWriter& resultWriter();
    void printName();
    const Input& open(const std::string& name, Layout layout, const std::function<bool(const std::string&)>& readFile);
    void guardFiles() const;
    void guardPageOfSeveral(const std::vector<std::vector<std::string>>& all) const;
    void keepFailure(const std::string& text);

    template <typename Analysis>
    static std::string reportOf(Analysis& analysis)
    {
        const CapturedOutput output;
        analysis.reportConsole();
        return output.text();
    }

    template <typename Analysis>
    PageContent pageOf(Analysis& analysis) const
    {
        const PictureWords wordsOfPicture = pictureWords();
        const Picture drawn = picture(analysis, wordsOfPicture);
        PageContent page = contentOf(analysis, wordsOfPicture, drawn.title);
        addFingerprints(page);
        page.picture = inlineSvg(drawn, "picture-", views.pageName());
        return page;
    }

    /** For the page of all, which is written when the last analysis is made. */
    template <typename Analysis>
    void keepForPage(Analysis& analysis)
    {
        const PictureWords wordsOfPicture = pictureWords();
        Picture drawn = picture(analysis, wordsOfPicture);
        PageContent content = contentOf(analysis, wordsOfPicture, drawn.title);
        OneOfSeveral one;
        one.name = inputs.back()->name();
        one.question = content.statement.question;
        one.summary = content.statement.summary;
        one.differences = content.textbook->differenceSentences();
        one.pathOfP = content.textbook->deciding().empty() ? "" : "textbook/" + content.textbook->deciding();
        one.p = content.textbook->value(content.textbook->deciding());
        if (pageOfAll.analyses.size() < SeveralContent::mostMultiples) one.multiple = picture(analysis, wordsOfMultiple(one.name));
        if (pageOfAll.analyses.size() < SeveralContent::mostSections) {
            one.picture = std::move(drawn);
            one.content = std::move(content);
        }
        pageOfAll.analyses.push_back(std::move(one));
    }

    template <typename Analysis>
    PageContent contentOf(Analysis& analysis, const PictureWords& wordsOfPicture, const std::string& title) const
    {
        PageContent page = contentOfInputs(heldBy(analysis));
        const bool isOwn = title == wordsOfPicture.source;
        page.heading = isOwn ? source(wordsOfPicture.xLabel, wordsOfPicture.yLabel) : Sentence::name(title);
        const bool isOfFiles = isOwn && subject(wordsOfPicture.xLabel, wordsOfPicture.yLabel).empty();
        page.title = isOfFiles ? title : title + titleSeparator + analysisName() + titleSeparator + filesInTitle();
        page.statement = statementOf(analysis, variableNames(wordsOfPicture));
        const auto exact = exactOf(analysis);
        page.textbook = textbook(exact);
        Warnings warnings = warningsOf(exact, analysis);
        if (!words.doubt.empty()) warnings.add(words.doubt);
        page.textbook->setWarnings(warnings.others);
        for (const std::string& warning : warnings.leavingOut)
            page.warnings.push_back(Sentence::name(inputs.back()->name()) + ": warning: " + warning);
        page.rows = rowsOf(analysis, words);
        page.report = reportOf(analysis);
        return page;
    }

    std::string nameInTitle(std::size_t input) const;
    std::string filesInTitle() const;
    Sentence subject(const std::string& x, const std::string& y) const;
    Sentence source(const std::string& x, const std::string& y) const;
    VariableNames variableNames(const PictureWords& asked) const;
    PageContent contentOfInputs(const HeldData& held) const;
    void addFingerprints(PageContent& page) const;
    PageFile fileOfSeveral(const std::string& name) const;
    PictureWords wordsOfMultiple(const std::string& name) const;
    void writePage(const std::string& html) const;
    void writePageOfSeveral();

    /** Of the data files and of the analysis, unless they are not wanted. */
    void printWarnings(const std::vector<std::string>& ofAnalysis);
    void printWarning(const std::string& text) const;
    void printKey() const;
    std::vector<Sentence> keyLines() const;
    std::string exportComment(const wq_lib::BasicStatistics& analysis) const;
    void writeExport(const std::function<bool(const std::string&)>& writeFile) const;
    PictureWords pictureWords() const;

    static void list(wq_lib::BasicStatistics& analysis, ListRange range);
    static void list(wq_lib::BasicXyStatistics& analysis, ListRange range);
    static void list(wq_lib::SingleAnova& analysis, ListRange range);
    static bool exportTo(wq_lib::BasicStatistics& analysis, const std::string& fileName, const std::string& comment);
    static bool exportTo(wq_lib::Frequency& analysis, const std::string& fileName, const std::string& comment);

    std::vector<std::string> givenFiles;
    std::string commandName;
    double alpha = 0.05;
    bool lenient = false;
    Outputs outputs;
    Views views;
    TableOptions tableOptions;
    std::unique_ptr<ResultWriter> writer;
    bool isOneOfSeveral = false;
    bool hasPrinted = false;                          // the report of another analysis
    bool hasWarned = false;                           // of the data that are being analysed
    SeveralContent pageOfAll;                         // of several analyses
    std::map<std::string, std::string> fingerprints;  // of what can be read only once, by name
    ExitStatus status = done;

    // Of the analysis that is made.
    std::vector<std::string> fileNames;
    std::vector<std::string> inputNames;  // as on the command line
    std::vector<std::unique_ptr<Input>> inputs;
    std::vector<std::string> descriptions;  // of tables, where they are asked for
    std::vector<std::unique_ptr<TablePart>> tableParts;
    std::size_t part = 0;
    std::string byColumn;  // its title
    std::string byValue;
};

}  // namespace wqstat
