#include "complex_bessel.h"

#include "pi.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace wq_exact::detail {

namespace {

constexpr long double tiny = std::numeric_limits<long double>::epsilon() / 64.0L;

bool isNegligible(Complex term, Complex sum) { return std::norm(term) <= tiny * tiny * std::norm(sum); }

/** Hankel's expansion, to its smallest term. Source: DLMF 10.40.2. */
Complex asymptoticK(int order, Complex w)
{
    const Complex step = 0.125L / w;
    const long double fourOrderSquared = 4.0L * order * order;
    Complex term = 1.0L;
    Complex sum = 1.0L;
    constexpr int most = 40;  // 2 |w|, where the terms are smallest
    for (int k = 1; k <= most && !isNegligible(term, sum); ++k) {
        const long double odd = 2.0L * k - 1.0L;
        term *= step * ((fourOrderSquared - odd * odd) / k);
        sum += term;
    }
    return sum;
}

/**
 * The integral of exp(-y^2) (1 + y^2 / 2w)^(order - 1/2) y^(2 order), by the trapezoidal rule, whose error falls exponentially with the
 * distance of the integrand's singularities from the real axis. Source: DLMF 10.32.8, its t being 1 + y^2 / w.
 */
Complex integralK(int order, Complex w)
{
    constexpr long double widest = 0.4L;  // from here on the bell itself has to be resolved
    constexpr long double end = 6.8L;     // exp(-y^2) is 1e-20
    const long double step = std::min(0.125L * std::sqrt(2.0L * w).real(), widest);
    const int nodes = static_cast<int>(end / step) + 1;
    const Complex curvature = 0.5L * step * step / w;
    const long double square = step * step;
    Complex sum = order == 0 ? 0.5L : 0.0L;
    for (int i = 1; i <= nodes; ++i) {
        const long double i2 = static_cast<long double>(i) * i;
        const Complex root = std::sqrt(1.0L + i2 * curvature);
        sum += std::exp(-i2 * square) * (order == 0 ? 1.0L / root : i2 * square * root);
    }
    return sum * ((order == 0 ? 2.0L : 4.0L) * step / std::sqrt(pi));
}

/** log(1 + x) of a complex x with all digits where it is small. */
Complex logOfOnePlus(Complex x) { return {0.5L * std::log1p(2.0L * x.real() + std::norm(x)), std::atan2(x.imag(), 1.0L + x.real())}; }

/** log I0, |s| <= 1, by the power series. Source: DLMF 10.25.2. */
Complex logOfSeriesI0(Complex s)
{
    const Complex quarter = 0.25L * s * s;
    Complex sum = 0.0L;
    constexpr int terms = 14;
    for (int k = terms; k >= 1; --k) sum = (sum + 1.0L) * quarter / (static_cast<long double>(k) * k);
    return logOfOnePlus(sum);
}

/** Of the angles of a quarter of the circle. */
struct Cosines {
    static constexpr int quarter = 18;
    long double of[quarter + 1];

    Cosines()
    {
        for (int i = 0; i <= quarter; ++i) of[i] = std::cos(pi * i / (2.0L * quarter));
    }
};

Complex coshOf(Complex s)
{
    const Complex rising = std::polar(std::exp(s.real()), s.imag());
    return 0.5L * (rising + 1.0L / rising);
}

}  // namespace

Complex scaledK(int order, Complex w) { return std::norm(w) < farFromZero * farFromZero ? integralK(order, w) : asymptoticK(order, w); }

Complex logI0(Complex s)
{
    if (std::norm(s) <= 1.0L) return logOfSeriesI0(s);
    // The mean of exp(s cos(angle)) over the circle. Source: DLMF 10.32.1; the trapezoidal rule is off by about 2 I_n(s), n its nodes.
    static const Cosines cosines;
    constexpr long double close = 8.0L;
    const int stride = std::norm(s) < close * close ? 2 : 1;
    Complex sum = 0.5L * (1.0L + coshOf(s));
    for (int i = stride; i < Cosines::quarter; i += stride) sum += coshOf(s * cosines.of[i]);
    return std::log(sum * (static_cast<long double>(stride) / Cosines::quarter));
}

// Hankel's expansion of both exponentials. Source: DLMF 10.40.5.
Complex logScaledI0(Complex s)
{
    const Complex other = Complex(0.0L, 1.0L) * std::exp(-2.0L * s) * asymptoticK(0, s);
    return std::log((asymptoticK(0, -s) + other) / std::sqrt(2.0L * pi * s));
}

// Source: DLMF 10.25.2.
Complex seriesI1(Complex w)
{
    const Complex quarter = 0.25L * w * w;
    Complex term = 0.5L * w;
    Complex sum = term;
    constexpr int most = 200;
    for (int k = 1; k <= most && !isNegligible(term, sum); ++k) {
        term *= quarter / (static_cast<long double>(k) * (k + 1));
        sum += term;
    }
    return sum;
}

}  // namespace wq_exact::detail
