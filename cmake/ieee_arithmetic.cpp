// Compiled into each library only to refuse compile options under which its figures would not be those of IEEE arithmetic: NaN that
// compares equal, sums in another order, a zero without its sign, a product with a rounded reciprocal for a quotient. There is no code in
// it.

#include <cfloat>
#include <cstdint>
#include <limits>

static_assert(std::numeric_limits<double>::is_iec559 && DBL_MANT_DIG == 53, "double is not IEEE binary64");
static_assert(FLT_EVAL_METHOD == 0 || FLT_EVAL_METHOD == 1, "double is computed with more digits than it has");
static_assert(static_cast<double>(0.1F) != 0.1, "double constants are read as float");

#if defined(__FAST_MATH__) || (defined(__FINITE_MATH_ONLY__) && __FINITE_MATH_ONLY__) || defined(__NO_SIGNED_ZEROS__) ||                   \
    defined(__ASSOCIATIVE_MATH__) || defined(__RECIPROCAL_MATH__) || defined(_M_FP_FAST)
#  error "fast-math: the libraries rely on IEEE arithmetic, so take -ffast-math, -Ofast and their parts out of the compile options"
#endif

// Clang defines macros for the first two only. There the optimiser itself is asked: no expression below has a known value under IEEE
// arithmetic, and where it finds one, the call of a function stays that must not be called. Without optimisation nothing is rearranged.
#if defined(__clang__)

namespace wq_lib::detail {

[[gnu::error("fast-math: the libraries rely on IEEE arithmetic, so take -ffast-math and its parts out of the compile options")]] void
refuseFastMath();

/// The bits in which two values differ; not a function, for the question below is answered before functions are inlined.
#  define WQ_DIFFERENCE(a, b) (__builtin_bit_cast(std::uint64_t, a) ^ __builtin_bit_cast(std::uint64_t, b))

namespace {

[[gnu::used]] void nanDiffersFromItself(double x)
{
    if (__builtin_constant_p(x != x)) refuseFastMath();
}

[[gnu::used]] void zeroHasASign(double x)
{
    if (__builtin_constant_p(WQ_DIFFERENCE(x + 0.0, x))) refuseFastMath();
}

[[gnu::used]] void sumsKeepTheirOrder(double x)
{
    if (__builtin_constant_p(WQ_DIFFERENCE((x + 1.0) + 2.0, x + 3.0))) refuseFastMath();
}

[[gnu::used]] void quotientsAreNotProducts(double x)
{
    if (__builtin_constant_p(WQ_DIFFERENCE(x / 3.0, x * (1.0 / 3.0)))) refuseFastMath();
}

}  // namespace

}  // namespace wq_lib::detail

#endif
