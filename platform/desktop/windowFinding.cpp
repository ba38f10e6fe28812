// Finding windows: by class and title, in the window order, by relation.
#include <algorithm>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "platform/desktop/Address.h"
#include "platform/desktop/Lock.h"
#include "platform/desktop/Sweep.h"
#include "platform/desktop/window.h"
#include "platform/kernel/sync.h"

namespace juntora {
namespace desktop {
namespace {

/// An answer to a search, good while no window has come, gone or changed since.
struct Answer {
    std::string className;
    std::string title;
    std::uint32_t changes = 0;
    HWND window = 0;
    bool isAsked = false;
};

constexpr std::size_t ANSWERS = 4;
thread_local Answer t_answers[ANSWERS];
thread_local std::size_t t_nextAnswer = 0;

Answer* rememberedAnswer(const char* className, const char* title) {
    for (Answer& answer : t_answers) {
        if (answer.isAsked && answer.className == className && answer.title == title) {
            return &answer;
        }
    }
    return nullptr;
}

/// The desktop's child for which `fits(index)`, front first, whose thread lives.
template <typename Next>
HWND firstLiving(Attachment& desktop, Next&& next) {
    Segment& segment = desktop.segment();
    std::int64_t order = std::numeric_limits<std::int64_t>::max();
    for (std::uint32_t index = next(order); index != 0; index = next(order)) {
        const HWND window = segment.windows[index].live.load();
        Address owner{};
        if (addressOf(segment, window, &owner)) {
            return window;
        }
        order = segment.details[index].order - 1;
        sweepThread(desktop, segment.windows[index].thread.load() % MAX_THREADS);
    }
    return 0;
}

/// The window in front of all others at or behind `order` for which `fits`; its index.
template <typename Fits>
std::uint32_t frontMost(const Segment& segment, std::int64_t order, Fits&& fits) {
    std::uint32_t found = 0;
    for (std::uint32_t index = 1; index < segment.windowLimit.load(); ++index) {
        const std::int64_t own = segment.details[index].order.load();
        if (segment.windows[index].live.load() != 0 && own <= order && fits(index) &&
            (found == 0 || own > segment.details[found].order.load())) {
            found = index;
        }
    }
    return found;
}

HWND search(Attachment& desktop, const char* className, const char* title) {
    Segment& segment = desktop.segment();
    if (className != nullptr && title != nullptr) {
        return firstLiving(desktop, [&](std::int64_t order) {
            return findByClassAndTitle(segment, className, title, order);
        });
    }
    return firstLiving(desktop, [&](std::int64_t order) {
        return frontMost(segment, order, [&](std::uint32_t index) {
            return segment.windows[index].parent.load() == 0 &&
                   (className == nullptr ||
                    equalsIgnoringCase(segment.details[index].className, className)) &&
                   (title == nullptr || equalsIgnoringCase(titleOf(segment, index), title));
        });
    });
}

/// The sibling next behind `order` among the children of `parent` whose threads live.
HWND nextSibling(HWND parent, std::int64_t order) {
    Attachment* attachment = Attachment::get();
    if (attachment == nullptr) {
        return 0;
    }
    Segment& segment = attachment->segment();
    const SegmentLock lock(segment);
    if (!lock) {
        return 0;
    }
    const std::uint32_t index = frontMost(segment, order, [&](std::uint32_t candidate) {
        const WindowSlot& slot = segment.windows[candidate];
        return slot.parent.load() == parent &&
               threadLives(segment.threads[slot.thread.load() % MAX_THREADS],
                           slot.threadGeneration.load());
    });
    return index == 0 ? 0 : segment.windows[index].live.load();
}

constexpr std::int64_t FRONT = std::numeric_limits<std::int64_t>::max();

}  // namespace
}  // namespace desktop

HWND GetDesktopWindow() { return 0x0001'0000; }

HWND FindWindowA(const char* className, const char* title) {
    desktop::Attachment* attachment = desktop::Attachment::get();
    if (attachment == nullptr) {
        return 0;
    }
    desktop::Segment& segment = attachment->segment();
    const bool isNamed = className != nullptr && title != nullptr;
    desktop::Answer* known = isNamed ? desktop::rememberedAnswer(className, title) : nullptr;
    if (known != nullptr && known->changes == segment.windowChanges.load()) {
        desktop::Address owner{};
        if (known->window == 0 || desktop::addressOf(segment, known->window, &owner)) {
            return known->window;
        }
    }
    const desktop::SegmentLock lock(segment);
    if (!lock) {
        return 0;
    }
    const HWND found = desktop::search(*attachment, className, title);
    if (isNamed) {
        if (known == nullptr) {
            known = &desktop::t_answers[desktop::t_nextAnswer++ % desktop::ANSWERS];
        }
        *known = {className, title, segment.windowChanges.load(), found, true};
    }
    return found;
}

HWND GetWindow(HWND window, UINT which) {
    desktop::Attachment* attachment = desktop::Attachment::get();
    const bool isDesktop = window == GetDesktopWindow();
    if (attachment == nullptr || (!isDesktop && !IsWindow(window))) {
        SetLastError(ERROR_INVALID_WINDOW_HANDLE);
        return 0;
    }
    if (which == GW_CHILD) {
        return desktop::nextSibling(isDesktop ? 0 : window, desktop::FRONT);
    }
    const desktop::Segment& segment = attachment->segment();
    if (!isDesktop && which == GW_OWNER) {
        const HWND owner = segment.details[desktop::indexOf(window)].owner.load();
        return desktop::isCurrent(segment, owner) ? owner : 0;
    }
    if (isDesktop || which != GW_HWNDNEXT) {
        return 0;
    }
    const std::uint32_t index = desktop::indexOf(window);
    const std::int64_t order = segment.details[index].order.load() - 1;
    return desktop::nextSibling(segment.windows[index].parent.load(), order);
}

HWND GetParent(HWND window) {
    desktop::Attachment* attachment = desktop::Attachment::get();
    if (attachment == nullptr || !desktop::isCurrent(attachment->segment(), window)) {
        SetLastError(ERROR_INVALID_WINDOW_HANDLE);
        return 0;
    }
    return attachment->segment().windows[desktop::indexOf(window)].parent.load();
}

HWND GetDlgItem(HWND parent, int id) {
    for (HWND child = GetWindow(parent, GW_CHILD); child != 0;
         child = GetWindow(child, GW_HWNDNEXT)) {
        if (GetDlgCtrlID(child) == id) {
            return child;
        }
    }
    return 0;
}

void EnumWindows(BOOL (*visit)(HWND, LPARAM), LPARAM context) {
    desktop::Attachment* attachment = desktop::Attachment::get();
    if (attachment == nullptr) {
        return;
    }
    const desktop::Segment& segment = attachment->segment();
    std::vector<std::pair<std::int64_t, HWND>> children;
    for (std::uint32_t index = 1; index < segment.windowLimit.load(); ++index) {
        const HWND window = segment.windows[index].live.load();
        if (window != 0 && segment.windows[index].parent.load() == 0 && IsWindow(window)) {
            children.emplace_back(segment.details[index].order.load(), window);
        }
    }
    std::sort(children.rbegin(), children.rend());
    for (const auto& [order, window] : children) {
        if (IsWindow(window) && !visit(window, context)) {
            return;
        }
    }
}

}  // namespace juntora
