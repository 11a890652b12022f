// Inputs as text: a call per line, its name first, then its arguments, all separated by blanks. Every text is some script: what is
// missing is 0 or empty, and a name that does not exist stands for one that does.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace wq_fuzz {

class Line {
public:
    explicit Line(std::string_view text) : rest(text) {}

    // The next word; empty at the end of the line.
    std::string word()
    {
        const std::size_t start = rest.find_first_not_of(' ');
        rest.remove_prefix(start == std::string_view::npos ? rest.size() : start);
        const std::string_view found = rest.substr(0, rest.find(' '));
        rest.remove_prefix(found.size());
        return std::string(found);
    }

    // The next word as a number: as std::strtod reads it, or '$' and the bits in hexadecimal notation.
    double number()
    {
        const std::string text = word();
        if (text.empty() || text.front() != '$') return std::strtod(text.c_str(), nullptr);
        const std::uint64_t bits = std::strtoull(text.c_str() + 1, nullptr, 16);
        double value;
        std::memcpy(&value, &bits, sizeof value);
        return value;
    }

    // The next word as a count; "-1" is the largest one.
    std::size_t count() { return std::strtoull(word().c_str(), nullptr, 10); }

    bool flag() { return count() != 0; }

    std::vector<double> numbers()
    {
        std::vector<double> all;
        while (rest.find_first_not_of(' ') != std::string_view::npos) all.push_back(number());
        return all;
    }

    // All that follows the next blank, with \n, \r, \t, \0 and \\ for what they stand for elsewhere.
    std::string text()
    {
        if (!rest.empty() && rest.front() == ' ') rest.remove_prefix(1);
        std::string result;
        for (std::size_t i = 0; i < rest.size(); ++i) {
            const std::size_t which =
                rest[i] == '\\' && i + 1 < rest.size() ? std::string_view("nrt0\\").find(rest[i + 1]) : std::string_view::npos;
            if (which == std::string_view::npos) {
                result += rest[i];
            } else {
                result += "\n\r\t\0\\"[which];
                ++i;
            }
        }
        rest = {};
        return result;
    }

private:
    std::string_view rest;
};

inline std::vector<Line> linesOf(std::string_view script)
{
    std::vector<Line> lines;
    while (!script.empty()) {
        const std::string_view line = script.substr(0, script.find('\n'));
        script.remove_prefix(line.size() == script.size() ? line.size() : line.size() + 1);
        if (!line.empty() && line.front() != '#') lines.emplace_back(line);
    }
    return lines;
}

// The entry of a table with that name; for an unknown name one that depends on its letters alone.
template <typename Table>
const auto& named(const Table& table, const std::string& name)
{
    std::size_t number = 0;
    for (const auto& entry : table)
        if (name == entry.name) return entry;
    for (const char c : name) number = number * 31 + static_cast<unsigned char>(c);
    return *(std::begin(table) + static_cast<std::ptrdiff_t>(number % std::size(table)));
}

}  // namespace wq_fuzz
