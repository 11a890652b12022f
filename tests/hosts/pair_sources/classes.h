// Classes of a host that live in a shared library of its own: their tables of virtual functions are there.
#pragma once

#include <wq_stat/correlation.h>
#include <wq_stat/regression.h>
#include <wq_stat/single_anova.h>

/** Overrides an operation, but not the one that gives pairs. */
class __attribute__((visibility("default"))) Elsewhere : public wq_lib::Correlation {
public:
    void reportConsole() override;
};

/** Doubles every y. */
class __attribute__((visibility("default"))) DoubledElsewhere : public wq_lib::LinearRegression {
public:
    wq_lib::data_pair getDataPair(std::size_t i) override;
};
