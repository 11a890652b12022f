#include <wq_stat/version.h>

#define WQ_TEXT_OF(number) #number
#define WQ_TEXT(number) WQ_TEXT_OF(number)

const char wq_stat_1VersionString[] = "@(#)PROGRAM:wq_stat." WQ_TEXT(WQ_VERSION_MAJOR) "  PROJECT:wq_lib-" WQ_TEXT(WQ_VERSION) "\n";
const double wq_stat_1VersionNumber = WQ_VERSION;
