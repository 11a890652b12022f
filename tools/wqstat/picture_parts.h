// What the pictures of several analyses have in common: titles, labels, axes of counts, points.
#pragma once

#include "chart.h"
#include "figures.h"
#include "picture.h"
#include "scatter.h"

#include <cstddef>
#include <string>
#include <vector>

namespace wqstat {

inline const Noun observationNoun{"observation", "observations"};
inline const Noun pairNoun{"pair", "pairs"};

/** With more groups or classes than that they are not shown one by one. */
constexpr std::size_t mostShownSingly = 45;

/** The first line of a comment; empty when there is none. */
std::string firstLine(const std::string& comment);

/** The comment's first line, or else what the words say. */
std::string titleOf(const wq_lib::BasicStatistics& analysis, const PictureWords& words);

std::string labelOr(const std::string& label, const char* own);

/** "95 %" */
std::string confidenceText(const wq_lib::BasicStatistics& analysis);

/** gnuplot's words for a colour of lines and points. */
std::string inColour(const char* name);

bool isFinite(const wq_lib::DataRange<double>& range);

void noteLeftOut(Chart& chart, std::size_t count, const Noun& noun);

/** An axis for counts up to the highest. */
Axis countAxis(double highest);

/** An axis on which the k-th of so many things stands at k, counted from 1. */
Axis placeAxis(std::size_t things);

/** The finite values of the analysed range. */
std::vector<double> analysedValues(const wq_lib::BasicStatistics& sample);

/** All pairs that the analysis holds. */
std::vector<Point> pointsOf(wq_lib::BasicXyStatistics& pairs);

struct Extents {
    Extent x;
    Extent y;
};

/** Those of the points that are finite. */
Extents extentsOf(const std::vector<Point>& points);

}  // namespace wqstat
