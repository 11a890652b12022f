#include <wq_stat/basic_xy_stat.h>

#include "detail/expected_lines.h"
#include "detail/column_title.h"
#include "detail/geometric_mean.h"
#include "numbers/data_lines.h"
#include "numbers/number_reading.h"
#include "detail/moves.h"
#include "detail/paired_passes.h"
#include "detail/r_export.h"
#include "detail/report_text.h"
#include "detail/stored_range.h"

#include <wq_udf/console.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace wq_lib {

using detail::storedRange;
using detail::StoredRange;

bool keyX(data_pair a, data_pair b) { return a.x < b.x; }

bool keyY(data_pair a, data_pair b) { return a.y < b.y; }

namespace {

void nameColumns(BasicXyStatistics& pairs)
{
    pairs.clearColumnNames();
    pairs.addColumnName("X");
    pairs.addColumnName("Y");
}

void count(BasicXyStatistics& pairs, std::size_t n)
{
    pairs.setSampleSize(n);
    pairs.setDataEnd(n - 1);  // the last index, unlike that of a univariate sample
}

}  // namespace

BasicXyStatistics::BasicXyStatistics()
{
    resetSet(xyResult.x);
    resetSet(xyResult.y);
    nameColumns(*this);
}

BasicXyStatistics::~BasicXyStatistics() = default;

BasicXyStatistics::BasicXyStatistics(BasicXyStatistics&& other) noexcept : BasicStatistics(std::move(other))
{
    resetSet(xyResult.x);
    resetSet(xyResult.y);
    exchangeMembers(other);
    detail::whereMemoryAllows([&other] { nameColumns(other); });
}

BasicXyStatistics& BasicXyStatistics::operator=(BasicXyStatistics&& other) noexcept
{
    BasicXyStatistics taken(std::move(other));
    BasicStatistics::operator=(std::move(taken));
    exchangeMembers(taken);
    return *this;
}

void BasicXyStatistics::exchangeMembers(BasicXyStatistics& other) noexcept
{
    detail::exchange(*this, other, &BasicXyStatistics::pairs, &BasicXyStatistics::xyResult);
}

// ---------------------------------------------------------------- filling the sample

void BasicXyStatistics::initDataList(std::size_t n) { pairs.reserve(n); }

bool BasicXyStatistics::add(double x, double y)
{
    pairs.push_back({x, y});
    count(*this, pairs.size());
    return true;
}

std::size_t BasicXyStatistics::copyFrom(std::vector<data_pair> values)
{
    const std::size_t added = values.size();
    if (pairs.empty() && pairs.capacity() <= values.capacity()) pairs.swap(values);  // takes them over, without a copy
    initDataList(added);
    pairs.insert(pairs.end(), values.begin(), values.end());
    if (added > 0) count(*this, pairs.size());
    return pairs.size();
}

bool BasicXyStatistics::readDataFile()
{
    detail::DataLines lines(dataFile, detail::EndMarker::endsData);
    return readLines(lines);
}

bool BasicXyStatistics::readData(std::istream& stream)
{
    detail::DataLines lines(stream, detail::EndMarker::endsData);
    return readLines(lines);
}

bool BasicXyStatistics::readLines(detail::DataLines& lines)
{
    if (!lines.isOpen()) return false;
    detail::reserveExpected(pairs, lines);
    std::array<double, 256> numbers;
    for (;;) {
        while (const std::size_t n = lines.takePairs(numbers.data(), numbers.size() / 2)) {
            const std::size_t before = pairs.size();
            pairs.resize(before + n);
            for (std::size_t i = 0; i < n; ++i) pairs[before + i] = {numbers[2 * i], numbers[2 * i + 1]};
            count(*this, pairs.size());
        }
        if (!lines.next()) return !lines.hasFailed();
        if (lines.isComment()) {
            comment = removeChar(std::string(lines.text()), '#');  // the last one stays; a univariate sample keeps all
            continue;
        }
        std::string_view rest = lines.text();
        std::string_view field;
        if (!detail::takeField(rest, field)) continue;
        const double x = detail::readDoubleOrZero(field);  // 0 for a text that is no number, where y refuses it
        const double y = detail::takeField(rest, field) ? detail::readDouble(field) : 0.0;
        add(x, y);
    }
}

data_pair BasicXyStatistics::getDataPair(std::size_t i) { return pairs[i]; }

// ---------------------------------------------------------------- analysis

void BasicXyStatistics::resetResult()
{
    resetSet(xyResult.x);
    resetSet(xyResult.y);
    xyResult.sumProducts = 0.0;  // the covariance stays until analyse() rewrites it
}

bool BasicXyStatistics::analyse()
{
    resetResult();
    setDataRange();
    if (pairs.empty() || dataEnd - dataStart < 1) return false;
    detail::pairedPasses<detail::Untransformed>(*this, pairs, storedRange(dataStart, dataEnd, pairs.size()), xyResult);
    xyResult.covariance = xyResult.sumProducts / (static_cast<double>(xyResult.x.n) - 1.0);
    return true;
}

double BasicXyStatistics::geometricMean(std::size_t start, std::size_t end)
{
    if (end >= sampleSize) end = sampleSize - 1;
    const auto mean = detail::geometricMean(storedRange(start, end, pairs.size()), [this](std::size_t i) { return getDataPair(i).y; });
    if (!mean) setNegative(true);
    return mean.value_or(0.0);
}

// ---------------------------------------------------------------- output

void BasicXyStatistics::reportConsole()
{
    const basic_stat& x = xyResult.x;
    const basic_stat& y = xyResult.y;
    const std::size_t n = x.n;  // of both: the record of y has none

    detail::ReportText report(detail::NumberFormat::plain());
    report.frame("BASIC XY STATISTICS", comment);
    report.line("Data pairs         : ", n);
    report.line("sum of X           : ", x.sum);
    report.line("mean of X          : ", x.mean);
    report.line("variance of X      : ", x.variance);
    report.line("sample var of X    : ", x.sampleVariance);
    report.line("sample stdev of X  : ", standardDeviation(x.sampleVariance));
    report.line("standard error of X: ", standardError(x.sampleVariance, n));
    report.line("sum of squares of X: ", x.sumOfSquares);
    report.emptyLine();
    report.line("sum of Y           : ", y.sum);
    report.line("mean of Y          : ", y.mean);
    report.line("variance of Y      : ", y.variance);
    report.line("sample var of Y    : ", y.sampleVariance);
    report.line("sample stdev of Y  : ", standardDeviation(y.sampleVariance));
    report.line("standard error of Y: ", standardError(y.sampleVariance, n));
    report.line("sum of squares of Y: ", y.sumOfSquares);
    report.emptyLine();
    report.line("sum of products XY : ", xyResult.sumProducts);
    report.line("covariance XY      : ", xyResult.covariance);
    report.emptyLine();
    report.emptyLine();
    display(report.text());
}

void BasicXyStatistics::listData(std::size_t start, std::size_t end)
{
    detail::ReportText listing(detail::NumberFormat::plain());
    listing.line(detail::columnTitle(columnNames, 0), " ", detail::columnTitle(columnNames, 1));
    const StoredRange range = storedRange(start, std::min(end, sampleSize), pairs.size());
    for (std::size_t i = range.begin; i < range.end; ++i) {
        const data_pair pair = getDataPair(i);
        listing.line(pair.x, " ", pair.y);
    }
    listing.emptyLine();
    display(listing.text());
}

bool BasicXyStatistics::exportToR(const std::string& fileName, const std::string& fileComment)
{
    return detail::exportForR(fileName, fileComment, [this](CsvReport& file) {
        file.writeHeader(detail::columnTitle(columnNames, 0) + "|" + detail::columnTitle(columnNames, 1));
        const StoredRange range = storedRange(dataStart, dataEnd, pairs.size());
        for (std::size_t i = range.begin; i < range.end; ++i) {
            const data_pair pair = getDataPair(i);
            file.cell(pair.x, 6, true);
            file.cell(pair.y, 6, false);
            file.writeEol();
        }
    });
}

}  // namespace wq_lib
