// Starting the program of a class.
#pragma once

#include <string>

#include "platform/automation/Bus.h"

namespace juntora::automation {

/// What the registry says of a class.
struct KnownClass {
    std::string busName;
    std::string path;
    std::string program;  ///< The command line of its program; empty for none.
};

/// Sees to it that somebody offers the class on the bus, by starting its program for automation
/// where nobody does. S_OK, or what has failed.
HRESULT ensureOffered(Bus& bus, const KnownClass& known);

}  // namespace juntora::automation
