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

RegistrarResult resultOf(const BoundedRun& run) {
    return {run.why.empty() ? ServerOutcome::DONE : ServerOutcome::FAILED, run.why};
}

std::string lackOf(const char* function) {
    return std::string("It has no function ") + function + ".";
}

/// What the system's registrar has made of a library. What that answered does not count.
RegistrarResult libraryResult(const BoundedRun& run, const char* function) {
    if (!run.why.empty()) {
        return resultOf(run);
    }
    switch (run.exitCode) {
        case REGISTRAR_DONE:
        case REGISTRAR_REFUSED:
            return {ServerOutcome::DONE};
        case REGISTRAR_NOT_LOADED:
            return {ServerOutcome::NOT_LOADED};
        case REGISTRAR_NO_FUNCTION:
            return {ServerOutcome::FAILED, lackOf(function)};
        default:
            return {ServerOutcome::FAILED, "It took its registrar down, which ended with " +
                                               std::to_string(run.exitCode) + "."};
    }
}

/// Whether the library has taken the exit functions, and must stay.
bool handOver(HMODULE library, const std::string& path, void* exitFunctions) {
    if (path.find(HOST_LIBRARY) == path.npos) {
        return false;
    }
    void* const function = GetProcAddress(library, EXIT_EXPORT);
    if (function == nullptr) {
        return false;
    }
    reinterpret_cast<void (*)(void*)>(function)(exitFunctions);
    return true;
}

/// Has the system's registrar run for a library that is there.
template <typename ResultOf>
RegistrarResult runSystemRegistrar(const std::string& path, bool doRegister, ResultOf resultOfRun) {
    if (!isThere(path)) {
        return {ServerOutcome::NOT_FOUND};
    }
    const std::string systemRoot = SystemRoot();
    if (systemRoot.empty()) {
        return {ServerOutcome::NO_REGISTRAR,
                "Name the suite's folder in JUNTORA_ROOT, or the system's in systemroot."};
    }
    return resultOfRun(runBounded(systemRoot + "\\System32\\REGSVR32.EXE " +
                                  (doRegister ? "" : " /u ") + " /s " + path));
}

RegistrarResult askInThisProcess(const std::string& path, bool doRegister, void* exitFunctions) {
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
        return {ServerOutcome::FAILED, lackOf(name)};
    }
    callRegistrationExport(function);
    if (!handOver(library, path, exitFunctions)) {
        FreeLibrary(library);
    }
    return {ServerOutcome::DONE};
}

}  // namespace

RegistrarResult runProgramRegistrar(const std::string& path, bool doRegister) {
    if (!isThere(path)) {
        return {ServerOutcome::NOT_FOUND};
    }
    return resultOf(runBounded('"' + path + '"' + (doRegister ? " /regserver" : " /unregserver")));
}

RegistrarResult runControlRegistrar(const std::string& path, bool doRegister) {
    return runSystemRegistrar(path, doRegister, &resultOf);
}

RegistrarResult runLibraryRegistrar(const std::string& path, bool doRegister, void* exitFunctions) {
    if (exitFunctions != nullptr) {
        return askInThisProcess(path, doRegister, exitFunctions);
    }
    return runSystemRegistrar(path, doRegister, [doRegister](const BoundedRun& run) {
        return libraryResult(run, registrationExport(doRegister));
    });
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
