// Kluyver (1906): P(R < r) is r times the integral of J1(r t) J0(t)^n over t > 0. With t = -i s, I1 and K1 in place of J1 make two contour
// integrals of it, one for each tail, without cancellation where the tail is small:
//     P(R < r) = -r integral of I1(r s) I0(s)^n ds from 0 to i infinity,
//     P(R > r) = r / (pi i) integral of K1(r s) I0(s)^n ds along Re s = c, c > 0.
// The second goes through the saddle point c of I0(s)^n exp(-r s). Of few steps the integrands fall off slowly and oscillate. There the
// line ends at a height where Bessel functions are exponentials times smooth factors, and each product of exponentials is followed from
// there to the side where it falls.
#include "random_walk.h"

#include "boost_calls.h"
#include "complex_bessel.h"
#include "pi.h"

#include <boost/math/quadrature/gauss.hpp>
#include <boost/math/special_functions/bessel.hpp>

#include <algorithm>
#include <cmath>
#include <limits>

namespace wq_exact::detail {

namespace {

constexpr Complex i = Complex(0.0L, 1.0L);
constexpr double infinitelyMany = 1e20;     // steps, from which on z has the exponential distribution
constexpr long double negligible = 1e-20L;  // a part of the integrand at its largest

/** A walk's n, its distance r, and n - r. */
struct Walk {
    long double n;
    long double r;
    long double missing;
};

Walk walkTo(const WalkPoint& point, double n)
{
    const long double r = std::sqrt(point.z * n);
    return {n, r, n * point.rest / (n + r)};
}

// ---------------------------------------------------------------- the line

/** The integral over 0 < y < end, or to where the integrand is negligible; whether it got there. */
struct OnLine {
    long double integral;
    bool isAll;
};

/** @param centre c */
template <typename Integrand>
OnLine alongLine(Integrand integrand, const Walk& walk, long double centre, long double end)
{
    using Rule = boost::math::quadrature::gauss<long double, 20>;
    const long double bell = std::sqrt(2.0L * (1.0L + centre * centre) / walk.n);  // the width of I0(c + i y)^n at y = 0
    const long double widest = std::max(1.5L * bell, 16.0L / (walk.n + walk.r));   // which oscillates with n + r at the most
    const long double scale = std::max(centre, 0.63L);
    long double largest = 0.0L;
    long double sum = 0.0L;
    long double from = 0.0L;
    constexpr int most = 2000;  // panels; a hundred do
    for (int panel = 0; panel < most && from < end; ++panel) {
        const long double fromZero = std::hypot(centre, from);  // the singularity of K1
        const long double to = std::min(from + (centre > 0.0L ? std::min(widest, 1.2L * fromZero) : widest), end);
        long double here = 0.0L;
        sum += Rule::integrate(
            [&](long double y) {
                const long double value = integrand(y);
                here = std::max(here, std::fabs(value));
                return value;
            },
            from, to);
        largest = std::max(largest, here);
        // Beyond the first zeros of J0 the integrand may be small on a panel and rise again, but not above this.
        const long double envelope = to < 2.0L ? 0.0L : std::exp(-0.25L * walk.n * std::log1p((to / scale) * (to / scale)));
        if (here < negligible * largest && envelope < negligible) return {sum, true};
        from = to;
    }
    return {sum, false};
}

// ---------------------------------------------------------------- the ways to the sides

/** The integral of a function from a point on, in a direction: exp(pi / 2 sinh t) takes the trapezoidal rule to both ends. */
template <typename Integrand>
Complex toTheSide(Integrand integrand, Complex from, long double angle)
{
    const Complex direction = std::polar(1.0L, angle);
    const long double scale = std::abs(from);
    constexpr long double step = 1.0L / 24.0L;
    constexpr int nodes = 90;
    Complex sum = 0.0L;
    for (int j = -nodes; j <= nodes; ++j) {
        const long double t = step * j;
        const long double distance = scale * std::exp(0.5L * pi * std::sinh(t));
        sum += integrand(from + distance * direction) * (distance * 0.5L * pi * std::cosh(t));
    }
    return sum * step * direction;
}

constexpr long double left = 0.75L * pi;
constexpr long double right = 0.25L * pi;

/** The most steps for which a line ends before the integrand is negligible. */
constexpr int fewSteps = 63;

/** Of few steps: I0(s)^n = (2 pi s)^(-n / 2) sum of binomial(n, k) rising^k falling^(n - k) exp((2k - n) s), far from zero. */
class Powers {
public:
    Powers(int steps, Complex s) : n(steps), root(-0.5L * static_cast<long double>(n) * std::log(2.0L * pi * s))
    {
        const Complex rising = scaledK(0, -s);
        const Complex falling = i * scaledK(0, s);
        factors[0] = 1.0L;
        for (int k = 1; k <= n; ++k) factors[k] = factors[k - 1] * falling;
        Complex power = 1.0L;
        long double binomial = 1.0L;
        for (int k = 0; k <= n; ++k) {
            powers[k] = binomial * power * factors[n - k];
            power *= rising;
            binomial = binomial * (n - k) / (k + 1);
        }
    }

    /** The term k with another exponent, which is given as a whole because its parts nearly cancel. */
    Complex term(int k, Complex exponent) const
    {
        const Complex whole = exponent + root;
        constexpr long double lost = -60.0L;
        return whole.real() < lost ? Complex(0.0L) : powers[k] * std::polar(std::exp(whole.real()), whole.imag());
    }

private:
    int n;
    Complex root;
    Complex factors[fewSteps + 1];
    Complex powers[fewSteps + 1];
};

}  // namespace

// ---------------------------------------------------------------- the upper tail

namespace {

/** About where the derivative of n log I0(c) is r. Source: Fisher (1993), Statistical analysis of circular data, 4.5.5. */
long double saddlePoint(const Walk& walk)
{
    const long double mean = walk.r / walk.n;
    if (mean < 0.53L) return 2.0L * mean + mean * mean * mean + 5.0L / 6.0L * std::pow(mean, 5.0L);
    const long double rest = walk.missing / walk.n;
    return mean < 0.85L ? -0.4L + 1.39L * mean + 0.43L / rest : 1.0L / (mean * rest * (3.0L - mean));
}

/** The logarithm of I0(s)^n exp(-r s). */
Complex logPower(const Walk& walk, Complex s, bool isFar)
{
    return isFar ? walk.n * logScaledI0(s) + walk.missing * s : walk.n * logI0(s) - walk.r * s;
}

/** K1(r s) without its exponential. */
Complex scaledK1(const Walk& walk, Complex s) { return scaledK(1, walk.r * s) * std::sqrt(pi / (2.0L * walk.r * s)); }

long double upperSide(const Walk& walk, Complex from, long double angle, long double height)
{
    const int n = static_cast<int>(walk.n);
    const Complex side = toTheSide(
        [&](Complex s) {
            const Powers powers(n, s);
            Complex sum = 0.0L;
            for (int k = 0; k <= n; ++k) {
                const long double exponent = k == n ? walk.missing : 2.0L * k - walk.n - walk.r;
                if ((exponent > 0.0L) == (angle == left)) sum += powers.term(k, exponent * s - height);
            }
            return sum * scaledK1(walk, s);
        },
        from, angle);
    return side.imag();
}

long double upper(const Walk& walk)
{
    const long double centre = saddlePoint(walk);
    const bool isFar = centre >= farFromZero;
    const long double height = logPower(walk, centre, isFar).real();
    const long double end = std::max(farFromZero, 8.0L * centre);
    const OnLine line = alongLine(
        [&](long double y) {
            const Complex s(centre, y);
            const bool far = isFar || std::norm(s) > farFromZero * farFromZero;
            return (std::exp(logPower(walk, s, far) - height) * scaledK1(walk, s)).real();
        },
        walk, centre, end);
    long double integral = line.integral;
    if (!line.isAll && walk.n <= fewSteps)
        for (const long double angle : {left, right}) integral += upperSide(walk, Complex(centre, end), angle, height);
    return 2.0L / pi * walk.r * integral * std::exp(height);
}

// ---------------------------------------------------------------- the lower tail

/** A distance so small that I1(r s) is the sum of two exponentials only beyond where the line ends. */
constexpr long double shortDistance = 0.1L;

long double bessel(int order, long double x)
{
    return callBoost([&] { return boost::math::cyl_bessel_j(order, x, Policy()); });
}

/** Terms whose I1(r s) is split into its exponentials, those of it and of I0(s)^n that fall to this side. */
Complex lowerSideSplit(const Walk& walk, Complex from, long double angle, bool isCentralOnly)
{
    const int n = static_cast<int>(walk.n);
    return toTheSide(
        [&](Complex s) {
            const Powers powers(n, s);
            const Complex w = walk.r * s;
            const Complex factors[] = {scaledK(1, -w), -i * scaledK(1, w)};
            Complex sum = 0.0L;
            for (int k = 0; k <= n; ++k)
                for (const int sign : {1, -1}) {
                    const long double exponent = 2.0L * k - walk.n + sign * walk.r;
                    const bool isWanted = !isCentralOnly || 2 * k == n;
                    if (isWanted && (exponent > 0.0L) == (angle == left)) sum += powers.term(k, exponent * s) * factors[sign < 0 ? 1 : 0];
                }
            return sum / std::sqrt(2.0L * pi * w);
        },
        from, angle);
}

/** The terms of a short distance that rise or fall faster than I1(r s). */
Complex lowerSideWhole(const Walk& walk, Complex from, long double angle)
{
    const int n = static_cast<int>(walk.n);
    return toTheSide(
        [&](Complex s) {
            constexpr long double nothingLeft = 120.0L;  // there the terms have fallen by exp(-(1 - r) 85)
            if (std::abs(s - from) > nothingLeft) return Complex(0.0L);
            const Powers powers(n, s);
            Complex sum = 0.0L;
            for (int k = 0; k <= n; ++k)
                if (2 * k != n && (2 * k > n) == (angle == left)) sum += powers.term(k, (2.0L * k - walk.n) * s);
            return sum * seriesI1(walk.r * s);
        },
        from, angle);
}

/** The term of a short distance that does not oscillate: up the line to where I1(r s) does, in log s, and from there to the sides. */
long double lowerCentral(const Walk& walk, long double from)
{
    using Rule = boost::math::quadrature::gauss<long double, 20>;
    const int n = static_cast<int>(walk.n);
    const long double to = 2.5L / walk.r;
    const long double ends[] = {std::log(from), std::log(to)};
    const int panels = static_cast<int>(std::ceil(ends[1] - ends[0]));
    long double sum = 0.0L;
    for (int j = 0; j < panels; ++j) {
        const long double width = (ends[1] - ends[0]) / panels;
        sum += Rule::integrate(
            [&](long double logarithm) {
                const long double t = std::exp(logarithm);
                return Powers(n, i * t).term(n / 2, 0.0L).real() * bessel(1, walk.r * t) * t;
            },
            ends[0] + j * width, ends[0] + (j + 1) * width);
    }
    for (const long double angle : {left, right}) sum -= lowerSideSplit(walk, i * to, angle, true).real();
    return sum;
}

long double lower(const Walk& walk)
{
    const long double end = farFromZero;
    const OnLine line = alongLine(
        [&](long double t) {
            const long double power = t < 1.0L ? std::exp(walk.n * logI0(i * t).real()) : std::pow(bessel(0, t), walk.n);
            return power * bessel(1, walk.r * t);
        },
        walk, 0.0L, end);
    long double integral = line.integral;
    if (!line.isAll && walk.n <= fewSteps) {
        const bool isShort = walk.r < shortDistance;
        for (const long double angle : {left, right})
            integral -= (isShort ? lowerSideWhole(walk, i * end, angle) : lowerSideSplit(walk, i * end, angle, false)).real();
        if (isShort && std::fmod(walk.n, 2.0L) == 0.0L) integral += lowerCentral(walk, end);
    }
    return walk.r * integral;
}

/**
 * Whether the lower tail is computed, which is the faster; the upper one is then its rest. It is above 0.1 below the first bound, above
 * 0.004 below the second.
 */
bool isByLower(const WalkPoint& point, double n) { return point.z < 2.0L || (n >= 10.0 && point.z < 5.0L); }

}  // namespace

long double walkUpperTail(const WalkPoint& point, double n)
{
    if (point.rest <= 0.0L) return n == 1.0 ? 1.0L : 0.0L;
    if (point.z <= 0.0L || n == 1.0) return 1.0L;
    if (n == 2.0) return 2.0L / pi * std::atan2(std::sqrt(point.rest), std::sqrt(point.z));
    if (n >= infinitelyMany) return std::exp(-point.z);
    return isByLower(point, n) ? 1.0L - lower(walkTo(point, n)) : upper(walkTo(point, n));
}

long double walkLowerTail(const WalkPoint& point, double n)
{
    if (point.z <= 0.0L || n == 1.0) return 0.0L;
    if (point.rest <= 0.0L) return 1.0L;
    if (n == 2.0) return 2.0L / pi * std::atan2(std::sqrt(point.z), std::sqrt(point.rest));
    if (n >= infinitelyMany) return -std::expm1(-point.z);
    return isByLower(point, n) ? lower(walkTo(point, n)) : 1.0L - upper(walkTo(point, n));
}

// ---------------------------------------------------------------- quantiles

namespace {

/** The x at which a rising function is 0, low < x < high, by secants, and by halves where they lead outside. */
template <typename Function>
long double crossing(Function function, long double low, long double high, long double guess)
{
    constexpr int mostSteps = 200;
    constexpr long double close = 1e-11L;  // between two secants; the error that is left is of a higher order
    long double before = guess * 1.01L;
    long double valueBefore = function(before);
    (valueBefore < 0.0L ? low : high) = before;
    long double at = guess;
    for (int step = 0; step < mostSteps; ++step) {
        const long double value = function(at);
        if (value == 0.0L) return at;
        (value < 0.0L ? low : high) = at;
        const long double next = at - value * (at - before) / (value - valueBefore);
        const bool isInside = next > low && next < high;  // not so for NaN
        before = at;
        valueBefore = value;
        at = isInside ? next : low + (high - low) / 2.0L;
        if (std::fabs(at - before) <= close * std::max(1.0L, std::fabs(before)) && (isInside || high - low <= close)) return at;
    }
    return at;
}

/** Of so many quarters of a circle: R of two steps is 2 cos of half their angle. */
long double squareOfSine(long double quarters)
{
    const long double sine = std::sin(0.5L * pi * quarters);
    return sine * sine;
}

/** z = n (1 - exp(-x / n)): the logarithm of the upper tail is nearly straight in x, to both ends. */
WalkPoint upperPoint(long double x, long double n) { return {-n * std::expm1(-x / n), n * std::exp(-x / n)}; }

}  // namespace

double walkQuantile(long double lower, long double upper, double n)
{
    if (!(lower >= 0.0L && upper >= 0.0L)) return std::numeric_limits<double>::quiet_NaN();
    if (lower == 0.0L) return 0.0;
    if (n == 1.0) return std::numeric_limits<double>::quiet_NaN();
    if (upper == 0.0L) return n;
    if (n == 2.0) return static_cast<double>(lower <= upper ? 2.0L * squareOfSine(lower) : 2.0L - 2.0L * squareOfSine(upper));
    if (lower <= upper) {
        const long double target = std::log(lower);
        const auto missing = [&](long double logarithm) {
            const long double z = std::exp(logarithm);
            return std::log(walkLowerTail({z, n - z}, n)) - target;
        };
        const long double guess = std::log(-std::log1p(-lower));
        return static_cast<double>(std::exp(crossing(missing, guess - 20.0L, std::log(static_cast<long double>(n)), guess)));
    }
    const long double target = std::log(upper);
    const auto missing = [&](long double x) { return target - std::log(walkUpperTail(upperPoint(x, n), n)); };
    return static_cast<double>(upperPoint(crossing(missing, 0.0L, -10.0L * target, -target), n).z);
}

}  // namespace wq_exact::detail
