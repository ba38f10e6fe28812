// Writing and deleting keys of the registry. Any thread may call these. Texts are not null.
#pragma once

#include "platform/registry/registry.h"

namespace juntora {

/// Writes a key's default value, in the place of one that is there, and makes the key where it is
/// missing. 1, or 0 if that could not be done.
int setKeyDefaultValue(HKEY root, const char* key, const char* value);
/// The same below HKEY_CURRENT_USER.
int setUserKeyDefaultValue(const char* key, const char* value);

/// Deletes a key with all that is below it, at once or not at all; `keyPath` may have any length.
/// 1 if the key is gone at the end, as one is that was never there; else 0.
int deleteKeyTree(HKEY root, const char* keyPath);

}  // namespace juntora
