// The activity monitor: owner of the application table and of the request dispatch, the hub's only
// clock, and the dialog that shows what runs.
#pragma once

#include <memory>

#include "framework/CDialog.h"
#include "framework/CListBox.h"

namespace juntora {

class AppTable;
class CJuntoraDlg;
class ipcDes;

/// Works the same whether its dialog is shown or hidden; closing the dialog hides it.
class CAppMonDlg : public CDialog {
public:
    /// Makes this process the hub: the shared block is open from here on. `ipcWnd` is the window at
    /// which requests arrive, `owner` the main dialog, which is asked to close when the last tool
    /// has gone; neither is owned, and the owner outlives this object.
    CAppMonDlg(CWnd* ipcWnd, CJuntoraDlg* owner);
    ~CAppMonDlg() override;

    /// Makes the dialog, hidden, and starts the clock. 0 on failure.
    BOOL Create();

    /// Whether the table has a row.
    bool HasApps() const;

    /// Asks the main dialog to close at the next tick, if the table is empty then, whether or not
    /// there ever was a tool.
    void CloseAtNextTick() { m_bCloseIsDue = true; }

    /// Asks every tool but the one of window `except` to close, one after the other, each in front
    /// of the others as its turn comes. Requests are served meanwhile. A tool that hangs for 5 s is
    /// left alone and the next one asked.
    void CloseAllApps(HWND except);

    std::unique_ptr<ipcDes> m_pIpc;

protected:
    BOOL OnInitDialog() override;
    void DoDataExchange(CDataExchange* exchange) override;
    void OnCancel() override;
    const AFX_MSGMAP& GetMessageMap() const override;

private:
    void OnTimer(std::uintptr_t id);
    void ReapDeadWindows();

    std::unique_ptr<AppTable> m_pAppTable;
    CJuntoraDlg* m_pOwner;
    int m_nTemplateId;
    int m_bHadClient = 0;
    bool m_bCloseIsDue = false;
    std::uintptr_t m_nTimerId = 1;
    std::uintptr_t m_nTimerHandle = 0;
    CListBox m_listBox;
};

}  // namespace juntora
