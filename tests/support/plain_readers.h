// The three kinds of data file read once more, plainly: a line is a C string of at most 254 characters, a field is a token.
#pragma once

#include "same_bits.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <functional>
#include <limits>
#include <ostream>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace wq_test {

// How reading ended. A plain reader that is told how many observations are enough gives up beyond them; the library never does.
enum class Ends { normally, cannotOpen, invalidArgument, outOfRange, gaveUp };

// What a reader made of a file.
struct Reading {
    Ends ends = Ends::normally;
    std::vector<std::pair<double, double>> data;  // of one sample: (value, 0)
    std::string comment;
};

inline bool sameObservations(const Reading& a, const Reading& b)
{
    if (a.data.size() != b.data.size()) return false;
    for (std::size_t i = 0; i < a.data.size(); ++i)
        if (!sameBits(a.data[i].first, b.data[i].first) || !sameBits(a.data[i].second, b.data[i].second)) return false;
    return true;
}

inline bool same(const Reading& a, const Reading& b) { return a.ends == b.ends && a.comment == b.comment && sameObservations(a, b); }

// A text for a message: line ends and the like spelled out, and no more than one can take in.
inline std::string shown(const std::string& content)
{
    std::string text;
    for (const char c : content) {
        if (c == '\n')
            text += "\\n";
        else if (c == '\r')
            text += "\\r";
        else if (c == '\0')
            text += "\\0";
        else
            text += c;
    }
    return text.size() > 400 ? text.substr(0, 400) + " ..." : text;
}

inline std::ostream& operator<<(std::ostream& stream, Ends ends)
{
    const char* const names[] = {"normally", "cannot open", "invalid_argument", "out_of_range", "gave up"};
    return stream << names[static_cast<int>(ends)];
}

inline std::ostream& operator<<(std::ostream& stream, const Reading& reading)
{
    stream << "ends " << reading.ends << ", comment \"" << shown(reading.comment) << "\", " << reading.data.size() << " observations:";
    for (const auto& [x, y] : reading.data) stream << " (" << x << ", " << y << ")";
    return stream;
}

inline Ends endOf(const std::function<bool()>& read)
{
    try {
        return read() ? Ends::normally : Ends::cannotOpen;
    } catch (const std::invalid_argument&) {
        return Ends::invalidArgument;
    } catch (const std::out_of_range&) {
        return Ends::outOfRange;
    }
}

// Hands every line that is not empty to handleLine, until that returns false.
template <typename HandleLine>
Ends readPlainly(const std::string& path, HandleLine&& handleLine)
{
    std::ifstream file(path, std::ios::binary);
    if (!file.is_open()) return Ends::cannotOpen;
    return endOf([&] {
        while (!file.fail()) {
            char line[255];
            file.getline(line, sizeof line);
            if (std::strlen(line) == 0) continue;
            if (!handleLine(line)) break;
        }
        return true;
    });
}

inline std::string withoutMarks(const char* line)
{
    std::string text;
    for (; *line != '\0'; ++line)
        if (*line != '#') text += *line;
    return text;
}

// atof as the standard has it; that of Windows knows no inf and no 0x, and its strtod makes -0 of "--1".
inline double plainAtof(const char* text)
{
    char* end = nullptr;
    const double number = std::strtod(text, &end);
    return end == text ? 0.0 : number;
}

// Adds to what was held before. Comments follow each other.
inline Reading plainOneSample(const std::string& path, Reading r = {})
{
    r.ends = readPlainly(path, [&](char* line) {
        if (std::strchr(line, '#') != nullptr) {
            r.comment += withoutMarks(line);
            return true;
        }
        if (std::strncmp(line, "<<", 2) == 0) return false;
        r.data.emplace_back(std::stod(line), 0.0);
        return true;
    });
    return r;
}

// Adds to what was held before. Each comment replaces the one before it.
inline Reading plainPairs(const std::string& path, Reading r = {})
{
    r.ends = readPlainly(path, [&](char* line) {
        if (std::strchr(line, '#') != nullptr) {
            r.comment = withoutMarks(line);
            return true;
        }
        if (std::strncmp(line, "<<", 2) == 0) return false;
        const char* const first = std::strtok(line, ":;|");
        if (first == nullptr) return true;
        const double x = plainAtof(first);
        const char* const second = std::strtok(nullptr, ":;|");
        r.data.emplace_back(x, second == nullptr ? 0.0 : std::stod(second));
        return true;
    });
    return r;
}

// Replaces what was held before. Comments are skipped, a repeat count holds until the next one.
inline Reading plainSeries(const std::string& path, Reading r = {}, std::size_t enough = std::numeric_limits<std::size_t>::max())
{
    const Reading before = r;
    r.data.clear();
    int count = 0;
    bool tooMany = false;
    r.ends = readPlainly(path, [&](char* line) {
        if (std::strchr(line, '#') != nullptr) return true;
        const char* field = std::strtok(line, ":;|");
        if (field == nullptr) return true;
        const double x = std::stod(field);
        field = std::strtok(nullptr, ":;|");
        const double y = field == nullptr ? 0.0 : std::stod(field);
        if (field != nullptr) field = std::strtok(nullptr, ":;|");
        if (field != nullptr) count = std::stoi(field);
        tooMany = count > 0 && static_cast<std::size_t>(count) > enough - r.data.size();
        for (int i = 0; i < count && !tooMany; ++i) r.data.emplace_back(x, y);
        return !tooMany;
    });
    if (r.ends == Ends::cannotOpen) r.data = before.data;
    if (tooMany) r.ends = Ends::gaveUp;
    return r;
}

}  // namespace wq_test
