#include "picture_file.h"

#include "svg_boxes.h"

#include "command_line/arguments.h"
#include "results/markup_text.h"

#include <boost/crc.hpp>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <utility>

namespace wqstat {

namespace {

void replaceAll(std::string& text, const std::string& part, const std::string& by)
{
    for (std::size_t i = text.find(part); i != std::string::npos; i = text.find(part, i + by.size())) text.replace(i, part.size(), by);
}

/** Between the two texts, the first time they are there. */
void replaceBetween(std::string& text, const std::string& begin, const std::string& end, const std::string& by)
{
    const std::size_t first = text.find(begin);
    if (first == std::string::npos) return;
    const std::size_t last = text.find(end, first);
    if (last == std::string::npos) return;
    text.replace(first, last + end.size() - first, by);
}

std::string textBetween(const std::string& text, const std::string& begin, const std::string& end)
{
    const std::size_t first = text.find(begin);
    const std::size_t last = text.find(end, first);
    if (first == std::string::npos || last == std::string::npos) return "";
    return text.substr(first + begin.size(), last - first - begin.size());
}

/** gnuplot leaves the '>' of "]]>" in a text as it is, which XML does not allow. */
void makeWellFormed(std::string& svg) { replaceAll(svg, "]]>", "]]&gt;"); }

/** Browsers would show gnuplot's own names of what the key does not name, where the pointer rests on it. */
void removeOwnTitles(std::string& svg)
{
    const std::string begin = "<title>gnuplot_plot_";
    const std::string end = "</title>";
    for (std::size_t i = svg.find(begin); i != std::string::npos; i = svg.find(begin, i)) {
        const std::size_t last = svg.find_first_not_of("0123456789abcdefghijklmnopqrstuvwxyz", i + begin.size());
        if (last != std::string::npos && svg.compare(last, end.size(), end) == 0)
            svg.erase(i, last + end.size() - i);
        else
            i += begin.size();
    }
}

/** What gnuplot drew, without what is wrong with it. */
std::string mended(const std::string& drawn)
{
    std::string svg = withBoxesJoined(drawn);
    makeWellFormed(svg);
    removeOwnTitles(svg);
    return svg;
}

/** Ids and what refers to them, in tags alone: a '<' of a text is written otherwise. */
void prefixIds(std::string& svg, const std::string& ids)
{
    std::string result;
    for (std::size_t i = 0; i < svg.size();) {
        const std::size_t tag = std::min(svg.find('<', i), svg.size());
        const std::size_t end = std::min(svg.find('>', tag), svg.size());
        std::string words = svg.substr(tag, end - tag);
        for (const char* const begin : {" id='", " id=\"", "href='#", "url(#"}) replaceAll(words, begin, begin + ids);
        result += svg.substr(i, tag - i) + words;
        i = end;
    }
    svg = std::move(result);
}

std::string length(double pixels, bool inMillimetres)
{
    if (!inMillimetres) return shortest(pixels);
    return shortest(std::round(pixels / Canvas::screenDots * Canvas::millimetresPerInch * 1000.0) / 1000.0) + "mm";
}

double pagePoints(double pixels) { return pixels / Canvas::screenDots * Canvas::pointsPerInch; }

std::string bigEndian(std::uint32_t number)
{
    std::string bytes;
    for (const int shift : {24, 16, 8, 0}) bytes += static_cast<char>(number >> shift & 0xffU);
    return bytes;
}

}  // namespace

double wholePoints(double pixels)
{
    constexpr double rounding = 1e-6;
    return std::ceil(pagePoints(pixels) - rounding);
}

std::string svgFile(std::string svg, const Picture& picture)
{
    svg = mended(svg);
    replaceBetween(svg, "<title>", "</title>", "<title>" + markupText(picture.title) + "</title>");
    const std::string version = textBetween(svg, "<desc>Produced by GNUPLOT ", " </desc>");
    replaceBetween(svg, "<desc>", "</desc>",
                   "<desc>" + markupText(picture.description) + "</desc>\n<metadata>gnuplot " + version + "</metadata>");
    const Canvas& canvas = picture.canvas;
    if (canvas.isGiven)
        replaceBetween(svg, "<svg", "viewBox",
                       "<svg width=\"" + length(canvas.width, canvas.inMillimetres) + "\" height=\"" +
                           length(canvas.height, canvas.inMillimetres) + "\"\n viewBox");
    return svg;
}

SvgElement svgElement(std::string svg, const Picture& picture, const std::string& ids)
{
    svg = mended(svg);
    svg.erase(0, svg.find("<svg"));
    prefixIds(svg, ids);
    replaceBetween(svg, "<title>", "</title>", "<title id=\"" + ids + "title\">" + markupText(picture.title) + "</title>");
    replaceBetween(svg, "<desc>", "</desc>", "<desc id=\"" + ids + "desc\">" + markupText(picture.description) + "</desc>");
    replaceBetween(svg, "<svg", "viewBox", "<svg role=\"img\" aria-labelledby=\"" + ids + "title " + ids + "desc\"\n viewBox");
    return SvgElement(std::move(svg));
}

std::string withExactPage(std::string pdf, const Canvas& canvas)
{
    const std::string begin = "/MediaBox [ 0 0 ";
    const std::string table = "\nxref\n";
    const std::string start = "\nstartxref\n";
    const std::size_t box = pdf.find(begin);
    const std::size_t boxEnd = pdf.find(']', box);
    const std::size_t tablePlace = pdf.rfind(table);
    const std::size_t startPlace = pdf.rfind(start);
    if (boxEnd == std::string::npos || tablePlace == std::string::npos || startPlace < tablePlace || startPlace == std::string::npos)
        return pdf;
    const auto rounded = [](double points) { return std::round(points * 1000.0) / 1000.0; };
    const double top = wholePoints(canvas.height);
    const std::string exact = "/MediaBox [ 0 " + shortest(rounded(top - pagePoints(canvas.height))) + " " +
                              shortest(rounded(pagePoints(canvas.width))) + " " + shortest(top) + " ";
    const std::size_t longer = exact.size() - (boxEnd - box);  // may wrap around, and back again when it is added

    // The places of what stands behind it.
    const auto move = [&](std::size_t from, std::size_t digits) {
        const std::size_t place = std::strtoul(pdf.substr(from, digits).c_str(), nullptr, 10);
        std::string moved = std::to_string(place > box ? place + longer : place);
        if (moved.size() < digits) moved.insert(0, digits - moved.size(), '0');
        pdf.replace(from, digits, moved);
    };
    constexpr std::size_t entry = 20;  // "0000013376 00000 n \n"
    constexpr std::size_t placeDigits = 10;
    for (std::size_t i = pdf.find('\n', tablePlace + table.size()) + 1; pdf.compare(i, 1, "t") != 0; i += entry)  // "trailer"
        move(i, placeDigits);
    const std::size_t number = startPlace + start.size();
    move(number, pdf.find('\n', number) - number);
    return pdf.replace(box, boxEnd - box, exact);
}

std::string withResolution(std::string png, double dots)
{
    constexpr std::size_t behindHeader = 8 + 4 + 4 + 13 + 4;  // signature; length, name, content and checksum of the first chunk
    constexpr double inchesPerMetre = 1.0 / 0.0254;
    if (png.size() < behindHeader) return png;
    const auto perMetre = static_cast<std::uint32_t>(std::lround(dots * inchesPerMetre));
    const std::string content = "pHYs" + bigEndian(perMetre) + bigEndian(perMetre) + '\x01';
    boost::crc_32_type checksum;
    checksum.process_bytes(content.data(), content.size());
    png.insert(behindHeader, bigEndian(9) + content + bigEndian(checksum.checksum()));
    return png;
}

}  // namespace wqstat
