#include "canvas.h"

#include "command_line/arguments.h"
#include "command_line/failure.h"

#include <algorithm>

namespace wqstat {

namespace {

struct Unit {
    const char* name;
    double pixels;
    double least;
    double most;
};

constexpr Unit millimetres{"mm", Canvas::screenDots / Canvas::millimetresPerInch, 30.0, 1000.0};
constexpr Unit screenPixels{"px", 1.0, 100.0, 8000.0};

bool endsIn(const std::string& text, const std::string& end)
{
    return text.size() > end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

[[noreturn]] void refuse(const std::string& text) { throw WrongUsage(inQuotes(text) + " is no size such as 85x60mm or 800x600px"); }

double lengthIn(const std::string& text, const std::string& part)
{
    try {
        return realArgument(part);
    } catch (const WrongUsage&) {
        refuse(text);
    }
}

double side(const std::string& text, double length, const Unit& unit)
{
    if (!(length >= unit.least && length <= unit.most))
        throw WrongUsage(inQuotes(text) + ": a side is " + shortest(unit.least) + " to " + shortest(unit.most) + " " + unit.name);
    return length * unit.pixels;
}

}  // namespace

void setSize(Canvas& canvas, const std::string& text)
{
    const Unit& unit = endsIn(text, millimetres.name) ? millimetres : screenPixels;
    const std::string sides = endsIn(text, unit.name) ? text.substr(0, text.size() - 2) : text;
    const std::size_t by = sides.find('x');
    if (by == std::string::npos) refuse(text);
    const double width = lengthIn(text, sides.substr(0, by));
    const double height = lengthIn(text, sides.substr(by + 1));
    canvas.width = side(text, width, unit);
    canvas.height = side(text, height, unit);
    canvas.isGiven = true;
    canvas.inMillimetres = &unit == &millimetres;
}

void finish(Canvas& canvas, std::optional<double> fontSize, std::optional<double> dots)
{
    constexpr double least = 7.0;  // points; smaller letters no journal prints
    const Canvas usual;
    const double part = std::min(canvas.width / usual.width, canvas.height / usual.height);
    canvas.fontSize = fontSize.value_or(std::clamp(Canvas::usualFont * part, least, Canvas::usualFont));
    canvas.dots = dots.value_or(canvas.inMillimetres ? Canvas::printDots : Canvas::screenDots);
    constexpr double most = 20000.0;  // dots to a side
    if (std::max(canvas.width, canvas.height) * canvas.dots / Canvas::screenDots > most)
        throw WrongUsage("--size and --dpi: a side is " + shortest(most) + " dots at most");
}

}  // namespace wqstat
