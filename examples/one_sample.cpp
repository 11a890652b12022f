// Describes one sample and tests its mean.
// one_sample FILE MEAN: FILE holds a number per line, MEAN is the mean under the null hypothesis.
#include <wq_stat/basic_stat.h>

#include <exception>
#include <iostream>
#include <string>

int main(int argc, char* argv[])
try {
    if (argc != 3) {
        std::cerr << "usage: one_sample FILE MEAN\n";
        return 2;
    }
    wq_lib::BasicStatistics sample;
    if (!sample.readDataFile(argv[1])) {
        std::cerr << "one_sample: cannot read " << argv[1] << '\n';
        return 1;
    }
    sample.setNullHypothesis(std::stod(argv[2]));
    if (!sample.analyse()) {
        std::cerr << "one_sample: fewer than three observations\n";
        return 1;
    }
    sample.reportConsole();

    // Every figure of the report, and some more, can be read from the record.
    const wq_lib::basic_stat& result = sample.getResult();
    std::cout << "interquartile range: " << result.quartile3 - result.quartile1 << '\n';
} catch (const std::exception& error) {  // a line, or the argument, that is no number
    std::cerr << "one_sample: " << error.what() << '\n';
    return 1;
}
