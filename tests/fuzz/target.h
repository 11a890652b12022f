// A fuzz target: one function that takes any bytes and checks what the library makes of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <sstream>

// libFuzzer calls it with inputs of its own, replay.cpp with those of tests/fuzz/corpus.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

namespace wq_fuzz {

// Ends the program with a message where something does not hold; the fuzzer keeps the input.
template <typename... Parts>
void require(bool holds, const Parts&... parts)
{
    if (holds) return;
    std::ostringstream text;
    text.precision(17);
    (text << ... << parts);
    std::fprintf(stderr, "Finding: %s\n", text.str().c_str());
    std::abort();
}

}  // namespace wq_fuzz
