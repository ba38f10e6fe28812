// A program that offers a class, well or badly.
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>

#include "framework/COleDispatchDriver.h"
#include "framework/COleObjectFactory.h"
#include "platform/desktop/message.h"
#include "platform/desktop/window.h"
#include "platform/kernel/sync.h"
#include "tests/automation/testClass.h"

namespace juntora::test {
namespace {

class Counter : public CCmdTarget {
public:
    Counter() { EnableAutomation(); }
    static CCmdTarget* create() { return new Counter; }
    static const AFX_DISPMAP* map() {
        static const AFX_DISPMAP_ENTRY entries[] = {
            DISP_FUNCTION<&Counter::Add>("Add"),
            DISP_FUNCTION<&Counter::Echo>("Echo"),
            DISP_FUNCTION<&Counter::Raise>("Raise"),
            DISP_FUNCTION<&Counter::CallBack>("CallBack"),
            DISP_FUNCTION<&Counter::Bump>("Bump"),
            DISP_FUNCTION<&Counter::References>("References"),
            DISP_FUNCTION<&Counter::Make>("Make"),
            DISP_FUNCTION<&Counter::Die>("Die"),
            DISP_FUNCTION<&Counter::CallLater>("CallLater"),
        };
        static const AFX_DISPMAP dispatch(BusNameOfClass(PROGRAM_ID), entries);
        return &dispatch;
    }

protected:
    const AFX_DISPMAP* GetDispatchMap() const override { return map(); }
    std::span<const GUID> GetInterfaceMap() const override {
        static constexpr GUID INTERFACES[] = {INTERFACE_ID};
        return INTERFACES;
    }

private:
    LONG Add(LONG left, LONG right) { return left + right; }
    std::string Echo(const char* text) { return text; }
    void Raise() { AfxThrowOleException(E_FAIL); }
    /// Calls the object that it is given, which calls this one again, and so on down to 0.
    LONG CallBack(IDispatch* object, LONG depth) {
        COleDispatchDriver other;
        other.AttachDispatch(object, false);
        return other.InvokeHelper<LONG>(ON_CALL, depth);
    }
    void Bump(LONG* number) { ++*number; }
    LONG References() { return static_cast<LONG>(ForeignReferences()); }
    IDispatch* Make() { return create()->GetIDispatch(false); }
    void Die() { _exit(1); }
    /// Calls the object from the message loop, when this call has been answered.
    void CallLater(IDispatch* object, LONG depth) {
        object->AddRef();
        s_later = {object, depth};
        const WNDCLASSA windowClass{0, &handle, 0, 0, 0, "TestServer"};
        RegisterClassA(&windowClass);
        PostMessageA(CreateWindowExA(0, "TestServer", "", 0, 0, 0, 0, 0, 0, 0), WM_APP, 0, 0);
    }
    static LRESULT handle(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        if (message != WM_APP) {
            return DefWindowProcA(window, message, wParam, lParam);
        }
        COleDispatchDriver other;
        other.AttachDispatch(s_later.first);
        other.InvokeHelper<LONG>(ON_CALL, s_later.second);
        return 0;
    }
    static inline std::pair<IDispatch*, LONG> s_later;
};

const COleObjectFactory factory(CLASS_ID, PROGRAM_ID, &Counter::create, &Counter::map);

int run() {
    const char* mode = std::getenv(MODE);
    const std::string_view how = mode != nullptr ? mode : "";
    if (how == "exit") {
        return 1;
    }
    if (!AfxOleInit() || (how != "idle" && !COleObjectFactory::RegisterAll())) {
        return 1;
    }
    if (how == "late") {
        Sleep(START_MILLISECONDS + 1'000);
    }
    MSG message{};
    while (GetMessageA(&message, 0, 0, 0) > 0) {
        DispatchMessageA(&message);
    }
    return 0;
}

}  // namespace
}  // namespace juntora::test

int main() { return juntora::test::run(); }
