/* Loads the plug-in named on its command line, and calls it. */
#include <dlfcn.h>
#include <stdio.h>

int main(int argc, char** argv)
{
    int (*report)(void);
    void* const plug_in = argc == 2 ? dlopen(argv[1], RTLD_NOW | RTLD_LOCAL) : NULL;
    if (plug_in == NULL) {
        fprintf(stderr, "not loaded: %s\n", argc == 2 ? dlerror() : "no plug-in named");
        return 1;
    }
    *(void**)&report = dlsym(plug_in, "report");
    return report == NULL ? 1 : report();
}
