// Distribution functions over tables of 1000 arguments.
#include "boost_in_double.h"
#include "contenders.h"
#include "inputs.h"

#include <wq_stat/distributions.h>

#include <gsl/gsl_cdf.h>

#include <cmath>
#include <limits>
#include <vector>

#include <support/plain_distributions.h>

namespace wq_bench {

namespace {

namespace math = boost::math;
namespace plain = wq_test::plain;

constexpr plain::Budget unlimited{std::numeric_limits<long>::max()};

struct Table {
    const std::vector<double>& arguments;
    std::vector<double> results;
};

std::size_t df(double argument) { return static_cast<std::size_t>(argument); }

/** @param width arguments of a call. @param function of a pointer to them. */
template <typename Function>
void enterFunction(const std::string& row, const std::string& name, std::size_t width, Function function)
{
    const auto table = [row, width] {
        const std::vector<double>& list = arguments(row);
        return std::make_unique<Table>(Table{list, std::vector<double>(list.size() / width)});
    };
    contender(row, name, 1, table, [width, function](Table& t) -> const std::vector<double>& {
        const double* next = t.arguments.data();
        for (double& result : t.results) {
            result = function(next);
            next += width;
        }
        return t.results;
    });
}

/**
 * The operations of chiSquareProb that wait for each other, compiled into the loop, without what a library cannot do without: the call,
 * arguments of any size, the logarithm of the gamma function.
 */
inline double chiSquareProbInTheCaller(double x, std::size_t df)
{
    static const std::vector<double> lnGammaOfHalves = [] {
        std::vector<double> values;
        for (int i = 0; i <= 30; ++i) values.push_back(wq_lib::lnGamma(1.0 + i / 2.0));
        return values;
    }();
    const double h = x / 2.0;
    double a = static_cast<double>(df) / 2.0;
    const double f = std::exp(a * std::log(h) - lnGammaOfHalves[df] - h);
    double term = 1.0;
    double sum = 1.0;
    while (term / sum > 1e-6) {
        a = a + 1.0;
        term = term * h / a;
        sum = sum + term;
    }
    return sum * f;
}

}  // namespace

void enterDistributions()
{
    enterFunction("chi-square-prob", "wq_stat", 2, [](const double* a) { return wq_lib::chiSquareProb(a[0], df(a[1])); });
    enterFunction("chi-square-prob", "plain", 2, [](const double* a) {
        plain::Budget enough = unlimited;
        return *plain::chiSquareProb(a[0], df(a[1]), enough);
    });
    enterFunction("chi-square-prob", "limit", 2, [](const double* a) { return chiSquareProbInTheCaller(a[0], df(a[1])); });
    enterFunction("chi-square-prob", "boost", 2, [](const double* a) { return math::cdf(ChiSquared(a[1]), a[0]); });
    enterFunction("chi-square-prob", "gsl", 2, [](const double* a) { return gsl_cdf_chisq_P(a[0], a[1]); });

    enterFunction("F-prob", "wq_stat", 3, [](const double* a) { return wq_lib::F_Prob(a[0], df(a[1]), df(a[2])); });
    enterFunction("F-prob", "plain", 3, [](const double* a) {
        plain::Budget enough = unlimited;
        return *plain::F_Prob(a[0], df(a[1]), df(a[2]), enough);
    });
    enterFunction("F-prob", "boost", 3, [](const double* a) { return math::cdf(FisherF(a[1], a[2]), a[0]); });
    enterFunction("F-prob", "gsl", 3, [](const double* a) { return gsl_cdf_fdist_P(a[0], a[1], a[2]); });

    enterFunction("F-point", "wq_stat", 3, [](const double* a) { return wq_lib::F_PercentPoint(a[0], df(a[1]), df(a[2])); });
    enterFunction("F-point", "plain", 3, [](const double* a) {
        plain::Budget enough = unlimited;
        return *plain::F_PercentPoint(a[0], df(a[1]), df(a[2]), enough);
    });
    enterFunction("F-point", "boost", 3, [](const double* a) { return math::quantile(FisherF(a[1], a[2]), a[0]); });
    enterFunction("F-point", "gsl", 3, [](const double* a) { return gsl_cdf_fdist_Pinv(a[0], a[1], a[2]); });

    enterFunction("t-prob", "wq_stat", 2, [](const double* a) { return wq_lib::t_Prob(a[0], df(a[1]), true); });
    enterFunction("t-prob", "plain", 2, [](const double* a) {
        plain::Budget enough = unlimited;
        return *plain::t_Prob(a[0], df(a[1]), true, enough);
    });
    enterFunction("t-prob", "boost", 2, [](const double* a) { return math::cdf(math::complement(StudentsT(a[1]), a[0])); });
    enterFunction("t-prob", "gsl", 2, [](const double* a) { return gsl_cdf_tdist_Q(a[0], a[1]); });

    enterFunction("t-point", "wq_stat", 2, [](const double* a) { return wq_lib::t_PercentPoint(a[0], df(a[1])); });
    enterFunction("t-point", "boost", 2, [](const double* a) { return math::quantile(math::complement(StudentsT(a[1]), a[0] / 2.0)); });
    enterFunction("t-point", "gsl", 2, [](const double* a) { return gsl_cdf_tdist_Qinv(a[0] / 2.0, a[1]); });

    enterFunction("chi-square-point", "wq_stat", 2, [](const double* a) { return wq_lib::chiSquarePoint(a[0], df(a[1])); });
    enterFunction("chi-square-point", "boost", 2, [](const double* a) { return math::quantile(ChiSquared(a[1]), a[0]); });
    enterFunction("chi-square-point", "gsl", 2, [](const double* a) { return gsl_cdf_chisq_Pinv(a[0], a[1]); });

    enterFunction("normal-point", "wq_stat", 1, [](const double* a) { return wq_lib::normalPercentPoint(a[0]); });
    enterFunction("normal-point", "boost", 1, [](const double* a) { return math::quantile(Normal(), a[0]); });
    enterFunction("normal-point", "gsl", 1, [](const double* a) { return gsl_cdf_ugaussian_Pinv(a[0]); });
}

}  // namespace wq_bench
