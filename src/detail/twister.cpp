#include "twister.h"

#include <cmath>
#include <cstdint>

namespace wq_lib::detail {

namespace {

/** What a uniform distribution over all 32-bit integers gives. */
unsigned int drawInteger(std::mt19937& engine) { return static_cast<unsigned int>(engine()); }

/** As std::generate_canonical<double, 53> with this engine: two draws, the first one less significant. */
double drawReal(std::mt19937& engine)
{
    const double low = static_cast<double>(static_cast<std::uint32_t>(engine()));
    const double high = static_cast<double>(static_cast<std::uint32_t>(engine()));
    const double real = (low + high * 0x1p32) * 0x1p-64;
    return real < 1.0 ? real : std::nextafter(1.0, 0.0);  // the sum may have been rounded up
}

#if defined(__x86_64__) && defined(__GNUC__)

// Flattened: the engine's own code becomes part of these functions, and so is compiled for AVX2.
__attribute__((target("avx2"), flatten)) unsigned int drawIntegerByAvx2(std::mt19937& engine) { return drawInteger(engine); }
__attribute__((target("avx2"), flatten)) double drawRealByAvx2(std::mt19937& engine) { return drawReal(engine); }

bool hasAvx2()
{
    __builtin_cpu_init();
    return __builtin_cpu_supports("avx2");
}

#endif

constexpr TwisterDraws baseline = {drawInteger, drawReal};

}  // namespace

TwisterDraws baselineDraws() { return baseline; }

TwisterDraws bestDraws()
{
#if defined(__x86_64__) && defined(__GNUC__)
    if (hasAvx2()) return {drawIntegerByAvx2, drawRealByAvx2};
#endif
    return baseline;
}

// Usable before the library's own initialisation, by a host's static object: it draws as on any processor then.
TwisterDraws twisterDraws = baseline;
const bool twisterDrawsAreBest = (twisterDraws = bestDraws(), true);

}  // namespace wq_lib::detail
