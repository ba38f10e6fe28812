// What the layer's errors mean to a person.
#pragma once

#include "platform/types.h"

namespace juntora {

inline constexpr DWORD FORMAT_MESSAGE_ALLOCATE_BUFFER = 0x100;
inline constexpr DWORD FORMAT_MESSAGE_FROM_SYSTEM = 0x1000;

/// The system's text for an error of the layer, in English whatever the `language`, in a buffer to
/// be released with LocalFree. `flags` must be the two above. Returns the length; 0, and a null
/// buffer, for other flags or without memory. A number that the layer does not use has a text too.
DWORD FormatMessageA(DWORD flags, DWORD error, DWORD language, char** buffer);
void LocalFree(void* buffer);

}  // namespace juntora
