// Who of this process owns a mutex through a handle, and views: what closing must know.
#pragma once

#include <cstddef>

#include "platform/kernel/Handles.h"

namespace juntora::kernel {

/// Releases a mutex that the calling thread owns through the handle. False if another thread of
/// this process owns it: its robust list leads through the object, which therefore has to stay.
bool letGoOfMutex(Handle& entry);

void rememberView(const void* view, std::size_t bytes);
/// The bytes of the view, 0 if it is none.
std::size_t forgetView(const void* view);

}  // namespace juntora::kernel
