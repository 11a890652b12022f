// std::from_chars for double, also with a standard library that has it for integers alone, as libc++ before LLVM 20.
#ifndef WQ_NUMBERS_FROM_CHARS_H
#define WQ_NUMBERS_FROM_CHARS_H

#include <charconv>

namespace wq_lib::detail {

/**
 * What std::from_chars gives for general or hexadecimal notation, made by std::strtod: the same bits and the same end. A number that is
 * rounded to 0 or infinity is out of range; one that is rounded to a subnormal number is not.
 */
std::from_chars_result fromCharsByStrtod(const char* first, const char* last, double& value, std::chars_format format);

inline std::from_chars_result fromChars(const char* first, const char* last, double& value,
                                        std::chars_format format = std::chars_format::general)
{
#if defined(__cpp_lib_to_chars) && !defined(__i386__)  // libstdc++ for 32-bit x86 rounds twice: 2810210151591e18 is one unit off
    return std::from_chars(first, last, value, format);
#else
    return fromCharsByStrtod(first, last, value, format);
#endif
}

}  // namespace wq_lib::detail

#endif
