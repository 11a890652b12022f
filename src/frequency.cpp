#include <wq_stat/frequency.h>

#include "detail/moves.h"
#include "detail/r_export.h"
#include "detail/report_text.h"
#include "detail/stored_range.h"
#include "detail/to_integer.h"
#include "detail/wide_count.h"

#include <wq_udf/console.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace wq_lib {

namespace {

constexpr std::size_t defaultClasses = 10;

}  // namespace

Frequency::Frequency() = default;
Frequency::~Frequency() = default;

Frequency::Frequency(Frequency&& other) noexcept : BasicStatistics(std::move(other)) { exchangeMembers(other); }

Frequency& Frequency::operator=(Frequency&& other) noexcept
{
    Frequency taken(std::move(other));
    BasicStatistics::operator=(std::move(taken));
    exchangeMembers(taken);
    return *this;
}

void Frequency::exchangeMembers(Frequency& other) noexcept
{
    detail::exchange(*this, other, &Frequency::classes, &Frequency::numberOfClasses, &Frequency::startClass, &Frequency::classWidth);
}

bool Frequency::autoClassWidth(std::size_t k)
{
    if (sampleSize == 0 || !BasicStatistics::analyse()) return false;
    setClasses(k == 0 ? defaultClasses : k);
    classWidth = (result.max - result.min) / static_cast<double>(numberOfClasses);
    setStartClass(result.min);
    return true;
}

bool Frequency::initFrequency(std::size_t k)
{
    classes.reserve(k);  // refuses a k whose sum with the size would wrap
    classes.resize(classes.size() + k);
    setClasses(k);
    return true;
}

void Frequency::buildTable()
{
    for (std::size_t i = dataStart; i < std::min(dataEnd, data.size()); ++i) {  // without the last index of the range
        std::size_t c = detail::toInteger<std::size_t>(std::floor((data[i] - startClass) / classWidth));
        if (c >= numberOfClasses) c = numberOfClasses - 1;  // and so does a value below the first class, whose index wraps
        if (c < classes.size()) ++classes[c].count;
    }
}

bool Frequency::analyse()
{
    setDataRange();
    const std::size_t m = dataEnd - dataStart + 1;
    BasicStatistics::analyse();
    for (std::size_t j = 0; j < std::min(numberOfClasses, classes.size()); ++j)
        classes[j].rate = static_cast<double>(classes[j].count) / static_cast<double>(detail::wideCount(m));
    return true;
}

void Frequency::reportConsole()
{
    detail::ReportText report(detail::NumberFormat::fixed(3));
    report.frame("FREQUENCY CLASSES", comment);
    report.line("Class [low  - high] Frequency rate");
    for (std::size_t j = 0; j < std::min(numberOfClasses, classes.size()); ++j) {
        const double index = static_cast<double>(j);
        std::string rate;
        detail::appendFixed(rate, classes[j].rate, 4);
        report.line(detail::flushRight(j, 5), " [", startClass + index * classWidth, "-", startClass + (index + 1.0) * classWidth, "] ",
                    classes[j].count, " ", rate);
    }
    display(report.text());
}

bool Frequency::exportTable(const std::string& fileName, const std::string& fileComment)
{
    return detail::exportForR(fileName, fileComment, [this](CsvReport& file) {
        file.writeHeader("class|start|end|mid|observed|rate");
        for (std::size_t j = 0; j < std::min(numberOfClasses, classes.size()); ++j) {
            const double index = static_cast<double>(j);
            const double lower = startClass + index * classWidth;
            const double upper = startClass + (index + 1.0) * classWidth;
            file.cell(static_cast<int>(j), true);
            file.cell(lower, 6, true);
            file.cell(upper, 6, true);
            file.cell(upper - 0.5 * classWidth, 6, true);
            file.cell(static_cast<int>(classes[j].count), true);
            file.cell(classes[j].rate, 6, false);
            file.writeEol();
        }
    });
}

}  // namespace wq_lib
