// The root of what can handle commands and messages: windows and the application.
#pragma once

#include "framework/MessageMap.h"
#include "platform/types.h"

namespace juntora {

class CCmdTarget {
public:
    CCmdTarget() = default;
    virtual ~CCmdTarget() = default;
    CCmdTarget(const CCmdTarget&) = delete;
    CCmdTarget& operator=(const CCmdTarget&) = delete;

    /// Handles a command. False when neither this object nor whoever stands behind it does.
    virtual bool OnCmdMsg(int id);

protected:
    /// The class's own map, with those of its bases behind it.
    virtual const AFX_MSGMAP& GetMessageMap() const;
};

}  // namespace juntora
