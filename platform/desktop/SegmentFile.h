// The segment's file: made, checked and mapped.
#pragma once

#include "platform/desktop/Folder.h"
#include "platform/desktop/Layout.h"

namespace juntora::desktop {

/// Maps the folder's segment. The caller holds the opening byte of the lock file. Unless `inUse`
/// what is there is left over from processes that are gone, and a new one takes its place. A file
/// that this program does not understand, of another user or cut short is refused and not touched.
/// Null with the problem on failure.
Segment* mapSegmentFile(const Folder& folder, bool inUse, Problem* problem);

/// Removes from the folder all that the layer makes in it, but the lock file.
void removeDesktopFiles(const Folder& folder);

}  // namespace juntora::desktop
