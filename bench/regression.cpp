// LinearRegression and what fits the same line, with the standard error of its slope.
#include "boost_in_double.h"
#include "contenders.h"
#include "inputs.h"

#include <wq_stat/regression.h>

#include <boost/math/statistics/linear_regression.hpp>
#include <gsl/gsl_cdf.h>
#include <gsl/gsl_fit.h>

#include <array>
#include <cmath>

namespace wq_bench {

namespace {

/** n, a, b, standard error of b, t of b, two-sided p of t. */
using Line = std::array<double, 6>;

struct Columns {
    std::vector<double> x;
    std::vector<double> y;
};

Line whole(wq_lib::LinearRegression& sample)
{
    sample.analyse();
    const wq_lib::regression_stat& r = sample.getRegressionResult();
    return {static_cast<double>(r.n), r.a, r.b, r.seB, r.tB, r.pB};
}

/** a, b and so on from means and sums of squares and products. */
Line lineFrom(double n, double meanX, double meanY, double squaresX, double squaresY, double products)
{
    const double b = products / squaresX;
    const double residual = (squaresY - b * products) / (n - 2.0);
    const double seB = std::sqrt(residual / squaresX);
    return {n, meanY - b * meanX, b, seB, b / seB, std::nan("")};
}

/** Without t_Prob, whose loop over the degrees of freedom takes most of the time of some large samples. */
Line withoutProbability(wq_lib::LinearRegression& sample)
{
    sample.analyseDataPair();
    const wq_lib::xy_stat& r = sample.getXyResult();
    return lineFrom(static_cast<double>(r.x.n), r.x.mean, r.y.mean, r.x.sumOfSquares, r.y.sumOfSquares, r.sumProducts);
}

/** Straightforward C++. */
Line plain(const std::vector<wq_lib::data_pair>& pairs)
{
    const double n = static_cast<double>(pairs.size());
    double sumX = 0.0;
    double sumY = 0.0;
    for (const wq_lib::data_pair& pair : pairs) {
        sumX += pair.x;
        sumY += pair.y;
    }
    double squaresX = 0.0;
    double squaresY = 0.0;
    double products = 0.0;
    for (const wq_lib::data_pair& pair : pairs) {
        const double dx = pair.x - sumX / n;
        const double dy = pair.y - sumY / n;
        squaresX += dx * dx;
        squaresY += dy * dy;
        products += dx * dy;
    }
    return lineFrom(n, sumX / n, sumY / n, squaresX, squaresY, products);
}

Line boost(const Columns& columns)
{
    const auto [a, b, r2] = boost::math::statistics::simple_ordinary_least_squares_with_R_squared(columns.x, columns.y);
    const double n = static_cast<double>(columns.x.size());
    const double t = std::copysign(std::sqrt(r2 * (n - 2.0) / (1.0 - r2)), b);
    return {n, a, b, b / t, t, 2.0 * boost::math::cdf(boost::math::complement(StudentsT(n - 2.0), std::fabs(t)))};
}

Line gsl(const Columns& columns)
{
    double a, b, varianceA, covariance, varianceB, residuals;
    gsl_fit_linear(columns.x.data(), 1, columns.y.data(), 1, columns.x.size(), &a, &b, &varianceA, &covariance, &varianceB, &residuals);
    const double n = static_cast<double>(columns.x.size());
    const double t = b / std::sqrt(varianceB);
    return {n, a, b, std::sqrt(varianceB), t, 2.0 * gsl_cdf_tdist_Q(std::fabs(t), n - 2.0)};
}

void enterRow(const std::string& name, std::size_t n, Line (*library)(wq_lib::LinearRegression&))
{
    const std::string row = name + "/" + std::to_string(n);
    const auto pairs = [n] {
        const double* const x = input("x", n);
        const double* const y = input("y", n);
        auto list = std::make_unique<std::vector<wq_lib::data_pair>>(n);
        for (std::size_t i = 0; i < n; ++i) (*list)[i] = {x[i], y[i]};
        return list;
    };
    const auto columns = [n] {
        const double* const x = input("x", n);
        const double* const y = input("y", n);
        return std::make_unique<Columns>(Columns{{x, x + n}, {y, y + n}});
    };
    const auto analysis = [pairs] {
        auto sample = std::make_unique<wq_lib::LinearRegression>();
        sample->copyFrom(*pairs());
        return sample;
    };
    contender(row, "wq_stat", callsFor(n), analysis, library);
    contender(row, "plain", callsFor(n), pairs, plain);
    contender(row, "boost", callsFor(n), columns, boost);
    contender(row, "gsl", callsFor(n), columns, gsl);
}

}  // namespace

void enterRegression()
{
    for (const std::size_t n : {1000u, 10000u, 100000u, 1000000u, 10000000u}) {
        enterRow("regression", n, whole);
        enterRow("regression-without-p", n, withoutProbability);
    }
}

}  // namespace wq_bench
