// A host compiled without run-time type information, with a class of its own that overrides what the analyses read.
#include <wq_stat/correlation.h>
#include <wq_stat/regression.h>

#include <cstdio>

namespace {

struct Unchanged : wq_lib::Correlation {};

struct Doubled : wq_lib::LinearRegression {
    wq_lib::data_pair getDataPair(std::size_t i) override
    {
        const wq_lib::data_pair pair = LinearRegression::getDataPair(i);
        return {pair.x, 2.0 * pair.y};
    }
};

}  // namespace

int main()
{
    Unchanged correlation;
    Doubled regression;
    wq_lib::LinearRegression plain;
    for (int i = 0; i < 9; ++i) {
        correlation.add(i, 3.0 * i + 1.0);
        regression.add(i, 3.0 * i + 1.0);
        plain.add(i, 3.0 * i + 1.0);
    }
    const bool right = correlation.analyse() && regression.analyse() && plain.analyse() && correlation.getXyResult().sumProducts == 180.0 &&
                       regression.getRegressionResult().b == 6.0 && plain.getRegressionResult().b == 3.0;
    if (!right) std::puts("wrong figures");
    return right ? 0 : 1;
}
