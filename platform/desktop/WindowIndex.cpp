#include "platform/desktop/WindowIndex.h"

#include <algorithm>
#include <cstring>

#include "platform/desktop/Futex.h"
#include "platform/desktop/Hash.h"

namespace juntora::desktop {
namespace {

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }

/// Of both with a NUL in between, without regard to case.
std::uint32_t hashOfWindow(std::string_view className, std::string_view title) {
    std::uint32_t hash = HASH_START;
    for (const char c : className) {
        hash = hashOn(hash, lower(c));
    }
    hash = hashOn(hash, '\0');
    for (const char c : title) {
        hash = hashOn(hash, lower(c));
    }
    return hash;
}

void copyText(char* to, std::size_t capacity, std::string_view text) {
    const std::size_t length = std::min(text.size(), capacity - 1);
    std::memcpy(to, text.data(), length);
    to[length] = '\0';
}

void link(Segment& segment, std::uint32_t index) {
    WindowDetails& details = segment.details[index];
    std::uint32_t& bucket = segment.windowBuckets[details.hash % INDEX_BUCKETS];
    details.nextInBucket = bucket;
    bucket = index;
}

void unlink(Segment& segment, std::uint32_t index) {
    const WindowDetails& details = segment.details[index];
    std::uint32_t* from = &segment.windowBuckets[details.hash % INDEX_BUCKETS];
    while (*from != 0 && *from != index) {
        from = &segment.details[*from].nextInBucket;
    }
    if (*from == index) {
        *from = details.nextInBucket;
    }
}

std::uint32_t freeIndex(Segment& segment) {
    for (std::uint32_t step = 0; step < MAX_WINDOWS; ++step) {
        const std::uint32_t index = (segment.nextWindow + step) % MAX_WINDOWS;
        if (index != 0 && segment.windows[index].live.load() == 0) {
            segment.nextWindow = index + 1;
            return index;
        }
    }
    return 0;
}

void describe(Segment& segment, std::uint32_t index, const WindowMaking& making) {
    WindowSlot& slot = segment.windows[index];
    slot.thread = making.thread;
    slot.threadGeneration = making.threadGeneration;
    slot.changes = 0;
    slot.style = making.style;
    slot.extendedStyle = making.extendedStyle;
    slot.parent = making.parent;
    WindowDetails& details = segment.details[index];
    details.order =
        making.behind ? segment.backOrder.fetch_sub(1) - 1 : segment.frontOrder.fetch_add(1) + 1;
    details.owner = making.owner;
    details.id = making.id;
    details.icon = making.icon;
    details.x = making.place.left;
    details.y = making.place.top;
    details.width = making.place.right - making.place.left;
    details.height = making.place.bottom - making.place.top;
    copyText(details.className, CLASS_NAME_BYTES, making.className);
    details.titleAt = 0;
    copyText(details.titles[0], TITLE_BYTES, making.title);
    details.hash = hashOfWindow(details.className, details.titles[0]);
}

}  // namespace

bool equalsIgnoringCase(std::string_view left, std::string_view right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char a, char b) { return lower(a) == lower(b); });
}

HWND makeWindow(Segment& segment, const WindowMaking& making) {
    const std::uint32_t index = freeIndex(segment);
    if (index == 0) {
        return 0;
    }
    WindowSlot& slot = segment.windows[index];
    const std::uint32_t generation = slot.lastGeneration.load() % 0x7FFF + 1;
    slot.lastGeneration = generation;
    describe(segment, index, making);
    if (segment.windowLimit.load() <= index) {
        segment.windowLimit = index + 1;
    }
    const HWND window = generation << 16 | index;
    slot.live = window;
    link(segment, index);
    noteWindowsChanged(segment);
    return window;
}

void unmakeWindow(Segment& segment, std::uint32_t index) {
    segment.windows[index].live = 0;
    unlink(segment, index);
    noteWindowsChanged(segment);
}

void noteViewChanged(Segment& segment) {
    segment.viewChanges.fetch_add(1);
    if (segment.viewWaits.load() != 0 && segment.viewWaits.exchange(0) != 0) {
        futexWakeAll(&segment.viewChanges);
    }
}

std::string_view titleOf(const Segment& segment, std::uint32_t index) {
    const WindowDetails& details = segment.details[index];
    return details.titles[details.titleAt.load() & 1];
}

void setTitle(Segment& segment, std::uint32_t index, std::string_view title) {
    WindowDetails& details = segment.details[index];
    unlink(segment, index);
    const std::uint32_t other = (details.titleAt.load() & 1) ^ 1;
    copyText(details.titles[other], TITLE_BYTES, title);
    details.titleAt = other;
    details.hash = hashOfWindow(details.className, details.titles[other]);
    link(segment, index);
    segment.windows[index].changes.fetch_add(1);
    noteWindowsChanged(segment);
}

std::uint32_t findByClassAndTitle(Segment& segment, std::string_view className,
                                  std::string_view title, std::int64_t order) {
    const std::uint32_t hash = hashOfWindow(className, title);
    std::uint32_t found = 0;
    for (std::uint32_t index = segment.windowBuckets[hash % INDEX_BUCKETS]; index != 0;
         index = segment.details[index].nextInBucket) {
        const WindowSlot& slot = segment.windows[index];
        const WindowDetails& details = segment.details[index];
        const bool fits = details.hash == hash && slot.live.load() != 0 && slot.parent == 0 &&
                          details.order <= order &&
                          equalsIgnoringCase(details.className, className) &&
                          equalsIgnoringCase(titleOf(segment, index), title);
        if (fits && (found == 0 || details.order > segment.details[found].order)) {
            found = index;
        }
    }
    return found;
}

void rebuildWindowIndex(Segment& segment) {
    std::fill_n(segment.windowBuckets, INDEX_BUCKETS, 0);
    for (std::uint32_t index = 1; index < segment.windowLimit.load(); ++index) {
        if (segment.windows[index].live.load() != 0) {
            WindowDetails& details = segment.details[index];
            details.hash = hashOfWindow(details.className, titleOf(segment, index));
            link(segment, index);
        }
    }
    noteWindowsChanged(segment);
}

}  // namespace juntora::desktop
