// Settings that are lists of folders, in the shorthand of setup/pathItems.h: read expanded, written
// so that what came from shorthand goes back as shorthand. For one thread, as setup/setupSearch.h
// tells.
#pragma once

#include "platform/types.h"

namespace juntora {

/// Reads as GetConfigString does. The value, or `standard` where there is none, is expanded: items
/// joined by ";", each in double quotes with `quote`, without empty ones and those that are equal
/// to the one before. Where no item is left, the value stays as it stands in the file.
///
/// What does not fit into `size` bytes is left out from the first item that does not fit whole, so
/// that none is ever half a path; where that is the very first, the buffer gets the value as it
/// stands in the file, cut. With room for 1 byte it gets an empty text, with none, nothing.
///
/// Returns 0 if what is read is empty, or there is no room, else 1. GetLastError is 0 afterwards;
/// ERROR_MORE_DATA if something has been left out; else why `standard` was taken.
int ReadPathList(const char* section, const char* key, const char* standard, char* buffer,
                 DWORD size, const char* file, bool quote);

/// Writes a list of paths. Variables in it are expanded first, everything else is taken as it
/// stands. A path to which an item of the present value expands is written as that item, once for
/// all paths of the item, without quotes; if a path of the item is missing from the new list, the
/// item goes, and with it its other paths; so does an item of a variable that is not set, for no
/// path is known to have come from it. All others are written as they are, in double quotes
/// with `quote`. Paths compare without regard to the case of A to Z. Empty items are left out; a
/// null `value` writes an empty one.
///
/// Returns 1. GetLastError is 0 afterwards, or tells why nothing was written; without a section or
/// a key that is ERROR_INVALID_PARAMETER.
int WritePathList(const char* section, const char* key, const char* value, const char* file,
                  bool quote);

}  // namespace juntora
