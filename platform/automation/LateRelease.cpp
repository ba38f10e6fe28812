#include "platform/automation/LateRelease.h"

#include "platform/desktop/message.h"
#include "platform/desktop/window.h"

namespace juntora::automation {
namespace {

constexpr char WINDOW_CLASS[] = "JuntoraAutomation";
constexpr UINT RELEASE_NEXT = WM_APP;

}  // namespace

LateRelease::LateRelease() {
    const WNDCLASSA windowClass{0, &handle, 0, 0, 0, WINDOW_CLASS};
    RegisterClassA(&windowClass);
    m_window = CreateWindowExA(0, WINDOW_CLASS, "", 0, 0, 0, 0, 0, 0, 0);
    SetWindowUserData(m_window, reinterpret_cast<LPARAM>(this));
}

LateRelease::~LateRelease() {
    SetWindowUserData(m_window, 0);
    DestroyWindow(m_window);
    while (!m_line.empty()) {
        releaseNext();
    }
}

LRESULT LateRelease::handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CLOSE) {
        return 0;  // Nobody else's to close.
    }
    if (message != RELEASE_NEXT) {
        return DefWindowProcA(window, message, wParam, lParam);
    }
    // Anybody can post the message: then an object goes a little earlier.
    if (auto* late = reinterpret_cast<LateRelease*>(GetWindowUserData(window))) {
        late->releaseNext();
    }
    return 0;
}

void LateRelease::releaseNext() {
    if (m_line.empty()) {
        return;
    }
    const auto [object, references] = m_line.front();
    m_line.pop_front();
    for (DWORD i = 0; i < references; ++i) {
        object->Release();
    }
}

void LateRelease::forget(const IDispatch* object) {
    std::erase_if(m_line, [object](const auto& waiting) { return waiting.first == object; });
}

void LateRelease::add(IDispatch* object, DWORD references) {
    if (references == 0) {
        return;
    }
    m_line.emplace_back(object, references);
    if (!PostMessageA(m_window, RELEASE_NEXT, 0, 0)) {
        releaseNext();
    }
}

}  // namespace juntora::automation
