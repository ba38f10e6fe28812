// The handles of this process, and what the predefined keys stand for.
#pragma once

#include "platform/registry/OpenKey.h"

namespace juntora::registry {

/// Null if it is no open key.
OpenKey::Pointer keyOf(HKEY handle);
HKEY addHandle(OpenKey::Pointer key);
DWORD closeHandle(HKEY handle);
/// Null restores.
DWORD overridePredefined(HKEY predefined, OpenKey::Pointer key);

/// A copy of one of its cursors, and its way back.
Cursor cursorOf(const OpenKey& key, Listing listing);
void keepCursor(OpenKey& key, Listing listing, Cursor cursor);

}  // namespace juntora::registry
