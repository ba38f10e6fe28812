// References that others have given back, on their way to the objects.
#pragma once

#include <deque>
#include <utility>

#include "platform/automation/automation.h"

namespace juntora::automation {

/// What a call of an object has posted comes up before the object goes: references are given back
/// from the thread's message loop, behind what was posted before. For the automation thread.
class LateRelease {
public:
    LateRelease();
    ~LateRelease();
    LateRelease(const LateRelease&) = delete;
    LateRelease& operator=(const LateRelease&) = delete;

    void add(IDispatch* object, DWORD references);
    /// For an object that ends by itself.
    void forget(const IDispatch* object);

private:
    static LRESULT handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    void releaseNext();

    HWND m_window;
    std::deque<std::pair<IDispatch*, DWORD>> m_line;
};

}  // namespace juntora::automation
