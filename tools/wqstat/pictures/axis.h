// One axis of a picture: what it covers, where a value stands on it, and its ticks.
#pragma once

#include <cstddef>
#include <limits>
#include <string>
#include <vector>

namespace wqstat {

/** The smallest and the largest finite value met. */
struct Extent {
    double low = std::numeric_limits<double>::infinity();
    double high = -std::numeric_limits<double>::infinity();

    /** Values that are not finite are passed over. */
    void include(double value);
    bool isEmpty() const { return !(low <= high); }
};

/** Without a text it is one of the small ones between. */
struct Tick {
    double position;
    std::string text;
};

/**
 * Places values so that gnuplot sees ordinary numbers only: values of the order of 1e300 or 1e-300 are divided by a power of ten, and
 * from values that differ in their last digits alone a constant is subtracted, which the axis's label then names. Elsewhere the
 * position is the value. Ticks are exact decimals, in whatever locale. On a logarithmic axis the position is the decimal logarithm.
 */
class Axis {
public:
    enum class Ends {
        padded,   ///< a little space beyond the smallest and the largest value
        fromZero  ///< from 0, and space above
    };

    enum class Scale { linear, logarithmic };

    /** @param extent an empty one makes an axis from 0 to 1; of a logarithmic axis it is above 0. */
    explicit Axis(const Extent& extent, Ends ends = Ends::padded, Scale scale = Scale::linear);

    /** Not finite for what has no place on the axis. */
    double at(double value) const;
    bool isLogarithmic() const { return scale == Scale::logarithmic; }
    double low() const { return lowest; }
    double high() const { return highest; }

    /** Makes room for a position, and a little space beyond it. */
    void cover(double position);

    /** Whether a value has the same position on both. */
    bool isLike(const Axis& other) const { return scale == other.scale && offset == other.offset && exponent == other.exponent; }

    /** Makes room for what the other shows, which has to be like this one. */
    void widenTo(const Axis& other);

    /** At most so many ticks at round values; whole ones only when asked for. */
    std::vector<Tick> ticks(std::size_t most, bool whole = false) const;

    /** A value in as many digits as tell it from its neighbours on the axis. */
    std::string text(double value) const;

    /** What the values are diminished by: " - 1000000000000"; empty without. */
    std::string subtracted() const;

private:
    std::vector<Tick> logarithmicTicks(std::size_t most) const;

    Scale scale = Scale::linear;
    double offset = 0.0;
    int exponent = 0;  // position = (value - offset) / 10^exponent
    double lowest = 0.0;
    double highest = 1.0;
};

/** 1, 2 or 5 times a power of ten, not below the value, which is above 0. */
double roundedUp(double value);

}  // namespace wqstat
