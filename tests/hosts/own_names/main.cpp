// A host whose own sqr and odd stand at global scope, with other meanings.
#define WQ_STAT_NO_GLOBAL_NAMES
#include <wq_stat/wq_stat.h>

const char* sqr(double) { return "my own sqr"; }
const char* odd(long) { return "my own odd"; }

int main()
{
    wq_lib::BasicStatistics sample;
    sample.copyFrom({1.0, 2.0, 3.0});
    const bool own = sqr(2.0)[0] == 'm' && odd(1)[0] == 'm';
    return sample.analyse() && sample.getResult().sumOfSquares == 2.0 && own ? 0 : 1;
}
