// Times contenders with Google Benchmark, or prints their answers:
//   wq_bench FOLDER make                  writes the inputs into the folder
//   wq_bench FOLDER answers ROW [NAME]... prints a line for each contender of the row: its name, then its figures
//   wq_bench FOLDER list                  prints every row and its contenders
//   wq_bench FOLDER time [options of Google Benchmark]
#include "contenders.h"
#include "inputs.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

namespace {

int printAnswers(const std::string& row, const std::vector<std::string>& names)
{
    for (const auto& [name, once] : wq_bench::answers()[row]) {
        if (!names.empty() && std::find(names.begin(), names.end(), name) == names.end()) continue;
        std::printf("%s", name.c_str());
        for (const double figure : once()) std::printf(" %.17g", figure);
        std::printf("\n");
        std::fflush(stdout);
    }
    return 0;
}

int printList()
{
    for (const auto& [row, contenders] : wq_bench::answers()) {
        std::printf("%s", row.c_str());
        for (const auto& contender : contenders) std::printf(" %s", contender.first.c_str());
        std::printf("\n");
    }
    return 0;
}

int time(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

}  // namespace

int main(int argc, char** argv)
{
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments.size() < 2) {
        std::cerr << "usage: wq_bench FOLDER make|list|answers|time ...\n";
        return 2;
    }
    wq_bench::setFolder(arguments[0]);
    wq_bench::enterOneSample();
    wq_bench::enterRegression();
    wq_bench::enterGrouping();
    wq_bench::enterReading();
    wq_bench::enterExporting();
    wq_bench::enterDistributions();
    wq_bench::enterRandom();
    try {
        if (arguments[1] == "make") return wq_bench::makeInputs(), 0;
        if (arguments[1] == "list") return printList();
        if (arguments[1] == "answers" && arguments.size() > 2) return printAnswers(arguments[2], {arguments.begin() + 3, arguments.end()});
        if (arguments[1] == "time") return time(argc - 2, argv + 2);
    } catch (const std::exception& e) {
        std::cerr << e.what() << "\n";
        return 1;
    }
    std::cerr << "unknown command " << arguments[1] << "\n";
    return 2;
}
