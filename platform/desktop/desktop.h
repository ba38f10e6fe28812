// The desktop that this process is on: one shared segment for all processes that name the same
// desktop. It is opened by the first call that needs it.
#pragma once

namespace juntora {

/// Opens the desktop, unless it is open, and tells whether it can be used. The first failure is
/// written to standard error, with what to do about it; afterwards every call of the layer that
/// needs the desktop fails in its own way. JUNTORA_DESKTOP names the desktop (letters, digits, ".",
/// "_" and "-", at most 64; "default" if unset); its folder is $XDG_RUNTIME_DIR/juntora/NAME, else
/// /tmp/juntora-UID/NAME.
bool OpenDesktop();

}  // namespace juntora
