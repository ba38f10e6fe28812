// Posted messages and the message loop.
#include <time.h>

#include <cerrno>

#include "platform/desktop/Address.h"
#include "platform/desktop/CallOut.h"
#include "platform/desktop/TextTransfer.h"
#include "platform/desktop/message.h"
#include "platform/kernel/sync.h"

namespace juntora {
namespace desktop {
namespace {

bool takeQuit(Queue& queue, bool keep, MSG* message) {
    if (!queue.quitCode) {
        return false;
    }
    *message = {0, WM_QUIT, static_cast<WPARAM>(*queue.quitCode), 0, 0, {}};
    if (!keep) {
        queue.quitCode.reset();
    }
    return true;
}

/// Timers come last: WM_TIMER only when nothing else waits.
bool takeTimer(Queue& queue, HWND window, UINT first, UINT last, bool keep, MSG* message) {
    const bool wanted = (first == 0 && last == 0) || (first <= WM_TIMER && WM_TIMER <= last);
    if (!wanted || queue.timers().isEmpty()) {
        return false;
    }
    const auto due = queue.timers().takeDue(nowMilliseconds(), window, keep);
    if (!due) {
        return false;
    }
    *message = {due->window, WM_TIMER, due->id, reinterpret_cast<LPARAM>(due->callback), 0, {}};
    return true;
}

bool takeMessage(Queue& queue, MSG* message, HWND window, UINT first, UINT last, bool keep) {
    const bool found = queue.takePosted(window, first, last, keep, message) ||
                       takeQuit(queue, keep, message) ||
                       takeTimer(queue, window, first, last, keep, message);
    if (found) {
        queue.ringNow();
        message->time = GetTickCount();
    }
    return found;
}

void callReadyDescriptors(Queue& queue) {
    if (queue.watched().isReady()) {
        queue.watched().callReady();
    }
}

void sleepThrough(DWORD seconds, DWORD nanoseconds) {
    Queue::ringBeforeBlocking();
    timespec left{static_cast<time_t>(seconds), static_cast<long>(nanoseconds)};
    while (nanosleep(&left, &left) != 0 && errno == EINTR) {
    }
}

}  // namespace
}  // namespace desktop

BOOL PostMessageA(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    desktop::Queue* queue = desktop::Queue::current();
    if (queue == nullptr) {
        return 0;
    }
    if (desktop::textWayOf(message) != desktop::TextWay::NO_TEXT ||
        desktop::isOwnersAlone(message)) {
        SetLastError(ERROR_MESSAGE_SYNC_ONLY);
        return 0;
    }
    const desktop::PostedMessage posted{window, message, wParam, lParam};
    desktop::Address to{queue->thread(), queue->generation()};
    if (window != 0 && !desktop::addressOrSweep(queue->segment(), window, &to)) {
        SetLastError(ERROR_INVALID_WINDOW_HANDLE);
        return 0;
    }
    // It would end the loop past everything that a window does when it is closed.
    if (message == WM_QUIT && to.thread != queue->thread()) {
        SetLastError(ERROR_ACCESS_DENIED);
        return 0;
    }
    if (!queue->segment().mailboxes[to.thread].posted.push(posted)) {
        SetLastError(ERROR_TOO_MANY_POSTS);
        return 0;
    }
    queue->ringForPost(to.thread);
    return 1;
}

void PostQuitMessage(int exitCode) {
    if (desktop::Queue* queue = desktop::Queue::current()) {
        queue->quitCode = exitCode;
    }
}

BOOL PeekMessageA(MSG* message, HWND window, UINT first, UINT last, UINT remove) {
    desktop::Queue* queue = desktop::Queue::current();
    if (queue == nullptr) {
        return 0;
    }
    queue->serveSent();
    desktop::callReadyDescriptors(*queue);
    queue->ringNow();
    return desktop::takeMessage(*queue, message, window, first, last, remove != PM_REMOVE) ? 1 : 0;
}

BOOL GetMessageA(MSG* message, HWND window, UINT first, UINT last) {
    desktop::Queue* queue = desktop::Queue::current();
    if (queue == nullptr) {
        return -1;
    }
    for (;;) {
        const bool served = queue->serveSent();
        desktop::callReadyDescriptors(*queue);
        if (desktop::takeMessage(*queue, message, window, first, last, false)) {
            return message->message == WM_QUIT ? 0 : 1;
        }
        if (!served) {
            queue->waitForWork();
        }
    }
}

BOOL TranslateMessage(const MSG* message) {
    // A key with a character of its own posts that character; the screen sends characters, so that
    // only the control keys that dialogs know are left.
    const bool hasCharacter =
        message->message == WM_KEYDOWN && (message->wParam == '\r' || message->wParam == 27 ||
                                           message->wParam == '\t' || message->wParam == ' ');
    return hasCharacter ? PostMessageA(message->hwnd, WM_CHAR, message->wParam, message->lParam)
                        : 0;
}

LRESULT DispatchMessageA(const MSG* message) {
    if (message->hwnd == 0) {
        return 0;
    }
    const desktop::Queue* queue = desktop::Queue::current();
    if (message->message == WM_TIMER && message->lParam != 0 && queue != nullptr) {
        // Anybody can post the number of a timer; only this thread's own has a callback.
        const auto callback = reinterpret_cast<TIMERPROC>(message->lParam);
        if (queue->timers().hasCallback(message->hwnd, message->wParam, callback)) {
            desktop::callOut("timer", message->wParam, [&] {
                callback(message->hwnd, WM_TIMER, message->wParam, message->time);
            });
        }
        return 0;
    }
    return desktop::callWindow(message->hwnd, message->message, message->wParam, message->lParam);
}

std::uintptr_t SetTimer(HWND window, std::uintptr_t id, DWORD milliseconds, TIMERPROC callback) {
    desktop::Queue* queue = desktop::Queue::current();
    desktop::Address owner{};
    if (queue == nullptr || id == 0 || !desktop::addressOf(queue->segment(), window, &owner) ||
        owner.thread != queue->thread()) {
        SetLastError(ERROR_INVALID_WINDOW_HANDLE);
        return 0;
    }
    queue->timers().set(window, id, milliseconds, callback);
    return id;
}

BOOL KillTimer(HWND window, std::uintptr_t id) {
    desktop::Queue* queue = desktop::Queue::current();
    return queue != nullptr && queue->timers().kill(window, id) ? 1 : 0;
}

void Sleep(DWORD milliseconds) {
    desktop::sleepThrough(milliseconds / 1000, milliseconds % 1000 * 1'000'000);
}

void SleepMicroseconds(DWORD microseconds) {
    desktop::sleepThrough(microseconds / 1'000'000, microseconds % 1'000'000 * 1000);
}

DWORD GetTickCount() { return static_cast<DWORD>(desktop::nowMilliseconds()); }

int GetQueueDescriptor() {
    desktop::Queue* queue = desktop::Queue::current();
    return queue != nullptr && queue->lieDownInForeignLoop() ? queue->foreignDescriptor() : -1;
}

BOOL DispatchWaitingMessages() {
    desktop::Queue* queue = desktop::Queue::current();
    if (queue == nullptr) {
        return 1;
    }
    queue->wakeInForeignLoop();
    MSG message{};
    while (PeekMessageA(&message, 0, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) {
            return 0;
        }
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
    queue->lieDownInForeignLoop();
    return 1;
}

BOOL WatchDescriptor(int descriptor, void (*ready)(void*), void* context) {
    desktop::Queue* queue = desktop::Queue::current();
    return queue != nullptr && queue->watched().watch(descriptor, ready, context) ? 1 : 0;
}

void UnwatchDescriptor(int descriptor) {
    if (desktop::Queue* queue = desktop::Queue::current()) {
        queue->watched().unwatch(descriptor);
    }
}

}  // namespace juntora
