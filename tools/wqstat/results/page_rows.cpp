#include "page_rows.h"

#include "pictures/chart.h"
#include "results/figures.h"

#include <wq_exact/wq_exact.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

namespace wqstat {

namespace {

/** "group 1: ctrl"; "group 7" without labels. */
Sentence nameOf(const char* item, double number, const DataWords& words)
{
    constexpr std::size_t longest = 80;  // characters of a label
    const std::string name = std::string(item) + " " + figures(number, 10);
    const auto place = number >= 1.0 ? static_cast<std::size_t>(number) - 1 : words.labels.size();
    return place < words.labels.size() ? name + ": " + Sentence::name(fitted(words.labels[place], longest)) : name;
}

/** @param rowAt makes the row with the number, counted from 0. */
template <typename RowAt>
void fill(PageRows& table, std::size_t total, RowAt rowAt)
{
    table.total = total;
    for (std::size_t i = 0; i < std::min(total, PageRows::mostShown); ++i) table.rows.push_back(rowAt(i));
}

std::string place(const char* array, std::size_t i) { return std::string(array) + "/" + std::to_string(i) + "/"; }

/** @param of where the record of the Anova stands in the document. */
PageRows groupRows(const wq_lib::SingleAnova& anova, const wq_exact::AnovaResult& exact, const DataWords& words, const std::string& of)
{
    const std::string level = figures(100.0 * anova.getConfidence()) + " %";
    PageRows table;
    table.caption = "The groups, with exact " + level + " confidence limits of their means by the variance within all of them";
    table.item = "group";
    table.items = "groups";
    table.heads = {"group", "n", "mean", "lower limit", "upper limit"};
    fill(table, anova.getGroups().size(), [&](std::size_t i) {
        const wq_lib::anova_group& group = anova.getGroups()[i];
        const wq_exact::Limits limits = exact.meanLimits(group);
        const std::string record = of + place("groups", i);
        const std::string exactRecord = place("textbook/groupLimits", i);
        return PageRows::Row{nameOf("group", group.id, words),
                             {{record + "n", static_cast<double>(group.n)},
                              {record + "mean", group.mean, limits.upper - limits.lower},
                              {exactRecord + "lower", limits.lower, limits.upper - limits.lower},
                              {exactRecord + "upper", limits.upper, limits.upper - limits.lower}}};
    });
    return table;
}

PageRows classRows(std::string caption)
{
    PageRows table;
    table.caption = std::move(caption);
    table.item = "class";
    table.items = "classes";
    return table;
}

}  // namespace

FitClass fitClass(wq_lib::GoodnessOfFit& test, std::size_t i)
{
    const wq_lib::data_pair pair = test.getDataPair(i);
    double difference = pair.x - pair.y;
    if (test.isYatesCorrection() && test.getSampleSize() == 2) difference = std::fabs(difference) - 0.5;
    return {pair.x, pair.y, difference * difference / pair.y};
}

PageRows rowsOf(const wq_lib::SingleAnova& anova, const DataWords& words)
{
    return groupRows(anova, wq_exact::of(anova), words, "result/");
}

PageRows rowsOf(const wq_lib::LinearRegressionMultiY& regression, const DataWords& words)
{
    PageRows table = groupRows(regression, wq_exact::of(regression).groups, words, "result/anova/");
    for (std::size_t i = 0; i < table.rows.size(); ++i) table.rows[i].name = "x = " + readable(regression.getGroups()[i].id);
    table.heads.front() = "x";
    return table;
}

PageRows rowsOf(wq_lib::GoodnessOfFit& test, const DataWords& words)
{
    PageRows table = classRows("The classes, and what each adds to chi-square");
    table.heads = {"class", "observed", "expected", "contribution"};
    fill(table, test.getSampleSize(), [&](std::size_t i) {
        const FitClass one = fitClass(test, i);
        const std::string record = place("result/classes", i);
        return PageRows::Row{
            nameOf("class", static_cast<double>(i + 1), words),
            {{record + "observed", one.observed}, {record + "expected", one.expected}, {record + "contribution", one.contribution}}};
    });
    return table;
}

PageRows rowsOf(wq_lib::KolmogorovSmirnov2& test, const DataWords& words)
{
    PageRows table = classRows("The classes: counts in both samples, shares up to the end of the class, and their difference");
    table.heads = {"class", "count 1", "count 2", "share 1", "share 2", "diff"};
    const DataWords none;
    fill(table, test.getSampleSize(), [&](std::size_t i) {
        const auto [c1, c2] = test.getCumulativeFrequency(i);
        const wq_lib::data_pair counts = test.getDataPair(i);
        const double share1 = c1 / static_cast<double>(test.getN1());
        const double share2 = c2 / static_cast<double>(test.getN2());
        const std::string record = place("result/cumulativeFrequencies", i);
        return PageRows::Row{nameOf("class", static_cast<double>(i + 1), words.item == "class" ? words : none),
                             {{record + "count1", counts.x},
                              {record + "count2", counts.y},
                              {record + "relF1", share1},
                              {record + "relF2", share2},
                              {record + "diff", std::fabs(share1 - share2)}}};
    });
    return table;
}

PageRows rowsOf(const wq_lib::Frequency& table, const DataWords&)
{
    PageRows rows = classRows("The classes, each from its lower limit up to the next one's");
    rows.heads = {"class", "lower limit", "upper limit", "count", "rate"};
    const double width = table.getClassWidth();
    fill(rows, table.getTable().size(), [&](std::size_t i) {
        const double number = static_cast<double>(i);
        const std::string record = place("result/table", i);
        return PageRows::Row{"class " + std::to_string(i + 1),
                             {{record + "lower", table.getStartClass() + number * width, width},
                              {record + "upper", table.getStartClass() + (number + 1.0) * width, width},
                              {record + "count", static_cast<double>(table.getTable()[i].count)},
                              {record + "rate", table.getTable()[i].rate}}};
    });
    return rows;
}

}  // namespace wqstat
