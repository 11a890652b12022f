#include "text_source.h"

#include "command_line/failure.h"
#include "command_line/progress.h"

#include <iconv.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

namespace wqstat {

std::string reason(int error) { return error == 0 ? "cannot be opened" : std::generic_category().message(error); }

namespace {

constexpr std::size_t peekedAt = 64;

// Byte order marks.
constexpr std::string_view utf8Mark = "\xef\xbb\xbf";
constexpr std::string_view lowFirstMark = "\xff\xfe";
constexpr std::string_view highFirstMark = "\xfe\xff";

/** The bytes of a file as they stand there. */
class FileSource final : public ByteSource {
public:
    FileSource(const std::string& fileName, const std::string& shownName, BytesHandler handler)
        : name(shownName),
          file(opened(fileName, shownName), std::fclose),
          handle(std::move(handler))
    {
        std::setvbuf(file.get(), nullptr, _IONBF, 0);  // the readers have buffers of their own
        std::error_code unknown;
        const bool regular = fileName != "-" && std::filesystem::is_regular_file(fileName, unknown);
        const std::uintmax_t size = regular ? std::filesystem::file_size(fileName, unknown) : 0;
        progress().show("reading " + name, unknown ? 0 : size);
    }

    std::size_t read(char* to, std::size_t room) override
    {
        const std::size_t taken = std::fread(to, 1, room, file.get());
        if (std::ferror(file.get()) != 0) throw CannotAnalyse(name + ": reading failed");
        progress().advance(taken);
        if (handle) handle({to, taken});
        return taken;
    }

private:
    static std::FILE* opened(const std::string& fileName, const std::string& shownName)
    {
        if (fileName == "-") return stdin;
        std::error_code ignored;
        if (std::filesystem::is_directory(fileName, ignored)) throw CannotAnalyse(shownName + ": " + reason(EISDIR));
        errno = 0;
        std::FILE* const file = std::fopen(fileName.c_str(), "rb");
        if (file == nullptr) throw CannotAnalyse(shownName + ": " + reason(errno));
        return file;
    }

    std::string name;
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> file;
    BytesHandler handle;
};

/** A source whose first bytes can be looked at before they are read. */
class PeekedSource final : public ByteSource {
public:
    explicit PeekedSource(std::unique_ptr<ByteSource> source) : inner(std::move(source))
    {
        while (length < start.size()) {
            const std::size_t taken = inner->read(start.data() + length, start.size() - length);
            if (taken == 0) break;
            length += taken;
        }
    }

    std::string_view begin() const { return std::string_view(start.data(), length).substr(position); }

    void skip(std::size_t count) { position += count; }

    std::size_t read(char* to, std::size_t room) override
    {
        if (position == length) return inner->read(to, room);
        const std::size_t taken = std::min(room, length - position);
        std::memcpy(to, start.data() + position, taken);
        position += taken;
        return taken;
    }

private:
    std::unique_ptr<ByteSource> inner;
    std::array<char, peekedAt> start{};
    std::size_t length = 0;
    std::size_t position = 0;
};

/** What a gzip file holds; several of them one behind the other are one, as for gunzip. */
class GzipSource final : public ByteSource {
public:
    GzipSource(std::unique_ptr<ByteSource> source, std::string shownName) : inner(std::move(source)), name(std::move(shownName))
    {
        if (inflateInit2(&stream, 16 + MAX_WBITS) != Z_OK) throw CannotAnalyse(name + ": there is not enough memory to unpack it");
    }
    ~GzipSource() override { inflateEnd(&stream); }
    GzipSource(const GzipSource&) = delete;
    GzipSource& operator=(const GzipSource&) = delete;

    std::size_t read(char* to, std::size_t room) override
    {
        stream.next_out = reinterpret_cast<Bytef*>(to);
        stream.avail_out = static_cast<uInt>(std::min<std::size_t>(room, blockSize));
        const std::size_t wanted = stream.avail_out;
        while (stream.avail_out == wanted) {
            if (stream.avail_in == 0 && !refill()) {
                if (!memberEnded) throw CannotAnalyse(name + ": the gzip file is cut off");
                return 0;
            }
            if (memberEnded && inflateReset(&stream) != Z_OK) throw CannotAnalyse(name + ": the gzip file is damaged");
            memberEnded = false;
            const int state = inflate(&stream, Z_NO_FLUSH);
            if (state != Z_OK && state != Z_STREAM_END) throw CannotAnalyse(name + ": the gzip file is damaged");
            memberEnded = state == Z_STREAM_END;
        }
        return wanted - stream.avail_out;
    }

private:
    bool refill()
    {
        stream.next_in = reinterpret_cast<Bytef*>(packed.data());
        stream.avail_in = static_cast<uInt>(inner->read(packed.data(), packed.size()));
        return stream.avail_in > 0;
    }

    std::unique_ptr<ByteSource> inner;
    std::string name;
    z_stream stream{};
    bool memberEnded = false;
    std::array<char, blockSize> packed{};
};

/** UTF-16 as UTF-8. */
class Utf16Source final : public ByteSource {
public:
    /** @param encoding as iconv calls it: UTF-16LE or UTF-16BE. */
    Utf16Source(std::unique_ptr<ByteSource> source, const char* encoding, std::string shownName)
        : inner(std::move(source)),
          name(std::move(shownName)),
          conversion(iconv_open("UTF-8", encoding))
    {
        if (conversion == reinterpret_cast<iconv_t>(-1)) throw CannotAnalyse(name + ": this system cannot read " + encoding);
    }
    ~Utf16Source() override { iconv_close(conversion); }
    Utf16Source(const Utf16Source&) = delete;
    Utf16Source& operator=(const Utf16Source&) = delete;

    std::size_t read(char* to, std::size_t room) override
    {
        char* out = to;
        while (out == to) {
            if (left > 0) convert(out, to + room);
            if (out != to) break;
            const std::size_t taken = inner->read(wide.data() + left, wide.size() - left);
            if (taken == 0 && left > 0) throw CannotAnalyse(name + ": the text is no valid UTF-16");
            if (taken == 0) return 0;
            left += taken;
        }
        return static_cast<std::size_t>(out - to);
    }

private:
    void convert(char*& out, const char* end)
    {
        char* in = wide.data();
        std::size_t outRoom = static_cast<std::size_t>(end - out);
        const std::size_t result = iconv(conversion, &in, &left, &out, &outRoom);
        // A character that is cut in its middle, or has no more room, waits for the next call.
        if (result == static_cast<std::size_t>(-1) && errno == EILSEQ) throw CannotAnalyse(name + ": the text is no valid UTF-16");
        std::memmove(wide.data(), in, left);
    }

    std::unique_ptr<ByteSource> inner;
    std::string name;
    iconv_t conversion;
    std::array<char, blockSize / 4> wide{};
    std::size_t left = 0;
};

/** Whether every second byte of a longer text is zero, as in UTF-16 of Latin letters and digits that lacks its byte order mark. */
bool holdsZeros(std::string_view text, std::size_t first)
{
    if (text.size() < 4) return false;
    for (std::size_t i = 0; i + 1 < text.size(); i += 2)
        if (text[i + first] != '\0' || text[i + 1 - first] == '\0') return false;
    return true;
}

}  // namespace

std::size_t TextInMemory::read(char* to, std::size_t room)
{
    const std::size_t taken = std::min(room, rest.size());
    if (taken > 0) std::memcpy(to, rest.data(), taken);
    rest.remove_prefix(taken);
    return taken;
}

std::string wrappingOf(std::string_view begin)
{
    if (beginsWith(begin, "\x1f\x8b")) return "gzip";
    const std::string_view start = begin.substr(0, peekedAt);
    const bool marked = beginsWith(start, lowFirstMark) || beginsWith(start, highFirstMark);
    return marked || holdsZeros(start, 0) || holdsZeros(start, 1) ? "UTF-16" : "";
}

TextSource openText(const std::string& fileName, const std::string& shownName, const BytesHandler& handle)
{
    TextSource text;
    auto source = std::make_unique<PeekedSource>(std::make_unique<FileSource>(fileName, shownName, handle));
    if (wrappingOf(source->begin()) == "gzip") {
        text.wrappings.push_back("gzip");
        source = std::make_unique<PeekedSource>(std::make_unique<GzipSource>(std::move(source), shownName));
    }
    const std::string_view begin = source->begin();
    if (wrappingOf(begin) == "UTF-16") {
        const bool marked = beginsWith(begin, lowFirstMark) || beginsWith(begin, highFirstMark);
        const bool lowFirst = marked ? beginsWith(begin, lowFirstMark) : holdsZeros(begin, 1);
        if (marked) source->skip(lowFirstMark.size());
        text.wrappings.push_back("UTF-16");
        text.bytes = std::make_unique<Utf16Source>(std::move(source), lowFirst ? "UTF-16LE" : "UTF-16BE", shownName);
        return text;
    }
    if (beginsWith(begin, utf8Mark)) {
        source->skip(utf8Mark.size());
        text.wrappings.push_back("byte order mark");
    }
    text.bytes = std::move(source);
    return text;
}

}  // namespace wqstat
