// Results as JSON text, written as they come.
#pragma once

#include "result_writer.h"

#include <array>
#include <cstddef>
#include <ostream>
#include <string_view>

namespace wqstat {

/**
 * Writes one JSON document, indented by two blanks. It holds nothing of it, so that a document may be larger than the memory, and needs
 * memory only for texts. A number that is not finite is the text that the exports write for it: "NaN", "Inf", "-Inf".
 */
class JsonWriter final : public ResultWriter {
public:
    explicit JsonWriter(std::ostream& stream) : output(stream) {}

    void number(std::string_view name, double value) override;
    void whole(std::string_view name, unsigned long long value) override;
    void whole(std::string_view name, long long value) override;
    void truth(std::string_view name, bool value) override;
    void text(std::string_view name, std::string_view value) override;
    void nothing(std::string_view name) override;
    void beginObject(std::string_view name) override { begin(name, "{"); }
    void endObject() override { end("}"); }
    void beginArray(std::string_view name) override { begin(name, "["); }
    void endArray() override { end("]"); }

private:
    void begin(std::string_view name, std::string_view bracket);
    void end(std::string_view bracket);
    static constexpr std::size_t mostOfLineStart = 21;  // of a depth of ten

    void startMember(std::string_view name);
    char* startLine(char* to) const;

    template <typename Integer>
    void integer(std::string_view name, Integer value);

    /** Where so many characters have room; advanceTo() says where those that were written end. */
    char* room(std::size_t most);
    void advanceTo(const char* end);

    void put(std::string_view text);
    void passOn();

    std::ostream& output;
    std::array<char, 1 << 14> waiting{};  // a stream takes longer to be ready for each piece than the piece takes
    std::size_t used = 0;                 // of waiting
    std::size_t depth = 0;
    bool first = true;  // of its object or array
};

}  // namespace wqstat
