// --open: the page or the picture is shown by xdg-open, here one that writes down what it was started with.
#include "commands.h"
#include "data_files.h"
#include "variable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

using namespace wq_test;
using namespace wq_test::data_files;

// A folder with an xdg-open alone, or before those of PATH.
class FakeViewer {
public:
    explicit FakeViewer(const std::string& script)
    {
        const std::string program = folder.write("xdg-open", "#!/bin/sh\n" + script);
        chmod(program.c_str(), 0755);
    }

    std::string path() const { return folder.path("") + ":" + std::getenv("PATH"); }
    std::string shown() const { return std::filesystem::exists(folder.path("shown")) ? contentOf(folder.path("shown")) : ""; }

private:
    TempFolder folder;
};

const char* const writesDown = "for word; do printf '%s|' \"$word\" >> \"$(dirname \"$0\")/shown\"; done\necho noise; echo noise >&2\n";

TEST(Open, showsThePageOrElseThePicture)
{
    const TempFolder folder;
    const std::string page = folder.path("-it's a \"page\" $(touch x) \xff.html");
    const std::string picture = folder.path("picture.svg");
    const struct {
        int line;
        Words options;
        std::string shown;
    } rows[] = {{__LINE__, {"--html", page}, page},
                {__LINE__, {"--plot", picture}, picture},
                {__LINE__, {"--plot", picture, "--html", page}, page}};
    const Outcome report = run({"describe", cavendish});
    for (const auto& row : rows) {
        SCOPED_TRACE("row of line " + std::to_string(row.line));
        const FakeViewer viewer(writesDown);
        const Variable path("PATH", viewer.path());
        EXPECT_EQ(run(with({"describe", cavendish, "--open"}, row.options)), report) << "what the viewer says is not heard";
        EXPECT_EQ(viewer.shown(), row.shown + "|");
    }
}

TEST(Open, showsThePageOfColumns)
{
    const TempFolder folder;
    const std::string table = folder.write("t.csv", "a,b\n1,x\n2,y\n");
    const std::string page = folder.path("page.html");
    const FakeViewer viewer(writesDown);
    const Variable path("PATH", viewer.path());
    EXPECT_EQ(run({"columns", table, "--open", "--html", page}), run({"columns", table}));
    EXPECT_EQ(viewer.shown(), page + "|");
    EXPECT_EQ(run({"columns", table, "--open"}), cannotAnalyse("--open: there is nothing to show without --html"));
    const Variable none("PATH", folder.path("none"));
    std::filesystem::remove(page);
    EXPECT_EQ(run({"columns", table, "--open", "--html", page}),
              cannotAnalyse("--open: there is no program xdg-open (Debian package: xdg-utils)"));
    EXPECT_FALSE(std::filesystem::exists(page));
}

TEST(Open, namesTheFileByItsWholePath)
{
    const FakeViewer viewer(writesDown);
    const Variable path("PATH", viewer.path());
    const TempFolder folder;
    const std::string start =
        "cd '" + folder.path("") + "' && '" + wqstat() + "' describe --open --html=-v.html '" + cavendish + "' > report";
    EXPECT_EQ(runCommand({"bash", "-c", start}).status, done);
    EXPECT_EQ(viewer.shown(), std::filesystem::canonical(folder.path("-v.html")).string() + "|");
}

TEST(Open, saysInOneLineThatThereIsNothingToShowOrNobodyToShowIt)
{
    const TempFolder folder;
    const std::string page = folder.path("page.html");
    const FakeViewer fails("exit 3\n");
    {
        const Variable path("PATH", fails.path());
        EXPECT_EQ(run({"describe", cavendish, "--open"}), cannotAnalyse("--open: there is nothing to show without --html or --plot"));
        const Outcome outcome = run({"describe", cavendish, "--open", "--html", page});
        EXPECT_EQ(outcome.status, couldNotAnalyse);
        EXPECT_EQ(outcome.errors, "wqstat: --open: xdg-open failed (exit status 3)\n");
        EXPECT_TRUE(std::filesystem::exists(page));
    }
    std::filesystem::remove(page);
    const Variable path("PATH", folder.path("none"));
    EXPECT_EQ(run({"describe", cavendish, "--open", "--html", page}),
              cannotAnalyse("--open: there is no program xdg-open (Debian package: xdg-utils)"));
    EXPECT_FALSE(std::filesystem::exists(page));
}

TEST(Open, showsNothingThatCouldNotBeWritten)
{
    const FakeViewer viewer(writesDown);
    const Variable path("PATH", viewer.path());
    const TempFolder folder;
    EXPECT_EQ(run({"describe", cavendish, "--open", "--html", folder.path("none/page.html")}).status, couldNotAnalyse);
    EXPECT_EQ(run({"describe", folder.path("missing"), "--open", "--html", folder.path("page.html")}).status, couldNotAnalyse);
    EXPECT_EQ(viewer.shown(), "");
}

}  // namespace
