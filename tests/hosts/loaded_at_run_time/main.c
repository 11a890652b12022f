/* A host that is C, knows no header of the library, loads the three libraries as it runs, and lets them go again.
   Usage: host FOLDER NEW_FOLDER: loads from the folder, moves it, and loads from where it is then. It prints what went wrong. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <malloc.h>
#include <math.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

enum { rounds = 500, settled = 200 }; /* the first loads fill the tables of the C library */

static void fail(const char* what, const char* detail)
{
    printf("%s: %s\n", what, detail);
    exit(1);
}

static void* load(const char* folder, const char* name, int flags)
{
    char path[4096];
    snprintf(path, sizeof path, "%s/%s", folder, name);
    return dlopen(path, flags);
}

static void* symbol(void* library, const char* name)
{
    void* const address = dlsym(library, name);
    if (address == NULL) fail("no symbol", dlerror());
    return address;
}

static int mappings(void)
{
    int lines = 0;
    FILE* const maps = fopen("/proc/self/maps", "r");
    if (maps == NULL) fail("cannot read", "/proc/self/maps");
    for (int c; (c = getc(maps)) != EOF;) lines += c == '\n';
    fclose(maps);
    return lines;
}

/* One load: the version, and functions of C++ by the names that compilers give them. */
static void visit(const char* folder)
{
    static const char* const names[] = {"libwq_stat.so.1", "libwq_report.so.1", "libwq_udf.so.1"};
    void* libraries[3];
    for (int i = 0; i < 3; ++i) {
        libraries[i] = load(folder, names[i], RTLD_NOW | RTLD_LOCAL); /* the first finds the others beside it */
        if (libraries[i] == NULL) fail("not loaded", dlerror());
    }
    if (strstr(symbol(libraries[0], "wq_stat_1VersionString"), "PROJECT:wq_lib-1.1") == NULL) fail("version", "text");
    if (*(const double*)symbol(libraries[0], "wq_stat_1VersionNumber") != 1.1) fail("version", "number");

    double (*factorial)(size_t);
    double (*F_PercentPoint)(double, size_t, size_t);
    *(void**)&factorial = symbol(libraries[0], "_ZN6wq_lib9factorialEm");
    *(void**)&F_PercentPoint = symbol(libraries[0], "_ZN6wq_lib14F_PercentPointEdmm");
    if (factorial(5) != 120.0) fail("function", "factorial");
    if (fabs(F_PercentPoint(0.95, 4, 10) - 3.47805) > 1e-5) fail("function", "F_PercentPoint");
    symbol(libraries[0], "_ZN6wq_lib6RandomE");
    symbol(libraries[1], "_ZTVN6wq_lib9CsvReportE");
    symbol(libraries[2], "_ZTVN6wq_lib9WriteFileE");

    for (int i = 0; i < 3; ++i) dlclose(libraries[i]);
    for (int i = 0; i < 3; ++i)
        if (load(folder, names[i], RTLD_NOW | RTLD_NOLOAD) != NULL) fail("still loaded", names[i]);
}

static void visitOften(const char* folder)
{
    size_t memory = 0;
    int maps = 0;
    for (int i = 0; i < rounds; ++i) {
        visit(folder);
        if (i != settled) continue;
        maps = mappings();
        memory = mallinfo2().uordblks;
    }
    /* The C library keeps small blocks at hand that count as used, now some more, now some less; what a load loses, every load loses. */
    const size_t loads = rounds - settled - 1, used = mallinfo2().uordblks;
    if (used > memory + loads) {
        char detail[64];
        snprintf(detail, sizeof detail, "%zu bytes in %zu loads", used - memory, loads);
        fail("memory that was not given back", detail);
    }
    if (mappings() > maps) fail("grows", "address space");
}

int main(int count, char** arguments)
{
    if (count != 3) return 2;
    visitOften(arguments[1]);
    if (rename(arguments[1], arguments[2]) != 0) fail("cannot move", arguments[1]);
    visitOften(arguments[2]);
    puts("loaded and let go");
    return 0;
}
