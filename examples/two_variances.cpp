// F test: do the variances of two samples differ?
// two_variances FILE1 FILE2: each file holds a number per line.
#include <wq_stat/two_samples.h>

#include <exception>
#include <iostream>

int main(int argc, char* argv[])
try {
    if (argc != 3) {
        std::cerr << "usage: two_variances FILE1 FILE2\n";
        return 2;
    }
    wq_lib::TwoSamples test;         // holds the first sample itself ...
    wq_lib::BasicStatistics second;  // ... and of the second only the result
    if (!test.readDataFile(argv[1]) || !second.readDataFile(argv[2])) {
        std::cerr << "two_variances: cannot read " << argv[1] << " or " << argv[2] << '\n';
        return 1;
    }

    // TwoSamples::analyse() is the F test; the analysis of the first sample is that of the base class. It resets both
    // results, so the second one is handed over after it.
    if (!test.BasicStatistics::analyse() || !second.analyse()) {
        std::cerr << "two_variances: fewer than three observations\n";
        return 1;
    }
    test.setSecondSample(second.getResult());
    test.analyse();
    test.reportConsole();
} catch (const std::exception& error) {  // a line that holds no number
    std::cerr << "two_variances: " << error.what() << '\n';
    return 1;
}
