// The conversion of libraries without std::from_chars for double against that function, where there is one.
#include "../support/numbers/from_chars.h"
#include "support/bits.h"

#include <gtest/gtest.h>

#include <charconv>
#include <clocale>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string>

using wq_lib::detail::fromCharsByStrtod;

namespace {

#if defined(__cpp_lib_to_chars)

/** Compares both conversions of a text: error, end, and value bit for bit. A standard library may leave a subnormal number out of range. */
void expectAsFromChars(const std::string& text, std::chars_format format)
{
    const char* const end = text.data() + text.size();
    double expected = 0.0;
    double found = 0.0;
    const auto wanted = std::from_chars(text.data(), end, expected, format);
    const auto got = fromCharsByStrtod(text.data(), end, found, format);
    EXPECT_EQ(got.ptr - text.data(), wanted.ptr - text.data()) << '\'' << text << '\'';
    EXPECT_EQ(got.ec == std::errc::invalid_argument, wanted.ec == std::errc::invalid_argument) << '\'' << text << '\'';
    if (wanted.ec == std::errc()) {
        EXPECT_SAME_BITS(found, expected) << '\'' << text << '\'';
    }
    if (got.ec == std::errc::result_out_of_range) {
        EXPECT_SAME_BITS(expected, 0.0) << '\'' << text << '\'';
    }
}

TEST(FromCharsByStrtod, givesWhatFromCharsGives)
{
    for (const char* const text :
         {"",
          "1",
          "-1",
          "+1",
          " 1",
          "0.1",
          "1.",
          ".5",
          ".",
          "-.",
          "1..2",
          "1e5",
          "1E-5",
          "1e+5",
          "1e",
          "1e+",
          "1ex",
          "12abc",
          "0x10",
          "--1",
          "9007199254740993",
          "179769313486231580793728971405303415079934132710037826936173778980444968292764750946649017977587207096330286416",
          "1.7976931348623157e308",
          "1.7976931348623158e308",
          "1e309",
          "-1e309",
          "1e99999999999",
          "1e-99999999999",
          "2.2250738585072011e-308",
          "2.2250738585072014e-308",
          "4.9406564584124654e-324",
          "2.5e-324",
          "2.4e-324",
          "0e999",
          "0.000",
          "-0",
          "inf",
          "-INF",
          "infinity",
          "Infinite",
          "in",
          "nan",
          "-nan",
          "NaN(12_a)",
          "nan(1",
          "nan()",
          "nanx",
          "1,5"})
        expectAsFromChars(text, std::chars_format::general);
    for (const char* const text : {"", "1", "-1.8p1", "f.fp-3", "1p", "1p+", ".8", ".", "p1", "1.fffffffffffff8", "1.fffffffffffff7",
                                   "1p1024", "1p-1074", "1p-1076", "123456789abcdef01", "g", "0"})
        expectAsFromChars(text, std::chars_format::hex);
}

TEST(FromCharsByStrtod, givesWhatFromCharsGivesForRandomDigits)
{
    std::mt19937_64 engine(11);
    for (int i = 0; i < 20000; ++i) {
        std::string text;
        const auto digits = static_cast<std::size_t>(1 + engine() % 40);
        for (std::size_t k = 0; k < digits; ++k) text += static_cast<char>('0' + engine() % 10);
        text.insert(static_cast<std::size_t>(engine() % digits), ".");
        if (engine() % 2 == 0) text += "e" + std::to_string(static_cast<int>(engine() % 660) - 330);
        expectAsFromChars(text, std::chars_format::general);
    }
    for (int i = 0; i < 20000; ++i) {  // the decimals that the shortest text of any double is
        const std::uint64_t bits = engine();
        double x = 0.0;
        std::memcpy(&x, &bits, sizeof x);
        char text[64];
        expectAsFromChars(std::string(text, std::to_chars(text, text + sizeof text, x).ptr), std::chars_format::general);
    }
}

#endif

// Takes the German locale; whether there is one. A C library without locales takes the name and leaves the point as it is.
bool takesGerman()
{
#if defined(_WIN32)
    const char* const name = "German";
#else
    const char* const name = "de_DE.UTF-8";
    if (const char* const path = std::getenv("WQ_TEST_LOCPATH")) setenv("LOCPATH", path, 1);
#endif
    return std::setlocale(LC_ALL, name) != nullptr && *std::localeconv()->decimal_point == ',';
}

TEST(FromCharsByStrtod, readsAPointInALocaleWithComma)
{
    if (!takesGerman()) GTEST_SKIP() << "there is no de_DE.UTF-8 with a comma, and WQ_TEST_LOCPATH names no folder that holds it";
    const std::string text = "1.5e3,7";
    double value = 0.0;
    const auto result = fromCharsByStrtod(text.data(), text.data() + text.size(), value, std::chars_format::general);
    std::setlocale(LC_ALL, "C");
    EXPECT_SAME_BITS(value, 1500.0);
    EXPECT_EQ(result.ptr - text.data(), 5);
}

}  // namespace
