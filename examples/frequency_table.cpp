// Sorts a sample into classes of equal width.
// frequency_table FILE CLASSES: FILE holds a number per line; 0 classes means ten.
#include <wq_stat/frequency.h>

#include <cstddef>
#include <exception>
#include <iostream>
#include <string>

int main(int argc, char* argv[])
try {
    if (argc != 3) {
        std::cerr << "usage: frequency_table FILE CLASSES\n";
        return 2;
    }
    wq_lib::Frequency table;
    if (!table.readDataFile(argv[1])) {
        std::cerr << "frequency_table: cannot read " << argv[1] << '\n';
        return 1;
    }

    // Divides the range from the smallest to the largest value; to start elsewhere, call setStartClass() next.
    if (!table.autoClassWidth(static_cast<std::size_t>(std::stoul(argv[2])))) {
        std::cerr << "frequency_table: fewer than three observations\n";
        return 1;
    }
    table.initFrequency(table.getClasses());  // makes the empty table
    table.buildTable();                       // counts; the largest value is left out
    table.analyse();                          // divides the counts by the number of observations, the largest included
    table.reportConsole();
} catch (const std::exception& error) {  // a line, or the argument, that is no number
    std::cerr << "frequency_table: " << error.what() << '\n';
    return 1;
}
