// Writes a page. What comes from data is text, by construction: markup is made of words that stand in this program's source, and of
// pictures.
#pragma once

#include "command_line/sentence.h"
#include "pictures/svg_element.h"

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace wqstat {

/** A word of markup, from this program's source. */
class MarkupWord {
public:
    template <std::size_t Size>
    constexpr MarkupWord(const char (&word)[Size]) : letters(word, Size - 1)
    {
    }
    std::string_view text() const { return letters; }

private:
    std::string_view letters;
};

using Attribute = std::pair<MarkupWord, std::string>;

class HtmlWriter {
public:
    /** Opens an element; its attributes' values may be any texts. */
    HtmlWriter& open(MarkupWord name, std::initializer_list<Attribute> attributes = {});
    HtmlWriter& close();

    /** A text, as it is; bytes that no page can hold are shown as visible() does. Line ends and tabs stay. */
    HtmlWriter& text(std::string_view text);

    /** An element that holds nothing but a text. */
    HtmlWriter& element(MarkupWord name, std::string_view content, std::initializer_list<Attribute> attributes = {});

    /** A text, in which names from data are set apart, whatever their direction of writing. */
    HtmlWriter& words(const Sentence& sentence);

    /** An element that holds nothing but a sentence. */
    HtmlWriter& sentence(MarkupWord name, const Sentence& content, std::initializer_list<Attribute> attributes = {});

    /** An element that holds nothing but a name from data. */
    HtmlWriter& name(MarkupWord element, const std::string& content, std::initializer_list<Attribute> attributes = {})
    {
        return sentence(element, Sentence::name(content), attributes);
    }

    /** A text in a running line, without the line end that an element of its own has behind it. */
    HtmlWriter& inlined(MarkupWord name, std::string_view content);

    /** What the head of every page has: how its bytes are to be read, and the style sheet. */
    HtmlWriter& style(MarkupWord sheet);

    HtmlWriter& picture(const SvgElement& svg);

    /** A text in which every character counts, as it was printed. */
    HtmlWriter& verbatim(std::string_view content);

    /** What the other one wrote, in which every element is closed. */
    HtmlWriter& append(const HtmlWriter& more);

    /** How many bytes were written. */
    std::size_t size() const { return markup.size(); }

    /** All that was written, as a page. */
    std::string page() const;

private:
    std::string markup;
    std::vector<std::string> opened;
};

}  // namespace wqstat
