// The tools that the suite knows by name.
#pragma once

#include <string_view>

namespace juntora {

struct ToolEntry {
    const char* name;
    const char* group;
};

/// Ends with a null name.
extern const ToolEntry ToolTable[];

/// The row of the tool with this name, case and all; -1 if the suite does not know it.
int findTool(std::string_view name);

}  // namespace juntora
