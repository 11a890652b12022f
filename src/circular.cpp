#include <wq_stat/circular.h>

#include "detail/moves.h"
#include "detail/report_text.h"
#include "detail/stored_range.h"
#include "detail/to_integer.h"
#include "numbers/pi.h"

#include <wq_stat/distributions.h>
#include <wq_udf/console.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

namespace wq_lib {

using detail::pi;
using detail::storedRange;
using detail::StoredRange;
using detail::toInteger;
using detail::twoPi;

namespace {

// "uniformely" and, in the report, "signifance" are spelt as hosts know them.
constexpr const char* hypothesis = "Data are uniformely distributed around the circle";

/** A sum of frequencies as a count; the largest count where that has 32 bits and the sum is larger. */
std::size_t countOf(std::uint64_t frequencies)
{
    return static_cast<std::size_t>(std::min<std::uint64_t>(frequencies, std::numeric_limits<std::size_t>::max()));
}

/** Rayleigh's R and z of n directions. */
void fillRayleigh(circular_stat& record, double n, double r)
{
    record.R = n * r;
    record.z = sqr(record.R) / n;
}

}  // namespace

Circular::Circular() { setHypothesisInfo(hypothesis); }

Circular::~Circular() = default;

Circular::Circular(Circular&& other) noexcept : BasicXyStatistics(std::move(other))
{
    exchangeMembers(other);
    detail::whereMemoryAllows([&other] { other.setHypothesisInfo(hypothesis); });
}

Circular& Circular::operator=(Circular&& other) noexcept
{
    Circular taken(std::move(other));
    BasicXyStatistics::operator=(std::move(taken));
    exchangeMembers(taken);
    return *this;
}

void Circular::exchangeMembers(Circular& other) noexcept
{
    detail::exchange(*this, other, &Circular::circularResult, &Circular::grouped, &Circular::binName, &Circular::binSize,
                     &Circular::dataType);
}

std::size_t Circular::getBin0() const { return toInteger<std::size_t>(circularResult.bin0); }

void Circular::resetResult()
{
    BasicXyStatistics::resetResult();
    circularResult.a = 0.0;
    circularResult.r = 0.0;
    circularResult.n = 0;
}

// ---------------------------------------------------------------- analysis

void Circular::checkGrouped()
{
    setGrouped(false);
    const StoredRange range = storedRange(dataStart, dataEnd, pairs.size());
    for (std::size_t i = range.begin; i < range.end && !grouped; ++i) setGrouped(getDataPair(i).y > 0.0);
}

void Circular::computeBinSize() { binSize = twoPi / static_cast<double>(circularResult.bins); }

void Circular::convertToRadians()
{
    setDataRange();
    const StoredRange range = storedRange(dataStart, dataEnd, pairs.size());
    for (std::size_t i = range.begin; i < range.end; ++i) {
        const double x = getDataPair(i).x;
        if (dataType == DEGREES) setDataPairX(i, degreeToRadian(x));  // in place: a second analysis converts again
        if (dataType == BIN_NUMBERS) setDataPairX(i, x * binSize);
    }
}

void Circular::rayleighsTest(std::size_t n, double r) { fillRayleigh(circularResult, static_cast<double>(n), r); }

bool Circular::analyse()
{
    resetResult();
    setDataRange();
    checkGrouped();
    computeBinSize();
    if (dataType != RADIANS) convertToRadians();

    double sineSum = 0.0;
    double cosineSum = 0.0;
    std::uint64_t count = 0;
    const StoredRange range = storedRange(dataStart, dataEnd, pairs.size());
    for (std::size_t i = range.begin; i < range.end; ++i) {
        const data_pair pair = getDataPair(i);
        if (grouped) {
            const double middle = pair.x - 0.5 * binSize;  // x is the upper edge of its bin
            sineSum += std::sin(middle) * pair.y;
            cosineSum += std::cos(middle) * pair.y;
            count += static_cast<std::uint64_t>(toInteger<std::int64_t>(pair.y));  // truncated, unlike the weights
        } else {
            sineSum += std::sin(pair.x);
            cosineSum += std::cos(pair.x);
            count += 1;
        }
    }
    circular_stat& c = circularResult;
    const double m = static_cast<double>(count);
    const double meanCosine = cosineSum / m;
    const double meanSine = sineSum / m;
    c.r = computeResultant(meanCosine, meanSine);
    c.a = computeAngle(meanCosine, meanSine);
    // Correction for grouping (Batschelet 1981): half a bin divided by its sine.
    if (grouped) c.r = c.r * ((binSize * pi / twoPi) / std::sin(binSize / 2.0));
    c.s = std::sqrt(2.0 * (1.0 - c.r));          // angular deviation (Batschelet 1981)
    c.sPrime = std::sqrt(-2.0 * std::log(c.r));  // circular standard deviation (Mardia 1972)
    fillRayleigh(c, m, c.r);
    c.p = rayleighsProb(c.z, countOf(count));
    c.significance = significance;
    c.accepted = acceptH0();
    c.n = countOf(count);
    c.binSize = binSize;
    c.meanBin = toInteger<std::size_t>(c.a / binSize) + getBin0();
    return true;
}

bool Circular::acceptH0() { return circularResult.p >= significance; }

// ---------------------------------------------------------------- output

void Circular::reportConsole()
{
    const circular_stat& c = circularResult;

    detail::ReportText report(detail::NumberFormat::plain());
    report.frame("RAYLEIGH'S STATISTICS", comment);
    report.line("Ho: ", hypothesisInfo);
    report.line("sample size     : ", c.n);
    report.line("Grouped data    : ", grouped ? "true" : "false");
    report.line(grouped ? "rc" : "r ", "              : ", c.r);
    report.line("a               : ", c.a, " radians / ", radianToDegree(c.a), " degrees");
    report.line("s               : ", c.s);
    report.line("s'              : ", c.sPrime);
    if (grouped) {
        report.line("Number of bins  : ", c.bins);
        report.line("Size of bin     : ", binSize, " radians");
        report.line("Mean bin#       : ", binName, " #", c.meanBin);
    }
    report.line("R               : ", c.R);
    report.line("z               : ", c.z);
    report.line("p               : ", c.p);
    report.line("signifance level: ", c.significance);  // sic
    report.line("H0              : ", detail::verdict(c.accepted));
    if (grouped) report.line("rc: resultant corrected for grouped data ");  // with the blank at its end
    report.emptyLine();
    display(report.text());
}

}  // namespace wq_lib
