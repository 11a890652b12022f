// A text in gnuplot's double quotes, read back by a parser of its own, which follows what gnuplot's documentation says of strings,
// substitution and macros: nothing is replaced that a text could hold, and what gnuplot shows is the text.

#include "support/plain_gnuplot.h"
#include "target.h"

#include <pictures/gnuplot_code.h>

#include <cstddef>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(bytes), size);
    const std::string shown = wq_test::plainVisible(text);

    const auto label = wq_test::readAsGnuplot(wqstat::quotedText(text).source());
    wq_fuzz::require(label.problem.empty(), label.problem, " in ", wqstat::quotedText(text).source());
    wq_fuzz::require(label.text == shown, "'", label.text, "' instead of '", shown, "'");

    const auto tick = wq_test::readAsGnuplot(wqstat::quotedTick(text).source());
    wq_fuzz::require(tick.problem.empty(), tick.problem, " in ", wqstat::quotedTick(text).source());
    const std::string printed = wq_test::printedAsFormat(tick.text);
    wq_fuzz::require(printed == shown, "'", printed, "' instead of '", shown, "' as a tick");

    wq_fuzz::require(wq_test::plainVisible(shown) == shown, "what is shown is not plain: ", shown);
    return 0;
}
