// The exact figures of every data set at hand, those that are shipped and those of WQ_REFERENCE_DATA, against R's t.test, aov, lm, predict,
// cor.test, chisq.test, var.test and ks.test (tests/reference/textbook_all_data.R).
#include "commands.h"
#include "data_files.h"
#include "documents.h"

#include "support/files.h"
#include "support/r.h"
#include "support/table.h"

#include <wq_exact/wq_exact.h>

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace wq_test;

std::vector<std::string> split(const std::string& text, char at)
{
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, at);) parts.push_back(part);
    return parts;
}

// ---------------------------------------------------------------- what only wq_exact has

template <typename Model>
wq_exact::Limits limitsOfLine(const std::string& file, const std::string& kind, double x)
{
    Model regression;
    regression.readDataFile(file);
    regression.analyse();
    const wq_exact::RegressionResult exact = wq_exact::of(regression);
    return kind == "prediction" ? exact.predictionLimits(x) : exact.lineLimits(x);
}

wq_exact::Limits limitsOfGroup(const std::string& file, double id)
{
    wq_lib::SingleAnova anova;
    anova.readDataFile(file);
    anova.createSeries();
    anova.analyse();
    return wq_exact::of(anova).meanLimits(*anova.getGroup(id));
}

// The path is exact/KIND/X/lower or upper.
double exactFigure(const Words& arguments, const std::vector<std::string>& path)
{
    using Limits = wq_exact::Limits (*)(const std::string&, const std::string&, double);
    static const std::map<std::string, Limits> models = {{"linear", limitsOfLine<wq_lib::LinearRegression>},
                                                         {"logarithmic", limitsOfLine<wq_lib::LogarithmicRegression>},
                                                         {"exponential", limitsOfLine<wq_lib::ExponentialRegression>},
                                                         {"power", limitsOfLine<wq_lib::PowerRegression>}};
    const std::string& file = arguments.back();
    const double x = numberIn(path.at(2));
    const wq_exact::Limits limits = path.at(1) == "group" ? limitsOfGroup(file, x) : models.at(arguments.at(2))(file, path.at(1), x);
    return path.at(3) == "lower" ? limits.lower : limits.upper;
}

// ---------------------------------------------------------------- the comparison

// The data sets that are shipped, in a folder for each kind, as the reference data are.
std::string foldersOfKinds(const TempFolder& folder)
{
    for (const auto& [kind, files] : data_files::shippedByKind) {
        std::filesystem::create_directory(folder.path(kind));
        for (const std::string& file : files) folder.write(kind + "/" + file, contentOf(shipped(file)));
    }
    return folder.path("");
}

std::vector<TableRow> saidByR(const TempFolder& folder)
{
    Words command = {"Rscript", "--vanilla", std::string(WQ_TEST_DIR) + "/reference/textbook_all_data.R", foldersOfKinds(folder)};
    if (const std::string data = reference(""); !data.empty()) command.push_back(data);
    const Outcome outcome = runCommand(command);
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    return readTable(folder.write("by_r.csv", outcome.output));
}

TEST(Textbook, agreesWithROnAllDataSets)
{
    WQ_SKIP_WITHOUT_R();
    const TempFolder folder;
    std::map<std::string, Json> made;
    std::set<std::string> commands;
    int atFullPrecision = 0;
    const std::vector<TableRow> rows = saidByR(folder);
    for (const TableRow& row : rows) {
        const Words arguments = split(row.cells.at(0), ' ');
        const std::vector<std::string> path = split(row.cells.at(1), '/');
        const double expected = numberIn(row.cells.at(2));
        const double tolerance = numberIn(row.cells.at(3));
        double value = 0.0;
        if (path.front() == "exact") {
            value = exactFigure(arguments, path);
        } else {
            Json& figures = made[row.cells.at(0)];
            if (figures.is_null()) figures = documentOf(arguments).at("textbook");
            value = numberOf(figures.at(Json::json_pointer("/" + row.cells.at(1))));
        }
        EXPECT_NEAR(value, expected, tolerance * std::fabs(expected)) << row.cells.at(0) << ": " << row.cells.at(1);
        commands.insert(path.front() == "exact" ? path.at(1) : arguments.front());
        if (tolerance < 1.1e-10) ++atFullPrecision;
    }
    EXPECT_EQ(commands, (std::set<std::string>{"anova", "confidence", "correlate", "describe", "fit", "group", "ks", "multiy", "pairs",
                                               "prediction", "regress", "variances"}));
    EXPECT_GT(atFullPrecision, static_cast<int>(rows.size()) * 9 / 10);
    RecordProperty("figures", static_cast<int>(rows.size()));
}

}  // namespace
