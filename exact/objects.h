// What an analysed object is, and what its own report decides.
#pragma once

#include "p_values.h"

#include <wq_stat/basic_stat.h>

#include <optional>

namespace wq_exact::detail {

/** Whether dynamic_cast may look at the object: a host that is compiled without type information gives its own classes none. */
inline bool hasTypeInformation([[maybe_unused]] const wq_lib::BasicStatistics& object)
{
#if defined(__GXX_ABI_VERSION)  // Itanium C++ ABI, 2.5.2: it stands before the first function of the object's table
    return (*reinterpret_cast<const void* const* const*>(&object))[-1] != nullptr;
#else
    return true;
#endif
}

/** Whether the object is of one of these classes, though it is known as another. */
template <typename... Others>
bool isAny(const wq_lib::BasicStatistics& object)
{
    return hasTypeInformation(object) && ((dynamic_cast<const Others*>(&object) != nullptr) || ...);
}

/** By acceptH0(), which the reports call, too: that of the object's class, which a host may have overridden. */
template <typename Analysis>
std::optional<bool> acceptedByReport(const Analysis& analysis) noexcept
{
    return guarded([&] { return std::optional<bool>(const_cast<Analysis&>(analysis).acceptH0()); });
}

}  // namespace wq_exact::detail
