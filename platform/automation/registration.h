// The classes of a program in the registry, where other programs of this layer find them, and among
// the bus's services, where all others do.
#pragma once

#include <string>

#include "platform/automation/guid.h"

namespace juntora {

struct ClassRegistration {
    GUID classId;
    std::string programId;
    std::string program;  ///< Absolute path of the program that serves the class.
};

/// Writes the class: below HKEY_CLASSES_ROOT the program identifier with its CLSID, and the class
/// with ProgID and LocalServer32; and a service file for the bus in the user's own data folder
/// ($XDG_DATA_HOME, else ~/.local/share), so that a call starts the program with "-Embedding".
/// What is as it should be is not written again. False if something could not be written; the rest
/// is.
bool RegisterClassOf(const ClassRegistration& registration);

/// Takes all of it out again. What is not there is no failure.
bool UnregisterClassOf(const ClassRegistration& registration);

/// The path of the running program; empty where the system does not tell.
std::string OwnProgramPath();

}  // namespace juntora
