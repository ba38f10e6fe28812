// Named objects in the segment and who holds them. All of it wants the segment's lock.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/desktop/Attachment.h"

namespace juntora::kernel {

/// What a new object starts with.
struct ObjectMaking {
    desktop::ObjectKind kind;
    std::string_view name;
    std::int32_t initial = 0;  ///< Semaphore.
    std::int32_t maximum = 0;
    std::uint64_t bytes = 0;  ///< Mapping.
};

/// A hold on an object: the object's index and the hold's, and whether the object is new.
struct Hold {
    std::uint32_t object = desktop::NONE;
    std::uint32_t hold = desktop::NONE;
    bool isNew = false;
};

/// Opens the object, or makes it if nobody alive holds one of that name. An object of another kind
/// under the name, or a table that is full of what living processes hold, gives NONE.
Hold holdObject(desktop::Attachment& desktop, const ObjectMaking& making);
/// Gives a hold up. The last one of an object takes the object with it.
void releaseHold(desktop::Attachment& desktop, std::uint32_t hold);
/// Every hold of a process that leaves or is gone; semaphore counts go back.
void releaseHoldsOf(desktop::Attachment& desktop, std::uint32_t process);
/// Holds on this object of processes that are gone: a system call for each hold of others.
void releaseDeadHolds(desktop::Attachment& desktop, std::uint32_t object);
/// Only those that have taken semaphore counts.
void giveBackDeadCounts(desktop::Attachment& desktop, std::uint32_t object);

/// Moves a semaphore's count by `change` and the hold's account of what it has taken against it, as
/// one change even if the caller dies in between.
void changeCount(desktop::Segment& segment, std::uint32_t object, std::uint32_t hold,
                 std::int32_t change);

/// The file of a mapping in the desktop's folder.
void mappingFileName(const desktop::Segment& segment, std::uint32_t object, char (&name)[40]);

/// After a death under the lock: finishes journalled counts, drops what nobody holds, links anew.
void rebuildObjects(desktop::Segment& segment);

}  // namespace juntora::kernel
