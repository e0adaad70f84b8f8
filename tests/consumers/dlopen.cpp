// SPDX-License-Identifier: MIT
#include <cstdio>

#include <dlfcn.h>

// A program that reaches the library by its name at run time, and its functions by their symbols.

namespace {

typedef void *(*GetSettings)();
typedef bool (*GetPort)(const void *settings,
                        unsigned int &port); // a member function, from outside

void *symbol(void *library, const char *name)
{
    void *const address = dlsym(library, name);
    if (!address)
        std::printf("%s\n", dlerror());
    return address;
}

} // namespace

// A sanitizer cannot know the type of a function that is reached by its symbol.
__attribute__((no_sanitize("undefined"))) int main()
{
    void *const library = dlopen("libnuvlaunchersupport.so.1", RTLD_NOW);
    if (!library) {
        std::printf("%s\n", dlerror());
        return 1;
    }
    void *const getSettings = symbol(library, "_Z17getWebAppSettingsv");
    void *const getPort = symbol(library, "_ZNK14WebAppSettings28getGlobalRemoteInspectorPortERj");
    if (!getSettings || !getPort)
        return 1;

    unsigned int port = 0;
    const void *const settings = reinterpret_cast<GetSettings>(getSettings)();
    if (reinterpret_cast<GetPort>(getPort)(settings, port))
        std::printf("port %u\n", port);
    dlclose(library);
    return 0;
}
