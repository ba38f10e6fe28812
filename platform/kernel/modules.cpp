#include "platform/kernel/modules.h"

#include <dlfcn.h>

#include <string>

#include "platform/files/ModuleFile.h"
#include "platform/files/PathSyntax.h"
#include "platform/kernel/sync.h"
#include "platform/messages.h"

namespace juntora {
namespace {

std::string libraryFile(const std::string& path) {
    const bool isBare =
        !files::hasDrive(path) && path.find_first_of(files::SEPARATORS) == std::string::npos;
    const files::Located file = isBare ? files::Located{} : files::locateModule(path);
    return file.path.empty() ? path : file.path;
}

}  // namespace

HMODULE LoadLibraryA(const char* path, const char** why) {
    void* const module = dlopen(libraryFile(path).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (module == nullptr) {
        const char* const reason = dlerror();
        if (why != nullptr) {
            *why = reason;
        }
        SetLastError(ERROR_MOD_NOT_FOUND);
    }
    return static_cast<HMODULE>(module);
}

void FreeLibrary(HMODULE module) { dlclose(module); }

void* GetProcAddress(HMODULE module, const char* name) {
    void* const address = dlsym(module, name);
    if (address == nullptr) {
        SetLastError(ERROR_PROC_NOT_FOUND);
    }
    return address;
}

}  // namespace juntora
