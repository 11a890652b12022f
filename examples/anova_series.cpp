// Single classification Anova: do the means of several groups differ?
// anova_series FILE: FILE holds group;observation per line, in any order.
#include <wq_stat/single_anova.h>

#include <exception>
#include <iostream>

int main(int argc, char* argv[])
try {
    if (argc != 2) {
        std::cerr << "usage: anova_series FILE\n";
        return 2;
    }
    wq_lib::SingleAnova anova;
    if (!anova.readDataFile(argv[1])) {
        std::cerr << "anova_series: cannot read " << argv[1] << '\n';
        return 1;
    }

    // Gathers the pairs into groups, in the order in which each group first occurs. Once only: a second call would append
    // every observation again.
    if (!anova.createSeries()) {
        std::cerr << "anova_series: no observations\n";
        return 1;
    }
    anova.analyse();
    anova.listData(0, anova.getGroups().size());
    anova.reportConsole();
    anova.testResults();
} catch (const std::exception& error) {  // a line that holds no number
    std::cerr << "anova_series: " << error.what() << '\n';
    return 1;
}
