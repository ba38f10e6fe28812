// What is taken from the hub's command line before the rest is handed on.
#pragma once

namespace juntora {

/// Whether the switch `name` ("-" or "/" and the name, in letters of either case) stands anywhere
/// on the line; its first occurrence is taken out in place. Words are not told apart: what follows
/// the name stays.
bool RemoveSwitch(char* line, const char* name);

}  // namespace juntora
