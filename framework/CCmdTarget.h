// The root of what can handle commands and messages (windows and the application) and of what other
// programs can call.
#pragma once

#include <memory>
#include <span>

#include "framework/CmdDispatch.h"
#include "framework/DispatchMap.h"
#include "framework/MessageMap.h"
#include "platform/types.h"

namespace juntora {

class CCmdTarget {
public:
    CCmdTarget() = default;
    virtual ~CCmdTarget();
    CCmdTarget(const CCmdTarget&) = delete;
    CCmdTarget& operator=(const CCmdTarget&) = delete;

    /// Handles a command. False when neither this object nor whoever stands behind it does.
    virtual bool OnCmdMsg(int id);

    /// The object for other programs; null unless automation has been enabled. With a reference for
    /// the caller only if `addRef`. It lives as long as this object.
    IDispatch* GetIDispatch(bool addRef);

    DWORD m_dwRef = 1;  ///< References; the maker has the first one.

protected:
    friend class CmdDispatch;

    /// In a constructor: has GetIDispatch give an object.
    void EnableAutomation();
    /// When the last reference goes: deletes the object.
    virtual void OnFinalRelease() { delete this; }
    /// What other programs may call; null for nothing.
    virtual const AFX_DISPMAP* GetDispatchMap() const { return nullptr; }
    /// The interfaces by which the object is known, beside that of every such object.
    virtual std::span<const GUID> GetInterfaceMap() const { return {}; }

    /// The class's own map, with those of its bases behind it.
    virtual const AFX_MSGMAP& GetMessageMap() const;

private:
    std::unique_ptr<CmdDispatch> m_dispatch;
};

}  // namespace juntora
