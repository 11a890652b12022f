// A text, converted: what the library reads is what std::stod, std::atof and std::stoi read in the "C" locale, exceptions included.

#include "target.h"
#include "misread_numbers.h"

#include "numbers/number_reading.h"
#include "support/same_bits.h"

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace {

enum class Ends { normally, invalidArgument, outOfRange };

template <typename Number>
struct Result {
    Ends ends;
    Number value;
};

template <typename Convert>
auto resultOf(Convert&& convert) -> Result<decltype(convert())>
{
    try {
        return {Ends::normally, convert()};
    } catch (const std::invalid_argument&) {
        return {Ends::invalidArgument, {}};
    } catch (const std::out_of_range&) {
        return {Ends::outOfRange, {}};
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    using wq_fuzz::require;
    const std::string text(reinterpret_cast<const char*>(bytes), size);
    if (size > 254 || text.find('\0') != std::string::npos) return 0;  // no line of a data file holds these

    // No byte of the library's text may be followed by one that belongs to it.
    const std::unique_ptr<char[]> exact(new char[size + 1]);
    text.copy(exact.get() + 1, size);
    const std::string_view given(exact.get() + 1, size);

    const auto integer = resultOf([&] { return wq_lib::detail::readInt(given); });
    const auto expectedInteger = resultOf([&] { return std::stoi(text); });
    require(integer.ends == expectedInteger.ends && integer.value == expectedInteger.value, "integer ", integer.value, " instead of ",
            expectedInteger.value);

    const auto number = resultOf([&] { return wq_lib::detail::readDouble(given); });
    const double numberOrZero = wq_lib::detail::readDoubleOrZero(given);
    if (wq_fuzz::holdsMisreadNumber(text)) return 0;

    const auto expected = resultOf([&] { return std::stod(text); });
    require(number.ends == expected.ends && wq_test::sameBits(number.value, expected.value), "number ", number.value, " (ends ",
            static_cast<int>(number.ends), ") instead of ", expected.value, " (ends ", static_cast<int>(expected.ends), ")");
    require(wq_test::sameBits(numberOrZero, std::atof(text.c_str())), "number or zero ", numberOrZero, " instead of ",
            std::atof(text.c_str()));
    return 0;
}
