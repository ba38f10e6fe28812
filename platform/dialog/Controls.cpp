#include "platform/dialog/Controls.h"

#include <initializer_list>

#include "platform/desktop/window.h"

namespace juntora::dialog {

void RegisterControlClasses() {
    static const bool registered = [] {
        constexpr int ARROW = 32512;
        for (const WNDCLASSA& control :
             {WNDCLASSA{CS_VREDRAW | CS_HREDRAW, ButtonProcedure, 0, ARROW, 0, "Button"},
              WNDCLASSA{CS_VREDRAW | CS_HREDRAW, StaticProcedure, 0, ARROW, 0, "Static"},
              WNDCLASSA{CS_DBLCLKS, ListBoxProcedure, 0, ARROW, 0, "ListBox"}}) {
            RegisterClassA(&control);
        }
        return true;
    }();
    static_cast<void>(registered);
}

}  // namespace juntora::dialog
