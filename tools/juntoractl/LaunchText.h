// The words of a launch as they go to the hub, and what its answers mean.
#pragma once

#include <string>
#include <vector>

namespace juntora {

inline constexpr int SHOW_NORMALLY = 1;
inline constexpr int SHOW_MINIMISED = 0;

/// In double quotes where it has blanks or is empty. A name with a quote in it cannot be told to
/// the platform.
std::string quotedProgram(const std::string& program);
/// One line, each word in double quotes where it has blanks or is empty.
std::string quotedArguments(const std::vector<std::string>& words);

/// Why a launch with this result has not come about.
std::string launchFailure(int result);

}  // namespace juntora
