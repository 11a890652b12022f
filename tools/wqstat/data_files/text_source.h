// The text of a file, whatever it is wrapped in: gzip, UTF-16, a byte order mark.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace wqstat {

constexpr std::size_t blockSize = std::size_t{1} << 16;  ///< bytes that are read at a time

/** A stream of bytes that is read once, from its begin to its end. */
class ByteSource {
public:
    virtual ~ByteSource() = default;

    /**
     * Reads up to room bytes, at least one while there are any.
     * @return how many; 0 at the end.
     * @throws CannotAnalyse when reading fails.
     */
    virtual std::size_t read(char* to, std::size_t room) = 0;
};

/** Is given the bytes of a file as they stand there, block by block, while they are read. */
using BytesHandler = std::function<void(std::string_view bytes)>;

/** A text that is at hand as a whole, and stays there while it is read. */
class TextInMemory final : public ByteSource {
public:
    explicit TextInMemory(std::string_view text) : rest(text) {}
    std::size_t read(char* to, std::size_t room) override;

private:
    std::string_view rest;
};

/** A file's text, and how it was wrapped. */
struct TextSource {
    std::unique_ptr<ByteSource> bytes;
    std::vector<std::string> wrappings;  ///< in words, the outermost first; empty for plain text
};

/** How a failure to open is told. @param error errno; 0 where the library says nothing more */
std::string reason(int error);

inline bool beginsWith(std::string_view text, std::string_view begin) { return text.substr(0, begin.size()) == begin; }

/** What text with this begin is wrapped in: "gzip", "UTF-16" or nothing. */
std::string wrappingOf(std::string_view begin);

/**
 * Opens a file as text without a byte order mark: gzip is unpacked, UTF-16 becomes UTF-8. Any other encoding passes as it is. Progress
 * counts what is read of the file.
 * @param fileName a path; "-" means standard input.
 * @param shownName its name in messages.
 * @param handle may be empty; it is given the bytes before they are unpacked.
 * @throws CannotAnalyse
 */
TextSource openText(const std::string& fileName, const std::string& shownName, const BytesHandler& handle = {});

}  // namespace wqstat
