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

wq_exact::Limits limitsOfLineThroughGroups(const std::string& file, const std::string& kind, double x)
{
    wq_lib::LinearRegressionMultiY series;
    series.readSeriesFile(file);
    series.createSeries();
    series.analyse();
    const wq_exact::MultiYResult exact = wq_exact::of(series);
    return kind == "prediction" ? exact.predictionLimits(x, 3) : exact.lineLimits(x);
}

// The path is exact/KIND/X/lower or upper.
double exactFigure(const Words& arguments, const std::vector<std::string>& path)
{
    using Limits = wq_exact::Limits (*)(const std::string&, const std::string&, double);
    static const std::map<std::string, Limits> models = {{"linear", limitsOfLine<wq_lib::LinearRegression>},
                                                         {"logarithmic", limitsOfLine<wq_lib::LogarithmicRegression>},
                                                         {"exponential", limitsOfLine<wq_lib::ExponentialRegression>},
                                                         {"power", limitsOfLine<wq_lib::PowerRegression>},
                                                         {"multiy", limitsOfLineThroughGroups}};
    const std::string& file = arguments.back();
    const std::string& model = arguments.at(arguments.front() == "regress" ? 2 : 0);
    const double x = numberIn(path.at(2));
    const wq_exact::Limits limits = path.at(1) == "group" ? limitsOfGroup(file, x) : models.at(model)(file, path.at(1), x);
    return path.at(3) == "lower" ? limits.lower : limits.upper;
}

// ---------------------------------------------------------------- the comparison

// What R itself rounds away: cor.test takes 1 - r^2, of which r = 0.999997 leaves ten digits; ks.test counts the arrangements
// with a smaller D, and takes the share from 1. The values are those of tests/reference/where_r_rounds.py.
const struct {
    std::string command, file, path;
    double value;
} whereRRounds[] = {
    {"correlate", "pairs/nist_norris.txt", "pT", 4.6540408524724094e-90},
    {"correlate", "pairs/nist_norris.txt", "FSignificance", 2.3270204262362047e-90},
    {"correlate", "pairs/nist_norris.txt", "pF", 4.6540408524724094e-90},
    {"pairs", "pairs/nist_norris.txt", "p", 4.6540408524724094e-90},
    {"ks", "classes/iris_classes.txt", "pTheseSizes", 5.2715783824985897e-14},
};

bool endsWith(const std::string& text, const std::string& end)
{
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

double expectedFigure(const Words& arguments, const std::string& path, double byR)
{
    for (const auto& row : whereRRounds)
        if (arguments.front() == row.command && path == row.path && endsWith(arguments.back(), row.file)) return row.value;
    return byR;
}

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
    const std::vector<TableRow> rows = saidByR(folder);
    for (const TableRow& row : rows) {
        const Words arguments = split(row.cells.at(0), ' ');
        const std::vector<std::string> path = split(row.cells.at(1), '/');
        const double expected = expectedFigure(arguments, row.cells.at(1), numberIn(row.cells.at(2)));
        double value = 0.0;
        if (path.front() == "exact") {
            value = exactFigure(arguments, path);
        } else {
            Json& figures = made[row.cells.at(0)];
            if (figures.is_null()) figures = documentOf(arguments).at("textbook");
            value = numberOf(figures.at(Json::json_pointer("/" + row.cells.at(1))));
        }
        EXPECT_NEAR(value, expected, 1e-10 * std::fabs(expected)) << row.cells.at(0) << ": " << row.cells.at(1);
        commands.insert(path.front() == "exact" ? path.at(1) : arguments.front());
    }
    EXPECT_EQ(commands, (std::set<std::string>{"anova", "confidence", "correlate", "describe", "fit", "group", "ks", "multiy", "pairs",
                                               "prediction", "regress", "variances"}));
    RecordProperty("figures", static_cast<int>(rows.size()));
}

}  // namespace
