#include "platform/desktop/SegmentFile.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "platform/desktop/Lock.h"

namespace juntora::desktop {
namespace {

constexpr char FILE_NAME[] = "segment";
constexpr char NEW_FILE_NAME[] = "segment.new";

std::string refusal(const Folder& folder, const std::string& what) {
    return folder.path() + "/" + FILE_NAME + " " + what +
           "; end the programs on this desktop and remove the file, or choose another desktop by "
           "JUNTORA_DESKTOP";
}

Segment* map(int descriptor) {
    void* address = mmap(nullptr, sizeof(Segment), PROT_READ | PROT_WRITE,
                         MAP_SHARED | MAP_NORESERVE, descriptor, 0);
    return address == MAP_FAILED ? nullptr : static_cast<Segment*>(address);
}

/// Reads the head by itself: a mapping of a file that was cut short would fault.
bool isUsable(const Folder& folder, int descriptor, Problem* problem) {
    struct stat state {};
    if (fstat(descriptor, &state) != 0 || !S_ISREG(state.st_mode)) {
        *problem = refusal(folder, "is no file");
        return false;
    }
    if (state.st_uid != geteuid()) {
        *problem = refusal(folder, "belongs to another user");
        return false;
    }
    struct {
        std::uint64_t magic;
        std::uint32_t layout;
        std::uint32_t reserved;
        std::uint64_t bytes;
    } head{};
    if (pread(descriptor, &head, sizeof head, 0) != static_cast<ssize_t>(sizeof head) ||
        head.magic != SEGMENT_MAGIC) {
        *problem = refusal(folder, "is not a desktop's");
        return false;
    }
    if (head.layout != LAYOUT_VERSION || head.bytes != sizeof(Segment)) {
        *problem = refusal(folder, "has layout " + std::to_string(head.layout) +
                                       ", which this program (layout " +
                                       std::to_string(LAYOUT_VERSION) + ") does not read");
        return false;
    }
    if (state.st_size != static_cast<off_t>(sizeof(Segment))) {
        *problem = refusal(folder, "was cut short");
        return false;
    }
    return true;
}

/// The file takes its name only when it is whole.
Segment* makeSegment(const Folder& folder, Problem* problem) {
    const int at = folder.descriptor();
    unlinkat(at, NEW_FILE_NAME, 0);
    const int descriptor =
        openat(at, NEW_FILE_NAME, O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    Segment* segment = nullptr;
    if (descriptor >= 0 && ftruncate(descriptor, sizeof(Segment)) == 0) {
        segment = map(descriptor);
    }
    if (segment != nullptr) {
        initialiseLock(&segment->lock);
        segment->layout = LAYOUT_VERSION;
        segment->bytes = sizeof(Segment);
        segment->magic = SEGMENT_MAGIC;
        if (renameat(at, NEW_FILE_NAME, at, FILE_NAME) != 0) {
            munmap(segment, sizeof(Segment));
            segment = nullptr;
        }
    }
    if (segment == nullptr) {
        *problem = "cannot make " + folder.path() + "/" + FILE_NAME + ": " + std::strerror(errno);
    }
    if (descriptor >= 0) {
        close(descriptor);
    }
    return segment;
}

}  // namespace

Segment* mapSegmentFile(const Folder& folder, bool inUse, Problem* problem) {
    const int descriptor =
        openat(folder.descriptor(), FILE_NAME, O_RDWR | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) {
        if (errno != ENOENT) {
            *problem =
                refusal(folder, std::string("cannot be opened (") + std::strerror(errno) + ")");
            return nullptr;
        }
        return makeSegment(folder, problem);
    }
    Segment* segment = nullptr;
    const bool usable = isUsable(folder, descriptor, problem);
    if (usable && inUse) {
        segment = map(descriptor);
        if (segment == nullptr) {
            *problem =
                "cannot map " + folder.path() + "/" + FILE_NAME + ": " + std::strerror(errno);
        }
    }
    close(descriptor);
    if (usable && !inUse) {
        removeDesktopFiles(folder);
        segment = makeSegment(folder, problem);
    }
    return segment;
}

void removeDesktopFiles(const Folder& folder) {
    const int copy = fcntl(folder.descriptor(), F_DUPFD_CLOEXEC, 0);
    DIR* listing = copy < 0 ? nullptr : fdopendir(copy);
    if (listing == nullptr) {
        return;
    }
    rewinddir(listing);
    while (const dirent* entry = readdir(listing)) {
        const std::string name = entry->d_name;
        if (name == FILE_NAME || name == NEW_FILE_NAME || name.starts_with("queue-") ||
            name.starts_with("map-")) {
            unlinkat(folder.descriptor(), name.c_str(), 0);
        }
    }
    closedir(listing);
}

}  // namespace juntora::desktop
