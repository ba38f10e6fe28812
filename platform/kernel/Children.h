// The processes that this one has started and not yet collected.
#pragma once

#include "platform/kernel/Handles.h"
#include "platform/kernel/StartRecords.h"

namespace juntora::kernel {

/// Keeps watch over a child, so that it leaves no zombie: the calling thread's message loop
/// collects it when it ends, else one of the next starts of a process does.
void keepChild(int descriptor, const StartPlace& place);
/// Looks at a few children, in turn, and collects those that have ended.
void collectSomeChildren();
/// The program gives its handle up.
void leaveChild(Handle& entry);

}  // namespace juntora::kernel
