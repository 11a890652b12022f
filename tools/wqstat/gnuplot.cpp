#include "gnuplot.h"

#include "arguments.h"
#include "failure.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string_view>
#include <system_error>
#include <utility>

#if defined(__unix__) || defined(__APPLE__)
#  include <fcntl.h>
#  include <spawn.h>
#  include <sys/wait.h>
#  include <unistd.h>
extern char** environ;
#endif

namespace wqstat {

namespace {

namespace fs = std::filesystem;

/** A kind of picture file: how it is made, and how a whole one begins and ends. */
struct Format {
    const char* extension;
    const char* settings;  ///< the terminal, and what makes its pictures look like those of the others
    std::string_view begin;
    std::string_view end;
    bool drawsText;  ///< with the fonts of this system, where svg leaves that to the viewer
};

constexpr Format formats[] = {
    {".svg",
     "set terminal svg size 800,600 dynamic font 'sans-serif,15' noenhanced background '#ffffff'\n"
     "titleFont = ',18'; smallFont = ',13'; mark = 0.8; keySpacing = 0.97; xTicShift = 0.5\n",
     "<?xml", "</svg>", false},
    {".png",
     "set terminal pngcairo size 800,600 font 'sans,11' noenhanced background '#ffffff'\n"
     "titleFont = ',13'; smallFont = ',9.5'; mark = 1.3; keySpacing = 1.15; xTicShift = 0.0\n",
     "\x89PNG", "IEND", true},
    {".pdf",
     "set terminal pdfcairo size 8.333in,6.25in font 'sans,11' fontscale 0.75 linewidth 1.5 noenhanced background '#ffffff'\n"
     "titleFont = ',13'; smallFont = ',9.5'; mark = 0.9; keySpacing = 1.15; xTicShift = 0.0\n",
     "%PDF-", "%%EOF", true},
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

/**
 * The text with '?' for characters that only rarer fonts have. The cairo terminals of gnuplot draw a character that no font has as a box
 * of the size of the picture.
 */
std::string inCommonScripts(const std::string& text)
{
    struct Range {
        unsigned first;
        unsigned last;
    };
    static constexpr Range common[] = {{0x00, 0x7e},     {0xa0, 0x2e9},    {0x384, 0x525},   {0x5d0, 0x5ea},   {0x621, 0x63a},
                                       {0x640, 0x652},   {0x10d0, 0x10fa}, {0x1e00, 0x1efb}, {0x2010, 0x2027}, {0x2030, 0x205e},
                                       {0x2070, 0x208e}, {0x20a0, 0x20b5}, {0x2100, 0x214e}, {0x2190, 0x22ff}};
    std::string result;
    for (std::size_t i = 0; i < text.size();) {
        const auto byte = static_cast<unsigned char>(text[i]);
        const std::size_t length = byte < 0xc0 ? 1 : byte < 0xe0 ? 2 : byte < 0xf0 ? 3 : 4;
        unsigned code = length == 1 ? byte : byte & (0x7fU >> length);
        for (std::size_t k = 1; k < length && i + k < text.size(); ++k)
            code = code << 6 | (static_cast<unsigned char>(text[i + k]) & 0x3fU);
        const bool drawn =
            std::any_of(std::begin(common), std::end(common), [code](Range range) { return range.first <= code && code <= range.last; });
        result += drawn ? text.substr(i, length) : "?";
        i += length;
    }
    return result;
}

/** A full disk stops a picture short, and gnuplot does not say so. */
bool isWhole(const fs::path& file, const Format& format)
{
    std::ifstream stream(file, std::ios_base::binary);
    std::string begin(format.begin.size(), '\0');
    if (!stream.read(begin.data(), static_cast<std::streamsize>(begin.size())) || begin != format.begin) return false;
    constexpr std::streamoff tail = 32;
    stream.seekg(0, std::ios_base::end);
    stream.seekg(-std::min<std::streamoff>(tail, stream.tellg()), std::ios_base::end);
    const std::string end{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    return end.find(format.end) != std::string::npos;
}

std::string reason(int error) { return std::generic_category().message(error); }

/** The program's path; empty when it is not there. */
std::string gnuplotPath()
{
    const char* const path = std::getenv("PATH");
    const std::string folders = path == nullptr ? "/usr/bin:/bin" : path;
    for (std::size_t begin = 0; begin <= folders.size();) {
        const std::size_t end = std::min(folders.find(':', begin), folders.size());
        const std::string candidate = folders.substr(begin, end - begin) + "/gnuplot";
        std::error_code ignored;
        // An empty entry would mean the current folder, which nobody wants to run programs from.
        if (end > begin && fs::is_regular_file(candidate, ignored) && access(candidate.c_str(), X_OK) == 0) return candidate;
        begin = end + 1;
    }
    return "";
}

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

/** A file without a name; it goes with the program. */
File temporaryFile(const std::string& content)
{
    File file(std::tmpfile(), std::fclose);
    if (!file) throw CannotAnalyse("no temporary file can be made for gnuplot: " + reason(errno));
    if (std::fwrite(content.data(), 1, content.size(), file.get()) != content.size() || std::fflush(file.get()) != 0)
        throw CannotAnalyse("the temporary file for gnuplot cannot be written");
    std::rewind(file.get());
    return file;
}

std::string contentOf(std::FILE* file)
{
    std::rewind(file);
    std::string content(4096, '\0');
    content.resize(std::fread(content.data(), 1, content.size(), file));
    return content;
}

/** The picture beside its place, under a name of its own until it is whole. */
class PictureFile {
public:
    explicit PictureFile(const std::string& fileName) : shownName(shown(fileName)), target(fileName)
    {
        std::error_code ignored;
        if (fs::is_symlink(target, ignored)) target = fs::weakly_canonical(target, ignored);  // the file behind a link is replaced
        if (fs::exists(target, ignored) && !fs::is_regular_file(target, ignored)) throw CannotAnalyse(shownName + ": is no file");
        for (int attempt = 0; attempt < 100 && descriptor < 0; ++attempt) {  // a killed run may have left its own behind
            unfinished = target.parent_path() / (".wqstat-" + std::to_string(getpid()) + "-" + std::to_string(attempt) + ".part");
            descriptor = open(unfinished.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
            if (descriptor < 0 && errno != EEXIST) break;
        }
        if (descriptor < 0) throw CannotAnalyse(shownName + ": the picture cannot be written: " + reason(errno));
    }
    ~PictureFile()
    {
        close(descriptor);
        std::error_code ignored;
        if (!kept) fs::remove(unfinished, ignored);
    }
    PictureFile(const PictureFile&) = delete;
    PictureFile& operator=(const PictureFile&) = delete;

    int output() const { return descriptor; }

    void keep(const Format& format)
    {
        std::error_code error;
        if (!isWhole(unfinished, format)) throw CannotAnalyse(shownName + ": the picture cannot be written");
        fs::rename(unfinished, target, error);
        if (error) throw CannotAnalyse(shownName + ": the picture cannot be written: " + error.message());
        kept = true;
    }

private:
    std::string shownName;
    fs::path target;
    fs::path unfinished;
    int descriptor = -1;
    bool kept = false;
};

/** Ends when gnuplot has. Its commands are a file, not a pipe, which would kill this program when gnuplot stopped reading. */
int run(const std::string& program, std::FILE* commands, int picture, std::FILE* messages)
{
    std::signal(SIGCHLD, SIG_DFL);  // where a parent had it ignored, the exit status would be lost
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, fileno(commands), STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, picture, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, fileno(messages), STDERR_FILENO);
    std::string name = program;
    std::string noInitialisation = "-d";  // not the user's settings
    char* const words[] = {name.data(), noInitialisation.data(), nullptr};
    pid_t child = 0;
    const int failed = posix_spawn(&child, program.c_str(), &actions, nullptr, words, environ);
    posix_spawn_file_actions_destroy(&actions);
    if (failed != 0) throw CannotAnalyse(shown(program) + ": cannot be started: " + reason(failed));
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

/** The last line that says something: before it gnuplot repeats the command. */
std::string lastLine(const std::string& text)
{
    const std::size_t end = text.find_last_not_of(" \t\r\n");
    if (end == std::string::npos) return "";
    const std::size_t begin = text.find_last_of('\n', end);
    const std::string line = text.substr(begin + 1, end - begin);  // npos + 1 is 0
    return line.substr(line.find_first_not_of(" \t"));
}

std::string failure(int status, const std::string& messages)
{
    std::string text = "gnuplot failed";
    if (WIFSIGNALED(status))
        text += " (signal " + std::to_string(WTERMSIG(status)) + ")";
    else
        text += " (exit status " + std::to_string(WEXITSTATUS(status)) + ")";
    const std::string line = lastLine(messages);
    return line.empty() ? text : text + ": " + shown(line);
}

#endif

}  // namespace

void checkPictureName(const std::string& fileName)
{
    if (formatOf(fileName) == nullptr) throw WrongUsage("--plot: " + inQuotes(fileName) + " does not end in .svg, .png or .pdf");
}

#if defined(__unix__) || defined(__APPLE__)

void requireGnuplot()
{
    if (gnuplotPath().empty()) throw CannotAnalyse("--plot: there is no program gnuplot (Debian package: gnuplot-nox)");
}

void draw(const std::string& commands, const std::string& fileName)
{
    requireGnuplot();
    checkPictureName(fileName);
    const Format& format = *formatOf(fileName);
    const File input =
        temporaryFile("set encoding utf8\n" + std::string(format.settings) + (format.drawsText ? inCommonScripts(commands) : commands));
    const File messages = temporaryFile("");
    PictureFile picture(fileName);
    const int status = run(gnuplotPath(), input.get(), picture.output(), messages.get());
    if (status != 0) throw CannotAnalyse(shown(fileName) + ": " + failure(status, contentOf(messages.get())));
    picture.keep(format);
}

#else

void requireGnuplot() { throw CannotAnalyse("--plot: pictures cannot be drawn on this system"); }

void draw(const std::string&, const std::string&) { requireGnuplot(); }

#endif

}  // namespace wqstat
