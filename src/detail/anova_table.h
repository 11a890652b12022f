// The Anova rows that both Anova reports print.
#ifndef WQ_STAT_DETAIL_ANOVA_TABLE_H
#define WQ_STAT_DETAIL_ANOVA_TABLE_H

#include "report_text.h"
#include "wide_count.h"

#include <wq_stat/single_anova.h>

#include <string_view>

namespace wq_lib::detail {

inline void writeTableHead(ReportText& report)
{
    report.line("Source of variation\tdf\tSS\t\tMS\texp MS\tFs");
    report.rule();
}

/** A row with all five columns; its label ends in a tab. */
inline void writeFullRow(ReportText& report, std::string_view label, const anova_source& row)
{
    report.line(label, wideCount(row.df), "\t", row.ss, "\t", row.ms, "\t", row.expectedMs, "\t", row.fs);
}

inline void writeAmongRow(ReportText& report, const anova_source& among) { writeFullRow(report, "Among groups       \t", among); }

inline void writeWithinAndTotalRows(ReportText& report, const anova_source& within, const anova_source& total)
{
    report.line("Within groups       \t", wideCount(within.df), "\t", within.ss, "\t", within.ms, "\t", within.expectedMs);
    report.line("Total groups         \t", wideCount(total.df), "\t", total.ss, "\t");
    report.rule();
}

}  // namespace wq_lib::detail

#endif
