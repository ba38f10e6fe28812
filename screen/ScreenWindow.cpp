#include "screen/ScreenWindow.h"

#include "platform/desktop/message.h"
#include "platform/desktop/view.h"
#include "platform/desktop/window.h"
#include "screen/DesktopView.h"

namespace juntora::screen {
namespace {

DesktopView* g_view = nullptr;

LRESULT handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == VIEW_SAVE_PICTURE) {
        const auto* file = reinterpret_cast<const char*>(lParam);
        return g_view == nullptr || file == nullptr
                   ? PICTURE_NO_ANSWER
                   : g_view->savePicture(static_cast<HWND>(wParam), file);
    }
    if (message == VIEW_IS_COMPLETE) {
        return g_view == nullptr || g_view->isComplete(static_cast<HWND>(wParam)) ? 1 : 0;
    }
    // Nobody closes the screen from outside: the desktop would stand there unseen.
    return message == WM_CLOSE ? 0 : DefWindowProcA(window, message, wParam, lParam);
}

}  // namespace

ScreenWindow::ScreenWindow(DesktopView& view) {
    g_view = &view;
    const WNDCLASSA screenClass{0, handle, 0, 0, 0, SCREEN_WINDOW_CLASS};
    RegisterClassA(&screenClass);
    m_window = CreateWindowExA(0, SCREEN_WINDOW_CLASS, "", 0, 0, 0, 0, 0, 0, 0);
    m_mail = std::make_unique<QSocketNotifier>(GetQueueDescriptor(), QSocketNotifier::Read);
    QObject::connect(m_mail.get(), &QSocketNotifier::activated, [] { DispatchWaitingMessages(); });
}

ScreenWindow::~ScreenWindow() {
    m_mail.reset();
    DestroyWindow(m_window);
    g_view = nullptr;
}

bool ScreenWindow::hasCompany() const {
    struct Search {
        DWORD own;
        bool found;
    };
    Search search{GetWindowThreadProcessId(m_window, nullptr), false};
    EnumWindows(
        [](HWND window, LPARAM context) -> BOOL {
            auto* state = reinterpret_cast<Search*>(context);
            state->found = GetWindowThreadProcessId(window, nullptr) != state->own;
            return state->found ? 0 : 1;
        },
        reinterpret_cast<LPARAM>(&search));
    return search.found;
}

}  // namespace juntora::screen
