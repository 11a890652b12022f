// The one function that the plug-in offers prints a report.
#include <wq_stat/basic_stat.h>

extern "C" __attribute__((visibility("default"))) int report()
{
    wq_lib::BasicStatistics sample;
    sample.copyFrom({1.0, 2.0, 3.0, 4.0});
    if (!sample.analyse()) return 1;
    sample.reportConsole();
    return 0;
}
