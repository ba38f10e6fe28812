// Named objects as a program uses them: making, opening, giving up.
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>

#include "platform/desktop/Lock.h"
#include "platform/kernel/Children.h"
#include "platform/kernel/Handles.h"
#include "platform/kernel/MutexOwner.h"
#include "platform/kernel/NamedObjects.h"
#include "platform/kernel/sync.h"

namespace juntora {
namespace kernel {
namespace {

using desktop::Attachment;
using desktop::ObjectKind;
using desktop::SegmentLock;

bool isFitName(const char* name) {
    return name != nullptr && *name != '\0' && std::strlen(name) < desktop::OBJECT_NAME_BYTES;
}

/// A mapping's file, made whole and zero before the object can be seen by the next opener.
int openMappingFile(Attachment& desktop, const Hold& hold, std::size_t bytes) {
    char name[40];
    mappingFileName(desktop.segment(), hold.object, name);
    const int flags = O_RDWR | O_NOFOLLOW | O_CLOEXEC | (hold.isNew ? O_CREAT | O_TRUNC : 0);
    const int descriptor = openat(desktop.folderDescriptor(), name, flags, 0600);
    if (descriptor >= 0 && hold.isNew && ftruncate(descriptor, static_cast<off_t>(bytes)) != 0) {
        close(descriptor);
        return -1;
    }
    return descriptor;
}

/// Opens or makes an object under the lock; a hold without an object on failure.
Hold holdNamed(Attachment& desktop, const ObjectMaking& making, int* descriptor) {
    const SegmentLock lock(desktop.segment());
    if (!lock) {
        return {};
    }
    Hold hold = holdObject(desktop, making);
    if (hold.hold != desktop::NONE && making.kind == ObjectKind::MAPPING) {
        *descriptor = openMappingFile(desktop, hold, making.bytes);
        if (*descriptor < 0) {
            releaseHold(desktop, hold.hold);
            hold = {};
        }
    }
    return hold;
}

HANDLE openNamed(const ObjectMaking& making, HandleKind kind, bool* isNew) {
    Attachment* desktop = Attachment::get();
    Handle* entry = desktop == nullptr ? nullptr : reserveHandle();
    if (entry == nullptr) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
    const Hold hold = holdNamed(*desktop, making, &entry->descriptor);
    if (hold.hold == desktop::NONE) {
        entry->kind = HandleKind::CLOSED;
        SetLastError(ERROR_INVALID_HANDLE);
        return nullptr;
    }
    entry->object = hold.object;
    entry->hold = hold.hold;
    entry->kind.store(kind, std::memory_order_release);
    *isNew = hold.isNew;
    SetLastError(hold.isNew ? ERROR_SUCCESS : ERROR_ALREADY_EXISTS);
    return valueOf(entry);
}

HANDLE openNamedText(const char* name, ObjectMaking making, HandleKind kind, bool* isNew) {
    if (!isFitName(name)) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    making.name = name;
    return openNamed(making, kind, isNew);
}

void closeNamed(Handle& entry) {
    Attachment* desktop = Attachment::get();
    if (entry.descriptor >= 0) {
        close(entry.descriptor);
    }
    if (desktop == nullptr || !letGoOfMutex(entry)) {
        return;
    }
    const SegmentLock lock(desktop->segment());
    if (lock) {
        releaseHold(*desktop, entry.hold);
    }
}

}  // namespace
}  // namespace kernel

HANDLE CreateMutexA(bool owned, const char* name) {
    bool isNew = false;
    HANDLE mutex = kernel::openNamedText(name, {desktop::ObjectKind::MUTEX, {}},
                                         kernel::HandleKind::MUTEX, &isNew);
    if (mutex != nullptr && owned && isNew) {
        WaitForSingleObject(mutex, INFINITE);
    }
    return mutex;
}

HANDLE CreateSemaphoreA(LONG initial, LONG maximum, const char* name) {
    if (initial < 0 || maximum <= 0 || initial > maximum) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    bool isNew = false;
    return kernel::openNamedText(name, {desktop::ObjectKind::SEMAPHORE, {}, initial, maximum},
                                 kernel::HandleKind::SEMAPHORE, &isNew);
}

HANDLE CreateFileMappingA(std::size_t bytes, const char* name) {
    bool isNew = false;
    return kernel::openNamedText(name, {desktop::ObjectKind::MAPPING, {}, 0, 0, bytes},
                                 kernel::HandleKind::MAPPING, &isNew);
}

void* MapViewOfFile(HANDLE mapping, std::size_t bytes) {
    const kernel::Handle* entry = kernel::handleOf(mapping, kernel::HandleKind::MAPPING);
    struct stat state {};
    if (entry == nullptr || fstat(entry->descriptor, &state) != 0) {
        SetLastError(ERROR_INVALID_HANDLE);
        return nullptr;
    }
    // Behind the end of its file a view can't be touched.
    if (bytes == 0 || static_cast<std::size_t>(state.st_size) < bytes) {
        SetLastError(ERROR_ACCESS_DENIED);
        return nullptr;
    }
    void* view = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED, entry->descriptor, 0);
    if (view == MAP_FAILED) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
    kernel::rememberView(view, bytes);
    return view;
}

BOOL UnmapViewOfFile(const void* view) {
    const std::size_t bytes = kernel::forgetView(view);
    return bytes != 0 && munmap(const_cast<void*>(view), bytes) == 0 ? 1 : 0;
}

BOOL CloseHandle(HANDLE object) {
    kernel::Handle* entry = kernel::anyHandle(object);
    if (entry == nullptr) {
        SetLastError(ERROR_INVALID_HANDLE);
        return 0;
    }
    if (entry->kind.load() == kernel::HandleKind::PROCESS) {
        kernel::leaveChild(*entry);
    } else {
        kernel::closeNamed(*entry);
    }
    entry->kind.store(kernel::HandleKind::CLOSED, std::memory_order_release);
    return 1;
}

}  // namespace juntora
