// The hub as a program: one a desktop, from its start to its end.
#pragma once

#include "framework/CWinApp.h"

namespace juntora {

class CJuntoraApp : public CWinApp {
public:
    CJuntoraApp() = default;
    ~CJuntoraApp() override = default;

    /// Returns at once where a hub runs already. Otherwise the main dialog's modal loop is the rest
    /// of the hub's life. The command line means nothing to the hub: it is handed on to Planchet.
    bool InitInstance() override;

protected:
    const AFX_MSGMAP& GetMessageMap() const override;
};

extern CJuntoraApp theApp;

}  // namespace juntora
