// The steps that all analyses of data files share: read, check, report, list, export.
#pragma once

#include "command.h"
#include "gnuplot.h"
#include "input_file.h"
#include "json_results.h"
#include "options.h"
#include "picture.h"
#include "progress.h"
#include "textbook.h"

#include <wq_stat/wq_stat.h>

#include <functional>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace wqstat {

class AnalysisCommand : public Command {
public:
    void declare(CLI::App& app) final;

protected:
    /** Adds the data files; one unless overridden. */
    virtual void declareFiles(CLI::App& app);

    /** Adds the options of the one command. */
    virtual void declareOptions(CLI::App&) {}

    /** Adds --list and --export. */
    virtual void declareOutputs(CLI::App& app);

    /** Whether there is a test, and so a --textbook. */
    virtual bool hasTest() const { return true; }

    /** What --list and --export put out, where it is not the usual thing. */
    virtual OutputNames outputNames() const { return {"observations", "data"}; }

    /** Sets the shared options and reads the data file. */
    const InputFile& read(wq_lib::BasicStatistics& analysis, Layout layout);
    const InputFile& readSeries(wq_lib::LinearRegressionMultiY& analysis);
    const InputFile& read(wq_lib::BasicStatistics& analysis, const std::string& name, Layout layout);

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
        guardInputs();
        printWarnings();
        if (views.json()) {
            std::cout << jsonDocument({commandName, inputNames, textbookOf(analysis)}, analysis);
        } else {
            analysis.reportConsole();
            if (const auto book = textbookOf(analysis)) std::cout << book->block();
            printDetails();
            if (outputs.listRange()) list(analysis, *outputs.listRange());
        }
        progress().show("writing");
        if (!outputs.exportName().empty()) reportExport(exportTo(analysis, outputs.exportName(), exportComment(analysis)));
        if (!views.plot().fileName.empty()) draw(picture(analysis, pictureWords()), views.plot().fileName);
    }

private:
    const InputFile& open(const std::string& name, Layout layout, const std::function<bool(const std::string&)>& readFile);
    void guardInputs() const;

    /** The textbook, when it is asked for. */
    template <typename Analysis>
    std::optional<Textbook> textbookOf(Analysis& analysis) const
    {
        if constexpr (hasTextbook<Analysis>)
            if (views.textbook()) return textbook(analysis);
        return {};
    }

    void printWarnings() const;
    std::string exportComment(const wq_lib::BasicStatistics& analysis) const;
    void reportExport(bool written) const;
    PictureWords pictureWords() const;

    static void list(wq_lib::BasicStatistics& analysis, ListRange range);
    static void list(wq_lib::BasicXyStatistics& analysis, ListRange range);
    static void list(wq_lib::SingleAnova& analysis, ListRange range);
    static bool exportTo(wq_lib::BasicStatistics& analysis, const std::string& fileName, const std::string& comment);
    static bool exportTo(wq_lib::Frequency& analysis, const std::string& fileName, const std::string& comment);

    std::string fileName;
    std::string commandName;
    double alpha = 0.05;
    Outputs outputs;
    Views views;
    std::vector<std::string> inputNames;  // as on the command line
    std::vector<std::unique_ptr<InputFile>> inputs;
};

}  // namespace wqstat
