// Names of classes on the bus.
#pragma once

#include <string>

namespace juntora::automation {

/// The path at which a class is to be found: its bus name, with "/" for ".".
std::string pathOfClass(const std::string& programId);

}  // namespace juntora::automation
