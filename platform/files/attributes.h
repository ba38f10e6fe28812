// What the platform says of a file in bits.
#pragma once

#include "platform/types.h"

namespace juntora {

inline constexpr DWORD FILE_ATTRIBUTE_READONLY = 0x1;  ///< Nobody has the right to write.
inline constexpr DWORD FILE_ATTRIBUTE_HIDDEN = 0x2;    ///< The name starts with a dot.
inline constexpr DWORD FILE_ATTRIBUTE_SYSTEM = 0x4;    ///< Never set.
inline constexpr DWORD FILE_ATTRIBUTE_DIRECTORY = 0x10;
inline constexpr DWORD FILE_ATTRIBUTE_ARCHIVE = 0x20;      ///< A regular file.
inline constexpr DWORD FILE_ATTRIBUTE_NORMAL = 0x80;       ///< None of the others.
inline constexpr DWORD FILE_ATTRIBUTE_COMPRESSED = 0x800;  ///< Never set.
inline constexpr DWORD INVALID_FILE_ATTRIBUTES = 0xFFFFFFFF;

}  // namespace juntora
