// The commands of a script that drives `juntoractl tool`.
#pragma once

#include <string>
#include <string_view>

#include "tools/juntoractl/Output.h"

namespace juntora {

/// Carries out one line and returns the event that answers it: a result, or an error with what is
/// wrong and what to write. The process is signed on.
Json runScriptLine(std::string_view line);

/// The commands with their arguments, one a line, for the help.
std::string scriptCommands();

}  // namespace juntora
