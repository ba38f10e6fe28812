// A dialog made from a template, modal or not.
#pragma once

#include "framework/CDataExchange.h"
#include "framework/CWnd.h"

namespace juntora {

class CDialog : public CWnd {
public:
    /// `parent` null: the main window, if there is one by the time a modal dialog is run.
    explicit CDialog(int templateId, CWnd* parent = nullptr)
        : m_templateId(templateId), m_pParentWnd(parent) {}

    /// Makes the dialog and returns; the program's message loop serves it. 0 on failure, also when
    /// OnInitDialog throws; standard error then tells what.
    BOOL Create(int templateId, CWnd* parent);

    /// Makes the dialog and runs a message loop until EndDialog. Returns EndDialog's result, -1
    /// when the dialog cannot be made (as above).
    virtual int DoModal();

    /// Ends the loop of DoModal once the present message has been handled. A dialog without a loop
    /// of its own is hidden.
    void EndDialog(int result);

    /// Moves data from the controls to the members (`save`) or back. 0 if it has failed.
    BOOL UpdateData(bool save);

    bool OnCmdMsg(int id) override;

protected:
    /// The dialog has just been made and its controls with it. The framework's own part binds and
    /// fills the controls.
    virtual BOOL OnInitDialog();
    virtual void OnOK();
    virtual void OnCancel();
    virtual void DoDataExchange(CDataExchange*) {}
    const AFX_MSGMAP& GetMessageMap() const override;

private:
    friend class DialogEntry;
    HWND owner() const;

    const int m_templateId;
    CWnd* const m_pParentWnd;
};

}  // namespace juntora
