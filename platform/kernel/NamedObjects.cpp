#include "platform/kernel/NamedObjects.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "platform/desktop/Futex.h"
#include "platform/desktop/Hash.h"
#include "platform/desktop/Lock.h"
#include "platform/desktop/Sweep.h"

namespace juntora::kernel {
namespace {

using desktop::Attachment;
using desktop::hashOf;
using desktop::MAX_HOLDS;
using desktop::MAX_OBJECTS;
using desktop::NamedObject;
using desktop::NONE;
using desktop::ObjectHold;
using desktop::ObjectKind;
using desktop::Segment;

std::uint32_t& bucketOf(Segment& segment, std::uint32_t hash) {
    return segment.objectBuckets[hash % desktop::INDEX_BUCKETS];
}

/// Buckets hold 1 + index, 0 at their end.
std::uint32_t findObject(Segment& segment, std::string_view name, std::uint32_t hash) {
    for (std::uint32_t at = bucketOf(segment, hash); at != 0;
         at = segment.objects[at - 1].nextInBucket) {
        const NamedObject& object = segment.objects[at - 1];
        if (object.hash == hash && object.live.load() != ObjectKind::NO_OBJECT &&
            name == object.name) {
            return at - 1;
        }
    }
    return NONE;
}

void link(Segment& segment, std::uint32_t index) {
    NamedObject& object = segment.objects[index];
    std::uint32_t& bucket = bucketOf(segment, object.hash);
    object.nextInBucket = bucket;
    bucket = index + 1;
}

void unlink(Segment& segment, std::uint32_t index) {
    std::uint32_t* from = &bucketOf(segment, segment.objects[index].hash);
    while (*from != 0 && *from != index + 1) {
        from = &segment.objects[*from - 1].nextInBucket;
    }
    if (*from != 0) {
        *from = segment.objects[index].nextInBucket;
    }
}

void freeObject(Segment& segment, std::uint32_t index) {
    segment.objects[index].nextInBucket = segment.firstFreeObject;
    segment.firstFreeObject = index + 1;
}

void freeHold(Segment& segment, std::uint32_t index) {
    segment.holds[index].next = segment.firstFreeHold;
    segment.firstFreeHold = index + 1;
}

/// What has been used before comes first, so that no more of the segment is touched than need be.
std::uint32_t takeFreeObject(Segment& segment) {
    if (segment.firstFreeObject == 0) {
        return segment.objectLimit < MAX_OBJECTS ? segment.objectLimit++ : NONE;
    }
    const std::uint32_t index = segment.firstFreeObject - 1;
    segment.firstFreeObject = segment.objects[index].nextInBucket;
    return index;
}

std::uint32_t takeFreeHold(Segment& segment) {
    if (segment.firstFreeHold == 0) {
        return segment.holdLimit < MAX_HOLDS ? segment.holdLimit++ : NONE;
    }
    const std::uint32_t index = segment.firstFreeHold - 1;
    segment.firstFreeHold = segment.holds[index].next;
    return index;
}

bool isFull(const Segment& segment) {
    return (segment.firstFreeObject == 0 && segment.objectLimit == MAX_OBJECTS) ||
           (segment.firstFreeHold == 0 && segment.holdLimit == MAX_HOLDS);
}

void dropObject(Attachment& desktop, std::uint32_t index) {
    Segment& segment = desktop.segment();
    NamedObject& object = segment.objects[index];
    if (object.live.load() == ObjectKind::MAPPING) {
        char file[40];
        mappingFileName(segment, index, file);
        unlinkat(desktop.folderDescriptor(), file, 0);
    }
    object.live = ObjectKind::NO_OBJECT;
    unlink(segment, index);
    freeObject(segment, index);
}

/// Describes a new object; it is not live yet.
void describe(NamedObject& object, const ObjectMaking& making, std::uint32_t hash) {
    ++object.generation;
    object.hash = hash;
    object.firstHold = NONE;
    object.count = static_cast<std::uint32_t>(making.initial);
    object.maximum = static_cast<std::uint32_t>(making.maximum);
    object.bytes = making.bytes;
    object.journalHold = 0;
    std::memcpy(object.name, making.name.data(), making.name.size());
    object.name[making.name.size()] = '\0';
    desktop::initialiseLock(&object.mutex, true);
}

std::uint32_t makeObject(Segment& segment, const ObjectMaking& making, std::uint32_t hash) {
    const std::uint32_t index = takeFreeObject(segment);
    if (index != NONE) {
        NamedObject& object = segment.objects[index];
        describe(object, making, hash);
        object.live = making.kind;
        link(segment, index);
    }
    return index;
}

std::uint32_t addHold(Attachment& desktop, std::uint32_t object) {
    Segment& segment = desktop.segment();
    const std::uint32_t index = takeFreeHold(segment);
    if (index != NONE) {
        ObjectHold& hold = segment.holds[index];
        hold.process = desktop.process();
        hold.taken = 0;
        hold.next = segment.objects[object].firstHold;
        hold.object = object + 1;
        segment.objects[object].firstHold = index;
    }
    return index;
}

void finishJournal(Segment& segment, NamedObject& object) {
    const std::uint32_t hold = object.journalHold.load();
    if (hold != 0) {
        object.count = object.journalCount;
        segment.holds[hold - 1].taken = object.journalTaken;
        object.journalHold = 0;
    }
}

/// What a hold has taken goes back, and who waits for it is woken.
void giveBack(Segment& segment, std::uint32_t objectIndex, std::uint32_t hold) {
    NamedObject& object = segment.objects[objectIndex];
    // Others may have released what this one took; there never are more counts than the maximum.
    const std::int64_t missing = std::int64_t{object.maximum} - object.count.load();
    const std::int64_t back = std::min<std::int64_t>(segment.holds[hold].taken.load(), missing);
    if (back > 0) {
        changeCount(segment, objectIndex, hold, static_cast<std::int32_t>(back));
        desktop::futexWakeAll(&object.count);
    }
}

template <typename Condition>
void releaseHoldsThat(Attachment& desktop, std::uint32_t object, Condition isToGo) {
    const Segment& segment = desktop.segment();
    std::uint32_t at = segment.objects[object].firstHold;
    while (at != NONE) {
        const std::uint32_t next = segment.holds[at].next;
        if (isToGo(segment.holds[at])) {
            releaseHold(desktop, at);
        }
        at = next;
    }
}

Hold tryToHoldObject(Attachment& desktop, const ObjectMaking& making) {
    Segment& segment = desktop.segment();
    const std::uint32_t hash = hashOf(making.name);
    std::uint32_t object = findObject(segment, making.name, hash);
    if (object != NONE) {
        releaseDeadHolds(desktop, object);
        object = findObject(segment, making.name, hash);
    }
    if (object != NONE && segment.objects[object].live.load() != making.kind) {
        return {};
    }
    const bool isNew = object == NONE;
    if (isNew) {
        object = makeObject(segment, making, hash);
    }
    if (object == NONE) {
        return {};
    }
    const std::uint32_t hold = addHold(desktop, object);
    if (hold == NONE && isNew) {
        dropObject(desktop, object);
    }
    return hold == NONE ? Hold{} : Hold{object, hold, isNew};
}

}  // namespace

Hold holdObject(Attachment& desktop, const ObjectMaking& making) {
    const Hold hold = tryToHoldObject(desktop, making);
    if (hold.hold != NONE || !isFull(desktop.segment())) {
        return hold;
    }
    desktop::sweepAll(desktop);
    return tryToHoldObject(desktop, making);
}

void releaseHold(Attachment& desktop, std::uint32_t index) {
    Segment& segment = desktop.segment();
    ObjectHold& hold = segment.holds[index];
    const std::uint32_t objectIndex = hold.object.load() - 1;
    NamedObject& object = segment.objects[objectIndex];
    if (object.live.load() == ObjectKind::SEMAPHORE) {
        giveBack(segment, objectIndex, index);
    }
    std::uint32_t* from = &object.firstHold;
    while (*from != NONE && *from != index) {
        from = &segment.holds[*from].next;
    }
    if (*from == index) {
        *from = hold.next;
    }
    hold.object = 0;
    freeHold(segment, index);
    if (object.firstHold == NONE) {
        dropObject(desktop, objectIndex);
    }
}

void releaseHoldsOf(Attachment& desktop, std::uint32_t process) {
    Segment& segment = desktop.segment();
    for (std::uint32_t i = 0; i < segment.holdLimit; ++i) {
        if (segment.holds[i].object.load() != 0 && segment.holds[i].process == process) {
            releaseHold(desktop, i);
        }
    }
}

void releaseDeadHolds(Attachment& desktop, std::uint32_t object) {
    releaseHoldsThat(desktop, object,
                     [&](const ObjectHold& hold) { return !desktop.processLives(hold.process); });
}

void giveBackDeadCounts(Attachment& desktop, std::uint32_t object) {
    releaseHoldsThat(desktop, object, [&](const ObjectHold& hold) {
        return hold.taken.load() > 0 && !desktop.processLives(hold.process);
    });
}

void changeCount(Segment& segment, std::uint32_t object, std::uint32_t hold, std::int32_t change) {
    NamedObject& semaphore = segment.objects[object];
    semaphore.journalCount = semaphore.count.load() + static_cast<std::uint32_t>(change);
    semaphore.journalTaken = segment.holds[hold].taken.load() - change;
    semaphore.journalHold = hold + 1;
    finishJournal(segment, semaphore);
}

void mappingFileName(const Segment& segment, std::uint32_t object, char (&name)[40]) {
    std::snprintf(name, sizeof name, "map-%u-%u", object, segment.objects[object].generation);
}

void rebuildObjects(Segment& segment) {
    for (std::uint32_t i = 0; i < segment.objectLimit; ++i) {
        NamedObject& object = segment.objects[i];
        object.firstHold = NONE;
        if (object.live.load() != ObjectKind::NO_OBJECT) {
            finishJournal(segment, object);
        }
    }
    segment.firstFreeHold = 0;
    for (std::uint32_t i = 0; i < segment.holdLimit; ++i) {
        ObjectHold& hold = segment.holds[i];
        const std::uint32_t object = hold.object.load();
        if (object == 0) {
            freeHold(segment, i);
            continue;
        }
        hold.next = segment.objects[object - 1].firstHold;
        segment.objects[object - 1].firstHold = i;
    }
    std::fill_n(segment.objectBuckets, desktop::INDEX_BUCKETS, 0);
    segment.firstFreeObject = 0;
    for (std::uint32_t i = 0; i < segment.objectLimit; ++i) {
        NamedObject& object = segment.objects[i];
        if (object.firstHold == NONE) {
            object.live = ObjectKind::NO_OBJECT;
        }
        if (object.live.load() == ObjectKind::NO_OBJECT) {
            freeObject(segment, i);
        } else {
            link(segment, i);
        }
    }
}

}  // namespace juntora::kernel
