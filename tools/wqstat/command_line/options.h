// Options whose values are numbers, and those that all analyses share.
#pragma once

#include "option_parser.h"
#include "pictures/canvas.h"

#include <cstddef>
#include <limits>
#include <optional>
#include <string>

namespace wqstat {

/** A range of reals without its ends, and how to say so. */
struct OpenRange {
    double above;
    double below;
    const char* name;
};

constexpr OpenRange anyFinite{-std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity(), "a finite number"};
constexpr OpenRange fraction{0.0, 1.0, "between 0 and 1"};

CLI::Option* addReal(CLI::App& app, const std::string& name, double& value, OpenRange range, const std::string& description);

/** A whole number, least ... most. */
CLI::Option* addCount(CLI::App& app, const std::string& name, std::size_t& value, std::size_t least, std::size_t most,
                      const std::string& description);

constexpr std::size_t anyCount = std::numeric_limits<std::size_t>::max();

/** The positions that --list prints, both included. */
struct ListRange {
    std::size_t from;
    std::size_t to;
};

/** What is listed and what is exported, in words. */
struct OutputNames {
    std::string listed;
    std::string exported;
};

/** --list and --export: what may follow a report. */
class Outputs {
public:
    void declare(CLI::App& app, const OutputNames& names);

    const std::optional<ListRange>& listRange() const { return range; }

    /** Empty when nothing is to be exported. */
    const std::string& exportName() const { return fileName; }

private:
    std::optional<ListRange> range;
    std::string fileName;
};

/** A picture that is wanted, and what its axes show, where that is said. */
struct PlotRequest {
    std::string fileName;              ///< empty when no picture is wanted
    std::optional<std::string> title;  ///< in place of the picture's own
    std::string xLabel;
    std::string yLabel;
    std::optional<std::string> logarithmic;  ///< of "xy"
    Canvas canvas;                           ///< its size; the rest follows from what is given
    std::optional<double> fontSize;
    std::optional<double> dots;
    bool residuals = false;
};

/** What the pictures of a command can show besides. */
struct PlotChoices {
    std::string logarithmic;  ///< the axes that can be, of "xy"
    bool residuals = false;
};

/** What there is to see besides the report, or in its place. */
class Views {
public:
    /**
     * --json, --tsv, --textbook and --no-warnings, and --observations where there are groups that hold some. To be called after the options
     * that the first two exclude are there: those that add to the report.
     */
    void declare(CLI::App& app, bool hasGroups);

    /** --plot and --html, and how the picture looks. */
    void declarePlot(CLI::App& app, const PlotChoices& choices);

    bool json() const { return asJson; }
    bool tsv() const { return asTsv; }
    bool observations() const { return withObservations; }
    bool textbook() const { return withTextbook; }
    bool warnings() const { return !withoutWarnings; }
    const PlotRequest& plot() const { return picture; }

    /** The file of the page; empty when none is wanted. */
    const std::string& pageName() const { return page; }

    /** Whether the page, or else the picture, is to be shown when it is there. */
    bool open() const { return isToBeShown; }

private:
    void requirePicture(const CLI::App& app) const;

    bool asJson = false;
    bool asTsv = false;
    bool withObservations = false;
    bool withTextbook = false;
    bool withoutWarnings = false;
    PlotRequest picture;
    std::string page;
    bool isToBeShown = false;
};

}  // namespace wqstat
