// The volumes and shares behind drives. What is mounted is read from the kernel's table; the
// environment's JUNTORA_MOUNTS names a file of the same form that is read instead.
//
// No call throws; any thread may call them.
#pragma once

#include "platform/types.h"

namespace juntora {

/// The name "\\server\share" of what a drive ("D:", either case) stands for, with the folders below
/// the share that its link leads to, if it lies on a network mount. `*capacity` is the size of
/// `remote` in bytes. Returns 0, ERROR_NOT_CONNECTED (a local drive, or none),
/// ERROR_CONNECTION_UNAVAIL (the link leads nowhere), ERROR_MORE_DATA (`*capacity` is what it
/// needs, NUL included), ERROR_BAD_DEVICE (no drive's name), ERROR_NO_NETWORK (what is mounted
/// cannot be read) or ERROR_INVALID_ADDRESS (a null argument).
DWORD WNetGetConnectionA(const char* drive, char* remote, DWORD* capacity);

/// The file system of "D:\" or "\\server\share\", the last separator included: the longest name
/// that it takes, in bytes, and what it is called, in `capacity` bytes: "FAT", "FAT32", "NTFS",
/// "HPFS", else the system's own name for it in capital letters. Both may be null. 0 with
/// ERROR_INVALID_NAME for another form of root, ERROR_PATH_NOT_FOUND, ERROR_BAD_NETPATH (a share
/// that is not mounted) or ERROR_MORE_DATA.
BOOL GetVolumeInformationA(const char* root, DWORD* maxComponent, char* fileSystem, DWORD capacity);

}  // namespace juntora
