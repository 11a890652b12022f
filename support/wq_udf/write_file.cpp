#include <wq_udf/write_file.h>

#include <locale>

namespace wq_lib {

WriteFile::WriteFile() { stream.imbue(std::locale::classic()); }

WriteFile::~WriteFile() = default;

bool WriteFile::fileOpen()
{
    if (stream.is_open()) return false;
    stream.clear();
    stream.open(getFileName(), std::ios_base::out | std::ios_base::binary | (append ? std::ios_base::app : std::ios_base::trunc));
    return stream.is_open();
}

void WriteFile::write(std::string_view text)
{
    const auto length = static_cast<std::streamsize>(text.size());
    if (stream.rdbuf()->sputn(text.data(), length) != length) stream.setstate(std::ios_base::badbit);
}

void WriteFile::writeEol() { write("\n"); }

bool WriteFile::fileClose()
{
    if (!stream.is_open()) return false;
    stream.close();
    return stream.good();
}

}  // namespace wq_lib
