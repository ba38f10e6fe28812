#include "platform/desktop/view.h"

#include <algorithm>
#include <unordered_map>

#include "platform/desktop/Address.h"
#include "platform/desktop/Attachment.h"
#include "platform/desktop/Futex.h"
#include "platform/desktop/Lock.h"
#include "platform/desktop/WindowIndex.h"
#include "platform/desktop/window.h"

namespace juntora {
namespace desktop {
namespace {

/// Windows are not nested deeper than this; a ring of parents in a damaged segment ends here.
constexpr int DEEPEST = 16;

/// What a viewer is asked to show, in pixels: no display is larger.
constexpr LONG FURTHEST = 32'000;
constexpr LONG LARGEST = 8192;

bool isTopLevelShown(Segment& segment, std::uint32_t index) {
    const WindowSlot& slot = segment.windows[index];
    return slot.parent.load() == 0 && (slot.style.load() & (WS_VISIBLE | WS_CHILD)) == WS_VISIBLE &&
           threadLives(segment.threads[slot.thread.load() % MAX_THREADS],
                       slot.threadGeneration.load());
}

/// The index of the top-level window that a window is in, or is; 0 for one that has gone.
std::uint32_t topOf(const Segment& segment, std::uint32_t index) {
    for (int depth = 0; depth < DEEPEST; ++depth) {
        const HWND parent = segment.windows[index].parent.load();
        if (parent == 0) {
            return index;
        }
        if (!isCurrent(segment, parent)) {
            return 0;
        }
        index = indexOf(parent);
    }
    return 0;
}

ViewedWindow describe(const Segment& segment, std::uint32_t index, HWND window) {
    const WindowSlot& slot = segment.windows[index];
    const WindowDetails& details = segment.details[index];
    // First: what changes behind it is shown the next time.
    const DWORD changes = slot.changes;
    // Any program can write any number.
    const LONG left = std::clamp<LONG>(details.x, -FURTHEST, FURTHEST);
    const LONG top = std::clamp<LONG>(details.y, -FURTHEST, FURTHEST);
    const LONG width = std::clamp<LONG>(details.width, 0, LARGEST);
    const LONG height = std::clamp<LONG>(details.height, 0, LARGEST);
    return {window,
            slot.parent,
            details.owner,
            slot.style,
            slot.extendedStyle,
            details.id,
            details.icon,
            {left, top, left + width, top + height},
            changes,
            details.order,
            slot.thread.load() % MAX_THREADS + 1,
            details.className,
            std::string(titleOf(segment, index))};
}

/// What is to be seen, by the index of its top-level window, which comes first in each group.
std::unordered_map<std::uint32_t, std::vector<std::uint32_t>> groups(Segment& segment) {
    std::unordered_map<std::uint32_t, std::vector<std::uint32_t>> found;
    const std::uint32_t limit = segment.windowLimit.load();
    for (std::uint32_t index = 1; index < limit; ++index) {
        if (segment.windows[index].live.load() != 0 && isTopLevelShown(segment, index)) {
            found[index].push_back(index);
        }
    }
    for (std::uint32_t index = 1; !found.empty() && index < limit; ++index) {
        if (segment.windows[index].live.load() == 0 || segment.windows[index].parent.load() == 0) {
            continue;
        }
        const auto group = found.find(topOf(segment, index));
        if (group != found.end()) {
            group->second.push_back(index);
        }
    }
    return found;
}

}  // namespace
}  // namespace desktop

std::optional<std::vector<ViewedWindow>> ViewWindows() {
    desktop::Attachment* attachment = desktop::Attachment::get();
    if (attachment == nullptr) {
        return std::nullopt;
    }
    desktop::Segment& segment = attachment->segment();
    const desktop::SegmentLock lock(segment);
    if (!lock) {
        return std::nullopt;
    }
    std::vector<ViewedWindow> windows;
    auto groups = desktop::groups(segment);
    std::vector<std::uint32_t> tops;
    for (auto& [top, group] : groups) {
        tops.push_back(top);
        // Children are made at the back of their siblings: the order of making is the template's.
        std::sort(group.begin() + 1, group.end(), [&](std::uint32_t a, std::uint32_t b) {
            return segment.details[a].order.load() > segment.details[b].order.load();
        });
    }
    std::sort(tops.begin(), tops.end(), [&](std::uint32_t a, std::uint32_t b) {
        return segment.details[a].order.load() > segment.details[b].order.load();
    });
    for (const std::uint32_t top : tops) {
        for (const std::uint32_t index : groups[top]) {
            windows.push_back(
                desktop::describe(segment, index, segment.windows[index].live.load()));
        }
    }
    return windows;
}

DWORD ViewChangeCount() {
    desktop::Attachment* attachment = desktop::Attachment::get();
    return attachment == nullptr ? 0 : attachment->segment().viewChanges.load();
}

DWORD AwaitViewChange(DWORD seen, DWORD milliseconds) {
    desktop::Attachment* attachment = desktop::Attachment::get();
    if (attachment == nullptr) {
        return seen;
    }
    desktop::Segment& segment = attachment->segment();
    segment.viewWaits = 1;
    if (segment.viewChanges.load() == seen) {
        desktop::futexWait({&segment.viewChanges, seen}, {nullptr, 0}, milliseconds);
    }
    return segment.viewChanges.load();
}

HWND FindScreen() { return FindWindowA(SCREEN_WINDOW_CLASS, ""); }

}  // namespace juntora
