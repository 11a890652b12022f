// Opens, heads and closes a tab-separated export for R; the caller writes only its rows.
#ifndef WQ_STAT_DETAIL_R_EXPORT_H
#define WQ_STAT_DETAIL_R_EXPORT_H

#include <wq_report/csv_report.h>

#include <string>

namespace wq_lib::detail {

/**
 * @param comment the text above the table.
 * @param writeRows called with the open file to write header and rows.
 * @return false when the file cannot be opened, or when not everything reached it.
 */
template <typename WriteRows>
bool exportForR(std::string fileName, const std::string& comment, WriteRows&& writeRows)
{
    CsvReport file;
    file.setFileName(fileName);
    if (!file.fileOpen()) return false;
    file.setSeparator('\t');
    file.writeComment(comment);
    writeRows(file);
    return file.fileClose();
}

}  // namespace wq_lib::detail

#endif
