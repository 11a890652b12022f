// What the pictures of several analyses have in common: titles, labels, axes of counts, points.
#pragma once

#include "chart.h"
#include "results/figures.h"
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

/** What was asked for, or the comment's first line, or else what the words say. */
std::string titleOf(const wq_lib::BasicStatistics& analysis, const PictureWords& words);

Picture pictureOf(const Chart& chart, const PictureWords& words);

/**
 * Which of the two axes is logarithmic: as was asked, else as the model has it and the data reach over two decades.
 * @param positive the extent of the values above 0, which are all that such a model takes */
Axis::Scale scaleOf(char axis, const PictureWords& words, const Extent& positive, bool byModel = false);

std::string labelOr(const std::string& label, const char* own);

/** "95 %" */
std::string confidenceText(const wq_lib::BasicStatistics& analysis);

/** Whether the key of a picture has room for few words. */
inline bool isNarrow(const Canvas& canvas) { return canvas.layoutWidth() < 600.0; }

bool isFinite(const wq_lib::DataRange<double>& range);

/** An axis for counts up to the highest. */
Axis countAxis(double highest);

constexpr std::size_t mostOfLabel = 24;  ///< characters, which stand upright below an axis

/** An axis on which the k-th of so many things stands at k, counted from 1. */
Axis placeAxis(std::size_t things);

/** The ticks of such an axis: the labels of the things, cut where they are long; none where the words have no labels. */
std::vector<Tick> placeTicks(const PictureWords& words);

/** The labels as they stand below an axis. */
std::vector<std::string> tickLabels(const PictureWords& words);

/** The label of a thing by its number, counted from 1, cut where it is long; or else what it is called otherwise. */
std::string labelOf(const PictureWords& words, std::size_t number, const std::string& otherwise);

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

/** The values above 0 among them, the extent of a logarithmic axis. */
Extent aboveZero(const std::vector<Point>& points, double Point::*value);

}  // namespace wqstat
