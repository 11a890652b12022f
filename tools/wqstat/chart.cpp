#include "chart.h"

#include "arguments.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace wqstat {

namespace {

// Widths in pixels of the picture, generously: what a terminal makes of a font is known to it alone.
constexpr double tickCharacter = 8.5;
constexpr double titleCharacter = 9.6;
constexpr double keyCharacter = 13.0;
constexpr double keySample = 56.0;
constexpr double lineHeight = 22.0;

std::size_t characters(std::string_view text)
{
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xc0) != 0x80; }));
}

std::size_t longest(const std::vector<Tick>& ticks)
{
    std::size_t most = 0;
    for (const Tick& tick : ticks) most = std::max(most, characters(tick.text));
    return most;
}

std::string tickList(const std::vector<Tick>& ticks)
{
    std::string list;
    for (const Tick& tick : ticks) {
        std::string text;
        for (const char c : tick.text) text += c == '%' ? "%%" : std::string(1, c);  // here '%' would begin a format
        list += (list.empty() ? "" : ", ") + quoted(text) + " " + shortest(tick.position);
    }
    return "(" + list + ")";
}

std::string range(double low, double high) { return "[" + shortest(low) + ":" + shortest(high) + "]"; }

/** As fitted(), but with both ends kept: what tells two texts apart often stands at the end. */
std::string fittedInTheMiddle(const std::string& text, std::size_t most)
{
    const std::string line = fitted(text, std::string::npos);
    if (characters(line) <= most) return line;
    std::size_t tail = line.size();
    for (std::size_t kept = 0; kept < most / 3; ++kept)
        while ((line[--tail] & 0xc0) == 0x80) continue;
    return fitted(line, most - most / 3) + line.substr(tail);
}

/** The text on one line of so many characters, or on two: those it has, or of about the same length. */
std::vector<std::string> onTwoLines(const std::string& text, std::size_t most)
{
    if (const std::size_t end = text.find('\n'); end != std::string::npos)
        return {fittedInTheMiddle(text.substr(0, end), most), fittedInTheMiddle(text.substr(end + 1), most)};
    const std::string line = fitted(text, 2 * most);
    if (characters(line) <= most) return {line};
    const std::size_t gap = line.find(' ', line.size() / 2);
    if (gap == std::string::npos || characters(line.substr(0, gap)) > most || characters(line.substr(gap + 1)) > most)
        return {fitted(text, most)};
    return {line.substr(0, gap), line.substr(gap + 1)};
}

std::string screenLabel(double x, double y, const std::string& text, const std::string& looks)
{
    return "set label " + quoted(text) + " at screen " + shortest(x / Chart::width) + "," + shortest(1.0 - y / Chart::height) +
           " center noenhanced " + looks + "\n";
}

}  // namespace

// ---------------------------------------------------------------- texts and numbers

void Rows::add(std::initializer_list<double> numbers)
{
    if (!std::all_of(numbers.begin(), numbers.end(), [](double number) { return std::isfinite(number); })) {
        gap();
        return;
    }
    const char* separator = "";
    for (const double number : numbers) {
        lines += separator + shortest(number);
        separator = " ";
    }
    lines += '\n';
}

std::string quoted(std::string_view text)
{
    std::string quotedText = "'";
    for (const char c : text) quotedText += c == '\'' ? "''" : std::string(1, c);
    return quotedText + "'";
}

std::string fitted(std::string_view text, std::size_t most)
{
    std::string line;
    for (const char c : text) line += c == '\t' || c == '\n' || c == '\r' ? ' ' : c;
    line = shown(line);
    if (characters(line) <= most) return line;
    std::size_t end = 0;
    for (std::size_t kept = 0; end < line.size(); ++end)
        if ((line[end] & 0xc0) != 0x80 && ++kept + 3 > most) break;
    return line.substr(0, end) + "...";
}

// ---------------------------------------------------------------- Chart

Chart::Chart(std::string titleText, std::string captionText) : title(std::move(titleText)), caption(std::move(captionText)) {}

void Chart::setX(const Axis& axis, const std::string& label, bool whole)
{
    xAxis = axis;
    xLabel = label + axis.subtracted();
    for (std::size_t most = 10; most > 1; --most) {
        xTicks = axis.ticks(most, whole);
        if (static_cast<double>(xTicks.size() * (longest(xTicks) + 2)) * tickCharacter < 0.8 * width) break;
    }
}

void Chart::setY(const Axis& axis, const std::string& label, bool whole)
{
    yAxis = axis;
    yLabel = label + axis.subtracted();
    yTicks = axis.ticks(8, whole);
}

void Chart::setXTicks(const std::vector<Tick>& ticks)
{
    xTicks = ticks;
    upright = static_cast<double>(ticks.size() * (longest(ticks) + 1)) * tickCharacter > 0.8 * width;
}

void Chart::setRound(double limit, const std::string& label)
{
    roundLimit = limit;
    xLabel = label;
}

void Chart::add(const Rows& rows, const std::string& style, const std::string& keyTitle)
{
    if (!rows.isEmpty()) layers.push_back({rows.text(), style, keyTitle});
}

void Chart::addText(double x, double y, const std::string& text, const std::string& placing)
{
    texts.push_back("set label " + quoted(text) + " at first " + shortest(x) + "," + shortest(y) + " noenhanced front " + placing + "\n");
}

std::string Chart::commands() const
{
    std::string script;

    // From the top: title, caption, key.
    double y = 8.0;
    for (const std::string& line : onTwoLines(title, static_cast<std::size_t>(0.97 * width / titleCharacter)))
        script += screenLabel(0.5 * width, y += lineHeight, line, "font titleFont");
    if (!caption.empty()) script += screenLabel(0.5 * width, y += lineHeight, caption, "");
    std::size_t keys = 0;
    std::size_t widest = 0;
    for (const Layer& layer : layers) {
        if (layer.keyTitle.empty()) continue;
        ++keys;
        widest = std::max(widest, characters(layer.keyTitle));
    }
    if (keys > 0) {
        const double column = static_cast<double>(widest) * keyCharacter + keySample;
        const auto columns = std::clamp<std::size_t>(static_cast<std::size_t>(0.97 * width / column), 1, keys);
        const std::size_t rows = (keys + columns - 1) / columns;
        y += 14.0;
        script += "set key at screen 0.5," + shortest(1.0 - y / height) + " center top horizontal maxcols " + std::to_string(columns) +
                  " maxrows " + std::to_string(rows) + " Left reverse samplen 2.5 spacing keySpacing noenhanced nobox\n";
        y += static_cast<double>(rows) * lineHeight;
    } else {
        script += "unset key\n";
    }
    const double top = y + 14.0;

    // From the bottom: notes, label, ticks.
    double bottom = 10.0;
    for (auto line = notes.rbegin(); line != notes.rend(); ++line, bottom += 20.0)
        script +=
            screenLabel(0.5 * width, height - bottom - 2.0, *line, std::string("font smallFont textcolor rgb '") + colour::grey + "'");
    const double tickHeight = upright ? static_cast<double>(longest(xTicks)) * tickCharacter + 20.0 : 22.0;

    const double base = bottom + (roundLimit > 0.0 ? 24.0 : tickHeight + 34.0);
    script += "set bmargin at screen " + shortest(base / height) + "\nset tmargin at screen " + shortest(1.0 - top / height) + "\n";
    if (roundLimit > 0.0) {
        const double half = 0.5 * (height - base - top) / width;  // a square
        script += "unset border\nunset tics\n";
        script += "set lmargin at screen " + shortest(0.5 - half) + "\nset rmargin at screen " + shortest(0.5 + half) + "\n";
        script += "set xrange " + range(-roundLimit, roundLimit) + "\nset yrange " + range(-roundLimit, roundLimit) + "\n";
        script += screenLabel(0.5 * width, height - bottom - 12.0, fitted(xLabel, 80), "");
    }
    if (xAxis && yAxis) {
        const double left = 54.0 + static_cast<double>(longest(yTicks)) * tickCharacter;
        script += "set lmargin at screen " + shortest(left / width) + "\nset rmargin at screen 0.965\n";
        script += "set border 3 linecolor rgb '" + std::string(colour::black) + "'\n";
        script += "set xrange " + range(xAxis->low(), xAxis->high()) + "\nset yrange " + range(yAxis->low(), yAxis->high()) + "\n";
        script += "set xtics out nomirror " + tickList(xTicks) + (upright ? " rotate by 90 right" : " offset 0,xTicShift") + "\n";
        script += "set ytics out nomirror " + tickList(yTicks) + "\n";
        script += screenLabel(0.5 * (left + 0.965 * width), height - bottom - 12.0, fitted(xLabel, 80), "");
        script += "set label " + quoted(fitted(yLabel, 60)) + " at screen " + shortest(18.0 / width) + "," +
                  shortest(0.5 * (base + height - top) / height) + " center rotate by 90 noenhanced\n";
    }
    for (const std::string& text : texts) script += text;

    std::string plots;
    for (std::size_t i = 0; i < layers.size(); ++i) {
        const std::string name = "$layer" + std::to_string(i + 1);
        script += name + " << EOD\n" + layers[i].data + "EOD\n";
        plots += (i == 0 ? "plot " : ", ") + name + " " + layers[i].style + " " +
                 (layers[i].keyTitle.empty() ? "notitle" : "title " + quoted(layers[i].keyTitle));
    }
    // An empty picture still has its axes and says why it is empty.
    return script + (plots.empty() ? "plot NaN notitle" : plots) + "\n";
}

}  // namespace wqstat
