// A picture on its way to gnuplot: title, axes, key and layers of data, laid out so that nothing overlaps.
#pragma once

#include "axis.h"
#include "colours.h"
#include "canvas.h"
#include "gnuplot_code.h"

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace wqstat {

/** Rows of numbers, as gnuplot reads them. */
class Rows {
public:
    /** A row; where a number lies beyond what a double holds, a gap. */
    void add(std::initializer_list<double> numbers);

    /** What follows is not joined to what stands before. */
    void gap() { lines += "\n"; }
    bool isEmpty() const { return lines.isEmpty(); }
    const GnuplotCode& code() const { return lines; }

private:
    GnuplotCode lines;
};

/** On one line, with "..." in place of what is beyond so many characters. */
std::string fitted(std::string_view text, std::size_t characters);

/** Texts beside each other, each without its end, its begin or its middle where it is longer: what leaves most of them apart. */
std::vector<std::string> fittedApart(const std::vector<std::string>& texts, std::size_t characters);

/** gnuplot's words for a colour of lines and points. */
GnuplotCode inColour(const GnuplotCode& name);

class Chart {
public:
    /** @param caption the result in one line. Either text may be empty. */
    Chart(const Canvas& canvas, const std::string& title, const std::string& caption);

    /** Makes it a panel of its canvas: from the top, in parts of the height. */
    void setPanel(double topPart, double heightPart);

    /** Makes the two panels of its canvas as high a plot as each other, of all that the words leave: these take little room then. */
    static void sharePanels(Chart& above, Chart& below);

    /** Lets the y axes of two panels stand one below the other. To be called when both are set. */
    static void alignLeft(Chart& a, Chart& b);

    void setX(const Axis& axis, const std::string& label, bool whole = false);
    /** Leaves the numbers of the x axis, and its label, to the panel below. */
    void hideXNumbers();

    void setY(const Axis& axis, const std::string& label, bool whole = false);

    /** Ticks of its own making; upright where they would run into each other. */
    void setXTicks(const std::vector<Tick>& ticks);

    /** No axes, equal units on both, the range -limit ... limit on both, and a label below. */
    void setRound(double limit, const std::string& label);

    /**
     * A layer over those before it.
     * @param style gnuplot's words after the data, such as "using 1:2 with lines".
     * @param keyTitle none when empty. @param fewWords the same for a small key; the same words when empty. */
    void add(const Rows& rows, const GnuplotCode& style, const std::string& keyTitle = "", const std::string& fewWords = "");

    /** As add(): one level of a scale of colours, whose entries stand in the key together or not at all. */
    void addLevel(const Rows& rows, const GnuplotCode& style, const std::string& keyTitle);

    /** As add(): lines over the whole height of the plot, whatever axis that gets in the end. */
    void addUprights(const std::vector<double>& places, const GnuplotCode& looks, const std::string& keyTitle);

    /** A text in the picture, at a position of the axes. */
    void addText(double x, double y, const std::string& text, const GnuplotCode& placing);

    /** What the reader of the picture has to know, under it. */
    void note(const std::string& text) { notes.push_back(text); }

    /** The picture as gnuplot commands. */
    GnuplotCode commands() const;

    /** The picture in words, for those who do not see it. */
    std::string description() const;

    const std::string& titleText() const { return title; }

    bool isSmallMultiple() const { return isSmall; }

    /** Which axes are the same on several charts. */
    struct Shared {
        bool x;
        bool y;
    };

    /** Gives all charts the same axes, where these are of one kind. */
    static Shared shareAxes(std::vector<Chart>& charts);

private:
    struct Layer {
        GnuplotCode data;
        GnuplotCode style;
        std::string keyTitle;          ///< as long as there is room for
        std::string fewWords;          ///< instead, where it has no room
        std::string name;              ///< the same, whole
        std::vector<double> uprights;  ///< in place of data
        bool isLevel = false;
    };

    /** Where the plot is, in units of the layout from the top and from the left of the canvas. */
    struct Frame {
        double top = 0.0;
        double bottom = 0.0;
        double left = 0.0;
        double right = 0.0;
    };

    double across(double x) const { return x / width; }
    double up(double y) const { return 1.0 - y / height; }
    std::size_t fitting(double room, double character) const { return static_cast<std::size_t>(std::max(8.0, room / character)); }
    GnuplotCode label(double x, double y, const std::string& text, const GnuplotCode& looks) const;
    GnuplotCode margins(const Frame& frame) const;

    GnuplotCode headings(double& y) const;
    GnuplotCode key(double& y) const;
    double keyWidth(double character) const;
    std::size_t keys() const;
    GnuplotCode footnotes(double& y) const;
    GnuplotCode roundPlot(Frame frame, double middle) const;
    GnuplotCode roundWithKey(const Frame& frame) const;
    double leftMargin() const;
    GnuplotCode plotWithAxes(Frame frame) const;
    double tickHeight() const;
    double plotHeight() const;
    double plotWidth() const;
    std::size_t smallKeyFitting(std::size_t column, std::size_t columns) const;
    std::size_t smallKeyColumns() const;
    GnuplotCode smallKey(double& y) const;
    bool isBelow() const { return panelTop > 0.0; }  ///< then the words of the panel above are its own too
    Frame panel() const;
    double gapAbovePlot() const;
    bool fitsSmallKey(std::size_t columns) const;
    void shortenKey();
    void shortenTicks(const std::vector<Tick>& whole, std::size_t most);
    void keepLastOfKey(std::size_t most);
    void squeeze();
    GnuplotCode laidOut() const;
    GnuplotCode dataOf(const Layer& layer) const;
    GnuplotCode layersPlotted() const;

    static bool share(std::vector<Chart>& charts, std::optional<Axis> Chart::*axis);
    void makeXTicks();
    void makeYTicks();

    bool isSmall;
    bool isTight = false;  // two panels on a low canvas
    bool hasSmallKey = false;
    bool hasLowHeadings = false;
    std::size_t missingKeys = 0;  // which a note at the end counts
    double width;                 // of the canvas, in units of the layout
    double height;
    double leastLeft = 0.0;
    double panelTop = 0.0;
    double panelBottom;
    std::string title;
    std::string caption;
    std::optional<Axis> xAxis;
    std::optional<Axis> yAxis;
    std::vector<Tick> xTicks;
    std::vector<Tick> yTicks;
    bool xIsWhole = false;
    bool yIsWhole = false;
    bool hasOwnTicks = false;
    bool upright = false;
    std::string xLabel;
    std::string hiddenXLabel;
    std::string yLabel;
    double roundLimit = 0.0;
    std::vector<Layer> layers;
    GnuplotCode texts;
    std::vector<std::string> notes;
};

}  // namespace wqstat
