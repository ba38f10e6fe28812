// A program that offers a class, well or badly.
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <string_view>

#include "framework/COleDispatchDriver.h"
#include "framework/COleObjectFactory.h"
#include "platform/desktop/message.h"
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
