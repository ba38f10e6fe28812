// What tools that list and call objects are told of those here.
#pragma once

#include <string>
#include <vector>

#include "platform/automation/automation.h"

namespace juntora::automation {

/// The document of an object, or of a class's path (`isClass`).
std::string introspectObject(const DispatchDescription& description, bool isClass);

/// The document of a path that only leads to others: the next element of each of `paths` below it;
/// empty where none is.
std::string introspectWay(const std::string& path, const std::vector<std::string>& paths);

}  // namespace juntora::automation
