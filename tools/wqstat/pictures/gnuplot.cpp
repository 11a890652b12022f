#include "gnuplot.h"

#include "fonts.h"
#include "picture_file.h"

#include "command_line/arguments.h"
#include "command_line/child_process.h"
#include "command_line/failure.h"
#include "data_files/temporary_file.h"
#include "results/output_file.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <string_view>
#include <utility>

namespace wqstat {

namespace {

namespace fs = std::filesystem;

/** A kind of picture file: how it is made, and how a whole one begins and ends. */
struct Format {
    const char* extension;
    GnuplotCode (*settings)(const Canvas&);  ///< the terminal, and what makes its pictures look like those of the others
    std::string_view begin;
    std::string_view end;
    bool drawsText;  ///< with the fonts of this system, where svg leaves that to the viewer
};

/** Sizes of letters and marks in the terminal's own measure. */
GnuplotCode looks(double title, double small, double mark, const GnuplotCode& more)
{
    return GnuplotCode("titleFont = ',") + title + "'; smallFont = '," + small + "'; mark = " + mark + "; " + more + "\n";
}

GnuplotCode svgSettings(const Canvas& canvas)
{
    const double unit = canvas.unit();
    return GnuplotCode("set terminal svg size ") + std::round(canvas.width) + "," + std::round(canvas.height) +
           " dynamic font 'sans-serif," + 15.0 * unit + "' linewidth " + unit + " noenhanced background '#ffffff'\n" +
           looks(18.0 * unit, 13.0 * unit, 0.8 * unit, "keySpacing = 0.97; xTicShift = 0.5");
}

GnuplotCode pngSettings(const Canvas& canvas)
{
    const double dots = canvas.dots / Canvas::screenDots;
    const double unit = canvas.unit() * dots;
    return GnuplotCode("set terminal pngcairo size ") + std::round(canvas.width * dots) + "," + std::round(canvas.height * dots) +
           " font 'sans," + 11.0 * unit + "' linewidth " + unit + " noenhanced background '#ffffff'\n" +
           looks(13.0 * unit, 9.5 * unit, 1.3 * unit, "keySpacing = 1.15; xTicShift = 0.0");
}

GnuplotCode pdfSettings(const Canvas& canvas)
{
    const double unit = canvas.unit();
    const auto inches = [](double pixels) {
        constexpr double more = 0.01;  // gnuplot cuts points
        return (wholePoints(pixels) + more) / Canvas::pointsPerInch;
    };
    return GnuplotCode("set terminal pdfcairo size ") + inches(canvas.width) + "in," + inches(canvas.height) + "in font 'sans," +
           11.0 * unit + "' fontscale 0.75 linewidth " + 1.5 * unit + " noenhanced background '#ffffff'\n" +
           looks(13.0 * unit, 9.5 * unit, 0.9 * unit, "keySpacing = 1.15; xTicShift = 0.0");
}

constexpr Format formats[] = {
    {".svg", svgSettings, "<?xml", "</svg>", false},
    {".png", pngSettings, "\x89PNG", "IEND", true},
    {".pdf", pdfSettings, "%PDF-", "%%EOF", true},
};

const Format* formatOf(const std::string& fileName)
{
    std::string extension = fs::path(fileName).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(), [](unsigned char c) { return std::tolower(c); });
    const auto format =
        std::find_if(std::begin(formats), std::end(formats), [&](const Format& candidate) { return extension == candidate.extension; });
    return format == std::end(formats) ? nullptr : format;
}

#if defined(__unix__) || defined(__APPLE__)

/** A full disk stops a picture short, and gnuplot does not say so. */
bool isWhole(std::string_view picture, const Format& format)
{
    constexpr std::size_t tail = 32;
    const std::string_view end = picture.substr(picture.size() - std::min(tail, picture.size()));
    return picture.substr(0, format.begin.size()) == format.begin && end.find(format.end) != std::string_view::npos;
}

/** @param failure what to say where it cannot be written, before the reason. */
TemporaryFile temporaryFile(const std::string& content, const std::string& failure)
{
    TemporaryFile file = makeTemporaryFile("for gnuplot");
    if (std::fwrite(content.data(), 1, content.size(), file.get()) != content.size() || std::fflush(file.get()) != 0)
        throw CannotAnalyse(failure + "the temporary file for gnuplot" + because(errno));
    std::rewind(file.get());
    return file;
}

std::string contentOf(std::FILE* file)
{
    std::rewind(file);
    std::string content;
    char buffer[1 << 16];
    for (std::size_t count; (count = std::fread(buffer, 1, sizeof buffer, file)) > 0;) content.append(buffer, count);
    return content;
}

/** Why a picture ends before its end: gnuplot does not say so, but what keeps it from writing on keeps others from that too. */
std::string reasonOfEnd(std::FILE* picture)
{
    constexpr char more[4096] = {};  // a block
    std::fseek(picture, 0, SEEK_END);
    if (std::fwrite(more, 1, sizeof more, picture) == sizeof more && std::fflush(picture) == 0) return "gnuplot has drawn a part of it";
    return "the temporary file for gnuplot" + because(errno);
}

#endif

}  // namespace

void checkPictureName(const std::string& fileName)
{
    if (formatOf(fileName) == nullptr) throw WrongUsage("--plot: " + inQuotes(fileName) + " does not end in .svg, .png or .pdf");
}

bool hasDots(const std::string& fileName) { return formatOf(fileName) == &formats[1]; }

#if defined(__unix__) || defined(__APPLE__)

void requireGnuplot(const std::string& option)
{
    if (programOnPath("gnuplot").empty()) throw CannotAnalyse(option + ": there is no program gnuplot (Debian package: gnuplot-nox)");
}

namespace {

/** What gnuplot makes of a picture. @param name of the file, for messages. @param what is to be written to it, for messages. */
std::string drawn(const Picture& picture, const Format& format, const std::string& name, const std::string& what)
{
    const std::string commands = (format.settings(picture.canvas) + picture.commands).text();
    const std::string failure = name + ": " + what + " cannot be written: ";
    const TemporaryFile input = temporaryFile("set encoding utf8\n" + (format.drawsText ? drawable(commands) : commands), failure);
    const TemporaryFile output = temporaryFile("", failure);
    const TemporaryFile messages = temporaryFile("", failure);
    // Its commands are a file, not a pipe, which would kill this program when gnuplot stopped reading; -d: not the user's settings.
    const int status = runProgram(programOnPath("gnuplot"), {"-d"}, {fileno(input.get()), fileno(output.get()), fileno(messages.get())});
    if (status != 0) throw CannotAnalyse(name + ": " + failureOf("gnuplot", status, contentOf(messages.get())));
    const std::string content = contentOf(output.get());
    if (!isWhole(content, format)) throw CannotAnalyse(failure + reasonOfEnd(output.get()));
    return content;
}

}  // namespace

void draw(const Picture& picture, const std::string& fileName)
{
    requireGnuplot("--plot");
    checkPictureName(fileName);
    const Format& format = *formatOf(fileName);
    OutputFile file(fileName, "the picture");
    if (file.isDirect()) throw CannotAnalyse(shown(fileName) + ": is no file");
    std::string content = drawn(picture, format, shown(fileName), "the picture");
    if (&format == &formats[0]) content = svgFile(std::move(content), picture);
    if (&format == &formats[2]) content = withExactPage(std::move(content), picture.canvas);
    if (&format == &formats[1]) content = withResolution(std::move(content), picture.canvas.dots);
    file.write(content);
    file.keep();
}

SvgElement inlineSvg(const Picture& picture, const std::string& ids, const std::string& pageName)
{
    requireGnuplot("--html");
    return svgElement(drawn(picture, formats[0], shown(pageName), "the page"), picture, ids);
}

#else

void requireGnuplot(const std::string& option) { throw CannotAnalyse(option + ": pictures cannot be drawn on this system"); }

void draw(const Picture&, const std::string&) { requireGnuplot("--plot"); }

SvgElement inlineSvg(const Picture&, const std::string&, const std::string&)
{
    requireGnuplot("--html");
    return {};
}

#endif

}  // namespace wqstat
