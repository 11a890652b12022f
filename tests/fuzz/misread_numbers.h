// Where the C library's std::strtod is no measure (glibc 2.36): hexadecimal numbers below the smallest normal double, of which it does not
// report the range error of all that it rounds (0x1.fffffffffffff8p-1023 for one), and the digits within "nan(...)", of which it reports
// one when they do not fit 64 bits, though the value is NaN all the same.
#pragma once

#include <cctype>
#include <cfloat>
#include <cstddef>
#include <cstdlib>
#include <string>

namespace wq_fuzz {

// Whether such a number stands anywhere in the text.
inline bool holdsMisreadNumber(std::string text)
{
    for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    for (std::size_t i = text.find("0x"); i != std::string::npos; i = text.find("0x", i + 2)) {
        const std::size_t digit = text.find_first_not_of("0.", i + 2);
        const bool notZero = digit != std::string::npos && std::isxdigit(static_cast<unsigned char>(text[digit])) != 0;
        if (notZero && std::strtod(text.c_str() + i, nullptr) <= DBL_MIN) return true;
    }
    for (std::size_t i = text.find("nan("); i != std::string::npos; i = text.find("nan(", i + 4)) {
        std::size_t digits = 0;
        while (std::isalnum(static_cast<unsigned char>(text[i + 4 + digits])) != 0) ++digits;  // it has a zero behind its end
        if (digits > 16) return true;
    }
    return false;
}

}  // namespace wq_fuzz
