// A column's name for reports, listings and exports.
#ifndef WQ_STAT_DETAIL_COLUMN_TITLE_H
#define WQ_STAT_DETAIL_COLUMN_TITLE_H

#include <cstddef>
#include <string>
#include <vector>

namespace wq_lib::detail {

/** @return name i; the empty text where the host named fewer columns. */
inline std::string columnTitle(const std::vector<std::string>& names, std::size_t i) { return i < names.size() ? names[i] : std::string(); }

}  // namespace wq_lib::detail

#endif
