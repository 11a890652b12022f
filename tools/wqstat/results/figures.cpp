#include "figures.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace wqstat {

std::string figures(double value, int digits)
{
    if (std::isnan(value)) return "n/a";
    char buffer[32];
    std::string text(buffer, std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, digits).ptr);
    if (const std::size_t e = text.find('e'); e != std::string::npos) {  // 1e-05 and 1e+30 to 1e-5 and 1e30
        const std::size_t digit = std::min(text.find_first_not_of('0', e + 2), text.size() - 1);
        text.erase(e + 2, digit - (e + 2));
        if (text[e + 1] == '+') text.erase(e + 1, 1);
    }
    return text;
}

int digitsWithin(double value, double span, int ofSpan, int least)
{
    constexpr int most = 16;
    constexpr double mostSteps = 1e14;  // beyond them the span is what rounding left of 0
    const double steps = std::fabs(value / span);
    if (!(steps > 1.0 && steps <= mostSteps)) return least;
    return std::clamp(static_cast<int>(std::ceil(std::log10(steps))) + ofSpan, least, most);
}

std::string figuresWithin(double value, double spread) { return figures(value, digitsWithin(value, spread, 2, 5)); }

std::string readable(double value, double spread)
{
    constexpr double mostInFull = 1e15;
    constexpr double sevenDigits = 1e6;
    if (!(std::fabs(value) < mostInFull)) return figures(value, 6);
    const double whole = std::round(std::fabs(value));
    if (std::fabs(value) == whole) return figures(value, 15);
    const int ofWhole = whole < sevenDigits ? 6 : 1 + static_cast<int>(std::floor(std::log10(whole)));
    return figures(value, digitsWithin(value, spread, 3, ofWhole));
}

std::string coefficient(double value)
{
    constexpr int least = 5;
    constexpr int most = 15;
    const double missing = 1.0 - std::fabs(value);
    if (!(missing > 0.0 && missing < 1e-5)) return figures(value, least);
    return figures(value, std::min(most, static_cast<int>(std::ceil(-std::log10(missing)))));
}

std::string statisticText(const std::string& name, double value, const std::string& text)
{
    if (std::isnan(value)) return "no " + name;
    return name + (std::isinf(value) ? " is infinite" : " = " + text);
}

std::string statisticText(const std::string& name, double value) { return statisticText(name, value, figures(value)); }

std::string probability(double p) { return p == 0.0 ? std::string("p ") + belowAllProbabilities : "p = " + figures(p, 3); }

std::string digits(std::size_t n)
{
    std::string text = std::to_string(n);
    if (text.size() > 4)
        for (std::size_t i = text.size(); i > 3;) text.insert(i -= 3, " ");
    return text;
}

std::string counted(std::size_t n, const std::string& one, const std::string& many) { return digits(n) + " " + (n == 1 ? one : many); }

}  // namespace wqstat
