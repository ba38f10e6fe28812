// Code that is loaded while the program runs. Any thread may call these.
#pragma once

#include "platform/types.h"

namespace juntora {

/// A shared library in this process.
struct Module;
using HMODULE = Module*;

/// Loads a library with all that it needs, once for all callers, until it has been freed as often.
/// Where nothing is at a path that ends in ".dll" or ".ocx", ".so" in its place is taken; a name
/// without a folder is the system's to find. Null on failure: ERROR_MOD_NOT_FOUND, with the
/// system's own words in `*why`, which may be null. `why` belongs to the layer, until the thread's
/// next call.
HMODULE LoadLibraryA(const char* path, const char** why);
/// Nobody may be in the library any more who is not to fall with it.
void FreeLibrary(HMODULE module);

/// The address of a function or object that the library offers; null, with ERROR_PROC_NOT_FOUND,
/// where it offers none of that name.
void* GetProcAddress(HMODULE module, const char* name);

}  // namespace juntora
