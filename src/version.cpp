#include <wq_stat/version.h>

const char wq_stat_1VersionString[] = "@(#)PROGRAM:wq_stat.1  PROJECT:wq_lib-1.1\n";
const double wq_stat_1VersionNumber = 1.1;
