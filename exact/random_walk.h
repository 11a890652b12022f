// Where a walk of n steps of length 1 in random directions ends: the distribution that Rayleigh's test needs.
#pragma once

namespace wq_exact::detail {

/** z = R^2 / n of a walk's distance R, and n - z, which near n would have no digits as a difference. */
struct WalkPoint {
    long double z;
    long double rest;
};

/** P(R^2 / n > z) and P(R^2 / n < z), 0 <= z <= n, of a whole number n of steps. */
long double walkUpperTail(const WalkPoint& point, double n);
long double walkLowerTail(const WalkPoint& point, double n);

/** The z that is exceeded with the smaller of two complementary probabilities, or not reached with it. */
double walkQuantile(long double lower, long double upper, double n);

}  // namespace wq_exact::detail
