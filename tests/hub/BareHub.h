// A whole hub but for its dialogs, in the calling process: hidden window, list box, table and
// dispatch. Requests arrive as from another process, in a slot of the block.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "framework/CListBox.h"
#include "hub/AppTable.h"
#include "hub/CIpcMsgWnd.h"
#include "hub/ipcDes.h"

namespace juntora::test {

/// The process must be in a desktop of its own. What cannot be made ends in an exception.
class BareHub {
public:
    BareHub();
    ~BareHub();
    BareHub(const BareHub&) = delete;
    BareHub& operator=(const BareHub&) = delete;

    /// A window that keeps the records that are posted to it.
    HWND makeTool();

    /// Sends a request and keeps its record, as it came back, in m_record.
    int send(HWND sender, int opcode, std::string_view text, int capacity = 60, HWND target = 0);
    /// The same for a record as it stands in m_record.
    int sendRecord(int opcode);

    /// What has been posted to a tool since the last call, as "opcode sender text".
    std::vector<std::string> arrivals(HWND tool);

    /// The lines of the activity list in its order.
    std::vector<std::string> lines() const;

    CIpcMsgWnd m_window;
    CListBox m_listBox;
    AppTable m_table;
    int m_bHadClient = 7;
    std::unique_ptr<ipcDes> m_pHub;
    IpcMessage m_record{};

private:
    std::vector<HWND> m_tools;
};

}  // namespace juntora::test
