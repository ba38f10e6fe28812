// Message boxes. On a desktop that no screen shows the default button is the answer (UnseenBox.h).
#include <new>

#include "platform/desktop/view.h"
#include "platform/dialog/MessageBoxDialog.h"
#include "platform/dialog/UnseenBox.h"
#include "platform/dialog/dialog.h"

namespace juntora {
namespace {

/// Counts the boxes of this thread that stand one inside the other: each loop serves what makes the
/// next one, and all of them lie on one stack.
class NestedBox {
public:
    NestedBox() { ++t_depth; }
    ~NestedBox() { --t_depth; }
    NestedBox(const NestedBox&) = delete;
    NestedBox& operator=(const NestedBox&) = delete;

    static bool isAllowed() { return t_depth <= MOST; }

private:
    static constexpr int MOST = 8;
    static thread_local int t_depth;
};

thread_local int NestedBox::t_depth = 0;

}  // namespace

int MessageBoxA(HWND owner, const char* text, const char* caption, UINT flags) {
    using namespace dialog;
    const BoxButton& fallback = DefaultButton(flags);
    int answer = NOT_SHOWN;
    try {
        const NestedBox nested;
        if (NestedBox::isAllowed() && EnsureScreen()) {
            answer = ShowMessageBox(owner, text ? text : "", caption ? caption : "Error", flags);
        }
    } catch (const std::bad_alloc&) {
        answer = NOT_SHOWN;
    }
    if (answer != NOT_SHOWN) {
        return answer;
    }
    PrintUnseenBox(text, caption, fallback.name);
    return fallback.id;
}

}  // namespace juntora
