#include "html_writer.h"

#include "markup_text.h"

namespace wqstat {

HtmlWriter& HtmlWriter::open(MarkupWord name, std::initializer_list<Attribute> attributes)
{
    markup += "<";
    markup += name.text();
    for (const auto& [attribute, value] : attributes) {
        markup += " ";
        markup += attribute.text();
        markup += "=\"" + markupText(value) + "\"";
    }
    markup += ">";
    opened.emplace_back(name.text());
    return *this;
}

HtmlWriter& HtmlWriter::close()
{
    markup += "</" + opened.back() + ">\n";
    opened.pop_back();
    return *this;
}

HtmlWriter& HtmlWriter::text(std::string_view content)
{
    markup += markupText(content);
    return *this;
}

HtmlWriter& HtmlWriter::element(MarkupWord name, std::string_view content, std::initializer_list<Attribute> attributes)
{
    return open(name, attributes).text(content).close();
}

HtmlWriter& HtmlWriter::verbatim(std::string_view content)
{
    open("pre");
    markup += "\n";  // a reader of HTML drops the first one, which may be the content's own
    return text(content).close();
}

HtmlWriter& HtmlWriter::words(const Sentence& sentence)
{
    for (const Sentence::Part& part : sentence.parts()) {
        if (part.isName)
            inlined("bdi", part.text);
        else
            text(part.text);
    }
    return *this;
}

HtmlWriter& HtmlWriter::sentence(MarkupWord name, const Sentence& content, std::initializer_list<Attribute> attributes)
{
    return open(name, attributes).words(content).close();
}

HtmlWriter& HtmlWriter::inlined(MarkupWord name, std::string_view content)
{
    element(name, content);
    markup.pop_back();
    return *this;
}

HtmlWriter& HtmlWriter::style(MarkupWord sheet)
{
    markup += "<meta charset=\"utf-8\">\n<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<style>";
    markup += sheet.text();
    markup += "</style>\n";
    return *this;
}

HtmlWriter& HtmlWriter::picture(const SvgElement& svg)
{
    markup += svg.markup();
    return *this;
}

HtmlWriter& HtmlWriter::append(const HtmlWriter& more)
{
    markup += more.markup;
    return *this;
}

std::string HtmlWriter::page() const { return "<!DOCTYPE html>\n" + markup; }

}  // namespace wqstat
