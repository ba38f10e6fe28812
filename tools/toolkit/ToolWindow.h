// A tool's window, signed on to the hub: what every program here has in common.
#pragma once

#include <memory>
#include <string>

#include "ipc/ipc.h"
#include "platform/desktop/window.h"

namespace juntora {

/// Makes a window that nobody sees, signs on with it, serves the records that arrive and leaves in
/// order when it is closed. To be used by one thread, once in a process at a time.
class ToolWindow {
public:
    enum class SignOn { DONE, REFUSED, NO_HUB };

    /// The window is there from now on; handle() is 0 where the desktop cannot be had.
    ToolWindow(const char* windowClass, const char* title);
    virtual ~ToolWindow();
    ToolWindow(const ToolWindow&) = delete;
    ToolWindow& operator=(const ToolWindow&) = delete;

    HWND handle() const { return m_window; }
    /// The unique name, empty before signOn.
    const std::string& name() const { return m_name; }

    /// Starts the hub if there is none; with `showErrors` a failing start is shown in a box.
    SignOn signOn(const char* baseName, bool showErrors);
    void signOff();
    /// Whether the hub that was signed on to is still there.
    bool hubIsThere() const;

    /// Runs the message loop until the window has been closed or the program is to quit, and leaves
    /// in order. Returns the exit code of PostQuitMessage.
    int run();

protected:
    /// Handles a record that was sent or posted to this tool; its result goes to a sender. Runs
    /// inside the window's procedure.
    virtual int onRecord(int opcode, const IpcMessage& record) = 0;
    virtual void onTimer() {}

    /// Ticks for onTimer.
    void startTimer(DWORD milliseconds);

private:
    class Link;

    static LRESULT procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT serve(int opcode, IpcMessage* record);
    void onClose();

    HWND m_window = 0;
    std::unique_ptr<ipc> m_link;
    HWND m_hub = 0;
    std::string m_name;
    int m_recordsInHand = 0;
};

}  // namespace juntora
