#include "platform/kernel/sync.h"

namespace juntora {
namespace {

thread_local DWORD t_lastError = 0;

}  // namespace

DWORD GetLastError() { return t_lastError; }

void SetLastError(DWORD error) { t_lastError = error; }

}  // namespace juntora
