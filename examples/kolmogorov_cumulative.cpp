// Kolmogorov-Smirnov test: do two samples, counted in the same ordered classes, come from one distribution?
// kolmogorov_cumulative FILE: FILE holds, class by class, frequency in sample 1;frequency in sample 2.
#include <wq_stat/kolmogorov.h>

#include <exception>
#include <iostream>

int main(int argc, char* argv[])
try {
    if (argc != 2) {
        std::cerr << "usage: kolmogorov_cumulative FILE\n";
        return 2;
    }
    wq_lib::KolmogorovSmirnov2 test;
    if (!test.readDataFile(argv[1])) {
        std::cerr << "kolmogorov_cumulative: cannot read " << argv[1] << '\n';
        return 1;
    }

    // The analysis works on the cumulative frequencies and does not build them itself. A second call would append a second series:
    // resetCumulativeFrequency() comes first then. D, the largest difference, only grows: a new comparison takes a new object.
    test.cumulative();
    test.analyse();
    test.reportConsole();

    // The table has five columns: both cumulative frequencies, the same relative to the sample sizes, and their difference.
    test.clearColumnNames();
    for (const char* name : {"sample 1", "sample 2", "rel. 1", "rel. 2", "diff."}) test.addColumnName(name);
    test.listFrequencies();
} catch (const std::exception& error) {  // a line that holds no number
    std::cerr << "kolmogorov_cumulative: " << error.what() << '\n';
    return 1;
}
