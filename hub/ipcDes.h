// The hub's end of the link: it receives every record that a tool sends to the hub.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "hub/ActivityList.h"
#include "hub/AppTable.h"
#include "hub/Bridge.h"
#include "ipc/ipc.h"

namespace juntora {

/// Answers requests out of the application table, carries records from tool to tool, and keeps the
/// activity list in step with the table. One object for the process, on the thread of its windows.
/// Whatever a record holds, the result is the answer to its sender: nothing is reported to anybody
/// else, but for a tool of another version.
class ipcDes : public ipc {
public:
    /// Opens the shared block and takes the requests' message; ipcSelfId must be 0 already.
    /// `window` is the hub's hidden window. Table, list box and flag are the monitor's, are not
    /// owned and outlive this object; the flag (which may be null) becomes 0 here, and 1 with the
    /// first tool. The last two arguments are not used.
    ipcDes(HWND window, AppTable* table, CListBox* listBox, int* hadClient, int, int);
    /// The bridge goes first.
    ~ipcDes() override;

    /// The process's one object, null where there is none (any more).
    static ipcDes* theHub();

    /// Makes the bridge anew. Without a maker, or if its windows cannot be made, there is none.
    void createBridge();

    /// See Bridge::isCalling.
    bool isBridgeCalling() const { return m_pBridge && m_pBridge->isCalling(); }

    /// Handles a record, from inside the hidden window's procedure only.
    int onRequest(int opcode, IpcMessage* record) override;

    // --- Tools -----------------------------------------------------------------------------------

    /// The window of a tool: of this very one for a name with a semicolon, else of the newest
    /// instance of the name. 0 if there is none.
    HWND findToolWindow(const char* name) const;
    bool hasTool(HWND window) const { return m_pTable->rowOfWindow(window) != nullptr; }
    /// To be told of a tool that has died before its rows go.
    void toolHasDied(HWND window) {
        if (m_pBridge) {
            m_pBridge->clientGone(window);
        }
    }
    /// Enters a tool as a sign-on does, without a test of the version and without a reply. For the
    /// windows of the bridge.
    void addToolRow(const char* baseName, HWND window);
    /// Removes all rows of a window in good order, with their lines, and tells their watchers.
    void removeWindowRows(HWND window);
    /// Tells the watchers of a row that it departs, orderly (1) or not (0), and drops them. The row
    /// itself stays.
    void notifyWatchers(AppEntry* row, int orderly);

    // --- Lines -----------------------------------------------------------------------------------

    /// Adds a line to the activity list; `file` may be null.
    void addActivityLine(const char* name, HWND window, const PathName* file, std::uint32_t access,
                         std::uint32_t flags);
    /// Removes the line of a window for a file, an empty path standing for no file; with a null
    /// `file` whichever of the window's lines comes last. 0 when a line was removed, else 1.
    int removeActivityLine(HWND window, const PathName* file);

    // --- Sending ---------------------------------------------------------------------------------

    /// Sends a status, or any record, to the window `to` as though `from` were its sender. Returns
    /// the result of the forward.
    int sendStatusAs(HWND from, HWND to, const char* text, int code);
    int sendRequestAs(HWND from, int opcode, const char* text, HWND to);
    /// Posts a record to each tool, with `knownOnly` only to those that the suite knows by name.
    void broadcast(int opcode, const char* text, int knownOnly);

private:
    using Handler = int (ipcDes::*)(IpcMessage* record);
    struct Request;
    static const Request REQUESTS[];
    int dispatch(int opcode, IpcMessage* record);
    int forwardRecord(int opcode, const IpcMessage* record);

    int onSignOn(IpcMessage* record);
    int onSignOff(IpcMessage* record);
    int onFindApp(IpcMessage* record);
    int onAppName(IpcMessage* record);
    int onWatch(IpcMessage* record);
    int onHubCommand(IpcMessage* record);
    int onIsAlive(IpcMessage* record);
    int onLaunch(IpcMessage* record);
    int onLaunchWait(IpcMessage* record);
    int onSetEnv(IpcMessage* record);
    int onFileOpen(IpcMessage* record);
    int onFileQuery(IpcMessage* record);
    int onFileClose(IpcMessage* record);
    int onFileSetFlags(IpcMessage* record);
    int onFileClearFlags(IpcMessage* record);
    int onFileFindFlags(IpcMessage* record);

    void holdFile(const AppEntry& client, const PathName& file, std::uint32_t access);
    int changeFileFlags(IpcMessage* record, AppTable::FlagChange change);
    void addRowLine(const AppEntry& row);
    int checkVersion(std::string_view name, int version, const IpcMessage* record);
    void enterTool(std::string_view baseName, std::int32_t instance, HWND window);

    int* m_pHadClient;
    AppTable* m_pTable;
    ActivityList m_lines;
    std::unique_ptr<Bridge> m_pBridge;
};

}  // namespace juntora
