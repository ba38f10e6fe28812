// Paths of keys as their elements.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/types.h"

namespace juntora::registry {

inline constexpr std::size_t MAX_KEY_NAME = 255;
inline constexpr std::size_t MAX_VALUE_NAME = 16'383;
inline constexpr std::size_t MAX_VALUE_BYTES = 1 << 20;

using KeyPath = std::vector<std::string>;

/// Appends the elements of a text; null is an empty one. ERROR_INVALID_PARAMETER for one too long.
DWORD appendPath(const char* text, KeyPath* path);

/// A text as UTF-8. False for half a surrogate pair.
bool toUtf8(std::u16string_view text, std::string* result);

/// Name before name in the order of a hive: by bytes, A to Z as their small letters.
bool isBefore(std::string_view left, std::string_view right);

}  // namespace juntora::registry
