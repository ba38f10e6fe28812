// The three ways in which servers are registered, by what they are.
#pragma once

#include <string>

namespace juntora {

enum class ServerOutcome {
    DONE,          ///< The registrar has run. What it did it tells nobody.
    IN_ORDER,      ///< Nothing had to be done.
    PASSED_OVER,   ///< A server that is none of this run's.
    NOT_FOUND,     ///< The server is not there.
    NOT_LOADED,    ///< The library is there and could not be loaded.
    NO_REGISTRAR,  ///< There is no folder of the system's with what would register it.
    FAILED,        ///< The registrar could not be run to its end.
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

/// A library: handed to the same registrar, and failed where that falls. With `exitFunctions`,
/// which may be null, it is loaded into this process instead and asked here, where it may hang, or
/// take this process down; one with "hostAutomation.dll" in its path gets them and stays loaded.
RegistrarResult runLibraryRegistrar(const std::string& path, bool doRegister, void* exitFunctions);

/// How that registrar ends.
inline constexpr int REGISTRAR_DONE = 0;
inline constexpr int REGISTRAR_REFUSED = 1;      ///< The library has been asked, and has failed.
inline constexpr int REGISTRAR_USAGE = 2;        ///< It has not been told which.
inline constexpr int REGISTRAR_NOT_LOADED = 3;   ///< The library cannot be loaded.
inline constexpr int REGISTRAR_NO_FUNCTION = 4;  ///< It cannot register itself.

/// The function by which a library or control registers itself.
const char* registrationExport(bool doRegister);
/// Calls it. Returns its result; an exception counts as a failure.
int callRegistrationExport(void* function);

}  // namespace juntora
