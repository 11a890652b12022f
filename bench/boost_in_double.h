// Boost's distributions computed in double all the way. Its own choice, long double inside, takes three times as long.
#pragma once

#include <boost/math/distributions/chi_squared.hpp>
#include <boost/math/distributions/fisher_f.hpp>
#include <boost/math/distributions/normal.hpp>
#include <boost/math/distributions/students_t.hpp>

namespace wq_bench {

using InDouble = boost::math::policies::policy<boost::math::policies::promote_double<false>>;
using ChiSquared = boost::math::chi_squared_distribution<double, InDouble>;
using FisherF = boost::math::fisher_f_distribution<double, InDouble>;
using Normal = boost::math::normal_distribution<double, InDouble>;
using StudentsT = boost::math::students_t_distribution<double, InDouble>;

}  // namespace wq_bench
