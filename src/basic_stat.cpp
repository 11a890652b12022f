#include <wq_stat/basic_stat.h>

#include "detail/expected_lines.h"
#include "detail/column_title.h"
#include "detail/confidence_limits.h"
#include "detail/geometric_mean.h"
#include "numbers/data_lines.h"
#include "numbers/number_reading.h"
#include "detail/moves.h"
#include "detail/prefetch.h"
#include "detail/r_export.h"
#include "detail/report_text.h"
#include "detail/sample_sort.h"
#include "detail/sample_sums.h"
#include "detail/stored_range.h"
#include "detail/to_integer.h"
#include "detail/wide_count.h"
#include "detail/wide_quantiles.h"

#include <wq_stat/distributions.h>
#include <wq_udf/console.h>

#include <array>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

namespace wq_lib {

using detail::storedRange;
using detail::StoredRange;
using detail::studentPoint;
using detail::toInteger;
using detail::wideCount;

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

/**
 * The last index of a range that may end behind the sample: add() leaves the end one past the last observation until the range is set, and
 * a tail outside 0 ... 1 takes it further. An end of 0 or 1 stays, for hosts that ask for it; storedRange() keeps the passes within the
 * sample.
 */
std::size_t lastIndex(std::size_t end, std::size_t sampleSize) { return end >= sampleSize && end > 1 ? sampleSize - 1 : end; }

void countAdded(BasicStatistics& sample, std::size_t added)
{
    sample.setSampleSize(sample.getSampleSize() + added);
    sample.setDataEnd(sample.getSampleSize());  // one past the last index; setDataRange makes it inclusive
    sample.setSorted(false);
}

}  // namespace

BasicStatistics::BasicStatistics()
{
    resetSet(result);
    addColumnName("DATA");
}

BasicStatistics::~BasicStatistics() = default;

BasicStatistics::BasicStatistics(BasicStatistics&& other) noexcept
{
    resetSet(result);
    exchangeMembers(other);
    detail::whereMemoryAllows([&other] { other.addColumnName("DATA"); });
}

BasicStatistics& BasicStatistics::operator=(BasicStatistics&& other) noexcept
{
    BasicStatistics taken(std::move(other));
    exchangeMembers(taken);
    return *this;
}

void BasicStatistics::exchangeMembers(BasicStatistics& other) noexcept
{
    detail::exchange(*this, other, &BasicStatistics::result, &BasicStatistics::data, &BasicStatistics::dataFile, &BasicStatistics::head,
                     &BasicStatistics::tail, &BasicStatistics::dataStart, &BasicStatistics::dataEnd, &BasicStatistics::sampleSize,
                     &BasicStatistics::significance, &BasicStatistics::nullHypothesis, &BasicStatistics::sorted,
                     &BasicStatistics::columnNames, &BasicStatistics::hypothesisInfo, &BasicStatistics::comment,
                     &BasicStatistics::negative);
}

// ---------------------------------------------------------------- filling the sample

void BasicStatistics::initDataList(std::size_t n) { data.reserve(n); }

bool BasicStatistics::add(double x)
{
    data.push_back(x);
    countAdded(*this, 1);
    return true;
}

std::size_t BasicStatistics::copyFrom(std::vector<double> values)
{
    const std::size_t added = values.size();
    if (data.empty() && data.capacity() <= values.capacity()) data.swap(values);  // takes them over, without a copy
    initDataList(added);
    data.insert(data.end(), values.begin(), values.end());
    if (added > 0) countAdded(*this, added);
    return data.size();
}

bool BasicStatistics::readDataFile()
{
    detail::DataLines lines(dataFile, detail::EndMarker::endsData);
    return readLines(lines);
}

bool BasicStatistics::readData(std::istream& stream)
{
    detail::DataLines lines(stream, detail::EndMarker::endsData);
    return readLines(lines);
}

bool BasicStatistics::readLines(detail::DataLines& lines)
{
    if (!lines.isOpen()) return false;
    detail::reserveExpected(data, lines);
    std::array<double, 256> numbers;
    for (;;) {
        while (const std::size_t n = lines.takeNumbers(numbers.data(), numbers.size())) {
            data.insert(data.end(), numbers.data(), numbers.data() + n);
            countAdded(*this, n);
        }
        if (!lines.next()) return !lines.hasFailed();
        if (lines.isComment())
            setComment(removeChar(std::string(lines.text()), '#'));
        else
            add(detail::readDouble(lines.text()));
    }
}

bool BasicStatistics::readDataFile(const std::string& name)
{
    setDataFile(name);
    return readDataFile();
}

// ---------------------------------------------------------------- analysis

void BasicStatistics::resetSet(basic_stat& record) const
{
    basic_stat fresh;
    fresh.min = DBL_MAX;
    fresh.max = DBL_MIN;  // the smallest positive value, so a sample of negative values only keeps it as its maximum
    fresh.reserved1 = record.reserved1;
    fresh.significance = record.significance;
    record = fresh;
}

void BasicStatistics::resetResult() { resetSet(result); }

void BasicStatistics::sortData()
{
    detail::sortSample(data);
    sorted = true;
}

void BasicStatistics::setDataRange()
{
    const double n = static_cast<double>(sampleSize);
    dataStart = toInteger<std::size_t>(std::ceil(head * n));
    dataEnd = sampleSize - toInteger<std::size_t>(tail * n) - 1;  // truncated, not rounded up like the low end
}

bool BasicStatistics::analyse()
{
    resetResult();
    if (!sorted) sortData();
    setDataRange();
    dataEnd = lastIndex(dataEnd, sampleSize);
    if (data.empty() || dataEnd - dataStart < 2) return false;

    const StoredRange range = storedRange(dataStart, dataEnd, data.size());
    const double* const begin = data.data() + range.begin;
    const double* const end = data.data() + range.end;
    const detail::SampleSums sums = detail::withValues({result.min, result.max, result.sum}, begin, end);
    if (sums.hasNegative) negative = true;  // until the host says otherwise: no analysis clears it
    result.n += range.end - range.begin;
    const double n = static_cast<double>(result.n);
    result.min = sums.smallest;
    result.max = sums.largest;
    result.sum = sums.sum;
    const double mean = sums.sum / n;
    double sumOfSquares = result.sumOfSquares;
    for (const double* value = begin; value != end; ++value) {
        detail::prefetch(value, end);
        sumOfSquares += sqr(*value - mean);
    }
    result.mean = mean;
    result.sumOfSquares = sumOfSquares;
    result.variance = result.sumOfSquares / n;
    result.sampleVariance = result.sumOfSquares / static_cast<double>(wideCount(result.n - 1));
    result.stdev = standardDeviation(result.variance);
    result.sampleStdev = standardDeviation(result.sampleVariance);
    result.cv = coefficientOfVariation(result.sampleStdev, result.mean, result.n);
    result.stdError = standardError(result.sampleVariance, result.n);
    result.confidenceLimits = confidenceInterval(result.mean, result.sampleVariance, result.n);
    // Unlike geometricMean(), which counts zeros and refuses negative values, this passes over both.
    result.geoMean = std::exp(sums.logSum * (1.0 / sums.positiveCount));
    result.harmMean = sums.reciprocalCount / sums.reciprocalSum;
    result.quartile1 = quartile(1.0);
    result.median = median();
    result.quartile3 = quartile(3.0);
    result.significance = significance;
    return true;
}

bool BasicStatistics::acceptH0()
{
    const double t = StudentOfMeans(result.mean, result.sampleVariance, nullHypothesis, result.n);
    const double critical =
        studentPoint(significance / 2.0, wideCount(result.n - 1));  // halved, though two-sided already; the interval's is whole
    return std::fabs(t) < std::fabs(critical);
}

// ---------------------------------------------------------------- statistics

double BasicStatistics::standardError(double variance, std::size_t n) const
{
    if (variance <= 0.0) return notANumber;
    return std::sqrt(variance / static_cast<double>(n));
}

double BasicStatistics::standardDeviation(double variance) const
{
    if (variance <= 0.0) return notANumber;
    return std::sqrt(variance);
}

double BasicStatistics::coefficientOfVariation(double stdev, double mean, std::size_t) const
{
    if (!(stdev > 0.0)) return 0.0;
    return stdev / mean;  // a ratio, not per cent
}

DataRange<double> BasicStatistics::confidenceInterval(double mean, double variance, std::size_t n) const
{
    return detail::limitsAround(mean, studentPoint(significance, wideCount(n - 1)), standardError(variance, n));
}

double BasicStatistics::StudentOfMeans(double mean, double variance, double mu0, std::size_t n) const
{
    return (mean - mu0) / standardError(variance, n);
}

double BasicStatistics::quantile(double p, std::size_t q)
{
    if (!sorted) sortData();
    const double n = static_cast<double>(result.n);
    const double parts = static_cast<double>(q);
    const double below = p * n;
    const double above = (parts - p) * n;
    constexpr double beyond = 9223372036854775808.0;  // 2^63
    if (q == 0 || parts >= beyond || !(std::fabs(below) < beyond) || !(std::fabs(above) < beyond)) return notANumber;

    // Integer quotients; a negative one wraps the index far beyond the sample.
    const auto divisor = static_cast<std::int64_t>(q);
    const auto belowCount = static_cast<std::uint64_t>(toInteger<std::int64_t>(below) / divisor);
    const auto aboveCount = static_cast<std::uint64_t>(toInteger<std::int64_t>(above) / divisor);
    const std::uint64_t start = wideCount(dataStart);
    const std::uint64_t first = start + belowCount;
    if (first >= data.size()) return notANumber;
    const double lower = data[static_cast<std::size_t>(first)];
    if (p / parts != 0.5 || odd(static_cast<long>(result.n))) return lower;  // only the median lies between two values
    const std::uint64_t second = start + result.n - aboveCount - 1;
    if (second >= data.size()) return notANumber;
    return (lower + data[static_cast<std::size_t>(second)]) / 2.0;
}

double BasicStatistics::median() { return quantile(1.0, 2); }

double BasicStatistics::quartile(double p) { return quantile(p, 4); }

double BasicStatistics::geometricMean(std::size_t from, std::size_t to)
{
    if (to >= sampleSize) to = sampleSize - 1;
    const auto mean = detail::geometricMean(storedRange(from, to, data.size()), [this](std::size_t i) { return getDataPoint(i); });
    if (!mean) setNegative(true);
    return mean.value_or(0.0);
}

// ---------------------------------------------------------------- output

void BasicStatistics::reportConsole()
{
    const double t = StudentOfMeans(result.mean, result.sampleVariance, nullHypothesis, result.n);
    const double critical = studentPoint(significance, wideCount(result.n - 1));  // not the one that acceptH0() compares with

    detail::ReportText report(detail::NumberFormat::plain());
    report.frame("BASIC STATISTICS", comment);
    report.line("sample size     : ", result.n);
    report.line("minimum value   : ", result.min);
    report.line("maximum value   : ", result.max);
    report.line("sum             : ", result.sum);
    report.line("arithmetic mean : ", result.mean);
    report.line("variance        : ", result.variance);
    report.line("sample var      : ", result.sampleVariance);
    report.line("sample stdev    : ", result.sampleStdev);
    report.line("standard error  : ", result.stdError);
    report.line("CV              : ", result.cv);
    report.emptyLine();
    report.line((1.0 - result.significance) * 100.0, "% confidence interval");
    report.line("Student t       : ", critical);
    report.line("lower limit     : ", result.confidenceLimits.getLower());
    report.line("upper limit     : ", result.confidenceLimits.getUpper());
    report.emptyLine();
    if (negative)
        report.line("geometric mean  : ", "n/a");
    else
        report.line("geometric mean  : ", result.geoMean);
    report.line("harmonic mean   : ", result.harmMean);
    report.line("median          : ", result.median);
    report.line("25th percentile : ", result.quartile1);
    report.line("75th percentile : ", result.quartile3);
    report.rule();
    report.line("Hypothesis testing H0: u = ", nullHypothesis);
    report.line("t statistic     : ", t);
    report.line("t", significance, "(2),", wideCount(result.n - 1), "     : ", critical);
    report.line("H0              : ", detail::verdict(acceptH0()));
    report.emptyLine();
    report.emptyLine();
    display(report.text());
}

std::ostream& BasicStatistics::report(std::ostream& stream)
{
    const DisplayTo there(stream);
    reportConsole();
    return stream;
}

void BasicStatistics::listData(std::size_t from, std::size_t to)
{
    if (data.empty()) {
        errorMessage("No data");
        return;
    }
    if (to >= sampleSize) to = sampleSize - 1;
    detail::ReportText listing(detail::NumberFormat::fixed(6));
    listing.line(detail::columnTitle(columnNames, 0));
    const StoredRange range = storedRange(from, to, data.size());
    for (std::size_t i = range.begin; i < range.end; ++i) listing.line(getDataPoint(i));
    listing.line(singleLine(20));
    display(listing.text());
}

bool BasicStatistics::exportToR(const std::string& fileName, const std::string& fileComment)
{
    return detail::exportForR(fileName, fileComment, [this](CsvReport& file) {
        file.setPrecision(12);
        file.cell(detail::columnTitle(columnNames, 0), false);
        file.writeEol();
        dataEnd = lastIndex(dataEnd, sampleSize);
        const StoredRange range = storedRange(dataStart, dataEnd, data.size());
        for (std::size_t i = range.begin; i < range.end; ++i) {
            file.cell(getDataPoint(i), 12, false);
            file.writeEol();
        }
    });
}

}  // namespace wq_lib
