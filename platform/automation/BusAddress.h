// Which bus this process is on.
#pragma once

#include <string>

struct sd_bus;

namespace juntora::automation {

/// Joins the session's bus: that of DBUS_SESSION_BUS_ADDRESS, else `bus` in the runtime folder,
/// else the desktop's own, which is started where it does not run. The connection is the caller's;
/// null with the reason in `*why`.
sd_bus* connectToBus(std::string* why);

}  // namespace juntora::automation
