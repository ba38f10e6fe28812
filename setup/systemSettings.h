// What the system's own settings say. Any thread may call these.
#pragma once

#include <string>

namespace juntora {

/// Whether files are shown to a person with this extension, which is given with or without its dot.
bool ExtensionIsShown(const char* extension);

/// For whom the system is registered: texts of the machine's registry, in the key
/// `SOFTWARE\Microsoft\Windows NT\CurrentVersion`. Empty where there is no such text, and for one
/// that takes more than 80 bytes with its NUL.
std::string GetRegisteredOrganization();
std::string GetRegisteredOwner();

}  // namespace juntora
