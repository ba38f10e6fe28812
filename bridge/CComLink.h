// The bridge: tools that are driven by automation objects stand in the hub's table like all others.
//
// Each has a hidden stand-by window of the hub's. While its session runs that window has a row
// under the tool's name; records for the row become calls of the tool's objects, and what the tool
// reports becomes records of the row. No object is called while a request is being answered: the
// request is posted to a stand-by window as a code, and the call is made from the message loop.
#pragma once

#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "bridge/CComInterfaceWnd.h"
#include "bridge/IVoltaraIpcLink.h"
#include "bridge/ToolObjects.h"
#include "framework/CCmdTarget.h"
#include "hub/Bridge.h"

namespace juntora {

class ipcDes;

/// A code of the private message, and what it brought.
struct BridgeCall {
    int code;
    LPARAM number;
    std::unique_ptr<std::string> text;     ///< Null unless the code has one.
    std::unique_ptr<ChangeRecord> change;  ///< As text.
};

struct Session {
    SessionState state = SESSION_NONE;
    HWND client = 0;  ///< Who has asked for it.
};

/// One in the process, made, held and ended by its hub, for the hub's thread.
class CComLink : public CCmdTarget, public Bridge {
public:
    /// `hub` is not owned; with a null one nothing is done or answered.
    explicit CComLink(ipcDes* hub);
    /// As a BridgeMaker.
    static std::unique_ptr<Bridge> create(ipcDes* hub) { return std::make_unique<CComLink>(hub); }
    /// Ends all sessions, and clears the tools' command lines.
    ~CComLink() override;

    int createAllWindows() override;
    bool firstLook(int opcode, IpcMessage* record, int* result) override;
    HWND toolForLockedFile(const PathName& file, std::uint32_t access) override;
    HWND toolForMonitoredFile(HWND window, const PathName& file, std::uint32_t* flags) override;
    bool isCalling() const override { return m_nCalls > 0; }
    void clientGone(HWND window) override;

    // The rows of the tools: their windows, 0 where there is none.
    HWND voltaraWindow() const;
    HWND scopelWindow() const;
    HWND tunaraWindow() const;
    HWND dorvaneWindow() const;
    HWND wavendWindow() const;
    /// The tool that works on files of the kind.
    HWND toolForExtension(const PathName& file) const;
    /// Whether the record's text is the name of one of them, without regard to case and without an
    /// instance; its window is in `*result` then.
    bool toolByName(const IpcMessage* record, int* result) const;

    // Each removes what there is, with its session, and makes it anew. 0 on failure.
    int createSimulatorWindows();
    int createTunaraWindow();
    int createModelarWindow();
    int createWavendWindow();

    // For the stand-by windows.
    /// The first that there is of the simulator's, Tunara's, Modelar's and Wavend's.
    CComInterfaceWnd* firstWindow() const;
    /// Carries out a code. The window that it came to may be gone behind it. One that comes while
    /// another is being carried out (that may show a box, or wait in an object that looks for
    /// messages) waits until that is done.
    void perform(BridgeCall call);
    /// Ends the window's session, and the window, from the message loop.
    void closeLater(HWND window);
    Session sessionOf(const CComInterfaceWnd& window) const;

protected:
    const AFX_DISPMAP* GetDispatchMap() const override;
    std::span<const GUID> GetInterfaceMap() const override;

private:
    using Window = std::unique_ptr<CComInterfaceWnd>;
    struct LaunchTarget;

    HWND rowWindow(const char* name) const;
    bool takeRecord(int opcode, const IpcMessage* record, int* result);
    void carryOut(const BridgeCall& call);
    void carryOutText(int code, const std::string& text);
    bool hasClientLeft(HWND client) const;
    int createWindow(Window* window, const char* caption, int id);
    static void destroyWindow(Window* window);
    void endSessionOf(LPARAM window);
    void onWindowClosed(HWND window);
    void addRow(const char* name, const Window& window);
    void removeRows(const Window& window);

    // Launches and sessions: ToolSessions.cpp.
    bool onToolLaunch(const IpcMessage* record);
    bool takeLaunch(const LaunchTarget& target, const std::string& arguments, HWND client);
    void startVoltaraSession();
    void startTunaraSession();
    void startModelarSession();
    void startWavendSession();
    void endVoltaraSession();
    void endTunaraSession();
    void endModelarSession();
    void endWavendSession();
    int onTunaraRequest(int opcode, const IpcMessage* record);
    int onDorvaneRequest(int opcode, const IpcMessage* record);
    int onWavendRequest(int opcode, const IpcMessage* record);
    void openTunaraFile(const std::string& file);
    void modelarCommand(const std::string& text);
    void wavendCommand(const std::string& text);
    static void onTunaraNotify(int code, void* link);

    // The simulator: SimulatorLink.cpp.
    int connectIpcLink();
    int adviseIpcLink();
    void notifyChange(LONG code);
    void onChange(const ChangeRecord& record);
    void sendStatusOnce(const ChangeRecord& record, int code);
    static void onSimObjNotify(unsigned char flags, void* link);
    int onVoltaraRequest(int opcode, const IpcMessage* record);
    int onScopelRequest(int opcode, const IpcMessage* record);
    void openProfile(const std::string& path);
    void forwardToScopel(const std::string& text);

    ipcDes* m_pHub;                    ///< Not owned.
    IDispatch* m_pLinkSink = nullptr;  ///< This object's own; null while not subscribed.
    LONG m_lLinkCookie = 0;            ///< The link's, for the subscription.
    Window m_pcwndDummyVoltara;
    Window m_pcwndDummyScopel;
    Window m_pcwndDummyTunara;
    Window m_pcwndDummyModelar;
    Window m_pcwndDummyWavend;
    std::unique_ptr<wVoltaraUserInterface> m_pVoltaraUser;  ///< While a simulator session runs.
    std::unique_ptr<wSimObjInterface> m_pSimObj;
    std::unique_ptr<wTunaraInterface> m_pTunara;  ///< While a Tunara session runs.
    std::unique_ptr<IVoltaraIpcLink> m_pIpcLink;
    std::unique_ptr<ObjectWatch> m_pLinkWatch;  ///< Ends the session with the simulator's process.
    std::string m_strProfile;                   ///< The file last given to the simulator.
    std::string m_strTunaraFile;                ///< The file last given to Tunara.
    HWND m_hVoltaraClient = 0;                  ///< Who has asked for the simulator; 0 for nobody.
    HWND m_hTunaraClient = 0;
    HWND m_hModelarClient = 0;
    HWND m_hWavendClient = 0;
    std::unique_ptr<wSketchelModelarInterface> m_pModelar;  ///< During one call.
    std::unique_ptr<wSketchelWavendInterface> m_pWavend;    ///< During one call.
    int m_bStatusSent = 0;  ///< A status has gone out since the simulator's last change 4.
    std::deque<BridgeCall> m_waiting;  ///< For the one that is being carried out.
    bool m_isCarryingOut = false;
    std::vector<HWND> m_closing;  ///< Windows that are to go.
    int m_nCalls = 0;             ///< Codes and callbacks that are being carried out.
};

}  // namespace juntora
