// Histograms of characters.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace wqstat {

/** What a terminal can show. */
enum class Characters { blocks, ascii };

/** A character for each count, the higher or the darker the larger it is; a blank where it is 0. */
std::string bars(const std::vector<std::uint64_t>& counts, Characters characters);

/** A bar of at most so many characters, at least one where the count is not 0. */
std::string bar(std::uint64_t count, std::uint64_t largest, std::size_t width, Characters characters);

}  // namespace wqstat
