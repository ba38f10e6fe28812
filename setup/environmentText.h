// Variables of the environment as texts.
#pragma once

#include <string>

#include "platform/kernel/process.h"

namespace juntora {

/// A variable's value; empty where it is not set. On the platform there is no other empty one.
inline std::string environmentText(const char* name) {
    const char* value = GetEnvironment(name);
    return value ? value : "";
}

}  // namespace juntora
