// An object of another process.
#pragma once

#include <string>

#include "platform/automation/Bus.h"
#include "platform/automation/ObjectRoad.h"

namespace juntora::automation {

/// Made with one reference in memory, which stands for one at the owner.
class RemoteObject final : public IDispatch {
public:
    RemoteObject(Bus& bus, ObjectRoad& road, ObjectAddress address)
        : m_bus(bus), m_road(road), m_address(std::move(address)) {}
    virtual ~RemoteObject() = default;

    const ObjectAddress& address() const { return m_address; }
    /// Gives another process a reference; in order with what is sent to that process next.
    void shareWith(const std::string& receiver) const;

    DWORD AddRef() override { return ++m_references; }
    DWORD Release() override;
    HRESULT QueryInterface(const GUID& iid, IDispatch** out) override;
    HRESULT GetIDsOfNames(const char* name, LONG* id) override;
    HRESULT Invoke(LONG id, WORD flags, std::span<VARIANT> arguments, VARIANT* result) override;
    const DispatchDescription* Describe() const override { return nullptr; }

private:
    Message newCall(const char* member) const;

    Bus& m_bus;
    ObjectRoad& m_road;
    const ObjectAddress m_address;
    DWORD m_references = 1;
};

}  // namespace juntora::automation
