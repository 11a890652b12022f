// pi as a long double.
#pragma once

namespace wq_exact::detail {

constexpr long double pi = 3.14159265358979323846264338327950288L;

}  // namespace wq_exact::detail
