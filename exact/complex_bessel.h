// Modified Bessel functions of complex arguments, free of their exponential factor, in extended precision.
#pragma once

#include <complex>

namespace wq_exact::detail {

using Complex = std::complex<long double>;

/** From this modulus on the asymptotic expansions have all digits: their smallest term is about exp(-2 |w|). */
constexpr long double farFromZero = 20.0L;

/** K of the order 0 or 1 times sqrt(2 w / pi) exp(w), for |w| >= 1 and |arg w| <= 3/4 pi; far from zero for |arg w| < 3/2 pi. */
Complex scaledK(int order, Complex w);

/** log I0(s), Re s >= 0, |s| <= farFromZero; a branch of it. */
Complex logI0(Complex s);

/** log I0(s) - s far from zero, 0 <= arg s <= pi / 2; a branch of it. */
Complex logScaledI0(Complex s);

/** I1(w), by its power series, for |w| up to about 10. */
Complex seriesI1(Complex w);

}  // namespace wq_exact::detail
