// The hub as a program: one a desktop, from its start to its end.
#pragma once

#include "framework/CWinApp.h"

namespace juntora {

class CJuntoraApp : public CWinApp {
public:
    CJuntoraApp() = default;
    ~CJuntoraApp() override = default;

    /// Returns at once where a hub runs already. Otherwise the main dialog's modal loop is the rest
    /// of the hub's life. Of the command line the hub takes the switches "Regserver" (registers its
    /// class, which every start does, and ends), "Embedding" and "Automation"; the rest means
    /// nothing to it, and is handed on to Planchet.
    bool InitInstance() override;

protected:
    const AFX_MSGMAP& GetMessageMap() const override;

private:
    bool registerClasses();
};

extern CJuntoraApp theApp;

}  // namespace juntora
