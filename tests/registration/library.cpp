// A library that registers itself, as far as who asks it can tell: it appends the call to the file
// that TEST_SERVER_LOG names. CRASHES, HANGS and LACKS_EXPORT make it one that does not.
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <stdexcept>

static void log(const char* text) {
    const char* name = std::getenv("TEST_SERVER_LOG");
    if (std::FILE* file = name != nullptr ? std::fopen(name, "a") : nullptr) {
        const char* word = std::getenv("OAPERUSERTLIBREG");
        std::fprintf(file, "%s [%s]\n", text, word != nullptr ? word : "");
        std::fclose(file);
    }
}

#ifndef LACKS_EXPORT
extern "C" int DllRegisterServer() {
    log("DllRegisterServer");
#ifdef CRASHES
    std::abort();
#endif
#ifdef HANGS
    for (;;) {
        pause();
    }
#endif
    throw std::runtime_error("what is thrown counts as a failure, of which nobody asks");
}
#endif

extern "C" int DllUnregisterServer() {
    log("DllUnregisterServer");
    return -1;
}

extern "C" void registerExitFunction(void* functions) {
    log(functions != nullptr ? "registerExitFunction" : "nothing handed over");
}
