// What the contenders work on: files that the C++ program makes and every program of the comparison reads.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace wq_bench {

constexpr std::size_t mostValues = 10000000;
constexpr std::size_t mostPairs = 10000000;
constexpr std::size_t groupedPairs = 1000000;
constexpr std::size_t pairsInFile = 5000000;

/** The folder of the inputs, and of what the contenders write. */
void setFolder(const std::string& path);
std::string inFolder(const std::string& name);

/** Writes the inputs that are not there yet. */
void makeInputs();

/**
 * The first n doubles of the input NAME.f64, read once and kept:
 * normal (mean 50, standard deviation 10, all positive), the same rounded to one decimal, uniform, lognormal, ascending; x and y on a line
 * with noise; groups-G and grouped, pairs of a group's number and an observation; decimals, numbers with three decimals.
 */
const double* input(const std::string& name, std::size_t n);

/** The arguments of a distribution row, a table of `width` columns, one row after the other. */
const std::vector<double>& arguments(const std::string& name);

}  // namespace wq_bench
