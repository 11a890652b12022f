// A host that uses the library before main begins and after it ended. It does not include <iostream>: the library sees to its streams.
#include <wq_stat/wq_stat.h>
#include <wq_udf/console.h>

namespace {

void use(const char* when)
{
    wq_lib::message(when);
    wq_lib::RandomCpp11 fresh;
    wq_lib::Random.initialize();
    wq_lib::message(wq_lib::Random.getInteger() == fresh.getInteger() ? "Random is there" : "no Random");
    wq_lib::BasicStatistics sample;
    sample.copyFrom({1, 2, 3, 4});
    sample.analyse();
    sample.reportConsole();
}

struct LongLived {
    LongLived() { use("before main"); }
    ~LongLived() { use("after main"); }
} longLived;

}  // namespace

int main() { wq_lib::message("main"); }
