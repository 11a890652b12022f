#include "contenders.h"

#include <ctime>

namespace wq_bench {

double cpuSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

std::map<std::string, std::map<std::string, std::function<Answers()>>>& answers()
{
    static std::map<std::string, std::map<std::string, std::function<Answers()>>> all;
    return all;
}

void detail::enter(const std::string& row, const std::string& name, std::function<void(benchmark::State&)> timing,
                   std::function<Answers()> once)
{
    benchmark::RegisterBenchmark((row + "/" + name).c_str(), std::move(timing))->UseManualTime()->Unit(benchmark::kMicrosecond);
    answers()[row][name] = std::move(once);
}

}  // namespace wq_bench
