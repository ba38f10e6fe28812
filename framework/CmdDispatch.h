// A command target as other programs see it.
#pragma once

#include "platform/automation/automation.h"

namespace juntora {

class CCmdTarget;

/// The dispatch interface of a target, whose references are the target's.
class CmdDispatch final : public IDispatch {
public:
    explicit CmdDispatch(CCmdTarget& target) : m_target(target) {}
    virtual ~CmdDispatch() = default;

    DWORD AddRef() override;
    DWORD Release() override;
    HRESULT QueryInterface(const GUID& iid, IDispatch** out) override;
    HRESULT GetIDsOfNames(const char* name, LONG* id) override;
    HRESULT Invoke(LONG id, WORD flags, std::span<VARIANT> arguments, VARIANT* result) override;
    const DispatchDescription* Describe() const override;

private:
    CCmdTarget& m_target;
};

}  // namespace juntora
