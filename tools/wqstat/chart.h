// A picture on its way to gnuplot: title, axes, key and layers of data, laid out so that nothing overlaps.
#pragma once

#include "axis.h"

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
    void gap() { lines += '\n'; }
    bool isEmpty() const { return lines.empty(); }
    const std::string& text() const { return lines; }

private:
    std::string lines;
};

/** A text that gnuplot takes as it is. */
std::string quoted(std::string_view text);

/** On one line, with "..." in place of what is beyond so many characters. */
std::string fitted(std::string_view text, std::size_t characters);

/** Colours that the colour-blind tell apart; on grey they differ in lightness, and every use of them differs in shape as well. */
namespace colour {
constexpr const char* blue = "#0072b2";
constexpr const char* seeThrough = "#500072b2";  // blue; where marks overlap they are darker
constexpr const char* sky = "#b3d9f2";
constexpr const char* vermilion = "#c04a00";
constexpr const char* band = "#f6dcc8";
constexpr const char* black = "#000000";
constexpr const char* grey = "#707070";
}  // namespace colour

class Chart {
public:
    static constexpr int width = 800;
    static constexpr int height = 600;

    /** @param caption the result in one line. */
    Chart(std::string title, std::string caption);

    void setX(const Axis& axis, const std::string& label, bool whole = false);
    void setY(const Axis& axis, const std::string& label, bool whole = false);

    /** Ticks of its own making; upright where they would run into each other. */
    void setXTicks(const std::vector<Tick>& ticks);

    /** No axes, equal units on both, the range -limit ... limit on both, and a label below. */
    void setRound(double limit, const std::string& label);

    /**
     * A layer over those before it.
     * @param style gnuplot's words after the data, such as "using 1:2 with lines".
     * @param keyTitle none when empty. */
    void add(const Rows& rows, const std::string& style, const std::string& keyTitle = "");

    /** A text in the picture, at a position of the axes. */
    void addText(double x, double y, const std::string& text, const std::string& placing);

    /** What the reader of the picture has to know, under it. */
    void note(const std::string& text) { notes.push_back(text); }

    /** The picture as gnuplot commands. */
    std::string commands() const;

private:
    struct Layer {
        std::string data;
        std::string style;
        std::string keyTitle;
    };

    std::string title;
    std::string caption;
    std::optional<Axis> xAxis;
    std::optional<Axis> yAxis;
    std::vector<Tick> xTicks;
    std::vector<Tick> yTicks;
    bool upright = false;
    std::string xLabel;
    std::string yLabel;
    double roundLimit = 0.0;
    std::vector<Layer> layers;
    std::vector<std::string> texts;
    std::vector<std::string> notes;
};

}  // namespace wqstat
