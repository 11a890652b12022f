// pi and its multiples, as the nearest doubles.
#ifndef WQ_NUMBERS_PI_H
#define WQ_NUMBERS_PI_H

namespace wq_lib::detail {

constexpr double pi = 3.141592653589793;
constexpr double twoPi = 6.283185307179586;
constexpr double halfPi = 1.5707963267948966;

}  // namespace wq_lib::detail

#endif
