#include "registration/registrars.h"

#include <string_view>

#include "platform/files/installRoot.h"
#include "platform/kernel/modules.h"
#include "registration/boundedRun.h"
#include "registration/paths.h"

namespace juntora {
namespace {

constexpr std::string_view HOST_LIBRARY = "hostAutomation.dll";
constexpr char EXIT_EXPORT[] = "registerExitFunction";
constexpr int FAILED_CALL = static_cast<int>(0x80004005);

RegistrarResult run(const std::string& commandLine) {
    const std::string why = runBounded(commandLine);
    return {why.empty() ? ServerOutcome::DONE : ServerOutcome::FAILED, why};
}

/// Whether the library has taken the exit functions, and must stay.
bool handOver(HMODULE library, const std::string& path, void* exitFunctions) {
    if (exitFunctions == nullptr || path.find(HOST_LIBRARY) == path.npos) {
        return false;
    }
    void* const function = GetProcAddress(library, EXIT_EXPORT);
    if (function == nullptr) {
        return false;
    }
    reinterpret_cast<void (*)(void*)>(function)(exitFunctions);
    return true;
}

}  // namespace

RegistrarResult runProgramRegistrar(const std::string& path, bool doRegister) {
    if (!isThere(path)) {
        return {ServerOutcome::NOT_FOUND};
    }
    return run('"' + path + '"' + (doRegister ? " /regserver" : " /unregserver"));
}

RegistrarResult runControlRegistrar(const std::string& path, bool doRegister) {
    const std::string systemRoot = SystemRoot();
    if (systemRoot.empty() || !isThere(path)) {
        return {ServerOutcome::NOT_FOUND};
    }
    return run(systemRoot + "\\System32\\REGSVR32.EXE " + (doRegister ? "" : " /u ") + " /s " +
               path);
}

RegistrarResult runLibraryRegistrar(const std::string& path, bool doRegister, void* exitFunctions) {
    const char* why = "";
    const HMODULE library = LoadLibraryA(path.c_str(), &why);
    if (library == nullptr) {
        return isThere(path) ? RegistrarResult{ServerOutcome::NOT_LOADED, why}
                             : RegistrarResult{ServerOutcome::NOT_FOUND};
    }
    const char* const name = registrationExport(doRegister);
    void* const function = GetProcAddress(library, name);
    if (function == nullptr) {
        FreeLibrary(library);
        return {ServerOutcome::FAILED, std::string("It has no function ") + name + "."};
    }
    callRegistrationExport(function);
    if (!handOver(library, path, exitFunctions)) {
        FreeLibrary(library);
    }
    return {ServerOutcome::DONE};
}

const char* registrationExport(bool doRegister) {
    return doRegister ? "DllRegisterServer" : "DllUnregisterServer";
}

int callRegistrationExport(void* function) {
    try {
        return reinterpret_cast<int (*)()>(function)();
    } catch (...) {
        return FAILED_CALL;
    }
}

}  // namespace juntora
