// The identity under which this process sends and receives.
#pragma once

#include "ipc/ipc.h"

namespace juntora {

/// Sets ipcSelfId for as long as it lives.
class ScopedSelfId {
public:
    explicit ScopedSelfId(HWND id) : m_previous(ipcSelfId) { ipcSelfId = id; }
    ~ScopedSelfId() { ipcSelfId = m_previous; }
    ScopedSelfId(const ScopedSelfId&) = delete;
    ScopedSelfId& operator=(const ScopedSelfId&) = delete;

private:
    HWND m_previous;
};

/// The hub's own identity.
inline constexpr HWND HUB_ID = 0;

}  // namespace juntora
