// The hidden window through which library notices reach the hub's message loop.
#pragma once

#include <string>

#include "bridge/Posted.h"
#include "framework/CWnd.h"

namespace juntora {

class CLibraryStatus;

/// What wParam of its message means; lParam stands for a text, or is 0.
enum LibraryNotice { LIBRARY_LIST_CHANGED = 1, LIBRARY_CHANGED = 2, CLOSE_FILE = 3 };

class CLibraryStatusWnd : public CWnd {
public:
    explicit CLibraryStatusWnd(CLibraryStatus* owner) : m_pLibraryStatus(owner) {}
    ~CLibraryStatusWnd() override = default;

    /// Makes the window, hidden, in `parent`. False on failure.
    bool Create(const CWnd& parent);

    /// Puts a notice with a copy of the text (null: none) into the message loop.
    void PostNotice(int code, const char* text);

protected:
    const AFX_MSGMAP& GetMessageMap() const override;

private:
    LRESULT OnNotice(WPARAM wParam, LPARAM lParam);

    CLibraryStatus* m_pLibraryStatus;  ///< Not owned.
    Posted<std::string> m_texts;       ///< Under way.
};

}  // namespace juntora
