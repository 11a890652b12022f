#include <wq_udf/write_file.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <locale>
#include <ostream>
#include <streambuf>

namespace wq_lib {

/** Stands between the stream and its file: small pieces only wait here in order, which the buffer of a file stream makes expensive. */
// clang-format off
class [[gnu::visibility("hidden")]] WriteFile::Buffer : public std::streambuf {
public:
    explicit Buffer(std::streambuf& target) : file(target) { clear(); }

    /** @return false when the file took less than it should. */
    bool put(const char* text, std::size_t length)
    {
        if (length > static_cast<std::size_t>(epptr() - pptr())) {
            if (!flush()) return false;
            if (length > characters.size()) return passOn(text, length);
        }
        std::copy(text, text + length, pptr());
        pbump(static_cast<int>(length));
        return true;
    }

    bool flush()
    {
        const auto length = static_cast<std::size_t>(pptr() - pbase());
        clear();
        return passOn(characters.data(), length);
    }

    /** For a new file. */
    void reset()
    {
        clear();
        refuses = false;
    }

protected:
    std::streamsize xsputn(const char* text, std::streamsize length) override
    {
        return put(text, static_cast<std::size_t>(length)) ? length : 0;
    }

    int_type overflow(int_type character) override
    {
        if (!flush()) return traits_type::eof();
        if (traits_type::eq_int_type(character, traits_type::eof())) return traits_type::not_eof(character);
        return sputc(traits_type::to_char_type(character));
    }

    pos_type seekoff(off_type offset, std::ios_base::seekdir from, std::ios_base::openmode which) override
    {
        return flush() ? file.pubseekoff(offset, from, which) : pos_type(off_type(-1));
    }

    pos_type seekpos(pos_type position, std::ios_base::openmode which) override
    {
        return flush() ? file.pubseekpos(position, which) : pos_type(off_type(-1));
    }

    int sync() override { return flush() && file.pubsync() == 0 ? 0 : -1; }

private:
    void clear() { setp(characters.data(), characters.data() + characters.size()); }

    bool passOn(const char* text, std::size_t length)
    {
        const auto count = static_cast<std::streamsize>(length);
        if (refuses) return false;
        const bool passed = file.sputn(text, count) == count;
#if defined(_LIBCPP_VERSION)  // its file streams write behind their buffer when they are given more after a failure
        refuses = !passed;
#endif
        return passed;
    }

    std::streambuf& file;
    bool refuses = false;
    std::array<char, 1 << 15> characters;
};
// clang-format on

WriteFile::WriteFile() : buffer(std::make_unique<Buffer>(*stream.rdbuf()))
{
    stream.imbue(std::locale::classic());
    static_cast<std::ostream&>(stream).rdbuf(buffer.get());
}

WriteFile::~WriteFile()
{
    try {
        fileClose();
    } catch (...) {  // a derived class may have told its stream to throw
    }
}

bool WriteFile::fileOpen()
{
    if (stream.is_open()) return false;
    stream.clear();
    buffer->reset();  // of what was written while no file was open
    try {
        stream.open(getFileName(), std::ios_base::out | std::ios_base::binary | (append ? std::ios_base::app : std::ios_base::trunc));
    } catch (...) {  // no memory for the stream's buffer: the file is open by then
        stream.close();
        throw;
    }
    return stream.is_open();
}

void WriteFile::write(std::string_view text)
{
    if (!buffer->put(text.data(), text.size())) stream.setstate(std::ios_base::badbit);
}

void WriteFile::writeEol() { write("\n"); }

bool WriteFile::fileClose()
{
    if (!stream.is_open()) return false;
    if (!buffer->flush()) stream.setstate(std::ios_base::badbit);
    stream.close();
    return stream.good();
}

}  // namespace wq_lib
