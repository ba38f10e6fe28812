#include "shell/CAboutDlg.h"

namespace juntora {

void CAboutDlg::DoDataExchange(CDataExchange* exchange) {
    DDX_Text(exchange, IDC_ABOUT_VERSION, m_strVersion);
    DDX_Text(exchange, IDC_ABOUT_LEVEL, m_strLevel);
    DDX_Text(exchange, IDC_ABOUT_BUILD, m_strBuild);
}

}  // namespace juntora
