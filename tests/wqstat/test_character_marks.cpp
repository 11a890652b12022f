// Marks of characters, compared with a look at each. Built twice: with the processor's vectors where it has them, and without.
#include "data_files/character_marks.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>

using namespace wqstat;

namespace {

std::uint64_t plainMarks(const std::string& text, const std::string& wanted)
{
    std::uint64_t marks = 0;
    for (std::size_t i = 0; i < charactersMarked; ++i)
        if (wanted.find(text[i]) != std::string::npos) marks |= std::uint64_t{1} << i;
    return marks;
}

}  // namespace

TEST(CharacterMarks, ofEveryCharacterAtEveryPlace)
{
    for (int code = 0; code < 256; ++code) {
        const char c = static_cast<char>(code);
        for (std::size_t place = 0; place < charactersMarked; ++place) {
            std::string text(charactersMarked, static_cast<char>(code ^ 0x80));
            text[place] = c;
            ASSERT_EQ(CharacterMarks(text.data()).ofAny(c), std::uint64_t{1} << place) << code;
        }
    }
}

TEST(CharacterMarks, ofSeveralAtOnce)
{
    std::mt19937 engine(20261122);
    // Neighbours of each other in the code, and 0, over which a carry would run.
    const std::string characters(",+-\n\v\r\"#\0\x01\x7f\x80\xff", 13);
    for (int round = 0; round < 10000; ++round) {
        std::string text;
        while (text.size() < charactersMarked) text += characters[engine() % characters.size()];
        const CharacterMarks marks(text.data());
        ASSERT_EQ(marks.ofAny(',', '\n'), plainMarks(text, ",\n"));
        ASSERT_EQ(marks.ofAny('"', '\0', '\r'), plainMarks(text, std::string("\"\0\r", 3)));
    }
}
