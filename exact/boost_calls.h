// How functions of Boost are called: nothing is thrown.
#pragma once

#include <boost/math/policies/policy.hpp>

#include <exception>
#include <limits>

namespace wq_exact::detail {

namespace policies = boost::math::policies;

// What is not defined, or lies outside the range, is NaN or the limit, not an exception.
using Policy = policies::policy<policies::promote_double<false>, policies::domain_error<policies::ignore_error>,
                                policies::pole_error<policies::ignore_error>, policies::overflow_error<policies::ignore_error>,
                                policies::underflow_error<policies::ignore_error>, policies::denorm_error<policies::ignore_error>,
                                policies::rounding_error<policies::ignore_error>, policies::evaluation_error<policies::ignore_error>,
                                policies::indeterminate_result_error<policies::ignore_error>>;

/** A call of Boost; NaN should it throw all the same. */
template <typename Call>
long double callBoost(Call call) noexcept
{
    try {
        return call();
    } catch (const std::exception&) {
        return std::numeric_limits<long double>::quiet_NaN();
    }
}

}  // namespace wq_exact::detail
