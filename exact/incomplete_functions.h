// Incomplete gamma and beta functions in extended precision, so that their results are right in double.
#pragma once

namespace wq_exact::detail {

/** P(a, x), the lower incomplete gamma function divided by gamma(a), and Q(a, x) = 1 - P(a, x); a, x > 0. NaN where it cannot be computed.
 */
long double incompleteGammaLower(long double a, long double x) noexcept;
long double incompleteGammaUpper(long double a, long double x) noexcept;

/** The derivative of P(a, x) by x. */
long double incompleteGammaDerivative(long double a, long double x) noexcept;

/** I_x(a, b) at x = part / (part + rest), a, b, part, rest > 0: given so, x and 1 - x are both known to the last digit. */
long double incompleteBeta(long double a, long double b, long double part, long double rest) noexcept;

/** The derivative of I_x(a, b) by x. */
long double incompleteBetaDerivative(long double a, long double b, long double part, long double rest) noexcept;

/** The density of Student's t at 0. */
long double tDensityAtZero(long double df) noexcept;

/** The z that the standard normal distribution exceeds with probability p, 0 <= p <= 1. */
double normalUpperQuantile(double p) noexcept;

}  // namespace wq_exact::detail
