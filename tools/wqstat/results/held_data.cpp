#include "held_data.h"

#include "results/figures.h"

#include <cmath>

namespace wqstat {

namespace {

constexpr char oneHeld[] = "observation";
constexpr char manyHeld[] = "observations";

HeldData heldSingly(std::size_t observations) { return {{static_cast<double>(observations)}, 0, ""}; }

/** Frequencies may be any numbers. */
std::string countText(double count)
{
    constexpr double mostCounted = 9007199254740992.0;  // 2^53: up to here every whole number is a double
    const bool isWhole = count >= 0.0 && count <= mostCounted && std::floor(count) == count;
    return isWhole ? digits(static_cast<std::size_t>(count)) : figures(count, 10);
}

}  // namespace

HeldData heldBy(const wq_lib::BasicStatistics& analysis)
{
    HeldData held = heldSingly(analysis.getSampleSize());
    if (!(analysis.getHead() > 0.0) && !(analysis.getTail() > 0.0)) return held;
    const std::size_t cut = analysis.getSampleSize() - analysis.getResult().n;
    const char* const by = !(analysis.getTail() > 0.0) ? "--head" : !(analysis.getHead() > 0.0) ? "--tail" : "--head and --tail";
    if (cut > 0) held.leftOut = digits(cut) + " left out by " + by;
    return held;
}

HeldData heldBy(const TwoDataFiles& test)
{
    return {{static_cast<double>(test.getSampleSize()), static_cast<double>(test.second.getSampleSize())}, 0, ""};
}

HeldData heldBy(wq_lib::GoodnessOfFit& test)
{
    double observed = 0.0;
    for (std::size_t i = 0; i < test.getSampleSize(); ++i) observed += test.getDataPair(i).x;
    return {{observed}, test.getSampleSize(), ""};
}

HeldData heldBy(const wq_lib::KolmogorovSmirnov2& test)
{
    return {{static_cast<double>(test.getN1()), static_cast<double>(test.getN2())}, test.getSampleSize(), ""};
}

HeldData heldBy(const wq_lib::Circular& directions)
{
    if (!directions.isGrouped()) return heldSingly(directions.getSampleSize());
    return {{static_cast<double>(directions.getCircularResult().n)}, directions.getSampleSize(), ""};
}

std::string readText(const HeldData& held, std::size_t input, std::size_t inputs, const std::size_t* rows)
{
    std::string observations;
    if (inputs > 1) {
        observations = countText(held.observations.at(input)) + " " + (held.observations[input] == 1.0 ? oneHeld : manyHeld);
    } else {
        for (const double each : held.observations) observations += (observations.empty() ? "" : " and ") + countText(each);
        observations += std::string(" ") + (held.observations.size() == 1 && held.observations[0] == 1.0 ? oneHeld : manyHeld);
    }
    const std::string leftOut = held.leftOut.empty() ? "" : ", " + held.leftOut;
    if (rows != nullptr) return counted(*rows, "row", "rows") + " read, " + observations + leftOut;
    if (held.classes > 0) return counted(held.classes, "class", "classes") + " read, " + observations + leftOut;
    return observations + " read" + leftOut;
}

}  // namespace wqstat
