// The user's home, as the installation's operations have it.
#pragma once

#include <string>

namespace juntora {

enum class HomeDrive {
    ALWAYS_C,
    OF_THE_USER,  ///< HOMEDRIVE; C: without it.
};

/// What HOME names. Where it is not set, it is made of HOMEPATH, with a drive in front if there is
/// none, and stays set for this process and those that it starts. Empty where neither is set.
std::string homeFolder(HomeDrive drive);

}  // namespace juntora
