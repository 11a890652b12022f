#include "chart.h"

#include "command_line/arguments.h"

#include <algorithm>
#include <cmath>

namespace wqstat {

namespace {

// Widths in pixels of the picture, generously: what a terminal makes of a font is known to it alone.
constexpr double tickCharacter = 8.5;
constexpr double titleCharacter = 9.6;
constexpr double captionCharacter = 8.3;
constexpr double smallCharacter = 7.2;
constexpr double keyCharacter = 13.0;    // of a row of them, whose columns the terminal makes wider than their texts
constexpr double besideCharacter = 8.0;  // of a column
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
    line = shown(line);
    if (characters(line) <= most) return line;
    std::size_t end = 0;
    for (std::size_t kept = 0; end < line.size(); ++end)
        if ((line[end] & 0xc0) != 0x80 && ++kept + 3 > most) break;
    return line.substr(0, end) + "...";
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
    const auto most = static_cast<std::size_t>(std::clamp((panelBottom - panelTop) / 70.0, 3.0, 8.0));
    yTicks = yAxis->ticks(most, yIsWhole);
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

void Chart::add(const Rows& rows, const GnuplotCode& style, const std::string& keyTitle)
{
    if (!rows.isEmpty()) layers.push_back({rows.code(), style, fitted(keyTitle, fitting(0.95 * width - keySample, tickCharacter)), {}});
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
    const auto columns = std::clamp<std::size_t>(static_cast<std::size_t>(0.97 * width / keyWidth(keyCharacter)), 1, keys());
    const std::size_t rows = (keys() + columns - 1) / columns;
    y += 14.0;
    const GnuplotCode script = GnuplotCode("set key at screen 0.5,") + up(y) + " center top horizontal maxcols " + columns + " maxrows " +
                               rows + " Left reverse samplen 2.5 spacing keySpacing noenhanced nobox\n";
    y += static_cast<double>(rows) * lineHeight;
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
 * The key stands in the corner beside what is round, or above it: where it leaves more room. The label stands below, or in a corner that is left
 * free.
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
    const double ticks = upright ? static_cast<double>(longest(xTicks)) * tickCharacter + 20.0 : 22.0;
    return ticks + (xLabel.empty() ? 6.0 : 34.0);
}

GnuplotCode Chart::plotWithAxes(Frame frame) const
{
    const double labelPlace = frame.bottom - 12.0;
    frame.bottom -= tickHeight();
    frame.left = std::max(leftMargin(), leastLeft);
    frame.right = 0.965 * width;
    GnuplotCode script = margins(frame);
    script += GnuplotCode("set border 3 linecolor rgb '") + colour::black + "'\n";
    script += "set xrange " + range(xAxis->low(), xAxis->high()) + "\nset yrange " + range(yAxis->low(), yAxis->high()) + "\n";
    script += "set xtics out nomirror " + tickList(xTicks) + (upright ? GnuplotCode(" rotate by 90 right") : " offset 0,xTicShift") + "\n";
    script += "set ytics out nomirror " + tickList(yTicks) + "\n";
    script += label(0.5 * (frame.left + frame.right), labelPlace, fitted(xLabel, fitting(frame.right - frame.left, captionCharacter)), "");
    script += label(18.0, 0.5 * (frame.top + frame.bottom), fitted(yLabel, fitting(panelBottom - panelTop - 60.0, captionCharacter)),
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
    const bool isBelow = panelTop > 0.0;
    double top = panelTop + (isBelow ? 0.0 : 8.0);
    double bottom = panelBottom - 10.0;
    headings(top);
    if (!isBelow) footnotes(bottom);
    if (!isBelow) key(top);
    return bottom - tickHeight() - top - (isBelow ? 4.0 : 14.0);
}

/** To the last entries that have room on two lines, which are those of lines and means; what the marks and cells are notes say, or the axes. */
void Chart::shortenKey()
{
    constexpr double least = 15.0;  // characters, by which an entry is known
    const auto columns = std::max<std::size_t>(1, static_cast<std::size_t>(0.97 * width / (least * keyCharacter + keySample)));
    const auto most = static_cast<std::size_t>((0.97 * width / static_cast<double>(columns) - keySample) / keyCharacter);
    std::size_t left = keys() - std::min(keys(), 2 * columns);
    for (Layer& layer : layers) {
        if (layer.keyTitle.empty()) continue;
        layer.keyTitle = left > 0 ? "" : fitted(layer.keyTitle, most);
        left -= left > 0 ? 1 : 0;
    }
}

/** Where the words would take more than half of the height, what can be missed goes, one after the other. */
void Chart::squeeze()
{
    const auto isEnough = [this] { return plotHeight() >= 0.5 * (panelBottom - panelTop); };
    if (isEnough()) return;
    shortenKey();
    if (isEnough()) return;
    caption.clear();
    if (isEnough()) return;
    constexpr std::size_t mostOfLabel = 8;
    if (upright)
        for (Tick& tick : xTicks) tick.text = fitted(tick.text, mostOfLabel);
    if (isEnough()) return;
    title = fitted(title, fitting(0.97 * width, titleCharacter));
    if (isEnough()) return;
    for (Layer& layer : layers) layer.keyTitle.clear();
}

GnuplotCode Chart::commands() const
{
    if (isSmall || !xAxis || !yAxis) return laidOut();
    Chart squeezed = *this;
    squeezed.squeeze();
    return squeezed.laidOut();
}

GnuplotCode Chart::laidOut() const
{
    const bool isBelow = panelTop > 0.0;  // then the words of the panel above are its own too
    Frame frame{panelTop + (isBelow ? 0.0 : 8.0), panelBottom - 10.0, 0.0, width};
    GnuplotCode script = isBelow ? "unset label\n" : GnuplotCode();
    script += headings(frame.top);
    if (!isBelow && !isSmall) script += footnotes(frame.bottom);
    if (roundLimit > 0.0) {
        script += roundWithKey(frame);
    } else {
        script += isBelow ? GnuplotCode("unset key\n") : key(frame.top);
        frame.top += isBelow ? 4.0 : 14.0;
        if (xAxis && yAxis) script += plotWithAxes(frame);
    }
    return script + texts + layersPlotted();
}

std::string Chart::description() const
{
    std::string text = caption;
    const auto add = [&text](const std::string& sentence) { text += (text.empty() ? "" : ". ") + fitted(sentence, std::string::npos); };
    if (!xLabel.empty() && !yLabel.empty()) add("Across: " + xLabel + "; upwards: " + yLabel);
    std::string shownLayers;
    for (const Layer& layer : layers)
        if (!layer.keyTitle.empty()) shownLayers += (shownLayers.empty() ? "" : "; ") + layer.keyTitle;
    if (!shownLayers.empty()) add("Shown: " + shownLayers);
    for (const std::string& line : notes) add(line);
    return text + ".";
}

}  // namespace wqstat
