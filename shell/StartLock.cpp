#include "shell/StartLock.h"

#include "platform/kernel/sync.h"

namespace juntora {
namespace {

constexpr char START_MUTEX[] = "TarvexVoltaraJuntoraStart16.6.0";

}  // namespace

StartLock::StartLock(DWORD milliseconds)
    : m_hMutex(CreateMutexA(false, START_MUTEX)),
      // Without a mutex (there is no room for one) a lone start is still better than none.
      m_bTimedOut(m_hMutex && WaitForSingleObject(m_hMutex, milliseconds) == WAIT_TIMEOUT) {}

void StartLock::Release() {
    if (m_hMutex) {
        CloseHandle(m_hMutex);  // Frees the mutex, if this thread has it.
        m_hMutex = nullptr;
    }
}

}  // namespace juntora
