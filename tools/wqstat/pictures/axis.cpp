#include "axis.h"

#include "results/figures.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace wqstat {

namespace {

/** mantissa * 10^exponent, mantissa 1, 2 or 5. */
struct RoundNumber {
    int mantissa;
    int exponent;
};

double powerOfTen(int exponent) { return std::pow(10.0, exponent); }

RoundNumber roundNumberFrom(double value)
{
    int exponent = static_cast<int>(std::floor(std::log10(value)));
    for (;; ++exponent)
        for (const int mantissa : {1, 2, 5})
            if (mantissa * powerOfTen(exponent) >= value * (1.0 - 1e-12)) return {mantissa, exponent};
}

/** How the ticks of one axis are written: in plain digits, or as 1.5e12 where that is shorter to read. */
enum class Notation { plain, scientific };

Notation notationFor(double largest, int stepExponent)
{
    if (largest == 0.0) return Notation::plain;
    const double magnitude = std::floor(std::log10(largest));
    if (magnitude > 6.0) return stepExponent < 0 && magnitude < 13.0 ? Notation::plain : Notation::scientific;
    return magnitude < -4.0 ? Notation::scientific : Notation::plain;
}

/** number * 10^exponent, exactly. */
std::string decimal(std::int64_t number, int exponent, Notation notation)
{
    if (number == 0) return "0";
    for (; number % 10 == 0; number /= 10) ++exponent;
    std::string digits = std::to_string(std::abs(number));
    const int magnitude = static_cast<int>(digits.size()) + exponent - 1;  // that of the first digit
    if (notation == Notation::scientific) {
        if (digits.size() > 1) digits.insert(1, ".");
        digits += "e" + std::to_string(magnitude);
    } else if (exponent >= 0) {
        digits.append(static_cast<std::size_t>(exponent), '0');
    } else if (magnitude >= 0) {
        digits.insert(static_cast<std::size_t>(magnitude) + 1, ".");
    } else {
        digits.insert(0, "0." + std::string(static_cast<std::size_t>(-magnitude - 1), '0'));
    }
    return (number < 0 ? "-" : "") + digits;
}

}  // namespace

void Extent::include(double value)
{
    if (!std::isfinite(value)) return;
    low = std::min(low, value);
    high = std::max(high, value);
}

Axis::Axis(const Extent& extent, Ends ends, Scale scaleOfAxis)
{
    if (extent.isEmpty()) return;
    if (scaleOfAxis == Scale::logarithmic && extent.low > 0.0) {
        scale = Scale::logarithmic;
        Extent decades;
        decades.include(std::log10(extent.low));
        decades.include(std::log10(extent.high));
        const double space = decades.high > decades.low ? 0.05 * (decades.high - decades.low) : 0.5;
        lowest = decades.low - space;
        highest = decades.high + space;
        return;
    }
    const double spread = extent.high - extent.low;
    const double magnitude = std::max(std::fabs(extent.low), std::fabs(extent.high));
    constexpr double manyDigits = 1e-9;  // a tick would need more than 9 of them
    if (ends != Ends::fromZero && spread > 0.0 && spread < manyDigits * magnitude) {
        const double unit = powerOfTen(static_cast<int>(std::ceil(std::log10(spread))));
        offset = std::round((0.5 * extent.low + 0.5 * extent.high) / unit) * unit;
    }
    const double largest = std::max(std::fabs(extent.low - offset), std::fabs(extent.high - offset));
    if (largest >= 1e15 || (largest > 0.0 && largest < 1e-9)) exponent = static_cast<int>(std::floor(std::log10(largest)));

    lowest = ends == Ends::fromZero ? std::min(0.0, at(extent.low)) : at(extent.low);
    highest = ends == Ends::fromZero ? std::max(0.0, at(extent.high)) : at(extent.high);
    const double width = highest - lowest;
    const double space = width > 0.0 ? 0.05 * width : lowest == 0.0 ? 1.0 : 0.05 * std::fabs(lowest);
    if (ends != Ends::fromZero || lowest < 0.0) lowest -= space;
    highest += space;
}

double Axis::at(double value) const
{
    if (isLogarithmic()) return value > 0.0 ? std::log10(value) : std::nan("");
    if (exponent == 0) return value - offset;
    const int half = exponent / 2;  // 10^exponent itself may lie beyond what a double holds
    return (value - offset) / powerOfTen(half) / powerOfTen(exponent - half);
}

void Axis::cover(double position)
{
    const double space = 0.02 * (highest - lowest);
    lowest = std::min(lowest, position - space);
    highest = std::max(highest, position + space);
}

void Axis::widenTo(const Axis& other)
{
    lowest = std::min(lowest, other.lowest);
    highest = std::max(highest, other.highest);
}

/** At powers of ten; where these are too few at 2 and 5 times them as well. The small ones divide a power evenly. */
std::vector<Tick> Axis::logarithmicTicks(std::size_t most) const
{
    const int first = static_cast<int>(std::floor(lowest));
    const int last = static_cast<int>(std::ceil(highest));
    const int step = 1 + static_cast<int>((highest - lowest) / static_cast<double>(std::max<std::size_t>(most, 1)));
    const bool between = highest - lowest < 2.0;
    const bool small = highest - lowest < 6.0;
    std::vector<Tick> all;
    for (int power = first; power <= last; ++power) {
        for (int digit = 1; digit < 10; ++digit) {
            const double position = power + std::log10(digit);
            if (position < lowest || position > highest) continue;
            const bool named = digit == 1 ? power % step == 0 : between && (digit == 2 || digit == 5);
            if (!named && !small) continue;
            const Notation notation = std::abs(power) > 4 ? Notation::scientific : Notation::plain;
            all.push_back({position, named ? decimal(digit, power, notation) : ""});
        }
    }
    return all;
}

std::vector<Tick> Axis::ticks(std::size_t most, bool whole) const
{
    if (isLogarithmic()) {
        std::vector<Tick> all = logarithmicTicks(most);
        const auto named = std::count_if(all.begin(), all.end(), [](const Tick& tick) { return !tick.text.empty(); });
        if (named > 1) return all;
        Extent values;  // less than from one named tick to the next: those of the values
        values.include(std::pow(10.0, lowest));
        values.include(std::pow(10.0, highest));
        all = Axis(values).ticks(std::min<std::size_t>(most, 5));
        all.erase(std::remove_if(all.begin(), all.end(), [](const Tick& tick) { return !(tick.position > 0.0); }), all.end());
        for (Tick& tick : all) tick.position = std::log10(tick.position);
        all.erase(
            std::remove_if(all.begin(), all.end(), [this](const Tick& tick) { return tick.position < lowest || tick.position > highest; }),
            all.end());
        return all;
    }
    RoundNumber step = roundNumberFrom((highest - lowest) / static_cast<double>(std::max<std::size_t>(most, 1)));
    if (whole && step.exponent + exponent < 0) step = {1, -exponent};
    const double width = step.mantissa * powerOfTen(step.exponent);
    const double tolerance = 1e-9 * (highest - lowest);
    const int stepExponent = step.exponent + exponent;
    const double largest = std::max(std::fabs(lowest), std::fabs(highest));
    const Notation notation = exponent != 0 ? Notation::scientific : notationFor(std::floor(largest / width) * width, step.exponent);
    std::vector<Tick> all;
    const auto last = static_cast<std::int64_t>(std::floor((highest + tolerance) / width));
    for (auto k = static_cast<std::int64_t>(std::ceil((lowest - tolerance) / width)); k <= last; ++k)
        all.push_back({static_cast<double>(k) * width, decimal(k * step.mantissa, stepExponent, notation)});
    return all;
}

std::string Axis::text(double value) const
{
    constexpr int least = 5;
    if (isLogarithmic()) return figures(value, least);
    return figures(value, digitsWithin(value, (highest - lowest) * powerOfTen(exponent), least - 1, least));
}

std::string Axis::subtracted() const
{
    if (offset == 0.0) return "";
    return (offset < 0.0 ? " + " : " - ") + figures(std::fabs(offset), 17);
}

double roundedUp(double value)
{
    const RoundNumber number = roundNumberFrom(value);
    return number.mantissa * powerOfTen(number.exponent);
}

}  // namespace wqstat
