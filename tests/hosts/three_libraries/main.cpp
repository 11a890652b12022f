// A host that knows nothing but the installed headers, and uses each of the three libraries.
#include <wq_report/csv_report.h>
#include <wq_stat/wq_stat.h>
#include <wq_udf/console.h>
#include <wq_udf/text.h>

#include <fstream>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace {

std::string contentOf(const char* path)
{
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// A host's own analysis: the library calls back through the table of virtual functions.
class Doubled : public wq_lib::BasicXyStatistics {
public:
    wq_lib::data_pair getDataPair(std::size_t i) override
    {
        wq_lib::data_pair pair = BasicXyStatistics::getDataPair(i);
        pair.y *= 2.0;
        return pair;
    }
};

}  // namespace

int main()
{
    using namespace wq_lib;

    message(removeChar(wq_stat_1VersionString, '\n'));
    std::cout << "version number " << wq_stat_1VersionNumber << '\n';
    std::cout << "F(0.95; 4, 10) = " << F_PercentPoint(0.95, 4, 10) << '\n';
    std::cout << "draws of Random: " << Random.getDraws() << '\n';

    BasicStatistics sample;
    sample.copyFrom({4, 1, 3, 2});
    const bool analysed = sample.analyse();
    std::cout << "sample: " << analysed << ' ' << sample.getResult().n << ' ' << sample.getResult().mean << ' '
              << sample.getResult().variance << '\n';

    Doubled pairs;
    pairs.add(1.0, 10.0);
    pairs.add(2.0, 20.0);
    pairs.add(3.0, 30.0);
    BasicStatistics& analysis = pairs;
    std::cout << "doubled: " << analysis.analyse() << ' ' << pairs.getXyResult().y.mean << '\n';

    CsvReport table;
    std::string path = "table.csv";
    table.setFileName(path);
    if (!table.fileOpen()) return 1;
    table.writeComment("two cells in a row");
    table.writeHeader("text|number");
    table.cell("a,b", true);
    table.cell(0.5, 3, false);
    table.writeEol();
    if (!table.fileClose()) return 1;
    display(contentOf("table.csv"));

    std::ofstream("bad.txt") << "1\nnot a number\n";
    try {
        sample.readDataFile("bad.txt");
        return 1;
    } catch (const std::invalid_argument&) {
        errorMessage("bad.txt: " + replicateChar('!', 3));
    }
    return 0;
}
