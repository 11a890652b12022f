// How large a picture is, and its letters.
#pragma once

#include <optional>
#include <string>

namespace wqstat {

struct Canvas {
    static constexpr double usualFont = 11.25;  ///< points: 15 pixels on a screen
    static constexpr double screenDots = 96.0;  ///< to an inch
    static constexpr double printDots = 300.0;
    static constexpr double millimetresPerInch = 25.4;
    static constexpr double pointsPerInch = 72.0;

    double width = 800.0;  ///< in pixels of a screen, as is the height
    double height = 600.0;
    bool isGiven = false;  ///< whether somebody asked for the size; else a viewer may choose it
    bool inMillimetres = false;
    bool isSmallMultiple = false;  ///< one of several beside each other: without key and notes, and in less detail
    double fontSize = usualFont;   ///< points
    double dots = screenDots;      ///< to an inch, of formats that are made of dots

    /** The layout is made for letters of the usual size; this is how many pixels of a screen a unit of it takes. */
    double unit() const { return fontSize / usualFont; }
    double layoutWidth() const { return width / unit(); }
    double layoutHeight() const { return height / unit(); }
};

/** "85x60mm", "800x600px" or "800x600". @throws WrongUsage */
void setSize(Canvas& canvas, const std::string& text);

/** What was asked for besides the size; what was not follows from that: the smaller a picture, the smaller its letters. @throws WrongUsage
 */
void finish(Canvas& canvas, std::optional<double> fontSize, std::optional<double> dots);

}  // namespace wqstat
