// The programs that the bus itself can start.
#pragma once

namespace juntora::automation {

/// Has the bus look at the service files anew, if automation has been started: a folder that was
/// not there at its start it does not watch.
void reloadServices();

}  // namespace juntora::automation
