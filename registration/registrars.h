// The three ways in which servers are registered, by what they are.
#pragma once

#include <string>

namespace juntora {

enum class ServerOutcome {
    DONE,         ///< The registrar has run. What it did it tells nobody.
    IN_ORDER,     ///< Nothing had to be done.
    PASSED_OVER,  ///< A server that is none of this run's.
    NOT_FOUND,    ///< The server, or what would register it, is not there.
    NOT_LOADED,   ///< The library is there and could not be loaded.
    FAILED,       ///< The registrar could not be run to its end.
};

struct RegistrarResult {
    ServerOutcome outcome;
    std::string why{};  ///< What a person may want to know of a failure; may be empty.
};

/// A program: started with " /regserver" or " /unregserver".
RegistrarResult runProgramRegistrar(const std::string& path, bool doRegister);

/// A control: handed to the system's registrar, "System32\REGSVR32.EXE" of the system's folder
/// (platform/files/installRoot.h), so that one that crashes takes nobody with it.
RegistrarResult runControlRegistrar(const std::string& path, bool doRegister);

/// A library: loaded into this process and asked. A null `exitFunctions` is none; otherwise a
/// library with "hostAutomation.dll" in its path gets it and stays loaded.
RegistrarResult runLibraryRegistrar(const std::string& path, bool doRegister, void* exitFunctions);

/// The function by which a library or control registers itself.
const char* registrationExport(bool doRegister);
/// Calls it. Returns its result; an exception counts as a failure.
int callRegistrationExport(void* function);

}  // namespace juntora
