#include "chart.h"

#include "command_line/arguments.h"
#include "results/figures.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace wqstat {

namespace {

// Widths in pixels of the picture, generously: what a terminal makes of a font is known to it alone.
constexpr double tickCharacter = 8.5;
constexpr double uprightCharacter = 7.6;  // of labels of several characters, not all of which are wide
constexpr double titleCharacter = 9.6;
constexpr double captionCharacter = 8.3;
constexpr double smallCharacter = 7.2;
constexpr double keyCharacter = 13.0;    // of a row of them, whose columns the terminal makes wider than their texts
constexpr double besideCharacter = 8.0;  // of a column
constexpr double keySample = 56.0;
constexpr double lineHeight = 22.0;

// Where two panels share a low canvas.
constexpr double tightLine = 17.0;
constexpr double tightTicks = 39.0;
constexpr double smallKeyLine = 16.5;
constexpr double smallKeyCharacter = 6.6;
constexpr double smallKeySample = 46.0;
constexpr double smallKeyColumn = 200.0;  // in which most entries stand whole

std::size_t characters(std::string_view text)
{
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) { return (c & 0xc0) != 0x80; }));
}

std::string firstCharacters(const std::string& text, std::size_t n)
{
    std::size_t end = 0;
    for (std::size_t kept = 0; end < text.size(); ++end)
        if ((text[end] & 0xc0) != 0x80 && ++kept > n) break;
    return text.substr(0, end);
}

std::string lastCharacters(const std::string& text, std::size_t n)
{
    const std::size_t all = characters(text);
    return text.substr(firstCharacters(text, all - std::min(all, n)).size());
}

std::size_t longest(const std::vector<Tick>& ticks)
{
    std::size_t most = 0;
    for (const Tick& tick : ticks) most = std::max(most, characters(tick.text));
    return most;
}

std::size_t named(const std::vector<Tick>& ticks)
{
    return static_cast<std::size_t>(std::count_if(ticks.begin(), ticks.end(), [](const Tick& tick) { return !tick.text.empty(); }));
}

GnuplotCode tickList(const std::vector<Tick>& ticks)
{
    GnuplotCode list;
    for (const Tick& tick : ticks) {
        if (!list.isEmpty()) list += ", ";
        list += quotedTick(tick.text) + " " + tick.position;
        if (tick.text.empty()) list += " 1";
    }
    return "(" + list + ")";
}

GnuplotCode range(double low, double high) { return GnuplotCode("[") + low + ":" + high + "]"; }

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

}  // namespace

// ---------------------------------------------------------------- texts and numbers

void Rows::add(std::initializer_list<double> numbers)
{
    if (!std::all_of(numbers.begin(), numbers.end(), [](double number) { return std::isfinite(number); })) {
        gap();
        return;
    }
    bool first = true;
    for (const double number : numbers) {
        if (!first) lines += " ";
        lines += number;
        first = false;
    }
    lines += "\n";
}

GnuplotCode inColour(const GnuplotCode& name) { return "linecolor rgb '" + name + "'"; }

std::string fitted(std::string_view text, std::size_t most)
{
    std::string line;
    for (const char c : text) line += c == '\t' || c == '\n' || c == '\r' ? ' ' : c;
    constexpr std::size_t dots = 3;
    line = shown(line);
    return characters(line) <= most ? line : firstCharacters(line, most - std::min(most, dots)) + "...";
}

std::vector<std::string> fittedApart(const std::vector<std::string>& all, std::size_t most)
{
    constexpr std::size_t dots = 3;
    const std::size_t kept = most - std::min(most, dots);
    std::vector<std::string> best;
    std::size_t mostDifferent = 0;
    for (const std::size_t front : {kept, kept - kept / 2, std::size_t{0}}) {
        std::vector<std::string> texts;
        for (const std::string& text : all) {
            const std::string line = fitted(text, std::string::npos);
            texts.push_back(characters(line) <= most ? line : firstCharacters(line, front) + "..." + lastCharacters(line, kept - front));
        }
        const std::size_t different = std::set<std::string>(texts.begin(), texts.end()).size();
        if (different > mostDifferent) best = texts;
        mostDifferent = std::max(mostDifferent, different);
    }
    return best;
}

// ---------------------------------------------------------------- Chart

Chart::Chart(const Canvas& canvas, const std::string& titleText, const std::string& captionText)
    : isSmall(canvas.isSmallMultiple),
      width(canvas.layoutWidth()),
      height(canvas.layoutHeight()),
      panelBottom(height),
      title(titleText),
      caption(captionText)
{
}

void Chart::setPanel(double topPart, double heightPart)
{
    panelTop = topPart * height;
    panelBottom = (topPart + heightPart) * height;
}

void Chart::setX(const Axis& axis, const std::string& text, bool whole)
{
    xAxis = axis;
    xLabel = text + axis.subtracted();
    xIsWhole = whole;
    makeXTicks();
}

void Chart::hideXNumbers()
{
    for (Tick& tick : xTicks) tick.text.clear();
    hiddenXLabel = xLabel;
    xLabel.clear();
}

void Chart::makeXTicks()
{
    for (std::size_t most = 10; most > 1; --most) {
        xTicks = xAxis->ticks(most, xIsWhole);
        if (static_cast<double>(named(xTicks) * (longest(xTicks) + 2)) * tickCharacter < 0.8 * width) break;
    }
}

void Chart::setY(const Axis& axis, const std::string& text, bool whole)
{
    yAxis = axis;
    yLabel = text + axis.subtracted();
    yIsWhole = whole;
    makeYTicks();
}

void Chart::makeYTicks()
{
    constexpr std::size_t largest = 8;
    auto most = static_cast<std::size_t>(std::clamp((panelBottom - panelTop) / 70.0, 3.0, static_cast<double>(largest)));
    for (;; ++most) {
        yTicks = yAxis->ticks(most, yIsWhole);
        if (named(yTicks) > 1 || most >= largest) return;  // one number alone is no scale
    }
}

void Chart::setXTicks(const std::vector<Tick>& ticks)
{
    xTicks = ticks;
    hasOwnTicks = true;
    upright = static_cast<double>(ticks.size() * (longest(ticks) + 1)) * tickCharacter > 0.8 * width;
}

void Chart::setRound(double limit, const std::string& text)
{
    roundLimit = limit;
    xLabel = text;
}

void Chart::add(const Rows& rows, const GnuplotCode& style, const std::string& keyTitle, const std::string& fewWords)
{
    if (rows.isEmpty()) return;
    const std::string name = fitted(keyTitle, std::string::npos);
    layers.push_back({rows.code(), style, fitted(keyTitle, fitting(0.95 * width - keySample, tickCharacter)), fewWords, name, {}, false});
}

void Chart::addLevel(const Rows& rows, const GnuplotCode& style, const std::string& keyTitle)
{
    add(rows, style, keyTitle);
    if (!rows.isEmpty()) layers.back().isLevel = true;
}

void Chart::addUprights(const std::vector<double>& places, const GnuplotCode& looks, const std::string& keyTitle)
{
    Rows rows;
    for (const double place : places) rows.add({place, 0.0});
    add(rows, "using 1:2 with lines " + looks, keyTitle);
    if (!rows.isEmpty()) layers.back().uprights = places;
}

void Chart::addText(double x, double y, const std::string& text, const GnuplotCode& placing)
{
    texts += "set label " + GnuplotCode(quotedText(text)) + " at first " + x + "," + y + " noenhanced front " + placing + "\n";
}

GnuplotCode Chart::label(double x, double y, const std::string& text, const GnuplotCode& looks) const
{
    return "set label " + GnuplotCode(quotedText(text)) + " at screen " + across(x) + "," + up(y) + " center noenhanced " + looks + "\n";
}

GnuplotCode Chart::margins(const Frame& frame) const
{
    return GnuplotCode("set bmargin at screen ") + up(frame.bottom) + "\nset tmargin at screen " + up(frame.top) +
           "\nset lmargin at screen " + across(frame.left) + "\nset rmargin at screen " + across(frame.right) + "\n";
}

// Each of the next moves y, the place that is taken so far.

GnuplotCode Chart::headings(double& y) const
{
    GnuplotCode script;
    if (isTight || hasLowHeadings) {
        for (const std::string& line : {title, caption}) {
            if (line.empty()) continue;
            script += label(0.5 * width, y + 0.5 * tightLine, fitted(line, fitting(0.97 * width, captionCharacter)), "");
            y += tightLine;
        }
        return script;
    }
    if (!title.empty())
        for (const std::string& line : onTwoLines(title, fitting(0.97 * width, titleCharacter)))
            script += label(0.5 * width, y += lineHeight, line, "font titleFont");
    if (!caption.empty() && !isSmall)
        for (const std::string& line : onTwoLines(caption, fitting(0.97 * width, captionCharacter)))
            script += label(0.5 * width, y += lineHeight, line, "");
    return script;
}

std::size_t Chart::keys() const
{
    return static_cast<std::size_t>(
        std::count_if(layers.begin(), layers.end(), [](const Layer& layer) { return !layer.keyTitle.empty(); }));
}

double Chart::keyWidth(double character) const
{
    std::size_t widest = 0;
    for (const Layer& layer : layers) widest = std::max(widest, characters(layer.keyTitle));
    return static_cast<double>(widest) * character + keySample;
}

GnuplotCode Chart::key(double& y) const
{
    if (keys() == 0 || isSmall) return "unset key\n";
    if (hasSmallKey) return smallKey(y);
    const auto columns = std::clamp<std::size_t>(static_cast<std::size_t>(0.97 * width / keyWidth(keyCharacter)), 1, keys());
    const std::size_t rows = (keys() + columns - 1) / columns;
    y += 14.0;
    const GnuplotCode script = GnuplotCode("set key at screen 0.5,") + up(y) + " center top horizontal maxcols " + columns + " maxrows " +
                               rows + " Left reverse samplen 2.5 spacing keySpacing noenhanced nobox\n";
    y += static_cast<double>(rows) * lineHeight;
    return script;
}

double Chart::plotWidth() const { return 0.965 * width - std::max(leftMargin(), leastLeft); }

/** How many characters the entries of a column have room for; those of the last one may reach to the side of the picture. */
std::size_t Chart::smallKeyFitting(std::size_t column, std::size_t columns) const
{
    constexpr double narrowest = 0.8;  // of what the columns are told to be, at the terminal that makes least of it
    const double each = plotWidth() / static_cast<double>(columns);
    const double last = 0.97 * width - 0.5 * width - (0.5 * static_cast<double>(columns) - 1.0) * each;
    return fitting(column + 1 < columns ? narrowest * (each - smallKeySample) : last - smallKeySample, smallKeyCharacter);
}

/** As many as have room; of few entries one, where otherwise not all would stand there whole. */
std::size_t Chart::smallKeyColumns() const
{
    constexpr std::size_t few = 3;
    const std::size_t entries = std::max<std::size_t>(1, keys());
    const auto most = std::clamp<std::size_t>(static_cast<std::size_t>(plotWidth() / smallKeyColumn), 1, entries);
    const std::size_t rows = (entries + most - 1) / most;
    const std::size_t columns = (entries + rows - 1) / rows;
    return keys() > few || fitsSmallKey(columns) ? columns : 1;
}

/** Whether all entries stand there whole. */
bool Chart::fitsSmallKey(std::size_t columns) const
{
    const std::size_t rows = (keys() + columns - 1) / columns;
    std::size_t entry = 0;
    return std::all_of(layers.begin(), layers.end(), [&](const Layer& layer) {
        return layer.keyTitle.empty() || characters(layer.keyTitle) <= smallKeyFitting(entry++ / rows, columns);
    });
}

/** In small letters, and in columns that are told to be narrower than gnuplot takes their texts for: else it would make fewer of them. */
GnuplotCode Chart::smallKey(double& y) const
{
    constexpr double taken = 9.1;  // for a character
    const std::size_t columns = smallKeyColumns();
    const std::size_t rows = (keys() + columns - 1) / columns;
    std::size_t widest = 0;
    for (const Layer& layer : layers) widest = std::max(widest, characters(layer.keyTitle));
    const double most = std::floor((plotWidth() / static_cast<double>(columns) - smallKeySample) / taken) - 1.0;
    y += isTight ? 1.0 : 12.0;
    const GnuplotCode script = GnuplotCode("set key at screen 0.5,") + up(y) + " center top horizontal maxcols " + columns + " maxrows " +
                               rows + " Left reverse samplen 2 width " + std::min(0.0, most - static_cast<double>(widest)) +
                               " spacing 0.87*keySpacing noenhanced nobox font smallFont\n";
    y += static_cast<double>(rows) * smallKeyLine;
    return script;
}

GnuplotCode Chart::footnotes(double& y) const
{
    GnuplotCode script;
    for (auto line = notes.rbegin(); line != notes.rend(); ++line, y -= 20.0)
        script += label(0.5 * width, y - 2.0, fitted(*line, fitting(0.97 * width, smallCharacter)),
                        GnuplotCode("font smallFont textcolor rgb '") + colour::grey + "'");
    return script;
}

/** A square of the room there is. */
GnuplotCode Chart::roundPlot(Frame frame, double middle) const
{
    const double side = std::min(frame.bottom - frame.top, 0.95 * (frame.right - frame.left));
    frame.top = 0.5 * (frame.top + frame.bottom - side);
    frame.bottom = frame.top + side;
    frame.left = middle - 0.5 * side;
    frame.right = middle + 0.5 * side;
    const GnuplotCode limits = range(-roundLimit, roundLimit);
    return "unset border\nunset tics\n" + margins(frame) + "set xrange " + limits + "\nset yrange " + limits + "\n";
}

namespace {

/** How far to the side of its middle a circle reaches between its top, or bottom, and so far from there. */
double reach(double radius, double distance)
{
    const double rest = std::max(0.0, radius - distance);
    return std::sqrt(std::max(0.0, radius * radius - rest * rest));
}

}  // namespace

/**
 * The key stands in the corner beside what is round, or above it: where it leaves more room. The label stands below, or in a corner that is
 * left free.
 */
GnuplotCode Chart::roundWithKey(const Frame& frame) const
{
    constexpr double labelHeight = 24.0;
    constexpr double cornerMargin = 12.0;
    const std::string text = fitted(xLabel, fitting(0.97 * width, captionCharacter));
    const double textWidth = static_cast<double>(characters(text)) * captionCharacter;
    const auto labelAt = [&](double x) { return label(x, frame.bottom - 0.5 * labelHeight, text, ""); };
    Frame overLabel = frame;
    overLabel.bottom -= labelHeight;
    Frame above = overLabel;
    const GnuplotCode keyAbove = key(above.top);
    above.top += 14.0;
    const auto side = [](const Frame& room) { return std::min(room.bottom - room.top, 0.95 * (room.right - room.left)); };

    const double keyLeft = width - keyWidth(besideCharacter);
    const double keyHeight = static_cast<double>(keys()) * lineHeight;
    const auto middleOf = [&](double radius) { return std::min(0.5 * width, keyLeft - reach(radius, keyHeight)); };
    const auto besideIn = [&](const Frame& room) {
        double radius = 0.5 * side(room) - 7.0;
        while (radius > 0.5 * side(above) && middleOf(radius) < 1.05 * radius) radius -= 1.0;
        return radius;
    };
    double radius = besideIn(frame);
    const bool inCorner = textWidth + cornerMargin < width - middleOf(radius) - reach(radius, labelHeight);
    if (!inCorner) radius = besideIn(overLabel);
    if (keys() == 0 || isSmall || radius <= 0.5 * side(above)) return labelAt(0.5 * width) + keyAbove + roundPlot(above, 0.5 * width);
    const double middle = middleOf(radius);
    Frame beside = inCorner ? frame : overLabel;
    beside.top = beside.bottom - 2.0 * radius;
    beside.left = middle - 1.1 * radius;
    beside.right = middle + 1.1 * radius;
    return labelAt(inCorner ? width - 0.5 * (textWidth + cornerMargin) : middle) + GnuplotCode("set key at screen ") + across(keyLeft) +
           "," + up(beside.top) + " left top vertical maxcols 1 Left reverse samplen 2.5 spacing keySpacing noenhanced nobox\n" +
           roundPlot(beside, middle);
}

bool Chart::share(std::vector<Chart>& charts, std::optional<Axis> Chart::*axis)
{
    std::optional<Axis> all;
    for (const Chart& chart : charts) {
        if (!(chart.*axis)) continue;  // what is round
        if (all && !all->isLike(*(chart.*axis))) return false;
        if (!all) all = chart.*axis;
        all->widenTo(*(chart.*axis));
    }
    for (Chart& chart : charts)
        if (chart.*axis) chart.*axis = all;
    return true;
}

Chart::Shared Chart::shareAxes(std::vector<Chart>& charts)
{
    const Shared shared{share(charts, &Chart::xAxis), share(charts, &Chart::yAxis)};
    for (Chart& chart : charts) {
        if (chart.xAxis && !chart.hasOwnTicks) chart.makeXTicks();
        if (chart.yAxis) chart.makeYTicks();
    }
    return shared;
}

double Chart::leftMargin() const { return 54.0 + static_cast<double>(longest(yTicks)) * tickCharacter; }

void Chart::alignLeft(Chart& a, Chart& b) { a.leastLeft = b.leastLeft = std::max(a.leftMargin(), b.leftMargin()); }

/** What the ticks and the label of the x axis take. */
double Chart::tickHeight() const
{
    if (longest(xTicks) == 0) return 4.0;
    if (isTight && !upright) return tightTicks;
    const double ticks = upright ? static_cast<double>(longest(xTicks)) * uprightCharacter + 14.0 : 22.0;
    return ticks + (xLabel.empty() ? 6.0 : 34.0);
}

GnuplotCode Chart::plotWithAxes(Frame frame) const
{
    const double labelPlace = frame.bottom - (isTight ? 7.0 : 12.0);
    frame.bottom -= tickHeight();
    frame.left = std::max(leftMargin(), leastLeft);
    frame.right = 0.965 * width;
    GnuplotCode script = margins(frame);
    script += GnuplotCode("set border 3 linecolor rgb '") + colour::black + "'\n";
    script += "set xrange " + range(xAxis->low(), xAxis->high()) + "\nset yrange " + range(yAxis->low(), yAxis->high()) + "\n";
    script += "set xtics out nomirror " + tickList(xTicks) +
              (upright ? GnuplotCode(" rotate by 90 right")
                       : GnuplotCode(" offset 0,xTicShift") + (isTight ? GnuplotCode("+0.2 scale 0.5") : GnuplotCode())) +
              "\n";
    script += "set ytics out nomirror " + tickList(yTicks) + "\n";
    script += label(0.5 * (frame.left + frame.right), labelPlace, fitted(xLabel, fitting(frame.right - frame.left, captionCharacter)), "");
    script += label(18.0, 0.5 * (frame.top + frame.bottom),
                    fitted(yLabel, fitting(isTight ? frame.bottom - frame.top + 14.0 : panelBottom - panelTop - 60.0, captionCharacter)),
                    "rotate by 90");
    return script;
}

GnuplotCode Chart::dataOf(const Layer& layer) const
{
    if (layer.uprights.empty() || !yAxis) return layer.data;
    Rows rows;
    for (const double place : layer.uprights) {
        for (const double end : {std::max(0.0, yAxis->low()), yAxis->high()}) rows.add({place, end});
        rows.gap();
    }
    return rows.code();
}

GnuplotCode Chart::layersPlotted() const
{
    GnuplotCode data;
    GnuplotCode plots;
    for (std::size_t i = 0; i < layers.size(); ++i) {
        const GnuplotCode name = "$layer" + GnuplotCode(i + 1);
        data += name + " << EOD\n" + dataOf(layers[i]) + "EOD\n";
        plots += (i == 0 ? GnuplotCode("plot ") : ", ") + name + " " + layers[i].style + " " +
                 (layers[i].keyTitle.empty() ? "notitle" : "title " + GnuplotCode(quotedText(layers[i].keyTitle)) + " noenhanced");
    }
    // An empty picture still has its axes and says why it is empty.
    return data + (plots.isEmpty() ? "plot NaN notitle" : plots) + "\n";
}

/** What the words around it leave of the height. */
double Chart::plotHeight() const
{
    Frame frame = panel();
    headings(frame.top);
    if (!isBelow()) footnotes(frame.bottom);
    if (!isBelow()) key(frame.top);
    return frame.bottom - tickHeight() - frame.top - gapAbovePlot();
}

/** All entries, in small letters, in fewer words or cut where they have no room beside each other. */
void Chart::shortenKey()
{
    hasSmallKey = true;
    if (!fitsSmallKey(smallKeyColumns()))
        for (Layer& layer : layers)
            if (!layer.fewWords.empty()) layer.keyTitle = layer.fewWords;
    const std::size_t columns = smallKeyColumns();
    const std::size_t rows = (keys() + columns - 1) / columns;
    std::size_t entry = 0;
    for (Layer& layer : layers) {
        if (layer.keyTitle.empty()) continue;
        layer.keyTitle = fitted(layer.keyTitle, smallKeyFitting(entry / rows, columns));
        ++entry;
    }
}

/** The labels of an axis that stand upright, in at most so many characters. */
void Chart::shortenTicks(const std::vector<Tick>& whole, std::size_t most)
{
    std::vector<std::string> labels;
    for (const Tick& tick : whole) labels.push_back(tick.text);
    labels = fittedApart(labels, most);
    for (std::size_t i = 0; i < labels.size(); ++i) xTicks[i].text = labels[i];
}

/**
 * Where the words would take more than half of the height, they are set in fewer and smaller letters, and what can be missed goes, one
 * after the other. What came out, the line below the title, is the last.
 */
void Chart::squeeze()
{
    constexpr double enough = 0.5;
    constexpr double least = 0.45;
    constexpr double little = 0.3;
    constexpr std::size_t leastOfLabel = 8;
    const auto leaves = [this](double part) { return isTight || plotHeight() >= part * (panelBottom - panelTop); };
    if (leaves(enough)) return;
    shortenKey();
    const std::vector<Tick> whole = xTicks;
    for (std::size_t most = longest(whole); upright && most > leastOfLabel && !leaves(enough);) shortenTicks(whole, --most);
    if (leaves(enough)) return;
    title = fitted(title, fitting(0.97 * width, titleCharacter));
    if (leaves(enough)) return;
    hasLowHeadings = true;
    if (leaves(least)) return;
    keepLastOfKey(2 * smallKeyColumns());
    if (leaves(least)) return;
    keepLastOfKey(0);
    if (leaves(least)) return;
    title.clear();
    if (leaves(little)) return;
    caption.clear();
}

/**
 * Those of lines and means stand last; of marks and cells notes and axes say what they are. Levels mean nothing one without the other. What
 * is missing is said.
 */
void Chart::keepLastOfKey(std::size_t most)
{
    const std::size_t before = keys();
    std::size_t left = before - std::min(before, most);
    if (left == 0) return;
    bool isLevelLost = false;
    for (Layer& layer : layers) {
        if (layer.keyTitle.empty() || (left == 0 && !(isLevelLost && layer.isLevel))) continue;
        isLevelLost = isLevelLost || layer.isLevel;
        left -= left > 0 ? 1U : 0U;
        layer.keyTitle.clear();
    }
    if (missingKeys > 0) notes.pop_back();
    missingKeys += before - keys();
    note(counted(missingKeys, "entry", "entries") + " of the key left out for want of room");
}

void Chart::sharePanels(Chart& above, Chart& below)
{
    constexpr double middle = 0.5;
    above.setPanel(0.0, middle);
    below.setPanel(middle, middle);
    for (Chart* const chart : {&above, &below}) {
        chart->isTight = true;
        chart->shortenKey();
    }
    const double share = middle + 0.5 * (below.plotHeight() - above.plotHeight()) / above.height;
    above.setPanel(0.0, share);
    below.setPanel(share, 1.0 - share);
}

GnuplotCode Chart::commands() const
{
    if (isSmall || !xAxis || !yAxis) return laidOut();
    Chart squeezed = *this;
    squeezed.squeeze();
    return squeezed.laidOut();
}

/** Without its margins. */
Chart::Frame Chart::panel() const
{
    if (isTight) return {panelTop + (isBelow() ? 2.0 : 1.0), panelBottom - (isBelow() ? 1.0 : 3.0), 0.0, width};
    return {panelTop + (isBelow() ? 0.0 : 8.0), panelBottom - 10.0, 0.0, width};
}

double Chart::gapAbovePlot() const { return isTight ? (isBelow() ? 0.0 : 3.0) : isBelow() ? 4.0 : 14.0; }

GnuplotCode Chart::laidOut() const
{
    Frame frame = panel();
    GnuplotCode script = isBelow() ? "unset label\n" : GnuplotCode();
    script += headings(frame.top);
    if (!isBelow() && !isSmall) script += footnotes(frame.bottom);
    if (roundLimit > 0.0) {
        script += roundWithKey(frame);
    } else {
        script += isBelow() ? GnuplotCode("unset key\n") : key(frame.top);
        frame.top += gapAbovePlot();
        if (xAxis && yAxis) script += plotWithAxes(frame);
    }
    return script + texts + layersPlotted();
}

std::string Chart::description() const
{
    std::string text = caption;
    const auto add = [&text](const std::string& sentence) { text += (text.empty() ? "" : ". ") + fitted(sentence, std::string::npos); };
    const std::string& xName = xLabel.empty() ? hiddenXLabel : xLabel;
    if (roundLimit > 0.0) {
        if (!xName.empty()) add(xName);
    } else if (!xName.empty() && !yLabel.empty())
        add("Across: " + xName + "; upwards: " + yLabel);
    else if (!xName.empty() || !yLabel.empty())
        add(xName.empty() ? "Upwards: " + yLabel : "Across: " + xName);
    std::string shownLayers;
    for (const Layer& layer : layers)
        if (!layer.name.empty()) shownLayers += (shownLayers.empty() ? "" : "; ") + layer.name;
    if (!shownLayers.empty()) add("Shown: " + shownLayers);
    for (const std::string& line : notes) add(line);
    return text + ".";
}

}  // namespace wqstat
