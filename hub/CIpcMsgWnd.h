// The hub's hidden window, at which the requests of all tools arrive.
#pragma once

#include "framework/CWnd.h"
#include "ipc/ipc.h"

namespace juntora {

/// Tools find it by HUB_WINDOW_CLASS and HUB_WINDOW_TITLE from its creation on; until SetIpc each
/// of their records gets the result 0. No message closes it, so that no tool can.
class CIpcMsgWnd : public CWnd {
public:
    /// Has `link` serve the requests from now on; not owned. Null for none.
    void SetIpc(ipc* link) { m_pIpc = link; }

    /// Whether a request is being served further down the stack.
    bool IsServing() const { return m_nServing > 0; }

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    bool serve(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result);

    ipc* m_pIpc = nullptr;
    int m_nServing = 0;
};

}  // namespace juntora
