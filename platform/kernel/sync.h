// Named mutexes, semaphores and memory mappings of the desktop, and handles to them.
//
// Names are 1 to 511 bytes, compare exactly, and belong to one kind. An object lives as long as
// some process has a handle to it; handles of a process that dies go with it. HANDLEs may be used
// by any thread of the process; a mutex is owned by a thread.
#pragma once

#include <cstddef>

#include "platform/messages.h"
#include "platform/types.h"

namespace juntora {

/// The calling thread's last error. Calls that succeed leave it alone unless they say otherwise.
DWORD GetLastError();
void SetLastError(DWORD error);

/// Makes or opens a mutex; null on failure. GetLastError is ERROR_ALREADY_EXISTS when it was there
/// already (then `owned` has no effect), else 0.
HANDLE CreateMutexA(bool owned, const char* name);
/// 0 with ERROR_NOT_OWNER when the calling thread does not own it. As often as it was waited for.
BOOL ReleaseMutex(HANDLE mutex);

/// As CreateMutexA; the counts have an effect only where the semaphore is made. A process gives
/// back the counts that it has taken and not released when it closes the handle, leaves or dies.
/// The dead count for nobody who opens, waits or reads the previous count after the death; one who
/// is waiting then gets in within 100 ms.
HANDLE CreateSemaphoreA(LONG initial, LONG maximum, const char* name);
/// Gives `count` counts back, whoever took them; `previous`, if not null, gets how many there were.
/// 0 with ERROR_TOO_MANY_POSTS when there would be more than the maximum.
BOOL ReleaseSemaphore(HANDLE semaphore, LONG count, LONG* previous);

/// Waits for a mutex or a semaphore count, or for the end of a process: WAIT_OBJECT_0,
/// WAIT_ABANDONED (the mutex is held, and its owner before died with it), WAIT_TIMEOUT or
/// WAIT_FAILED. Serves no messages.
DWORD WaitForSingleObject(HANDLE object, DWORD milliseconds);

/// Makes or opens a mapping of `bytes` bytes, backed by no named file of the caller's. A new one is
/// all zeros. GetLastError as for CreateMutexA.
HANDLE CreateFileMappingA(std::size_t bytes, const char* name);
/// Maps its first `bytes` bytes, readable and writable. Null on failure; ERROR_ACCESS_DENIED for a
/// mapping that somebody has made with fewer.
void* MapViewOfFile(HANDLE mapping, std::size_t bytes);
BOOL UnmapViewOfFile(const void* view);

/// Gives up a handle of any kind. A mutex that the calling thread still owns through it is
/// released. A process that ends later is collected without a zombie.
BOOL CloseHandle(HANDLE object);

}  // namespace juntora
