// The about box.
#pragma once

#include "framework/CDialog.h"
#include "shell/resources.h"

namespace juntora {

class CAboutDlg : public CDialog {
public:
    CAboutDlg() : CDialog(IDD_ABOUT) {}

protected:
    void DoDataExchange(CDataExchange* exchange) override;

private:
    CString m_strVersion{VERSION_TEXT};
    CString m_strLevel{"000"};
    CString m_strBuild{"d001"};
};

}  // namespace juntora
