#ifndef WQ_UDF_WRITE_FILE_H
#define WQ_UDF_WRITE_FILE_H

/// @file
/// Text files written from front to back.

#include <wq_udf/export.h>
#include <wq_udf/file_name.h>

#include <fstream>
#include <ios>
#include <memory>
#include <string_view>

namespace wq_lib {

/**
 * A text file that is written from front to back: setFileName, setAppend, fileOpen, write, fileClose.
 * Whatever goes wrong on the way (a full disk, say) is told by fileClose.
 */
class WQ_UDF_EXPORT WriteFile : public FileName {
public:
    WriteFile();
    virtual ~WriteFile();
    WriteFile(const WriteFile&) = delete;
    WriteFile& operator=(const WriteFile&) = delete;

    /** With true, fileOpen adds to an existing file; with false (the state of a new object) it starts a new one. */
    void setAppend(bool on) { append = on; }
    bool isAppend() const { return append; }  ///< what setAppend set

    /** Opens the named file for writing. @return false when it cannot be opened, or when a file is open already. */
    virtual bool fileOpen();

    /** Numbers written to the stream are in fixed notation with p digits after the point from here on. */
    void setPrecision(int p)
    {
        stream.setf(std::ios_base::fixed, std::ios_base::floatfield);
        stream.precision(p);
    }

    /** Ends the line with one '\n'. */
    virtual void writeEol();

    /**
     * Closes the file.
     * @return true when everything written since fileOpen reached the file; false when something did not, or when no file is open.
     */
    bool fileClose();

protected:
    /** Writes a text as it is. */
    void write(std::string_view text);

    std::ofstream stream;  ///< the open file; to be written to by << and its like, and closed by fileClose() alone: text waits before it
    bool append = false;   ///< whether fileOpen adds to an existing file

private:
    class Buffer;
    std::unique_ptr<Buffer> buffer;
};

}  // namespace wq_lib

#endif
