// Is the report's decision right? exact_anova FILE: an Anova, its exact p, and whether the report decides differently.
#include <wq_exact/wq_exact.h>

#include <iostream>

int main(int argc, char* argv[])
{
    wq_lib::SingleAnova anova;
    if (argc != 2 || !anova.readDataFile(argv[1]) || !anova.createSeries()) return 1;
    anova.analyse();
    const auto exact = wq_exact::of(anova);
    std::cout << "p = " << exact.F.p << ", eta squared = " << exact.etaSquared << '\n';
    if (!exact.F.accepted)
        std::cout << "nothing is decided: there is no p, or no level between 0 and 1\n";
    else
        std::cout << (exact.reportDiffers() ? "the report decides differently\n" : "the report decides likewise\n");
}
