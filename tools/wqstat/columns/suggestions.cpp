#include "suggestions.h"

#include "command_line/command_words.h"
#include "command_line/visible_text.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <optional>
#include <utility>

namespace wqstat {

namespace {

constexpr std::size_t mostCommands = 10;
constexpr std::size_t leastValues = 3;
constexpr std::size_t longestTitle = 200;  // bytes that can be read in a command line

/** A column that a command line can name. */
struct Choice {
    const ColumnProfile* column;
    std::string name;
};

using Choices = std::vector<Choice>;

/**
 * Its title, or its number where the title is no good, or long; nothing where another column has that number for a title, and where what
 * stands for its title may be data.
 */
std::optional<std::string> nameOf(const TableProfile& table, std::size_t index, bool hasTitles)
{
    const auto isCalled = [&](const std::string& name) {
        return std::count_if(table.columns.begin(), table.columns.end(), [&](const ColumnProfile& each) { return each.title() == name; });
    };
    if (table.columns[index].titleMayBeData()) return std::nullopt;
    const std::string& title = table.columns[index].title();
    if (hasTitles && title.size() <= longestTitle && isCalled(title) == 1 && visible(title) == title) return title;
    const std::string number = std::to_string(index + 1);
    if (hasTitles && isCalled(number) > 0) return std::nullopt;
    return number;
}

/** Whether it numbers the rows, or what they are about, without a gap. */
bool isRunningNumber(const ColumnProfile& column)
{
    const NumberSummary& numbers = column.numberSummary();
    const bool allDiffer = !numbers.distinct() || *numbers.distinct() == numbers.count();
    return numbers.isWhole() && allDiffer && numbers.greatest() - numbers.least() + 1.0 == static_cast<double>(numbers.count());
}

bool hasValues(const ColumnProfile& column)
{
    const NumberSummary& numbers = column.numberSummary();
    return column.kind() == CellKind::number && column.values() >= leastValues && numbers.isFinite() &&
           numbers.least() < numbers.greatest() && column.doubt().empty();
}

/** At least two, few enough to be groups rather than names. */
bool hasGroups(const ColumnProfile& column, std::size_t most, std::size_t leastOfEach)
{
    const std::optional<std::size_t> distinct = column.distinct();
    return distinct && *distinct >= 2 && *distinct <= most && column.values() >= leastOfEach * *distinct;
}

/** Rows that have a value in both columns, at the very least. */
std::uint64_t leastShared(const TableProfile& table, const Choice& a, const Choice& b)
{
    const std::uint64_t missing = a.column->missing() + b.column->missing();
    return missing < table.rows ? table.rows - missing : 0;
}

bool haveOneMark(const Choice& a, const Choice& b)
{
    const char marks[] = {a.column->decimalMark(), b.column->decimalMark()};
    return marks[0] == '\0' || marks[1] == '\0' || marks[0] == marks[1];
}

/** Collects command lines. */
class Suggestions {
public:
    Suggestions(const TableProfile& profile, const TableWords& tableWords) : table(profile), words(tableWords)
    {
        Choices running;
        for (std::size_t i = 0; i < table.columns.size(); ++i) {
            const ColumnProfile& column = table.columns[i];
            const std::optional<std::string> name = nameOf(table, i, words.hasTitles);
            if (!name) continue;
            if (hasValues(column)) (isRunningNumber(column) ? running : values).push_back({&column, *name});
            if (column.kind() == CellKind::label && hasGroups(column, 50, 2)) labels.push_back({&column, *name});
        }
        if (values.empty()) values = running;
    }

    std::vector<std::string> all()
    {
        for (std::size_t i = 0; i < std::min<std::size_t>(values.size(), 3); ++i) add("describe", {{"--column", values[i].name}});
        addGroups();
        addTwoSamples();
        addPairs();
        if (values.empty()) addClasses();
        if (commands.size() > mostCommands) commands.resize(mostCommands);
        return std::move(commands);
    }

private:
    using Options = std::vector<std::pair<std::string, std::string>>;

    void add(const std::string& command, const Options& options)
    {
        std::vector<std::string> line{command};
        line.insert(line.end(), words.reading.begin(), words.reading.end());
        for (const auto& [option, value] : options) {
            const std::vector<std::string> more = optionWords(option, value);
            line.insert(line.end(), more.begin(), more.end());
        }
        line.push_back(fileWord(words.fileName));
        commands.push_back(commandLine(line));
    }

    /** Labels, and numbers that are so few that they may stand for groups. */
    void addGroups()
    {
        Choices groups = labels;
        std::copy_if(values.begin(), values.end(), std::back_inserter(groups),
                     [](const Choice& each) { return hasGroups(*each.column, 6, 5); });
        if (groups.size() > 2) groups.resize(2);
        for (const Choice& group : groups) {
            std::size_t added = 0;
            for (const Choice& value : values) {
                if (value.column == group.column || added == 2 || leastShared(table, group, value) <= *group.column->distinct()) continue;
                add("anova", {{"--group", group.name}, {"--value", value.name}});
                ++added;
            }
        }
    }

    void addTwoSamples()
    {
        for (const Choice& group : labels) {
            if (*group.column->distinct() != 2 || values.empty()) continue;
            const Choice& value = values.front();
            if (group.column->labelCounts().leastCount() < value.column->missing() + leastValues) continue;
            for (const char* const command : {"ks", "variances"}) add(command, {{"--value", value.name}, {"--group", group.name}});
            return;
        }
    }

    void addPairs()
    {
        std::size_t pairs = 0;
        for (std::size_t y = 1; y < values.size() && pairs < 2; ++y) {
            const Options options{{"--x", values[0].name}, {"--y", values[y].name}};
            if (!haveOneMark(values[0], values[y]) || leastShared(table, values[0], values[y]) < leastValues) continue;
            add("correlate", options);
            if (pairs++ > 0) continue;
            Options line{{"--model", "linear"}};
            line.insert(line.end(), options.begin(), options.end());
            add("regress", line);
        }
    }

    /** Where nothing was measured, what was counted. */
    void addClasses()
    {
        constexpr std::size_t mostLabels = 10;
        for (const Choice& label : labels) {
            const std::size_t classes = *label.column->distinct();
            if (classes > mostLabels) continue;
            std::string ratio = "1";
            for (std::size_t i = 1; i < classes; ++i) ratio += ":1";
            add("fit", {{"--column", label.name}, {"--ratio", ratio}});
        }
    }

    const TableProfile& table;
    const TableWords& words;
    Choices values;
    Choices labels;
    std::vector<std::string> commands;
};

}  // namespace

std::vector<std::string> fittingCommands(const TableProfile& table, const TableWords& words) { return Suggestions(table, words).all(); }

}  // namespace wqstat
