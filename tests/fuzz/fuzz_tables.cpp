// A text as a table: the records of a well-formed one are those of a plain reader of CSV, wherever a block of the text ends; any other is
// read or refused.

#include "memory_file.h"
#include "target.h"

#include "command_line/failure.h"
#include "data_files/csv_records.h"
#include "data_files/table.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

using namespace wqstat;

namespace {

using Record = std::vector<std::string>;

bool isBlank(char c, char separator) { return (c == ' ' || c == '\t') && c != separator; }

// ---------------------------------------------------------------- the plain reader

// Goes through the text character by character. RFC 4180, and: blanks around a field do not belong to it, lines may end with a carriage
// return alone, lines of nothing but blanks are left out.
class PlainReader {
public:
    PlainReader(std::string_view csv, char columnSeparator) : text(csv), separator(columnSeparator) {}

    // Nothing where the text is not well-formed.
    std::optional<std::vector<Record>> records()
    {
        std::vector<Record> all;
        while (position < text.size()) {
            Record record;
            bool hasQuotes = false;
            do {
                if (!takeField(record, hasQuotes)) return std::nullopt;
            } while (take(separator));
            takeLineEnd();
            if (record.size() > 1 || !record[0].empty() || hasQuotes) all.push_back(record);
        }
        return all;
    }

private:
    bool at(std::string_view characters) const
    {
        return position < text.size() && characters.find(text[position]) != std::string_view::npos;
    }

    bool take(char c)
    {
        if (position == text.size() || text[position] != c) return false;
        ++position;
        return true;
    }

    void takeLineEnd()
    {
        if (!take('\r') || at("\n")) take('\n');
    }

    void skipBlanks()
    {
        while (position < text.size() && isBlank(text[position], separator)) ++position;
    }

    bool takeField(Record& record, bool& hasQuotes)
    {
        skipBlanks();
        std::string field;
        if (take('"')) {
            hasQuotes = true;
            if (!takeQuoted(field)) return false;
            skipBlanks();
        } else {
            while (position < text.size() && !at("\r\n\"") && text[position] != separator) field += text[position++];
            while (!field.empty() && isBlank(field.back(), separator)) field.pop_back();
        }
        record.push_back(field);
        return position == text.size() || at("\r\n") || text[position] == separator;
    }

    bool takeQuoted(std::string& field)
    {
        while (position < text.size()) {
            if (text[position] == '"' && !(position + 1 < text.size() && text[position + 1] == '"')) {
                ++position;
                return true;
            }
            if (text[position] == '"') ++position;
            field += text[position++];
        }
        return false;
    }

    std::string_view text;
    char separator;
    std::size_t position = 0;
};

// ---------------------------------------------------------------- the program's readers

// Nothing where the text is refused.
std::optional<std::vector<Record>> recordsOf(std::string_view text, char separator)
{
    try {
        CsvRecords records(std::make_unique<TextInMemory>(text), "table");
        records.setSeparator(separator);
        std::vector<Record> all;
        while (records.next()) all.emplace_back(records.fields().begin(), records.fields().end());
        return all;
    } catch (const CannotAnalyse&) {
        return std::nullopt;
    }
}

std::string shownRecords(const std::optional<std::vector<Record>>& records)
{
    if (!records) return "refused";
    std::string text;
    for (const Record& record : *records) {
        for (const std::string& field : record) text += "[" + field + "]";
        text += "\n";
    }
    return text;
}

void compareRecords(std::string_view text, char separator)
{
    const std::optional<std::vector<Record>> expected = PlainReader(text, separator).records();
    const std::optional<std::vector<Record>> found = recordsOf(text, separator);
    if (!expected || text.find('\0') != std::string_view::npos) return;
    wq_fuzz::require(found == expected, "separator ", separator, "\nread:\n", shownRecords(found), "plainly:\n", shownRecords(expected));

    // The same behind a line that ends so that the first block does in the middle of the text.
    constexpr std::size_t block = std::size_t{1} << 16;
    const std::string line(block - text.size() / 2, 'x');
    std::vector<Record> behindLine{{line}};
    behindLine.insert(behindLine.end(), expected->begin(), expected->end());
    const std::optional<std::vector<Record>> foundBehind = recordsOf(line + "\n" + std::string(text), separator);
    wq_fuzz::require(foundBehind == behindLine, "separator ", separator, ", behind a long line");
}

// Without a header and without missing values, the first column as labels.
void compareTable(std::string_view text, const wq_fuzz::MemoryFile& file)
{
    const std::optional<std::vector<Record>> expected = PlainReader(text, ',').records();
    const bool isWrapped = !wrappingOf(text).empty() || text.substr(0, 3) == "\xef\xbb\xbf";
    if (!expected || expected->empty() || isWrapped || text.find('\0') != std::string_view::npos) return;
    const std::size_t width = expected->front().size();
    const auto isUsable = [width](const Record& record) { return record.size() == width && !record[0].empty(); };
    if (!std::all_of(expected->begin(), expected->end(), isUsable)) return;
    TableFormat format;
    format.separator = ',';
    format.header = TableFormat::Header::absent;
    format.missing.clear();
    Table table(file.path(), format);
    std::size_t row = 0;
    table.read({{"1", ColumnKind::label}}, [&](const double* values) {
        const std::string& label = table.labels(0).text(static_cast<std::size_t>(values[0]));
        wq_fuzz::require(row < expected->size() && label == (*expected)[row][0], "row ", row, " has the label ", label);
        ++row;
    });
    wq_fuzz::require(row == expected->size(), row, " rows instead of ", expected->size());
}

// All that is found out from the file.
void readAny(const wq_fuzz::MemoryFile& file)
{
    for (const TableFormat::Header header : {TableFormat::Header::found, TableFormat::Header::absent}) {
        try {
            TableFormat format;
            format.header = header;
            Table table(file.path(), format);
            table.read({{"1", ColumnKind::label}, {"2", ColumnKind::number}, {"3", ColumnKind::count, true}}, [](const double*) {});
            wq_fuzz::require(!table.description().empty(), "no description");
            static_cast<void>(table.warnings());
        } catch (const CannotAnalyse& refusal) {
            wq_fuzz::require(*refusal.what() != '\0', "no reason");
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    constexpr std::size_t longest = 20000;  // less than a block
    if (size > longest) return 0;
    const std::string text(reinterpret_cast<const char*>(bytes), size);
    for (const char separator : {',', ';', '\t'}) compareRecords(text, separator);
    static_cast<void>(recordsOf(text, blanks));
    const wq_fuzz::MemoryFile file;
    file.write(text);
    compareTable(text, file);
    readAny(file);
    return 0;
}
