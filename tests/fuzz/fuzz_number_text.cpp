// Numbers, written: fixed and general notation are those of the C library in the "C" locale, and 17 digits are the number again.

#include "printed_number.h"
#include "script.h"
#include "target.h"

#include "numbers/number_text.h"
#include "support/same_bits.h"

#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <string>

namespace {

std::string orNan(double value, const std::string& text) { return std::isnan(value) ? "nan" : text; }

void check(const char* notation, const std::string& text, const std::string& before, const std::string& expected)
{
    wq_fuzz::require(text == before + expected, notation, ": ", text, " instead of ", before, expected);
}

}  // namespace

// Each line: a number, its decimals, a count.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    namespace detail = wq_lib::detail;
    for (wq_fuzz::Line line : wq_fuzz::linesOf({reinterpret_cast<const char*>(bytes), size})) {
        const double value = line.number();
        const int decimals = static_cast<int>(line.count() % 1201) - 1;
        const std::string before = decimals % 2 == 0 ? "" : "x = ";

        std::string fixed = before;
        detail::appendFixed(fixed, value, decimals);
        check("fixed", fixed, before, orNan(value, wq_fuzz::fixedText(value, decimals < 0 ? 6 : decimals)));

        std::string general = before;
        detail::appendGeneral(general, value);
        check("general", general, before, orNan(value, wq_fuzz::generalText(value, 6)));

        std::string exact = before;
        detail::appendNumber(exact, value, std::chars_format::general, 17);
        check("17 digits", exact, before, orNan(value, wq_fuzz::generalText(value, 17)));
        wq_fuzz::require(wq_test::sameBits(std::strtod(exact.c_str() + before.size(), nullptr), value), exact, " is another number");

        const std::size_t count = line.count();
        std::string integers = before;
        detail::appendInteger(integers, count);
        integers += ' ';
        detail::appendInteger(integers, static_cast<int>(count));
        check("integers", integers, before, std::to_string(count) + " " + std::to_string(static_cast<int>(count)));
    }
    return 0;
}
