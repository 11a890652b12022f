// Every analysis class, for tests that hold for all of them.
#pragma once

#include <wq_stat/wq_stat.h>

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

namespace wq_test {

using Analyses = ::testing::Types<wq_lib::BasicStatistics, wq_lib::TwoSamples, wq_lib::Frequency, wq_lib::BasicXyStatistics,
                                  wq_lib::LinearRegression, wq_lib::LogarithmicRegression, wq_lib::ExponentialRegression,
                                  wq_lib::PowerRegression, wq_lib::Correlation, wq_lib::SingleAnova, wq_lib::LinearRegressionMultiY,
                                  wq_lib::GoodnessOfFit, wq_lib::KolmogorovSmirnov2, wq_lib::Circular>;

template <typename Analysis>
constexpr bool isPaired = std::is_base_of_v<wq_lib::BasicXyStatistics, Analysis>;

// Names a typed test after its class, without the namespace.
struct NameOfAnalysis {
    template <typename Analysis>
    static std::string GetName(int)
    {
        const std::string name = ::testing::internal::GetTypeName<Analysis>();
        return name.substr(name.rfind(':') + 1);
    }
};

}  // namespace wq_test
