// Names of classes on the bus.
#pragma once

#include <string>

namespace juntora::automation {

/// The name of a class as this desktop's programs offer it, beside the one that all desktops of a
/// session share. Empty where none can be made of it, or without a desktop.
std::string ownNameOfClass(const std::string& programId);

/// The path at which a class is to be found: its bus name, with "/" for ".".
std::string pathOfClass(const std::string& programId);

}  // namespace juntora::automation
