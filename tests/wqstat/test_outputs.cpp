// Where results go: what an output must not replace, when it appears, what it keeps of the file before it, and closed or full places.
#include "commands.h"
#include "data_files.h"
#include "feed.h"

#include <gmock/gmock.h>

#include <sys/inotify.h>
#include <sys/stat.h>

#include <algorithm>
#include <string>
#include <thread>
#include <vector>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using namespace wq_test;
using namespace wq_test::data_files;

const std::string numbers = "1\n2\n3\n";

std::vector<std::string> filesIn(const std::string& folder)
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

// A command line of the shell; WQSTAT in it is the program.
Outcome runShell(std::string line)
{
    const std::string name = "WQSTAT";
    for (std::size_t i = line.find(name); i != std::string::npos; i = line.find(name, i + 1)) line.replace(i, name.size(), wqstat());
    return runCommand({"bash", "-c", line});
}

mode_t modeOf(const std::string& path)
{
    struct stat status {};
    EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
    return status.st_mode & 07777U;
}

// ---------------------------------------------------------------- what must not be replaced

// A folder with data, and other names for them.
struct DataWithManyNames {
    DataWithManyNames()
    {
        data = folder.write("data.svg", numbers);
        std::filesystem::create_hard_link(data, folder.path("hard.svg"));
        std::filesystem::create_symlink(data, folder.path("link.svg"));
        std::filesystem::create_symlink("link.svg", folder.path("chain.svg"));
        for (const char* const name : {"data.svg", "./data.svg", "hard.svg", "link.svg", "chain.svg"}) names.push_back(folder.path(name));
    }

    TempFolder folder;
    std::string data;
    std::vector<std::string> names;
};

TEST(Outputs, neverReplaceTheFileThatStandardInputIs)
{
    const DataWithManyNames files;
    for (const char* const option : {"--export", "--plot"}) {
        for (const std::string& name : files.names) {
            const std::string begin = std::string(option) + ": " + name;
            EXPECT_EQ(run({"describe", "-", option, name}, {files.data, ""}), refused(begin + " is the data file", "describe"));
            EXPECT_EQ(run({"describe", "/dev/stdin", option, name}, {files.data, ""}), refused(begin + " is the data file", "describe"));
            // What a loop of the shell reads is as dear as what the command reads.
            EXPECT_EQ(run({"describe", cavendish, option, name}, {files.data, ""}), refused(begin + " is standard input", "describe"));
        }
    }
    for (const std::string name : {"/dev/stdin", "/dev/fd/0", "/proc/self/fd/0"})
        EXPECT_EQ(run({"describe", "-", "--export", name}, {files.data, ""}),
                  refused("--export: " + name + " is the data file", "describe"));
    EXPECT_EQ(contentOf(files.data), numbers);
}

TEST(Outputs, neverReplaceADataFileUnderAnotherName)
{
    const DataWithManyNames files;
    for (const std::string& input : files.names)
        for (const std::string& name : files.names)
            EXPECT_EQ(run({"describe", input, "--export", name}), refused("--export: " + name + " is the data file", "describe"));
    const Outcome outcome = runShell("WQSTAT describe /dev/fd/7 --export /dev/fd/8 7<'" + files.data + "' 8>>'" + files.data + "'");
    EXPECT_EQ(outcome, refused("--export: /dev/fd/8 is the data file", "describe"));
    EXPECT_EQ(contentOf(files.data), numbers);
}

TEST(Outputs, neverReplaceTheFileThatStandardOutputOrErrorIs)
{
    const TempFolder folder;
    const std::string out = folder.path("out.svg");
    for (const std::string& name : {out, std::string("/dev/stdout"), std::string("/dev/fd/1")}) {
        EXPECT_EQ(run({"describe", cavendish, "--export", name}, {"/dev/null", out}).errors,
                  refused("--export: " + name + " is standard output", "describe").errors);
        EXPECT_EQ(contentOf(out), "");
    }
    EXPECT_EQ(run({"describe", cavendish, "--plot", out}, {"/dev/null", out}).errors,
              refused("--plot: " + out + " is standard output", "describe").errors);
    const Outcome outcome = run({"describe", cavendish, "--export", out}, {"/dev/null", "", out});
    EXPECT_EQ(outcome.status, wrongUsage);
    EXPECT_EQ(contentOf(out), refused("--export: " + out + " is standard error", "describe").errors);
}

TEST(Outputs, neverReplaceOneAnother)
{
    const TempFolder folder;
    std::filesystem::create_symlink("a.svg", folder.path("to-come.svg"));
    const auto both = [&](const std::string& exported, const std::string& picture) {
        return run({"describe", cavendish, "--export", folder.path(exported), "--plot", folder.path(picture)});
    };
    EXPECT_EQ(both("a.svg", "to-come.svg"), refused("--plot: " + folder.path("to-come.svg") + " is the export file", "describe"));
    EXPECT_EQ(both("to-come.svg", "a.svg"), refused("--plot: " + folder.path("a.svg") + " is the export file", "describe"));
    folder.write("a.svg", "old");
    std::filesystem::create_hard_link(folder.path("a.svg"), folder.path("hard.svg"));
    EXPECT_EQ(both("a.svg", "hard.svg"), refused("--plot: " + folder.path("hard.svg") + " is the export file", "describe"));
    EXPECT_EQ(contentOf(folder.path("a.svg")), "old");
}

TEST(Outputs, goDirectlyToWhatIsNoFileOnADisk)
{
    const TempFolder folder;
    const std::string report = run({"describe", cavendish}).output;
    const std::string json = run({"describe", "--json", cavendish}).output;
    run({"describe", cavendish, "--export", folder.path("export")});
    const std::string exported = contentOf(folder.path("export"));
    EXPECT_EQ(runShell("WQSTAT describe " + cavendish + " --export /dev/stdout | cat").output, report + exported);
    EXPECT_EQ(runShell("WQSTAT describe --json " + cavendish + " --export /dev/stdout | cat").output, json + exported);
    EXPECT_EQ(runShell("WQSTAT describe " + cavendish + " --export /dev/fd/7 7>&1 >/dev/null | cat").output, exported);
    EXPECT_EQ(run({"describe", cavendish, "--export", "/dev/null"}).output, report);
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

// ---------------------------------------------------------------- when they appear

TEST(Exports, leaveTheOldFileWhereTheDiskIsFull)
{
    const TempFolder folder;
    const std::string old = folder.write("export", "old\n");
    std::string many;
    for (int i = 0; i < 20000; ++i) many += std::to_string(i) + "\n";
    const std::string data = folder.write("data", many);
    // A limit on the size of files does what a full disk does; the signal that comes with it must not end the program.
    const Outcome outcome = runShell("ulimit -f 16; WQSTAT describe '" + data + "' --export '" + old + "' >/dev/null");
    EXPECT_EQ(outcome, cannotAnalyse(old + ": the export cannot be written: File too large"));
    EXPECT_EQ(contentOf(old), "old\n");
    EXPECT_THAT(filesIn(folder.path("")), ElementsAre("data", "export"));
}

TEST(Exports, thatNobodyMayWriteLeaveTheOldFile)
{
    const TempFolder folder;
    const std::string old = folder.write("export", "old\n");
    ASSERT_EQ(chmod(old.c_str(), 0444), 0);
    Words words = {WQSTAT, "describe", cavendish, "--export", old};
    if (geteuid() == 0) {  // the administrator writes every file
        words = with({"setpriv", "--bounding-set", "-dac_override,-dac_read_search"}, words);
        if (runCommand({"setpriv", "--bounding-set", "-dac_override", "true"}).status != done)
            GTEST_SKIP() << "nothing takes that right away";
    }
    const Outcome outcome = runCommand(words);
    EXPECT_EQ(outcome.errors, "wqstat: " + old + ": the export cannot be written: Permission denied\n");
    EXPECT_EQ(contentOf(old), "old\n");
    EXPECT_THAT(filesIn(folder.path("")), ElementsAre("export"));
}

TEST(Exports, keepThePermissionsOfTheFileTheyReplace)
{
    const TempFolder folder;
    for (const mode_t mode : {0600U, 0664U, 0755U}) {
        const std::string old = folder.write("export", "old\n");
        ASSERT_EQ(chmod(old.c_str(), mode), 0);
        EXPECT_EQ(run({"describe", cavendish, "--export", old}).status, done);
        EXPECT_EQ(modeOf(old), mode);
        EXPECT_THAT(contentOf(old), HasSubstr("# wqstat describe"));
    }
    EXPECT_THAT(filesIn(folder.path("")), ElementsAre("export"));
}

TEST(Exports, ofANewFileHaveThePermissionsOfTheMask)
{
    const TempFolder folder;
    const mode_t before = umask(027);
    run({"describe", cavendish, "--export", folder.path("export")});
    umask(before);
    EXPECT_EQ(modeOf(folder.path("export")), 0640U);
}

TEST(Exports, followLinksAlsoToAFileThatIsNotThereYet)
{
    const TempFolder folder;
    std::filesystem::create_directory(folder.path("elsewhere"));
    std::filesystem::create_symlink("elsewhere/export", folder.path("link"));
    for (const char* const state : {"not there yet", "there"}) {
        EXPECT_EQ(run({"describe", cavendish, "--export", folder.path("link")}).status, done) << state;
        EXPECT_TRUE(std::filesystem::is_symlink(folder.path("link"))) << state;
        EXPECT_FALSE(std::filesystem::is_symlink(folder.path("elsewhere/export"))) << state;
        EXPECT_THAT(contentOf(folder.path("elsewhere/export")), HasSubstr("# wqstat describe")) << state;
    }
    EXPECT_THAT(filesIn(folder.path("elsewhere")), ElementsAre("export"));
    std::filesystem::create_symlink("circle", folder.path("circle"));
    EXPECT_EQ(run({"describe", cavendish, "--export", folder.path("circle")}).errors,
              "wqstat: " + folder.path("circle") + ": the export cannot be written: Too many levels of symbolic links\n");
}

// ---------------------------------------------------------------- standard streams

TEST(StandardOutput, thatIsClosedFailsAndTakesNoFile)
{
    const TempFolder folder;
    const std::string data = folder.write("data", numbers);
    const Outcome expected = cannotAnalyse("standard output: cannot be written: Bad file descriptor");
    for (const AnalysisCommand& command : analyses) {
        // From a pipe: the copy of it is a file that could take the free descriptor.
        std::string line = "printf '" + command.goodLine + "\\n" + command.goodLine + "\\n" + command.goodLine + "\\n' | WQSTAT";
        EXPECT_EQ(runShell(line + joined(withFile(command.arguments, "-")) + " --no-warnings >&-"), expected) << line;
        EXPECT_EQ(runShell(line + joined(withFile(command.arguments, "-")) + " --no-warnings --json >&-"), expected) << line;
    }
    EXPECT_EQ(runShell("WQSTAT describe '" + data + "' --export '" + folder.path("export") + "' >&-"), expected);
    EXPECT_EQ(runShell("WQSTAT describe '" + data + "' --plot '" + folder.path("plot.svg") + "' >&-"), expected);
    for (const std::string words : {"prob factorial 5", "random --reals 3", "--help", "--version", "--generate man"})
        EXPECT_EQ(runShell("WQSTAT " + words + " >&-"), expected) << words;
    EXPECT_EQ(contentOf(data), numbers);
}

TEST(StandardInput, thatIsClosedCannotBeRead)
{
    const TempFolder folder;
    const std::string data = folder.write("data", numbers);
    EXPECT_EQ(runShell("WQSTAT describe - <&-"), cannotAnalyse("standard input: reading failed"));
    EXPECT_EQ(runShell("WQSTAT describe '" + data + "' <&-"), run({"describe", data}));
}

TEST(StandardError, thatIsClosedCostsNothingElse)
{
    const TempFolder folder;
    const std::string data = folder.write("data", "1;2\n2 3\n3;5\n");
    Outcome expected = run({"pairs", data});
    EXPECT_NE(expected.errors, "");
    expected.errors = "";
    EXPECT_EQ(runShell("WQSTAT pairs '" + data + "' 2>&-"), expected);
    EXPECT_EQ(runShell("cat '" + data + "' | WQSTAT pairs - 2>&-"), expected);
    EXPECT_EQ(runShell("WQSTAT pairs nothing <&- >&- 2>&-").status, couldNotAnalyse);
}

// ---------------------------------------------------------------- temporary files

// The names of files that a folder gets while this lives, also of those that it loses again.
class FolderWatch {
public:
    explicit FolderWatch(const std::string& folder) : descriptor(inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    {
        if (inotify_add_watch(descriptor, folder.c_str(), IN_CREATE) < 0) throw std::runtime_error("the folder cannot be watched");
    }
    ~FolderWatch() { close(descriptor); }
    FolderWatch(const FolderWatch&) = delete;
    FolderWatch& operator=(const FolderWatch&) = delete;

    bool sawAny() const
    {
        alignas(inotify_event) char buffer[4096];
        return read(descriptor, buffer, sizeof buffer) > 0;
    }

private:
    int descriptor;
};

TEST(TemporaryFiles, lieInTheFolderThatTMPDIRNames)
{
    const TempFolder folder;
    const std::string tmp = folder.path("tmp");
    std::filesystem::create_directory(tmp);
    const Words setting = {"env", "TMPDIR=" + tmp, WQSTAT, "describe"};
    const struct {
        Words arguments;
        const char* what;
    } rows[] = {
        {{"-"}, "the copy of a pipe"},
        {{cavendish, "--plot", folder.path("plot.svg")}, "what gnuplot is told"},
    };
    for (const auto& row : rows) {
        const FolderWatch watch(tmp);
        const Feed pipe(folder);
        std::thread writer([&] { std::ofstream(pipe.path()) << numbers; });
        EXPECT_EQ(runCommand(with(setting, row.arguments), {pipe.path(), ""}).status, done) << row.what;
        writer.join();
        std::filesystem::remove(pipe.path());
        EXPECT_TRUE(watch.sawAny()) << row.what;
        EXPECT_THAT(filesIn(tmp), IsEmpty()) << row.what;
    }
}

TEST(TemporaryFiles, thatCannotBeMadeAreTold)
{
    const TempFolder folder;
    const std::string missing = folder.path("missing");
    EXPECT_EQ(runShell("seq 5 | TMPDIR='" + missing + "' WQSTAT describe -"),
              cannotAnalyse("no temporary file can be made for standard input in " + missing + ": No such file or directory"));
    const Outcome picture = runShell("TMPDIR='" + missing + "' WQSTAT describe " + cavendish + " --plot '" + folder.path("a.svg") + "'");
    EXPECT_EQ(picture.errors, "wqstat: no temporary file can be made for gnuplot in " + missing + ": No such file or directory\n");
    EXPECT_EQ(picture.status, couldNotAnalyse);
    EXPECT_EQ(runShell("seq 5 | TMPDIR= WQSTAT describe -").status, done);
}

}  // namespace
