// A text, an icon or a rule that a person only looks at.
#include "platform/desktop/window.h"
#include "platform/dialog/Controls.h"

namespace juntora::dialog {

LRESULT StaticProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return message == WM_GETDLGCODE ? LRESULT{DLGC_STATIC}
                                    : DefWindowProcA(window, message, wParam, lParam);
}

}  // namespace juntora::dialog
