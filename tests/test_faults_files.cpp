// Files that fail: a disk that is full at every byte of an export, a read error in the middle, files that are none, that vanish,
// shrink or may not be touched. The return value tells, and what an object or a place held before is still there.
#include <wq_report/csv_report.h>
#include <wq_stat/wq_stat.h>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include "support/files.h"
#include "support/object_lives.h"

using namespace wq_lib;
using wq_test::analysed;
using wq_test::contentOf;
using wq_test::fill;
using wq_test::forEveryClass;
using wq_test::prepare;
using wq_test::stateOf;
using wq_test::TempFolder;
using wq_test::told;

// ---------------------------------------------------------------- reading under control

namespace {

/** What happens to the bytes that are read from files while one of these lives. */
struct Reading {
    Reading() { current = this; }
    ~Reading() { current = nullptr; }
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;

    std::size_t errorAfter = static_cast<std::size_t>(-1);  // bytes that come before an error of the device
    std::size_t atOnce = static_cast<std::size_t>(-1);      // bytes in one piece
    bool interrupted = false;                               // a signal comes before each piece
    std::function<void()> afterFirstPiece = [] {};
    std::size_t bytes = 0;
    std::size_t pieces = 0;

    static Reading* current;
};

Reading* Reading::current = nullptr;

}  // namespace

// Takes the place of the C library's, for the streams of the standard library too.
extern "C" ssize_t read(int file, void* buffer, size_t size)
{
    Reading* const reading = Reading::current;
    if (reading == nullptr) return syscall(SYS_read, file, buffer, size);
    static bool signalled = false;
    if (reading->interrupted && !std::exchange(signalled, !signalled)) {
        errno = EINTR;
        return -1;
    }
    if (reading->bytes >= reading->errorAfter) {
        errno = EIO;
        return -1;
    }
    const ssize_t count = syscall(SYS_read, file, buffer, std::min({size, reading->atOnce, reading->errorAfter - reading->bytes}));
    if (count > 0) reading->bytes += static_cast<std::size_t>(count);
    if (reading->pieces++ == 0) reading->afterFirstPiece();
    return count;
}

namespace {

std::size_t openFiles()
{
    const std::filesystem::directory_iterator files("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(files), end(files)));
}

/** Lowers a limit of the process as long as it lives. */
class Limit {
public:
    Limit(__rlimit_resource_t which, std::size_t value) : resource(which)
    {
        getrlimit(resource, &before);
        rlimit limit = before;
        limit.rlim_cur = value;
        if (setrlimit(resource, &limit) != 0) throw std::runtime_error("setrlimit");
    }
    ~Limit() { setrlimit(resource, &before); }
    Limit(const Limit&) = delete;
    Limit& operator=(const Limit&) = delete;

private:
    __rlimit_resource_t resource;
    rlimit before{};
};

/** A disk on which a file has room for so many bytes, as long as it lives. */
class RoomFor {
public:
    explicit RoomFor(std::size_t bytes) : signalBefore(std::signal(SIGXFSZ, SIG_IGN)), limit(RLIMIT_FSIZE, bytes) {}
    ~RoomFor() { std::signal(SIGXFSZ, signalBefore); }
    RoomFor(const RoomFor&) = delete;
    RoomFor& operator=(const RoomFor&) = delete;

private:
    void (*signalBefore)(int);
    Limit limit;
};

/** Root may do anything; this makes it somebody else as long as it lives. */
class Nobody {
public:
    Nobody()
    {
        if (wasRoot && seteuid(65534) != 0) throw std::runtime_error("seteuid");
    }
    ~Nobody()
    {
        if (wasRoot && seteuid(0) != 0) std::abort();
    }
    Nobody(const Nobody&) = delete;
    Nobody& operator=(const Nobody&) = delete;

private:
    bool wasRoot = geteuid() == 0;
};

template <typename T>
struct Export {
    const char* name;
    std::function<bool(T&, const std::string&)> write;
};

/** The exports of a class. */
template <typename T>
std::vector<Export<T>> exportsOf()
{
    std::vector<Export<T>> all = {
        {"exportToR", [](T& o, const std::string& path) { return o.exportToR(path, "a comment\nof two lines"); }}};
    if constexpr (std::is_base_of_v<Frequency, T>)
        all.push_back({"exportTable", [](T& o, const std::string& path) { return o.exportTable(path, "a comment"); }});
    return all;
}

/** Calls f with the name of each class and export, an analysed object, and the export. */
template <typename F>
void forEveryExport(F&& f)
{
    forEveryClass([&](auto c) {
        using T = typename decltype(c)::type;
        for (const Export<T>& e : exportsOf<T>()) {
            SCOPED_TRACE(std::string(c.name) + ": " + e.name);
            const T object = analysed<T>(9, "held before");
            f(object, e.write);
        }
    });
}

}  // namespace

// ---------------------------------------------------------------- exports

TEST(FullDisk, atEveryByteOfAnExport)
{
    const TempFolder folder;
    const std::string path = folder.path("export");
    const std::size_t filesBefore = openFiles();
    forEveryExport([&](auto object, const auto& write) {
        ASSERT_TRUE(write(object, path));
        const std::string whole = contentOf(path);
        const std::string before = stateOf(object, folder);
        ASSERT_GT(whole.size(), 20u);
        for (std::size_t k = 0; k <= whole.size() + 1; ++k) {
            std::filesystem::remove(path);  // some file systems are slow to write a file anew
            bool written;
            {
                const RoomFor room(k);
                written = write(object, path);
            }
            ASSERT_EQ(written, k >= whole.size()) << k;
            ASSERT_EQ(contentOf(path), whole.substr(0, k)) << "what there was room for";
        }
        EXPECT_EQ(stateOf(object, folder), before);
        EXPECT_TRUE(write(object, path));
        EXPECT_EQ(contentOf(path), whole);
    });
    EXPECT_EQ(openFiles(), filesBefore);
}

TEST(FullDisk, afterManyBuffersOfAnExport)
{
    const TempFolder folder;
    const std::string path = folder.path("export");
    BasicXyStatistics pairs;
    fill(pairs, 5000);
    ASSERT_TRUE(pairs.exportToR(path, "c"));
    const std::string whole = contentOf(path);
    ASSERT_GT(whole.size(), 80000u);
    std::vector<std::size_t> sizes = {whole.size() - 1, whole.size()};
    for (const std::size_t buffer : {4096u, 8191u, 8192u, 16384u, 65536u})
        for (const std::size_t size : {buffer - 1, buffer, buffer + 1}) sizes.push_back(size);
    for (const std::size_t k : sizes) {
        bool written;
        {
            const RoomFor room(k);
            written = pairs.exportToR(path, "c");
        }
        EXPECT_EQ(written, k == whole.size()) << k;
        EXPECT_EQ(contentOf(path), whole.substr(0, k)) << k;
    }
}

TEST(FullDisk, anAppendedFileKeepsWhatItHeld)
{
    const TempFolder folder;
    std::string path = folder.path("table");
    const std::string held = "held before\n", row = "a text,12345.678\n";
    for (std::size_t k = 0; k <= row.size(); ++k) {
        folder.write("table", held);
        CsvReport file;
        file.setFileName(path);
        file.setAppend(true);
        bool written;
        {
            const RoomFor room(held.size() + k);
            ASSERT_TRUE(file.fileOpen());
            file.cell("a text", true);
            file.cell(12345.678, 3, false);
            file.writeEol();
            written = file.fileClose();
        }
        EXPECT_EQ(written, k == row.size()) << k;
        EXPECT_EQ(contentOf(path), held + row.substr(0, k)) << k;
        ASSERT_TRUE(file.fileOpen()) << "the failure is forgotten";
        EXPECT_TRUE(file.fileClose());
    }
}

TEST(Exports, whereNoFileCanBeWritten)
{
    const TempFolder folder;
    std::filesystem::create_directories(folder.path("folder/inner"));
    const std::string file = folder.write("file", "held before"), locked = folder.write("locked", "held before");
    std::filesystem::create_directory(folder.path("closed"));
    std::filesystem::permissions(folder.path("closed"), std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec);
    std::filesystem::permissions(locked, std::filesystem::perms::owner_read);
    std::filesystem::permissions(folder.path(""), std::filesystem::perms::all);
    const std::string tooLong(5000, 'x');
    const std::size_t filesBefore = openFiles();
    forEveryExport([&](auto object, const auto& write) {
        const std::string before = stateOf(object, folder);
        for (const std::string& path : {folder.path("folder"), folder.path("folder/"), folder.path("missing/file"), file + "/inside",
                                        std::string(), folder.path(tooLong), std::string("/proc/version")}) {
            SCOPED_TRACE(path.substr(0, 200));
            EXPECT_FALSE(write(object, path));
        }
        bool locked1, closed;
        {
            const Nobody nobody;
            locked1 = write(object, locked);
            closed = write(object, folder.path("closed/file"));
        }
        EXPECT_FALSE(locked1) << "a file that may not be written";
        EXPECT_FALSE(closed) << "a folder in which no file may be made";
        EXPECT_EQ(stateOf(object, folder), before);
    });
    EXPECT_EQ(contentOf(file), "held before");
    EXPECT_EQ(contentOf(locked), "held before");
    EXPECT_TRUE(std::filesystem::is_empty(folder.path("folder/inner")));
    EXPECT_TRUE(std::filesystem::is_empty(folder.path("closed")));
    EXPECT_EQ(openFiles(), filesBefore);
}

TEST(Exports, whatIsWrittenWithoutAFileIsInNone)
{
    const TempFolder folder;
    std::string path = folder.path("table"), missing = folder.path("missing/table");
    CsvReport file;
    file.cell("before any file", false);
    file.setFileName(missing);
    EXPECT_FALSE(file.fileOpen());
    file.cell("when it could not be opened", false);
    file.setFileName(path);
    ASSERT_TRUE(file.fileOpen());
    file.cell("in it", false);
    EXPECT_TRUE(file.fileClose());
    file.cell("behind it", false);
    EXPECT_EQ(contentOf(path), "in it");
    file.setAppend(true);
    ASSERT_TRUE(file.fileOpen());
    EXPECT_TRUE(file.fileClose());
    EXPECT_EQ(contentOf(path), "in it");
}

TEST(Exports, throughAPipe)
{
    const TempFolder folder;
    const std::string path = folder.path("pipe"), plain = folder.path("file");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    BasicXyStatistics pairs;
    fill(pairs, 20000);  // more than the pipe holds
    ASSERT_TRUE(pairs.exportToR(plain, "c"));

    std::string received;
    std::thread reader([&] { received = contentOf(path); });
    const bool written = pairs.exportToR(path, "c");
    reader.join();
    EXPECT_TRUE(written);
    EXPECT_EQ(received, contentOf(plain));

    auto* const before = std::signal(SIGPIPE, SIG_IGN);  // a host that does not ends here, as with any pipe
    std::thread leaver([&] { close(open(path.c_str(), O_RDONLY)); });
    EXPECT_FALSE(pairs.exportToR(path, "c")) << "nobody reads";
    leaver.join();
    std::signal(SIGPIPE, before);
}

// ---------------------------------------------------------------- data files

namespace {

/** Lines that each class reads: values, pairs and a comment. */
std::vector<std::string> someLines(std::size_t count)
{
    std::vector<std::string> lines;
    for (std::size_t i = 0; i < count; ++i)
        lines.push_back(i == 3 ? "# a comment\n"
                               : std::to_string(i * i % 17) + "." + std::to_string(i % 10) + ";" + std::to_string(i) + "\n");
    return lines;
}

std::string joined(const std::vector<std::string>& lines, std::size_t count)
{
    std::string text;
    for (std::size_t i = 0; i < count; ++i) text += lines[i];
    return text;
}

/** Calls f with an object that holds data already, and the way it reads a file. */
template <typename F>
void forEveryReader(F&& f)
{
    forEveryClass([&](auto c) {
        using T = typename decltype(c)::type;
        SCOPED_TRACE(c.name);
        f(analysed<T>(3, "held before"), [](T& o, const std::string& path) { return o.readDataFile(path); });
    });
    SCOPED_TRACE("a series");
    f(analysed<LinearRegressionMultiY>(3, "held before"),
      [](LinearRegressionMultiY& o, const std::string& path) { return o.readSeriesFile(path); });
}

/** The states after reading the first 0, 1, ... lines; before any reading for nothing at all. */
template <typename T, typename Read>
std::vector<std::string> statesAfter(const T& object, const Read& read, const std::vector<std::string>& lines, const TempFolder& folder)
{
    std::vector<std::string> states;
    for (std::size_t n = 0; n <= lines.size(); ++n) {
        T changed = object;
        std::filesystem::remove(folder.path("data"));
        EXPECT_TRUE(read(changed, folder.write("data", joined(lines, n))));
        states.push_back(stateOf(changed, folder));
    }
    return states;
}

}  // namespace

TEST(DataFiles, anErrorAtEveryByte)  // whole lines before it are kept or not, as they came; never a part of one
{
    const TempFolder folder;
    const std::vector<std::string> lines = someLines(8);
    const std::string content = joined(lines, lines.size());
    const std::size_t filesBefore = openFiles();
    forEveryReader([&](auto object, const auto& read) {
        const std::vector<std::string> states = statesAfter(object, read, lines, folder);
        for (std::size_t k = 0; k <= content.size(); ++k) {
            auto changed = object;
            bool done;
            {
                Reading reading;
                reading.errorAfter = k;
                done = read(changed, folder.path("data"));
            }
            ASSERT_FALSE(done) << k;
            const auto state = std::find(states.begin(), states.end(), stateOf(changed, folder));
            ASSERT_NE(state, states.end()) << k;
            const auto whole =
                static_cast<std::size_t>(std::count(content.begin(), content.begin() + static_cast<std::ptrdiff_t>(k), '\n'));
            ASSERT_LE(static_cast<std::size_t>(state - states.begin()), whole + 1) << k;  // a last line without its end reads the same
        }
        auto changed = object;
        EXPECT_TRUE(read(changed, folder.path("data")));
        EXPECT_EQ(stateOf(changed, folder), states.back());
    });
    EXPECT_EQ(openFiles(), filesBefore);
}

TEST(DataFiles, anErrorBehindTheFirstBlocks)  // what was read before stays: more than a block of 2^16 bytes, and nothing false
{
    const TempFolder folder;
    std::string content;
    for (int i = 0; i < 40000; ++i) content += std::to_string(1000 + i % 1000) + "\n";
    const std::string path = folder.write("data", content);
    BasicStatistics sample;
    sample.add(-1.0);
    {
        Reading reading;
        reading.errorAfter = 150001;
        EXPECT_FALSE(sample.readDataFile(path));
    }
    const std::size_t n = sample.getSampleSize();
    EXPECT_GT(n, 1 + 65536u / 5u);
    EXPECT_LE(n, 1 + 150001u / 5u);
    EXPECT_EQ(sample.getDataPoint(0), -1.0);
    for (std::size_t i = 1; i < n; ++i) ASSERT_EQ(sample.getDataPoint(i), 1000.0 + static_cast<double>((i - 1) % 1000));
}

TEST(DataFiles, anErrorOfTheSystem)  // no memory is mapped at its first address
{
    const std::string path = "/proc/self/mem";
    if (access(path.c_str(), R_OK) != 0) GTEST_SKIP() << "no " << path;
    forEveryReader([&](auto object, const auto& read) { EXPECT_FALSE(read(object, path)); });
}

TEST(DataFiles, readInPiecesAndInterrupted)
{
    const TempFolder folder;
    const std::vector<std::string> lines = someLines(20);
    forEveryReader([&](auto object, const auto& read) {
        auto expected = object;
        const std::string path = folder.write("data", joined(lines, lines.size()));
        ASSERT_TRUE(read(expected, path));
        for (const std::size_t piece : {std::size_t{1}, std::size_t{7}, std::size_t{4096}}) {
            auto changed = object;
            bool done;
            std::size_t pieces;
            {
                Reading reading;
                reading.atOnce = piece;
                reading.interrupted = true;
                done = read(changed, path);
                pieces = reading.pieces;
            }
            EXPECT_TRUE(done);
            EXPECT_GT(pieces, joined(lines, lines.size()).size() / piece);
            EXPECT_EQ(stateOf(changed, folder), stateOf(expected, folder));
        }
    });
}

TEST(DataFiles, thatVanishOrShrinkWhileTheyAreRead)
{
    constexpr std::size_t lines = 60000;  // of 5 bytes, in several blocks
    const TempFolder folder;
    std::string content;
    for (std::size_t i = 0; i < lines; ++i) content += std::to_string(1000 + i % 1000) + "\n";
    const auto sizeAfter = [&](const std::function<void(const std::string&)>& change) {
        const std::string path = folder.write("data", content);
        BasicStatistics sample;
        sample.add(-1.0);
        Reading reading;
        reading.atOnce = 1000;
        reading.afterFirstPiece = [&] { change(path); };
        EXPECT_TRUE(sample.readDataFile(path));
        for (std::size_t i = 1; i < sample.getSampleSize(); ++i)
            if (sample.getDataPoint(i) != 1000.0 + static_cast<double>((i - 1) % 1000)) return std::size_t{0};
        return sample.getSampleSize() - 1;
    };
    // A file without a name is read to its end.
    EXPECT_EQ(sizeAfter([](const std::string& path) { std::filesystem::remove(path); }), lines);
    EXPECT_EQ(sizeAfter([](const std::string& path) { std::filesystem::rename(path, path + " elsewhere"); }), lines);
    // A file that shrinks ends where it then ends; nothing distinguishes it from one that always was so short.
    EXPECT_EQ(sizeAfter([](const std::string& path) { std::filesystem::resize_file(path, 100000); }), 20000u);
    EXPECT_EQ(sizeAfter([](const std::string& path) { std::filesystem::resize_file(path, 0); }), 200u);
    EXPECT_EQ(sizeAfter([](const std::string& path) { std::ofstream(path, std::ios::app) << "1000\n"; }), lines + 1);
}

TEST(DataFiles, throughAPipe)
{
    const TempFolder folder;
    const std::string path = folder.path("pipe");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    const std::vector<std::string> lines = someLines(20);
    forEveryReader([&](auto object, const auto& read) {
        auto expected = object;
        ASSERT_TRUE(read(expected, folder.write("data", joined(lines, lines.size()))));
        auto changed = object;
        std::thread writer([&] {
            const int pipe = open(path.c_str(), O_WRONLY);
            const std::string content = joined(lines, lines.size());
            for (std::size_t i = 0; i < content.size(); i += 7) {
                const std::string piece = content.substr(i, 7);
                if (write(pipe, piece.data(), piece.size()) != static_cast<ssize_t>(piece.size())) break;
            }
            close(pipe);
        });
        const bool done = read(changed, path);
        writer.join();
        EXPECT_TRUE(done);
        changed.setDataFile(""), expected.setDataFile("");
        EXPECT_EQ(stateOf(changed, folder), stateOf(expected, folder));
    });
}

TEST(DataFiles, thatMayNotBeRead)
{
    const TempFolder folder;
    const std::string path = folder.write("data", "1;2\n3;4\n");
    std::filesystem::permissions(path, std::filesystem::perms::none);
    std::filesystem::permissions(folder.path(""), std::filesystem::perms::all);
    forEveryReader([&](auto object, const auto& read) {
        auto expected = object;
        bool done, missing;
        {
            const Nobody nobody;
            done = read(object, path);
            missing = read(expected, path + " missing");
        }
        EXPECT_FALSE(done);
        EXPECT_FALSE(missing);
        object.setDataFile(""), expected.setDataFile("");
        EXPECT_EQ(stateOf(object, folder), stateOf(expected, folder)) << "as with a file that is not there";
        EXPECT_EQ(object.getSampleSize(), 3u);
    });
}

TEST(DataFiles, withoutAFileDescriptorLeft)
{
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the undefined-behaviour sanitizer opens a pipe to look at an object, and without one takes it for none";
#endif
    const TempFolder folder;
    const std::string path = folder.write("data", "1;2\n3;4\n");
    forEveryReader([&](auto object, const auto& read) {
        bool done, written;
        {
            const Limit limit(RLIMIT_NOFILE, 3);
            done = read(object, path);
            written = object.exportToR(folder.path("export"), "c");
        }
        EXPECT_FALSE(done);
        EXPECT_FALSE(written);
        EXPECT_FALSE(std::filesystem::exists(folder.path("export")));
        EXPECT_EQ(object.getSampleSize(), 3u);
        EXPECT_TRUE(read(object, path));
    });
}

TEST(DataFiles, anExceptionAtEveryLine)  // leaves what was read before it, and what was there before that
{
    const TempFolder folder;
    const std::vector<std::string> lines = someLines(8);
    const std::size_t filesBefore = openFiles();
    forEveryReader([&](auto object, const auto& read) {
        const std::vector<std::string> states = statesAfter(object, read, lines, folder);
        for (std::size_t n = 0; n <= lines.size(); ++n) {
            for (const char* const bad : {"1e400x;1e400\n", "x;y\n"}) {
                std::vector<std::string> broken = lines;
                broken.insert(broken.begin() + static_cast<std::ptrdiff_t>(n), bad);
                std::filesystem::remove(folder.path("data"));
                const std::string path = folder.write("data", joined(broken, broken.size()));
                auto changed = object;
                if (*bad == 'x')
                    EXPECT_THROW(read(changed, path), std::invalid_argument);
                else
                    EXPECT_THROW(read(changed, path), std::out_of_range);
                ASSERT_EQ(stateOf(changed, folder), states[n]) << n;
            }
        }
    });
    EXPECT_EQ(openFiles(), filesBefore);
}

TEST(DataFiles, thatPromiseMoreThanAnyMemoryHolds)
{
    const TempFolder folder;
    constexpr std::size_t count = 40000;
    std::string text;
    for (std::size_t i = 0; i < count; ++i) text += "1\n";
    const std::string path = folder.write("data", text + "<<\n");
    std::error_code refused;
    std::filesystem::resize_file(path, std::uintmax_t{1} << 43, refused);  // a hole, which takes no room
    if (refused) GTEST_SKIP() << "the file system has no files of that size";
    wq_lib::BasicStatistics sample;
    EXPECT_TRUE(sample.readDataFile(path));
    EXPECT_EQ(sample.getSampleSize(), count);
}
