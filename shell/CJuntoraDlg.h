// The main dialog: the hub's face, its message loop, and the owner of what does the work.
#pragma once

#include <memory>

#include "framework/CDialog.h"

namespace juntora {

class CAppMonDlg;
class CIpcMsgWnd;
class StartLock;

/// Opens minimised and comes to the front only when asked to. It ends, and the hub with it, by a
/// close request alone, and by that only while no tool is attached; its "Close" button and the
/// escape key put it away.
class CJuntoraDlg : public CDialog {
public:
    /// With a `showAllowed` of 0 it keeps itself hidden; `startPlanchet` has it start Planchet when
    /// it opens.
    CJuntoraDlg(int showAllowed, int startPlanchet, CWnd* parent);
    ~CJuntoraDlg() override;

    /// A lock to release as soon as the hub's window can be found; not owned.
    void SetStartLock(StartLock* lock) { m_pStartLock = lock; }

protected:
    BOOL OnInitDialog() override;
    void DoDataExchange(CDataExchange* exchange) override;
    void OnOK() override;
    void OnCancel() override;
    const AFX_MSGMAP& GetMessageMap() const override;

private:
    void OnSysCommand(UINT command, LPARAM lParam);
    void OnPaint();
    int OnQueryDragIcon();
    void OnAppActivity();
    bool mayEnd() const;
    void closeLater() const;
    void OnClose();
    void OnAppHide();
    void OnShowWindow(BOOL show, UINT reason);
    void OnAppMinimize();
    LRESULT OnShowHub(WPARAM wParam, LPARAM lParam);
    LRESULT OnCloseApps(WPARAM wParam, LPARAM lParam);
    LRESULT OnStartPlanchet(WPARAM wParam, LPARAM lParam);

    void prepareSystemMenu();
    bool createHub();

    std::unique_ptr<CAppMonDlg> m_pMonitor;
    std::unique_ptr<CIpcMsgWnd> m_pIpcWnd;
    int m_hIcon;  ///< Icons go by their resource numbers; a screen draws them.
    int m_bShowAllowed;
    int m_bStartPlanchet;
    CString m_strVersion;

    StartLock* m_pStartLock = nullptr;
    int m_nClosingApps = 0;  ///< How many requests to close all tools are being carried out.
    int m_nEnding = 0;
};

}  // namespace juntora
