// A hidden window that stands in the hub's table for a tool that is driven by automation.
#pragma once

#include <string>

#include "bridge/Posted.h"
#include "framework/CWnd.h"

namespace juntora {

class CComLink;

/// What the bridge posts to itself: wParam of the private message. The value is lParam.
enum BridgeCode : int {
    BRIDGE_START_VOLTARA = 1,
    BRIDGE_START_TUNARA = 2,
    BRIDGE_OPEN_PROFILE = 3,  ///< Text.
    BRIDGE_OPEN_TUNARA = 4,   ///< Text.
    BRIDGE_CHANGE = 5,        ///< ChangeRecord.
    BRIDGE_SCOPEL = 6,        ///< Text.
    BRIDGE_START_MODELAR = 7,
    BRIDGE_START_WAVEND = 8,
    BRIDGE_MODELAR = 9,  ///< Text.
    BRIDGE_WAVEND = 10,  ///< Text.
    BRIDGE_END = 11,     ///< The address of the window whose session is to end; see below.
    BRIDGE_CLOSED = 12,  ///< The handle of the window that is to go.
};

/// Beside the address with BRIDGE_END: the session ends only if nobody who is signed on has asked
/// for it. (Addresses of windows are even.)
inline constexpr LPARAM ENDS_WITH_CLIENT = 1;

/// One change that the simulator has reported. What it could not tell is empty.
struct ChangeRecord {
    LONG code;
    std::string dataFile;
    std::string profileFile;
};

/// The number of the private message; 0 where it could not be registered.
extern const UINT g_nComInterfaceMessage;

/// The name of a registered message, by which any program asks a stand-by window of its session:
/// for a SessionState, or for the window of the tool that it runs for (0: for nobody).
inline constexpr char SESSION_MESSAGE[] = "Juntora_Session";
enum SessionQuestion : WPARAM { SESSION_ASK_STATE, SESSION_ASK_CLIENT };
enum SessionState : int { SESSION_NONE, SESSION_RUNS, SESSION_CONNECTED, SESSION_SUBSCRIBED };

inline constexpr char STANDBY_WINDOW_CLASS[] = "JuntoraStandBy";

class CComInterfaceWnd : public CWnd {
public:
    /// Without a link it behaves as a plain window.
    explicit CComInterfaceWnd(CComLink* link) : m_pComLink(link) {}
    ~CComInterfaceWnd() override = default;

    /// Makes the window on the desktop, hidden and behind all others. False on failure.
    bool Create(const char* caption, int id);

    /// Puts a code into the message loop, with a number, a text or a change. 0 when that failed.
    BOOL postCode(int code, LPARAM value = 0);
    BOOL postText(int code, const std::string& text);
    BOOL postChange(ChangeRecord change);

protected:
    const AFX_MSGMAP& GetMessageMap() const override;

private:
    void onClose();
    LRESULT onBridgeMessage(WPARAM wParam, LPARAM lParam);
    LRESULT onSessionQuestion(WPARAM wParam);

    CComLink* m_pComLink;  ///< Not owned.
    Posted<std::string> m_texts;
    Posted<ChangeRecord> m_changes;
};

}  // namespace juntora
